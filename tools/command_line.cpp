// Command-line parsing and usage text of avhost.
#include "tools/command_line.h"

#include <cstdlib>
#include <map>

namespace avhost {

namespace {

struct CommandRule {
    std::string options;  // the options it takes, as their long names separated by blanks
    size_t minArgs;
    size_t maxArgs;
};

const std::map<std::string, CommandRule>& Rules() {
    static const std::map<std::string, CommandRule> rules = {
        {"list", {"json", 0, 0}},
        {"send", {"device json apply capture", 1, 1000}},
        {"raw", {"device", 1, 1000}},
        {"monitor", {"device pty json duration capture", 0, 0}},
        {"decode", {"json dir", 0, 1}},
        {"session", {"device pty json capture", 0, 1}},
        {"upload", {"host port", 1, 1}},
    };
    return rules;
}

bool Takes(const CommandRule& rule, const std::string& option) {
    return (" " + rule.options + " ").find(" " + option + " ") != std::string::npos;
}

bool ParseNumber(const std::string& text, double& value) {
    char* end = nullptr;
    value = std::strtod(text.c_str(), &end);
    return !text.empty() && *end == '\0' && value >= 0;
}

// Stores the value of an option that takes one; false with error for a bad value.
bool SetValue(const std::string& option, const std::string& value, CommandLine& cl, std::string& error) {
    double number = 0;
    if (option == "device") cl.device = value;
    else if (option == "capture") cl.capture = value;
    else if (option == "host") cl.host = value;
    else if (option == "duration") {
        if (!ParseNumber(value, number)) error = "bad --duration \"" + value + "\" (seconds)";
        cl.duration = number;
    } else if (option == "port") {
        if (!ParseNumber(value, number) || number < 1 || number > 65535 || number != static_cast<int>(number))
            error = "bad --port \"" + value + "\" (1..65535)";
        cl.port = static_cast<uint16_t>(number);
    } else if (option == "dir") {
        if (value != "<" && value != ">") error = "bad --dir \"" + value + "\" (< or >)";
        cl.dir = value.empty() ? '<' : value[0];
    }
    return error.empty();
}

// The long name of an option word, "" if unknown; takesValue tells whether a value follows.
std::string OptionName(const std::string& word, bool& takesValue) {
    static const std::map<std::string, std::pair<std::string, bool>> names = {
        {"-d", {"device", true}},       {"--device", {"device", true}}, {"--pty", {"pty", false}},
        {"--json", {"json", false}},    {"--apply", {"apply", false}},  {"--duration", {"duration", true}},
        {"--capture", {"capture", true}}, {"--host", {"host", true}},   {"--port", {"port", true}},
        {"--dir", {"dir", true}},
    };
    auto it = names.find(word);
    if (it == names.end()) return "";
    takesValue = it->second.second;
    return it->second.first;
}

bool CheckArguments(const CommandLine& cl, const CommandRule& rule, std::string& error) {
    if (cl.args.size() < rule.minArgs) error = cl.command + ": missing arguments";
    else if (cl.args.size() > rule.maxArgs) error = cl.command + ": unexpected argument \"" + cl.args.back() + "\"";
    else if ((cl.command == "send" || cl.command == "raw") && cl.device.empty())
        error = cl.command + ": missing -d DEVICE";
    else if ((cl.command == "monitor" || cl.command == "session") && cl.device.empty() == !cl.pty)
        error = cl.command + ": give either -d DEVICE or --pty";
    return error.empty();
}

}  // namespace

bool ParseCommandLine(const std::vector<std::string>& words, CommandLine& cl, std::string& error) {
    cl = CommandLine();
    size_t i = 0;
    for (; i < words.size() && words[i].size() > 1 && words[i][0] == '-'; ++i) {
        if (words[i] == "-h" || words[i] == "--help") cl.help = true;
        else if (words[i] == "-v" || words[i] == "--verbose") cl.verbose = true;
        else return error = "unknown option \"" + words[i] + "\"", false;
    }
    if (i == words.size()) {
        if (!cl.help) error = "missing command";
        return cl.help;
    }
    cl.command = words[i++];
    auto rule = Rules().find(cl.command);
    if (rule == Rules().end()) return error = "unknown command \"" + cl.command + "\"", false;
    bool optionsEnded = false;
    for (; i < words.size(); ++i) {
        const std::string& w = words[i];
        if (optionsEnded || w.size() < 2 || w[0] != '-') {
            cl.args.push_back(w);
            continue;
        }
        if (w == "--") optionsEnded = true;
        else if (w == "-h" || w == "--help") cl.help = true;
        else if (w == "-v" || w == "--verbose") cl.verbose = true;
        else {
            bool takesValue = false;
            std::string name = OptionName(w, takesValue);
            if (name.empty()) return error = cl.command + ": unknown option \"" + w + "\"", false;
            if (!Takes(rule->second, name)) return error = cl.command + " does not take " + w, false;
            if (!takesValue) {
                cl.pty = cl.pty || name == "pty";
                cl.json = cl.json || name == "json";
                cl.apply = cl.apply || name == "apply";
            } else if (i + 1 == words.size()) {
                return error = cl.command + ": " + w + " needs a value", false;
            } else if (!SetValue(name, words[++i], cl, error)) {
                error = cl.command + ": " + error;
                return false;
            }
        }
    }
    return cl.help || CheckArguments(cl, rule->second, error);
}

std::string UsageText() {
    return "Usage: avhost [-v] COMMAND [OPTIONS] [ARGS]\n"
           "The host controller's side of the daemon's serial line (115200 8N1).\n"
           "\n"
           "Commands:\n"
           "  list [--json]                      the operation dictionary: name, opId, value type\n"
           "  send -d DEV NAME=VALUE[@INDEX]... [--apply] [--json] [--capture FILE]\n"
           "                                     send data operations; --apply ends with the apply trigger\n"
           "  monitor (-d DEV | --pty) [--json] [--duration S] [--capture FILE]\n"
           "                                     print every operation received\n"
           "  decode [FILE] [--json] [--dir <|>] decode a capture (text capture, raw binary or hex;\n"
           "                                     standard input without FILE)\n"
           "  raw -d DEV HEX...                  write bytes as given\n"
           "  session (-d DEV | --pty) [SCRIPT] [--json] [--capture FILE]\n"
           "                                     run commands from SCRIPT or standard input while\n"
           "                                     printing what is received:\n"
           "                                       send NAME=VALUE[@INDEX]...   apply   wait SECONDS\n"
           "                                       expect NAME[=VALUE][@INDEX] [TIMEOUT]   raw HEX...   # comment\n"
           "  upload FILE [--host H] [--port P]  send an upgrade package over TCP (default 127.0.0.1:8888)\n"
           "\n"
           "Options:\n"
           "  -d, --device DEV   serial device (e.g. /dev/ttyUSB0)\n"
           "  --pty              make a pty pair, print \"pty: /dev/pts/N\" (the daemon's side) and\n"
           "                     play the host on it\n"
           "  --json             one JSON object per line\n"
           "  --capture FILE     record every frame, both directions, in a text capture\n"
           "  -v, --verbose      show the protocol code's diagnostics on standard error\n"
           "  -h, --help         this text\n"
           "\n"
           "Values: integers in decimal or 0x-hex, range-checked by the operation's type (signed\n"
           "types take negatives, or any bit pattern in hex); VT_BOOL 0, 1, true, false; text as\n"
           "is. Video format codes also as text: 1920x1080p50, 1280x720p59.94, 720x576i25/4:3,\n"
           "3840x2160p50/16:9 (default aspect 4:3 for 720x480 and 720x576, else 16:9).\n"
           "The index defaults to 0.\n"
           "\n"
           "Exit status: 0 success, 1 runtime failure, 2 usage error.\n";
}

}  // namespace avhost
