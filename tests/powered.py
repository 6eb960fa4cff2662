"""An X server whose displays can be switched off: the virtual one cannot, so what programs ask of it
for that (DPMS) is answered on the way."""

import os
import socket
import struct
import threading

QUERY_EXTENSION = 98
GET_INPUT_FOCUS = struct.pack("<BBH", 43, 0, 1)  # the server answers it with 32 bytes
POWER = 200  # the extension's number, which no other has
CAPABLE, INFO = 1, 7
ON, OFF = 0, 3


def read(stream, size):
    """So many bytes, or EOFError."""
    data = b""
    while len(data) < size:
        piece = stream.recv(size - len(data))
        if not piece:
            raise EOFError
        data += piece
    return data


def padded(size):
    return (size + 3) // 4 * 4


class PoweredDisplay:
    """Stands before the server of a display, under a name of its own."""

    def __init__(self, server):
        self._server = "/tmp/.X11-unix/X" + server.lstrip(":")
        self._listening = socket.socket(socket.AF_UNIX)
        number = 300
        while True:
            try:
                self._path = f"/tmp/.X11-unix/X{number}"
                self._listening.bind(self._path)
                break
            except OSError:
                number += 1
        self._listening.listen()
        self._streams = []
        self.name = f":{number}"
        self.level = ON
        self.asked = 0
        threading.Thread(target=self._accept, daemon=True).start()

    def close(self):
        for stream in [self._listening, *self._streams]:
            try:
                stream.shutdown(socket.SHUT_RDWR)
            except OSError:
                pass
            stream.close()
        os.unlink(self._path)

    def _accept(self):
        try:
            while True:
                client, _ = self._listening.accept()
                server = socket.socket(socket.AF_UNIX)
                server.connect(self._server)
                self._streams += [client, server]
                questions = {}  # by sequence number
                for carry in (self._carry_requests, self._carry_answers):
                    threading.Thread(target=self._until_the_end, daemon=True,
                                     args=(carry, client, server, questions)).start()
        except OSError:
            pass

    @staticmethod
    def _until_the_end(carry, client, server, questions):
        try:
            carry(client, server, questions)
        except (EOFError, OSError):
            pass
        for stream in (client, server):
            try:
                stream.shutdown(socket.SHUT_RDWR)
            except OSError:
                pass

    def _carry_requests(self, client, server, questions):
        hello = read(client, 12)
        name, data = struct.unpack("<HH", hello[6:10])
        server.sendall(hello + read(client, padded(name) + padded(data)))
        sequence = 0
        while True:
            request = read(client, 4)
            code, minor, words = struct.unpack("<BBH", request)
            if words == 0:  # a big one
                request += read(client, 4)
                words = struct.unpack("<I", request[4:])[0]
            request += read(client, words * 4 - len(request))
            sequence = (sequence + 1) & 0xffff
            if code == POWER:
                questions[sequence] = minor
                request = GET_INPUT_FOCUS
            elif code == QUERY_EXTENSION and request[8:12] == b"DPMS" and request[4] == 4:
                questions[sequence] = "extension"
            server.sendall(request)

    def _carry_answers(self, client, server, questions):
        setup = read(server, 8)
        client.sendall(setup + read(server, 4 * struct.unpack("<H", setup[6:])[0]))
        while True:
            message = bytearray(read(server, 32))
            kind, sequence, words = struct.unpack("<BxHI", message[:8])
            if kind == 1 or kind & 0x7f == 35:
                message += read(server, words * 4)
            if kind == 1 and sequence in questions:
                self._answer(message, questions.pop(sequence))
            client.sendall(message)

    def _answer(self, message, question):
        message[1] = 0
        message[8:32] = bytes(24)
        if question == "extension":
            message[8:10] = bytes([1, POWER])
        elif question == CAPABLE:
            message[8] = 1
        elif question == INFO:
            self.asked += 1
            message[8:11] = struct.pack("<HB", self.level, 1)
