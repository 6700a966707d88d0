// Process-level test support. Test thread only.
#include "tests/e2e/e2e_support.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "tests/support/child_launcher.h"
#include "tests/support/free_port.h"
#include "tests/support/wait_until.h"

extern char** environ;

namespace e2e {

bool WaitUntil(const std::function<bool()>& pred, int timeoutMs) {
    return stbav_test::WaitUntil(pred, std::chrono::milliseconds(timeoutMs), std::chrono::milliseconds(5));
}

// ---- files ------------------------------------------------------------------

TempDir::TempDir() {
    char tmpl[] = "/tmp/stbav-e2e-XXXXXX";
    if (mkdtemp(tmpl) != nullptr) m_Path = tmpl;
}

TempDir::~TempDir() {
    std::error_code ec;
    if (!m_Path.empty()) std::filesystem::remove_all(m_Path, ec);
}

bool WriteFile(const std::string& path, const std::string& content) {
    std::error_code ec;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ec);
    std::ofstream out(path, std::ios::binary);
    out << content;
    return static_cast<bool>(out);
}

bool ReadFile(const std::string& path, std::string& content) {
    std::ifstream in(path, std::ios::binary);
    if (in) content.assign(std::istreambuf_iterator<char>(in), {});
    return static_cast<bool>(in);
}

bool FileExists(const std::string& path) {
    struct stat st;
    return lstat(path.c_str(), &st) == 0;
}

// ---- sockets ----------------------------------------------------------------

uint16_t FreeTcpPort() { return stbav_test::FreeListenPort(); }

bool UploadTcp(uint16_t port, const std::string& bytes) {
    int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    addr.sin_port = htons(port);
    bool ok = connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0;
    for (size_t done = 0; ok && done < bytes.size();) {
        ssize_t n = send(fd, bytes.data() + done, bytes.size() - done, MSG_NOSIGNAL);
        ok = n > 0;
        if (ok) done += static_cast<size_t>(n);
    }
    close(fd);
    return ok;
}

std::string BoardCommand(const std::string& socketPath, const std::string& command) {
    int fd = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un addr{};
    addr.sun_family = AF_UNIX;
    std::snprintf(addr.sun_path, sizeof addr.sun_path, "%s", socketPath.c_str());
    std::string answer;
    if (connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0) {
        const std::string line = command + "\n";
        if (send(fd, line.data(), line.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(line.size())) {
            char buf[8192];
            pollfd p = {fd, POLLIN, 0};
            while (poll(&p, 1, 10000) > 0) {
                ssize_t n = read(fd, buf, sizeof buf);
                if (n <= 0) break;
                answer.append(buf, static_cast<size_t>(n));
            }
        }
    }
    close(fd);
    return answer;
}

// ---- journal ------------------------------------------------------------------

std::vector<JournalEntry> ParseJournal(const std::string& text) {
    std::vector<JournalEntry> entries;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
        std::string rest = line.compare(0, 8, "stbsim: ") == 0 ? line.substr(8) : line;
        const size_t blank = rest.find(' ');
        const size_t paren = rest.find('(');
        if (blank == std::string::npos || paren == std::string::npos || paren < blank) continue;
        entries.push_back({std::strtoull(rest.c_str(), nullptr, 10), rest.substr(blank + 1, paren - blank - 1),
                           rest.substr(blank + 1)});
    }
    return entries;
}

// ---- child process ------------------------------------------------------------

namespace {

// The test's environment with env laid over it.
std::vector<std::string> MergeEnvironment(const std::vector<std::string>& env) {
    std::vector<std::string> merged;
    for (char** e = environ; *e != nullptr; ++e) {
        const std::string entry = *e;
        const std::string name = entry.substr(0, entry.find('='));
        if (std::none_of(env.begin(), env.end(), [&](const std::string& add) { return add.rfind(name + "=", 0) == 0; }))
            merged.push_back(entry);
    }
    merged.insert(merged.end(), env.begin(), env.end());
    return merged;
}

std::vector<char*> Pointers(std::vector<std::string>& strings) {
    std::vector<char*> p;
    for (std::string& s : strings) p.push_back(&s[0]);
    p.push_back(nullptr);
    return p;
}

}  // namespace

ChildProcess::~ChildProcess() {
    if (m_Pid <= 0) return;
    kill(m_Pid, SIGKILL);
    int status = 0;
    waitpid(m_Pid, &status, 0);
}

bool ChildProcess::Start(const std::string& program, const std::vector<std::string>& args,
                         const std::vector<std::string>& env, const std::string& stdoutFile,
                         const std::string& stderrFile, bool hostProgram) {
    // In a cross build the child runs under the same emulator as the test.
    std::vector<std::string> argv;
    if (!hostProgram) argv = stbav_test::ChildLauncher();
    argv.push_back(program);
    argv.insert(argv.end(), args.begin(), args.end());
    std::vector<std::string> envp = MergeEnvironment(env);
    std::vector<char*> argvp = Pointers(argv);
    std::vector<char*> envpp = Pointers(envp);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, stdoutFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, stderrFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    pid_t pid = -1;
    const int r = posix_spawn(&pid, argv[0].c_str(), &actions, nullptr, argvp.data(), envpp.data());
    posix_spawn_file_actions_destroy(&actions);
    if (r != 0) return false;
    m_Pid = pid;
    return true;
}

bool ChildProcess::Wait(int timeoutMs, int& status) {
    if (m_Pid <= 0) return false;
    const bool ended = WaitUntil([&] { return waitpid(m_Pid, &status, WNOHANG) == m_Pid; }, timeoutMs);
    if (ended) m_Pid = -1;
    return ended;
}

bool ChildProcess::Stop(int sig, int timeoutMs, int& status) {
    if (m_Pid <= 0) return false;
    kill(m_Pid, sig);
    return Wait(timeoutMs, status);
}

std::string DescribeStatus(int status) {
    if (WIFEXITED(status)) return "exit " + std::to_string(WEXITSTATUS(status));
    if (WIFSIGNALED(status)) return "signal " + std::to_string(WTERMSIG(status));
    return "status " + std::to_string(status);
}

std::vector<std::string> SanitizerEnvironment() {
    auto with = [](const char* name, const char* extra) {
        const char* old = getenv(name);
        return std::string(name) + "=" + (old != nullptr && *old != '\0' ? std::string(old) + ":" : "") + extra;
    };
    return {with("ASAN_OPTIONS", "exitcode=97"), with("UBSAN_OPTIONS", "halt_on_error=1:exitcode=97"),
            with("TSAN_OPTIONS", "exitcode=98")};
}

bool HasSanitizerReport(const std::string& text) {
    return text.find("Sanitizer") != std::string::npos || text.find("runtime error:") != std::string::npos;
}

}  // namespace e2e
