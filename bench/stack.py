"""How much stack the library's commands take, from the compiler's report of the frame of each
function and of its calls."""

import re

NODE = re.compile(r'node: \{ title: "(.*?)" label: "(.*?)"')
EDGE = re.compile(r'edge: \{ sourcename: "(.*?)" targetname: "(.*?)"')
FRAME = re.compile(r"\\n(\d+) bytes \((.*?)\)")


class Calls:
    """Who calls whom, and the frames. Functions of the platform and of libc have none: their stack
    is their own affair. The caller's frame counts even if it is gone when a call is the last."""

    def __init__(self, build):
        self.frames, self.callees, self.commands = {}, {}, set()
        self.deepest_known = {}
        for report in sorted(build.rglob("*.ci")):
            self.read(report.read_text(), report.parent.name == "commands")

    def read(self, report, of_commands):
        frames = {}
        for name, label in NODE.findall(report):
            if frame := FRAME.search(label):
                if frame[2] != "static":
                    raise ValueError(f"the frame of {name} has no fixed size")
                frames[name] = int(frame[1])
        for caller, callee in EDGE.findall(report):
            self.callees.setdefault(caller, set()).add(callee)
        self.frames.update(frames)
        if of_commands:
            self.commands.update(name for name in frames if not name.startswith("_Z"))

    def defined(self, function):
        """The name under which a function is defined: a constructor is called by another."""
        other_name = re.sub(r"C1(?=[EI])", "C2", function)
        return function if function in self.frames else other_name

    def deepest(self, function, callers=()):
        """The path from a function downwards that takes the most stack: bytes and functions."""
        function = self.defined(function)
        if function not in self.frames:
            if function == "__indirect_call" or "3ruk" in function:
                raise ValueError(f"{callers[-1]} calls {function}, of which nothing is known")
            return 0, ()
        if function in callers:
            raise ValueError(f"{function} calls itself")
        if function not in self.deepest_known:
            path = (*callers, function)
            below = [self.deepest(callee, path) for callee in self.callees.get(function, ())]
            size, functions = max(below, default=(0, ()))
            self.deepest_known[function] = self.frames[function] + size, (function, *functions)
        return self.deepest_known[function]


def greatest(build):
    """Of all commands: the bytes, and the path of functions that takes them."""
    calls = Calls(build)
    return max(calls.deepest(each) for each in calls.commands)
