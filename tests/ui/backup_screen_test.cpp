// The Backup section in the main window, offscreen, over a model in a temporary folder and a
// folder standing in for a flash drive: drives and Refresh, Back Up Now with its message and
// the last-backup line, Cancel, every dialog of the screen, and restore after confirmation.
// Any warning, QML ones included, fails the test.

#include "app/app_model.h"
#include "backup/backup_archive.h"
#include "identify/image_tools.h"
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
#include <QSemaphore>
#include <QSettings>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>

#include <filesystem>
#include <functional>
#include <memory>

Q_IMPORT_QML_PLUGIN(QuarrydexPlugin)

using namespace quarrydex;
using namespace quarrydex::test;
using quarrydex::ui::Theme;
using quarrydex::ui::VxZoom;
namespace fs = std::filesystem;

namespace {

QUrl urlOf(const fs::path& path) {
    return QUrl::fromLocalFile(QString::fromStdString(path.string()));
}

} // namespace

class BackupScreenTest : public QObject {
    Q_OBJECT

public:
    BackupScreenTest(AppModel& model, fs::path drive) : model_(model), drive_(std::move(drive)) {}

private:
    BackupController& backup() { return *model_.backup(); }

    void settle() { quarrydex::test::settle(window_); }

    QQuickItem* item(const QString& name) { return findVisible(window_->contentItem(), name); }
    // Popups (dialogs) live in the window's overlay, which is inside the content item too.
    QQuickItem* overlayItem(const QString& name) { return item(name); }

    void click(QQuickItem* target) {
        QVERIFY(target);
        QTest::mouseClick(window_, Qt::LeftButton, {}, centreOf(target));
    }

    bool waitForEnd() {
        if (!backup().busy()) {
            return true;
        }
        QSignalSpy finished(&backup(), &BackupController::finished);
        return finished.wait(20000);
    }

    std::vector<fs::path> backupsOnDrive() const {
        std::vector<fs::path> files;
        std::error_code ec;
        for (const auto& entry : fs::directory_iterator(drive_ / "Quarrydex Backups", ec)) {
            files.push_back(entry.path());
        }
        return files;
    }

    void addPiece(const std::string& name) {
        CollectionEntry entry;
        entry.name = name;
        entry.location = "Quarry road";
        std::optional<Image> image = ImageTools::solid({0.5, 0.3, 0.7}, 64);
        entry.photoFile = model_.store().storePhoto(*ImageTools::jpegData(*image), entry.id);
        model_.store().add(entry);
    }

    AppModel& model_;
    fs::path drive_;
    std::unique_ptr<QQmlApplicationEngine> engine_;
    QQuickWindow* window_ = nullptr;

private Q_SLOTS:
    void initTestCase() {
        failOnAnyWarning();
        backup().setDriveLister([this] {
            std::vector<DriveInfo> drives;
            if (fs::exists(drive_)) {
                drives.push_back({drive_, "FIELD STICK", drive_.string() + " · 12.3 GB free"});
            }
            return drives;
        });
        addPiece("Amethyst");
        window_ = openMainWindow(engine_, false);
        QVERIFY(window_);
    }

    void init() {
        failOnAnyWarning();
        Theme::instance()->setThemeID(QStringLiteral("malachite"));
        VxZoom::instance()->actualSize();
        fs::create_directories(drive_);
        backup().setWorkerHook({});
        backup().clearMessage();
        model_.setSection(QStringLiteral("backup"));
        window_->resize(1200, 800);
        settle();
    }

    void the_drives_are_listed_and_refresh_finds_a_drive_gone() {
        QCOMPARE(textOf(item(QStringLiteral("screenTitle"))), QStringLiteral("Backup"));
        QVERIFY(item(QStringLiteral("drive_FIELD STICK")));
        QVERIFY(!item(QStringLiteral("noDriveText")));
        fs::remove_all(drive_);
        click(item(QStringLiteral("refreshDrives")));
        settle();
        QVERIFY(!item(QStringLiteral("drive_FIELD STICK")));
        QCOMPARE(textOf(item(QStringLiteral("noDriveText"))),
                 QStringLiteral("No external drive found. Plug in a USB or Lightning/USB-C flash "
                                "drive and press Refresh, or use “Save Backup As…” below."));
        fs::create_directories(drive_);
        click(item(QStringLiteral("refreshDrives")));
        settle();
        QVERIFY(item(QStringLiteral("drive_FIELD STICK")));
    }

    void back_up_now_verifies_says_where_and_updates_the_last_backup() {
        QCOMPARE(textOf(item(QStringLiteral("lastBackupWhen"))),
                 QStringLiteral("No verified backup yet."));
        click(item(QStringLiteral("backUpNow")));
        QVERIFY(waitForEnd());
        settle();
        std::vector<fs::path> files = backupsOnDrive();
        QCOMPARE(files.size(), std::size_t(1));
        const QString path = QString::fromStdString(files[0].string());
        QCOMPARE(textOf(item(QStringLiteral("backupMessage"))),
                 QStringLiteral("Backed up and verified: ") + path);
        QCOMPARE(textOf(item(QStringLiteral("lastBackupWhere"))), path);
        QVERIFY(
            textOf(item(QStringLiteral("lastBackupWhen"))).endsWith(QStringLiteral("(just now)")));
        fs::remove(files[0]);
    }

    void cancel_on_the_screen_stops_the_backup_and_leaves_no_file() {
        QSemaphore go;
        backup().setWorkerHook([&] { go.acquire(); });
        click(item(QStringLiteral("backUpNow")));
        settle();
        QVERIFY(item(QStringLiteral("progressPanel")));
        QVERIFY(!item(QStringLiteral("backUpNow"))->isEnabled());
        // The window answers meanwhile: another section opens and comes back.
        model_.setSection(QStringLiteral("library"));
        settle();
        model_.setSection(QStringLiteral("backup"));
        settle();
        click(item(QStringLiteral("cancelOperation")));
        go.release();
        QVERIFY(waitForEnd());
        settle();
        QVERIFY(!item(QStringLiteral("progressPanel")));
        QCOMPARE(textOf(item(QStringLiteral("backupMessage"))),
                 QStringLiteral("Backup cancelled. No backup file was left behind."));
        QVERIFY(backupsOnDrive().empty());
    }

    void every_file_dialog_of_the_screen_opens_and_closes() {
        for (const auto& [button, dialogName] :
             std::vector<std::pair<QString, QString>>{{"saveBackupAs", "saveBackupDialog"},
                                                      {"restoreFromBackup", "restoreDialog"},
                                                      {"exportCsv", "csvDialog"}}) {
            click(item(button));
            QObject* dialog = window_->findChild<QObject*>(dialogName);
            QVERIFY2(dialog, qPrintable(dialogName));
            QTRY_VERIFY(dialog->property("visible").toBool());
            if (dialogName != QLatin1String("restoreDialog")) {
                QVERIFY(dialog->property("selectedFile")
                            .toUrl()
                            .fileName()
                            .startsWith(QStringLiteral("Quarrydex ")));
            }
            QVERIFY(QMetaObject::invokeMethod(dialog, "reject"));
            QTRY_VERIFY(!dialog->property("visible").toBool());
        }
    }

    void a_restore_is_confirmed_in_a_dialog_that_says_what_it_adds() {
        QTemporaryDir dir;
        const fs::path file = fs::path(dir.path().toStdString()) / "backup.json";
        QObject* screen = window_->findChild<QObject*>(QStringLiteral("screen_Backup"));
        QVERIFY(screen);
        QVERIFY(QMetaObject::invokeMethod(screen, "saveBackupTo", Q_ARG(QVariant, urlOf(file))));
        QVERIFY(waitForEnd());

        // Declined with Escape: nothing happens.
        QVERIFY(QMetaObject::invokeMethod(screen, "restoreFrom", Q_ARG(QVariant, urlOf(file))));
        QVERIFY(waitForEnd());
        QObject* dialog = window_->findChild<QObject*>(QStringLiteral("restoreConfirmation"));
        QVERIFY(dialog);
        QTRY_VERIFY(dialog->property("opened").toBool());
        settle();
        QCOMPARE(textOf(overlayItem(QStringLiteral("restoreAdds"))),
                 QStringLiteral("Restoring adds: 0 new pieces, 1 already here, 0 history "
                                "entries, 0 favourites."));
        QTest::keyClick(window_, Qt::Key_Escape);
        QTRY_VERIFY(!dialog->property("visible").toBool());
        QVERIFY(!backup().restorePending());

        // Confirmed: the report.
        QVERIFY(QMetaObject::invokeMethod(screen, "restoreFrom", Q_ARG(QVariant, urlOf(file))));
        QVERIFY(waitForEnd());
        QTRY_VERIFY(dialog->property("opened").toBool());
        settle();
        click(overlayItem(QStringLiteral("restoreConfirm")));
        QVERIFY(waitForEnd());
        QTRY_VERIFY(!dialog->property("visible").toBool());
        settle();
        QCOMPARE(textOf(item(QStringLiteral("backupMessage"))),
                 QStringLiteral("Nothing new to restore — everything in this backup is already "
                                "here (1 items checked)."));

        // A file that is no backup: its message, no dialog.
        const fs::path other = fs::path(dir.path().toStdString()) / "other.json";
        QFile out(QString::fromStdString(other.string()));
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(R"({"hello":"world"})");
        out.close();
        QVERIFY(QMetaObject::invokeMethod(screen, "restoreFrom", Q_ARG(QVariant, urlOf(other))));
        QVERIFY(waitForEnd());
        settle();
        QVERIFY(!dialog->property("visible").toBool());
        QCOMPARE(textOf(item(QStringLiteral("backupMessage"))),
                 QStringLiteral("That file isn't a Quarrydex backup."));
    }

    void screenshots_in_several_themes_and_at_double_size() {
        const QString folder = qEnvironmentVariable("QUARRYDEX_SCREENSHOT_DIR");
        if (folder.isEmpty()) {
            QSKIP("set QUARRYDEX_SCREENSHOT_DIR to a folder to take screenshots");
        }
        QDir().mkpath(folder);
        QSemaphore go;
        backup().setWorkerHook([&] { go.acquire(); });
        QVERIFY(backup().backUpToDrive(QString::fromStdString(drive_.string())));
        for (const QString& id : {QStringLiteral("malachite"), QStringLiteral("obsidian"),
                                  QStringLiteral("hematite"), QStringLiteral("rosequartz")}) {
            Theme::instance()->setThemeID(id);
            settle();
            QVERIFY(window_->grabWindow().save(folder + "/backup-" + id + ".png"));
        }
        go.release();
        QVERIFY(waitForEnd());
        backup().setWorkerHook({});
        QVERIFY(backup().readBackup(urlOf(backupsOnDrive().front())));
        QVERIFY(waitForEnd());
        QObject* dialog = window_->findChild<QObject*>(QStringLiteral("restoreConfirmation"));
        QTRY_VERIFY(dialog->property("opened").toBool());
        settle();
        QVERIFY(window_->grabWindow().save(folder + "/backup-restore-confirmation.png"));
        QTest::keyClick(window_, Qt::Key_Escape);
        QTRY_VERIFY(!dialog->property("visible").toBool());
        VxZoom::instance()->setLevel(200);
        settle();
        QVERIFY(window_->grabWindow().save(folder + "/backup-zoom-200.png"));
        VxZoom::instance()->actualSize();
    }
};

int main(int argc, char** argv) {
    QTemporaryDir home;
    quarrydex::test::prepareQuickTestProcess(home.path());

    QGuiApplication app(argc, argv);
    quarrydex::ui::installKit();
    const fs::path root = home.path().toStdString();
    auto library = std::make_shared<const SpecimenLibrary>(SpecimenLibrary::bundled());
    AppModel model(library, root / "data");
    quarrydex::ui::registerModel(&model);

    BackupScreenTest test(model, root / "FIELD STICK");
    return QTest::qExec(&test, argc, argv);
}

#include "backup_screen_test.moc"
