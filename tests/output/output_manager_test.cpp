// OutputManager through the recording doubles: which platform calls an apply
// pass makes, with which arguments and in which order; dirty rules; setter
// validation with its error texts; the single-index shape.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "output/output_manager.h"
#include "tests/doubles/fake_decoder_set.h"
#include "tests/support/log_capture.h"

namespace {

using Calls = std::vector<std::string>;
using DecodedFormat = stbav_test::VideoFormatState;  // {width, height, scan, rate, aspect}

constexpr uint32_t k1080p50 = 0x630D0000u;    // 1920x1080p 16x9 50.00fps
constexpr uint32_t k2160p60 = 0x83110000u;    // 3840x2160p 16x9 60.00fps
constexpr uint32_t k576i25 = 0x33040000u;     // 720x576i 16x9 25.00fps

// What a forced pass on untouched settings does: automatic mode with a silent
// decoder sets no format; audio muted at 0 dB; captions off.
const Calls kDefaultForcedPass = {"IVideoDecoder::GetFormat()", "IAudioOutput::SetMute(true)",
                                  "IAudioOutput::SetAnalogVolume(0)", "IClosedCaption::SetOverlayCcState(false)",
                                  "IClosedCaption::SetVbiLine21CcState(false)"};

// A fresh manager over a fresh set of doubles.
struct Rig {
    stbav_test::FakeDecoderSet d;
    OutputManager om{d.videoDecoder, d.videoOutput, d.audioOutput, d.chip, d.closedCaption, d.demux};

    void Decoder(const DecodedFormat& f) { d.videoDecoder.SetReportedFormat(f); }
    // The calls an unforced (or forced) pass makes, and what it returns.
    std::pair<Calls, bool> Run(bool force = false) {
        d.log.Clear();
        const bool result = om.ApplySettings(force);
        return {d.log.Calls(), result};
    }
    Calls Pass() { return Run().first; }
    Calls Forced() { return Run(true).first; }
};

// ---- video format ----------------------------------------------------------

struct VideoCase {
    const char* why;
    int iface;
    int hdMode;  // 0: left as constructed (automatic)
    uint32_t hdCode;
    int cvbsMode;
    uint32_t cvbsCode;
    int std525, std625;  // 0: left unset
    bool asksDecoder;
    const char* format;      // the arguments of IVideoOutput::SetFormat; nullptr: no format set
    DecodedFormat decoded{};
};

const VideoCase kVideoCases[] = {
    {"HD auto 1080i25", 1, 1, 0, 0, 0, 0, 0, true, "1920,1080,1,3,1,2,1", {1920, 1080, 1, 3, 1}},
    {"HD auto 1440-wide 1080i29.97 4:3 is scaled", 1, 1, 0, 0, 0, 0, 0,
     true, "1920,1080,1,4,1,2,1", {1440, 1080, 1, 4, 2}},
    {"HD auto 576i25 with PAL", 1, 1, 0, 0, 0, 0, 1, true, "720,576,1,3,1,1,1", {720, 576, 1, 3, 2}},
    {"HD auto 576i25 with PAL-N", 1, 1, 0, 0, 0, 0, 2, true, "720,576,1,3,1,3,1", {720, 576, 1, 3, 2}},
    {"HD auto 480i29.97 with NTSC", 1, 1, 0, 0, 0, 1, 0, true, "720,480,1,5,1,2,1", {720, 480, 1, 4, 1}},
    {"HD auto 480i29.97 with NTSC-J", 1, 1, 0, 0, 0, 2, 0, true, "720,480,1,5,1,4,1", {720, 480, 1, 4, 1}},
    {"HD auto, unknown scan and aspect are not tested", 1, 0, 0, 0, 0, 0, 0,
     true, "1920,1080,2,6,1,2,1", {1920, 1080, 0, 6, 0}},
    {"HD manual 1080p50 does not ask the decoder", 1, 2, k1080p50, 0, 0, 0, 0,
     false, "1920,1080,2,6,1,2,1", {720, 576, 1, 3, 1}},
    {"HD manual 2160p60", 1, 2, k2160p60, 0, 0, 0, 0, false, "3840,2160,2,8,1,2,1"},
    {"HD manual 1080psF25 is scaled as progressive", 1, 2, 0x330E0000u, 0, 0, 0, 0, false, "1920,1080,2,3,1,2,1"},
    {"HD manual code without a resolution falls back to 480i", 1, 2, 0x00180000u, 0, 0, 0, 0,
     false, "720,480,1,4,1,4,1"},
    {"HD interface ignores the composite settings", 1, 2, k2160p60, 2, k576i25, 0, 0, false, "3840,2160,2,8,1,2,1"},
    {"composite manual 1080p50 becomes 480i, NTSC-J by default", 2, 0, 0, 2, k1080p50, 0, 0,
     false, "720,480,1,4,1,4,2"},
    {"composite 480i with NTSC", 2, 0, 0, 2, k1080p50, 1, 0, false, "720,480,1,4,1,2,2"},
    {"composite manual 576i25 with PAL", 2, 0, 0, 2, k576i25, 0, 1, false, "720,576,1,3,1,1,2"},
    {"composite manual 576i25, PAL-N by default", 2, 0, 0, 2, k576i25, 0, 0, false, "720,576,1,3,1,3,2"},
    {"composite auto follows the decoder, HD manual ignored", 2, 2, k2160p60, 1, 0, 0, 0,
     true, "720,576,1,3,1,3,2", {720, 576, 1, 3, 1}},
    {"composite auto 576p50 4:3 is not scaled", 2, 0, 0, 1, 0, 0, 0, true, "720,576,2,6,2,2,2", {720, 576, 2, 6, 2}},
    {"composite auto decoding 1080p50 gives 480i", 2, 0, 0, 1, 0, 0, 0,
     true, "720,480,1,4,1,4,2", {1920, 1080, 2, 6, 1}},
    {"interface 3 counts as composite", 3, 0, 0, 2, k1080p50, 0, 0, false, "720,480,1,4,1,4,3"},
    {"decoder rate 0: no format set", 1, 1, 0, 0, 0, 0, 0, true, nullptr, {1920, 1080, 2, 0, 1}},
    {"decoder width 0: no format set", 1, 1, 0, 0, 0, 0, 0, true, nullptr, {0, 1080, 2, 6, 1}},
    {"decoder height 0: no format set", 1, 1, 0, 0, 0, 0, 0, true, nullptr, {1920, 0, 2, 6, 1}},
    {"composite, decoder rate 0: no format set", 2, 0, 0, 1, 0, 0, 0, true, nullptr, {720, 576, 1, 0, 1}},
};

TEST(OutputManagerVideo, AppliesTheFormatForEachInterfaceAndMode) {
    for (const auto& c : kVideoCases) {
        SCOPED_TRACE(c.why);
        Rig rig;
        rig.Decoder(c.decoded);
        ASSERT_TRUE(rig.om.SetVideoOutputInterface(0, static_cast<VideoOutputInterface_e>(c.iface)));
        if (c.hdMode != 0) rig.om.SetVideoFormatMode(0, static_cast<FormatMode_e>(c.hdMode));
        if (c.hdCode != 0) rig.om.SetVideoFormat(0, c.hdCode);
        if (c.cvbsMode != 0) rig.om.SetVideoFormatModeCvbs(0, static_cast<FormatMode_e>(c.cvbsMode));
        if (c.cvbsCode != 0) rig.om.SetVideoFormatCvbs(0, c.cvbsCode);
        if (c.std525 != 0) rig.om.SetComposite525Std(0, static_cast<Composite525_e>(c.std525));
        if (c.std625 != 0) rig.om.SetComposite625Std(0, static_cast<Composite625_e>(c.std625));
        Calls calls;
        if (c.asksDecoder) calls.push_back("IVideoDecoder::GetFormat()");
        if (c.format != nullptr) calls.push_back(std::string("IVideoOutput::SetFormat(") + c.format + ")");
        EXPECT_EQ(rig.Run(), std::make_pair(calls, false)) << "the video group never reports success";
    }
}

TEST(OutputManagerVideo, SilentOrFailingDecoderSetsNoFormat) {
    stbav_test::LogCapture log("stbav.outputmanager");
    Rig rig;
    rig.Decoder({1920, 1080, 2, 0, 1});
    EXPECT_FALSE(rig.om.ApplyVideoFormatSetting(0));
    EXPECT_TRUE(log.Has("DEBUG", "ApplyVideoFormatSetting() Decoder is not initialized return false"));
    EXPECT_EQ(rig.d.videoOutput.Snapshot().setFormatCount, 0);

    rig.Decoder({1920, 1080, 1, 3, 1});
    rig.d.videoDecoder.FailOn("GetFormat");
    rig.om.SetVideoDirty(0);
    EXPECT_EQ(rig.Pass(), Calls({"IVideoDecoder::GetFormat()"}));
}

// ---- audio and captions --------------------------------------------------------

constexpr int kUnset = 100;  // setter not called
using Overload = stbav_test::FakeClosedCaptionState::Overload;

struct GroupCase {
    const char* why;
    int audioState, gain;                    // kUnset: not set
    int ccType, ntsc, dtv, overlay, line21;  // 0: not set
    Calls calls;
    Overload overload = Overload::NONE;  // the SetOverlayCc overload called
};

const GroupCase kAudioAndCaptionCases[] = {
    {"analog audio on at -20 dBV", ANALOG_AUDIO_ON, -20, 0, 0, 0, 0, 0,
     {"IAudioOutput::SetMute(false)", "IAudioOutput::SetAnalogVolume(-20)"}},
    {"analog audio off, level still applied", ANALOG_AUDIO_OFF, kUnset, 0, 0, 0, 0, 0,
     {"IAudioOutput::SetMute(true)", "IAudioOutput::SetAnalogVolume(0)"}},
    {"highest level", kUnset, 10, 0, 0, 0, 0, 0, {"IAudioOutput::SetMute(true)", "IAudioOutput::SetAnalogVolume(10)"}},
    {"lowest level", kUnset, -60, 0, 0, 0, 0, 0, {"IAudioOutput::SetMute(true)", "IAudioOutput::SetAnalogVolume(-60)"}},
    {"NTSC overlay CC4 and line 21", kUnset, kUnset, OVERLAY_CC_TYPE_NTSC, OVERLAY_NTSC_CC4, OVERLAY_DTV_SERVICE5,
     ENABLE_STATE_ENABLE, ENABLE_STATE_ENABLE,
     {"IClosedCaption::SetOverlayCc(1,4)", "IClosedCaption::SetOverlayCcState(true)",
      "IClosedCaption::SetVbiLine21CcState(true)"}, Overload::NTSC},
    {"DTV overlay service 6", kUnset, kUnset, OVERLAY_CC_TYPE_DTV, OVERLAY_NTSC_CC2, OVERLAY_DTV_SERVICE6,
     ENABLE_STATE_ENABLE, 0,
     {"IClosedCaption::SetOverlayCc(2,6)", "IClosedCaption::SetOverlayCcState(true)",
      "IClosedCaption::SetVbiLine21CcState(false)"}, Overload::DTV},
    {"overlay on without a type selects no data", kUnset, kUnset, 0, 0, 0, ENABLE_STATE_ENABLE, 0,
     {"IClosedCaption::SetOverlayCcState(true)", "IClosedCaption::SetVbiLine21CcState(false)"}},
    {"overlay off selects no data", kUnset, kUnset, OVERLAY_CC_TYPE_NTSC, 0, 0, ENABLE_STATE_DISABLE,
     ENABLE_STATE_DISABLE, {"IClosedCaption::SetOverlayCcState(false)", "IClosedCaption::SetVbiLine21CcState(false)"}},
};

TEST(OutputManagerAudioAndCaptions, AppliesWhatWasSet) {
    for (const auto& c : kAudioAndCaptionCases) {
        SCOPED_TRACE(c.why);
        Rig rig;
        if (c.audioState != kUnset) rig.om.SetAnalogAudioState(0, static_cast<AnalogAudio_e>(c.audioState));
        if (c.gain != kUnset) rig.om.SetAnalogAudioLevelGain(0, c.gain);
        if (c.ccType != 0) rig.om.SetOverlayCcType(static_cast<OverlayCcType_e>(c.ccType));
        if (c.ntsc != 0) rig.om.SetOverlayNtscCcDataType(static_cast<OverlayNtscCcType_e>(c.ntsc));
        if (c.dtv != 0) rig.om.SetOverlayDtvCcDataType(static_cast<OverlayDtvCcType_e>(c.dtv));
        if (c.overlay != 0) rig.om.SetOverlayCcState(static_cast<Enable_e>(c.overlay));
        if (c.line21 != 0) rig.om.SetCompositeLine21Cc(static_cast<Enable_e>(c.line21));
        EXPECT_EQ(rig.Run(), std::make_pair(c.calls, true));
        EXPECT_EQ(rig.d.closedCaption.Snapshot().lastOverload, c.overload);
    }
}

TEST(OutputManagerAudioAndCaptions, ResultIsTheOrOfThePlatformResults) {
    const std::vector<const char*> audio = {"SetMute", "SetAnalogVolume"};
    struct {
        bool overlayOn;
        std::vector<const char*> audioFailing, captionFailing;
        bool result;
    } const cases[] = {
        {true, {"SetMute"}, {}, true},
        {true, audio, {"SetOverlayCcState"}, true},
        {true, audio, {"SetOverlayCcState", "SetVbiLine21CcState"}, true},  // SetOverlayCc succeeded
        {true, audio, {"SetOverlayCcState", "SetVbiLine21CcState", "SetOverlayCc"}, false},
        {false, audio, {"SetVbiLine21CcState"}, true},  // switching the overlay off succeeded
        {false, audio, {"SetVbiLine21CcState", "SetOverlayCcState"}, false},
    };
    for (const auto& c : cases) {
        Rig rig;
        for (auto op : c.audioFailing) rig.d.audioOutput.FailOn(op);
        for (auto op : c.captionFailing) rig.d.closedCaption.FailOn(op);
        rig.om.SetOverlayCcType(OVERLAY_CC_TYPE_NTSC);
        rig.om.SetOverlayNtscCcDataType(OVERLAY_NTSC_CC1);
        rig.om.SetOverlayCcState(c.overlayOn ? ENABLE_STATE_ENABLE : ENABLE_STATE_DISABLE);
        rig.om.SetAudioDirty(0);
        EXPECT_EQ(rig.om.ApplySettings(false), c.result) << c.audioFailing.size() << "/" << c.captionFailing.size();
    }
}

// ---- the pass as a whole ------------------------------------------------------------

TEST(OutputManagerPass, ForcedPassReappliesEveryGroupInOrder) {
    Rig rig;
    EXPECT_EQ(rig.Run(), std::make_pair(Calls(), false)) << "nothing dirty";
    EXPECT_EQ(rig.Run(true), std::make_pair(kDefaultForcedPass, true));
    EXPECT_EQ(rig.Pass(), Calls());

    rig.om.SetVideoFormatMode(0, FORMAT_MODE_MANUAL);
    rig.om.SetVideoFormat(0, k1080p50);
    rig.om.SetAnalogAudioState(0, ANALOG_AUDIO_ON);
    rig.om.SetCompositeLine21Cc(ENABLE_STATE_ENABLE);
    const Calls configured = {"IVideoOutput::SetFormat(1920,1080,2,6,1,2,1)", "IAudioOutput::SetMute(false)",
                              "IAudioOutput::SetAnalogVolume(0)", "IClosedCaption::SetOverlayCcState(false)",
                              "IClosedCaption::SetVbiLine21CcState(true)"};
    EXPECT_EQ(rig.Pass(), configured);
    EXPECT_EQ(rig.Forced(), configured);
    EXPECT_EQ(rig.Forced(), configured);
}

TEST(OutputManagerPass, AspectRatioAndRasterAreOutsideThePass) {
    Rig rig;
    rig.om.SetHDAspectRatioMode(0, HD_DISPLAY_MODE_PILLAR_BOX);
    rig.om.SetSDAspectRatioMode(0, SD_DISPLAY_MODE_LETTER_BOX);
    rig.om.SetAspectRatioDirty(0);
    EXPECT_FALSE(rig.om.SetHDAspectRatioConversion(0, ASPECT_RATIO_CONVERSION_AUTO));
    EXPECT_FALSE(rig.om.SetSDAspectRatioConversion(0, ASPECT_RATIO_CONVERSION_AUTO));
    EXPECT_EQ(rig.Pass(), Calls());
    EXPECT_FALSE(rig.om.ApplyAspectRatioSettings(true));
    EXPECT_EQ(rig.d.log.Calls(), Calls());

    rig.om.SetRasterMode(0, RASTER_MODE_ON);
    rig.om.SetRasterColor(0, RASTER_COLOR_BLUE);
    rig.d.videoOutput.FailOn("SetRasterMode");
    rig.d.log.Clear();
    EXPECT_TRUE(rig.om.ApplyVideoRasterGroupSetting(0));
    EXPECT_EQ(rig.d.log.Calls(), Calls({"IVideoOutput::SetRasterMode(1)", "IVideoOutput::SetRasterColor(1)"}));
    rig.Forced();
    EXPECT_EQ(rig.d.log.CallsWithPrefix("IVideoOutput::SetRaster"), Calls());
}

TEST(OutputManagerPass, ColourSpaceAndUhdFollowTheHdFormat) {
    struct {
        const char* why;
        uint32_t manualCode;  // 0: automatic
        DecodedFormat decoded;
        Calls calls;
        bool uhd;
    } const cases[] = {
        {"manual 2160p60", k2160p60, {0, 0, 0, 0, 0}, {"IVideoOutput::SetColourSpace(0)"}, true},
        {"manual 1080p50", k1080p50, {0, 0, 0, 0, 0}, {"IVideoOutput::SetColourSpace(1)"}, false},
        {"auto 2160p50", 0, {3840, 2160, 2, 6, 1}, {"IVideoDecoder::GetFormat()", "IVideoOutput::SetColourSpace(0)"}, true},
        {"auto 4096 wide", 0, {4096, 2160, 2, 6, 1}, {"IVideoDecoder::GetFormat()", "IVideoOutput::SetColourSpace(0)"}, true},
        {"auto, silent decoder falls back to SD", 0, {0, 0, 0, 0, 0},
         {"IVideoDecoder::GetFormat()", "IVideoOutput::SetColourSpace(1)"}, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.why);
        Rig rig;
        rig.Decoder(c.decoded);
        rig.om.SetVideoOutputInterface(0, VIDEO_OUTPUT_INTERFACE_CVBS);  // the HD settings are used regardless
        if (c.manualCode != 0) {
            rig.om.SetVideoFormatMode(0, FORMAT_MODE_MANUAL);
            rig.om.SetVideoFormat(0, c.manualCode);
        }
        rig.d.log.Clear();
        EXPECT_TRUE(rig.om.ApplyVideoColorSpaceSetting(0));
        EXPECT_EQ(rig.d.log.Calls(), c.calls);
        EXPECT_EQ(rig.om.IsUHDFormat(), c.uhd);
    }
}

// ---- dirty rules ---------------------------------------------------------------------

using OM = OutputManager;

struct Entry {
    const char* function;
    const char* kind;    // "video" or "audio": takes an index, of which only 0 exists; nullptr: takes none
    const char* groups;  // a setter: the groups it marks dirty (Video, Audio, Captions); nullptr: no setter
    std::function<bool(OM&, unsigned)> call;  // true when it succeeds
};

const Entry kEntries[] = {
    {"SetVideoOutputInterface", "video", "V", [](OM& om, unsigned i) { return om.SetVideoOutputInterface(i, VIDEO_OUTPUT_INTERFACE_CVBS); }},
    {"SetVideoFormatMode", "video", "V", [](OM& om, unsigned i) { return om.SetVideoFormatMode(i, FORMAT_MODE_AUTO); }},
    {"SetVideoFormatModeCvbs", "video", "V", [](OM& om, unsigned i) { return om.SetVideoFormatModeCvbs(i, FORMAT_MODE_AUTO); }},
    {"SetVideoFormat", "video", "V", [](OM& om, unsigned i) { return om.SetVideoFormat(i, k576i25); }},
    {"SetVideoFormatCvbs", "video", "V", [](OM& om, unsigned i) { return om.SetVideoFormatCvbs(i, k1080p50); }},
    {"SetRasterMode", "video", "V", [](OM& om, unsigned i) { return om.SetRasterMode(i, RASTER_MODE_ON); }},
    {"SetRasterColor", "video", "V", [](OM& om, unsigned i) { return om.SetRasterColor(i, RASTER_COLOR_BLUE); }},
    {"SetComposite525Std", "video", "V", [](OM& om, unsigned i) { return om.SetComposite525Std(i, COMPOSITE_525_NTSC); }},
    {"SetComposite625Std", "video", "V", [](OM& om, unsigned i) { return om.SetComposite625Std(i, COMPOSITE_625_PAL); }},
    {"SetAnalogAudioState", "audio", "A", [](OM& om, unsigned i) { return om.SetAnalogAudioState(i, ANALOG_AUDIO_ON); }},
    {"SetAnalogAudioLevelGain", "audio", "A", [](OM& om, unsigned i) { return om.SetAnalogAudioLevelGain(i, 10); }},
    {"SetCompositeLine21Cc", nullptr, "C", [](OM& om, unsigned) { return om.SetCompositeLine21Cc(ENABLE_STATE_DISABLE); }},
    {"SetOverlayCcType", nullptr, "C", [](OM& om, unsigned) { return om.SetOverlayCcType(OVERLAY_CC_TYPE_DTV); }},
    {"SetOverlayNtscCcDataType", nullptr, "C", [](OM& om, unsigned) { return om.SetOverlayNtscCcDataType(OVERLAY_NTSC_CC4); }},
    {"SetOverlayDtvCcDataType", nullptr, "C", [](OM& om, unsigned) { return om.SetOverlayDtvCcDataType(OVERLAY_DTV_SERVICE6); }},
    {"SetOverlayCcState", nullptr, "C", [](OM& om, unsigned) { return om.SetOverlayCcState(ENABLE_STATE_DISABLE); }},
    {"SetHDAspectRatioMode", "video", "", [](OM& om, unsigned i) { return om.SetHDAspectRatioMode(i, HD_DISPLAY_MODE_FULL); }},
    {"SetSDAspectRatioMode", "video", "", [](OM& om, unsigned i) { return om.SetSDAspectRatioMode(i, SD_DISPLAY_MODE_FULL); }},
    {"SetVideoOutDecodeStatus", nullptr, "", [](OM& om, unsigned) { om.SetVideoOutDecodeStatus(STATUS_INACTIVE); return true; }},
    {"SetVideoDirty", "video", "V", [](OM& om, unsigned i) { om.SetVideoDirty(i); return i == 0; }},
    {"SetAudioDirty", "audio", "A", [](OM& om, unsigned i) { om.SetAudioDirty(i); return i == 0; }},
    {"SetClosedCaptionDirty", nullptr, "C", [](OM& om, unsigned) { om.SetClosedCaptionDirty(); return true; }},
    {"SetAspectRatioDirty", "video", "", [](OM& om, unsigned i) { om.SetAspectRatioDirty(i); return i == 0; }},
    {"ApplyVideoFormatSetting", "video", nullptr, [](OM& om, unsigned i) { return om.ApplyVideoFormatSetting(i); }},
    {"ApplyAnalogAudioSetting", "audio", nullptr, [](OM& om, unsigned i) { return om.ApplyAnalogAudioSetting(i); }},
    {"ApplyVideoRasterGroupSetting", "video", nullptr, [](OM& om, unsigned i) { return om.ApplyVideoRasterGroupSetting(i); }},
    {"ApplyVideoColorSpaceSetting", "video", nullptr, [](OM& om, unsigned i) { return om.ApplyVideoColorSpaceSetting(i); }},
    {"GetFormatMode", "video", nullptr, [](OM& om, unsigned i) { return om.GetFormatMode(i) != 0; }},
    {"GetFormatModeCvbs", "video", nullptr, [](OM& om, unsigned i) { return om.GetFormatModeCvbs(i) != 0; }},
    {"GetVideoFormat", "video", nullptr, [](OM& om, unsigned i) { return om.GetVideoFormat(i) != 0; }},
    {"GetVideoFormatCvbs", "video", nullptr, [](OM& om, unsigned i) { return om.GetVideoFormatCvbs(i) != 0; }},
};

TEST(OutputManagerDirty, EachSetterMarksItsGroupOnce) {
    for (const auto& c : kEntries) {
        if (c.groups == nullptr) continue;
        SCOPED_TRACE(c.function);
        Rig rig;
        rig.Decoder({1920, 1080, 1, 3, 1});
        EXPECT_TRUE(c.call(rig.om, 0));
        rig.Pass();
        std::string touched;  // the second letter of each prefix the pass called
        for (const char* prefix : {"IVideo", "IAudioOutput::", "IClosedCaption::"}) {
            if (rig.d.log.Count(prefix) > 0) touched += prefix[1];
        }
        EXPECT_EQ(touched, c.groups);
        EXPECT_EQ(rig.Pass(), Calls()) << "flags are cleared by the pass";
    }
}

// ---- validation -----------------------------------------------------------------

struct RejectCase {
    std::function<bool(OutputManager&)> call;
    const char* error;
};

const RejectCase kRejectCases[] = {
    {[](OM& om) { return om.SetComposite525Std(0, Composite525_e(0)); }, "SetComposite525Std: input parameter 0 is not valid"},
    {[](OM& om) { return om.SetComposite625Std(0, Composite625_e(3)); }, "SetComposite625Std: input parameter 3 is not valid"},
    {[](OM& om) { return om.SetAnalogAudioState(0, AnalogAudio_e(3)); }, "SetAnalogAudioState: input parameter 3 is not valid"},
    {[](OM& om) { return om.SetAnalogAudioLevelGain(0, -61); }, "Set analog audio volume with invalid value: -61 dBv."},
    {[](OM& om) { return om.SetAnalogAudioLevelGain(0, 11); }, "Set analog audio volume with invalid value: 11 dBv."},
    {[](OM& om) { return om.SetCompositeLine21Cc(Enable_e(0)); }, "SetCompositeLine21Cc: input parameter 0 is not valid"},
    {[](OM& om) { return om.SetOverlayCcType(OverlayCcType_e(3)); }, "SetOverlayCcType: input parameter 3 is not valid"},
    {[](OM& om) { return om.SetOverlayNtscCcDataType(OverlayNtscCcType_e(5)); }, "SetOverlayNtscCcDataType: input parameter 5 is not valid"},
    {[](OM& om) { return om.SetOverlayDtvCcDataType(OverlayDtvCcType_e(7)); }, "SetOverlayDtvCcDataType: input parameter 7 is not valid"},
    {[](OM& om) { return om.SetOverlayCcState(Enable_e(-1)); }, "SetOverlayCcState: input parameter -1 is not valid"},
};

// A rejected call logs its error and changes nothing: no call, no flag, no value stored.
void ExpectRejected(const std::function<bool(OM&)>& call, const std::string& error) {
    SCOPED_TRACE(error);
    stbav_test::LogCapture log("stbav.outputmanager");
    Rig rig;
    rig.Decoder({1920, 1080, 1, 3, 1});
    rig.om.SetVideoFormatMode(0, FORMAT_MODE_MANUAL);
    rig.om.SetVideoFormat(0, k1080p50);
    rig.om.SetVideoFormatCvbs(0, k576i25);
    rig.om.SetVideoFormatModeCvbs(0, FORMAT_MODE_MANUAL);
    rig.Pass();
    rig.d.log.Clear();
    EXPECT_FALSE(call(rig.om));
    EXPECT_TRUE(log.Has("ERROR", error));
    EXPECT_EQ(rig.d.log.Calls(), Calls());
    EXPECT_EQ(rig.Pass(), Calls()) << "no flag raised";
    EXPECT_EQ(std::make_tuple(rig.om.GetVideoOutputInterface(), rig.om.GetFormatMode(0), rig.om.GetFormatModeCvbs(0),
                              rig.om.GetVideoFormat(0), rig.om.GetVideoFormatCvbs(0)),
              std::make_tuple(VIDEO_OUTPUT_INTERFACE_HD, FORMAT_MODE_MANUAL, FORMAT_MODE_MANUAL, k1080p50, k576i25));
    Calls forced = kDefaultForcedPass;
    forced[0] = "IVideoOutput::SetFormat(1920,1080,2,6,1,2,1)";
    EXPECT_EQ(rig.Forced(), forced) << "nothing stored";
}

TEST(OutputManagerValidation, RejectedValueOrIndexChangesNothing) {
    for (const auto& c : kRejectCases) ExpectRejected(c.call, c.error);
    for (const auto& c : kEntries) {
        if (c.kind == nullptr) continue;
        ExpectRejected([&](OM& om) { return c.call(om, 1); },
                       std::string(c.function) + ": " + c.kind + " index 1 is out of range (only index 0 exists)");
    }
}

// The status poll reads the modes and raises the video flag while the
// configuration thread sets and applies; run under ThreadSanitizer.
TEST(OutputManagerThreads, StatusPollAndConfigurationMayOverlap) {
    Rig rig;
    rig.Decoder({1920, 1080, 1, 3, 1});
    std::thread status([&] {
        for (int i = 0; i < 2000; ++i) {
            rig.om.SetVideoDirty(0);
            (void)rig.om.GetFormatMode(0);
            (void)rig.om.GetFormatModeCvbs(0);
            (void)rig.om.GetVideoOutputInterface();
            (void)rig.om.GetVideoFormat(0);
        }
    });
    for (int i = 0; i < 300; ++i) {
        rig.om.SetVideoFormatMode(0, i % 2 ? FORMAT_MODE_MANUAL : FORMAT_MODE_AUTO);
        rig.om.SetVideoFormat(0, k1080p50);
        rig.om.ApplySettings(false);
    }
    status.join();
    rig.om.SetVideoFormatMode(0, FORMAT_MODE_MANUAL);
    EXPECT_EQ(rig.Pass(), Calls({"IVideoOutput::SetFormat(1920,1080,2,6,1,2,1)"}));
}

}  // namespace
