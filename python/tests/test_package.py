# Tests of the stbav package itself: frames and values against bytes the daemon
# and avhost put on the line (the recorded sessions of tests/tools/replay), pcap
# captures read back operation for operation as `avhost decode` reads them, the
# value parsing, and a Link over a real pty pair.
import os
import subprocess
from pathlib import Path

import pytest

import stbav
from stbav import codec

TOP = Path(__file__).resolve().parents[2]
SESSION_PCAP = Path(__file__).parent / "data" / "session.pcap"


def capture_lines(path):
    """(dir, line bytes, avhost's note) of each data line of a text capture."""
    for line in path.read_text().splitlines():
        if line.startswith("#") or not line.strip():
            continue
        fields, _, note = line.partition("  # ")
        _, direction, hex_bytes = fields.split(" ", 2)
        yield direction, bytes.fromhex(hex_bytes), note


def test_frames_the_daemon_and_avhost_sent_decode_and_encode_alike():
    checked = 0
    for cap in sorted((TOP / "tests/tools/replay").glob("*.cap")):
        decoders = {">": codec.LineDecoder(), "<": codec.LineDecoder()}
        for direction, line, note in capture_lines(cap):
            frames = decoders[direction].push(line)
            assert [f.kind for f in frames] == ["op"], (cap.name, note)
            op = frames[0].op
            assert op.describe() == note, cap.name
            if direction == ">" and not op.is_apply:  # avhost's frames: doubled start, same bytes
                again = codec.Op.data_op(op.name, op.value, op.index)
                assert b"".join(codec.encode_frame(i) for i in again.images()) == line, note
            checked += 1
    assert checked >= 50


def test_receiver_quirks_are_kept():
    d = codec.LineDecoder()
    # A stray end marker completes an empty frame at the next start; a doubled start recovers.
    frames = d.push(bytes.fromhex("10 0F 00 05 01 01 01 01 03 10 0F 0F 00 05 01 01 01 01 02 10 41"))
    assert [(f.kind, f.line.hex()) for f in frames] == [
        ("decode failed", "100f"), ("decode failed", "0005010101010310" + "0f"),
        ("op", "0f0005010101010210")]
    assert d.take_stray()[0].line == b"A"
    # Escapes: 12 2F is a payload 0F; 11 and 13 unescaped are data.
    frames = d.push(bytes.fromhex("0F 00 12 2F 00 01 00 02 11 13 10"))
    assert frames[0].op.op_id == 0x000F and frames[0].op.data == b"\x11\x13"
    assert codec.stuff(bytes(range(0x0E, 0x15))).hex() == "0e122f1230123112321233" + "14"
    assert d.push(b"\x0f" + b"\x41" * (codec.MAX_STUFFED_IMAGE + 1) + b"\x10") == [] and d.dropped_frames == 1
    # The dropped frame's bytes show as dropped at the next start; a frame cut short is incomplete.
    assert [(f.kind, len(f.line)) for f in d.push(b"\x0f\x00")] == [("stray", codec.MAX_STUFFED_IMAGE + 3)]
    assert d.flush()[0].kind == "incomplete"


@pytest.mark.parametrize("name, value, wire", [
    ("videooutputManualFormat", "1920x1080p50", "630d0000"),
    ("videooutputManualFormat", "720x480i29.97/4:3", "42000000"),
    ("videooutputManualFormat", "1920x1080p 16x9 50.00fps", "630d0000"),
    ("videooutputManualFormat", "1920x1080psf23.98", None),
    ("videooutputManualFormat", "0x630D0000", "630d0000"),
    ("analogaudioOutputLevel", -6, "fa"),
    ("analogaudioOutputLevel", "0xFA", "fa"),
    ("analogaudioOutputLevel", -129, "range"),
    ("analogaudioOutputLevel", "0x100", "range"),
    ("analogaudioOutputLevel", "-0x5", "range"),
    ("analogaudioOutputLevel", 128, "range"),
    ("serviceselectionVideo", "0x1FFF", "1fff"),
    ("serviceselectionVideo", 65536, "range"),
    ("serviceselectionVideo", -1, "range"),
    ("serviceselectionServiceName", "Café", "436166c3a9"),
    ("avssconfigGenlockAvail", "true", "01"),
    ("avssconfigGenlockAvail", 2, "VT_BOOL"),
    ("videooutputManualFormat", "1920x1081p50", "size"),
    ("videooutputManualFormat", "1920x1080p48", "rate"),
    ("videoWidth", "12a", "malformed"),
    ("noSuchOperation", 1, "unknown operation"),
])
def test_values_by_type(name, value, wire):
    if wire is None:
        assert codec.format_text(int.from_bytes(codec.Op.data_op(name, value).data, "big")) \
            == "1920x1080psF 16x9 23.98fps"
        return
    if all(c in "0123456789abcdef" for c in wire):
        assert codec.Op.data_op(name, value).data.hex() == wire
    else:
        with pytest.raises(codec.CodecError, match=wire):
            codec.Op.data_op(name, value)


def test_values_longer_than_a_chunk_go_as_several_images():
    images = codec.Op.data_op("serviceselectionServiceName", "x" * 300).images()
    assert [i[5] for i in images] == [240, 60] and images[1][:5] == images[0][:5]
    assert codec.Op.apply_op().images() == [bytes.fromhex("0600000000")]


def read_by_package(path):
    return [f"{t:8.3f} {d} " + (f.op.describe() if f.kind == "op" else f"{f.kind}: {codec.hex_string(f.line)}")
            for t, d, f in stbav.decode_chunks(stbav.read_pcap(path))]


@pytest.mark.skipif(not os.environ.get("STBAV_AVHOST"), reason="needs avhost (STBAV_AVHOST)")
def test_pcap_reads_as_avhost_decode_reads_it():
    avhost = subprocess.run([os.environ["STBAV_AVHOST"], "decode", str(SESSION_PCAP)], capture_output=True,
                            text=True, check=True)
    expected = avhost.stdout.splitlines()
    assert read_by_package(SESSION_PCAP) == expected
    assert len(expected) > 80 and any("decode failed" in line for line in expected)


def test_pcap_written_back_is_the_same_file(tmp_path):
    chunks = stbav.read_pcap(SESSION_PCAP)
    stbav.write_pcap(tmp_path / "again.pcap", chunks, start_epoch=chunks[0].epoch)
    assert (tmp_path / "again.pcap").read_bytes() == SESSION_PCAP.read_bytes()
    (tmp_path / "bad.pcap").write_bytes(SESSION_PCAP.read_bytes()[:-3])
    with pytest.raises(stbav.PcapError, match="cut short"):
        stbav.read_pcap(tmp_path / "bad.pcap")


@pytest.fixture
def pty_pair():
    master, slave = os.openpty()
    yield master, slave
    os.close(master)
    os.close(slave)


def test_link_sends_by_name_and_waits_for_reports(pty_pair, tmp_path):
    master, slave = pty_pair
    link = stbav.connect(master, pcap=str(tmp_path / "line.pcap"))
    try:
        def daemon_sends(name, value, extra=b""):
            image = codec.Op.data_op(name, value).images()[0]
            os.write(slave, extra + codec.encode_frame(image, double_start=False))

        daemon_sends("videoWidth", 720)
        assert link.wait_for("videoWidth", 720, since="start").value == 720
        link.send(videooutputFormatMode=2, videooutputManualFormat="1920x1080p50")
        link.apply()
        expected = bytes.fromhex("0F0F 0006 0101 0001 02 10 0F0F 000A 0101 0004 630D0000 10 0F0F 0600 0000 00 10")
        got = b""
        while len(got) < len(expected):
            got += os.read(slave, 100)
        assert got == expected
        daemon_sends("videoWidth", 1920, extra=b"AB")
        daemon_sends("videooutputCurrentOutputFormat", "1920x1080p50", extra=b"\x0f\x99\x10")
        assert link.wait_for("videooutputCurrentOutputFormat", "1920x1080p50").value == 0x630D0000
        assert link.wait_for("videoWidth").value == 1920  # since the last send
        with pytest.raises(stbav.LinkError, match="no videoWidth"):
            link.wait_for("videoWidth", since="start", timeout=0.2)  # each report answers one wait only
        assert [op.value for op in link.reports("videoWidth")] == [720, 1920]
        assert (link.counters.frames_sent, link.counters.frames_received) == (3, 3)
        assert (link.counters.errors, link.counters.dropped_bytes) == (1, 2)
    finally:
        link.close()
    ops = [f.op.name for _, _, f in stbav.decode_chunks(stbav.read_pcap(tmp_path / "line.pcap")) if f.op]
    assert ops == ["videoWidth", "videooutputFormatMode", "videooutputManualFormat", "apply", "videoWidth",
                   "videooutputCurrentOutputFormat"]


def test_package_metadata_follows_the_release():
    import tomllib
    project = tomllib.loads((TOP / "python/pyproject.toml").read_text())["project"]
    release = (TOP / "etc/version").read_text().strip().split("-")[-1]
    assert project["version"] == release
    assert project["entry-points"]["pytest11"] == {"stbav.pytest_plugin": "stbav.pytest_plugin"}
