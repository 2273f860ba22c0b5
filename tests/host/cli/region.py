"""The memory that a chassis shares with its clients, as tests read and spoil it."""

import mmap
import pathlib
import struct

SLOTS = 200
HEAD = struct.Struct("=3I")  # number of the last interrupt, renumbered, next slot
INTERRUPT = struct.Struct("=3I4sI8s16sI164s")
TIMEOUTS = struct.Struct("=2I")  # raised time-outs, new sessions
TIMEOUTS_AT = HEAD.size + SLOTS * INTERRUPT.size
SIZE = TIMEOUTS_AT + 32 * TIMEOUTS.size


class Region:
    def __init__(self, environment):
        path = pathlib.Path(environment["RUK_RUNTIME_DIR"]) / "ipmi.shm"
        with open(path, "r+b") as file:
            self.memory = mmap.mmap(file.fileno(), SIZE)

    def write_head(self, last, renumbered=0, next_slot=0):
        HEAD.pack_into(self.memory, 0, last, renumbered, next_slot)

    def write_interrupt(self, slot, number, data_length=0, events=b"\x01" + bytes(7)):
        record = INTERRUPT.pack(
            number, number, 0, b"\x03\0\0\0", 0, events, bytes(16), data_length, b"\xab" * 164
        )
        at = HEAD.size + slot * INTERRUPT.size
        self.memory[at : at + INTERRUPT.size] = record

    def write_timeouts(self, entry, raised, sessions):
        TIMEOUTS.pack_into(self.memory, TIMEOUTS_AT + entry * TIMEOUTS.size, raised, sessions)

    def fill(self, byte):
        self.memory[:] = bytes([byte]) * SIZE
