# pytest plugin (entry point pytest11, or -p stbav.pytest_plugin): the fixtures
#   daemon  stbavd on a pty against the virtual board, one per test, with the
#           input named by @pytest.mark.stbav_input (scenario file, MPEG-TS file
#           or scenario text); stopped with SIGTERM afterwards and checked for a
#           clean exit; its log is attached to the report of a failing test
#   host    a stbav.Link to it
#   board   a stbav.Board over the virtual board's control socket
# With --stbav-device DEV (or STBAV_DEVICE) the same tests run against a real
# board on that serial device: no daemon is started, host opens DEV, tests that
# use board are skipped, and daemon.board is None (so a test that checks the
# board only where there is one runs in both places). Runs on pytest's main thread.
from __future__ import annotations

import os
import shutil
import signal
import subprocess
import tempfile
import time
import tty
from pathlib import Path

import pytest

from .board import Board
from .link import Link, connect

_DAEMON_KEY = pytest.StashKey()
_PACKAGE_DIR = Path(__file__).resolve().parent


def pytest_addoption(parser):
    g = parser.getgroup("stbav", "stbav daemon rigs")
    g.addoption("--stbav-device", default=os.environ.get("STBAV_DEVICE"),
                help="run against a real board on this serial device (env STBAV_DEVICE); tests using 'board' skip")
    g.addoption("--stbavd", default=os.environ.get("STBAV_STBAVD"),
                help="the stbavd to start (env STBAV_STBAVD; default: build/dev, then PATH, then /usr/sbin)")
    g.addoption("--stbav-board-lib", default=os.environ.get("STBAV_BOARD_LIB"),
                help="folder of the virtual board's libstb_module.so, if stbavd does not find it itself")
    g.addoption("--stbav-etc", default=os.environ.get("STBAV_ETC"),
                help="folder with tevrin-log4cpp.init, version and scenarios/ (default: the source tree's etc/, "
                     "then /usr/share/stbav)")
    g.addoption("--stbav-log-level", default="2", help="stbavd's -v level (default 2, notice)")
    g.addoption("--stbav-pcap", default=None, help="record each test's line as DIR/TEST.pcap")


def pytest_configure(config):
    config.addinivalue_line(
        "markers", "stbav_input(source): the virtual board's input for this test: a scenario file or an MPEG-TS "
                   "file (relative to the test file, or a sample of etc/scenarios), or scenario text")


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item, call):
    report = (yield).get_result()
    daemon = item.stash.get(_DAEMON_KEY, None)
    if report.failed and daemon is not None and daemon.log_path is not None:
        report.sections.append((f"stbavd log ({report.when})", daemon.log_text()))


class Daemon:
    """stbavd on one side of a pty pair against the virtual board, or (device set)
    a real board on a serial device that someone else runs."""

    def __init__(self, device: str | None = None):
        self.device = device          # what the host opens: a device path or a pty master fd
        self.process: subprocess.Popen | None = None
        self.log_path: Path | None = None
        self.socket_path: str | None = None
        self.root: Path | None = None
        self._fds: list[int] = []
        self._work: str | None = None

    @property
    def virtual(self) -> bool:
        return self.process is not None

    def start(self, stbavd: str, etc: Path, stream: str | None, workdir: Path, level: str,
              board_lib: str | None) -> None:
        master, slave = os.openpty()
        tty.setraw(slave)  # no echo before the daemon has opened its side
        self._fds = [master, slave]
        self.device = master
        self.root = workdir / "root"
        (self.root / "vendor/etc").mkdir(parents=True)
        for name in ("tevrin-log4cpp.init", "version"):
            shutil.copy(etc / name, self.root / "vendor/etc" / name)
        self._work = tempfile.mkdtemp(prefix="stbav-")  # unix socket paths must stay short
        self.socket_path = os.path.join(self._work, "board.sock")
        env = dict(os.environ, STBSIM_CONTROL=self.socket_path)
        env.pop("STBSIM_STREAM", None)
        if stream:
            env["STBSIM_STREAM"] = stream
        if board_lib:
            env["LD_LIBRARY_PATH"] = board_lib + os.pathsep + env.get("LD_LIBRARY_PATH", "")
        self.log_path = workdir / "stbavd.log"
        with open(self.log_path, "wb") as log:
            self.process = subprocess.Popen(
                [stbavd, "-d", os.ttyname(slave), "-R", str(self.root), "-v", level],
                stdin=subprocess.DEVNULL, stdout=log, stderr=subprocess.STDOUT, env=env)

    @property
    def board(self) -> Board | None:
        """The virtual board's control (once its socket is up), or None on a real board."""
        if not self.virtual:
            return None
        deadline = time.monotonic() + 10
        while not os.path.exists(self.socket_path):
            if time.monotonic() > deadline or self.process.poll() is not None:
                pytest.fail(f"the virtual board's control socket {self.socket_path} did not appear")
            time.sleep(0.02)  # polls for the socket file; bounded by the deadline
        return Board(self.socket_path)

    def log_text(self) -> str:
        try:
            return self.log_path.read_text(errors="replace") if self.log_path else ""
        except OSError:
            return ""

    def stop(self, timeout: float = 10.0) -> list[str]:
        """SIGTERM, then what was not clean: a non-zero exit, files left behind."""
        problems = []
        if self.process is not None:
            if self.process.poll() is not None:
                problems.append(f"stbavd ended by itself during the test (status {self.process.returncode})")
            else:
                self.process.send_signal(signal.SIGTERM)
                try:
                    self.process.wait(timeout)
                except subprocess.TimeoutExpired:
                    self.process.kill()
                    self.process.wait()
                    problems.append(f"stbavd did not stop within {timeout} s of SIGTERM (killed)")
            if self.process.returncode not in (0, None) and not problems:
                problems.append(f"stbavd exited with status {self.process.returncode}")
            for left in (self.root / "data/var/run/tevrin.pid", Path(self.socket_path)):
                if left.exists():
                    problems.append(f"stbavd left {left} behind")
        for fd in self._fds:
            os.close(fd)
        self._fds = []
        if self._work:
            shutil.rmtree(self._work, ignore_errors=True)
        return problems


def _find_stbavd(config) -> str:
    given = config.getoption("--stbavd")
    trees = [_PACKAGE_DIR.parents[1], config.rootpath, *config.rootpath.parents]
    candidates = [given] if given else [str(p / "build/dev/control/stbavd") for p in trees] + [
        shutil.which("stbavd") or "", "/usr/sbin/stbavd"]
    for c in candidates:
        if c and os.access(c, os.X_OK):
            return c
    raise pytest.UsageError("stbav: no stbavd found; give --stbavd PATH (or build it: cmake --build --preset dev "
                            "--target stbavd stb_module)")


def _find_etc(config) -> Path:
    given = config.getoption("--stbav-etc")
    for c in ([Path(given)] if given else [_PACKAGE_DIR.parents[1] / "etc", Path("/usr/share/stbav")]):
        if (c / "tevrin-log4cpp.init").is_file() and (c / "version").is_file():
            return c
    raise pytest.UsageError("stbav: no folder with tevrin-log4cpp.init and version; give --stbav-etc DIR")


def _input_of(request, etc: Path, workdir: Path) -> str | None:
    marker = request.node.get_closest_marker("stbav_input")
    if marker is None:
        return None  # the board's default input: one HD H.264 service
    source = str(marker.args[0])
    if "\n" in source:
        path = workdir / "input.scn"
        path.write_text(source)
        return str(path)
    streams = _PACKAGE_DIR.parents[1] / "build/streams"  # make streams: the samples as MPEG-TS files
    for c in (Path(source), Path(request.node.path).parent / source, etc / "scenarios" / source, streams / source):
        if c.is_file():
            return str(c.resolve())
    pytest.fail(f"stbav_input: no file {source} (looked beside the test, in {etc / 'scenarios'} and in {streams}; "
                "`make streams` makes the MPEG-TS samples)")


@pytest.fixture
def daemon(request, tmp_path):
    """The daemon under test: started per test on the virtual board, or the real
    board given with --stbav-device. Stopped and checked for a clean exit afterwards."""
    config = request.config
    device = config.getoption("--stbav-device")
    if device:
        yield Daemon(device)
        return
    etc = _find_etc(config)
    stbavd, stream = _find_stbavd(config), _input_of(request, etc, tmp_path)
    d = Daemon()
    request.node.stash[_DAEMON_KEY] = d
    try:
        d.start(stbavd, etc, stream, tmp_path, config.getoption("--stbav-log-level"),
                config.getoption("--stbav-board-lib"))
        yield d
    finally:
        problems = d.stop()
    if problems:
        pytest.fail("; ".join(problems), pytrace=False)


@pytest.fixture
def host(request, daemon) -> Link:
    """A link to the daemon, as the host controller board has it."""
    pcap_dir = request.config.getoption("--stbav-pcap")
    pcap = None
    if pcap_dir:
        os.makedirs(pcap_dir, exist_ok=True)
        pcap = os.path.join(pcap_dir, request.node.name.replace("/", "_") + ".pcap")
    link = connect(daemon.device, pcap=pcap)
    yield link
    link.close()


@pytest.fixture
def board(daemon) -> Board:
    """The virtual board under the daemon; skips the test on a real board (tests that
    should run there too use daemon.board, which is None on a real board)."""
    if not daemon.virtual:
        pytest.skip("needs the virtual board (running against a real board on " + str(daemon.device) + ")")
    return daemon.board
