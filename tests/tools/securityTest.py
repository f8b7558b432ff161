"""SECURITY.md: what others cannot do is shown by tests, and these exist."""

import glob
import os
import re
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def tests():
    """Every test and tool by the name that the page calls it by."""
    names = set()
    for path in glob.glob(os.path.join(ROOT, "tests", "**", "*.cpp"), recursive=True):
        names.update(".".join(found) for found in re.findall(r"^TEST(?:_F)?\((\w+), (\w+)\)", read(path), re.MULTILINE))
        if os.path.basename(path).startswith("fuzz_"):
            names.add(os.path.basename(path).removesuffix(".cpp"))
    for path in glob.glob(os.path.join(ROOT, "tests", "**", "test_*.py"), recursive=True):
        suite = None
        for line in read(path).splitlines():
            if found := re.match(r"class (\w+)\(", line):
                suite = found[1]
            elif found := re.match(r"    def (test_\w+)\(", line):
                names.add(f"{suite}.{found[1]}")
    names.update("tools/" + name for name in os.listdir(os.path.join(ROOT, "tools")))
    return names


class Security(unittest.TestCase):
    def test_each_row_is_shown_by_tests_that_exist(self):
        page = read(os.path.join(ROOT, "SECURITY.md"))
        table = page[page.index("## What others cannot make it do"):]
        rows = [line for line in table.splitlines() if line.startswith("| ")][1:]
        self.assertGreater(len(rows), 20)
        known = tests()
        for row in rows:
            cells = [cell.strip() for cell in row.strip("|").split("|")]
            with self.subTest(row=cells[:2]):
                self.assertEqual(len(cells), 4)
                shown_by = re.findall(r"`([^`]+)`", cells[3])
                self.assertTrue(shown_by)
                self.assertEqual([name for name in shown_by if name not in known], [])


if __name__ == "__main__":
    unittest.main()
