// CaptureWriter: records every frame on the line, both directions, in the text
// capture format that `avhost decode` reads (see tools/README.md):
//
//   # avhost capture 1
//   # date: 2024-05-01T12:00:00Z
//   # line: /dev/pts/3 115200 8N1
//   # time (s) since start, direction (> host to daemon, < daemon to host), frame bytes as on the line
//   0.000 > 0F 00 05 01 01 01 01 03 10  # videooutputInterface[1] = 3
//   0.012 < 0F 00 0F 01 01 01 02 07 80 10  # videoWidth[1] = 1920
//
// The sending thread and the receiving thread both record: each record is one
// line written under the writer's lock. The stream is not owned. With a
// PcapWriter (not owned either) every record also goes into the pcap capture;
// without a stream only there.
#pragma once

#include <mutex>
#include <ostream>
#include <string>

#include "tools/line_decoder.h"

namespace avhost {

class PcapWriter;

class CaptureWriter {
public:
    explicit CaptureWriter(std::ostream& out) : m_out(&out) {}
    CaptureWriter(std::ostream* out, PcapWriter* pcap) : m_out(out), m_pcap(pcap) {}

    // The header lines; date as given (see UtcNowText).
    void WriteHeader(const std::string& device, const std::string& date);
    // One frame (or stray or partial bytes) with an optional note after '#'.
    // Flushed at once, so a capture survives the tool being killed. Any thread.
    void Record(double t, char dir, const Bytes& line, const std::string& note);

    // The current UTC time as "YYYY-MM-DDTHH:MM:SSZ".
    static std::string UtcNowText();

private:
    std::mutex m_mutex;
    std::ostream* m_out;  // guarded by m_mutex; may be null
    PcapWriter* m_pcap = nullptr;  // locks itself
};

}  // namespace avhost
