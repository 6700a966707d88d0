// StbDecoderChip: brings the media library up, binds the handles it obtains into
// the other adapters, starts display, and tears everything down in its destructor.
// Caller's thread; no lock. The adapters belong to the subsystem assembly and
// outlive the chip; the chip owns only its platform records.
#pragma once

#include <cstdint>
#include <vector>

#include <log4cpp/Category.hh>

#include "platform/ff_av_probe.h"
#include "platform/stb_audio_decoder.h"
#include "platform/stb_audio_output.h"
#include "platform/stb_closed_caption.h"
#include "platform/stb_demux.h"
#include "platform/stb_video_decoder.h"
#include "platform/stb_video_output.h"
#include "platform/i_decoder_chip.h"
#include "platform/stb_module.h"
#include "toolkit/kt_shared_ptr.h"
#include "toolkit/kt_uncopyable.h"

class StbDecoderChip : public IDecoderChip, private KT::CUncopyable {
public:
    // The stream input: the multicast group the board's player joins, and its
    // UDP port. 239.1.1.1 lies in the organisation-local scope (239.0.0.0/8), so
    // the streams never leave the site; a deployment with another head-end
    // plan changes this value.
    static constexpr uint32_t kStreamInputAddress = (239u << 24) | (1u << 16) | (1u << 8) | 1u;
    static constexpr uint16_t kStreamInputPort = 1234;

    // Stores the references and copies the decoder list; touches no platform call.
    StbDecoderChip(StbDemux& demux, std::vector<KT::CSharedPtr<StbAudioDecoder>>& audioDecoders,
                    uint32_t audioDecoderCount, StbVideoDecoder& videoDecoder, StbVideoOutput& videoOutput,
                    StbAudioOutput& audioOutput, StbClosedCaption& closedCaption, FfAvProbe& probe);
    // Runs StbControlDeinit().
    ~StbDecoderChip() override;

    // The bring-up in sixteen steps. 0 when all succeeded; -1 at the first
    // failure, with everything obtained so far left in place.
    int StbControlInit();
    // The tear-down: every call is made whatever the others return. The result
    // is the captions' alone: 0, or -1 when their Deinitialize failed.
    int StbControlDeinit();

    // After StbControlInit: sets the stream input, starts display, binds the
    // handles, starts the probe. Always true (failures are logged).
    bool Initialize() override;
    bool Reset() override { return true; }
    bool CommitConfig() override { return true; }
    // Hands the upgrade package (under the fixed-path root) to the platform.
    // Always true.
    bool Upgrade() override;

    // Writes the address (ip, most significant byte first) and port into the
    // input parameters and prepares the player with them. The av_prepare result.
    int SetIpInputParam(uint32_t ip, uint16_t port);
    // Registers the event callback and starts video and audio; failures logged.
    void DisplayStart();
    // Asks the platform for the programme of the input into the chip's own
    // settings. The platform's result (0 on success).
    int SearchProgInfo();
    // Configures the player with `settings`, then reads back what it accepted
    // into the chip's copy. The av_set_config result.
    int SetServiceConfig(_AV_SETTING_S* settings);
    // Configures the player with the chip's own settings. The av_set_config result.
    int SetServiceConfig();

    // Read-only views for diagnostics and tests.
    const IpInputParams& InputParams() const { return m_IpParams; }
    const _AV_SETTING_S& Settings() const { return m_Settings; }

private:
    bool Step(int r, const char* done, const char* failFmt);
    bool BringUpPlayer();
    bool BringUpAudioOutput();
    bool BringUpVideoOutput();
    bool BringUpAudioTrack();
    bool BringUpCaptions();
    void BindHandles();
    void TearDownOne(int r, const char* failFmt);

    IpInputParams m_IpParams;
    uint32_t m_AvHandle = 0;
    uint32_t m_AvInitResult = 0;
    AvCreateAttr m_AvCreateAttr;
    _AV_SETTING_S m_Settings;
    VoutInitInfo m_VoutInit;
    uint32_t m_VoutHandle = 0;
    uint32_t m_WindowHandle = 0;
    OutputOpenAttr m_VoutOpenAttr;
    VoutDisplayAttr m_DisplayAttr;
    AoutInitInfo m_AoutInit;
    uint32_t m_AoutHandle = 0;
    OutputOpenAttr m_AoutOpenAttr;
    uint32_t m_TrackHandle = 0;
    AvEventConfig m_EventConfig;
    log4cpp::Category& m_Logger;
    StbDemux& m_Demux;
    std::vector<KT::CSharedPtr<StbAudioDecoder>> m_AudioDecoders;
    uint32_t m_AudioDecoderCount;
    StbVideoDecoder& m_VideoDecoder;
    StbVideoOutput& m_VideoOutput;
    StbAudioOutput& m_AudioOutput;
    StbClosedCaption& m_ClosedCaption;
    FfAvProbe& m_Probe;
};
