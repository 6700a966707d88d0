# The first thing to check on any board: at start the daemon reports its
# software version and that it is ready, and it answers a readiness check.
def test_ready_and_version_at_start(host, daemon):
    if not daemon.virtual:  # a real board started before the link opened: ask for both again
        host.send(stbsystemCheckReady=1)
        host.apply()
    host.wait_for("stbsystemReady", "stbav_ready", timeout=10, since="start")
    version = host.wait_for("stbsystemSoftwareVersion", since="start").value
    assert isinstance(version, str) and version  # the version as text
    if daemon.virtual:  # on the virtual board: the version file it was given
        assert "version=" + version == (daemon.root / "vendor/etc/version").read_text().strip()

    host.send(stbsystemCheckReady=1)
    host.apply()
    host.wait_for("stbsystemReady", "stbav_ready")
