// BoardTest: a gtest fixture over the in-process virtual board. Every test
// starts from a board at power-on (stbsim::Reset) and leaves it that way. The
// helpers bring parts of the board up by hand, so an adapter can be tested
// without the chip bring-up, and read the journal back as call names.
#pragma once

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/stb_video_decoder.h"
#include "platform/stb_module.h"
#include "sim/stbsim.h"

namespace stbav_test {

// A failure code that no real path of the board produces.
constexpr int kInjected = 0x1234;

struct BoardHandles {
    uint32_t av = 0;
    uint32_t aout = 0;
    uint32_t vout = 0;
    uint32_t window = 0;
};

class BoardTest : public ::testing::Test {
protected:
    void SetUp() override { ResetBoard(); }
    void TearDown() override { ResetBoard(); }

    // The board at power-on and the video decoder's handles and event values cleared.
    static void ResetBoard() {
        stbsim::Reset();
        StbVideoDecoder::m_AvHandle = 0;
        StbVideoDecoder::m_WindowHandle = 0;
        StbVideoDecoder::m_AspectRatio = 0;
        StbVideoDecoder::m_ChromaFormat = 0;
        StbVideoDecoder::m_NewSrcHeight = 0;
        StbVideoDecoder::m_OldSrcHeight = 0;
    }

    // System, player, audio and video outputs, window: what the chip would
    // obtain, by hand, kept in m_Handles. The journal is cleared afterwards.
    BoardHandles BringUpByHand() {
        BoardHandles& h = m_Handles;
        IpInputParams ip;
        memset(&ip, 0, sizeof ip);
        uint32_t word = 0;
        AvCreateAttr create{4, 0};
        VoutInitInfo vinit;
        AoutInitInfo ainit;
        EXPECT_EQ(system_init(0), 0);
        EXPECT_EQ(av_init(&word, &ip), 0);
        EXPECT_EQ(av_create(&h.av, &create, &ip), 0);
        OutputOpenAttr open{1, -1, h.av};
        EXPECT_EQ(aout_init(&ainit, &ip), 0);
        EXPECT_EQ(aout_open(&h.aout, &open, &ip), 0);
        EXPECT_EQ(vout_init(&vinit, &ip), 0);
        EXPECT_EQ(vout_open_channel(&h.vout, &open, &ip), 0);
        EXPECT_EQ(vout_window_create(h.vout, &h.window, 0), 0);
        EXPECT_EQ(vout_window_attach_input(h.window, 0, h.av), 0);
        stbsim::ClearJournal();
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

    // Plays video 0x100 (H.264), audio 0x101 and PCR 0x100 of the default input.
    // The journal is cleared afterwards.
    static void PlayDefaultService(uint32_t av) {
        Play(av, 0x100, 5, 0x101, 1, 0x100);
        stbsim::ClearJournal();
    }

    // Points the player at one stream of the input (video or audio) and starts it.
    void Select(bool video, uint16_t pid, uint32_t platformType) {
        _AV_SETTING_S s;
        memset(&s, 0, sizeof s);
        (video ? s.video_pid : s.audio_pid) = pid;
        (video ? s.video_type : s.audio_type) = platformType;
        ASSERT_EQ(av_set_config(m_Handles.av, &s), 0);
        ASSERT_EQ(video ? av_start_video(m_Handles.av) : av_start_audio(m_Handles.av), 0);
    }

    void SetInput(const std::string& scenario) {
        std::string error;
        ASSERT_TRUE(stbsim::SetInputText(scenario, &error)) << error;
    }

    static void Fail(const std::string& function, unsigned count = 1, int code = kInjected) {
        ASSERT_TRUE(stbsim::InjectFault(function, code, count)) << function;
    }

    static std::vector<std::string> Calls() {
        std::vector<std::string> names;
        for (const auto& e : stbsim::Journal()) names.push_back(e.name);
        return names;
    }
    static std::vector<std::string> CallsMatching(const std::vector<std::string>& wanted) {
        std::vector<std::string> names;
        for (const auto& n : Calls()) {
            if (std::find(wanted.begin(), wanted.end(), n) != wanted.end()) names.push_back(n);
        }
        return names;
    }

    BoardHandles m_Handles;  // of the last BringUpByHand
};

}  // namespace stbav_test
