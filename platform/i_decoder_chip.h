// IDecoderChip: bring-up, reset and upgrade of the decoder board's media services.
// Called on the poller thread (configuration processing, status). Implemented by
// the platform adapter owned by the subsystem assembly.
#pragma once

class IDecoderChip {
public:
    virtual ~IDecoderChip() = default;

    // Brings the media services up in order. True when all came up, false at the
    // first failing step (earlier steps are not undone).
    virtual bool Initialize() = 0;
    // Resets the decoder. True on success.
    virtual bool Reset() = 0;
    // Commits pending configuration to the platform. True on success.
    virtual bool CommitConfig() = 0;
    // Hands the upgrade package to the platform's upgrade service. True on success.
    virtual bool Upgrade() = 0;

protected:
    IDecoderChip() = default;
    IDecoderChip(const IDecoderChip&) = delete;
    IDecoderChip& operator=(const IDecoderChip&) = delete;
};
