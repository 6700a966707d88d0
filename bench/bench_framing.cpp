// Frame encode and decode speed for typical op images, against the 115200 bit/s
// line (about 11,520 bytes/s with 8N1 framing). Bytes are counted as they stand
// on the line (stuffed frame), so bytes_per_second / 11520 is the headroom.
#include <benchmark/benchmark.h>

#include <deque>
#include <random>
#include <string>
#include <vector>

#include "protocol/ss_op.h"
#include "toolkit/kt_mutex.h"
#include "toolkit/kt_shared_ptr.h"
#include "transport/uart_framing.h"

namespace {

using Bytes = std::vector<unsigned char>;

// 0: 7-byte status op; 1: 60-byte string op; 2: 245-byte max chunk, ~5% special bytes.
Bytes Image(int kind) {
    SsOp op(OP_TYPE_DATA, 0x0105);
    op.SetIndexList({1});
    if (kind == 0) {
        op.SetDataU8(3);
    } else if (kind == 1) {
        op.SetDataU8(std::string(54, 'n'));
    } else {
        std::mt19937 rng(7);
        Bytes value(240);
        for (auto& b : value) b = static_cast<unsigned char>(rng() % 20 == 0 ? 0x0F + rng() % 5 : 0x20 + rng() % 0x60);
        op.SetDataU8(value.data(), static_cast<unsigned>(value.size()));
    }
    Bytes image;
    op.GetSerializedOp(image);
    return image;
}

const char* Label(int kind) { return kind == 0 ? "status op" : kind == 1 ? "string op" : "max chunk 5% special"; }

void BM_FrameEncode(benchmark::State& state) {
    const Bytes image = Image(static_cast<int>(state.range(0)));
    const size_t lineBytes = FrameEncoder::EncodeToBytes(image).size();
    std::vector<FrameWrite> writes;
    for (auto _ : state) {
        FrameEncoder::Encode(image.data(), image.size(), writes);
        benchmark::DoNotOptimize(writes.data());
    }
    state.SetItemsProcessed(state.iterations());
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * lineBytes));
    state.SetLabel(std::string(Label(static_cast<int>(state.range(0)))) + ", image " + std::to_string(image.size()) +
                   " B, line " + std::to_string(lineBytes) + " B");
}

void BM_FrameDecode(benchmark::State& state) {
    const Bytes line = FrameEncoder::EncodeToBytes(Image(static_cast<int>(state.range(0))));
    FrameDecoder decoder;
    Bytes frame;
    for (auto _ : state) {
        for (unsigned char b : line) decoder.Push(b, frame);
        benchmark::DoNotOptimize(frame.data());
    }
    state.SetItemsProcessed(state.iterations());
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * line.size()));
    state.SetLabel(Label(static_cast<int>(state.range(0))));
}

// What "UART Px" does per frame: pop each byte from the shared queue under the
// lock, decode, append the spare byte and parse into a shared operation.
void BM_FrameReceivePath(benchmark::State& state) {
    const Bytes line = FrameEncoder::EncodeToBytes(Image(static_cast<int>(state.range(0))));
    KT::CMutex lock("CUartAdapter");
    std::deque<unsigned char> queue;
    FrameDecoder decoder;
    Bytes frame;
    for (auto _ : state) {
        queue.insert(queue.end(), line.begin(), line.end());
        while (true) {
            lock.Lock();
            if (queue.empty()) {
                lock.Unlock();
                break;
            }
            unsigned char b = queue.front();
            queue.pop_front();
            lock.Unlock();
            if (!decoder.Push(b, frame)) continue;
            frame.push_back(0);
            KT::CSharedPtr<SsOp> op(new SsOp());
            benchmark::DoNotOptimize(op->DeserializeOp(frame.data(), static_cast<unsigned>(frame.size())));
        }
    }
    state.SetItemsProcessed(state.iterations());
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * line.size()));
    state.SetLabel(Label(static_cast<int>(state.range(0))));
}

}  // namespace

BENCHMARK(BM_FrameEncode)->DenseRange(0, 2);
BENCHMARK(BM_FrameDecode)->DenseRange(0, 2);
BENCHMARK(BM_FrameReceivePath)->DenseRange(0, 2);

BENCHMARK_MAIN();
