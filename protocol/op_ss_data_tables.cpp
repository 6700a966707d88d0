// The operation dictionary: every operation the host and the daemon exchange,
// with its opId, value type and index shape. Table order and the out-of-order
// opIds inside a table are part of the protocol. Built by static initialisation.
//
// Packet identifiers are typed unevenly on purpose: entries named ...Pid carry
// VT_INT16, the service-selection PIDs (serviceselectionPcr, ...Video, ...Audio1,
// ...Audio2) carry VT_UINT16. stbsystemSoftwareVersion alone has a 4-byte index.
#include "protocol/op_ss_data_tables.h"

#include "protocol/c_op_ss_data_map.h"

namespace {

COpSsData* Entry(const char* name, unsigned int opId, DataVarType_e dataType, DataVarType_e indexType) {
    return new COpSsData(name, opId, CIndex(1, indexType), dataType);
}

}  // namespace

COpSsData* analogAudioSsData[] = {
    Entry("analogaudioPort", 18, VT_UINT8, VT_UINT8),  // 0x0012
    Entry("analogaudioDiscreteChannel", 19, VT_UINT8, VT_UINT8),  // 0x0013
    Entry("analogaudioOutputLevel", 20, VT_INT8, VT_UINT8),  // 0x0014
    nullptr,
};

COpSsData* audioPidLockSsData[] = {
    Entry("audiopidlockPid", 64, VT_INT16, VT_UINT8),  // 0x0040
    Entry("audiopidlockType", 65, VT_UINT8, VT_UINT8),  // 0x0041
    Entry("audiopidlockBackupPid", 66, VT_INT16, VT_UINT8),  // 0x0042
    Entry("audiopidlockBackupType", 67, VT_UINT8, VT_UINT8),  // 0x0043
    Entry("audiopidlockAudioTypeMismatchPresence", 68, VT_UINT8, VT_UINT8),  // 0x0044
    nullptr,
};

COpSsData* audioSrvSsData[] = {
    Entry("audiosrvOperationalMode", 69, VT_UINT8, VT_UINT8),  // 0x0045
    Entry("audiosrvDownmixOp", 70, VT_UINT8, VT_UINT8),  // 0x0046
    Entry("audiosrvDynamicRangeState", 71, VT_UINT8, VT_UINT8),  // 0x0047
    Entry("audiosrvAudioFormatMode", 72, VT_UINT8, VT_UINT8),  // 0x0048
    Entry("audiosrvBitDepth", 73, VT_UINT8, VT_UINT8),  // 0x0049
    Entry("audiosrvBitrate", 74, VT_UINT32, VT_UINT8),  // 0x004A
    Entry("audiosrvSamplingRate", 75, VT_UINT32, VT_UINT8),  // 0x004B
    Entry("audiosrvBitsPerSample", 76, VT_UINT32, VT_UINT8),  // 0x004C
    Entry("audiosrvChannelCoding", 77, VT_UINT8, VT_UINT8),  // 0x004D
    Entry("audiosrvDialNormValue", 78, VT_INT8, VT_UINT8),  // 0x004E
    Entry("audiosrvEncodedType", 79, VT_UINT8, VT_UINT8),  // 0x004F
    Entry("audiosrvDecoding", 80, VT_UINT8, VT_UINT8),  // 0x0050
    nullptr,
};

COpSsData* avSsConfigSsData[] = {
    Entry("avssconfigAudioCountAnalog", 101, VT_UINT8, VT_UINT8),  // 0x0065
    Entry("avssconfigAudioCountDigital", 102, VT_UINT8, VT_UINT8),  // 0x0066
    Entry("avssconfigAudioDecodeCount", 103, VT_UINT8, VT_UINT8),  // 0x0067
    Entry("avssconfigGenlockAvail", 104, VT_BOOL, VT_UINT8),  // 0x0068
    Entry("avssconfigDecoderReset", 105, VT_UINT8, VT_UINT8),  // 0x0069
    Entry("avssconfigDecoderResetEvent", 106, VT_UINT8, VT_UINT8),  // 0x006A
    Entry("avssHeartBeat", 112, VT_UINT32, VT_UINT8),  // 0x0070
    Entry("avssconfigDisableDecoderReset", 107, VT_UINT8, VT_UINT8),  // 0x006B
    Entry("avssconfigScte35ProcessingAvail", 108, VT_UINT8, VT_UINT8),  // 0x006C
    nullptr,
};

COpSsData* compositeSsData[] = {
    Entry("compositeNtscPedestal", 113, VT_UINT8, VT_UINT8),  // 0x0071
    Entry("composite525Std", 114, VT_UINT8, VT_UINT8),  // 0x0072
    Entry("composite625Std", 115, VT_UINT8, VT_UINT8),  // 0x0073
    Entry("compositeVideoLossMode", 116, VT_UINT8, VT_UINT8),  // 0x0074
    Entry("compositeLine21Cc", 254, VT_UINT8, VT_UINT8),  // 0x00FE
    nullptr,
};

COpSsData* stbAvSubsystemSsData[] = {
    Entry("stbsystemReset", 0, VT_INT8, VT_UINT8),  // 0x0000
    Entry("stbsystemHeartBeatCount", 1, VT_INT8, VT_UINT8),  // 0x0001
    Entry("stbsystemSoftwareVersion", 2, VT_UINT32, VT_UINT32),  // 0x0002
    Entry("stbsystemReady", 3, VT_INT8, VT_UINT8),  // 0x0003
    Entry("stbsystemStatusEnable", 4, VT_UINT8, VT_UINT8),  // 0x0004
    Entry("stbsystemStatusUpdate", 5, VT_UINT8, VT_UINT8),  // 0x0005
    Entry("stbsystemUpdate", 6, VT_UINT8, VT_UINT8),  // 0x0006
    Entry("stbsystemCheckReady", 7, VT_UINT8, VT_UINT8),  // 0x0007
    Entry("stbsystemStatusClear", 8, VT_UINT8, VT_UINT8),  // 0x0008
    Entry("stbsystemStatusClearDone", 9, VT_UINT8, VT_UINT8),  // 0x0009
    nullptr,
};

COpSsData* overlaySsData[] = {
    Entry("overlayType", 155, VT_UINT8, VT_UINT8),  // 0x009B
    Entry("overlayCcType", 156, VT_UINT8, VT_UINT8),  // 0x009C
    Entry("overlayNtscCcDataType", 157, VT_UINT8, VT_UINT8),  // 0x009D
    Entry("overlayDtvCcDataType", 158, VT_UINT8, VT_UINT8),  // 0x009E
    Entry("overlayDvbSubtitleLanguage", 159, VT_STRING, VT_UINT8),  // 0x009F
    Entry("overlayDvbSubtitlePid", 160, VT_INT16, VT_UINT8),  // 0x00A0
    Entry("overlayTeletextPage", 161, VT_STRING, VT_UINT8),  // 0x00A1
    Entry("overlayImageTriggerMode", 162, VT_UINT8, VT_UINT8),  // 0x00A2
    Entry("overlayImageScte35EventId", 163, VT_UINT32, VT_UINT8),  // 0x00A3
    Entry("overlayImageDithering", 164, VT_UINT8, VT_UINT8),  // 0x00A4
    Entry("overlayImageTransition", 165, VT_UINT8, VT_UINT8),  // 0x00A5
    nullptr,
};

COpSsData* pidLockSsData[] = {
    Entry("pidlockPcrPid", 168, VT_INT16, VT_UINT8),  // 0x00A8
    Entry("pidlockVideoPid", 169, VT_INT16, VT_UINT8),  // 0x00A9
    Entry("pidlockVideoType", 170, VT_UINT8, VT_UINT8),  // 0x00AA
    Entry("pidlockBackupPcrPid", 171, VT_INT16, VT_UINT8),  // 0x00AB
    Entry("pidlockBackupVideoPid", 172, VT_INT16, VT_UINT8),  // 0x00AC
    Entry("pidlockBackupVideoType", 173, VT_UINT8, VT_UINT8),  // 0x00AD
    Entry("pidlockVideoTypeMismatchPresence", 174, VT_UINT8, VT_UINT8),  // 0x00AE
    nullptr,
};

COpSsData* selectedAudioSsData[] = {
    Entry("selectedaudioPid", 213, VT_INT16, VT_UINT8),  // 0x00D5
    Entry("selectedaudioType", 214, VT_UINT8, VT_UINT8),  // 0x00D6
    Entry("selectedaudioPidPresence", 215, VT_UINT8, VT_UINT8),  // 0x00D7
    Entry("selectedaudioSyncStatus", 216, VT_UINT8, VT_UINT8),  // 0x00D8
    nullptr,
};

COpSsData* selectedOtherSsData[] = {
    Entry("selectedotherPid", 217, VT_INT16, VT_UINT8),  // 0x00D9
    nullptr,
};

COpSsData* selectedServiceSsData[] = {
    Entry("selectedserviceVideoPid", 220, VT_INT16, VT_UINT8),  // 0x00DC
    Entry("selectedserviceVideoType", 221, VT_UINT8, VT_UINT8),  // 0x00DD
    Entry("selectedserviceVideoPidPresence", 222, VT_UINT8, VT_UINT8),  // 0x00DE
    Entry("selectedservicePcrPid", 223, VT_INT16, VT_UINT8),  // 0x00DF
    Entry("selectedservicePcrPidPresence", 224, VT_UINT8, VT_UINT8),  // 0x00E0
    Entry("selectedserviceServiceNum", 225, VT_UINT16, VT_UINT8),  // 0x00E1
    Entry("selectedserviceServiceName", 226, VT_STRING, VT_UINT8),  // 0x00E2
    Entry("selectedserviceServicePresence", 227, VT_UINT8, VT_UINT8),  // 0x00E3
    Entry("selectedserviceTuneCount", 228, VT_UINT16, VT_UINT8),  // 0x00E4
    Entry("selectedserviceVideoSyncStatus", 229, VT_UINT8, VT_UINT8),  // 0x00E5
    Entry("selectedservicePcrSyncStatus", 230, VT_UINT8, VT_UINT8),  // 0x00E6
    nullptr,
};

COpSsData* serviceLockSsData[] = {
    Entry("servicelockLockMode", 231, VT_UINT8, VT_UINT8),  // 0x00E7
    Entry("servicelockServiceName", 232, VT_STRING, VT_UINT8),  // 0x00E8
    Entry("servicelockServiceNum", 233, VT_UINT16, VT_UINT8),  // 0x00E9
    Entry("servicelockBackupLockMode", 234, VT_UINT8, VT_UINT8),  // 0x00EA
    Entry("servicelockBackupServiceName", 235, VT_STRING, VT_UINT8),  // 0x00EB
    Entry("servicelockBackupServiceNum", 236, VT_UINT16, VT_UINT8),  // 0x00EC
    nullptr,
};

COpSsData* serviceSelectionSsData[] = {
    Entry("serviceselectionSource", 238, VT_UINT16, VT_UINT8),  // 0x00EE
    Entry("serviceselectionMode", 239, VT_UINT8, VT_UINT8),  // 0x00EF
    Entry("serviceselectionBackupState", 240, VT_UINT8, VT_UINT8),  // 0x00F0
    Entry("serviceselectionCurrentInput", 241, VT_UINT8, VT_UINT8),  // 0x00F1
    Entry("serviceselectionVideoCodecType", 242, VT_UINT8, VT_UINT8),  // 0x00F2
    Entry("serviceselectionAudioCodecType1", 243, VT_UINT8, VT_UINT8),  // 0x00F3
    Entry("serviceselectionAudioCodecType2", 244, VT_UINT8, VT_UINT8),  // 0x00F4
    Entry("serviceselectionPcr", 245, VT_UINT16, VT_UINT8),  // 0x00F5
    Entry("serviceselectionVideo", 246, VT_UINT16, VT_UINT8),  // 0x00F6
    Entry("serviceselectionAudio1", 247, VT_UINT16, VT_UINT8),  // 0x00F7
    Entry("serviceselectionAudio2", 248, VT_UINT16, VT_UINT8),  // 0x00F8
    Entry("serviceselectionServiceName", 249, VT_STRING, VT_UINT8),  // 0x00F9
    Entry("serviceselectionServiceNum", 250, VT_UINT16, VT_UINT8),  // 0x00FA
    nullptr,
};

COpSsData* videoOutputSsData[] = {
    Entry("videooutputInterface", 261, VT_UINT8, VT_UINT8),  // 0x0105
    Entry("videooutputFormatMode", 262, VT_UINT8, VT_UINT8),  // 0x0106
    Entry("videooutputFormatModeCvbs", 263, VT_UINT8, VT_UINT8),  // 0x0107
    Entry("videooutputRasterColor", 264, VT_UINT8, VT_UINT8),  // 0x0108
    Entry("videooutputRasterMode", 265, VT_UINT8, VT_UINT8),  // 0x0109
    Entry("videooutputManualFormat", 266, VT_UINT32, VT_UINT8),  // 0x010A
    Entry("videooutputCurrentOutputFormat", 267, VT_UINT32, VT_UINT8),  // 0x010B
    Entry("videooutputManualFormatCvbs", 268, VT_UINT32, VT_UINT8),  // 0x010C
    Entry("videooutputAutoFormatStatus", 269, VT_UINT8, VT_UINT8),  // 0x010D
    Entry("videooutputAfdCode", 62, VT_UINT8, VT_UINT8),  // 0x003E
    Entry("videooutputAfdCodeDesc", 63, VT_STRING, VT_UINT8),  // 0x003F
    Entry("videooutputDecode", 270, VT_UINT8, VT_UINT8),  // 0x010E
    nullptr,
};

COpSsData* videoSsData[] = {
    Entry("videoWidth", 271, VT_UINT16, VT_UINT8),  // 0x010F
    Entry("videoHeight", 272, VT_UINT16, VT_UINT8),  // 0x0110
    Entry("videoAspectRatio", 273, VT_UINT8, VT_UINT8),  // 0x0111
    Entry("videoFrameRate", 274, VT_UINT16, VT_UINT8),  // 0x0112
    Entry("videoScanType", 275, VT_UINT8, VT_UINT8),  // 0x0113
    Entry("videoProfile", 276, VT_UINT8, VT_UINT8),  // 0x0114
    Entry("videoLevel", 277, VT_UINT8, VT_UINT8),  // 0x0115
    Entry("videoInputSupported", 278, VT_UINT8, VT_UINT8),  // 0x0116
    Entry("videoPcrDisconStatus", 279, VT_UINT8, VT_UINT8),  // 0x0117
    Entry("videoChromaFormat", 280, VT_UINT8, VT_UINT8),  // 0x0118
    Entry("videoAverageBitrate", 281, VT_UINT32, VT_UINT8),  // 0x0119
    Entry("videoResolutionType", 282, VT_UINT8, VT_UINT8),  // 0x011A
    Entry("videoChromaBitDepth", 283, VT_UINT8, VT_UINT8),  // 0x011B
    nullptr,
};

void FillDictionary(COpSsDataMap& map) {
    COpSsData** const tables[] = {
        audioPidLockSsData,  audioSrvSsData,        stbAvSubsystemSsData, pidLockSsData,
        selectedAudioSsData, selectedServiceSsData, selectedOtherSsData,  serviceSelectionSsData,
        videoOutputSsData,   selectedAudioSsData,   videoSsData,          serviceLockSsData,
        analogAudioSsData,   compositeSsData,       avSsConfigSsData,     overlaySsData,
    };
    for (COpSsData** table : tables) map.FillMap(table);
}
