#include "support/sample_files.h"
#include "identify/image_tools.h"
#include "support/temp_dir.h"

#include <nlohmann/json.hpp>

namespace quarrydex::test {

std::string jpegOf(const RGB& color, int size) {
    return ImageTools::jpegData(*ImageTools::solid(color, size), 0.9).value();
}

namespace {

std::uint32_t crc32(std::string_view bytes) {
    std::uint32_t crc = 0xFFFFFFFFu;
    for (char c : bytes) {
        crc ^= static_cast<unsigned char>(c);
        for (int k = 0; k < 8; ++k) {
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
        }
    }
    return ~crc;
}

void putBigEndian(std::string& bytes, std::size_t at, std::uint32_t value) {
    for (int i = 0; i < 4; ++i) {
        bytes[at + i] = static_cast<char>((value >> (24 - 8 * i)) & 0xFF);
    }
}

} // namespace

std::string pngDeclaring(std::uint32_t width, std::uint32_t height) {
    ImageTools::initialize();
    vips::VImage image = ImageTools::solid({0.5, 0.5, 0.5}, 8)->pixels();
    VipsBlob* blob = image.pngsave_buffer();
    std::size_t n = 0;
    const void* data = vips_blob_get(blob, &n);
    std::string png(static_cast<const char*>(data), n);
    vips_area_unref(VIPS_AREA(blob));
    // Signature (8 bytes), then the IHDR chunk: length (4), "IHDR", width, height, 5 more
    // bytes of data, and the checksum of type and data.
    putBigEndian(png, 16, width);
    putBigEndian(png, 20, height);
    putBigEndian(png, 29, crc32(std::string_view(png).substr(12, 17)));
    return png;
}

std::filesystem::path makeSampleFolder(const std::filesystem::path& folder, int count) {
    std::filesystem::create_directories(folder);
    nlohmann::json manifest = nlohmann::json::array();
    for (int i = 0; i < count; ++i) {
        const std::string n = std::to_string(i);
        const std::string id = "sample-" + n;
        writeFile(folder / (id + ".jpg"), jpegOf({0.1 * i, 0.5, 0.5}));
        manifest.push_back({{"id", id},
                            {"specimenID", "s" + n},
                            {"name", "Sample " + n},
                            {"file", id + ".jpg"},
                            {"title", "t"},
                            {"page", "https://commons.example/" + id},
                            {"author", "Author " + n},
                            {"license", "CC0 1.0"},
                            {"licenseURL", "https://creativecommons.org/publicdomain/zero/1.0/"}});
    }
    writeFile(folder / "samples.json", manifest.dump());
    return folder;
}

} // namespace quarrydex::test
