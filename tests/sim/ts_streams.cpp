// Making the test streams with the ffmpeg command-line tool, cached on disk.
#include "tests/sim/ts_streams.h"

#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>

namespace tstest {

// A second of tiny bit rate each: the probe needs only the first pictures.
const TsStream kMpeg2Sd = {
    "mpeg2-576i25",
    "-f lavfi -i testsrc2=size=720x576:rate=25 -f lavfi -i sine=frequency=1000:sample_rate=48000 -t 1 "
    "-map 0:v -map 1:a -c:v mpeg2video -b:v 300k -flags +ildct+ilme -top 1 -aspect 4:3 "
    "-c:a mp2 -b:a 128k -ac 2 -metadata service_name='SD MPEG-2' -mpegts_service_id 101 "
    "-mpegts_pmt_start_pid 0x100 -streamid 0:0x101 -streamid 1:0x102"};

const TsStream kH264Interlaced = {
    "h264-1080i25",
    "-f lavfi -i testsrc2=size=1920x1080:rate=25 -f lavfi -i sine=frequency=1000:sample_rate=48000 -t 1 "
    "-map 0:v -map 1:a -c:v libx264 -preset superfast -b:v 300k -flags +ildct+ilme -x264-params tff=1 "
    "-c:a ac3 -ac 6 -b:a 192k -metadata service_name='HD H.264' -mpegts_service_id 202 "
    "-mpegts_pmt_start_pid 0x200 -streamid 0:0x201 -streamid 1:0x202"};

const TsStream kH264Progressive = {
    "h264-720p5994",
    "-f lavfi -i testsrc2=size=1280x720:rate=60000/1001 -f lavfi -i sine=frequency=1000:sample_rate=44100 -t 1 "
    "-map 0:v -map 1:a -c:v libx264 -preset superfast -b:v 300k -c:a aac -b:a 96k -ac 2 -output_ts_offset 100 "
    "-metadata service_name='HD 720p' -mpegts_service_id 303 -mpegts_pmt_start_pid 0x300 "
    "-streamid 0:0x301 -streamid 1:0x302"};

// A flat picture: x265 spends its time on analysis, and a 4K test pattern
// would double it.
const TsStream kHevcUhd = {
    "hevc-2160p50",
    "-f lavfi -i color=c=gray:size=3840x2160:rate=50 -f lavfi -i sine=frequency=1000:sample_rate=48000 -t 1 "
    "-map 0:v -map 1:a -c:v libx265 -preset ultrafast -pix_fmt yuv420p10le -b:v 100k -x265-params log-level=error "
    "-c:a eac3 -ac 6 -b:a 192k -metadata service_name='UHD HEVC' -mpegts_service_id 404 "
    "-mpegts_pmt_start_pid 0x400 -streamid 0:0x401 -streamid 1:0x402"};

const TsStream kTwoProgrammes = {
    "two-programmes",
    "-f lavfi -i testsrc2=size=720x576:rate=25 -f lavfi -i sine=frequency=1000:sample_rate=24000 "
    "-f lavfi -i testsrc2=size=352x288:rate=25 -f lavfi -i sine=frequency=500:sample_rate=32000 -t 1 "
    "-map 0:v -map 1:a -map 2:v -map 3:a "
    "-c:v:0 mpeg2video -pix_fmt:v:0 yuv422p -b:v:0 400k -flags:v:0 +ildct+ilme -top:v:0 0 -aspect:v:0 4:3 "
    "-c:v:1 mpeg2video -b:v:1 100k -aspect:v:1 4:3 -c:a mp2 -b:a 64k -ac 1 "
    "-program program_num=0x501:title='Studio 422':st=0:st=1 -program program_num=0x502:title=CIF:st=2:st=3 "
    "-mpegts_pmt_start_pid 0x500 -streamid 0:0x511 -streamid 1:0x512 -streamid 2:0x521 -streamid 3:0x522"};

namespace {

// FNV-1a: the file name changes with the arguments, so an edited stream is made anew.
std::string Hash(const std::string& text) {
    uint64_t h = 1469598103934665603ull;
    for (unsigned char c : text) h = (h ^ c) * 1099511628211ull;
    char out[17];
    snprintf(out, sizeof out, "%016llx", static_cast<unsigned long long>(h));
    return out;
}

bool NonEmptyFile(const std::string& path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 && st.st_size > 0;
}

std::string ReadAll(const std::string& path) {
    std::ifstream f(path);
    return std::string(std::istreambuf_iterator<char>(f), {});
}

bool Run(const std::string& command) {
    const int r = std::system(command.c_str());
    return r != -1 && WIFEXITED(r) && WEXITSTATUS(r) == 0;
}

}  // namespace

bool HaveFfmpeg() {
    static const bool have = Run("ffmpeg -hide_banner -version </dev/null >/dev/null 2>&1");
    return have;
}

std::string MakeTsFile(const TsStream& s, const std::string& dir, std::string* why, double* seconds) {
    if (seconds) *seconds = 0;
    std::error_code ec;
    std::filesystem::create_directories(dir, ec);
    const std::string stem = dir + "/" + s.name;
    const std::string path = stem + "-" + Hash(s.args) + ".ts";
    // An exclusive lock on the stream's lock file until the function returns (closing the file releases it).
    const std::unique_ptr<FILE, int (*)(FILE*)> lock(fopen((stem + ".lock").c_str(), "ae"), &fclose);
    if (lock) flock(fileno(lock.get()), LOCK_EX);
    if (NonEmptyFile(path)) return path;
    const std::string tmp = path + ".part" + std::to_string(getpid());
    const std::string log = stem + ".log";
    const auto start = std::chrono::steady_clock::now();
    const bool ok = Run("ffmpeg -hide_banner -loglevel error -nostdin -y " + std::string(s.args) + " -f mpegts '" + tmp +
                        "' </dev/null >'" + log + "' 2>&1");
    const double took = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (!ok || !NonEmptyFile(tmp) || rename(tmp.c_str(), path.c_str()) != 0) {
        *why = "ffmpeg could not make " + std::string(s.name) + ": " + ReadAll(log);
        unlink(tmp.c_str());
        return "";
    }
    if (seconds) *seconds = took;
    return path;
}

}  // namespace tstest
