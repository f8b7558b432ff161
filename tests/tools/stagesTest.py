"""tools/stages.sh, and what tells it that a class of tests was skipped, on tests that only play some."""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))


class Stages(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)
        os.symlink(os.path.join(ROOT, "tools"), os.path.join(self.folder, "tools"))

    def run_tests(self, **tests):
        """Each test is a script, which ends with 77 where it is skipped. What the stage printed, without its times."""
        os.makedirs(os.path.join(self.folder, "tests"), exist_ok=True)
        with open(os.path.join(self.folder, "tests", "CTestTestfile.cmake"), "w", encoding="utf-8") as file:
            for name, script in tests.items():
                file.write(f"add_test({name} sh [=[-c]=] [=[{script}]=])\n"
                           f"set_tests_properties({name} PROPERTIES SKIP_RETURN_CODE 77)\n")
        script = ". tools/stages.sh; stage_tests few 60 tests; finish"
        result = subprocess.run(["sh", "-c", script], cwd=self.folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                timeout=120, check=False)
        return [line.split(" in ")[0].strip() for line in result.stdout.splitlines()], result.returncode

    def test_what_is_skipped_is_named_and_did_not_pass(self):
        said, status = self.run_tests(good="true", whole="echo \"test_a (m.C.test_a) ... skipped 'no labwc'\"; exit 77")
        self.assertEqual(said, ["== few", "skipped: whole: no labwc", "1 passed, 0 failed, 1 skipped", "", "1 passed, 0 failed"])
        self.assertEqual(status, 0)

    def test_what_is_skipped_in_part_passed_and_is_named(self):
        said, _ = self.run_tests(part="echo '/folder/SomeTest.cpp:7: Skipped'; echo 'no KWin'; echo; echo '[  SKIPPED ] Some.Test (0 ms)'")
        self.assertEqual(said[1:3], ["partly skipped: part: no KWin", "1 passed, 0 failed"])

    def test_one_reason_of_many_tests_is_told_once(self):
        said, _ = self.run_tests(whole="for i in 1 2; do echo \"test_$i (m.C.test_$i) ... skipped 'no labwc'\"; done; exit 77")
        self.assertEqual(said[1], "skipped: whole: no labwc")

    def test_figures_of_tests_that_pass_are_printed(self):
        said, _ = self.run_tests(sway="echo 'test_a (m.C.test_a) ... asked for 1000 clicks, seen 1000'; seq 1 2000; echo noise; echo ok",
                                 kills="echo '50 kills over calls: no button is down'")
        self.assertEqual(said[1:4], ["kills: 50 kills over calls: no button is down", "sway: asked for 1000 clicks, seen 1000",
                                     "2 passed, 0 failed"])

    def test_what_fails_is_shown_whole_and_counted(self):
        said, status = self.run_tests(bad="echo 'what was wrong'; exit 1", good="echo 'not shown'", left="exit 77")
        self.assertIn("what was wrong", said)
        self.assertNotIn("not shown", said)
        self.assertIn("skipped: left: it does not say why", said)
        self.assertEqual(said[-1], "1 passed, 1 failed")
        self.assertEqual(status, 1)


PLAYED = """
import unittest

class Whole(unittest.TestCase):
    @unittest.skip("no labwc")
    def test_a(self):
        pass

class Part(Whole):
    def test_b(self):
        pass

class Bad(Whole):
    def test_b(self):
        self.fail()

@unittest.skip("no labwc")
class Left(Part):
    pass

class Early(Part):
    @classmethod
    def setUpClass(cls):
        raise unittest.SkipTest("no labwc")
"""


class Suite(unittest.TestCase):
    def test_only_what_is_skipped_as_a_whole_ends_so(self):
        with tempfile.TemporaryDirectory() as folder:
            with open(os.path.join(folder, "played.py"), "w", encoding="utf-8") as file:
                file.write(PLAYED)
            for name, status in (("Whole", 77), ("Left", 77), ("Early", 77), ("Part", 0), ("Bad", 1), ("Nowhere", 1)):
                with self.subTest(name):
                    result = subprocess.run([sys.executable, "-B", "-m", "harness.suite", f"played.{name}"], cwd=folder, timeout=60,
                                            env={**os.environ, "PYTHONPATH": os.path.join(ROOT, "tests")}, capture_output=True,
                                            check=False)
                    self.assertEqual(result.returncode, status, result.stderr)


if __name__ == "__main__":
    unittest.main()
