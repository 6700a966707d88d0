// AudioStatusProcessor over the decoder doubles: the ten items per decoder, the
// PID rule and the PTS jump check.
#include "status/audio_status_processor.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/status/status_fixture.h"

using e2e::HostOp;
using stbav_test::FakeAudioDecoder;
using stbav_test::FakeAudioDecoderState;
using stbav_test::LogCapture;
using stbav_test::OpIds;
using stbav_test::StatusFixture;
using Ids = std::vector<unsigned int>;

namespace {

class AudioStatusTest : public StatusFixture {
protected:
    AudioStatusTest() { d.PlayStream(); }  // PTS 1000

    LogCapture logs{"tevrin.audioStatusProcess"};
    AudioStatusProcessor audio{sender, d.audioDecoders, d.audioOutput, d.demux, d.chip};  // reads every decoder added
};

}  // namespace

// Each poll logs the PTS step of the first decoder whose PTS moved; a step above
// four seconds (360000 ticks) is logged again, as a PCR adjustment.
TEST_F(AudioStatusTest, PtsStepOfTheFirstDecoderThatMovedIsLoggedAndAJumpReported) {
    FakeAudioDecoder& second = d.AddAudioDecoder();
    second.Configure([](FakeAudioDecoderState& s) { s.pts = 5000; });
    audio.Process(false);  // from 0 to 1000 and 5000
    const std::string debug = "DEBUG tevrin.audioStatusProcess: ";
    const std::string info = "INFO tevrin.audioStatusProcess: Significant PCR adjustment: ";
    const struct {
        uint64_t first, second;
        std::vector<std::string> lines;
    } polls[] = {
        {361000, 5000, {debug + "360000 1000 361000"}},
        {721001, 5000, {debug + "360001 361000 721001", info + "8590294592 361000 721001"}},
        {721001, 405000, {debug + "0 721001 721001", debug + "400000 5000 405000", info + "8590334591 5000 405000"}},
        {722001, 900000, {debug + "1000 721001 722001"}},
    };
    for (const auto& p : polls) {
        SCOPED_TRACE(p.lines[0]);
        d.audioDecoder->Configure([&](FakeAudioDecoderState& s) { s.pts = p.first; });
        second.Configure([&](FakeAudioDecoderState& s) { s.pts = p.second; });
        logs.Clear();
        audio.Process(false);
        EXPECT_EQ(logs.Lines(), p.lines);
    }
}

// A PID of 0 or 8191 is no stream: every item goes as 0, the sync status included.
TEST_F(AudioStatusTest, ForcedPollSendsAllTenPerDecoderZeroForAnAbnormalPidAndClearResendsNonZero) {
    d.AddAudioDecoder();  // a second decoder with nothing to report, no PID
    const uint64_t normal[] = {0x101, 192000, 48000, 1, 3, 0xE1, 3, 3, 0, 2};
    for (uint16_t pid : {8191, 0, 0x101}) {
        d.demux.SetPid(pid, ES_TYPE_AUDIO, 0);
        audio.Process(true);
        auto sent = adapter.Take();
        ASSERT_EQ(sent.size(), 20u);
        for (size_t i = 0; i < sent.size(); ++i) {
            SCOPED_TRACE("pid " + std::to_string(pid) + " op " + std::to_string(i));
            EXPECT_EQ(sent[i].opId, stbav_test::kAudioItems[i % 10]);
            EXPECT_EQ(sent[i].index, std::vector<unsigned char>(1, i / 10));
            EXPECT_EQ(sent[i].Value(), i < 10 && pid == 0x101 ? normal[i] : 0u);
        }
    }
    audio.Process(false);
    EXPECT_TRUE(adapter.Take().empty());
    audio.Clear();
    audio.Process(false);
    auto sent = adapter.Take();
    Ids expected = stbav_test::kAudioItems;
    expected.erase(expected.begin() + 8);  // decoding: always 0
    EXPECT_EQ(OpIds(sent), expected);
    for (const HostOp& op : sent) EXPECT_EQ(op.index, std::vector<unsigned char>{0});
}
