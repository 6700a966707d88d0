// The session language: one command per line, read from a script file or from
// standard input, run against a LineSession.
//
//   send NAME=VALUE[@INDEX] ...   data operations, as for `avhost send`
//   apply                         the apply trigger (type 6)
//   wait SECONDS                  let the line run
//   expect NAME[=VALUE][@INDEX] [TIMEOUT]
//                                 wait (default 5 s) until such an operation is received
//                                 (one received after the last send, apply or raw)
//   raw HEX...                    bytes as given, unframed
//   # comment
//
// Values with blanks are quoted: send serviceselectionServiceName="My TV".
// SessionRunner runs on the caller's thread; the session's receive thread keeps
// printing while it waits.
#pragma once

#include <atomic>
#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include "tools/line_editor.h"
#include "tools/line_session.h"
#include "tools/op_catalog.h"
#include "tools/op_formatter.h"
#include "tools/value_parser.h"

namespace avhost {

// What an expect command waits for. The value matches when its bytes equal the
// value parsed by the entry's type, or when its shown form equals the text (so
// status texts sent under numeric types match too, e.g. stbsystemReady=stbav_ready).
struct ExpectSpec {
    unsigned opId = 0;
    std::string name;
    bool hasValue = false;
    std::string valueText;
    bool valueParsed = false;
    Bytes valueBytes;
    bool hasIndex = false;
    unsigned long long index = 0;

    bool Matches(const SsOp& op, const OpFormatter& formatter) const;
};

struct SessionCommand {
    enum Kind { kSend, kApply, kWait, kExpect, kRaw };
    Kind kind = kApply;
    std::vector<SsOp> ops;  // kSend
    double seconds = 0;     // kWait; kExpect: time-out
    ExpectSpec expect;      // kExpect
    Bytes raw;              // kRaw
    std::string text;       // the line as written, for messages
};

// Splits a line into words; double quotes group (with \" and \\ inside them).
bool SplitWords(const std::string& line, std::vector<std::string>& words, std::string& error);

// Parses one line. Returns false with error for a bad line; true with empty set
// to false for a blank or comment line.
bool ParseSessionLine(const OpCatalog& catalog, const std::string& line, SessionCommand& command, bool& isCommand,
                      std::string& error);

// The session commands in a few lines, for "help".
extern const char* const kCommandHelp;

class SessionRunner {
public:
    static constexpr double kDefaultExpectSeconds = 5.0;

    // err receives the messages; stop (optional) ends waits early when set.
    SessionRunner(LineSession& session, const OpCatalog& catalog, std::ostream& err,
                  const std::atomic<bool>* stop = nullptr);

    // Parses every line first (any bad line: message, status 2, nothing sent),
    // then runs them. Returns the exit status: 0, 1 (a failed expect or write) or 2.
    int RunScript(std::istream& in, const std::string& source);
    // Reads, parses and runs one line at a time (standard input). Same statuses.
    int RunInteractive(std::istream& in, const std::string& source);
    // Interactive, on a terminal: a mistake or a failed expect prints an error and
    // the session goes on; "quit", "exit" or end of input end it with status 0.
    int RunEditor(LineEditor& editor);
    // One command; 0 or 1. A send, apply or raw first forgets what was received
    // before it (see LineSession::MarkSent).
    int Execute(const SessionCommand& command, const std::string& where);

private:
    bool Stopped() const { return m_stop != nullptr && m_stop->load(); }
    int Wait(double seconds);
    int Expect(const ExpectSpec& spec, double seconds, const std::string& where, const std::string& text);

    LineSession& m_session;
    const OpCatalog& m_catalog;
    OpFormatter m_formatter;
    std::ostream& m_err;
    const std::atomic<bool>* m_stop;
};

}  // namespace avhost
