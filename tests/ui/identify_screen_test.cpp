// The Identify screen as the user meets it in the main window: photo sources (open dialog,
// clipboard, drag and drop, camera sheet), the guided questions, the identify button and the
// results, driven by mouse and keyboard on the offscreen platform over a model in a temporary
// folder. Any warning, QML ones included, fails the test.

#include "app/app_model.h"
#include "identify/matcher.h"
#include "identify/rgb.h"
#include "tests/ui/quick_test_support.h"
#include "ui/kit/vx_zoom.h"
#include "ui/theme.h"
#include "ui/windowed_app.h"

#include <QBuffer>
#include <QCameraDevice>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QMediaDevices>
#include <QMimeData>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSettings>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>
#include <QtQml/qqmlextensionplugin.h>

#include <functional>
#include <memory>

Q_IMPORT_QML_PLUGIN(QuarrydexPlugin)

using quarrydex::AppModel;
using quarrydex::Matcher;
using quarrydex::RGB;
using quarrydex::ui::Theme;
using quarrydex::ui::VxZoom;
using namespace quarrydex::test;

namespace {

const QString kBadPhoto =
    QStringLiteral("That file couldn't be opened as a photo. Try a JPEG, HEIC or PNG.");
const QString kNoClipboardImage = QStringLiteral("There's no image on the clipboard.");

// Shown on screen: visible itself and all the way up.
bool shown(QQuickItem* item) {
    return item && item->isVisible() && item->opacity() > 0;
}

QByteArray encoded(const QColor& color, const char* format, int width = 240, int height = 180) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

double distance(const QString& hex, const char* expected) {
    return Matcher::distance(*RGB::fromHex(hex.toStdString()), *RGB::fromHex(expected));
}

const char* kPurple = "#7A5AA8";
const char* kGreen = "#339A4C";

} // namespace

class IdentifyScreenTest : public QObject {
    Q_OBJECT

public:
    IdentifyScreenTest(AppModel& model, QString home) : model_(model), home_(std::move(home)) {}

private:
    QQuickItem* screen() const {
        QQuickItem* loader = findItem(window_->contentItem(), QStringLiteral("detail"));
        return loader ? loader->property("item").value<QQuickItem*>() : nullptr;
    }
    QQuickItem* item(const QString& name) const { return findItem(screen(), name); }
    QQuickItem* picker(const QString& question) const { return item("picker_" + question); }
    QList<QQuickItem*> resultRows() const {
        return findAllIf(screen(), [](QQuickItem* i) {
            return i->objectName().startsWith(QLatin1String("resultRow_")) && i->isVisible();
        });
    }
    QObject* cameraSheet() const {
        return window_->findChild<QObject*>(QStringLiteral("cameraSheet"));
    }

    void click(QQuickItem* target) {
        QVERIFY(target);
        QVERIFY2(shown(target), qPrintable(target->objectName()));
        // Bring it into view first: the screen scrolls.
        QQuickItem* scroller = item(QStringLiteral("identifyScroller"));
        if (scroller && scroller->isAncestorOf(target)) {
            QQuickItem* content = scroller->property("contentItem").value<QQuickItem*>();
            const qreal top = target->mapToItem(content, QPointF(0, 0)).y();
            const qreal most =
                qMax(0.0, scroller->property("contentHeight").toReal() - scroller->height());
            scroller->setProperty("contentY", qBound(0.0, top - scroller->height() / 3, most));
        }
        settle(window_);
        QTest::mouseClick(window_, Qt::LeftButton, {}, centreOf(target));
    }

    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(window_, key, modifiers);
    }

    // Chooses an answer with the keyboard: focus on the picker, then Down `steps` times
    // (from "Not tested").
    void answerByKeyboard(const QString& question, int steps) {
        QQuickItem* p = picker(question);
        QVERIFY2(p, qPrintable(question));
        p->forceActiveFocus(Qt::TabFocusReason);
        for (int i = 0; i < steps; ++i) {
            key(Qt::Key_Down);
        }
    }

    void waitForPhoto() {
        QTRY_VERIFY_WITH_TIMEOUT(!model_.preparingPhoto(), 10000);
        settle(window_);
    }

    // Sends a whole drag and drop of `mime` onto the middle of the screen. True when the
    // screen took the drop.
    bool drop(QMimeData* mime) {
        const QPoint at = centreOf(screen());
        QDragEnterEvent enter(at, Qt::CopyAction, mime, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window_, &enter);
        QDragMoveEvent move(at, Qt::CopyAction, mime, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window_, &move);
        const bool entered = enter.isAccepted() && move.isAccepted();
        QDropEvent dropped(at, Qt::CopyAction, mime, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window_, &dropped);
        return entered && dropped.isAccepted();
    }

    QString writeFile(const QString& name, const QByteArray& bytes) {
        const QString path = home_ + "/" + name;
        QFile out(path);
        if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size()) {
            return {};
        }
        return path;
    }

    AppModel& model_;
    QString home_;
    std::unique_ptr<QQmlApplicationEngine> engine_;
    QQuickWindow* window_ = nullptr;

private Q_SLOTS:
    void initTestCase() {
        failOnAnyWarning();
        window_ = quarrydex::test::openMainWindow(engine_, false);
        QVERIFY(window_);
    }

    void init() {
        failOnAnyWarning();
        Theme::instance()->setThemeID(QStringLiteral("malachite"));
        VxZoom::instance()->actualSize();
        model_.navigation(QStringLiteral("identify"))->clear();
        model_.setDemoDetail({});
        model_.setSection(QStringLiteral("identify"));
        model_.startOver();
        model_.setPhotoError({});
        QGuiApplication::clipboard()->clear();
        window_->resize(1200, 800);
        window_->requestActivate();
        QVERIFY(QTest::qWaitForWindowActive(window_));
        settle(window_);
        QVERIFY(screen());
        QCOMPARE(screen()->objectName(), QStringLiteral("identifyScreen"));
    }

    // --- Layout and the identify button
    void with_no_photo_and_no_answers_nothing_can_be_identified_or_started_over() {
        QCOMPARE(textOf(item(QStringLiteral("screenTitle"))), QStringLiteral("Identify"));
        QCOMPARE(textOf(item(QStringLiteral("headline"))), QStringLiteral("What's this stone?"));
        QQuickItem* identify = item(QStringLiteral("identifyButton"));
        QQuickItem* startOver = item(QStringLiteral("startOverButton"));
        QCOMPARE(textOf(identify), QStringLiteral("Identify"));
        QVERIFY(!identify->isEnabled());
        QVERIFY(!startOver->isEnabled());
        QCOMPARE(textOf(item(QStringLiteral("answeredCount"))), QStringLiteral("0 of 8 answered"));
        QVERIFY(shown(item(QStringLiteral("dropPrompt"))));
        QVERIFY(!shown(item(QStringLiteral("colorSwatchRow"))));
        QVERIFY(!shown(item(QStringLiteral("removeButton"))));
        QVERIFY(!shown(item(QStringLiteral("results"))));
        QVERIFY(!shown(item(QStringLiteral("suggestion"))));
        QVERIFY(!shown(item(QStringLiteral("photoError"))));

        // Every picker starts at "Not tested", followed by the question's answers.
        const QStringList questions = {"color",  "luster", "habit",  "scratch",
                                       "streak", "heft",   "magnet", "fizz"};
        for (const QString& q : questions) {
            QQuickItem* p = picker(q);
            QVERIFY2(p, qPrintable(q));
            QCOMPARE(p->property("currentText").toString(), QStringLiteral("Not tested"));
        }
        QCOMPARE(picker("magnet")->property("count").toInt(), 3);
        QCOMPARE(picker("color")->property("count").toInt(), 13);

        // Return does nothing while there is nothing to identify.
        key(Qt::Key_Return);
        QVERIFY(!model_.hasRun());

        // One answer is enough: both buttons come alive; Start Over clears it again.
        answerByKeyboard("magnet", 1);
        QCOMPARE(model_.answer("magnet"), QStringLiteral("attracts"));
        QCOMPARE(textOf(item(QStringLiteral("answeredCount"))), QStringLiteral("1 of 8 answered"));
        QVERIFY(identify->isEnabled());
        QVERIFY(startOver->isEnabled());
        QVERIFY(!model_.hasRun()); // answering alone does not identify
        click(startOver);
        QCOMPARE(model_.answeredCount(), 0);
        QCOMPARE(picker("magnet")->property("currentText").toString(),
                 QStringLiteral("Not tested"));
        QVERIFY(!identify->isEnabled());
    }

    void the_first_run_turns_the_button_into_update_matches_and_pickers_refresh_results() {
        answerByKeyboard("fizz", 1); // it fizzes
        key(Qt::Key_Return);         // the default action, from the focused picker
        QVERIFY(model_.hasRun());
        settle(window_);
        QQuickItem* identify = item(QStringLiteral("identifyButton"));
        QCOMPARE(textOf(identify), QStringLiteral("Update Matches"));
        QVERIFY(shown(item(QStringLiteral("results"))));
        QCOMPARE(resultRows().size(), 8);
        QCOMPARE(textOf(item(QStringLiteral("levelExplanation"))), model_.levelExplanation());
        QCOMPARE(textOf(item(QStringLiteral("levelBadge"))->childItems().value(0)),
                 model_.levelTitle());
        QVERIFY(shown(item(QStringLiteral("answersOnly"))));
        QCOMPARE(textOf(item(QStringLiteral("answersOnly"))),
                 QStringLiteral("Matched on your answers only. Add a photo for a closer match."));
        QVERIFY(
            textOf(item(QStringLiteral("sharesNote")))
                .startsWith(QStringLiteral("Percentages are shares among Quarrydex's library")));
        QVERIFY(textOf(item(QStringLiteral("suggestion")))
                    .startsWith(QStringLiteral("Most helpful next: ")));
        QVERIFY(shown(item(QStringLiteral("suggestion"))));

        // Rows in rank order with the model's names and shares.
        QQuickItem* first = resultRows().first();
        QCOMPARE(textOf(findItem(first, QStringLiteral("resultRank"))), QStringLiteral("1"));
        const QString topName = textOf(findItem(first, QStringLiteral("resultName")));
        QCOMPARE(topName,
                 model_.candidates()
                     ->data(model_.candidates()->index(0), quarrydex::CandidateListModel::NameRole)
                     .toString());
        QVERIFY(textOf(findItem(first, QStringLiteral("resultPercent"))).endsWith('%'));

        // A picker changed after the run re-identifies at once, without the button.
        QSignalSpy result(&model_, &AppModel::resultChanged);
        answerByKeyboard("magnet", 1); // it attracts a magnet: nothing fizzes and attracts
        QCOMPARE(result.count(), 1);
        settle(window_);
        QVERIFY(shown(item(QStringLiteral("nothingFits"))));
        QCOMPARE(textOf(item(QStringLiteral("nothingFits"))),
                 QStringLiteral("No species in the library fits every answer. Re-check a test, or "
                                "your stone may not be in Quarrydex's %1-species library.")
                     .arg(model_.speciesCount()));
        QCOMPARE(model_.store().history().size(), 1u);

        // Back to "Not tested" with the keyboard.
        picker("magnet")->forceActiveFocus(Qt::TabFocusReason);
        key(Qt::Key_Up);
        QCOMPARE(model_.answer("magnet"), QString());
        QCOMPARE(result.count(), 2);
        QVERIFY(!shown(item(QStringLiteral("nothingFits"))));

        // The button runs it again too.
        click(identify);
        QCOMPARE(result.count(), 3);
    }

    void tab_reaches_every_button_and_picker_with_a_focus_ring() {
        QVERIFY(model_.setPhoto(encoded(QColor(kPurple), "PNG")));
        settle(window_);
        item(QStringLiteral("startOverButton"))->forceActiveFocus(Qt::TabFocusReason);
        QStringList reached;
        for (int i = 0; i < 40; ++i) {
            QQuickItem* focused = window_->activeFocusItem();
            QVERIFY(focused);
            if (!screen()->isAncestorOf(focused)) {
                break;
            }
            if (!focused->objectName().isEmpty() && !reached.contains(focused->objectName())) {
                reached << focused->objectName();
                QVERIFY2(focused->property("visualFocus").toBool(),
                         qPrintable(focused->objectName()));
            }
            key(Qt::Key_Tab);
        }
        for (const char* name :
             {"startOverButton", "choosePhotoButton", "cameraButton", "pasteButton", "removeButton",
              "picker_color", "picker_heft", "picker_fizz", "identifyButton"}) {
            QVERIFY2(reached.contains(QLatin1String(name)), name);
        }
        QVERIFY(reached.indexOf("picker_fizz") < reached.indexOf("identifyButton"));

        // Return from a focused button is the identify button's, too.
        item(QStringLiteral("pasteButton"))->forceActiveFocus(Qt::TabFocusReason);
        key(Qt::Key_Return);
        QVERIFY(model_.hasRun());
        QVERIFY(model_.usedPhotoColor());
    }

    // --- Clipboard
    void paste_with_only_text_keeps_the_photo_and_says_there_is_no_image() {
        QVERIFY(model_.setPhoto(encoded(QColor(kPurple), "PNG")));
        const QByteArray photo = model_.photoData();
        QGuiApplication::clipboard()->setText(QStringLiteral("a stone from the creek"));
        click(item(QStringLiteral("pasteButton")));
        QCOMPARE(model_.photoError(), kNoClipboardImage);
        QVERIFY(model_.photoData() == photo);
        QVERIFY(!model_.preparingPhoto());
        settle(window_);
        QQuickItem* error = item(QStringLiteral("photoError"));
        QVERIFY(shown(error));
        QCOMPARE(textOf(error), kNoClipboardImage);
        QCOMPARE(error->property("color").value<QColor>(), QColor("#E38B5A"));

        // Ctrl+V does the same.
        model_.setPhotoError({});
        key(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(model_.photoError(), kNoClipboardImage);
        QVERIFY(model_.photoData() == photo);
    }

    void a_clipboard_holding_png_and_jpeg_gives_the_png() {
        auto* mime = new QMimeData;
        mime->setData(QStringLiteral("image/jpeg"), encoded(QColor(kPurple), "JPEG"));
        mime->setData(QStringLiteral("image/png"), encoded(QColor(kGreen), "PNG"));
        QGuiApplication::clipboard()->setMimeData(mime);
        model_.setPhotoError(kNoClipboardImage);
        key(Qt::Key_V, Qt::ControlModifier);
        QVERIFY(model_.preparingPhoto());
        waitForPhoto();
        QVERIFY2(distance(model_.photoColor(), kGreen) < 0.03, qPrintable(model_.photoColor()));
        QCOMPARE(model_.photoError(), QString()); // a new photo clears the old message
        QVERIFY(shown(item(QStringLiteral("colorSwatchRow"))));
        QCOMPARE(item(QStringLiteral("colorSwatch"))->property("color").value<QColor>(),
                 QColor(model_.photoColor()));
        QTRY_COMPARE(item(QStringLiteral("photoImage"))->property("status").toInt(), 1); // Ready
        QVERIFY(shown(item(QStringLiteral("removeButton"))));

        // Any other image is taken too.
        QGuiApplication::clipboard()->setImage(QImage::fromData(encoded(QColor(kPurple), "PNG")));
        click(item(QStringLiteral("pasteButton")));
        waitForPhoto();
        QVERIFY(distance(model_.photoColor(), kPurple) < 0.03);

        click(item(QStringLiteral("removeButton")));
        QVERIFY(!model_.hasPhoto());
        QVERIFY(shown(item(QStringLiteral("dropPrompt"))));
    }

    // --- Drag and drop
    void dropped_text_does_nothing_and_dropped_files_and_image_data_become_the_photo() {
        QMimeData text;
        text.setText(QStringLiteral("file:///etc/hostname"));
        text.setHtml(QStringLiteral("<p>a stone</p>"));
        QVERIFY(!drop(&text));
        QVERIFY(!model_.preparingPhoto());
        QVERIFY(!model_.hasPhoto());
        QCOMPARE(model_.photoError(), QString());

        QMimeData file;
        file.setUrls(
            {QUrl::fromLocalFile(writeFile("green.jpg", encoded(QColor(kGreen), "JPEG")))});
        QVERIFY(drop(&file));
        QVERIFY(shown(item(QStringLiteral("preparingPhoto"))));
        waitForPhoto();
        QVERIFY(distance(model_.photoColor(), kGreen) < 0.03);
        QVERIFY(!shown(item(QStringLiteral("preparingPhoto"))));

        QMimeData data;
        data.setData(QStringLiteral("image/png"), encoded(QColor(kPurple), "PNG"));
        QVERIFY(drop(&data));
        waitForPhoto();
        QVERIFY(distance(model_.photoColor(), kPurple) < 0.03);
    }

    void bad_files_give_the_one_photo_message_and_change_nothing_else() {
        QVERIFY(model_.setAnswer(QStringLiteral("color"), QStringLiteral("purple")));
        QVERIFY(model_.setPhoto(encoded(QColor(kPurple), "PNG")));
        model_.run();
        const QByteArray photo = model_.photoData();
        const auto history = model_.store().history();
        const QByteArray jpeg = encoded(QColor(kGreen), "JPEG", 600, 400);
        QDir(home_).mkpath(QStringLiteral("a folder"));
        const QStringList bad = {
            writeFile("notes.jpg", "a stone from the creek"),
            writeFile("empty.png", QByteArray()),
            writeFile("truncated.jpg", jpeg.left(jpeg.size() / 3)),
            home_ + "/a folder",
            home_ + "/gone.jpg",
        };
        for (const QString& path : bad) {
            QVERIFY(!path.isEmpty());
            model_.setPhotoError({});
            QMimeData file;
            file.setUrls({QUrl::fromLocalFile(path)});
            QVERIFY2(drop(&file), qPrintable(path));
            waitForPhoto();
            QCOMPARE(model_.photoError(), kBadPhoto);
            QCOMPARE(textOf(item(QStringLiteral("photoError"))), kBadPhoto);
        }
        QVERIFY(model_.photoData() == photo);
        QVERIFY(model_.store().history() == history);
        QCOMPARE(model_.answer("color"), QStringLiteral("purple"));
        QVERIFY(shown(item(QStringLiteral("results"))));
    }

    void a_second_photo_arriving_while_the_first_is_prepared_wins() {
        QMimeData big;
        big.setUrls({QUrl::fromLocalFile(
            writeFile("big.jpg", encoded(QColor(kPurple), "JPEG", 4000, 3000)))});
        QVERIFY(drop(&big));
        QVERIFY(model_.preparingPhoto());
        auto* second = new QMimeData;
        second->setData(QStringLiteral("image/png"), encoded(QColor(kGreen), "PNG"));
        QGuiApplication::clipboard()->setMimeData(second);
        key(Qt::Key_V, Qt::ControlModifier);
        waitForPhoto();
        QVERIFY(distance(model_.photoColor(), kGreen) < 0.03);
        // The first one finishing later changes nothing.
        QThreadPool::globalInstance()->waitForDone();
        QTest::qWait(0);
        QVERIFY(!model_.preparingPhoto());
        QVERIFY(distance(model_.photoColor(), kGreen) < 0.03);
    }

    // --- Camera and open dialog
    void without_a_camera_the_sheet_says_so_and_capture_stays_disabled() {
        if (!QMediaDevices::videoInputs().isEmpty()) {
            QSKIP("this machine has a camera");
        }
        click(item(QStringLiteral("cameraButton")));
        QVERIFY(model_.showCamera());
        QObject* sheet = cameraSheet();
        QVERIFY(sheet);
        QTRY_VERIFY(sheet->property("opened").toBool());
        auto* content = sheet->property("contentItem").value<QQuickItem*>();
        QQuickItem* sheetRoot = content ? content->parentItem() : nullptr;
        QVERIFY(sheetRoot);
        QCOMPARE(textOf(findItem(sheetRoot, QStringLiteral("cameraTitle"))),
                 QStringLiteral("Take a Photo"));
        QCOMPARE(textOf(findItem(sheetRoot, QStringLiteral("cameraStatus"))),
                 QStringLiteral("No camera found. Choose or drop a photo instead."));
        QQuickItem* capture = findItem(sheetRoot, QStringLiteral("cameraCapture"));
        QVERIFY(capture && !capture->isEnabled());
        QVERIFY(findItem(sheetRoot, QStringLiteral("cameraCancel"))->isEnabled());

        key(Qt::Key_Escape);
        QTRY_VERIFY(!sheet->property("visible").toBool());
        QVERIFY(!model_.showCamera());
        QVERIFY(!model_.hasPhoto());

        // The menu command opens it too; Cancel closes it.
        key(Qt::Key_T, Qt::ControlModifier | Qt::ShiftModifier);
        QTRY_VERIFY(sheet->property("opened").toBool());
        click(findItem(sheetRoot, QStringLiteral("cameraCancel")));
        QTRY_VERIFY(!sheet->property("visible").toBool());
        QVERIFY(!model_.showCamera());
    }

    void the_open_dialog_opens_titled_for_photos_and_closes_cleanly() {
        click(item(QStringLiteral("choosePhotoButton")));
        QObject* dialog = window_->findChild<QObject*>(QStringLiteral("photoDialog"));
        QVERIFY(dialog); // made on first use
        QCOMPARE(dialog->property("title").toString(),
                 QStringLiteral("Choose a photo of your specimen"));
        QCOMPARE(dialog->property("fileMode").toInt(), 0); // one existing file
        QCOMPARE(dialog->property("nameFilters").toStringList().size(), 1);
        QTRY_VERIFY(dialog->property("visible").toBool());
        QVERIFY(QMetaObject::invokeMethod(dialog, "reject"));
        QTRY_VERIFY(!dialog->property("visible").toBool());
        QVERIFY(!model_.hasPhoto());

        key(Qt::Key_O, Qt::ControlModifier); // File › Choose Photo…
        QTRY_VERIFY(dialog->property("visible").toBool());
        QVERIFY(QMetaObject::invokeMethod(dialog, "reject"));
        QTRY_VERIFY(!dialog->property("visible").toBool());
    }

    // --- Results open their species
    void a_result_opens_its_species_and_back_returns_to_the_same_view() {
        QVERIFY(model_.setPhoto(encoded(QColor(kPurple), "PNG")));
        QVERIFY(model_.setAnswer(QStringLiteral("color"), QStringLiteral("purple")));
        click(item(QStringLiteral("identifyButton")));
        settle(window_);
        QQuickItem* scroller = item(QStringLiteral("identifyScroller"));
        QQuickItem* second = resultRows().value(1);
        QVERIFY(second);
        const QString id = second->property("specimenId").toString();
        const double confidence = second->property("confidence").toDouble();
        click(second);
        const qreal scrolled = scroller->property("contentY").toReal();
        auto* nav = model_.navigation(QStringLiteral("identify"));
        QCOMPARE(nav->depth(), 1);
        QCOMPARE(nav->kind(), QStringLiteral("specimen"));
        QCOMPARE(nav->itemId(), id);
        QCOMPARE(nav->confidence(), confidence);
        settle(window_);
        QQuickItem* detail = item(QStringLiteral("specimenDetailScreen"));
        QVERIFY(shown(detail));
        QCOMPARE(detail->property("specimenId").toString(), id);
        QCOMPARE(detail->property("confidence").toDouble(), confidence);
        QVERIFY(detail->property("showSessionPhoto").toBool());
        QVERIFY(!shown(scroller));

        key(Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(nav->depth(), 0);
        settle(window_);
        QVERIFY(shown(scroller));
        QCOMPARE(scroller->property("contentY").toReal(), scrolled);

        // From the keyboard: Return on a focused row opens it, Backspace comes back.
        resultRows().first()->forceActiveFocus(Qt::TabFocusReason);
        key(Qt::Key_Return);
        QCOMPARE(nav->depth(), 1);
        key(Qt::Key_Backspace);
        QCOMPARE(nav->depth(), 0);

        // A new session closes a detail left open.
        click(resultRows().first());
        QCOMPARE(nav->depth(), 1);
        model_.startOver();
        QCOMPARE(nav->depth(), 0);
    }

    void a_results_star_shows_and_changes_the_favourite() {
        QVERIFY(model_.setAnswer(QStringLiteral("color"), QStringLiteral("purple")));
        model_.run();
        settle(window_);
        QQuickItem* row = resultRows().first();
        const QString id = row->property("specimenId").toString();
        const bool before = model_.isFavorite(id);
        QQuickItem* star = findItem(row, QStringLiteral("favoriteStar"));
        click(star);
        QCOMPARE(model_.isFavorite(id), !before);
        QCOMPARE(row->property("favorite").toBool(), !before);
        QCOMPARE(model_.navigation(QStringLiteral("identify"))->depth(), 0); // not opened
        model_.toggleFavorite(id); // from elsewhere, e.g. the species' detail
        QCOMPARE(row->property("favorite").toBool(), before);
    }

    void the_sample_button_identifies_a_sample_photo() {
        QQuickItem* button = item(QStringLiteral("sampleButton"));
        QVERIFY(button);
        QCOMPARE(shown(button), model_.hasSampleSet());
        if (!model_.hasSampleSet()) {
            QSKIP("this build has no sample photos");
        }
        QVERIFY(model_.setAnswer(QStringLiteral("magnet"), QStringLiteral("attracts")));
        click(button);
        waitForPhoto();
        QTRY_VERIFY(model_.hasRun());
        QVERIFY(model_.hasPhoto() && model_.usedPhotoColor());
        QCOMPARE(model_.answeredCount(), 0); // a new session
        QVERIFY(shown(item(QStringLiteral("results"))));
    }

    // Pictures of the screen without and with results, in every theme at 100 % and 200 %, into
    // the folder named by QUARRYDEX_SCREENSHOT_DIR. Without it there is nothing to do.
    void screenshots_without_and_with_results() {
        const QString folder = qEnvironmentVariable("QUARRYDEX_SCREENSHOT_DIR");
        if (folder.isEmpty()) {
            QSKIP("set QUARRYDEX_SCREENSHOT_DIR to a folder to take screenshots");
        }
        QDir().mkpath(folder);
        auto shoot = [&](const QString& name) {
            settle(window_);
            QTest::qWait(100);
            QVERIFY(window_->grabWindow().save(folder + "/" + name + ".png"));
        };
        for (const auto& palette : quarrydex::ui::StonePalette::all()) {
            const QString id = QString::fromUtf8(palette.id.data(), qsizetype(palette.id.size()));
            Theme::instance()->setThemeID(id);
            for (int zoom : {100, 200}) {
                VxZoom::instance()->setLevel(zoom);
                // At 200 % a window twice as large, so the whole screen is in the picture.
                window_->resize(zoom == 100 ? QSize(1200, 800) : QSize(2000, 1500));
                const QString suffix = id + "-" + QString::number(zoom);
                model_.startOver();
                model_.setPhotoError(kBadPhoto);
                shoot("identify-empty-" + suffix);
                model_.loadDemoSession();
                QVERIFY(model_.setAnswer(QStringLiteral("magnet"), QStringLiteral("attracts")));
                shoot("identify-photo-" + suffix);
                QQuickItem* scroller = item(QStringLiteral("identifyScroller"));
                QMetaObject::invokeMethod(screen(), "showResults");
                shoot("identify-results-" + suffix);
                scroller->setProperty("contentY", 0);
            }
        }
        VxZoom::instance()->setLevel(100);
        window_->resize(1200, 800);

        // The keyboard's focus ring, and the camera sheet.
        Theme::instance()->setThemeID(QStringLiteral("malachite"));
        item(QStringLiteral("identifyScroller"))->setProperty("contentY", 0);
        item(QStringLiteral("pasteButton"))->forceActiveFocus(Qt::TabFocusReason);
        shoot("identify-focus-button");
        picker("color")->forceActiveFocus(Qt::TabFocusReason);
        shoot("identify-focus-picker");
        key(Qt::Key_Space); // opens its list
        shoot("identify-picker-open");
        key(Qt::Key_Escape);
        model_.setShowCamera(true);
        QTRY_VERIFY(cameraSheet()->property("opened").toBool());
        shoot("camera-sheet");
        key(Qt::Key_Escape);
        QTRY_VERIFY(!cameraSheet()->property("visible").toBool());
    }
};

int main(int argc, char** argv) {
    QTemporaryDir home;
    quarrydex::test::prepareQuickTestProcess(home.path());
    QDir(home.path()).mkpath("files");

    QGuiApplication app(argc, argv);
    quarrydex::ui::installKit();

    auto library =
        std::make_shared<const quarrydex::SpecimenLibrary>(quarrydex::SpecimenLibrary::bundled());
    AppModel model(library, (home.path() + "/data").toStdString());
    quarrydex::ui::registerModel(&model);

    IdentifyScreenTest test(model, home.path() + "/files");
    return QTest::qExec(&test, argc, argv);
}

#include "identify_screen_test.moc"
