// StbReceiveUpgradeFile: a TCP sink that stores each connection's bytes as the
// new upgrade package ("/sdcard/update.zip" under the fixed-path root). Its own
// thread "ReceiveFile" accepts and reads; the owner constructs (which starts the
// service) and destroys it (which stops the thread and closes its sockets).
#pragma once

#include <atomic>
#include <cstdint>

#include <log4cpp/Category.hh>

#include "toolkit/kt_thread.h"
#include "toolkit/kt_uncopyable.h"

class StbReceiveUpgradeFile : private KT::CUncopyable {
public:
    static constexpr uint16_t kDefaultPort = 8888;

    // Starts listening on the given IPv4 port on all local addresses (8888 by
    // default; tests pass a free port). Returns at once; the thread does the work.
    explicit StbReceiveUpgradeFile(uint16_t port = kDefaultPort);
    // The same on one local IPv4 address (host byte order; INADDR_ANY for all),
    // so that a PC run can keep the receiver on 127.0.0.1.
    StbReceiveUpgradeFile(uint32_t address, uint16_t port);
    // Stops the thread (it notices within about 200 ms) and closes any socket
    // still open. Called by the owner's thread.
    ~StbReceiveUpgradeFile();

    // The thread body: one listening socket, then connections one after another
    // until cancelled. False only when the listening socket cannot be created or
    // the target file cannot be opened. Runs on "ReceiveFile".
    bool ReceiveUpgradeFileProcess();

private:
    enum class ReadEnd { kEndOfStream, kError, kCancelled };

    bool WaitReadable(int fd);
    bool AcceptOne();
    ReadEnd CopyToFile(int conn, int file);
    static void CloseFd(std::atomic<int>& fd);

    log4cpp::Category& m_Logger;
    uint16_t m_Port;
    uint32_t m_Address = 0;  // host byte order; 0 = INADDR_ANY
    // Written by the receive thread; the destructor reads them after the join.
    std::atomic<int> m_ListenFd{-1};
    std::atomic<int> m_ConnFd{-1};
    KT::CThread m_Thread;
};
