"""Save a Shift-JIS file in UTF-8, with LF."""


def task(desk):
    text = '日本語のテキスト\r\nShift-JIS, CR+LF\r\n'
    desk.write('old.txt', text, 'cp932')
    desk.start('old.txt')
    desk.wait_for_window(r'\[Shift-JIS\]\[CR\+LF\]')
    desk.picture('code-before')
    desk.key('ctrl+shift+s')
    desk.wait_for_window(desk.in_words('^Save as$', '^名前を付けて保存$'))
    # From the name over its kind to the code and the line end, which the first letters choose.
    desk.key('Tab', 'Tab', 'Tab')
    desk.type('U')
    desk.key('Tab')
    desk.type('L')
    desk.picture('code-choice')
    desk.key('Return')
    desk.answer(desk.in_words('^Replace confirm$', '^置き換えの確認$'), 'Return')
    desk.wait_for_text_window()
    desk.wait_for_window(r'\[UTF8\]\[LF\]')
    desk.wait_for_file('old.txt', text.replace('\r\n', '\n'))
    desk.picture('code-after')
