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
#include "platform/hisi_audio_decoder.h"
#include "platform/hisi_audio_output.h"
#include "platform/hisi_closed_caption.h"
#include "platform/hisi_decoder_chip.h"
#include "platform/hisi_demux.h"
#include "platform/hisi_video_decoder.h"
#include "platform/hisi_video_output.h"
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
    // (HisiControlDeinit, once). Safe to call again; later calls do nothing.
    // No accessor may be used afterwards.
    void TearDown();

    HisiDecoderChip& Chip() { return *m_Chip; }
    HisiDemux& Demux() { return m_Demux; }
    std::vector<KT::CSharedPtr<IAudioDecoder>>& AudioDecoders() { return m_AudioDecoders; }
    HisiVideoDecoder& VideoDecoder() { return m_VideoDecoder; }
    HisiVideoOutput& VideoOutput() { return m_VideoOutput; }
    HisiAudioOutput& AudioOutput() { return m_AudioOutput; }
    HisiClosedCaption& ClosedCaption() { return m_ClosedCaption; }

private:
    // The probe thread reads through the player handle, so it stops before the
    // player goes; hence its own lifetime.
    std::unique_ptr<FfAvProbe> m_Probe;
    HisiDemux m_Demux;
    HisiVideoDecoder m_VideoDecoder;
    std::vector<KT::CSharedPtr<HisiAudioDecoder>> m_HisiAudioDecoders;  // what the chip binds
    std::vector<KT::CSharedPtr<IAudioDecoder>> m_AudioDecoders;         // the same, for the subsystem
    HisiVideoOutput m_VideoOutput;
    HisiAudioOutput m_AudioOutput;
    HisiClosedCaption m_ClosedCaption;
    std::unique_ptr<HisiDecoderChip> m_Chip;  // destroyed (platform torn down) by TearDown
};
