// avhost top: the model and its ncurses view.
#include "tools/top_view.h"

#include <curses.h>

#include <cstdio>

#include "tools/value_parser.h"

namespace avhost {

namespace {

constexpr double kFreshSeconds = 2.0;  // a change this recent is highlighted
constexpr int kEventRows = 8;

std::string Seconds(double s) {
    char buf[32];
    snprintf(buf, sizeof buf, s < 100 ? "%.1f s" : "%.0f s", s);
    return buf;
}

// Sends NAME=VALUE and the apply trigger; the events show both.
void Command(LineSession& session, const OpCatalog& catalog, const std::string& assignment) {
    SsOp op;
    std::string error;
    if (!ParseAssignment(catalog, assignment, op, error)) return;
    session.Send(op);
    SsOp apply = MakeApplyOp();
    session.Send(apply);
}

void DrawHeader(const TopModel::Snapshot& s, const std::string& lineName, double now) {
    attron(A_REVERSE);
    mvprintw(0, 0, "avhost top  %s  up %s  frames %lu  errors %lu  sent %lu", lineName.c_str(), Seconds(now).c_str(),
             s.frames, s.errors, s.sent);
    clrtoeol();
    attroff(A_REVERSE);
    mvprintw(1, 0, "keys: s status on   r ready?   c clear status   q quit");
    clrtoeol();
    mvprintw(2, 0, "%-36s %-52s %s", "item", "value", "age");
    clrtoeol();
}

void Draw(const TopModel::Snapshot& s, const std::string& lineName, double now) {
    int rows = 0, cols = 0;
    getmaxyx(stdscr, rows, cols);
    (void)cols;
    erase();
    DrawHeader(s, lineName, now);
    const int itemRows = std::max(1, rows - 3 - kEventRows - 1);
    int row = 3;
    for (const auto& entry : s.items) {
        const int left = static_cast<int>(s.items.size()) - (row - 3);
        if (row == 3 + itemRows - 1 && left > 1) {
            mvprintw(row, 0, "... and %d more items (a taller terminal shows them)", left);
            break;
        }
        const TopModel::Item& item = entry.second;
        const bool fresh = item.changes > 0 && now - item.changed < kFreshSeconds;
        if (fresh) attron(A_BOLD | A_STANDOUT);
        mvprintw(row++, 0, "%-36.36s %-52.52s %s", entry.first.c_str(), item.value.c_str(),
                 Seconds(now - item.seen).c_str());
        if (fresh) attroff(A_BOLD | A_STANDOUT);
    }
    mvprintw(rows - kEventRows - 1, 0, "-- last events --");
    const std::size_t first = s.events.size() > static_cast<std::size_t>(kEventRows) ? s.events.size() - kEventRows : 0;
    for (std::size_t i = first; i < s.events.size(); ++i)
        mvprintw(rows - kEventRows + static_cast<int>(i - first), 0, "%s", s.events[i].c_str());
    refresh();
}

}  // namespace

TopModel::TopModel(const OpCatalog& catalog, std::size_t maxEvents) : m_formatter(catalog), m_maxEvents(maxEvents) {}

void TopModel::Add(double t, char dir, const LineFrame& frame) {
    const std::string text = m_formatter.Text(t, dir, frame);
    std::lock_guard<std::mutex> lock(m_mutex);
    m_events.push_back(text);
    if (m_events.size() > m_maxEvents) m_events.pop_front();
    if (dir == '>') {
        ++m_sent;
        return;
    }
    ++m_frames;
    if (frame.kind != LineFrame::kOp) {
        ++m_errors;
        return;
    }
    const std::string described = m_formatter.Describe(frame);
    const std::size_t eq = described.find(" = ");
    if (eq == std::string::npos) return;  // the apply trigger
    const std::string key = described.substr(0, eq), value = described.substr(eq + 3);
    auto it = m_items.find(key);
    if (it == m_items.end()) {
        m_items[key] = Item{value, t, t, 0};
        return;
    }
    if (it->second.value != value) {
        it->second.value = value;
        it->second.changed = t;
        ++it->second.changes;
    }
    it->second.seen = t;
}

TopModel::Snapshot TopModel::Take() const {
    std::lock_guard<std::mutex> lock(m_mutex);
    Snapshot s;
    s.items.assign(m_items.begin(), m_items.end());
    s.events.assign(m_events.begin(), m_events.end());
    s.frames = m_frames;
    s.errors = m_errors;
    s.sent = m_sent;
    return s;
}

int RunTop(LineSession& session, TopModel& model, const OpCatalog& catalog, const std::string& lineName,
           const std::atomic<bool>& stop) {
    if (initscr() == nullptr) return 1;
    cbreak();
    noecho();
    curs_set(0);
    timeout(200);  // redraw (ages) five times a second
    while (!stop) {
        Draw(model.Take(), lineName, session.Elapsed());
        const int key = getch();
        if (key == 'q' || key == 'Q') break;
        if (key == 's') Command(session, catalog, "stbsystemStatusEnable=1");
        if (key == 'r') Command(session, catalog, "stbsystemCheckReady=1");
        if (key == 'c') Command(session, catalog, "stbsystemStatusClear=1");
    }
    endwin();
    return 0;
}

}  // namespace avhost
