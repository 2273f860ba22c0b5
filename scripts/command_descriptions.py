"""The commands as docs/commands/*.toml describe them, byte by byte.

A file is a family, the one of the header of that name. A [[command]] is one exchange:

    name       as IPMI calls it, or what it is about
    functions  those that send it
    netfn_cmd  network function << 8 | command
    sent_as    where a request's netfn_cmd is another
    request    the payload's fields; none when it is left out
    answer     the answer's fields; when it is left out, the completion code alone
    corrected  true where the output is not the answer's fields as they come
    example    a request and its answer, as a unit test has them; an ellipsis stands for the rest

A field is [name, type] or [name, type, what there is to say about it]. The types:

    u8, u16, u32               a number, least significant byte first; handed over in host order
    u16 = 3                    one that is always the same
    6 bytes, 0-487 bytes       bytes as they are; a field of several lengths is the last one
    16 characters              a text
    43 4C 52                   bytes that are always the same
    10 zeros                   likewise
    one of 00-02 D1            a byte that is one of these

The name of a field that may be missing, or be cut short, with all behind it, ends with "?".
"""

import dataclasses
import pathlib
import re
import tomllib

DIRECTORY = pathlib.Path(__file__).resolve().parents[1] / "docs/commands"
ELLIPSIS = "…"

NUMBER = re.compile(r"u(8|16|32)(?: = (\d+))?")
BYTES = re.compile(r"(?:(\d+)-)?(\d+) (bytes?|characters)")
ZEROS = re.compile(r"(\d+) zeros")
FIXED = re.compile(r"[0-9A-F]{2}(?: [0-9A-F]{2})*")
CHOICE = re.compile(r"one of ((?:[0-9A-F]{2}(?:-[0-9A-F]{2})? ?)+)")


@dataclasses.dataclass(frozen=True)
class Field:
    name: str
    kind: str
    about: str
    may_be_missing: bool
    least: int
    most: int
    fixed: bytes | None = None
    choices: frozenset[int] | None = None

    @property
    def is_number(self):
        return self.kind.startswith("u")

    def admits(self, part):
        if self.may_be_missing and len(part) < self.least:
            return True
        return (self.least <= len(part) <= self.most
                and self.fixed in (None, part)
                and (self.choices is None or part[0] in self.choices))


@dataclasses.dataclass(frozen=True)
class Command:
    family: str
    name: str
    about: str
    functions: tuple[str, ...]
    netfn_cmd: int
    sent_as: int
    request: tuple[Field, ...]
    answer: tuple[Field, ...]
    corrected: bool
    example: tuple[str, ...]


@dataclasses.dataclass(frozen=True)
class Family:
    name: str
    title: str
    about: str
    commands: tuple[Command, ...]


def sizes_of(kind):
    """What a type says of a field's bytes: least, most, and what is always the same."""
    if found := NUMBER.fullmatch(kind):
        size = int(found[1]) // 8
        return size, size, found[2] and int(found[2]).to_bytes(size, "little"), None
    if found := BYTES.fullmatch(kind):
        return int(found[1] or found[2]), int(found[2]), None, None
    if found := ZEROS.fullmatch(kind):
        return int(found[1]), int(found[1]), bytes(int(found[1])), None
    if FIXED.fullmatch(kind):
        fixed = bytes.fromhex(kind)
        return len(fixed), len(fixed), fixed, None
    if found := CHOICE.fullmatch(kind):
        choices = set()
        for each in found[1].split():
            first, _, last = each.partition("-")
            choices.update(range(int(first, 16), int(last or first, 16) + 1))
        return 1, 1, None, frozenset(choices)
    raise ValueError(f"no such type of field: {kind}")


def field_of(row):
    name, kind, about = [*row, ""][:3]
    return Field(name.rstrip("?"), kind, about, name.endswith("?"), *sizes_of(kind))


def command_of(family, row):
    fields = [tuple(field_of(each) for each in row.pop(key, default))
              for key, default in (("request", []), ("answer", [["completion_code", "u8"]]))]
    for some in fields:
        if any(field.least != field.most for field in some[:-1]):
            raise ValueError(f"{row['name']}: a field of several lengths that is not the last one")
    netfn_cmd = row.pop("netfn_cmd")
    return Command(family, row.pop("name"), row.pop("about", ""), tuple(row.pop("functions")),
                   netfn_cmd, row.pop("sent_as", netfn_cmd), *fields, row.pop("corrected", False),
                   tuple(row.pop("example", ())), **row)


def family_of(path):
    described = tomllib.loads(path.read_text())
    return Family(path.stem, described["title"], described["about"],
                  tuple(command_of(path.stem, row) for row in described["command"]))


def families():
    return [family_of(path) for path in sorted(DIRECTORY.glob("*.toml"))]


def split(fields, data):
    """The data's part for each field, None when it is not made of these fields."""
    parts = []
    at = 0
    for field in fields:
        if at == len(data) and field.may_be_missing:
            break
        part = data[at:at + field.most]
        if not field.admits(part):
            return None
        parts.append(part)
        at += len(part)
    return parts if at == len(data) else None


def exemplary(text):
    """The bytes of an example, and whether there are more."""
    return bytes.fromhex(text.removesuffix(ELLIPSIS)), text.endswith(ELLIPSIS)
