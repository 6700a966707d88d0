# The virtual decoder board seen from outside, through its control socket (a
# unix-domain socket named by STBSIM_CONTROL): one command per connection, one
# answer. Board holds no state of its own; any thread.
from __future__ import annotations

import json
import socket


class BoardError(RuntimeError):
    """The board answered "error: ..." or could not be reached."""


class Board:
    def __init__(self, socket_path: str, timeout: float = 5.0):
        self.socket_path = socket_path
        self.timeout = timeout

    def command(self, line: str) -> str:
        """The board's whole answer to one command line; BoardError for "error: ..."."""
        try:
            with socket.socket(socket.AF_UNIX, socket.SOCK_STREAM) as s:
                s.settimeout(self.timeout)
                s.connect(self.socket_path)
                s.sendall(line.encode() + b"\n")
                s.shutdown(socket.SHUT_WR)
                answer = b"".join(iter(lambda: s.recv(65536), b""))
        except OSError as e:
            raise BoardError(f"board at {self.socket_path}: {e}") from None
        text = answer.decode("utf-8", "replace")
        if text.startswith("error:"):
            raise BoardError(f"board: {line!r}: {text.strip()}")
        return text

    def state(self) -> dict:
        """The board's state: system, display (format, rate, ...), player, audio,
        captions, upgrades, input, faults."""
        return json.loads(self.command("state"))

    def journal(self) -> list[str]:
        """Every platform call since the last reset_journal(), one line each."""
        return self.command("journal").splitlines()

    def reset_journal(self) -> None:
        self._ok("reset-journal")

    def stream(self, path: str) -> None:
        """A scenario or MPEG-TS file becomes the input (its clock starts now)."""
        self._ok(f"stream {path}")

    def fail(self, function: str, code: int, count: int = 1) -> None:
        """The next count calls of function return code (count 0 removes the fault)."""
        self._ok(f"fail {function} {code:#x} {count}")

    def video(self, **changes) -> None:
        """Changes the input's video now: board.video(width=1280, height=720, fps=50)."""
        self._ok("video " + " ".join(f"{k}={v}" for k, v in changes.items()))

    def audio(self, **changes) -> None:
        self._ok("audio " + " ".join(f"{k}={v}" for k, v in changes.items()))

    def _ok(self, line: str) -> None:
        answer = self.command(line).strip()
        if answer != "ok":
            raise BoardError(f"board: {line!r}: {answer}")
