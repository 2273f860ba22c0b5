"""A message service whose one blade answers what a test tells it to.

It speaks the daemon's protocol, so that the tool can be shown to cope with controllers that
refuse, lose, repeat and misplace what well-behaved ones do not.
"""

import os
import socket
import struct
import threading

FRAME = struct.Struct("=4I")  # magic, sequence, component, status
REQUEST = struct.Struct("=II4sIII")  # type, 0, location, 0, network function and command, length
RESPONSE = struct.Struct("=II4sIIII")  # the same, with the completion code before the length


class MadeUpBlade:
    def __init__(self, directory):
        self.answers = {}  # (network function << 8 | command) -> function of the payload
        self.requests = []  # (network function << 8 | command, payload) in order
        self.status = 0  # of the message service, for every request
        os.mkdir(directory, 0o700)
        self.listener = socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET)
        self.listener.bind(directory + "/ipmi.sock")
        self.listener.listen()
        self.accepting = threading.Thread(target=self._accept, daemon=True)
        self.accepting.start()

    def answer(self, netfn_cmd):
        """Decorates the function that answers a command: from payload to completion code and
        data, or a completion code alone as a number."""

        def keep(function):
            self.answers[netfn_cmd] = function
            return function

        return keep

    def count(self, netfn_cmd):
        return sum(1 for asked, _ in self.requests if asked == netfn_cmd)

    def close(self):
        # First lets the thread go: it might accept for the next one whose descriptor is the same.
        self.listener.shutdown(socket.SHUT_RDWR)
        self.accepting.join()
        self.listener.close()

    def _accept(self):
        while True:
            try:
                client, _ = self.listener.accept()
            except OSError:
                return
            threading.Thread(target=self._serve, args=[client], daemon=True).start()

    def _serve(self, client):
        with client:
            while frame := client.recv(1024):
                client.send(self._execute(frame))

    def _execute(self, frame):
        magic, sequence, component, _ = FRAME.unpack_from(frame)
        header = FRAME.pack(magic, sequence, component, self.status)
        if self.status != 0:
            return header
        kind, zero, location, mark, netfn_cmd, length = REQUEST.unpack_from(frame, FRAME.size)
        payload = frame[FRAME.size + REQUEST.size :][:length]
        self.requests.append((netfn_cmd, payload))
        answer = self.answers.get(netfn_cmd, lambda _: 0xC1)(payload)
        data = bytes([answer]) if isinstance(answer, int) else answer
        return (
            header
            + RESPONSE.pack(kind, zero, location, mark, netfn_cmd, data[0], len(data))
            + data
        )
