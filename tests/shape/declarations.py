"""The functions and data that C headers declare for others to link to.

The compiler preprocesses; what is left of the headers' own lines is plain declarations, of which
only the shape matters here.
"""

import re
import subprocess
from pathlib import Path

LINE_MARKER = re.compile(r'#\s+\d+\s+"([^"]*)"')
ATTRIBUTE = re.compile(r"__attribute__\s*")
IDENTIFIER = re.compile(r"[A-Za-z_]\w*")


def declared_names(compiler, header, include_dirs):
    """Names with external linkage that `header`, or a header beside or below it, declares."""
    text = without_attributes(own_lines(compiler, header, include_dirs))
    return {name for name in map(declared_name, without_bodies(text).split(";")) if name}


def own_lines(compiler, header, include_dirs):
    """The preprocessed lines that come from `header` or from below its directory."""
    command = [*compiler, "-E", "-x", "c", "-std=c11", str(header)]
    command += [f"-I{directory}" for directory in include_dirs]
    output = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    home = Path(header).resolve().parent
    lines, ours = [], False
    for line in output.splitlines():
        marker = LINE_MARKER.match(line)
        if marker:
            ours = home in Path(marker.group(1)).resolve().parents
        elif ours:
            lines.append(line)
    return "\n".join(lines)


def without_attributes(text):
    while match := ATTRIBUTE.search(text):
        text = text[: match.start()] + text[closing(text, match.end(), "(", ")") :]
    return text


def without_bodies(text):
    """Drops what is within braces; a function's body also ends its declaration."""
    while (start := text.find("{")) >= 0:
        end = closing(text, start, "{", "}")
        is_function = text[:start].rstrip().endswith(")")
        text = text[:start] + (";" if is_function else " ") + text[end:]
    return text


def closing(text, start, opening_mark, closing_mark):
    """Where the bracket that opens at `start` has closed."""
    depth = 0
    for at in range(start, len(text)):
        depth += (text[at] == opening_mark) - (text[at] == closing_mark)
        if depth == 0:
            return at + 1
    raise ValueError(f"{opening_mark} without {closing_mark}: {text[start:start + 80]!r}")


def declared_name(declaration):
    """The name that a declaration declares; None for types and for what nobody links to."""
    words = IDENTIFIER.findall(declaration)
    if not words or {"typedef", "static", "_Static_assert"} & set(words):
        return None
    head, parenthesis, _ = declaration.partition("(")
    if parenthesis:
        return IDENTIFIER.findall(head)[-1]
    if words[0] != "extern":
        return None
    return IDENTIFIER.findall(declaration.partition("[")[0])[-1]
