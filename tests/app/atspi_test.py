#!/usr/bin/python3
"""The running program as a screen reader finds it, over the accessibility bus: PROGRAM is started and driven by keys.

Run by tests/underx; usage: atspi_test.py PROGRAM
"""

import os
import subprocess
import sys
import tempfile
import time
import unittest

import pyatspi
from gi.repository import GLib

PROGRAM = os.path.abspath(sys.argv.pop(1))
PATIENCE = 60

# Structure that holds controls and is none itself.
NAMELESS_ROLES = {
    pyatspi.ROLE_FILLER, pyatspi.ROLE_PANEL, pyatspi.ROLE_SEPARATOR, pyatspi.ROLE_LAYERED_PANE, pyatspi.ROLE_CANVAS,
    pyatspi.ROLE_UNKNOWN,
}


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def active_window():
    """Its title; nothing while one window takes over from another."""
    command = ['xdotool', 'getactivewindow', 'getwindowname']
    return subprocess.run(command, capture_output=True, text=True).stdout.strip()


def wait_for(condition, what):
    """Lets events in until the condition gives something, which is returned."""
    context = GLib.MainContext.default()
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        try:
            found = condition()
            if found:
                return found
        except GLib.Error:
            pass  # it went away while it was looked at
        GLib.timeout_add(50, lambda: False)
        context.iteration(True)
    raise AssertionError('waited in vain for ' + what)


def application():
    for app in pyatspi.Registry.getDesktop(0):
        if app and app.name == 'marlopad':
            return app
    return None


def descendants(node):
    for child in node:
        if child:
            yield child
            yield from descendants(child)


class Listener:
    """Keeps what the program announces about its texts."""

    NAMES = ('object:text-changed', 'object:text-caret-moved', 'object:text-selection-changed')

    def __init__(self):
        self.heard = []
        pyatspi.Registry.registerEventListener(self.hear, *self.NAMES)

    def hear(self, event):
        self.heard.append((event.type.minor or event.type.major.split('-', 1)[1], event.detail1, event.any_data))

    def has(self, *wanted):
        return any(event[:len(wanted)] == wanted for event in self.heard)

    def close(self):
        pyatspi.Registry.deregisterEventListener(self.hear, *self.NAMES)


class AtSpiTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.listener = Listener()
        self.addCleanup(self.listener.close)

    def start(self, content):
        path = os.path.join(self.folder.name, 'notes.txt')
        with open(path, 'wb') as file:
            file.write(content)
        with open(os.path.join(os.environ['XDG_CONFIG_HOME'], 'marlopad.conf'), 'w') as settings:
            settings.write('[main]\nLang = 0\n')
        environment = dict(os.environ, QT_LINUX_ACCESSIBILITY_ALWAYS_ON='1')
        self.program = subprocess.Popen([PROGRAM, path], env=environment)
        self.addCleanup(self.program.wait)
        self.addCleanup(self.program.kill)
        self.edit = wait_for(self.find_text, 'the text of the document')
        wait_for(lambda: 'Marlo!Pad' in active_window(), 'the window')
        wait_for(lambda: self.edit.getState().contains(pyatspi.STATE_FOCUSED), 'the focus')

    def find_text(self):
        app = application()
        for node in descendants(app) if app else ():
            if node.getRole() == pyatspi.ROLE_TEXT and node.name == 'notes.txt':
                return node
        return None

    def press(self, *keys):
        run('xdotool', 'key', *keys)

    def test_text_cursor_and_selection(self):
        self.start('こんにちは\nsecond line\nthird'.encode('utf-8'))
        text = self.edit.queryText()
        self.assertEqual(text.getText(0, -1), 'こんにちは\nsecond line\nthird')
        self.assertEqual(text.characterCount, 23)
        self.assertEqual(tuple(text.getTextAtOffset(8, pyatspi.TEXT_BOUNDARY_LINE_START)), ('second line\n', 6, 18))
        self.assertEqual(tuple(text.getTextAtOffset(8, pyatspi.TEXT_BOUNDARY_WORD_START)), ('second', 6, 12))
        self.assertTrue(self.edit.getState().contains(pyatspi.STATE_MULTI_LINE))
        self.assertTrue(self.edit.getState().contains(pyatspi.STATE_EDITABLE))

        self.press('Down', 'Right')
        wait_for(lambda: text.caretOffset == 7, 'the cursor in the second line')
        wait_for(lambda: self.listener.has('caret-moved', 7), 'the cursor to be told')
        self.press('shift+Right', 'shift+Right')
        wait_for(lambda: text.getNSelections() == 1 and tuple(text.getSelection(0)) == (7, 9), 'the selection')
        wait_for(lambda: self.listener.has('selection-changed'), 'the selection to be told')

        text.setCaretOffset(2)
        wait_for(lambda: text.caretOffset == 2 and text.getNSelections() == 0, 'the cursor to be put')
        text.addSelection(0, 5)
        wait_for(lambda: text.getNSelections() == 1 and tuple(text.getSelection(0)) == (0, 5), 'the text to be selected')
        first, second = (text.getCharacterExtents(at, pyatspi.DESKTOP_COORDS) for at in (6, 7))
        self.assertAlmostEqual(first[0] + first[2], second[0], delta=2)
        self.assertEqual(text.getOffsetAtPoint(first[0] + 2, first[1] + 2, pyatspi.DESKTOP_COORDS), 6)

    def test_changes_are_told(self):
        self.start(b'one two')
        self.press('x')
        wait_for(lambda: self.listener.has('insert', 0, 'x'), 'the insertion')
        self.press('Delete')
        wait_for(lambda: self.listener.has('delete', 1, 'o'), 'the deletion')
        self.press('ctrl+z')
        wait_for(lambda: self.listener.has('insert', 1, 'o'), 'the undoing')

    def test_edits(self):
        self.start(b'one two')
        text = self.edit.queryText()
        editable = self.edit.queryEditableText()
        editable.insertText(3, ', and', 5)
        wait_for(lambda: text.getText(0, -1) == 'one, and two', 'the insertion')
        editable.deleteText(0, 5)
        wait_for(lambda: text.getText(0, -1) == 'and two', 'the deletion')
        self.press('ctrl+z')
        wait_for(lambda: text.getText(0, -1) == 'one, and two', 'the undoing')

    def test_large_document(self):
        line = b'0123456789' * 9 + b'abcdefghi\n'
        self.start(line * 1_000_000)
        text = self.edit.queryText()
        wait_for(lambda: text.characterCount == 100_000_000, 'the whole text')
        middle = tuple(text.getTextAtOffset(50_000_050, pyatspi.TEXT_BOUNDARY_LINE_START))
        self.assertEqual(middle, (line.decode(), 50_000_000, 50_000_100))
        self.press('ctrl+End')
        wait_for(lambda: text.caretOffset == 100_000_000, 'the cursor at the end')
        self.press('x')
        wait_for(lambda: self.listener.has('insert', 100_000_000, 'x'), 'the insertion at the end')
        self.assertEqual(text.getText(99_999_990, 100_000_001), 'abcdefghi\nx'[-11:])

    def find(self, role, name):
        for node in descendants(application()):
            if node.getRole() == role and node.name == name:
                return node
        return None

    def act(self, role, name):
        node = wait_for(lambda: self.find(role, name), name)
        self.assertTrue(node.queryAction().doAction(0))

    def test_replace_all_is_left_alone_and_stopped(self):
        lines = 3_000_000
        self.start(b'x\n' * lines)
        text = self.edit.queryText()
        self.press('ctrl+m')
        wait_for(lambda: active_window() == 'Replace', 'the search panel')
        self.press('x', 'Tab', 'y')
        self.act(pyatspi.ROLE_PUSH_BUTTON, 'Replace ALL')
        wait_for(lambda: text.getText(0, 2) == 'y\n', 'the first replacement')
        self.edit.queryEditableText().insertText(0, 'in', 2)
        text.setCaretOffset(0)
        self.act(pyatspi.ROLE_MENU_ITEM, 'New')
        self.act(pyatspi.ROLE_PUSH_BUTTON, 'Stop')
        self.act(pyatspi.ROLE_PUSH_BUTTON, 'OK')
        wait_for(lambda: self.find(pyatspi.ROLE_PUSH_BUTTON, 'OK') is None, 'the end of the result')
        done = text.getText(0, -1).count('y')
        self.assertTrue(0 < done < lines)
        self.assertEqual(text.getText(0, -1), 'y\n' * done + 'x\n' * (lines - done))
        tabs = [node.name for node in descendants(application()) if node.getRole() == pyatspi.ROLE_PAGE_TAB]
        self.assertEqual(tabs, ['* notes.txt'])
        self.act(pyatspi.ROLE_MENU_ITEM, 'New')
        wait_for(lambda: self.find(pyatspi.ROLE_PAGE_TAB, '(new document)'), 'the new document')

    def test_a_notice_is_an_alert_with_its_offers(self):
        self.start('絵文字 \U0001F600 です\n'.encode('utf-8'))
        told = 'Read as Shift-JIS, but UTF-8 reads it without a fault'
        alert = wait_for(lambda: self.find(pyatspi.ROLE_ALERT, told), 'the notice')
        buttons = [
            node for node in descendants(alert)
            if node.getRole() == pyatspi.ROLE_PUSH_BUTTON and node.getState().contains(pyatspi.STATE_SHOWING)
        ]
        self.assertEqual({node.name for node in buttons}, {'Reopen as UTF-8', 'Reopen as', 'Dismiss'})
        self.assertEqual([node.name for node in buttons if node.queryAction().nActions == 0], [])
        self.act(pyatspi.ROLE_PUSH_BUTTON, 'Reopen as UTF-8')
        text = self.edit.queryText()
        wait_for(lambda: text.getText(0, -1) == '絵文字 \U0001F600 です\n', 'the text in the other code')
        self.assertFalse(alert.getState().contains(pyatspi.STATE_SHOWING))
        self.press('A')
        wait_for(lambda: text.getText(0, 1) == 'A', 'a key in the text')

    def test_every_control_has_a_name(self):
        self.start(b'text')
        nameless = [
            '%s in %s' % (node.getRoleName(), ' / '.join(parent.name or parent.getRoleName() for parent in path(node)))
            for node in descendants(application()) if not node.name and node.getRole() not in NAMELESS_ROLES
        ]
        self.assertEqual(nameless, [])
        names = {node.name for node in descendants(application())}
        wanted = {'Menus', 'Tool bar', 'notes.txt', 'New', 'Search Next', 'File'}
        self.assertEqual(wanted - names, set())


def path(node):
    parents = []
    while node.parent:
        node = node.parent
        parents.insert(0, node)
    return parents


if __name__ == '__main__':
    unittest.main(verbosity=2)
