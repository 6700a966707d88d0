# A service selection reaches the board, and the status reports follow it.
# On the virtual board the test also looks at the player; on a real board
# (--stbav-device) the lab plays the matching stream, build/streams/h264-1080i25.ts.
import pytest


@pytest.mark.stbav_input("h264-1080i25.scn")  # service 202 "HD H.264": H.264 0x201, AC-3 0x202
def test_service_selection_reaches_the_board(host, daemon):
    host.send(stbsystemStatusEnable=1)
    host.apply()
    host.send(serviceselectionPcr=0x201, serviceselectionVideo=0x201, serviceselectionVideoCodecType=2,
              serviceselectionAudio1=0x202, serviceselectionAudioCodecType1=3, serviceselectionServiceNum=202,
              serviceselectionServiceName="HD H.264",
              stbsystemStatusClear=1)  # report everything anew, also on a board that ran before
    host.apply()

    assert host.wait_for("videoWidth", 1920, timeout=10).value == 1920
    host.wait_for("videoHeight", 1080)
    host.wait_for("videoScanType", 1)  # interlaced
    host.wait_for("videoFrameRate", 3)  # 25 fps
    host.wait_for("audiosrvEncodedType", 3)  # AC-3

    if daemon.board:
        player = daemon.board.state()["player"]
        assert (player["video_pid"], player["audio_pid"], player["pcr_pid"]) == (0x201, 0x202, 0x201)
        assert player["video_decoding"]
