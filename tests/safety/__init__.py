"""What the program has to survive, in numbers: see tools/prove-safety."""
