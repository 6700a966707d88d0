// PrintCapture: collects every KT::MyPrintf line while it lives (test thread or
// any other thread), restoring the previous sink when destroyed.
#pragma once

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

#include "toolkit/kt_print.h"

class PrintCapture {
public:
    PrintCapture() {
        m_old = KT::SetPrintSink([this](const std::string& line) {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_lines.push_back(line);
        });
    }
    ~PrintCapture() { KT::SetPrintSink(m_old); }

    std::vector<std::string> Lines() {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_lines;
    }
    bool Contains(const std::string& line) {
        std::lock_guard<std::mutex> lock(m_mutex);
        return std::find(m_lines.begin(), m_lines.end(), line) != m_lines.end();
    }

private:
    std::mutex m_mutex;
    std::vector<std::string> m_lines;  // guarded by m_mutex
    KT::PrintSink m_old;
};
