"""Larger text, for all documents and from now on."""


def task(desk):
    desk.write('letter.txt', desk.in_words('Dear Anna,\n', '前略\n'))
    desk.start('letter.txt')
    desk.key('ctrl+plus', 'ctrl+plus', 'ctrl+plus')
    desk.picture('size-by-keys')
    desk.key('alt+e', 'o')
    desk.wait_for_window(desk.in_words('^Options$', '^オプション$'))
    desk.key('alt+s')
    desk.type('32')
    desk.picture('size-in-options')
    desk.key('Return')
    desk.wait_for_text_window()
    desk.picture('size-done')
    desk.quit()
    assert 'FontSize = 32\n' in desk.settings.read_text(), desk.settings.read_text()
