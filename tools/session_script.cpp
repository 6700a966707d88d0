// Parsing and running session commands. Caller's thread.
#include "tools/session_script.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace avhost {

namespace {

bool ParseSeconds(const std::string& text, double& seconds) {
    char* end = nullptr;
    seconds = std::strtod(text.c_str(), &end);
    return !text.empty() && *end == '\0' && seconds >= 0 && seconds < 1e7;
}

bool ParseExpect(const OpCatalog& catalog, const std::vector<std::string>& words, SessionCommand& command,
                 std::string& error) {
    if (words.size() < 2 || words.size() > 3) {
        error = "usage: expect NAME[=VALUE][@INDEX] [TIMEOUT]";
        return false;
    }
    command.seconds = SessionRunner::kDefaultExpectSeconds;
    if (words.size() == 3 && !ParseSeconds(words[2], command.seconds)) {
        error = "bad time-out \"" + words[2] + "\"";
        return false;
    }
    Assignment a = SplitAssignment(words[1]);
    const COpSsData* entry = LookUpName(catalog, a.name, error);
    if (entry == nullptr) return false;
    ExpectSpec& spec = command.expect;
    spec.opId = entry->GetOpId();
    spec.name = entry->GetName();
    spec.hasValue = a.hasValue;
    spec.valueText = a.value;
    SsOp probe;
    std::string ignored;
    if (a.hasValue && ParseValue(*entry, a.value, probe, ignored)) {
        spec.valueParsed = true;
        spec.valueBytes = probe.GetRawData();
    }
    if (a.hasIndex) {
        if (!ParseIndex(*entry, a.index, probe, error)) return false;
        OpFormatter formatter(catalog);
        probe.SetOpId(entry->GetOpId());
        spec.hasIndex = formatter.IndexOf(probe, spec.index);
    }
    return true;
}

bool ParseWords(const OpCatalog& catalog, const std::vector<std::string>& words, SessionCommand& command,
                std::string& error) {
    const std::string& verb = words[0];
    if (verb == "send") {
        command.kind = SessionCommand::kSend;
        if (words.size() < 2) error = "usage: send NAME=VALUE[@INDEX] ...";
        for (size_t i = 1; i < words.size() && error.empty(); ++i) {
            SsOp op;
            if (ParseAssignment(catalog, words[i], op, error)) command.ops.push_back(op);
        }
        return error.empty();
    }
    if (verb == "apply") {
        command.kind = SessionCommand::kApply;
        if (words.size() != 1) error = "usage: apply";
        return error.empty();
    }
    if (verb == "wait") {
        command.kind = SessionCommand::kWait;
        if (words.size() != 2 || !ParseSeconds(words[1], command.seconds)) error = "usage: wait SECONDS";
        return error.empty();
    }
    if (verb == "expect") {
        command.kind = SessionCommand::kExpect;
        return ParseExpect(catalog, words, command, error);
    }
    if (verb == "raw") {
        command.kind = SessionCommand::kRaw;
        std::string hex;
        for (size_t i = 1; i < words.size(); ++i) hex += words[i] + " ";
        return ParseHexBytes(hex, command.raw, error);
    }
    error = "unknown command \"" + verb + "\" (send, apply, wait, expect, raw)";
    return false;
}

}  // namespace

const char* const kCommandHelp =
    "send NAME=VALUE[@INDEX] ...     data operations\n"
    "apply                           the apply trigger\n"
    "wait SECONDS                    let the line run\n"
    "expect NAME[=VALUE][@INDEX] [TIMEOUT]\n"
    "                                wait (default 5 s) for such an operation, received since the last send/apply\n"
    "raw HEX...                      bytes as given\n"
    "help, quit                      this text; end the session (also Ctrl-D)\n";

bool ExpectSpec::Matches(const SsOp& op, const OpFormatter& formatter) const {
    if (op.GetOpType() != OP_TYPE_DATA || op.GetOpId() != opId) return false;
    unsigned long long got = 0;
    if (hasIndex && !(formatter.IndexOf(op, got) && got == index)) return false;
    if (!hasValue) return true;
    if (valueParsed && op.GetRawData() == valueBytes) return true;
    return formatter.PlainValue(op) == valueText;
}

bool SplitWords(const std::string& line, std::vector<std::string>& words, std::string& error) {
    words.clear();
    std::string word;
    bool inWord = false, quoted = false;
    for (size_t i = 0; i < line.size(); ++i) {
        char c = line[i];
        if (quoted) {
            if (c == '\\' && i + 1 < line.size() && (line[i + 1] == '"' || line[i + 1] == '\\')) word += line[++i];
            else if (c == '"') quoted = false;
            else word += c;
        } else if (c == '#' && !inWord) {
            break;  // a comment runs to the end of the line
        } else if (c == '"') {
            quoted = inWord = true;
        } else if (c == ' ' || c == '\t' || c == '\r') {
            if (inWord) words.push_back(word);
            word.clear();
            inWord = false;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (quoted) {
        error = "unterminated quote";
        return false;
    }
    if (inWord) words.push_back(word);
    return true;
}

bool ParseSessionLine(const OpCatalog& catalog, const std::string& line, SessionCommand& command, bool& isCommand,
                      std::string& error) {
    std::vector<std::string> words;
    isCommand = false;
    error.clear();
    if (!SplitWords(line, words, error)) return false;
    if (words.empty()) return true;
    command = SessionCommand();
    command.text = line;
    isCommand = true;
    return ParseWords(catalog, words, command, error);
}

SessionRunner::SessionRunner(LineSession& session, const OpCatalog& catalog, std::ostream& err,
                             const std::atomic<bool>* stop)
    : m_session(session), m_catalog(catalog), m_formatter(catalog), m_err(err), m_stop(stop) {}

int SessionRunner::RunScript(std::istream& in, const std::string& source) {
    std::vector<std::pair<int, SessionCommand>> commands;
    std::string line, error;
    for (int number = 1; std::getline(in, line); ++number) {
        SessionCommand command;
        bool isCommand = false;
        if (!ParseSessionLine(m_catalog, line, command, isCommand, error)) {
            m_err << "avhost: " << source << ":" << number << ": " << error << std::endl;
            return 2;
        }
        if (isCommand) commands.emplace_back(number, command);
    }
    for (const auto& c : commands) {
        if (Stopped()) break;
        int status = Execute(c.second, source + ":" + std::to_string(c.first));
        if (status != 0) return status;
    }
    return 0;
}

int SessionRunner::RunInteractive(std::istream& in, const std::string& source) {
    std::string line, error;
    for (int number = 1; !Stopped() && std::getline(in, line); ++number) {
        SessionCommand command;
        bool isCommand = false;
        const std::string where = source + ":" + std::to_string(number);
        if (!ParseSessionLine(m_catalog, line, command, isCommand, error)) {
            m_err << "avhost: " << where << ": " << error << std::endl;
            return 2;
        }
        if (!isCommand) continue;
        int status = Execute(command, where);
        if (status != 0) return status;
    }
    return 0;
}

int SessionRunner::RunEditor(LineEditor& editor) {
    std::string line, error;
    while (!Stopped() && editor.ReadLine(line, m_stop)) {
        SessionCommand command;
        bool isCommand = false;
        const std::string trimmed = line.substr(0, line.find_last_not_of(" \t") + 1);
        if (trimmed == "quit" || trimmed == "exit") break;
        if (trimmed == "help") {
            editor.Print(kCommandHelp);
            continue;
        }
        if (!ParseSessionLine(m_catalog, line, command, isCommand, error)) {
            m_err << "avhost: " << error << std::endl;  // a mistake: say so and go on
            continue;
        }
        if (isCommand) Execute(command, "session");
    }
    return 0;
}

int SessionRunner::Execute(const SessionCommand& command, const std::string& where) {
    bool ok = true;
    if (command.kind == SessionCommand::kSend || command.kind == SessionCommand::kApply ||
        command.kind == SessionCommand::kRaw)
        m_session.MarkSent();
    switch (command.kind) {
        case SessionCommand::kSend:
            for (const SsOp& op : command.ops) {
                SsOp copy(op);
                ok = m_session.Send(copy) && ok;
            }
            break;
        case SessionCommand::kApply: {
            SsOp apply = MakeApplyOp();
            ok = m_session.Send(apply);
            break;
        }
        case SessionCommand::kRaw: ok = m_session.SendRaw(command.raw); break;
        case SessionCommand::kWait: return Wait(command.seconds);
        case SessionCommand::kExpect: return Expect(command.expect, command.seconds, where, command.text);
    }
    if (!ok) m_err << "avhost: " << where << ": writing to the line failed" << std::endl;
    return ok ? 0 : 1;
}

int SessionRunner::Wait(double seconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration_cast<std::chrono::nanoseconds>(
                                                            std::chrono::duration<double>(seconds));
    while (!Stopped() && std::chrono::steady_clock::now() < end) {
        auto left = end - std::chrono::steady_clock::now();
        std::this_thread::sleep_for(std::min<std::chrono::steady_clock::duration>(left, std::chrono::milliseconds(50)));
    }
    return 0;
}

int SessionRunner::Expect(const ExpectSpec& spec, double seconds, const std::string& where,
                          const std::string& text) {
    auto match = [&](const SsOp& op) { return spec.Matches(op, m_formatter); };
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration_cast<std::chrono::nanoseconds>(
                                                            std::chrono::duration<double>(seconds));
    // In slices, so that a stop request ends the wait.
    do {
        double left = std::chrono::duration<double>(end - std::chrono::steady_clock::now()).count();
        if (m_session.Expect(match, std::max(0.0, std::min(left, 0.1)))) return 0;
    } while (!Stopped() && std::chrono::steady_clock::now() < end);
    std::string trimmed = text.substr(text.find_first_not_of(" \t"));
    char secs[32];
    snprintf(secs, sizeof secs, "%g", seconds);
    m_err << "avhost: " << where << ": " << trimmed << ": nothing matching received within " << secs << " s"
          << std::endl;
    return 1;
}

}  // namespace avhost
