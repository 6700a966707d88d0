// The live line: a receive thread that prints what the daemon sends, and the
// send path of the caller's thread. Both record in the capture.
#include "tools/line_session.h"

#include <cerrno>

namespace avhost {

namespace {

constexpr unsigned kReadTimeoutMs = 100;
constexpr std::size_t kReadSize = 4096;

// The wall clock at t = 0, for absolute time stamps.
LineSession::Options WithClock(LineSession::Options options) {
    options.output.epochAtZero =
        std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
    return options;
}

}  // namespace

LineSession::LineSession(ISerialLine& line, const OpCatalog& catalog, std::ostream& out, Options options)
    : m_line(line),
      m_options(WithClock(options)),
      m_formatter(catalog, m_options.output),
      m_start(std::chrono::steady_clock::now()),
      m_out(out) {}

LineSession::~LineSession() { Stop(); }

void LineSession::Start() {
    if (m_receiver.joinable()) return;
    m_running = true;
    m_receiver = std::thread([this] { ReceiveLoop(); });
}

void LineSession::Stop() {
    if (!m_receiver.joinable()) return;
    m_running = false;
    m_receiver.join();
    LineFrame rest;
    if (m_decoder.Flush(rest)) Handle(Elapsed(), '<', rest);
}

double LineSession::Elapsed() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
}

void LineSession::ReceiveLoop() {
    std::vector<unsigned char> buffer(kReadSize);
    std::vector<LineFrame> frames;
    while (m_running) {
        int n = m_line.Read(buffer.data(), buffer.size(), kReadTimeoutMs);
        if (n <= 0) continue;
        const double t = Elapsed();
        frames.clear();
        m_decoder.Push(buffer.data(), static_cast<std::size_t>(n), frames);
        m_decoder.TakeStray(frames);
        for (const LineFrame& frame : frames) Handle(t, '<', frame);
    }
}

void LineSession::Handle(double t, char dir, const LineFrame& frame) {
    if (m_options.capture != nullptr) m_options.capture->Record(t, dir, frame.line, m_formatter.Describe(frame));
    // Kept for Expect before it is printed: whoever saw the line can expect it.
    if (dir == '<' && frame.kind == LineFrame::kOp) {
        {
            std::lock_guard<std::mutex> lock(m_seenMutex);
            m_seen.push_back(frame.op);
        }
        m_seenSignal.notify_all();
    }
    const bool shown = m_options.filter == nullptr || m_options.filter->Shows(m_formatter.Catalog(), frame);
    if ((dir == '<' || m_options.echoSent) && shown) Print(t, dir, frame);
    if (m_options.onFrame) m_options.onFrame(t, dir, frame);
}

void LineSession::Print(double t, char dir, const LineFrame& frame) {
    std::string text = m_formatter.Line(t, dir, frame);
    if (m_options.printer) {
        m_options.printer(text + "\n");
        return;
    }
    std::lock_guard<std::mutex> lock(m_outMutex);
    if (m_outputFailed) return;
    errno = 0;
    m_out << text << std::endl;  // flushed: the reader may be another program
    if (m_out) return;
    m_outputErrno = errno;
    m_outputFailed = true;
}

bool LineSession::Send(SsOp& op) {
    // Serialise a copy: the caller's op keeps its cache untouched.
    SsOp copy(op);
    bool ok = true;
    for (Bytes frame : EncodeOpFrames(copy)) {
        // A second start marker first: harmless while the daemon's receiver is in
        // step, and it brings the receiver back after a stray end marker.
        if (m_options.doubleStart) frame.insert(frame.begin(), frame.front());
        // Recorded before the write, so that an answer never precedes its cause
        // in the capture. Shown as decoded from the line, like the other direction.
        LineDecoder decoder;
        std::vector<LineFrame> sent;
        decoder.Push(frame.data(), frame.size(), sent);
        for (const LineFrame& f : sent) Handle(Elapsed(), '>', f);
        ok = m_line.Write(frame.data(), frame.size()) && ok;
    }
    return ok;
}

bool LineSession::SendRaw(const Bytes& bytes) {
    if (m_options.capture != nullptr) m_options.capture->Record(Elapsed(), '>', bytes, "raw");
    return m_line.Write(bytes.data(), bytes.size());
}

void LineSession::MarkSent() {
    std::lock_guard<std::mutex> lock(m_seenMutex);
    m_seen.clear();
}

bool LineSession::Expect(const Match& match, double timeoutS) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration_cast<std::chrono::nanoseconds>(
                                                                  std::chrono::duration<double>(timeoutS));
    std::unique_lock<std::mutex> lock(m_seenMutex);
    std::size_t checked = 0;
    for (;;) {
        for (; checked < m_seen.size(); ++checked) {
            if (!match(m_seen[checked])) continue;
            m_seen.erase(m_seen.begin(), m_seen.begin() + static_cast<std::ptrdiff_t>(checked) + 1);
            return true;
        }
        if (m_seenSignal.wait_until(lock, deadline) == std::cv_status::timeout && checked == m_seen.size())
            return false;
    }
}

}  // namespace avhost
