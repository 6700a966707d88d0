// Bring-up, handle binding, display start and tear-down of the media library.
// Caller's thread.
#include "platform/stb_decoder_chip.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>

#include "toolkit/fixed_paths.h"
#include "toolkit/log.h"

namespace {
const uint32_t kPlayerSourceType = 4;
const uint32_t kOutputOpenMode = 1;
const uint32_t kEventClassVideo = 2;
const uint32_t kDisplayFormat1080i = VOUT_FORMAT_1080I;
const uint32_t kDisplayRate50 = 64;
}  // namespace

StbDecoderChip::StbDecoderChip(StbDemux& demux, std::vector<KT::CSharedPtr<StbAudioDecoder>>& audioDecoders,
                                 uint32_t audioDecoderCount, StbVideoDecoder& videoDecoder,
                                 StbVideoOutput& videoOutput, StbAudioOutput& audioOutput,
                                 StbClosedCaption& closedCaption, FfAvProbe& probe)
    : m_Logger(stbav::Logger("stbav.decoderchip")),
      m_Demux(demux),
      m_AudioDecoders(audioDecoders),
      m_AudioDecoderCount(audioDecoderCount),
      m_VideoDecoder(videoDecoder),
      m_VideoOutput(videoOutput),
      m_AudioOutput(audioOutput),
      m_ClosedCaption(closedCaption),
      m_Probe(probe) {
    memset(&m_IpParams, 0, sizeof m_IpParams);
    m_AvCreateAttr = AvCreateAttr{kPlayerSourceType, 0};
    memset(&m_Settings, 0, sizeof m_Settings);
    memset(&m_VoutInit, 0, sizeof m_VoutInit);
    memset(&m_VoutOpenAttr, 0, sizeof m_VoutOpenAttr);
    memset(&m_DisplayAttr, 0, sizeof m_DisplayAttr);
    memset(&m_AoutInit, 0, sizeof m_AoutInit);
    memset(&m_AoutOpenAttr, 0, sizeof m_AoutOpenAttr);
    m_EventConfig = AvEventConfig{kEventClassVideo, &StbVideoDecoder::AvEventCallback, 1};
}

StbDecoderChip::~StbDecoderChip() { StbControlDeinit(); }

// Logs `done` (debug) or failFmt with the code (error; failFmt has one %#x).
bool StbDecoderChip::Step(int r, const char* done, const char* failFmt) {
    if (r != 0) {
        stbav::LogError(m_Logger, failFmt, r);
        return false;
    }
    stbav::LogDebug(m_Logger, "%s", done);
    return true;
}

int StbDecoderChip::StbControlInit() {
    stbav::LogDebug(m_Logger, "%s: Stb control init", "StbControlInit");
    if (!BringUpPlayer() || !BringUpAudioOutput() || !BringUpVideoOutput() || !BringUpAudioTrack() ||
        !BringUpCaptions()) {
        return -1;
    }
    stbav::LogDebug(m_Logger, "%s: Finish Stb control init", "StbControlInit");
    return 0;
}

// Steps 1-3.
bool StbDecoderChip::BringUpPlayer() {
    return Step(system_init(0), "Finish initializing system resources", "system_init failed: %#x.") &&
           Step(av_init(&m_AvInitResult, &m_IpParams), "Finish initializing audio/video output parameters",
                "call av_init failed %#x") &&
           Step(av_create(&m_AvHandle, &m_AvCreateAttr, &m_IpParams), "Finish creating audio/video output window",
                "av_create failed %#x");
}

// Steps 4-5.
bool StbDecoderChip::BringUpAudioOutput() {
    if (!Step(aout_init(&m_AoutInit, &m_IpParams), "Finish initializing audio output",
              "call aout_init failed: %#x.")) {
        return false;
    }
    m_AoutOpenAttr = OutputOpenAttr{kOutputOpenMode, -1, m_AvHandle};
    return Step(aout_open(&m_AoutHandle, &m_AoutOpenAttr, &m_IpParams), "Finish opening audio output",
                "call aout_open failed: %#x.");
}

// Steps 6-12: channel, display format 1080i at 50 fields, window on the player.
bool StbDecoderChip::BringUpVideoOutput() {
    if (!Step(vout_init(&m_VoutInit, &m_IpParams), "Finish initializing video output",
              "call vout_init failed: %#x.")) {
        return false;
    }
    m_VoutOpenAttr = OutputOpenAttr{kOutputOpenMode, -1, m_AvHandle};
    if (!Step(vout_open_channel(&m_VoutHandle, &m_VoutOpenAttr, &m_IpParams), "Finish opening video output",
              "call vout_open_channel failed: %#x.") ||
        !Step(vout_display_get(m_VoutHandle, &m_DisplayAttr, &m_IpParams), "Finish getting video output dispaly",
              "call vout_display_get failed: %#x.")) {
        return false;
    }
    m_DisplayAttr.format = kDisplayFormat1080i;
    m_DisplayAttr.rate = kDisplayRate50;
    return Step(vout_display_set(m_VoutHandle, &m_DisplayAttr, &m_IpParams), "Finish setting video output dispaly",
                "call vout_display_set failed: %#x.") &&
           Step(vout_window_create(m_VoutHandle, &m_WindowHandle, 0), "Finish creating video output window",
                "call vout_window_create failed: %#x.") &&
           Step(vout_window_attach_input(m_WindowHandle, 0, m_AvHandle),
                "Finish attaching video output window to input", "call vout_window_attach_input failed: %#x.") &&
           Step(vout_window_open(m_WindowHandle), "Finish opening video output window",
                "call vout_window_open failed: %#x.");
}

// Steps 13-14.
bool StbDecoderChip::BringUpAudioTrack() {
    return Step(aout_track_create(m_AoutHandle, &m_TrackHandle, 0), "Finish creating audio output track",
                "call aout_track_create failed %#x") &&
           Step(aout_track_attach_input(m_TrackHandle, 0, m_AvHandle), "Finish attaching audio output track to input",
                "call aout_track_attach_input failed %#x");
}

// Steps 15-16: the address string and the port copy served the bring-up only.
bool StbDecoderChip::BringUpCaptions() {
    memset(m_IpParams.address, 0, sizeof m_IpParams.address);
    m_IpParams.port_copy = 0;
    return Step(m_ClosedCaption.Initialize(), "Finish initializing ClosedCaption", "call Initialize failed %#x");
}

void StbDecoderChip::TearDownOne(int r, const char* failFmt) {
    if (r != 0) stbav::LogError(m_Logger, failFmt, r);
}

// The window and the video channel go after the player is destroyed, and
// av_deinit comes before the output deinits: the order the platform is driven with.
int StbDecoderChip::StbControlDeinit() {
    TearDownOne(av_stop(m_AvHandle), "av_stop failed 0x%x");
    TearDownOne(aout_track_detach_input(m_TrackHandle, 0, m_AvHandle), "aout_track_detach_input failed 0x%x");
    TearDownOne(aout_track_destroy(m_TrackHandle), "aout_track_destroy failed 0x%x");
    TearDownOne(vout_window_close(m_WindowHandle), "vout_window_close failed 0x%x");
    TearDownOne(vout_window_detach_input(m_WindowHandle, 0, m_AvHandle), "vout_window_detach_input failed 0x%x");
    TearDownOne(av_destory(m_AvHandle), "av_destory failed 0x%x");
    TearDownOne(av_deinit(), "av_deinit failed 0x%x");
    TearDownOne(vout_window_destroy(m_VoutHandle, m_WindowHandle, 0), "vout_window_destroy failed 0x%x");
    TearDownOne(vout_close_channel(m_VoutHandle, 0), "vout_close_channel failed 0x%x");
    TearDownOne(vout_deinit(), "vout_deinit failed 0x%x");
    TearDownOne(aout_close(m_AoutHandle, 0), "aout_close failed 0x%x");
    TearDownOne(aout_deinit(0), "aout_deinit failed 0x%x");
    TearDownOne(system_deinit(), "system_deinit failed 0x%x");
    int r = m_ClosedCaption.Deinitialize();
    if (r != 0) {
        stbav::LogError(m_Logger, "call Deinitialize failed %#x", r);
        return -1;
    }
    stbav::LogDebug(m_Logger, "Deinit oK 0x%x", r);
    return 0;
}

bool StbDecoderChip::Initialize() {
    SetIpInputParam(kStreamInputAddress, kStreamInputPort);
    DisplayStart();
    BindHandles();
    m_Probe.StartProbe();
    m_VideoDecoder.Initialize();
    return true;
}

void StbDecoderChip::BindHandles() {
    m_Demux.BondAvHandle(m_AvHandle);
    m_VideoDecoder.BondAvHandle(m_AvHandle);
    m_VideoDecoder.BondWindowHandle(m_WindowHandle);
    m_VideoOutput.BondOutHandle(m_VoutHandle);
    m_VideoOutput.BondWindowHandle(m_WindowHandle);
    m_AudioOutput.BondOutHandle(m_AoutHandle);
    m_Probe.BondAvHandle(m_AvHandle);
    // A count beyond the list binds the decoders that exist.
    size_t n = std::min<size_t>(m_AudioDecoderCount, m_AudioDecoders.size());
    for (size_t i = 0; i < n; ++i) {
        if (m_AudioDecoders[i]) m_AudioDecoders[i]->BondAvHandle(m_AvHandle);
    }
}

int StbDecoderChip::SetIpInputParam(uint32_t ip, uint16_t port) {
    char text[16];
    snprintf(text, sizeof text, "%d.%d.%d.%d", int((ip >> 24) & 0xFF), int((ip >> 16) & 0xFF), int((ip >> 8) & 0xFF),
             int(ip & 0xFF));
    m_IpParams.ip = ip;
    m_IpParams.port = port;
    memset(m_IpParams.address, 0, sizeof m_IpParams.address);
    memcpy(m_IpParams.address, text, sizeof text);
    m_IpParams.port_copy = port;
    return av_prepare(m_IpParams.address);
}

void StbDecoderChip::DisplayStart() {
    int r = av_set_event_config(m_AvHandle, &m_EventConfig, kEventClassVideo);
    if (r != 0) stbav::LogError(m_Logger, "av_set_event_config failed 0x%x", r);
    r = av_start_video(m_AvHandle);
    r |= av_start_audio(m_AvHandle);
    if (r != 0) stbav::LogWarn(m_Logger, "%s av_start failed", "DisplayStart");
}

bool StbDecoderChip::Upgrade() {
    std::string package = stbav::paths::Resolve(stbav::paths::kUpgradePackage);
    system_upgrade(package.c_str());
    return true;
}

int StbDecoderChip::SearchProgInfo() {
    memset(&m_Settings, 0, sizeof m_Settings);
    int r = av_search_progInfo(&m_Settings, &m_IpParams);
    if (r != 0) {
        stbav::LogWarn(m_Logger, "%s av_search_progInfo failed", "SearchProgInfo");
        return r;
    }
    stbav::LogInfo(m_Logger, "%s video pid: %u, video_type: %d, serviceId: %u", "SearchProgInfo",
                    unsigned(m_Settings.video_pid), int(m_Settings.video_type), unsigned(m_Settings.service_id));
    return 0;
}

int StbDecoderChip::SetServiceConfig(_AV_SETTING_S* settings) {
    int r = av_set_config(m_AvHandle, settings);
    av_get_config(m_AvHandle, &m_Settings);
    return r;
}

int StbDecoderChip::SetServiceConfig() {
    int r = av_set_config(m_AvHandle, &m_Settings);
    if (r != 0) stbav::LogWarn(m_Logger, "%s av_set_config failed", "SetServiceConfig");
    return r;
}
