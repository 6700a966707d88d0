/* stbav host library: the 32-bit video format code of videooutputManualFormat,
 * videooutputManualFormatCvbs and videooutputCurrentOutputFormat. Pure
 * functions with shifts only, so the same code comes out on a host of any byte
 * order; any thread. C99 and C++.
 *
 * With B = the code with its four bytes in reverse order:
 *   B bits 31..10 resolution, 9..8 scan, 7..4 frame rate, 3..0 aspect ratio.
 * 1920x1080 progressive 50 Hz 16:9 (3, 1, 6, 3) is B = 0x00000D63, code 0x630D0000;
 * the code travels as a VT_UINT32 value, most significant byte first. */
#ifndef STBAV_FORMAT_H
#define STBAV_FORMAT_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Resolution: 0 720x480, 1 720x576, 2 1280x720, 3 1920x1080, 4 3840x2160, 5 4096x2160. */
enum { STBAV_RES_720X480 = 0, STBAV_RES_720X576, STBAV_RES_1280X720, STBAV_RES_1920X1080,
       STBAV_RES_3840X2160, STBAV_RES_4096X2160 };
/* Scan: 0 interlaced, 1 progressive, 2 progressive segmented frame. */
enum { STBAV_SCAN_INTERLACED = 0, STBAV_SCAN_PROGRESSIVE = 1, STBAV_SCAN_PSF = 2 };
/* Frame rate: 1 23.98, 2 24, 3 25, 4 29.97, 5 30, 6 50, 7 59.94, 8 60. */
enum { STBAV_RATE_23_98 = 1, STBAV_RATE_24, STBAV_RATE_25, STBAV_RATE_29_97, STBAV_RATE_30,
       STBAV_RATE_50, STBAV_RATE_59_94, STBAV_RATE_60 };
/* Aspect ratio: 1 1:1, 2 4:3, 3 16:9, 4 2.21:1, 5 1.9:1. */
enum { STBAV_ASPECT_1X1 = 1, STBAV_ASPECT_4X3, STBAV_ASPECT_16X9, STBAV_ASPECT_2_21X1, STBAV_ASPECT_1_9X1 };

typedef struct stbav_format {
    uint32_t resolution; /* 22 bits */
    uint8_t scan;        /* 2 bits */
    uint8_t rate;        /* 4 bits */
    uint8_t aspect;      /* 4 bits */
} stbav_format;

/* The code of a format; fields wider than their place are masked. Returns the code. */
uint32_t stbav_format_pack(uint32_t resolution, unsigned scan, unsigned rate, unsigned aspect);

/* The fields of a code into *out. Returns nothing; cannot fail. */
void stbav_format_unpack(uint32_t code, stbav_format *out);

/* The resolution of a picture size, as the daemon decides it: the width decides,
 * and at width 720 a height of 576 gives 1, any other height 0. Returns the
 * resolution; 0 for an unknown width. */
uint32_t stbav_resolution_of_size(uint32_t height, uint32_t width);

/* Height and width of a resolution. Return 0 for a resolution above 5. */
uint32_t stbav_resolution_height(uint32_t resolution);
uint32_t stbav_resolution_width(uint32_t resolution);

#ifdef __cplusplus
}
#endif

#endif
