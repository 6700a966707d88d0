// The virtual board's control socket: a unix-domain stream socket served by
// one thread of its own; each connection carries one command line, gets the
// handler's answer and is closed. Start/Stop may be called from any thread
// (not from the handler); the handler runs on the server thread.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace stbsim {

class CControlServer {
public:
    using Handler = std::function<std::string(const std::string& line)>;

    explicit CControlServer(Handler handler);
    ~CControlServer();
    CControlServer(const CControlServer&) = delete;
    CControlServer& operator=(const CControlServer&) = delete;

    // Binds the socket (replacing a stale socket file) and starts the thread.
    // False with *error set if it cannot; true at once if already serving path.
    bool Start(const std::string& path, std::string* error);
    // Stops the thread within about 100 ms, closes and unlinks the socket.
    void Stop();
    bool IsRunning() const;

private:
    void Loop(int listenFd);
    void Serve(int fd);

    Handler m_handler;
    mutable std::mutex m_mutex;  // guards m_thread and m_path (start/stop)
    std::thread m_thread;
    std::string m_path;
    std::atomic<bool> m_stop{false};
};

}  // namespace stbsim
