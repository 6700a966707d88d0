// The audio decoder and the analog audio output against the virtual board:
// codec, coding mode and sample size mappings over an input of several audio
// streams, volume ranges, and the platform failure paths.
#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include "platform/ff_av_probe.h"
#include "platform/stb_audio_decoder.h"
#include "platform/stb_audio_output.h"
#include "tests/platform/board_fixture.h"
#include "tests/support/log_capture.h"

namespace {

using stbav_test::BoardTest;
using stbav_test::LogCapture;
using stbav_test::WaitUntil;

const char* const kManyAudios =
    "service 1 name=Sound pcr=0x100\n"
    "video pid=0x100\n"
    "audio pid=0x101 codec=mpeg2 channels=2 rate=48000 bits=16 bitrate=192000\n"
    "audio pid=0x102 codec=ac3 channels=5.1 rate=48000 bits=24 bitrate=448000\n"
    "audio pid=0x103 codec=dra channels=1 rate=32000 bits=20 bitrate=64000\n"
    "audio pid=0x104 codec=eac3 channels=6 rate=48000 bits=32 bitrate=640000\n"
    "audio pid=0x105 codec=aac channels=2 rate=44100 bits=16 bitrate=128000\n"
    "audio pid=0x106 codec=mpeg1 channels=3 rate=44100 bits=16 bitrate=96000\n";

class AudioDecoderTest : public BoardTest {
protected:
    void SetUp() override {
        BoardTest::SetUp();
        SetInput(kManyAudios);
        BringUpByHand();
        m_Decoder.BondAvHandle(m_Handles.av);
        m_Probe.BondAvHandle(m_Handles.av);
        m_Probe.StartProbe();
        ASSERT_TRUE(WaitUntil([&] { return m_Probe.GetAudioSampleRate(0x106) == 44100; }));
    }

    LogCapture m_Log{"stbav.stbaudiodecoder"};
    FfAvProbe m_Probe;
    StbAudioDecoder m_Decoder{m_Probe};
};

TEST_F(AudioDecoderTest, AttributesMapFromStatusAndProbe) {
    struct Case {
        uint16_t pid;
        uint32_t platform;
        std::vector<uint32_t> got;  // codec, coding mode, bits per sample, sampling rate, bit rate
    };
    const Case cases[] = {
        {0x101, 1, {2, 3, 1, 48000, 192000}},   // MPEG audio, stereo, 16 bits
        {0x102, 4, {3, 8, 3, 48000, 448000}},   // AC-3, 5 channels (+LFE), 24 bits
        {0x103, 53, {8, 2, 2, 32000, 64000}},   // DRA, mono, 20 bits
        {0x104, 5, {9, 0, 0, 48000, 640000}},   // E-AC-3, 6 channels: no coding mode; 32 bits: no code
        {0x105, 2, {7, 3, 1, 44100, 128000}},   // AAC
        {0x106, 0, {2, 0, 1, 44100, 96000}},    // MPEG-1, 3 channels: no coding mode
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "pid 0x" << std::hex << c.pid);
        Select(false, c.pid, c.platform);
        EXPECT_EQ((std::vector<uint32_t>{uint32_t(m_Decoder.GetCodec()), uint32_t(m_Decoder.GetCodingMode()),
                                         m_Decoder.GetBitsPerSample(), m_Decoder.GetSamplingRate(),
                                         m_Decoder.GetBitRate()}),
                  c.got);
    }
    EXPECT_TRUE(WaitUntil([&] { return m_Decoder.GetFrameCount() > 0 && m_Decoder.GetPts() > 0; }));
}

TEST_F(AudioDecoderTest, StatusFailuresReadAsZeroWithoutALogLine) {
    Select(false, 0x101, 1);
    const std::vector<std::function<uint64_t()>> getters = {
        [&] { return uint64_t(m_Decoder.GetCodec()); },      [&] { return uint64_t(m_Decoder.GetCodingMode()); },
        [&] { return uint64_t(m_Decoder.GetBitRate()); },    [&] { return uint64_t(m_Decoder.GetBitsPerSample()); },
        [&] { return uint64_t(m_Decoder.GetSamplingRate()); }, [&] { return uint64_t(m_Decoder.GetFrameCount()); },
        [&] { return m_Decoder.GetPts(); },
    };
    Fail("av_get_status_info", static_cast<unsigned>(getters.size()));  // one failing read for each
    for (size_t i = 0; i < getters.size(); ++i) EXPECT_EQ(getters[i](), 0u) << i;
    EXPECT_TRUE(m_Log.Lines().empty());
}

TEST_F(AudioDecoderTest, SetCodecAlwaysLogsAndReportsAChange) {
    EXPECT_TRUE(m_Decoder.SetCodec(AUDIO_TYPE_AC3));
    EXPECT_FALSE(m_Decoder.SetCodec(AUDIO_TYPE_AC3));
    EXPECT_EQ(m_Log.Count("DEBUG", "SetCodec: codec - 3"), 2u);
}

class AudioOutputTest : public BoardTest {
protected:
    void SetUp() override {
        BoardTest::SetUp();
        m_Output.BondOutHandle(BringUpByHand().aout);
    }
    LogCapture m_Log{"stbav.stbaudiooutput"};
    StbAudioOutput m_Output;
};

TEST_F(AudioOutputTest, VolumeRanges) {
    struct Case {
        bool linear;
        int value;
        int result;
        int onBoard;            // what the board holds afterwards (when result is 0)
        const char* rejection;  // the log line when out of range
    };
    const Case cases[] = {
        {false, 10, 0, 0, nullptr},
        {false, -60, 0, -70, nullptr},
        {false, 0, 0, -10, nullptr},
        {false, 11, -1, 0, "Set analog audio volume with invalid value: 11 dBv."},
        {false, -61, -1, 0, "Set analog audio volume with invalid value: -61 dBv."},
        {true, 100, 0, 100, nullptr},
        {true, 0, 0, 0, nullptr},
        {true, 101, -1, 0, "Set analog audio volume with invalid value: 101."},
        {true, -1, -1, 0, "Set analog audio volume with invalid value: -1."},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << (c.linear ? "linear " : "dB ") << c.value);
        stbsim::ClearJournal();
        EXPECT_EQ(m_Output.SetVolume(AOUT_DEVICE_ANALOG, c.linear, c.value), c.result);
        if (c.rejection) {
            EXPECT_TRUE(m_Log.Has("ERROR", c.rejection));
            EXPECT_TRUE(CallsMatching({"aout_set_volume"}).empty());
        } else {
            auto s = stbsim::State().audio;
            EXPECT_EQ(s.volume, c.onBoard);
            EXPECT_EQ(s.volumeLinear, c.linear);
        }
    }
}

TEST_F(AudioOutputTest, AnalogVolumeInDbAndItsFailures) {
    EXPECT_TRUE(m_Output.SetAnalogVolume(-20));
    EXPECT_EQ(stbsim::State().audio.volume, -30);
    EXPECT_FALSE(m_Output.SetAnalogVolume(11));  // two lines: the range and the result
    EXPECT_TRUE(m_Log.Has("ERROR", "Set analog audio volume with invalid value: 11 dBv."));
    EXPECT_TRUE(m_Log.Has("ERROR", "set analog audio volume failed: 0xffffffff."));

    Fail("aout_set_volume", 2);
    EXPECT_EQ(m_Output.SetVolume(AOUT_DEVICE_ANALOG, true, 50), stbav_test::kInjected);
    EXPECT_TRUE(m_Log.Has("ERROR", "call aout_set_volume failed: 0x1234."));
    EXPECT_FALSE(m_Output.SetAnalogVolume(0));
    EXPECT_TRUE(m_Log.Has("ERROR", "set analog audio volume failed: 0x1234."));
    EXPECT_EQ(stbsim::State().audio.volume, -30);
}

TEST_F(AudioOutputTest, Mute) {
    EXPECT_TRUE(m_Output.SetMute(true));
    EXPECT_TRUE(stbsim::State().audio.mute);
    EXPECT_TRUE(m_Output.SetMute(false));
    EXPECT_FALSE(stbsim::State().audio.mute);
    Fail("aout_set_mute");
    EXPECT_FALSE(m_Output.SetMute(true));
    EXPECT_TRUE(m_Log.Has("ERROR", "set analog audio mute failed: 0x1234."));
    EXPECT_FALSE(stbsim::State().audio.mute);
}

}  // namespace
