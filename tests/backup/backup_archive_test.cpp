#include "backup/backup_archive.h"
#include "backup/base64.h"
#include "backup_test_data.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>
#include <limits>
#include <nlohmann/json.hpp>
#include <random>

namespace quarrydex {
namespace {
namespace fs = std::filesystem;
using nlohmann::json;
using test::at;
using test::TempDir;

const std::string notABackup = "That file isn't a Quarrydex backup.";

std::string fixtureText(const std::string& name) {
    return test::readFile(test::fixture("backup/" + name));
}

// The encoded full archive as a JSON value, for tests that damage one part of it.
json fullJson() {
    return json::parse(BackupCodec::encode(test::fullArchive()));
}

std::string refusal(std::string_view bytes) {
    BackupResult<BackupArchive> decoded = BackupCodec::decode(bytes);
    return decoded ? "decoded" : decoded.error().description();
}

// A format 2 header with no records and the given version text.
std::string withVersion(const std::string& version) {
    return R"({"app":"Quarrydex","createdAt":"2026-10-18T12:00:00Z","items":[],"version":)" +
           version + "}";
}

// --- Round trips -----------------------------------------------------------------------

TEST(BackupRoundTrip, encode_then_decode_returns_every_field_and_photo_unchanged) {
    BackupArchive archive = test::fullArchive();
    BackupResult<BackupArchive> decoded = BackupCodec::decode(BackupCodec::encode(archive));
    ASSERT_TRUE(decoded) << decoded.description();
    EXPECT_EQ(*decoded, archive);
    EXPECT_EQ(decoded->items[0].photo, archive.items[0].photo);
}

TEST(BackupRoundTrip, dates_keep_whole_seconds_and_lose_their_fraction) {
    BackupArchive archive;
    archive.createdAt = at("2026-10-18T12:00:00Z").plusSeconds(0.75);
    std::string bytes = BackupCodec::encode(archive);
    EXPECT_NE(bytes.find("\"createdAt\":\"2026-10-18T12:00:00Z\""), std::string::npos) << bytes;
    BackupResult<BackupArchive> decoded = BackupCodec::decode(bytes);
    ASSERT_TRUE(decoded) << decoded.description();
    EXPECT_EQ(decoded->createdAt, at("2026-10-18T12:00:00Z"));
}

// Cleaning up the staging folder is checked with restoreFile().
TEST(BackupRoundTrip, decode_file_stages_photos_on_disk_and_matches_decode) {
    TempDir dir;
    BackupArchive archive = test::fullArchive();
    test::writeFile(dir / "backup.json", BackupCodec::encode(archive));
    BackupResult<StagedBackup> staged = BackupCodec::decodeFile(dir / "backup.json", dir.path());
    ASSERT_TRUE(staged) << staged.description();
    EXPECT_EQ(staged->itemPhoto(0), archive.items[0].photo);
    EXPECT_EQ(staged->itemPhoto(1), std::nullopt);
    EXPECT_EQ(staged->historyPhoto(0), (*archive.history)[0].photo);
    EXPECT_EQ(staged->historyPhoto(1), std::nullopt);
    // Records match; the photos are not held in them.
    archive.items[0].photo.reset();
    (*archive.history)[0].photo.reset();
    EXPECT_EQ(staged->archive(), archive);
}

TEST(BackupRoundTrip, records_read_from_a_file_keep_no_photo_sized_buffers) {
    // The reader reuses one buffer for all strings; a record must not walk off with it
    // after a photo, or a big restore would hold every photo's worth of memory after all.
    TempDir dir;
    BackupArchive archive = test::fullArchive();
    archive.items[0].photo = std::string(300'000, 'p');
    test::writeFile(dir / "backup.json", BackupCodec::encode(archive));
    BackupResult<StagedBackup> staged = BackupCodec::decodeFile(dir / "backup.json", dir.path());
    ASSERT_TRUE(staged) << staged.description();
    EXPECT_LT(staged->archive().items[0].specimenID->capacity(), 1000u);
}

// --- The file format -------------------------------------------------------------------

// nlohmann's objects are sorted maps and its dump() is compact, so equality with a re-dump
// means one line, keys in byte order, and escapes exactly as a JSON library writes them.
TEST(BackupFormat, a_backup_is_one_compact_line_with_keys_in_byte_order) {
    std::string bytes = BackupCodec::encode(test::fullArchive());
    EXPECT_EQ(bytes, json::parse(bytes).dump());
}

TEST(BackupFormat, values_are_written_as_the_format_says) {
    json file = fullJson();
    EXPECT_EQ(file["version"], 2);
    EXPECT_EQ(file["app"], "Quarrydex");
    EXPECT_EQ(file["publisher"], "Fernwick");
    EXPECT_EQ(file["createdAt"], "2026-10-18T12:00:00Z");
    EXPECT_EQ(file["items"][0]["photo"],
              base64::encode(test::fullArchive().items[0].photo.value()));
    EXPECT_EQ(file["items"][0]["confidence"], 0.8734567890123);
    EXPECT_EQ(file["history"][0]["results"][2]["confidence"], 1.0);
    const std::string id = file["items"][0]["id"];
    EXPECT_EQ(id, test::fullArchive().items[0].id.text());
    EXPECT_EQ(id.find_first_of("abcdef"), std::string::npos) << "UUIDs are upper case";
}

TEST(BackupFormat, optional_values_without_a_value_are_left_out_never_null) {
    BackupArchive archive;
    archive.items.push_back({});
    archive.items[0].name = "Bare";
    std::string bytes = BackupCodec::encode(archive);
    EXPECT_EQ(bytes.find("null"), std::string::npos) << bytes;
    for (const char* key :
         {"publisher", "history", "favorites", "confidence", "photo", "specimenID"}) {
        EXPECT_EQ(bytes.find(std::string("\"") + key + "\""), std::string::npos) << key;
    }
}

TEST(BackupFormat, text_that_is_not_utf8_and_numbers_json_cannot_hold_still_give_a_backup) {
    BackupArchive archive = test::fullArchive();
    archive.items[0].name = "Broken \xC3 name";
    archive.items[0].confidence = std::numeric_limits<double>::quiet_NaN();
    (*archive.history)[0].results[0].confidence = std::numeric_limits<double>::infinity();
    BackupResult<BackupArchive> decoded = BackupCodec::decode(BackupCodec::encode(archive));
    ASSERT_TRUE(decoded) << decoded.description();
    EXPECT_EQ(decoded->items[0].name, "Broken \uFFFD name");
    EXPECT_FALSE(decoded->items[0].confidence);
    EXPECT_EQ((*decoded->history)[0].results[0].confidence, 0.0);
}

// Field-for-field content is checked by the restore tests; here, what only makeArchive decides.
TEST(BackupFormat, a_new_archive_from_the_store_has_photos_on_request_and_no_sample_marks) {
    TempDir dir;
    StoneStore store(dir.path());
    test::fillStore(store);
    Timestamp date = at("2026-10-18T14:05:09Z");
    BackupArchive archive = BackupCodec::makeArchive(store, true, date);
    EXPECT_EQ(archive.createdAt, date);
    EXPECT_EQ(archive.publisher, "Fernwick");
    EXPECT_EQ(archive.items[1].photo, test::allBytes(2));
    EXPECT_EQ(BackupCodec::encode(archive).find("ample"), std::string::npos);
    BackupArchive withoutPhotos = BackupCodec::makeArchive(store, false, date);
    EXPECT_FALSE(withoutPhotos.items[1].photo);
    EXPECT_FALSE((*withoutPhotos.history)[1].photo);
}

TEST(BackupFormat, default_file_name_is_the_prefix_and_the_local_time) {
    Timestamp date = at("2026-10-18T14:05:09Z").plusSeconds(0.9);
    EXPECT_EQ(BackupCodec::defaultFilename("Quarrydex Backup", date),
              "Quarrydex Backup 2026-10-18 14.05.09");
    test::ScopedEnv zone("TZ", "<+0530>-05:30");
    EXPECT_EQ(BackupCodec::defaultFilename("Quarrydex Backup", date),
              "Quarrydex Backup 2026-10-18 19.35.09");
}

// --- Test vectors and error descriptions -------------------------------------------------

TEST(BackupVectors, a_format_1_backup_decodes_without_history_or_favorites) {
    BackupResult<BackupArchive> decoded = BackupCodec::decode(fixtureText("format1.json"));
    ASSERT_TRUE(decoded) << decoded.description();
    BackupArchive expected;
    expected.version = 1;
    expected.createdAt = at("2026-10-18T12:00:00Z");
    BackupArchive::Entry item;
    item.id = *Uuid::parse("7D3C0F7E-3B8C-4D11-9A55-0C3B6B1C2E10");
    item.name = "Old quartz";
    item.location = "Palisade";
    item.dateAdded = at("2026-10-18T11:00:00Z");
    expected.items = {item};
    EXPECT_EQ(*decoded, expected);
}

TEST(BackupVectors, newer_versions_and_other_apps_are_refused_with_their_descriptions) {
    BackupResult<BackupArchive> newer = BackupCodec::decode(fixtureText("newer-version.json"));
    ASSERT_FALSE(newer);
    EXPECT_EQ(newer.error(), BackupError::newerVersion(99));
    EXPECT_EQ(newer.error().description(),
              "This backup was made by a newer version of Quarrydex (format 99). Update the app "
              "to restore it.");

    BackupResult<BackupArchive> other = BackupCodec::decode(fixtureText("other-app.json"));
    ASSERT_FALSE(other);
    EXPECT_EQ(other.error(), BackupError::notABackup());
    EXPECT_EQ(other.error().description(), notABackup);
    EXPECT_EQ(BackupError::unreadable("Verification failed after writing.").description(),
              "The backup couldn't be read: Verification failed after writing.");
}

// --- Refusals --------------------------------------------------------------------------

TEST(BackupRefusal, bytes_that_are_not_a_json_object_are_not_a_backup) {
    std::string bytes = BackupCodec::encode(test::fullArchive());
    std::string random(4096, '\0');
    std::mt19937 generator(7);
    for (char& c : random) {
        c = static_cast<char>(generator());
    }
    const std::pair<const char*, std::string> cases[] = {
        {"empty", ""},
        {"random bytes", random},
        {"array", "[]"},
        {"array of a backup", "[" + bytes + "]"},
        {"truncated", bytes.substr(0, bytes.size() / 2)},
        {"one byte short", bytes.substr(0, bytes.size() - 1)},
        {"trailing content", bytes + "{}"},
        {"a key given twice", bytes.substr(0, bytes.size() - 1) + ",\"version\":2}"},
        {"another list", R"({"name":"Some list","items":[1,2,3]})"},
    };
    for (const auto& [name, input] : cases) {
        EXPECT_EQ(refusal(input), notABackup) << name;
    }
}

TEST(BackupRefusal, a_missing_required_key_is_not_a_backup) {
    const std::pair<json::json_pointer, std::vector<const char*>> required[] = {
        {""_json_pointer, {"app", "createdAt", "items", "version"}},
        {"/items/1"_json_pointer, {"acquisition", "dateAdded", "id", "location", "name", "notes"}},
        {"/history/0"_json_pointer, {"answers", "date", "id", "level", "results"}},
        {"/history/0/results/0"_json_pointer, {"confidence", "specimenID"}},
    };
    for (const auto& [where, keys] : required) {
        for (const char* key : keys) {
            json file = fullJson();
            file[where].erase(key);
            EXPECT_EQ(refusal(file.dump()), notABackup) << where.to_string() << "/" << key;
        }
    }
}

TEST(BackupRefusal, a_wrong_type_or_ill_formed_value_is_not_a_backup) {
    const std::pair<json::json_pointer, json> cases[] = {
        {"/app"_json_pointer, 1},
        {"/app"_json_pointer, "quarrydex"},
        {"/app"_json_pointer, "Quarrydex "},
        {"/version"_json_pointer, "2"},
        {"/items"_json_pointer, json::object()},
        {"/items/0/name"_json_pointer, nullptr},
        {"/items/0/confidence"_json_pointer, "high"},
        {"/items/0/photo"_json_pointer, 12},
        {"/history/0/results/0/confidence"_json_pointer, "0.5"},
        {"/history/0/results/0/confidence"_json_pointer, nullptr},
        {"/history/0/results/0/specimenID"_json_pointer, nullptr},
        {"/history/0/answers"_json_pointer, nullptr},
        {"/history/0/level"_json_pointer, nullptr},
        {"/items/0/dateAdded"_json_pointer, nullptr},
        {"/createdAt"_json_pointer, nullptr},
        {"/publisher"_json_pointer, json::array()},
        {"/createdAt"_json_pointer, "2026-10-18T12:00:00.500Z"},
        {"/createdAt"_json_pointer, "2026-13-01T12:00:00Z"},
        {"/history/0/date"_json_pointer, "2026-10-18T12:00:00.0Z"},
        {"/items/0/id"_json_pointer, "7D3C0F7E-3B8C-4D11-9A55"},
        {"/items/0/id"_json_pointer, "7D3C0F7E3B8C4D119A550C3B6B1C2E10"},
        {"/items/0/photo"_json_pointer, "AAA"},
        {"/items/0/photo"_json_pointer, "AAAA\nAAAA"},
        {"/history/0/photo"_json_pointer, "AA-_"},
    };
    for (const auto& [where, value] : cases) {
        json file = fullJson();
        file[where] = value;
        EXPECT_EQ(refusal(file.dump()), notABackup) << where.to_string() << " = " << value;
    }
}

TEST(BackupRefusal, versions_must_be_64_bit_integers_up_to_2_and_above_2_are_newer) {
    for (const char* version : {"1e300", "99999999999999999999", "-99999999999999999999",
                                "9223372036854775808", "2.5", "1e400"}) {
        EXPECT_EQ(refusal(withVersion(version)), notABackup) << version;
    }
    for (const char* version : {"2", "1", "0", "-4", "2.0", "-9223372036854775808"}) {
        EXPECT_EQ(refusal(withVersion(version)), "decoded") << version;
    }
    const std::pair<const char*, std::int64_t> newer[] = {
        {"3", 3}, {"3.0", 3}, {"9223372036854775807", 9223372036854775807}};
    for (const auto& [version, format] : newer) {
        BackupResult<BackupArchive> decoded = BackupCodec::decode(withVersion(version));
        ASSERT_FALSE(decoded) << version;
        EXPECT_EQ(decoded.error(), BackupError::newerVersion(format)) << version;
    }
    EXPECT_EQ(BackupError::newerVersion(9223372036854775807).description(),
              "This backup was made by a newer version of Quarrydex (format "
              "9223372036854775807). Update the app to restore it.");
}

TEST(BackupRefusal, shape_is_checked_before_the_app_and_the_app_before_the_version) {
    json newerAndBroken = fullJson();
    newerAndBroken["version"] = 99;
    newerAndBroken["items"][1]["id"] = "broken";
    EXPECT_EQ(refusal(newerAndBroken.dump()), notABackup);

    json newerFromOtherApp = fullJson();
    newerFromOtherApp["version"] = 99;
    newerFromOtherApp["app"] = "Other";
    EXPECT_EQ(refusal(newerFromOtherApp.dump()), notABackup);
}

TEST(BackupRefusal, unknown_keys_and_null_optional_values_are_accepted) {
    json file = fullJson();
    file["comment"] = {{"nested", {1, nullptr, {{"deep", {true, "x"}}}}}};
    file["items"][0]["colour"] = {"white", "grey"};
    file["history"][0]["results"][0]["rank"] = 1;
    file["items"][1]["specimenID"] = nullptr;
    file["items"][1]["photo"] = nullptr;
    file["publisher"] = nullptr;
    BackupResult<BackupArchive> decoded = BackupCodec::decode(file.dump());
    ASSERT_TRUE(decoded) << decoded.description();
    EXPECT_FALSE(decoded->publisher);
    EXPECT_EQ(decoded->items, test::fullArchive().items);
}

TEST(BackupRefusal, a_file_that_cannot_be_read_is_unreadable_with_the_reason) {
    TempDir dir;
    BackupResult<StagedBackup> staged = BackupCodec::decodeFile(dir / "missing.json", dir.path());
    ASSERT_FALSE(staged);
    EXPECT_EQ(staged.error(), BackupError::unreadable("No such file or directory"));

    BackupResult<StagedBackup> folder = BackupCodec::decodeFile(dir.path(), dir.path());
    ASSERT_FALSE(folder);
    EXPECT_EQ(folder.error().kind(), BackupError::Kind::unreadable);
}

TEST(BackupRefusal, a_refused_file_leaves_no_staged_photos_behind) {
    TempDir dir;
    json file = fullJson();
    file["version"] = 7; // refused only after every photo was read
    test::writeFile(dir / "newer.json", file.dump());
    BackupResult<StagedBackup> staged = BackupCodec::decodeFile(dir / "newer.json", dir.path());
    ASSERT_FALSE(staged);
    EXPECT_EQ(staged.error(), BackupError::newerVersion(7));
    EXPECT_EQ(test::namesIn(dir.path()), std::set<std::string>{"newer.json"});
}

// A full disk must not keep the records from coming back: the photo is left out and the
// reason kept for the restore to report.
TEST(BackupRoundTrip, a_photo_that_cannot_be_staged_is_left_out_with_the_reason) {
    TempDir dir;
    test::writeFile(dir / "backup.json", BackupCodec::encode(test::fullArchive()));
    test::writeFile(dir / "not-a-folder", "");
    // Neither the chosen folder nor the fallback temporary folder can take the photo.
    test::ScopedEnv tmp("TMPDIR", (dir / "not-a-folder").string());
    BackupResult<StagedBackup> staged =
        BackupCodec::decodeFile(dir / "backup.json", dir / "not-a-folder");
    ASSERT_TRUE(staged) << staged.description();
    EXPECT_EQ(staged->photoProblem(), "Not a directory");
    EXPECT_EQ(staged->archive().items.size(), 2u);
    EXPECT_FALSE(staged->itemPhoto(0));
    EXPECT_FALSE(staged->historyPhoto(0));

    // The first photo in the file (history comes before items) fits on the disk, the
    // larger item photo after it does not.
    const std::string historyPhoto = *(*test::fullArchive().history)[0].photo;
    AtomicFile::Options disk;
    disk.freeSpace = std::make_shared<std::size_t>(historyPhoto.size());
    staged = BackupCodec::decodeFile(dir / "backup.json", dir.path(), disk);
    ASSERT_TRUE(staged) << staged.description();
    EXPECT_EQ(staged->photoProblem(), "No space left on device");
    EXPECT_EQ(staged->historyPhoto(0), historyPhoto);
    EXPECT_FALSE(staged->itemPhoto(0));
}

} // namespace
} // namespace quarrydex
