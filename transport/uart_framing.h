// Byte-stuffed framing of op images on the serial line, without any I/O:
// FrameEncoder cuts one frame into the writes the adapter makes, FrameDecoder
// rebuilds frames from received bytes one at a time. Plain values; each instance
// belongs to one thread (the sender holding the adapter's transmit lock, or "UART Px").
//
// Frame (both directions):
//
//   +------+------------------------------------+------+
//   | 0x0F |  op image, byte-stuffed            | 0x10 |
//   +------+------------------------------------+------+
//    start                                        end
//
//   Stuffing: a payload byte 0x0F..0x13 goes as 0x12, byte ^ 0x20
//             0x0F -> 12 2F   0x10 -> 12 30   0x11 -> 12 31   0x12 -> 12 32   0x13 -> 12 33
//   No length, no checksum: the op image's own length bytes delimit its parts.
//   0x11/0x13 (XON/XOFF) are escaped by the sender; on receipt only 0x0F, 0x10
//   and 0x12 are special, so an unescaped 0x11 or 0x13 is taken as data.
#pragma once

#include <cstddef>
#include <vector>

namespace uart_framing {

constexpr unsigned char kStart = 0x0F;
constexpr unsigned char kEnd = 0x10;
constexpr unsigned char kEscape = 0x12;
constexpr unsigned char kEscapeXor = 0x20;

// The longest op image: type, opId (2), index length, 255 index bytes, data
// length, 255 data bytes.
constexpr std::size_t kMaxImage = 4 + 255 + 1 + 255;
// The most line bytes a valid frame carries between its markers: every image
// byte escaped. A frame growing past this is no frame a host sends.
constexpr std::size_t kMaxStuffedImage = 2 * kMaxImage;

// True for the bytes the sender escapes (0x0F to 0x13).
inline bool IsEscapeChar(unsigned char b) { return b >= 0x0F && b <= 0x13; }

}  // namespace uart_framing

// One write on the line: a run of payload bytes, or a one-byte marker/escape.
// The bytes belong to the payload or to static storage; valid while the payload lives.
struct FrameWrite {
    const unsigned char* data;
    std::size_t size;
};

class FrameEncoder {
public:
    // Replaces writes with the frame around payload, in line order: the start
    // marker; each run of ordinary bytes as one write; for each special byte the
    // escape and the changed byte as two one-byte writes; the end marker.
    static void Encode(const unsigned char* payload, std::size_t len, std::vector<FrameWrite>& writes);
    // The whole frame as one byte string (tests and tools).
    static std::vector<unsigned char> EncodeToBytes(const std::vector<unsigned char>& payload);
};

// Receive state machine. Behaviours the line has always had and that are kept:
//  - a start marker inside a frame is ignored (the frame goes on);
//  - an end marker outside a frame stays noted, so the next start marker
//    completes an empty frame at once;
//  - a pending escape survives the end of a frame and applies to the next data byte;
//  - data bytes outside a frame are dropped.
// Bounded: a frame whose line bytes (data and escapes) grow past
// kMaxStuffedImage is dropped. Its further bytes are skipped up to its end
// marker, which closes it as any frame is closed, so the markers stay in step
// and memory stays flat whatever the line carries.
class FrameDecoder {
public:
    // Takes one received byte. Returns true when it completed a frame: the
    // unstuffed payload is then moved into frame (replacing its content). A
    // dropped (overlong) frame never completes.
    bool Push(unsigned char byte, std::vector<unsigned char>& frame);

    bool InFrame() const { return m_inFrame; }
    bool FrameEnded() const { return m_frameEnded; }
    bool EscapePending() const { return m_escapePending; }
    // True while the current frame is being skipped for its length.
    bool Dropping() const { return m_dropping; }
    // Overlong frames so far; goes up at the byte that passes the bound.
    unsigned long DroppedFrames() const { return m_droppedFrames; }

private:
    std::vector<unsigned char> m_buffer;
    std::size_t m_lineBytes = 0;  // data and escape bytes of the current frame
    unsigned long m_droppedFrames = 0;
    bool m_inFrame = false;
    bool m_frameEnded = false;
    bool m_escapePending = false;
    bool m_dropping = false;
};
