// LineSession: the host's side of a live serial line. A receive thread of its
// own reads the line, splits and decodes frames and prints each one (text, JSON
// or CSV, to the stream or through a printer) as it arrives, records it in the
// capture if there is one, and keeps the decoded operations for Expect. Send and SendRaw frame and write from the
// calling thread and record in the capture too. The line, catalog, output stream
// and capture writer are not owned and must outlive the session.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <ostream>
#include <thread>

#include "tools/capture_writer.h"
#include "tools/line_decoder.h"
#include "tools/op_catalog.h"
#include "tools/op_formatter.h"
#include "tools/serial_line.h"

namespace avhost {

class LineSession {
public:
    struct Options {
        OpFormatter::Output output;       // style (text, JSON, CSV) and time stamps; epochAtZero is filled in
        const FrameFilter* filter = nullptr;  // which frames are printed (all when null); capture keeps all
        bool echoSent = false;            // also print what Send writes (direction '>')
        bool doubleStart = true;          // every frame sent starts with two start markers (see tools/README.md)
        CaptureWriter* capture = nullptr;  // records both directions when set
        // Takes each printed line (with its line end) instead of the output stream.
        std::function<void(const std::string&)> printer;
        // Called with every frame received ('<', on the receive thread) and sent
        // ('>', on the sending thread), after printing.
        std::function<void(double, char, const LineFrame&)> onFrame;
    };

    LineSession(ISerialLine& line, const OpCatalog& catalog, std::ostream& out, Options options);
    // Stops the receive thread if it runs.
    ~LineSession();

    // Starts the receive thread. Owner's thread.
    void Start();
    // Stops and joins it (within one 100 ms read), then reports bytes of a frame
    // that had not ended. Owner's thread; safe when not started.
    void Stop();

    // Writes the operation's frames (one per 240-byte chunk). True when every
    // byte was written. Any thread.
    bool Send(SsOp& op);
    // Writes bytes as given, unframed.
    bool SendRaw(const Bytes& bytes);

    // Forgets the operations received so far: Expect looks only at what comes
    // after this (called before a send or apply). Any thread.
    void MarkSent();

    using Match = std::function<bool(const SsOp&)>;
    // Waits until an operation for which match holds has been received, looking
    // at those received since the previous MarkSent or successful Expect (or the
    // start), so a reply that came while earlier commands ran is not missed and
    // a stale one is never matched. On success the operations up to the match
    // are consumed. False after timeoutS seconds.
    bool Expect(const Match& match, double timeoutS);

    // Seconds since construction.
    double Elapsed() const;
    // True once a write to the output stream failed (e.g. a closed pipe); nothing
    // is printed after that. errno of the failure in OutputErrno.
    bool OutputFailed() const { return m_outputFailed.load(); }
    int OutputErrno() const { return m_outputErrno.load(); }

private:
    void ReceiveLoop();
    void Handle(double t, char dir, const LineFrame& frame);
    void Print(double t, char dir, const LineFrame& frame);

    ISerialLine& m_line;
    Options m_options;
    OpFormatter m_formatter;
    const std::chrono::steady_clock::time_point m_start;

    std::thread m_receiver;
    std::atomic<bool> m_running{false};
    LineDecoder m_decoder;  // receive thread only (and Stop after the join)

    std::atomic<bool> m_outputFailed{false};
    std::atomic<int> m_outputErrno{0};
    std::mutex m_outMutex;
    std::ostream& m_out;  // guarded by m_outMutex

    std::mutex m_seenMutex;
    std::condition_variable m_seenSignal;
    std::deque<SsOp> m_seen;  // guarded by m_seenMutex: received, not yet consumed by Expect
};

}  // namespace avhost
