// Search as you type in the field guide: the time from a changed search text to an updated
// list model, over the whole shipped library and over a full history of 300 identifications.
// Each iteration is one keystroke of a word typed and then erased again, so both narrowing and
// widening are measured. Target: well under 2 ms per keystroke.

#include "app/history_list_model.h"
#include "app/library_list_model.h"
#include "store/stone_store.h"

#include <QCoreApplication>
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {
namespace fs = std::filesystem;
using namespace quarrydex;

const SpecimenLibrary& library() {
    static const SpecimenLibrary lib = SpecimenLibrary::bundled(QUARRYDEX_BUILD_RESOURCES);
    return lib;
}

// An empty folder for a store, removed at exit.
class Folder {
public:
    Folder() {
        std::string pattern = (fs::temp_directory_path() / "quarrydex-bench-XXXXXX").string();
        if (!::mkdtemp(pattern.data())) {
            throw std::runtime_error("cannot create a temporary folder");
        }
        path_ = pattern;
    }
    ~Folder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    const fs::path& path() const { return path_; }

private:
    fs::path path_;
};

// "q", "qu", ... "quartz", then erased back to "q" and "".
std::vector<QString> keystrokes(const QString& word) {
    std::vector<QString> out;
    for (qsizetype n = 1; n <= word.size(); ++n) {
        out.push_back(word.left(n));
    }
    for (qsizetype n = word.size() - 1; n >= 0; --n) {
        out.push_back(word.left(n));
    }
    return out;
}

void typeInto(benchmark::State& state, const std::vector<QString>& typed,
              const std::function<void(const QString&)>& setQuery) {
    std::size_t i = 0;
    for (auto _ : state) {
        setQuery(typed[i]);
        i = (i + 1) % typed.size();
    }
    state.SetItemsProcessed(state.iterations());
}

void BM_LibrarySearchKeystroke(benchmark::State& state) {
    Folder folder;
    StoneStore store(folder.path());
    for (const char* id : {"quartz", "amethyst", "gold", "calcite", "fluorite"}) {
        store.toggleFavorite(id);
    }
    LibraryListModel model(library(), store);
    const auto typed =
        keystrokes(state.range(0) ? QStringLiteral("brazil") : QStringLiteral("quartz"));
    typeInto(state, typed, [&](const QString& q) { model.setQuery(q); });
    state.counters["species"] = static_cast<double>(library().specimens().size());
}
BENCHMARK(BM_LibrarySearchKeystroke)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

void BM_LibraryCategorySwitch(benchmark::State& state) {
    Folder folder;
    StoneStore store(folder.path());
    LibraryListModel model(library(), store);
    int i = 0;
    for (auto _ : state) {
        model.setCategoryIndex(i);
        i = (i + 1) % 6;
    }
}
BENCHMARK(BM_LibraryCategorySwitch)->Unit(benchmark::kMicrosecond);

void BM_HistorySearchKeystroke(benchmark::State& state) {
    Folder folder;
    StoneStore store(folder.path());
    const auto& all = library().specimens();
    StoneDataFile file;
    for (int i = 0; i < 300; ++i) {
        HistoryEntry entry;
        entry.date = Timestamp{782000000.0 - i * 3600.5};
        entry.answers = {"Photo color", "Color: White", "Luster: Glassy",
                         "Hardness: Scratches glass"};
        for (int r = 0; r < 5; ++r) {
            entry.results.push_back({all[(i * 7 + r) % all.size()].id, 0.5 / (r + 1)});
        }
        entry.level = "likely";
        entry.photoFile = entry.id.text() + ".jpg";
        file.history.push_back(entry);
    }
    store.merge({}, file.history, {});
    HistoryListModel model(library(), store);
    const auto typed = keystrokes(QStringLiteral("calcite"));
    typeInto(state, typed, [&](const QString& q) { model.setQuery(q); });
    state.counters["entries"] = static_cast<double>(model.totalCount());
}
BENCHMARK(BM_HistorySearchKeystroke)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
