// PtyLine: a pty pair made by the tool (openpty, raw, 115200): the daemon opens
// the slave by name (SlaveName), the tool plays the host on the master. The tool
// keeps its own slave descriptor open, so the daemon may open and close its end
// at will without the master seeing a hang-up. Read on one thread, Write on any.
#pragma once

#include <string>

#include "tools/serial_line.h"

namespace avhost {

class PtyLine : public ISerialLine {
public:
    PtyLine() = default;
    ~PtyLine() override;
    PtyLine(const PtyLine&) = delete;
    PtyLine& operator=(const PtyLine&) = delete;

    // Makes the pair; false with the reason in error.
    bool Open(std::string& error);
    // "/dev/pts/N", the daemon's side.
    const std::string& SlaveName() const { return m_slaveName; }

    int Read(unsigned char* buf, std::size_t size, unsigned timeoutMs) override;
    // Gives up when the slave side accepts nothing for 2 s.
    bool Write(const unsigned char* data, std::size_t size) override;
    std::string Name() const override { return m_slaveName; }

private:
    int m_master = -1;
    int m_slave = -1;
    std::string m_slaveName;
};

}  // namespace avhost
