// ISerialLine: the host's end of the serial line as the tool uses it: a device
// opened by name (DeviceLine) or the master of a pty pair the tool made itself
// (PtyLine). One thread reads while another writes; Close is for the owner.
#pragma once

#include <cstddef>
#include <string>

namespace avhost {

class ISerialLine {
public:
    virtual ~ISerialLine() = default;
    // Reads what is available into buf, waiting at most timeoutMs. Returns the
    // number of bytes read, 0 on time-out or on a line that cannot be read (after
    // waiting out the time-out, so a read loop never spins). Reading thread.
    virtual int Read(unsigned char* buf, std::size_t size, unsigned timeoutMs) = 0;
    // Writes all bytes; true only if every byte was written. Any thread.
    virtual bool Write(const unsigned char* data, std::size_t size) = 0;
    // The device name for messages and capture headers.
    virtual std::string Name() const = 0;
};

}  // namespace avhost
