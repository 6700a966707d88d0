// DeviceLine: a serial device opened by name through the toolkit's KT::CRs232,
// raw 8N1 at 115200 bit/s like the daemon's end. Owned by the command that opens
// it; Read on one thread, Write on any.
#pragma once

#include <string>

#include "toolkit/kt_rs232.h"
#include "tools/serial_line.h"

namespace avhost {

class DeviceLine : public ISerialLine {
public:
    // Opens the device; false with a message naming the device and the reason.
    bool Open(const std::string& device, std::string& error);
    int Read(unsigned char* buf, std::size_t size, unsigned timeoutMs) override;
    // Writes and waits until the bytes have left the driver's queue.
    bool Write(const unsigned char* data, std::size_t size) override;
    std::string Name() const override { return m_name; }

private:
    KT::CRs232 m_port;
    std::string m_name;
};

}  // namespace avhost
