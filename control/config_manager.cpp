// ConfigManager: the host's configuration operations, by opId. The index an
// operation carries is not used: the board has one output of each kind, index 0.
#include "control/config_manager.h"

#include <string>

#include "toolkit/kt_functor.h"
#include "toolkit/log.h"

namespace {

// opIds acted on outside the tables below (names as in the dictionary).
constexpr unsigned int kOpStatusEnable = 4;   // stbsystemStatusEnable
constexpr unsigned int kOpUpdate = 6;         // stbsystemUpdate
constexpr unsigned int kOpCheckReady = 7;     // stbsystemCheckReady
constexpr unsigned int kOpStatusClear = 8;    // stbsystemStatusClear
constexpr unsigned int kOpServiceName = 249;  // serviceselectionServiceName

constexpr unsigned char kStatusEnable = 1;
constexpr unsigned char kStatusDisable = 2;

// A setting read as one unsigned byte; a failed read is not fatal: the setter
// gets 0, the value the read left.
struct ByteSetting {
    unsigned int opId;
    const char* text;  // "... opId = %d, value = %d"
    void (*apply)(OutputManager& output, IDemux& demux, unsigned char value);
};

const ByteSetting kByteSettings[] = {
    {18, "AV_OP_ANALOGAUDIO_PORT opId = %d, value = %d",
     [](OutputManager& o, IDemux&, unsigned char v) { o.SetAnalogAudioState(0, static_cast<AnalogAudio_e>(v)); }},
    // The level is a gain in two's complement.
    {20, "AV_OP_ANALOGAUDIO_OUTPUT_LEVEL opId = %d, value = %d",
     [](OutputManager& o, IDemux&, unsigned char v) { o.SetAnalogAudioLevelGain(0, static_cast<signed char>(v)); }},
    {114, "AV_OP_COMPOSITE_525_STD opId = %d, value = %d",
     [](OutputManager& o, IDemux&, unsigned char v) { o.SetComposite525Std(0, static_cast<Composite525_e>(v)); }},
    {115, "AV_OP_COMPOSITE_625_STD opId = %d, value = %d",
     [](OutputManager& o, IDemux&, unsigned char v) { o.SetComposite625Std(0, static_cast<Composite625_e>(v)); }},
    // Overlay type 2 turns the caption overlay on; every other value turns it off.
    {155, "AV_OP_OVERLAY_TYPE opId = %d, value = %d",
     [](OutputManager& o, IDemux&, unsigned char v) {
         o.SetOverlayCcState(v == 2 ? ENABLE_STATE_ENABLE : ENABLE_STATE_DISABLE);
     }},
    {156, "AV_OP_OVERLAY_CC_TYPE opId = %d, value = %d",
     [](OutputManager& o, IDemux&, unsigned char v) { o.SetOverlayCcType(static_cast<OverlayCcType_e>(v)); }},
    {157, "AV_OP_OVERLAY_NTSC_CC_DATA_TYPE opId = %d, value = %d",
     [](OutputManager& o, IDemux&, unsigned char v) {
         o.SetOverlayNtscCcDataType(static_cast<OverlayNtscCcType_e>(v));
     }},
    {158, "AV_OP_OVERLAY_DTV_CC_DATA_TYPE opId = %d, value = %d",
     [](OutputManager& o, IDemux&, unsigned char v) { o.SetOverlayDtvCcDataType(static_cast<OverlayDtvCcType_e>(v)); }},
    {242, "AV_OP_SERVICESELECTION_VIDEO_CODEC_TYPE opId = %d, value = %d",
     [](OutputManager&, IDemux& d, unsigned char v) { d.SetServiceVideoCodecType(static_cast<VideoType_e>(v)); }},
    {243, "AV_OP_SERVICESELECTION_AUDIO_CODEC_TYPE1 opId = %d, value = %d",
     [](OutputManager&, IDemux& d, unsigned char v) { d.SetServiceAudioCodecType(static_cast<AudioType_e>(v)); }},
    {254, "AV_OP_COMPOSITE_LINE21_CC opId = %d, value = %d",
     [](OutputManager& o, IDemux&, unsigned char v) { o.SetCompositeLine21Cc(static_cast<Enable_e>(v)); }},
    {261, "AV_OP_VIDEOOUTPUT_INTERFACE opId = %d, value = %d",
     [](OutputManager& o, IDemux&, unsigned char v) {
         o.SetVideoOutputInterface(0, static_cast<VideoOutputInterface_e>(v));
     }},
    // The host's log vocabulary has this one and VIDEOOUTPUT_MANUAL_FORMAT without "AV_OP_".
    {262, "VIDEOOUTPUT_FORMAT_MODE opId = %d, value = %d",
     [](OutputManager& o, IDemux&, unsigned char v) { o.SetVideoFormatMode(0, static_cast<FormatMode_e>(v)); }},
    {263, "AV_OP_VIDEOOUTPUT_FORMAT_MODE_CVBS opId = %d, value = %d",
     [](OutputManager& o, IDemux&, unsigned char v) { o.SetVideoFormatModeCvbs(0, static_cast<FormatMode_e>(v)); }},
};

// A format code read as unsigned 32-bit; a failed read applies 0.
struct FormatSetting {
    unsigned int opId;
    const char* text;
    bool (OutputManager::*apply)(unsigned idx, uint32_t code);
};

const FormatSetting kFormatSettings[] = {
    {266, "VIDEOOUTPUT_MANUAL_FORMAT opId = %d, value = %d", &OutputManager::SetVideoFormat},
    {268, "AV_OP_VIDEOOUTPUT_MANUAL_FORMAT_CVBS opId = %d, value = %d", &OutputManager::SetVideoFormatCvbs},
};

// A service-selection value read as unsigned 16-bit; a failed read drops it
// (after the debug line).
struct ServiceSetting {
    unsigned int opId;
    const char* text;
    enum Action { PID, LOG_ONLY, SERVICE_ID } action;
    EsType_e stream;
};

const ServiceSetting kServiceSettings[] = {
    {245, "AV_OP_SERVICESELECTION_PCR opId = %d, value = %d", ServiceSetting::PID, ES_TYPE_PCR},
    {246, "AV_OP_SERVICESELECTION_VIDEO opId = %d, value = %d", ServiceSetting::PID, ES_TYPE_VIDEO},
    {247, "AV_OP_SERVICESELECTION_AUDIO1 opId = %d, value = %d", ServiceSetting::PID, ES_TYPE_AUDIO},
    // The second audio PID is reported by the host but deliberately not applied.
    {248, "AV_OP_SERVICESELECTION_AUDIO2 opId = %d, value = %d", ServiceSetting::LOG_ONLY, ES_TYPE_AUDIO},
    {250, "AV_OP_SERVICESELECTION_SERVICE_NUM opId = %d, value = %d", ServiceSetting::SERVICE_ID, ES_TYPE_NONE},
};

template <typename Table, size_t N>
const Table* Find(const Table (&table)[N], unsigned int opId) {
    for (const Table& row : table)
        if (row.opId == opId) return &row;
    return nullptr;
}

}  // namespace

ConfigManager::ConfigManager(IDecoderChip& decoderChip, IDemux& demux, OutputManager& outputManager,
                             COpSsDataMap& dictionary, KT::CSchedule& schedule, StatusMonitor& statusMonitor,
                             std::atomic<bool>& readyAgainRequest, std::atomic<bool>& clearDoneRequest)
    : m_Log(stbav::Logger("stbav.configmanager")),
      m_DecoderChip(decoderChip),
      m_Demux(demux),
      m_OutputManager(outputManager),
      m_Dictionary(dictionary),
      m_Schedule(schedule),
      m_StatusMonitor(statusMonitor),
      m_ReadyAgainRequest(readyAgainRequest),
      m_ClearDoneRequest(clearDoneRequest) {}

ConfigManager::~ConfigManager() {
    std::lock_guard<std::mutex> lock(m_EventMutex);
    m_Schedule.Cancel(m_ProcessingEvent);
}

bool ConfigManager::QueueOperation(KT::CSharedPtr<SsOp> op) { return m_Queue.Enqueue(op); }

void ConfigManager::ScheduleConfiguration() {
    std::lock_guard<std::mutex> lock(m_EventMutex);
    m_Schedule.Cancel(m_ProcessingEvent);
    m_ProcessingEvent = m_Schedule.Add(KT::MakeFunctor(this, &ConfigManager::ProcessConfiguration), 0, false);
}

void ConfigManager::ProcessConfiguration() {
    KT::CSharedPtr<SsOp> op;
    while (m_Queue.Dequeue(0, op)) {
        ProcessOperation(*op);
        op.Reset();
    }
    m_OutputManager.ApplySettings(false);
}

void ConfigManager::ProcessOperation(const SsOp& op) {
    const unsigned int opId = op.GetOpId();
    stbav::LogDebug(m_Log, "%s: OpId=%u OpType=%d", "ProcessConfiguration", opId, static_cast<int>(op.GetOpType()));
    const COpSsData* entry = m_Dictionary.GetByOpId(opId);
    if (entry == nullptr) {
        stbav::LogWarn(m_Log, "%s: Unable to find OpId=%u in map!", "ProcessConfiguration", opId);
        return;
    }
    const DataVarType_e type = entry->GetDataType();
    if (HandleSystemOp(op, type) || HandleOutputOp(op, type) || HandleServiceOp(op, type)) return;
    stbav::LogDebug(m_Log, "unhandled opId = %d, data type = %d", static_cast<int>(opId), static_cast<int>(type));
}

bool ConfigManager::HandleSystemOp(const SsOp& op, DataVarType_e type) {
    unsigned char value = 0;
    switch (op.GetOpId()) {
        case kOpStatusEnable:
            if (op.GetData(type, value)) EnableStatus(value);
            return true;
        case kOpUpdate:
            op.GetData(type, value);
            if (value == 1) {
                stbav::LogInfo(m_Log, "start upgrading...");
                m_DecoderChip.Upgrade();
            }
            return true;
        case kOpCheckReady:
            m_ReadyAgainRequest = true;
            return true;
        case kOpStatusClear:
            stbav::LogDebug(m_Log, "STB_OP_SYSTEM_STATUS_CLEAR");
            m_StatusMonitor.ClearStatus();
            m_Demux.ClearBuffer();
            m_ClearDoneRequest = true;
            return true;
        default:
            return false;
    }
}

// 1 brings the chip up (first time only) and starts reporting; 2 stops it.
void ConfigManager::EnableStatus(unsigned char value) {
    if (value == kStatusEnable) {
        stbav::LogDebug(m_Log, "%s: m_StatusMonitor.StartReporting() Enable", "ProcessConfiguration");
        if (!m_ChipInitialized) {
            m_DecoderChip.Initialize();
            m_ChipInitialized = true;
        }
        if (!m_ReportingActive) {
            m_StatusMonitor.StartReporting();
            m_ReportingActive = true;
        }
    } else if (value == kStatusDisable) {
        stbav::LogDebug(m_Log, "%s: m_StatusMonitor.StopReporting() Disable", "ProcessConfiguration");
        if (m_ReportingActive) {
            m_StatusMonitor.StopReporting();
            m_ReportingActive = false;
        }
    }
}

bool ConfigManager::HandleOutputOp(const SsOp& op, DataVarType_e type) {
    const unsigned int opId = op.GetOpId();
    if (const ByteSetting* s = Find(kByteSettings, opId)) {
        unsigned char value = 0;
        op.GetData(type, value);
        stbav::LogDebug(m_Log, s->text, static_cast<int>(opId), static_cast<int>(value));
        s->apply(m_OutputManager, m_Demux, value);
        return true;
    }
    if (const FormatSetting* s = Find(kFormatSettings, opId)) {
        unsigned int value = 0;
        op.GetData(type, value);
        stbav::LogDebug(m_Log, s->text, static_cast<int>(opId), static_cast<int>(value));
        (m_OutputManager.*(s->apply))(0, value);
        return true;
    }
    return false;
}

bool ConfigManager::HandleServiceOp(const SsOp& op, DataVarType_e type) {
    const unsigned int opId = op.GetOpId();
    if (opId == kOpServiceName) {
        const std::string name = op.GetDataString();
        stbav::LogDebug(m_Log, "AV_OP_SERVICESELECTION_SERVICE_NAME opId = %d, value = %s", static_cast<int>(opId),
                         name.c_str());
        if (op.GetDataLength() != 0) m_Demux.SetServiceName(name);
        return true;
    }
    const ServiceSetting* s = Find(kServiceSettings, opId);
    if (s == nullptr) return false;
    unsigned short value = 0;
    const bool read = op.GetData(type, value);
    stbav::LogDebug(m_Log, s->text, static_cast<int>(opId), static_cast<int>(value));
    if (!read) return true;
    if (s->action == ServiceSetting::PID) {
        m_Demux.SetPid(value, s->stream, 0);
    } else if (s->action == ServiceSetting::SERVICE_ID) {
        m_Demux.SetServiceId(value);
    }
    return true;
}
