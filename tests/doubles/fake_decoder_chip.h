// FakeDecoderChip: recording double of IDecoderChip. Counts the calls of each
// operation; every operation succeeds unless told to fail. Any thread.
#pragma once

#include "platform/i_decoder_chip.h"
#include "tests/doubles/fake_base.h"

namespace stbav_test {

struct FakeDecoderChipState {
    int initializeCount = 0;
    int resetCount = 0;
    int commitCount = 0;
    int upgradeCount = 0;
};

class FakeDecoderChip : public IDecoderChip, public FakeBase<FakeDecoderChipState> {
public:
    using State = FakeDecoderChipState;

    explicit FakeDecoderChip(CallLog& log, std::string name = "IDecoderChip") : FakeBase(log, std::move(name)) {}

    bool Initialize() override { return Count("Initialize", &State::initializeCount); }
    bool Reset() override { return Count("Reset", &State::resetCount); }
    bool CommitConfig() override { return Count("CommitConfig", &State::commitCount); }
    bool Upgrade() override { return Count("Upgrade", &State::upgradeCount); }

private:
    bool Count(const char* op, int State::*counter) {
        std::lock_guard<std::mutex> lock(m_Mutex);
        ++(m_State.*counter);
        return !RecordLocked(op);
    }
};

}  // namespace stbav_test
