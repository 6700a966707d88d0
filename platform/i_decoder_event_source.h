// IDecoderEventSource: subscription mix-in of the decoder blocks that raise
// DecoderEvents_e. Subscribe/Unsubscribe run on the poller thread; the callback
// runs on whichever thread raises the event. The subscriber keeps the bound
// object alive until it has unsubscribed.
#pragma once

#include "platform/decoder_types.h"
#include "toolkit/kt_functor.h"

using DecoderEventHandler = KT::CFunctor<void(DecoderEvents_e)>;

class IDecoderEventSource {
public:
    virtual ~IDecoderEventSource() = default;

    // Adds a handler. True when registered (the platform blocks accept every handler).
    virtual bool Subscribe(const DecoderEventHandler& handler) = 0;
    // Removes a handler. True when removed or nothing had to be done.
    virtual bool Unsubscribe(const DecoderEventHandler& handler) = 0;

protected:
    IDecoderEventSource() = default;
    IDecoderEventSource(const IDecoderEventSource&) = delete;
    IDecoderEventSource& operator=(const IDecoderEventSource&) = delete;
};
