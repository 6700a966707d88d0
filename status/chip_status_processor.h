// ChipStatusProcessor: reports the decoder's reset state and, on every poll, the
// heartbeat count (its arrival every two seconds is the heartbeat). Polled on the
// poller thread; the sender belongs to the subsystem.
#pragma once

#include <cstdint>

#include "platform/i_decoder_chip.h"
#include "status/status_processor.h"

class ChipStatusProcessor : public StatusProcessor {
public:
    struct StatusItems_t {
        uint32_t resetStatus = 0;     // stbsystemReset
        uint32_t heartBeatCount = 0;  // stbsystemHeartBeatCount
    };

    // The chip is not consulted: the board reports no reset state of its own.
    ChipStatusProcessor(StbAvOpSender& sender, IDecoderChip& chip);

    // Sends the reset status (0) when forced or changed, and the heartbeat count always.
    bool Process(bool force) override;
    void Clear() override;

private:
    log4cpp::Category& m_ChipLog;
    StatusItems_t m_Items;
};
