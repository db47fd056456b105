"""setup_test.py SETUP: how tools/setup.sh calls apt-get, which runs in folders of its own and knows no packages."""
import fcntl
import os
import subprocess
import sys
import tempfile
import unittest

SETUP = sys.argv.pop()


class AptGet(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        for part in "state/lists/partial", "cache/archives/partial", "etc":
            os.makedirs(f"{folder.name}/{part}")
        self.locks = [f"{folder.name}/state/lists/lock", f"{folder.name}/cache/archives/lock"]
        settings = f"{folder.name}/apt.conf"
        with open(settings, "w") as file:
            file.write(f'Dir::State "{folder.name}/state"; Dir::Cache "{folder.name}/cache";\n'
                       f'Dir::Etc "{folder.name}/etc"; Dir::State::status "/dev/null";\n')
        self.environment = {**os.environ, "APT_CONFIG": settings}

    def apt_get(self, arguments):
        return subprocess.Popen(["sh", "-c", f'. "{SETUP}"; as_root() {{ "$@"; }}; apt_get {arguments}'],
                                env=self.environment, stdout=subprocess.PIPE, text=True)

    def testSaysNothingWhenAllIsWell(self):
        with self.apt_get("update") as call:
            self.assertEqual(call.stdout.read(), "")
        self.assertEqual(call.returncode, 0)

    def testSaysOnceThatItWaitsForALock(self):
        for arguments, lock in ("update", self.locks[0]), ("clean", self.locks[1]):
            with self.subTest(arguments), open(lock, "a") as held:
                fcntl.lockf(held, fcntl.LOCK_EX)
                with self.apt_get(arguments) as call:
                    self.assertIn(f"busy: {lock}", call.stdout.readline())
                    fcntl.lockf(held, fcntl.LOCK_UN)
                    self.assertEqual(call.stdout.read(), "")
                self.assertEqual(call.returncode, 0)

    def testShowsWhyItFailsOtherwise(self):
        with self.apt_get("install -y no-such-package") as call:
            self.assertIn("no-such-package", call.stdout.read())
        self.assertEqual(call.returncode, 1)


unittest.main()
