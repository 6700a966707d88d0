// Reading captures of the line: text capture, raw binary, or plain hex.
#include "tools/capture_reader.h"

#include <cctype>
#include <cstdlib>
#include <sstream>

#include "tools/pcap_file.h"
#include "tools/value_parser.h"

namespace avhost {

namespace {

std::string StripComment(const std::string& line) {
    size_t hash = line.find('#');
    return hash == std::string::npos ? line : line.substr(0, hash);
}

bool IsBlank(const std::string& s) {
    for (char c : s) {
        if (!std::isspace(static_cast<unsigned char>(c))) return false;
    }
    return true;
}

// "0.012 < ..." : a time and a direction lead the line.
bool LooksLikeCaptureLine(const std::string& line) {
    std::istringstream in(line);
    std::string time, dir;
    if (!(in >> time >> dir)) return false;
    char* end = nullptr;
    std::strtod(time.c_str(), &end);
    return end != time.c_str() && *end == '\0' && (dir == "<" || dir == ">");
}

}  // namespace

CaptureReader::Format CaptureReader::Detect(const std::string& content) {
    if (PcapFile::IsPcap(content)) return kPcap;
    for (unsigned char c : content) {
        if ((c < 0x20 && !std::isspace(c)) || c > 0x7E) return kBinary;
    }
    std::istringstream in(content);
    std::string line;
    while (std::getline(in, line)) {
        if (line.compare(0, 16, "# avhost capture") == 0) return kText;
        line = StripComment(line);
        if (IsBlank(line)) continue;
        return LooksLikeCaptureLine(line) ? kText : kHex;
    }
    return kHex;
}

bool CaptureReader::Read(const std::string& content, char defaultDir, std::vector<CaptureChunk>& chunks,
                         std::string& error) {
    chunks.clear();
    CaptureChunk whole;
    whole.dir = defaultDir;
    switch (Detect(content)) {
        case kText: return ReadText(content, chunks, error);
        case kPcap: return PcapFile::Read(content, chunks, error);
        case kBinary: whole.bytes.assign(content.begin(), content.end()); break;
        case kHex: {
            std::string hex;
            std::istringstream in(content);
            std::string line;
            while (std::getline(in, line)) hex += StripComment(line) + "\n";
            if (IsBlank(hex)) return true;
            if (!ParseHexBytes(hex, whole.bytes, error)) return false;
            break;
        }
    }
    if (!whole.bytes.empty()) chunks.push_back(whole);
    return true;
}

bool CaptureReader::ReadText(const std::string& content, std::vector<CaptureChunk>& chunks, std::string& error) {
    std::istringstream in(content);
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        line = StripComment(line);
        if (IsBlank(line)) continue;
        CaptureChunk chunk;
        if (!ReadTextLine(line, chunk, error)) {
            error = "line " + std::to_string(number) + ": " + error;
            return false;
        }
        chunks.push_back(chunk);
    }
    return true;
}

bool CaptureReader::ReadTextLine(const std::string& line, CaptureChunk& chunk, std::string& error) {
    if (!LooksLikeCaptureLine(line)) {
        error = "expected '<time> <direction> <hex bytes>'";
        return false;
    }
    std::istringstream in(line);
    std::string time, dir, rest;
    in >> time >> dir;
    std::getline(in, rest);
    chunk.t = std::strtod(time.c_str(), nullptr);
    chunk.dir = dir[0];
    return ParseHexBytes(rest, chunk.bytes, error);
}

}  // namespace avhost
