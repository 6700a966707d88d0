// StatusProcessor: base of the processors that report one part of the decoder
// to the host. Each keeps the last value it sent per item and sends through the
// StbAvOpSender only what changed, unless a full report is forced. Polled on the
// poller thread by the StatusMonitor; the sender belongs to the subsystem.
#pragma once

#include <string>

#include "control/stb_av_op_sender.h"
#include "toolkit/kt_uncopyable.h"

namespace log4cpp {
class Category;
}

class StatusProcessor : private KT::CUncopyable {
public:
    explicit StatusProcessor(StbAvOpSender& sender);
    virtual ~StatusProcessor();

    // One poll: reads the decoder and sends changed (or, when forced, all) items.
    // Returns the OR of its SendNewStatus results. Must not throw.
    virtual bool Process(bool force) = 0;
    // Forgets what was sent, so that the next poll sends every non-default value.
    virtual void Clear() = 0;

    // Sends newValue under opId/index when forced or when it differs from
    // lastSent. lastSent is updated before the send, so a failed send is not
    // repeated by the next unforced poll. Always true: the send's own outcome is
    // logged by the sender and does not reach the caller. Works for every number
    // and enumeration type the sender takes, and for text.
    template <typename T>
    bool SendNewStatus(unsigned int opId, unsigned int index, T newValue, T& lastSent, bool force);

protected:
    const unsigned int m_InvalidPid;  // 8191, the transport stream null PID
    StbAvOpSender& m_Sender;
    log4cpp::Category& m_Log;
};

template <typename T>
bool StatusProcessor::SendNewStatus(unsigned int opId, unsigned int index, T newValue, T& lastSent, bool force) {
    if (!force && newValue == lastSent) return true;
    lastSent = newValue;
    m_Sender.TransmitStatus(opId, index, newValue);
    return true;
}
