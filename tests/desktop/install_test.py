#!/usr/bin/python3
"""The installed program: what is there, that it may be moved, and that the bus starts it as desktops do.

Run by tests/isolated; usage: install_test.py CMAKE BUILD-FOLDER
"""

import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

from gi.repository import Gio, GLib

CMAKE = sys.argv.pop(1)
BUILD = os.path.abspath(sys.argv.pop(1))
TREE = pathlib.Path(__file__).resolve().parents[2]
PATIENCE = 60
ID = 'example.marlopad.marlopad'
DOCS = pathlib.Path(__file__).parents[2] / 'docs'

EXPECTED = [
    'bin/marlopad',
    f'share/applications/{ID}.desktop',
    f'share/dbus-1/services/{ID}.service',
    f'share/metainfo/{ID}.metainfo.xml',
    'share/bash-completion/completions/marlopad',
    'share/fish/vendor_completions.d/marlopad.fish',
    'share/zsh/site-functions/_marlopad',
    'share/icons/hicolor/scalable/apps/marlopad.svg',
    'share/icons/hicolor/symbolic/apps/marlopad-symbolic.svg',
    *(f'share/icons/hicolor/{size}x{size}/apps/marlopad.png' for size in (16, 22, 24, 32, 48, 64, 128, 256)),
    'share/man/man1/marlopad.1',
    'share/man/fr/man1/marlopad.1',
    'share/man/ja/man1/marlopad.1',
    'share/marlopad/i18n/fr/marlopad2.qm',
    'share/marlopad/i18n/ja/marlopad2.qm',
    *(f'share/doc/marlopad/{path.relative_to(DOCS)}' for path in DOCS.rglob('*')
      if path.is_file() and path.name != 'CMakeLists.txt' and path.parent.name != '__pycache__'),
]


def wait_for(condition, what):
    end = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > end:
            raise AssertionError(f'waited in vain for {what}')
        time.sleep(0.05)


class InstallTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        made = os.path.join(cls.folder.name, 'made')
        subprocess.run([CMAKE, '--install', BUILD, '--prefix', made], check=True, stdout=subprocess.DEVNULL)
        cls.prefix = pathlib.Path(made)

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def test_1_has_all_that_a_desktop_asks_for(self):
        files = [str(path.relative_to(self.prefix)) for path in self.prefix.rglob('*') if path.is_file()]
        found = [name for name in files if not name.startswith('share/marlopad/pics/')]
        self.assertEqual(sorted(found), sorted(EXPECTED))
        self.assertLess(len(found), len(files))
        service = (self.prefix / f'share/dbus-1/services/{ID}.service').read_text()
        self.assertEqual(service, f'[D-BUS Service]\nName={ID}\nExec={self.prefix}/bin/marlopad\n')
        for size in (16, 256):
            png = (self.prefix / f'share/icons/hicolor/{size}x{size}/apps/marlopad.png').read_bytes()
            self.assertEqual((png[:4], int.from_bytes(png[16:20], 'big')), (b'\x89PNG', size))

    def test_1_shells_and_manual_know_its_options(self):
        told = subprocess.run([self.prefix / 'bin/marlopad', '--help'], env={**os.environ, 'LC_ALL': 'C'}, check=True,
                              capture_output=True, text=True).stdout
        options = re.findall(r'^  --([a-z-]+)', told, re.MULTILINE)
        self.assertIn('wait', options)
        for name in ('bash-completion/completions/marlopad', 'zsh/site-functions/_marlopad',
                     'fish/vendor_completions.d/marlopad.fish', 'man/man1/marlopad.1'):
            text = (self.prefix / 'share' / name).read_text().replace(r'\-', '-').replace('-l ', '--')
            for option in options:
                self.assertRegex(text, rf'--{option}\b', name)

    def test_1_its_screenshots_are_in_the_tree(self):
        """Under the address of the project's home, by their names."""
        metainfo = (self.prefix / f'share/metainfo/{ID}.metainfo.xml').read_text()
        home = re.search(r'<url type="homepage">(.*)</url>', metainfo).group(1)
        images = re.findall(r'<image>(.*)</image>', metainfo)
        self.assertTrue(images)
        for image in images:
            self.assertTrue(image.startswith(home), image)
            self.assertTrue((TREE / image[len(home):]).is_file(), image)

    def test_2_the_bus_starts_it_and_it_opens_files(self):
        services = pathlib.Path(os.environ['XDG_DATA_HOME']) / 'dbus-1/services'
        services.mkdir(parents=True)
        shutil.copy(self.prefix / f'share/dbus-1/services/{ID}.service', services)
        bus = Gio.bus_get_sync(Gio.BusType.SESSION)

        def call(name, path, interface, method, arguments=None):
            return bus.call_sync(name, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE,
                                 PATIENCE * 1000, None)

        def ask_bus(method, arguments=None):
            answer = call('org.freedesktop.DBus', '/org/freedesktop/DBus', 'org.freedesktop.DBus', method, arguments)
            return answer.unpack()

        def ask_program(method, arguments):
            return call(ID, '/' + ID.replace('.', '/'), 'org.freedesktop.Application', method, arguments)

        ask_bus('ReloadConfig')
        file = pathlib.Path(self.folder.name) / 'a b.txt'
        file.write_text('text')
        ask_program('Open', GLib.Variant('(asa{sv})', ([file.as_uri()], {})))
        ask_program('Activate', GLib.Variant('(a{sv})', ({},)))
        ask_program('ActivateAction', GLib.Variant('(sava{sv})', ('new-document', [], {})))
        with self.assertRaises(GLib.Error):
            ask_program('ActivateAction', GLib.Variant('(sava{sv})', ('no-such-action', [], {})))
        process = ask_bus('GetConnectionUnixProcessID', GLib.Variant('(s)', (ID,)))[0]
        settings = pathlib.Path(os.environ['XDG_CONFIG_HOME']) / 'marlopad.conf'

        def is_open():
            """The folder of a document is watched."""
            watch = f' ino:{os.stat(self.folder.name).st_ino:x} '
            return any(watch in entry.read_text() for entry in pathlib.Path(f'/proc/{process}/fdinfo').iterdir())

        wait_for(is_open, 'the document')
        os.kill(process, signal.SIGTERM)
        wait_for(lambda: not ask_bus('NameHasOwner', GLib.Variant('(s)', (ID,)))[0], 'the end of the program')
        self.assertIn('a b.txt', settings.read_text())

    def test_3_may_be_moved(self):
        moved = self.prefix.rename(self.prefix.parent / 'moved')
        environment = {**os.environ, 'LC_ALL': 'ja_JP.UTF-8'}
        answer = subprocess.run([moved / 'bin/marlopad', '--help'], env=environment, check=True, capture_output=True)
        self.assertTrue(answer.stdout.decode().startswith('使い方'), answer.stdout)


unittest.main()
