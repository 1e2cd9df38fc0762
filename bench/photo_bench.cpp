// Photo preparation of a 24-megapixel camera photo: the path every added photo takes
// (normalised 1600-px JPEG, decoded again at 800 px, centre colour), against a naive
// full-size decode and against libjpeg-turbo's own half-scale decode as the floor.

#include "identify/image_tools.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

using namespace quarrydex;
using vips::VImage;

namespace {

// A 6000 x 4000 JPEG with camera-like texture (gradients plus noise), made once.
const std::string& cameraPhoto() {
    static const std::string bytes = [] {
        ImageTools::initialize();
        VImage xy = VImage::xyz(6000, 4000);
        VImage x = xy.extract_band(0), y = xy.extract_band(1);
        VImage noise = VImage::gaussnoise(6000, 4000, VImage::option()->set("sigma", 18.0));
        VImage r = x * (120.0 / 6000) + 60 + noise;
        VImage g = y * (90.0 / 4000) + 70 + noise;
        VImage b = (x + y) * (60.0 / 10000) + 50 + noise;
        VImage rgb = r.bandjoin({g, b})
                         .cast(VIPS_FORMAT_UCHAR)
                         .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
        VipsBlob* blob = rgb.jpegsave_buffer(VImage::option()->set("Q", 92));
        std::size_t n = 0;
        const void* data = vips_blob_get(blob, &n);
        std::string out(static_cast<const char*>(data), n);
        vips_area_unref(VIPS_AREA(blob));
        return out;
    }();
    return bytes;
}

bool prepare(const std::string& photo) {
    auto jpeg = ImageTools::normalizedJPEG(photo, 1600);
    if (!jpeg) {
        return false;
    }
    auto image = ImageTools::decode(*jpeg, 800);
    return image && ImageTools::averageCenterColor(*image).has_value();
}

// Decodes every pixel at full size before scaling: what a straightforward loader does.
bool prepareNaively(const std::string& photo) {
    VImage full = VImage::new_from_buffer(photo.data(), photo.size(), "").autorot();
    VImage scaled = full.resize(1600.0 / std::max(full.width(), full.height()));
    auto jpeg = ImageTools::jpegData(Image(scaled.copy_memory()), 0.82);
    if (!jpeg) {
        return false;
    }
    VImage again = VImage::new_from_buffer(jpeg->data(), jpeg->size(), "");
    Image small(again.resize(800.0 / std::max(again.width(), again.height())).copy_memory());
    return ImageTools::averageCenterColor(small).has_value();
}

void BM_PreparePhoto24MP(benchmark::State& state) {
    const std::string& photo = cameraPhoto();
    for (auto _ : state) {
        benchmark::DoNotOptimize(prepare(photo));
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * photo.size()));
}
BENCHMARK(BM_PreparePhoto24MP)->Unit(benchmark::kMillisecond)->MinTime(2.0);

void BM_PreparePhoto24MPNaive(benchmark::State& state) {
    const std::string& photo = cameraPhoto();
    for (auto _ : state) {
        benchmark::DoNotOptimize(prepareNaively(photo));
    }
}
BENCHMARK(BM_PreparePhoto24MPNaive)->Unit(benchmark::kMillisecond)->MinTime(2.0);

double medianMs(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

template <class F> double timeMs(int rounds, F&& f) {
    std::vector<double> samples;
    for (int i = 0; i < rounds; ++i) {
        auto start = std::chrono::steady_clock::now();
        f();
        samples.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
                .count());
    }
    return medianMs(samples);
}

// The floor: libjpeg-turbo decoding the same file at half scale, the resolution the
// preparation needs, with no resize, no encode and no colour work.
void compareWithDjpeg() {
    const std::string& photo = cameraPhoto();
    std::filesystem::path file = std::filesystem::temp_directory_path() /
                                 ("quarrydex-bench-" + std::to_string(::getpid()) + ".jpg");
    std::ofstream(file, std::ios::binary) << photo;
    const std::string command = "djpeg -scale 1/2 -outfile /dev/null '" + file.string() + "'";
    if (std::system("command -v djpeg >/dev/null 2>&1") != 0) {
        std::printf(
            "djpeg is not installed (Debian package libjpeg-turbo-progs): no floor figure\n");
        std::filesystem::remove(file);
        return;
    }
    const int rounds = 9;
    double djpeg = timeMs(rounds, [&] { return std::system(command.c_str()); });
    double ours = timeMs(rounds, [&] { prepare(photo); });
    std::filesystem::remove(file);
    std::printf("\n24 MP photo (%.1f MB JPEG), median of %d:\n", photo.size() / 1e6, rounds);
    std::printf("  djpeg -scale 1/2 decode only : %8.1f ms\n", djpeg);
    std::printf("  Quarrydex photo preparation  : %8.1f ms\n", ours);
    std::printf("  ratio                        : %8.2f (target at most 2.00)\n", ours / djpeg);
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    compareWithDjpeg();
    return 0;
}
