# The host's end of the serial line: a Link sends data operations by dictionary
# name and the apply trigger, and a receive thread of its own ("stbav link rx")
# splits what the daemon sends into frames exactly as the daemon's receiver would,
# decodes them, and keeps them for wait_for() and reports(). Any thread may send
# (whole frames under a lock) and wait; the receive thread only appends, under
# the link's condition.
from __future__ import annotations

import os
import select
import stat
import termios
import threading
import time
import tty
from dataclasses import dataclass

from . import codec
from .codec import Frame, LineDecoder, Op
from .pcap import PcapWriter


class LinkError(RuntimeError):
    """The line cannot be opened or written, or an awaited operation did not come."""


class FdPort:
    """A tty (pty or serial device) through its file descriptor: raw, 8N1, 115200 bit/s."""

    def __init__(self, fd: int, name: str, owned: bool = True):
        self.fd, self.name, self._owned = fd, name, owned
        if os.isatty(fd):
            tty.setraw(fd)
            attrs = termios.tcgetattr(fd)
            attrs[4] = attrs[5] = termios.B115200
            termios.tcsetattr(fd, termios.TCSANOW, attrs)

    @classmethod
    def open(cls, path: str) -> "FdPort":
        try:
            return cls(os.open(path, os.O_RDWR | os.O_NOCTTY), path)
        except OSError as e:
            raise LinkError(f"cannot open {path}: {e.strerror}") from None

    def read(self, timeout: float) -> bytes:
        """Bytes read, b"" after the time-out; None once the other side is gone."""
        ready, _, _ = select.select([self.fd], [], [], timeout)
        if not ready:
            return b""
        try:
            data = os.read(self.fd, 4096)
        except OSError:  # EIO: the other side of a pty closed
            return None
        return data or None

    def write(self, data: bytes) -> None:
        view = memoryview(data)
        while view:
            view = view[os.write(self.fd, view):]

    def close(self) -> None:
        if self._owned and self.fd >= 0:
            os.close(self.fd)
        self.fd = -1


class SerialPort:
    """A real serial device through pyserial (Debian's python3-serial)."""

    def __init__(self, path: str):
        import serial  # only needed for real ports
        try:
            self._serial = serial.Serial(path, 115200, timeout=0)
        except serial.SerialException as e:
            raise LinkError(f"cannot open {path}: {e}") from None
        self.name = path

    def read(self, timeout: float) -> bytes:
        import serial
        try:
            self._serial.timeout = timeout
            return self._serial.read(max(1, self._serial.in_waiting))
        except (serial.SerialException, OSError):  # the device went away (USB adapter unplugged)
            return None

    def write(self, data: bytes) -> None:
        self._serial.write(data)
        self._serial.flush()

    def close(self) -> None:
        self._serial.close()


def open_port(port_or_pty):
    """A port from a device path, a pty path, an open file descriptor (e.g. the
    master side of os.openpty()), or an object with read/write/close."""
    if isinstance(port_or_pty, int):
        return FdPort(port_or_pty, f"fd {port_or_pty}", owned=False)
    if not isinstance(port_or_pty, (str, os.PathLike)):
        return port_or_pty
    path = os.fspath(port_or_pty)
    real = os.path.realpath(path)
    is_pty = real.startswith("/dev/pts/") or real == "/dev/ptmx"
    if not is_pty and os.path.exists(path) and stat.S_ISCHR(os.stat(path).st_mode):
        try:
            return SerialPort(path)
        except ImportError:
            pass
    return FdPort.open(path)


@dataclass
class Received:
    t: float  # seconds since the link opened
    op: Op


@dataclass
class Counters:
    frames_sent: int = 0
    frames_received: int = 0  # operations decoded
    errors: int = 0           # frames that were no op image, or that never ended
    dropped_bytes: int = 0    # bytes outside any frame (the daemon's receiver drops them too)


class Link:
    """A live line to the daemon. Use connect(); close() (or a with block) ends it."""

    def __init__(self, port, double_start: bool = True, pcap: str | None = None):
        self._port = open_port(port)
        self.name = getattr(self._port, "name", str(port))
        self.double_start = double_start
        self.counters = Counters()
        self._t0 = time.monotonic()
        self._cond = threading.Condition()
        self._tx_lock = threading.Lock()
        self._received: list[Received] = []
        self._taken: set[int] = set()
        self._mark = 0  # first report that came after the last send or apply
        self._closed = False
        self._pcap = PcapWriter(pcap, time.time()) if pcap else None
        self._decoder = LineDecoder()
        self._thread = threading.Thread(target=self._receive, name="stbav link rx", daemon=True)
        self._thread.start()

    # ---- sending ------------------------------------------------------------------
    def send(self, **values) -> list[Op]:
        """Sends one data operation per keyword, in order, at index 0:
        link.send(videooutputFormatMode=2, videooutputManualFormat="1920x1080p50").
        Values: numbers (int or their decimal/0x text), texts, booleans, format codes
        also as text. Raises codec.CodecError on a name or value that does not fit."""
        ops = [Op.data_op(name, value) for name, value in values.items()]
        for op in ops:
            self.send_op(op)
        return ops

    def send_at(self, name: str, value, index: int) -> Op:
        """One data operation at a given index (analogaudioPort at 1, ...)."""
        op = Op.data_op(name, value, index)
        self.send_op(op)
        return op

    def apply(self) -> None:
        """The apply trigger: the daemon applies what it received since the last one."""
        self.send_op(Op.apply_op())

    def send_op(self, op: Op) -> None:
        for image in op.images():
            self.send_raw(codec.encode_frame(image, self.double_start), frame=True)

    def send_raw(self, data: bytes, frame: bool = False) -> None:
        """Bytes as given, unframed unless they are a whole frame (fault reproduction)."""
        with self._cond:
            self._mark = len(self._received)
        with self._tx_lock:
            if self._pcap:
                self._pcap.record(self._now(), ">", data)
            try:
                self._port.write(data)
            except OSError as e:
                raise LinkError(f"writing to {self.name} failed: {e.strerror}") from None
            self.counters.frames_sent += frame

    # ---- receiving ----------------------------------------------------------------
    def reports(self, name: str | None = None) -> list[Op]:
        """Every operation received so far (or those with that name), in order."""
        with self._cond:
            return [r.op for r in self._received if name is None or r.op.name == name]

    def last(self, name: str) -> Op | None:
        ops = self.reports(name)
        return ops[-1] if ops else None

    def wait_for(self, name: str, value=None, index: int | None = None, timeout: float = 5.0,
                 since: str = "send") -> Op:
        """Waits for an operation with that name (and value, index) and returns it.
        It looks at what came since the last send or apply (since="start": since the
        link opened), so an answer that came before the call is not missed, and each
        received operation answers one wait_for only. value matches when its bytes by
        the entry's type equal the operation's, or it equals the shown value
        ("stbav_ready", "1920x1080p 16x9 50.00fps"), or it is a callable that returns
        true for the value. Raises LinkError after timeout seconds."""
        match = self._matcher(name, value, index)
        deadline = time.monotonic() + timeout
        with self._cond:
            start = 0 if since == "start" else self._mark
            while True:
                for i in range(start, len(self._received)):
                    if i not in self._taken and match(self._received[i].op):
                        self._taken.add(i)
                        return self._received[i].op
                left = deadline - time.monotonic()
                if left <= 0 or self._closed:
                    seen = [r.op.describe() for r in self._received[start:]][-8:]
                    raise LinkError(f"no {name}" + ("" if value is None else f"={value}") +
                                    f" within {timeout} s on {self.name}; last received: {seen}")
                self._cond.wait(left)

    def _matcher(self, name: str, value, index):
        want = None
        if value is not None and not callable(value) and name != "apply":
            try:
                want = codec.encode_value(codec.entry(name), value)
            except codec.CodecError:
                want = None

        def match(op: Op) -> bool:
            if op.name != name or (index is not None and op.index != index):
                return False
            if value is None:
                return True
            if callable(value):
                return bool(value(op.value))
            shown = op.format_text or op.value
            return op.data == want or shown == value or (isinstance(value, str) and str(op.value) == value)
        return match

    def _now(self) -> float:
        return time.monotonic() - self._t0

    def _receive(self) -> None:
        while not self._closed:
            data = self._port.read(0.1)
            if data is None:
                break
            if data and self._pcap:
                self._pcap.record(self._now(), "<", data)
            self._take(self._decoder.push(data) + self._decoder.take_stray())
        self._take(self._decoder.flush())
        with self._cond:
            self._closed = True
            self._cond.notify_all()

    def _take(self, frames: list[Frame]) -> None:
        if not frames:
            return
        with self._cond:
            for f in frames:
                if f.kind == "op":
                    self.counters.frames_received += 1
                    self._received.append(Received(self._now(), f.op))
                elif f.kind == "stray":
                    self.counters.dropped_bytes += len(f.line)
                else:
                    self.counters.errors += 1
            self._cond.notify_all()

    # ---- life ---------------------------------------------------------------------
    @property
    def closed(self) -> bool:
        return self._closed

    def close(self) -> None:
        with self._cond:
            self._closed = True
            self._cond.notify_all()
        self._thread.join()
        self._port.close()
        if self._pcap:
            self._pcap.close()

    def __enter__(self) -> "Link":
        return self

    def __exit__(self, *exc) -> None:
        self.close()


def connect(port_or_pty, double_start: bool = True, pcap: str | None = None) -> Link:
    """A link over a serial device ("/dev/ttyUSB0"), a pty ("/dev/pts/5") or an open
    tty file descriptor; pcap= records both directions as a pcap capture."""
    return Link(port_or_pty, double_start=double_start, pcap=pcap)
