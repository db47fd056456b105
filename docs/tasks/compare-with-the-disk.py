"""See what another program has written to the file of a document, beside what one has written oneself."""


def task(desk):
    mine, theirs = desk.in_words(('My plan\n', 'Their plan\n'), ('私の案\n', 'ほかの人の案\n'))
    desk.write('plan.txt', mine)
    desk.start('plan.txt')
    desk.type('x')
    desk.wait_for_notice(lambda: (desk.documents / 'plan.txt').write_text(theirs))
    desk.picture('compare-notice')
    desk.key('F6', 'Right', 'Right', 'Return')
    desk.wait_for_keys()
    desk.picture('compare-theirs')
    # The other version is a document of its own, beside mine.
    desk.key('ctrl+shift+s')
    desk.wait_for_window(desk.in_words('^Save as$', '^名前を付けて保存$'))
    desk.key('Tab', 'ctrl+a')
    desk.type('theirs.txt')
    desk.key('Return')
    desk.wait_for_file('theirs.txt', theirs)
    desk.wait_for_text_window()
    desk.key('ctrl+Tab')
    desk.picture('compare-mine')
    desk.key('ctrl+s')
    desk.wait_for_file('plan.txt', 'x' + mine)
    # What was written over is kept, and the line above the text says so.
    kept = list((desk.home / '.local/state/marlopad').glob('kept-*-plan.txt'))
    assert [file.read_text() for file in kept] == [theirs], kept
    desk.picture('compare-kept')
