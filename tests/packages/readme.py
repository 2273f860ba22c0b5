"""README's blocks, as a newcomer takes them."""

import pathlib
import re

TREE = pathlib.Path(__file__).resolve().parents[2]
TEXT = (TREE / "README.md").read_text()


def blocks():
    """Every block that names its language: the language, the text, and what a newcomer saves it as,
    which is the next name of such a file in README."""
    for each in re.finditer(r"^```(\w+)\n(.*?)^```", TEXT, re.DOTALL | re.MULTILINE):
        language, text = each.groups()
        name = re.search(rf"[\w-]+\.{language}\b", TEXT[each.end():])
        yield language, text, "CMakeLists.txt" if language == "cmake" else name and name[0]


def program(name):
    """The text of the program that is saved by this name."""
    (text,) = [text for _, text, saved_as in blocks() if saved_as == name]
    return text


def commands(text):
    """The commands of a block of them, each with the lines that it goes on in."""
    for line in text.replace("\\\n", " ").splitlines():
        command = line.partition(" #")[0].strip()
        if command:
            yield command
