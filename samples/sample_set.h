#pragma once
// The freely licensed sample photos shipped beside the program ("Samples" with its
// manifest "samples.json"), and loading them into the store as a ready-made collection
// that can be removed again without touching the user's own stones.

#include "identify/image_tools.h"
#include "identify/rgb.h"
#include "library/specimen_library.h"
#include "store/stone_store.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quarrydex {

struct SamplePhoto {
    std::string id;
    std::string specimenID;
    std::string name;
    std::string file; // bare image file name inside the samples folder
    std::string title;
    std::string page; // source page
    std::string author;
    std::string license;
    std::string licenseURL;

    bool operator==(const SamplePhoto&) const = default;

    // "Photo: <author>, <license>, via Wikimedia Commons"
    std::string creditLine() const;
    // CC BY, CC0 and public domain; share-alike, non-commercial and no-derivatives
    // licences deliberately do not count.
    bool isFreelyLicensed() const;
};

// Photo bytes made ready for identification: a normalised JPEG, its decoded image and
// the centre colour.
struct SamplePipeline {
    struct Prepared {
        std::string jpeg;
        Image image;
        std::optional<RGB> color;
    };
    // normalizedJPEG at 1600 px, decoded again at 800 px, centre colour. None when the
    // bytes are not a usable image; the colour alone may be missing.
    static std::optional<Prepared> prepare(std::string_view data);
    // prepare() telling why there is no result: not an image, or one too large to open.
    static Result<Prepared, PhotoFailure> prepareChecked(std::string_view data);
};

class SampleSet {
public:
    // Reads "samples.json" in `folder`; none when it is missing, undecodable or empty.
    static std::optional<SampleSet> open(const std::filesystem::path& folder);
    // "Samples" in the program's resource folder.
    static std::optional<SampleSet> bundled();
    static std::optional<SampleSet> bundled(const std::filesystem::path& resourceFolder);

    const std::filesystem::path& folder() const { return folder_; }
    const std::vector<SamplePhoto>& samples() const { return samples_; }

    const SamplePhoto* sample(std::string_view id) const;
    // The image bytes; none for a file name holding "/" or an unreadable file.
    std::optional<std::string> imageData(const SamplePhoto& photo) const;
    // Sum of the image file sizes.
    std::uintmax_t totalBytes() const;
    // One credit block per sample, for the help chapter.
    std::string creditsText() const;

    // Adds one collection piece per sample not yet loaded, plus example identifications
    // for the first three; returns the number of pieces added.
    int load(StoneStore& store, const SpecimenLibrary& library) const;

private:
    SampleSet(std::filesystem::path folder, std::vector<SamplePhoto> samples)
        : folder_(std::move(folder)), samples_(std::move(samples)) {}

    std::filesystem::path folder_;
    std::vector<SamplePhoto> samples_;
};

} // namespace quarrydex
