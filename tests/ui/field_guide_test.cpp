// The field guide as the user meets it in the main window: the Library with its search,
// category picker and stone of the day, the specimen detail, Favorites, and History with its
// detail and "Clear History". Loaded from the QML module over a model in a temporary folder and
// driven by mouse and keyboard on the offscreen platform; any warning, QML ones included,
// fails the test.

#include "app/app_model.h"
#include "quick_test_support.h"
#include "ui/kit/vx_zoom.h"
#include "ui/theme.h"
#include "ui/windowed_app.h"

#include <QBuffer>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QQmlApplicationEngine>
#include <QQmlComponent>
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

using namespace quarrydex;
using namespace quarrydex::test;
using quarrydex::ui::Theme;
using quarrydex::ui::VxZoom;

namespace {

// A photo of a lit, rounded stone of that colour on a dark cloth.
QByteArray jpegOf(const QColor& color, QSize size = {240, 180}) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(color.darker(400));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QRadialGradient light(QPointF(size.width() * 0.4, size.height() * 0.35), size.height() * 0.6);
    light.setColorAt(0, color.lighter(150));
    light.setColorAt(1, color.darker(150));
    painter.setBrush(light);
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(
        QRectF(size.width() * 0.2, size.height() * 0.15, size.width() * 0.6, size.height() * 0.7));
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG", 85);
    return bytes;
}

HistoryEntry identification(std::vector<HistoryEntry::Result> results,
                            std::vector<std::string> answers, std::string level = "likely") {
    HistoryEntry e;
    e.results = std::move(results);
    e.answers = std::move(answers);
    e.level = std::move(level);
    return e;
}

} // namespace

class FieldGuideTest : public QObject {
    Q_OBJECT

public:
    explicit FieldGuideTest(AppModel& model) : model_(model) {}

private:
    QQuickItem* screen() const {
        QQuickItem* loader = findItem(window_->contentItem(), QStringLiteral("detail"));
        return loader ? loader->property("item").value<QQuickItem*>() : nullptr;
    }
    // The first visible item of that name, once the window has laid out and drawn.
    QQuickItem* visible(const QString& name) const {
        settle(window_);
        return findVisible(screen(), name);
    }
    int depth(const QString& section) const { return model_.navigation(section)->depth(); }

    void go(const QString& section) {
        model_.setSection(section);
        settle(window_);
    }
    void key(Qt::Key k, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(window_, k, modifiers);
    }
    void click(QQuickItem* item) {
        QVERIFY(item);
        settle(window_);
        QTest::mouseClick(window_, Qt::LeftButton, {}, centreOf(item));
    }
    QQuickItem* list() const { return visible(QStringLiteral("list")); }
    QString countLine() const { return textOf(visible(QStringLiteral("countLine"))); }

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
        failOnAnyWarning();
        Theme::instance()->setThemeID(QStringLiteral("malachite"));
        VxZoom::instance()->actualSize();
        model_.setDemoDetail({});
        for (const QString& s : QStringList{"library", "favorites", "history"}) {
            model_.navigation(s)->clear();
        }
        model_.libraryList()->setQuery({});
        model_.libraryList()->setCategory({});
        model_.historyList()->setQuery({});
        model_.clearHistory();
        for (const QString& id : model_.favorites()) {
            model_.toggleFavorite(id);
        }
        window_->resize(1200, 800);
        window_->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(window_));
    }

    void the_library_lists_every_species_and_an_unmatched_search_shows_the_sentence() {
        go(QStringLiteral("library"));
        const int total = int(model_.library().specimens().size());
        QCOMPARE(textOf(visible(QStringLiteral("screenTitle"))), QStringLiteral("Library"));
        QCOMPARE(countLine(), QStringLiteral("%1 species").arg(total));
        QCOMPARE(list()->property("count").toInt(), total);
        QCOMPARE(visible(QStringLiteral("searchField"))->property("placeholderText").toString(),
                 QStringLiteral("Name, color, place, formula, birthstone"));
        QVERIFY(visible(QStringLiteral("stoneOfTheDay")));

        // Ctrl+F focuses the search; typing searches as it goes.
        key(Qt::Key_F, Qt::ControlModifier);
        QVERIFY(visible(QStringLiteral("searchField"))->hasActiveFocus());
        typeText(window_, QStringLiteral("zzqx"));
        QCOMPARE(model_.libraryList()->query(), QStringLiteral("zzqx"));
        QCOMPARE(countLine(), QStringLiteral("0 species"));
        QVERIFY(!visible(QStringLiteral("list")));
        QCOMPARE(textOf(visible(QStringLiteral("emptyStateMessage"))),
                 QStringLiteral(u"Nothing matches \u201Czzqx\u201D. Try a color, a place or a "
                                u"formula."));
        QVERIFY(!visible(QStringLiteral("stoneOfTheDay")));

        // Escape clears it and the whole list is back.
        key(Qt::Key_Escape);
        QCOMPARE(model_.libraryList()->query(), QString());
        QCOMPARE(list()->property("count").toInt(), total);
        QVERIFY(!visible(QStringLiteral("emptyState")));

        typeText(window_, QStringLiteral("quartz"));
        QVERIFY(list()->property("count").toInt() >= 1);
        QVERIFY(list()->property("count").toInt() < total);
        QVERIFY(visible(QStringLiteral("libraryRow_quartz")));
        QCOMPARE(textOf(findItem(visible(QStringLiteral("libraryRow_quartz")),
                                 QStringLiteral("rowTrailing"))),
                 QStringLiteral("7 Mohs"));
    }

    // Tab walks the screen in reading order: search, the card, the picker, the list.
    void the_library_is_usable_from_the_keyboard_alone() {
        go(QStringLiteral("library"));
        key(Qt::Key_F, Qt::ControlModifier);
        QVERIFY(visible(QStringLiteral("searchField"))->hasActiveFocus());
        key(Qt::Key_Tab);
        QQuickItem* card = visible(QStringLiteral("stoneOfTheDay"));
        QVERIFY(card->hasActiveFocus());
        key(Qt::Key_Tab);
        QVERIFY(visible(QStringLiteral("categoryPicker"))->hasActiveFocus());
        key(Qt::Key_Tab);
        QQuickItem* view = list();
        QVERIFY(view->hasActiveFocus());
        QCOMPARE(view->property("currentIndex").toInt(), 0);
        key(Qt::Key_Down);
        QCOMPARE(view->property("currentIndex").toInt(), 1);

        // Return on the card opens today's species.
        card->forceActiveFocus();
        key(Qt::Key_Return);
        QCOMPARE(model_.navigation(QStringLiteral("library"))->itemId(),
                 model_.libraryList()->stoneOfTheDay()["specimenId"].toString());
        key(Qt::Key_Backspace);
        QCOMPARE(depth("library"), 0);
    }

    void the_category_picker_counts_add_up_and_filter_the_list() {
        go(QStringLiteral("library"));
        QQuickItem* picker = visible(QStringLiteral("categoryPicker"));
        QVERIFY(picker);
        const QVariantList choices = model_.libraryList()->categories();
        QCOMPARE(picker->property("count").toInt(), 6);
        const int total = int(model_.library().specimens().size());
        QCOMPARE(picker->property("currentText").toString(), QStringLiteral("All (%1)").arg(total));
        int sum = 0;
        for (int i = 1; i < choices.size(); ++i) {
            sum += choices[i].toMap()["count"].toInt();
        }
        QCOMPARE(sum, total);

        // Choose "Rocks" from the keyboard: focus the picker and step down.
        picker->forceActiveFocus();
        for (int i = 0; i < 3; ++i) {
            key(Qt::Key_Down);
        }
        QCOMPARE(model_.libraryList()->category(), QStringLiteral("rock"));
        const int rocks = choices[3].toMap()["count"].toInt();
        QCOMPARE(picker->property("currentText").toString(),
                 QStringLiteral("Rocks (%1)").arg(rocks));
        QCOMPARE(countLine(), QStringLiteral("%1 species").arg(rocks));
        QCOMPARE(list()->property("count").toInt(), rocks);

        // The mouse opens the list of choices; "All" brings every species back.
        click(picker);
        QObject* popup = picker->property("popup").value<QObject*>();
        QTRY_VERIFY(popup->property("opened").toBool());
        QQuickItem* popupList = popup->property("contentItem").value<QQuickItem*>();
        QQuickItem* all = nullptr;
        QMetaObject::invokeMethod(popupList, "itemAtIndex", Q_RETURN_ARG(QQuickItem*, all),
                                  Q_ARG(int, 0));
        QVERIFY(all);
        QTRY_VERIFY(all->isVisible() && all->height() > 0);
        click(all);
        QTRY_VERIFY(!popup->property("visible").toBool());
        QCOMPARE(model_.libraryList()->category(), QString());
        QCOMPARE(list()->property("count").toInt(), total);
    }

    void a_detail_opens_with_its_facts_and_back_keeps_search_filter_and_scroll() {
        go(QStringLiteral("library"));
        model_.libraryList()->setCategory(QStringLiteral("rock"));
        key(Qt::Key_F, Qt::ControlModifier);
        typeText(window_, QStringLiteral("a"));
        QQuickItem* view = list();
        const int rows = view->property("count").toInt();
        QVERIFY(rows > 3);
        // Down from the search moves into the list; arrows move; Return opens.
        key(Qt::Key_Down);
        QVERIFY(view->hasActiveFocus());
        key(Qt::Key_Down);
        key(Qt::Key_Down);
        QCOMPARE(view->property("currentIndex").toInt(), 2);
        view->setProperty("contentY", 40);
        const QString id = model_.libraryList()->idAt(2);
        key(Qt::Key_Return);
        QCOMPARE(depth("library"), 1);
        QQuickItem* detail = visible(QStringLiteral("specimenDetailScreen"));
        QVERIFY(detail);
        QCOMPARE(textOf(findItem(detail, QStringLiteral("specimenName"))), model_.specimenName(id));
        QCOMPARE(
            textsOf(findAll(detail, QStringLiteral("factLabel"))),
            (QStringList{"Hardness", "Composition", "Crystal system", "Specific gravity", "Luster",
                         "Streak", "Cleavage", "Magnetic", "Fizzes in acid", "Colors"}));
        QVERIFY(findVisible(detail, QStringLiteral("savedOffline")));
        QVERIFY(!findVisible(detail, QStringLiteral("matchShare")));
        QVERIFY(findItem(detail, QStringLiteral("addToCollection"))->isEnabled());
        QCOMPARE(textOf(findItem(findItem(detail, QStringLiteral("summary")),
                                 QStringLiteral("sectionBody"))),
                 model_.specimenDetail(id)["summary"].toString());

        // Backspace goes back (no text field has the focus): search, filter, row and scroll kept.
        key(Qt::Key_Backspace);
        QCOMPARE(depth("library"), 0);
        QCOMPARE(model_.libraryList()->query(), QStringLiteral("a"));
        QCOMPARE(model_.libraryList()->category(), QStringLiteral("rock"));
        QCOMPARE(visible(QStringLiteral("searchField"))->property("text").toString(),
                 QStringLiteral("a"));
        QCOMPARE(list(), view);
        QCOMPARE(view->property("currentIndex").toInt(), 2);
        QCOMPARE(view->property("contentY").toReal(), 40.0);

        // Alt+Left and the Back button go back too.
        key(Qt::Key_Return);
        QCOMPARE(depth("library"), 1);
        key(Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(depth("library"), 0);
        model_.navigation(QStringLiteral("library"))->push(QStringLiteral("specimen"), id);
        click(visible(QStringLiteral("backButton")));
        QCOMPARE(depth("library"), 0);
    }

    void a_rock_without_formula_shows_varies_and_look_alikes_open_library_species() {
        go(QStringLiteral("library"));
        model_.navigation(QStringLiteral("library"))
            ->push(QStringLiteral("specimen"), QStringLiteral("basalt"));
        QQuickItem* detail = visible(QStringLiteral("specimenDetailScreen"));
        QVERIFY(detail);
        const QList<QQuickItem*> values = findAll(detail, QStringLiteral("factValue"));
        QCOMPARE(values.size(), 10);
        QCOMPARE(textOf(values[1]), QStringLiteral("Varies (rock)"));

        // The first look-alike that is a library species opens it over this one.
        const QVariantList looks =
            model_.specimenDetail(QStringLiteral("basalt"))["lookAlikes"].toList();
        int linked = -1;
        for (int i = 0; i < looks.size() && linked < 0; ++i) {
            if (!looks[i].toMap()["specimenId"].toString().isEmpty()) {
                linked = i;
            }
        }
        QVERIFY2(linked >= 0, "basalt names a library species among its look-alikes");
        const QString other = looks[linked].toMap()["specimenId"].toString();
        QQuickItem* name = findAll(detail, QStringLiteral("lookAlikeName")).value(linked);
        QVERIFY(name);
        // From the keyboard: the linked name takes the focus, which scrolls it into view, and
        // Return opens it over this one.
        QQuickItem* flick = findItem(detail, QStringLiteral("detailFlick"));
        name->forceActiveFocus();
        QVERIFY(name->hasActiveFocus());
        settle(window_);
        QVERIFY(window_->contentItem()->contains(centreOf(name)));
        key(Qt::Key_Return);
        QCOMPARE(depth("library"), 2);
        QCOMPARE(model_.navigation(QStringLiteral("library"))->itemId(), other);
        QCOMPARE(textOf(findItem(visible(QStringLiteral("specimenDetailScreen")),
                                 QStringLiteral("specimenName"))),
                 model_.specimenName(other));
        QCOMPARE(flick->property("contentY").toReal(), 0.0);
        key(Qt::Key_Backspace);
        QCOMPARE(model_.navigation(QStringLiteral("library"))->itemId(), QStringLiteral("basalt"));

        // The mouse does the same.
        name = findAll(visible(QStringLiteral("specimenDetailScreen")),
                       QStringLiteral("lookAlikeName"))
                   .value(linked);
        name->forceActiveFocus();
        click(name);
        QCOMPARE(model_.navigation(QStringLiteral("library"))->itemId(), other);
        key(Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(depth("library"), 1);
    }

    void starring_on_the_detail_changes_the_row_and_favorites_at_once_and_again_removes_it() {
        go(QStringLiteral("library"));
        model_.libraryList()->setQuery(QStringLiteral("quartz"));
        QQuickItem* row = visible(QStringLiteral("libraryRow_quartz"));
        QVERIFY(row);
        QVERIFY(!row->property("starred").toBool());
        model_.navigation(QStringLiteral("library"))
            ->push(QStringLiteral("specimen"), QStringLiteral("quartz"));
        QQuickItem* toggle = visible(QStringLiteral("favoriteToggle"));
        QCOMPARE(textOf(toggle), QStringLiteral("Add to Favorites"));
        click(toggle);
        QCOMPARE(textOf(toggle), QStringLiteral("Favorite"));
        QVERIFY(row->property("starred").toBool());
        QCOMPARE(model_.favoritesList()->count(), 1);
        QCOMPARE(model_.favoritesList()->idAt(0), QStringLiteral("quartz"));

        click(toggle);
        QCOMPARE(textOf(toggle), QStringLiteral("Add to Favorites"));
        QVERIFY(!row->property("starred").toBool());
        QCOMPARE(model_.favoritesList()->count(), 0);
    }

    void the_match_share_shows_only_when_opened_from_a_result() {
        go(QStringLiteral("library"));
        model_.navigation(QStringLiteral("library"))
            ->push(QStringLiteral("specimen"), QStringLiteral("quartz"), 0.424);
        QCOMPARE(textOf(visible(QStringLiteral("matchShare"))),
                 QStringLiteral("Match share: 42% of the library"));
        key(Qt::Key_Backspace);
        model_.navigation(QStringLiteral("library"))
            ->push(QStringLiteral("specimen"), QStringLiteral("quartz"));
        QVERIFY(!visible(QStringLiteral("matchShare")));
        // A species the library does not know says so instead of showing an empty page.
        model_.navigation(QStringLiteral("library"))
            ->push(QStringLiteral("specimen"), QStringLiteral("no-such-stone"));
        QVERIFY(visible(QStringLiteral("specimenGone")));
        QVERIFY(!visible(QStringLiteral("factTiles")));
        key(Qt::Key_Backspace);
        QVERIFY(!visible(QStringLiteral("specimenGone")));
        // The model's demo detail is the same screen.
        model_.setDemoDetail(QStringLiteral("amethyst"));
        QCOMPARE(screen()->objectName(), QStringLiteral("specimenDetailScreen"));
        QCOMPARE(textOf(visible(QStringLiteral("specimenName"))), QStringLiteral("Amethyst"));
        QCOMPARE(textOf(visible(QStringLiteral("birthstone"))),
                 QStringLiteral("February birthstone"));
        click(visible(QStringLiteral("backButton")));
        QVERIFY(model_.demoDetail().isEmpty());
    }

    // As the identify screen opens it from a result row: the session photo and the share.
    void a_detail_from_a_result_shows_the_session_photo_while_there_is_one() {
        go(QStringLiteral("library"));
        QQmlComponent component(
            engine_.get(), QUrl(QStringLiteral("qrc:/Quarrydex/screens/SpecimenDetailScreen.qml")));
        std::unique_ptr<QObject> object(component.createWithInitialProperties(
            {{"specimenId", "amethyst"}, {"confidence", 0.31}, {"showSessionPhoto", true}}));
        QVERIFY2(object, qPrintable(component.errorString()));
        auto* detail = qobject_cast<QQuickItem*>(object.get());
        detail->setParentItem(window_->contentItem());
        detail->setSize(window_->contentItem()->size());
        QSignalSpy added(detail, SIGNAL(addToCollection(QString, double)));

        QVERIFY(model_.setPhoto(jpegOf(QColor("#7A5AA8"), {800, 600})));
        QQuickItem* photo = findItem(detail, QStringLiteral("sessionPhoto"));
        QVERIFY(photo->isVisible());
        QTRY_VERIFY(photo->property("showsPhoto").toBool());
        QCOMPARE(textOf(findItem(detail, QStringLiteral("matchShare"))),
                 QStringLiteral("Match share: 31% of the library"));
        // "Add to My Collection" is offered unless the host turns it off.
        QQuickItem* add = findItem(detail, QStringLiteral("addToCollection"));
        detail->setProperty("canAddToCollection", false);
        QVERIFY(!add->isEnabled());
        detail->setProperty("canAddToCollection", true);
        QVERIFY(add->isEnabled());
        QMetaObject::invokeMethod(add, "clicked");
        QCOMPARE(added.count(), 1);
        QCOMPARE(added[0][0].toString(), QStringLiteral("amethyst"));
        QCOMPARE(added[0][1].toDouble(), 0.31);

        model_.clearPhoto();
        QVERIFY(!photo->isVisible());
        detail->setProperty("showSessionPhoto", false);
        QVERIFY(model_.setPhoto(jpegOf(QColor("#4CC79A"))));
        QVERIFY(!photo->isVisible());
        model_.startOver();
    }

    void favorites_lists_known_species_by_name_and_removes_them() {
        for (const QString& id : QStringList{"quartz", "no-such-stone", "amethyst"}) {
            model_.toggleFavorite(id);
        }
        go(QStringLiteral("favorites"));
        QCOMPARE(textOf(visible(QStringLiteral("screenTitle"))), QStringLiteral("Favorites"));
        QCOMPARE(list()->property("count").toInt(), 2);
        QQuickItem* first = visible(QStringLiteral("favoriteRow_amethyst"));
        QVERIFY(first);
        QVERIFY(first->property("starred").toBool());
        QVERIFY(first->y() < visible(QStringLiteral("favoriteRow_quartz"))->y());

        // Open one from the keyboard and come back.
        list()->forceActiveFocus();
        key(Qt::Key_Return);
        QCOMPARE(model_.navigation(QStringLiteral("favorites"))->itemId(),
                 QStringLiteral("amethyst"));
        key(Qt::Key_Left, Qt::AltModifier);

        click(findItem(visible(QStringLiteral("favoriteRow_quartz")), QStringLiteral("rowAction")));
        QCOMPARE(model_.favorites(), (QStringList{"no-such-stone", "amethyst"}));
        list()->forceActiveFocus();
        key(Qt::Key_Delete);
        QCOMPARE(model_.favorites(), QStringList{"no-such-stone"});
        QCOMPARE(textOf(visible(QStringLiteral("emptyStateTitle"))),
                 QStringLiteral("No favorites yet"));
        QCOMPARE(textOf(visible(QStringLiteral("emptyStateMessage"))),
                 QStringLiteral(u"Tap the star on any library entry to keep it here for quick "
                                u"reference \u2014 handy for the stones you hunt for most."));
    }

    void history_rows_show_what_is_left_and_open_their_detail() {
        StoneStore& store = model_.store();
        HistoryEntry withPhoto =
            identification({{"amethyst", 0.62}, {"gone-species", 0.2}, {"fluorite", 0.1}},
                           {"Photo color", "Color: Purple"}, "strong");
        withPhoto.photoFile =
            store.storePhoto(jpegOf(QColor("#7A5AA8")).toStdString(), withPhoto.id);
        QVERIFY(withPhoto.photoFile);
        HistoryEntry missingPhoto = identification({{"calcite", 0.4}}, {"Fizz: Fizzes"});
        missingPhoto.photoFile = "00000000-0000-4000-8000-00000000000A.jpg";
        HistoryEntry damaged = identification({{"gone-species", 0.9}}, {});
        damaged.photoFile = store.storePhoto("not a photo at all", damaged.id);
        store.addHistory(damaged);
        store.addHistory(missingPhoto);
        store.addHistory(withPhoto);

        go(QStringLiteral("history"));
        QCOMPARE(textOf(visible(QStringLiteral("screenTitle"))), QStringLiteral("History"));
        QCOMPARE(list()->property("count").toInt(), 3);
        QList<QQuickItem*> rows = findAll(list(), QStringLiteral("historyRow"));
        std::sort(rows.begin(), rows.end(),
                  [](QQuickItem* a, QQuickItem* b) { return a->y() < b->y(); });
        QCOMPARE(rows.size(), 3);
        QCOMPARE(rows[0]->property("title").toString(), QStringLiteral("Amethyst"));
        QCOMPARE(rows[0]->property("subtitle").toString(),
                 QStringLiteral("Strong match · 2 clue(s)"));
        QCOMPARE(rows[1]->property("title").toString(), QStringLiteral("Calcite"));
        QCOMPARE(rows[2]->property("title").toString(), QStringLiteral("No match"));
        QCOMPARE(rows[2]->property("subtitle").toString(),
                 QStringLiteral("Likely match · 0 clue(s)"));
        // The photo arrives from the decoder; a missing or damaged one leaves the swatch.
        QTRY_VERIFY(
            findItem(rows[0], QStringLiteral("rowThumbnail"))->property("showsPhoto").toBool());
        QTest::qWait(200);
        for (int i : {1, 2}) {
            QQuickItem* thumb = findItem(rows[i], QStringLiteral("rowThumbnail"));
            QVERIFY(!thumb->property("showsPhoto").toBool());
            QVERIFY(findItem(thumb, QStringLiteral("thumbnailSwatch"))->isVisible());
        }

        // Open the newest: its photo, clues and the matches the library still knows.
        list()->forceActiveFocus();
        key(Qt::Key_Return);
        QCOMPARE(model_.navigation(QStringLiteral("history"))->kind(), QStringLiteral("history"));
        QQuickItem* detail = visible(QStringLiteral("historyDetailScreen"));
        QVERIFY(detail);
        QCOMPARE(textOf(findItem(detail, QStringLiteral("screenTitle"))),
                 QStringLiteral("Identification"));
        QCOMPARE(textOf(findItem(findItem(detail, QStringLiteral("yourClues")),
                                 QStringLiteral("sectionBody"))),
                 QStringLiteral("Photo color\nColor: Purple"));
        QTRY_VERIFY(findVisible(detail, QStringLiteral("identificationPhoto")));
        QVERIFY(findVisible(detail, QStringLiteral("matchRow_amethyst")));
        QVERIFY(findVisible(detail, QStringLiteral("matchRow_fluorite")));
        QCOMPARE(findAll(detail, QStringLiteral("matchRow_gone-species")).size(), 0);
        QCOMPARE(textOf(findItem(findItem(detail, QStringLiteral("matchRow_amethyst")),
                                 QStringLiteral("rowTrailing"))),
                 QStringLiteral("62%"));
        click(findItem(detail, QStringLiteral("matchRow_fluorite")));
        QCOMPARE(depth("history"), 2);
        QCOMPARE(textOf(visible(QStringLiteral("specimenName"))), QStringLiteral("Fluorite"));
        key(Qt::Key_Backspace);
        key(Qt::Key_Backspace);
        QCOMPARE(depth("history"), 0);

        // An entry without clues says "None".
        model_.navigation(QStringLiteral("history"))
            ->push(QStringLiteral("history"), QString::fromStdString(damaged.id.text()));
        QCOMPARE(
            textOf(findItem(visible(QStringLiteral("yourClues")), QStringLiteral("sectionBody"))),
            QStringLiteral("None"));
        QVERIFY(!visible(QStringLiteral("identificationPhoto")));
    }

    void clear_history_asks_first_and_leaves_collection_and_favorites() {
        CollectionEntry piece;
        piece.name = "Desk stone";
        piece.location = "Garden";
        model_.store().add(piece);
        model_.toggleFavorite(QStringLiteral("quartz"));
        model_.store().addHistory(identification({{"quartz", 0.5}}, {"Streak: White"}));
        model_.store().addHistory(identification({}, {}));
        go(QStringLiteral("history"));
        QCOMPARE(list()->property("count").toInt(), 2);

        QObject* dialog = window_->findChild<QObject*>(QStringLiteral("confirmClearHistory"));
        QVERIFY(dialog);
        click(visible(QStringLiteral("clearHistory")));
        QTRY_VERIFY(dialog->property("opened").toBool());
        QQuickItem* content = dialog->property("contentItem").value<QQuickItem*>();
        QCOMPARE(textOf(findItem(content, QStringLiteral("confirmTitle"))),
                 QStringLiteral("Clear all identification history?"));
        QCOMPARE(textOf(findItem(content, QStringLiteral("confirmMessage"))),
                 QStringLiteral("Your collection and favorites are not affected."));
        // Escape cancels; nothing changes.
        key(Qt::Key_Escape);
        QTRY_VERIFY(!dialog->property("visible").toBool());
        QCOMPARE(model_.store().history().size(), std::size_t(2));

        click(visible(QStringLiteral("clearHistory")));
        QTRY_VERIFY(dialog->property("opened").toBool());
        click(findItem(content, QStringLiteral("confirmButton")));
        QTRY_VERIFY(!dialog->property("visible").toBool());
        QCOMPARE(model_.store().history().size(), std::size_t(0));
        QCOMPARE(model_.store().collection().size(), std::size_t(1));
        QCOMPARE(model_.favorites(), QStringList{"quartz"});
        QCOMPARE(textOf(visible(QStringLiteral("emptyStateTitle"))),
                 QStringLiteral("No identifications yet"));
        QVERIFY(!visible(QStringLiteral("clearHistory"))->isEnabled());
        model_.store().deleteEntry(piece.id);
    }

    void deleting_the_last_history_entry_brings_back_the_empty_state() {
        model_.store().addHistory(identification({{"quartz", 0.5}}, {}));
        go(QStringLiteral("history"));
        QQuickItem* row = visible(QStringLiteral("historyRow"));
        QVERIFY(row);
        QVERIFY(!visible(QStringLiteral("emptyState")));
        click(findItem(row, QStringLiteral("rowAction")));
        QCOMPARE(model_.store().history().size(), std::size_t(0));
        QCOMPARE(textOf(visible(QStringLiteral("emptyStateTitle"))),
                 QStringLiteral("No identifications yet"));
        QCOMPARE(textOf(visible(QStringLiteral("emptyStateMessage"))),
                 QStringLiteral("Every time you identify a stone, the photo, your answers and the "
                                "top matches are kept here so you can look back later."));
    }

    // 300 identifications with photos scroll from top to bottom and back; thumbnails arrive
    // from the decoder while the list moves.
    void a_full_history_scrolls_with_its_thumbnails() {
        StoneStore& store = model_.store();
        const QStringList colors = {"#7A5AA8", "#4CC79A", "#E2B04A", "#8FD3FF", "#F59BB5"};
        for (int i = 0; i < 300; ++i) {
            HistoryEntry e = identification({{i % 2 ? "quartz" : "calcite", 0.5}}, {"Photo color"});
            if (i < 40) {
                e.photoFile =
                    store.storePhoto(jpegOf(QColor(colors[i % 5]), {600, 450}).toStdString(), e.id);
            }
            store.addHistory(e);
        }
        QCOMPARE(store.history().size(), std::size_t(300));
        go(QStringLiteral("history"));
        QQuickItem* view = list();
        QCOMPARE(view->property("count").toInt(), 300);
        for (int step = 0; step < 30; ++step) {
            view->setProperty("contentY", step * 400.0);
            QTest::qWait(5);
        }
        // The oldest entries, at the end, have photos: the rows in view show them.
        QMetaObject::invokeMethod(view, "positionViewAtEnd");
        auto photoInView = [view] {
            for (QQuickItem* thumb : findAll(view, QStringLiteral("rowThumbnail"))) {
                const qreal y = thumb->mapToItem(view, QPointF(0, 0)).y();
                if (thumb->isVisible() && y >= 0 && y < view->height() &&
                    thumb->property("showsPhoto").toBool()) {
                    return true;
                }
            }
            return false;
        };
        QTRY_VERIFY(photoInView());
        QMetaObject::invokeMethod(view, "positionViewAtBeginning");
        // A search over all of them narrows the list as typed.
        key(Qt::Key_F, Qt::ControlModifier);
        typeText(window_, QStringLiteral("calc"));
        QCOMPARE(view->property("count").toInt(), 150);
        model_.clearHistory();
    }

    // Writes pictures of each screen into QUARRYDEX_SCREENSHOT_DIR, when it is set.
    void screenshots_of_the_field_guide() {
        const QString folder = qEnvironmentVariable("QUARRYDEX_SCREENSHOT_DIR");
        if (folder.isEmpty()) {
            QSKIP("set QUARRYDEX_SCREENSHOT_DIR to a folder to take screenshots");
        }
        QDir().mkpath(folder);
        StoneStore& store = model_.store();
        const QStringList colors = {"#7A5AA8", "#4CC79A", "#E2B04A"};
        for (int i = 0; i < 6; ++i) {
            HistoryEntry e = identification(
                {{i % 2 ? "amethyst" : "calcite", 0.6 - i * 0.05}, {"fluorite", 0.2}},
                {"Photo color", "Color: Purple", "Luster: Glassy"}, i % 3 ? "likely" : "strong");
            if (i % 3 != 0) {
                e.photoFile = store.storePhoto(jpegOf(QColor(colors[i % 3])).toStdString(), e.id);
            }
            store.addHistory(e);
        }
        for (const QString& id : QStringList{"amethyst", "gold", "rhodochrosite"}) {
            model_.toggleFavorite(id);
        }
        auto shoot = [&](const QString& name) {
            QTest::qWait(150);
            QVERIFY(window_->grabWindow().save(folder + "/" + name + ".png"));
        };
        for (const QString& theme :
             QStringList{"malachite", "obsidian", "hematite", "rosequartz"}) {
            Theme::instance()->setThemeID(theme);
            for (int zoom : {100, 200}) {
                if (zoom == 200 && theme != QLatin1String("malachite")) {
                    continue;
                }
                VxZoom::instance()->setLevel(zoom);
                const QString suffix = theme + "-" + QString::number(zoom);
                go(QStringLiteral("library"));
                shoot("library-" + suffix);
                model_.navigation(QStringLiteral("library"))
                    ->push(QStringLiteral("specimen"), QStringLiteral("amethyst"), 0.62);
                shoot("detail-" + suffix);
                QQuickItem* flick = visible(QStringLiteral("detailFlick"));
                flick->setProperty("contentY",
                                   flick->property("contentHeight").toReal() - flick->height());
                shoot("detail-end-" + suffix);
                model_.navigation(QStringLiteral("library"))->clear();
                model_.libraryList()->setQuery(QStringLiteral("zzqx"));
                shoot("library-empty-" + suffix);
                model_.libraryList()->setQuery({});
                go(QStringLiteral("favorites"));
                shoot("favorites-" + suffix);
                go(QStringLiteral("history"));
                shoot("history-" + suffix);
                model_.navigation(QStringLiteral("history"))
                    ->push(QStringLiteral("history"), model_.historyList()->idAt(0));
                shoot("history-detail-" + suffix);
                model_.navigation(QStringLiteral("history"))->clear();
            }
        }
        VxZoom::instance()->setLevel(100);
        Theme::instance()->setThemeID(QStringLiteral("malachite"));
        QObject* dialog = window_->findChild<QObject*>(QStringLiteral("confirmClearHistory"));
        QMetaObject::invokeMethod(dialog, "open");
        QTRY_VERIFY(dialog->property("opened").toBool());
        shoot("history-clear");
        QMetaObject::invokeMethod(dialog, "close");
        QTRY_VERIFY(!dialog->property("visible").toBool());
        model_.clearHistory();
        for (const QString& id : model_.favorites()) {
            model_.toggleFavorite(id);
        }
        go(QStringLiteral("favorites"));
        shoot("favorites-empty");
        go(QStringLiteral("history"));
        shoot("history-empty");
    }
};

int main(int argc, char** argv) {
    // Preferences, runtime files and the data store all live in temporary folders.
    QTemporaryDir home;
    quarrydex::test::prepareQuickTestProcess(home.path());

    QGuiApplication app(argc, argv);
    quarrydex::ui::installKit();

    auto library = std::make_shared<const SpecimenLibrary>(SpecimenLibrary::bundled());
    AppModel model(library, (home.path() + "/data").toStdString());
    quarrydex::ui::registerModel(&model);

    FieldGuideTest test(model);
    return QTest::qExec(&test, argc, argv);
}

#include "field_guide_test.moc"
