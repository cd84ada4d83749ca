"""A mouse for a Wayland desktop that has none: a client of the protocol wlr-virtual-pointer, as a remote desktop is."""

import os
import socket
import struct
import time

DISPLAY = 1

MANAGER_NAME = "zwlr_virtual_pointer_manager_v1"
# Numbers of requests, and codes of buttons as the kernel has them.
SYNC, GET_REGISTRY, BIND, CREATE_POINTER, MOVE_TO, BUTTON, FRAME = 0, 1, 0, 0, 1, 2, 4
BUTTONS = {1: 0x110, 2: 0x112, 3: 0x111}


def _text(value):
    data = value.encode() + b"\0"
    return struct.pack("=I", len(data)) + data + b"\0" * (-len(data) % 4)


class WaylandPointer:
    """The mouse is there as long as this is not closed. Places are points of a screen of that size."""

    def __init__(self, path, size):
        self._size = size
        self._connection = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self._connection.settimeout(20)
        self._connection.connect(os.fspath(path))
        self._unread = b""
        self._last_object = DISPLAY
        self._globals = {}
        self._registry = self._next_object()
        self._send(DISPLAY, GET_REGISTRY, struct.pack("=I", self._registry))
        self._wait()
        manager = self._next_object()
        self._send(self._registry, BIND, struct.pack("=I", self._globals[MANAGER_NAME]) + _text(MANAGER_NAME)
                   + struct.pack("=II", 1, manager))
        self._pointer = self._next_object()
        self._send(manager, CREATE_POINTER, struct.pack("=II", 0, self._pointer))
        self._wait()

    def close(self):
        self._connection.close()

    def move(self, x, y):
        width, height = self._size
        self._send(self._pointer, MOVE_TO, struct.pack("=IIIII", self._now(), int(x), int(y), width, height))
        self._end_of_step()

    def press(self, button, is_down):
        self._send(self._pointer, BUTTON, struct.pack("=III", self._now(), BUTTONS[button], is_down))
        self._end_of_step()

    def _end_of_step(self):
        self._send(self._pointer, FRAME)
        self._wait()

    @staticmethod
    def _now():
        return time.monotonic_ns() // 1_000_000 & 0xFFFFFFFF

    def _next_object(self):
        self._last_object += 1
        return self._last_object

    def _send(self, target, request, arguments=b""):
        self._connection.sendall(struct.pack("=II", target, (8 + len(arguments)) << 16 | request) + arguments)

    def _wait(self):
        """Until the desktop has done everything that was sent."""
        callback = self._next_object()
        self._send(DISPLAY, SYNC, struct.pack("=I", callback))
        while self._read() != callback:
            pass

    def _read(self):
        """Takes the next message, and gives the number of the object that it is from."""
        sender, length = struct.unpack("=II", self._take(8))
        data = self._take((length >> 16) - 8)
        if sender == DISPLAY and length & 0xFFFF == 0:
            raise ConnectionError(f"the desktop refuses a request: {data[12:].rstrip(bytes(1)).decode()}")
        if sender == self._registry:
            number, size = struct.unpack_from("=II", data)
            self._globals[data[8:8 + size - 1].decode()] = number
        return sender

    def _take(self, count):
        while len(self._unread) < count:
            more = self._connection.recv(4096)
            if not more:
                raise ConnectionError("the desktop has ended")
            self._unread += more
        taken, self._unread = self._unread[:count], self._unread[count:]
        return taken
