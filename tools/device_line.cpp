// A named serial device as the host's end of the line.
#include "tools/device_line.h"

namespace avhost {

bool DeviceLine::Open(const std::string& device, std::string& error) {
    m_name = device;
    // Flow-control code 2 as on the daemon's end: XON/XOFF are escaped by the
    // framing, so the driver leaves them alone.
    if (m_port.Open(device, 115200, KT::CRs232::FLOW_SOFTWARE)) return true;
    error = "cannot open " + m_port.OpenErrorText(device);
    return false;
}

int DeviceLine::Read(unsigned char* buf, std::size_t size, unsigned timeoutMs) {
    KT::CSlice<unsigned char> slice(buf, size);
    int n = m_port.Read(slice, timeoutMs);
    return n > 0 ? n : 0;
}

bool DeviceLine::Write(const unsigned char* data, std::size_t size) {
    KT::CSlice<unsigned char> slice(const_cast<unsigned char*>(data), size);
    bool ok = m_port.Write(slice) == static_cast<int>(size);
    m_port.Flush();
    return ok;
}

}  // namespace avhost
