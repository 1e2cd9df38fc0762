#pragma once
// Photo decoding, downscaling, the centre-colour reading and JPEG encoding, on libvips.
// Photos are untrusted input: anything that is not a decodable image, or that would mean
// decoding more than 100 megapixels, gives no image, never a crash. All operations are
// stateless and may be called from any thread.

#include "identify/rgb.h"
#include "store/result.h"

#include <optional>
#include <string>
#include <string_view>
#include <vips/vips8> // vips::VImage, the decoded pixels

namespace quarrydex {

// A decoded, upright sRGB image with 8 bits per channel (3 or 4 bands), held in memory.
class Image {
public:
    explicit Image(vips::VImage pixels) : pixels_(std::move(pixels)) {}
    int width() const { return pixels_.width(); }
    int height() const { return pixels_.height(); }
    const vips::VImage& pixels() const { return pixels_; }
    // The colour of one pixel (tests and diagnostics).
    RGB pixel(int x, int y) const;

private:
    vips::VImage pixels_;
};

// Why photo bytes gave no image.
enum class PhotoFailure {
    notAnImage, // not an image, damaged or cut short, or in a format that is not read
    tooLarge,   // an image, but decoding it would take more pixels than are allowed
};

class ImageTools {
public:
    // The most pixels decoded for one photo. A JPEG is decoded at 1/2, 1/4 or 1/8 of its
    // size when that still gives the size asked for, so a 200-megapixel phone photo
    // decodes about 3 megapixels; other formats decode every pixel they declare.
    static constexpr double maxDecodedMegapixels = 100.0;
    // A progressive JPEG keeps every coefficient of the full image in memory whatever the
    // scale (two bytes a sample), so its declared size is limited too.
    static constexpr double maxProgressiveJpegMegapixels = 256.0;

    // Decodes the first image in `data` (JPEG, PNG, HEIC, TIFF, WebP...) with its
    // orientation applied and its longest side at most `maxPixel`, always from the full
    // image, never from an embedded preview. Pixels tagged with a colour profile (Display
    // P3 from phones, Adobe RGB from cameras) are converted to sRGB; untagged pixels are
    // taken as sRGB. The size limits are checked from the header, before any pixel is
    // decoded.
    static Result<Image, PhotoFailure> load(std::string_view data, int maxPixel);
    // load() without the reason: none for anything that gives no image.
    static std::optional<Image> decode(std::string_view data, int maxPixel);

    // Mean colour of the middle quarter (origin width/4, height/4, size width/2 x
    // height/2), alpha premultiplied so transparent parts count as black; exact, however
    // small the image. None below 5 x 5.
    static std::optional<RGB> averageCenterColor(const Image& image);

    // JPEG with quality 0...1; none when encoding fails.
    static std::optional<std::string> jpegData(const Image& image, double quality = 0.82);

    // load() then jpegData() at 0.82: the form photos are kept in (sRGB, no profile).
    static Result<std::string, PhotoFailure> normalize(std::string_view data, int maxPixel = 1600);
    // normalize() without the reason.
    static std::optional<std::string> normalizedJPEG(std::string_view data, int maxPixel = 1600);

    // A size x size opaque image of one colour.
    static std::optional<Image> solid(const RGB& color, int size);

    // A synthetic picture of a stone of the given colour on a dark ground; its centre
    // reads back as that colour.
    static std::optional<Image> demoStone(const RGB& color, int size);

    // Starts libvips once, limited to its trusted loaders and a small operation cache.
    // Called by every operation above; callers never need to.
    static bool initialize();
    // Stops libvips's worker threads before the process exits; no image operation may
    // follow. Leaving them running into exit() can crash at shutdown.
    static void shutdown();
};

} // namespace quarrydex
