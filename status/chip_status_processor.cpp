// ChipStatusProcessor: reset state and heartbeat.
#include "status/chip_status_processor.h"

#include "toolkit/log.h"

namespace {
constexpr unsigned int kOpReset = 0;      // stbsystemReset
constexpr unsigned int kOpHeartBeat = 1;  // stbsystemHeartBeatCount
}  // namespace

ChipStatusProcessor::ChipStatusProcessor(StbAvOpSender& sender, IDecoderChip& /*chip*/)
    : StatusProcessor(sender), m_ChipLog(stbav::Logger("tevrin.chipStatusProcess")) {
    stbav::LogDebug(m_ChipLog, "ChipStatusProcessor");
}

bool ChipStatusProcessor::Process(bool force) {
    bool sent = SendNewStatus(kOpReset, 0, 0u, m_Items.resetStatus, force);
    // Nothing changes the count: the host sees 0 every poll, and its arrival is the heartbeat.
    uint32_t heartBeat = m_Items.heartBeatCount;
    sent = SendNewStatus(kOpHeartBeat, 0, heartBeat, m_Items.heartBeatCount, true) || sent;
    return sent;
}

void ChipStatusProcessor::Clear() { m_Items = StatusItems_t(); }
