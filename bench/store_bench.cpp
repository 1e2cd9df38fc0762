// Load and save of a well-used store: 2,000 collection pieces and a full history of 300.
// Both run on the main thread after every change, so each should stay well under 50 ms.

#include "store/stone_store.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace {
namespace fs = std::filesystem;
using namespace quarrydex;

class StoreFolder {
public:
    StoreFolder() {
        std::string pattern = (fs::temp_directory_path() / "quarrydex-bench-XXXXXX").string();
        if (!::mkdtemp(pattern.data())) {
            throw std::runtime_error("cannot create a temporary folder");
        }
        path_ = pattern;
        StoneDataFile file;
        for (int i = 0; i < 2000; ++i) {
            CollectionEntry entry;
            entry.name = "Piece " + std::to_string(i);
            entry.specimenID = "quartz";
            entry.dateAdded = Timestamp{782000000.0 - i * 3600.25};
            entry.location = "Quarry road, second bend";
            entry.notes = "Found after the rain, half buried.\nClear tip, one chipped face.";
            entry.confidence = 0.73;
            entry.photoFile = entry.id.text() + ".jpg";
            file.collection.push_back(entry);
        }
        for (int i = 0; i < 300; ++i) {
            HistoryEntry entry;
            entry.date = Timestamp{782000000.0 - i * 60.5};
            entry.answers = {"Colour: white", "Luster: glassy", "Hardness: scratches glass"};
            entry.results = {{"quartz", 0.61}, {"calcite", 0.22}, {"feldspar", 0.09}};
            entry.level = "likely";
            entry.photoFile = entry.id.text() + ".jpg";
            file.history.push_back(entry);
        }
        for (int i = 0; i < 40; ++i) {
            file.favorites.push_back("species-" + std::to_string(i));
        }
        StoneStore store(path_);
        store.merge(file.collection, file.history, file.favorites);
        if (store.lastError()) {
            throw std::runtime_error(*store.lastError());
        }
    }
    ~StoreFolder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    const fs::path& path() const { return path_; }

private:
    fs::path path_;
};

// Construction is what the program does at start: make the photo folder, read, decode.
void BM_StoreLoad(benchmark::State& state) {
    StoreFolder folder;
    for (auto _ : state) {
        StoneStore store(folder.path());
        benchmark::DoNotOptimize(store.collection().size());
    }
}
BENCHMARK(BM_StoreLoad)->Unit(benchmark::kMillisecond);

// Encode and write atomically, including both fsyncs.
void BM_StoreSave(benchmark::State& state) {
    StoreFolder folder;
    StoneStore store(folder.path());
    for (auto _ : state) {
        store.save();
    }
    if (store.lastError()) {
        state.SkipWithError(store.lastError()->c_str());
    }
}
BENCHMARK(BM_StoreSave)->Unit(benchmark::kMillisecond);

// The save without the disk, to tell encoding time from fsync time.
void BM_StoreEncode(benchmark::State& state) {
    StoreFolder folder;
    StoneStore store(folder.path());
    StoneDataFile file{1, store.collection(), store.history(), store.favorites()};
    for (auto _ : state) {
        auto text = file.encode();
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(BM_StoreEncode)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
