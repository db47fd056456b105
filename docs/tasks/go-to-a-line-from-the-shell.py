"""Open a file at a line that a compiler has named."""


def task(desk):
    line = desk.in_words('Line {}', '{}行目')
    lines = [line.format(number) for number in range(1, 41)]
    desk.write('report.txt', '\n'.join(lines) + '\n')
    desk.start('report.txt:25')
    desk.picture('line-25')
    desk.start_again('+7:3', 'report.txt')
    desk.picture('line-7')
    desk.type('x')
    desk.key('ctrl+s')
    lines[6] = lines[6][:2] + 'x' + lines[6][2:]
    desk.wait_for_file('report.txt', '\n'.join(lines) + '\n')
