/* The C API of the decoder board's media library, libstb_module.so: the calls
 * the daemon makes and the records it exchanges, with every offset the daemon
 * relies on pinned below. On the board the library is the SoC vendor's; on a PC
 * it is our virtual board (sim/). Calls return 0 on success and an error code
 * otherwise. Thread: whichever thread calls; the library serialises internally.
 * Records are owned by the caller; the library copies what it keeps. */
#ifndef STBAV_PLATFORM_STB_MODULE_H
#define STBAV_PLATFORM_STB_MODULE_H

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

#ifdef __cplusplus
#define STB_DEFAULT_NULL = NULL
extern "C" {
#else
#define STB_DEFAULT_NULL
#endif

/* Display format codes (word 0 of VoutDisplayAttr). 1..4 are the composite
 * standards the host may pick; 6..14 the formats the daemon computes. */
typedef enum {
    VOUT_FORMAT_UNSET = 0,
    VOUT_FORMAT_PAL = 1,
    VOUT_FORMAT_NTSC = 2,
    VOUT_FORMAT_PAL_N = 3,
    VOUT_FORMAT_NTSC_J = 4,
    VOUT_FORMAT_480P = 6,
    VOUT_FORMAT_480I = 7,
    VOUT_FORMAT_576P = 8,
    VOUT_FORMAT_576I = 9,
    VOUT_FORMAT_720P = 10,
    VOUT_FORMAT_1080I = 11,
    VOUT_FORMAT_1080P = 12,
    VOUT_FORMAT_2160P_3840 = 13,
    VOUT_FORMAT_2160P_4096 = 14
} _VOUT_FORMAT_E;

/* Audio output devices; the daemon drives the analog output only. */
typedef enum {
    AOUT_DEVICE_ANALOG = 1,
    AOUT_DEVICE_HDMI = 2,
    AOUT_DEVICE_SPDIF = 4,
    AOUT_DEVICE_ALL = 7
} _AOUT_DEVICE_TYPE_E;

/* Events the AV player reports to its registered callback. */
typedef enum {
    AV_EVENT_NONE = 0,
    AV_EVENT_VIDEO_FORMAT_CHANGED = 2
} _AV_EVENT_E;

/* Programme settings of the AV player (av_get_config / av_set_config), 68 bytes.
 * The daemon reads and writes only the named fields; the rest passes through. */
typedef struct _AV_SETTING_S {
    uint8_t reserved0[8];
    uint32_t video_type;   /* +8 platform video codec code (0 MPEG-2, 2 AVS, 5 H.264, 38 HEVC, 44 AVS2) */
    uint32_t audio_type;   /* +12 platform audio codec code (0 MPEG-1, 1 MPEG-2, 2/3 AAC, 4 AC-3, 5 E-AC-3, 53 DRA) */
    uint8_t reserved16[8];
    uint16_t pcr_pid;      /* +24 */
    uint16_t audio_pid;    /* +26 */
    uint16_t reserved28;
    uint16_t video_pid;    /* +30 */
    uint16_t service_id;   /* +32 */
    char service_name[34]; /* +34 NUL-terminated, up to the end of the record */
} _AV_SETTING_S;

/* Stream input parameters passed to the init, create and open calls. */
typedef struct IpInputParams {
    uint32_t ip;          /* +0 IPv4 address, host order (first dotted number most significant) */
    uint16_t port;        /* +4 */
    char address[256];    /* +6 the address as "a.b.c.d" */
    uint16_t port_copy;   /* +262 the port again */
} IpInputParams;

/* av_create attributes: {4, 0} for the daemon's single player. */
typedef struct AvCreateAttr {
    uint32_t source_type; /* word 0 */
    uint32_t flags;       /* word 1 */
} AvCreateAttr;

/* aout_open / vout_open_channel attributes: {1, -1, avHandle}. */
typedef struct OutputOpenAttr {
    uint32_t mode;        /* word 0 */
    int32_t channel_mask; /* word 1, -1 = all channels */
    uint32_t source;      /* word 2 the AV player handle */
} OutputOpenAttr;

/* Filled by vout_init / aout_init. */
typedef struct VoutInitInfo {
    uint32_t version;
    uint32_t max_channels;
    uint32_t max_windows;
    uint32_t reserved[5];
} VoutInitInfo;

typedef struct AoutInitInfo {
    uint32_t version;
    uint32_t max_outputs;
    uint32_t max_tracks;
    uint32_t reserved[5];
} AoutInitInfo;

/* Display attributes of a video output channel (vout_display_get/_set). */
typedef struct VoutDisplayAttr {
    uint32_t format;      /* word 0 _VOUT_FORMAT_E code */
    uint32_t rate;        /* word 1 display rate code: one of 1, 2, 4, ..., 256 */
    uint32_t brightness;  /* word 2, 0..100 */
    uint32_t contrast;    /* word 3, 0..100 */
    uint32_t saturation;  /* word 4, 0..100 */
    uint32_t hue;         /* word 5, 0..100 */
    uint32_t reserved[10];
} VoutDisplayAttr;

/* Data of event 2 (video format changed): uint32 words. The daemon reads
 * word 1 (chroma code, as in AvVideoStreamEntry), word 15 (source picture
 * height) and words 20/21 (display aspect pair: 16, 9 or 4, 3). */
typedef struct AvVideoFormatEvent {
    uint32_t video_pid;       /* word 0 */
    uint32_t chroma_format;   /* word 1 */
    uint32_t video_type;      /* word 2 platform video codec code */
    uint32_t field_order;     /* word 3 */
    uint32_t frame_rate_num;  /* word 4 */
    uint32_t frame_rate_den;  /* word 5 */
    uint32_t bit_depth;       /* word 6 bit-depth code */
    uint32_t profile;         /* word 7 */
    uint32_t level;           /* word 8 */
    uint32_t reserved9[5];
    uint32_t source_width;    /* word 14 */
    uint32_t source_height;   /* word 15 */
    uint32_t reserved16[4];
    uint32_t aspect_first;    /* word 20 */
    uint32_t aspect_second;   /* word 21 */
    uint32_t reserved22[10];
} AvVideoFormatEvent;

/* Event callback; called on the library's own thread, never while the
 * library holds its lock, so it may call back into the library. */
typedef int (*AvEventCallback_t)(uint32_t handle, _AV_EVENT_E event, const void* data);

typedef struct AvEventConfig {
    uint32_t eventClass;          /* word 0, 2 = video format events */
    AvEventCallback_t callback;   /* word 1 */
    uint32_t enable;              /* 1 = deliver */
} AvEventConfig;

/* Live decoder status (av_get_status_info), 512 bytes. */
typedef struct AvStatusInfo {
    uint32_t video_state;          /* +0 0 stopped, 1 running */
    uint32_t audio_state;          /* +4 0 stopped, 1 running */
    uint8_t reserved8[28];
    uint32_t audio_frame_count;    /* +36 */
    uint32_t audio_channels;       /* +40 full-bandwidth channels (LFE not counted) */
    uint32_t audio_format;         /* +44 audio format code */
    uint32_t audio_sample_rate;    /* +48 Hz */
    uint32_t audio_bits_per_sample;/* +52 */
    uint32_t audio_bit_rate;       /* +56 bit/s */
    uint8_t reserved60[12];
    uint64_t audio_pts;            /* +72 90 kHz, 33 bits */
    uint8_t reserved80[12];
    uint16_t audio_pid;            /* +92 audio PID in use, 0 if none */
    uint8_t reserved94[18];
    uint32_t video_frame_count;    /* +112 decoded pictures */
    uint32_t video_type;           /* +116 platform video codec code */
    uint32_t video_field_order;    /* +120 */
    uint16_t frame_rate_int;       /* +124 integer part */
    uint16_t frame_rate_dec;       /* +126 hundredths, rounded */
    uint8_t reserved128[56];
    uint32_t width;                /* +184 */
    uint32_t height;               /* +188 */
    uint8_t reserved192[12];
    uint16_t video_pid;            /* +204 video PID in use, 0 if none */
    uint8_t reserved206[14];
    uint32_t bit_width;            /* +220 bits per luma sample */
    uint8_t reserved224[32];
    uint16_t pcr_pid;              /* +256 PCR PID in use, 0 if none */
    uint8_t reserved258[254];
} AvStatusInfo;

/* One video stream of the input, 16 words. */
typedef struct AvVideoStreamEntry {
    uint32_t pid;             /* word 0 */
    uint32_t video_type;      /* word 1 platform video codec code */
    uint32_t width;           /* word 2 */
    uint32_t height;          /* word 3 */
    uint32_t aspect_first;    /* word 4 sample aspect ratio, first part */
    uint32_t aspect_second;   /* word 5 sample aspect ratio, second part */
    uint32_t frame_rate_num;  /* word 6 frames per second = num / den */
    uint32_t frame_rate_den;  /* word 7 */
    uint32_t field_order;     /* word 8 0 unknown, 1 progressive, 2 top first, 3 bottom first */
    uint32_t profile;         /* word 9 */
    uint32_t level;           /* word 10 */
    uint32_t chroma_format;   /* word 11 chroma code: 0 4:2:2, 1 4:2:0, 2 4:0:0, 5 4:4:4 */
    uint32_t bit_depth;       /* word 12 bit-depth code: 0 8 bits, 1 10 bits, 2 12 bits */
    uint32_t reserved[3];
} AvVideoStreamEntry;

/* One audio stream of the input, 8 words. */
typedef struct AvAudioStreamEntry {
    uint32_t pid;             /* word 0 */
    uint32_t audio_type;      /* word 1 platform audio codec code */
    uint32_t channels;        /* word 2 full-bandwidth channels */
    uint32_t format;          /* word 3 audio format code: 0 MPEG, 1 AC-3, 2 DRA, 3 E-AC-3, 5 AAC */
    uint32_t sample_rate;     /* word 4 Hz */
    uint32_t bits_per_sample; /* word 5 */
    uint64_t bit_rate;        /* words 6..7 bit/s */
} AvAudioStreamEntry;

/* One service of the input, 66 bytes (entries follow each other unpadded;
 * every entry starts on an even offset, so the fields stay aligned). */
typedef struct AvServiceEntry {
    uint16_t program_number;
    char name[64];
} AvServiceEntry;

/* What the input carries (av_get_stream_info), 2616 bytes. */
typedef struct AvStreamInfo {
    uint32_t video_count;             /* +0 */
    uint32_t reserved4;
    AvVideoStreamEntry video[16];     /* +8 */
    uint32_t audio_count;             /* +1032 */
    uint32_t reserved1036;
    AvAudioStreamEntry audio[16];     /* +1040 */
    uint32_t service_count;           /* +1552 */
    AvServiceEntry service[16];       /* +1556 */
    uint8_t reserved2612[4];
} AvStreamInfo;

/* Caption engine parameters and attributes. */
typedef struct CcInitParam {
    uint32_t mode;            /* 2 at bring-up */
} CcInitParam;

typedef struct CcCreateParam {
    uint32_t source;          /* 0 analog (line 21) captions, 1 digital captions */
} CcCreateParam;

typedef struct CcAttr {
    uint32_t source;          /* +0 caption source selector */
    uint32_t data_type;       /* +4 */
    uint32_t reserved8[5];
    uint32_t analog_mode;     /* +28 */
    uint32_t reserved32[5];
    uint32_t digital_mode;    /* +52 */
    uint32_t reserved56[2];
} CcAttr;

/* System */
int system_init(uint32_t mode);
int system_deinit(void);
int system_upgrade(const char* packagePath);

/* AV player */
int av_init(uint32_t* initResult, const IpInputParams* params);
int av_create(uint32_t* avHandle, const AvCreateAttr* attr, const IpInputParams* params);
int av_prepare(const char* address);
int av_set_event_config(uint32_t avHandle, const AvEventConfig* config, uint32_t eventClass);
int av_start_video(uint32_t avHandle);
int av_start_audio(uint32_t avHandle);
int av_stop(uint32_t avHandle);
int av_stop_video(uint32_t avHandle);
int av_reset(uint32_t avHandle, uint32_t mode);
int av_set_config(uint32_t avHandle, const _AV_SETTING_S* settings);
int av_get_config(uint32_t avHandle, _AV_SETTING_S* settings);
int av_search_progInfo(_AV_SETTING_S* settings, const IpInputParams* params);
int av_get_status_info(uint32_t avHandle, AvStatusInfo* status);
int av_get_stream_info(uint32_t avHandle, AvStreamInfo* info);
int av_destory(uint32_t avHandle);
int av_deinit(void);

/* Video output. The input parameters of vout_display_get/_set may be NULL. */
int vout_init(VoutInitInfo* info, const IpInputParams* params);
int vout_deinit(void);
int vout_open_channel(uint32_t* voutHandle, const OutputOpenAttr* attr, const IpInputParams* params);
int vout_close_channel(uint32_t voutHandle, uint32_t flags);
int vout_display_get(uint32_t voutHandle, VoutDisplayAttr* attr, const IpInputParams* params STB_DEFAULT_NULL);
int vout_display_set(uint32_t voutHandle, const VoutDisplayAttr* attr, const IpInputParams* params STB_DEFAULT_NULL);
int vout_window_create(uint32_t voutHandle, uint32_t* windowHandle, uint32_t flags);
int vout_window_destroy(uint32_t voutHandle, uint32_t windowHandle, uint32_t flags);
int vout_window_attach_input(uint32_t windowHandle, uint32_t inputType, uint32_t avHandle);
int vout_window_detach_input(uint32_t windowHandle, uint32_t inputType, uint32_t avHandle);
int vout_window_open(uint32_t windowHandle);
int vout_window_close(uint32_t windowHandle);

/* Audio output */
int aout_init(AoutInitInfo* info, const IpInputParams* params);
int aout_deinit(uint32_t flags);
int aout_open(uint32_t* aoutHandle, const OutputOpenAttr* attr, const IpInputParams* params);
int aout_close(uint32_t aoutHandle, uint32_t flags);
/* linear: value 0..100; otherwise value in dB, -70..0. */
int aout_set_volume(uint32_t aoutHandle, _AOUT_DEVICE_TYPE_E device, bool linear, int value);
int aout_set_mute(uint32_t aoutHandle, uint32_t device, bool mute);
int aout_track_create(uint32_t aoutHandle, uint32_t* trackHandle, uint32_t flags);
int aout_track_destroy(uint32_t trackHandle);
int aout_track_attach_input(uint32_t trackHandle, uint32_t inputType, uint32_t avHandle);
int aout_track_detach_input(uint32_t trackHandle, uint32_t inputType, uint32_t avHandle);

/* Closed captions */
int cc_init(const CcInitParam* param);
int cc_deinit(void);
int cc_creat(const CcCreateParam* param);
int cc_destroy(void);
int cc_set_window(uint32_t x, uint32_t y, uint32_t width, uint32_t height);
int cc_start(void);
int cc_stop(void);
int cc_getAttr(CcAttr* attr);
int cc_setAttr(const CcAttr* attr);
int cc_send_VBI_enable(bool enable);
int cc_show_subtitle_enable(bool enable);

#ifdef __cplusplus
}  /* extern "C" */

static_assert(sizeof(_AV_SETTING_S) == 68, "_AV_SETTING_S is 68 bytes");
static_assert(offsetof(_AV_SETTING_S, video_type) == 8, "video type at +8");
static_assert(offsetof(_AV_SETTING_S, audio_type) == 12, "audio type at +12");
static_assert(offsetof(_AV_SETTING_S, pcr_pid) == 24, "PCR PID at +24");
static_assert(offsetof(_AV_SETTING_S, audio_pid) == 26, "audio PID at +26");
static_assert(offsetof(_AV_SETTING_S, video_pid) == 30, "video PID at +30");
static_assert(offsetof(_AV_SETTING_S, service_id) == 32, "service id at +32");
static_assert(offsetof(_AV_SETTING_S, service_name) == 34, "service name at +34");

static_assert(sizeof(IpInputParams) == 264, "IpInputParams is 264 bytes");
static_assert(offsetof(IpInputParams, port) == 4, "port at +4");
static_assert(offsetof(IpInputParams, address) == 6, "address at +6");
static_assert(offsetof(IpInputParams, port_copy) == 262, "port copy at +262");

static_assert(sizeof(AvCreateAttr) == 8, "AvCreateAttr is two words");
static_assert(sizeof(OutputOpenAttr) == 12, "OutputOpenAttr is three words");
static_assert(offsetof(OutputOpenAttr, source) == 8, "source handle is word 2");

static_assert(offsetof(VoutDisplayAttr, format) == 0, "display format is word 0");
static_assert(offsetof(VoutDisplayAttr, rate) == 4, "display rate is word 1");
static_assert(sizeof(VoutDisplayAttr) == 64, "VoutDisplayAttr is 16 words");

static_assert(offsetof(AvVideoFormatEvent, chroma_format) == 1 * 4, "event chroma is word 1");
static_assert(offsetof(AvVideoFormatEvent, source_height) == 15 * 4, "event height is word 15");
static_assert(offsetof(AvVideoFormatEvent, aspect_first) == 20 * 4, "event aspect is word 20");
static_assert(offsetof(AvVideoFormatEvent, aspect_second) == 21 * 4, "event aspect is word 21");
static_assert(sizeof(AvVideoFormatEvent) == 128, "event data is 32 words");

static_assert(offsetof(AvEventConfig, eventClass) == 0, "event class is word 0");
static_assert(offsetof(AvEventConfig, callback) == sizeof(void*), "callback follows the class, pointer-aligned");
static_assert(offsetof(AvEventConfig, enable) == 2 * sizeof(void*), "enable follows the callback");

static_assert(sizeof(AvStatusInfo) == 512, "AvStatusInfo is 512 bytes");
static_assert(offsetof(AvStatusInfo, video_state) == 0, "video state at +0");
static_assert(offsetof(AvStatusInfo, audio_state) == 4, "audio state at +4");
static_assert(offsetof(AvStatusInfo, audio_frame_count) == 36, "audio frame count at +36");
static_assert(offsetof(AvStatusInfo, audio_channels) == 40, "audio channels at +40");
static_assert(offsetof(AvStatusInfo, audio_format) == 44, "audio format at +44");
static_assert(offsetof(AvStatusInfo, audio_sample_rate) == 48, "sample rate at +48");
static_assert(offsetof(AvStatusInfo, audio_bits_per_sample) == 52, "bits per sample at +52");
static_assert(offsetof(AvStatusInfo, audio_bit_rate) == 56, "audio bit rate at +56");
static_assert(offsetof(AvStatusInfo, audio_pts) == 72, "audio PTS at +72");
static_assert(offsetof(AvStatusInfo, audio_pid) == 92, "audio PID at +92");
static_assert(offsetof(AvStatusInfo, video_frame_count) == 112, "frame count at +112");
static_assert(offsetof(AvStatusInfo, video_type) == 116, "video type at +116");
static_assert(offsetof(AvStatusInfo, video_field_order) == 120, "field order at +120");
static_assert(offsetof(AvStatusInfo, frame_rate_int) == 124, "fps integer at +124");
static_assert(offsetof(AvStatusInfo, frame_rate_dec) == 126, "fps decimal at +126");
static_assert(offsetof(AvStatusInfo, width) == 184, "width at +184");
static_assert(offsetof(AvStatusInfo, height) == 188, "height at +188");
static_assert(offsetof(AvStatusInfo, video_pid) == 204, "video PID at +204");
static_assert(offsetof(AvStatusInfo, bit_width) == 220, "bit width at +220");
static_assert(offsetof(AvStatusInfo, pcr_pid) == 256, "PCR PID at +256");

static_assert(sizeof(AvVideoStreamEntry) == 64, "video entry is 16 words");
static_assert(offsetof(AvVideoStreamEntry, aspect_first) == 4 * 4, "aspect pair at words 4, 5");
static_assert(offsetof(AvVideoStreamEntry, frame_rate_num) == 6 * 4, "frame-rate pair at words 6, 7");
static_assert(offsetof(AvVideoStreamEntry, field_order) == 8 * 4, "field order at word 8");
static_assert(offsetof(AvVideoStreamEntry, profile) == 9 * 4, "profile at word 9");
static_assert(offsetof(AvVideoStreamEntry, level) == 10 * 4, "level at word 10");
static_assert(offsetof(AvVideoStreamEntry, chroma_format) == 11 * 4, "chroma at word 11");
static_assert(offsetof(AvVideoStreamEntry, bit_depth) == 12 * 4, "bit depth at word 12");
static_assert(sizeof(AvAudioStreamEntry) == 32, "audio entry is 8 words");
static_assert(offsetof(AvAudioStreamEntry, channels) == 2 * 4, "channels at word 2");
static_assert(offsetof(AvAudioStreamEntry, format) == 3 * 4, "format at word 3");
static_assert(offsetof(AvAudioStreamEntry, sample_rate) == 4 * 4, "sample rate at word 4");
static_assert(offsetof(AvAudioStreamEntry, bit_rate) == 6 * 4, "bit rate at words 6..7");
static_assert(sizeof(AvServiceEntry) == 66, "service entry is 66 bytes");
static_assert(sizeof(AvStreamInfo) == 2616, "AvStreamInfo is 2616 bytes");
static_assert(offsetof(AvStreamInfo, video) == 8, "video entries at +8");
static_assert(offsetof(AvStreamInfo, audio_count) == 1032, "audio count at +1032");
static_assert(offsetof(AvStreamInfo, audio) == 1040, "audio entries at +1040");
static_assert(offsetof(AvStreamInfo, service_count) == 1552, "service count at +1552");
static_assert(offsetof(AvStreamInfo, service) == 1556, "service entries at +1556");

static_assert(offsetof(CcAttr, data_type) == 4, "data type at +4");
static_assert(offsetof(CcAttr, analog_mode) == 28, "analog mode at +28");
static_assert(offsetof(CcAttr, digital_mode) == 52, "digital mode at +52");
static_assert(sizeof(CcAttr) == 64, "CcAttr is 64 bytes");
#endif

#endif /* STBAV_PLATFORM_STB_MODULE_H */
