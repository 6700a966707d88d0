/* The C API of the decoder board's media library, libstb_module.so: the calls
 * the daemon makes and the records it exchanges, with every offset the daemon
 * relies on pinned below. On the board the library is the SoC vendor's; on a PC
 * it is our virtual board (sim/). Calls return 0 on success and an error code
 * otherwise. Thread: whichever thread calls; the library serialises internally. */
#ifndef HISIAV_PLATFORM_STB_MODULE_H
#define HISIAV_PLATFORM_STB_MODULE_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
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
    AOUT_DEVICE_ANALOG = 1
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
    uint32_t video_type;   /* +8 platform video codec code */
    uint32_t audio_type;   /* +12 platform audio codec code */
    uint8_t reserved16[8];
    uint16_t pcr_pid;      /* +24 */
    uint16_t audio_pid;    /* +26 */
    uint16_t reserved28;
    uint16_t video_pid;    /* +30 */
    uint16_t service_id;   /* +32 */
    char service_name[34]; /* +34 NUL-terminated, up to the end of the record */
} _AV_SETTING_S;

/* System */
int system_upgrade(const char* packagePath);

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
#endif

#endif /* HISIAV_PLATFORM_STB_MODULE_H */
