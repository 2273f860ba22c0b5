"""A shell into which commands are typed, one after the other."""

import os
import pathlib
import re
import select
import signal
import subprocess
import time

END = "--- ended with"


class Shell:
    """What is started in the background goes on until the shell is closed."""

    path = "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin"

    def __init__(self, *started_by, **variables):
        own = {name: value for name, value in os.environ.items() if not name.startswith("RUK_")}
        self.process = subprocess.Popen(
            [*started_by, "bash"],
            env={**own, "LC_ALL": "C.UTF-8", "PATH": self.path, **variables},
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            start_new_session=True,
        )
        self("trap 'kill $(jobs -p) 2>/dev/null; wait' EXIT")

    def __call__(self, command, patience=120):
        """Runs it: what was printed until it ended. Fails unless it succeeds."""
        said, status = self._type(command, patience)
        assert status == 0, f"{command}\n{said}"
        if command.endswith("&"):
            self._pause()
        return said

    def _type(self, command, patience):
        self.process.stdin.write(f"{command}\necho '{END}' $?\n".encode())
        self.process.stdin.flush()
        until = time.monotonic() + patience
        said = b""
        while not (end := re.search(rb"(.*)%b (\d+)\n" % END.encode(), said, re.DOTALL)):
            left = until - time.monotonic()
            assert select.select([self.process.stdout], [], [], max(left, 0))[0], (
                f"{command}\nhas not ended in {patience} s\n{said.decode()}"
            )
            chunk = os.read(self.process.stdout.fileno(), 65536)
            assert chunk, f"{command}\nended the shell\n{said.decode()}"
            said += chunk
        return end[1].decode(), int(end[2])

    def _pause(self):
        """Whoever types takes longer than what was started needs to be ready: until it has waited
        for something for a while."""
        pid = self._type("echo $!", 10)[0].split()[-1]
        threads = pathlib.Path("/proc") / pid / "task"
        idle, until = 0, time.monotonic() + 30
        while idle < 10 and time.monotonic() < until:
            states = [each.read_text().rpartition(")")[2].split()[0] for each in
                      threads.glob("*/stat")]
            assert states, f"{pid} has ended\n{self._type(':', 10)[0]}"
            idle = idle + 1 if set(states) == {"S"} else 0
            time.sleep(0.05)

    def wait_for(self, text, said, patience=10):
        """Waits until what was said, or what something in the background goes on to say, has it."""
        until = time.monotonic() + patience
        while text not in said:
            assert time.monotonic() < until, f"{text!r} was not said\n{said}"
            said += self._type("sleep 0.1", 10)[0]

    def close(self):
        self.process.stdin.close()
        try:
            self.process.wait(timeout=10)
        except subprocess.TimeoutExpired:
            os.killpg(self.process.pid, signal.SIGKILL)
            self.process.wait()
