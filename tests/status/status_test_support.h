// Helpers shared by the status and control tests: an adapter that records the
// operations it is asked to send (its port does not exist) as the host would
// receive them, and (from tests/support) a clock the test moves by hand and the
// capture of log4cpp lines.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "protocol/ss_op.h"
#include "tests/e2e/host_line.h"
#include "tests/support/fake_clock.h"
#include "tests/support/log_capture.h"
#include "transport/uart_adapter.h"

namespace stbav_test {

// What the processors send in a full report, in order: the audio items of one
// decoder, and the video items without the service name (226).
const std::vector<unsigned int> kAudioItems = {213, 74, 75, 76, 77, 78, 79, 214, 80, 216};
const std::vector<unsigned int> kVideoItems = {220, 225, 221, 229, 270, 271, 272, 273, 274, 275,
                                               276, 277, 278, 280, 281, 283, 267, 282, 269, 279};

// The opIds of operations in the order they went.
inline std::vector<unsigned int> OpIds(const std::vector<e2e::HostOp>& ops) {
    std::vector<unsigned int> ids;
    for (const e2e::HostOp& op : ops) ids.push_back(op.opId);
    return ids;
}

class RecordingAdapter : public CUartAdapter {
public:
    RecordingAdapter() : CUartAdapter(std::string("/dev/stbav-status-test-none")) {}

    // Keeps the operation read back from the image the line would carry.
    bool SendOperation(SsOp& op) override {
        std::vector<unsigned char> image;
        op.GetSerializedOp(image);
        SsOp sent;
        sent.DeserializeOp(image);
        std::lock_guard<std::mutex> lock(m_Mutex);
        m_Sent.push_back({sent.GetOpId(), static_cast<int>(sent.GetOpType()), sent.GetIndexList(), sent.GetRawData()});
        return result;
    }
    // The operations sent so far, and forgets them.
    std::vector<e2e::HostOp> Take() {
        std::lock_guard<std::mutex> lock(m_Mutex);
        std::vector<e2e::HostOp> out;
        out.swap(m_Sent);
        return out;
    }
    std::atomic<bool> result{true};  // what SendOperation answers

private:
    mutable std::mutex m_Mutex;
    std::vector<e2e::HostOp> m_Sent;  // guarded by m_Mutex
};

}  // namespace stbav_test
