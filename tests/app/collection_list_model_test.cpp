// The collection list: rows in store order with their names, species and photos, the
// search, row-level updates, one piece described for the detail screen, and undo of a
// delete with its photo.

#include "app/app_model.h"
#include "identify/image_tools.h"
#include "samples/sample_set.h"
#include "support/sample_files.h"
#include "support/specimens.h"
#include "support/temp_dir.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>
#include <filesystem>

using namespace quarrydex;
using test::TempDir;
namespace fs = std::filesystem;

namespace {

std::shared_ptr<const SpecimenLibrary> library() {
    return std::make_shared<const SpecimenLibrary>(test::numberedSpecimens(3));
}

struct Fixture {
    explicit Fixture(std::optional<SampleSet> samples = std::nullopt)
        : model(library(), dir / "data", std::move(samples)),
          tester(model.collection(), QAbstractItemModelTester::FailureReportingMode::Fatal) {}

    CollectionListModel& list() { return *model.collection(); }
    StoneStore& store() { return model.store(); }

    CollectionEntry add(const std::string& name, std::optional<std::string> species = "s1",
                        const std::string& location = "Glade Park, CO",
                        const std::string& notes = "", bool withPhoto = false) {
        CollectionEntry entry;
        entry.name = name;
        entry.specimenID = std::move(species);
        entry.location = location;
        entry.notes = notes;
        if (withPhoto) {
            entry.photoFile = store().storePhoto(test::jpegOf({0.4, 0.2, 0.6}), entry.id);
        }
        store().add(entry);
        return entry;
    }

    QVariant at(int row, int role) { return list().data(list().index(row), role); }

    QStringList names() {
        QStringList out;
        for (int i = 0; i < list().rowCount(); ++i) {
            out << at(i, CollectionListModel::NameRole).toString();
        }
        return out;
    }

    TempDir dir;
    AppModel model;
    QAbstractItemModelTester tester;
};

} // namespace

class CollectionListModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void rows_are_newest_first_with_unnamed_pieces_species_and_photos() {
        Fixture f;
        QCOMPARE(f.list().countText(), QStringLiteral("0 specimens"));
        CollectionEntry first = f.add("Big amethyst from Dad", "s1", "Glade Park, CO", "", true);
        f.add("", std::nullopt);
        f.add("Odd one", "no-such-species");
        QCOMPARE(f.names(), (QStringList{"Odd one", "Unnamed specimen", "Big amethyst from Dad"}));
        QCOMPARE(f.at(0, CollectionListModel::SpeciesNameRole).toString(), QString());
        QCOMPARE(f.at(1, CollectionListModel::SpeciesIdRole).toString(), QString());
        QCOMPARE(f.at(2, CollectionListModel::SpeciesNameRole).toString(),
                 QStringLiteral("Species 1"));
        QCOMPARE(f.at(2, CollectionListModel::EntryIdRole).toString(),
                 QString::fromStdString(first.id.text()));
        QCOMPARE(f.at(2, CollectionListModel::PhotoPathRole).toString(),
                 QString::fromStdString((f.store().photosFolder() / *first.photoFile).string()));
        QCOMPARE(f.at(1, CollectionListModel::PhotoPathRole).toString(), QString());
        QCOMPARE(f.list().countText(), QStringLiteral("3 specimens"));
        QCOMPARE(f.list().roleNames().value(CollectionListModel::SpeciesNameRole),
                 QByteArray("speciesName"));
    }

    void the_search_folds_case_and_needs_every_word_in_name_species_place_or_notes() {
        Fixture f;
        f.add("Big Amethyst", "s1", "Glade Park, CO");
        f.add("Rose quartz", "s2", "Gift shop", "From the ÉCOLE fair");
        f.add("", std::nullopt, "Beach");
        const std::vector<std::pair<QString, QStringList>> cases = {
            {QStringLiteral("amethyst"), {"Big Amethyst"}},
            {QStringLiteral("SPECIES 2"), {"Rose quartz"}},
            {QStringLiteral("glade"), {"Big Amethyst"}},
            {QStringLiteral("école"), {"Rose quartz"}},
            {QStringLiteral("  park   big "), {"Big Amethyst"}},
            {QStringLiteral("unnamed"), {"Unnamed specimen"}},
            {QStringLiteral("park rose"), {}},
            {QString(), {"Unnamed specimen", "Rose quartz", "Big Amethyst"}},
        };
        for (const auto& [query, expected] : cases) {
            f.list().setQuery(query);
            QCOMPARE(f.names(), expected);
            QCOMPARE(f.list().count(), int(expected.size()));
            QCOMPARE(f.list().totalCount(), 3);
        }
        f.list().setQuery(QStringLiteral("quartz"));
        QCOMPARE(f.list().countText(), QStringLiteral("1 specimens"));
        f.add("Smoky quartz"); // a new match shows up under the current search
        QCOMPARE(f.names(), (QStringList{"Smoky quartz", "Rose quartz"}));
    }

    void store_changes_move_only_the_rows_they_touch() {
        Fixture f;
        CollectionEntry a = f.add("A");
        f.add("B");
        CollectionEntry c = f.add("C");
        QSignalSpy reset(f.model.collection(), &QAbstractItemModel::modelReset);
        QSignalSpy removed(f.model.collection(), &QAbstractItemModel::rowsRemoved);
        QSignalSpy inserted(f.model.collection(), &QAbstractItemModel::rowsInserted);
        QSignalSpy changed(f.model.collection(), &QAbstractItemModel::dataChanged);

        f.store().deleteEntry(a.id);
        QCOMPARE(removed.count(), 1);
        QCOMPARE(removed.first().at(1).toInt(), 2);
        f.add("D");
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(inserted.first().at(1).toInt(), 0);
        c.name = "C renamed";
        f.store().update(c);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.first().at(0).toModelIndex().row(), 1);
        f.store().toggleFavorite("s1"); // not the collection: nothing moves
        QCOMPARE(removed.count() + inserted.count() + changed.count(), 3);
        QCOMPARE(reset.count(), 0);
        QCOMPARE(f.names(), (QStringList{"D", "C renamed", "B"}));
    }

    void a_piece_is_described_for_its_detail_and_a_deleted_one_as_gone() {
        TempDir samplesDir;
        fs::path folder = test::makeSampleFolder(samplesDir / "Samples", 2);
        std::optional<SampleSet> samples = SampleSet::open(folder);
        QVERIFY(samples);
        const std::string creditLine = samples->samples()[0].creditLine();
        const std::string sampleId = samples->samples()[0].id;
        Fixture f(std::move(samples));

        CollectionEntry entry;
        entry.name = "Sample: thing";
        entry.specimenID = "s2";
        entry.acquisition = "gift";
        entry.location = "Sample photo (Wikimedia Commons)";
        entry.notes = "Line one\nLine two";
        entry.confidence = 0.987;
        entry.isSample = true;
        entry.sampleID = sampleId;
        f.store().add(entry);
        QVariantMap map = f.list().entry(QString::fromStdString(entry.id.text()));
        QCOMPARE(map.value("exists").toBool(), true);
        QCOMPARE(map.value("name").toString(), QStringLiteral("Sample: thing"));
        QCOMPARE(map.value("speciesName").toString(), QStringLiteral("Species 2"));
        QCOMPARE(map.value("acquisition").toString(), QStringLiteral("Gift"));
        QCOMPARE(map.value("notes").toString(), QStringLiteral("Line one\nLine two"));
        QCOMPARE(map.value("hasConfidence").toBool(), true);
        QCOMPARE(map.value("confidenceText").toString(),
                 QStringLiteral("95%")); // as results show it
        QCOMPARE(map.value("creditLine").toString(), QString::fromStdString(creditLine));
        QVERIFY(!map.value("dateText").toString().isEmpty());

        CollectionEntry odd;
        odd.name = "";
        odd.acquisition = "stolen";
        f.store().add(odd);
        map = f.list().entry(QString::fromStdString(odd.id.text()));
        QCOMPARE(map.value("name").toString(), QStringLiteral("Unnamed specimen"));
        QCOMPARE(map.value("acquisition").toString(), QStringLiteral("Stolen"));
        QCOMPARE(map.value("hasConfidence").toBool(), false);
        QCOMPARE(map.value("creditLine").toString(), QString());

        const int revision = f.list().revision();
        f.store().deleteEntry(odd.id);
        QVERIFY(f.list().revision() > revision);
        QCOMPARE(f.list().entry(QString::fromStdString(odd.id.text())).value("exists").toBool(),
                 false);
    }

    void undo_brings_the_last_deleted_piece_back_with_its_photo() {
        Fixture f;
        CollectionEntry older = f.add("Older", "s1", "Here", "", true);
        CollectionEntry piece = f.add("Keeper", "s2", "There", "notes", true);
        f.add("Newest");
        const fs::path photo = f.store().photosFolder() / *piece.photoFile;
        const std::string bytes = test::readFile(photo);
        QVERIFY(!f.list().canUndoDelete());
        QVERIFY(!f.list().undoDelete());

        QSignalSpy undoChanged(f.model.collection(), &CollectionListModel::undoChanged);
        QVERIFY(f.list().remove(QString::fromStdString(piece.id.text())));
        QVERIFY(!fs::exists(photo)); // the store let it go
        QVERIFY(f.list().canUndoDelete());
        QCOMPARE(f.list().undoText(), QStringLiteral("Deleted “Keeper”."));
        QCOMPARE(f.names(), (QStringList{"Newest", "Older"}));

        QVERIFY(f.list().undoDelete());
        QCOMPARE(f.names(), (QStringList{"Newest", "Keeper", "Older"}));
        QVERIFY(f.store().collection()[1] == piece);
        QCOMPARE(test::readFile(photo), bytes);
        QVERIFY(!f.list().canUndoDelete());
        QCOMPARE(undoChanged.count(), 2);

        // Only the last delete can be undone; the one before is gone for good.
        QVERIFY(f.list().remove(QString::fromStdString(older.id.text())));
        QVERIFY(f.list().remove(QString::fromStdString(piece.id.text())));
        QVERIFY(f.list().undoDelete());
        QCOMPARE(f.names(), (QStringList{"Newest", "Keeper"}));
        QVERIFY(!fs::exists(f.store().photosFolder() / *older.photoFile));
        QVERIFY(!f.list().remove(QStringLiteral("not-an-id")));
    }

    void a_dismissed_undo_and_a_restart_leave_no_kept_photos() {
        TempDir dir;
        {
            AppModel model(library(), dir / "data", std::nullopt);
            CollectionEntry entry;
            entry.name = "Gone";
            entry.photoFile = model.store().storePhoto(test::jpegOf({0.1, 0.2, 0.3}), entry.id);
            model.store().add(entry);
            QVERIFY(model.collection()->remove(QString::fromStdString(entry.id.text())));
            QVERIFY(!test::namesIn(dir / "data" / ".undo").empty());
            model.collection()->dismissUndo();
            QVERIFY(test::namesIn(dir / "data" / ".undo").empty());
            CollectionEntry second = entry;
            second.id = Uuid::random();
            second.photoFile = model.store().storePhoto(test::jpegOf({0.1, 0.2, 0.3}), second.id);
            model.store().add(second);
            QVERIFY(model.collection()->remove(QString::fromStdString(second.id.text())));
        }
        AppModel again(library(), dir / "data", std::nullopt);
        QVERIFY(!fs::exists(dir / "data" / ".undo"));
        QVERIFY(test::namesIn(dir / "data" / "Photos").empty());
    }
};

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ImageTools::initialize();
    CollectionListModelTest test;
    int status = QTest::qExec(&test, argc, argv);
    ImageTools::shutdown();
    return status;
}

#include "collection_list_model_test.moc"
