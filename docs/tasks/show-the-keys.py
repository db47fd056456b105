"""Which keys there are."""


def task(desk):
    desk.write('letter.txt', desk.in_words('Dear Anna,\n', '前略\n'))
    desk.start('letter.txt')
    desk.key('F1')
    desk.wait_for_window(desk.in_words('^Guide$', '^使い方$'))
    desk.picture('keys')
    desk.wait_for_keys()
    desk.key('Escape')
    # And the keys go to the text again.
    desk.wait_for_text_window()
    desk.type('x')
    desk.key('ctrl+s')
    desk.wait_for_file('letter.txt', 'x' + desk.in_words('Dear Anna,\n', '前略\n'))
