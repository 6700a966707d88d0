// StbAvOpSender: status values become typed operations on the adapter (the
// status tests' recording adapter, whose port does not exist).
#include "control/stb_av_op_sender.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include "tests/status/status_fixture.h"

using Bytes = std::vector<unsigned char>;

namespace {

class StbAvOpSenderTest : public stbav_test::StatusFixture {
protected:
    stbav_test::LogCapture log{"stbav.opsender"};
};

}  // namespace

// Numbers take the dictionary's type and a one-byte index; text goes as a
// string whatever the dictionary says, with its index as given.
TEST_F(StbAvOpSenderTest, EachValueGoesOutAsOneOperation) {
    const struct {
        const char* why;
        std::function<void()> send;
        unsigned int opId;
        Bytes index, data;
    } cases[] = {
        {"videoWidth, VT_UINT16", [&] { sender.TransmitStatus(271u, 0x102u, static_cast<unsigned short>(1920)); },
         271, {0x02}, {0x07, 0x80}},
        {"videoFrameRate, VT_UINT16", [&] { sender.TransmitStatus(274u, 1u, VIDEO_FRAME_RATE_25); },
         274, {0x01}, {0x00, VIDEO_FRAME_RATE_25}},
        {"videoAverageBitrate, VT_UINT32", [&] { sender.TransmitStatus(281u, 0u, 0x01020304u); },
         281, {0x00}, {0x01, 0x02, 0x03, 0x04}},
        {"stbsystemReset, VT_INT8: -1 as FF", [&] { sender.TransmitStatus(0u, 1u, static_cast<signed char>(-1)); },
         0, {0x01}, {0xFF}},
        {"stbsystemSoftwareVersion, VT_UINT32, as text", [&] { sender.TransmitStatus(2u, 0x1FFu, std::string("1.4.2")); },
         2, {0xFF}, {'1', '.', '4', '.', '2'}},
    };
    for (const auto& c : cases) {
        c.send();
        const auto sent = adapter.Take();
        ASSERT_EQ(sent.size(), 1u) << c.why;
        EXPECT_EQ(std::make_tuple(sent[0].opType, sent[0].opId, sent[0].index, sent[0].data),
                  std::make_tuple(int(OP_TYPE_DATA), c.opId, c.index, c.data))
            << c.why;
    }
    EXPECT_TRUE(log.Has("DEBUG", "TransmitStatus::Sending OpId:2 index: 511"));
    EXPECT_TRUE(log.Has("DEBUG", "TransmitStatus::Pushing op: 2 into UartAdapter..."));
}

TEST_F(StbAvOpSenderTest, TextEntryThroughTheTypedPathOrAnUnknownOpIdSendsNothing) {
    sender.TransmitStatus(226u, 1u, 5u);  // selectedserviceServiceName, VT_STRING
    sender.TransmitStatus(400u, 1u, 5u);
    EXPECT_TRUE(adapter.Take().empty());
    EXPECT_TRUE(prints.Contains("Unexpected datatype received: 12"));
    EXPECT_EQ(log.Lines(), (std::vector<std::string>{
                               "ERROR stbav.opsender: TransmitStatus::SetSsOpData failed, opId: 226, dataType: 12",
                               "ERROR stbav.opsender: TransmitStatus: OpId 400 is not in the dictionary"}));
}

TEST_F(StbAvOpSenderTest, FailedSendsAreLogged) {
    adapter.result = false;
    sender.TransmitStatus(3u, 1u, static_cast<signed char>(1));
    sender.TransmitStatus(2u, 0u, std::string("v"));
    EXPECT_EQ(adapter.Take().size(), 2u);
    EXPECT_TRUE(log.Has("ERROR", "TransmitStatus::SendOperation failed, opId: 3."));
    EXPECT_TRUE(log.Has("ERROR", "TransmitStatus::Adapter failed to send operation!"));
}
