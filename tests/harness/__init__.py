"""What the tests of the whole program are made of: a private desktop, the program on it, and another client that plays the user."""
