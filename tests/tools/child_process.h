// ChildProcess: the avhost binary as a child (the e2e support's runner), with
// its standard output and error in files of a folder of its own, read back on
// demand; its standard input is /dev/null. One test thread uses it.
#pragma once

#include <signal.h>
#include <sys/wait.h>

#include <string>
#include <vector>

#include "tests/e2e/e2e_support.h"

class ChildProcess {
public:
    // argv[0] is the program.
    explicit ChildProcess(const std::vector<std::string>& argv) {
        m_child.Start(argv[0], {argv.begin() + 1, argv.end()}, {}, m_dir / "stdout", m_dir / "stderr");
    }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    void Signal(int sig) { kill(m_child.Pid(), sig); }
    // The exit status, or -1 when it did not start, after 10 s or on a death by signal.
    int Wait() {
        int status = 0;
        return m_child.Wait(10000, status) && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    // True once standard output holds needle (polled for up to 10 s).
    bool WaitForOutput(const std::string& needle) {
        return e2e::WaitUntil([&] { return Stdout().find(needle) != std::string::npos; });
    }
    // The pty announced on the first line of standard output ("pty: NAME"), or "".
    std::string AnnouncedPty() {
        const std::string out = WaitForOutput("\n") ? Stdout() : "";
        return out.rfind("pty: ", 0) == 0 ? out.substr(5, out.find('\n') - 5) : "";
    }
    std::string Stdout() const { return Read("stdout"); }
    std::string Stderr() const { return Read("stderr"); }

private:
    std::string Read(const std::string& name) const {
        std::string text;
        e2e::ReadFile(m_dir / name, text);
        return text;
    }

    e2e::TempDir m_dir;  // first in, last out: the child is gone before its files
    e2e::ChildProcess m_child;
};
