// IDecoderControl: start/stop mix-in of the decoder blocks (demux, video decoder,
// video output, audio decoder). Called on the poller thread by the chip bring-up;
// the implementation is owned by the subsystem assembly.
#pragma once

class IDecoderControl {
public:
    virtual ~IDecoderControl() = default;

    // Starts the block. True on success, false on a platform failure. Poller thread.
    virtual bool Start() = 0;
    // Stops the block. True on success, false on a platform failure. Poller thread.
    virtual bool Stop() = 0;

protected:
    IDecoderControl() = default;
    IDecoderControl(const IDecoderControl&) = delete;
    IDecoderControl& operator=(const IDecoderControl&) = delete;
};
