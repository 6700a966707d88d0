// The daemon's platform objects: construction, bring-up and ordered tear-down.
// Main thread.
#include "control/daemon_platform.h"

DaemonPlatform::DaemonPlatform(uint32_t audioDecoderCount)
    : m_Probe(new FfAvProbe()), m_VideoDecoder(*m_Probe) {
    for (uint32_t i = 0; i < audioDecoderCount; ++i) {
        KT::CSharedPtr<StbAudioDecoder> decoder(new StbAudioDecoder(*m_Probe));
        m_StbAudioDecoders.push_back(decoder);
        m_AudioDecoders.push_back(KT::CSharedPtr<IAudioDecoder>(decoder));
    }
    m_Chip.reset(new StbDecoderChip(m_Demux, m_StbAudioDecoders, audioDecoderCount, m_VideoDecoder,
                                     m_VideoOutput, m_AudioOutput, m_ClosedCaption, *m_Probe));
}

DaemonPlatform::~DaemonPlatform() { TearDown(); }

int DaemonPlatform::BringUp() { return m_Chip->StbControlInit(); }

void DaemonPlatform::TearDown() {
    if (!m_Chip) return;
    // The decoders and the chip keep references to the probe, but nothing calls
    // them any more: the subsystem is gone and the chip's tear-down does not use it.
    m_Probe.reset();
    m_Chip.reset();
}
