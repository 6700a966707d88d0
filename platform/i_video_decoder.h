// IVideoDecoder: what the decoder knows about the received video. Getters run on
// the poller thread (status polling and configuration processing); they read
// platform state that other threads refresh, without locks promised to callers.
#pragma once

#include <cstdint>
#include <string>

#include "platform/decoder_types.h"

class IVideoDecoder {
public:
    virtual ~IVideoDecoder() = default;

    // Records the codec of the selected service. True when it changed, false when
    // it was already the current codec.
    virtual bool SetCodec(VideoType_e codec) = 0;
    // Codec the player is configured with; VIDEO_TYPE_NONE on a platform failure.
    virtual VideoType_e GetCodec() = 0;
    // Decoded picture size, scan type, frame rate and aspect ratio. True on
    // success; false on a platform failure, with the outputs untouched. Zero
    // width, height or rate means the decoder has not recognised the input yet.
    virtual bool GetFormat(uint32_t& width, uint32_t& height, VideoScanType_e& scanType,
                           VideoFrameRate_e& frameRate, VideoAspectRatio_e& aspectRatio) = 0;
    // Chroma format of the stream; 0 when unknown or on failure.
    virtual VideoChromaFormat_e GetChromaFormat() = 0;
    // Scan type of the stream; 0 when unknown or on failure.
    virtual VideoScanType_e GetVideoScanType() = 0;
    // Aspect ratio of the stream; 0 when unknown or on failure.
    virtual VideoAspectRatio_e GetVideoAspectRatio() = 0;
    // Profile of the stream; 0 when unknown or on failure.
    virtual VideoProfile_e GetProfile() = 0;
    // Level of the stream; 0 when unknown or on failure.
    virtual VideoLevel_e GetLevel() = 0;
    // Name of the service with that programme number; empty when unknown.
    virtual std::string GetServiceName(uint16_t programNumber) = 0;
    // Bit depth of the stream; 0 when unknown or on failure.
    virtual ChromaBitDepth_e GetBitDepth() = 0;
    // Average bit rate; 0 when unknown.
    virtual uint32_t GetBitrate() = 0;
    // Decoded frame count; 0 on failure.
    virtual uint32_t GetFrameCount() = 0;
    // Why the input cannot be decoded; 0 when it can (or when unknown).
    virtual uint32_t GetDecodeFailureReason() = 0;
    // Video sync status; 0 when unknown.
    virtual uint32_t GetVideoSyncStatus() = 0;

protected:
    IVideoDecoder() = default;
    IVideoDecoder(const IVideoDecoder&) = delete;
    IVideoDecoder& operator=(const IVideoDecoder&) = delete;
};
