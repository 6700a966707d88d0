/* stbav host library: packing and unpacking the 32-bit video format code. Pure
 * functions with shifts only (no dependence on the host's byte order); any thread. */
#include "stbav/stbav_format.h"

static uint32_t swap32(uint32_t v) {
    return (v >> 24) | ((v >> 8) & 0xFF00u) | ((v << 8) & 0xFF0000u) | (v << 24);
}

uint32_t stbav_format_pack(uint32_t resolution, unsigned scan, unsigned rate, unsigned aspect) {
    const uint32_t b = (resolution & 0x3FFFFFu) << 10 | (uint32_t)(scan & 3u) << 8 | (uint32_t)(rate & 15u) << 4 |
                       (uint32_t)(aspect & 15u);
    return swap32(b);
}

void stbav_format_unpack(uint32_t code, stbav_format *out) {
    const uint32_t b = swap32(code);
    out->resolution = b >> 10;
    out->scan = (uint8_t)((b >> 8) & 3u);
    out->rate = (uint8_t)((b >> 4) & 15u);
    out->aspect = (uint8_t)(b & 15u);
}

uint32_t stbav_resolution_of_size(uint32_t height, uint32_t width) {
    switch (width) {
        case 720: return height == 576 ? STBAV_RES_720X576 : STBAV_RES_720X480;
        case 1280: return STBAV_RES_1280X720;
        case 1920: return STBAV_RES_1920X1080;
        case 3840: return STBAV_RES_3840X2160;
        case 4096: return STBAV_RES_4096X2160;
        default: return STBAV_RES_720X480;
    }
}

uint32_t stbav_resolution_height(uint32_t resolution) {
    static const uint16_t heights[6] = {480, 576, 720, 1080, 2160, 2160};
    return resolution < 6 ? heights[resolution] : 0;
}

uint32_t stbav_resolution_width(uint32_t resolution) {
    static const uint16_t widths[6] = {720, 720, 1280, 1920, 3840, 4096};
    return resolution < 6 ? widths[resolution] : 0;
}
