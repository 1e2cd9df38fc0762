// Photo bytes: decoding (any format the loaders take), the centre colour, re-encoding as
// the stored JPEG, and the stored JPEG decoding again.

#include "fuzz_support.h"
#include "identify/image_tools.h"

using namespace quarrydex;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool ready = [] {
        bool ok = ImageTools::initialize();
        vips_concurrency_set(1); // one thread: reproducible, and what ASan sees is ours
        // Damaged input makes libvips warn on every run; printing it all slows fuzzing.
        g_log_set_handler(
            "VIPS", G_LOG_LEVEL_WARNING,
            [](const gchar*, GLogLevelFlags, const gchar*, gpointer) {}, nullptr);
        return ok;
    }();
    fuzz::require(ready, "libvips starts");

    // A small size keeps each input quick; every path of load() still runs.
    Result<Image, PhotoFailure> image = ImageTools::load(fuzz::bytesOf(data, size), 96);
    if (!image) {
        return 0;
    }
    fuzz::require(image->width() >= 1 && image->height() >= 1 && image->width() <= 96 &&
                      image->height() <= 96,
                  "a decoded photo fits the size asked for");
    std::optional<RGB> color = ImageTools::averageCenterColor(*image);
    if (color) {
        fuzz::require(color->r >= 0 && color->r <= 1 && color->g >= 0 && color->g <= 1 &&
                          color->b >= 0 && color->b <= 1,
                      "the centre colour is a colour");
    }
    std::optional<std::string> jpeg = ImageTools::jpegData(*image);
    fuzz::require(bool(jpeg), "a decoded photo encodes");
    fuzz::require(bool(ImageTools::decode(*jpeg, 96)), "the stored JPEG decodes");
    return 0;
}
