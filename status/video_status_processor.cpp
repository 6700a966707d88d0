// VideoStatusProcessor: one poll of the video path and the automatic format follow-up.
#include "status/video_status_processor.h"

#include "output/uhd_vid_format.h"
#include "output/uhd_vid_format_helper.h"
#include "toolkit/log.h"

namespace {

// Status opIds (names as in the dictionary).
enum VideoStatusOp : unsigned int {
    kOpVideoPid = 220,             // selectedserviceVideoPid
    kOpVideoType = 221,            // selectedserviceVideoType
    kOpServiceNum = 225,           // selectedserviceServiceNum
    kOpServiceName = 226,          // selectedserviceServiceName
    kOpVideoSyncStatus = 229,      // selectedserviceVideoSyncStatus
    kOpCurrentOutputFormat = 267,  // videooutputCurrentOutputFormat
    kOpAutoFormatStatus = 269,     // videooutputAutoFormatStatus
    kOpDecode = 270,               // videooutputDecode
    kOpWidth = 271,
    kOpHeight = 272,
    kOpAspectRatio = 273,
    kOpFrameRate = 274,
    kOpScanType = 275,
    kOpProfile = 276,
    kOpLevel = 277,
    kOpInputSupported = 278,
    kOpPcrDisconStatus = 279,
    kOpChromaFormat = 280,
    kOpAverageBitrate = 281,
    kOpResolutionType = 282,
    kOpChromaBitDepth = 283,
};

constexpr unsigned int kUnrecognisedInputLine = 87;

struct OutputFormat {
    uint32_t width = 0;
    uint32_t height = 0;
    VideoScanType_e scanType = VIDEO_SCAN_TYPE_UNKNOWN;
    VideoFrameRate_e frameRate = VIDEO_FRAME_RATE_UNKNOWN;
    VideoAspectRatio_e aspectRatio = VIDEO_ASPECT_RATIO_UNKNOWN;
};

uint32_t EncodeFormat(const OutputFormat& f) {
    return UhdVidFormat(SizeToResolution(f.height, f.width), GetUhdScanType(f.scanType),
                        GetUhdAspectRatio(f.aspectRatio), GetUhdFrameRate(f.frameRate))
        .GetId();
}

VideoResolutionType_e ResolutionType(uint32_t height) {
    if (height < 720) return VIDEO_RESOLUTION_TYPE_SD;
    if (height < 2160) return VIDEO_RESOLUTION_TYPE_HD;
    return VIDEO_RESOLUTION_TYPE_UHD;
}

bool IsKnownCodec(VideoType_e type) {
    return type == VIDEO_TYPE_MPEG2 || type == VIDEO_TYPE_H264 || type == VIDEO_TYPE_HEVC || type == VIDEO_TYPE_AVS ||
           type == VIDEO_TYPE_AVS2;
}

}  // namespace

VideoStatusProcessor::VideoStatusProcessor(StbAvOpSender& sender, ConfigManager& configManager,
                                           OutputManager& outputManager, IVideoDecoder& videoDecoder,
                                           IVideoOutput& videoOutput, IDemux& demux)
    : StatusProcessor(sender),
      m_VideoLog(stbav::Logger("tevrin.videoStatusProcess")),
      m_ConfigManager(configManager),
      m_OutputManager(outputManager),
      m_VideoDecoder(videoDecoder),
      m_VideoOutput(videoOutput),
      m_Demux(demux) {
    stbav::LogDebug(m_VideoLog, "VideoStatusProcessor");
}

bool VideoStatusProcessor::Process(bool force) {
    StatusItems_t fresh;
    ReadIdentity(fresh);
    m_VideoDecoder.GetFormat(fresh.width, fresh.height, fresh.scanType, fresh.frameRate, fresh.aspectRatio);
    if (fresh.width == 0 || fresh.height == 0 || fresh.frameRate == VIDEO_FRAME_RATE_UNKNOWN) {
        stbav::LogDebug(m_VideoLog, "%s(%u) The input source cannot be fully recognized. Keep the last setting",
                         "Process", kUnrecognisedInputLine);
        OutputFormat out;
        m_VideoOutput.GetFormat(out.width, out.height, out.scanType, out.frameRate, out.aspectRatio);
        fresh.currentOutputFormat = EncodeFormat(out);
        fresh.decodeStatus = DecodeStatus(fresh);
    } else {
        ReadStreamAttributes(fresh);
        ReadOutputFormat(fresh);
    }
    const bool normalPid = IsNormalVideoPid(fresh.videoPid);
    if (!normalPid) KeepOnlyIdentity(fresh);
    return SendAll(fresh, !fresh.serviceName.empty() || !normalPid, force);
}

void VideoStatusProcessor::ReadIdentity(StatusItems_t& fresh) {
    fresh.videoPid = m_Demux.GetPid(ES_TYPE_VIDEO);
    fresh.serviceNum = m_Demux.GetServiceId();
    const VideoType_e codec = m_VideoDecoder.GetCodec();
    fresh.videoType = static_cast<VideoStatusType_e>(codec);
    if (IsKnownCodec(codec)) m_VideoDecoder.SetCodec(codec);
}

void VideoStatusProcessor::ReadStreamAttributes(StatusItems_t& fresh) {
    fresh.serviceName = m_VideoDecoder.GetServiceName(fresh.serviceNum);
    fresh.profile = m_VideoDecoder.GetProfile();
    fresh.level = m_VideoDecoder.GetLevel();
    fresh.inputSupported = m_VideoDecoder.GetDecodeFailureReason();
    fresh.chromaFormat = m_VideoDecoder.GetChromaFormat();
    fresh.averageBitrate = m_VideoDecoder.GetBitrate();
    fresh.chromaBitDepth = m_VideoDecoder.GetBitDepth();
    fresh.decodeStatus = DecodeStatus(fresh);
}

// The current output format and resolution type are taken as the display has
// them; the support check runs on the SD format that goes out beside an HD one.
void VideoStatusProcessor::ReadOutputFormat(StatusItems_t& fresh) {
    OutputFormat out;
    m_VideoOutput.GetFormat(out.width, out.height, out.scanType, out.frameRate, out.aspectRatio);
    fresh.currentOutputFormat = EncodeFormat(out);
    fresh.resolutionType = ResolutionType(out.height);
    GetSDFormatSimultaneousHD(out.width, out.height, out.scanType, out.frameRate, out.aspectRatio);
    CheckFormatChange(fresh);
    if (m_OutputManager.GetFormatMode(0) == FORMAT_MODE_AUTO) {
        const bool valid =
            m_FormatGenerator.GetFormat(out.height, out.width, out.scanType, out.frameRate, out.aspectRatio).valid;
        fresh.autoFormatStatus = valid ? 1 : 2;
    }
}

Status_e VideoStatusProcessor::DecodeStatus(StatusItems_t& fresh) {
    fresh.frameCount = m_VideoDecoder.GetFrameCount();
    if (fresh.frameCount == m_LastFrameCount) return STATUS_INACTIVE;
    m_LastFrameCount = fresh.frameCount;
    return STATUS_ACTIVE;
}

// Without a usable PID only the service identity and the output format are kept.
void VideoStatusProcessor::KeepOnlyIdentity(StatusItems_t& fresh) {
    StatusItems_t kept;
    kept.serviceNum = fresh.serviceNum;
    kept.serviceName = fresh.serviceName;
    kept.currentOutputFormat = fresh.currentOutputFormat;
    kept.flag = fresh.flag;
    fresh = kept;
}

void VideoStatusProcessor::CheckFormatChange(StatusItems_t& fresh) {
    const VideoOutputInterface_e outputInterface = m_OutputManager.GetVideoOutputInterface();
    const bool manual =
        (outputInterface == VIDEO_OUTPUT_INTERFACE_HD && m_OutputManager.GetFormatMode(0) == FORMAT_MODE_MANUAL) ||
        (outputInterface == VIDEO_OUTPUT_INTERFACE_CVBS && m_OutputManager.GetFormatModeCvbs(0) == FORMAT_MODE_MANUAL);
    const StatusItems_t& last = m_Items;
    const bool sameSize =
        fresh.width == last.width && fresh.height == last.height && fresh.aspectRatio == last.aspectRatio;
    if (!manual) {
        if (sameSize && fresh.frameRate == last.frameRate && fresh.scanType == last.scanType) return;
        m_OutputManager.SetVideoDirty(0);
        m_ConfigManager.ScheduleConfiguration();
        return;
    }
    if (!sameSize && fresh.width != 0)
        stbav::LogError(m_VideoLog, "%s %d, %d ,%d", "CheckFormatChange", static_cast<int>(fresh.width),
                         static_cast<int>(fresh.height), static_cast<int>(fresh.aspectRatio));
}

bool VideoStatusProcessor::IsNormalVideoPid(unsigned short pid) { return pid != 0 && pid != m_InvalidPid; }

bool VideoStatusProcessor::SendAll(const StatusItems_t& fresh, bool sendName, bool force) {
    StatusItems_t& last = m_Items;
    bool sent = false;
    if (sendName) sent |= SendNewStatus(kOpServiceName, 0, fresh.serviceName, last.serviceName, force);
    sent |= SendNewStatus(kOpVideoPid, 0, fresh.videoPid, last.videoPid, force);
    sent |= SendNewStatus(kOpServiceNum, 0, fresh.serviceNum, last.serviceNum, force);
    sent |= SendNewStatus(kOpVideoType, 0, fresh.videoType, last.videoType, force);
    sent |= SendNewStatus(kOpVideoSyncStatus, 0, fresh.videoSyncStatus, last.videoSyncStatus, force);
    sent |= SendNewStatus(kOpDecode, 0, fresh.decodeStatus, last.decodeStatus, force);
    sent |= SendNewStatus(kOpWidth, 0, fresh.width, last.width, force);
    sent |= SendNewStatus(kOpHeight, 0, fresh.height, last.height, force);
    sent |= SendNewStatus(kOpAspectRatio, 0, fresh.aspectRatio, last.aspectRatio, force);
    sent |= SendNewStatus(kOpFrameRate, 0, fresh.frameRate, last.frameRate, force);
    sent |= SendNewStatus(kOpScanType, 0, fresh.scanType, last.scanType, force);
    sent |= SendNewStatus(kOpProfile, 0, fresh.profile, last.profile, force);
    sent |= SendNewStatus(kOpLevel, 0, fresh.level, last.level, force);
    sent |= SendNewStatus(kOpInputSupported, 0, fresh.inputSupported, last.inputSupported, force);
    sent |= SendNewStatus(kOpChromaFormat, 0, fresh.chromaFormat, last.chromaFormat, force);
    sent |= SendNewStatus(kOpAverageBitrate, 0, fresh.averageBitrate, last.averageBitrate, force);
    sent |= SendNewStatus(kOpChromaBitDepth, 0, fresh.chromaBitDepth, last.chromaBitDepth, force);
    sent |= SendNewStatus(kOpCurrentOutputFormat, 0, fresh.currentOutputFormat, last.currentOutputFormat, force);
    sent |= SendNewStatus(kOpResolutionType, 0, fresh.resolutionType, last.resolutionType, force);
    sent |= SendNewStatus(kOpAutoFormatStatus, 0, fresh.autoFormatStatus, last.autoFormatStatus, force);
    sent |= SendNewStatus(kOpPcrDisconStatus, 0, fresh.pcrDisconStatus, last.pcrDisconStatus, force);
    return sent;
}

void VideoStatusProcessor::Clear() { m_Items = StatusItems_t(); }
