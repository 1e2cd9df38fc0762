// My Collection in the main window, offscreen, over a model in a temporary folder: the empty
// state, adding by hand with and without a photo, the list with its search, the detail with
// its facts and its "Removed" state, delete with undo, and the editor opened from a species'
// detail. Any warning, QML ones included, fails the test.
//
// With QUARRYDEX_TEST_SAMPLES set the model has a (made-up) sample set; without, none.

#include "app/app_model.h"
#include "identify/image_tools.h"
#include "samples/sample_set.h"
#include "support/sample_files.h"
#include "support/temp_dir.h"
#include "tests/ui/quick_test_support.h"
#include "ui/kit/vx_zoom.h"
#include "ui/theme.h"
#include "ui/windowed_app.h"

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSettings>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>

#include <filesystem>
#include <memory>

Q_IMPORT_QML_PLUGIN(QuarrydexPlugin)

using namespace quarrydex;
using namespace quarrydex::test;
using quarrydex::ui::Theme;
using quarrydex::ui::VxZoom;
namespace fs = std::filesystem;

namespace {

bool withSamples() {
    return qEnvironmentVariableIsSet("QUARRYDEX_TEST_SAMPLES");
}

QUrl urlOf(const fs::path& path) {
    return QUrl::fromLocalFile(QString::fromStdString(path.string()));
}

} // namespace

class CollectionScreenTest : public QObject {
    Q_OBJECT

public:
    CollectionScreenTest(AppModel& model, fs::path scratch)
        : model_(model), scratch_(std::move(scratch)) {}

private:
    QQuickItem* item(const QString& name) { return findVisible(window_->contentItem(), name); }
    QObject* object(const QString& name) { return window_->findChild<QObject*>(name); }
    void click(QQuickItem* target) {
        QVERIFY(target);
        QTest::mouseClick(window_, Qt::LeftButton, {}, centreOf(target));
    }
    void settleWindow() { settle(window_); }
    StoneStore& store() { return model_.store(); }
    CollectionEditor& editor() { return *model_.collectionEditor(); }
    SectionNavigator* navigation() { return model_.navigation(QStringLiteral("collection")); }

    // Waits until the editor has finished preparing or writing a photo.
    bool editorSettled() {
        if (!editor().working()) {
            return true;
        }
        QSignalSpy done(&editor(), &CollectionEditor::workingChanged);
        return done.wait(20000) && !editor().working();
    }

    CollectionEntry addPiece(const std::string& name, std::optional<std::string> species = "quartz",
                             std::optional<double> confidence = std::nullopt) {
        CollectionEntry entry;
        entry.name = name;
        entry.specimenID = std::move(species);
        entry.location = "Glade Park, CO";
        entry.notes = "Found after rain.";
        entry.acquisition = "found";
        entry.confidence = confidence;
        entry.photoFile = store().storePhoto(test::jpegOf({0.6, 0.4, 0.8}, 120), entry.id);
        store().add(entry);
        return entry;
    }

    void clearCollection() {
        std::vector<Uuid> ids;
        for (const CollectionEntry& entry : store().collection()) {
            ids.push_back(entry.id);
        }
        for (const Uuid& id : ids) {
            store().deleteEntry(id);
        }
        model_.collection()->dismissUndo();
    }

    fs::path photoOnDisk(const std::string& name, const RGB& color) {
        fs::path file = scratch_ / name;
        test::writeFile(file, test::jpegOf(color, 200));
        return file;
    }

    AppModel& model_;
    fs::path scratch_;
    std::unique_ptr<QQmlApplicationEngine> engine_;
    QQuickWindow* window_ = nullptr;

private Q_SLOTS:
    void initTestCase() {
        failOnAnyWarning();
        window_ = openMainWindow(engine_);
        QVERIFY(window_);
    }

    void init() {
        if (withSamples() !=
            (QTest::currentTestFunction() ==
             QLatin1String("the_empty_collection_offers_the_samples_with_a_set"))) {
            QSKIP("runs only with a sample set, or only without one");
        }
        failOnAnyWarning();
        Theme::instance()->setThemeID(QStringLiteral("malachite"));
        VxZoom::instance()->actualSize();
        clearCollection();
        model_.collection()->setQuery({});
        navigation()->clear();
        model_.setSection(QStringLiteral("collection"));
        window_->resize(1200, 800);
        settleWindow();
    }

    void cleanup() {
        if (editor().isOpen()) {
            QVERIFY(editorSettled());
            editor().cancel();
        }
    }

    void the_empty_collection_offers_adding_and_no_samples_without_a_set() {
        QCOMPARE(textOf(item(QStringLiteral("screenTitle"))), QStringLiteral("My Collection"));
        QVERIFY(item(QStringLiteral("collectionEmpty")));
        QVERIFY(item(QStringLiteral("addASpecimen")));
        QVERIFY(!item(QStringLiteral("loadSampleCollection")));
        QCOMPARE(textOf(item(QStringLiteral("emptyStateTitle"))),
                 QStringLiteral("Your collection is empty"));
        click(item(QStringLiteral("addASpecimen")));
        QTRY_VERIFY(object(QStringLiteral("collectionEditor"))->property("opened").toBool());
        QCOMPARE(textOf(findVisible(window_->contentItem(), QStringLiteral("editorTitle"))),
                 QStringLiteral("Add to My Collection"));
        QTest::keyClick(window_, Qt::Key_Escape);
        QTRY_VERIFY(!editor().isOpen());
        QVERIFY(store().collection().empty());
    }

    void the_empty_collection_offers_the_samples_with_a_set() {
        QVERIFY(item(QStringLiteral("collectionEmpty")));
        click(item(QStringLiteral("loadSampleCollection")));
        settleWindow();
        QCOMPARE(store().collection().size(), std::size_t(2));
        QVERIFY(!item(QStringLiteral("collectionEmpty")));
        QCOMPARE(textOf(item(QStringLiteral("countLine"))), QStringLiteral("2 specimens"));
        // A sample's detail names the photo's source.
        click(item(QStringLiteral("collectionRow_0")));
        settleWindow();
        QVERIFY(textOf(item(QStringLiteral("detailCredit"))).startsWith(QStringLiteral("Photo: ")));
    }

    void pieces_added_by_hand_with_and_without_a_photo_are_listed_newest_first() {
        click(item(QStringLiteral("addASpecimen")));
        QTRY_VERIFY(editor().isOpen());
        QQuickItem* name = findVisible(window_->contentItem(), QStringLiteral("editorName"));
        QVERIFY(name);
        name->forceActiveFocus();
        typeText(window_, QStringLiteral("Pebble"));
        click(findVisible(window_->contentItem(), QStringLiteral("editorSave")));
        QTRY_VERIFY(!editor().isOpen());
        QCOMPARE(store().collection().size(), std::size_t(1));
        QVERIFY(!store().collection()[0].photoFile);

        QTest::keyClick(window_, Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
        QTRY_VERIFY(editor().isOpen());
        QObject* sheet = object(QStringLiteral("collectionEditor"));
        QVERIFY(QMetaObject::invokeMethod(
            sheet, "choosePhoto", Q_ARG(QVariant, urlOf(photoOnDisk("a.jpg", {0.2, 0.7, 0.3})))));
        QVERIFY(editorSettled());
        QTRY_COMPARE(textOf(findVisible(window_->contentItem(), QStringLiteral("choosePhoto"))),
                     QStringLiteral("Replace Photo…"));
        editor().setName(QStringLiteral(""));
        click(findVisible(window_->contentItem(), QStringLiteral("editorSave")));
        QVERIFY(editorSettled());
        QTRY_VERIFY(!editor().isOpen());
        settleWindow();
        const CollectionEntry& newest = store().collection()[0];
        QCOMPARE(newest.photoFile, std::optional<std::string>(newest.id.text() + ".jpg"));
        QCOMPARE(textOf(item(QStringLiteral("collectionRow_0"))
                            ->findChild<QQuickItem*>(QStringLiteral("rowTitle"))),
                 QStringLiteral("Unnamed specimen"));
        QCOMPARE(textOf(item(QStringLiteral("countLine"))), QStringLiteral("2 specimens"));
    }

    void the_search_narrows_the_list_and_says_when_nothing_matches() {
        addPiece("Big amethyst", "amethyst");
        addPiece("Road cut quartz");
        settleWindow();
        QQuickItem* search = item(QStringLiteral("searchField"));
        QVERIFY(search);
        QCOMPARE(search->property("placeholderText").toString(),
                 QStringLiteral("Search your collection"));
        search->forceActiveFocus();
        typeText(window_, QStringLiteral("AMETH"));
        settleWindow();
        QCOMPARE(textOf(item(QStringLiteral("countLine"))), QStringLiteral("1 specimens"));
        typeText(window_, QStringLiteral("zz"));
        settleWindow();
        QVERIFY(item(QStringLiteral("emptyState")));
        QTest::keyClick(window_, Qt::Key_Escape);
        settleWindow();
        QCOMPARE(textOf(item(QStringLiteral("countLine"))), QStringLiteral("2 specimens"));
    }

    void the_detail_shows_the_piece_and_removed_once_it_is_deleted() {
        addPiece("Amethyst geode", "amethyst", 0.62);
        settleWindow();
        click(item(QStringLiteral("collectionRow_0")));
        settleWindow();
        QCOMPARE(textOf(item(QStringLiteral("detailName"))), QStringLiteral("Amethyst geode"));
        QCOMPARE(textOf(item(QStringLiteral("detailAcquisition"))), QStringLiteral("Found"));
        QCOMPARE(textOf(item(QStringLiteral("detailLocation"))), QStringLiteral("Glade Park, CO"));
        QCOMPARE(textOf(item(QStringLiteral("detailMatchShare"))), QStringLiteral("62%"));
        QCOMPARE(textOf(item(QStringLiteral("detailNotes"))), QStringLiteral("Found after rain."));
        QVERIFY(item(QStringLiteral("detailSpecies")));

        store().deleteEntry(store().collection()[0].id);
        settleWindow();
        QVERIFY(item(QStringLiteral("removedState")));
        QCOMPARE(textOf(item(QStringLiteral("emptyStateTitle"))), QStringLiteral("Removed"));
        QCOMPARE(textOf(item(QStringLiteral("emptyStateMessage"))),
                 QStringLiteral("This specimen is no longer in your collection."));
        QVERIFY(!item(QStringLiteral("detailEdit")));
    }

    void the_species_row_opens_its_detail_and_edit_opens_the_editor() {
        addPiece("Amethyst geode", "amethyst");
        settleWindow();
        click(item(QStringLiteral("collectionRow_0")));
        settleWindow();
        click(item(QStringLiteral("detailEdit")));
        QTRY_VERIFY(editor().isOpen());
        QCOMPARE(editor().title(), QStringLiteral("Edit Specimen"));
        editor().setLocation(QStringLiteral("Crystal Park"));
        QVERIFY(editor().save());
        settleWindow();
        QCOMPARE(textOf(item(QStringLiteral("detailLocation"))), QStringLiteral("Crystal Park"));

        click(item(QStringLiteral("detailSpecies")));
        settleWindow();
        QCOMPARE(navigation()->property("kind").toString(), QStringLiteral("specimen"));
        QCOMPARE(navigation()->property("itemId").toString(), QStringLiteral("amethyst"));
        QTest::keyClick(window_, Qt::Key_Left, Qt::AltModifier);
        settleWindow();
        QCOMPARE(navigation()->property("kind").toString(), QStringLiteral("entry"));
    }

    void a_deleted_piece_comes_back_with_its_photo_by_undo_or_ctrl_z() {
        CollectionEntry piece = addPiece("Keeper");
        const fs::path photo = store().photosFolder() / *piece.photoFile;
        settleWindow();
        click(item(QStringLiteral("collectionRow_0"))
                  ->findChild<QQuickItem*>(QStringLiteral("rowAction")));
        settleWindow();
        QVERIFY(store().collection().empty());
        QVERIFY(!fs::exists(photo));
        QCOMPARE(textOf(item(QStringLiteral("undoText"))), QStringLiteral("Deleted “Keeper”."));
        click(item(QStringLiteral("undoButton")));
        settleWindow();
        QCOMPARE(store().collection().size(), std::size_t(1));
        QVERIFY(fs::exists(photo));
        QVERIFY(!item(QStringLiteral("undoNotice")));

        // From the detail's Delete, then Ctrl+Z.
        click(item(QStringLiteral("collectionRow_0")));
        settleWindow();
        click(item(QStringLiteral("detailDelete")));
        settleWindow();
        QCOMPARE(navigation()->property("depth").toInt(), 0);
        QVERIFY(store().collection().empty());
        QTest::keyClick(window_, Qt::Key_Z, Qt::ControlModifier);
        settleWindow();
        QCOMPARE(store().collection().size(), std::size_t(1));
        QVERIFY(store().collection()[0] == piece);
        QVERIFY(fs::exists(photo));
    }

    void add_to_my_collection_on_a_species_detail_opens_the_editor_filled_in() {
        model_.setSection(QStringLiteral("library"));
        model_.navigation(QStringLiteral("library"))
            ->push(QStringLiteral("specimen"), QStringLiteral("amethyst"), -1);
        settleWindow();
        click(item(QStringLiteral("addToCollection")));
        QTRY_VERIFY(editor().isOpen());
        QCOMPARE(editor().speciesId(), QStringLiteral("amethyst"));
        QVERIFY(!editor().name().isEmpty());
        QVERIFY(!editor().hasConfidence());
        QVERIFY(editor().save());
        QCOMPARE(store().collection().size(), std::size_t(1));
        QCOMPARE(store().collection()[0].specimenID, std::optional<std::string>("amethyst"));
        model_.navigation(QStringLiteral("library"))->clear();
    }

    void the_editor_photo_dialog_opens_and_closes() {
        click(item(QStringLiteral("addASpecimen")));
        QTRY_VERIFY(editor().isOpen());
        settleWindow();
        click(findVisible(window_->contentItem(), QStringLiteral("choosePhoto")));
        QObject* dialog = object(QStringLiteral("editorPhotoDialog"));
        QVERIFY(dialog);
        QTRY_VERIFY(dialog->property("visible").toBool());
        QVERIFY(QMetaObject::invokeMethod(dialog, "reject"));
        QTRY_VERIFY(!dialog->property("visible").toBool());
        editor().cancel();
    }

    void screenshots_in_several_themes_and_at_double_size() {
        const QString folder = qEnvironmentVariable("QUARRYDEX_SCREENSHOT_DIR");
        if (folder.isEmpty()) {
            QSKIP("set QUARRYDEX_SCREENSHOT_DIR to a folder to take screenshots");
        }
        QDir().mkpath(folder);
        QVERIFY(window_->grabWindow().save(folder + "/collection-empty.png"));
        addPiece("Amethyst geode", "amethyst", 0.62);
        addPiece("", std::nullopt);
        addPiece("Road cut quartz");
        settleWindow();
        const QStringList themes = {"malachite", "obsidian", "hematite", "rosequartz"};
        for (const QString& id : themes) {
            Theme::instance()->setThemeID(id);
            settleWindow();
            QVERIFY(window_->grabWindow().save(folder + "/collection-" + id + ".png"));
        }
        click(item(QStringLiteral("collectionRow_2")));
        settleWindow();
        QTest::qWait(200);
        QVERIFY(window_->grabWindow().save(folder + "/collection-detail.png"));
        click(item(QStringLiteral("detailEdit")));
        QTRY_VERIFY(editor().isOpen());
        QVERIFY(editorSettled());
        QTest::qWait(200);
        QVERIFY(window_->grabWindow().save(folder + "/collection-editor.png"));
        VxZoom::instance()->setLevel(200);
        settleWindow();
        QVERIFY(window_->grabWindow().save(folder + "/collection-editor-zoom-200.png"));
        editor().cancel();
        settleWindow();
        QVERIFY(window_->grabWindow().save(folder + "/collection-detail-zoom-200.png"));
        navigation()->clear();
        settleWindow();
        QVERIFY(window_->grabWindow().save(folder + "/collection-zoom-200.png"));
        VxZoom::instance()->actualSize();
    }
};

int main(int argc, char** argv) {
    QTemporaryDir home;
    quarrydex::test::prepareQuickTestProcess(home.path());
    QDir(home.path()).mkpath("scratch");

    QGuiApplication app(argc, argv);
    quarrydex::ui::installKit();
    const fs::path root = home.path().toStdString();
    std::optional<SampleSet> samples;
    if (withSamples()) {
        samples = SampleSet::open(test::makeSampleFolder(root / "Samples", 2));
    }
    auto library = std::make_shared<const SpecimenLibrary>(SpecimenLibrary::bundled());
    AppModel model(library, root / "data", std::move(samples));
    quarrydex::ui::registerModel(&model);

    CollectionScreenTest test(model, root / "scratch");
    return QTest::qExec(&test, argc, argv);
}

#include "collection_screen_test.moc"
