"""Runs a command on a pseudo-terminal and draws what stands there at its end as SVG.

    terminal_picture.py FILE LANGUAGE [-i SECONDS] COMMAND ARGUMENT...

LANGUAGE is en, ru or uk. With -i the command gets Ctrl-C after so many seconds. Called by
scripts/pictures.
"""

import fcntl
import io
import os
import pty
import select
import struct
import sys
import termios
import time

import pyte
from rich.console import Console
from rich.text import Text

COLUMNS = 112
LINES = 60
INTERRUPT = b"\x03"
LOCALES = {"en": "en_US.UTF-8", "ru": "ru_RU.UTF-8", "uk": "uk_UA.UTF-8"}


def run(command, language, interrupt_after):
    """The lines of the terminal at the end of the command."""
    pid, terminal = pty.fork()
    if pid == 0:
        fcntl.ioctl(0, termios.TIOCSWINSZ, struct.pack("HHHH", LINES, COLUMNS, 0, 0))
        os.environ["LC_ALL"] = LOCALES[language]
        os.execvp(command[0], command)
    screen = pyte.Screen(COLUMNS, LINES)
    stream = pyte.ByteStream(screen)
    end = time.monotonic() + interrupt_after if interrupt_after else None
    while True:
        if end and time.monotonic() > end:
            os.write(terminal, INTERRUPT)
            end = None
        if not select.select([terminal], [], [], 0.2)[0]:
            continue
        try:
            stream.feed(os.read(terminal, 65536))
        except OSError:  # The command has closed its end.
            break
    os.waitpid(pid, 0)
    os.close(terminal)
    lines = [line.rstrip() for line in screen.display]
    while lines and not lines[-1]:
        lines.pop()
    return lines


def main():
    file, language, *command = sys.argv[1:]
    interrupt_after = None
    if command[0] == "-i":
        interrupt_after = float(command[1])
        command = command[2:]
    lines = ["$ " + " ".join(command)] + run(command, language, interrupt_after)
    console = Console(record=True, width=COLUMNS, file=io.StringIO())
    for line in lines:
        console.print(Text(line), soft_wrap=True)
    console.save_svg(file, title=command[0])


main()
