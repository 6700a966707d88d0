// CaptureReader: reads a capture of the serial line in any of three forms, told
// apart by content: the text capture of CaptureWriter, a pcap file (by its
// magic number, see pcap_file.h), raw binary bytes as read from the line, or
// plain hex ("0F 00 05 ..."). Binary and hex carry no time or
// direction: they become one chunk at time 0 in the direction the caller names.
// Pure parsing; any thread.
#pragma once

#include <string>
#include <vector>

#include "tools/line_decoder.h"

namespace avhost {

struct CaptureChunk {
    double t = 0;
    char dir = '<';
    Bytes bytes;
};

class CaptureReader {
public:
    enum Format { kText, kBinary, kHex, kPcap };

    static Format Detect(const std::string& content);
    // Parses content in its detected form. False with "line N: ..." in error for
    // a malformed text capture or hex input.
    static bool Read(const std::string& content, char defaultDir, std::vector<CaptureChunk>& chunks,
                     std::string& error);

private:
    static bool ReadText(const std::string& content, std::vector<CaptureChunk>& chunks, std::string& error);
    static bool ReadTextLine(const std::string& line, CaptureChunk& chunk, std::string& error);
};

}  // namespace avhost
