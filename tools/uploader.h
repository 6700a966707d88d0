// Upload of a file to the daemon's TCP upgrade receiver: connect, send the whole
// file, close our side to end it, and wait (briefly) for the receiver to close
// its side, which it does once the file is on disk. Caller's thread; progress
// is reported through a callback on that thread.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace avhost {

struct UploadResult {
    uint64_t bytes = 0;
    double seconds = 0;
};

class Uploader {
public:
    // Called after each chunk with bytes sent so far and the file size.
    using Progress = std::function<void(uint64_t sent, uint64_t total)>;

    // False with a message in error (file unreadable, host unknown, connection
    // refused, send failed).
    static bool Upload(const std::string& path, const std::string& host, uint16_t port, const Progress& progress,
                       UploadResult& result, std::string& error);

    // "[#########           ]  45%  1.2 MiB / 2.6 MiB" for a terminal line.
    static std::string ProgressBar(uint64_t sent, uint64_t total, unsigned width = 30);
    // "2621440 bytes in 0.52 s (4.81 MiB/s)".
    static std::string Summary(const UploadResult& result);
    // "1.2 MiB", "512 B", "3.0 KiB".
    static std::string SizeText(uint64_t bytes);
};

}  // namespace avhost
