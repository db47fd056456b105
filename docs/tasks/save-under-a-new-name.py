"""Save a document under another name."""


def task(desk):
    text = desk.in_words('Dear Anna,\n', '前略\n')
    desk.write('letter.txt', text)
    desk.start('letter.txt')
    desk.key('ctrl+shift+s')
    desk.wait_for_window(desk.in_words('^Save as$', '^名前を付けて保存$'))
    desk.key('Tab', 'ctrl+a')
    desk.type('letter to Anna.txt')
    desk.picture('save-name')
    desk.key('Return')
    desk.wait_for_text_window()
    desk.wait_for_file('letter to Anna.txt', text)
    desk.picture('save-done')
    # It is the new file that goes on.
    desk.type('x')
    desk.key('ctrl+s')
    desk.wait_for_file('letter to Anna.txt', 'x' + text)
    desk.wait_for_file('letter.txt', text)
