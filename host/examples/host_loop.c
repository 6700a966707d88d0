/* stbav_host_example: a host controller's main loop built on the stbav host
 * library alone, doing the demo session: wait for stbsystemReady (asking with
 * stbsystemCheckReady when it does not come), enable status, select the
 * service and wait for the decoded picture's width, set a manual output format, and print every report the daemon sends
 * until the output format is confirmed. Single-threaded. The serial port code
 * (POSIX termios) is the only OS code; everything on the line goes through the
 * library.
 *   stbav_host_example DEVICE [VIDEO_PID AUDIO_PID]     (PIDs default 0x100 0x101)
 * Exit status 0 when the session completed, 1 on a time-out or a line error,
 * 2 on bad arguments. */
#define _POSIX_C_SOURCE 200809L
#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

#include "stbav/stbav_codec.h"
#include "stbav/stbav_format.h"

static int line_fd = -1;
static stbav_decoder decoder;
static uint8_t rx[256]; /* bytes read from the line; rx_at of rx_len taken by the decoder */
static size_t rx_len, rx_at;

/* Opens the device raw at 115200 bit/s, 8N1, no flow control. */
static int open_line(const char *device) {
    struct termios t;
    line_fd = open(device, O_RDWR | O_NOCTTY);
    if (line_fd < 0 || tcgetattr(line_fd, &t) != 0) return 0;
    /* raw: no line editing, no translation, no XON/XOFF (the line has no flow control) */
    t.c_iflag &= (tcflag_t) ~(IGNBRK | BRKINT | PARMRK | ISTRIP | INLCR | IGNCR | ICRNL | IXON | IXOFF | IXANY);
    t.c_oflag &= (tcflag_t)~OPOST;
    t.c_lflag &= (tcflag_t) ~(ECHO | ECHONL | ICANON | ISIG | IEXTEN);
    t.c_cflag &= (tcflag_t) ~(CSIZE | CSTOPB | PARENB);
    t.c_cflag |= CLOCAL | CREAD | CS8;
    t.c_cc[VMIN] = 1;
    t.c_cc[VTIME] = 0;
    cfsetispeed(&t, B115200);
    cfsetospeed(&t, B115200);
    return tcsetattr(line_fd, TCSANOW, &t) == 0;
}

static int write_all(const uint8_t *p, int n) {
    while (n > 0) {
        const ssize_t w = write(line_fd, p, (size_t)n);
        if (w < 0 && errno == EINTR) continue;
        if (w <= 0) return 0;
        p += w;
        n -= (int)w;
    }
    return 1;
}

/* Sends one frame the library wrote; a negative length is the library's error. */
static int send_frame(const uint8_t *frame, int n, const char *what) {
    if (n < 0) {
        fprintf(stderr, "stbav_host_example: %s not encoded (error %d)\n", what, n);
        return 0;
    }
    return write_all(frame, n);
}

static int send_number(const char *name, uint32_t value) {
    uint8_t frame[STBAV_MAX_FRAME];
    uint16_t id;
    if (!stbav_op_id(name, &id)) return 0;
    printf(value < 256 ? "> %s=%lu\n" : "> %s=0x%lX\n", name, (unsigned long)value);
    return send_frame(frame, stbav_encode_number(frame, sizeof frame, STBAV_DOUBLE_START, id, 0, value), name);
}

static int send_apply(void) {
    uint8_t frame[STBAV_MAX_FRAME];
    printf("> apply\n");
    return send_frame(frame, stbav_encode_apply(frame, sizeof frame, STBAV_DOUBLE_START), "apply");
}

/* Prints one report: name, instance and the value read by the dictionary's type;
 * a value whose length is not its type's width is text. */
static void print_op(const stbav_op *op) {
    const char *name = stbav_name(op->op_id);
    uint32_t instance = 0;
    int64_t number;
    stbav_op_instance(op, &instance);
    if (name) {
        printf("< %s[%lu]=", name, (unsigned long)instance);
    } else {
        printf("< opId %u type %u [%lu]=", op->op_id, op->type, (unsigned long)instance);
    }
    if (op->entry && stbav_value_int(op, op->entry->value_type, &number)) {
        if (op->op_id == STBAV_OP_videooutputCurrentOutputFormat) {
            stbav_format f;
            stbav_format_unpack((uint32_t)number, &f);
            printf("0x%08lX (%lux%lu%s, rate %u, aspect %u)\n", (unsigned long)number,
                   (unsigned long)stbav_resolution_width(f.resolution),
                   (unsigned long)stbav_resolution_height(f.resolution), f.scan == STBAV_SCAN_INTERLACED ? "i" : "p",
                   f.rate, f.aspect);
        } else {
            printf("%lld\n", (long long)number);
        }
    } else {
        printf("\"%.*s\"\n", (int)op->value_len, (const char *)op->value);
    }
}

static long long now_ms(void) {
    struct timespec ts;
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return (long long)ts.tv_sec * 1000 + ts.tv_nsec / 1000000;
}

/* What wait_for waits for: any value, a value other than 0, or one value. */
enum { ANY, NONZERO, EXACTLY };

/* Reads and prints reports until one with op_id and a value as asked came, or
 * timeout_ms passed. Every ask_ms without it, sends stbsystemCheckReady. */
static int wait_for(uint16_t op_id, int want, int64_t value, int timeout_ms, int ask_ms) {
    const long long end = now_ms() + timeout_ms;
    long long ask = ask_ms ? now_ms() + ask_ms : 0;
    for (;;) {
        struct pollfd p;
        ssize_t n;
        const long long left = end - now_ms();
        while (rx_at < rx_len) {
            stbav_op op;
            size_t used = 0;
            int64_t v = 0;
            const int got = stbav_decode(&decoder, rx + rx_at, rx_len - rx_at, &used, &op);
            rx_at += used;
            if (!got) continue;
            print_op(&op);
            if (op.op_id != op_id || op.type != STBAV_OP_TYPE_DATA) continue;
            if (want == ANY) return 1;
            if (op.entry && stbav_value_int(&op, op.entry->value_type, &v) && (want == NONZERO ? v != 0 : v == value))
                return 1;
        }
        if (left <= 0) return 0;
        if (ask && now_ms() >= ask) {
            if (!send_number("stbsystemCheckReady", 1) || !send_apply()) return 0;
            ask = now_ms() + ask_ms;
        }
        p.fd = line_fd;
        p.events = POLLIN;
        if (poll(&p, 1, (int)(left < 200 ? left : 200)) <= 0) continue;
        n = read(line_fd, rx, sizeof rx);
        if (n <= 0) return 0;
        rx_len = (size_t)n;
        rx_at = 0;
    }
}

static int step(int ok, const char *what) {
    if (!ok) fprintf(stderr, "stbav_host_example: %s: no answer from the daemon\n", what);
    fflush(stdout);
    return ok;
}

int main(int argc, char **argv) {
    const unsigned long video = argc > 3 ? strtoul(argv[2], 0, 0) : 0x100;
    const unsigned long audio = argc > 3 ? strtoul(argv[3], 0, 0) : 0x101;
    const uint32_t format = stbav_format_pack(STBAV_RES_1920X1080, STBAV_SCAN_PROGRESSIVE, STBAV_RATE_50,
                                              STBAV_ASPECT_16X9);
    if (argc != 2 && argc != 4) {
        fprintf(stderr, "usage: stbav_host_example DEVICE [VIDEO_PID AUDIO_PID]\n");
        return 2;
    }
    setvbuf(stdout, 0, _IOLBF, 0);
    if (!open_line(argv[1])) {
        fprintf(stderr, "stbav_host_example: %s: %s\n", argv[1], strerror(errno));
        return 1;
    }
    stbav_decoder_init(&decoder);
    if (!step(wait_for(STBAV_OP_stbsystemReady, ANY, 0, 30000, 3000), "stbsystemReady") ||
        !step(send_number("stbsystemStatusEnable", 1) && send_apply(), "status enable") ||
        !step(wait_for(STBAV_OP_stbsystemHeartBeatCount, ANY, 0, 10000, 0), "first report") ||
        !step(send_number("serviceselectionVideo", (uint32_t)video) &&
                  send_number("serviceselectionVideoCodecType", 2) &&
                  send_number("serviceselectionAudio1", (uint32_t)audio) &&
                  send_number("serviceselectionAudioCodecType1", 2) && send_apply(),
              "service selection") ||
        !step(wait_for(STBAV_OP_videoWidth, NONZERO, 0, 15000, 0), "videoWidth") ||
        !step(send_number("videooutputFormatMode", 2) && send_number("videooutputManualFormat", format) &&
                  send_apply(),
              "manual format") ||
        !step(wait_for(STBAV_OP_videooutputCurrentOutputFormat, EXACTLY, format, 15000, 0),
              "videooutputCurrentOutputFormat")) {
        return 1;
    }
    printf("session complete: %lu operations, %lu bad frames, %lu bytes outside frames\n",
           (unsigned long)decoder.frames, (unsigned long)decoder.bad_frames, (unsigned long)decoder.dropped_bytes);
    close(line_fd);
    return 0;
}
