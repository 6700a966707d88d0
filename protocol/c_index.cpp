// CIndex: encoding and decoding of an operation's index fields. Any thread, one
// at a time per descriptor.
#include "protocol/c_index.h"

#include <cstdarg>
#include <cstddef>
#include <utility>

CIndex::CIndex() = default;

CIndex::CIndex(int count, ...) {
    va_list args;
    va_start(args, count);
    for (int i = 0; i < count; ++i) PushIndexType(static_cast<DataVarType_e>(va_arg(args, int)));
    va_end(args);
    indexValues.assign(count > 0 ? static_cast<unsigned>(count) : 0u, 0u);
}

CIndex::CIndex(DataVarType_e* types, unsigned int count) {
    for (unsigned i = 0; i < count; ++i) PushIndexType(types[i]);
    indexValues.assign(count, 0u);
}

CIndex::CIndex(CIndex* other) : CIndex(*other) {}

CIndex::CIndex(const CIndex& other)
    : indexStream(other.indexStream), indexTypes(other.indexTypes), indexValues(other.indexValues) {}

CIndex::CIndex(std::vector<unsigned char> stream, std::vector<DataVarType_e> types)
    : indexStream(std::move(stream)), indexTypes(std::move(types)) {}

void CIndex::PushIndexType(DataVarType_e type) { indexTypes.push_back(type); }

void CIndex::AddIndex(unsigned int value) {
    indexTypes.push_back(VT_UINT32);
    indexValues.push_back(value);
}

void CIndex::AddIndex(unsigned short value) {
    indexTypes.push_back(VT_UINT16);
    indexValues.push_back(value);
}

void CIndex::AddIndex(unsigned char value) {
    indexTypes.push_back(VT_UINT8);
    indexValues.push_back(value);
}

bool CIndex::SetIndex(unsigned int pos, unsigned int value) {
    if (pos >= indexValues.size()) return false;
    indexValues[pos] = value;
    return true;
}

bool CIndex::FillIndexes(unsigned int* values, unsigned int count) {
    if (count != indexValues.size()) return false;
    indexValues.assign(values, values + count);
    return true;
}

bool CIndex::GetIndex(unsigned int pos, unsigned int& value) const {
    if (pos >= indexValues.size()) return false;
    value = indexValues[pos];
    return true;
}

unsigned int CIndex::GetIndexCount() const { return static_cast<unsigned>(indexValues.size()); }

unsigned int CIndex::GetIndexSize(DataVarType_e type) {
    switch (type) {
        case VT_UINT32: return 4;
        case VT_UINT16: return 2;
        case VT_UINT8: return 1;
        default: return 0;
    }
}

unsigned int CIndex::GetIndexSizeFromTypeList() const {
    unsigned int total = 0;
    for (DataVarType_e t : indexTypes) total += GetIndexSize(t);
    return total;
}

bool CIndex::VerifyTypeListIsFullyLoaded() const { return GetIndexSizeFromTypeList() == indexStream.size(); }

bool CIndex::Serialize() {
    if (indexValues.empty()) return true;
    indexStream.clear();
    for (size_t i = 0; i < indexTypes.size() && i < indexValues.size(); ++i) {
        unsigned int size = GetIndexSize(indexTypes[i]);
        for (unsigned int b = size; b > 0; --b)
            indexStream.push_back(static_cast<unsigned char>(indexValues[i] >> (8 * (b - 1))));
    }
    return true;
}

bool CIndex::Deserialize() {
    if (!VerifyTypeListIsFullyLoaded()) return false;
    indexValues.clear();
    size_t offset = 0;
    for (DataVarType_e t : indexTypes) {
        unsigned int size = GetIndexSize(t);
        unsigned int value = 0;
        if (size == 0) {
            // A field without bytes repeats the previous value.
            value = indexValues.empty() ? 0u : indexValues.back();
        }
        for (unsigned int b = 0; b < size; ++b) value = (value << 8) | indexStream[offset + b];
        indexValues.push_back(value);
        offset += size;
    }
    return true;
}

std::vector<unsigned char> CIndex::GetIndexStream() const { return indexStream; }

bool CIndex::GetIndexStream(unsigned char*& ptr, unsigned int& len) {
    if (indexStream.empty()) return false;
    ptr = indexStream.data();
    len = static_cast<unsigned>(indexStream.size());
    return true;
}

void CIndex::SetIndexStream(const std::vector<unsigned char>& stream) { indexStream = stream; }

void CIndex::SetIndexStream(const unsigned char* ptr, unsigned int len) {
    if (ptr == nullptr) len = 0;
    indexStream.assign(ptr, ptr + len);
}

std::vector<DataVarType_e> CIndex::GetIndexTypeList() const { return indexTypes; }

void CIndex::SetIndexTypeList(const std::vector<DataVarType_e>& types) { indexTypes = types; }

void CIndex::ClearIndexTypes() { indexTypes.clear(); }
