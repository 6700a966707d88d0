// Text capture of the line. Records come from the session's sending and
// receiving threads; one lock keeps lines whole.
#include "tools/capture_writer.h"

#include <cstdio>
#include <ctime>

#include "tools/pcap_file.h"

namespace avhost {

void CaptureWriter::WriteHeader(const std::string& device, const std::string& date) {
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_out == nullptr) return;
    *m_out << "# avhost capture 1\n"
          << "# date: " << date << "\n"
          << "# line: " << device << " 115200 8N1\n"
          << "# time (s) since start, direction (> host to daemon, < daemon to host), frame bytes as on the line\n";
    m_out->flush();
}

void CaptureWriter::Record(double t, char dir, const Bytes& line, const std::string& note) {
    if (m_pcap != nullptr) m_pcap->Record(t, dir, line);
    if (m_out == nullptr) return;
    char time[32];
    snprintf(time, sizeof time, "%.3f", t);
    std::string text = std::string(time) + " " + dir + " " + HexString(line);
    // A note is one line: line ends inside it would start a data line.
    if (!note.empty()) {
        std::string flat = note;
        for (char& c : flat) c = c == '\n' || c == '\r' ? ' ' : c;
        text += "  # " + flat;
    }
    std::lock_guard<std::mutex> lock(m_mutex);
    *m_out << text << '\n';
    m_out->flush();
}

std::string CaptureWriter::UtcNowText() {
    std::time_t now = std::time(nullptr);
    std::tm utc{};
    gmtime_r(&now, &utc);
    char buf[32];
    strftime(buf, sizeof buf, "%Y-%m-%dT%H:%M:%SZ", &utc);
    return buf;
}

}  // namespace avhost
