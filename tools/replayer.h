// Replay of a recorded host session against a daemon, in the manner of a
// regression test: the capture's host-to-daemon frames are sent again (with
// their original spacing, or as fast as the daemon keeps in step), what the
// daemon sends back is recorded, and compared line by line with the expected
// lines: an expected file (NAME.chk beside NAME.cap) or the capture's own
// daemon-to-host frames. Heartbeats (their counts and times) are left out of
// the comparison; every other frame is compared as its decoded text, in order.
// The pure parts are here (script, expected file, difference); the command
// that drives a live line is avhost_commands.cpp. Caller's thread.
#pragma once

#include <string>
#include <vector>

#include "tools/capture_reader.h"
#include "tools/op_formatter.h"

namespace avhost {

struct ReplayStep {
    double t = 0;             // time in the capture
    Bytes bytes;              // as on the line
    std::size_t answersBefore = 0;  // compared daemon lines the capture holds before this step
};

struct ReplayScript {
    std::vector<ReplayStep> steps;        // host-to-daemon chunks in order
    std::vector<std::string> daemonLines;  // the capture's compared daemon lines
};

class Replayer {
public:
    explicit Replayer(const OpCatalog& catalog, const FrameFilter* filter = nullptr)
        : m_catalog(catalog), m_formatter(catalog), m_filter(filter) {}

    // Splits a text capture into the steps to send and the daemon lines to expect.
    ReplayScript Script(const std::vector<CaptureChunk>& chunks) const;
    // The line a received frame is compared as ("< videoWidth[0] = 1920"), or ""
    // for a frame left out (a heartbeat, or one the filter does not show).
    std::string Compared(const LineFrame& frame) const;

    // NAME.chk for NAME.cap or NAME.pcap (or NAME + ".chk").
    static std::string DefaultExpectedPath(const std::string& capturePath);
    // The lines of an expected file (comments and blank lines left out).
    static std::vector<std::string> ParseExpected(const std::string& text);
    static std::string ExpectedText(const std::string& captureName, const std::vector<std::string>& lines);
    // A readable difference ("-" expected, "+" received, with the expected line
    // numbers, counting frames, not comment lines); empty when equal.
    static std::string Difference(const std::vector<std::string>& expected, const std::vector<std::string>& got);

private:
    const OpCatalog& m_catalog;
    OpFormatter m_formatter;
    const FrameFilter* m_filter;
};

}  // namespace avhost
