// Output format selection cost: GetValidScalerSettings followed by getVideoMode,
// as one automatic-mode apply pass or one video status poll does it, over a mix
// of common inputs. Single-threaded; reports calls per second.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <log4cpp/Category.hh>
#include <log4cpp/Priority.hh>

#include "output/uhd_vid_format_helper.h"

namespace {

struct Input {
    uint32_t height, width;
    VideoScanType_e scan;
    VideoFrameRate_e rate;
    VideoAspectRatio_e aspect;
};

const Input kMix[] = {
    {1080, 1920, VIDEO_SCAN_TYPE_INTERLACED, VIDEO_FRAME_RATE_25, VIDEO_ASPECT_RATIO_16X9},    // 1080i25
    {720, 1280, VIDEO_SCAN_TYPE_PROGRESSIVE, VIDEO_FRAME_RATE_50, VIDEO_ASPECT_RATIO_16X9},    // 720p50
    {576, 720, VIDEO_SCAN_TYPE_INTERLACED, VIDEO_FRAME_RATE_25, VIDEO_ASPECT_RATIO_4X3},       // 576i25
    {2160, 3840, VIDEO_SCAN_TYPE_PROGRESSIVE, VIDEO_FRAME_RATE_50, VIDEO_ASPECT_RATIO_16X9},   // 2160p50
    {480, 720, VIDEO_SCAN_TYPE_INTERLACED, VIDEO_FRAME_RATE_29_97, VIDEO_ASPECT_RATIO_4X3},    // 480i29.97
    {1080, 1920, VIDEO_SCAN_TYPE_PROGRESSIVE, static_cast<VideoFrameRate_e>(9),                // no row: fall-back
     VIDEO_ASPECT_RATIO_16X9},
};

int SelectOne(const Input& in) {
    uint32_t h = in.height, w = in.width;
    VideoScanType_e scan = in.scan;
    VideoFrameRate_e rate = in.rate;
    VideoAspectRatio_e aspect = in.aspect;
    GetValidScalerSettings(h, w, scan, rate, aspect, 0);
    return getVideoMode(h, w, scan, rate, aspect, 0);
}

void BM_ScalerAndMode_Mix(benchmark::State& state) {
    log4cpp::Category::getInstance("UhdVidFormatHelper").setPriority(log4cpp::Priority::WARN);
    size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(SelectOne(kMix[i]));
        i = (i + 1) % (sizeof(kMix) / sizeof(kMix[0]));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_ScalerAndMode_Mix);

// One input at a time: the fall-back walks the whole table.
void BM_ScalerAndMode_Each(benchmark::State& state) {
    const Input& in = kMix[state.range(0)];
    for (auto _ : state) benchmark::DoNotOptimize(SelectOne(in));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_ScalerAndMode_Each)->DenseRange(0, 5)->ArgName("input");

}  // namespace

BENCHMARK_MAIN();
