// The main window as the user meets it: loaded from the QML module over a model in a
// temporary folder, driven by mouse and keyboard on the offscreen platform. Any warning,
// QML ones included, fails the test.

#include "app/app_model.h"
#include "ui/help.h"
#include "ui/kit/kit_host.h"
#include "ui/kit/vx_zoom.h"
#include "ui/theme.h"
#include "ui/windowed_app.h"

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QQmlApplicationEngine>
#include <QQmlListReference>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSettings>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>

#include <memory>

Q_IMPORT_QML_PLUGIN(QuarrydexPlugin)

using quarrydex::AppModel;
using quarrydex::ui::QuarrydexHelp;
using quarrydex::ui::Theme;
using quarrydex::ui::VxZoom;

namespace {

// Every warning fails a test, except the offscreen platform's note that it cannot raise a
// window above the others.
void failOnAnyWarning() {
    QTest::failOnWarning(
        QRegularExpression(QStringLiteral("^(?!This plugin does not support raise\\(\\)$).*")));
}

QQuickItem* findItem(QQuickItem* root, const QString& name) {
    if (!root) {
        return nullptr;
    }
    if (root->objectName() == name) {
        return root;
    }
    for (QQuickItem* child : root->childItems()) {
        if (QQuickItem* found = findItem(child, name)) {
            return found;
        }
    }
    return nullptr;
}

// The menu bar's entry titled `title`.
QQuickItem* menuBarEntry(QQuickItem* root, const QString& title) {
    if (!root) {
        return nullptr;
    }
    if (QString(root->metaObject()->className()).contains("MenuBarItem") &&
        root->property("text").toString() == title) {
        return root;
    }
    for (QQuickItem* child : root->childItems()) {
        if (QQuickItem* found = menuBarEntry(child, title)) {
            return found;
        }
    }
    return nullptr;
}

QString textOf(QQuickItem* item) {
    return item ? item->property("text").toString() : QString();
}

QPoint centreOf(QQuickItem* item) {
    return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
}

// Lets the window lay out and draw once, so that items are where a click will find them.
void settle(QQuickWindow* window) {
    QSignalSpy drawn(window, &QQuickWindow::frameSwapped);
    window->update();
    drawn.wait(2000);
}

bool libraryIsBroken() {
    return qEnvironmentVariableIsSet("QUARRYDEX_TEST_LIBRARY_ERROR");
}

} // namespace

class WindowTest : public QObject {
    Q_OBJECT

public:
    explicit WindowTest(AppModel& model) : model_(model) {}

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void the_window_opens_titled_without_warnings();
    void the_sidebar_lists_three_groups_and_switches_sections();
    void ctrl_digits_go_to_sections_and_close_a_demo_detail();
    void a_demo_detail_shows_its_species();
    void the_theme_menu_marks_the_choice_and_recolours_at_once();
    void an_unknown_theme_gives_malachite_and_marks_nothing();
    void zoom_commands_rescale_the_window_and_are_stored();
    void a_zoomed_window_smaller_than_its_content_scrolls();
    void help_opens_on_samples_at_the_last_chapter_and_elsewhere_on_welcome();
    void the_about_section_shows_the_maker_version_and_chapters();
    void the_about_box_shows_name_version_and_build();
    void new_identification_and_the_camera_command_reach_the_model();
    void paste_photo_takes_images_and_ignores_text();
    void the_sample_collection_item_follows_the_store();
    void a_library_that_failed_to_load_shows_the_problem();
    void screenshots_of_every_theme();
    void closing_the_main_window_quits();

private:
    QObject* menu(const QString& title) const;
    QList<QQuickItem*> menuItems(QObject* menu) const;
    QQuickItem* menuItem(const QString& menuTitle, const QString& text) const;
    void trigger(QQuickItem* item) const;
    QQuickItem* detailScreen() const;
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier);

    AppModel& model_;
    std::unique_ptr<QQmlApplicationEngine> engine_;
    QQuickWindow* window_ = nullptr;
};

void WindowTest::initTestCase() {
    failOnAnyWarning();
    engine_ = std::make_unique<QQmlApplicationEngine>();
    quarrydex::ui::prepareEngine(*engine_);
    engine_->load(quarrydex::ui::mainWindowUrl());
    QCOMPARE(engine_->rootObjects().size(), 1);
    window_ = qobject_cast<QQuickWindow*>(engine_->rootObjects().first());
    QVERIFY(window_);
    QVERIFY(QTest::qWaitForWindowExposed(window_));
    window_->requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(window_));
}

void WindowTest::init() {
    failOnAnyWarning();
    Theme::instance()->setThemeID(QStringLiteral("malachite"));
    VxZoom::instance()->actualSize();
    model_.setDemoDetail({});
    model_.setSection(QStringLiteral("identify"));
    window_->resize(1200, 800);
    window_->requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(window_));
}

void WindowTest::cleanup() {
    if (auto* help = window_->findChild<QQuickWindow*>(QStringLiteral("helpWindow"))) {
        help->close();
    }
}

QObject* WindowTest::menu(const QString& title) const {
    QObject* bar = window_->findChild<QObject*>(QStringLiteral("menuBar"));
    if (!bar) {
        bar = window_->property("menuBar").value<QObject*>();
    }
    QQmlListReference menus(bar, "menus");
    for (qsizetype i = 0; i < menus.count(); ++i) {
        if (menus.at(i)->property("title").toString().remove(QLatin1Char('&')) == title) {
            return menus.at(i);
        }
    }
    return nullptr;
}

QList<QQuickItem*> WindowTest::menuItems(QObject* menu) const {
    QList<QQuickItem*> items;
    int count = menu->property("count").toInt();
    for (int i = 0; i < count; ++i) {
        QQuickItem* item = nullptr;
        QMetaObject::invokeMethod(menu, "itemAt", Q_RETURN_ARG(QQuickItem*, item), Q_ARG(int, i));
        items.append(item);
    }
    return items;
}

QQuickItem* WindowTest::menuItem(const QString& menuTitle, const QString& text) const {
    QObject* m = menu(menuTitle);
    if (!m) {
        return nullptr;
    }
    for (QQuickItem* item : menuItems(m)) {
        if (item && item->property("text").toString() == text) {
            return item;
        }
    }
    return nullptr;
}

// What a click on a menu item does: trigger its action, or toggle it when it is checkable and
// announce that it was triggered.
void WindowTest::trigger(QQuickItem* item) const {
    QVERIFY(item);
    if (auto* action = item->property("action").value<QObject*>()) {
        QVERIFY(QMetaObject::invokeMethod(action, "trigger"));
        return;
    }
    if (item->property("checkable").toBool()) {
        QVERIFY(QMetaObject::invokeMethod(item, "toggle"));
    }
    QVERIFY(QMetaObject::invokeMethod(item, "triggered"));
}

QQuickItem* WindowTest::detailScreen() const {
    QQuickItem* loader = findItem(window_->contentItem(), QStringLiteral("detail"));
    return loader ? loader->property("item").value<QQuickItem*>() : nullptr;
}

void WindowTest::key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(window_, key, modifiers);
}

void WindowTest::the_window_opens_titled_without_warnings() {
    if (libraryIsBroken()) {
        QSKIP("runs with the library");
    }
    QCOMPARE(window_->title(), QStringLiteral("Orlo Quarrydex"));
    QVERIFY(window_->isVisible());
    QVERIFY(findItem(window_->contentItem(), QStringLiteral("sidebar")));
    QCOMPARE(textOf(findItem(detailScreen(), QStringLiteral("screenTitle"))),
             QStringLiteral("Identify"));
    QVERIFY(window_->minimumWidth() >= 960);
}

void WindowTest::the_sidebar_lists_three_groups_and_switches_sections() {
    if (libraryIsBroken()) {
        QSKIP("runs with the library");
    }
    QQuickItem* sidebar = findItem(window_->contentItem(), QStringLiteral("sidebar"));
    QVERIFY(sidebar->width() >= 200);
    QCOMPARE(qRound(sidebar->width()), 220);

    const QStringList groupStarts = {"identify", "collection", "about"};
    const QStringList raws = {"identify", "library", "favorites", "collection",
                              "history",  "backup",  "about"};
    const QStringList titles = {"Identify", "Library", "Favorites",   "My Collection",
                                "History",  "Backup",  "About & Help"};
    for (int i = 0; i < raws.size(); ++i) {
        QQuickItem* row = findItem(sidebar, "sidebarRow_" + raws[i]);
        QVERIFY2(row, qPrintable(raws[i]));
        QCOMPARE(row->property("firstOfGroup").toBool(), groupStarts.contains(raws[i]));
        settle(window_);
        QTest::mouseClick(window_, Qt::LeftButton, {},
                          centreOf(findItem(row, QStringLiteral("sidebarRowPlate"))));
        QCOMPARE(model_.section(), raws[i]);
        QVERIFY(row->property("selected").toBool());
        QQuickItem* title = findItem(detailScreen(), QStringLiteral("screenTitle"));
        QCOMPARE(textOf(title), titles[i]);
    }
}

void WindowTest::ctrl_digits_go_to_sections_and_close_a_demo_detail() {
    if (libraryIsBroken()) {
        QSKIP("runs with the library");
    }
    const QStringList raws = {"identify", "library", "favorites", "collection",
                              "history",  "backup",  "about"};
    for (int i = 0; i < raws.size(); ++i) {
        model_.setDemoDetail(QStringLiteral("quartz"));
        QVERIFY(!model_.demoDetail().isEmpty());
        key(Qt::Key(Qt::Key_1 + i));
        QCOMPARE(model_.section(), raws[i]);
        QVERIFY(model_.demoDetail().isEmpty());
    }
    model_.setDemoDetail(QStringLiteral("quartz"));
    key(Qt::Key_4);
    QCOMPARE(model_.section(), QStringLiteral("collection"));
    QCOMPARE(textOf(findItem(detailScreen(), QStringLiteral("screenTitle"))),
             QStringLiteral("My Collection"));
}

void WindowTest::a_demo_detail_shows_its_species() {
    if (libraryIsBroken()) {
        QSKIP("runs with the library");
    }
    model_.setDemoDetail(QStringLiteral("quartz"));
    QCOMPARE(detailScreen()->objectName(), QStringLiteral("demoDetailScreen"));
    QCOMPARE(textOf(findItem(detailScreen(), QStringLiteral("demoDetailName"))),
             QStringLiteral("Quartz"));
    // The sidebar closes it too.
    settle(window_);
    QQuickItem* row = findItem(window_->contentItem(), QStringLiteral("sidebarRow_history"));
    QTest::mouseClick(window_, Qt::LeftButton, {},
                      centreOf(findItem(row, QStringLiteral("sidebarRowPlate"))));
    QVERIFY(model_.demoDetail().isEmpty());
    QCOMPARE(model_.section(), QStringLiteral("history"));
}

void WindowTest::the_theme_menu_marks_the_choice_and_recolours_at_once() {
    QObject* themes = menu(QStringLiteral("Theme"));
    QVERIFY(themes);
    QList<QQuickItem*> items = menuItems(themes);
    QStringList names;
    for (QQuickItem* item : items) {
        names << item->property("text").toString();
    }
    QCOMPARE(names, (QStringList{"Malachite", "Cobalt", "Rose Quartz", "Amethyst", "Obsidian",
                                 "Hematite"}));
    QVERIFY(items[0]->property("checked").toBool());

    QQuickItem* sidebar = findItem(window_->contentItem(), QStringLiteral("sidebar"));
    trigger(items[1]);
    QCOMPARE(Theme::instance()->paletteID(), QStringLiteral("cobalt"));
    QCOMPARE(QSettings().value("orlo.quarrydex.theme").toString(), QStringLiteral("cobalt"));
    QCOMPARE(window_->color(), QColor("#0A1018"));
    QCOMPARE(sidebar->property("color").value<QColor>(), QColor("#142133"));
    QCOMPARE(quarrydex::ui::OrloKitHost::instance()->theme().panelTop, QColor("#1C2D44"));
    for (int i = 0; i < items.size(); ++i) {
        QCOMPARE(items[i]->property("checked").toBool(), i == 1);
    }

    // Choosing the current theme again keeps its mark.
    trigger(items[1]);
    QVERIFY(items[1]->property("checked").toBool());
}

void WindowTest::an_unknown_theme_gives_malachite_and_marks_nothing() {
    Theme::instance()->setThemeID(QStringLiteral("granite"));
    for (QQuickItem* item : menuItems(menu(QStringLiteral("Theme")))) {
        QVERIFY2(!item->property("checked").toBool(), qPrintable(textOf(item)));
    }
    QCOMPARE(window_->color(), QColor("#111315"));
}

void WindowTest::zoom_commands_rescale_the_window_and_are_stored() {
    QQuickItem* host = findItem(window_->contentItem(), QStringLiteral("zoomHost"));
    QVERIFY(host);
    QQuickItem* frame = host->property("contentItem").value<QQuickItem*>()->childItems().value(0);
    QVERIFY(frame);

    key(Qt::Key_Plus);
    QCOMPARE(QSettings().value("orlo.zoom").toDouble(), 1.15);
    QCOMPARE(frame->scale(), 1.15);
    key(Qt::Key_Equal);
    QCOMPARE(QSettings().value("orlo.zoom").toDouble(), 1.3);
    key(Qt::Key_Minus);
    QCOMPARE(QSettings().value("orlo.zoom").toDouble(), 1.15);
    key(Qt::Key_0);
    QCOMPARE(QSettings().value("orlo.zoom").toDouble(), 1.0);
    QCOMPARE(frame->scale(), 1.0);

    QObject* view = menu(QStringLiteral("View"));
    QVERIFY(view);
    QList<QQuickItem*> viewItems = menuItems(view);
    QCOMPARE(textOf(viewItems.last()), QStringLiteral("Zoom Level"));
    QObject* submenu = viewItems.last()->property("subMenu").value<QObject*>();
    QVERIFY(submenu);
    QStringList titles;
    for (QQuickItem* item : menuItems(submenu)) {
        titles << textOf(item);
    }
    QCOMPARE(titles, (QStringList{"85%", "100%", "115%", "130%", "150%", "175%", "200%"}));
    trigger(menuItems(submenu)[2]);
    QCOMPARE(QSettings().value("orlo.zoom").toDouble(), 1.15);
    QVERIFY(menuItems(submenu)[2]->property("checked").toBool());
    QVERIFY(!menuItems(submenu)[1]->property("checked").toBool());
    QCOMPARE(frame->scale(), 1.15);
}

void WindowTest::a_zoomed_window_smaller_than_its_content_scrolls() {
    QQuickItem* host = findItem(window_->contentItem(), QStringLiteral("zoomHost"));
    VxZoom::instance()->setLevel(100);
    QTRY_COMPARE(host->property("contentWidth").toReal(), host->width());
    QVERIFY(!host->property("interactive").toBool());

    VxZoom::instance()->setLevel(200);
    QVERIFY(host->property("contentWidth").toReal() > host->width());
    QVERIFY(host->property("contentHeight").toReal() > host->height());
    QVERIFY(host->property("interactive").toBool());
    QCOMPARE(host->property("contentWidth").toReal(), qMax(host->width(), 960.0 * 2));
}

void WindowTest::help_opens_on_samples_at_the_last_chapter_and_elsewhere_on_welcome() {
    auto* help = window_->findChild<QQuickWindow*>(QStringLiteral("helpWindow"));
    QVERIFY(help);
    QVERIFY(!help->isVisible());

    QuarrydexHelp::instance()->show(QStringLiteral("samples"));
    QVERIFY(help->isVisible());
    QCOMPARE(help->title(), QStringLiteral("Orlo Quarrydex Help"));
    QCOMPARE(help->property("topic").toInt(), QuarrydexHelp::instance()->count() - 1);
    QTRY_COMPARE(textOf(findItem(help->contentItem(), QStringLiteral("chapterTitle"))),
                 QStringLiteral("Sample collection & credits"));

    quarrydex::ui::OrloKitHost::instance()->showHelp(QStringLiteral("no-such-topic"));
    QCOMPARE(help->property("topic").toInt(), 0);
    QCOMPARE(textOf(findItem(help->contentItem(), QStringLiteral("chapterTitle"))),
             QStringLiteral("Welcome"));

    QVERIFY(QTest::qWaitForWindowExposed(help));
    settle(help);
    QQuickItem* tests = findItem(help->contentItem(), QStringLiteral("chapterRow_tests"));
    QVERIFY(tests);
    QTest::mouseClick(help, Qt::LeftButton, {}, centreOf(tests));
    QCOMPARE(textOf(findItem(help->contentItem(), QStringLiteral("chapterTitle"))),
             QStringLiteral("The home tests"));
    help->close();

    window_->requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(window_));
    key(Qt::Key_F1, Qt::NoModifier);
    QVERIFY(help->isVisible());
    QCOMPARE(help->property("topic").toInt(), 0);
    trigger(menuItem(QStringLiteral("Help"), QStringLiteral("How Identification Works")));
    QCOMPARE(help->property("topic").toInt(), 1);
    trigger(menuItem(QStringLiteral("Help"), QStringLiteral("Sample Photo Credits")));
    QCOMPARE(help->property("topic").toInt(), 9);
}

void WindowTest::the_about_section_shows_the_maker_version_and_chapters() {
    if (libraryIsBroken()) {
        QSKIP("runs with the library");
    }
    key(Qt::Key_7);
    QQuickItem* screen = detailScreen();
    QCOMPARE(screen->objectName(), QStringLiteral("screen_about"));
    QCOMPARE(textOf(findItem(screen, QStringLiteral("aboutScreenVersion"))),
             QStringLiteral("Version 2.0 (build 200)"));
    for (const auto& chapter : QuarrydexHelp::instance()->chapters()->chapters()) {
        QVERIFY2(findItem(screen, "chapterRow_" + chapter.id), qPrintable(chapter.id));
    }
    QSignalSpy requested(QuarrydexHelp::instance(), &QuarrydexHelp::showRequested);
    settle(window_);
    QQuickItem* backup = findItem(screen, QStringLiteral("chapterRow_backup"));
    QTest::mouseClick(window_, Qt::LeftButton, {}, centreOf(backup));
    QCOMPARE(requested.count(), 1);
    QCOMPARE(requested[0][0].toInt(), 5);
}

void WindowTest::the_about_box_shows_name_version_and_build() {
    trigger(menuItem(QStringLiteral("Help"), QStringLiteral("About Orlo Quarrydex")));
    QObject* dialog = window_->findChild<QObject*>(QStringLiteral("aboutDialog"));
    QVERIFY(dialog);
    QTRY_VERIFY(dialog->property("opened").toBool());
    QQuickItem* content = dialog->property("contentItem").value<QQuickItem*>();
    QCOMPARE(textOf(findItem(content, QStringLiteral("aboutName"))),
             QStringLiteral("Orlo Quarrydex"));
    QCOMPARE(textOf(findItem(content, QStringLiteral("aboutVersion"))),
             QStringLiteral("Version 2.0 (200)"));
    QMetaObject::invokeMethod(dialog, "close");
    QTRY_VERIFY(!dialog->property("visible").toBool());
}

void WindowTest::new_identification_and_the_camera_command_reach_the_model() {
    if (libraryIsBroken()) {
        QSKIP("runs with the library");
    }
    model_.setSection(QStringLiteral("history"));
    QVERIFY(model_.setAnswer(QStringLiteral("magnet"), QStringLiteral("attracts")));
    key(Qt::Key_N);
    QCOMPARE(model_.answeredCount(), 0);
    QCOMPARE(model_.section(), QStringLiteral("identify"));

    key(Qt::Key_T, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(model_.showCamera());
    model_.setShowCamera(false);
}

void WindowTest::paste_photo_takes_images_and_ignores_text() {
    if (libraryIsBroken()) {
        QSKIP("runs with the library");
    }
    model_.clearPhoto();
    model_.setPhotoError({});
    model_.setSection(QStringLiteral("library"));
    QGuiApplication::clipboard()->setText(QStringLiteral("a stone"));
    key(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(!model_.hasPhoto());
    QVERIFY(model_.photoError().isEmpty());
    QCOMPARE(model_.section(), QStringLiteral("library"));

    QImage image(64, 48, QImage::Format_RGB32);
    image.fill(QColor("#7A5AA8"));
    QGuiApplication::clipboard()->setImage(image);
    key(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(model_.hasPhoto());
    QCOMPARE(model_.section(), QStringLiteral("identify"));
    QGuiApplication::clipboard()->clear();
    model_.startOver();
}

void WindowTest::the_sample_collection_item_follows_the_store() {
    if (libraryIsBroken()) {
        QSKIP("runs with the library");
    }
    QList<QQuickItem*> help = menuItems(menu(QStringLiteral("Help")));
    QQuickItem* item = nullptr;
    for (QQuickItem* i : help) {
        if (i->objectName() == QStringLiteral("sampleCollectionItem")) {
            item = i;
        }
    }
    QVERIFY(item);
    QCOMPARE(item->property("offered").toBool(), model_.hasSampleSet());
    if (!model_.hasSampleSet()) {
        QSKIP("this build has no sample photos");
    }
    QCOMPARE(textOf(item), QStringLiteral("Load Sample Collection"));
    trigger(item);
    QVERIFY(model_.hasSamples());
    QCOMPARE(model_.section(), QStringLiteral("collection"));
    QCOMPARE(textOf(item), QStringLiteral("Remove Sample Collection"));
    trigger(item);
    QVERIFY(!model_.hasSamples());
    QCOMPARE(textOf(item), QStringLiteral("Load Sample Collection"));
}

void WindowTest::a_library_that_failed_to_load_shows_the_problem() {
    if (!libraryIsBroken()) {
        QSKIP("runs with QUARRYDEX_TEST_LIBRARY_ERROR set");
    }
    QVERIFY(!model_.libraryError().isEmpty());
    for (Qt::Key k : {Qt::Key_1, Qt::Key_7}) {
        key(k);
        QQuickItem* screen = detailScreen();
        QCOMPARE(screen->objectName(), QStringLiteral("libraryProblem"));
        QCOMPARE(textOf(findItem(screen, QStringLiteral("problemMessage"))), model_.libraryError());
    }
}

// Writes one picture of the window per theme, and one of the help window, into the folder
// named by QUARRYDEX_SCREENSHOT_DIR. Without it there is nothing to do.
void WindowTest::screenshots_of_every_theme() {
    const QString folder = qEnvironmentVariable("QUARRYDEX_SCREENSHOT_DIR");
    if (folder.isEmpty()) {
        QSKIP("set QUARRYDEX_SCREENSHOT_DIR to a folder to take screenshots");
    }
    QDir().mkpath(folder);
    const QStringList sections = {"about", "identify", "library", "collection", "history", "about"};
    int i = 0;
    for (const auto& palette : quarrydex::ui::StonePalette::all()) {
        const QString id = QString::fromUtf8(palette.id.data(), qsizetype(palette.id.size()));
        Theme::instance()->setThemeID(id);
        model_.setSection(sections[i++]);
        QTest::qWait(50);
        QImage shot = window_->grabWindow();
        QVERIFY(!shot.isNull());
        QVERIFY(shot.save(folder + "/window-" + id + ".png"));
    }
    VxZoom::instance()->setLevel(150);
    QTest::qWait(50);
    QVERIFY(window_->grabWindow().save(folder + "/window-zoom-150.png"));
    VxZoom::instance()->setLevel(100);

    QuarrydexHelp::instance()->show(QStringLiteral("tests"));
    auto* help = window_->findChild<QQuickWindow*>(QStringLiteral("helpWindow"));
    QVERIFY(QTest::qWaitForWindowExposed(help));
    QTest::qWait(50);
    QVERIFY(help->grabWindow().save(folder + "/help-tests.png"));
    QuarrydexHelp::instance()->show(QStringLiteral("samples"));
    QTest::qWait(50);
    QVERIFY(help->grabWindow().save(folder + "/help-samples.png"));
    help->close();

    trigger(menuItem(QStringLiteral("Help"), QStringLiteral("About Orlo Quarrydex")));
    QObject* dialog = window_->findChild<QObject*>(QStringLiteral("aboutDialog"));
    QTRY_VERIFY(dialog->property("opened").toBool());
    QVERIFY(window_->grabWindow().save(folder + "/about-box.png"));
    QMetaObject::invokeMethod(dialog, "close");
    QTRY_VERIFY(!dialog->property("visible").toBool());

    model_.setDemoDetail(QStringLiteral("quartz"));
    QTest::qWait(50);
    QVERIFY(window_->grabWindow().save(folder + "/demo-detail.png"));
    model_.setDemoDetail({});

    QQuickItem* root = window_->property("menuBar").value<QQuickItem*>();
    for (const QString& title : QStringList{"File", "View", "Go", "Theme", "Help"}) {
        QQuickItem* entry = menuBarEntry(root, title);
        QVERIFY2(entry, qPrintable(title));
        QTest::mouseClick(window_, Qt::LeftButton, {}, centreOf(entry));
        QTest::qWait(100);
        if (title == QStringLiteral("View")) {
            // Open the Zoom Level submenu too.
            QQuickItem* levels = menuItems(menu(title)).last();
            QTest::mouseMove(window_, centreOf(levels));
            QTest::qWait(300);
        }
        QVERIFY(window_->grabWindow().save(folder + "/menu-" + title + ".png"));
        QTest::keyClick(window_, Qt::Key_Escape);
        QTest::keyClick(window_, Qt::Key_Escape);
        QTest::qWait(50);
    }
}

void WindowTest::closing_the_main_window_quits() {
    QSignalSpy quit(engine_.get(), &QQmlEngine::quit);
    window_->close();
    QTRY_COMPARE(quit.count(), 1);
}

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    // Preferences, runtime files and the data store all live in temporary folders.
    QTemporaryDir home;
    QDir(home.path()).mkpath("config");
    QDir(home.path()).mkpath("runtime");
    QFile::setPermissions(home.path() + "/runtime",
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    qputenv("XDG_CONFIG_HOME", (home.path() + "/config").toUtf8());
    qputenv("XDG_RUNTIME_DIR", (home.path() + "/runtime").toUtf8());
    QStandardPaths::setTestModeEnabled(true);
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, home.path() + "/config");
    quarrydex::ui::describeApplication();
    // Pictures of the window need no graphics card.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);

    QGuiApplication app(argc, argv);
    quarrydex::ui::installKit();

    const std::filesystem::path dataRoot = (home.path() + "/data").toStdString();
    auto library = std::make_shared<const quarrydex::SpecimenLibrary>(
        libraryIsBroken() ? quarrydex::SpecimenLibrary::fromFile(dataRoot / "missing.json")
                          : quarrydex::SpecimenLibrary::bundled());
    AppModel model(library, dataRoot);
    quarrydex::ui::registerModel(&model);

    WindowTest test(model);
    return QTest::qExec(&test, argc, argv);
}

#include "window_test.moc"
