// DaemonSide: plays the daemon's end of the line with the project's own serial
// adapter: it records every operation the host sends (its image, in hex) and,
// when the host's apply trigger arrives, answers with a status operation given
// in advance. Handlers run on the adapter's "UART Px" thread; the test thread
// waits on Received.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

#include "tests/tools/op_text.h"
#include "transport/i_comm_op_handler.h"
#include "transport/uart_adapter.h"

class DaemonSide : public iCommOpHandler {
public:
    explicit DaemonSide(const std::string& device) : m_adapter(device) {}
    ~DaemonSide() override {
        if (!m_started) return;
        m_adapter.TerminateReceiveOps();
        m_adapter.UnregisterOpHandler(this);
    }

    bool Start() {
        m_adapter.RegisterOpHandler(this);
        m_started = m_adapter.StartReceiveOps();
        return m_started;
    }

    // Sent back when an apply trigger arrives.
    void AnswerApplyWith(const SsOp& op) { m_answer = op; m_hasAnswer = true; }
    bool Send(SsOp op) { return m_adapter.SendOperation(op); }

    bool HandleCommOp(KT::CSharedPtr<SsOp> op) override {
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            avhost::Bytes image;
            SsOp copy(*op);
            copy.SerializeOp();
            copy.GetSerializedOp(image);
            m_images.push_back(avhost::HexString(image));
        }
        m_signal.notify_all();
        if (op->GetOpType() == OP_TYPE_APPLY_CONFIG && m_hasAnswer) m_adapter.SendOperation(m_answer);
        return true;
    }

    // The op images received, in hex, once at least count have come (or after 10 s).
    std::vector<std::string> Received(size_t count) {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_signal.wait_for(lock, std::chrono::seconds(10), [&] { return m_images.size() >= count; });
        return m_images;
    }

private:
    CUartAdapter m_adapter;
    bool m_started = false;
    SsOp m_answer;
    bool m_hasAnswer = false;  // set before Start
    std::mutex m_mutex;
    std::condition_variable m_signal;
    std::vector<std::string> m_images;  // guarded by m_mutex
};
