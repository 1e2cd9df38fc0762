#include "samples/sample_set.h"
#include "support/sample_files.h"
#include "support/specimens.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

using namespace quarrydex;
using quarrydex::test::jpegOf;
using quarrydex::test::makeSampleFolder;
namespace fs = std::filesystem;

namespace {

SamplePhoto photo(const std::string& license) {
    SamplePhoto p;
    p.author = "Someone";
    p.license = license;
    return p;
}

SpecimenLibrary libraryFor(int count) {
    return SpecimenLibrary(test::numberedSpecimens(count));
}

} // namespace

TEST(SampleLicences, only_attribution_zero_and_public_domain_count_as_free) {
    for (const char* free :
         {"CC BY 4.0", "CC BY 2.0", "CC0 1.0", "Public domain", "PD-USGov", "cc by 3.0"}) {
        EXPECT_TRUE(photo(free).isFreelyLicensed()) << free;
    }
    for (const char* notFree :
         {"CC BY-SA 4.0", "CC BY-NC 2.0", "CC BY-ND 4.0", "GFDL", "", "All rights reserved"}) {
        EXPECT_FALSE(photo(notFree).isFreelyLicensed()) << notFree;
    }
    EXPECT_EQ(photo("CC0 1.0").creditLine(), "Photo: Someone, CC0 1.0, via Wikimedia Commons");
}

TEST(SampleManifest, missing_empty_or_malformed_manifests_give_no_set) {
    test::TempDir dir;
    EXPECT_FALSE(SampleSet::open(dir.path()));
    test::writeFile(dir / "samples.json", "[]");
    EXPECT_FALSE(SampleSet::open(dir.path()));
    test::writeFile(dir / "samples.json", R"([{"id": "x"}])");
    EXPECT_FALSE(SampleSet::open(dir.path())) << "all nine keys are required";
    test::writeFile(dir / "samples.json", "{not json");
    EXPECT_FALSE(SampleSet::open(dir.path()));
    EXPECT_FALSE(SampleSet::bundled(dir.path())) << "no Samples folder";
}

TEST(SampleManifest, credits_lookup_and_image_access) {
    test::TempDir dir;
    fs::copy_file(test::fixture("samples/credits-manifest.json"), dir / "samples.json");
    test::writeFile(dir / "one.jpg", "0123456789");
    auto set = SampleSet::open(dir.path());
    ASSERT_TRUE(set);
    EXPECT_EQ(set->creditsText(), "\u2022 Clear quartz \u2014 A. Author, CC BY 4.0 "
                                  "(https://creativecommons.org/licenses/by/4.0/)\n"
                                  "  https://commons.example/one\n"
                                  "\u2022 Mystery \u2014 B. Author, CC0 1.0 "
                                  "(https://creativecommons.org/publicdomain/zero/1.0/)\n"
                                  "  https://commons.example/two");
    ASSERT_NE(set->sample("two"), nullptr);
    EXPECT_EQ(set->sample("two")->specimenID, "unknown-species");
    EXPECT_EQ(set->sample("three"), nullptr);
    EXPECT_EQ(set->imageData(*set->sample("one")), "0123456789");
    EXPECT_FALSE(set->imageData(*set->sample("two"))) << "file missing";
    EXPECT_EQ(set->totalBytes(), 10u);

    SamplePhoto escape = *set->sample("one");
    escape.file = "../one.jpg";
    EXPECT_FALSE(set->imageData(escape));
}

TEST(SampleLoading, adds_pieces_in_manifest_order_with_examples_and_loads_once) {
    test::TempDir dir;
    auto set = SampleSet::open(makeSampleFolder(dir / "Samples", 4));
    ASSERT_TRUE(set);
    SpecimenLibrary library = libraryFor(3); // "s3" is unknown to this library
    StoneStore store(dir / "data");

    EXPECT_EQ(set->load(store, library), 4);
    const auto& c = store.collection();
    ASSERT_EQ(c.size(), 4u);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(c[i].sampleID, "sample-" + std::to_string(i)) << "first sample on top";
        EXPECT_EQ(c[i].name, "Sample: Sample " + std::to_string(i));
        EXPECT_EQ(c[i].location, "Sample photo (Wikimedia Commons)");
        EXPECT_EQ(c[i].isSample, true);
        EXPECT_TRUE(store.photoData(c[i].photoFile));
    }
    EXPECT_NEAR(c[0].dateAdded.sinceReference - c[1].dateAdded.sinceReference, 60.0, 1e-6);
    EXPECT_NEAR(c[0].dateAdded.sinceReference - c[3].dateAdded.sinceReference, 180.0, 1e-6);
    EXPECT_EQ(c[0].specimenID, "s0");
    EXPECT_FALSE(c[3].specimenID) << "the library does not know s3";
    EXPECT_EQ(c[1].notes,
              "Built-in sample so you can try Quarrydex. Photo: Author 1, CC0 1.0, via "
              "Wikimedia Commons.\nhttps://commons.example/sample-1\nRemove all samples "
              "with Help > Remove Sample Collection.");

    ASSERT_EQ(store.history().size(), 3u);
    for (const auto& h : store.history()) {
        EXPECT_EQ(h.isSample, true);
        EXPECT_EQ(h.results.size(), 3u) << "fewer than five species";
        EXPECT_EQ(h.level, "roughGuess");
        ASSERT_EQ(h.answers.size(), 1u);
        EXPECT_TRUE(h.answers[0].starts_with("Photo color (sample: Sample "));
    }
    EXPECT_EQ(store.history()[0].answers[0], "Photo color (sample: Sample 0)");
    EXPECT_EQ(store.history()[0].photoFile, c[0].photoFile) << "shared photo file";

    EXPECT_EQ(set->load(store, library), 0);
    EXPECT_EQ(store.collection().size(), 4u);
    EXPECT_TRUE(store.hasSamples());
}

TEST(SampleLoading, unreadable_samples_are_skipped_and_removal_keeps_the_users_stones) {
    test::TempDir dir;
    fs::path folder = makeSampleFolder(dir / "Samples", 3);
    test::writeFile(folder / "sample-1.jpg", "broken");
    auto set = SampleSet::open(folder);
    StoneStore store(dir / "data");
    CollectionEntry own;
    own.name = "Beach pebble";
    own.location = "Brighton";
    own.photoFile = store.storePhoto(jpegOf({0.5, 0.5, 0.5}), own.id);
    store.add(own);

    EXPECT_EQ(set->load(store, libraryFor(3)), 2);
    EXPECT_EQ(store.removeSamples(), 2);
    ASSERT_EQ(store.collection().size(), 1u);
    EXPECT_EQ(store.collection()[0].id, own.id);
    EXPECT_TRUE(store.history().empty());
    EXPECT_EQ(test::namesIn(store.photosFolder()), std::set<std::string>{*own.photoFile})
        << "the sample photos are gone, the user's photo stays";
    EXPECT_EQ(set->load(store, libraryFor(3)), 2) << "samples can be loaded again after removal";
}
