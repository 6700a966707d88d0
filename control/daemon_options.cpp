// Command-line parsing of stbavd. Main thread, at start.
#include "control/daemon_options.h"

#include <arpa/inet.h>
#include <getopt.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "control/daemon_realtime.h"

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
        case 'r':
            if (!ParseNumber(value, RealtimePriorityMin(), RealtimePriorityMax(), n)) break;
            o.realtimePriority = static_cast<int>(n);
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
        case 'U': {
            in_addr a;
            if (inet_pton(AF_INET, value.c_str(), &a) != 1) break;
            o.uploadReceiver = true;
            o.uploadAddress = ntohl(a.s_addr);
            return true;
        }
        default:
            break;
    }
    error = std::string("bad value '") + value + "' for -" + opt;
    return false;
}

// An IPv4 address in dotted form, for "-U ADDR" written as two words.
bool LooksLikeAddress(const char* word) {
    in_addr a;
    return word != nullptr && inet_pton(AF_INET, word, &a) == 1;
}

constexpr int kVersionOption = 1000;

}  // namespace

DaemonCommand ParseDaemonOptions(int argc, char** argv, DaemonOptions& options, std::string& error) {
    static const option kLong[] = {
        {"help", no_argument, nullptr, 'h'},
        {"version", no_argument, nullptr, kVersionOption},
        {"log-level", required_argument, nullptr, 'v'},
        {"device", required_argument, nullptr, 'd'},
        {"root", required_argument, nullptr, 'R'},
        {"log-config", required_argument, nullptr, 'c'},
        {"upload", optional_argument, nullptr, 'U'},
        {"upload-port", required_argument, nullptr, 'P'},
        {"audio-decoders", required_argument, nullptr, 'a'},
        {"realtime", required_argument, nullptr, 'r'},
        {nullptr, 0, nullptr, 0},
    };
    DaemonOptions o;
    bool help = false;
    bool version = false;
    optind = 0;  // a fresh scan (also resets getopt's state between calls)
    opterr = 0;  // the messages below instead of getopt's own
    for (;;) {
        const int opt = getopt_long(argc, argv, ":hv:d:R:c:U::P:a:r:", kLong, nullptr);
        if (opt == -1) break;
        // The word getopt just read, for messages: "--device" or "-d".
        const std::string word = argv[optind - 1];
        const std::string written =
            word.compare(0, 2, "--") == 0 ? word.substr(0, word.find('=')) : std::string("-") + char(optopt);
        switch (opt) {
            case 'h': help = true; continue;
            case kVersionOption: version = true; continue;
            case '?':
                error = "unknown option '" + written + "'";
                return DaemonCommand::kUsageError;
            case ':':
                error = written + " needs a value";
                return DaemonCommand::kUsageError;
            case 'U':
                if (optarg == nullptr && optind < argc && LooksLikeAddress(argv[optind])) optarg = argv[optind++];
                if (optarg == nullptr) {
                    o.uploadReceiver = true;
                    continue;
                }
                break;
            default:
                break;
        }
        if (!ApplyValue(static_cast<char>(opt), optarg, o, error)) return DaemonCommand::kUsageError;
    }
    if (optind < argc) {
        error = std::string("unexpected argument '") + argv[optind] + "'";
        return DaemonCommand::kUsageError;
    }
    if (help) return DaemonCommand::kHelp;
    if (version) return DaemonCommand::kVersion;
    options = o;
    return DaemonCommand::kRun;
}

void PrintDaemonOptionsUsage() {
    static const char* const kLines[] = {
        "  -d, --device=DEV        serial device of the host line (default /dev/ttyS2)",
        "  -R, --root=DIR          prefix every fixed path (/vendor, /data, /sdcard) with DIR",
        "  -c, --log-config=FILE   log configuration (default /vendor/etc/tevrin-log4cpp.init under the prefix)",
        "  -U, --upload[=ADDR]     receive upgrade packages over TCP, on ADDR (default every address);",
        "                          no authentication: anyone who reaches the port replaces the package",
        "  -P, --upload-port=n     port of the upgrade receiver (default 8888)",
        "  -a, --audio-decoders=n  audio decoders (default 1)",
        "  -r, --realtime=PRIO     run under SCHED_FIFO at PRIO (1-99) with memory locked;",
        "                          refused (no privilege): said so, normal scheduling",
        "  -v, --log-level=n       as -v n above; -h, --help; --version",
        "  Signals: SIGTERM/SIGINT stop, SIGHUP reads the log configuration again,",
        "  SIGUSR1 logs the serial line's frame counters.",
    };
    for (const char* line : kLines) std::fprintf(stderr, "%s\n", line);
    std::fputs("\n", stderr);
}
