// Real MPEG-TS files as the virtual board's input: streams made with ffmpeg are
// loaded into the board, and the daemon's own adapters (demux, stream probe,
// video and audio decoders) read back what the host would be sent. Also the
// records of the C API, input switching and the failures of a bad file.
#include <cstdlib>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "platform/ff_av_probe.h"
#include "platform/stb_audio_decoder.h"
#include "platform/stb_demux.h"
#include "platform/stb_video_decoder.h"
#include "tests/e2e/e2e_support.h"
#include "tests/sim/sim_fixture.h"
#include "tests/sim/ts_cases.h"

namespace {

using stbav_test::BoardHandles;
using simtest::WaitUntil;
using namespace tstest;  // the streams and what the daemon makes of them

class TsInputTest : public simtest::SimTest {
protected:
    void SetUp() override {
        SimTest::SetUp();
        if (!HaveFfmpeg()) GTEST_SKIP() << kNoFfmpeg;
    }

    static _AV_SETTING_S FirstProgramme() {
        _AV_SETTING_S s{};
        EXPECT_EQ(av_search_progInfo(&s, simtest::Temp(IpInputParams{})), 0);
        return s;
    }

    const e2e::TempDir m_Dir;
};

TEST_F(TsInputTest, TheDaemonReadsEachStreamsAttributesAndEveryProgrammeIsListed) {
    const BoardHandles h = BringUpByHand();
    for (const TsCase& c : {kSdCase, kHd1080iCase, kHd720pCase, kUhdCase, kStudioCase}) {
        SCOPED_TRACE(c.stream->name);
        std::string error;
        ASSERT_TRUE(stbsim::SetInputFile(TsFile(*c.stream), &error)) << error;

        // The host learns the first programme, then selects it as it would.
        const _AV_SETTING_S found = FirstProgramme();
        const auto& [serviceId, videoPid, audioPid, videoCode, audioCode] = c.programme;
        EXPECT_EQ(std::make_tuple(found.service_id, found.video_pid, found.audio_pid, found.pcr_pid, found.video_type,
                                  found.audio_type),
                  std::make_tuple(serviceId, videoPid, audioPid, videoPid, videoCode, audioCode));
        EXPECT_STREQ(found.service_name, c.serviceName);

        StbDemux demux;
        demux.BondAvHandle(h.av);
        // A braced list runs its calls in order.
        for (bool ok : {demux.SetServiceVideoCodecType(c.videoType), demux.SetServiceAudioCodecType(c.audioType),
                        demux.SetPid(found.video_pid, ES_TYPE_VIDEO), demux.SetPid(found.audio_pid, ES_TYPE_AUDIO),
                        demux.SetPid(found.pcr_pid, ES_TYPE_PCR), demux.SetServiceId(found.service_id)})
            ASSERT_TRUE(ok);

        FfAvProbe probe;
        probe.BondAvHandle(h.av);
        probe.StartProbe();
        ASSERT_TRUE(WaitUntil(
            [&] { return probe.GetVideoLevel(found.video_pid) != 0 && probe.GetAudioSampleRate(found.audio_pid); }));
        StbVideoDecoder video(probe);
        video.BondAvHandle(h.av);
        video.SetCodec(c.videoType);
        StbAudioDecoder audio(probe);
        audio.BondAvHandle(h.av);
        audio.SetCodec(c.audioType);

        // Width, height, scan, rate and aspect, all 0 (unknown) until GetFormat fills them in.
        decltype(c.format) format{};
        ASSERT_TRUE(std::apply([&](auto&... field) { return video.GetFormat(field...); }, format));
        EXPECT_EQ(format, c.format);
        EXPECT_EQ(video.GetCodec(), c.videoType);
        EXPECT_EQ(std::make_tuple(video.GetProfile(), video.GetLevel(), video.GetChromaFormat(), video.GetBitDepth()),
                  c.coding);
        EXPECT_EQ(std::make_tuple(audio.GetSamplingRate(), audio.GetCodec(), audio.GetCodingMode()), c.audio);
        EXPECT_GT(audio.GetBitRate(), 0u);
        EXPECT_EQ(demux.GetServiceId(), serviceId);
        EXPECT_EQ(video.GetServiceName(demux.GetServiceId()), c.serviceName);
        EXPECT_TRUE(WaitUntil([&] { return video.GetFrameCount() > 1 && audio.GetFrameCount() > 1; }));
    }

    // The last file has two programmes, and the stream information lists both.
    AvStreamInfo info{};
    ASSERT_EQ(av_get_stream_info(h.av, &info), 0);
    ASSERT_EQ(std::make_tuple(info.service_count, info.video_count, info.audio_count), std::make_tuple(2u, 2u, 2u));
    EXPECT_EQ(info.service[1].program_number, 0x502);
    EXPECT_STREQ(info.service[1].name, "CIF");

    // The second programme's picture: 352x288 shown at 4:3 has 12:11 pixels.
    const AvVideoStreamEntry& v = info.video[1];
    EXPECT_EQ(std::make_tuple(v.pid, v.width, v.height, v.aspect_first, v.aspect_second, v.frame_rate_num,
                              v.frame_rate_den),
              std::make_tuple(0x521u, 352u, 288u, 12u, 11u, 25u, 1u));
    // Progressive, Main profile at Main level, 4:2:0, 8 bits.
    EXPECT_EQ(std::make_tuple(v.field_order, v.profile, v.level, v.chroma_format, v.bit_depth),
              std::make_tuple(1u, 4u, 8u, 1u, 0u));
    EXPECT_EQ(info.video[0].field_order, 3u);  // the first programme's is bottom field first

    // MPEG audio at 32 kHz is MPEG-1; at 24 kHz (the first programme's) MPEG-2.
    const AvAudioStreamEntry& a = info.audio[1];
    EXPECT_EQ(info.audio[0].audio_type, 1u);
    EXPECT_EQ(std::make_tuple(a.pid, a.audio_type, a.sample_rate, a.channels, a.format, a.bit_rate),
              std::make_tuple(0x522u, 0u, 32000u, 1u, 0u, 64000u));
}

// STBSIM_STREAM is probed at system_init, and the stream command probes its
// file and switches what is decoded; a file that cannot be probed fails either
// and leaves the input as it was.
TEST_F(TsInputTest, FilesAreProbedAtSystemInitAndTheStreamCommandSwitchesWhatIsDecoded) {
    const std::string sd = TsFile(kMpeg2Sd), first = TsFile(kH264Interlaced), second = TsFile(kH264Progressive);
    // Null packets only: sync bytes, but no programme association table.
    std::string nullPackets;
    for (int i = 0; i < 20; ++i) nullPackets += "\x47\x1f\xff\x10" + std::string(184, '\xff');
    const std::string nulls = m_Dir / "null-packets.ts";
    ASSERT_TRUE(e2e::WriteFile(nulls, nullPackets));
    const std::string missing = std::string(STBAV_TS_STREAM_DIR) + "/no-such-file.ts";
    setenv("STBSIM_STREAM", sd.c_str(), 1);
    const BoardHandles h = BringUpByHand();
    unsetenv("STBSIM_STREAM");
    EXPECT_EQ(FirstProgramme().service_id, 101);

    ASSERT_EQ(stbsim::Command("stream " + first), "ok\n");
    Play(h.av, 0x201, 5, 0x202, 4, 0x201);
    AvStatusInfo st = Status(h.av);
    EXPECT_EQ(std::make_tuple(st.width, st.height, st.frame_rate_int, st.frame_rate_dec, st.video_pid),
              std::make_tuple(1920u, 1080u, 25, 0, 0x201));
    ASSERT_EQ(stbsim::Command("stream " + second), "ok\n");
    st = Status(h.av);
    // The old PIDs are gone from the input.
    EXPECT_EQ(std::make_tuple(st.video_pid, st.audio_pid), std::make_tuple(0, 0));
    Play(h.av, 0x301, 5, 0x302, 2, 0x301);
    st = Status(h.av);
    EXPECT_EQ(std::make_tuple(st.width, st.height, st.frame_rate_int, st.frame_rate_dec, st.audio_sample_rate),
              std::make_tuple(1280u, 720u, 59, 94, 44100u));
    // The audio clock carries on from the stream's own timestamps, which start 100 s in.
    EXPECT_GE(st.audio_pts, 100u * 90000);
    EXPECT_LT(st.audio_pts, 200u * 90000);
    EXPECT_TRUE(WaitUntil([&] { return Status(h.av).video_frame_count > 2; }));

    const struct {
        std::string path;
        std::string reply;
    } cases[] = {
        {nulls, "error: " + nulls + ": no programme in the MPEG-TS file (no PAT/PMT)\n"},
        {missing, "error: " + missing + ": cannot open\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(stbsim::Command("stream " + c.path), c.reply);
        EXPECT_EQ(FirstProgramme().service_id, 303);
    }
    EXPECT_EQ(av_destory(h.av), 0);
    stbsim::Reset();
    setenv("STBSIM_STREAM", nulls.c_str(), 1);
    EXPECT_EQ(system_init(0), stbsim::kErrInvalidParam);
    unsetenv("STBSIM_STREAM");
}

}  // namespace
