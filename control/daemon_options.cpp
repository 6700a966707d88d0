// Command-line parsing of stbavd. Main thread, at start.
#include "control/daemon_options.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace {

// A whole decimal number within [lo, hi]; nothing else accepted.
bool ParseNumber(const std::string& text, long lo, long hi, long& out) {
    if (text.empty() || text[0] == '-' || text[0] == '+' || text[0] == ' ') return false;
    errno = 0;
    char* end = nullptr;
    long v = std::strtol(text.c_str(), &end, 10);
    if (errno != 0 || *end != '\0' || v < lo || v > hi) return false;
    out = v;
    return true;
}

bool TakesValue(char opt) {
    switch (opt) {
        case 'v': case 'd': case 'R': case 'P': case 'c': case 'a': return true;
        default: return false;
    }
}

// Stores one option's value; false with error for a bad one.
bool ApplyValue(char opt, const std::string& value, DaemonOptions& o, std::string& error) {
    long n = 0;
    switch (opt) {
        case 'v':
            if (!ParseNumber(value, 0, 4, n)) break;
            o.logLevel = static_cast<int>(n);
            return true;
        case 'P':
            if (!ParseNumber(value, 1, 65535, n)) break;
            o.uploadPort = static_cast<uint16_t>(n);
            return true;
        case 'a':
            if (!ParseNumber(value, 0, 16, n)) break;
            o.audioDecoderCount = static_cast<uint32_t>(n);
            return true;
        case 'd':
            if (value.empty()) break;
            o.serialDevice = value;
            return true;
        case 'c':
            if (value.empty()) break;
            o.logConfigFile = value;
            return true;
        case 'R':
            o.root = value;
            return true;
        default:
            break;
    }
    error = std::string("bad value '") + value + "' for -" + opt;
    return false;
}

}  // namespace

DaemonCommand ParseDaemonOptions(int argc, char** argv, DaemonOptions& options, std::string& error) {
    DaemonOptions o;
    bool help = false;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg.size() < 2 || arg[0] != '-') {
            error = "unexpected argument '" + arg + "'";
            return DaemonCommand::kUsageError;
        }
        const char opt = arg[1];
        if (opt == 'h' && arg.size() == 2) { help = true; continue; }
        if (opt == 'U' && arg.size() == 2) { o.uploadReceiver = true; continue; }
        if (!TakesValue(opt)) {
            error = "unknown option '" + arg + "'";
            return DaemonCommand::kUsageError;
        }
        std::string value;
        if (arg.size() > 2) {
            value = arg.substr(2);  // "-v3"
        } else if (i + 1 < argc) {
            value = argv[++i];
        } else {
            error = std::string("-") + opt + " needs a value";
            return DaemonCommand::kUsageError;
        }
        if (!ApplyValue(opt, value, o, error)) return DaemonCommand::kUsageError;
    }
    if (help) return DaemonCommand::kHelp;
    options = o;
    return DaemonCommand::kRun;
}

void PrintDaemonOptionsUsage() {
    static const char* const kLines[] = {
        "  -d DEV serial device of the host line (default /dev/ttyS2)",
        "  -R DIR prefix every fixed path (/vendor, /data, /sdcard) with DIR",
        "  -c FILE log configuration (default /vendor/etc/tevrin-log4cpp.init under the prefix)",
        "  -U     receive upgrade packages over TCP",
        "  -P n   port of the upgrade receiver (default 8888)",
        "  -a n   audio decoders (default 1)",
    };
    for (const char* line : kLines) std::fprintf(stderr, "%s\n", line);
    std::fputs("\n", stderr);
}
