// ChildProcess: runs the avhost binary as a child (posix_spawn, safe in a
// threaded test) with its standard streams on pipes, so a test can read its
// output as it comes, feed its input, signal it and collect its exit status.
// One test thread uses it.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

extern char** environ;

class ChildProcess {
public:
    explicit ChildProcess(const std::vector<std::string>& argv) {
        int in[2], out[2], err[2];
        if (pipe2(in, O_CLOEXEC) != 0 || pipe2(out, O_CLOEXEC) != 0 || pipe2(err, O_CLOEXEC) != 0) return;
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, in[0], 0);
        posix_spawn_file_actions_adddup2(&actions, out[1], 1);
        posix_spawn_file_actions_adddup2(&actions, err[1], 2);
        std::vector<char*> args;
        for (const std::string& a : argv) args.push_back(const_cast<char*>(a.c_str()));
        args.push_back(nullptr);
        if (posix_spawn(&m_pid, args[0], &actions, nullptr, args.data(), environ) != 0) m_pid = -1;
        posix_spawn_file_actions_destroy(&actions);
        close(in[0]);
        close(out[1]);
        close(err[1]);
        m_in = in[1];
        m_out = out[0];
        m_err = err[0];
    }
    ~ChildProcess() {
        if (m_pid > 0 && !m_exited) {
            kill(m_pid, SIGKILL);
            waitpid(m_pid, nullptr, 0);
        }
        CloseInput();
        if (m_out >= 0) close(m_out);
        if (m_err >= 0) close(m_err);
    }

    bool Started() const { return m_pid > 0; }
    void Write(const std::string& text) { (void)!write(m_in, text.data(), text.size()); }
    void CloseInput() {
        if (m_in >= 0) close(m_in);
        m_in = -1;
    }
    void Signal(int sig) { kill(m_pid, sig); }

    // Reads standard output until it holds needle (true) or the deadline passed.
    bool WaitForOutput(const std::string& needle, int deadlineMs = 10000) {
        const auto end = Clock::now() + std::chrono::milliseconds(deadlineMs);
        while (m_stdout.find(needle) == std::string::npos) {
            if (Clock::now() >= end || !Drain(end)) return m_stdout.find(needle) != std::string::npos;
        }
        return true;
    }

    // Waits for the exit (reading both streams meanwhile); the status, or -1 on
    // a deadline or a death by signal.
    int Wait(int deadlineMs = 10000) {
        const auto end = Clock::now() + std::chrono::milliseconds(deadlineMs);
        while (!m_exited && Clock::now() < end) {
            int status = 0;
            if (waitpid(m_pid, &status, WNOHANG) == m_pid) {
                m_exited = true;
                m_status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
                break;
            }
            Drain(Clock::now() + std::chrono::milliseconds(5));
        }
        while (Drain(Clock::now() + std::chrono::milliseconds(5))) {
        }
        return m_exited ? m_status : -1;
    }

    const std::string& Stdout() const { return m_stdout; }
    const std::string& Stderr() const { return m_stderr; }

private:
    using Clock = std::chrono::steady_clock;

    // Reads what either stream has until end; false when both are at their end.
    bool Drain(Clock::time_point end) {
        int left = static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count());
        pollfd p[2] = {{m_out, POLLIN, 0}, {m_err, POLLIN, 0}};
        if (m_out < 0 && m_err < 0) return false;
        if (poll(p, 2, left > 0 ? left : 0) <= 0) return true;
        ReadInto(m_out, p[0].revents, m_stdout);
        ReadInto(m_err, p[1].revents, m_stderr);
        return m_out >= 0 || m_err >= 0;
    }
    static void ReadInto(int& fd, short revents, std::string& text) {
        if (fd < 0 || !(revents & (POLLIN | POLLHUP))) return;
        char buf[4096];
        ssize_t n = read(fd, buf, sizeof buf);
        if (n > 0) {
            text.append(buf, static_cast<size_t>(n));
        } else {
            close(fd);
            fd = -1;
        }
    }

    pid_t m_pid = -1;
    int m_in = -1, m_out = -1, m_err = -1;
    bool m_exited = false;
    int m_status = -1;
    std::string m_stdout, m_stderr;
};
