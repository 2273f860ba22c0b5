"""A terminal of a given size, and what a program has drawn on it."""

import fcntl
import os
import select
import struct
import subprocess
import termios
import time

import pyte


class Terminal:
    patience = 20

    def __init__(self, command, environment, columns, lines):
        self.screen = pyte.Screen(columns, lines)
        self._stream = pyte.ByteStream(self.screen)
        self._raw = b""
        self._master, slave = os.openpty()
        fcntl.ioctl(slave, termios.TIOCSWINSZ, struct.pack("HHHH", lines, columns, 0, 0))
        self.process = subprocess.Popen(
            command,
            env=environment,
            stdin=slave,
            stdout=slave,
            stderr=slave,
            start_new_session=True,
            preexec_fn=lambda: fcntl.ioctl(0, termios.TIOCSCTTY, 0),
        )
        os.close(slave)

    def _read(self, limit):
        """Draws what the program has written; whether there is more to come."""
        if not select.select([self._master], [], [], limit)[0]:
            return True
        try:
            written = os.read(self._master, 65536)
        except OSError:  # the program has ended, and nobody holds the other side any more
            return False
        self._raw += written
        self._stream.feed(written)
        return bool(written)

    @property
    def lines(self):
        return [line.rstrip() for line in self.screen.display if line.strip()]

    @property
    def raw(self):
        return self._raw.decode()

    def until(self, holds):
        """Waits until that holds for the lines, and returns them."""
        deadline = time.monotonic() + self.patience
        while not holds(self.lines):
            assert time.monotonic() < deadline, "\n".join(self.lines)
            assert self._read(0.1), "it ended with\n" + "\n".join(self.lines)
        return self.lines

    def type(self, text):
        """Types that, once the program waits for it."""
        os.write(self._master, text.encode())

    def at_the_end(self):
        """What stands there when the program has ended."""
        deadline = time.monotonic() + self.patience
        while self._read(0.1):
            assert time.monotonic() < deadline, "it goes on with\n" + "\n".join(self.lines)
        self.process.wait(timeout=self.patience)
        return self.lines

    def interrupt(self):
        """Presses the interrupt key until the program ends: one press that comes before the program
        has begun to read is lost on it."""
        deadline = time.monotonic() + self.patience
        while self.process.poll() is None:
            assert time.monotonic() < deadline, "it goes on with\n" + "\n".join(self.lines)
            self.type("\x03")
            time.sleep(0.05)

    def color(self, text):
        """The colour in which a text is drawn, where it stands first."""
        for number, line in enumerate(self.screen.display):
            if text in line:
                return self.screen.buffer[number][line.index(text)].fg
        raise AssertionError(f"{text} is nowhere")

    def close(self):
        self.process.kill()
        self.process.wait()
        os.close(self._master)
