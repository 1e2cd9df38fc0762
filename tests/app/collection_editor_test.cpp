// The collection editor: a working copy that changes nothing until saved, photos prepared
// off the main thread and stored under the entry's own id, the species choice with "Not
// sure / not in library", the date, and opening prefilled from a species or a result.

#include "app/app_model.h"
#include "identify/image_tools.h"
#include "samples/sample_set.h"
#include "support/sample_files.h"
#include "support/specimens.h"
#include "support/temp_dir.h"

#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <filesystem>

using namespace quarrydex;
using test::TempDir;
namespace fs = std::filesystem;

namespace {

std::shared_ptr<const SpecimenLibrary> library() {
    std::vector<Specimen> list = test::numberedSpecimens(3);
    list.push_back(test::makeSpecimen("amethyst", "Amethyst"));
    list.push_back(test::makeSpecimen("smoky", "Smoky Quartz"));
    list.push_back(test::makeSpecimen("quartz", "Quartz"));
    return std::make_shared<const SpecimenLibrary>(std::move(list));
}

struct Fixture {
    Fixture() : model(library(), dir / "data", std::nullopt) {}

    CollectionEditor& editor() { return *model.collectionEditor(); }
    StoneStore& store() { return model.store(); }

    // Writes a JPEG of `size` pixels square to a file and returns its URL.
    QUrl photoFile(const std::string& name, const RGB& color, int size = 64) {
        fs::path file = dir / name;
        test::writeFile(file, test::jpegOf(color, size));
        return QUrl::fromLocalFile(QString::fromStdString(file.string()));
    }

    // Waits for the photo preparation (or the save's photo writing) to end.
    bool settle() {
        if (!editor().working()) {
            return true;
        }
        QSignalSpy done(&editor(), &CollectionEditor::workingChanged);
        return done.wait(20000) && !editor().working();
    }

    TempDir dir;
    AppModel model;
};

} // namespace

class CollectionEditorTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void a_new_piece_saved_without_a_photo_has_no_photo_file() {
        Fixture f;
        f.editor().openNew();
        QVERIFY(f.editor().isOpen());
        QCOMPARE(f.editor().title(), QStringLiteral("Add to My Collection"));
        QCOMPARE(f.editor().acquisition(), QStringLiteral("found"));
        QVERIFY(f.editor().dateValid());
        f.editor().setName(QStringLiteral("Pebble"));
        f.editor().setLocation(QStringLiteral("Glade Park, CO"));
        f.editor().setNotes(QStringLiteral("Two\nlines"));
        f.editor().setAcquisition(QStringLiteral("traded"));
        f.editor().setAcquisition(QStringLiteral("stolen")); // not one of the four: ignored
        QSignalSpy saved(&f.editor(), &CollectionEditor::saved);
        QVERIFY(f.editor().save());
        QCOMPARE(saved.count(), 1);
        QVERIFY(!f.editor().isOpen());
        QCOMPARE(f.store().collection().size(), std::size_t(1));
        const CollectionEntry& entry = f.store().collection()[0];
        QCOMPARE(entry.name, std::string("Pebble"));
        QCOMPARE(entry.acquisition, std::string("traded"));
        QCOMPARE(entry.notes, std::string("Two\nlines"));
        QVERIFY(!entry.photoFile);
        QVERIFY(!entry.specimenID);
        QVERIFY(test::namesIn(f.store().photosFolder()).empty());
    }

    void a_chosen_photo_is_prepared_off_the_main_thread_and_stored_under_the_entry_id() {
        Fixture f;
        f.editor().openNew();
        QVERIFY(f.editor().choosePhotoFile(f.photoFile("big.jpg", {0.5, 0.3, 0.7}, 2400)));
        QVERIFY(f.editor().working()); // the main thread is free meanwhile
        QVERIFY(!f.editor().save());   // not while the photo is being prepared
        QVERIFY(f.settle());
        QVERIFY(f.editor().hasPhoto());
        QVERIFY(f.editor().photoUrl().isLocalFile());
        QVERIFY(!f.editor().newPhoto().empty());
        std::optional<Image> prepared = ImageTools::decode(f.editor().newPhoto(), 4000);
        QVERIFY(prepared);
        QCOMPARE(std::max(prepared->width(), prepared->height()), 1600);

        const std::string id = f.editor().entry().id.text();
        QSignalSpy saved(&f.editor(), &CollectionEditor::saved);
        QVERIFY(f.editor().save());
        QVERIFY(f.editor().isOpen()); // until the photo is written
        f.editor().cancel();          // cannot cancel a save half way
        QVERIFY(saved.wait(20000));
        const CollectionEntry& entry = f.store().collection()[0];
        QCOMPARE(entry.photoFile, std::optional<std::string>(id + ".jpg"));
        QVERIFY(ImageTools::decode(*f.store().photoData(entry.photoFile), 100));
    }

    void a_replaced_photo_keeps_the_same_file_name() {
        Fixture f;
        f.editor().openNew();
        QVERIFY(f.editor().choosePhotoFile(f.photoFile("one.jpg", {0.9, 0.1, 0.1})));
        QVERIFY(f.settle());
        QVERIFY(f.editor().save());
        QVERIFY(f.settle());
        const CollectionEntry first = f.store().collection()[0];
        const std::string before = *f.store().photoData(first.photoFile);

        QVERIFY(f.editor().openEdit(QString::fromStdString(first.id.text())));
        QCOMPARE(f.editor().title(), QStringLiteral("Edit Specimen"));
        QVERIFY(f.editor().hasPhoto()); // the stored one
        QVERIFY(f.editor().choosePhotoFile(f.photoFile("two.jpg", {0.1, 0.1, 0.9})));
        QVERIFY(f.settle());
        QVERIFY(f.editor().save());
        QVERIFY(f.settle());
        QCOMPARE(f.store().collection().size(), std::size_t(1));
        QCOMPARE(f.store().collection()[0].photoFile, first.photoFile);
        QVERIFY(*f.store().photoData(first.photoFile) != before);
        QCOMPARE(test::namesIn(f.store().photosFolder()), std::set<std::string>{*first.photoFile});
    }

    void not_sure_saves_no_species_and_type_to_find_puts_names_that_begin_first() {
        Fixture f;
        QVariantMap first = f.editor().speciesChoices().first().toMap();
        QCOMPARE(first.value("name").toString(), QStringLiteral("Not sure / not in library"));
        QCOMPARE(first.value("id").toString(), QString());
        QCOMPARE(f.editor().speciesChoices().size(), 7);

        QStringList found;
        for (const QVariant& choice : f.editor().findSpecies(QStringLiteral("QUARTZ"))) {
            found << choice.toMap().value("name").toString();
        }
        QCOMPARE(found, (QStringList{"Quartz", "Smoky Quartz"}));
        QCOMPARE(f.editor().findSpecies(QString()).size(), 7);

        f.editor().openForSpecies(QStringLiteral("amethyst"), -1, {});
        QCOMPARE(f.editor().speciesName(), QStringLiteral("Amethyst"));
        f.editor().setSpeciesId(QString());
        QCOMPARE(f.editor().speciesName(), QStringLiteral("Not sure / not in library"));
        f.editor().setSpeciesId(QStringLiteral("no-such-species"));
        QCOMPARE(f.editor().speciesId(), QString());
        QVERIFY(f.editor().save());
        QVERIFY(!f.store().collection()[0].specimenID);
        QCOMPARE(f.model.collection()
                     ->data(f.model.collection()->index(0), CollectionListModel::SpeciesNameRole)
                     .toString(),
                 QString());
    }

    void opening_from_a_result_fills_in_species_session_photo_and_match_share() {
        Fixture f;
        QVERIFY(f.model.setPhoto(QByteArray::fromStdString(test::jpegOf({0.5, 0.3, 0.7}, 300))));
        f.model.addToCollection(QStringLiteral("amethyst"), 0.62, true);
        QVERIFY(f.editor().isOpen());
        QCOMPARE(f.editor().name(), QStringLiteral("Amethyst"));
        QCOMPARE(f.editor().speciesId(), QStringLiteral("amethyst"));
        QVERIFY(f.editor().hasConfidence());
        QCOMPARE(f.editor().confidenceText(), QStringLiteral("62%"));
        QVERIFY(f.settle());
        QVERIFY(f.editor().hasPhoto());
        QVERIFY(f.editor().save());
        QVERIFY(f.settle());
        const CollectionEntry& entry = f.store().collection()[0];
        QCOMPARE(entry.confidence, std::optional<double>(0.62));
        QVERIFY(entry.photoFile);

        // From a species detail: no share, and no photo unless asked for.
        f.model.addToCollection(QStringLiteral("s1"), -1, false);
        QVERIFY(!f.editor().hasConfidence());
        QVERIFY(!f.editor().hasPhoto());
        QVERIFY(!f.editor().working());
    }

    void a_file_that_is_not_a_photo_is_refused_and_the_sheet_keeps_its_content() {
        Fixture f;
        f.editor().openNew();
        f.editor().setName(QStringLiteral("Kept"));
        fs::path text = f.dir / "notes.txt";
        test::writeFile(text, "not an image");
        QVERIFY(
            f.editor().choosePhotoFile(QUrl::fromLocalFile(QString::fromStdString(text.string()))));
        QVERIFY(f.settle());
        QCOMPARE(
            f.editor().photoError(),
            QStringLiteral("That file couldn't be opened as a photo. Try a JPEG, HEIC or PNG."));
        QVERIFY(!f.editor().hasPhoto());
        QCOMPARE(f.editor().name(), QStringLiteral("Kept"));
        QVERIFY(
            f.editor().choosePhotoFile(QUrl::fromLocalFile(QStringLiteral("/no/such/file.jpg"))));
        QVERIFY(f.settle());
        QVERIFY(!f.editor().photoError().isEmpty());
    }

    void cancel_and_a_bad_date_change_nothing_and_a_new_date_keeps_the_time_of_day() {
        Fixture f;
        CollectionEntry entry;
        entry.name = "Original";
        entry.location = "Here";
        f.store().add(entry);
        QVERIFY(f.editor().openEdit(QString::fromStdString(entry.id.text())));
        f.editor().setName(QStringLiteral("Changed"));
        f.editor().cancel();
        QVERIFY(!f.editor().isOpen());
        QVERIFY(f.store().collection()[0] == entry);
        QVERIFY(!f.editor().openEdit(QStringLiteral("not-an-id")));

        QVERIFY(f.editor().openEdit(QString::fromStdString(entry.id.text())));
        f.editor().setDateText(QStringLiteral("2025-02-30"));
        QVERIFY(!f.editor().dateValid());
        QVERIFY(!f.editor().save());
        QVERIFY(f.editor().isOpen());
        f.editor().setDateText(QStringLiteral("2025-06-01"));
        QVERIFY(f.editor().save());
        const Timestamp saved = f.store().collection()[0].dateAdded;
        const QDateTime was = QDateTime::fromMSecsSinceEpoch(
            qint64((entry.dateAdded.sinceReference + Timestamp::unixOfReference) * 1000));
        const QDateTime now = QDateTime::fromMSecsSinceEpoch(
            qint64((saved.sinceReference + Timestamp::unixOfReference) * 1000));
        QCOMPARE(now.toLocalTime().date(), QDate(2025, 6, 1));
        QCOMPARE(now.toLocalTime().time().second(), was.toLocalTime().time().second());
        QCOMPARE(now.toLocalTime().time().hour(), was.toLocalTime().time().hour());
    }
};

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ImageTools::initialize();
    CollectionEditorTest test;
    int status = QTest::qExec(&test, argc, argv);
    ImageTools::shutdown();
    return status;
}

#include "collection_editor_test.moc"
