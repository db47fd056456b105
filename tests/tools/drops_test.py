#!/usr/bin/python3
"""Files and a folder that a hand drags from a file manager into the window, all at once, onto each of its parts.

Run by tests/isolated; usage: drops_test.py PROGRAM
"""

import os
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / 'tools'))

import desk as desks  # noqa: E402 - found there

PARTS = {'text': (480, 250), 'tab bar': (400, 466), 'tool bar': (560, 37)}
FILES = {b'a b#%20.txt': b'first\n', b'\x83\x65\xff.txt': b'of no Unicode name\n',
         b'folder/in it.txt': b'in a folder\n'}
FOLDER_ICON = (228, 240)  # it comes before the files


def drop_on(place):
    def scene(desk):
        (desk.documents / 'folder').mkdir()
        files = {desk.documents / os.fsdecode(name): content for name, content in FILES.items()}
        for file, content in files.items():
            file.write_bytes(content)
        desk.start()
        desk.show_folder(20, 160, 340, 200)
        desk.click(*FOLDER_ICON)
        desk.key('ctrl+a')
        desk.still()
        desk.drag(FOLDER_ICON, place)
        # The folder's files are offered: its only one is the last row.
        desk.wait_for_window('^Open$')
        desk.wait_for_keys()
        desk.key('End')
        desk.key('Return')
        desk.wait_for_window(r'^Marlo!Pad QT  \[.*\]\[LF\]')
        desk.wait_for_keys()
        # In the order of the tabs, whichever that is.
        for saved in range(1, len(files) + 1):
            desk.type('x')
            desk.key('ctrl+s')
            desk.wait_for(lambda: sum(file.read_bytes() == b'x' + files[file] for file in files) == saved,
                          f'{saved} saved files')
            desk.key('ctrl+Tab')
            desk.wait_for_keys()
    return scene


if __name__ == '__main__':
    program = pathlib.Path(sys.argv[1]).resolve()
    desks.enter_namespace()
    scenes = {f'drop on the {part}': drop_on(place) for part, place in PARTS.items()}
    sys.exit(not desks.carry_out(scenes, program, None, ['en']))
