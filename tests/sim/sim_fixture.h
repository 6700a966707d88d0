// Shared helpers of the virtual board tests: a fixture that resets the board
// around every test, the daemon's bring-up sequence, and polling waits.
#pragma once

#include <chrono>
#include <cstring>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "platform/stb_module.h"
#include "sim/stbsim.h"

namespace simtest {

// Polls pred every 2 ms until it holds or the deadline passes.
template <typename Pred>
bool WaitFor(Pred pred, int deadlineMs = 10000) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(deadlineMs);
    while (!pred()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

// Waits until the monotonic clock has moved on by ms.
inline void WaitClock(int ms) {
    const int64_t until = stbsim::MonotonicUs() + int64_t{ms} * 1000;
    WaitFor([&] { return stbsim::MonotonicUs() >= until; });
}

struct Handles {
    uint32_t av = 0, aout = 0, vout = 0, window = 0, track = 0;
};

class SimTest : public ::testing::Test {
protected:
    void SetUp() override { stbsim::Reset(); }
    void TearDown() override { stbsim::Reset(); }

    // The chip bring-up as the daemon makes it; every step must succeed.
    Handles BringUp() {
        Handles h;
        IpInputParams ip;
        memset(&ip, 0, sizeof ip);
        ip.ip = 0xEF010101;
        ip.port = ip.port_copy = 1234;
        uint32_t word = 0;
        AvCreateAttr create{4, 0};
        AoutInitInfo ainit;
        VoutInitInfo vinit;
        VoutDisplayAttr attr;
        EXPECT_EQ(system_init(0), 0);
        EXPECT_EQ(av_init(&word, &ip), 0);
        EXPECT_EQ(av_create(&h.av, &create, &ip), 0);
        OutputOpenAttr open{1, -1, h.av};
        EXPECT_EQ(aout_init(&ainit, &ip), 0);
        EXPECT_EQ(aout_open(&h.aout, &open, &ip), 0);
        EXPECT_EQ(vout_init(&vinit, &ip), 0);
        EXPECT_EQ(vout_open_channel(&h.vout, &open, &ip), 0);
        EXPECT_EQ(vout_display_get(h.vout, &attr, &ip), 0);
        attr.format = 11;
        attr.rate = 64;
        EXPECT_EQ(vout_display_set(h.vout, &attr, &ip), 0);
        EXPECT_EQ(vout_window_create(h.vout, &h.window, 0), 0);
        EXPECT_EQ(vout_window_attach_input(h.window, 0, h.av), 0);
        EXPECT_EQ(vout_window_open(h.window), 0);
        EXPECT_EQ(aout_track_create(h.aout, &h.track, 0), 0);
        EXPECT_EQ(aout_track_attach_input(h.track, 0, h.av), 0);
        CcInitParam init{2};
        CcCreateParam create1{1};
        CcAttr cc;
        EXPECT_EQ(cc_init(&init), 0);
        EXPECT_EQ(cc_creat(&create1), 0);
        EXPECT_EQ(cc_set_window(0, 0, 1280, 720), 0);
        EXPECT_EQ(cc_start(), 0);
        EXPECT_EQ(cc_getAttr(&cc), 0);
        cc.source = 1;
        cc.digital_mode = 3;
        cc.data_type = 1;
        EXPECT_EQ(cc_setAttr(&cc), 0);
        return h;
    }

    // Selects video/audio/PCR PIDs with their platform codec codes and starts both.
    static void Play(uint32_t av, uint16_t video, uint32_t videoType, uint16_t audio, uint32_t audioType, uint16_t pcr) {
        _AV_SETTING_S s;
        memset(&s, 0, sizeof s);
        s.video_pid = video;
        s.video_type = videoType;
        s.audio_pid = audio;
        s.audio_type = audioType;
        s.pcr_pid = pcr;
        ASSERT_EQ(av_set_config(av, &s), 0);
        ASSERT_EQ(av_start_video(av), 0);
        ASSERT_EQ(av_start_audio(av), 0);
    }

    static AvStatusInfo Status(uint32_t av) {
        AvStatusInfo st;
        memset(&st, 0xAB, sizeof st);
        EXPECT_EQ(av_get_status_info(av, &st), 0);
        return st;
    }

    static void Input(const std::string& text) {
        std::string error;
        ASSERT_TRUE(stbsim::SetInputText(text, &error)) << error;
    }
};

}  // namespace simtest
