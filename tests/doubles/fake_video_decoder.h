// FakeVideoDecoder: recording double of IVideoDecoder and IDecoderControl. Reports
// the stream attributes held in its state (settable with Configure, the format
// also with SetReportedFormat), the sync status (read by nothing above the
// platform) always 0; SetCodec stores the codec that GetCodec reports. A failing
// GetFormat returns false with the outputs untouched. Any thread.
#pragma once

#include <map>
#include <string>
#include <utility>

#include "platform/i_video_decoder.h"
#include "tests/doubles/fake_base.h"

namespace stbav_test {

struct FakeVideoDecoderState : VideoFormatState {
    VideoType_e codec = VIDEO_TYPE_NONE;
    VideoChromaFormat_e chromaFormat = VIDEO_CHROMA_FORMAT_UNKNOWN;
    VideoProfile_e profile = VIDEO_PROFILE_UNKNOWN;
    VideoLevel_e level = VIDEO_LEVEL_UNKNOWN;
    ChromaBitDepth_e bitDepth = CHROMA_BIT_DEPTH_UNKNOWN;
    std::map<uint16_t, std::string> serviceNames;  // programme number -> name
    uint32_t bitrate = 0;
    uint32_t frameCount = 0;
    uint32_t decodeFailureReason = 0;
};

class FakeVideoDecoder : public IVideoDecoder, public FakeControl<FakeVideoDecoderState> {
public:
    explicit FakeVideoDecoder(CallLog& log) : FakeControl(log, "IVideoDecoder") {}

    // Test helper: the format GetFormat reports.
    void SetReportedFormat(const VideoFormatState& f) {
        Configure([&](VideoFormatState& s) { s = f; });
    }

    // Fails when the codec is the one already set.
    bool SetCodec(VideoType_e codec) override {
        return Apply([&](State& s) { return std::exchange(s.codec, codec) != codec; }, "SetCodec", codec);
    }
    VideoType_e GetCodec() override { return Report("GetCodec", &State::codec); }
    bool GetFormat(uint32_t& width, uint32_t& height, VideoScanType_e& scanType, VideoFrameRate_e& frameRate,
                   VideoAspectRatio_e& aspectRatio) override {
        return ReportFormat(width, height, scanType, frameRate, aspectRatio);
    }
    VideoChromaFormat_e GetChromaFormat() override { return Report("GetChromaFormat", &State::chromaFormat); }
    VideoScanType_e GetVideoScanType() override { return Report("GetVideoScanType", &State::scanType); }
    VideoAspectRatio_e GetVideoAspectRatio() override { return Report("GetVideoAspectRatio", &State::aspectRatio); }
    VideoProfile_e GetProfile() override { return Report("GetProfile", &State::profile); }
    VideoLevel_e GetLevel() override { return Report("GetLevel", &State::level); }
    std::string GetServiceName(uint16_t programNumber) override {
        auto name = [&](const State& s) {
            auto it = s.serviceNames.find(programNumber);
            return it == s.serviceNames.end() ? std::string() : it->second;
        };
        return Query(name, "GetServiceName", programNumber);
    }
    ChromaBitDepth_e GetBitDepth() override { return Report("GetBitDepth", &State::bitDepth); }
    uint32_t GetBitrate() override { return Report("GetBitrate", &State::bitrate); }
    uint32_t GetFrameCount() override { return Report("GetFrameCount", &State::frameCount); }
    uint32_t GetDecodeFailureReason() override { return Report("GetDecodeFailureReason", &State::decodeFailureReason); }
    uint32_t GetVideoSyncStatus() override { return Query([](const State&) { return 0u; }, "GetVideoSyncStatus"); }

};

}  // namespace stbav_test
