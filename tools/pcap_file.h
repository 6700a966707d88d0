// PcapWriter / PcapFile: captures of the serial line as pcap files, written
// and read with libpcap. Link type DLT_USER0 (147); one record per frame as it
// was on the line (markers and escapes included, or stray bytes the receiver
// drops), after a one-byte direction header:
//   0x00  host to daemon   (">" in avhost's output)
//   0x01  daemon to host   ("<")
// Record times are absolute (the capture's start plus its offset). The writer
// splits what it is given into frames per direction as the daemon's receiver
// does, so each record holds one frame. Record is called from the session's
// sending and receiving threads: one lock guards the dump file.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "tools/capture_reader.h"
#include "tools/line_decoder.h"

struct pcap;
struct pcap_dumper;

namespace avhost {

constexpr unsigned char kPcapHostToDaemon = 0x00;
constexpr unsigned char kPcapDaemonToHost = 0x01;
constexpr int kPcapLinkType = 147;  // DLT_USER0

class PcapWriter {
public:
    PcapWriter() = default;
    ~PcapWriter();
    PcapWriter(const PcapWriter&) = delete;
    PcapWriter& operator=(const PcapWriter&) = delete;

    // Creates path; startEpoch (seconds since 1970) is the time of offset 0.
    bool Open(const std::string& path, double startEpoch, std::string& error);
    // Bytes seen at t seconds after the start in direction dir ('>' or '<').
    // Any thread.
    void Record(double t, char dir, const Bytes& bytes);
    // Writes what is still held (an unfinished frame), flushes and closes.
    // False when a write failed (a full disk).
    bool Close();

private:
    void WriteLocked(double t, char dir, const Bytes& line);

    std::mutex m_mutex;
    pcap* m_pcap = nullptr;          // guarded by m_mutex
    pcap_dumper* m_dumper = nullptr;  // guarded by m_mutex
    double m_start = 0;
    double m_lastTo = 0, m_lastFrom = 0;  // guarded by m_mutex
    LineDecoder m_toDaemon, m_toHost;     // guarded by m_mutex
};

class PcapFile {
public:
    // True when content starts with a pcap magic number (either byte order,
    // micro- or nanosecond time stamps).
    static bool IsPcap(const std::string& content);
    // The records of a pcap capture as chunks; t counts from the first record.
    // False for a damaged file, a link type other than DLT_USER0 or a record
    // without a valid direction header.
    static bool Read(const std::string& content, std::vector<CaptureChunk>& chunks, std::string& error);
};

// Seconds since 1970 of a text capture's "# date: YYYY-MM-DDTHH:MM:SSZ" line; 0 without one.
double CaptureStartEpoch(const std::string& content);

}  // namespace avhost
