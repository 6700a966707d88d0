// Helpers shared by the status and control tests: an adapter that records the
// operations it is asked to send (its port does not exist), a clock the test
// moves by hand, and (from tests/support) the capture of log4cpp lines.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "protocol/ss_op.h"
#include "tests/support/log_capture.h"
#include "toolkit/kt_schedule.h"
#include "transport/uart_adapter.h"

namespace stbav_test {

// One operation as it would have gone on the line.
struct SentOp {
    unsigned int opId = 0;
    std::vector<unsigned char> index;
    std::vector<unsigned char> data;

    // The value bytes folded most significant first (sign-less).
    uint64_t Value() const {
        uint64_t v = 0;
        for (unsigned char b : data) v = (v << 8) | b;
        return v;
    }
    std::string Text() const { return std::string(data.begin(), data.end()); }
    unsigned int Index() const { return index.empty() ? 0u : index.back(); }
};

inline std::vector<unsigned int> OpIds(const std::vector<SentOp>& ops) {
    std::vector<unsigned int> ids;
    for (const SentOp& op : ops) ids.push_back(op.opId);
    return ids;
}

class RecordingAdapter : public CUartAdapter {
public:
    RecordingAdapter() : CUartAdapter(std::string("/dev/stbav-status-test-none")) {}

    bool SendOperation(SsOp& op) override {
        std::lock_guard<std::mutex> lock(m_Mutex);
        m_Sent.push_back({op.GetOpId(), op.GetIndexList(), op.GetRawData()});
        return m_Result;
    }
    // The operations sent so far, and forgets them.
    std::vector<SentOp> Take() {
        std::lock_guard<std::mutex> lock(m_Mutex);
        std::vector<SentOp> out;
        out.swap(m_Sent);
        return out;
    }
    void SetResult(bool result) {
        std::lock_guard<std::mutex> lock(m_Mutex);
        m_Result = result;
    }

private:
    mutable std::mutex m_Mutex;
    std::vector<SentOp> m_Sent;  // guarded by m_Mutex
    bool m_Result = true;        // guarded by m_Mutex
};

// Milliseconds that move only when the test says so.
class FakeClock : public KT::IClock {
public:
    uint64_t NowMs() const override { return m_Now.load(); }
    void Advance(uint64_t ms) { m_Now += ms; }

private:
    std::atomic<uint64_t> m_Now{100000};
};

}  // namespace stbav_test
