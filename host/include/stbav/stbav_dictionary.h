/* stbav host library: the operation dictionary, written by host_dictionary from
 * the daemon's own tables; do not edit (rewrite it with `make host-dictionary`;
 * the test host_dictionary_current fails while this copy is stale). Constants
 * only; any thread. C99 and C++.
 *
 * Per operation NAME: STBAV_OP_NAME (its opId), STBAV_VT_OF_NAME (its value
 * type), STBAV_INDEX_OF_NAME (the type of its one index field). The list
 * STBAV_DICTIONARY(X) calls X(NAME, opId, value type, index type) per entry,
 * in opId order. */
#ifndef STBAV_DICTIONARY_H
#define STBAV_DICTIONARY_H

#include "stbav/stbav_types.h"

#define STBAV_DICTIONARY_SIZE 122

#define STBAV_OP_stbsystemReset 0 /* 0x0000 */
#define STBAV_VT_OF_stbsystemReset STBAV_VT_INT8
#define STBAV_INDEX_OF_stbsystemReset STBAV_VT_UINT8
#define STBAV_OP_stbsystemHeartBeatCount 1 /* 0x0001 */
#define STBAV_VT_OF_stbsystemHeartBeatCount STBAV_VT_INT8
#define STBAV_INDEX_OF_stbsystemHeartBeatCount STBAV_VT_UINT8
#define STBAV_OP_stbsystemSoftwareVersion 2 /* 0x0002 */
#define STBAV_VT_OF_stbsystemSoftwareVersion STBAV_VT_UINT32
#define STBAV_INDEX_OF_stbsystemSoftwareVersion STBAV_VT_UINT32
#define STBAV_OP_stbsystemReady 3 /* 0x0003 */
#define STBAV_VT_OF_stbsystemReady STBAV_VT_INT8
#define STBAV_INDEX_OF_stbsystemReady STBAV_VT_UINT8
#define STBAV_OP_stbsystemStatusEnable 4 /* 0x0004 */
#define STBAV_VT_OF_stbsystemStatusEnable STBAV_VT_UINT8
#define STBAV_INDEX_OF_stbsystemStatusEnable STBAV_VT_UINT8
#define STBAV_OP_stbsystemStatusUpdate 5 /* 0x0005 */
#define STBAV_VT_OF_stbsystemStatusUpdate STBAV_VT_UINT8
#define STBAV_INDEX_OF_stbsystemStatusUpdate STBAV_VT_UINT8
#define STBAV_OP_stbsystemUpdate 6 /* 0x0006 */
#define STBAV_VT_OF_stbsystemUpdate STBAV_VT_UINT8
#define STBAV_INDEX_OF_stbsystemUpdate STBAV_VT_UINT8
#define STBAV_OP_stbsystemCheckReady 7 /* 0x0007 */
#define STBAV_VT_OF_stbsystemCheckReady STBAV_VT_UINT8
#define STBAV_INDEX_OF_stbsystemCheckReady STBAV_VT_UINT8
#define STBAV_OP_stbsystemStatusClear 8 /* 0x0008 */
#define STBAV_VT_OF_stbsystemStatusClear STBAV_VT_UINT8
#define STBAV_INDEX_OF_stbsystemStatusClear STBAV_VT_UINT8
#define STBAV_OP_stbsystemStatusClearDone 9 /* 0x0009 */
#define STBAV_VT_OF_stbsystemStatusClearDone STBAV_VT_UINT8
#define STBAV_INDEX_OF_stbsystemStatusClearDone STBAV_VT_UINT8
#define STBAV_OP_analogaudioPort 18 /* 0x0012 */
#define STBAV_VT_OF_analogaudioPort STBAV_VT_UINT8
#define STBAV_INDEX_OF_analogaudioPort STBAV_VT_UINT8
#define STBAV_OP_analogaudioDiscreteChannel 19 /* 0x0013 */
#define STBAV_VT_OF_analogaudioDiscreteChannel STBAV_VT_UINT8
#define STBAV_INDEX_OF_analogaudioDiscreteChannel STBAV_VT_UINT8
#define STBAV_OP_analogaudioOutputLevel 20 /* 0x0014 */
#define STBAV_VT_OF_analogaudioOutputLevel STBAV_VT_INT8
#define STBAV_INDEX_OF_analogaudioOutputLevel STBAV_VT_UINT8
#define STBAV_OP_videooutputAfdCode 62 /* 0x003E */
#define STBAV_VT_OF_videooutputAfdCode STBAV_VT_UINT8
#define STBAV_INDEX_OF_videooutputAfdCode STBAV_VT_UINT8
#define STBAV_OP_videooutputAfdCodeDesc 63 /* 0x003F */
#define STBAV_VT_OF_videooutputAfdCodeDesc STBAV_VT_STRING
#define STBAV_INDEX_OF_videooutputAfdCodeDesc STBAV_VT_UINT8
#define STBAV_OP_audiopidlockPid 64 /* 0x0040 */
#define STBAV_VT_OF_audiopidlockPid STBAV_VT_INT16
#define STBAV_INDEX_OF_audiopidlockPid STBAV_VT_UINT8
#define STBAV_OP_audiopidlockType 65 /* 0x0041 */
#define STBAV_VT_OF_audiopidlockType STBAV_VT_UINT8
#define STBAV_INDEX_OF_audiopidlockType STBAV_VT_UINT8
#define STBAV_OP_audiopidlockBackupPid 66 /* 0x0042 */
#define STBAV_VT_OF_audiopidlockBackupPid STBAV_VT_INT16
#define STBAV_INDEX_OF_audiopidlockBackupPid STBAV_VT_UINT8
#define STBAV_OP_audiopidlockBackupType 67 /* 0x0043 */
#define STBAV_VT_OF_audiopidlockBackupType STBAV_VT_UINT8
#define STBAV_INDEX_OF_audiopidlockBackupType STBAV_VT_UINT8
#define STBAV_OP_audiopidlockAudioTypeMismatchPresence 68 /* 0x0044 */
#define STBAV_VT_OF_audiopidlockAudioTypeMismatchPresence STBAV_VT_UINT8
#define STBAV_INDEX_OF_audiopidlockAudioTypeMismatchPresence STBAV_VT_UINT8
#define STBAV_OP_audiosrvOperationalMode 69 /* 0x0045 */
#define STBAV_VT_OF_audiosrvOperationalMode STBAV_VT_UINT8
#define STBAV_INDEX_OF_audiosrvOperationalMode STBAV_VT_UINT8
#define STBAV_OP_audiosrvDownmixOp 70 /* 0x0046 */
#define STBAV_VT_OF_audiosrvDownmixOp STBAV_VT_UINT8
#define STBAV_INDEX_OF_audiosrvDownmixOp STBAV_VT_UINT8
#define STBAV_OP_audiosrvDynamicRangeState 71 /* 0x0047 */
#define STBAV_VT_OF_audiosrvDynamicRangeState STBAV_VT_UINT8
#define STBAV_INDEX_OF_audiosrvDynamicRangeState STBAV_VT_UINT8
#define STBAV_OP_audiosrvAudioFormatMode 72 /* 0x0048 */
#define STBAV_VT_OF_audiosrvAudioFormatMode STBAV_VT_UINT8
#define STBAV_INDEX_OF_audiosrvAudioFormatMode STBAV_VT_UINT8
#define STBAV_OP_audiosrvBitDepth 73 /* 0x0049 */
#define STBAV_VT_OF_audiosrvBitDepth STBAV_VT_UINT8
#define STBAV_INDEX_OF_audiosrvBitDepth STBAV_VT_UINT8
#define STBAV_OP_audiosrvBitrate 74 /* 0x004A */
#define STBAV_VT_OF_audiosrvBitrate STBAV_VT_UINT32
#define STBAV_INDEX_OF_audiosrvBitrate STBAV_VT_UINT8
#define STBAV_OP_audiosrvSamplingRate 75 /* 0x004B */
#define STBAV_VT_OF_audiosrvSamplingRate STBAV_VT_UINT32
#define STBAV_INDEX_OF_audiosrvSamplingRate STBAV_VT_UINT8
#define STBAV_OP_audiosrvBitsPerSample 76 /* 0x004C */
#define STBAV_VT_OF_audiosrvBitsPerSample STBAV_VT_UINT32
#define STBAV_INDEX_OF_audiosrvBitsPerSample STBAV_VT_UINT8
#define STBAV_OP_audiosrvChannelCoding 77 /* 0x004D */
#define STBAV_VT_OF_audiosrvChannelCoding STBAV_VT_UINT8
#define STBAV_INDEX_OF_audiosrvChannelCoding STBAV_VT_UINT8
#define STBAV_OP_audiosrvDialNormValue 78 /* 0x004E */
#define STBAV_VT_OF_audiosrvDialNormValue STBAV_VT_INT8
#define STBAV_INDEX_OF_audiosrvDialNormValue STBAV_VT_UINT8
#define STBAV_OP_audiosrvEncodedType 79 /* 0x004F */
#define STBAV_VT_OF_audiosrvEncodedType STBAV_VT_UINT8
#define STBAV_INDEX_OF_audiosrvEncodedType STBAV_VT_UINT8
#define STBAV_OP_audiosrvDecoding 80 /* 0x0050 */
#define STBAV_VT_OF_audiosrvDecoding STBAV_VT_UINT8
#define STBAV_INDEX_OF_audiosrvDecoding STBAV_VT_UINT8
#define STBAV_OP_avssconfigAudioCountAnalog 101 /* 0x0065 */
#define STBAV_VT_OF_avssconfigAudioCountAnalog STBAV_VT_UINT8
#define STBAV_INDEX_OF_avssconfigAudioCountAnalog STBAV_VT_UINT8
#define STBAV_OP_avssconfigAudioCountDigital 102 /* 0x0066 */
#define STBAV_VT_OF_avssconfigAudioCountDigital STBAV_VT_UINT8
#define STBAV_INDEX_OF_avssconfigAudioCountDigital STBAV_VT_UINT8
#define STBAV_OP_avssconfigAudioDecodeCount 103 /* 0x0067 */
#define STBAV_VT_OF_avssconfigAudioDecodeCount STBAV_VT_UINT8
#define STBAV_INDEX_OF_avssconfigAudioDecodeCount STBAV_VT_UINT8
#define STBAV_OP_avssconfigGenlockAvail 104 /* 0x0068 */
#define STBAV_VT_OF_avssconfigGenlockAvail STBAV_VT_BOOL
#define STBAV_INDEX_OF_avssconfigGenlockAvail STBAV_VT_UINT8
#define STBAV_OP_avssconfigDecoderReset 105 /* 0x0069 */
#define STBAV_VT_OF_avssconfigDecoderReset STBAV_VT_UINT8
#define STBAV_INDEX_OF_avssconfigDecoderReset STBAV_VT_UINT8
#define STBAV_OP_avssconfigDecoderResetEvent 106 /* 0x006A */
#define STBAV_VT_OF_avssconfigDecoderResetEvent STBAV_VT_UINT8
#define STBAV_INDEX_OF_avssconfigDecoderResetEvent STBAV_VT_UINT8
#define STBAV_OP_avssconfigDisableDecoderReset 107 /* 0x006B */
#define STBAV_VT_OF_avssconfigDisableDecoderReset STBAV_VT_UINT8
#define STBAV_INDEX_OF_avssconfigDisableDecoderReset STBAV_VT_UINT8
#define STBAV_OP_avssconfigScte35ProcessingAvail 108 /* 0x006C */
#define STBAV_VT_OF_avssconfigScte35ProcessingAvail STBAV_VT_UINT8
#define STBAV_INDEX_OF_avssconfigScte35ProcessingAvail STBAV_VT_UINT8
#define STBAV_OP_avssHeartBeat 112 /* 0x0070 */
#define STBAV_VT_OF_avssHeartBeat STBAV_VT_UINT32
#define STBAV_INDEX_OF_avssHeartBeat STBAV_VT_UINT8
#define STBAV_OP_compositeNtscPedestal 113 /* 0x0071 */
#define STBAV_VT_OF_compositeNtscPedestal STBAV_VT_UINT8
#define STBAV_INDEX_OF_compositeNtscPedestal STBAV_VT_UINT8
#define STBAV_OP_composite525Std 114 /* 0x0072 */
#define STBAV_VT_OF_composite525Std STBAV_VT_UINT8
#define STBAV_INDEX_OF_composite525Std STBAV_VT_UINT8
#define STBAV_OP_composite625Std 115 /* 0x0073 */
#define STBAV_VT_OF_composite625Std STBAV_VT_UINT8
#define STBAV_INDEX_OF_composite625Std STBAV_VT_UINT8
#define STBAV_OP_compositeVideoLossMode 116 /* 0x0074 */
#define STBAV_VT_OF_compositeVideoLossMode STBAV_VT_UINT8
#define STBAV_INDEX_OF_compositeVideoLossMode STBAV_VT_UINT8
#define STBAV_OP_overlayType 155 /* 0x009B */
#define STBAV_VT_OF_overlayType STBAV_VT_UINT8
#define STBAV_INDEX_OF_overlayType STBAV_VT_UINT8
#define STBAV_OP_overlayCcType 156 /* 0x009C */
#define STBAV_VT_OF_overlayCcType STBAV_VT_UINT8
#define STBAV_INDEX_OF_overlayCcType STBAV_VT_UINT8
#define STBAV_OP_overlayNtscCcDataType 157 /* 0x009D */
#define STBAV_VT_OF_overlayNtscCcDataType STBAV_VT_UINT8
#define STBAV_INDEX_OF_overlayNtscCcDataType STBAV_VT_UINT8
#define STBAV_OP_overlayDtvCcDataType 158 /* 0x009E */
#define STBAV_VT_OF_overlayDtvCcDataType STBAV_VT_UINT8
#define STBAV_INDEX_OF_overlayDtvCcDataType STBAV_VT_UINT8
#define STBAV_OP_overlayDvbSubtitleLanguage 159 /* 0x009F */
#define STBAV_VT_OF_overlayDvbSubtitleLanguage STBAV_VT_STRING
#define STBAV_INDEX_OF_overlayDvbSubtitleLanguage STBAV_VT_UINT8
#define STBAV_OP_overlayDvbSubtitlePid 160 /* 0x00A0 */
#define STBAV_VT_OF_overlayDvbSubtitlePid STBAV_VT_INT16
#define STBAV_INDEX_OF_overlayDvbSubtitlePid STBAV_VT_UINT8
#define STBAV_OP_overlayTeletextPage 161 /* 0x00A1 */
#define STBAV_VT_OF_overlayTeletextPage STBAV_VT_STRING
#define STBAV_INDEX_OF_overlayTeletextPage STBAV_VT_UINT8
#define STBAV_OP_overlayImageTriggerMode 162 /* 0x00A2 */
#define STBAV_VT_OF_overlayImageTriggerMode STBAV_VT_UINT8
#define STBAV_INDEX_OF_overlayImageTriggerMode STBAV_VT_UINT8
#define STBAV_OP_overlayImageScte35EventId 163 /* 0x00A3 */
#define STBAV_VT_OF_overlayImageScte35EventId STBAV_VT_UINT32
#define STBAV_INDEX_OF_overlayImageScte35EventId STBAV_VT_UINT8
#define STBAV_OP_overlayImageDithering 164 /* 0x00A4 */
#define STBAV_VT_OF_overlayImageDithering STBAV_VT_UINT8
#define STBAV_INDEX_OF_overlayImageDithering STBAV_VT_UINT8
#define STBAV_OP_overlayImageTransition 165 /* 0x00A5 */
#define STBAV_VT_OF_overlayImageTransition STBAV_VT_UINT8
#define STBAV_INDEX_OF_overlayImageTransition STBAV_VT_UINT8
#define STBAV_OP_pidlockPcrPid 168 /* 0x00A8 */
#define STBAV_VT_OF_pidlockPcrPid STBAV_VT_INT16
#define STBAV_INDEX_OF_pidlockPcrPid STBAV_VT_UINT8
#define STBAV_OP_pidlockVideoPid 169 /* 0x00A9 */
#define STBAV_VT_OF_pidlockVideoPid STBAV_VT_INT16
#define STBAV_INDEX_OF_pidlockVideoPid STBAV_VT_UINT8
#define STBAV_OP_pidlockVideoType 170 /* 0x00AA */
#define STBAV_VT_OF_pidlockVideoType STBAV_VT_UINT8
#define STBAV_INDEX_OF_pidlockVideoType STBAV_VT_UINT8
#define STBAV_OP_pidlockBackupPcrPid 171 /* 0x00AB */
#define STBAV_VT_OF_pidlockBackupPcrPid STBAV_VT_INT16
#define STBAV_INDEX_OF_pidlockBackupPcrPid STBAV_VT_UINT8
#define STBAV_OP_pidlockBackupVideoPid 172 /* 0x00AC */
#define STBAV_VT_OF_pidlockBackupVideoPid STBAV_VT_INT16
#define STBAV_INDEX_OF_pidlockBackupVideoPid STBAV_VT_UINT8
#define STBAV_OP_pidlockBackupVideoType 173 /* 0x00AD */
#define STBAV_VT_OF_pidlockBackupVideoType STBAV_VT_UINT8
#define STBAV_INDEX_OF_pidlockBackupVideoType STBAV_VT_UINT8
#define STBAV_OP_pidlockVideoTypeMismatchPresence 174 /* 0x00AE */
#define STBAV_VT_OF_pidlockVideoTypeMismatchPresence STBAV_VT_UINT8
#define STBAV_INDEX_OF_pidlockVideoTypeMismatchPresence STBAV_VT_UINT8
#define STBAV_OP_selectedaudioPid 213 /* 0x00D5 */
#define STBAV_VT_OF_selectedaudioPid STBAV_VT_INT16
#define STBAV_INDEX_OF_selectedaudioPid STBAV_VT_UINT8
#define STBAV_OP_selectedaudioType 214 /* 0x00D6 */
#define STBAV_VT_OF_selectedaudioType STBAV_VT_UINT8
#define STBAV_INDEX_OF_selectedaudioType STBAV_VT_UINT8
#define STBAV_OP_selectedaudioPidPresence 215 /* 0x00D7 */
#define STBAV_VT_OF_selectedaudioPidPresence STBAV_VT_UINT8
#define STBAV_INDEX_OF_selectedaudioPidPresence STBAV_VT_UINT8
#define STBAV_OP_selectedaudioSyncStatus 216 /* 0x00D8 */
#define STBAV_VT_OF_selectedaudioSyncStatus STBAV_VT_UINT8
#define STBAV_INDEX_OF_selectedaudioSyncStatus STBAV_VT_UINT8
#define STBAV_OP_selectedotherPid 217 /* 0x00D9 */
#define STBAV_VT_OF_selectedotherPid STBAV_VT_INT16
#define STBAV_INDEX_OF_selectedotherPid STBAV_VT_UINT8
#define STBAV_OP_selectedserviceVideoPid 220 /* 0x00DC */
#define STBAV_VT_OF_selectedserviceVideoPid STBAV_VT_INT16
#define STBAV_INDEX_OF_selectedserviceVideoPid STBAV_VT_UINT8
#define STBAV_OP_selectedserviceVideoType 221 /* 0x00DD */
#define STBAV_VT_OF_selectedserviceVideoType STBAV_VT_UINT8
#define STBAV_INDEX_OF_selectedserviceVideoType STBAV_VT_UINT8
#define STBAV_OP_selectedserviceVideoPidPresence 222 /* 0x00DE */
#define STBAV_VT_OF_selectedserviceVideoPidPresence STBAV_VT_UINT8
#define STBAV_INDEX_OF_selectedserviceVideoPidPresence STBAV_VT_UINT8
#define STBAV_OP_selectedservicePcrPid 223 /* 0x00DF */
#define STBAV_VT_OF_selectedservicePcrPid STBAV_VT_INT16
#define STBAV_INDEX_OF_selectedservicePcrPid STBAV_VT_UINT8
#define STBAV_OP_selectedservicePcrPidPresence 224 /* 0x00E0 */
#define STBAV_VT_OF_selectedservicePcrPidPresence STBAV_VT_UINT8
#define STBAV_INDEX_OF_selectedservicePcrPidPresence STBAV_VT_UINT8
#define STBAV_OP_selectedserviceServiceNum 225 /* 0x00E1 */
#define STBAV_VT_OF_selectedserviceServiceNum STBAV_VT_UINT16
#define STBAV_INDEX_OF_selectedserviceServiceNum STBAV_VT_UINT8
#define STBAV_OP_selectedserviceServiceName 226 /* 0x00E2 */
#define STBAV_VT_OF_selectedserviceServiceName STBAV_VT_STRING
#define STBAV_INDEX_OF_selectedserviceServiceName STBAV_VT_UINT8
#define STBAV_OP_selectedserviceServicePresence 227 /* 0x00E3 */
#define STBAV_VT_OF_selectedserviceServicePresence STBAV_VT_UINT8
#define STBAV_INDEX_OF_selectedserviceServicePresence STBAV_VT_UINT8
#define STBAV_OP_selectedserviceTuneCount 228 /* 0x00E4 */
#define STBAV_VT_OF_selectedserviceTuneCount STBAV_VT_UINT16
#define STBAV_INDEX_OF_selectedserviceTuneCount STBAV_VT_UINT8
#define STBAV_OP_selectedserviceVideoSyncStatus 229 /* 0x00E5 */
#define STBAV_VT_OF_selectedserviceVideoSyncStatus STBAV_VT_UINT8
#define STBAV_INDEX_OF_selectedserviceVideoSyncStatus STBAV_VT_UINT8
#define STBAV_OP_selectedservicePcrSyncStatus 230 /* 0x00E6 */
#define STBAV_VT_OF_selectedservicePcrSyncStatus STBAV_VT_UINT8
#define STBAV_INDEX_OF_selectedservicePcrSyncStatus STBAV_VT_UINT8
#define STBAV_OP_servicelockLockMode 231 /* 0x00E7 */
#define STBAV_VT_OF_servicelockLockMode STBAV_VT_UINT8
#define STBAV_INDEX_OF_servicelockLockMode STBAV_VT_UINT8
#define STBAV_OP_servicelockServiceName 232 /* 0x00E8 */
#define STBAV_VT_OF_servicelockServiceName STBAV_VT_STRING
#define STBAV_INDEX_OF_servicelockServiceName STBAV_VT_UINT8
#define STBAV_OP_servicelockServiceNum 233 /* 0x00E9 */
#define STBAV_VT_OF_servicelockServiceNum STBAV_VT_UINT16
#define STBAV_INDEX_OF_servicelockServiceNum STBAV_VT_UINT8
#define STBAV_OP_servicelockBackupLockMode 234 /* 0x00EA */
#define STBAV_VT_OF_servicelockBackupLockMode STBAV_VT_UINT8
#define STBAV_INDEX_OF_servicelockBackupLockMode STBAV_VT_UINT8
#define STBAV_OP_servicelockBackupServiceName 235 /* 0x00EB */
#define STBAV_VT_OF_servicelockBackupServiceName STBAV_VT_STRING
#define STBAV_INDEX_OF_servicelockBackupServiceName STBAV_VT_UINT8
#define STBAV_OP_servicelockBackupServiceNum 236 /* 0x00EC */
#define STBAV_VT_OF_servicelockBackupServiceNum STBAV_VT_UINT16
#define STBAV_INDEX_OF_servicelockBackupServiceNum STBAV_VT_UINT8
#define STBAV_OP_serviceselectionSource 238 /* 0x00EE */
#define STBAV_VT_OF_serviceselectionSource STBAV_VT_UINT16
#define STBAV_INDEX_OF_serviceselectionSource STBAV_VT_UINT8
#define STBAV_OP_serviceselectionMode 239 /* 0x00EF */
#define STBAV_VT_OF_serviceselectionMode STBAV_VT_UINT8
#define STBAV_INDEX_OF_serviceselectionMode STBAV_VT_UINT8
#define STBAV_OP_serviceselectionBackupState 240 /* 0x00F0 */
#define STBAV_VT_OF_serviceselectionBackupState STBAV_VT_UINT8
#define STBAV_INDEX_OF_serviceselectionBackupState STBAV_VT_UINT8
#define STBAV_OP_serviceselectionCurrentInput 241 /* 0x00F1 */
#define STBAV_VT_OF_serviceselectionCurrentInput STBAV_VT_UINT8
#define STBAV_INDEX_OF_serviceselectionCurrentInput STBAV_VT_UINT8
#define STBAV_OP_serviceselectionVideoCodecType 242 /* 0x00F2 */
#define STBAV_VT_OF_serviceselectionVideoCodecType STBAV_VT_UINT8
#define STBAV_INDEX_OF_serviceselectionVideoCodecType STBAV_VT_UINT8
#define STBAV_OP_serviceselectionAudioCodecType1 243 /* 0x00F3 */
#define STBAV_VT_OF_serviceselectionAudioCodecType1 STBAV_VT_UINT8
#define STBAV_INDEX_OF_serviceselectionAudioCodecType1 STBAV_VT_UINT8
#define STBAV_OP_serviceselectionAudioCodecType2 244 /* 0x00F4 */
#define STBAV_VT_OF_serviceselectionAudioCodecType2 STBAV_VT_UINT8
#define STBAV_INDEX_OF_serviceselectionAudioCodecType2 STBAV_VT_UINT8
#define STBAV_OP_serviceselectionPcr 245 /* 0x00F5 */
#define STBAV_VT_OF_serviceselectionPcr STBAV_VT_UINT16
#define STBAV_INDEX_OF_serviceselectionPcr STBAV_VT_UINT8
#define STBAV_OP_serviceselectionVideo 246 /* 0x00F6 */
#define STBAV_VT_OF_serviceselectionVideo STBAV_VT_UINT16
#define STBAV_INDEX_OF_serviceselectionVideo STBAV_VT_UINT8
#define STBAV_OP_serviceselectionAudio1 247 /* 0x00F7 */
#define STBAV_VT_OF_serviceselectionAudio1 STBAV_VT_UINT16
#define STBAV_INDEX_OF_serviceselectionAudio1 STBAV_VT_UINT8
#define STBAV_OP_serviceselectionAudio2 248 /* 0x00F8 */
#define STBAV_VT_OF_serviceselectionAudio2 STBAV_VT_UINT16
#define STBAV_INDEX_OF_serviceselectionAudio2 STBAV_VT_UINT8
#define STBAV_OP_serviceselectionServiceName 249 /* 0x00F9 */
#define STBAV_VT_OF_serviceselectionServiceName STBAV_VT_STRING
#define STBAV_INDEX_OF_serviceselectionServiceName STBAV_VT_UINT8
#define STBAV_OP_serviceselectionServiceNum 250 /* 0x00FA */
#define STBAV_VT_OF_serviceselectionServiceNum STBAV_VT_UINT16
#define STBAV_INDEX_OF_serviceselectionServiceNum STBAV_VT_UINT8
#define STBAV_OP_compositeLine21Cc 254 /* 0x00FE */
#define STBAV_VT_OF_compositeLine21Cc STBAV_VT_UINT8
#define STBAV_INDEX_OF_compositeLine21Cc STBAV_VT_UINT8
#define STBAV_OP_videooutputInterface 261 /* 0x0105 */
#define STBAV_VT_OF_videooutputInterface STBAV_VT_UINT8
#define STBAV_INDEX_OF_videooutputInterface STBAV_VT_UINT8
#define STBAV_OP_videooutputFormatMode 262 /* 0x0106 */
#define STBAV_VT_OF_videooutputFormatMode STBAV_VT_UINT8
#define STBAV_INDEX_OF_videooutputFormatMode STBAV_VT_UINT8
#define STBAV_OP_videooutputFormatModeCvbs 263 /* 0x0107 */
#define STBAV_VT_OF_videooutputFormatModeCvbs STBAV_VT_UINT8
#define STBAV_INDEX_OF_videooutputFormatModeCvbs STBAV_VT_UINT8
#define STBAV_OP_videooutputRasterColor 264 /* 0x0108 */
#define STBAV_VT_OF_videooutputRasterColor STBAV_VT_UINT8
#define STBAV_INDEX_OF_videooutputRasterColor STBAV_VT_UINT8
#define STBAV_OP_videooutputRasterMode 265 /* 0x0109 */
#define STBAV_VT_OF_videooutputRasterMode STBAV_VT_UINT8
#define STBAV_INDEX_OF_videooutputRasterMode STBAV_VT_UINT8
#define STBAV_OP_videooutputManualFormat 266 /* 0x010A */
#define STBAV_VT_OF_videooutputManualFormat STBAV_VT_UINT32
#define STBAV_INDEX_OF_videooutputManualFormat STBAV_VT_UINT8
#define STBAV_OP_videooutputCurrentOutputFormat 267 /* 0x010B */
#define STBAV_VT_OF_videooutputCurrentOutputFormat STBAV_VT_UINT32
#define STBAV_INDEX_OF_videooutputCurrentOutputFormat STBAV_VT_UINT8
#define STBAV_OP_videooutputManualFormatCvbs 268 /* 0x010C */
#define STBAV_VT_OF_videooutputManualFormatCvbs STBAV_VT_UINT32
#define STBAV_INDEX_OF_videooutputManualFormatCvbs STBAV_VT_UINT8
#define STBAV_OP_videooutputAutoFormatStatus 269 /* 0x010D */
#define STBAV_VT_OF_videooutputAutoFormatStatus STBAV_VT_UINT8
#define STBAV_INDEX_OF_videooutputAutoFormatStatus STBAV_VT_UINT8
#define STBAV_OP_videooutputDecode 270 /* 0x010E */
#define STBAV_VT_OF_videooutputDecode STBAV_VT_UINT8
#define STBAV_INDEX_OF_videooutputDecode STBAV_VT_UINT8
#define STBAV_OP_videoWidth 271 /* 0x010F */
#define STBAV_VT_OF_videoWidth STBAV_VT_UINT16
#define STBAV_INDEX_OF_videoWidth STBAV_VT_UINT8
#define STBAV_OP_videoHeight 272 /* 0x0110 */
#define STBAV_VT_OF_videoHeight STBAV_VT_UINT16
#define STBAV_INDEX_OF_videoHeight STBAV_VT_UINT8
#define STBAV_OP_videoAspectRatio 273 /* 0x0111 */
#define STBAV_VT_OF_videoAspectRatio STBAV_VT_UINT8
#define STBAV_INDEX_OF_videoAspectRatio STBAV_VT_UINT8
#define STBAV_OP_videoFrameRate 274 /* 0x0112 */
#define STBAV_VT_OF_videoFrameRate STBAV_VT_UINT16
#define STBAV_INDEX_OF_videoFrameRate STBAV_VT_UINT8
#define STBAV_OP_videoScanType 275 /* 0x0113 */
#define STBAV_VT_OF_videoScanType STBAV_VT_UINT8
#define STBAV_INDEX_OF_videoScanType STBAV_VT_UINT8
#define STBAV_OP_videoProfile 276 /* 0x0114 */
#define STBAV_VT_OF_videoProfile STBAV_VT_UINT8
#define STBAV_INDEX_OF_videoProfile STBAV_VT_UINT8
#define STBAV_OP_videoLevel 277 /* 0x0115 */
#define STBAV_VT_OF_videoLevel STBAV_VT_UINT8
#define STBAV_INDEX_OF_videoLevel STBAV_VT_UINT8
#define STBAV_OP_videoInputSupported 278 /* 0x0116 */
#define STBAV_VT_OF_videoInputSupported STBAV_VT_UINT8
#define STBAV_INDEX_OF_videoInputSupported STBAV_VT_UINT8
#define STBAV_OP_videoPcrDisconStatus 279 /* 0x0117 */
#define STBAV_VT_OF_videoPcrDisconStatus STBAV_VT_UINT8
#define STBAV_INDEX_OF_videoPcrDisconStatus STBAV_VT_UINT8
#define STBAV_OP_videoChromaFormat 280 /* 0x0118 */
#define STBAV_VT_OF_videoChromaFormat STBAV_VT_UINT8
#define STBAV_INDEX_OF_videoChromaFormat STBAV_VT_UINT8
#define STBAV_OP_videoAverageBitrate 281 /* 0x0119 */
#define STBAV_VT_OF_videoAverageBitrate STBAV_VT_UINT32
#define STBAV_INDEX_OF_videoAverageBitrate STBAV_VT_UINT8
#define STBAV_OP_videoResolutionType 282 /* 0x011A */
#define STBAV_VT_OF_videoResolutionType STBAV_VT_UINT8
#define STBAV_INDEX_OF_videoResolutionType STBAV_VT_UINT8
#define STBAV_OP_videoChromaBitDepth 283 /* 0x011B */
#define STBAV_VT_OF_videoChromaBitDepth STBAV_VT_UINT8
#define STBAV_INDEX_OF_videoChromaBitDepth STBAV_VT_UINT8

#define STBAV_DICTIONARY(X) \
    X(stbsystemReset, 0, STBAV_VT_INT8, STBAV_VT_UINT8) \
    X(stbsystemHeartBeatCount, 1, STBAV_VT_INT8, STBAV_VT_UINT8) \
    X(stbsystemSoftwareVersion, 2, STBAV_VT_UINT32, STBAV_VT_UINT32) \
    X(stbsystemReady, 3, STBAV_VT_INT8, STBAV_VT_UINT8) \
    X(stbsystemStatusEnable, 4, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(stbsystemStatusUpdate, 5, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(stbsystemUpdate, 6, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(stbsystemCheckReady, 7, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(stbsystemStatusClear, 8, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(stbsystemStatusClearDone, 9, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(analogaudioPort, 18, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(analogaudioDiscreteChannel, 19, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(analogaudioOutputLevel, 20, STBAV_VT_INT8, STBAV_VT_UINT8) \
    X(videooutputAfdCode, 62, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(videooutputAfdCodeDesc, 63, STBAV_VT_STRING, STBAV_VT_UINT8) \
    X(audiopidlockPid, 64, STBAV_VT_INT16, STBAV_VT_UINT8) \
    X(audiopidlockType, 65, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(audiopidlockBackupPid, 66, STBAV_VT_INT16, STBAV_VT_UINT8) \
    X(audiopidlockBackupType, 67, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(audiopidlockAudioTypeMismatchPresence, 68, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(audiosrvOperationalMode, 69, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(audiosrvDownmixOp, 70, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(audiosrvDynamicRangeState, 71, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(audiosrvAudioFormatMode, 72, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(audiosrvBitDepth, 73, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(audiosrvBitrate, 74, STBAV_VT_UINT32, STBAV_VT_UINT8) \
    X(audiosrvSamplingRate, 75, STBAV_VT_UINT32, STBAV_VT_UINT8) \
    X(audiosrvBitsPerSample, 76, STBAV_VT_UINT32, STBAV_VT_UINT8) \
    X(audiosrvChannelCoding, 77, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(audiosrvDialNormValue, 78, STBAV_VT_INT8, STBAV_VT_UINT8) \
    X(audiosrvEncodedType, 79, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(audiosrvDecoding, 80, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(avssconfigAudioCountAnalog, 101, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(avssconfigAudioCountDigital, 102, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(avssconfigAudioDecodeCount, 103, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(avssconfigGenlockAvail, 104, STBAV_VT_BOOL, STBAV_VT_UINT8) \
    X(avssconfigDecoderReset, 105, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(avssconfigDecoderResetEvent, 106, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(avssconfigDisableDecoderReset, 107, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(avssconfigScte35ProcessingAvail, 108, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(avssHeartBeat, 112, STBAV_VT_UINT32, STBAV_VT_UINT8) \
    X(compositeNtscPedestal, 113, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(composite525Std, 114, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(composite625Std, 115, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(compositeVideoLossMode, 116, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(overlayType, 155, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(overlayCcType, 156, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(overlayNtscCcDataType, 157, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(overlayDtvCcDataType, 158, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(overlayDvbSubtitleLanguage, 159, STBAV_VT_STRING, STBAV_VT_UINT8) \
    X(overlayDvbSubtitlePid, 160, STBAV_VT_INT16, STBAV_VT_UINT8) \
    X(overlayTeletextPage, 161, STBAV_VT_STRING, STBAV_VT_UINT8) \
    X(overlayImageTriggerMode, 162, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(overlayImageScte35EventId, 163, STBAV_VT_UINT32, STBAV_VT_UINT8) \
    X(overlayImageDithering, 164, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(overlayImageTransition, 165, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(pidlockPcrPid, 168, STBAV_VT_INT16, STBAV_VT_UINT8) \
    X(pidlockVideoPid, 169, STBAV_VT_INT16, STBAV_VT_UINT8) \
    X(pidlockVideoType, 170, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(pidlockBackupPcrPid, 171, STBAV_VT_INT16, STBAV_VT_UINT8) \
    X(pidlockBackupVideoPid, 172, STBAV_VT_INT16, STBAV_VT_UINT8) \
    X(pidlockBackupVideoType, 173, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(pidlockVideoTypeMismatchPresence, 174, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(selectedaudioPid, 213, STBAV_VT_INT16, STBAV_VT_UINT8) \
    X(selectedaudioType, 214, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(selectedaudioPidPresence, 215, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(selectedaudioSyncStatus, 216, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(selectedotherPid, 217, STBAV_VT_INT16, STBAV_VT_UINT8) \
    X(selectedserviceVideoPid, 220, STBAV_VT_INT16, STBAV_VT_UINT8) \
    X(selectedserviceVideoType, 221, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(selectedserviceVideoPidPresence, 222, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(selectedservicePcrPid, 223, STBAV_VT_INT16, STBAV_VT_UINT8) \
    X(selectedservicePcrPidPresence, 224, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(selectedserviceServiceNum, 225, STBAV_VT_UINT16, STBAV_VT_UINT8) \
    X(selectedserviceServiceName, 226, STBAV_VT_STRING, STBAV_VT_UINT8) \
    X(selectedserviceServicePresence, 227, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(selectedserviceTuneCount, 228, STBAV_VT_UINT16, STBAV_VT_UINT8) \
    X(selectedserviceVideoSyncStatus, 229, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(selectedservicePcrSyncStatus, 230, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(servicelockLockMode, 231, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(servicelockServiceName, 232, STBAV_VT_STRING, STBAV_VT_UINT8) \
    X(servicelockServiceNum, 233, STBAV_VT_UINT16, STBAV_VT_UINT8) \
    X(servicelockBackupLockMode, 234, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(servicelockBackupServiceName, 235, STBAV_VT_STRING, STBAV_VT_UINT8) \
    X(servicelockBackupServiceNum, 236, STBAV_VT_UINT16, STBAV_VT_UINT8) \
    X(serviceselectionSource, 238, STBAV_VT_UINT16, STBAV_VT_UINT8) \
    X(serviceselectionMode, 239, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(serviceselectionBackupState, 240, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(serviceselectionCurrentInput, 241, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(serviceselectionVideoCodecType, 242, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(serviceselectionAudioCodecType1, 243, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(serviceselectionAudioCodecType2, 244, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(serviceselectionPcr, 245, STBAV_VT_UINT16, STBAV_VT_UINT8) \
    X(serviceselectionVideo, 246, STBAV_VT_UINT16, STBAV_VT_UINT8) \
    X(serviceselectionAudio1, 247, STBAV_VT_UINT16, STBAV_VT_UINT8) \
    X(serviceselectionAudio2, 248, STBAV_VT_UINT16, STBAV_VT_UINT8) \
    X(serviceselectionServiceName, 249, STBAV_VT_STRING, STBAV_VT_UINT8) \
    X(serviceselectionServiceNum, 250, STBAV_VT_UINT16, STBAV_VT_UINT8) \
    X(compositeLine21Cc, 254, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(videooutputInterface, 261, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(videooutputFormatMode, 262, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(videooutputFormatModeCvbs, 263, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(videooutputRasterColor, 264, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(videooutputRasterMode, 265, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(videooutputManualFormat, 266, STBAV_VT_UINT32, STBAV_VT_UINT8) \
    X(videooutputCurrentOutputFormat, 267, STBAV_VT_UINT32, STBAV_VT_UINT8) \
    X(videooutputManualFormatCvbs, 268, STBAV_VT_UINT32, STBAV_VT_UINT8) \
    X(videooutputAutoFormatStatus, 269, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(videooutputDecode, 270, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(videoWidth, 271, STBAV_VT_UINT16, STBAV_VT_UINT8) \
    X(videoHeight, 272, STBAV_VT_UINT16, STBAV_VT_UINT8) \
    X(videoAspectRatio, 273, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(videoFrameRate, 274, STBAV_VT_UINT16, STBAV_VT_UINT8) \
    X(videoScanType, 275, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(videoProfile, 276, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(videoLevel, 277, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(videoInputSupported, 278, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(videoPcrDisconStatus, 279, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(videoChromaFormat, 280, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(videoAverageBitrate, 281, STBAV_VT_UINT32, STBAV_VT_UINT8) \
    X(videoResolutionType, 282, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    X(videoChromaBitDepth, 283, STBAV_VT_UINT8, STBAV_VT_UINT8) \
    /* end */

#endif
