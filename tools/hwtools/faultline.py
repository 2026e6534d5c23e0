"""The line between the preload library and the simulated controller, with faults on it.

A FaultLine stands where the simulator's serial port would: hand it to the Agent as its `simulator`. Rules spoil the answers
to the requests that they match; without a rule everything passes as it came."""

import contextlib
import select
import socket
import threading
import time
from collections import deque
from dataclasses import dataclass, field

from .ipmi import checksum

MESSAGE, CONTROL, ESCAPE, ESCAPE_BIT = 0xA0, 0xA1, 0xAA, 0x10
SHORTEST = 4  # sequence, network function and LUN, command, checksum
HEAD = 3
TICK = 0.05


@dataclass
class Fault:
    """What is done to the answers of the requests that match.

    Match: network function, command, first data bytes (None matches any byte); None matches all. `skip` matches pass
    first, then `times` (None: all) are spoilt. Deed: `drop`, or after `delay` seconds the answer with another completion
    `code` alone, or `answer` (completion code first), then cut to `truncate` bytes, then with `append` behind; `head` are
    the network function and the command that it claims to be of."""
    net_fn: int | None = None
    command: int | None = None
    data: tuple = ()
    skip: int = 0
    times: int | None = None
    code: int | None = None
    answer: bytes | None = None
    truncate: int | None = None
    append: bytes = b""
    head: tuple | None = None
    delay: float = 0
    drop: bool = False
    hits: int = field(default=0, init=False)

    def takes(self, request):
        """Whether this request's answer is to be spoilt; counts the matches."""
        net_fn, command, data = request
        if self.net_fn not in (None, net_fn) or self.command not in (None, command) or len(data) < len(self.data):
            return False
        if any(want not in (None, got) for want, got in zip(self.data, data)):
            return False
        self.hits += 1
        place = self.hits - self.skip
        return place > 0 and (self.times is None or place <= self.times)

    def spoil(self, body):
        """The answer's body without its checksum, after the deed."""
        head, content = body[:HEAD], body[HEAD:]
        if self.head:
            head = bytes((head[0], self.head[0] << 2, self.head[1]))
        if self.code is not None:
            content = bytes((self.code,))
        if self.answer is not None:
            content = bytes(self.answer)
        return head + content[:self.truncate] + self.append


class Decoder:
    """Cuts the byte stream into (kind, body)."""

    def __init__(self):
        self.body, self.escaped = bytearray(), False

    def feed(self, data):
        for byte in data:
            if byte in (MESSAGE, CONTROL):
                yield byte, bytes(self.body)
                self.body, self.escaped = bytearray(), False
            elif byte == ESCAPE:
                self.escaped = True
            else:
                self.body.append(byte & ~ESCAPE_BIT if self.escaped else byte)
                self.escaped = False


def encode(kind, body):
    out = bytearray()
    for byte in body:
        out += bytes((ESCAPE, byte | ESCAPE_BIT)) if byte in (MESSAGE, CONTROL, ESCAPE) else bytes((byte,))
    return bytes(out) + bytes((kind,))


class FaultLine:
    """A thread that carries one line at a time from `serial_port` to the simulator's."""

    def __init__(self, simulator):
        self.simulator, self.board = simulator, simulator.board
        self.server = socket.create_server(("127.0.0.1", 0))
        self.serial_port = self.server.getsockname()[1]
        self.lock = threading.Lock()
        self.faults = []
        self.ending = threading.Event()
        self.thread = threading.Thread(target=self._run, daemon=True)

    def __enter__(self):
        self.thread.start()
        return self

    def __exit__(self, *_):
        self.ending.set()
        self.thread.join()
        self.server.close()

    @contextlib.contextmanager
    def faulty(self, *faults):
        """The line with these faults alone, in order of precedence; clean afterwards."""
        with self.lock:
            self.faults = list(faults)
        try:
            yield
        finally:
            with self.lock:
                self.faults = []

    def _run(self):
        while not self.ending.is_set():
            if not select.select([self.server], [], [], TICK)[0]:
                continue
            host, _ = self.server.accept()
            with host, contextlib.suppress(OSError):  # an end hung up: the next host dials anew
                with socket.create_connection(("127.0.0.1", self.simulator.serial_port)) as controller:
                    Connection(self, host, controller).carry()

    def fault_of(self, request):
        """The fault that the answer to this request gets, or None."""
        with self.lock:
            return next((fault for fault in self.faults if fault.takes(request)), None)


class Connection:
    """One connection of a host, until either end hangs up."""

    def __init__(self, line, host, controller):
        self.line, self.host, self.controller = line, host, controller
        self.spoilt = {}    # fault by sequence number of the request
        self.late = deque()  # (due time, frame)
        for end in (host, controller):
            end.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)

    def carry(self):
        up, down = Decoder(), Decoder()
        while not self.line.ending.is_set():
            pause = min(TICK, max(0, self.late[0][0] - time.monotonic())) if self.late else TICK
            ready = select.select([self.host, self.controller], [], [], pause)[0]
            if self.host in ready and not self._pass(self.host, up, self._ask):
                return
            if self.controller in ready and not self._pass(self.controller, down, self._answer):
                return
            self._deliver_late()

    @staticmethod
    def _pass(end, decoder, handle):
        data = end.recv(4096)
        for kind, body in decoder.feed(data):
            handle(kind, body)
        return bool(data)

    def _ask(self, kind, body):
        if kind == MESSAGE and len(body) >= SHORTEST:
            self.spoilt[body[0]] = self.line.fault_of((body[1] >> 2, body[2], body[HEAD:-1]))
        self.controller.sendall(encode(kind, body))

    def _answer(self, kind, body):
        fault = self.spoilt.pop(body[0], None) if kind == MESSAGE and len(body) >= SHORTEST else None
        if not fault:
            self.host.sendall(encode(kind, body))
        elif not fault.drop:
            body = fault.spoil(body[:-1])
            frame = encode(kind, body + bytes((checksum(list(body)),)))
            self.late.append((time.monotonic() + fault.delay, frame))

    def _deliver_late(self):
        while self.late and self.late[0][0] <= time.monotonic():
            self.host.sendall(self.late.popleft()[1])
