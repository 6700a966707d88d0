// HangWatchdog (see hang_watchdog.h). Linked into every test binary; armed by a
// static initialiser on the main thread before main() runs.
#include "tests/support/hang_watchdog.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace stbav_test {
namespace {

char g_banner[96] = "";  // the report's first line: written before the alarm is armed, read by the handler

void Put(const char* text) {
    for (size_t length = strlen(text); length > 0;) {
        const ssize_t n = write(STDERR_FILENO, text, length);
        if (n <= 0) return;
        text += n;
        length -= static_cast<size_t>(n);
    }
}

// Reads /proc/self/task/<tid>/<what> into `buffer` without its trailing newline
// ("" when the thread has gone meanwhile).
void ReadTaskFile(const char* tid, const char* what, char* buffer, size_t size) {
    char path[96] = "/proc/self/task/";
    strncat(path, tid, 32);
    strcat(path, "/");
    strncat(path, what, 16);
    const int fd = open(path, O_RDONLY | O_CLOEXEC);
    const ssize_t n = fd < 0 ? 0 : read(fd, buffer, size - 1);
    if (fd >= 0) close(fd);
    size_t length = n > 0 ? static_cast<size_t>(n) : 0;
    while (length > 0 && (buffer[length - 1] == '\n' || buffer[length - 1] == '\0')) --length;
    buffer[length] = '\0';
}

void PutThread(const char* tid) {
    char comm[64], stat[512], wchan[64], sys[128];
    ReadTaskFile(tid, "comm", comm, sizeof comm);
    ReadTaskFile(tid, "stat", stat, sizeof stat);
    ReadTaskFile(tid, "wchan", wchan, sizeof wchan);
    ReadTaskFile(tid, "syscall", sys, sizeof sys);
    // The state is the field after the name in parentheses (which may hold spaces).
    const char* close_paren = strrchr(stat, ')');
    const char state[2] = {close_paren && close_paren[1] == ' ' ? close_paren[2] : '?', '\0'};
    const char* const parts[] = {"hang watchdog:   thread ", tid, " \"", comm, "\" state ", state, " wchan ",
                                 wchan[0] ? wchan : "-", " syscall ", sys[0] ? sys : "-", "\n"};
    for (const char* part : parts) Put(part);
}

void OnAlarm(int) {
    Put(g_banner);
    const int dir = open("/proc/self/task", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir >= 0) {
        alignas(8) char buffer[4096];
        long n;
        while ((n = syscall(SYS_getdents64, dir, buffer, sizeof buffer)) > 0) {
            for (long at = 0; at < n;) {
                const auto* entry = reinterpret_cast<const dirent64*>(buffer + at);  // the kernel's layout
                if (entry->d_name[0] != '.') PutThread(entry->d_name);
                at += entry->d_reclen;
            }
        }
        close(dir);
    }
    Put("hang watchdog: aborting\n");
    signal(SIGABRT, SIG_DFL);
    abort();
}

[[maybe_unused]] const bool g_armed_from_environment = [] {
    const char* text = getenv("STBAV_TEST_WATCHDOG");
    const long seconds = text ? strtol(text, nullptr, 10) : 0;
    if (seconds > 0) ArmHangWatchdog(static_cast<unsigned>(seconds));
    return seconds > 0;
}();

}  // namespace

void ArmHangWatchdog(unsigned seconds) {
    std::snprintf(g_banner, sizeof g_banner, "hang watchdog: the test is still running after %u s; its threads:\n",
                  seconds);
    struct sigaction action {};
    action.sa_handler = OnAlarm;
    sigemptyset(&action.sa_mask);
    sigaction(SIGALRM, &action, nullptr);
    alarm(seconds);
}

}  // namespace stbav_test
