"""Stands between programs and the X server and counts their requests, one by one."""

import array
import contextlib
import os
import selectors
import socket
import struct
import threading

X_SOCKETS = "/tmp/.X11-unix/X"
FIRST_NUMBER = 600  # far above the numbers that X servers take
LARGEST_READ = 1 << 18
MOST_DESCRIPTORS = 16


class RequestCount:
    """Finds the ends of requests in what one client sends."""

    def __init__(self):
        self.requests = 0
        self._order = None  # "<" or ">", as the client says in its first byte
        self._unread = b""
        self._to_skip = 0

    def feed(self, data):
        if self._to_skip >= len(data):
            self._to_skip -= len(data)
            return
        self._unread += data[self._to_skip:]
        self._to_skip = 0
        while self._unread:
            length = self._length_of_first()
            if length is None:
                return
            self._to_skip = max(0, length - len(self._unread))
            self._unread = self._unread[length:]

    def _length_of_first(self):
        """In bytes; None where too little is there to tell. Counts it, unless it is the set-up."""
        if self._order is None:
            if len(self._unread) < 12:
                return None
            self._order = "<" if self._unread[:1] == b"l" else ">"
            name, secret = struct.unpack_from(self._order + "HH", self._unread, 6)
            return 12 + padded(name) + padded(secret)
        if len(self._unread) < 4:
            return None
        [words] = struct.unpack_from(self._order + "H", self._unread, 2)
        if words == 0:  # BIG-REQUESTS: the length follows in 32 bits
            if len(self._unread) < 8:
                return None
            [words] = struct.unpack_from(self._order + "I", self._unread, 4)
        if words == 0:
            raise ValueError("an X request without a length")
        self.requests += 1
        return words * 4


def padded(length):
    return (length + 3) // 4 * 4


class XProxy:
    """A display of its own that is the other display; `display` is its name."""

    def __init__(self):
        self._server = X_SOCKETS + os.environ["DISPLAY"].split(":")[1].split(".")[0]
        self._listener = socket.socket(socket.AF_UNIX)
        # Where Xlib and xcb look first; leaves no file behind.
        for number in range(FIRST_NUMBER, FIRST_NUMBER + 100):
            with contextlib.suppress(OSError):
                self._listener.bind("\0" + X_SOCKETS + str(number))
                self.display = f":{number}"
                break
        self._listener.listen()
        self._counts = []
        self.problem = None
        threading.Thread(target=self._accept, daemon=True).start()

    def requests(self):
        """How many have been sent so far."""
        if self.problem:
            raise self.problem
        return sum(count.requests for count in self._counts)

    def _accept(self):
        while True:
            client, _ = self._listener.accept()
            server = socket.socket(socket.AF_UNIX)
            server.connect(self._server)
            count = RequestCount()
            self._counts.append(count)
            threading.Thread(target=self._serve, args=(client, server, count), daemon=True).start()

    def _serve(self, client, server, count):
        try:
            with client, server, selectors.DefaultSelector() as selector:
                selector.register(client, selectors.EVENT_READ, (server, count.feed))
                selector.register(server, selectors.EVENT_READ, (client, lambda data: None))
                while True:
                    for key, _ in selector.select():
                        if not forward(key.fileobj, *key.data):
                            return
        except (BrokenPipeError, ConnectionResetError):
            pass  # one side has gone
        except ValueError as problem:
            self.problem = problem


def forward(source, target, look):
    """Hands on what is there, with descriptors; false at the end."""
    descriptors = array.array("i")
    data, ancillary, _, _ = source.recvmsg(LARGEST_READ,
                                           socket.CMSG_LEN(MOST_DESCRIPTORS * descriptors.itemsize))
    for level, kind, content in ancillary:
        if level == socket.SOL_SOCKET and kind == socket.SCM_RIGHTS:
            descriptors.frombytes(content[:len(content) // descriptors.itemsize * descriptors.itemsize])
    if not data:
        return False
    look(data)
    rights = [(socket.SOL_SOCKET, socket.SCM_RIGHTS, descriptors)] if descriptors else []
    sent = target.sendmsg([data], rights)
    target.sendall(data[sent:])
    for descriptor in descriptors:
        os.close(descriptor)
    return True
