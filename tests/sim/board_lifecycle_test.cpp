// The virtual board's handles and families as a daemon drives them: bring-up,
// tear-down, unknown handles, fault injection, journal, upgrade requests.
#include <functional>
#include <regex>
#include <tuple>
#include <vector>

#include "tests/sim/sim_fixture.h"

namespace simtest {
namespace {

class BoardLifecycleTest : public SimTest {};

// The daemon's bring-up succeeds (BringUp checks every step); then calls with
// handles that do not exist, or a second of what there is one of, fail.
TEST_F(BoardLifecycleTest, BringUpSucceedsAndCallsWithHandlesThatDoNotExistFail) {
    const Handles h = BringUp();
    const stbsim::BoardState st = stbsim::State();
    EXPECT_EQ(std::make_tuple(st.systemInitialised, st.display.attr.format, st.display.attr.rate,
                              st.display.windowInput, st.audio.trackInput, st.captions.started),
              std::make_tuple(true, 11u, 64u, h.av, h.av, true));
    // Kinds differ, so no two handles collide.
    EXPECT_NE(h.av, h.vout);
    EXPECT_NE(h.window, h.track);
    // The tear-down in the daemon's order is checked on the daemon itself (e2e_test).

    uint32_t spare = 0;
    IpInputParams ip{};
    VoutDisplayAttr attr;
    const int kHandle = stbsim::kErrInvalidHandle, kParam = stbsim::kErrInvalidParam;
    const struct {
        const char* what;
        std::function<int()> call;
        int code;
    } cases[] = {
        {"made-up player", [] { return av_start_video(0x1234); }, kHandle},
        {"zero handle", [] { return av_stop(0); }, kHandle},
        {"vout handle as player", [&] { return av_start_audio(h.vout); }, kHandle},
        {"player handle as window", [&] { return vout_window_open(h.av); }, kHandle},
        {"track handle as output", [&] { return aout_set_mute(h.track, 1, true); }, kHandle},
        {"display of a window", [&] { return vout_display_get(h.window, &attr); }, kHandle},
        {"second player", [&] { return av_create(&spare, Temp(AvCreateAttr{4, 0}), &ip); }, stbsim::kErrNoResource},
        {"null record", [&] { return av_get_status_info(h.av, nullptr); }, stbsim::kErrNullPointer},
        {"detach another player", [&] { return vout_window_detach_input(h.window, 0, h.av + 1); }, kParam},
        {"unknown display format",
         [&] { return vout_display_set(h.vout, Temp(VoutDisplayAttr{5, 64, 0, 0, 0, 0, {}})); }, stbsim::kErrBadRecord},
        {"volume above 0 dB", [&] { return aout_set_volume(h.aout, AOUT_DEVICE_ANALOG, false, 1); }, kParam},
        {"volume on another device", [&] { return aout_set_volume(h.aout, AOUT_DEVICE_HDMI, true, 5); }, kParam},
        {"second caption instance", [] { return cc_creat(Temp(CcCreateParam{1})); }, stbsim::kErrBadState},
    };
    for (const auto& c : cases) EXPECT_EQ(c.call(), c.code) << c.what;

    // A destroyed player's handle is dead, and a new player gets a new handle.
    ASSERT_EQ(av_destory(h.av), 0);
    EXPECT_EQ(av_start_video(h.av), kHandle);
    EXPECT_EQ(av_destory(h.av), kHandle);
    ASSERT_EQ(av_create(&spare, Temp(AvCreateAttr{4, 0}), &ip), 0);
    EXPECT_NE(spare, h.av);
}

// Upgrade requests are recorded without system_init; the other families need
// their initialisation.
TEST_F(BoardLifecycleTest, FamiliesNeedTheirInitialisationUpgradeRequestsDoNot) {
    // A braced list runs its calls in order.
    for (int code : {system_upgrade("/sdcard/update.zip"), system_upgrade("/tmp/other.zip")}) EXPECT_EQ(code, 0);
    EXPECT_EQ(system_upgrade(nullptr), stbsim::kErrNullPointer);
    EXPECT_EQ(stbsim::State().upgrades, (std::vector<std::string>{"/sdcard/update.zip", "/tmp/other.zip"}));
    EXPECT_EQ(stbsim::Journal().front().args, "path=\"/sdcard/update.zip\"");

    uint32_t word = 0, handle = 0;
    IpInputParams ip{};
    const int kNotInitialised = stbsim::kErrNotInitialised;
    for (int code : {av_init(&word, &ip), vout_init(Temp(VoutInitInfo{}), &ip), cc_init(Temp(CcInitParam{2})),
                     system_deinit()})
        EXPECT_EQ(code, kNotInitialised);
    ASSERT_EQ(system_init(0), 0);
    EXPECT_EQ(av_create(&handle, Temp(AvCreateAttr{4, 0}), &ip), kNotInitialised);
    EXPECT_EQ(av_init(&word, &ip), 0);
    EXPECT_EQ(av_create(&handle, Temp(AvCreateAttr{4, 0}), &ip), 0);
    // system_deinit releases the player; its handle dies with it.
    EXPECT_EQ(system_deinit(), 0);
    EXPECT_EQ(av_start_video(handle), stbsim::kErrInvalidHandle);
    EXPECT_EQ(std::make_tuple(stbsim::State().systemInitialised, stbsim::State().player.exists),
              std::make_tuple(false, false));
}

TEST_F(BoardLifecycleTest, InjectedFaultsFailTheNextCallsWithoutEffect) {
    const Handles h = BringUp();
    ASSERT_TRUE(stbsim::InjectFault("av_start_video", 0x1234, 2));
    for (int code : {av_start_video(h.av), av_start_video(h.av)}) EXPECT_EQ(code, 0x1234);
    EXPECT_FALSE(stbsim::State().player.videoStarted);
    EXPECT_EQ(av_start_video(h.av), 0);
    EXPECT_TRUE(stbsim::State().player.videoStarted);

    // A fault beats the checks: even an unknown handle gets the injected code.
    ASSERT_TRUE(stbsim::InjectFault("vout_window_open", -7));
    EXPECT_EQ(vout_window_open(0xdead), -7);
    EXPECT_EQ(vout_window_open(0xdead), stbsim::kErrInvalidHandle);

    // Count 0 withdraws a fault; unknown names are refused.
    ASSERT_TRUE(stbsim::InjectFault("av_stop", 0x55, 5));
    ASSERT_TRUE(stbsim::InjectFault("av_stop", 0x55, 0));
    EXPECT_EQ(av_stop(h.av), 0);
    EXPECT_FALSE(stbsim::InjectFault("av_stopp", 1));
}

TEST_F(BoardLifecycleTest, JournalRecordsEveryCallWithArgumentsAndResult) {
    ASSERT_EQ(system_init(0), 0);
    uint32_t word = 0, av = 0;
    IpInputParams ip{0xEF010203, 1234, {}, 0};
    ASSERT_EQ(av_init(&word, &ip), 0);
    ASSERT_EQ(av_create(&av, Temp(AvCreateAttr{4, 0}), &ip), 0);
    EXPECT_EQ(av_start_video(0x42), stbsim::kErrInvalidHandle);
    ASSERT_TRUE(stbsim::InjectFault("av_stop", 0x77));
    EXPECT_EQ(av_stop(av), 0x77);

    ASSERT_EQ(Calls(), (std::vector<std::string>{"system_init", "av_init", "av_create", "av_start_video", "av_stop"}));
    const auto j = stbsim::Journal();
    for (size_t i = 1; i < j.size(); ++i) EXPECT_GE(j[i].timeUs, j[i - 1].timeUs);
    EXPECT_NE(j[1].args.find("input={ip=\"239.1.2.3\", port=1234, address=\"\", port_copy=0}"), std::string::npos)
        << j[1].args;
    char handle[16];
    snprintf(handle, sizeof handle, "%#x", av);
    EXPECT_NE(j[2].args.find(std::string("attr={source_type=4, flags=0}, ")), std::string::npos) << j[2].args;
    EXPECT_NE(j[2].args.find(std::string("avHandle=") + handle), std::string::npos) << j[2].args;
    EXPECT_NE(j[4].args.find("fault=injected"), std::string::npos);
    EXPECT_EQ(std::make_tuple(j[3].result, j[4].result), std::make_tuple(stbsim::kErrInvalidHandle, 0x77));

    const std::regex line(R"(\d+ \w+\(.*\) = (0|0x[0-9a-f]+))");
    EXPECT_TRUE(std::regex_match(j[3].ToString(), line)) << j[3].ToString();
    EXPECT_NE(j[3].ToString().find("av_start_video(handle=0x42) = 0x80a10002"), std::string::npos);
    stbsim::ClearJournal();
    EXPECT_TRUE(stbsim::Journal().empty());
}

// The caption re-initialisation the daemon makes for overlay type 1; in
// between, the caption calls need an instance.
TEST_F(BoardLifecycleTest, CaptionsFollowStopDestroyCreateAndKeepAttributes) {
    BringUp();
    CcAttr attr;
    EXPECT_EQ(cc_stop(), 0);
    EXPECT_EQ(cc_destroy(), 0);
    for (int code : {cc_set_window(0, 0, 1280, 720), cc_start(), cc_getAttr(&attr), cc_send_VBI_enable(true),
                     cc_show_subtitle_enable(true), cc_destroy()})
        EXPECT_EQ(code, stbsim::kErrBadState);
    for (int code : {cc_creat(Temp(CcCreateParam{0})), cc_set_window(0, 0, 1280, 720), cc_start(), cc_getAttr(&attr)})
        ASSERT_EQ(code, 0);
    attr.source = 0;
    attr.analog_mode = 3;
    attr.data_type = 0;
    for (int code : {cc_setAttr(&attr), cc_send_VBI_enable(true), cc_show_subtitle_enable(true)}) EXPECT_EQ(code, 0);
    const auto st = stbsim::State().captions;
    EXPECT_EQ(std::make_tuple(st.createSource, st.attr.analog_mode, st.window[2], st.vbi, st.subtitles),
              std::make_tuple(0u, 3u, 1280u, true, true));
}

}  // namespace
}  // namespace simtest
