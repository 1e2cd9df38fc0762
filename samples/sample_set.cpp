#include "samples/sample_set.h"

#include "identify/matcher.h"
#include "library/resource_locator.h"

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

namespace quarrydex {
namespace fs = std::filesystem;

namespace {

std::optional<std::string> readAll(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        return std::nullopt;
    }
    std::ostringstream out;
    out << in.rdbuf();
    if (in.bad()) {
        return std::nullopt;
    }
    return out.str();
}

std::optional<std::vector<SamplePhoto>> decodeManifest(std::string_view text) {
    try {
        nlohmann::json root = nlohmann::json::parse(text);
        if (!root.is_array()) {
            return std::nullopt;
        }
        std::vector<SamplePhoto> out;
        for (const auto& item : root) {
            SamplePhoto p;
            std::pair<const char*, std::string*> fields[] = {{"id", &p.id},
                                                             {"specimenID", &p.specimenID},
                                                             {"name", &p.name},
                                                             {"file", &p.file},
                                                             {"title", &p.title},
                                                             {"page", &p.page},
                                                             {"author", &p.author},
                                                             {"license", &p.license},
                                                             {"licenseURL", &p.licenseURL}};
            for (auto [key, field] : fields) {
                auto it = item.find(key);
                if (it == item.end() || !it->is_string()) {
                    return std::nullopt;
                }
                *field = it->get<std::string>();
            }
            out.push_back(std::move(p));
        }
        return out;
    } catch (const nlohmann::json::exception&) {
        return std::nullopt;
    }
}

std::string upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

} // namespace

std::string SamplePhoto::creditLine() const {
    return "Photo: " + author + ", " + license + ", via Wikimedia Commons";
}

bool SamplePhoto::isFreelyLicensed() const {
    const std::string l = upper(license);
    for (const char* restricted : {"SA", "NC", "ND"}) {
        if (l.find(restricted) != std::string::npos) {
            return false;
        }
    }
    for (const char* free : {"CC BY", "CC0", "PUBLIC DOMAIN", "PD"}) {
        if (l.starts_with(free)) {
            return true;
        }
    }
    return false;
}

Result<SamplePipeline::Prepared, PhotoFailure>
SamplePipeline::prepareChecked(std::string_view data) {
    Result<std::string, PhotoFailure> jpeg = ImageTools::normalize(data, 1600);
    if (!jpeg) {
        return jpeg.error();
    }
    Result<Image, PhotoFailure> image = ImageTools::load(*jpeg, 800);
    if (!image) {
        return image.error();
    }
    auto color = ImageTools::averageCenterColor(*image);
    return Prepared{std::move(jpeg).value(), std::move(image).value(), color};
}

std::optional<SamplePipeline::Prepared> SamplePipeline::prepare(std::string_view data) {
    Result<Prepared, PhotoFailure> prepared = prepareChecked(data);
    if (!prepared) {
        return std::nullopt;
    }
    return std::move(prepared).value();
}

std::optional<SampleSet> SampleSet::open(const fs::path& folder) {
    auto text = readAll(folder / "samples.json");
    if (!text) {
        return std::nullopt;
    }
    auto samples = decodeManifest(*text);
    if (!samples || samples->empty()) {
        return std::nullopt;
    }
    return SampleSet(folder, std::move(*samples));
}

std::optional<SampleSet> SampleSet::bundled() {
    return bundled(ResourceLocator::resourceFolder());
}

std::optional<SampleSet> SampleSet::bundled(const fs::path& resourceFolder) {
    return open(resourceFolder / "Samples");
}

const SamplePhoto* SampleSet::sample(std::string_view id) const {
    auto it = std::find_if(samples_.begin(), samples_.end(),
                           [&](const SamplePhoto& p) { return p.id == id; });
    return it == samples_.end() ? nullptr : &*it;
}

std::optional<std::string> SampleSet::imageData(const SamplePhoto& photo) const {
    if (photo.file.empty() || photo.file.find('/') != std::string::npos || photo.file == "." ||
        photo.file == "..") {
        return std::nullopt;
    }
    return readAll(folder_ / photo.file);
}

std::uintmax_t SampleSet::totalBytes() const {
    std::uintmax_t total = 0;
    for (const auto& p : samples_) {
        std::error_code ec;
        auto size = fs::file_size(folder_ / p.file, ec);
        if (!ec && p.file.find('/') == std::string::npos) {
            total += size;
        }
    }
    return total;
}

std::string SampleSet::creditsText() const {
    std::string out;
    for (std::size_t i = 0; i < samples_.size(); ++i) {
        const auto& p = samples_[i];
        if (i) {
            out += "\n";
        }
        out += "\u2022 " + p.name + " \u2014 " + p.author + ", " + p.license + " (" + p.licenseURL +
               ")\n  " + p.page;
    }
    return out;
}

int SampleSet::load(StoneStore& store, const SpecimenLibrary& library) const {
    std::set<std::string> loaded;
    for (const auto& entry : store.collection()) {
        if (entry.isSample.value_or(false) && entry.sampleID) {
            loaded.insert(*entry.sampleID);
        }
    }
    const Timestamp now = Timestamp::now();
    Matcher matcher;
    int added = 0;
    // Newest first in the store: walking the manifest backwards leaves the first sample on top.
    for (std::size_t k = samples_.size(); k-- > 0;) {
        const SamplePhoto& sample = samples_[k];
        if (loaded.contains(sample.id)) {
            continue;
        }
        auto bytes = imageData(sample);
        if (!bytes) {
            continue;
        }
        auto prepared = SamplePipeline::prepare(*bytes);
        if (!prepared) {
            continue;
        }
        auto photoFile = store.storePhoto(prepared->jpeg, Uuid::random());
        const Specimen* species = library.specimen(sample.specimenID);

        CollectionEntry entry;
        if (species) {
            entry.specimenID = species->id;
        }
        entry.name = "Sample: " + sample.name;
        entry.dateAdded = now.plusSeconds(-60.0 * static_cast<double>(k));
        entry.acquisition = "gift";
        entry.location = "Sample photo (Wikimedia Commons)";
        entry.notes = "Built-in sample so you can try Quarrydex. " + sample.creditLine() + ".\n" +
                      sample.page + "\nRemove all samples with Help > Remove Sample Collection.";
        entry.photoFile = photoFile;
        entry.isSample = true;
        entry.sampleID = sample.id;
        store.add(entry);
        ++added;

        if (k < 3) {
            IdentifyResult result = matcher.identify(prepared->color, {}, library.specimens(), 5);
            HistoryEntry example;
            example.answers = {"Photo color (sample: " + sample.name + ")"};
            for (const auto& c : result.candidates) {
                example.results.push_back({c.specimen.id, c.confidence});
            }
            example.level = std::string(rawValue(result.level));
            example.photoFile = photoFile;
            example.isSample = true;
            store.addHistory(example);
        }
    }
    return added;
}

} // namespace quarrydex
