# Manual output format, then back to automatic: the daemon reports the output
# format it set, and (on the virtual board) the board's display shows it.
import pytest

DISPLAY_1080I, DISPLAY_1080P, RATE_50HZ = 11, 12, 64  # the board's display codes (1080i25: 50 fields/s)


@pytest.mark.stbav_input("h264-1080i25.scn")
def test_manual_then_automatic_format(host, daemon):
    host.send(stbsystemStatusEnable=1)
    host.apply()
    host.send(serviceselectionPcr=0x201, serviceselectionVideo=0x201, serviceselectionVideoCodecType=2,
              serviceselectionAudio1=0x202, serviceselectionAudioCodecType1=3,
              stbsystemStatusClear=1)  # report everything anew, also on a board that ran before
    host.apply()
    host.wait_for("videooutputCurrentOutputFormat", "1920x1080i25", timeout=10)

    host.send(videooutputFormatMode=2, videooutputManualFormat="1920x1080p50")
    host.apply()
    host.wait_for("videooutputCurrentOutputFormat", "1920x1080p50", timeout=10)
    if daemon.board:
        display = daemon.board.state()["display"]
        assert (display["format"], display["rate"]) == (DISPLAY_1080P, RATE_50HZ)

    host.send(videooutputFormatMode=1)
    host.apply()
    host.wait_for("videooutputCurrentOutputFormat", "1920x1080i25", timeout=10)
    if daemon.board:
        display = daemon.board.state()["display"]
        assert (display["format"], display["rate"]) == (DISPLAY_1080I, RATE_50HZ)
