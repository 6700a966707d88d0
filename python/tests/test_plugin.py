# The pytest plugin seen from a test session of its own: a failing test's report
# carries the daemon's log, and a daemon that does not stop cleanly fails its test.
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
