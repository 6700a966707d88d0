// The cost of taking an MPEG-TS file as the virtual board's input: opening and
// probing each test stream (what "stream FILE" and STBSIM_STREAM do before the
// board takes its lock). The streams are made with ffmpeg first; the time that
// took, and the first load (which also loads the prober module), are printed.
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "sim/stream_source.h"
#include "tests/sim/ts_streams.h"

namespace {

void Probe(benchmark::State& state, std::string path) {
    for (auto _ : state) {
        stbsim::StreamInput in;
        std::string error;
        if (!stbsim::LoadStreamInput(path, &in, &error)) {
            state.SkipWithError(error.c_str());
            return;
        }
        benchmark::DoNotOptimize(in);
    }
}

double FirstLoadMs(const std::string& path) {
    stbsim::StreamInput in;
    std::string error;
    const auto start = std::chrono::steady_clock::now();
    if (!stbsim::LoadStreamInput(path, &in, &error)) fprintf(stderr, "%s\n", error.c_str());
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

int main(int argc, char** argv) {
    if (!tstest::HaveFfmpeg()) {
        fprintf(stderr, "bench_probe: the ffmpeg command-line tool is needed to make the streams\n");
        return 0;
    }
    const tstest::TsStream* streams[] = {&tstest::kMpeg2Sd, &tstest::kH264Interlaced, &tstest::kH264Progressive,
                                         &tstest::kHevcUhd, &tstest::kTwoProgrammes};
    bool first = true;
    for (const tstest::TsStream* s : streams) {
        std::string why;
        double seconds = 0;
        const std::string path = tstest::MakeTsFile(*s, STBAV_TS_STREAM_DIR, &why, &seconds);
        if (path.empty()) {
            fprintf(stderr, "%s\n", why.c_str());
            return 1;
        }
        if (seconds > 0) printf("ffmpeg made %s in %.2f s\n", s->name, seconds);
        if (first) printf("first load (with the prober module) of %s: %.1f ms\n", s->name, FirstLoadMs(path));
        first = false;
        benchmark::RegisterBenchmark((std::string("BM_Probe/") + s->name).c_str(), Probe, path)
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
