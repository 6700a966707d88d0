// VideoStatusProcessor: reports the video path (selected PID and service, the
// decoded stream's attributes, the output format) and, while the output follows
// the input, asks for the output to be re-applied when the decoded format
// changes. Polled on the poller thread; every reference is owned by the subsystem.
#pragma once

#include <cstdint>
#include <string>

#include "control/config_manager.h"
#include "output/output_manager.h"
#include "output/video_output_format_generator.h"
#include "platform/decoder_types.h"
#include "platform/i_demux.h"
#include "platform/i_video_decoder.h"
#include "platform/i_video_output.h"
#include "status/status_processor.h"

class VideoStatusProcessor : public StatusProcessor {
public:
    // One value per reported item; all start at 0 / empty.
    struct StatusItems_t {
        uint16_t videoPid = 0;                   // selectedserviceVideoPid
        std::string serviceName;                 // selectedserviceServiceName
        uint16_t serviceNum = 0;                 // selectedserviceServiceNum
        VideoStatusType_e videoType = VIDEO_STATUS_TYPE_NONE;  // selectedserviceVideoType
        uint32_t videoSyncStatus = 0;            // selectedserviceVideoSyncStatus (never filled)
        Status_e decodeStatus = STATUS_UNKNOWN;  // videooutputDecode: 1 frames move, 2 they do not
        uint32_t width = 0;                      // videoWidth
        uint32_t height = 0;                     // videoHeight
        VideoAspectRatio_e aspectRatio = VIDEO_ASPECT_RATIO_UNKNOWN;  // videoAspectRatio
        VideoFrameRate_e frameRate = VIDEO_FRAME_RATE_UNKNOWN;        // videoFrameRate
        VideoScanType_e scanType = VIDEO_SCAN_TYPE_UNKNOWN;           // videoScanType
        VideoProfile_e profile = VIDEO_PROFILE_UNKNOWN;               // videoProfile
        VideoLevel_e level = VIDEO_LEVEL_UNKNOWN;                     // videoLevel
        uint32_t inputSupported = 0;             // videoInputSupported
        VideoChromaFormat_e chromaFormat = VIDEO_CHROMA_FORMAT_UNKNOWN;  // videoChromaFormat
        uint32_t averageBitrate = 0;             // videoAverageBitrate
        uint32_t frameCount = 0;                 // not sent
        ChromaBitDepth_e chromaBitDepth = CHROMA_BIT_DEPTH_UNKNOWN;   // videoChromaBitDepth
        uint32_t currentOutputFormat = 0;        // videooutputCurrentOutputFormat (format code)
        VideoResolutionType_e resolutionType = VIDEO_RESOLUTION_TYPE_UNKNOWN;  // videoResolutionType
        uint32_t pcrDisconStatus = 0;            // videoPcrDisconStatus (never filled)
        uint8_t flag = 0;                        // not sent; kept through PID resets
        uint32_t autoFormatStatus = 0;           // videooutputAutoFormatStatus: 1 supported, 2 not
    };

    VideoStatusProcessor(StbAvOpSender& sender, ConfigManager& configManager, OutputManager& outputManager,
                         IVideoDecoder& videoDecoder, IVideoOutput& videoOutput, IDemux& demux);

    bool Process(bool force) override;
    void Clear() override;

    // While the output follows the input: marks video dirty and schedules a
    // configuration run when the decoded format differs from the one last sent.
    // In manual mode a changed resolution is only logged.
    void CheckFormatChange(StatusItems_t& fresh);
    // False for PID 0 and the null PID 8191.
    bool IsNormalVideoPid(unsigned short pid);

private:
    void ReadIdentity(StatusItems_t& fresh);
    void ReadStreamAttributes(StatusItems_t& fresh);
    void ReadOutputFormat(StatusItems_t& fresh);
    Status_e DecodeStatus(StatusItems_t& fresh);
    void KeepOnlyIdentity(StatusItems_t& fresh);
    bool SendAll(const StatusItems_t& fresh, bool sendName, bool force);

    log4cpp::Category& m_VideoLog;
    ConfigManager& m_ConfigManager;
    OutputManager& m_OutputManager;
    IVideoDecoder& m_VideoDecoder;
    IVideoOutput& m_VideoOutput;
    IDemux& m_Demux;
    VideoOutputFormatGenerator m_FormatGenerator;
    StatusItems_t m_Items;         // last sent
    uint32_t m_LastFrameCount = 0;
};
