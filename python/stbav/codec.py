# The wire codec of the serial line, without any I/O: the op image of one
# operation, the byte-stuffed frame around it, the receive state machine that
# splits a byte stream into frames exactly as the daemon's receiver does, typed
# values by the dictionary, and the 32-bit video format codes. Pure functions
# and plain objects; each LineDecoder belongs to one thread.
#
#   frame:  0F [0F] | op image, stuffed | 10      (a careful host doubles the start)
#   image:  type | opId low | opId high | N | index (N) | M | data (M <= 240)
#   stuffing: a payload byte 0F..13 goes as 12, byte ^ 20
#   multi-byte values and the index are sent most significant byte first; the
#   opId alone least significant byte first.
from __future__ import annotations

import math
import re
from dataclasses import dataclass, field

from . import dictionary

START, END, ESCAPE, ESCAPE_XOR = 0x0F, 0x10, 0x12, 0x20
CHUNK = 240
# The most line bytes a frame carries between its markers (every byte of the
# longest image escaped); the receiver drops a frame that grows past it.
MAX_STUFFED_IMAGE = 2 * (4 + 255 + 1 + 255)

OP_TYPE_DATA, OP_TYPE_APPLY_CONFIG = 0, 6

VT_INT32, VT_UINT32, VT_INT8, VT_UINT8, VT_INT16, VT_UINT16 = 0, 1, 2, 3, 4, 5
VT_BOOL, VT_MAC, VT_IP, VT_STRING, VT_INT64, VT_UINT64 = 8, 9, 10, 12, 16, 17
TYPE_NAMES = {VT_INT32: "VT_INT32", VT_UINT32: "VT_UINT32", VT_INT8: "VT_INT8", VT_UINT8: "VT_UINT8",
              VT_INT16: "VT_INT16", VT_UINT16: "VT_UINT16", VT_BOOL: "VT_BOOL", VT_MAC: "VT_MAC",
              VT_IP: "VT_IP", VT_STRING: "VT_STRING", VT_INT64: "VT_INT64", VT_UINT64: "VT_UINT64"}
# Integer value types: (bytes, signed).
_INTEGERS = {VT_INT8: (1, True), VT_UINT8: (1, False), VT_INT16: (2, True), VT_UINT16: (2, False),
             VT_INT32: (4, True), VT_UINT32: (4, False), VT_INT64: (8, True), VT_UINT64: (8, False)}
_INDEX_SIZES = {VT_UINT8: 1, VT_UINT16: 2, VT_UINT32: 4}
# Operations whose value is a 32-bit video format code (taken as text too).
FORMAT_CODE_OPS = {"videooutputManualFormat", "videooutputCurrentOutputFormat", "videooutputManualFormatCvbs"}


class CodecError(ValueError):
    """A value, index, name or format text that does not fit the dictionary."""


@dataclass(frozen=True)
class Entry:
    op_id: int
    name: str
    value_type: int
    index_type: int

    @property
    def type_name(self) -> str:
        return TYPE_NAMES.get(self.value_type, f"VT_{self.value_type}")


BY_ID = {op_id: Entry(op_id, name, vt, it) for op_id, name, vt, it in dictionary.OPS}
BY_NAME = {e.name: e for e in BY_ID.values()}


def entry(name: str) -> Entry:
    try:
        return BY_NAME[name]
    except KeyError:
        hint = next((n for n in BY_NAME if n.lower() == name.lower()), None)
        raise CodecError(f"unknown operation name {name!r}" + (f" (did you mean {hint}?)" if hint else "")) from None


def value_size(value_type: int) -> int:
    """Bytes of a value of that type; 0 for the ones without a fixed size (text, MAC)."""
    if value_type in _INTEGERS:
        return _INTEGERS[value_type][0]
    return {VT_BOOL: 1, VT_IP: 4}.get(value_type, 0)


# ---- video format codes -----------------------------------------------------------------
_SIZES = [(720, 480), (720, 576), (1280, 720), (1920, 1080), (3840, 2160), (4096, 2160)]
_SCANS = ["i", "p", "psF"]
_RATES = {1: (23.976, "23.98"), 2: (24, "24.00"), 3: (25, "25.00"), 4: (29.97, "29.97"), 5: (30, "30.00"),
          6: (50, "50.00"), 7: (59.94, "59.94"), 8: (60, "60.00")}
_ASPECTS = {1: "1x1", 2: "4x3", 3: "16x9", 4: "2.21x1", 5: "1.9x1"}


def format_code(resolution: int, scan: int, rate: int, aspect: int) -> int:
    """The code of (resolution, scan, rate, aspect): the packed fields, bytes reversed."""
    packed = ((resolution & 0x3FFFFF) << 10) | ((scan & 3) << 8) | ((rate & 15) << 4) | (aspect & 15)
    return int.from_bytes(packed.to_bytes(4, "big"), "little")


def format_fields(code: int) -> tuple[int, int, int, int]:
    packed = int.from_bytes((code & 0xFFFFFFFF).to_bytes(4, "little"), "big")
    return packed >> 10, (packed >> 8) & 3, (packed >> 4) & 15, packed & 15


def format_text(code: int) -> str:
    """The display form the daemon's logs and avhost print: "1920x1080p 16x9 50.00fps"."""
    res, scan, rate, aspect = format_fields(code)
    size = f"{_SIZES[res][0]}x{_SIZES[res][1]}" if res < len(_SIZES) else "(n/a)"
    scan_text = _SCANS[scan] if scan < len(_SCANS) else "(n/a)"
    rate_text = _RATES[rate][1] if rate in _RATES else "(n/a)"
    return f"{size}{scan_text} {_ASPECTS.get(aspect, '(n/a)')} {rate_text}fps"


_COMPACT = re.compile(r"(\d+)[xX](\d+)(i|p|[pP][sS][fF])([0-9.]+)(?:/(.+))?")
_DISPLAY = re.compile(r"(\d+)[xX](\d+)(i|p|[pP][sS][fF]) (\S+) ([0-9.]+)[fF][pP][sS]")


def parse_format(text: str) -> int:
    """A format code from "WxH<scan><rate>[/<aspect>]" (1920x1080p50, 720x576i25/4:3,
    1920x1080psf23.98) or the display form "1920x1080p 16x9 50.00fps". Without an
    aspect the SD sizes take 4:3 and every larger size 16:9."""
    m = _COMPACT.fullmatch(text)
    if m:
        w, h, scan, rate, aspect = m.groups()
    else:
        m = _DISPLAY.fullmatch(text)
        if not m:
            raise CodecError(f"malformed video format {text!r} (e.g. 1920x1080p50, 720x576i25/4:3)")
        w, h, scan, aspect, rate = m.groups()
    if (int(w), int(h)) not in _SIZES:
        raise CodecError(f"unknown picture size {w}x{h} (720x480 720x576 1280x720 1920x1080 3840x2160 4096x2160)")
    res = _SIZES.index((int(w), int(h)))
    try:
        fps = float(rate)
    except ValueError:
        fps = -1.0
    rate_code = next((c for c, (f, _) in _RATES.items() if math.isclose(fps, f, abs_tol=0.006)), None)
    if rate_code is None:
        raise CodecError(f"unknown frame rate {rate!r} (23.98 24 25 29.97 30 50 59.94 60)")
    aspects = {"1:1": 1, "4:3": 2, "16:9": 3, "2.21:1": 4, "1.9:1": 5}
    key = (aspect or "").replace("x", ":").replace("X", ":")
    if aspect and key not in aspects:
        raise CodecError(f"unknown aspect ratio {aspect!r} (1:1 4:3 16:9 2.21:1 1.9:1)")
    aspect_code = aspects[key] if aspect else (2 if res <= 1 else 3)
    return format_code(res, {"i": 0, "p": 1}.get(scan, 2), rate_code, aspect_code)


# ---- typed values ---------------------------------------------------------------------
def _parse_int(text: str) -> tuple[int, bool]:
    """(value, written in hex) of a decimal or 0x-hex integer with an optional sign."""
    s = text.strip()
    sign = -1 if s.startswith("-") else 1
    s = s[1:] if s[:1] in "+-" else s
    is_hex = s[:2].lower() == "0x" and len(s) > 2
    digits = s[2:] if is_hex else s
    if not digits or not all(c in ("0123456789abcdefABCDEF" if is_hex else "0123456789") for c in digits):
        raise CodecError(f"malformed integer {text!r}")
    return sign * int(digits, 16 if is_hex else 10), is_hex


def _integer_bytes(value: int | str, value_type: int, what: str) -> bytes:
    size, signed = _INTEGERS[value_type]
    is_hex = False
    if isinstance(value, str):
        value, is_hex = _parse_int(value)
    elif isinstance(value, bool) or not isinstance(value, int):
        raise CodecError(f"{what}: {value!r} is not an integer for {TYPE_NAMES[value_type]}")
    bits = 8 * size
    if is_hex or not signed:  # a hex text is a bit pattern of the type's width
        lo, hi = 0, (1 << bits) - 1
    else:
        lo, hi = -(1 << (bits - 1)), (1 << (bits - 1)) - 1
    if not lo <= value <= hi:
        raise CodecError(f"{what}: value {value} out of range for {TYPE_NAMES[value_type]}")
    return (value & ((1 << bits) - 1)).to_bytes(size, "big")


def encode_value(e: Entry, value) -> bytes:
    """The value's bytes as they travel, by the entry's type: numbers (int or their
    decimal/0x text), texts, booleans, IPv4 addresses, format codes also as text."""
    t = e.value_type
    if isinstance(value, (bytes, bytearray)):
        return bytes(value)
    if t in (VT_STRING, VT_MAC):
        return str(value).encode("utf-8")
    if t == VT_BOOL:
        flags = {"1": True, "true": True, "0": False, "false": False}
        if isinstance(value, str) and value.lower() in flags:
            value = flags[value.lower()]
        if value not in (0, 1):  # True and False are 1 and 0
            raise CodecError(f"{e.name}: {value!r} is not a VT_BOOL (0, 1, true or false)")
        return bytes([1 if value else 0])
    if t == VT_IP:
        if isinstance(value, str) and value.count(".") == 3:
            try:
                return bytes(int(p) for p in value.split("."))
            except ValueError:
                raise CodecError(f"{e.name}: malformed IPv4 address {value!r}") from None
        return _integer_bytes(value, VT_UINT32, e.name)
    if e.name in FORMAT_CODE_OPS and isinstance(value, str) and "x" in value.lower() \
            and not value.lower().startswith("0x"):
        return parse_format(value).to_bytes(4, "big")
    if t in _INTEGERS:
        return _integer_bytes(value, t, e.name)
    raise CodecError(f"{e.name}: value type {t} cannot be written")


def encode_index(e: Entry, index: int) -> bytes:
    size = _INDEX_SIZES.get(e.index_type, 0)
    if not isinstance(index, int) or not 0 <= index < (1 << (8 * size)):
        raise CodecError(f"{e.name}: bad index {index!r} ({size}-byte field)")
    return index.to_bytes(size, "big")


def decode_value(e: Entry | None, data: bytes):
    """The value by the entry's type when its length fits the type (int, bool, or
    a dotted IPv4 text); otherwise the bytes as text (the daemon's status texts
    travel under numeric types; invalid UTF-8 is read as Latin-1), or the bytes
    themselves when they are not printable."""
    t = e.value_type if e else VT_STRING
    if e is not None and value_size(t) == len(data) and len(data) > 0:
        if t == VT_BOOL:
            return data[0] != 0
        if t == VT_IP:
            return ".".join(str(b) for b in data)
        size, signed = _INTEGERS[t]
        return int.from_bytes(data, "big", signed=signed)
    if t in (VT_STRING, VT_MAC) or (data and all(0x20 <= b <= 0x7E for b in data)):
        try:
            return data.decode("utf-8")
        except UnicodeDecodeError:
            return data.decode("latin-1")
    return bytes(data)


# ---- operations and op images ---------------------------------------------------------------
@dataclass
class Op:
    """One operation: type, opId, index bytes and value bytes (as on the line)."""
    op_type: int = OP_TYPE_DATA
    op_id: int = 0
    index_bytes: bytes = b""
    data: bytes = b""

    @classmethod
    def data_op(cls, name: str, value, index: int = 0) -> "Op":
        e = entry(name)
        return cls(OP_TYPE_DATA, e.op_id, encode_index(e, index), encode_value(e, value))

    @classmethod
    def apply_op(cls) -> "Op":
        return cls(OP_TYPE_APPLY_CONFIG, 0)

    @property
    def entry(self) -> Entry | None:
        return BY_ID.get(self.op_id)

    @property
    def is_apply(self) -> bool:
        return self.op_type == OP_TYPE_APPLY_CONFIG and not self.data

    @property
    def name(self) -> str:
        """The dictionary name, "apply" for the trigger, "#N" for an unknown opId."""
        if self.is_apply:
            return "apply"
        return self.entry.name if self.entry else f"#{self.op_id}"

    @property
    def index(self) -> int | None:
        """The index value (None without index bytes)."""
        if not self.index_bytes:
            return None
        e = self.entry
        if e is not None and len(self.index_bytes) == _INDEX_SIZES.get(e.index_type, -1):
            return int.from_bytes(self.index_bytes, "big")
        return int.from_bytes(self.index_bytes[-8:], "big") if len(self.index_bytes) <= 8 else None

    @property
    def value(self):
        return decode_value(self.entry, self.data)

    @property
    def meaning(self) -> str | None:
        """What an enumerated value means ("25 fps"), or None."""
        e, v = self.entry, self.value
        if e is None or self.op_type != OP_TYPE_DATA or isinstance(v, (bytes, str)) or v is None:
            return None
        return dictionary.VALUE_NAMES.get(e.name, {}).get(int(v))

    @property
    def format_text(self) -> str | None:
        """The display form of a format code ("1920x1080p 16x9 50.00fps"), or None."""
        if self.name in FORMAT_CODE_OPS and isinstance(self.value, int):
            return format_text(self.value)
        return None

    def describe(self) -> str:
        """The line avhost prints for this operation: 'videoWidth[0] = 1920'."""
        if self.is_apply:
            return "apply"
        out = self.name
        if self.index is not None:
            out += f"[{self.index}]"
        elif self.index_bytes:
            out += "[" + hex_string(self.index_bytes) + "]"
        v = self.value
        if isinstance(v, bool):
            text = "true" if v else "false"
        elif isinstance(v, int):
            text = f"0x{v:08X} ({self.format_text})" if self.format_text else str(v)
        elif isinstance(v, str):
            text = _quoted(self.data)
        else:
            text = "[" + hex_string(v) + "]"
        out += " = " + text
        if self.meaning:
            out += f" ({self.meaning})"
        if self.op_type != OP_TYPE_DATA:
            out += f" (op type {self.op_type})"
        return out

    def images(self) -> list[bytes]:
        """The op images that carry this operation: one per 240 value bytes, at least one."""
        out, offset = [], 0
        while True:
            chunk = self.data[offset:offset + CHUNK]
            out.append(bytes([self.op_type & 0xFF, self.op_id & 0xFF, (self.op_id >> 8) & 0xFF,
                              len(self.index_bytes)]) + self.index_bytes + bytes([len(chunk)]) + chunk)
            offset += len(chunk)
            if offset >= len(self.data):
                return out


def decode_image(image: bytes) -> Op | None:
    """The operation of one op image (bytes after it are ignored), or None when the
    image is not valid, as the daemon's parser decides (it reads the opId's high
    byte from a zero byte after a two-byte frame)."""
    buf = bytes(image) + b"\x00"
    if len(buf) < 4:  # no index length byte
        return None
    n_at = 3
    if n_at + 1 > len(buf) or n_at + 1 + buf[n_at] > len(buf):
        return None
    index = buf[n_at + 1:n_at + 1 + buf[n_at]]
    m_at = n_at + 1 + buf[n_at]
    if m_at + 1 > len(buf) or m_at + 1 + buf[m_at] > len(buf):
        return None
    return Op(buf[0], buf[1] | (buf[2] << 8), bytes(index), bytes(buf[m_at + 1:m_at + 1 + buf[m_at]]))


def _quoted(data: bytes) -> str:
    """A text value as avhost quotes it: UTF-8 characters as they are, other bytes as \\xNN."""
    out, i = ['"'], 0
    while i < len(data):
        c = data[i]
        n = _utf8_length(data, i) if c >= 0xC2 else 0
        if n > 1:
            out.append(data[i:i + n].decode("utf-8"))
            i += n
            continue
        if c in (0x22, 0x5C):
            out.append("\\" + chr(c))
        elif c == 0x0A:
            out.append("\\n")
        elif c == 0x09:
            out.append("\\t")
        elif c < 0x20 or c > 0x7E:
            out.append(f"\\x{c:02X}")
        else:
            out.append(chr(c))
        i += 1
    return "".join(out) + '"'


def _utf8_length(data: bytes, i: int) -> int:
    c = data[i]
    n = 2 if c & 0xE0 == 0xC0 else 3 if c & 0xF0 == 0xE0 else 4 if c & 0xF8 == 0xF0 else 0
    if n == 0:
        return 0
    try:
        data[i:i + n].decode("utf-8")
        return n
    except UnicodeDecodeError:
        return 0


# ---- frames ---------------------------------------------------------------------------------
def stuff(image: bytes) -> bytes:
    out = bytearray()
    for b in image:
        out += bytes([ESCAPE, b ^ ESCAPE_XOR]) if START <= b <= 0x13 else bytes([b])
    return bytes(out)


def encode_frame(image: bytes, double_start: bool = True) -> bytes:
    """One frame around an op image. The doubled start marker brings a receiver that
    noted a stray end marker back in step (and is ignored by one that is in step)."""
    return bytes([START] * (2 if double_start else 1)) + stuff(image) + bytes([END])


def hex_string(data: bytes) -> str:
    return " ".join(f"{b:02X}" for b in data)


@dataclass
class Frame:
    """What one direction of the line carried: a decoded operation, a frame that is
    no op image ("decode failed"), bytes outside a frame ("stray"), or the start of
    a frame that never ended ("incomplete"); line keeps the bytes as on the line."""
    kind: str
    line: bytes
    op: Op | None = None


@dataclass
class LineDecoder:
    """Splits received bytes into frames exactly as the daemon's receiver does: a
    start marker inside a frame is ignored, an end marker outside a frame stays
    noted (the next start completes an empty frame), a pending escape survives the
    end of a frame, bytes outside a frame are dropped, and a frame longer than
    MAX_STUFFED_IMAGE line bytes is dropped."""
    in_frame: bool = False
    frame_ended: bool = False
    escape_pending: bool = False
    dropping: bool = False
    dropped_frames: int = 0
    _payload: bytearray = field(default_factory=bytearray)
    _line: bytearray = field(default_factory=bytearray)
    _line_bytes: int = 0

    def push(self, data: bytes) -> list[Frame]:
        frames: list[Frame] = []
        for b in data:
            if b == START and not self.in_frame and not self.frame_ended and self._line:
                frames.append(self._emit("stray"))
            self._line.append(b)
            if self._push_byte(b):
                op = decode_image(bytes(self._payload))
                frames.append(self._emit("op" if op else "decode failed", op))
                self._payload.clear()
        return frames

    def take_stray(self) -> list[Frame]:
        """Bytes held outside a frame, reported now (call after each read)."""
        if not self.in_frame and not self.frame_ended and self._line:
            return [self._emit("stray")]
        return []

    def flush(self) -> list[Frame]:
        """What is still held when the line stops; the decoder starts afresh."""
        if not self._line:
            return []
        kind = "incomplete" if self.in_frame or self.frame_ended else "stray"
        frame = self._emit(kind)
        self.__init__()
        return [frame]

    def _emit(self, kind: str, op: Op | None = None) -> Frame:
        frame = Frame(kind, bytes(self._line), op)
        self._line.clear()
        return frame

    def _push_byte(self, b: int) -> bool:
        if b == START:
            self.in_frame = True
        elif b == END:
            self.frame_ended = True
        elif b == ESCAPE:
            self.escape_pending = True
            self._line_bytes += self.in_frame
        else:
            if self.escape_pending:
                b ^= ESCAPE_XOR
                self.escape_pending = False
            if self.in_frame:
                self._line_bytes += 1
                if not self.dropping:
                    self._payload.append(b)
        if self.in_frame and not self.dropping and self._line_bytes > MAX_STUFFED_IMAGE:
            self.dropping = True
            self.dropped_frames += 1
            self._payload.clear()
        if not (self.in_frame and self.frame_ended):
            return False
        complete = not self.dropping
        if not complete:
            self._payload.clear()
        self._line_bytes = 0
        self.in_frame = self.frame_ended = self.dropping = False
        return complete
