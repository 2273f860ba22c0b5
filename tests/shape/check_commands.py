#!/usr/bin/python3
"""Holds the descriptions of the commands, docs/commands/*.toml, to what the unit tests exchange.

Two results of tests, as GoogleTest writes them, tell what is exchanged: those of the scripted
platform have every request that a test expects and its answer, those of every function what it
sends when its arguments are drawn from bytes that count up. So:

  - the functions that are described are those of the headers that send something, each with its
    network functions and commands;
  - a field with the name of an argument or of a record's member is as wide as that one;
  - each request that a function sends, and each one that a test expects, is made of the fields of a
    description, and each description has such an exchange for its example;
  - a field of a request that is not always the same is seen to be different at times;
  - a number drawn from bytes that count up is sent least significant byte first, and one in an
    answer is handed over in the host's order.

What no exchange can tell is known and listed.
"""

import argparse
import json
import pathlib
import re
import sys
from collections import defaultdict

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "scripts"))

from command_descriptions import exemplary, families, split  # noqa: E402

# Numbers of which no exchange tells that they travel least significant byte first: lengths and
# offsets that the library computes, those in a caller's block, and the efficiency, which is no
# number in the call. The tests' payloads hold there, on hosts of either order.
UNTOLD = {
    ("Read a piece", "offset"),
    ("Write a piece", "offset"),
    ("CPLD access", "number"),
    ("Connection information: whole, or its beginning", "count"),
    ("Connection information: whole, or its beginning", "length"),
    ("Connection information: going on", "count"),
    ("Connection information: going on", "offset"),
    ("Chassis information", "data length"),
    ("Chassis information", "second number"),
    ("Storage information", "data length"),
    ("Storage information", "second number"),
    ("Set efficiency", "all of it"),
    ("Set efficiency", "efficiency"),
    ("Power and thermal management", "len"),
    ("Power and thermal management", "offset"),
    ("Physical location: a text", "len"),
    ("Physical location: a text", "length"),
    ("Set the configuration", "crc"),
}

# Outputs that are not the answer's fields one behind the other, so that their numbers are not seen
# here but in tests of their own.
OTHERWISE_HANDED_OVER = {"Miscellaneous IMC event", "Power drawn"}

# The requests of these tests are not a command function's.
NOT_OF_COMMANDS = {"async_test.cpp", "callback_thread_test.cpp", "exchange_test.cpp",
                   "frame_test.cpp", "lifecycle_test.cpp"}


class Findings:
    def __init__(self):
        self.wrong = {}

    def insist(self, rule, text):
        if not rule:
            self.wrong[text] = None


def tests_of(path):
    return [test for suite in json.loads(path.read_text())["testsuites"]
            for test in suite["testsuite"]]


def exchange_of(text):
    netfn_cmd, *data = text.split(":")
    return int(netfn_cmd, 16), *map(bytes.fromhex, data)


def exchanges_of(test, key):
    return [exchange_of(each) for each in test.get(key, "").split(";") if each]


def declared():
    """The functions that send something, and the requests that their headers tell."""
    found = {}
    header = None
    for line in (ROOT / "docs/functions.md").read_text().splitlines():
        if line.startswith("## "):
            header = line[3:].removesuffix(".h")
        columns = [each.strip() for each in line.split("|")]
        requests = re.findall(r"0x(\w\w) 0x(\w\w)", columns[2]) if len(columns) > 2 else []
        if requests:
            told = {int("".join(each), 16) for each in requests}, columns[3]
            found.update({name: (header, *told) for name in re.findall(r"`(\w+)`", columns[1])})
    return found


def check_functions(commands, findings):
    described = defaultdict(list)
    for command in commands:
        for function in command.functions:
            described[function].append(command)
    told = declared()
    for function in sorted(told.keys() ^ described.keys()):
        findings.insist(False, f"{function}: not both declared with a request and described")
    for function in sorted(told.keys() & described.keys()):
        header, netfn_cmds, payload = told[function]
        mine = described[function]
        findings.insist({each.family for each in mine} == {header},
                        f"{function}: described elsewhere than declared")
        findings.insist({each.netfn_cmd for each in mine} == netfn_cmds,
                        f"{function}: not the network function and command of its header")
        if size := re.fullmatch(r"(\d+) bytes?", payload):
            sizes = {sum(field.least for field in each.request) for each in mine}
            findings.insist(sizes == {int(size[1])}, f"{function}: its header says {payload}")
    return described


def declared_sizes(family):
    """Of each argument and member that the family's header declares, how many bytes of it can
    travel; None where the header does not say it."""
    widths = {"uint8_t": {1}, "uint16_t": {2}, "uint32_t": {1, 4}}  # of flags the low byte travels
    sizes = defaultdict(set)
    header = (ROOT / f"include/ruk_ipmi/{family}.h").read_text()
    declared = re.compile(r"(uint\d+_t|char) (\*?)(\w+)(?:\[(\w+)\])?[;,)]")
    for kind, star, name, count in declared.findall(header):
        if star or count and not count.isdigit():
            sizes[name].add(None)
        else:
            sizes[name].update(range(1, int(count) + 1) if count else widths[kind])
    return sizes


def check_sizes(commands, findings):
    for family in {command.family for command in commands}:
        sizes = declared_sizes(family)
        for command in commands:
            for field in command.request + command.answer:
                if command.family == family and field.name in sizes:
                    findings.insist(sizes[field.name] & {None, field.least, field.most},
                                    f"{command.name}: {field.name} is declared with another width")


def check_order(command, parts, findings):
    """Whether numbers are sent as described: those that were drawn from bytes that count up, with
    no 0 or 1 put among them. Blocks are drawn otherwise."""
    told = set()
    for at, (field, part) in enumerate(zip(command.request, parts)):
        steps = {after - before for before, after in zip(part, part[1:])}
        if min(part, default=0) > 1 and steps in ({1}, {-1}):
            told.add(at)
            findings.insist(field.is_number, f"{command.name}: {field.name} is a number")
            findings.insist(steps == {1}, f"{command.name}: {field.name} is sent most significant "
                                          "byte first")
    return told


def check_requests(path, described, findings):
    """What each function sends: the vectors of each command, and the numbers whose order they
    tell."""
    vectors = defaultdict(list)
    told = defaultdict(set)
    seen = set()
    for test in tests_of(path):
        function = test["name"].rpartition("/")[2]
        for netfn_cmd, payload in exchanges_of(test, "requests"):
            seen.add(function)
            matches = [(each, parts) for each in described[function] if each.sent_as == netfn_cmd
                       and (parts := split(each.request, payload)) is not None]
            findings.insist(matches, f"{function}: sends what is not described: "
                                     f"{netfn_cmd:04X} {payload.hex(' ')}")
            for command, parts in matches:
                vectors[command].append(parts)
                told[command] |= check_order(command, parts, findings)
    for function in sorted(described.keys() - seen):
        findings.insist(False, f"{function}: not seen to send anything")
    return vectors, told


def golden_exchanges(path):
    return {exchange for test in tests_of(path)
            if pathlib.Path(test["file"]).name not in NOT_OF_COMMANDS
            for exchange in exchanges_of(test, "exchanges")}


def is_like(data, example):
    start, goes_on = exemplary(example)
    return data.startswith(start) if goes_on else data == start


def check_golden(goldens, commands, vectors, findings):
    for netfn_cmd, payload, answer in sorted(goldens):
        matches = [(each, parts) for each in commands if each.sent_as == netfn_cmd
                   and (parts := split(each.request, payload)) is not None]
        findings.insist(matches, f"a test expects what is not described: "
                                 f"{netfn_cmd:04X} {payload.hex(' ')}")
        for command, parts in matches:
            vectors[command].append(parts)
    for command in commands:
        if len(command.example) != 2:
            findings.insist(False, f"{command.name}: has no example")
            continue
        like = [answer for netfn_cmd, payload, answer in goldens if netfn_cmd == command.sent_as
                and is_like(payload, command.example[0]) and is_like(answer, command.example[1])
                and split(command.request, payload) is not None]
        findings.insist(like, f"{command.name}: no test has its example")
        findings.insist(any(answers(command, answer) for answer in like),
                        f"{command.name}: the answer of its example is not made of its fields")


def answers(command, data):
    """Whether an answer is made of the command's fields; it may have more behind them."""
    whole = sum(field.most for field in command.answer)
    return split(command.answer, data[:whole]) is not None


def check_fields(commands, vectors, told, findings):
    for command in commands:
        for at, field in enumerate(command.request):
            if field.fixed is not None:
                continue
            values = {parts[at] for parts in vectors[command] if at < len(parts)}
            findings.insist(len(values) > 1, f"{command.name}: {field.name} is always the same")
            if field.is_number and field.most > 1:
                is_told = at in told[command]
                findings.insist(is_told != ((command.name, field.name) in UNTOLD),
                                f"{command.name}: the order of {field.name} is "
                                f"{'told after all' if is_told else 'not told by any exchange'}")


def handed_over(command, answer, big_endian):
    """What the caller gets if it gets the whole answer, None where that is not described."""
    parts = split(command.answer, answer[:sum(field.most for field in command.answer)])
    if parts is None:
        return None
    return b"".join(part[::-1] if field.is_number and big_endian else part
                    for field, part in zip(command.answer, parts))


def check_outputs(path, commands, big_endian, findings):
    told = set()
    for test in tests_of(path):
        if "output" not in test:
            continue
        [(netfn_cmd, payload, answer)] = exchanges_of(test, "exchanges")
        output = bytes.fromhex(test["output"])
        for command in commands:
            if command.sent_as != netfn_cmd or split(command.request, payload) is None:
                continue
            wanted = handed_over(command, answer, big_endian)
            if wanted is not None and len(wanted) == len(output) and not command.corrected:
                findings.insist(wanted == output, f"{command.name}: hands over {output.hex(' ')}, "
                                                  f"not {wanted.hex(' ')}")
                told.add(command)
    for command in commands:
        if any(field.is_number and field.most > 1 for field in command.answer):
            findings.insist((command in told) != (command.name in OTHERWISE_HANDED_OVER),
                            f"{command.name}: no output shows its numbers, or one does after all")
    return told


def main():
    options = argparse.ArgumentParser(description=__doc__)
    options.add_argument("--exchanges", type=pathlib.Path, required=True)
    options.add_argument("--requests", type=pathlib.Path, required=True)
    options.add_argument("--big-endian", action="store_true")
    chosen = options.parse_args()

    findings = Findings()
    commands = [command for family in families() for command in family.commands]
    described = check_functions(commands, findings)
    check_sizes(commands, findings)
    vectors, told = check_requests(chosen.requests, described, findings)
    goldens = golden_exchanges(chosen.exchanges)
    check_golden(goldens, commands, vectors, findings)
    check_fields(commands, vectors, told, findings)
    outputs = check_outputs(chosen.exchanges, commands, chosen.big_endian, findings)

    print(f"{len(commands)} commands of {len(described)} functions, {len(goldens)} exchanges, "
          f"{len(outputs)} outputs; the order of {len(UNTOLD)} numbers is not told")
    if findings.wrong:
        sys.exit("\n".join(findings.wrong))


main()
