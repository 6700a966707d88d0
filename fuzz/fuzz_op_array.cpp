// Fuzz target: the op image's length-prefixed arrays and what is built on them.
// Input: byte 0 the offset, byte 1 picks up to four index field types, the rest
// the buffer (copied to a block of exactly its size, so any read past it is
// caught). Runs SsOp::DeserializeArray, CIndex over the array with those types,
// SsOp::DeserializeOp (given one spare byte, as the receiver gives it) and every
// typed read of the result.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "fuzz/fuzz_quiet.h"
#include "protocol/c_index.h"
#include "protocol/ss_op.h"
#include "toolkit/kt_address.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2) return 0;
    const unsigned offset = data[0];
    static const DataVarType_e kTypes[4] = {VT_UINT8, VT_UINT16, VT_UINT32, VT_INT8};
    std::vector<DataVarType_e> types;
    for (unsigned i = 0; i < (data[1] & 3u) + 1; ++i) types.push_back(kTypes[(data[1] >> (2 + 2 * i)) & 3u]);
    const size_t len = size - 2;
    std::unique_ptr<unsigned char[]> exact(new unsigned char[len + 1]);
    std::copy(data + 2, data + size, exact.get());
    exact[len] = 0;

    std::vector<unsigned char> array;
    if (SsOp::DeserializeArray(exact.get(), static_cast<unsigned>(len), offset, array) != 0) {
        CIndex index(array, types);
        if (index.Deserialize()) {
            unsigned value = 0;
            for (unsigned i = 0; i < index.GetIndexCount(); ++i) index.GetIndex(i, value);
            index.Serialize();
        }
    }

    SsOp op;
    if (op.DeserializeOp(exact.get(), static_cast<unsigned>(len)) == 0) return 0;
    // Each typed read into a value of its own type.
    const auto read = [&op](auto value, DataVarType_e type) { op.GetData(type, value); };
    read(uint8_t{}, VT_UINT8);
    read(char{}, VT_INT8);
    read(uint16_t{}, VT_UINT16);
    read(int16_t{}, VT_INT16);
    read(uint32_t{}, VT_UINT32);
    read(int32_t{}, VT_INT32);
    read(bool{}, VT_BOOL);
    read(0LL, VT_INT64);
    read(0ULL, VT_UINT64);
    read(KT::CIpAddress{}, VT_IP);
    read(KT::CMacAddress{}, VT_MAC);
    op.GetLastIndex();
    op.GetDataString();
    std::vector<unsigned char> image;
    op.GetSerializedOp(image);
    unsigned chunkOffset = 0;
    unsigned char* ptr = nullptr;
    unsigned plen = 0;
    while (op.GetSerializedOp(ptr, plen, chunkOffset) != 0 && chunkOffset < op.GetDataLength()) {
    }
    return 0;
}
