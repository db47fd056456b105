"""A desk to try the program at: a virtual screen, a window manager, a message bus and a home that goes away.

A script is a function that gets the desk and carries something out with keys and the mouse, as a person would. It
checks what comes of it, and takes pictures on the way. tools/tasks and tools/pictures run such scripts.
"""

import hashlib
import os
import pathlib
import re
import runpy
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
PACKAGES = 'pcmanfm optipng'  # beside those of ./run
HOME = '/mnt/home'  # of whoever sits at the desk; pictures show it
PATIENCE = 60  # seconds after which something that has to come does not come any more
BLINK = 1.2  # seconds in which a cursor was both seen and not seen
LANGUAGES = {'en': 0, 'ja': 1}


def need_packages():
    """Says what it installs."""
    setup = shlex.quote(str(ROOT / 'tools/setup.sh'))
    subprocess.run(['sh', '-c', f'. {setup}; need $show_packages {PACKAGES}'], check=True)


def enter_namespace():
    """Runs this program again with a bus and, where that is allowed, in a home that is called the same everywhere."""
    if os.environ.get('MARLOPAD_DESK'):
        return
    os.environ['MARLOPAD_DESK'] = '1'
    # The bus complains of limits that it has there; what this program says goes through.
    again = ['sh', '-c', 'exec dbus-run-session -- sh -c \'exec "$@" 2>&3\' sh "$@" 3>&2 2>/dev/null', 'sh',
             sys.executable, '-B', *sys.argv]
    own = ['unshare', '--user', '--map-root-user', '--mount']
    mount = ['mount', '-t', 'tmpfs', 'none', '/mnt']
    if subprocess.run([*own, *mount], capture_output=True, check=False).returncode == 0:
        again = [*own, 'sh', '-c', f'{shlex.join(mount)} && exec "$@"', 'sh', *again]
    os.execvp(again[0], again)


def tasks():
    """The everyday tasks by their names."""
    return {file.stem: runpy.run_path(str(file))['task'] for file in sorted((ROOT / 'docs/tasks').glob('*.py'))}


def run(*command, check=True):
    return subprocess.run(command, check=check, capture_output=True, text=True).stdout.strip()


def wait_for(condition, what):
    end = time.monotonic() + PATIENCE
    while True:
        found = condition()
        if found:
            return found
        if time.monotonic() > end:
            raise AssertionError(f'waited in vain for {what}')
        time.sleep(0.05)


class Desk:
    """One language, one home, one screen."""

    SAVED = 1120471200  # when the files on the desk were written, 2005-07-04
    TIME_IN_LIST = (186, 96, 147, 18)  # of the first text in the list of those that were not saved
    STRIP = (618, 58, 18, 20)  # the end of the line above the text, which notices appear in
    wait_for = staticmethod(wait_for)

    def __init__(self, program, language, pictures, size='640x480'):
        self.program = program
        self.language = language
        self.pictures = pictures
        self.editor = None
        self.others = []
        self._start_screen(size)
        self._make_home()

    def _start_screen(self, size):
        read, write = os.pipe()
        self.screen = subprocess.Popen(
            ['Xvfb', '-displayfd', str(write), '-screen', '0', f'{size}x24', '-dpi', '96', '-noreset', '-nolisten', 'tcp'],
            pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as told:
            os.environ['DISPLAY'] = ':' + told.readline().strip()
        os.environ.pop('WAYLAND_DISPLAY', None)

    def _make_home(self):
        self.home = pathlib.Path(HOME if os.path.ismount('/mnt') and os.access('/mnt', os.W_OK) else tempfile.mkdtemp())
        shutil.rmtree(self.home, ignore_errors=True)
        self.documents = self.home / 'Documents'
        self.documents.mkdir(parents=True)
        (self.home / 'run').mkdir(mode=0o700)
        for variable in [name for name in os.environ if name.startswith('XDG_') or name.startswith('QT_')]:
            del os.environ[variable]
        os.environ.update(HOME=str(self.home), XDG_RUNTIME_DIR=str(self.home / 'run'), LC_ALL='C.UTF-8', TZ='UTC')
        os.chdir(self.documents)
        self.settings = self.home / '.config/marlopad.conf'
        self.settings.parent.mkdir()
        self.set()
        self.manager = subprocess.Popen(['openbox'], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_for(lambda: run('xdotool', 'set_num_desktops', '1', 'get_num_desktops', check=False) == '1', 'openbox')
        run('xdotool', 'mousemove', '0', '0')

    def set(self, main='', more=''):
        """The settings of a start: lines of their groups."""
        language = LANGUAGES[self.language]
        self.settings.write_text(
            f'[main]\nLang = {language}\nLangOffered = 1\nCodecOffered = 1\n{main}\n[more]\n{more}\n')

    def leave(self):
        self.end()
        for process in [*self.others, self.screen, self.manager]:
            process.kill()
            process.wait()
        os.chdir('/')
        shutil.rmtree(self.home, ignore_errors=True)

    # Files

    def in_words(self, en, ja):
        return {'en': en, 'ja': ja}[self.language]

    def write(self, name, content, code='utf-8'):
        file = self.documents / name
        file.write_bytes(content.encode(code))
        os.utime(file, (self.SAVED, self.SAVED))
        return name

    def read(self, name, code='utf-8'):
        return (self.documents / name).read_bytes().decode(code)

    def wait_for_file(self, name, content, code='utf-8'):
        def holds():
            try:
                return (self.documents / name).read_bytes() == content.encode(code)
            except FileNotFoundError:
                return False
        try:
            wait_for(holds, name)
        except AssertionError:
            file = self.documents / name
            found = file.read_bytes() if file.exists() else 'no file'
            raise AssertionError(f'{name} is {found!r} and not {content!r}') from None

    # The program

    def start(self, *words):
        """As from a shell, in the folder of the documents; waits until it shows a document and takes keys."""
        self.editor = subprocess.Popen([self.program, *words], stderr=subprocess.PIPE)
        self.wait_for_window(r'^Marlo!Pad QT  \[')
        self.wait_for_keys()

    def start_again(self, *words):
        """A second start, which hands its words to the first."""
        subprocess.run([self.program, *words], check=True, timeout=PATIENCE)
        self.wait_for_keys()

    def end(self):
        if not self.editor:
            return
        self.editor.send_signal(signal.SIGTERM)
        self._has_ended()

    def kill(self):
        self.editor.kill()
        self._has_ended()

    def quit(self):
        """By its own key."""
        self.key('ctrl+q')
        self._has_ended()

    def _has_ended(self):
        editor, self.editor = self.editor, None
        said = editor.communicate(timeout=PATIENCE)[1].decode()
        if said:
            raise AssertionError(f'The program said: {said}')

    def wait_for_keys(self):
        """The program answers each call in a turn of its own; some turns later what was loaded takes keys."""
        for _ in range(20):
            run('dbus-send', '--session', '--print-reply', '--dest=QPE.Application.marlopad',
                '/QPE/Application/marlopad', 'QPE.Application.ping')

    def title(self):
        return run('xdotool', 'getactivewindow', 'getwindowname', check=False)

    def wait_for_window(self, pattern):
        """The window in front has this title."""
        wait_for(lambda: re.search(pattern, self.title()), f'the window {pattern}, not {self.title()}')

    def wait_for_text_window(self):
        self.wait_for_window(r'^Marlo!Pad QT  \[')
        self.wait_for_keys()

    # Keys and mouse

    def key(self, *keys):
        run('xdotool', 'key', '--clearmodifiers', *keys)

    def type(self, text):
        run('xdotool', 'type', '--delay', '20', text)

    def answer(self, pattern, key):
        """Message boxes answer when there was time to read them: the key is pressed until the box is gone."""
        self.wait_for_window(pattern)
        box = wait_for(lambda: run('xdotool', 'getactivewindow', check=False), 'a window')
        def is_gone():
            if run('xdotool', 'getactivewindow', check=False) != box:
                return True
            run('xdotool', 'key', '--window', box, key, check=False)
            time.sleep(0.2)
            return False
        wait_for(is_gone, f'the end of {pattern}')

    def click(self, x, y, button=1):
        run('xdotool', 'mousemove', str(x), str(y), 'click', str(button))

    def drag(self, start, end, on_the_way=None):
        """With the left button, in steps, as a hand does."""
        run('xdotool', 'mousemove', *map(str, start), 'mousedown', '1')
        steps = 20
        for step in range(1, steps + 1):
            x, y = (round(a + (b - a) * step / steps) for a, b in zip(start, end))
            run('xdotool', 'mousemove', str(x), str(y))
            time.sleep(0.02)
        if on_the_way:
            on_the_way()
        run('xdotool', 'mouseup', '1')

    def wait_for_notice(self, act):
        """What `act` does brings a notice up, or another one."""
        before = self.grab(self.STRIP)
        act()
        wait_for(lambda: self.grab(self.STRIP) != before, 'a notice')

    def show_folder(self, x, y, width, height):
        """A file manager shows the documents, and nothing else."""
        looks = self.home / '.config/pcmanfm/default/pcmanfm.conf'
        looks.parent.mkdir(parents=True)
        looks.write_text('[ui]\nside_pane_mode=hidden\nshow_statusbar=0\ntoolbar=hidden\n')
        self.others.append(subprocess.Popen(
            ['pcmanfm', '--no-desktop', str(self.documents)], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
        self.place('^Documents$', x, y, width, height)
        self.still()

    def place(self, pattern, x, y, width, height):
        window = wait_for(lambda: run('xdotool', 'search', '--onlyvisible', '--name', pattern, check=False),
                          pattern).split()[0]
        run('xdotool', 'windowsize', window, str(width), str(height), 'windowmove', window, str(x), str(y))

    # Pictures

    def picture(self, name, crop=None, cover=None):
        """The screen when it has come to rest, or a part of it: x, y, width, height. What is different each time is covered
        with the colour that it begins with."""
        if self.pictures:
            self.write_picture(name, self.still(crop), cover)

    def still(self, crop=None):
        """What is seen when nothing moves but the cursor, which is shown or not alike each time."""
        end = time.monotonic() + PATIENCE
        images, seen, still_since = {}, {}, 0
        while not images or time.monotonic() - still_since < BLINK:
            if time.monotonic() > end:
                raise AssertionError('the screen does not come to rest')
            image = self.grab(crop)
            kind = hashlib.sha256(image).hexdigest()
            seen[kind] = time.monotonic()
            if kind not in images:
                images[kind], still_since = image, seen[kind]
        return images[min(kind for kind in images if seen[kind] >= still_since)]

    @staticmethod
    def grab(crop=None):
        command = ['import', '-silent', '-window', 'root']
        if crop:
            x, y, width, height = crop
            command += ['-crop', f'{width}x{height}+{x}+{y}', '+repage']
        return subprocess.run([*command, 'ppm:-'], check=True, capture_output=True).stdout

    def write_picture(self, name, image, cover=None):
        file = pathlib.Path(self.pictures) / self.language / f'{name}.png'
        file.parent.mkdir(parents=True, exist_ok=True)
        if cover:
            x, y, width, height = cover
            begin = f'%[pixel:p{{{x},{y}}}]'
            colour = subprocess.run(['convert', 'ppm:-', '-format', begin, 'info:'], input=image, check=True,
                                    capture_output=True).stdout.decode()
            image = subprocess.run(['convert', 'ppm:-', '-fill', colour, '-draw',
                                    f'rectangle {x},{y} {x + width},{y + height}', 'ppm:-'],
                                   input=image, check=True, capture_output=True).stdout
        subprocess.run(['convert', 'ppm:-', '-strip', '-colors', '64', '+dither', f'png8:{file}'], input=image, check=True)
        subprocess.run(['optipng', '-quiet', '-strip', 'all', '-o5', str(file)], check=True)


def carry_out(scripts, program, pictures, languages=tuple(LANGUAGES)):
    """Each script in each language; tells what fails. True if nothing does."""
    program = str(pathlib.Path(program).resolve())  # each desk begins and ends in another folder
    failures = 0
    for name, script in scripts.items():
        for language in languages:
            desk = Desk(program, language, pictures, getattr(script, 'size', '640x480'))
            try:
                script(desk)
                result = 'ok'
            except (AssertionError, subprocess.SubprocessError) as failure:
                result = failure
                failures += 1
                if desk.pictures:
                    desk.write_picture(f'{name}-failed', desk.grab())
            finally:
                desk.leave()
            print(f'{name} ({language}): {result}', flush=True)
    return failures == 0
