"""Find a word, and the next one."""

import re


def task(desk):
    text = desk.in_words('Bread, milk, apples.\nNo bread on Sunday.\nApples for the cake.\n',
                         'パン、milk、りんご。\n日曜は bread なし。\nケーキに milk を使う。\n')
    word, second = desk.in_words(('apples', 2), ('milk', 2))
    desk.write('shopping.txt', text)
    desk.start('shopping.txt')
    desk.key('ctrl+f')
    desk.wait_for_window(desk.in_words('^Search$', '^検索$'))
    desk.type(word)
    desk.picture('find-panel')
    desk.key('Return')
    desk.picture('find-hit')
    desk.key('Escape')
    desk.wait_for_text_window()
    # The next one is selected then: Delete takes away that one.
    desk.key('F3', 'Delete', 'ctrl+s')
    lines = text.split('\n')
    lines[second] = re.sub(word, '', lines[second], flags=re.IGNORECASE)
    desk.wait_for_file('shopping.txt', '\n'.join(lines))
