// SsOp: value accessors and the op image. Any thread, one at a time per record.
#include "protocol/ss_op.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "toolkit/kt_address.h"

SsOp::SsOp() : SsOp(OP_TYPE_DATA, 0) {}

SsOp::SsOp(OpType_e type) : SsOp(type, 0) {}

SsOp::SsOp(OpType_e type, unsigned int id) : opType(type), opId(id) {}

void SsOp::SetOpType(OpType_e type) { opType = type; }

void SsOp::SetOpId(unsigned int id) { opId = id; }

void SsOp::SetBytesBigEndian(unsigned long long value, unsigned int size) {
    data.clear();
    for (unsigned int b = size; b > 0; --b) {
        unsigned int shift = 8 * (b - 1);
        data.push_back(shift < 64 ? static_cast<unsigned char>(value >> shift) : 0);
    }
}

void SsOp::SetData(unsigned int value, unsigned int size) {
    data.clear();
    for (unsigned int b = size; b > 0; --b) {
        unsigned int shift = 8 * (b - 1);
        data.push_back(shift < 32 ? static_cast<unsigned char>(value >> shift) : 0);
    }
}

void SsOp::SetDataU8(unsigned char value) { SetData(value, 1); }

void SsOp::SetDataU16(unsigned short value) { SetData(value, 2); }

void SsOp::SetData16(short value) { SetData(static_cast<unsigned int>(static_cast<int>(value)), 2); }

void SsOp::SetDataU32(unsigned int value) { SetData(value, 4); }

void SsOp::SetData32(int value) { SetData(static_cast<unsigned int>(value), 4); }

void SsOp::SetDataU64(unsigned long long value) { SetBytesBigEndian(value, 8); }

void SsOp::SetData64(long long value) { SetBytesBigEndian(static_cast<unsigned long long>(value), 8); }

void SsOp::SetDataU8(const std::string& text) { data.assign(text.begin(), text.end()); }

void SsOp::SetDataU8(const unsigned char* bytes, unsigned int len) {
    if (bytes == nullptr) len = 0;
    data.assign(bytes, bytes + len);
}

void SsOp::SetIndexList(std::vector<unsigned char> index) { indexList = std::move(index); }

bool SsOp::SetSsOpData(const std::string& value, const DataVarType_e& type) {
    KT::MyPrintf("SetSsOpData string");
    if (type != VT_STRING) {
        KT::MyPrintf("Unexpected datatype received: %d", static_cast<int>(type));
        return false;
    }
    SetDataU8(value);
    return true;
}

OpType_e SsOp::GetOpType() const { return opType; }

unsigned int SsOp::GetOpId() const { return opId; }

unsigned char SsOp::GetDataU8(unsigned int i) const {
    if (i >= data.size()) {
        KT::MyPrintf("%s out of bounds (%u >= %u)", "GetDataU8", i, static_cast<unsigned>(data.size()));
        return 0;
    }
    return data[i];
}

signed char SsOp::GetData8(unsigned int i) const {
    if (i >= data.size()) {
        KT::MyPrintf("%s out of bounds (%u >= %u)", "GetData8", i, static_cast<unsigned>(data.size()));
        return 0;
    }
    return static_cast<signed char>(data[i]);
}

// The data bytes from index first on, folded most significant first.
unsigned long long SsOp::Fold(size_t first) const {
    unsigned long long v = 0;
    for (size_t i = first; i < data.size(); ++i) v = (v << 8) | data[i];
    return v;
}

unsigned int SsOp::GetData(unsigned int size) const {
    if (data.size() != size) {
        KT::MyPrintf("%s wrong size (%zu != %zu)", "GetData", static_cast<size_t>(size), data.size());
        return 0;
    }
    return static_cast<unsigned int>(Fold(0));
}

unsigned short SsOp::GetDataU16() const { return static_cast<unsigned short>(GetData(2)); }

short SsOp::GetData16() const { return static_cast<short>(GetData(2)); }

unsigned int SsOp::GetDataU32() const { return GetData(4); }

int SsOp::GetData32() const { return static_cast<int>(GetData(4)); }

long long SsOp::GetData64() const {
    if (data.size() < 8) {
        KT::MyPrintf("%s wrong size (%zu < 8)", "GetData64", data.size());
        return 0;
    }
    return static_cast<long long>(Fold(data.size() - 8));
}

unsigned long long SsOp::GetDataU64() const {
    if (data.size() < 8) {
        KT::MyPrintf("%s wrong size (%zu < 8)", "GetDataU64", data.size());
        return 0;
    }
    return Fold(data.size() - 8);
}

std::string SsOp::GetDataString() const { return std::string(data.begin(), data.end()); }

std::vector<unsigned char> SsOp::GetRawData() const { return data; }

unsigned int SsOp::GetDataLength() const { return static_cast<unsigned>(data.size()); }

std::vector<unsigned char> SsOp::GetIndexList() const { return indexList; }

unsigned int SsOp::GetIndexCount() const { return static_cast<unsigned>(indexList.size()); }

unsigned int SsOp::GetLastIndex() const { return indexList.empty() ? 1u : indexList.back(); }

bool SsOp::GetData(const DataVarType_e& type, unsigned char& out) const {
    if (type != VT_UINT8) {
        KT::MyPrintf("Expected type VT_UINT8 got type: %d", static_cast<int>(type));
        return false;
    }
    out = GetDataU8(0);
    return true;
}

bool SsOp::GetData(const DataVarType_e& type, char& out) const {
    if (type != VT_INT8) {
        KT::MyPrintf("Expected type VT_INT8 got type: %d", static_cast<int>(type));
        return false;
    }
    out = static_cast<char>(GetData8(0));
    return true;
}

bool SsOp::GetData(const DataVarType_e& type, unsigned short& out) const {
    if (type != VT_UINT16) {
        KT::MyPrintf("Expected type VT_UINT16 got type: %d", static_cast<int>(type));
        return false;
    }
    out = GetDataU16();
    return true;
}

bool SsOp::GetData(const DataVarType_e& type, short& out) const {
    if (type != VT_INT16) {
        KT::MyPrintf("Expected type VT_INT16 got type: %d", static_cast<int>(type));
        return false;
    }
    out = GetData16();
    return true;
}

bool SsOp::GetData(const DataVarType_e& type, unsigned int& out) const {
    if (type != VT_UINT32) {
        KT::MyPrintf("Expected type VT_UINT32 got type: %d", static_cast<int>(type));
        return false;
    }
    out = GetDataU32();
    return true;
}

bool SsOp::GetData(const DataVarType_e& type, int& out) const {
    if (type != VT_INT32) {
        KT::MyPrintf("Expected type VT_INT32 got type: %d", static_cast<int>(type));
        return false;
    }
    out = GetData32();
    return true;
}

bool SsOp::GetData(const DataVarType_e& type, bool& out) const {
    if (type != VT_BOOL) {
        KT::MyPrintf("Expected type VT_BOOL got type: %d", static_cast<int>(type));
        return false;
    }
    out = GetDataU8(0) != 0;
    return true;
}

bool SsOp::GetData(const DataVarType_e& type, long long& out) const {
    if (type != VT_INT64) {
        KT::MyPrintf("Expected type VT_INT64 got type: %d", static_cast<int>(type));
        return false;
    }
    out = GetData64();
    return true;
}

bool SsOp::GetData(const DataVarType_e& type, unsigned long long& out) const {
    if (type != VT_UINT64) {
        KT::MyPrintf("Expected type VT_UINT64 got type: %d", static_cast<int>(type));
        return false;
    }
    out = GetDataU64();
    return true;
}

bool SsOp::GetData(const DataVarType_e& type, KT::CIpAddress& out) const {
    if (type != VT_IP) {
        KT::MyPrintf("Expected type VT_IP got type: %d", static_cast<int>(type));
        return false;
    }
    out.SetIpInt(GetDataU32());
    return true;
}

bool SsOp::GetData(const DataVarType_e& type, KT::CMacAddress& out) const {
    if (type != VT_MAC) {
        KT::MyPrintf("Expected type VT_MAC got type: %d", static_cast<int>(type));
        return false;
    }
    out.Set(GetDataString());
    return true;
}

unsigned int SsOp::SerializeOp() {
    unsigned int offset = 0;
    return SerializeOp(offset);
}

unsigned int SsOp::SerializeOp(unsigned int& offset) {
    serialized.clear();
    if (offset > data.size()) return 0;
    unsigned int chunk = std::min<unsigned int>(static_cast<unsigned>(data.size()) - offset, kMaxChunk);
    serialized.reserve(5 + indexList.size() + chunk);
    serialized.push_back(static_cast<unsigned char>(opType));
    serialized.push_back(static_cast<unsigned char>(opId));
    serialized.push_back(static_cast<unsigned char>(opId >> 8));
    serialized.push_back(static_cast<unsigned char>(indexList.size()));
    serialized.insert(serialized.end(), indexList.begin(), indexList.end());
    serialized.push_back(static_cast<unsigned char>(chunk));
    serialized.insert(serialized.end(), data.begin() + offset, data.begin() + offset + chunk);
    offset += chunk;
    return static_cast<unsigned>(serialized.size());
}

unsigned int SsOp::GetSerializedOp(unsigned char*& ptr, unsigned int& len) {
    if (serialized.empty()) SerializeOp();
    ptr = serialized.data();
    len = static_cast<unsigned>(serialized.size());
    return len;
}

unsigned int SsOp::GetSerializedOp(std::vector<unsigned char>& out) {
    if (serialized.empty()) SerializeOp();
    out.insert(out.end(), serialized.begin(), serialized.end());
    return static_cast<unsigned>(serialized.size());
}

unsigned int SsOp::GetSerializedOp(unsigned char*& ptr, unsigned int& len, unsigned int& offset) {
    serialized.clear();
    SerializeOp(offset);
    ptr = serialized.data();
    len = static_cast<unsigned>(serialized.size());
    return len;
}

unsigned int SsOp::DeserializeOp(const unsigned char* buf, unsigned int len) {
    indexList.clear();
    data.clear();
    if (buf == nullptr || len < 2) return 0;
    opType = static_cast<OpType_e>(buf[0]);
    // A 2-byte input cannot hold an image; its id high byte is taken as 0 rather
    // than read past the end.
    opId = buf[1] + 256u * (len > 2 ? buf[2] : 0u);
    KT::EmptyPrint("%s type=%02X id=%02X", "DeserializeOp", static_cast<unsigned>(opType), opId);
    unsigned int indexUsed = DeserializeArray(buf, len, 3, indexList);
    if (indexUsed == 0) return 0;
    unsigned int dataUsed = DeserializeArray(buf, len, 3 + indexUsed, data);
    if (dataUsed == 0) {
        indexList.clear();
        return 0;
    }
    SerializeOp();
    size_t total = 3 + indexUsed + dataUsed;
    KT::EmptyPrint("%s consumed %zu bytes", "DeserializeOp", total);
    return static_cast<unsigned>(total);
}

unsigned int SsOp::DeserializeOp(const std::vector<unsigned char>& buf) {
    return DeserializeOp(buf.data(), static_cast<unsigned>(buf.size()));
}

unsigned int SsOp::DeserializeArray(const unsigned char* buf, unsigned int len, unsigned int offset,
                                    std::vector<unsigned char>& out) {
    if (static_cast<size_t>(offset) + 1 > len) {
        KT::MyPrintf("%s failed! offset=%zu, dataLength=%zu", "DeserializeArray", static_cast<size_t>(offset),
                     static_cast<size_t>(len));
        return 0;
    }
    size_t arrayLength = buf[offset];
    if (offset + 1 + arrayLength > len) {
        KT::MyPrintf("%s failed! offset=%zu, dataLength=%zu; arrayLength=%zu", "DeserializeArray",
                     static_cast<size_t>(offset), static_cast<size_t>(len), arrayLength);
        return 0;
    }
    out.assign(buf + offset + 1, buf + offset + 1 + arrayLength);
    return static_cast<unsigned>(arrayLength + 1);
}
