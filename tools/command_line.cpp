// Command-line parsing and usage text of avhost.
#include "tools/command_line.h"

#include <getopt.h>

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
        {"list", {"json csv values", 0, 0}},
        {"send", {"device json csv utc apply capture pcap single-start", 1, 1000}},
        {"raw", {"device", 1, 1000}},
        {"monitor", {"device pty json csv utc duration capture pcap only skip", 0, 0}},
        {"decode", {"json csv dir only skip pcap-out", 0, 1}},
        {"session", {"device pty json csv utc capture pcap single-start history", 0, 1}},
        {"replay", {"device pty fast update expected only skip capture pcap", 1, 1}},
        {"top", {"device pty single-start", 0, 0}},
        {"upload", {"host port", 1, 1}},
        {"dissector", {"", 0, 0}},
    };
    return rules;
}

// Every option of every command; val is the short option or an id above 255.
const option kOptions[] = {
    {"device", required_argument, nullptr, 'd'}, {"pty", no_argument, nullptr, 256},
    {"json", no_argument, nullptr, 257},         {"csv", no_argument, nullptr, 258},
    {"utc", no_argument, nullptr, 259},          {"apply", no_argument, nullptr, 260},
    {"duration", required_argument, nullptr, 261}, {"capture", required_argument, nullptr, 262},
    {"host", required_argument, nullptr, 263},   {"port", required_argument, nullptr, 264},
    {"dir", required_argument, nullptr, 265},    {"only", required_argument, nullptr, 266},
    {"skip", required_argument, nullptr, 267},   {"single-start", no_argument, nullptr, 268},
    {"fast", no_argument, nullptr, 269},         {"update", no_argument, nullptr, 270},
    {"expected", required_argument, nullptr, 271}, {"values", required_argument, nullptr, 272},
    {"history", required_argument, nullptr, 273}, {"help", no_argument, nullptr, 'h'},
    {"verbose", no_argument, nullptr, 'v'},      {"version", no_argument, nullptr, 274},
    {"pcap", required_argument, nullptr, 275},   {"pcap-out", required_argument, nullptr, 276},
    {nullptr, 0, nullptr, 0},
};

std::string LongName(int val) {
    for (const option* o = kOptions; o->name != nullptr; ++o) {
        if (o->val == val) return o->name;
    }
    return "";
}

bool TakesValue(const std::string& name) {
    for (const option* o = kOptions; o->name != nullptr; ++o) {
        if (name == o->name) return o->has_arg == required_argument;
    }
    return false;
}

bool Takes(const CommandRule& rule, const std::string& option) {
    return (" " + rule.options + " ").find(" " + option + " ") != std::string::npos;
}

bool ParseNumber(const std::string& text, double& value) {
    char* end = nullptr;
    value = std::strtod(text.c_str(), &end);
    return !text.empty() && *end == '\0' && value >= 0;
}

std::vector<std::string> SplitNames(const std::string& text) {
    std::vector<std::string> names;
    size_t from = 0;
    for (;;) {
        size_t comma = text.find(',', from);
        std::string name = text.substr(from, comma == std::string::npos ? std::string::npos : comma - from);
        if (!name.empty()) names.push_back(name);
        if (comma == std::string::npos) return names;
        from = comma + 1;
    }
}

// Stores the value of an option that takes one; false with error for a bad value.
bool SetValue(const std::string& option, const std::string& value, CommandLine& cl, std::string& error) {
    double number = 0;
    if (option == "device") cl.device = value;
    else if (option == "capture") cl.capture = value;
    else if (option == "pcap" || option == "pcap-out") cl.pcap = value;
    else if (option == "host") cl.host = value;
    else if (option == "expected") cl.expected = value;
    else if (option == "values") cl.values = value;
    else if (option == "history") cl.history = value;
    else if (option == "only" || option == "skip") {
        std::vector<std::string> names = SplitNames(value);
        auto& list = option == "only" ? cl.only : cl.skip;
        list.insert(list.end(), names.begin(), names.end());
    } else if (option == "duration") {
        if (!ParseNumber(value, number)) error = "bad --duration \"" + value + "\" (seconds)";
        cl.duration = number;
    } else if (option == "port") {
        if (!ParseNumber(value, number) || number < 1 || number > 65535 || number != static_cast<int>(number))
            error = "bad --port \"" + value + "\" (1..65535)";
        else
            cl.port = static_cast<uint16_t>(number);
    } else if (option == "dir") {
        if (value != "<" && value != ">") error = "bad --dir \"" + value + "\" (< or >)";
        cl.dir = value.empty() ? '<' : value[0];
    }
    return error.empty();
}

void SetFlag(const std::string& name, CommandLine& cl) {
    cl.pty = cl.pty || name == "pty";
    cl.json = cl.json || name == "json";
    cl.csv = cl.csv || name == "csv";
    cl.utc = cl.utc || name == "utc";
    cl.apply = cl.apply || name == "apply";
    cl.singleStart = cl.singleStart || name == "single-start";
    cl.fast = cl.fast || name == "fast";
    cl.update = cl.update || name == "update";
}

bool CheckArguments(const CommandLine& cl, const CommandRule& rule, std::string& error) {
    const bool live = cl.command == "monitor" || cl.command == "session" || cl.command == "replay" ||
                      cl.command == "top";
    if (cl.args.size() < rule.minArgs) error = cl.command + ": missing arguments";
    else if (cl.args.size() > rule.maxArgs) error = cl.command + ": unexpected argument \"" + cl.args.back() + "\"";
    else if ((cl.command == "send" || cl.command == "raw") && cl.device.empty())
        error = cl.command + ": missing -d DEVICE";
    else if (live && cl.device.empty() == !cl.pty)
        error = cl.command + ": give either -d DEVICE or --pty";
    else if (cl.json && cl.csv)
        error = cl.command + ": give --json or --csv, not both";
    return error.empty();
}

// The word getopt_long stopped at, for messages.
std::string BadWord(char* const* argv, int optoptValue) {
    if (optoptValue > 0 && optoptValue < 256) return std::string("-") + static_cast<char>(optoptValue);
    std::string word = argv[optind - 1];
    return word.substr(0, word.find('='));
}

// Runs getopt_long over argv; shortOptions starts with ':' so that a missing
// value is told apart. handle gets each option's long name and value.
template <typename Handle>
bool RunGetopt(std::vector<std::string>& words, const char* shortOptions, const std::string& who, Handle handle,
               std::vector<std::string>& rest, std::string& error) {
    std::vector<char*> argv;
    for (std::string& w : words) argv.push_back(&w[0]);
    argv.push_back(nullptr);
    const int argc = static_cast<int>(words.size());
    optind = 0;  // a fresh scan (glibc), also for repeated calls in one process
    opterr = 0;
    int c = 0;
    while ((c = getopt_long(argc, argv.data(), shortOptions, kOptions, nullptr)) != -1) {
        if (c == '?') return error = who + "unknown option \"" + BadWord(argv.data(), optopt) + "\"", false;
        if (c == ':') return error = who + BadWord(argv.data(), optopt) + " needs a value", false;
        if (!handle(LongName(c), optarg != nullptr ? std::string(optarg) : std::string(), error)) return false;
    }
    rest.assign(argv.begin() + optind, argv.begin() + argc);
    return true;
}

}  // namespace

bool ParseCommandLine(const std::vector<std::string>& words, CommandLine& cl, std::string& error) {
    cl = CommandLine();
    auto global = [&cl](const std::string& name, const std::string&, std::string& err) {
        if (name == "help") cl.help = true;
        else if (name == "verbose") cl.verbose = true;
        else if (name == "version") cl.version = true;
        else return err = "unknown option \"--" + name + "\"", false;
        return true;
    };
    std::vector<std::string> argv = {"avhost"};
    argv.insert(argv.end(), words.begin(), words.end());
    std::vector<std::string> rest;
    if (!RunGetopt(argv, "+:hv", "", global, rest, error)) return false;
    if (rest.empty()) {
        if (!cl.help && !cl.version) error = "missing command";
        return cl.help || cl.version;
    }
    cl.command = rest[0];
    auto rule = Rules().find(cl.command);
    if (rule == Rules().end()) return error = "unknown command \"" + cl.command + "\"", false;
    auto local = [&](const std::string& name, const std::string& value, std::string& err) {
        if (global(name, value, err)) return true;
        err.clear();
        if (!Takes(rule->second, name)) return err = cl.command + " does not take --" + name, false;
        if (!TakesValue(name)) {
            SetFlag(name, cl);
            return true;
        }
        if (SetValue(name, value, cl, err)) return true;
        err = cl.command + ": " + err;
        return false;
    };
    if (!RunGetopt(rest, ":d:hv", cl.command + ": ", local, cl.args, error)) return false;
    return cl.help || cl.version || CheckArguments(cl, rule->second, error);
}

std::string VersionText() {
    return std::string("avhost ") + AVHOST_VERSION + "\n";
}

std::string UsageText() {
    return "Usage: avhost [-v] COMMAND [OPTIONS] [ARGS]\n"
           "The host controller's side of the daemon's serial line (115200 8N1).\n"
           "\n"
           "Commands:\n"
           "  list [--json|--csv] [--values NAME|all]\n"
           "                                     the operation dictionary; --values: what an operation's\n"
           "                                     enumerated values mean\n"
           "  send -d DEV NAME=VALUE[@INDEX]... [--apply] [--json|--csv] [--utc] [--capture FILE]\n"
           "       [--pcap FILE]\n"
           "                                     send data operations; --apply ends with the apply trigger\n"
           "  monitor (-d DEV | --pty) [--json|--csv] [--utc] [--only NAMES] [--skip NAMES]\n"
           "          [--duration S] [--capture FILE] [--pcap FILE]\n"
           "                                     print every operation received\n"
           "  decode [FILE] [--json|--csv] [--only NAMES] [--skip NAMES] [--dir <|>] [--pcap-out FILE]\n"
           "                                     decode a capture (text capture, pcap, raw binary or hex;\n"
           "                                     standard input without FILE); --pcap-out: convert it to pcap\n"
           "  raw -d DEV HEX...                  write bytes as given\n"
           "  session (-d DEV | --pty) [SCRIPT] [--json|--csv] [--utc] [--capture FILE] [--pcap FILE]\n"
           "          [--history FILE]\n"
           "                                     run commands from SCRIPT or standard input while\n"
           "                                     printing what is received (on a terminal: line editing,\n"
           "                                     history, Tab completion; mistakes do not end it):\n"
           "                                       send NAME=VALUE[@INDEX]...   apply   wait SECONDS\n"
           "                                       expect NAME[=VALUE][@INDEX] [TIMEOUT]   raw HEX...   # comment\n"
           "  replay CAPTURE (-d DEV | --pty) [--fast] [--expected FILE] [--update] [--only NAMES]\n"
           "         [--skip NAMES] [--capture FILE] [--pcap FILE]\n"
           "                                     send a recorded session's host frames again and compare\n"
           "                                     what the daemon sends with CAPTURE's .chk file (or its\n"
           "                                     own daemon frames); --update rewrites the .chk file\n"
           "  top (-d DEV | --pty)               full-screen live view; keys s (status on), r (ready?),\n"
           "                                     c (clear status), q (quit)\n"
           "  upload FILE [--host H] [--port P]  send an upgrade package over TCP (default 127.0.0.1:8888)\n"
           "  dissector                          write the Wireshark Lua dissector of the protocol\n"
           "\n"
           "Options (GNU style: --opt=value, -dDEV, bundled short options):\n"
           "  -d, --device DEV   serial device (e.g. /dev/ttyUSB0)\n"
           "  --pty              make a pty pair, print \"pty: /dev/pts/N\" (the daemon's side) and\n"
           "                     play the host on it\n"
           "  --json, --csv      one JSON object, or one CSV row (after a header), per frame\n"
           "  --utc              absolute UTC time stamps with microseconds\n"
           "  --only, --skip NAMES\n"
           "                     show only / leave out these operations (comma-separated; also\n"
           "                     \"apply\" and \"error\")\n"
           "  --single-start     one start marker per frame instead of two (to reproduce a receiver\n"
           "                     that a stray end marker put out of step)\n"
           "  --capture FILE     record every frame, both directions, in a text capture\n"
           "  --pcap FILE        record every frame, both directions, in a pcap capture (DLT_USER0)\n"
           "  -v, --verbose      show the protocol code's diagnostics on standard error\n"
           "  -h, --help         this text\n"
           "  --version          the version of this build\n"
           "\n"
           "Values: integers in decimal or 0x-hex, range-checked by the operation's type (signed\n"
           "types take negatives, or any bit pattern in hex); VT_BOOL 0, 1, true, false; text as\n"
           "is. Video format codes also as text: 1920x1080p50, 1280x720p59.94, 720x576i25/4:3,\n"
           "3840x2160p50/16:9 (default aspect 4:3 for 720x480 and 720x576, else 16:9).\n"
           "The index defaults to 0.\n"
           "\n"
           "Exit status: 0 success, 1 runtime failure (or a replay that differs), 2 usage error.\n";
}

}  // namespace avhost
