// The main window as the user meets it: loaded from the QML module over a model in a
// temporary folder, driven by mouse and keyboard on the offscreen platform. Any warning,
// QML ones included, fails the test.

#include "app/app_model.h"
#include "quick_test_support.h"
#include "ui/branding_info.h"
#include "ui/help.h"
#include "ui/kit/kit_host.h"
#include "ui/kit/vx_zoom.h"
#include "ui/links.h"
#include "ui/theme.h"
#include "ui/windowed_app.h"

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QKeySequence>
#include <QQmlApplicationEngine>
#include <QQmlListReference>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScopeGuard>
#include <QScreen>
#include <QSet>
#include <QSettings>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>

#include <functional>
#include <memory>

Q_IMPORT_QML_PLUGIN(QuarrydexPlugin)

using quarrydex::AppModel;
using namespace quarrydex::test;
using quarrydex::ui::QuarrydexHelp;
using quarrydex::ui::Theme;
using quarrydex::ui::VxZoom;

namespace {

// The sections in sidebar order, which is also the order of Ctrl+1..7.
const QStringList kSections = {"identify", "library", "favorites", "collection",
                               "history",  "backup",  "about"};

// The title the window system shows: Qt's platform window appends the application's display
// name to a title that doesn't end with it, but only when one was set, which
// applicationDisplayName() can't tell by itself (it falls back to the application name).
QString shownTitle(const QWindow* window) {
    const QString name = QGuiApplication::applicationName();
    QGuiApplication::setApplicationName(name + QStringLiteral(".probe"));
    const bool displayNameSet = QGuiApplication::applicationDisplayName() != name + ".probe";
    QGuiApplication::setApplicationName(name);
    const QString display = QGuiApplication::applicationDisplayName();
    return displayNameSet && !window->title().endsWith(display)
               ? window->title() + QStringLiteral(" \u2014 ") + display
               : window->title();
}

bool libraryIsBroken() {
    return qEnvironmentVariableIsSet("QUARRYDEX_TEST_LIBRARY_ERROR");
}

} // namespace

class WindowTest : public QObject {
    Q_OBJECT

public:
    explicit WindowTest(AppModel& model) : model_(model) {}

private:
    // A menu text as shown: "&" marks the underlined letter, "&&" is a plain "&".
    static QString shown(const QString& text) {
        QString plain;
        for (qsizetype i = 0; i < text.size(); ++i) {
            if (text[i] == QLatin1Char('&') && i + 1 < text.size()) {
                ++i;
            }
            plain += text[i];
        }
        return plain;
    }

    static QStringList shownTexts(const QList<QQuickItem*>& items) {
        QStringList texts;
        for (QQuickItem* item : items) {
            texts << shown(textOf(item));
        }
        return texts;
    }

    QQuickItem* menuBar() const { return window_->property("menuBar").value<QQuickItem*>(); }

    QObject* menu(const QString& title) const {
        QQmlListReference menus(menuBar(), "menus");
        for (qsizetype i = 0; i < menus.count(); ++i) {
            if (shown(menus.at(i)->property("title").toString()) == title) {
                return menus.at(i);
            }
        }
        return nullptr;
    }

    // The titles of the menu bar, in order.
    QList<QQuickItem*> menuTitles() const {
        QList<QQuickItem*> titles;
        for (int i = 0; i < menuBar()->property("count").toInt(); ++i) {
            QQuickItem* title = nullptr;
            QMetaObject::invokeMethod(menuBar(), "itemAt", Q_RETURN_ARG(QQuickItem*, title),
                                      Q_ARG(int, i));
            titles.append(title);
        }
        return titles;
    }

    // The shown titles of the open menus and of the lit menu-bar titles.
    QStringList openMenus() const {
        QStringList open;
        for (QQuickItem* title : menuTitles()) {
            if (title->property("menu").value<QObject*>()->property("visible").toBool()) {
                open << shown(textOf(title));
            }
        }
        return open;
    }
    QStringList litTitles() const {
        QStringList lit;
        for (QQuickItem* title : menuTitles()) {
            if (title->property("highlighted").toBool()) {
                lit << shown(textOf(title));
            }
        }
        return lit;
    }

    QList<QQuickItem*> menuItems(QObject* menu) const {
        QList<QQuickItem*> items;
        for (int i = 0; menu && i < menu->property("count").toInt(); ++i) {
            QQuickItem* item = nullptr;
            QMetaObject::invokeMethod(menu, "itemAt", Q_RETURN_ARG(QQuickItem*, item),
                                      Q_ARG(int, i));
            items.append(item);
        }
        return items;
    }

    QQuickItem* menuItem(const QString& menuTitle, const QString& text) const {
        for (QQuickItem* item : menuItems(menu(menuTitle))) {
            if (shown(textOf(item)) == text) {
                return item;
            }
        }
        return nullptr;
    }

    // What a click on a menu item does: trigger its action, or toggle it when it is checkable and
    // announce that it was triggered.
    void trigger(QQuickItem* item) const {
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

    QQuickItem* detailScreen() const {
        QQuickItem* loader = findItem(window_->contentItem(), QStringLiteral("detail"));
        return loader ? loader->property("item").value<QQuickItem*>() : nullptr;
    }

    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier) {
        QTest::keyClick(window_, key, modifiers);
    }

    // The help window, opened on `topic` and active.
    QQuickWindow* openHelp(const QString& topic) {
        QuarrydexHelp::instance()->show(topic);
        auto* help = window_->findChild<QQuickWindow*>(QStringLiteral("helpWindow"));
        if (help) {
            help->requestActivate();
            if (!QTest::qWaitForWindowActive(help)) {
                return nullptr;
            }
            settle(help);
        }
        return help;
    }

    // The notice that `window` shows when a link it asked for couldn't be opened.
    static QObject* linkNoticeOf(QQuickWindow* window) {
        for (QObject* notice : window->findChildren<QObject*>(QStringLiteral("linkNotice"))) {
            if (notice->property("host").value<QObject*>() == window) {
                return notice;
            }
        }
        return nullptr;
    }

    static QString linkNoticeText(QObject* notice) {
        auto* content = notice->property("contentItem").value<QQuickItem*>();
        return textOf(findItem(content, QStringLiteral("linkNoticeMessage")));
    }

    // The main window closed and loaded again over the same preferences, as at a restart of
    // the program (the model serves one engine only, so the engine stays). Closing it does
    // not quit here.
    void restart(const std::function<void()>& whileClosed = {}) {
        QObject::disconnect(engine_.get(), &QQmlEngine::quit, QCoreApplication::instance(),
                            nullptr);
        QMetaObject::Connection ignoreQuit =
            QObject::connect(engine_.get(), &QQmlEngine::quit, this, [] {});
        window_->close();
        delete window_;
        if (whileClosed) {
            whileClosed();
        }
        engine_->load(quarrydex::ui::mainWindowUrl());
        QObject::disconnect(ignoreQuit);
        QObject::connect(engine_.get(), &QQmlEngine::quit, QCoreApplication::instance(),
                         &QCoreApplication::quit, Qt::QueuedConnection);
        QCOMPARE(engine_->rootObjects().size(), 1);
        window_ = qobject_cast<QQuickWindow*>(engine_->rootObjects().first());
        QVERIFY(window_);
        QVERIFY(QTest::qWaitForWindowExposed(window_));
        settle(window_);
    }

    // Drags the split handle beside the sidebar to `x` in the window.
    static void dragSidebarEdge(QQuickWindow* window, QQuickItem* sidebar, int x) {
        const QPoint from =
            sidebar->mapToScene(QPointF(sidebar->width() + 2, sidebar->height() / 2)).toPoint();
        const QPoint to(x, from.y());
        QTest::mousePress(window, Qt::LeftButton, {}, from);
        QTest::mouseMove(window, (from + to) / 2);
        QTest::mouseMove(window, to);
        QTest::mouseRelease(window, Qt::LeftButton, {}, to);
    }

    // A scroll area that scrolls now: it takes input and has more content than it shows.
    static bool scrolls(QQuickItem* item) {
        return item->inherits("QQuickFlickable") && item->isVisible() &&
               item->property("interactive").toBool() &&
               (item->property("contentHeight").toReal() > item->height() + 0.5 ||
                item->property("contentWidth").toReal() > item->width() + 0.5);
    }

    static QList<QQuickItem*> scrollingAreas(QQuickItem* root) { return findAllIf(root, scrolls); }

    // The visible texts, fields and buttons under `root` that are drawn, even in part, left of
    // `left` or right of `right` in the window; each as "text at left..right".
    static QStringList outsideTheWidth(QQuickItem* root, qreal left, qreal right) {
        QStringList outside;
        std::function<void(QQuickItem*)> walk = [&](QQuickItem* item) {
            if (!item->isVisible() || item->opacity() <= 0) {
                return;
            }
            const bool shown = item->inherits("QQuickText") || item->inherits("QQuickTextInput") ||
                               item->inherits("QQuickAbstractButton");
            const QRectF drawn = item->mapRectToScene(item->boundingRect());
            if (shown && drawn.width() > 0 &&
                (drawn.left() < left - 0.5 || drawn.right() > right + 0.5)) {
                outside << QStringLiteral("\"%1\" at %2..%3")
                               .arg(textOf(item).left(40))
                               .arg(drawn.left())
                               .arg(drawn.right());
            }
            for (QQuickItem* child : item->childItems()) {
                walk(child);
            }
        };
        walk(root);
        return outside;
    }

    // Whether `item` shows its keyboard focus ring: a ring of its own, or a row's outline.
    static bool ringShown(QQuickItem* item) {
        if (!item) {
            return false;
        }
        if (item->property("focused").isValid()) {
            return item->property("focused").toBool();
        }
        QQuickItem* ring = findItem(item, QStringLiteral("focusRing"));
        return ring && ring->isVisible();
    }

    // Presses Tab until `item` has the keyboard focus; false when it never gets it.
    bool tabTo(QQuickItem* item) {
        for (int tabs = 0; tabs < 80 && item && !item->hasActiveFocus(); ++tabs) {
            key(Qt::Key_Tab, Qt::NoModifier);
        }
        return item && item->hasActiveFocus();
    }

    // Closes the help window, which took the keyboard, and waits until the main window has it.
    bool backToMain(QQuickWindow* help) {
        if (help) {
            help->close();
        }
        window_->requestActivate();
        return QTest::qWaitFor([this] { return QGuiApplication::focusWindow() == window_; });
    }

    QQuickItem* onScreen(const QString& name) const { return findVisible(detailScreen(), name); }

    AppModel& model_;
    std::unique_ptr<QQmlApplicationEngine> engine_;
    QQuickWindow* window_ = nullptr;

private Q_SLOTS:
    void initTestCase() {
        failOnAnyWarning();
        window_ = openMainWindow(engine_);
        QVERIFY(window_);
    }

    void init() {
        // With QUARRYDEX_TEST_LIBRARY_ERROR set only the library problem is shown, and only then.
        if (libraryIsBroken() !=
            (QTest::currentTestFunction() ==
             QLatin1String("a_library_that_failed_to_load_shows_the_problem"))) {
            QSKIP("runs only with the library, or only without it");
        }
        failOnAnyWarning();
        Theme::instance()->setThemeID(QStringLiteral("malachite"));
        VxZoom::instance()->actualSize();
        model_.setDemoDetail({});
        model_.setSection(QStringLiteral("identify"));
        window_->resize(1200, 800);
        window_->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(window_));
    }

    void cleanup() {
        if (auto* help = window_->findChild<QQuickWindow*>(QStringLiteral("helpWindow"))) {
            help->close();
        }
    }

    void the_window_opens_titled_without_warnings() {
        QCOMPARE(shownTitle(window_), QStringLiteral("Orlo Quarrydex"));
        // The first frame does not wait for the secondary windows and dialogs.
        for (const char* name :
             {"helpWindow", "aboutDialog", "photoDialog", "cameraSheet", "collectionEditor"}) {
            QVERIFY2(!window_->findChild<QObject*>(QLatin1String(name)), name);
        }
        QVERIFY(findItem(window_->contentItem(), QStringLiteral("sidebar")));
        QCOMPARE(textOf(findItem(detailScreen(), QStringLiteral("screenTitle"))),
                 QStringLiteral("Identify"));
        QVERIFY(window_->minimumWidth() >= 960);
    }

    // Each click also closes a demo detail left open.
    void the_sidebar_lists_three_groups_and_switches_sections() {
        model_.setDemoDetail(QStringLiteral("quartz"));
        QCOMPARE(detailScreen()->objectName(), QStringLiteral("specimenDetailScreen"));
        QCOMPARE(textOf(findItem(detailScreen(), QStringLiteral("specimenName"))),
                 QStringLiteral("Quartz"));
        QQuickItem* sidebar = findItem(window_->contentItem(), QStringLiteral("sidebar"));
        QVERIFY(sidebar->width() >= 200);
        QCOMPARE(qRound(sidebar->width()), 220);

        const QStringList groupStarts = {"identify", "collection", "about"};
        const QStringList titles = {"Identify", "Library", "Favorites",   "My Collection",
                                    "History",  "Backup",  "About & Help"};
        for (int i = 0; i < kSections.size(); ++i) {
            QQuickItem* row = findItem(sidebar, "sidebarRow_" + kSections[i]);
            QVERIFY2(row, qPrintable(kSections[i]));
            QCOMPARE(row->property("firstOfGroup").toBool(), groupStarts.contains(kSections[i]));
            settle(window_);
            QTest::mouseClick(window_, Qt::LeftButton, {},
                              centreOf(findItem(row, QStringLiteral("sidebarRowPlate"))));
            QCOMPARE(model_.section(), kSections[i]);
            QVERIFY(model_.demoDetail().isEmpty());
            QVERIFY(row->property("selected").toBool());
            QCOMPARE(textOf(findItem(detailScreen(), QStringLiteral("screenTitle"))), titles[i]);
            model_.setDemoDetail(QStringLiteral("quartz"));
        }
    }

    void ctrl_digits_go_to_sections_and_close_a_demo_detail() {
        for (int i = 0; i < kSections.size(); ++i) {
            model_.setDemoDetail(QStringLiteral("quartz"));
            QVERIFY(!model_.demoDetail().isEmpty());
            key(Qt::Key(Qt::Key_1 + i));
            QCOMPARE(model_.section(), kSections[i]);
            QVERIFY(model_.demoDetail().isEmpty());
        }
    }

    // Each menu title and item has an underlined letter of its own within its menu; the texts
    // shown stay the program's own.
    void every_menu_title_and_item_has_its_own_underlined_letter() {
        QStringList titleKeys;
        for (QQuickItem* title : menuTitles()) {
            titleKeys << QKeySequence::mnemonic(textOf(title)).toString();
        }
        QCOMPARE(shownTexts(menuTitles()),
                 (QStringList{"File", "Edit", "View", "Go", "Theme", "Help"}));
        QCOMPARE(titleKeys, (QStringList{"Alt+F", "Alt+E", "Alt+V", "Alt+G", "Alt+T", "Alt+H"}));

        QList<QObject*> menus;
        for (QQuickItem* title : menuTitles()) {
            menus << title->property("menu").value<QObject*>();
        }
        menus << menuItems(menu(QStringLiteral("View")))
                     .last()
                     ->property("subMenu")
                     .value<QObject*>();
        for (QObject* m : menus) {
            QSet<QString> keys;
            for (QQuickItem* item : menuItems(m)) {
                if (!item->property("text").isValid()) {
                    continue; // a separator
                }
                const QString key = QKeySequence::mnemonic(textOf(item)).toString();
                QVERIFY2(!key.isEmpty(), qPrintable(textOf(item)));
                QVERIFY2(!keys.contains(key), qPrintable(textOf(item)));
                keys.insert(key);
            }
        }
        QCOMPARE(shownTexts(menuItems(menu(QStringLiteral("Go")))),
                 (QStringList{"Identify", "Library", "Favorites", "My Collection", "History",
                              "Backup", "About & Help"}));
    }

    // Alt on its own and F10 open the first menu, the arrows move along the bar, Escape closes
    // and leaves no title lit; Alt with a title's letter opens that menu and a letter then
    // chooses an item.
    void menus_open_move_and_close_from_the_keyboard() {
        settle(window_);
        QTest::keyClick(window_, Qt::Key_Alt);
        QCOMPARE(openMenus(), QStringList{"File"});
        QCOMPARE(litTitles(), QStringList{"File"});
        QCOMPARE(menu(QStringLiteral("File"))->property("currentIndex").toInt(), 0);

        QTest::keyClick(window_, Qt::Key_Right);
        QTRY_COMPARE(openMenus(), QStringList{"Edit"});
        QCOMPARE(litTitles(), QStringList{"Edit"});
        QTest::keyClick(window_, Qt::Key_Left);
        QTest::keyClick(window_, Qt::Key_Left);
        QTRY_COMPARE(openMenus(), QStringList{"Help"});
        QTest::keyClick(window_, Qt::Key_Escape);
        QTRY_COMPARE(openMenus(), QStringList{});
        QCOMPARE(litTitles(), QStringList{});

        QTest::keyClick(window_, Qt::Key_F10);
        QCOMPARE(openMenus(), QStringList{"File"});
        QTest::keyClick(window_, Qt::Key_F10);
        QTRY_COMPARE(openMenus(), QStringList{});
        QCOMPARE(litTitles(), QStringList{});
        QTest::keyClick(window_, Qt::Key_Alt);
        QCOMPARE(openMenus(), QStringList{"File"});
        QTest::keyClick(window_, Qt::Key_Alt);
        QTRY_COMPARE(openMenus(), QStringList{});
        QCOMPARE(litTitles(), QStringList{});

        // Alt used with another key is no tap.
        QTest::keyPress(window_, Qt::Key_Alt);
        QTest::keyClick(window_, Qt::Key_Left, Qt::AltModifier);
        QTest::keyRelease(window_, Qt::Key_Alt);
        QCOMPARE(openMenus(), QStringList{});

        QTest::keyClick(window_, Qt::Key_G, Qt::AltModifier);
        QTRY_COMPARE(openMenus(), QStringList{"Go"});
        QTest::keyClick(window_, Qt::Key_L);
        QCOMPARE(model_.section(), QStringLiteral("library"));
        QTRY_COMPARE(openMenus(), QStringList{});
        QCOMPARE(litTitles(), QStringList{});
    }

    // A menu opened with the mouse and closed with Escape lets its title go out when the mouse
    // leaves it, a later hover over the bar opens nothing, and the next click lands where it is
    // aimed.
    void escape_closes_a_clicked_menu_without_leaving_it_lit_or_eating_the_next_click() {
        settle(window_);
        // The offscreen platform has no mouse to hover with; a desktop has.
        QList<QQuickItem*> titles = menuTitles();
        for (QQuickItem* title : titles) {
            title->setProperty("hoverEnabled", true);
        }
        QQuickItem* row = findItem(window_->contentItem(), QStringLiteral("sidebarRow_history"));
        const QPoint away = centreOf(findItem(row, QStringLiteral("sidebarRowPlate")));
        const auto openThenEscape = [&] {
            QTest::mouseMove(window_, centreOf(titles[0]));
            QTRY_VERIFY(titles[0]->property("hovered").toBool());
            QTest::mouseClick(window_, Qt::LeftButton, {}, centreOf(titles[0]));
            QTRY_COMPARE(openMenus(), QStringList{"File"});
            QTest::keyClick(window_, Qt::Key_Escape);
            QTRY_COMPARE(openMenus(), QStringList{});
            QTest::mouseMove(window_, away);
            QTRY_COMPARE(litTitles(), QStringList{});
        };
        openThenEscape();

        QTest::mouseMove(window_, centreOf(titles[1]));
        QTest::qWait(50);
        QCOMPARE(openMenus(), QStringList{});
        QTest::mouseClick(window_, Qt::LeftButton, {}, away);
        QCOMPARE(model_.section(), QStringLiteral("history"));

        // A click on the title of the open menu closes it; the next click opens it again.
        QTest::mouseClick(window_, Qt::LeftButton, {}, centreOf(titles[0]));
        QTRY_COMPARE(openMenus(), QStringList{"File"});
        QTest::mouseClick(window_, Qt::LeftButton, {}, centreOf(titles[0]));
        QTRY_COMPARE(openMenus(), QStringList{});
        openThenEscape();
    }

    void the_theme_menu_marks_the_choice_recolours_at_once_and_unknown_ids_fall_back() {
        QObject* themes = menu(QStringLiteral("Theme"));
        QVERIFY(themes);
        QList<QQuickItem*> items = menuItems(themes);
        QCOMPARE(shownTexts(items), (QStringList{"Malachite", "Cobalt", "Rose Quartz", "Amethyst",
                                                 "Obsidian", "Hematite"}));
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

        // An unknown stored id gives malachite and marks nothing.
        Theme::instance()->setThemeID(QStringLiteral("granite"));
        for (QQuickItem* item : menuItems(menu(QStringLiteral("Theme")))) {
            QVERIFY2(!item->property("checked").toBool(), qPrintable(textOf(item)));
        }
        QCOMPARE(window_->color(), QColor("#111315"));
    }

    void zoom_commands_rescale_the_window_are_stored_and_scroll_when_too_big() {
        QQuickItem* host = findItem(window_->contentItem(), QStringLiteral("zoomHost"));
        QVERIFY(host);
        QQuickItem* frame =
            host->property("contentItem").value<QQuickItem*>()->childItems().value(0);
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
        QCOMPARE(shown(textOf(viewItems.last())), QStringLiteral("Zoom Level"));
        QObject* submenu = viewItems.last()->property("subMenu").value<QObject*>();
        QVERIFY(submenu);
        QCOMPARE(shownTexts(menuItems(submenu)),
                 (QStringList{"85%", "100%", "115%", "130%", "150%", "175%", "200%"}));
        trigger(menuItems(submenu)[2]);
        QCOMPARE(QSettings().value("orlo.zoom").toDouble(), 1.15);
        QVERIFY(menuItems(submenu)[2]->property("checked").toBool());
        QVERIFY(!menuItems(submenu)[1]->property("checked").toBool());
        QCOMPARE(frame->scale(), 1.15);

        // At any zoom the content is laid out in the window, which never scrolls as a whole...
        for (int level : {100, 200}) {
            VxZoom::instance()->setLevel(level);
            QCOMPARE(host->property("contentWidth").toReal(), host->width());
            QCOMPARE(host->property("contentHeight").toReal(), host->height());
            QVERIFY(!host->property("interactive").toBool());
            QCOMPARE(frame->width(), host->width() * 100 / level);
        }
        // ...unless it is smaller than its minimum size (a screen too small for it): then the
        // content keeps that size and scrolls.
        window_->resize(600, 400);
        QTRY_COMPARE(host->property("contentWidth").toReal(), 960.0);
        QCOMPARE(host->property("contentHeight").toReal(), 640.0);
        QVERIFY(host->property("interactive").toBool());
        QCOMPARE(frame->width(), 480.0);
    }

    void the_window_comes_back_where_it_was_after_a_restart_even_maximised() {
        QCOMPARE(QGuiApplication::screens().size(), 2);
        const QRect primary = QGuiApplication::primaryScreen()->availableGeometry();
        QScreen* other = QGuiApplication::screens().at(1);

        // A first start: the default size, centred on the primary screen.
        QSettings().remove(QStringLiteral("window"));
        restart();
        QCOMPARE(window_->size(), QSize(1200, 800));
        QCOMPARE(window_->geometry().center(), primary.center());

        // Moved to the other screen, resized, the sidebar dragged wider, closed.
        const QRect moved(other->availableGeometry().topLeft() + QPoint(40, 30), QSize(1000, 700));
        window_->setGeometry(moved);
        QTRY_COMPARE(window_->geometry(), moved);
        settle(window_);
        QQuickItem* sidebar = findItem(window_->contentItem(), QStringLiteral("sidebar"));
        dragSidebarEdge(window_, sidebar, 282);
        QCOMPARE(qRound(sidebar->width()), 280);
        restart();
        QCOMPARE(window_->geometry(), moved);
        QCOMPARE(window_->screen(), other);
        QCOMPARE(qRound(findItem(window_->contentItem(), QStringLiteral("sidebar"))->width()), 280);

        // Closed maximised, it opens maximised, and keeps the size it had before for later.
        window_->showMaximized();
        QTRY_VERIFY(window_->windowStates() & Qt::WindowMaximized);
        restart();
        QTRY_VERIFY(window_->windowStates() & Qt::WindowMaximized);
        restart();
        QCOMPARE(QSettings().value(QStringLiteral("window/geometry")).toRect(), moved);
    }

    void a_remembered_window_that_no_longer_fits_opens_within_the_primary_screen() {
        const QRect primary = QGuiApplication::primaryScreen()->availableGeometry();
        auto remember = [](const QRect& geometry) {
            return [geometry] {
                QSettings settings;
                settings.setValue(QStringLiteral("window/geometry"), geometry);
                settings.setValue(QStringLiteral("window/maximized"), false);
            };
        };
        // Larger than its screen: as large as the screen, and wholly on it.
        restart(remember(QRect(-300, -200, 4000, 3000)));
        QCOMPARE(window_->size(), primary.size());
        QCOMPARE(window_->framePosition(), primary.topLeft());

        // On a screen that is no longer attached: centred on the primary one, its size kept.
        restart(remember(QRect(9000, 100, 1000, 700)));
        QCOMPARE(window_->size(), QSize(1000, 700));
        QCOMPARE(window_->geometry().center(), primary.center());
    }

    void the_sidebar_keeps_its_minimum_and_cannot_squeeze_the_detail() {
        QQuickItem* sidebar = findItem(window_->contentItem(), QStringLiteral("sidebar"));
        QQuickItem* detail = findItem(window_->contentItem(), QStringLiteral("detail"));
        const int detailMin = Theme::instance()->detailMinWidth();
        QVERIFY(detailMin >= 250);
        settle(window_);
        dragSidebarEdge(window_, sidebar, window_->width() - 2);
        QCOMPARE(qRound(detail->width()), detailMin);
        QVERIFY(sidebar->width() > 900);
        dragSidebarEdge(window_, sidebar, 2);
        QCOMPARE(qRound(sidebar->width()), 200);

        // The smallest window at the largest zoom still holds both.
        VxZoom::instance()->setLevel(200);
        window_->resize(window_->minimumSize());
        settle(window_);
        QCOMPARE(qRound(sidebar->width()), 200);
        QVERIFY(detail->width() >= detailMin);
        QVERIFY(detail->mapToScene(QPointF(detail->width(), 0)).x() <= window_->width() + 0.5);
    }

    // At the largest zoom, in the default and in the smallest window, every screen is laid out
    // inside the window and scrolls in its own lists only, never inside a scrolling window.
    void at_200_percent_every_screen_fits_and_no_scroll_area_scrolls_inside_another() {
        VxZoom::instance()->setLevel(200);
        int scrolled = 0;
        for (const QSize& size : {QSize(1200, 800), window_->minimumSize()}) {
            window_->resize(size);
            for (const QString& section : kSections + QStringList{"detail"}) {
                if (section == QStringLiteral("detail")) {
                    model_.setDemoDetail(QStringLiteral("quartz"));
                } else {
                    model_.setSection(section);
                }
                settle(window_);
                QQuickItem* screen = detailScreen();
                const QRectF shown =
                    screen->mapRectToScene(QRectF(0, 0, screen->width(), screen->height()));
                QVERIFY2(QRectF(0, 0, window_->width(), window_->height())
                             .adjusted(-0.5, -0.5, 0.5, 0.5)
                             .contains(shown),
                         qPrintable(section));
                // Every text and button lies inside the screen, short of the window's margin.
                const QStringList outside = outsideTheWidth(
                    screen, shown.left(), window_->width() - Theme::instance()->margin() * 2.0);
                QVERIFY2(outside.isEmpty(), qPrintable(section + ": " + outside.join(", ")));
                // Nothing is drawn over the search field (an empty list's state, say).
                if (QQuickItem* search = findVisible(screen, QStringLiteral("searchField"))) {
                    const QRectF field = search->mapRectToScene(search->boundingRect());
                    const QList<QQuickItem*> over = findAllIf(screen, [&](QQuickItem* item) {
                        return item->isVisible() && !search->isAncestorOf(item) && item != search &&
                               (item->inherits("QQuickText") ||
                                item->inherits("QQuickAbstractButton")) &&
                               item->mapRectToScene(item->boundingRect()).intersects(field);
                    });
                    QVERIFY2(over.isEmpty(), qPrintable(section + ": " + textsOf(over).join(", ") +
                                                        " over the search field"));
                }
                for (QQuickItem* area : scrollingAreas(window_->contentItem())) {
                    ++scrolled;
                    const QString where = section + " " + area->objectName();
                    QVERIFY2(area->property("contentWidth").toReal() <= area->width() + 0.5,
                             qPrintable(where + " hides content sideways"));
                    for (QQuickItem* outer = area->parentItem(); outer;
                         outer = outer->parentItem()) {
                        QVERIFY2(!scrolls(outer),
                                 qPrintable(where + " inside " + outer->objectName()));
                    }
                }
            }
            model_.setDemoDetail({});
        }
        QVERIFY(scrolled > 0);
    }

    void a_newcomer_sees_the_first_steps_and_the_samples_until_they_begin() {
        QQuickItem* guide = findItem(detailScreen(), QStringLiteral("firstStartGuide"));
        QVERIFY(guide);
        QVERIFY(guide->isVisible());
        QCOMPARE(findAll(guide, QStringLiteral("firstStartStep")).size(), 3);
        QCOMPARE(findItem(guide, QStringLiteral("firstStartSamples"))->isVisible(),
                 model_.hasSampleSet());
        QVERIFY(model_.setAnswer(QStringLiteral("magnet"), QStringLiteral("attracts")));
        QVERIFY(!guide->isVisible());
        model_.startOver();
        QVERIFY(guide->isVisible());

        // Once something was identified, the history holds it: no more first steps.
        QVERIFY(model_.setAnswer(QStringLiteral("magnet"), QStringLiteral("attracts")));
        model_.run();
        model_.startOver();
        QVERIFY(!guide->isVisible());
    }

    void help_opens_on_samples_at_the_last_chapter_and_elsewhere_on_welcome() {
        // Made on first use, then kept.
        auto* help = window_->findChild<QQuickWindow*>(QStringLiteral("helpWindow"));
        QVERIFY(!help || !help->isVisible());

        QuarrydexHelp::instance()->show(QStringLiteral("samples"));
        help = window_->findChild<QQuickWindow*>(QStringLiteral("helpWindow"));
        QVERIFY(help);
        QVERIFY(help->isVisible());
        QCOMPARE(shownTitle(help), QStringLiteral("Orlo Quarrydex Help"));
        QCOMPARE(help->property("topic").toInt(), QuarrydexHelp::instance()->count() - 1);
        QTRY_COMPARE(textOf(findItem(help->contentItem(), QStringLiteral("chapterTitle"))),
                     QStringLiteral("Sample collection & credits"));

        quarrydex::ui::OrloKitHost::instance()->showHelp(QStringLiteral("no-such-topic"));
        QCOMPARE(help->property("topic").toInt(), 0);
        QCOMPARE(textOf(findItem(help->contentItem(), QStringLiteral("chapterTitle"))),
                 QStringLiteral("Welcome"));

        help->close();

        window_->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(window_));
        key(Qt::Key_F1, Qt::NoModifier);
        QVERIFY(help->isVisible());
        QCOMPARE(help->property("topic").toInt(), 0);
        trigger(menuItem(QStringLiteral("Help"), QStringLiteral("How Identification Works")));
        QCOMPARE(help->property("topic").toInt(), 1);
        window_->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(window_));
        trigger(menuItem(QStringLiteral("Help"), QStringLiteral("Sample Photo Credits")));
        QCOMPARE(help->property("topic").toInt(), 9);
    }

    // Tab reaches the section list; Up, Down, Home and End then act as clicks on the rows.
    void the_sidebar_moves_with_the_arrow_keys_once_tabbed_into() {
        QQuickItem* list = findItem(window_->contentItem(), QStringLiteral("sidebarList"));
        for (int tabs = 0; tabs < 60 && !list->hasActiveFocus(); ++tabs) {
            key(Qt::Key_Tab, Qt::NoModifier);
        }
        QVERIFY(list->hasActiveFocus());
        model_.setDemoDetail(QStringLiteral("quartz"));

        key(Qt::Key_Down, Qt::NoModifier);
        QCOMPARE(model_.section(), QStringLiteral("library"));
        QVERIFY(model_.demoDetail().isEmpty());
        QQuickItem* row = findItem(list, QStringLiteral("sidebarRow_library"));
        QVERIFY(row->property("selected").toBool() && row->property("focused").toBool());
        for (int i = 2; i < kSections.size(); ++i) {
            key(Qt::Key_Down, Qt::NoModifier);
            QCOMPARE(model_.section(), kSections[i]);
        }
        key(Qt::Key_Down, Qt::NoModifier);
        QCOMPARE(model_.section(), QStringLiteral("about"));
        key(Qt::Key_Home, Qt::NoModifier);
        QCOMPARE(model_.section(), QStringLiteral("identify"));
        key(Qt::Key_Up, Qt::NoModifier);
        QCOMPARE(model_.section(), QStringLiteral("identify"));
        key(Qt::Key_End, Qt::NoModifier);
        key(Qt::Key_Up, Qt::NoModifier);
        QCOMPARE(model_.section(), QStringLiteral("backup"));
        QVERIFY(list->hasActiveFocus());
        QCOMPARE(textOf(findItem(detailScreen(), QStringLiteral("screenTitle"))),
                 QStringLiteral("Backup"));
    }

    // The chapter list has the focus first; Tab moves it to the reading pane.
    void the_help_chapters_follow_the_arrow_keys_and_the_text_scrolls_by_page() {
        QQuickWindow* help = openHelp(QStringLiteral("welcome"));
        QVERIFY(help);
        QQuickItem* list = findItem(help->contentItem(), QStringLiteral("chapterList"));
        QQuickItem* pane = findItem(help->contentItem(), QStringLiteral("readingPane"));
        QTRY_VERIFY(list->hasActiveFocus());
        auto title = [&] { return textOf(findItem(pane, QStringLiteral("chapterTitle"))); };

        QTest::keyClick(help, Qt::Key_Up);
        QCOMPARE(help->property("topic").toInt(), 0);
        QTest::keyClick(help, Qt::Key_Down);
        QCOMPARE(title(), QStringLiteral("Identifying a stone"));
        QTest::keyClick(help, Qt::Key_Home);
        QCOMPARE(title(), QStringLiteral("Welcome"));
        QTest::keyClick(help, Qt::Key_End);
        QCOMPARE(help->property("topic").toInt(), QuarrydexHelp::instance()->count() - 1);

        // Every title is whole at the window's first size: wrapped, never cut.
        for (QQuickItem* label : findAll(list, QStringLiteral("chapterRowTitle"))) {
            QVERIFY2(label->parentItem()->height() >= label->property("contentHeight").toReal(),
                     qPrintable(textOf(label)));
        }

        QTest::keyClick(help, Qt::Key_Tab);
        QVERIFY(pane->hasActiveFocus());
        settle(help);
        const qreal bottom = pane->property("contentHeight").toReal() - pane->height();
        QVERIFY(bottom > pane->height());
        QTest::keyClick(help, Qt::Key_PageDown);
        const qreal page = pane->property("contentY").toReal();
        QVERIFY(page > pane->height() / 2 && page < bottom);
        QTest::keyClick(help, Qt::Key_Down);
        QVERIFY(pane->property("contentY").toReal() > page);
        QTest::keyClick(help, Qt::Key_End);
        QCOMPARE(pane->property("contentY").toReal(), bottom);
        QTest::keyClick(help, Qt::Key_PageUp);
        QVERIFY(pane->property("contentY").toReal() < bottom);
        QTest::keyClick(help, Qt::Key_Home);
        QCOMPARE(pane->property("contentY").toReal(), 0.0);
        QCOMPARE(title(), QStringLiteral("Sample collection & credits"));
    }

    // At every zoom, in the help window's first and smallest size, the reading pane keeps at
    // least 40 % of the window's width, the chapter titles stay whole, and every text lies
    // inside the window; switching chapters while zoomed re-lays the window cleanly.
    void the_help_reading_pane_keeps_a_readable_width_at_every_zoom() {
        QQuickWindow* help = openHelp(QStringLiteral("samples"));
        QVERIFY(help);
        const QSize first = help->size();
        for (int level : {100, 150, 200}) {
            VxZoom::instance()->setLevel(level);
            for (const QSize& size : {first, help->minimumSize()}) {
                help->resize(size);
                for (const QString topic : {"welcome", "samples"}) {
                    QuarrydexHelp::instance()->show(topic);
                    settle(help);
                    const QString where = QStringLiteral("%1 %2% %3x%4")
                                              .arg(topic)
                                              .arg(level)
                                              .arg(size.width())
                                              .arg(size.height());
                    QQuickItem* pane = findItem(help->contentItem(), QStringLiteral("readingPane"));
                    const QRectF shown = pane->mapRectToScene(pane->boundingRect());
                    QVERIFY2(shown.width() >= 0.4 * help->width(), qPrintable(where));
                    QVERIFY2(shown.right() <= help->width() + 0.5, qPrintable(where));
                    QQuickItem* list = findItem(help->contentItem(), QStringLiteral("chapterList"));
                    for (QQuickItem* label : findAll(list, QStringLiteral("chapterRowTitle"))) {
                        QVERIFY2(label->parentItem()->height() >=
                                     label->property("contentHeight").toReal(),
                                 qPrintable(where + " " + textOf(label)));
                    }
                    const QStringList outside =
                        outsideTheWidth(help->contentItem(), 0, help->width());
                    QVERIFY2(outside.isEmpty(), qPrintable(where + ": " + outside.join(", ")));
                }
            }
        }
        VxZoom::instance()->setLevel(100);
        help->resize(first);
    }

    // Tab reaches the chapter list below the about box; the arrows move the outline, and Return
    // or Space opens the outlined chapter in the help window. A click opens one without a ring.
    void the_about_screens_chapters_are_reached_and_opened_from_the_keyboard() {
        model_.setSection(QStringLiteral("about"));
        settle(window_);
        QQuickItem* list = onScreen(QStringLiteral("aboutChapterList"));
        QVERIFY(list);
        const QList<QQuickItem*> rows = findAllIf(
            list, [](QQuickItem* item) { return item->objectName().startsWith("chapterRow_"); });
        QCOMPARE(rows.size(), QuarrydexHelp::instance()->count());
        const auto outlined = [&] {
            QList<int> found;
            for (int i = 0; i < rows.size(); ++i) {
                if (ringShown(rows[i])) {
                    found << i;
                }
            }
            return found;
        };
        QCOMPARE(outlined(), QList<int>{});
        QVERIFY(tabTo(list));
        QCOMPARE(outlined(), QList<int>{0});

        key(Qt::Key_Up, Qt::NoModifier);
        QCOMPARE(outlined(), QList<int>{0});
        key(Qt::Key_Down, Qt::NoModifier);
        QCOMPARE(outlined(), QList<int>{1});
        key(Qt::Key_Return, Qt::NoModifier);
        auto* help = window_->findChild<QQuickWindow*>(QStringLiteral("helpWindow"));
        QVERIFY(help);
        QTRY_VERIFY(help->isVisible());
        QCOMPARE(help->property("topic").toInt(), 1);
        QVERIFY(backToMain(help));

        const int last = rows.size() - 1;
        key(Qt::Key_End, Qt::NoModifier);
        QCOMPARE(outlined(), QList<int>{last});
        key(Qt::Key_Down, Qt::NoModifier);
        QCOMPARE(outlined(), QList<int>{last});
        key(Qt::Key_Space, Qt::NoModifier);
        QTRY_COMPARE(help->property("topic").toInt(), last);
        QVERIFY(backToMain(help));
        // The last row is scrolled into view.
        auto* screen = detailScreen();
        const qreal bottom = rows[last]->mapToItem(screen, QPointF(0, rows[last]->height())).y();
        QVERIFY(bottom <= screen->height() + 0.5);
        key(Qt::Key_Home, Qt::NoModifier);
        QCOMPARE(outlined(), QList<int>{0});

        QTest::mouseClick(window_, Qt::LeftButton, {}, centreOf(rows[2]));
        QTRY_COMPARE(help->property("topic").toInt(), 2);
        QVERIFY(backToMain(help));
        QCOMPARE(outlined(), QList<int>{});
        key(Qt::Key_Down, Qt::NoModifier);
        QCOMPARE(outlined(), QList<int>{3});
    }

    // A ring the keyboard put on an item is back the moment a popup over it closes, by key or by
    // a click inside the popup; a click elsewhere puts it out, and a click never shows one.
    void the_focus_ring_comes_back_when_a_popup_closes() {
        model_.setSection(QStringLiteral("about"));
        settle(window_);
        QQuickItem* about = onScreen(QStringLiteral("aboutProgramButton"));
        QVERIFY(tabTo(about));
        QVERIFY(ringShown(about));

        // The about box, closed with Escape and then with a click on its button.
        for (bool byMouse : {false, true}) {
            key(Qt::Key_Space, Qt::NoModifier);
            QObject* dialog = nullptr;
            QTRY_VERIFY((dialog = window_->findChild<QObject*>(QStringLiteral("aboutDialog"))) &&
                        dialog->property("opened").toBool());
            QVERIFY(!ringShown(about));
            if (byMouse) {
                auto* content = dialog->property("contentItem").value<QQuickItem*>();
                QQuickItem* ok = findItem(content->parentItem(), QStringLiteral("aboutOk"));
                QVERIFY(ok);
                QTest::mouseClick(window_, Qt::LeftButton, {}, centreOf(ok));
            } else {
                key(Qt::Key_Escape, Qt::NoModifier);
            }
            QTRY_VERIFY(!dialog->property("visible").toBool());
            QVERIFY(about->hasActiveFocus());
            QVERIFY2(ringShown(about), byMouse ? "after a click" : "after Escape");
        }

        // A menu opened and closed from the keyboard.
        QTest::keyClick(window_, Qt::Key_F10);
        QCOMPARE(openMenus(), QStringList{"File"});
        key(Qt::Key_Escape, Qt::NoModifier);
        QTRY_COMPARE(openMenus(), QStringList{});
        QVERIFY(about->hasActiveFocus());
        QVERIFY(ringShown(about));

        // A click beside it puts the ring out; a click on a button focuses it without one.
        QQuickItem* title = onScreen(QStringLiteral("screenTitle"));
        QTest::mouseClick(window_, Qt::LeftButton, {}, centreOf(title));
        QVERIFY(about->hasActiveFocus());
        QVERIFY(!ringShown(about));
        QQuickItem* openHelp = onScreen(QStringLiteral("openHelpButton"));
        QTest::mouseClick(window_, Qt::LeftButton, {}, centreOf(openHelp));
        QTRY_VERIFY(window_->findChild<QQuickWindow*>(QStringLiteral("helpWindow")));
        QVERIFY(backToMain(window_->findChild<QQuickWindow*>(QStringLiteral("helpWindow"))));
        QVERIFY(openHelp->hasActiveFocus());
        QVERIFY(!ringShown(openHelp));

        // A list that drops down from a picker, closed with Escape.
        model_.setSection(QStringLiteral("library"));
        settle(window_);
        QQuickItem* picker = onScreen(QStringLiteral("categoryPicker"));
        QVERIFY(tabTo(picker));
        QVERIFY(picker->property("visualFocus").toBool());
        auto* list = picker->property("popup").value<QObject*>();
        key(Qt::Key_Space, Qt::NoModifier);
        QTRY_VERIFY(list->property("opened").toBool());
        key(Qt::Key_Escape, Qt::NoModifier);
        QTRY_VERIFY(!list->property("visible").toBool());
        QVERIFY(picker->hasActiveFocus());
        QVERIFY(picker->property("visualFocus").toBool());
    }

    // The web address on the about screen is a stop of Tab like the buttons, and both draw a
    // ring that can be seen, in every theme.
    void links_and_buttons_take_the_keyboard_and_show_a_ring_in_every_theme() {
        model_.setSection(QStringLiteral("about"));
        settle(window_);
        for (const auto& palette : quarrydex::ui::StonePalette::all()) {
            const QString id = QString::fromUtf8(palette.id.data(), qsizetype(palette.id.size()));
            Theme::instance()->setThemeID(id);
            for (const QString& name :
                 {QStringLiteral("aboutWebsite"), QStringLiteral("openHelpButton")}) {
                QQuickItem* item = onScreen(name);
                QVERIFY2(item, qPrintable(name));
                QVERIFY2(tabTo(item), qPrintable(id + " " + name));
                QVERIFY2(ringShown(item), qPrintable(id + " " + name));
                QQuickItem* ring = findItem(item, QStringLiteral("focusRing"));
                auto* border = ring->property("border").value<QObject*>();
                QVERIFY(border);
                const auto colour = border->property("color").value<QColor>();
                QVERIFY2(colour.alpha() > 0 && border->property("width").toReal() > 0,
                         qPrintable(id + " " + name));
            }
        }
    }

    // A menu closed by a click outside it, or by choosing an item with the mouse, hands the
    // keyboard focus back to the item that had it, not to its title.
    void a_menu_closed_with_the_mouse_gives_the_focus_back() {
        model_.setSection(QStringLiteral("about"));
        settle(window_);
        QQuickItem* about = onScreen(QStringLiteral("aboutProgramButton"));
        QVERIFY(tabTo(about));
        QQuickItem* title = onScreen(QStringLiteral("screenTitle"));

        // The offscreen platform has no mouse to hover with; a desktop has.
        for (QQuickItem* menuTitle : menuTitles()) {
            menuTitle->setProperty("hoverEnabled", true);
        }
        // Opened with the mouse or from the keyboard, closed by a click beside it.
        for (bool byKey : {false, true}) {
            if (byKey) {
                QTest::keyClick(window_, Qt::Key_F10);
            } else {
                QTest::mouseMove(window_, centreOf(menuTitles()[0]));
                QTRY_VERIFY(menuTitles()[0]->property("hovered").toBool());
                QTest::mouseClick(window_, Qt::LeftButton, {}, centreOf(menuTitles()[0]));
            }
            QTRY_COMPARE(openMenus(), QStringList{"File"});
            QTest::mouseClick(window_, Qt::LeftButton, {}, centreOf(title));
            QTRY_COMPARE(openMenus(), QStringList{});
            QTRY_COMPARE(window_->activeFocusItem(), about);
            QCOMPARE(litTitles(), QStringList{});
        }

        QQuickItem* themeTitle = menuTitles()[4];
        QCOMPARE(shown(textOf(themeTitle)), QStringLiteral("Theme"));
        QTest::keyClick(window_, Qt::Key_T, Qt::AltModifier);
        QTRY_COMPARE(openMenus(), QStringList{"Theme"});
        QQuickItem* obsidian = nullptr;
        for (QQuickItem* item : menuItems(menu(QStringLiteral("Theme")))) {
            if (item->objectName() == QLatin1String("theme_obsidian")) {
                obsidian = item;
            }
        }
        QVERIFY(obsidian);
        settle(window_);
        QTest::mouseClick(window_, Qt::LeftButton, {}, centreOf(obsidian));
        QTRY_COMPARE(openMenus(), QStringList{});
        QCOMPARE(Theme::instance()->themeID(), QStringLiteral("obsidian"));
        QTRY_COMPARE(window_->activeFocusItem(), about);
        QCOMPARE(litTitles(), QStringList{});
        QVERIFY(!ringShown(about));

        // The keys that reach the window go to the focused item again, not to the bar.
        key(Qt::Key_Space, Qt::NoModifier);
        QObject* dialog = nullptr;
        QTRY_VERIFY((dialog = window_->findChild<QObject*>(QStringLiteral("aboutDialog"))) &&
                    dialog->property("opened").toBool());
        key(Qt::Key_Escape, Qt::NoModifier);
        QTRY_VERIFY(!dialog->property("visible").toBool());
    }

    // At 200 % most of a screen is out of view: Tab scrolls the screen to the item it reaches,
    // down and back up again.
    void tab_scrolls_the_screen_to_the_item_it_reaches() {
        VxZoom::instance()->setLevel(200);
        model_.setSection(QStringLiteral("identify"));
        settle(window_);
        QQuickItem* scroller = onScreen(QStringLiteral("identifyScroller"));
        QVERIFY(scroller);
        const auto inView = [scroller](QQuickItem* item) {
            const QRectF shown = item->mapRectToItem(scroller, item->boundingRect());
            return shown.top() >= -0.5 && shown.bottom() <= scroller->height() + 0.5;
        };
        QQuickItem* last = onScreen(QStringLiteral("picker_fizz"));
        QQuickItem* first = onScreen(QStringLiteral("choosePhotoButton"));
        QVERIFY(last && first);
        QVERIFY(!inView(last));

        QVERIFY(tabTo(last));
        QVERIFY(inView(last));
        QVERIFY(!inView(first));
        for (int tabs = 0; tabs < 40 && !first->hasActiveFocus(); ++tabs) {
            key(Qt::Key_Backtab, Qt::ShiftModifier);
        }
        QVERIFY(first->hasActiveFocus());
        QVERIFY(inView(first));
        VxZoom::instance()->setLevel(100);
    }

    // Without a browser the window that asked says so, and the address is on the clipboard.
    void a_link_that_cannot_be_opened_says_so_in_its_window() {
        QStringList asked;
        quarrydex::ui::Links::instance()->setOpener([&](const QUrl& url) {
            asked << url.toString();
            return false;
        });
        auto restore = qScopeGuard([] { quarrydex::ui::Links::instance()->setOpener(nullptr); });

        QQuickWindow* help = openHelp(QStringLiteral("samples"));
        QVERIFY(help);
        QQuickItem* credit = nullptr;
        QPointF at;
        for (QQuickItem* block : findAll(help->contentItem(), QStringLiteral("chapterBlock"))) {
            for (qreal x = 0; !credit && x < block->width(); x += 4) {
                QString link;
                QMetaObject::invokeMethod(block, "linkAt", Q_RETURN_ARG(QString, link),
                                          Q_ARG(qreal, x), Q_ARG(qreal, 4.0));
                if (link.startsWith(QStringLiteral("https://"))) {
                    credit = block;
                    at = QPointF(x, 4);
                }
            }
            if (credit) {
                break;
            }
        }
        QVERIFY2(credit, "the credits show their addresses as links");
        QTest::mouseClick(help, Qt::LeftButton, {}, credit->mapToScene(at).toPoint());
        QCOMPARE(asked.size(), 1);
        QObject* notice = linkNoticeOf(help);
        QTRY_VERIFY(notice->property("opened").toBool());
        QCOMPARE(linkNoticeText(notice), quarrydex::ui::Links::failureMessage(asked.first()));
        QCOMPARE(QGuiApplication::clipboard()->text(), asked.first());
        QVERIFY(!linkNoticeOf(window_)->property("opened").toBool());
        QMetaObject::invokeMethod(notice, "close");
        help->close();

        window_->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(window_));
        trigger(menuItem(QStringLiteral("Help"), QStringLiteral("Visit Fernwick")));
        QCOMPARE(asked.last(), quarrydex::ui::BrandingInfo::website());
        QTRY_VERIFY(linkNoticeOf(window_)->property("opened").toBool());
        QMetaObject::invokeMethod(linkNoticeOf(window_), "close");
        QTRY_VERIFY(!linkNoticeOf(window_)->property("visible").toBool());

        QQuickItem* footerLink = findItem(window_->contentItem(), QStringLiteral("websiteLink"));
        QTest::mouseClick(window_, Qt::LeftButton, {}, centreOf(footerLink));
        QCOMPARE(asked.size(), 3);
        QTRY_VERIFY(linkNoticeOf(window_)->property("opened").toBool());
        QTest::mouseClick(
            window_, Qt::LeftButton, {},
            centreOf(findItem(linkNoticeOf(window_)->property("contentItem").value<QQuickItem*>(),
                              QStringLiteral("linkNoticeClose"))));
        QTRY_VERIFY(!linkNoticeOf(window_)->property("visible").toBool());
    }

    // Ctrl+? opens help as keyboards deliver it, with or without Shift; the help window takes
    // the zoom keys like the main window.
    void ctrl_question_opens_help_and_the_help_window_zooms_with_the_keys() {
        QQuickWindow* help = nullptr;
        const Qt::KeyboardModifiers ctrlShift = Qt::ControlModifier | Qt::ShiftModifier;
        const std::pair<Qt::Key, Qt::KeyboardModifiers> keys[] = {
            {Qt::Key_Question, Qt::ControlModifier},
            {Qt::Key_Question, ctrlShift},
            {Qt::Key_Slash, ctrlShift}};
        for (const auto& [k, modifiers] : keys) {
            if (help) {
                help->close();
            }
            window_->requestActivate();
            QVERIFY(QTest::qWaitForWindowActive(window_));
            key(k, modifiers);
            help = window_->findChild<QQuickWindow*>(QStringLiteral("helpWindow"));
            QVERIFY(help && help->isVisible());
        }
        help->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(help));
        QTest::keyClick(help, Qt::Key_Plus, Qt::ControlModifier);
        QCOMPARE(VxZoom::instance()->value(), 1.15);
        QTest::keyClick(help, Qt::Key_Equal, Qt::ControlModifier);
        QCOMPARE(VxZoom::instance()->value(), 1.3);
        QTest::keyClick(help, Qt::Key_Minus, Qt::ControlModifier);
        QCOMPARE(VxZoom::instance()->value(), 1.15);
        QTest::keyClick(help, Qt::Key_0, Qt::ControlModifier);
        QCOMPARE(VxZoom::instance()->value(), 1.0);
    }

    // Ctrl+N and Ctrl+Shift+T reach the model; Ctrl+Shift+V pastes only an image.
    void new_identification_camera_and_paste_photo_reach_the_model() {
        model_.setSection(QStringLiteral("history"));
        QVERIFY(model_.setAnswer(QStringLiteral("magnet"), QStringLiteral("attracts")));
        key(Qt::Key_N);
        QCOMPARE(model_.answeredCount(), 0);
        QCOMPARE(model_.section(), QStringLiteral("identify"));
        key(Qt::Key_T, Qt::ControlModifier | Qt::ShiftModifier);
        QVERIFY(model_.showCamera());
        model_.setShowCamera(false);

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
        QCOMPARE(model_.section(), QStringLiteral("identify"));
        QTRY_VERIFY(model_.hasPhoto()); // prepared in the background
        QGuiApplication::clipboard()->clear();
        model_.startOver();
    }

    // A dialog needing a QML module that is not installed fails only when it opens: each one
    // the window can open is opened here once and closed again, without a warning. They are
    // made on first use.
    void every_dialog_of_the_window_opens_and_closes_cleanly() {
        const char* dialogs[] = {"aboutDialog", "photoDialog", "cameraSheet"};
        trigger(menuItem(QStringLiteral("Help"), QStringLiteral("About Orlo Quarrydex")));
        key(Qt::Key_O);
        key(Qt::Key_T, Qt::ControlModifier | Qt::ShiftModifier);
        for (const char* name : dialogs) {
            QObject* dialog = window_->findChild<QObject*>(QLatin1String(name));
            QVERIFY2(dialog, name);
            QTRY_VERIFY2(dialog->property("visible").toBool(), name);
            QVERIFY(QMetaObject::invokeMethod(dialog, "close"));
            QTRY_VERIFY2(!dialog->property("visible").toBool(), name);
        }
        QVERIFY(!model_.showCamera());
    }

    // The about box holds the whole window: its dimming covers the menu bar too, section keys,
    // menu keys and clicks on the bar do nothing behind it, and Escape closes it.
    void the_about_box_is_modal_for_the_whole_window() {
        // The brightest pixel of the first title's letters.
        const QRect title =
            menuTitles()[0]->mapRectToScene(menuTitles()[0]->boundingRect()).toRect();
        const auto brightest = [&] {
            const QImage shot = window_->grabWindow();
            int lightness = 0;
            for (int y = title.top(); y <= title.bottom(); ++y) {
                for (int x = title.left(); x <= title.right(); ++x) {
                    lightness = qMax(lightness, shot.pixelColor(x, y).lightness());
                }
            }
            return lightness;
        };
        settle(window_);
        const int undimmed = brightest();
        trigger(menuItem(QStringLiteral("Help"), QStringLiteral("About Orlo Quarrydex")));
        QObject* dialog = nullptr;
        QTRY_VERIFY((dialog = window_->findChild<QObject*>(QStringLiteral("aboutDialog"))) &&
                    dialog->property("opened").toBool());
        QVERIFY2(brightest() < undimmed * 3 / 4, "the menu bar is dimmed");

        key(Qt::Key_4);
        key(Qt::Key_N);
        QTest::keyClick(window_, Qt::Key_F10);
        QTest::keyClick(window_, Qt::Key_Alt);
        QTest::keyClick(window_, Qt::Key_H, Qt::AltModifier);
        QTest::mouseClick(window_, Qt::LeftButton, {}, centreOf(menuTitles()[0]));
        QCOMPARE(model_.section(), QStringLiteral("identify"));
        QCOMPARE(openMenus(), QStringList{});
        QVERIFY(dialog->property("visible").toBool());

        QTest::keyClick(window_, Qt::Key_Escape);
        QTRY_VERIFY(!dialog->property("visible").toBool());
        key(Qt::Key_4);
        QCOMPARE(model_.section(), QStringLiteral("collection"));
    }

    void the_sample_collection_item_follows_the_store() {
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
        QCOMPARE(shown(textOf(item)), QStringLiteral("Load Sample Collection"));
        trigger(item);
        QVERIFY(model_.hasSamples());
        QCOMPARE(model_.section(), QStringLiteral("collection"));
        QCOMPARE(shown(textOf(item)), QStringLiteral("Remove Sample Collection"));
        trigger(item);
        QVERIFY(!model_.hasSamples());
        QCOMPARE(shown(textOf(item)), QStringLiteral("Load Sample Collection"));
    }

    void a_library_that_failed_to_load_shows_the_problem() {
        QVERIFY(!model_.libraryError().isEmpty());
        for (Qt::Key k : {Qt::Key_1, Qt::Key_7}) {
            key(k);
            QQuickItem* screen = detailScreen();
            QCOMPARE(screen->objectName(), QStringLiteral("libraryProblem"));
            QCOMPARE(textOf(findItem(screen, QStringLiteral("problemMessage"))),
                     model_.libraryError());
        }
    }

    // Writes one picture of the window per theme, and one of the help window, into the folder
    // named by QUARRYDEX_SCREENSHOT_DIR. Without it there is nothing to do.
    void screenshots_of_every_theme() {
        const QString folder = qEnvironmentVariable("QUARRYDEX_SCREENSHOT_DIR");
        if (folder.isEmpty()) {
            QSKIP("set QUARRYDEX_SCREENSHOT_DIR to a folder to take screenshots");
        }
        QDir().mkpath(folder);
        const QStringList sections = {"about",      "identify", "library",
                                      "collection", "history",  "about"};
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
            QQuickItem* entry = findIf(root, [&](QQuickItem* item) {
                return QString(item->metaObject()->className()).contains("MenuBarItem") &&
                       shown(textOf(item)) == title;
            });
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

    // Pictures of the help window (a numbered list, the credits) and of the sidebar with the
    // keyboard in it, in three themes at 100 % and 200 %, into QUARRYDEX_SCREENSHOT_DIR.
    void screenshots_of_help_and_the_focused_sidebar() {
        const QString folder = qEnvironmentVariable("QUARRYDEX_SCREENSHOT_DIR");
        if (folder.isEmpty()) {
            QSKIP("set QUARRYDEX_SCREENSHOT_DIR to a folder to take screenshots");
        }
        QDir().mkpath(folder);
        for (const QString theme : {"malachite", "obsidian", "hematite"}) {
            Theme::instance()->setThemeID(theme);
            for (int zoom : {100, 200}) {
                VxZoom::instance()->setLevel(zoom);
                const QString suffix = QStringLiteral("-%1-%2.png").arg(theme).arg(zoom);
                window_->requestActivate();
                QVERIFY(QTest::qWaitForWindowActive(window_));
                findItem(window_->contentItem(), QStringLiteral("sidebarList"))
                    ->forceActiveFocus(Qt::TabFocusReason);
                model_.setSection(QStringLiteral("favorites"));
                settle(window_);
                QVERIFY(window_->grabWindow().save(folder + "/sidebar" + suffix));
                for (const QString topic : {"welcome", "samples"}) {
                    QQuickWindow* help = openHelp(topic);
                    QVERIFY(help);
                    QVERIFY(help->grabWindow().save(folder + "/help-" + topic + suffix));
                }
                QTest::keyClick(window_->findChild<QQuickWindow*>("helpWindow"), Qt::Key_Tab);
                settle(window_->findChild<QQuickWindow*>("helpWindow"));
                QVERIFY(window_->findChild<QQuickWindow*>("helpWindow")
                            ->grabWindow()
                            .save(folder + "/help-pane" + suffix));
                quarrydex::ui::Links::instance()->setOpener([](const QUrl&) { return false; });
                quarrydex::ui::Links::instance()->open(
                    QUrl(quarrydex::ui::BrandingInfo::website()),
                    window_->findChild<QQuickWindow*>("helpWindow"));
                quarrydex::ui::Links::instance()->setOpener(nullptr);
                QTest::qWait(100);
                QVERIFY(window_->findChild<QQuickWindow*>("helpWindow")
                            ->grabWindow()
                            .save(folder + "/help-notice" + suffix));
                window_->findChild<QQuickWindow*>("helpWindow")->close();
            }
        }
        VxZoom::instance()->setLevel(100);
    }

    // Pictures of what the keyboard shows: the first menu opened with F10 and its underlined
    // letters, a focus ring, and the about box; in three themes at 100 % and 200 %. Written
    // into QUARRYDEX_SCREENSHOT_DIR; without it there is nothing to do.
    void screenshots_of_menus_focus_rings_and_the_about_box() {
        const QString folder = qEnvironmentVariable("QUARRYDEX_SCREENSHOT_DIR");
        if (folder.isEmpty()) {
            QSKIP("set QUARRYDEX_SCREENSHOT_DIR to a folder to take screenshots");
        }
        QDir().mkpath(folder);
        QObject* dialog = nullptr;
        for (QLatin1String id :
             {QLatin1String("malachite"), QLatin1String("obsidian"), QLatin1String("hematite")}) {
            for (int percent : {100, 200}) {
                const QString name = QString(id) + "-" + QString::number(percent) + ".png";
                Theme::instance()->setThemeID(id);
                VxZoom::instance()->setLevel(percent);
                model_.setSection(QStringLiteral("identify"));
                settle(window_);
                QTest::keyClick(window_, Qt::Key_F10);
                QTest::keyClick(window_, Qt::Key_Down);
                QTest::qWait(50);
                QVERIFY(window_->grabWindow().save(folder + "/keys-menu-" + name));
                QTest::keyClick(window_, Qt::Key_Escape);
                QTRY_COMPARE(openMenus(), QStringList{});

                const QString button = QStringLiteral("choosePhotoButton");
                for (int tabs = 0; tabs < 40 && window_->activeFocusItem()->objectName() != button;
                     ++tabs) {
                    QTest::keyClick(window_, Qt::Key_Tab);
                }
                QCOMPARE(window_->activeFocusItem()->objectName(), button);
                QTest::qWait(50);
                // There and back, so the focus came from the keyboard even when the button
                // had it already.
                QTest::keyClick(window_, Qt::Key_Tab);
                QTest::keyClick(window_, Qt::Key_Backtab, Qt::ShiftModifier);
                QVERIFY(window_->activeFocusItem()->property("visualFocus").toBool());
                QVERIFY(window_->grabWindow().save(folder + "/keys-focus-" + name));

                trigger(menuItem(QStringLiteral("Help"), QStringLiteral("About Orlo Quarrydex")));
                QTRY_VERIFY(
                    (dialog = window_->findChild<QObject*>(QStringLiteral("aboutDialog"))) &&
                    dialog->property("opened").toBool());
                QTest::qWait(50);
                QVERIFY(window_->grabWindow().save(folder + "/keys-about-" + name));
                QTest::keyClick(window_, Qt::Key_Escape);
                QTRY_VERIFY(!dialog->property("visible").toBool());
            }
        }
        VxZoom::instance()->setLevel(100);
    }

    // Every screen in three themes at 100 % and 200 %, and at 200 % in the smallest window,
    // into QUARRYDEX_SCREENSHOT_DIR. Without it there is nothing to do.
    void screenshots_of_every_screen_zoomed() {
        const QString folder = qEnvironmentVariable("QUARRYDEX_SCREENSHOT_DIR");
        if (folder.isEmpty()) {
            QSKIP("set QUARRYDEX_SCREENSHOT_DIR to a folder to take screenshots");
        }
        QDir().mkpath(folder);
        struct Look {
            QString theme;
            int level;
            QSize size;
        };
        const QList<Look> looks = {
            {"malachite", 100, {1200, 800}},          {"malachite", 200, {1200, 800}},
            {"obsidian", 100, {1200, 800}},           {"obsidian", 200, {1200, 800}},
            {"hematite", 100, {1200, 800}},           {"hematite", 200, {1200, 800}},
            {"hematite", 200, window_->minimumSize()}};
        for (const Look& look : looks) {
            Theme::instance()->setThemeID(look.theme);
            VxZoom::instance()->setLevel(look.level);
            window_->resize(look.size);
            for (const QString& section : kSections + QStringList{"detail"}) {
                model_.setDemoDetail(section == QStringLiteral("detail") ? QStringLiteral("quartz")
                                                                         : QString());
                if (section != QStringLiteral("detail")) {
                    model_.setSection(section);
                }
                QTest::qWait(50);
                const QString name = QStringLiteral("%1/%2-%3-%4x%5-%6.png")
                                         .arg(folder, look.theme)
                                         .arg(look.level)
                                         .arg(look.size.width())
                                         .arg(look.size.height())
                                         .arg(section);
                QVERIFY(window_->grabWindow().save(name));
            }
        }
        model_.setDemoDetail({});
    }

    void closing_the_main_window_quits() {
        QSignalSpy quit(engine_.get(), &QQmlEngine::quit);
        window_->close();
        QTRY_COMPARE(quit.count(), 1);
    }
};

int main(int argc, char** argv) {
    // Preferences, runtime files and the data store all live in temporary folders.
    QTemporaryDir home;
    quarrydex::test::prepareQuickTestProcess(home.path());
    // Two screens side by side, the primary one of a common desktop size, for the window's
    // placement.
    if (qgetenv("QT_QPA_PLATFORM") == "offscreen") {
        QFile screens(home.path() + "/screens.json");
        if (screens.open(QIODevice::WriteOnly)) {
            // The platform orders the screens by name; the first is the primary one.
            screens.write(R"({"screens": [
                {"name": "left", "x": 0, "y": 0, "width": 1920, "height": 1080},
                {"name": "right", "x": 1920, "y": 0, "width": 1280, "height": 1024}]})");
            screens.close();
            qputenv("QT_QPA_PLATFORM", ("offscreen:configfile=" + screens.fileName()).toUtf8());
        }
    }

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
