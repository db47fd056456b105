"""Replace a word everywhere."""


def task(desk):
    text = desk.in_words('The train leaves at noon.\nTake the train, not the bus.\n',
                         'train は正午に出ます。\nバスではなく train に乗ること。\n')
    desk.write('journey.txt', text)
    desk.start('journey.txt')
    desk.key('ctrl+h')
    desk.wait_for_window(desk.in_words('^Replace$', '^置換$'))
    desk.type('train')
    desk.key('Tab')
    desk.type('ship')
    desk.picture('replace-panel')
    desk.key('Tab', 'Tab', 'Tab', 'space')
    desk.wait_for_window(desk.in_words('^Replace All$', '^すべて置換$'))
    # How far it is has the same title as the box that comes at the end.
    desk.still()
    desk.picture('replace-count')
    desk.answer(desk.in_words('^Replace All$', '^すべて置換$'), 'Return')
    desk.wait_for_text_window()
    desk.key('ctrl+s')
    desk.wait_for_file('journey.txt', text.replace('train', 'ship'))
