// DaemonPlatform: the decoder platform objects of a running daemon (stream
// probe, demux, video and audio decoders, outputs, captions and the decoder
// chip), built together and torn down in a fixed order. Owned by the daemon's
// main thread, which builds, brings up and tears down; the subsystem holds
// references to the objects while it lives and must be destroyed first.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/ff_av_probe.h"
#include "platform/stb_audio_decoder.h"
#include "platform/stb_audio_output.h"
#include "platform/stb_closed_caption.h"
#include "platform/stb_decoder_chip.h"
#include "platform/stb_demux.h"
#include "platform/stb_video_decoder.h"
#include "platform/stb_video_output.h"
#include "toolkit/kt_shared_ptr.h"
#include "toolkit/kt_uncopyable.h"

class DaemonPlatform : private KT::CUncopyable {
public:
    // Builds the objects; touches no platform call.
    explicit DaemonPlatform(uint32_t audioDecoderCount);
    // TearDown() if it has not run yet.
    ~DaemonPlatform();

    // The chip's bring-up: 0 on success, -1 at the first failing step (the
    // chip logs which one).
    int BringUp();
    // Stops the probe's thread, then lets the chip tear the platform down
    // (StbControlDeinit, once). Safe to call again; later calls do nothing.
    // No accessor may be used afterwards.
    void TearDown();

    StbDecoderChip& Chip() { return *m_Chip; }
    StbDemux& Demux() { return m_Demux; }
    std::vector<KT::CSharedPtr<IAudioDecoder>>& AudioDecoders() { return m_AudioDecoders; }
    StbVideoDecoder& VideoDecoder() { return m_VideoDecoder; }
    StbVideoOutput& VideoOutput() { return m_VideoOutput; }
    StbAudioOutput& AudioOutput() { return m_AudioOutput; }
    StbClosedCaption& ClosedCaption() { return m_ClosedCaption; }

private:
    // The probe thread reads through the player handle, so it stops before the
    // player goes; hence its own lifetime.
    std::unique_ptr<FfAvProbe> m_Probe;
    StbDemux m_Demux;
    StbVideoDecoder m_VideoDecoder;
    std::vector<KT::CSharedPtr<StbAudioDecoder>> m_StbAudioDecoders;  // what the chip binds
    std::vector<KT::CSharedPtr<IAudioDecoder>> m_AudioDecoders;         // the same, for the subsystem
    StbVideoOutput m_VideoOutput;
    StbAudioOutput m_AudioOutput;
    StbClosedCaption m_ClosedCaption;
    std::unique_ptr<StbDecoderChip> m_Chip;  // destroyed (platform torn down) by TearDown
};
