"""Counts checks and prints one line for each."""


class Report:
    """The outcome of all checks."""

    def __init__(self):
        self.passed = 0
        self.failed = 0

    def expect(self, condition, what, found=""):
        """One check; `found` says what was met, so that a failure explains itself."""
        if condition:
            self.passed += 1
        else:
            self.failed += 1
        print(f"{'ok  ' if condition else 'FAIL'} {what}" + (f": {found}" if found != "" else ""))
        return bool(condition)

    def attempt(self, what, action):
        """Runs an action that may raise; what it raises is a failed check."""
        try:
            return action()
        except (OSError, ValueError, KeyError, SyntaxError) as error:
            self.expect(False, what, f"{type(error).__name__}: {error}")
            return None
