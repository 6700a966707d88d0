# The pytest plugin seen from a test session of its own (a failing test's report
# carries the daemon's log, a daemon that does not stop cleanly fails its test),
# and the virtual board's control socket through the board fixture.
import os

import pytest

pytest_plugins = ["pytester"]


@pytest.mark.skipif(not os.environ.get("STBAV_STBAVD"), reason="needs stbavd (STBAV_STBAVD)")
def test_failing_tests_get_the_log_and_the_daemon_must_stop_cleanly(pytester):
    pytester.makepyfile("""
        def test_fails(host):
            host.wait_for("stbsystemReady", since="start", timeout=10)
            assert False, "on purpose"

        def test_passes(host):
            host.wait_for("stbsystemReady", "stbav_ready", since="start", timeout=10)

        def test_daemon_dies(daemon):
            daemon.process.kill()
            daemon.process.wait()
    """)
    result = pytester.runpytest("-p", "stbav.pytest_plugin")
    result.assert_outcomes(failed=1, passed=2, errors=1)
    result.stdout.fnmatch_lines(["*- stbavd log (call) -*", "*NOTICE stbav.daemon: running on /dev/pts/*"])
    result.stdout.fnmatch_lines(["*stbavd ended by itself during the test (status -9)*"])
    assert "stbavd log (setup)" not in result.stdout.str()


@pytest.mark.skipif(not os.environ.get("STBAV_STBAVD"), reason="needs stbavd (STBAV_STBAVD)")
@pytest.mark.stbav_input('service 9 name="rig"\nvideo pid=0x300 codec=mpeg2 width=720 height=576 scan=tff fps=25\n')
def test_board_control_socket(board, host):
    import time

    import stbav
    host.wait_for("stbsystemReady", since="start", timeout=10)
    assert board.state()["input"]["services"][0]["name"] == "rig"  # scenario text as the input
    board.video(width=1280, height=720)
    assert board.state()["input"]["services"][0]["video"][0]["width"] == 1280
    board.reset_journal()
    board.fail("vout_display_set", 0x80a10004, 2)
    assert board.state()["faults"] == [{"function": "vout_display_set", "code": 0x80a10004 - (1 << 32), "remaining": 2}]
    host.send(videooutputFormatMode=2, videooutputManualFormat="1920x1080p50")
    host.apply()
    deadline = time.monotonic() + 10
    while not any("vout_display_set(" in line and line.endswith("= 0x80a10004") for line in board.journal()):
        assert time.monotonic() < deadline, board.journal()
        time.sleep(0.05)  # polls the board's journal; bounded by the deadline
    with pytest.raises(stbav.BoardError, match="error:"):
        board.command("no-such-command")
