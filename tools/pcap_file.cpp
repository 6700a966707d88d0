// pcap captures of the line through libpcap; see pcap_file.h for the layout.
#include "tools/pcap_file.h"

#include <pcap/pcap.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <sstream>

namespace avhost {

namespace {
constexpr int kSnapLength = 65535;
}

PcapWriter::~PcapWriter() { Close(); }

bool PcapWriter::Open(const std::string& path, double startEpoch, std::string& error) {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_start = startEpoch;
    m_pcap = pcap_open_dead(kPcapLinkType, kSnapLength);
    if (m_pcap == nullptr) return error = "cannot start a pcap capture", false;
    m_dumper = pcap_dump_open(m_pcap, path.c_str());
    if (m_dumper == nullptr) {
        error = "cannot write pcap " + path + ": " + pcap_geterr(m_pcap);
        pcap_close(m_pcap);
        m_pcap = nullptr;
        return false;
    }
    return true;
}

void PcapWriter::Record(double t, char dir, const Bytes& bytes) {
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_dumper == nullptr) return;
    LineDecoder& decoder = dir == '>' ? m_toDaemon : m_toHost;
    (dir == '>' ? m_lastTo : m_lastFrom) = t;
    std::vector<LineFrame> frames;
    decoder.Push(bytes.data(), bytes.size(), frames);
    decoder.TakeStray(frames);
    for (const LineFrame& f : frames) WriteLocked(t, dir, f.line);
}

void PcapWriter::WriteLocked(double t, char dir, const Bytes& line) {
    const double when = m_start + t;
    double whole = std::floor(when);
    long micros = std::lround((when - whole) * 1e6);
    if (micros >= 1000000) {
        whole += 1;
        micros -= 1000000;
    }
    pcap_pkthdr header{};
    header.ts.tv_sec = static_cast<time_t>(whole);
    header.ts.tv_usec = static_cast<suseconds_t>(micros);
    Bytes record;
    record.reserve(line.size() + 1);
    record.push_back(dir == '>' ? kPcapHostToDaemon : kPcapDaemonToHost);
    record.insert(record.end(), line.begin(), line.end());
    header.caplen = header.len = static_cast<bpf_u_int32>(record.size());
    pcap_dump(reinterpret_cast<u_char*>(m_dumper), &header, record.data());
    pcap_dump_flush(m_dumper);  // a capture survives the tool being killed
}

bool PcapWriter::Close() {
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_dumper == nullptr) return true;
    LineFrame rest;
    if (m_toDaemon.Flush(rest)) WriteLocked(m_lastTo, '>', rest.line);
    if (m_toHost.Flush(rest)) WriteLocked(m_lastFrom, '<', rest.line);
    const bool ok = pcap_dump_flush(m_dumper) == 0 && !std::ferror(pcap_dump_file(m_dumper));
    pcap_dump_close(m_dumper);
    pcap_close(m_pcap);
    m_dumper = nullptr;
    m_pcap = nullptr;
    return ok;
}

bool PcapFile::IsPcap(const std::string& content) {
    if (content.size() < 4) return false;
    static const unsigned char kMagics[][4] = {
        {0xD4, 0xC3, 0xB2, 0xA1}, {0xA1, 0xB2, 0xC3, 0xD4}, {0x4D, 0x3C, 0xB2, 0xA1}, {0xA1, 0xB2, 0x3C, 0x4D}};
    for (const auto& m : kMagics) {
        if (std::memcmp(content.data(), m, 4) == 0) return true;
    }
    return false;
}

bool PcapFile::Read(const std::string& content, std::vector<CaptureChunk>& chunks, std::string& error) {
    chunks.clear();
    FILE* file = fmemopen(const_cast<char*>(content.data()), content.size(), "rb");
    if (file == nullptr) return error = "cannot read the pcap data", false;
    char pcapError[PCAP_ERRBUF_SIZE] = "";
    pcap_t* p = pcap_fopen_offline_with_tstamp_precision(file, PCAP_TSTAMP_PRECISION_MICRO, pcapError);
    if (p == nullptr) {
        std::fclose(file);
        return error = std::string("not a readable pcap: ") + pcapError, false;
    }
    bool ok = true;
    if (pcap_datalink(p) != kPcapLinkType) {
        error = "pcap link type " + std::to_string(pcap_datalink(p)) + ", expected DLT_USER0 (147)";
        ok = false;
    }
    double first = -1;
    for (int number = 1; ok; ++number) {
        pcap_pkthdr* header = nullptr;
        const u_char* data = nullptr;
        const int got = pcap_next_ex(p, &header, &data);
        if (got == PCAP_ERROR_BREAK) break;
        if (got != 1) {
            error = std::string("damaged pcap: ") + pcap_geterr(p);
            ok = false;
            break;
        }
        if (header->caplen < 1 || data[0] > kPcapDaemonToHost) {
            error = "pcap record " + std::to_string(number) + ": no direction header (0x00 or 0x01)";
            ok = false;
            break;
        }
        const double when = static_cast<double>(header->ts.tv_sec) + header->ts.tv_usec / 1e6;
        if (first < 0) first = when;
        CaptureChunk chunk;
        chunk.t = when - first;
        chunk.dir = data[0] == kPcapHostToDaemon ? '>' : '<';
        chunk.bytes.assign(data + 1, data + header->caplen);
        chunks.push_back(std::move(chunk));
    }
    pcap_close(p);  // closes file too
    return ok;
}

double CaptureStartEpoch(const std::string& content) {
    std::istringstream in(content);
    std::string line;
    while (std::getline(in, line) && !line.empty() && line[0] == '#') {
        std::tm tm{};
        if (line.compare(0, 8, "# date: ") != 0) continue;
        if (strptime(line.c_str() + 8, "%Y-%m-%dT%H:%M:%SZ", &tm) == nullptr) return 0;
        return static_cast<double>(timegm(&tm));
    }
    return 0;
}

}  // namespace avhost
