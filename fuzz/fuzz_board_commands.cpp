// Fuzz target: the virtual board's text inputs. The input is a scenario, then
// optionally a line "%%" and control-socket command lines. The scenario goes
// through the scenario parser (and, when it parses, becomes the board's input);
// each command line goes through the board's command handler ("state", "fail",
// "video ...", "audio ...", ...). The "stream" command is left out: it reads a
// file named by the input.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "sim/board.h"
#include "sim/scenario_parser.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    const size_t split = input.find("\n%%\n");
    const std::string scenario = input.substr(0, split);
    const std::string commands = split == std::string::npos ? "" : input.substr(split + 4);

    stbsim::CBoard& board = stbsim::CBoard::Instance();
    stbsim::StreamInput parsed;
    std::string error;
    if (stbsim::ParseScenario(scenario, &parsed, &error)) board.SetInput(parsed);

    std::istringstream lines(commands);
    std::string line;
    while (std::getline(lines, line)) {
        std::istringstream words(line);
        std::string verb;
        words >> verb;
        if (verb == "stream") continue;
        board.Command(line);
    }
    return 0;
}
