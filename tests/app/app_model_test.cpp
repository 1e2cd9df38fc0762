// AppModel over a small hand-made library and a private data root per test.

#include "app/app_model.h"
#include "identify/image_tools.h"
#include "samples/sample_set.h"
#include "support/sample_files.h"
#include "support/specimens.h"
#include "support/temp_dir.h"

#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>
#include <filesystem>
#include <memory>

using namespace quarrydex;
using test::readFile;
using test::TempDir;
using test::writeFile;
namespace fs = std::filesystem;

namespace {

const QString kBadPhoto =
    QStringLiteral("That file couldn't be opened as a photo. Try a JPEG, HEIC or PNG.");
const RGB kPurple{0.48, 0.35, 0.66};
const RGB kGreen{0.2, 0.6, 0.3};

QByteArray jpegOf(const RGB& color, int size = 200) {
    return QByteArray::fromStdString(test::jpegOf(color, size));
}

// Species "s0", "s1"... that the colour question tells apart: s0 is purple, s1 green, the
// rest white.
std::shared_ptr<const SpecimenLibrary> libraryOf(int count) {
    std::vector<Specimen> list = test::numberedSpecimens(count);
    if (count > 1) {
        list[0].colors = {"purple"};
        list[1].colors = {"green"};
    }
    return std::make_shared<const SpecimenLibrary>(std::move(list));
}

struct Fixture {
    explicit Fixture(int species = 3, std::optional<SampleSet> samples = std::nullopt)
        : model(libraryOf(species), dir.path(), std::move(samples)) {}

    const std::vector<HistoryEntry>& history() const { return model.store().history(); }
    fs::path photos() const { return model.store().photosFolder(); }
    std::size_t photoCount() const { return test::namesIn(photos()).size(); }
    QString top() const {
        return model.candidates()
            ->data(model.candidates()->index(0), CandidateListModel::SpecimenIdRole)
            .toString();
    }

    TempDir dir;
    AppModel model;
};

struct SampleFixture {
    SampleFixture()
        : folder(test::makeSampleFolder(sampleDir / "Samples", 3)), f(4, SampleSet::open(folder)) {}

    TempDir sampleDir;
    fs::path folder;
    Fixture f;
};

CollectionEntry ownPiece() {
    CollectionEntry own;
    own.name = "Desk stone";
    own.location = "Back yard";
    return own;
}

// Lets every photo being prepared finish and its outcome reach the model.
void drainWorkers() {
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

double distance(const QString& hex, const char* expected) {
    return Matcher::distance(*RGB::fromHex(hex.toStdString()), *RGB::fromHex(expected));
}

} // namespace

namespace quarrydex {
// Found by QCOMPARE through argument-dependent lookup, so failures print the ids.
char* toString(const Uuid& id) {
    return qstrdup(id.text().c_str());
}
} // namespace quarrydex

class AppModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // --- Answers, runs and the session's history entry
    void answers_are_set_by_raw_value_and_nothing_runs_before_the_first_run() {
        Fixture f;
        AppModel& m = f.model;
        QCOMPARE(m.section(), QStringLiteral("identify"));
        QVERIFY(!m.hasPhoto() && !m.canIdentify() && !m.hasRun() && !m.hasResult());
        QCOMPARE(m.questions().size(), 8);

        QSignalSpy changed(&m, &AppModel::answersChanged);
        QSignalSpy result(&m, &AppModel::resultChanged);
        QSignalSpy canIdentify(&m, &AppModel::canIdentifyChanged);
        QVERIFY(m.setAnswer("color", "purple"));
        QVERIFY(m.setAnswer("scratch", "scratchesGlass"));
        QVERIFY(!m.setAnswer("colour", "purple"));
        QVERIFY(!m.setAnswer("color", "violet"));
        QCOMPARE(m.answerMap(), (QVariantMap{{"color", "purple"}, {"scratch", "scratchesGlass"}}));
        QVERIFY(m.canIdentify());
        QCOMPARE(canIdentify.count(), 1);
        QVERIFY(m.setAnswer("scratch", ""));
        QVERIFY(m.setAnswer("scratch", "")); // already clear: no notice
        QCOMPARE(m.answer("scratch"), QString());
        QCOMPARE(changed.count(), 3);
        QVERIFY(!m.hasResult() && !m.hasRun());
        QCOMPARE(result.count(), 0);
        QVERIFY(f.history().empty());
        QVERIFY(!fs::exists(f.dir / "quarrydex-data.json"));
    }

    void after_a_run_answer_changes_rewrite_one_entry() {
        Fixture f(6);
        AppModel& m = f.model;
        QVERIFY(m.setAnswer("color", "purple"));
        QSignalSpy result(&m, &AppModel::resultChanged);
        QSignalSpy hasRun(&m, &AppModel::hasRunChanged);
        m.run();
        Answers answers;
        answers.color = ColorFamily::purple;
        const IdentifyResult expected = Matcher().identify({}, answers, m.library().specimens(), 8);
        QVERIFY(m.result()->candidates == expected.candidates);
        QCOMPARE(m.levelRaw().toStdString(), std::string(rawValue(expected.level)));
        QCOMPARE(m.levelTitle().toStdString(), std::string(title(expected.level)));
        QCOMPARE(m.suggestedQuestion().toStdString(),
                 std::string(rawValue(*expected.suggestedNext)));
        QCOMPARE(m.evidence(), 1);

        const Uuid id = m.sessionId();
        QCOMPARE(f.history().front().level, m.levelRaw().toStdString());
        QCOMPARE(f.history().front().isSample, std::optional<bool>(false));

        QVERIFY(m.setAnswer("color", "green"));
        QCOMPARE(f.top(), QStringLiteral("s1"));
        QCOMPARE(f.history().front().answers, std::vector<std::string>{"Color: Green"});
        QVERIFY(m.setAnswer("color", "purple"));
        QCOMPARE(f.top(), QStringLiteral("s0"));
        QCOMPARE(f.history().size(), 1u);
        QCOMPARE(f.history().front().id, id);
        QCOMPARE(f.history().front().answers, answers.summary());
        QCOMPARE(f.history().front().results.front().specimenID, std::string("s0"));
        QCOMPARE(result.count(), 3);
        QCOMPARE(hasRun.count(), 1);

        QSignalSpy store(&m, &AppModel::storeChanged);
        QVERIFY(m.setAnswer("color", "purple")); // the same answers: no re-run, no write
        QCOMPARE(result.count(), 3);
        QCOMPARE(store.count(), 0);
    }

    // Species, then the candidates shown and the results kept in the history entry.
    void history_keeps_at_most_five_results() {
        for (auto [species, candidates, results] : {std::tuple{3, 3, 3}, {8, 8, 5}, {12, 8, 5}}) {
            Fixture f(species);
            f.model.run();
            QCOMPARE(f.model.candidates()->rowCount(), candidates);
            const auto& stored = f.history().front().results;
            QCOMPARE(static_cast<int>(stored.size()), results);
            for (std::size_t i = 0; i < stored.size(); ++i) {
                QCOMPARE(stored[i].specimenID, f.model.result()->candidates[i].specimen.id);
                QCOMPARE(stored[i].confidence, f.model.result()->candidates[i].confidence);
            }
        }
    }

    void starting_over_keeps_the_old_entry_and_starts_a_fresh_session() {
        Fixture f;
        AppModel& m = f.model;
        QVERIFY(m.setPhoto(jpegOf(kPurple)));
        QVERIFY(m.setAnswer("color", "purple"));
        m.run();
        const Uuid oldId = m.sessionId();
        const HistoryEntry oldEntry = f.history().front();
        m.setPhotoError("Left from before.");

        std::vector<std::unique_ptr<QSignalSpy>> spies;
        for (auto signal : {&AppModel::hasRunChanged, &AppModel::resultChanged,
                            &AppModel::answersChanged, &AppModel::photoDataChanged,
                            &AppModel::photoColorChanged, &AppModel::canIdentifyChanged}) {
            spies.push_back(std::make_unique<QSignalSpy>(&m, signal));
        }
        m.startOver();
        for (const auto& spy : spies) {
            QCOMPARE(spy->count(), 1);
        }
        QVERIFY(m.sessionId() != oldId);
        QVERIFY(!m.hasRun() && !m.hasResult() && !m.hasPhoto() && m.answers().isEmpty());
        QCOMPARE(m.candidates()->rowCount(), 0);
        QCOMPARE(m.photoError(), QStringLiteral("Left from before."));
        QVERIFY(f.history().size() == 1 && f.history().front() == oldEntry);
        QVERIFY(fs::exists(f.photos() / *oldEntry.photoFile));

        QVERIFY(m.setAnswer("color", "green")); // a fresh session does not run by itself
        QCOMPARE(f.history().size(), 1u);
        m.run();
        QCOMPARE(f.history().size(), 2u);
        QCOMPARE(f.history().front().id, m.sessionId());
        QVERIFY(f.history().back() == oldEntry);
    }

    void a_restart_over_the_same_data_root_sees_the_history() {
        TempDir dir;
        auto library = libraryOf(3);
        std::optional<HistoryEntry> written;
        {
            AppModel first(library, dir.path(), std::nullopt);
            QVERIFY(first.setPhoto(jpegOf(kPurple)));
            QVERIFY(first.setAnswer("luster", "glassy"));
            first.run();
            written = first.store().history().front();
        }
        AppModel again(library, dir.path(), std::nullopt);
        QCOMPARE(again.store().history().size(), 1u);
        const HistoryEntry& entry = again.store().history().front();
        QVERIFY(entry == *written);
        QCOMPARE(entry.answers,
                 (std::vector<std::string>{"Photo color", "Luster: Glassy, like a window"}));
        QVERIFY(again.store().photoData(entry.photoFile));
        QVERIFY(again.sessionId() != entry.id);
        QVERIFY(!again.hasRun());
    }

    // --- The photo
    void a_bad_photo_keeps_the_previous_one_and_says_so() {
        Fixture f;
        AppModel& m = f.model;
        QVERIFY(m.setPhoto(jpegOf(kPurple)));
        QVERIFY2(distance(m.photoColor(), "#7A5AA8") < 0.03, qPrintable(m.photoColor()));
        m.run();
        const QByteArray before = m.photoData();
        const HistoryEntry entry = f.history().front();
        QSignalSpy error(&m, &AppModel::photoErrorChanged);
        QSignalSpy result(&m, &AppModel::resultChanged);
        for (const QByteArray& junk : {QByteArray("not a photo"), QByteArray(), before.left(40)}) {
            QVERIFY(!m.setPhoto(junk));
        }
        QCOMPARE(m.photoError(), kBadPhoto);
        QCOMPARE(error.count(), 1);
        QVERIFY(m.photoData() == before);
        QVERIFY(distance(m.photoColor(), "#7A5AA8") < 0.03);
        QCOMPARE(m.photoRevision(), 1);
        QCOMPARE(result.count(), 0);
        QVERIFY(f.history().front() == entry);

        QVERIFY(m.setPhoto(jpegOf(kGreen))); // clears the message and re-runs
        QCOMPARE(m.photoError(), QString());
        QCOMPARE(m.photoRevision(), 2);
        QVERIFY(distance(m.photoColor(), "#339A4C") < 0.03);
        QCOMPARE(result.count(), 1);

        writeFile(f.dir / "stone.jpg", test::jpegOf(kPurple, 120)); // from a file URL
        QVERIFY(m.setPhotoFromFile(
            QUrl::fromLocalFile(QString::fromStdString((f.dir / "stone.jpg").string()))));
        QVERIFY(!m.setPhotoFromFile(QUrl::fromLocalFile(QStringLiteral("/no/such/stone.jpg"))));
        QCOMPARE(m.photoError(), kBadPhoto);
        QCOMPARE(m.photoRevision(), 3);
    }

    // An image too large to decode is told apart from one that is no image at all.
    void a_photo_too_large_to_open_says_so() {
        Fixture f;
        AppModel& m = f.model;
        QVERIFY(m.setPhoto(jpegOf(kPurple)));
        const QByteArray before = m.photoData();
        QVERIFY(!m.setPhoto(QByteArray::fromStdString(test::pngDeclaring(100000, 100000))));
        QCOMPARE(m.photoError(), QStringLiteral("That photo is too large to open."));
        QVERIFY(m.photoData() == before);
        QVERIFY(!m.setPhoto(QByteArray("not a photo")));
        QCOMPARE(m.photoError(), kBadPhoto);
    }

    void the_session_photo_is_stored_once_at_600_pixels() {
        Fixture f;
        AppModel& m = f.model;
        QVERIFY(m.setPhoto(jpegOf(kPurple, 1000)));
        QCOMPARE(f.photoCount(), 0u); // nothing is written before the first run
        m.run();
        const std::string name = m.sessionId().text() + ".jpg";
        QCOMPARE(f.photoCount(), 1u);
        QCOMPARE(f.history().front().photoFile, std::optional<std::string>(name));
        auto stored = ImageTools::decode(readFile(f.photos() / name), 4000);
        QVERIFY(stored && stored->width() == 600 && stored->height() == 600);

        // Re-runs reuse the file: a marker written over it survives them.
        writeFile(f.photos() / name, "marker");
        QVERIFY(m.setAnswer("color", "green"));
        m.run();
        QCOMPARE(readFile(f.photos() / name), std::string("marker"));

        // A new photo in the same session replaces the file under the same name.
        QVERIFY(m.setPhoto(jpegOf(kGreen, 300)));
        stored = ImageTools::decode(readFile(f.photos() / name), 4000);
        QVERIFY(stored && stored->width() == 300);
        QCOMPARE(f.photoCount(), 1u);

        // Clearing it identifies from the answers alone and releases the file.
        m.clearPhoto();
        QVERIFY(!m.hasPhoto() && !m.usedPhotoColor());
        QCOMPARE(f.history().front().answers, std::vector<std::string>{"Color: Green"});
        QVERIFY(!f.history().front().photoFile);
        QCOMPARE(f.photoCount(), 0u);
    }

    void a_lost_or_unwritten_session_photo_is_stored_on_the_next_run() {
        Fixture f;
        AppModel& m = f.model;
        QVERIFY(m.setPhoto(jpegOf(kPurple)));
        m.store().setSaveOptions({.failAfterBytes = 0, .freeSpace = nullptr});
        m.run();
        QVERIFY(m.storeError().startsWith(QStringLiteral("Couldn't save")));
        QVERIFY(!f.history().front().photoFile);
        m.store().setSaveOptions({});
        m.clearStoreError();
        QCOMPARE(m.storeError(), QString());
        m.run();
        const std::string name = m.sessionId().text() + ".jpg";
        QCOMPARE(f.history().front().photoFile, std::optional<std::string>(name));

        m.store().deleteHistory(m.sessionId()); // from the History screen: releases the file
        QCOMPARE(f.photoCount(), 0u);
        m.run();
        QCOMPARE(f.history().front().photoFile, std::optional<std::string>(name));
        QVERIFY(fs::exists(f.photos() / name));
    }

    // --- Photos prepared in the background
    void a_photo_prepared_in_the_background_is_applied_like_a_direct_one() {
        Fixture f;
        AppModel& m = f.model;
        QVERIFY(m.setAnswer("color", "green"));
        m.run();
        m.setPhotoError(QStringLiteral("an old message"));
        QSignalSpy prepared(&m, &AppModel::photoPrepared);
        QSignalSpy preparing(&m, &AppModel::preparingPhotoChanged);
        m.setPhotoAsync(jpegOf(kPurple));
        QVERIFY(m.preparingPhoto());
        QVERIFY(!m.hasPhoto()); // nothing changes before it is ready
        QVERIFY(prepared.wait(10000));
        QCOMPARE(prepared.count(), 1);
        QCOMPARE(prepared.first().at(0).toBool(), true);
        QVERIFY(!m.preparingPhoto());
        QCOMPARE(preparing.count(), 2);
        QCOMPARE(m.photoError(), QString());
        QVERIFY(distance(m.photoColor(), "#7A5AA8") < 0.03);
        QVERIFY(m.usedPhotoColor()); // the session had run: it ran again with the photo
        QCOMPARE(f.history().size(), 1u);
        QCOMPARE(f.history().front().answers,
                 (std::vector<std::string>{"Photo color", "Color: Green"}));

        // The same bytes set directly give the same prepared photo.
        const QByteArray background = m.photoData();
        QVERIFY(m.setPhoto(jpegOf(kPurple)));
        QVERIFY(m.photoData() == background);
    }

    void the_latest_photo_wins_over_one_still_being_prepared() {
        Fixture f;
        AppModel& m = f.model;
        QSignalSpy prepared(&m, &AppModel::photoPrepared);
        m.setPhotoAsync(jpegOf(kPurple, 1200));
        m.setPhotoAsync(jpegOf(kGreen));
        QVERIFY(prepared.wait(10000));
        drainWorkers(); // the overtaken one has arrived too by now
        QCOMPARE(prepared.count(), 1);
        QVERIFY(distance(m.photoColor(), "#339A4C") < 0.03);
        QCOMPARE(m.photoRevision(), 1);

        // A photo set directly, a cleared photo or a new session also overtake it.
        m.setPhotoAsync(jpegOf(kPurple));
        QVERIFY(m.setPhoto(jpegOf(kGreen, 80)));
        QVERIFY(!m.preparingPhoto());
        m.setPhotoAsync(jpegOf(kPurple));
        m.clearPhoto();
        m.setPhotoAsync(jpegOf(kPurple));
        m.startOver();
        drainWorkers();
        QCOMPARE(prepared.count(), 1);
        QVERIFY(!m.hasPhoto() && !m.preparingPhoto());

        // A later photo that is not an image wins too: the message, and the photo before both.
        QVERIFY(m.setPhoto(jpegOf(kGreen)));
        m.setPhotoAsync(jpegOf(kPurple));
        m.setPhotoAsync(QByteArray("not a photo"));
        QVERIFY(prepared.wait(10000));
        QCOMPARE(prepared.last().at(0).toBool(), false);
        QCOMPARE(m.photoError(), kBadPhoto);
        QVERIFY(distance(m.photoColor(), "#339A4C") < 0.03);
    }

    void bad_files_in_the_background_only_say_so() {
        Fixture f;
        AppModel& m = f.model;
        QVERIFY(m.setAnswer("color", "green"));
        QVERIFY(m.setPhoto(jpegOf(kPurple)));
        m.run();
        const QByteArray photo = m.photoData();
        const int revision = m.photoRevision();
        const HistoryEntry entry = f.history().front();
        const std::string jpeg = test::jpegOf(kGreen, 400);
        writeFile(f.dir / "notes.txt", "a stone from the creek");
        writeFile(f.dir / "empty.jpg", "");
        writeFile(f.dir / "truncated.jpg", jpeg.substr(0, jpeg.size() / 3));
        fs::create_directories(f.dir / "a folder.jpg");
        auto url = [&](const char* name) {
            return QUrl::fromLocalFile(QString::fromStdString((f.dir / name).string()));
        };
        QSignalSpy prepared(&m, &AppModel::photoPrepared);
        QSignalSpy result(&m, &AppModel::resultChanged);
        for (const char* name :
             {"notes.txt", "empty.jpg", "truncated.jpg", "a folder.jpg", "missing.jpg"}) {
            m.setPhotoError({});
            m.setPhotoFromFileAsync(url(name));
            QVERIFY2(prepared.wait(10000), name);
            QVERIFY2(!prepared.last().at(0).toBool(), name);
            QCOMPARE(m.photoError(), kBadPhoto);
        }
        QVERIFY(m.photoData() == photo);
        QCOMPARE(m.photoRevision(), revision);
        QCOMPARE(result.count(), 0);
        QVERIFY(f.history().front() == entry);

        writeFile(f.dir / "stone.jpg", jpeg);
        m.setPhotoFromFileAsync(url("stone.jpg"));
        QVERIFY(prepared.wait(10000));
        QVERIFY(prepared.last().at(0).toBool());
        QCOMPARE(m.photoError(), QString());
        QVERIFY(distance(m.photoColor(), "#339A4C") < 0.03);
    }

    void a_sample_photo_prepared_in_the_background_is_identified_when_ready() {
        SampleFixture s;
        AppModel& m = s.f.model;
        QCOMPARE(m.sampleIds(), (QStringList{"sample-0", "sample-1", "sample-2"}));
        QVERIFY(Fixture().model.sampleIds().isEmpty());
        QVERIFY(m.setAnswer("color", "green"));
        m.run();
        const Uuid first = m.sessionId();
        m.identifySampleAsync("no-such-sample");
        QCOMPARE(m.photoError(), QStringLiteral("That sample photo is missing."));
        QCOMPARE(m.sessionId(), first);

        m.setSection("library");
        m.setDemoDetail("s1");
        QSignalSpy prepared(&m, &AppModel::photoPrepared);
        m.identifySampleAsync("sample-1");
        QVERIFY(m.sessionId() != first); // a new session at once
        QVERIFY(!m.hasRun() && m.preparingPhoto());
        QVERIFY(prepared.wait(10000));
        QVERIFY(m.hasRun() && m.hasPhoto() && m.usedPhotoColor() && m.answers().isEmpty());
        QCOMPARE(m.section(), QStringLiteral("identify"));
        QCOMPARE(m.demoDetail(), QString());
        QCOMPARE(s.f.history().size(), 2u);
        QCOMPARE(s.f.history().front().answers, std::vector<std::string>{"Photo color"});
    }

    // --- Sections, settable state and store notices
    void sections_and_details_take_known_values_only() {
        Fixture f;
        AppModel& m = f.model;
        QSignalSpy section(&m, &AppModel::sectionChanged);
        m.setSection("history");
        m.setSection("history");
        QCOMPARE(m.currentSection(), std::optional<AppSection>(AppSection::history));
        m.setSection("settings");
        QCOMPARE(m.section(), QString());
        QCOMPARE(section.count(), 2);
        m.setDemoDetail("s2");
        QCOMPARE(m.demoDetail(), QStringLiteral("s2"));
        m.setDemoDetail("not-in-the-library");
        QCOMPARE(m.demoDetail(), QString());

        // Each section keeps its own way back; unknown sections have none.
        QVERIFY(m.navigation("library") && m.navigation("history"));
        QVERIFY(m.navigation("library") != m.navigation("history"));
        QCOMPARE(m.navigation("settings"), nullptr);
        QCOMPARE(m.specimenName("s2"), QStringLiteral("Species 2"));
        QCOMPARE(m.specimenName("not-in-the-library"), QString());

        QSignalSpy stored(&m, &AppModel::storeChanged);
        m.toggleFavorite("s2");
        QVERIFY(m.isFavorite("s2"));
        QCOMPARE(m.favorites(), QStringList{"s2"});
        m.toggleFavorite("s2");
        QVERIFY(!m.isFavorite("s2"));
        QCOMPARE(stored.count(), 2);
    }

    // --- The sample collection
    void samples_load_once_and_remove_only_themselves() {
        SampleFixture s;
        AppModel& m = s.f.model;
        QVERIFY(m.hasSampleSet());
        m.store().add(ownPiece());
        m.setSection("history");
        m.setDemoDetail("s0");
        QSignalSpy hasSamples(&m, &AppModel::hasSamplesChanged);
        m.loadSampleCollection();
        QCOMPARE(m.sampleMessage(),
                 QStringLiteral(u"Added 3 sample specimens to My Collection, with photos and "
                                u"library links, plus a few example identifications in History. "
                                u"Open one and press \u201CIdentify This Photo\u201D to try the "
                                u"identifier. Remove them any time with Help > Remove Sample "
                                u"Collection."));
        QCOMPARE(m.section(), QStringLiteral("collection"));
        QCOMPARE(m.demoDetail(), QString());
        QVERIFY(m.hasSamples());

        m.loadSampleCollection();
        QCOMPARE(m.sampleMessage(), QStringLiteral("The sample collection is already loaded."));
        QCOMPARE(m.store().collection().size(), 4u);

        m.removeSampleCollection();
        QCOMPARE(m.sampleMessage(),
                 QStringLiteral("Removed 3 sample specimens. Your own stones were not touched."));
        QCOMPARE(m.store().collection().size(), 1u);
        QCOMPARE(hasSamples.count(), 2);
        m.removeSampleCollection();
        QCOMPARE(m.sampleMessage(), QStringLiteral("There are no samples to remove. Your own "
                                                   "stones were not touched."));
    }

    void a_sample_photo_is_identified_in_a_new_session_and_a_missing_one_only_says_so() {
        Fixture none;
        none.model.loadSampleCollection();
        QCOMPARE(none.model.sampleMessage(),
                 QStringLiteral("This copy of Quarrydex has no sample photos."));
        QCOMPARE(none.model.section(), QStringLiteral("identify"));

        SampleFixture s;
        AppModel& m = s.f.model;
        QVERIFY(m.setAnswer("color", "green"));
        m.run();
        const Uuid id = m.sessionId();
        fs::remove(s.folder / "sample-2.jpg");
        for (const char* sample : {"no-such-sample", "sample-2"}) {
            m.setPhotoError("");
            m.identifySample(sample);
            QCOMPARE(m.photoError(), QStringLiteral("That sample photo is missing."));
        }
        QCOMPARE(m.sessionId(), id);
        QCOMPARE(m.answer("color"), QStringLiteral("green"));
        writeFile(s.folder / "sample-0.jpg", "damaged"); // there but unreadable: no empty entry
        m.identifySample("sample-0");
        QCOMPARE(m.photoError(), kBadPhoto);
        QCOMPARE(s.f.history().size(), 1u);

        m.setSection("library");
        m.setDemoDetail("s1");
        const Uuid before = m.sessionId();
        m.identifySample("sample-1");
        QVERIFY(m.sessionId() != before);
        QVERIFY(m.hasRun() && m.hasPhoto() && m.usedPhotoColor() && m.answers().isEmpty());
        QCOMPARE(m.section(), QStringLiteral("identify"));
        QCOMPARE(m.demoDetail(), QString());
        QCOMPARE(s.f.history().size(), 2u);
        QCOMPARE(s.f.history().front().id, m.sessionId());
        QCOMPARE(s.f.history().front().answers, std::vector<std::string>{"Photo color"});
    }

    // --- Demonstration content
    void demo_data_fills_an_empty_collection_once() {
        Fixture f;
        AppModel& m = f.model;
        m.store().toggleFavorite("amazonite");
        m.loadDemoData();
        const auto& pieces = m.store().collection();
        QCOMPARE(pieces.size(), 3u);
        // Each piece has a generated photo in its species' colour, newest first.
        const char* expected[][2] = {
            {"rhodochrosite", "#C24A60"}, {"petrified-wood", "#7A5A3E"}, {"amethyst", "#7A5AA8"}};
        for (std::size_t i = 0; i < 3; ++i) {
            const CollectionEntry& e = pieces[i];
            QCOMPARE(e.specimenID, std::optional<std::string>(expected[i][0]));
            auto image = ImageTools::decode(m.store().photoData(e.photoFile).value_or(""), 800);
            QVERIFY(image);
            QVERIFY2(Matcher::distance(*ImageTools::averageCenterColor(*image),
                                       *RGB::fromHex(expected[i][1])) < 0.05,
                     expected[i][1]);
            QVERIFY(i == 0 || pieces[i - 1].dateAdded > e.dateAdded);
        }
        const std::vector<std::string> favorites{"amazonite", "gold", "rhodochrosite",
                                                 "dinosaur-bone"};
        QCOMPARE(m.store().favorites(), favorites);

        QSignalSpy store(&m, &AppModel::storeChanged);
        m.loadDemoData(); // a second tour over the same data root adds nothing
        QCOMPARE(store.count(), 0);

        Fixture other;
        other.model.store().add(ownPiece());
        other.model.loadDemoData();
        QCOMPARE(other.model.store().collection().size(), 1u);
        QVERIFY(other.model.store().favorites().empty());
    }
};

QTEST_GUILESS_MAIN(AppModelTest)
#include "app_model_test.moc"
