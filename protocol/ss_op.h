// SsOp: one operation exchanged with the host (type, 16-bit id, index bytes, one
// typed value) and its byte image. Filled by one thread, then handed on as
// KT::CSharedPtr<SsOp> and only read; not locked. The record owns its vectors.
//
// Op image (one chunk of the value; the serial adapter frames it):
//
//   +--------+--------+--------+-----+--------------+-----+----------------+
//   | opType | id lo  | id hi  |  N  | index (N)    |  M  | data (M <= 240)|
//   +--------+--------+--------+-----+--------------+-----+----------------+
//      1        1        1       1      CIndex stream   1     value bytes
//
// The id alone goes least significant byte first; every value and index field
// goes most significant byte first. A value longer than 240 bytes travels as
// several images with the same header and index, each with the next chunk.
#pragma once

#include <cstddef>
#include <string>
#include <type_traits>
#include <vector>

#include "protocol/op_types.h"
#include "toolkit/kt_print.h"

namespace KT {
class CIpAddress;
class CMacAddress;
}  // namespace KT

class SsOp {
public:
    // The most value bytes one image carries.
    static constexpr unsigned int kMaxChunk = 240;

    SsOp();
    explicit SsOp(OpType_e type);
    SsOp(OpType_e type, unsigned int opId);

    // Setters: each replaces the whole value; the cached image is not refreshed.
    void SetOpType(OpType_e type);
    void SetOpId(unsigned int opId);
    // The size low-order bytes of value, most significant first; bytes beyond 32 bits are 0.
    void SetData(unsigned int value, unsigned int size);
    void SetDataU8(unsigned char value);
    void SetDataU16(unsigned short value);
    void SetData16(short value);
    void SetDataU32(unsigned int value);
    void SetData32(int value);
    void SetDataU64(unsigned long long value);
    void SetData64(long long value);
    void SetDataU8(const std::string& text);
    void SetDataU8(const unsigned char* bytes, unsigned int len);
    void SetIndexList(std::vector<unsigned char> index);

    // Stores value under the wire type; false (and a print) for a type that cannot
    // carry a number. Works for any integral or enumeration type.
    template <typename T>
    bool SetSsOpData(const T& value, const DataVarType_e& type);
    // Stores text; false for any type other than VT_STRING.
    bool SetSsOpData(const std::string& value, const DataVarType_e& type);

    OpType_e GetOpType() const;
    unsigned int GetOpId() const;
    // Data byte i; 0 and a print when out of range.
    unsigned char GetDataU8(unsigned int i) const;
    signed char GetData8(unsigned int i) const;
    // The data folded into 32 bits if its length is exactly size; else 0 and a print.
    unsigned int GetData(unsigned int size) const;
    unsigned short GetDataU16() const;
    short GetData16() const;
    unsigned int GetDataU32() const;
    int GetData32() const;
    // All data bytes folded into 64 bits (the last 8 remain); 0 and a print below 8 bytes.
    long long GetData64() const;
    unsigned long long GetDataU64() const;
    std::string GetDataString() const;
    std::vector<unsigned char> GetRawData() const;
    unsigned int GetDataLength() const;
    std::vector<unsigned char> GetIndexList() const;
    // Bytes of index, not the number of index fields.
    unsigned int GetIndexCount() const;
    // The last index byte; 1 without index (an operation without index is instance 1).
    unsigned int GetLastIndex() const;

    // Typed getters: true and out set when type is the one code each accepts;
    // otherwise a print, out untouched, false.
    bool GetData(const DataVarType_e& type, unsigned char& out) const;
    bool GetData(const DataVarType_e& type, char& out) const;
    bool GetData(const DataVarType_e& type, unsigned short& out) const;
    bool GetData(const DataVarType_e& type, short& out) const;
    bool GetData(const DataVarType_e& type, unsigned int& out) const;
    bool GetData(const DataVarType_e& type, int& out) const;
    bool GetData(const DataVarType_e& type, bool& out) const;
    bool GetData(const DataVarType_e& type, long long& out) const;
    bool GetData(const DataVarType_e& type, unsigned long long& out) const;
    bool GetData(const DataVarType_e& type, KT::CIpAddress& out) const;
    bool GetData(const DataVarType_e& type, KT::CMacAddress& out) const;

    // Builds the image of the chunk starting at data byte 0 into the cache.
    unsigned int SerializeOp();
    // Builds the image of the chunk starting at data byte offset and advances
    // offset; returns the image length, 0 when offset lies beyond the data.
    unsigned int SerializeOp(unsigned int& offset);
    // The cached image (built from offset 0 if the cache is empty); returns its
    // length. The pointer stays valid until the record is serialised again.
    unsigned int GetSerializedOp(unsigned char*& ptr, unsigned int& len);
    // The same caching rule; appends the image to out.
    unsigned int GetSerializedOp(std::vector<unsigned char>& out);
    // Always rebuilds from offset (advancing it): the chunking interface.
    unsigned int GetSerializedOp(unsigned char*& ptr, unsigned int& len, unsigned int& offset);

    // Parses one image; returns the bytes consumed, 0 on failure (below 2 bytes,
    // or a length byte missing or pointing past len). Bytes after the image are
    // ignored. On failure index and data are empty but type and id are set.
    unsigned int DeserializeOp(const unsigned char* buf, unsigned int len);
    unsigned int DeserializeOp(const std::vector<unsigned char>& buf);
    // One length-prefixed byte array at offset; returns 1 + its length, 0 on failure.
    static unsigned int DeserializeArray(const unsigned char* buf, unsigned int len, unsigned int offset,
                                         std::vector<unsigned char>& out);

private:
    void SetBytesBigEndian(unsigned long long value, unsigned int size);
    unsigned long long Fold(size_t first) const;

    OpType_e opType;
    unsigned int opId;
    std::vector<unsigned char> serialized;
    std::vector<unsigned char> data;
    std::vector<unsigned char> indexList;
};

template <typename T>
bool SsOp::SetSsOpData(const T& value, const DataVarType_e& type) {
    static_assert(std::is_integral<T>::value || std::is_enum<T>::value, "SetSsOpData takes a number");
    switch (type) {
        case VT_INT32: SetData32(static_cast<int>(value)); return true;
        case VT_UINT32: SetDataU32(static_cast<unsigned int>(value)); return true;
        case VT_INT8:
        case VT_UINT8:
        case VT_BOOL: SetDataU8(static_cast<unsigned char>(value)); return true;
        case VT_INT16: SetData16(static_cast<short>(value)); return true;
        case VT_UINT16: SetDataU16(static_cast<unsigned short>(value)); return true;
        case VT_INT64: SetData64(static_cast<long long>(value)); return true;
        case VT_UINT64: SetDataU64(static_cast<unsigned long long>(value)); return true;
        default:
            KT::MyPrintf("Unexpected datatype received: %d", static_cast<int>(type));
            return false;
    }
}
