// The in-process control API of the virtual board, over CBoard.
#include "sim/stbsim.h"

#include "sim/board.h"
#include "sim/scenario_parser.h"

namespace stbsim {

namespace {

bool Fail(std::string* error, const std::string& why) {
    if (error) *error = why;
    return false;
}

bool Change(const std::string& assignments, bool video, std::string* error) {
    TimedChange c;
    std::string why;
    if (!ParseChangeArgs(assignments, video, &c, &why) || !CBoard::Instance().ChangeNow(c, &why)) return Fail(error, why);
    return true;
}

}  // namespace

void Reset() { CBoard::Instance().Reset(); }

bool SetInputText(const std::string& text, std::string* error) {
    StreamInput in;
    std::string why;
    if (!ParseScenario(text, &in, &why)) return Fail(error, why);
    return CBoard::Instance().SetInput(in);
}

bool SetInputFile(const std::string& path, std::string* error) {
    std::string why;
    return CBoard::Instance().LoadInputFile(path, &why) || Fail(error, why);
}

bool ChangeVideo(const std::string& assignments, std::string* error) { return Change(assignments, true, error); }
bool ChangeAudio(const std::string& assignments, std::string* error) { return Change(assignments, false, error); }

bool InjectFault(const std::string& function, int code, unsigned count) {
    return CBoard::Instance().InjectFault(function, code, count);
}

std::vector<JournalEntry> Journal() { return CBoard::Instance().Journal().Entries(); }
std::string JournalText() { return CBoard::Instance().Journal().Text(); }
void ClearJournal() { CBoard::Instance().Journal().Clear(); }

BoardState State() { return CBoard::Instance().State(); }
std::string StateJson() { return CBoard::Instance().StateJson(); }

std::string Command(const std::string& line) { return CBoard::Instance().Command(line); }

bool StartControl(const std::string& path, std::string* error) {
    std::string why;
    return CBoard::Instance().StartControl(path, &why) || Fail(error, why);
}

void StopControl() { CBoard::Instance().StopControl(); }

}  // namespace stbsim
