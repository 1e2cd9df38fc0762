#include "support/sample_files.h"
#include "identify/image_tools.h"
#include "support/temp_dir.h"

#include <nlohmann/json.hpp>

namespace quarrydex::test {

std::string jpegOf(const RGB& color, int size) {
    return ImageTools::jpegData(*ImageTools::solid(color, size), 0.9).value();
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
