#include "store/stone_store.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

namespace quarrydex {
namespace {
namespace fs = std::filesystem;
using test::namesIn;
using test::readFile;
using test::TempDir;
using test::writeFile;

const std::string damagedMessage =
    "Your saved data couldn't be read. A copy was kept as quarrydex-data.damaged.json.";

CollectionEntry piece(std::string name, std::optional<std::string> photo = {}) {
    CollectionEntry e;
    e.name = std::move(name);
    e.location = "Quarry road";
    e.photoFile = std::move(photo);
    return e;
}

HistoryEntry identification(std::optional<std::string> photo = {}, double date = 0) {
    HistoryEntry e;
    e.date = Timestamp{date};
    e.level = "possible";
    e.photoFile = std::move(photo);
    return e;
}

std::string dataFile(const TempDir& dir) {
    return readFile(dir / "quarrydex-data.json");
}

StoneDataFile onDisk(const TempDir& dir) {
    auto file = StoneDataFile::decode(dataFile(dir));
    EXPECT_TRUE(file) << file.error();
    return file ? *file : StoneDataFile{};
}

// A photo file in the store's folder, as the identification flow would leave it.
std::string photo(StoneStore& store, const std::string& bytes = "jpeg bytes") {
    std::optional<std::string> name = store.storePhoto(bytes, Uuid::random());
    EXPECT_TRUE(name) << store.lastError().value_or("");
    return name.value_or("");
}

bool photoExists(const StoneStore& store, const std::string& name) {
    return fs::exists(store.photosFolder() / name);
}

// --- records and their order ---------------------------------------------------------------

// A first start is empty and quiet, makes the photo folder and writes nothing.
TEST(StoneStore, restart_over_the_same_folder_shows_the_same_records_in_the_same_order) {
    TempDir dir;
    StoneDataFile before;
    {
        StoneStore store(dir / "nested" / "Quarrydex");
        EXPECT_TRUE(store.collection().empty() && store.history().empty());
        EXPECT_EQ(store.lastError(), std::nullopt);
        EXPECT_EQ(namesIn(dir / "nested" / "Quarrydex"), std::set<std::string>{"Photos"});
        store.add(piece("first"));
        store.add(piece("second"));
        store.addHistory(identification(photo(store)));
        store.toggleFavorite("quartz");
        store.toggleFavorite("pyrite");
        store.toggleFavorite("mica");
        store.toggleFavorite("pyrite"); // starred again: goes to the end
        store.toggleFavorite("pyrite");
        EXPECT_EQ(store.collection()[0].name, "second");
        before = {1, store.collection(), store.history(), store.favorites()};
    }
    StoneStore again(dir / "nested" / "Quarrydex");
    EXPECT_EQ(again.lastError(), std::nullopt);
    EXPECT_EQ(StoneDataFile({1, again.collection(), again.history(), again.favorites()}), before);
    EXPECT_EQ(again.favorites(), (std::vector<std::string>{"quartz", "mica", "pyrite"}));
}

TEST(StoneStore, update_replaces_in_place_and_an_unknown_id_writes_nothing) {
    TempDir dir;
    StoneStore store(dir.path());
    store.update(piece("nobody has this id"));
    EXPECT_FALSE(fs::exists(dir / "quarrydex-data.json"));

    store.add(piece("a"));
    store.add(piece("b"));
    CollectionEntry changed = store.collection()[1];
    changed.notes = "polished";
    store.update(changed);
    EXPECT_EQ(store.collection()[1], changed);
    EXPECT_EQ(onDisk(dir).collection[1], changed);
}

// New favorites from a merge are checked through restore.
TEST(StoneStore, merge_sorts_newest_first_stably_and_applies_no_cap) {
    TempDir dir;
    StoneStore store(dir.path());
    std::vector<CollectionEntry> pieces;
    for (auto [name, date] :
         {std::pair{"old", 10.0}, {"new", 30.0}, {"tie-1", 20.0}, {"tie-2", 20.0}}) {
        pieces.push_back(piece(name));
        pieces.back().dateAdded = Timestamp{date};
    }
    std::vector<HistoryEntry> history;
    for (int i = 0; i < 310; ++i) {
        history.push_back(identification({}, i));
    }
    store.merge(pieces, history, {});

    std::vector<std::string> names;
    for (const auto& e : store.collection()) {
        names.push_back(e.name);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"new", "tie-1", "tie-2", "old"}));
    EXPECT_EQ(store.history().size(), 310u);
    EXPECT_EQ(store.history().front().date.sinceReference, 309);
    EXPECT_EQ(onDisk(dir).history.size(), 310u);
}

TEST(StoneStore, removing_samples_touches_only_entries_marked_as_samples) {
    TempDir dir;
    StoneStore store(dir.path());
    int notices = 0;
    store.observe([&] { ++notices; });
    EXPECT_EQ(store.removeSamples(), 0);
    EXPECT_EQ(notices, 0) << "nothing to remove is no change";

    std::string shared = photo(store);
    std::string own = photo(store);
    CollectionEntry sample = piece("sample", own);
    sample.isSample = true;
    CollectionEntry notSample = piece("explicitly not", shared);
    notSample.isSample = false;
    HistoryEntry sampleRun = identification(shared);
    sampleRun.isSample = true;
    store.add(sample);
    store.add(notSample);
    store.add(piece("unmarked"));
    store.addHistory(sampleRun);
    store.addHistory(identification());
    EXPECT_TRUE(store.hasSamples());

    EXPECT_EQ(store.removeSamples(), 1);
    EXPECT_FALSE(store.hasSamples());
    EXPECT_EQ(store.collection().size(), 2u);
    EXPECT_EQ(store.history().size(), 1u);
    EXPECT_FALSE(photoExists(store, own));
    EXPECT_TRUE(photoExists(store, shared)) << "still used by a piece that is not a sample";
    EXPECT_EQ(onDisk(dir).collection, store.collection());
}

// --- history and photo ownership ----------------------------------------------------------

TEST(StoneStore, history_keeps_300_and_the_oldest_photo_goes_unless_the_collection_uses_it) {
    TempDir dir;
    StoneStore store(dir.path());
    std::string kept = photo(store);
    std::string released = photo(store);
    std::vector<HistoryEntry> full;
    for (int i = 0; i < 300; ++i) {
        full.push_back(identification(i == 0 ? kept : i == 1 ? released : photo(store), i));
    }
    store.merge({}, full, {});
    store.add(piece("in the collection", kept));

    store.addHistory(identification(photo(store), 1000)); // the 301st
    EXPECT_EQ(store.history().size(), 300u);
    EXPECT_EQ(store.history().back().photoFile, released) << "the oldest one is gone";
    EXPECT_TRUE(photoExists(store, kept));

    store.addHistory(identification(photo(store), 1001));
    EXPECT_EQ(store.history().size(), 300u);
    EXPECT_FALSE(photoExists(store, released));
    EXPECT_EQ(onDisk(dir).history.size(), 300u);
}

TEST(StoneStore, readding_an_identification_replaces_it_in_place_without_trimming) {
    TempDir dir;
    StoneStore store(dir.path());
    std::string first = photo(store);
    std::vector<HistoryEntry> many(301, identification());
    for (auto& e : many) {
        e.id = Uuid::random();
    }
    many[5].photoFile = first;
    store.merge({}, many, {});

    HistoryEntry rerun = store.history()[5];
    rerun.results = {{"quartz", 0.5}};
    rerun.photoFile = photo(store);
    store.addHistory(rerun);
    EXPECT_EQ(store.history().size(), 301u);
    EXPECT_EQ(store.history()[5], rerun);
    EXPECT_FALSE(photoExists(store, first)) << "the replaced photo is no longer used";
}

TEST(StoneStore, shared_photo_survives_until_its_last_record_goes) {
    TempDir dir;
    StoneStore store(dir.path());
    std::string shared = photo(store);
    CollectionEntry kept = piece("kept", shared);
    HistoryEntry run = identification(shared);
    store.add(kept);
    store.addHistory(run);
    store.toggleFavorite("quartz");

    store.deleteEntry(kept.id);
    EXPECT_TRUE(photoExists(store, shared));
    store.clearHistory();
    EXPECT_FALSE(photoExists(store, shared));
    EXPECT_EQ(store.favorites().size(), 1u);
    EXPECT_TRUE(onDisk(dir).history.empty());
}

TEST(StoneStore, names_that_could_leave_the_photo_folder_are_never_opened_or_deleted) {
    TempDir dir;
    StoneStore store(dir / "root");
    writeFile(dir / "root" / "victim.jpg", "outside");
    fs::create_directories(dir / "root" / "Photos" / "a");
    writeFile(dir / "root" / "Photos" / "a" / "b.jpg", "nested");
    const std::vector<std::string> names = {
        "../victim.jpg", "a/b.jpg", "/etc/hostname", "", ".", "..", std::string("a\0/b.jpg", 8)};
    for (const std::string& name : names) {
        EXPECT_EQ(store.photoData(name), std::nullopt) << name;
        CollectionEntry entry = piece("bad name", name);
        store.add(entry);
        store.deleteEntry(entry.id);
        HistoryEntry run = identification(name);
        store.addHistory(run);
        store.deleteHistory(run.id);
    }
    EXPECT_EQ(store.photoData(std::nullopt), std::nullopt);
    EXPECT_EQ(readFile(dir / "root" / "victim.jpg"), "outside");
    EXPECT_EQ(readFile(dir / "root" / "Photos" / "a" / "b.jpg"), "nested");
    EXPECT_TRUE(fs::is_directory(store.photosFolder()));
}

TEST(StoneStore, photo_is_stored_under_its_upper_case_id_or_the_failure_is_reported) {
    TempDir dir;
    StoneStore store(dir.path());
    fs::remove(store.photosFolder()); // made again on demand
    auto id = Uuid::parse("0d7e4b1a-9c2f-4e3b-a5d6-7f8091a2b3c4");
    EXPECT_EQ(store.storePhoto("first", *id), "0D7E4B1A-9C2F-4E3B-A5D6-7F8091A2B3C4.jpg");
    auto name = store.storePhoto("second", *id);
    EXPECT_EQ(store.photoData(name), "second");
    EXPECT_EQ(fs::status(store.photosFolder() / *name).permissions(), fs::perms(0600));
    EXPECT_EQ(store.photoData("missing.jpg"), std::nullopt);
    EXPECT_EQ(store.lastError(), std::nullopt);

    store.setSaveOptions({.failAfterBytes = 3});
    EXPECT_EQ(store.storePhoto("third", *id), std::nullopt);
    EXPECT_EQ(store.lastError(), "Couldn't save the photo: No space left on device");
    EXPECT_EQ(store.photoData(name), "second");
    EXPECT_EQ(namesIn(store.photosFolder()), std::set<std::string>{*name});

    store.setSaveOptions({});
    fs::remove_all(store.photosFolder());
    writeFile(store.photosFolder(), "a file where the folder should be");
    EXPECT_EQ(store.storePhoto("jpeg bytes", Uuid::random()), std::nullopt);
    EXPECT_EQ(store.lastError(), "Couldn't save the photo: Not a directory");
}

// A link planted in the photo folder must not make a photo write land elsewhere; the data
// file, which users keep on a synced folder through a link, stays a link.
TEST(StoneStore, photo_writes_replace_a_symbolic_link_and_the_data_file_link_is_kept) {
    TempDir dir;
    StoneStore store(dir / "data");
    Uuid id = Uuid::random();
    writeFile(dir / "elsewhere.txt", "not a photo");
    fs::create_symlink(dir / "elsewhere.txt", store.photosFolder() / (id.text() + ".jpg"));
    auto name = store.storePhoto("photo bytes", id);
    ASSERT_TRUE(name) << store.lastError().value_or("");
    EXPECT_FALSE(fs::is_symlink(store.photosFolder() / *name));
    EXPECT_EQ(store.photoData(name), "photo bytes");
    EXPECT_EQ(readFile(dir / "elsewhere.txt"), "not a photo");
    EXPECT_EQ(fs::status(store.photosFolder() / *name).permissions(), fs::perms(0600));

    fs::create_symlink(dir / "elsewhere.txt", store.photosFolder() / "restored.jpg");
    EXPECT_EQ(store.putPhoto("restored bytes", "restored.jpg"), "restored.jpg");
    EXPECT_FALSE(fs::is_symlink(store.photosFolder() / "restored.jpg"));
    EXPECT_EQ(readFile(dir / "elsewhere.txt"), "not a photo");

    writeFile(dir / "synced.json", "");
    fs::remove(dir / "data" / "quarrydex-data.json");
    fs::create_symlink(dir / "synced.json", dir / "data" / "quarrydex-data.json");
    store.toggleFavorite("gold");
    EXPECT_TRUE(fs::is_symlink(dir / "data" / "quarrydex-data.json"));
    EXPECT_NE(readFile(dir / "synced.json").find("gold"), std::string::npos);
}

// --- failures on disk ---------------------------------------------------------------------

TEST(StoneStore, save_failure_leaves_original_untouched_and_the_next_save_writes_the_change) {
    TempDir dir;
    StoneStore store(dir.path());
    std::string picture = photo(store);
    CollectionEntry withPhoto = piece("saved", picture);
    store.add(withPhoto);
    const std::string saved = dataFile(dir);

    store.setSaveOptions({.failAfterBytes = 100}); // the disk is full
    store.add(piece("only in memory"));
    store.deleteEntry(withPhoto.id);
    EXPECT_EQ(store.lastError(), "Couldn't save: No space left on device");
    EXPECT_EQ(store.collection().size(), 1u);
    EXPECT_EQ(dataFile(dir), saved);
    EXPECT_EQ(namesIn(dir.path()), (std::set<std::string>{"Photos", "quarrydex-data.json"}));
    EXPECT_TRUE(photoExists(store, picture)) << "the file on disk still names it";

    store.setSaveOptions({});
    store.toggleFavorite("quartz");
    EXPECT_EQ(onDisk(dir).collection, store.collection());
    EXPECT_EQ(onDisk(dir).favorites, store.favorites());
    EXPECT_FALSE(photoExists(store, picture));
    EXPECT_EQ(store.lastError(), "Couldn't save: No space left on device")
        << "only whoever shows the message clears it";
}

TEST(StoneStore, root_that_is_a_file_or_cannot_be_made_fails_every_save_with_the_cause) {
    TempDir dir;
    writeFile(dir / "file", "not a folder");
    for (const fs::path& root : {dir / "file", dir / "file" / "Quarrydex"}) {
        StoneStore store(root);
        EXPECT_EQ(store.lastError(), std::nullopt) << "nothing to load is not an error";
        store.toggleFavorite("quartz");
        EXPECT_EQ(store.lastError(), "Couldn't save: Not a directory") << root;
        EXPECT_EQ(store.favorites().size(), 1u);
    }
    EXPECT_EQ(readFile(dir / "file"), "not a folder");
}

TEST(StoneStore, damaged_data_file_is_copied_before_it_is_overwritten) {
    TempDir dir;
    writeFile(dir / "quarrydex-data.json", "{}");
    StoneStore store(dir.path());
    EXPECT_TRUE(store.collection().empty());
    EXPECT_EQ(store.lastError(), damagedMessage);
    EXPECT_EQ(readFile(dir / "quarrydex-data.damaged.json"), "{}");
    EXPECT_EQ(dataFile(dir), "{}") << "left in place until the next save";

    store.add(piece("new"));
    EXPECT_EQ(onDisk(dir).collection.size(), 1u);
    EXPECT_EQ(readFile(dir / "quarrydex-data.damaged.json"), "{}");
}

// The copy is the only trace of the old data, so without it the file must survive.
TEST(StoneStore, damaged_data_file_that_cannot_be_copied_is_never_overwritten) {
    TempDir dir;
    const std::string damaged = "{\"version\": 1, \"collection\": [";
    writeFile(dir / "quarrydex-data.json", damaged);
    fs::create_directory(dir / "quarrydex-data.damaged.json"); // blocks the copy
    StoneStore store(dir.path());
    EXPECT_EQ(store.lastError(),
              "Your saved data couldn't be read, and a copy couldn't be kept as "
              "quarrydex-data.damaged.json (Is a directory). It was left as it is, and changes "
              "won't be saved until the copy can be made.");

    store.add(piece("kept in memory"));
    EXPECT_EQ(dataFile(dir), damaged);
    EXPECT_EQ(store.lastError(), "Couldn't save: a copy of the unreadable data file couldn't be "
                                 "kept as quarrydex-data.damaged.json (Is a directory)");

    fs::remove(dir / "quarrydex-data.damaged.json");
    store.toggleFavorite("quartz");
    EXPECT_EQ(readFile(dir / "quarrydex-data.damaged.json"), damaged);
    EXPECT_EQ(onDisk(dir).collection.size(), 1u);
    EXPECT_EQ(onDisk(dir).favorites.size(), 1u);
}

TEST(StoneStore, data_file_that_cannot_be_read_is_left_alone) {
    TempDir dir;
    fs::create_directories(dir / "quarrydex-data.json" / "inside");
    StoneStore store(dir.path());
    EXPECT_EQ(store.lastError(),
              "Your saved data couldn't be read (Is a directory). It was left as "
              "it is, and changes won't be saved until a copy of it can be kept "
              "as quarrydex-data.damaged.json.");
    store.toggleFavorite("quartz");
    EXPECT_EQ(store.lastError(), "Couldn't save: the saved data file can't be read, so it was "
                                 "left as it is (Is a directory)");
    EXPECT_TRUE(fs::is_directory(dir / "quarrydex-data.json" / "inside"));

    fs::remove_all(dir / "quarrydex-data.json"); // gone: nothing left to protect
    store.toggleFavorite("pyrite");
    EXPECT_EQ(onDisk(dir).favorites, (std::vector<std::string>{"quartz", "pyrite"}));
}

// --- notices and the default folder ---------------------------------------------------------

TEST(StoneStore, observers_hear_of_each_change_once_after_it_is_saved) {
    TempDir dir;
    StoneStore store(dir.path());
    std::vector<std::size_t> savedFavorites;
    auto first = store.observe([&] { savedFavorites.push_back(onDisk(dir).favorites.size()); });
    store.toggleFavorite("quartz");
    store.toggleFavorite("pyrite");
    store.deleteEntry(Uuid::random()); // no such entry: no change
    EXPECT_EQ(savedFavorites, (std::vector<std::size_t>{1, 2}));

    // A callback may unobserve itself and others while being told.
    int later = 0;
    StoneStore::ObserverId laterId = 0;
    store.observe([&] {
        store.unobserve(first);
        store.unobserve(laterId);
    });
    laterId = store.observe([&] { ++later; });
    std::optional<std::string> seen;
    store.observe([&] { seen = store.lastError(); });
    store.setSaveOptions({.failAfterBytes = 0});
    store.toggleFavorite("mica");
    EXPECT_EQ(seen, "Couldn't save: No space left on device");
    // Told once more before it was unobserved; the failed save left two on disk.
    EXPECT_EQ(savedFavorites, (std::vector<std::size_t>{1, 2, 2}));
    store.clearLastError();
    EXPECT_EQ(seen, std::nullopt);
    EXPECT_EQ(savedFavorites.size(), 3u);
    EXPECT_EQ(later, 0);
}

TEST(StoneStore, default_root_follows_xdg_data_home_then_home) {
    const fs::path underHome = fs::path(std::getenv("HOME")) / ".local/share/Quarrydex";
    const std::pair<std::optional<std::string>, fs::path> cases[] = {
        {"/data/home", "/data/home/Quarrydex"},
        {"relative/is/ignored", underHome},
        {std::nullopt, underHome},
    };
    for (const auto& [xdg, root] : cases) {
        test::ScopedEnv env("XDG_DATA_HOME", xdg);
        EXPECT_EQ(StoneStore::defaultRoot(), root) << xdg.value_or("unset");
    }
}

} // namespace
} // namespace quarrydex
