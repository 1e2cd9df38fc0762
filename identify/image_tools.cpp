#include "identify/image_tools.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace quarrydex {
using vips::VError;
using vips::VImage;

namespace {

std::string_view loaderOf(std::string_view data) {
    const char* loader = vips_foreign_find_load_buffer(data.data(), data.size());
    return loader ? std::string_view(loader) : std::string_view();
}

// 8-bit sRGB with 3 or 4 bands, whatever the source interpretation.
VImage toSRGB8(VImage image) {
    if (image.interpretation() != VIPS_INTERPRETATION_sRGB || image.format() != VIPS_FORMAT_UCHAR) {
        image = image.colourspace(VIPS_INTERPRETATION_sRGB);
        if (image.format() != VIPS_FORMAT_UCHAR) {
            image = image.cast(VIPS_FORMAT_UCHAR);
        }
    }
    if (image.bands() > 4) {
        image = image.extract_band(0, VImage::option()->set("n", 4));
    }
    return image;
}

// Pixels tagged with a colour profile, converted from it to sRGB (relative colorimetric,
// so colours outside sRGB are clipped rather than the whole image dulled). Untagged pixels
// are sRGB already; a profile that cannot be used (damaged, or for another kind of image)
// is ignored as if it were not there, like an untagged photo.
VImage fromProfileToSRGB(const VImage& image) {
    if (image.get_typeof(VIPS_META_ICC_NAME) == 0) {
        return image;
    }
    try {
        VImage converted = image
                               .icc_transform("srgb", VImage::option()
                                                          ->set("embedded", true)
                                                          ->set("intent", VIPS_INTENT_RELATIVE)
                                                          ->set("depth", 8))
                               .copy_memory();
        converted.remove(VIPS_META_ICC_NAME);
        return converted;
    } catch (const VError&) {
        vips_error_clear();
        VImage untagged = image.copy();
        untagged.remove(VIPS_META_ICC_NAME);
        return untagged;
    }
}

VImage fromRGBA(std::vector<unsigned char>& rgba, int width, int height) {
    // A copy: the image must not refer to the caller's buffer once it goes away.
    VipsImage* image = vips_image_new_from_memory_copy(rgba.data(), rgba.size(), width, height, 4,
                                                       VIPS_FORMAT_UCHAR);
    if (!image) {
        throw vips::VError();
    }
    return VImage(image).copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
}

// Scales down (never up) so the longest side is at most maxPixel.
VImage fitWithin(const VImage& image, int maxPixel) {
    const int longest = std::max(image.width(), image.height());
    if (longest <= maxPixel) {
        return image;
    }
    return image.resize(static_cast<double>(maxPixel) / longest);
}

unsigned char channel(double c) {
    return static_cast<unsigned char>(std::clamp(std::lround(c * 255.0), 0L, 255L));
}

} // namespace

bool ImageTools::initialize() {
    static const bool ready = [] {
        if (VIPS_INIT("quarrydex") != 0) {
            return false;
        }
        // Only the well-fuzzed loaders may read untrusted photos.
        vips_block_untrusted_set(TRUE);
        vips_cache_set_max(16);
        vips_cache_set_max_mem(32 * 1024 * 1024);
        vips_leak_set(FALSE);
        return true;
    }();
    return ready;
}

void ImageTools::shutdown() {
    if (initialize()) {
        vips_shutdown();
    }
}

RGB Image::pixel(int x, int y) const {
    std::vector<double> p = pixels_.getpoint(x, y);
    auto at = [&](std::size_t i) { return i < p.size() ? p[i] / 255.0 : p[0] / 255.0; };
    return {at(0), at(1), at(2)};
}

Result<Image, PhotoFailure> ImageTools::load(std::string_view data, int maxPixel) {
    if (!initialize() || data.empty() || maxPixel <= 0) {
        return PhotoFailure::notAnImage;
    }
    try {
        std::string_view loader = loaderOf(data);
        if (loader.empty()) {
            return PhotoFailure::notAnImage;
        }
        // Reads only the header: the size checks come before any pixel is decoded.
        VImage header = VImage::new_from_buffer(
            data.data(), data.size(), "", VImage::option()->set("access", VIPS_ACCESS_SEQUENTIAL));
        const double declared = static_cast<double>(header.width()) * header.height();
        const bool jpeg = loader.find("Jpeg") != std::string_view::npos;
        VImage image;
        if (jpeg) {
            // libjpeg scales by 1/2, 1/4 or 1/8 while decoding, far cheaper than decoding
            // every pixel: take the largest factor that still leaves at least maxPixel.
            const int longest = std::max(header.width(), header.height());
            int shrink = 1;
            while (shrink < 8 && longest / (shrink * 2) >= maxPixel) {
                shrink *= 2;
            }
            const double decoded = std::ceil(static_cast<double>(header.width()) / shrink) *
                                   std::ceil(static_cast<double>(header.height()) / shrink);
            const bool progressive =
                header.get_typeof("jpeg-multiscan") != 0 && header.get_int("jpeg-multiscan") != 0;
            if (decoded > maxDecodedMegapixels * 1e6 ||
                (progressive && declared > maxProgressiveJpegMegapixels * 1e6)) {
                return PhotoFailure::tooLarge;
            }
            // The orientation is applied to the result, not at the decoded size.
            image = VImage::new_from_buffer(
                data.data(), data.size(), "",
                VImage::option()->set("shrink", shrink)->set("fail_on", VIPS_FAIL_ON_TRUNCATED));
            image = fitWithin(image, maxPixel).copy_memory().autorot();
        } else if (declared > maxDecodedMegapixels * 1e6) {
            return PhotoFailure::tooLarge;
        } else if (loader.find("Heif") != std::string_view::npos) {
            // The thumbnailer may pick a HEIC file's embedded preview; load the primary
            // image itself and scale it down.
            VImage full = VImage::new_from_buffer(
                data.data(), data.size(), "",
                VImage::option()->set("thumbnail", false)->set("fail_on", VIPS_FAIL_ON_TRUNCATED));
            image = fitWithin(full, maxPixel).copy_memory().autorot();
        } else {
            VipsBlob* blob = vips_blob_new(nullptr, data.data(), data.size());
            try {
                // Shrink-on-load where the format has it, orientation applied, never upscaled;
                // a profile still attached is converted below, as for the other formats.
                image = VImage::thumbnail_buffer(blob, maxPixel,
                                                 VImage::option()
                                                     ->set("height", maxPixel)
                                                     ->set("size", VIPS_SIZE_DOWN)
                                                     ->set("option_string", "fail_on=truncated"));
                image = image.copy_memory(); // decode now, while the blob is alive
            } catch (...) {
                vips_area_unref(VIPS_AREA(blob));
                throw;
            }
            vips_area_unref(VIPS_AREA(blob));
        }
        image = toSRGB8(fromProfileToSRGB(image)).copy_memory();
        if (image.width() < 1 || image.height() < 1) {
            return PhotoFailure::notAnImage;
        }
        return Image(image);
    } catch (const VError&) {
        vips_error_clear();
        return PhotoFailure::notAnImage;
    }
}

std::optional<Image> ImageTools::decode(std::string_view data, int maxPixel) {
    Result<Image, PhotoFailure> image = load(data, maxPixel);
    if (!image) {
        return std::nullopt;
    }
    return std::move(image).value();
}

std::optional<RGB> ImageTools::averageCenterColor(const Image& image) {
    const int w = image.width(), h = image.height();
    if (w < 5 || h < 5 || !initialize()) {
        return std::nullopt;
    }
    try {
        VImage crop = image.pixels().crop(w / 4, h / 4, w / 2, h / 2);
        if (crop.format() != VIPS_FORMAT_UCHAR) {
            crop = crop.cast(VIPS_FORMAT_UCHAR);
        }
        const int bands = crop.bands();
        std::size_t size = 0;
        auto* px = static_cast<unsigned char*>(crop.write_to_memory(&size));
        // The mean of every pixel of the crop, which drawing it into a small bitmap only
        // approximates (and, for a crop smaller than the bitmap, pulls toward one corner).
        // Premultiplied, as in a bitmap: transparent parts count as black.
        const int colours = bands >= 3 ? 3 : 1;
        const bool hasAlpha = bands == 2 || bands >= 4;
        double sum[3] = {0, 0, 0};
        for (std::size_t i = 0; i + static_cast<std::size_t>(bands) <= size; i += bands) {
            const double alpha = hasAlpha ? px[i + colours] / 255.0 : 1.0;
            for (int c = 0; c < 3; ++c) {
                sum[c] += px[i + (colours == 3 ? c : 0)] * alpha;
            }
        }
        g_free(px);
        const double count = static_cast<double>(crop.width()) * crop.height() * 255.0;
        return RGB{sum[0] / count, sum[1] / count, sum[2] / count};
    } catch (const VError&) {
        vips_error_clear();
        return std::nullopt;
    }
}

std::optional<std::string> ImageTools::jpegData(const Image& image, double quality) {
    if (!initialize()) {
        return std::nullopt;
    }
    try {
        VImage pixels = image.pixels();
        if (pixels.bands() == 4) {
            pixels =
                pixels.flatten(VImage::option()->set("background", std::vector<double>{0, 0, 0}));
        }
        int q = static_cast<int>(std::lround(std::clamp(quality, 0.0, 1.0) * 100));
        VipsBlob* blob =
            pixels.jpegsave_buffer(VImage::option()->set("Q", std::max(q, 1))->set("strip", true));
        std::size_t length = 0;
        const void* bytes = vips_blob_get(blob, &length);
        std::string out(static_cast<const char*>(bytes), length);
        vips_area_unref(VIPS_AREA(blob));
        return out;
    } catch (const VError&) {
        vips_error_clear();
        return std::nullopt;
    }
}

Result<std::string, PhotoFailure> ImageTools::normalize(std::string_view data, int maxPixel) {
    Result<Image, PhotoFailure> image = load(data, maxPixel);
    if (!image) {
        return image.error();
    }
    std::optional<std::string> jpeg = jpegData(*image, 0.82);
    if (!jpeg) {
        return PhotoFailure::notAnImage;
    }
    return std::move(*jpeg);
}

std::optional<std::string> ImageTools::normalizedJPEG(std::string_view data, int maxPixel) {
    Result<std::string, PhotoFailure> jpeg = normalize(data, maxPixel);
    if (!jpeg) {
        return std::nullopt;
    }
    return std::move(jpeg).value();
}

std::optional<Image> ImageTools::solid(const RGB& color, int size) {
    if (size < 1 || !initialize()) {
        return std::nullopt;
    }
    std::vector<unsigned char> rgba(static_cast<std::size_t>(size) * size * 4);
    for (std::size_t i = 0; i < rgba.size(); i += 4) {
        rgba[i] = channel(color.r);
        rgba[i + 1] = channel(color.g);
        rgba[i + 2] = channel(color.b);
        rgba[i + 3] = 255;
    }
    try {
        return Image(fromRGBA(rgba, size, size));
    } catch (const VError&) {
        vips_error_clear();
        return std::nullopt;
    }
}

std::optional<Image> ImageTools::demoStone(const RGB& color, int size) {
    if (size < 8 || !initialize()) {
        return std::nullopt;
    }
    // A pebble: an ellipse in the colour, flat through the middle so the centre reads
    // true, shaded toward its rim, with a soft shadow on a dark slate ground.
    const double cx = size / 2.0, cy = size / 2.0;
    const double rx = size * 0.42, ry = size * 0.36;
    const RGB ground{0.16, 0.16, 0.18};
    std::vector<unsigned char> rgba(static_cast<std::size_t>(size) * size * 4);
    unsigned grain = 12345;
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            double dx = (x + 0.5 - cx) / rx, dy = (y + 0.5 - cy) / ry;
            double r = std::sqrt(dx * dx + dy * dy);
            RGB c = ground;
            double sdx = (x + 0.5 - cx - size * 0.03) / rx, sdy = (y + 0.5 - cy - size * 0.05) / ry;
            double shadow = std::sqrt(sdx * sdx + sdy * sdy);
            if (shadow < 1.08) {
                double k = 0.55 + 0.45 * std::clamp((shadow - 0.9) / 0.18, 0.0, 1.0);
                c = {ground.r * k, ground.g * k, ground.b * k};
            }
            if (r <= 1.0) {
                double shade = r < 0.95 ? 1.0 : 1.0 - (r - 0.95) / 0.05 * 0.3;
                grain = grain * 1103515245u + 12345u;
                double noise = ((grain >> 16) % 61) / 1000.0 - 0.03; // +-3%, averages out
                double k = shade * (1.0 + noise);
                c = {std::clamp(color.r * k, 0.0, 1.0), std::clamp(color.g * k, 0.0, 1.0),
                     std::clamp(color.b * k, 0.0, 1.0)};
            }
            std::size_t i = (static_cast<std::size_t>(y) * size + x) * 4;
            rgba[i] = channel(c.r);
            rgba[i + 1] = channel(c.g);
            rgba[i + 2] = channel(c.b);
            rgba[i + 3] = 255;
        }
    }
    try {
        return Image(fromRGBA(rgba, size, size));
    } catch (const VError&) {
        vips_error_clear();
        return std::nullopt;
    }
}

} // namespace quarrydex
