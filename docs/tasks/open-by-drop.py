"""Drag a file from a file manager into the window."""


def task(desk):
    letter = desk.in_words('Dear Anna,\n', '前略\n')
    desk.write('letter.txt', letter)
    desk.start()
    desk.show_folder(20, 160, 240, 180)
    desk.drag((228, 240), (480, 250), lambda: desk.picture('drop-on-the-way'))
    desk.wait_for_window(r'\[LF\]')
    desk.wait_for_keys()
    desk.picture('drop-done')
    desk.type('x')
    desk.key('ctrl+s')
    desk.wait_for_file('letter.txt', 'x' + letter)
