// The commands of avhost. Thin: parsing, formatting, capture and the live line
// are in their own units.
#include "tools/avhost_commands.h"

#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <sstream>
#include <thread>

#include "protocol/op_value_names.h"
#include "tools/capture_reader.h"
#include "tools/capture_writer.h"
#include "tools/device_line.h"
#include "tools/line_editor.h"
#include "tools/line_session.h"
#include "tools/lua_dissector.h"
#include "tools/op_catalog.h"
#include "tools/op_formatter.h"
#include "tools/pcap_file.h"
#include "tools/pty_line.h"
#include "tools/replayer.h"
#include "tools/session_script.h"
#include "tools/top_view.h"
#include "tools/uploader.h"
#include "tools/value_parser.h"
#include "toolkit/kt_print.h"

namespace avhost {

namespace {

constexpr int kUsage = 2;
constexpr int kFailure = 1;

int Fail(std::ostream& err, const std::string& message, int status = kFailure) {
    err << "avhost: " << message << std::endl;
    return status;
}

void OnStopSignal(int) { StopFlag().store(true); }

// No SA_RESTART: a session blocked reading standard input wakes up and ends.
void InstallStopHandlers() {
    struct sigaction sa {};
    sa.sa_handler = OnStopSignal;
    sigemptyset(&sa.sa_mask);
    sigaction(SIGINT, &sa, nullptr);
    sigaction(SIGTERM, &sa, nullptr);
}

// True when standard output is a pipe whose reader has gone (`| head`): the
// pipe reports an error without anything being written.
bool StdoutReaderGone() {
    struct stat st {};
    if (fstat(STDOUT_FILENO, &st) != 0 || !S_ISFIFO(st.st_mode)) return false;
    pollfd p = {STDOUT_FILENO, 0, 0};
    return poll(&p, 1, 0) == 1 && (p.revents & POLLERR) != 0;
}

// The exit status after a listing: a reader that went away ends it quietly
// (status 0, like a listing that was complete); any other write error is a failure.
int OutputStatus(bool failed, int error, std::ostream& err) {
    if (!failed || error == EPIPE) return 0;
    return Fail(err, std::string("writing the output failed: ") + std::strerror(error));
}

// Output style and filters shared by the live commands.
bool SetOutput(const CommandLine& cl, const OpCatalog& catalog, FrameFilter& filter,
               LineSession::Options& options, std::string& error) {
    options.output.style = cl.json ? OpFormatter::kJson : cl.csv ? OpFormatter::kCsv : OpFormatter::kText;
    options.output.utc = cl.utc;
    options.doubleStart = !cl.singleStart;
    if (!filter.Set(catalog, cl.only, cl.skip, error)) return false;
    options.filter = &filter;
    return true;
}

// The host's end of the line: the named device, or a new pty pair whose
// daemon side is announced on out.
std::unique_ptr<ISerialLine> OpenLine(const CommandLine& cl, std::ostream& out, std::string& error) {
    if (cl.pty) {
        auto pty = std::make_unique<PtyLine>();
        if (!pty->Open(error)) return nullptr;
        out << "pty: " << pty->SlaveName() << std::endl;
        return pty;
    }
    auto device = std::make_unique<DeviceLine>();
    if (!device->Open(cl.device, error)) return nullptr;
    return device;
}

// The capture files and their writer, when --capture or --pcap was given.
struct Capture {
    std::ofstream file;
    PcapWriter pcap;
    std::unique_ptr<CaptureWriter> writer;

    bool Open(const CommandLine& cl, const std::string& device, std::string& error) {
        if (cl.capture.empty() && cl.pcap.empty()) return true;
        if (!cl.capture.empty()) {
            file.open(cl.capture, std::ios::out | std::ios::trunc);
            if (!file) {
                error = "cannot write capture " + cl.capture;
                return false;
            }
        }
        const double now =
            std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
        if (!cl.pcap.empty() && !pcap.Open(cl.pcap, now, error)) return false;
        writer = std::make_unique<CaptureWriter>(cl.capture.empty() ? nullptr : &file,
                                                 cl.pcap.empty() ? nullptr : &pcap);
        writer->WriteHeader(device, CaptureWriter::UtcNowText());
        return true;
    }
    // The command's status, made a failure when a capture could not be written
    // completely (a full disk): a capture that silently lacks frames misleads.
    // Call after the session stopped.
    int Checked(const CommandLine& cl, int status, std::ostream& err) {
        if (writer == nullptr) return status;
        if (!pcap.Close()) {
            Fail(err, "writing pcap " + cl.pcap + " failed");
            status = status == 0 ? kFailure : status;
        }
        if (cl.capture.empty() || file) return status;
        Fail(err, "writing capture " + cl.capture + " failed");
        return status == 0 ? kFailure : status;
    }
};

// The meanings of one operation's values (list --values NAME).
int ListValues(const CommandLine& cl, std::ostream& out, std::ostream& err) {
    const OpCatalog catalog;
    std::string error;
    const COpSsData* entry = LookUpName(catalog, cl.values, error);
    if (entry == nullptr) return Fail(err, error, kUsage);
    const op_value_names::ValueSet* set = op_value_names::ForOp(entry->GetName());
    if (set == nullptr && !OpCatalog::IsFormatCode(entry->GetOpId()))
        return Fail(err, entry->GetName() + " has no enumerated values; ops with names: 'avhost list --values all'");
    if (set == nullptr) {
        out << entry->GetName() << ": a video format code, e.g. 0x630D0000 = 1920x1080p 16x9 50.00fps;"
            << " written as text: 1920x1080p50, 720x576i25/4:3 (see tools/README.md)\n";
        return 0;
    }
    for (const op_value_names::ValueName& v : set->values) {
        if (cl.json) {
            out << "{\"op\":" << JsonString(entry->GetName()) << ",\"value\":" << v.value
                << ",\"meaning\":" << JsonString(v.name) << "}\n";
        } else if (cl.csv) {
            out << entry->GetName() << "," << v.value << "," << v.name << "\n";
        } else {
            out << entry->GetName() << "=" << v.value << "  " << v.name << "\n";
        }
    }
    return 0;
}

// Every operation whose values have names (list --values all).
int ListAllValues(const CommandLine& cl, std::ostream& out) {
    for (const op_value_names::OpValues& o : op_value_names::All()) {
        CommandLine one = cl;
        one.values = o.op;
        std::ostringstream none;
        ListValues(one, out, none);
    }
    return 0;
}

int List(const CommandLine& cl, std::ostream& out, std::ostream& err) {
    if (cl.values == "all") return ListAllValues(cl, out);
    if (!cl.values.empty()) return ListValues(cl, out, err);
    const OpCatalog catalog;
    char line[160];
    if (cl.csv) out << "opId,op,type,index,values\n";
    else if (!cl.json) out << "opId  hex     name                                    value type  index\n";
    for (const COpSsData* e : catalog.Entries()) {
        const std::vector<DataVarType_e> index = e->GetIndex().GetIndexTypeList();
        const std::string indexType = OpCatalog::TypeName(index.empty() ? VT_UINT8 : index[0]);
        if (cl.json) {
            out << "{\"op\":" << JsonString(e->GetName()) << ",\"opId\":" << e->GetOpId()
                << ",\"type\":" << JsonString(OpCatalog::TypeName(e->GetDataType()))
                << ",\"index\":" << JsonString(indexType)
                << ",\"named\":" << (op_value_names::ForOp(e->GetName()) ? "true" : "false") << "}\n";
            continue;
        }
        if (cl.csv) {
            out << e->GetOpId() << "," << e->GetName() << "," << OpCatalog::TypeName(e->GetDataType()) << ","
                << indexType << "," << (op_value_names::ForOp(e->GetName()) ? "named" : "") << "\n";
            continue;
        }
        snprintf(line, sizeof line, "%4u  0x%04X  %-38s  %-10s  %s\n", e->GetOpId(), e->GetOpId(),
                 e->GetName().c_str(), OpCatalog::TypeName(e->GetDataType()).c_str(), indexType.c_str());
        out << line;
    }
    out.flush();
    return OutputStatus(!out, errno, err);
}

int Send(const CommandLine& cl, std::ostream& out, std::ostream& err) {
    const OpCatalog catalog;
    std::vector<SsOp> ops;
    std::string error;
    for (const std::string& a : cl.args) {
        SsOp op;
        if (!ParseAssignment(catalog, a, op, error)) return Fail(err, error, kUsage);
        ops.push_back(op);
    }
    if (cl.apply) ops.push_back(MakeApplyOp());
    DeviceLine line;
    Capture capture;
    if (!line.Open(cl.device, error) || !capture.Open(cl, cl.device, error)) return Fail(err, error);
    LineSession::Options options;
    FrameFilter filter;
    if (!SetOutput(cl, catalog, filter, options, error)) return Fail(err, error, kUsage);
    options.echoSent = true;
    options.capture = capture.writer.get();
    if (cl.csv) out << OpFormatter::CsvHeader() << "\n";
    LineSession session(line, catalog, out, options);
    for (SsOp& op : ops) {
        if (!session.Send(op)) return Fail(err, "writing to " + cl.device + " failed");
    }
    return capture.Checked(cl, OutputStatus(session.OutputFailed(), session.OutputErrno(), err), err);
}

int Raw(const CommandLine& cl, std::ostream& err) {
    std::string hex, error;
    for (const std::string& a : cl.args) hex += a + " ";
    Bytes bytes;
    if (!ParseHexBytes(hex, bytes, error)) return Fail(err, error, kUsage);
    DeviceLine line;
    if (!line.Open(cl.device, error)) return Fail(err, error);
    if (!line.Write(bytes.data(), bytes.size())) return Fail(err, "writing to " + cl.device + " failed");
    return 0;
}

int Monitor(const CommandLine& cl, std::ostream& out, std::ostream& err) {
    const OpCatalog catalog;
    std::string error;
    std::unique_ptr<ISerialLine> line = OpenLine(cl, out, error);
    Capture capture;
    if (!line || !capture.Open(cl, line->Name(), error)) return Fail(err, error);
    LineSession::Options options;
    FrameFilter filter;
    if (!SetOutput(cl, catalog, filter, options, error)) return Fail(err, error, kUsage);
    options.capture = capture.writer.get();
    if (cl.csv) out << OpFormatter::CsvHeader() << std::endl;
    LineSession session(*line, catalog, out, options);
    InstallStopHandlers();
    session.Start();
    bool readerGone = false;
    while (!StopFlag() && !session.OutputFailed() && (cl.duration < 0 || session.Elapsed() < cl.duration)) {
        if ((readerGone = StdoutReaderGone())) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    session.Stop();
    if (readerGone) return capture.Checked(cl, 0, err);
    return capture.Checked(
        cl, OutputStatus(session.OutputFailed() || !out, session.OutputFailed() ? session.OutputErrno() : errno, err),
        err);
}

int Session(const CommandLine& cl, std::istream& in, std::ostream& out, std::ostream& err) {
    const OpCatalog catalog;
    std::string error;
    std::ifstream script;
    if (!cl.args.empty()) {
        script.open(cl.args[0]);
        if (!script) return Fail(err, "cannot read script " + cl.args[0]);
    }
    std::unique_ptr<ISerialLine> line = OpenLine(cl, out, error);
    Capture capture;
    if (!line || !capture.Open(cl, line->Name(), error)) return Fail(err, error);
    LineSession::Options options;
    FrameFilter filter;
    if (!SetOutput(cl, catalog, filter, options, error)) return Fail(err, error, kUsage);
    options.capture = capture.writer.get();
    if (cl.csv) out << OpFormatter::CsvHeader() << std::endl;
    // On a terminal (and reading it): line editing, with received lines shown above the input line.
    std::unique_ptr<LineEditor> editor;
    if (cl.args.empty() && &in == &std::cin && isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1) {
        std::vector<std::string> names;
        for (const COpSsData* e : catalog.Entries()) names.push_back(e->GetName());
        editor = std::make_unique<LineEditor>("avhost> ", cl.history.empty() ? LineEditor::DefaultHistoryFile()
                                                                              : cl.history,
                                              std::vector<std::string>{"send", "apply", "wait", "expect", "raw",
                                                                       "help", "quit"},
                                              names);
        options.printer = [&editor](const std::string& text) { editor->Print(text); };
        out << "avhost session on " << line->Name() << ": Tab completes, 'help' lists the commands, Ctrl-D ends"
            << std::endl;
    }
    LineSession session(*line, catalog, out, options);
    InstallStopHandlers();
    session.Start();
    SessionRunner runner(session, catalog, err, &StopFlag());
    int status = editor ? runner.RunEditor(*editor)
                 : cl.args.empty() ? runner.RunInteractive(in, "stdin")
                                   : runner.RunScript(script, cl.args[0]);
    session.Stop();
    return capture.Checked(cl, status, err);
}

int Decode(const CommandLine& cl, std::istream& in, std::ostream& out, std::ostream& err) {
    std::string content;
    if (cl.args.empty() || cl.args[0] == "-") {
        content.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    } else {
        std::ifstream file(cl.args[0], std::ios::binary);
        if (!file) return Fail(err, "cannot read " + cl.args[0]);
        content.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    std::vector<CaptureChunk> chunks;
    std::string error;
    if (!CaptureReader::Read(content, cl.dir, chunks, error)) return Fail(err, error);
    if (!cl.pcap.empty()) {
        PcapWriter pcap;
        if (!pcap.Open(cl.pcap, CaptureStartEpoch(content), error)) return Fail(err, error);
        for (const CaptureChunk& c : chunks) pcap.Record(c.t, c.dir, c.bytes);
        if (!pcap.Close()) return Fail(err, "writing pcap " + cl.pcap + " failed");
    }
    const OpCatalog catalog;
    FrameFilter filter;
    if (!filter.Set(catalog, cl.only, cl.skip, error)) return Fail(err, error, kUsage);
    OpFormatter::Output output;
    output.style = cl.json ? OpFormatter::kJson : cl.csv ? OpFormatter::kCsv : OpFormatter::kText;
    const OpFormatter formatter(catalog, output);
    if (cl.csv) out << OpFormatter::CsvHeader() << '\n';
    auto print = [&](double t, char dir, const LineFrame& f) {
        if (filter.Shows(catalog, f)) out << formatter.Line(t, dir, f) << '\n';
    };
    // Each direction is its own byte stream, split as the receiving end splits it.
    LineDecoder toDaemon, toHost;
    double lastTo = 0, lastFrom = 0;
    std::vector<LineFrame> frames;
    for (const CaptureChunk& c : chunks) {
        frames.clear();
        LineDecoder& decoder = c.dir == '>' ? toDaemon : toHost;
        decoder.Push(c.bytes.data(), c.bytes.size(), frames);
        decoder.TakeStray(frames);
        (c.dir == '>' ? lastTo : lastFrom) = c.t;
        for (const LineFrame& f : frames) print(c.t, c.dir, f);
    }
    LineFrame rest;
    if (toDaemon.Flush(rest)) print(lastTo, '>', rest);
    if (toHost.Flush(rest)) print(lastFrom, '<', rest);
    out.flush();
    return OutputStatus(!out, errno, err);
}

// What the daemon sent during a replay, as compared lines; filled by the receive thread.
class ReplayRecorder {
public:
    void Add(const std::string& line) {
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_lines.push_back(line);
            m_last = std::chrono::steady_clock::now();
        }
        m_signal.notify_all();
    }
    // Waits until at least count lines arrived; false after timeoutS.
    bool WaitFor(std::size_t count, double timeoutS) {
        std::unique_lock<std::mutex> lock(m_mutex);
        return m_signal.wait_for(lock, std::chrono::duration<double>(timeoutS), [&] { return m_lines.size() >= count; });
    }
    // Waits until count lines arrived and then none for quietS, or until limitS passed.
    void Settle(std::size_t count, double quietS, double limitS) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::duration_cast<std::chrono::nanoseconds>(
                                                                std::chrono::duration<double>(limitS));
        std::unique_lock<std::mutex> lock(m_mutex);
        while (!StopFlag() && std::chrono::steady_clock::now() < end) {
            const bool quiet = std::chrono::steady_clock::now() - m_last > std::chrono::duration<double>(quietS);
            if (m_lines.size() >= count && quiet) return;
            m_signal.wait_for(lock, std::chrono::milliseconds(50));
        }
    }
    std::vector<std::string> Lines() {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_lines;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_signal;
    std::vector<std::string> m_lines;  // guarded by m_mutex
    std::chrono::steady_clock::time_point m_last = std::chrono::steady_clock::now();  // guarded by m_mutex
};

bool ReadWhole(const std::string& path, std::string& content) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return false;
    content.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    return true;
}

// Sends the steps: at their original spacing after the first one, or (fast) each
// as soon as the daemon has sent what the capture shows before it.
void SendSteps(const ReplayScript& script, bool fast, LineSession& session, ReplayRecorder& recorder) {
    const auto zero = std::chrono::steady_clock::now();
    for (const ReplayStep& step : script.steps) {
        if (StopFlag()) return;
        if (fast || &step == &script.steps.front()) {
            recorder.WaitFor(step.answersBefore, &step == &script.steps.front() ? 10.0 : 5.0);
        } else {
            const double due = step.t - script.steps.front().t;
            std::this_thread::sleep_until(zero + std::chrono::duration_cast<std::chrono::nanoseconds>(
                                                     std::chrono::duration<double>(due)));
        }
        session.SendRaw(step.bytes);
    }
}

// What a replay sends and what it expects back.
struct ReplayPlan {
    std::vector<CaptureChunk> chunks;
    ReplayScript script;
    std::string expectedPath;
    bool haveFile = false;  // else the capture's own daemon frames are expected
    std::vector<std::string> expected;

    std::string Against(const std::string& capturePath) const {
        return haveFile ? expectedPath : capturePath + " (its daemon frames)";
    }
};

bool LoadReplay(const CommandLine& cl, const Replayer& replayer, ReplayPlan& plan, std::string& error) {
    const std::string& capturePath = cl.args[0];
    std::string content, expectedText;
    if (!ReadWhole(capturePath, content)) return error = "cannot read " + capturePath, false;
    const CaptureReader::Format format = CaptureReader::Detect(content);
    if (format != CaptureReader::kText && format != CaptureReader::kPcap)
        return error = capturePath + ": not a text or pcap capture", false;
    if (!CaptureReader::Read(content, '<', plan.chunks, error)) return error = capturePath + ": " + error, false;
    plan.script = replayer.Script(plan.chunks);
    plan.expectedPath = cl.expected.empty() ? Replayer::DefaultExpectedPath(capturePath) : cl.expected;
    plan.haveFile = ReadWhole(plan.expectedPath, expectedText);
    plan.expected = plan.haveFile ? Replayer::ParseExpected(expectedText) : plan.script.daemonLines;
    return true;
}

// --update: the expected file rewritten; otherwise the verdict and any difference.
int ReportReplay(const CommandLine& cl, const ReplayPlan& plan, const std::vector<std::string>& got,
                 const std::string& lineName, std::ostream& out, std::ostream& err) {
    const std::string& capturePath = cl.args[0];
    if (cl.update) {
        std::ofstream file(plan.expectedPath, std::ios::trunc);
        file << Replayer::ExpectedText(capturePath.substr(capturePath.find_last_of('/') + 1), got);
        if (!file.flush()) return Fail(err, "cannot write " + plan.expectedPath);
        out << "replay: wrote " << got.size() << " lines to " << plan.expectedPath << std::endl;
        return 0;
    }
    const std::string difference = Replayer::Difference(plan.expected, got);
    if (difference.empty()) {
        out << "replay: " << plan.script.steps.size() << " frames sent, " << got.size() << " compared: same as "
            << plan.Against(capturePath) << std::endl;
        return 0;
    }
    out << "--- expected: " << plan.Against(capturePath) << "\n+++ received from " << lineName << "\n"
        << difference << std::flush;
    return Fail(err, "replay of " + capturePath + " differs from " + plan.Against(capturePath));
}

int Replay(const CommandLine& cl, std::ostream& out, std::ostream& err) {
    const OpCatalog catalog;
    std::string error;
    FrameFilter filter;
    if (!filter.Set(catalog, cl.only, cl.skip, error)) return Fail(err, error, kUsage);
    const Replayer replayer(catalog, &filter);
    ReplayPlan plan;
    if (!LoadReplay(cl, replayer, plan, error)) return Fail(err, error);
    std::unique_ptr<ISerialLine> line = OpenLine(cl, out, error);
    Capture capture;
    if (!line || !capture.Open(cl, line->Name(), error)) return Fail(err, error);
    ReplayRecorder recorder;
    LineSession::Options options;
    options.capture = capture.writer.get();
    options.onFrame = [&](double, char dir, const LineFrame& f) {
        const std::string compared = dir == '<' ? replayer.Compared(f) : "";
        if (!compared.empty()) recorder.Add(compared);
    };
    std::ostringstream quiet;  // received frames are compared, not printed
    LineSession session(*line, catalog, quiet, options);
    InstallStopHandlers();
    session.Start();
    SendSteps(plan.script, cl.fast, session, recorder);
    const double tail = plan.script.steps.empty() ? 0 : plan.chunks.back().t - plan.script.steps.back().t;
    recorder.Settle(plan.expected.size(), 0.3, std::max(3.0, tail + 2.0));
    session.Stop();
    return capture.Checked(cl, ReportReplay(cl, plan, recorder.Lines(), line->Name(), out, err), err);
}

int Top(const CommandLine& cl, std::ostream& out, std::ostream& err) {
    const OpCatalog catalog;
    std::string error;
    std::unique_ptr<ISerialLine> line = OpenLine(cl, out, error);
    if (!line) return Fail(err, error);
    TopModel model(catalog);
    LineSession::Options options;
    options.doubleStart = !cl.singleStart;
    options.printer = [](const std::string&) {};  // the screen belongs to the view
    options.onFrame = [&model](double t, char dir, const LineFrame& f) { model.Add(t, dir, f); };
    LineSession session(*line, catalog, out, options);
    InstallStopHandlers();
    session.Start();
    const int status = RunTop(session, model, catalog, line->Name(), StopFlag());
    session.Stop();
    return status;
}

int Upload(const CommandLine& cl, std::ostream& out, std::ostream& err) {
    const bool tty = isatty(STDERR_FILENO) == 1;
    int lastStep = -1;
    auto progress = [&](uint64_t sent, uint64_t total) {
        if (tty) {
            // Erased to the line end: a shorter text ("1.0 MiB" after "1023.9 KiB")
            // must not leave the tail of the longer one behind.
            err << "\r" << Uploader::ProgressBar(sent, total) << "\x1b[K" << std::flush;
            return;
        }
        int step = total == 0 ? 10 : static_cast<int>(sent * 10 / total);  // every 10 %
        if (step == lastStep) return;
        lastStep = step;
        err << "upload: " << step * 10 << "% (" << Uploader::SizeText(sent) << " / " << Uploader::SizeText(total)
            << ")" << std::endl;
    };
    UploadResult result;
    std::string error;
    bool ok = Uploader::Upload(cl.args[0], cl.host, cl.port, progress, result, error);
    if (tty && result.bytes > 0) err << std::endl;
    if (!ok) return Fail(err, error);
    out << "uploaded " << cl.args[0] << ": " << Uploader::Summary(result) << std::endl;
    return 0;
}

}  // namespace

std::atomic<bool>& StopFlag() {
    static std::atomic<bool> stop{false};
    return stop;
}

int RunAvhost(const std::vector<std::string>& words, std::istream& in, std::ostream& out, std::ostream& err) {
    CommandLine cl;
    std::string error;
    if (!ParseCommandLine(words, cl, error)) {
        err << "avhost: " << error << "\n" << "Try 'avhost --help'." << std::endl;
        return kUsage;
    }
    if (cl.help || cl.version) {
        out << (cl.help ? UsageText() : VersionText()) << std::flush;
        return out ? 0 : kFailure;
    }
    // The protocol code's diagnostics (e.g. about a malformed frame) are noise
    // next to the tool's own report of the same frame.
    if (!cl.verbose) KT::SetPrintSink([](const std::string&) {});
    if (cl.command == "list") return List(cl, out, err);
    if (cl.command == "send") return Send(cl, out, err);
    if (cl.command == "raw") return Raw(cl, err);
    if (cl.command == "monitor") return Monitor(cl, out, err);
    if (cl.command == "session") return Session(cl, in, out, err);
    if (cl.command == "decode") return Decode(cl, in, out, err);
    if (cl.command == "replay") return Replay(cl, out, err);
    if (cl.command == "top") return Top(cl, out, err);
    if (cl.command == "dissector") {
        out << LuaDissector(OpCatalog()) << std::flush;
        return OutputStatus(!out, errno, err);
    }
    return Upload(cl, out, err);
}

}  // namespace avhost
