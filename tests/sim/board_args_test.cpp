// The board refuses what hardware would: each wrong argument fails its call
// with the code of its kind, and the journal line says why. The calls are the
// daemon's own with one argument wrong at a time.
#include <algorithm>
#include <functional>

#include "tests/sim/sim_fixture.h"

namespace simtest {
namespace {

int EventSink(uint32_t, _AV_EVENT_E, const void*) { return 0; }

TEST_F(SimTest, WrongArgumentsFailWithTheirCodeAndReason) {
    const Handles h = BringUp();
    IpInputParams ip{};
    uint32_t out = 0;
    const int kMode = stbsim::kErrBadMode, kRecord = stbsim::kErrBadRecord, kNull = stbsim::kErrNullPointer,
              kParam = stbsim::kErrInvalidParam;
    struct Case {
        std::function<int()> call;
        int code;
        const char* reason;  // the end of the journal line, which names the row
    } const cases[] = {
        {[] { return system_init(1); }, kMode, "# mode=1: the board takes 0"},
        {[&] { return av_create(&out, Temp(AvCreateAttr{3, 0}), &ip); }, kRecord,
         "# attr.source_type=3: the board takes 4"},
        {[&] { return av_create(&out, Temp(AvCreateAttr{4, 1}), &ip); }, kRecord, "# attr.flags=1: the board takes 0"},
        {[&] { return av_create(&out, Temp(AvCreateAttr{4, 0}), nullptr); }, kNull,
         "# input=NULL: the board takes not NULL"},
        {[&] { return aout_open(&out, Temp(OutputOpenAttr{2, -1, h.av}), &ip); }, kRecord,
         "# attr.mode=2: the board takes 1"},
        {[&] { return vout_open_channel(&out, Temp(OutputOpenAttr{1, 0, h.av}), &ip); }, kRecord,
         "# attr.channel_mask=0: the board takes -1"},
        {[&] { return av_set_event_config(h.av, Temp(AvEventConfig{2, &EventSink, 1}), 1); }, kMode,
         "# event_class=1: the board takes 2"},
        {[&] { return av_set_event_config(h.av, Temp(AvEventConfig{1, &EventSink, 1}), 2); }, kRecord,
         "# config.event_class=1: the board takes 2"},
        {[&] { return vout_window_attach_input(h.window, 1, h.av); }, kMode, "# input_type=1: the board takes 0"},
        {[&] { return aout_track_attach_input(h.track, 2, h.av); }, kMode, "# input_type=2: the board takes 0"},
        {[&] { return vout_window_create(h.vout, &out, 1); }, kMode, "# flags=1: the board takes 0"},
        {[&] { return vout_display_get(h.vout, nullptr, &ip); }, kNull, "# attr=NULL: the board takes not NULL"},
        {[&] { return vout_display_set(h.vout, Temp(VoutDisplayAttr{11, 50, 0, 0, 0, 0, {}}), &ip); }, kRecord,
         "# attr.rate=50: the board takes 1, 2, 4, ... 256"},
        {[] { return aout_init(Temp(AoutInitInfo{}), nullptr); }, kNull, "# input=NULL: the board takes not NULL"},
        {[&] { return av_reset(h.av, 0); }, kMode, "# mode=0: the board takes 1"},
        {[&] {
             _AV_SETTING_S s{};
             s.video_type = 6;
             return av_set_config(h.av, &s);
         }, kRecord, "# settings.video_type=6: the board takes 0, 2, 5, 38, 44"},
        {[&] { return aout_set_mute(h.aout, 2, true); }, kParam, "# device=2: the board takes 1 (analog)"},
        {[] { return cc_init(Temp(CcInitParam{1})); }, kRecord, "# param.mode=1: the board takes 2"},
        {[] { return cc_set_window(0, 0, 1920, 720); }, kParam, "# width=1920: the board takes 1280"},
        {[] {
             CcAttr a{};
             a.source = 1;
             a.digital_mode = 2;
             return cc_setAttr(&a);
         }, kRecord, "# attr.digital_mode=2: the board takes 3 with source 1"},
        {[&] { return vout_close_channel(h.vout, 1); }, kMode, "# flags=1: the board takes 0"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.reason);
        stbsim::ClearJournal();
        EXPECT_EQ(c.code, c.call());
        const auto j = stbsim::Journal();
        ASSERT_EQ(1u, j.size());
        const std::string line = j[0].ToString();
        EXPECT_EQ(c.reason, line.substr(line.size() - std::min(line.size(), std::string(c.reason).size()))) << line;
    }
    // Nothing of the above changed the board: the display and the player are as they were.
    const stbsim::BoardState s = stbsim::State();
    EXPECT_EQ(11u, s.display.attr.format);
    EXPECT_TRUE(s.player.exists);
}

}  // namespace
}  // namespace simtest
