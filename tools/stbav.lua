-- stbav.lua: Wireshark dissector of the stbav serial line (link type DLT_USER0, 147).
-- Written by `avhost dissector` from the operation dictionary and the value names
-- table; do not edit: rewrite it with `avhost dissector > tools/stbav.lua`.
-- Record: one direction byte (0x00 host to daemon, 0x01 daemon to host), then the
-- frame's bytes as on the line: 0x0F start, stuffed op image, 0x10 end.

local MAX_CHUNK = 240

-- Value types: name, bytes on the line (0: any length), field.
local VALUE_TYPES = {
  [0] = { name = "VT_INT32", size = 4, field = "int32", signed = true },
  [1] = { name = "VT_UINT32", size = 4, field = "uint32", signed = false },
  [2] = { name = "VT_INT8", size = 1, field = "int8", signed = true },
  [3] = { name = "VT_UINT8", size = 1, field = "uint8", signed = false },
  [4] = { name = "VT_INT16", size = 2, field = "int16", signed = true },
  [5] = { name = "VT_UINT16", size = 2, field = "uint16", signed = false },
  [8] = { name = "VT_BOOL", size = 1, field = "bool", signed = false },
  [9] = { name = "VT_MAC", size = 0, field = "mac", signed = false },
  [10] = { name = "VT_IP", size = 4, field = "ip", signed = false },
  [12] = { name = "VT_STRING", size = 0, field = "string", signed = false },
  [16] = { name = "VT_INT64", size = 8, field = "int64", signed = true },
  [17] = { name = "VT_UINT64", size = 8, field = "uint64", signed = false },
}

-- Index field sizes by type.
local INDEX_SIZES = { [1] = 4, [3] = 1, [5] = 2, }

-- Enumerated values.
-- bits-per-sample code
local NAMES_1 = { [0] = "unknown", [1] = "16 bits", [2] = "20 bits", [3] = "24 bits", }
-- AudioChannelCoding_e
local NAMES_2 = { [0] = "unknown", [1] = "1+1 dual mono", [2] = "1/0 mono", [3] = "2/0 stereo", [4] = "3/0", [5] = "2/1", [6] = "3/1", [7] = "2/2", [8] = "3/2 (5.1)", }
-- AudioTypeStatus_e
local NAMES_3 = { [0] = "none", [1] = "MPEG-1 audio", [2] = "MPEG-2 audio", [3] = "AC-3", [4] = "type 4 (no codec name)", [5] = "E-AC-3", [6] = "AAC (ADTS)", [7] = "AAC (LATM)", [8] = "DRA", [9] = "type 9 (no codec name)", }
-- Status_e
local NAMES_4 = { [0] = "unknown", [1] = "decoding", [2] = "not decoding", }
-- SyncStatus_e
local NAMES_5 = { [0] = "unknown", [1] = "out of sync", [2] = "in sync", }
-- VideoStatusType_e
local NAMES_6 = { [0] = "none", [1] = "MPEG-2", [2] = "H.264", [3] = "HEVC", [5] = "AVS", [6] = "AVS2", }
-- VideoType_e
local NAMES_7 = { [0] = "none", [1] = "MPEG-2", [2] = "H.264", [3] = "HEVC", [5] = "AVS", [6] = "AVS2", }
-- AudioType_e
local NAMES_8 = { [0] = "none", [1] = "MPEG-1 audio", [2] = "MPEG-2 audio", [3] = "AC-3", [5] = "E-AC-3", [6] = "AAC (ADTS)", [7] = "AAC (LATM)", [8] = "DRA", }
-- VideoOutputInterface_e
local NAMES_9 = { [1] = "HD", [2] = "composite (CVBS)", }
-- FormatMode_e
local NAMES_10 = { [1] = "automatic", [2] = "manual", }
-- auto format status
local NAMES_11 = { [0] = "not checked", [1] = "input format supported", [2] = "input format not supported", }
-- VideoAspectRatio_e
local NAMES_12 = { [0] = "unknown", [1] = "16:9", [2] = "4:3", }
-- VideoFrameRate_e
local NAMES_13 = { [0] = "unknown", [1] = "23.976 fps", [2] = "24 fps", [3] = "25 fps", [4] = "29.97 fps", [5] = "30 fps", [6] = "50 fps", [7] = "59.94 fps", [8] = "60 fps", }
-- VideoScanType_e
local NAMES_14 = { [0] = "unknown", [1] = "interlaced", [2] = "progressive", [3] = "progressive segmented frame", }
-- VideoProfile_e
local NAMES_15 = { [0] = "unknown", [1] = "MPEG-2 Simple", [2] = "MPEG-2 Main", [3] = "MPEG-2 4:2:2", [4] = "MPEG-2 SNR Scalable", [5] = "MPEG-2 Spatially Scalable", [6] = "MPEG-2 High", [7] = "H.264 Baseline", [8] = "H.264 Main or HEVC Main", [9] = "H.264 Extended", [10] = "H.264 High", [11] = "H.264 High 10", [12] = "H.264 High 4:2:2", [13] = "H.264 High 4:4:4", [14] = "HEVC Main 10", [15] = "HEVC Main Still Picture", [16] = "HEVC Range Extensions", [17] = "HEVC High Throughput", [18] = "reserved 18", [19] = "reserved 19", [20] = "reserved 20", }
-- VideoLevel_e
local NAMES_16 = { [0] = "unknown", [1] = "MPEG-2 Low", [2] = "MPEG-2 Main", [3] = "MPEG-2 High 1440", [4] = "MPEG-2 High", [5] = "level 1", [6] = "level 1b", [7] = "level 1.1", [8] = "level 1.2", [9] = "level 1.3", [10] = "level 2", [11] = "level 2.1", [12] = "level 2.2", [13] = "level 3", [14] = "level 3.1", [15] = "level 3.2", [16] = "level 4", [17] = "level 4.1", [18] = "level 4.2", [19] = "level 5", [20] = "level 5.1", [21] = "level 5.2", [22] = "level 6", [23] = "level 6.1", [24] = "level 6.2", }
-- VideoChromaFormat_e
local NAMES_17 = { [0] = "unknown", [1] = "4:2:0", [2] = "4:2:2", [3] = "4:4:4", }
-- VideoResolutionType_e
local NAMES_18 = { [0] = "unknown", [1] = "HD", [2] = "SD", [3] = "UHD", }
-- ChromaBitDepth_e
local NAMES_19 = { [0] = "unknown", [1] = "8-bit", [3] = "10-bit", }

-- Video format codes: the names of their fields.
local FORMAT = {
  resolution = { [0] = "720x480", [1] = "720x576", [2] = "1280x720", [3] = "1920x1080", [4] = "3840x2160", [5] = "4096x2160", },
  scan = { [0] = "i", [1] = "p", [2] = "psF", },
  rate = { [1] = "23.98", [2] = "24.00", [3] = "25.00", [4] = "29.97", [5] = "30.00", [6] = "50.00", [7] = "59.94", [8] = "60.00", },
  aspect = { [1] = "1x1", [2] = "4x3", [3] = "16x9", [4] = "2.21x1", [5] = "1.9x1", },
}

-- The dictionary: opId, name, value type, index types, enumerated values.
local OPS = {
  [0x0000] = { name = "stbsystemReset", type = 2, index = { 3 } },
  [0x0001] = { name = "stbsystemHeartBeatCount", type = 2, index = { 3 } },
  [0x0002] = { name = "stbsystemSoftwareVersion", type = 1, index = { 1 } },
  [0x0003] = { name = "stbsystemReady", type = 2, index = { 3 } },
  [0x0004] = { name = "stbsystemStatusEnable", type = 3, index = { 3 } },
  [0x0005] = { name = "stbsystemStatusUpdate", type = 3, index = { 3 } },
  [0x0006] = { name = "stbsystemUpdate", type = 3, index = { 3 } },
  [0x0007] = { name = "stbsystemCheckReady", type = 3, index = { 3 } },
  [0x0008] = { name = "stbsystemStatusClear", type = 3, index = { 3 } },
  [0x0009] = { name = "stbsystemStatusClearDone", type = 3, index = { 3 } },
  [0x0012] = { name = "analogaudioPort", type = 3, index = { 3 } },
  [0x0013] = { name = "analogaudioDiscreteChannel", type = 3, index = { 3 } },
  [0x0014] = { name = "analogaudioOutputLevel", type = 2, index = { 3 } },
  [0x003E] = { name = "videooutputAfdCode", type = 3, index = { 3 } },
  [0x003F] = { name = "videooutputAfdCodeDesc", type = 12, index = { 3 } },
  [0x0040] = { name = "audiopidlockPid", type = 4, index = { 3 } },
  [0x0041] = { name = "audiopidlockType", type = 3, index = { 3 } },
  [0x0042] = { name = "audiopidlockBackupPid", type = 4, index = { 3 } },
  [0x0043] = { name = "audiopidlockBackupType", type = 3, index = { 3 } },
  [0x0044] = { name = "audiopidlockAudioTypeMismatchPresence", type = 3, index = { 3 } },
  [0x0045] = { name = "audiosrvOperationalMode", type = 3, index = { 3 } },
  [0x0046] = { name = "audiosrvDownmixOp", type = 3, index = { 3 } },
  [0x0047] = { name = "audiosrvDynamicRangeState", type = 3, index = { 3 } },
  [0x0048] = { name = "audiosrvAudioFormatMode", type = 3, index = { 3 } },
  [0x0049] = { name = "audiosrvBitDepth", type = 3, index = { 3 } },
  [0x004A] = { name = "audiosrvBitrate", type = 1, index = { 3 } },
  [0x004B] = { name = "audiosrvSamplingRate", type = 1, index = { 3 } },
  [0x004C] = { name = "audiosrvBitsPerSample", type = 1, index = { 3 }, names = NAMES_1 },
  [0x004D] = { name = "audiosrvChannelCoding", type = 3, index = { 3 }, names = NAMES_2 },
  [0x004E] = { name = "audiosrvDialNormValue", type = 2, index = { 3 } },
  [0x004F] = { name = "audiosrvEncodedType", type = 3, index = { 3 }, names = NAMES_3 },
  [0x0050] = { name = "audiosrvDecoding", type = 3, index = { 3 }, names = NAMES_4 },
  [0x0065] = { name = "avssconfigAudioCountAnalog", type = 3, index = { 3 } },
  [0x0066] = { name = "avssconfigAudioCountDigital", type = 3, index = { 3 } },
  [0x0067] = { name = "avssconfigAudioDecodeCount", type = 3, index = { 3 } },
  [0x0068] = { name = "avssconfigGenlockAvail", type = 8, index = { 3 } },
  [0x0069] = { name = "avssconfigDecoderReset", type = 3, index = { 3 } },
  [0x006A] = { name = "avssconfigDecoderResetEvent", type = 3, index = { 3 } },
  [0x006B] = { name = "avssconfigDisableDecoderReset", type = 3, index = { 3 } },
  [0x006C] = { name = "avssconfigScte35ProcessingAvail", type = 3, index = { 3 } },
  [0x0070] = { name = "avssHeartBeat", type = 1, index = { 3 } },
  [0x0071] = { name = "compositeNtscPedestal", type = 3, index = { 3 } },
  [0x0072] = { name = "composite525Std", type = 3, index = { 3 } },
  [0x0073] = { name = "composite625Std", type = 3, index = { 3 } },
  [0x0074] = { name = "compositeVideoLossMode", type = 3, index = { 3 } },
  [0x009B] = { name = "overlayType", type = 3, index = { 3 } },
  [0x009C] = { name = "overlayCcType", type = 3, index = { 3 } },
  [0x009D] = { name = "overlayNtscCcDataType", type = 3, index = { 3 } },
  [0x009E] = { name = "overlayDtvCcDataType", type = 3, index = { 3 } },
  [0x009F] = { name = "overlayDvbSubtitleLanguage", type = 12, index = { 3 } },
  [0x00A0] = { name = "overlayDvbSubtitlePid", type = 4, index = { 3 } },
  [0x00A1] = { name = "overlayTeletextPage", type = 12, index = { 3 } },
  [0x00A2] = { name = "overlayImageTriggerMode", type = 3, index = { 3 } },
  [0x00A3] = { name = "overlayImageScte35EventId", type = 1, index = { 3 } },
  [0x00A4] = { name = "overlayImageDithering", type = 3, index = { 3 } },
  [0x00A5] = { name = "overlayImageTransition", type = 3, index = { 3 } },
  [0x00A8] = { name = "pidlockPcrPid", type = 4, index = { 3 } },
  [0x00A9] = { name = "pidlockVideoPid", type = 4, index = { 3 } },
  [0x00AA] = { name = "pidlockVideoType", type = 3, index = { 3 } },
  [0x00AB] = { name = "pidlockBackupPcrPid", type = 4, index = { 3 } },
  [0x00AC] = { name = "pidlockBackupVideoPid", type = 4, index = { 3 } },
  [0x00AD] = { name = "pidlockBackupVideoType", type = 3, index = { 3 } },
  [0x00AE] = { name = "pidlockVideoTypeMismatchPresence", type = 3, index = { 3 } },
  [0x00D5] = { name = "selectedaudioPid", type = 4, index = { 3 } },
  [0x00D6] = { name = "selectedaudioType", type = 3, index = { 3 }, names = NAMES_3 },
  [0x00D7] = { name = "selectedaudioPidPresence", type = 3, index = { 3 } },
  [0x00D8] = { name = "selectedaudioSyncStatus", type = 3, index = { 3 }, names = NAMES_5 },
  [0x00D9] = { name = "selectedotherPid", type = 4, index = { 3 } },
  [0x00DC] = { name = "selectedserviceVideoPid", type = 4, index = { 3 } },
  [0x00DD] = { name = "selectedserviceVideoType", type = 3, index = { 3 }, names = NAMES_6 },
  [0x00DE] = { name = "selectedserviceVideoPidPresence", type = 3, index = { 3 } },
  [0x00DF] = { name = "selectedservicePcrPid", type = 4, index = { 3 } },
  [0x00E0] = { name = "selectedservicePcrPidPresence", type = 3, index = { 3 } },
  [0x00E1] = { name = "selectedserviceServiceNum", type = 5, index = { 3 } },
  [0x00E2] = { name = "selectedserviceServiceName", type = 12, index = { 3 } },
  [0x00E3] = { name = "selectedserviceServicePresence", type = 3, index = { 3 } },
  [0x00E4] = { name = "selectedserviceTuneCount", type = 5, index = { 3 } },
  [0x00E5] = { name = "selectedserviceVideoSyncStatus", type = 3, index = { 3 } },
  [0x00E6] = { name = "selectedservicePcrSyncStatus", type = 3, index = { 3 } },
  [0x00E7] = { name = "servicelockLockMode", type = 3, index = { 3 } },
  [0x00E8] = { name = "servicelockServiceName", type = 12, index = { 3 } },
  [0x00E9] = { name = "servicelockServiceNum", type = 5, index = { 3 } },
  [0x00EA] = { name = "servicelockBackupLockMode", type = 3, index = { 3 } },
  [0x00EB] = { name = "servicelockBackupServiceName", type = 12, index = { 3 } },
  [0x00EC] = { name = "servicelockBackupServiceNum", type = 5, index = { 3 } },
  [0x00EE] = { name = "serviceselectionSource", type = 5, index = { 3 } },
  [0x00EF] = { name = "serviceselectionMode", type = 3, index = { 3 } },
  [0x00F0] = { name = "serviceselectionBackupState", type = 3, index = { 3 } },
  [0x00F1] = { name = "serviceselectionCurrentInput", type = 3, index = { 3 } },
  [0x00F2] = { name = "serviceselectionVideoCodecType", type = 3, index = { 3 }, names = NAMES_7 },
  [0x00F3] = { name = "serviceselectionAudioCodecType1", type = 3, index = { 3 }, names = NAMES_8 },
  [0x00F4] = { name = "serviceselectionAudioCodecType2", type = 3, index = { 3 } },
  [0x00F5] = { name = "serviceselectionPcr", type = 5, index = { 3 } },
  [0x00F6] = { name = "serviceselectionVideo", type = 5, index = { 3 } },
  [0x00F7] = { name = "serviceselectionAudio1", type = 5, index = { 3 } },
  [0x00F8] = { name = "serviceselectionAudio2", type = 5, index = { 3 } },
  [0x00F9] = { name = "serviceselectionServiceName", type = 12, index = { 3 } },
  [0x00FA] = { name = "serviceselectionServiceNum", type = 5, index = { 3 } },
  [0x00FE] = { name = "compositeLine21Cc", type = 3, index = { 3 } },
  [0x0105] = { name = "videooutputInterface", type = 3, index = { 3 }, names = NAMES_9 },
  [0x0106] = { name = "videooutputFormatMode", type = 3, index = { 3 }, names = NAMES_10 },
  [0x0107] = { name = "videooutputFormatModeCvbs", type = 3, index = { 3 }, names = NAMES_10 },
  [0x0108] = { name = "videooutputRasterColor", type = 3, index = { 3 } },
  [0x0109] = { name = "videooutputRasterMode", type = 3, index = { 3 } },
  [0x010A] = { name = "videooutputManualFormat", type = 1, index = { 3 }, format = true },
  [0x010B] = { name = "videooutputCurrentOutputFormat", type = 1, index = { 3 }, format = true },
  [0x010C] = { name = "videooutputManualFormatCvbs", type = 1, index = { 3 }, format = true },
  [0x010D] = { name = "videooutputAutoFormatStatus", type = 3, index = { 3 }, names = NAMES_11 },
  [0x010E] = { name = "videooutputDecode", type = 3, index = { 3 }, names = NAMES_4 },
  [0x010F] = { name = "videoWidth", type = 5, index = { 3 } },
  [0x0110] = { name = "videoHeight", type = 5, index = { 3 } },
  [0x0111] = { name = "videoAspectRatio", type = 3, index = { 3 }, names = NAMES_12 },
  [0x0112] = { name = "videoFrameRate", type = 5, index = { 3 }, names = NAMES_13 },
  [0x0113] = { name = "videoScanType", type = 3, index = { 3 }, names = NAMES_14 },
  [0x0114] = { name = "videoProfile", type = 3, index = { 3 }, names = NAMES_15 },
  [0x0115] = { name = "videoLevel", type = 3, index = { 3 }, names = NAMES_16 },
  [0x0116] = { name = "videoInputSupported", type = 3, index = { 3 } },
  [0x0117] = { name = "videoPcrDisconStatus", type = 3, index = { 3 } },
  [0x0118] = { name = "videoChromaFormat", type = 3, index = { 3 }, names = NAMES_17 },
  [0x0119] = { name = "videoAverageBitrate", type = 1, index = { 3 } },
  [0x011A] = { name = "videoResolutionType", type = 3, index = { 3 }, names = NAMES_18 },
  [0x011B] = { name = "videoChromaBitDepth", type = 3, index = { 3 }, names = NAMES_19 },
}

local stbav = Proto("stbav", "stbav serial line")

local DIRS = { [0] = "host to daemon", [1] = "daemon to host" }
local DIR_MARKS = { [0] = ">", [1] = "<" }
local OP_TYPES = { [0] = "data", [1] = "type 1 (no handler)", [2] = "type 2 (no handler)",
                   [3] = "type 3 (no handler)", [4] = "type 4 (no handler)", [5] = "type 5 (no handler)",
                   [6] = "apply configuration", [7] = "type 7 (no handler)" }
local OP_NAMES = {}
for id, op in pairs(OPS) do OP_NAMES[id] = op.name end

local pf = {
  dir = ProtoField.uint8("stbav.dir", "Direction", base.DEC, DIRS),
  start = ProtoField.uint8("stbav.start", "Start marker", base.HEX),
  stop = ProtoField.uint8("stbav.end", "End marker", base.HEX),
  escape = ProtoField.uint8("stbav.escape", "Escape", base.HEX),
  stray = ProtoField.bytes("stbav.stray", "Bytes outside a frame"),
  frame = ProtoField.bytes("stbav.frame", "Frame"),
  image = ProtoField.bytes("stbav.image", "Op image (unstuffed)"),
  optype = ProtoField.uint8("stbav.optype", "Op type", base.DEC, OP_TYPES),
  opid = ProtoField.uint16("stbav.opid", "opId", base.DEC_HEX, OP_NAMES),
  op = ProtoField.string("stbav.op", "Operation"),
  index_len = ProtoField.uint8("stbav.index_len", "Index length"),
  index = ProtoField.uint32("stbav.index", "Index"),
  value_len = ProtoField.uint8("stbav.value_len", "Value length"),
  type = ProtoField.string("stbav.type", "Value type"),
  int8 = ProtoField.int8("stbav.value.int8", "Value"),
  uint8 = ProtoField.uint8("stbav.value.uint8", "Value"),
  int16 = ProtoField.int16("stbav.value.int16", "Value"),
  uint16 = ProtoField.uint16("stbav.value.uint16", "Value"),
  int32 = ProtoField.int32("stbav.value.int32", "Value"),
  uint32 = ProtoField.uint32("stbav.value.uint32", "Value", base.DEC_HEX),
  int64 = ProtoField.int64("stbav.value.int64", "Value"),
  uint64 = ProtoField.uint64("stbav.value.uint64", "Value"),
  bool = ProtoField.bool("stbav.value.bool", "Value"),
  ip = ProtoField.ipv4("stbav.value.ip", "Value"),
  mac = ProtoField.bytes("stbav.value.mac", "Value"),
  string = ProtoField.string("stbav.value.string", "Value"),
  text = ProtoField.string("stbav.value.text", "Value (text under a numeric type)"),
  bytes = ProtoField.bytes("stbav.value.bytes", "Value (bytes)"),
  meaning = ProtoField.string("stbav.meaning", "Meaning"),
  format = ProtoField.string("stbav.format", "Video format"),
  chunk = ProtoField.uint32("stbav.chunk", "Chunk of a value longer than 240 bytes"),
  rest = ProtoField.bytes("stbav.ignored", "Bytes after the image (ignored by the receiver)"),
}
local fields = {}
for _, f in pairs(pf) do fields[#fields + 1] = f end
stbav.fields = fields

local ex = {
  unknown = ProtoExpert.new("stbav.unknown_opid", "opId not in the dictionary",
                            expert.group.UNDECODED, expert.severity.WARN),
  size = ProtoExpert.new("stbav.wrong_size", "Value length does not fit the dictionary's value type",
                         expert.group.MALFORMED, expert.severity.WARN),
  index = ProtoExpert.new("stbav.wrong_index", "Index length does not fit the dictionary's index type",
                          expert.group.MALFORMED, expert.severity.WARN),
  unescaped = ProtoExpert.new("stbav.unescaped", "Unescaped special byte",
                              expert.group.PROTOCOL, expert.severity.WARN),
  stray_end = ProtoExpert.new("stbav.stray_end",
                              "End marker outside a frame: the receiver completes an empty frame at the next start marker",
                              expert.group.PROTOCOL, expert.severity.WARN),
  stray = ProtoExpert.new("stbav.stray_bytes", "Bytes outside a frame: dropped by the receiver",
                          expert.group.PROTOCOL, expert.severity.WARN),
  bad = ProtoExpert.new("stbav.bad_image", "Not an op image: the receiver drops the frame (Deserialize Failed)",
                        expert.group.MALFORMED, expert.severity.ERROR),
  incomplete = ProtoExpert.new("stbav.incomplete", "Frame without end marker",
                               expert.group.MALFORMED, expert.severity.WARN),
  optype = ProtoExpert.new("stbav.unhandled_optype", "Op type the daemon does not handle",
                           expert.group.PROTOCOL, expert.severity.WARN),
  chunked = ProtoExpert.new("stbav.chunked", "Chunk of a value longer than 240 bytes",
                            expert.group.SEQUENCE, expert.severity.NOTE),
}
stbav.experts = { ex.unknown, ex.size, ex.index, ex.unescaped, ex.stray_end, ex.stray, ex.bad, ex.incomplete,
                  ex.optype, ex.chunked }

-- Chunk numbers, found on the first pass in capture order: per direction the
-- last frame's key and whether it was a full chunk.
local chunk_of = {}
local last_frame = {}
function stbav.init()
  chunk_of = {}
  last_frame = {}
end

local function printable(range)
  local s = range:raw()
  return s:match("^[\32-\126]*$") ~= nil
end

local function flip(b)  -- b XOR 0x20
  if b % 64 >= 32 then return b - 32 end
  return b + 32
end

-- The value typed by the dictionary; returns its text for the info column.
local function add_value(tree, range, op)
  local len = range:len()
  local vt = VALUE_TYPES[op.type]
  tree:add(pf.type, vt.name):set_generated()
  if vt.size == 0 then
    if op.type == 9 then tree:add(pf.mac, range); return tostring(range:bytes()) end
    tree:add(pf.string, range)
    return '"' .. range:string() .. '"'
  end
  if len ~= vt.size then
    local item
    if len > 0 and printable(range) then
      item = tree:add(pf.text, range)
      item:add_proto_expert_info(ex.size, string.format("%d bytes under %s (%d bytes)", len, vt.name, vt.size))
      return '"' .. range:string() .. '"'
    end
    if len > 0 then item = tree:add(pf.bytes, range) else item = tree end
    item:add_proto_expert_info(ex.size, string.format("%d bytes under %s (%d bytes)", len, vt.name, vt.size))
    return len > 0 and ("[" .. tostring(range:bytes()) .. "]") or "(empty)"
  end
  local item, number
  if vt.field == "ip" then item = tree:add(pf.ip, range); return tostring(range:ipv4()) end
  if vt.field == "int64" or vt.field == "uint64" then
    item = tree:add(pf[vt.field], range)
    return tostring(vt.field == "int64" and range:int64() or range:uint64())
  end
  item = tree:add(pf[vt.field], range)
  if vt.field == "bool" then return range:uint() ~= 0 and "true" or "false" end
  if vt.signed then number = range:int() else number = range:uint() end
  local text = tostring(number)
  if op.format then
    -- The code's bytes in reverse order: resolution, scan, rate, aspect.
    local b = 0
    for k = 0, 3 do b = b * 256 + range(3 - k, 1):uint() end
    local format = (FORMAT.resolution[math.floor(b / 1024)] or "(n/a)") ..
                   (FORMAT.scan[math.floor(b / 256) % 4] or "(n/a)") .. " " ..
                   (FORMAT.aspect[b % 16] or "(n/a)") .. " " .. (FORMAT.rate[math.floor(b / 16) % 16] or "(n/a)") .. "fps"
    tree:add(pf.format, format):set_generated()
    return string.format("0x%08X (%s)", number, format)
  end
  if op.names and op.names[number] then
    tree:add(pf.meaning, op.names[number]):set_generated()
    text = text .. " (" .. op.names[number] .. ")"
  end
  return text
end

-- One frame's unstuffed payload, parsed as the daemon does (with its padding
-- zero byte after the image). Returns the info text.
local function dissect_image(bytes, ftree, pinfo, dir, serial, frame_item)
  local ba = ByteArray.new()
  ba:set_size(#bytes + 1)
  for k, b in ipairs(bytes) do ba:set_index(k - 1, b) end
  ba:set_index(#bytes, 0)
  local itvb = ba:tvb("Op image (unstuffed)")
  local len = #bytes + 1
  local tree = ftree
  if #bytes > 0 then tree = ftree:add(pf.image, itvb(0, #bytes)) end
  local function bad(why)
    frame_item:add_proto_expert_info(ex.bad, "Not an op image: " .. why)
    return "decode failed (" .. why .. ")"
  end
  if len < 2 then return bad("empty frame") end
  local optype = itvb(0, 1):uint()
  tree:add(pf.optype, itvb(0, 1))
  local opid = itvb(1, 2):le_uint()
  local opid_item = tree:add_le(pf.opid, itvb(1, 2))
  if 4 > len then return bad("no index length") end
  local n = itvb(3, 1):uint()
  if 4 + n > len then return bad(string.format("index length %d past the end", n)) end
  local data_at = 4 + n
  if data_at + 1 > len then return bad("no value length") end
  local m = itvb(data_at, 1):uint()
  if data_at + 1 + m > len then return bad(string.format("value length %d past the end", m)) end
  local op = OPS[opid]
  local name
  if optype == 6 then
    name = "apply"
  elseif op then
    name = op.name
  else
    name = string.format("#%d", opid)
  end
  tree:add(pf.op, name):set_generated()
  local ti = tree:add(pf.index_len, itvb(3, 1))
  local index_text = ""
  if n > 0 then index_text = "[" .. (n <= 4 and tostring(itvb(4, n):uint()) or tostring(itvb(4, n):bytes())) .. "]" end
  if optype ~= 6 and op then
    local want = 0
    for _, t in ipairs(op.index) do want = want + (INDEX_SIZES[t] or 0) end
    if want == n then
      local at = 4
      for _, t in ipairs(op.index) do
        local size = INDEX_SIZES[t] or 0
        if size > 0 then tree:add(pf.index, itvb(at, size)) end
        at = at + size
      end
    else
      ti:add_proto_expert_info(ex.index, string.format("%d index bytes, the dictionary's index takes %d", n, want))
    end
  elseif n > 0 and n <= 4 then
    tree:add(pf.index, itvb(4, n))
  end
  tree:add(pf.value_len, itvb(data_at, 1))
  local value = itvb(data_at + 1, m)
  local text
  if optype > 7 then
    text = string.format("(op type %d: ignored by the receiver)", optype)
    opid_item:add_proto_expert_info(ex.optype, string.format("Op type %d is ignored by the receiver", optype))
  elseif optype == 6 then
    text = ""
  elseif optype ~= 0 then
    opid_item:add_proto_expert_info(ex.optype, string.format("Op type %d has no handler in the daemon", optype))
  end
  if optype ~= 6 then
    if op then
      local vtext = add_value(tree, value, op)
      text = (text and (text .. " ") or "") .. "= " .. vtext
    else
      opid_item:add_proto_expert_info(ex.unknown, string.format("opId %d (0x%04X) is not in the dictionary", opid, opid))
      if m > 0 then tree:add(pf.bytes, value) end
      text = (text and (text .. " ") or "") .. "= [" .. (m > 0 and tostring(value:bytes()) or "") .. "]"
    end
  end
  if data_at + 1 + m < #bytes then tree:add(pf.rest, itvb(data_at + 1 + m, #bytes - data_at - 1 - m)) end
  -- Chunks: a full chunk (240 bytes), and every frame with the same operation
  -- and index that follows a full chunk in the same direction.
  local key = string.format("%d/%d/%s", optype, opid, index_text)
  if not pinfo.visited then
    local prev = last_frame[dir]
    local number = 0
    if prev and prev.full and prev.key == key then number = prev.chunk + 1
    elseif m == MAX_CHUNK then number = 1 end
    last_frame[dir] = { key = key, full = (m == MAX_CHUNK), chunk = number }
    chunk_of[serial] = number
  end
  local chunk = chunk_of[serial] or 0
  if chunk > 0 then
    local ci = tree:add(pf.chunk, chunk):set_generated()
    ci:add_proto_expert_info(ex.chunked, string.format("Chunk %d of a value longer than %d bytes (%d bytes here)",
                                                         chunk, MAX_CHUNK, m))
    text = text .. string.format(" (chunk %d)", chunk)
  end
  return name .. index_text .. (text ~= "" and (" " .. text) or "")
end

function stbav.dissector(tvb, pinfo, tree)
  local n = tvb:len()
  if n < 1 then return 0 end
  pinfo.cols.protocol = "STBAV"
  local root = tree:add(stbav, tvb())
  local dir = tvb(0, 1):uint()
  root:add(pf.dir, tvb(0, 1))
  local infos = {}
  local in_frame, ended, escape = false, false, false
  local frame_at, stray_at, payload = nil, nil, {}
  local frames = 0
  local function flush_stray(upto)
    if stray_at then
      local item = root:add(pf.stray, tvb(stray_at, upto - stray_at))
      item:add_proto_expert_info(ex.stray)
      infos[#infos + 1] = "stray bytes"
      stray_at = nil
    end
  end
  for i = 1, n - 1 do
    local b = tvb(i, 1):uint()
    if b == 0x0F then
      flush_stray(i)
      if in_frame and #payload > 0 then
        root:add(pf.start, tvb(i, 1)):add_proto_expert_info(ex.unescaped,
            "Start marker inside a frame: the receiver ignores it")
      end
      in_frame = true
      frame_at = frame_at or i
    elseif b == 0x10 then
      flush_stray(i)
      if not in_frame then
        root:add(pf.stop, tvb(i, 1)):add_proto_expert_info(ex.stray_end)
        infos[#infos + 1] = "stray end marker"
      end
      ended = true
      frame_at = frame_at or i
    elseif b == 0x12 then
      escape = true
    else
      if escape then
        b = flip(b)
        escape = false
      elseif in_frame and (b == 0x11 or b == 0x13) then
        root:add_proto_expert_info(ex.unescaped, string.format("Unescaped 0x%02X inside a frame: taken as data", b))
      end
      if in_frame then payload[#payload + 1] = b
      elseif not ended then stray_at = stray_at or i end
    end
    if in_frame and ended then
      frames = frames + 1
      local range = tvb(frame_at, i - frame_at + 1)
      local ftree = root:add(pf.frame, range)
      for k = frame_at, i do
        local c = tvb(k, 1):uint()
        if c == 0x0F then ftree:add(pf.start, tvb(k, 1))
        elseif c == 0x10 then ftree:add(pf.stop, tvb(k, 1))
        elseif c == 0x12 then ftree:add(pf.escape, tvb(k, 1)) end
      end
      infos[#infos + 1] = dissect_image(payload, ftree, pinfo, dir, pinfo.number * 1000 + frames, ftree)
      in_frame, ended, frame_at, payload = false, false, nil, {}
    end
  end
  flush_stray(n)
  if in_frame or ended then
    local item = root:add(pf.frame, tvb(frame_at, n - frame_at))
    item:add_proto_expert_info(ex.incomplete)
    infos[#infos + 1] = "incomplete frame"
  end
  pinfo.cols.info = (DIR_MARKS[dir] or "?") .. " " .. table.concat(infos, "; ")
  return n
end

-- Records of link type DLT_USER0 (147) come here without any preference set.
DissectorTable.get("wtap_encap"):add(wtap_encaps and wtap_encaps.USER0 or wtap.USER0, stbav)
