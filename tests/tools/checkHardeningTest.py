"""tools/check-hardening on small programs, each of which lacks one protection."""

import os
import shutil
import subprocess
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
# Something to protect: a length that only the run knows, a buffer on the stack, and functions that may be jumped to.
SOURCE = "#include <cstdio>\n#include <cstring>\n" + "".join(
    f"int work{number}(int value) {{ return value + {number}; }}\n" for number in range(40)
) + """
int main(int count, char** arguments) {
    char text[20];
    std::strcpy(text, arguments[count - 1]);
    return std::puts(text);
}
"""
OPTIONS = {
    "position": "-fPIE",
    "random": "-pie",
    "stack": "-fstack-protector-strong",
    "fortify": "-D_FORTIFY_SOURCE=2",
    "relro": "-Wl,-z,relro",
    "now": "-Wl,-z,now",
    "code": "-Wl,-z,noexecstack",
}


class CheckHardening(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp()
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.source = os.path.join(cls.folder, "program.cpp")
        with open(cls.source, "w", encoding="utf-8") as file:
            file.write(SOURCE)
        cls.options = dict(OPTIONS)
        for flag in ("-fcf-protection=full", "-mbranch-protection=standard"):
            if subprocess.run(["c++", "-Werror", flag, "-c", cls.source, "-o", os.devnull], capture_output=True).returncode == 0:
                cls.options["flow"] = flag

    def check(self, **changes):
        """What is said of a program that is built with these options in the place of the usual ones."""
        program = os.path.join(self.folder, "program")
        options = {**self.options, **changes}.values()
        subprocess.run(["c++", "-O2", "-U_FORTIFY_SOURCE", *options, self.source, "-o", program], check=True, capture_output=True)
        found = subprocess.run([os.path.join(ROOT, "tools", "check-hardening"), program], capture_output=True, text=True)
        return found.returncode, found.stdout + found.stderr

    def expect_missing(self, what, **changes):
        status, text = self.check(**changes)
        self.assertEqual(status, 1, text)
        self.assertIn(what, text)
        self.assertEqual(len(text.splitlines()), 1, text)

    def test_a_hardened_program_passes(self):
        status, text = self.check()
        self.assertEqual(status, 0, text)
        self.assertIn("is hardened", text)

    def test_what_is_missing_is_named(self):
        self.expect_missing("PIE", position="-fno-pie", random="-no-pie")
        self.expect_missing("stack protector", stack="-fno-stack-protector")
        self.expect_missing("fortify", fortify="-U_FORTIFY_SOURCE")
        self.expect_missing("BIND_NOW", now="-Wl,-z,lazy")
        self.expect_missing("a stack without code", code="-Wl,-z,execstack")
        self.expect_missing("RELRO", relro="-Wl,-z,norelro")

    def test_a_library(self):
        library = {"position": "-fPIC", "random": "-shared", "fortify": "-U_FORTIFY_SOURCE"}
        status, text = self.check(**library)
        self.assertEqual(status, 0, text)
        self.expect_missing("RELRO", **library, relro="-Wl,-z,norelro")
        self.expect_missing("stack protector", **library, stack="-fno-stack-protector")

    def test_functions_that_may_be_jumped_to_unmarked(self):
        if "flow" not in self.options:
            self.skipTest("This processor marks nothing")
        self.expect_missing("control flow", flow="-O2")

    def test_a_library_folder_of_the_build(self):
        self.expect_missing("a folder of the build", code="-Wl,-rpath,/tmp/build")

    def test_what_is_no_program(self):
        found = subprocess.run([os.path.join(ROOT, "tools", "check-hardening"), self.source], capture_output=True, text=True)
        self.assertNotEqual(found.returncode, 0)


if __name__ == "__main__":
    unittest.main()
