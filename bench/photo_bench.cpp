// Photo preparation, the path every added photo takes (normalised 1600-px JPEG, decoded
// again at 800 px, centre colour), on camera-like photos: a 24-megapixel JPEG, the same
// saved progressive, and a 200-megapixel phone photo. Each is compared with a naive
// full-size decode (24 MP) and with libjpeg-turbo's own scaled decode of the same file as
// the floor: 1/2 for 24 MP, 1/8 for 200 MP, the scales the preparation decodes at.

#include "identify/image_tools.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <unistd.h>
#include <vector>

using namespace quarrydex;
using vips::VImage;

namespace {

struct PhotoKind {
    const char* name;
    int width;
    int height;
    bool progressive;
    const char* djpegScale; // the scale the preparation decodes this photo at
};

constexpr PhotoKind camera24{"24 MP photo", 6000, 4000, false, "1/2"};
constexpr PhotoKind progressive24{"24 MP progressive photo", 6000, 4000, true, "1/2"};
constexpr PhotoKind phone200{"200 MP phone photo", 16320, 12240, false, "1/8"};

// A JPEG with camera-like texture (gradients plus noise), made once per kind.
const std::string& photo(const PhotoKind& kind) {
    static std::map<const PhotoKind*, std::string> made;
    auto it = made.find(&kind);
    if (it != made.end()) {
        return it->second;
    }
    ImageTools::initialize();
    const int w = kind.width, h = kind.height;
    VImage xy = VImage::xyz(w, h);
    VImage x = xy.extract_band(0), y = xy.extract_band(1);
    VImage noise = VImage::gaussnoise(w, h, VImage::option()->set("sigma", 18.0));
    VImage r = x * (120.0 / w) + 60 + noise;
    VImage g = y * (90.0 / h) + 70 + noise;
    VImage b = (x + y) * (60.0 / (w + h)) + 50 + noise;
    VImage rgb = r.bandjoin({g, b})
                     .cast(VIPS_FORMAT_UCHAR)
                     .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
    VipsBlob* blob =
        rgb.jpegsave_buffer(VImage::option()->set("Q", 92)->set("interlace", kind.progressive));
    std::size_t n = 0;
    const void* data = vips_blob_get(blob, &n);
    std::string out(static_cast<const char*>(data), n);
    vips_area_unref(VIPS_AREA(blob));
    return made.emplace(&kind, std::move(out)).first->second;
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

void BM_PreparePhoto(benchmark::State& state, const PhotoKind* kind) {
    const std::string& bytes = photo(*kind);
    bool prepared = true;
    for (auto _ : state) {
        prepared = prepare(bytes);
        benchmark::DoNotOptimize(prepared);
    }
    if (!prepared) {
        state.SkipWithError("the photo was refused");
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes.size()));
}
BENCHMARK_CAPTURE(BM_PreparePhoto, 24MP, &camera24)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK_CAPTURE(BM_PreparePhoto, 24MPProgressive, &progressive24)
    ->Unit(benchmark::kMillisecond)
    ->MinTime(2.0);
BENCHMARK_CAPTURE(BM_PreparePhoto, 200MP, &phone200)->Unit(benchmark::kMillisecond)->MinTime(2.0);

void BM_PreparePhoto24MPNaive(benchmark::State& state) {
    const std::string& bytes = photo(camera24);
    for (auto _ : state) {
        benchmark::DoNotOptimize(prepareNaively(bytes));
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

// The floor: libjpeg-turbo decoding the same file at the scale the preparation decodes it
// at, with no resize, no encode and no colour work.
void compareWithDjpeg(const PhotoKind& kind) {
    const std::string& bytes = photo(kind);
    std::filesystem::path file = std::filesystem::temp_directory_path() /
                                 ("quarrydex-bench-" + std::to_string(::getpid()) + ".jpg");
    std::ofstream(file, std::ios::binary) << bytes;
    const std::string command = std::string("djpeg -scale ") + kind.djpegScale +
                                " -outfile /dev/null '" + file.string() + "'";
    const int rounds = 9;
    double djpeg = timeMs(rounds, [&] { return std::system(command.c_str()); });
    bool accepted = prepare(bytes);
    double ours = timeMs(rounds, [&] { prepare(bytes); });
    std::filesystem::remove(file);
    std::printf("\n%s (%d x %d, %.1f MB JPEG), median of %d:\n", kind.name, kind.width, kind.height,
                bytes.size() / 1e6, rounds);
    std::printf("  djpeg -scale %s decode only : %8.1f ms\n", kind.djpegScale, djpeg);
    std::printf("  Quarrydex photo preparation  : %8.1f ms%s\n", ours,
                accepted ? "" : " (REFUSED the photo)");
    std::printf("  ratio                        : %8.2f\n", ours / djpeg);
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    if (std::system("command -v djpeg >/dev/null 2>&1") != 0) {
        std::printf("djpeg is not installed (Debian package libjpeg-turbo-progs): no floor\n");
        return 0;
    }
    for (const PhotoKind* kind : {&camera24, &progressive24, &phone200}) {
        compareWithDjpeg(*kind);
    }
    return 0;
}
