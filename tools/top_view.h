// The live view of `avhost top`: TopModel keeps the latest value of every item
// the daemon reported (with the time it last changed), the frame and error
// counts and the last events; TopView draws it full screen with ncurses and
// turns keys into host commands. The model is filled by the LineSession's
// receive thread and read by the main thread (one lock); the view and its keys
// belong to the main thread.
#pragma once

#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "tools/line_session.h"

namespace avhost {

class TopModel {
public:
    struct Item {
        std::string value;     // as the text lines show it ("3 (25 fps)")
        double changed = 0;    // session time of the last change
        double seen = 0;       // session time of the last report
        unsigned changes = 0;  // reports with a value different from the one before
    };
    struct Snapshot {
        std::vector<std::pair<std::string, Item>> items;  // "videoWidth[0]" -> item, in name order
        std::vector<std::string> events;                   // oldest first
        unsigned long frames = 0, errors = 0, sent = 0;
    };

    explicit TopModel(const OpCatalog& catalog, std::size_t maxEvents = 200);

    // One frame received ('<') or sent ('>') at session time t. Any thread.
    void Add(double t, char dir, const LineFrame& frame);
    Snapshot Take() const;

private:
    OpFormatter m_formatter;
    const std::size_t m_maxEvents;
    mutable std::mutex m_mutex;
    std::map<std::string, Item> m_items;  // guarded by m_mutex
    std::deque<std::string> m_events;     // guarded by m_mutex
    unsigned long m_frames = 0, m_errors = 0, m_sent = 0;  // guarded by m_mutex
};

// Runs the full-screen view until 'q' or the stop flag; returns the exit status.
// Keys: s status on (stbsystemStatusEnable=1, apply), r ask for readiness
// (stbsystemCheckReady=1, apply), c clear status (stbsystemStatusClear=1, apply), q quit.
int RunTop(LineSession& session, TopModel& model, const OpCatalog& catalog, const std::string& lineName,
           const std::atomic<bool>& stop);

}  // namespace avhost
