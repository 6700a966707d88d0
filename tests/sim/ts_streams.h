// Small MPEG-TS files made with the ffmpeg command-line tool for the tests and
// the probe benchmark. Each file is made once into a cache directory and reused
// by later calls and by other processes (ctest runs every test in a process of
// its own); a lock file keeps two processes from making the same file at once.
// Any thread of the calling process, one call at a time per stream.
#pragma once

#include <string>

namespace tstest {

struct TsStream {
    const char* name;  // file stem in the cache directory
    const char* args;  // the ffmpeg arguments between the tool's name and the output
};

// MPEG-2 720x576 interlaced (top first) 25 fps 4:3, MPEG-1 Layer II stereo 48 kHz.
// Service 101 "SD MPEG-2", PMT 0x100, video 0x101 (PCR), audio 0x102.
extern const TsStream kMpeg2Sd;
// H.264 High 1920x1080 interlaced 25 fps, AC-3 5.1 48 kHz.
// Service 202 "HD H.264", PMT 0x200, video 0x201 (PCR), audio 0x202.
extern const TsStream kH264Interlaced;
// H.264 High 1280x720 progressive 59.94 fps, AAC stereo 44.1 kHz, timestamps
// starting 100 s in. Service 303 "HD 720p", PMT 0x300, video 0x301 (PCR), audio 0x302.
extern const TsStream kH264Progressive;
// HEVC Main 10 3840x2160 progressive 50 fps 10-bit, E-AC-3 5.1 48 kHz.
// Service 404 "UHD HEVC", PMT 0x400, video 0x401 (PCR), audio 0x402.
extern const TsStream kHevcUhd;
// Two programmes: 0x501 "Studio 422" (MPEG-2 4:2:2 profile 720x576 bottom field
// first 4:3, video 0x511, MPEG-2 audio mono 24 kHz 0x512) and 0x502 "CIF" (MPEG-2
// 352x288 progressive 4:3, video 0x521, MPEG-1 audio mono 32 kHz 0x522).
extern const TsStream kTwoProgrammes;

// True when the ffmpeg command-line tool runs.
bool HaveFfmpeg();

// The path of stream s in dir, making the file first if it is not there yet.
// On failure returns "" with *why set (ffmpeg's own error lines). *seconds, if
// given, is how long ffmpeg took, or 0 when the file was already there.
std::string MakeTsFile(const TsStream& s, const std::string& dir, std::string* why, double* seconds = nullptr);

}  // namespace tstest
