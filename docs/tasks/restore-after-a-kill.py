"""What was not saved comes back after the program was killed."""

import re


def task(desk):
    desk.write('story.txt', desk.in_words('Once upon a time\n', 'むかしむかし\n'))
    desk.start('story.txt')
    desk.type('A page that nobody saved. ')
    journals = desk.home / '.local/state/marlopad/journals'
    typed = ['nobody saved. '.encode(code) for code in ('utf-8', 'utf-16-le')]
    desk.wait_for(lambda: any(form in file.read_bytes() for file in journals.glob('*') for form in typed), 'a journal')
    desk.kill()
    desk.wait_for_notice(desk.start)
    desk.picture('restore-notice')
    desk.key('F6', 'Return')
    desk.wait_for_window(desk.in_words('^Texts That Were Not Saved$', '^保存されていないテキスト$'))
    desk.picture('restore-list', cover=desk.TIME_IN_LIST)
    desk.key('Return')
    desk.wait_for_text_window()
    desk.picture('restore-done')
    desk.key('ctrl+s')
    desk.wait_for(lambda: re.match('A page that nobody saved. ', desk.read('story.txt')), 'the restored text')
