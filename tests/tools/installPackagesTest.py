"""tools/install-packages with a package manager that only plays one."""

import os
import shutil
import subprocess
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
TABLE = """# Dependencies
| package | group | why |
|---|---|---|
| `plain` | build | one name |
| `newer`, `older` | build | two names |
| `other` | test | another group |
| `young`, `-` | young | one that old releases lack |
"""
# The lists that are there, those that an update brings, and what is installed: one name a line in a file each.
DPKG_QUERY = """#!/bin/sh
grep -qx "$4" "$STATE/installed" && printf installed
"""
APT_CACHE = """#!/bin/sh
if grep -qx "$2" "$STATE/lists"; then printf '%s:\\n  Candidate: 1.0-1\\n' "$2"; else printf '%s:\\n  Candidate: (none)\\n' "$2"; fi
"""
APT_GET = """#!/bin/sh
echo "apt-get $*" >>"$STATE/calls"
if [ "$1" = update ]; then cp "$STATE/offered" "$STATE/lists"; exit; fi
shift 4
for package in "$@"; do grep -qx "$package" "$STATE/fetched" || exit 100; done
printf '%s\\n' "$@" >>"$STATE/installed"
"""


class InstallPackages(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)
        for name in ("tools", "docs", "bin"):
            os.mkdir(os.path.join(self.folder, name))
        shutil.copy(os.path.join(ROOT, "tools", "install-packages"), os.path.join(self.folder, "tools"))
        self.write("docs/dependencies.md", TABLE)
        tools = {"dpkg-query": DPKG_QUERY, "apt-cache": APT_CACHE, "apt-get": APT_GET, "sudo": '#!/bin/sh\nexec "$@"\n'}
        for name, text in tools.items():
            self.write("bin/" + name, text)
            os.chmod(os.path.join(self.folder, "bin", name), 0o755)

    def write(self, name, text):
        with open(os.path.join(self.folder, name), "w", encoding="utf-8") as file:
            file.write(text)

    def read(self, name):
        with open(os.path.join(self.folder, name), encoding="utf-8") as file:
            return file.read().split("\n")[:-1]

    def install(self, *groups, lists=(), offered=(), fetched=None, installed=()):
        """`fetched` are the packages that can be had, where these are not the ones offered."""
        for name, packages in (("lists", lists), ("offered", offered), ("fetched", offered if fetched is None else fetched),
                               ("installed", installed), ("calls", ())):
            self.write(name, "".join(package + "\n" for package in packages))
        environment = {"PATH": os.path.join(self.folder, "bin") + ":/usr/bin:/bin", "STATE": self.folder}
        return subprocess.run([os.path.join(self.folder, "tools", "install-packages"), *groups], env=environment, text=True,
                              capture_output=True, timeout=60, check=False)

    def calls(self):
        return [call.split()[1] for call in self.read("calls")]

    def test_nothing_is_asked_for_where_nothing_is_missing(self):
        self.assertEqual(self.install("build", installed=("plain", "older")).returncode, 0)
        self.assertEqual(self.calls(), [])

    def test_the_name_that_the_release_has_is_installed(self):
        for name in ("newer", "older"):
            with self.subTest(name):
                result = self.install("build", lists=("plain", name), offered=("plain", name))
                self.assertEqual(result.returncode, 0, result.stderr)
                self.assertEqual(self.read("installed"), ["plain", name])
                self.assertEqual(self.calls(), ["install"])

    def test_the_first_of_two_names_is_taken(self):
        both = ("plain", "newer", "older")
        self.install("build", lists=both, offered=both)
        self.assertEqual(self.read("installed"), ["plain", "newer"])

    def test_absent_lists_are_fetched(self):
        self.assertEqual(self.install("build", offered=("plain", "older")).returncode, 0)
        self.assertEqual(self.calls(), ["update", "install"])
        self.assertEqual(self.read("installed"), ["plain", "older"])

    def test_lists_are_fetched_anew_when_an_install_fails(self):
        # The old lists name what is not to be had any more.
        result = self.install("build", lists=("plain", "newer"), offered=("plain", "older"))
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(self.calls(), ["install", "update", "install"])
        self.assertEqual(self.read("installed"), ["plain", "older"])

    def test_what_a_release_may_lack_is_installed_where_it_is_there(self):
        self.assertEqual(self.install("young", lists=("young",), offered=("young",)).returncode, 0)
        self.assertEqual(self.read("installed"), ["young"])

    def test_what_a_release_may_lack_is_left_out_without_a_word(self):
        result = self.install("young", "test", lists=("other",), offered=("other",), installed=("other",))
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))
        self.assertEqual(self.calls(), [])

    def test_what_a_release_may_lack_does_not_keep_the_others_out(self):
        result = self.install("young", "test", offered=("other",))
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(self.calls(), ["update", "install"])
        self.assertEqual(self.read("installed"), ["other"])

    def test_what_no_list_offers_is_named(self):
        result = self.install("build", "test", lists=("plain",), offered=("plain",))
        self.assertEqual(result.returncode, 1)
        self.assertIn("This system offers no package newer or older.\n", result.stderr)
        self.assertIn("This system offers no package other.\n", result.stderr)
        self.assertNotIn("no package plain", result.stderr)
        self.assertEqual(self.read("installed"), [])

    def test_an_install_that_fails_twice_is_told(self):
        result = self.install("test", lists=("other",), offered=("other",), fetched=())
        self.assertEqual(result.returncode, 1)
        self.assertIn("could not be installed", result.stderr)
        self.assertNotIn("offers no package", result.stderr)


if __name__ == "__main__":
    unittest.main()
