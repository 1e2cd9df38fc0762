#include "selftest/self_test.h"

#include "backup/backup_archive.h"
#include "backup/branding.h"
#include "backup/restore_report.h"
#include "identify/image_tools.h"
#include "selftest/library_checks.h"
#include "store/stone_store.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <set>

namespace quarrydex {
namespace fs = std::filesystem;

namespace {

std::string join(const std::vector<std::string>& items, const std::string& separator) {
    std::string out;
    for (std::size_t i = 0; i < items.size(); ++i) {
        out += (i ? separator : "") + items[i];
    }
    return out;
}

// Shortest text that reads back as the same double, always with a decimal point.
std::string decimal(double value) {
    char buffer[64];
    auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value);
    std::string text(buffer, ec == std::errc() ? end : buffer);
    if (text.find_first_of(".eEn") == std::string::npos) {
        text += ".0";
    }
    return text;
}

std::string readAll(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

std::string megabytes(std::uintmax_t bytes) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.1f MB", static_cast<double>(bytes) / 1e6);
    return buffer;
}

// A folder "<prefix><UUID>" in the system's temporary folder, removed with its contents
// when the section that made it ends, whatever happened in between.
class ScratchFolder {
public:
    explicit ScratchFolder(const std::string& prefix)
        : path_(fs::temp_directory_path() / (prefix + Uuid::random().text())) {
        std::error_code ec;
        fs::create_directories(path_, ec);
    }
    ~ScratchFolder() {
        std::error_code ec;
        fs::remove_all(path_, ec);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    const fs::path& path() const { return path_; }

private:
    fs::path path_;
};

// Answers given by question and raw value, the way a person ticks them.
Answers answersOf(std::initializer_list<std::pair<Question, std::string_view>> given) {
    Answers a;
    for (auto [question, raw] : given) {
        setAnswerRawValue(question, a, raw);
    }
    return a;
}

Answers quartzAnswers() {
    Answers a;
    a.color = ColorFamily::white;
    a.luster = LusterAnswer::glassy;
    a.scratch = ScratchAnswer::scratchesGlass;
    a.streak = StreakAnswer::white;
    a.habit = HabitAnswer::prisms;
    a.magnet = MagnetAnswer::none;
    a.fizz = FizzAnswer::none;
    a.heft = HeftAnswer::normal;
    return a;
}

bool contains(const std::vector<std::string>& ids, const std::string& id) {
    return std::find(ids.begin(), ids.end(), id) != ids.end();
}

} // namespace

SelfTest::SelfTest(const SpecimenLibrary& library, std::optional<SampleSet> samples)
    : library_(library), samples_(std::move(samples)) {}

void SelfTest::begin(const std::string& title) {
    section_ = title;
    lines_.push_back("\n== " + title + " ==");
}

void SelfTest::check(bool ok, const std::string& name, const std::function<std::string()>& detail) {
    if (ok) {
        ++passed_;
        lines_.push_back("  PASS  " + name);
    } else {
        ++failed_;
        lines_.push_back("  FAIL  " + name + (detail ? detail() : std::string()));
    }
}

void SelfTest::info(const std::string& text) {
    lines_.push_back("  info  " + text);
}

std::vector<std::string> SelfTest::top(const IdentifyResult& result, std::size_t n) {
    std::vector<std::string> ids;
    for (std::size_t i = 0; i < result.candidates.size() && i < n; ++i) {
        ids.push_back(result.candidates[i].specimen.id);
    }
    return ids;
}

IdentifyResult SelfTest::identify(const Answers& answers, std::optional<RGB> color) const {
    const auto& all = library_.specimens();
    return matcher_.identify(color, answers, all, static_cast<int>(all.size()));
}

double SelfTest::confidenceOf(const IdentifyResult& result, const std::string& id) const {
    for (const auto& c : result.candidates) {
        if (c.specimen.id == id) {
            return c.confidence;
        }
    }
    return 0;
}

std::string SelfTest::runAll() {
    passed_ = failed_ = 0;
    lines_ = {"Quarrydex " + std::string(Branding::version) + " self-test \u2014 " +
                  std::string(Branding::company),
              "Library: " + std::to_string(library_.specimens().size()) + " species"};
    integritySection();
    narrowingSection();
    consistencySection();
    backupSection();
    samplesSection();
    lines_.push_back("\nRESULT: " + std::to_string(passed_) + " passed, " +
                     std::to_string(failed_) + " failed");
    return join(lines_, "\n");
}

void SelfTest::integritySection() {
    begin("Library data integrity");
    const auto& all = library_.specimens();
    check(!library_.loadError(), "library loads without error",
          [&] { return " \u2014 " + library_.loadError().value_or(""); });
    check(all.size() >= 100, "at least 100 species (" + std::to_string(all.size()) + ")");

    std::set<std::string> ids, names;
    bool uniqueIds = true, uniqueNames = true;
    for (const auto& s : all) {
        uniqueIds &= ids.insert(s.id).second;
        uniqueNames &= names.insert(s.name).second;
    }
    check(uniqueIds, "no duplicate ids");
    check(uniqueNames, "no duplicate names");
    for (const auto& c : allSpecimenCategories()) {
        int n = library_.count(c.category);
        check(n >= 3,
              "category " + std::string(c.title) + " has species (" + std::to_string(n) + ")");
    }
    std::vector<std::string> problems;
    for (const auto& s : all) {
        auto p = LibraryChecks::problems(s);
        problems.insert(problems.end(), p.begin(), p.end());
    }
    check(problems.empty(), "every species has complete, valid fields", [&] {
        std::vector<std::string> first(
            problems.begin(), problems.begin() + std::min<std::size_t>(8, problems.size()));
        return " \u2014 " + join(first, "; ");
    });
    auto fizz = LibraryChecks::fizzOffenders(all);
    check(fizz.empty(), "only carbonates and calcite fossils are marked as fizzing",
          [&] { return " \u2014 " + join(fizz, ","); });
    auto magnetic = LibraryChecks::magneticOffenders(all);
    check(magnetic.empty(), "magnetic species are exactly magnetite and the meteorites",
          [&] { return " \u2014 " + join(magnetic, ","); });
}

void SelfTest::narrowingSection() {
    begin("Identification narrowing");
    const auto& all = library_.specimens();
    auto specimenOf = [&](const std::string& id) { return library_.specimen(id); };

    {
        Answers a;
        a.magnet = MagnetAnswer::attracts;
        IdentifyResult r = identify(a);
        bool ok = r.candidates.size() >= 4 &&
                  std::all_of(r.candidates.begin(), r.candidates.begin() + 4,
                              [](const Candidate& c) { return c.specimen.magnetic; });
        check(ok, "magnet sticks \u2192 top 4 are all magnetic");
    }
    {
        Answers a;
        a.magnet = MagnetAnswer::none;
        check(!contains(top(identify(a), 10), "magnetite"),
              "no pull \u2192 magnetite drops out of the top 10");
    }
    {
        Answers a;
        a.fizz = FizzAnswer::fizzes;
        IdentifyResult r = identify(a);
        bool ok = !r.candidates.empty() &&
                  std::all_of(r.candidates.begin(), r.candidates.end(), [](const Candidate& c) {
                      return c.confidence <= 0.01 || c.specimen.fizzes;
                  });
        check(ok, "fizzes \u2192 every candidate above 1% is a fizzing species");
    }
    {
        Answers a;
        a.scratch = ScratchAnswer::fingernail;
        IdentifyResult r = identify(a);
        double best = r.candidates.empty() ? -1 : r.candidates[0].confidence;
        check(specimenOf("talc") && specimenOf("gypsum") && confidenceOf(r, "talc") == best &&
                  confidenceOf(r, "gypsum") == best,
              "fingernail scratch \u2192 talc and gypsum share the top score");
        bool soft =
            !r.candidates.empty() &&
            std::all_of(r.candidates.begin(), r.candidates.end(), [](const Candidate& c) {
                return c.confidence <= 0.01 || matches(ScratchAnswer::fingernail, c.specimen);
            });
        check(soft, "fingernail scratch \u2192 everything above 1% is soft enough");
        check(specimenOf("quartz") && confidenceOf(r, "quartz") < 0.01,
              "fingernail scratch \u2192 quartz below 1%");
    }
    {
        Answers a;
        a.scratch = ScratchAnswer::scratchesGlass;
        check(specimenOf("talc") && confidenceOf(identify(a), "talc") < 0.01,
              "scratches glass \u2192 talc below 1%");
    }
    auto expectFirst = [&](const std::string& id, const std::string& name, const Answers& a) {
        auto ids = top(identify(a), 1);
        check(!ids.empty() && ids[0] == id, name);
    };
    using Q = Question;
    expectFirst("calcite", "white rhombs + fizz + coin scratch \u2192 calcite first",
                answersOf({{Q::color, "white"},
                           {Q::habit, "rhombs"},
                           {Q::fizz, "fizzes"},
                           {Q::scratch, "coin"}}));
    expectFirst("galena", "metallic, gray streak, heavy, cubes \u2192 galena first",
                answersOf({{Q::luster, "metallic"},
                           {Q::streak, "gray"},
                           {Q::heft, "heavy"},
                           {Q::habit, "cubes"}}));
    expectFirst("pyrite", "brassy, scratches glass, black streak \u2192 pyrite first",
                answersOf({{Q::color, "yellow"},
                           {Q::luster, "metallic"},
                           {Q::scratch, "scratchesGlass"},
                           {Q::streak, "black"}}));
    expectFirst("gold", "soft, golden streak, very heavy \u2192 gold first",
                answersOf({{Q::color, "yellow"},
                           {Q::luster, "metallic"},
                           {Q::scratch, "coin"},
                           {Q::streak, "yellowBrown"},
                           {Q::heft, "heavy"},
                           {Q::habit, "metalLump"}}));
    expectFirst("hematite", "metallic with red-brown streak \u2192 hematite first",
                answersOf({{Q::luster, "metallic"},
                           {Q::streak, "redBrown"},
                           {Q::color, "gray"},
                           {Q::scratch, "scratchesGlass"},
                           {Q::heft, "heavy"}}));
    expectFirst("obsidian", "black glass that scratches glass \u2192 obsidian first",
                answersOf({{Q::color, "black"},
                           {Q::luster, "glassy"},
                           {Q::habit, "glass"},
                           {Q::scratch, "scratchesGlass"}}));
    {
        Answers a;
        a.color = ColorFamily::pink;
        a.fizz = FizzAnswer::fizzes;
        auto ids = top(identify(a), 3);
        check(contains(ids, "rhodochrosite") && !contains(ids, "rose-quartz") &&
                  !contains(ids, "rhodonite"),
              "pink + fizzes \u2192 rhodochrosite in top 3, non-fizzing pinks (rose quartz, "
              "rhodonite) pushed out");
    }
    {
        Answers a;
        a.color = ColorFamily::pink;
        a.fizz = FizzAnswer::none;
        a.scratch = ScratchAnswer::scratchesGlass;
        check(specimenOf("rhodochrosite") && !contains(top(identify(a), 3), "rhodochrosite"),
              "pink, no fizz, hard \u2192 rhodochrosite out of top 3");
    }
    expectFirst("pumice", "light with holes \u2192 pumice first",
                answersOf({{Q::heft, "light"}, {Q::habit, "holes"}}));

    Answers galena;
    galena.luster = LusterAnswer::metallic;
    galena.streak = StreakAnswer::gray;
    galena.heft = HeftAnswer::heavy;
    galena.habit = HabitAnswer::cubes;
    IdentifyResult strongResult = identify(galena);
    double sum = 0;
    for (const auto& c : strongResult.candidates) {
        sum += c.confidence;
    }
    check(std::fabs(sum - 1.0) < 0.000001, "confidences add up to 1 (" + decimal(sum) + ")");
    bool ordered = std::is_sorted(
        strongResult.candidates.begin(), strongResult.candidates.end(),
        [](const Candidate& a, const Candidate& b) { return a.confidence > b.confidence; });
    check(ordered, "results come back best-first");
    check(std::all_of(strongResult.candidates.begin(), strongResult.candidates.end(),
                      [](const Candidate& c) { return c.displayPercent() <= 95; }),
          "displayed confidence never exceeds 95%");

    const RGB purple = RGB::fromHex("#8E5CB5").value();
    IdentifyResult photoOnly = identify({}, purple);
    check(photoOnly.level == ConfidenceLevel::roughGuess,
          "photo color alone is labeled a rough guess, never strong");
    check(contains(top(photoOnly, 5), "amethyst"), "purple photo color \u2192 amethyst in top 5");
    check(!photoOnly.candidates.empty() && photoOnly.candidates[0].confidence < 0.5,
          "photo-only top confidence stays under 50%");

    bool neverStrong = true;
    for (Question q : allQuestions()) {
        for (const auto& option : options(q)) {
            Answers one;
            setAnswerRawValue(q, one, option.rawValue);
            neverStrong &= identify(one, purple).level != ConfidenceLevel::strong;
        }
    }
    check(neverStrong, "a single test answer never gives a strong match");

    IdentifyResult empty = matcher_.identify(purple, quartzAnswers(), {}, 8);
    check(empty.candidates.empty(), "empty library returns no candidates instead of crashing");

    IdentifyResult nothing = identify({});
    check(!all.empty() &&
              std::fabs(nothing.candidates[0].confidence - 1.0 / all.size()) < 0.000000001,
          "no answers \u2192 every species equally likely");

    Answers contradictory;
    contradictory.magnet = MagnetAnswer::attracts;
    contradictory.fizz = FizzAnswer::fizzes;
    contradictory.scratch = ScratchAnswer::fingernail;
    contradictory.heft = HeftAnswer::light;
    check(identify(contradictory).nothingFitsWell,
          "contradictory answers are flagged as 'nothing fits well'");

    check(nothing.suggestedNext.has_value(),
          "a next question is suggested when nothing is answered (" +
              (nothing.suggestedNext ? std::string(rawValue(*nothing.suggestedNext)) : "none") +
              ")");

    // Follow the suggestions with quartz's answers until none is left.
    Answers walk;
    const Answers full = quartzAnswers();
    std::vector<std::string> asked;
    bool neverRepeated = true;
    for (int step = 0; step < 8; ++step) {
        IdentifyResult r = identify(walk);
        if (!r.suggestedNext) {
            break;
        }
        Question q = *r.suggestedNext;
        neverRepeated &= !isAnswered(q, walk);
        asked.push_back(std::string(rawValue(q)));
        setAnswerRawValue(q, walk, answerRawValue(q, full));
    }
    check(neverRepeated && asked.size() == 8,
          "the suggested question is never one already answered (" + join(asked, " \u2192 ") + ")");

    IdentifyResult quartz = identify(full);
    check(!quartz.suggestedNext, "no suggestion once every question is answered");
    check(
        contains(top(quartz, 3), "quartz"),
        "colorless glassy hard prisms \u2192 quartz in top 3 (ties with look-alikes are expected)");

    const std::string colorCheck = "photo center color is read correctly";
    auto image = ImageTools::solid(RGB{0.3, 0.3, 0.3}, 64);
    if (!image) {
        check(false, colorCheck, [] { return " \u2014 image helper failed"; });
    } else {
        auto color = ImageTools::averageCenterColor(*image);
        check(color && std::fabs(color->r - 0.3) < 0.01, colorCheck,
              [&] { return color ? " \u2014 read " + color->hex() : " \u2014 no colour"; });
    }
}

void SelfTest::consistencySection() {
    begin("Self-consistency over the whole library");
    auto c = LibraryChecks::selfConsistency(library_);
    const std::string total = std::to_string(c.total);
    info("textbook answers \u2192 own species ranked #1 for " + std::to_string(c.first) + "/" +
         total + ", top 3 for " + std::to_string(c.inTop3) + "/" + total);
    check(c.total > 0 && c.inTop3 >= 0.9 * c.total,
          "\u226590% of species land in the top 3 from their own properties (" +
              std::to_string(c.inTop3) + "/" + total + ")",
          [&] {
              return c.missed.empty() ? std::string() : " \u2014 missed: " + join(c.missed, ",");
          });
}

void SelfTest::samplesSection() {
    begin("Sample collection");
    if (!samples_) {
        check(false, "sample photos are bundled with the app",
              [] { return " \u2014 Samples folder not found"; });
        return;
    }
    const SampleSet& set = *samples_;
    const auto& samples = set.samples();
    const std::size_t count = samples.size();
    check(count >= 15 && count <= 25,
          "15\u201325 sample photos are bundled (" + std::to_string(count) + ")");
    std::set<std::string> ids;
    bool unique = std::all_of(samples.begin(), samples.end(),
                              [&](const SamplePhoto& p) { return ids.insert(p.id).second; });
    check(unique, "sample ids are unique");
    const auto bytes = set.totalBytes();
    check(bytes > 0 && bytes < 15'000'000, "samples total under 15 MB (" + megabytes(bytes) + ")");
    check(std::all_of(samples.begin(), samples.end(),
                      [](const SamplePhoto& p) {
                          return !p.author.empty() && p.isFreelyLicensed() && !p.page.empty();
                      }),
          "every sample has an author, a free license (CC BY / CC0 / public domain) and a source "
          "link");
    check(std::all_of(
              samples.begin(), samples.end(),
              [&](const SamplePhoto& p) { return library_.specimen(p.specimenID) != nullptr; }),
          "every sample's library record resolves");
    check(std::all_of(samples.begin(), samples.end(),
                      [&](const SamplePhoto& p) {
                          auto data = set.imageData(p);
                          auto image = data ? ImageTools::decode(*data, 4000) : std::nullopt;
                          return image && std::max(image->width(), image->height()) <= 1600;
                      }),
          "every sample image opens and is at most 1600 px");

    {
        ScratchFolder folder("quarrydex-samples-");
        StoneStore store(folder.path());
        CollectionEntry own;
        own.name = "My own pebble";
        own.location = "Back garden";
        store.add(own);

        const int added = set.load(store, library_);
        std::vector<const CollectionEntry*> loaded;
        for (const auto& e : store.collection()) {
            if (e.isSample.value_or(false)) {
                loaded.push_back(&e);
            }
        }
        check(added == static_cast<int>(count) && loaded.size() == count,
              "loading adds one collection entry per sample (" + std::to_string(added) + ")");
        bool resolve =
            !loaded.empty() && std::all_of(loaded.begin(), loaded.end(), [&](const auto* e) {
                const SamplePhoto* p = e->sampleID ? set.sample(*e->sampleID) : nullptr;
                return p && library_.specimen(e->specimenID) && store.photoData(e->photoFile) &&
                       e->notes.find(p->creditLine()) != std::string::npos;
            });
        check(resolve, "each loaded sample's record, photo and credit resolve");
        auto sampleHistory =
            std::count_if(store.history().begin(), store.history().end(),
                          [](const HistoryEntry& h) { return h.isSample.value_or(false); });
        check(sampleHistory == static_cast<long>(std::min<std::size_t>(3, count)) &&
                  std::all_of(store.history().begin(), store.history().end(),
                              [](const HistoryEntry& h) { return !h.results.empty(); }),
              "example identifications are added to History");
        check(set.load(store, library_) == 0 && store.collection().size() == count + 1,
              "loading twice adds nothing");
        {
            StoneStore reopened(folder.path());
            check(reopened.collection() == store.collection() &&
                      reopened.history() == store.history(),
                  "samples survive an app restart");
        }
        std::set<std::string> samplePhotos;
        for (const auto* e : loaded) {
            if (e->photoFile) {
                samplePhotos.insert(*e->photoFile);
            }
        }
        const int removed = store.removeSamples();
        bool onlySamples =
            removed == static_cast<int>(count) && store.collection().size() == 1 &&
            store.collection()[0].id == own.id &&
            std::none_of(store.history().begin(), store.history().end(),
                         [](const HistoryEntry& h) { return h.isSample.value_or(false); });
        check(onlySamples, "Remove Sample Collection removes only the samples");
        bool gone =
            !samplePhotos.empty() &&
            std::none_of(samplePhotos.begin(), samplePhotos.end(), [&](const std::string& f) {
                return fs::exists(store.photosFolder() / f);
            });
        check(gone, "sample photos are deleted from disk on removal");
    }

    int ran = 0, hits = 0, broken = 0;
    for (const auto& p : samples) {
        auto data = set.imageData(p);
        auto prepared = data ? SamplePipeline::prepare(*data) : std::nullopt;
        const Specimen* species = library_.specimen(p.specimenID);
        if (!prepared || !species) {
            ++broken;
            continue;
        }
        ++ran;
        IdentifyResult r = identify(LibraryChecks::profile(*species), prepared->color);
        hits += contains(top(r, 3), species->id);
    }
    info("sample photo + textbook answers \u2192 own species in top 3 for " + std::to_string(hits) +
         "/" + std::to_string(count));
    check(ran >= 3 && broken == 0, "identify runs end to end on every sample photo (" +
                                       std::to_string(ran) + "/" + std::to_string(count) + ")");
    check(hits >= 0.8 * count,
          "with the guided answers, samples find their own species in the top 3 (" +
              std::to_string(hits) + "/" + std::to_string(count) + ")");
}

void SelfTest::backupSection() {
    begin("Backup and restore round-trip");
    ScratchFolder folder("quarrydex-selftest-");
    const fs::path root = folder.path() / "Device";
    const fs::path drive = folder.path() / "FlashDrive" / "Quarrydex Backups";
    StoneStore store(root);

    auto photo = [](RGB color) {
        auto image = ImageTools::demoStone(color, 120);
        return image ? ImageTools::jpegData(*image, 0.8).value_or("") : std::string();
    };
    CollectionEntry bought;
    bought.specimenID = "quartz";
    bought.name = "Clear quartz point";
    bought.acquisition = "bought";
    bought.location = "Tucson, Arizona";
    bought.notes = "Comma, \"quote\"";
    bought.confidence = 0.82;
    bought.photoFile = store.storePhoto(photo({0.9, 0.9, 0.88}), bought.id);
    CollectionEntry found;
    found.specimenID = "calcite";
    found.name = "Creek calcite";
    found.location = "Mill Creek";
    found.notes = "Found by the creek\nsecond line";
    found.photoFile = store.storePhoto(photo({0.85, 0.8, 0.6}), found.id);
    store.add(found);
    store.add(bought);
    HistoryEntry withPhoto;
    withPhoto.answers = {"Photo color", "Color: White or colorless"};
    withPhoto.results = {{"quartz", 0.61}, {"calcite", 0.2}};
    withPhoto.level = "possible";
    withPhoto.photoFile = bought.photoFile; // an identification saved to the collection
    HistoryEntry answersOnly;
    answersOnly.answers = {"Vinegar: It fizzes or bubbles"};
    answersOnly.results = {{"calcite", 0.4}};
    answersOnly.level = "possible";
    store.addHistory(answersOnly);
    store.addHistory(withPhoto);
    store.toggleFavorite("quartz");
    store.toggleFavorite("galena");

    {
        StoneStore reopened(root);
        check(reopened.collection() == store.collection() &&
                  reopened.history() == store.history() &&
                  reopened.favorites() == store.favorites() && store.collection().size() == 2,
              "collection, history and favorites survive an app restart");
    }

    auto written = BackupCodec::writeBackup(store, drive, Timestamp::now());
    if (!written) {
        check(false, "backup write/restore", [&] { return " \u2014 " + written.error(); });
        return;
    }
    check(fs::is_regular_file(*written) && written->parent_path() == drive,
          "backup file is written to the chosen folder");
    auto archive = BackupCodec::decode(readAll(*written));
    check(archive && archive->version == 2 && archive->publisher == std::string(Branding::company),
          "backup is tagged with format version and publisher");

    StoneStore restored(folder.path() / "NewDevice");
    auto report = BackupCodec::restoreFile(*written, restored);
    if (!report) {
        check(false, "backup write/restore", [&] { return " \u2014 " + report.description(); });
        return;
    }
    check(report->collectionAdded == 2 && report->historyAdded == 2 &&
              report->favoritesAdded == 2 && report->skippedExisting == 0,
          "restore into an empty device adds everything");
    // The restore orders by date added, the store by when a piece was added to it: match the
    // pieces by id.
    bool sameFields = restored.collection().size() == store.collection().size();
    bool samePhotos = sameFields;
    for (std::size_t i = 0; sameFields && i < store.collection().size(); ++i) {
        const auto& a = store.collection()[i];
        auto match = std::find_if(restored.collection().begin(), restored.collection().end(),
                                  [&](const CollectionEntry& e) { return e.id == a.id; });
        if (match == restored.collection().end()) {
            sameFields = samePhotos = false;
            break;
        }
        const auto& b = *match;
        sameFields = a.specimenID == b.specimenID && a.name == b.name &&
                     std::floor(a.dateAdded.sinceReference) == b.dateAdded.sinceReference &&
                     a.acquisition == b.acquisition && a.location == b.location &&
                     a.notes == b.notes && a.confidence == b.confidence;
        samePhotos = samePhotos && store.photoData(a.photoFile) &&
                     store.photoData(a.photoFile) == restored.photoData(b.photoFile);
    }
    check(sameFields, "restored collection matches the original field-for-field");
    check(samePhotos, "photos come back byte-for-byte");
    check(restored.favorites() == store.favorites(), "favorites restored");
    auto again = BackupCodec::restoreFile(*written, restored);
    check(again && again->collectionAdded + again->historyAdded + again->favoritesAdded == 0 &&
              again->skippedExisting == 4 && restored.collection().size() == 2,
          "restoring the same backup twice adds nothing (additive, no duplicates)");

    const std::string format1 =
        "{\"app\":\"Quarrydex\",\"createdAt\":\"2026-10-18T12:00:00Z\",\"items\":[{\"acquisition\":"
        "\"found\",\"dateAdded\":\"2026-10-18T11:00:00Z\",\"id\":\"7D3C0F7E-3B8C-4D11-9A55-"
        "0C3B6B1C2E10\",\"location\":\"Palisade\",\"name\":\"Old quartz\",\"notes\":\"\"}],"
        "\"version\":1}";
    const std::string newer = "{\"app\":\"Quarrydex\",\"createdAt\":\"2026-10-18T12:00:00Z\","
                              "\"items\":[],\"version\":99}";
    const std::string other =
        "{\"app\":\"Other\",\"createdAt\":\"2026-10-18T12:00:00Z\",\"items\":[],\"version\":1}";
    auto old = BackupCodec::decode(format1);
    if (!old) {
        check(false, "Quarrydex 0.1 (format 1) backups restore",
              [] { return " \u2014 decode failed"; });
    } else {
        RestoreReport r = BackupCodec::restore(*old, restored);
        check(r.collectionAdded == 1 && !old->history && !old->favorites &&
                  restored.collection().size() == 3,
              "Quarrydex 0.1 (format 1) backups restore");
    }
    std::string noise(512, '\0');
    for (std::size_t i = 0; i < noise.size(); ++i) {
        noise[i] = static_cast<char>((i * 2654435761u) >> 13);
    }
    auto random = BackupCodec::decode(noise);
    check(!random && random.error().kind() == BackupError::Kind::notABackup,
          "a random file is rejected");
    auto newerResult = BackupCodec::decode(newer);
    check(!newerResult && newerResult.description() ==
                              "This backup was made by a newer version of Quarrydex (format 99). "
                              "Update the app to restore it.",
          "a backup from a newer version is refused with a clear message");
    auto otherResult = BackupCodec::decode(other);
    check(!otherResult && otherResult.description() == "That file isn't a Quarrydex backup.",
          "another app's JSON is refused");
    check(BackupCodec::csv(store, library_).find("\"Comma, \"\"quote\"\"\"") != std::string::npos,
          "CSV export escapes commas and quotes");
}

} // namespace quarrydex
