// CIndex: the index descriptor of an operation (which instance of a setting is
// meant): the type of each index field, their values, and the encoded stream.
// A plain value; not locked. Dictionary entries hold one each (types only).
//
// Stream layout: the fields one after another, each most significant byte first,
// sized by its type alone: VT_UINT32 4 bytes, VT_UINT16 2, VT_UINT8 1, others 0.
#pragma once

#include <vector>

#include "protocol/op_types.h"

class CIndex {
public:
    CIndex();
    // count index types follow as DataVarType_e arguments; the values start as zeros.
    explicit CIndex(int count, ...);
    CIndex(DataVarType_e* types, unsigned int count);
    explicit CIndex(CIndex* other);
    CIndex(const CIndex& other);
    // A descriptor for a received stream with a known type list (values not decoded yet).
    CIndex(std::vector<unsigned char> stream, std::vector<DataVarType_e> types);
    CIndex& operator=(const CIndex& other) = default;

    // Appends a type without a value.
    void PushIndexType(DataVarType_e type);
    // Append a field of type VT_UINT32, VT_UINT16 or VT_UINT8 with its value.
    void AddIndex(unsigned int value);
    void AddIndex(unsigned short value);
    void AddIndex(unsigned char value);

    // False if pos is not below the number of values.
    bool SetIndex(unsigned int pos, unsigned int value);
    // Sets all values at once; false (nothing changed) unless count equals the number of values.
    bool FillIndexes(unsigned int* values, unsigned int count);
    // False (value unchanged) if pos is out of range.
    bool GetIndex(unsigned int pos, unsigned int& value) const;
    // The number of values.
    unsigned int GetIndexCount() const;

    // Bytes of one field of the given type.
    static unsigned int GetIndexSize(DataVarType_e type);
    unsigned int GetIndexSizeFromTypeList() const;
    // True when the stream is exactly as long as the type list says.
    bool VerifyTypeListIsFullyLoaded() const;

    // Encodes the values into the stream (an empty value list leaves the stream
    // as it is). Always true.
    bool Serialize();
    // Decodes the stream into the values; false (values untouched) when the stream
    // length does not match the type list.
    bool Deserialize();

    std::vector<unsigned char> GetIndexStream() const;
    // False when the stream is empty; otherwise points into this descriptor.
    bool GetIndexStream(unsigned char*& ptr, unsigned int& len);
    void SetIndexStream(const std::vector<unsigned char>& stream);
    void SetIndexStream(const unsigned char* ptr, unsigned int len);
    std::vector<DataVarType_e> GetIndexTypeList() const;
    void SetIndexTypeList(const std::vector<DataVarType_e>& types);
    void ClearIndexTypes();

private:
    std::vector<unsigned char> indexStream;
    std::vector<DataVarType_e> indexTypes;
    std::vector<unsigned int> indexValues;
};
