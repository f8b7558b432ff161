"""Runs tests as unittest's own command does, but ends with 77 where none was run, since all of them were skipped.

usage: python3 -m harness.suite TEST..."""

import sys
import unittest

ALL_SKIPPED = 77  # what ctest is told of


class Result(unittest.TextTestResult):
    passed = 0

    def addSuccess(self, test):
        super().addSuccess(test)
        self.passed += 1


def status(result):
    if not result.wasSuccessful():
        return 1
    if result.passed:
        return 0
    return ALL_SKIPPED if result.skipped else 1


def main():
    runner = unittest.TextTestRunner(verbosity=2, resultclass=Result)
    sys.exit(status(unittest.main(module=None, verbosity=2, testRunner=runner, exit=False).result))


if __name__ == "__main__":
    main()
