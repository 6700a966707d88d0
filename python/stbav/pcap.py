# pcap captures of the serial line, as avhost writes and reads them: link type
# DLT_USER0 (147), one record per frame exactly as on the line (markers and
# escapes included) or per run of stray bytes, each record starting with one
# direction byte (0x00 host to daemon ">", 0x01 daemon to host "<"), absolute
# time stamps in microseconds. PcapWriter is locked, so the link's sender and
# receive thread may both record; the functions are pure.
from __future__ import annotations

import struct
import threading
from dataclasses import dataclass

from .codec import Frame, LineDecoder

LINKTYPE_USER0 = 147
HOST_TO_DAEMON, DAEMON_TO_HOST = 0x00, 0x01
_MAGIC_US, _MAGIC_NS = 0xA1B2C3D4, 0xA1B23C4D
SNAPLEN = 65535


class PcapError(ValueError):
    """Not a pcap file of the line (magic, link type, direction byte, truncation)."""


@dataclass
class Chunk:
    t: float      # seconds since the first record
    dir: str      # ">" host to daemon, "<" daemon to host
    data: bytes   # the bytes as on the line
    epoch: float = 0.0  # the record's absolute time stamp


def read_pcap(path: str) -> list[Chunk]:
    """The records of a capture, in file order. Raises PcapError."""
    with open(path, "rb") as f:
        content = f.read()
    if len(content) < 24:
        raise PcapError(f"{path}: too short for a pcap file")
    for order in ("<", ">"):
        magic, = struct.unpack(order + "I", content[:4])
        if magic in (_MAGIC_US, _MAGIC_NS):
            break
    else:
        raise PcapError(f"{path}: not a pcap file")
    scale = 1e-6 if magic == _MAGIC_US else 1e-9
    linktype = struct.unpack(order + "I", content[20:24])[0] & 0x0FFFFFFF
    if linktype != LINKTYPE_USER0:
        raise PcapError(f"{path}: pcap link type {linktype}, expected DLT_USER0 (147)")
    chunks, pos, number, first = [], 24, 0, None
    while pos < len(content):
        number += 1
        if pos + 16 > len(content):
            raise PcapError(f"{path}: record {number} is cut short")
        sec, frac, caplen, _ = struct.unpack(order + "IIII", content[pos:pos + 16])
        data = content[pos + 16:pos + 16 + caplen]
        if len(data) != caplen:
            raise PcapError(f"{path}: record {number} is cut short")
        if caplen < 1 or data[0] > DAEMON_TO_HOST:
            raise PcapError(f"{path}: record {number}: no direction header (0x00 or 0x01)")
        when = sec + frac * scale
        first = when if first is None else first
        chunks.append(Chunk(when - first, ">" if data[0] == HOST_TO_DAEMON else "<", data[1:], when))
        pos += 16 + caplen
    return chunks


def decode_chunks(chunks: list[Chunk]) -> list[tuple[float, str, Frame]]:
    """(t, dir, frame) for every frame of a capture, each direction split as its
    receiving end splits it, in the order avhost decode prints them."""
    decoders = {">": LineDecoder(), "<": LineDecoder()}
    last = {">": 0.0, "<": 0.0}
    out = []
    for c in chunks:
        d = decoders[c.dir]
        last[c.dir] = c.t
        out += [(c.t, c.dir, f) for f in d.push(c.data) + d.take_stray()]
    for direction in (">", "<"):
        out += [(last[direction], direction, f) for f in decoders[direction].flush()]
    return out


class PcapWriter:
    """Writes a capture as the line runs: each direction's bytes are split into
    frames (and stray runs) as the receiving end splits them, one record each."""

    def __init__(self, path: str, start_epoch: float):
        self._file = open(path, "wb")
        self._start = start_epoch
        self._lock = threading.Lock()
        self._decoders = {">": LineDecoder(), "<": LineDecoder()}
        self._last = {">": 0.0, "<": 0.0}
        self._file.write(struct.pack("<IHHiIII", _MAGIC_US, 2, 4, 0, 0, SNAPLEN, LINKTYPE_USER0))
        self._file.flush()

    def record(self, t: float, direction: str, data: bytes) -> None:
        """Bytes seen at t seconds after start_epoch in one direction."""
        with self._lock:
            if self._file.closed:
                return
            d = self._decoders[direction]
            self._last[direction] = t
            for f in d.push(data) + d.take_stray():
                self._write(t, direction, f.line)
            self._file.flush()  # a capture survives the rig being killed

    def close(self) -> None:
        with self._lock:
            if self._file.closed:
                return
            for direction in (">", "<"):
                for f in self._decoders[direction].flush():
                    self._write(self._last[direction], direction, f.line)
            self._file.close()

    def _write(self, t: float, direction: str, line: bytes) -> None:
        micros = round((self._start + t) * 1e6)
        record = bytes([HOST_TO_DAEMON if direction == ">" else DAEMON_TO_HOST]) + line
        self._file.write(struct.pack("<IIII", micros // 1000000, micros % 1000000, len(record), len(record)))
        self._file.write(record)


def write_pcap(path: str, chunks: list[Chunk], start_epoch: float = 0.0) -> None:
    """Writes chunks (times relative to start_epoch) as a capture."""
    writer = PcapWriter(path, start_epoch)
    for c in chunks:
        writer.record(c.t, c.dir, c.data)
    writer.close()
