// KT::CRs232 over POSIX termios. The descriptor is non-blocking and every wait is
// a poll() that also watches a wake pipe, so Close() never leaves a reader or
// writer waiting on a descriptor that is gone.
#include "toolkit/kt_rs232.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <climits>
#include <cstring>
#include <thread>

#include "toolkit/kt_thread.h"

namespace KT {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kWriteStallMs = 2000;
constexpr int kFlushSlackMs = 100;

bool RateToSpeed(int rate, speed_t& speed) {
    static const struct {
        int rate;
        speed_t speed;
    } kRates[] = {
        {1200, B1200},     {2400, B2400},     {4800, B4800},     {9600, B9600},
        {19200, B19200},   {38400, B38400},   {57600, B57600},   {115200, B115200},
        {230400, B230400}, {460800, B460800}, {921600, B921600},
    };
    for (const auto& r : kRates) {
        if (r.rate == rate) {
            speed = r.speed;
            return true;
        }
    }
    return false;
}

int RemainingMs(Clock::time_point deadline) {
    auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (left <= 0) return 0;
    return left > INT_MAX ? INT_MAX : static_cast<int>(left);
}

// Waits out the rest of a read's time-out; a cancel of the calling CThread cuts it short.
void WaitUntil(Clock::time_point deadline) {
    int left = RemainingMs(deadline);
    if (left > 0) CThread::Sleep(static_cast<unsigned>(left));
}

// Unix 98 pty slaves have majors 136 to 143 on Linux.
bool IsPtySlave(int fd) {
    struct stat st;
    if (fstat(fd, &st) != 0 || !S_ISCHR(st.st_mode)) return false;
    unsigned maj = major(st.st_rdev);
    return maj >= 136 && maj <= 143;
}

}  // namespace

CRs232::CRs232() {
    if (pipe2(m_wake, O_CLOEXEC | O_NONBLOCK) != 0) m_wake[0] = m_wake[1] = -1;  // poll() skips -1
}

CRs232::~CRs232() {
    Close();
    if (m_wake[0] >= 0) ::close(m_wake[0]);
    if (m_wake[1] >= 0) ::close(m_wake[1]);
}

bool CRs232::Open(const std::string& name, int rate, FlowControl_e flow) {
    std::lock_guard<std::mutex> lock(m_openMutex);
    m_wanted.store(false);
    DetachLocked(m_fd.load());
    int fd = OpenConfigured(name, rate, flow, m_openError);
    if (fd < 0) return false;
    m_openError = 0;
    m_name = name;
    m_rate.store(rate);
    m_flow.store(flow);
    m_isPty = IsPtySlave(fd);
    m_fd.store(fd);
    m_wanted.store(true);
    return true;
}

std::string CRs232::OpenErrorText(const std::string& name) const {
    switch (m_openError) {
        case 0: return name + ": open";
        case ENOTTY: return name + ": not a terminal (a serial line is needed)";
        case EBUSY: return name + ": in use by another program (a serial line has one user at a time)";
        case EINVAL: return name + ": unsupported bit rate";
        default: return name + ": " + std::strerror(m_openError);
    }
}

int CRs232::OpenConfigured(const std::string& name, int rate, FlowControl_e flow, int& error) {
    speed_t speed;
    if (!RateToSpeed(rate, speed)) {
        error = EINVAL;
        return -1;
    }
    // Non-blocking: opening must not wait for carrier, and every wait is a poll().
    int fd = ::open(name.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) {
        error = errno;
        return -1;
    }
    const auto fail = [&](int e) {
        ::close(fd);
        error = e;
        return -1;
    };
    if (!isatty(fd)) return fail(ENOTTY);
    if (flock(fd, LOCK_EX | LOCK_NB) != 0) return fail(errno == EWOULDBLOCK ? EBUSY : errno);
    (void)ioctl(fd, TIOCEXCL);  // refuses later opens that do not lock (unprivileged ones)
    struct termios tio;
    if (tcgetattr(fd, &tio) != 0) return fail(errno);
    cfmakeraw(&tio);
    tio.c_cflag &= ~(CSIZE | PARENB | CSTOPB | CRTSCTS);
    tio.c_cflag |= CS8 | CLOCAL | CREAD;
    if (flow == FLOW_HARDWARE) tio.c_cflag |= CRTSCTS;
    tio.c_iflag &= ~(IXON | IXOFF | IXANY);
    tio.c_cc[VMIN] = 0;
    tio.c_cc[VTIME] = 0;
    if (cfsetispeed(&tio, speed) != 0 || cfsetospeed(&tio, speed) != 0 || tcsetattr(fd, TCSANOW, &tio) != 0)
        return fail(errno);
    error = 0;
    return fd;
}

bool CRs232::IsValid() const { return m_fd.load() >= 0; }

int CRs232::Read(CSlice<unsigned char>& buf, unsigned timeoutMs) {
    const auto deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
    ReadEnd end = ReadEnd::kNoData;  // closed or lost port: wait, maybe reopen
    int got = 0;
    int fd;
    {
        std::shared_lock<std::shared_mutex> io(m_ioMutex);
        fd = m_fd.load();
        if (fd >= 0) end = ReadFd(fd, buf, deadline, got);
    }
    switch (end) {
        case ReadEnd::kData:
            return got;
        case ReadEnd::kTimeout:
        case ReadEnd::kWoken:  // closing: the next Read finds no descriptor and waits
            return 0;
        case ReadEnd::kNoData:
            WaitUntil(deadline);
            if (fd < 0) Reopen();
            return 0;
        case ReadEnd::kDead:
            break;
    }
    {
        std::lock_guard<std::mutex> lock(m_openMutex);
        DetachLocked(fd);
    }
    WaitUntil(deadline);
    Reopen();
    return 0;
}

CRs232::ReadEnd CRs232::ReadFd(int fd, CSlice<unsigned char>& buf, Clock::time_point deadline, int& got) {
    for (;;) {
        struct pollfd fds[2] = {{fd, POLLIN, 0}, {m_wake[0], POLLIN, 0}};
        int r = poll(fds, 2, RemainingMs(deadline));
        if (r < 0 && errno == EINTR) continue;
        if (r < 0) return ReadEnd::kNoData;
        if (r == 0) return ReadEnd::kTimeout;
        if (fds[1].revents != 0) return ReadEnd::kWoken;
        const short ev = fds[0].revents;
        const bool hangup = (ev & (POLLHUP | POLLERR | POLLNVAL)) != 0;
        if (ev & POLLIN) {  // with a hang-up too: what is still buffered is read first
            ssize_t n = ::read(fd, buf.Data(), buf.Size());
            if (n > 0) {
                got = static_cast<int>(n);
                return ReadEnd::kData;
            }
            if (n < 0 && (errno == EAGAIN || errno == EINTR) && !hangup) continue;
            // A pty whose master closed reads 0 (EOF) forever; a real port gives EIO.
            if (n == 0 && !hangup) return ReadEnd::kNoData;
            return ReadEnd::kDead;
        }
        return hangup ? ReadEnd::kDead : ReadEnd::kNoData;
    }
}

int CRs232::Write(const CSlice<unsigned char>& buf) {
    std::shared_lock<std::shared_mutex> io(m_ioMutex);
    const int fd = m_fd.load();
    if (fd < 0) return 0;
    std::size_t done = 0;
    while (done < buf.Size()) {
        ssize_t n = ::write(fd, buf.Data() + done, buf.Size() - done);
        if (n > 0) {
            done += static_cast<std::size_t>(n);
            continue;
        }
        if (n < 0 && errno == EINTR) continue;
        if (n < 0 && errno == EAGAIN && WaitWritable(fd)) continue;
        break;
    }
    return static_cast<int>(done);
}

bool CRs232::WaitWritable(int fd) {
    for (;;) {
        struct pollfd fds[2] = {{fd, POLLOUT, 0}, {m_wake[0], POLLIN, 0}};
        int r = poll(fds, 2, kWriteStallMs);
        if (r < 0 && errno == EINTR) continue;
        if (r <= 0 || fds[1].revents != 0) return false;
        return (fds[0].revents & POLLOUT) != 0 && (fds[0].revents & (POLLERR | POLLHUP | POLLNVAL)) == 0;
    }
}

void CRs232::Flush() {
    std::shared_lock<std::shared_mutex> io(m_ioMutex);
    const int fd = m_fd.load();
    const int rate = m_rate.load();
    if (fd < 0 || rate <= 0) return;
    int queued = 0;
    if (ioctl(fd, TIOCOUTQ, &queued) != 0) return;
    // About 10 bits per byte on the line (8N1).
    const auto limit = Clock::now() + std::chrono::milliseconds(kFlushSlackMs + queued * 10000LL / rate);
    while (queued > 0 && Clock::now() < limit) {
        long long stepMs = queued * 10000LL / rate;
        std::this_thread::sleep_for(std::chrono::milliseconds(stepMs < 1 ? 1 : (stepMs > 20 ? 20 : stepMs)));
        if (ioctl(fd, TIOCOUTQ, &queued) != 0) return;
    }
    if (queued == 0 && m_flow.load() != FLOW_HARDWARE) tcdrain(fd);
}

void CRs232::Close() {
    std::lock_guard<std::mutex> lock(m_openMutex);
    m_wanted.store(false);
    DetachLocked(m_fd.load());
}

void CRs232::DetachLocked(int fd) {
    if (fd < 0 || !m_fd.compare_exchange_strong(fd, -1)) return;
    const unsigned char one = 1;
    if (m_wake[1] >= 0) (void)!::write(m_wake[1], &one, 1);
    std::unique_lock<std::shared_mutex> io(m_ioMutex);  // every Read/Write on fd has left
    (void)ioctl(fd, TIOCNXCL);  // the device may stay open elsewhere (a pty's holder)
    ::close(fd);                // and the lock goes with the descriptor
    unsigned char drain[16];
    while (m_wake[0] >= 0 && ::read(m_wake[0], drain, sizeof drain) > 0) {
    }
}

bool CRs232::Reopen() {
    std::lock_guard<std::mutex> lock(m_openMutex);
    if (m_fd.load() >= 0) return true;
    if (!m_wanted.load() || m_isPty) return false;
    int error = 0;
    int fd = OpenConfigured(m_name, m_rate.load(), m_flow.load(), error);
    if (fd < 0) return false;
    m_fd.store(fd);
    return true;
}

}  // namespace KT
