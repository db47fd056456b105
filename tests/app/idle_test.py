#!/usr/bin/python3
"""The running program while nobody does anything: nothing wakes it but the cursor's blink.

Run by tests/underx; usage: idle_test.py PROGRAM
"""

import os
import pathlib
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAM = os.path.abspath(sys.argv.pop(1))
PATIENCE = 60
# A blink is a turn for its timer, one for the frame, and what the display answers, in three threads.
MOST_A_BLINK = 8
BLINKS_A_SECOND = 2
LONG = 5  # seconds in which a slow timer shows, too


def output_of(*command):
    return subprocess.run(command, capture_output=True, text=True).stdout.strip()


def wait_for(condition, what):
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        if condition():
            return
        time.sleep(0.1)
    raise AssertionError('waited in vain for ' + what)


class IdleTest(unittest.TestCase):
    def setUp(self):
        settings = pathlib.Path(os.environ['XDG_CONFIG_HOME'], 'marlopad.conf')
        settings.write_text('[main]\nLang = 0\n')
        self.folder = tempfile.TemporaryDirectory()
        file = pathlib.Path(self.folder.name, 'a.txt')
        file.write_text('text\n' * 1000)
        self.program = subprocess.Popen([PROGRAM, str(file)])
        wait_for(lambda: output_of('xdotool', 'getactivewindow', 'getwindowname').startswith('Marlo!Pad QT  ['),
                 'the window')
        self.window = output_of('xdotool', 'getactivewindow')

    def tearDown(self):
        self.program.kill()
        self.program.wait()
        self.folder.cleanup()

    def times_woken(self):
        """How often its threads have gone to sleep so far."""
        count = 0
        for thread in pathlib.Path('/proc', str(self.program.pid), 'task').iterdir():
            lines = (thread / 'status').read_text().splitlines()
            count += sum(int(line.split()[1]) for line in lines if line.startswith('voluntary_ctxt_switches'))
        return count

    def wakes(self):
        before = self.times_woken()
        time.sleep(LONG)
        return self.times_woken() - before

    def test_nothing_but_the_blink(self):
        most = MOST_A_BLINK * BLINKS_A_SECOND * LONG
        wait_for(lambda: self.wakes() <= most, 'a while with no more than its blinks')

    def test_nothing_at_all_without_focus(self):
        subprocess.run(['xdotool', 'windowminimize', self.window], check=True)
        wait_for(lambda: self.wakes() == 0, 'a while without a single turn')

    def test_nothing_at_all_with_an_edited_document(self):
        subprocess.run(['xdotool', 'key', 'x'], check=True)
        subprocess.run(['xdotool', 'windowminimize', self.window], check=True)
        wait_for(lambda: self.wakes() == 0, 'a while without a single turn')


if __name__ == '__main__':
    unittest.main()
