// The backup screen's controller over a private data root and folder "drives": backups to a
// drive and to a chosen file with verification, their failures and cancel, the snapshot a
// backup works from, restore with its preview and confirmation, CSV export, and the last
// verified backup kept in the settings.

#include "app/app_model.h"
#include "backup/backup_archive.h"
#include "identify/image_tools.h"
#include "samples/sample_set.h"
#include "support/sample_files.h"
#include "support/specimens.h"
#include "support/temp_dir.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QSemaphore>
#include <QSettings>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <cstring>
#include <filesystem>
#include <unistd.h>

using namespace quarrydex;
using test::TempDir;
namespace fs = std::filesystem;

namespace {

const QString kDriveAdvice = QStringLiteral(". Check the drive isn't full or locked.");

std::shared_ptr<const SpecimenLibrary> library() {
    return std::make_shared<const SpecimenLibrary>(test::numberedSpecimens(3));
}

struct Fixture {
    Fixture() : model(library(), dir / "data", std::nullopt) {
        QSettings().clear();
        drive = dir / "STICK";
        fs::create_directories(drive);
        backup().setDriveLister([this] {
            std::vector<DriveInfo> drives;
            if (fs::exists(drive)) {
                drives.push_back({drive, "STICK", drive.string() + " · 12.3 GB free"});
            }
            return drives;
        });
    }

    BackupController& backup() { return *model.backup(); }
    StoneStore& store() { return model.store(); }

    // A piece with a photo of its own, named `name`.
    CollectionEntry addPiece(const std::string& name, const RGB& color = {0.5, 0.3, 0.7}) {
        CollectionEntry entry;
        entry.name = name;
        entry.location = "Quarry road";
        entry.specimenID = "s1";
        entry.photoFile = store().storePhoto(test::jpegOf(color), entry.id);
        store().add(entry);
        return entry;
    }

    // Runs `start` and waits for the operation to end; returns whether it succeeded.
    template <class Start> bool run(Start start) {
        QSignalSpy finished(&backup(), &BackupController::finished);
        if (!start()) {
            return false;
        }
        if (!finished.wait(20000)) {
            qWarning("operation did not finish");
            return false;
        }
        return finished.first().at(1).toBool();
    }

    std::vector<fs::path> backupsOnDrive() const {
        std::vector<fs::path> files;
        std::error_code ec;
        for (const auto& item : fs::directory_iterator(drive / "Quarrydex Backups", ec)) {
            files.push_back(item.path());
        }
        return files;
    }

    // The hidden folders a backup being read stages its photos in, inside the data folder.
    std::size_t stagingFolders() {
        std::size_t count = 0;
        for (const auto& e : fs::directory_iterator(dir / "data")) {
            const std::string name = e.path().filename().string();
            count += name.starts_with(".") && name != ".undo" ? 1 : 0;
        }
        return count;
    }

    TempDir dir;
    fs::path drive;
    AppModel model;
};

QUrl urlOf(const fs::path& path) {
    return QUrl::fromLocalFile(QString::fromStdString(path.string()));
}

} // namespace

class BackupControllerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void drives_are_listed_with_name_path_and_free_space_and_refresh_reads_them_again() {
        Fixture f;
        QCOMPARE(f.backup().drives().size(), 1);
        QVariantMap row = f.backup().drives().first().toMap();
        QCOMPARE(row.value("name").toString(), QStringLiteral("STICK"));
        QCOMPARE(row.value("path").toString(), QString::fromStdString(f.drive.string()));
        QVERIFY(row.value("detail").toString().endsWith(QStringLiteral(" · 12.3 GB free")));

        fs::remove_all(f.drive);
        QSignalSpy changed(&f.backup(), &BackupController::drivesChanged);
        f.backup().refreshDrives();
        QCOMPARE(changed.count(), 1);
        QVERIFY(f.backup().drives().isEmpty());
        QCOMPARE(BackupController::noDriveText(),
                 QStringLiteral("No external drive found. Plug in a USB or Lightning/USB-C flash "
                                "drive and press Refresh, or use “Save Backup As…” below."));
    }

    void a_backup_to_a_drive_is_verified_in_its_backup_folder_and_remembered() {
        Fixture f;
        CollectionEntry piece = f.addPiece("Amethyst");
        f.addPiece("");
        f.store().toggleFavorite("s2");
        QVERIFY(!f.backup().hasLastBackup());
        QVERIFY(f.backup().backupDue());

        QVERIFY(f.run(
            [&] { return f.backup().backUpToDrive(QString::fromStdString(f.drive.string())); }));
        std::vector<fs::path> files = f.backupsOnDrive();
        QCOMPARE(files.size(), std::size_t(1));
        const QString path = QString::fromStdString(files[0].string());
        QVERIFY(files[0].filename().string().starts_with("Quarrydex Backup "));
        QVERIFY(files[0].filename().string().ends_with(".json"));
        QCOMPARE(f.backup().message(), QStringLiteral("Backed up and verified: ") + path);
        QVERIFY(!f.backup().messageIsError());
        QCOMPARE(f.backup().progress(), 1.0);

        BackupResult<BackupArchive> read = BackupCodec::decode(test::readFile(files[0]));
        QVERIFY(read.ok());
        QCOMPARE(read->items.size(), std::size_t(2));
        QCOMPARE(read->items[1].name, piece.name);
        QCOMPARE(read->items[1].photo, f.store().photoData(piece.photoFile));
        QCOMPARE(*read->favorites, std::vector<std::string>{"s2"});

        QVERIFY(f.backup().hasLastBackup());
        QCOMPARE(f.backup().lastBackupWhere(), path);
        QCOMPARE(f.backup().lastBackupAge(), QStringLiteral("just now"));
        QVERIFY(!f.backup().lastBackupWhen().isEmpty());
        QVERIFY(!f.backup().backupDue());
        QCOMPARE(QSettings().value(BackupController::lastBackupFileKey).toString(), path);
    }

    void save_backup_as_writes_the_chosen_file_and_suggests_a_dated_name() {
        Fixture f;
        f.addPiece("Agate");
        QVERIFY(QRegularExpression(
                    QStringLiteral(
                        "^Quarrydex Backup \\d{4}-\\d\\d-\\d\\d \\d\\d\\.\\d\\d\\.\\d\\d\\.json$"))
                    .match(f.backup().suggestedBackupName())
                    .hasMatch());
        QCOMPARE(f.backup().suggestedCsvName(), QStringLiteral("Quarrydex Collection.csv"));

        fs::path target = f.dir / "elsewhere" / "mine.json";
        fs::create_directories(target.parent_path());
        QVERIFY(f.run([&] { return f.backup().saveBackupAs(urlOf(target)); }));
        QCOMPARE(f.backup().message(), QStringLiteral("Backed up and verified: ") +
                                           QString::fromStdString(target.string()));
        QVERIFY(BackupCodec::decode(test::readFile(target)).ok());
    }

    void a_drive_that_vanished_is_locked_or_fills_up_fails_with_the_drive_advice_and_no_file() {
        {
            Fixture f;
            f.addPiece("Jasper");
            fs::remove_all(f.drive); // unplugged after the list was read
            QVERIFY(!f.run([&] {
                return f.backup().backUpToDrive(QString::fromStdString(f.drive.string()));
            }));
            QCOMPARE(f.backup().message(), QStringLiteral("Backup failed: ") +
                                               QString::fromLocal8Bit(std::strerror(ENOENT)) +
                                               kDriveAdvice);
            QVERIFY(f.backup().messageIsError());
            QVERIFY(!fs::exists(f.drive)); // not recreated on the disk underneath
            QVERIFY(!f.backup().hasLastBackup());
        }
        {
            Fixture f;
            f.addPiece("Jasper");
            // A place this process cannot write: a read-only folder, or for root (whom
            // permissions do not stop) a kernel file system that refuses new folders.
            fs::path locked = f.drive;
            if (::geteuid() == 0) {
                locked = "/sys/fs";
            } else {
                fs::permissions(f.drive, fs::perms(0555));
            }
            QVERIFY(!f.run(
                [&] { return f.backup().backUpToDrive(QString::fromStdString(locked.string())); }));
            QVERIFY(f.backup().message().startsWith(QStringLiteral("Backup failed: ")));
            QVERIFY(f.backup().message().endsWith(kDriveAdvice));
            fs::permissions(f.drive, fs::perms(0755));
            QVERIFY(f.backupsOnDrive().empty());
        }
        {
            Fixture f;
            f.addPiece("Jasper");
            f.backup().setWriteOptions({.failAfterBytes = 1000, .freeSpace = nullptr});
            QVERIFY(!f.run([&] {
                return f.backup().backUpToDrive(QString::fromStdString(f.drive.string()));
            }));
            QCOMPARE(f.backup().message(), QStringLiteral("Backup failed: ") +
                                               QString::fromLocal8Bit(std::strerror(ENOSPC)) +
                                               kDriveAdvice);
            QVERIFY(f.backupsOnDrive().empty()); // neither the file nor a temporary one
        }
    }

    void cancelling_a_backup_leaves_no_file_on_the_drive() {
        Fixture f;
        f.addPiece("Opal");
        QSemaphore go;
        f.backup().setWorkerHook([&] { go.acquire(); });
        QSignalSpy finished(&f.backup(), &BackupController::finished);
        QVERIFY(f.backup().backUpToDrive(QString::fromStdString(f.drive.string())));
        QVERIFY(f.backup().busy());
        QCOMPARE(f.backup().operation(), QStringLiteral("backup"));
        QVERIFY(!f.backup().saveBackupAs(urlOf(f.dir / "x.json"))); // one at a time
        f.backup().cancel();
        go.release();
        QVERIFY(finished.wait(20000));
        QCOMPARE(finished.first().at(1).toBool(), false);
        QVERIFY(!f.backup().busy());
        QCOMPARE(f.backup().message(),
                 QStringLiteral("Backup cancelled. No backup file was left behind."));
        QVERIFY(f.backupsOnDrive().empty());
        QVERIFY(!f.backup().hasLastBackup());
    }

    void a_backup_holds_the_store_as_it_was_when_it_started() {
        Fixture f;
        CollectionEntry gone = f.addPiece("Deleted while backing up");
        const fs::path photo = f.store().photosFolder() / *gone.photoFile;
        QSemaphore go;
        f.backup().setWorkerHook([&] { go.acquire(); });
        QSignalSpy finished(&f.backup(), &BackupController::finished);
        QVERIFY(f.backup().backUpToDrive(QString::fromStdString(f.drive.string())));
        f.store().deleteEntry(gone.id);
        f.addPiece("Added while backing up");
        QVERIFY(fs::exists(photo)); // held for the backup
        go.release();
        QVERIFY(finished.wait(20000));
        QCOMPARE(finished.first().at(1).toBool(), true);

        BackupResult<BackupArchive> read =
            BackupCodec::decode(test::readFile(f.backupsOnDrive()[0]));
        QVERIFY(read.ok());
        QCOMPARE(read->items.size(), std::size_t(1));
        QCOMPARE(read->items[0].id, gone.id);
        QVERIFY(read->items[0].photo.has_value());
        // Released again: the next change lets the unused photo go.
        f.store().toggleFavorite("s1");
        QVERIFY(!fs::exists(photo));
    }

    void a_restore_shows_what_it_would_add_and_changes_nothing_until_confirmed() {
        Fixture source;
        CollectionEntry shared = source.addPiece("Shared piece");
        CollectionEntry fresh = source.addPiece("Fresh piece", {0.1, 0.6, 0.2});
        HistoryEntry past;
        past.answers = {"Photo color"};
        past.level = "possible";
        source.store().addHistory(past);
        source.store().toggleFavorite("s0");
        fs::path file = source.dir / "backup.json";
        QVERIFY(source.run([&] { return source.backup().saveBackupAs(urlOf(file)); }));

        Fixture f;
        CollectionEntry own = shared;
        own.photoFile.reset();
        f.store().add(own);
        QVERIFY(f.run([&] { return f.backup().readBackup(urlOf(file)); }));
        QVERIFY(f.backup().restorePending());
        QVERIFY(f.backup().restoreAddsAnything());
        QCOMPARE(f.backup().restoreAddsText(),
                 QStringLiteral("1 new piece, 1 already here, 1 history entry, 1 favourite"));
        QVERIFY(f.backup().restoreHoldsText().contains(
            QStringLiteral("holding 2 pieces, 1 history entry and 1 favourite.")));
        QCOMPARE(f.store().collection().size(), std::size_t(1));
        QVERIFY(f.store().history().empty());

        QVERIFY(f.run([&] { return f.backup().confirmRestore(); }));
        QVERIFY(!f.backup().restorePending());
        QCOMPARE(f.backup().message(),
                 QStringLiteral("Restored 1 collection item(s), 1 history entry and 1 favorite(s). "
                                "1 item(s) were already here and were left untouched."));
        QCOMPARE(f.store().collection().size(), std::size_t(2));
        QCOMPARE(f.store().history().size(), std::size_t(1));
        QCOMPARE(f.store().favorites(), std::vector<std::string>{"s0"});
        auto it = std::find_if(f.store().collection().begin(), f.store().collection().end(),
                               [&](const CollectionEntry& e) { return e.id == fresh.id; });
        QVERIFY(it != f.store().collection().end());
        QCOMPARE(f.store().photoData(it->photoFile), source.store().photoData(fresh.photoFile));
        // No staging folder is left in the data root.
        QTRY_COMPARE(f.stagingFolders(), std::size_t(0));

        // Again: nothing new, said so.
        QVERIFY(f.run([&] { return f.backup().readBackup(urlOf(file)); }));
        QVERIFY(!f.backup().restoreAddsAnything());
        QVERIFY(f.run([&] { return f.backup().confirmRestore(); }));
        QCOMPARE(f.backup().message(), QStringLiteral("Nothing new to restore — everything in this "
                                                      "backup is already here (3 items checked)."));
    }

    // The records still come back, without the photos, and the message says why.
    void a_restore_whose_photos_cannot_be_moved_in_restores_the_records_and_says_why() {
        Fixture source;
        source.addPiece("First");
        source.addPiece("Second");
        fs::path file = source.dir / "backup.json";
        QVERIFY(source.run([&] { return source.backup().saveBackupAs(urlOf(file)); }));

        Fixture f;
        QVERIFY(f.run([&] { return f.backup().readBackup(urlOf(file)); }));
        // The photo folder turns into a file: no photo can be put there any more.
        fs::remove_all(f.store().photosFolder());
        test::writeFile(f.store().photosFolder(), "not a folder");
        QVERIFY(f.run([&] { return f.backup().confirmRestore(); }));
        QVERIFY(f.backup().message().startsWith(
            QStringLiteral("Restored 2 collection item(s), 0 history entries and 0 favorite(s). "
                           "0 item(s) were already here and were left untouched. "
                           "Couldn't save the photo: ")));
        QVERIFY(f.backup().messageIsError());
        QCOMPARE(f.store().collection().size(), std::size_t(2));
        for (const CollectionEntry& entry : f.store().collection()) {
            QVERIFY(!entry.photoFile);
        }
        QCOMPARE(test::readFile(f.store().photosFolder()), std::string("not a folder"));
        QTRY_COMPARE(f.stagingFolders(), std::size_t(0));
    }

    void a_restored_photo_never_replaces_a_file_already_in_the_photo_folder() {
        Fixture source;
        CollectionEntry piece = source.addPiece("Traveller");
        fs::path file = source.dir / "backup.json";
        QVERIFY(source.run([&] { return source.backup().saveBackupAs(urlOf(file)); }));

        Fixture f;
        const fs::path squatter = f.store().photosFolder() / (piece.id.text() + ".jpg");
        test::writeFile(squatter, "someone else's file");
        QVERIFY(f.run([&] { return f.backup().readBackup(urlOf(file)); }));
        QVERIFY(f.run([&] { return f.backup().confirmRestore(); }));
        QCOMPARE(test::readFile(squatter), std::string("someone else's file"));
        const CollectionEntry& restored = f.store().collection()[0];
        QVERIFY(restored.photoFile && *restored.photoFile != squatter.filename().string());
        QCOMPARE(f.store().photoData(restored.photoFile),
                 source.store().photoData(piece.photoFile));
    }

    void a_read_backup_that_is_not_confirmed_adds_nothing() {
        Fixture source;
        source.addPiece("Kept out");
        fs::path file = source.dir / "backup.json";
        QVERIFY(source.run([&] { return source.backup().saveBackupAs(urlOf(file)); }));

        Fixture f;
        QVERIFY(f.run([&] { return f.backup().readBackup(urlOf(file)); }));
        QCOMPARE(f.stagingFolders(), std::size_t(1));
        f.backup().discardRestore();
        QVERIFY(!f.backup().restorePending());
        QVERIFY(!f.backup().confirmRestore());
        QVERIFY(f.store().collection().empty());
        QVERIFY(test::namesIn(f.store().photosFolder()).empty());
        QTRY_COMPARE(f.stagingFolders(), std::size_t(0));
    }

    void a_restore_cancelled_before_it_starts_adds_nothing_and_leaves_nothing() {
        Fixture source;
        source.addPiece("Kept out");
        fs::path file = source.dir / "backup.json";
        QVERIFY(source.run([&] { return source.backup().saveBackupAs(urlOf(file)); }));

        Fixture f;
        QVERIFY(f.run([&] { return f.backup().readBackup(urlOf(file)); }));
        QSignalSpy finished(&f.backup(), &BackupController::finished);
        QVERIFY(f.backup().confirmRestore());
        QVERIFY(f.backup().busy());
        QCOMPARE(f.backup().operation(), QStringLiteral("restore"));
        QVERIFY(!f.backup().restorePending());
        f.backup().cancel();
        QVERIFY(finished.wait(20000));
        QCOMPARE(finished.first().at(1).toBool(), false);
        QCOMPARE(f.backup().message(), QStringLiteral("Restore cancelled. Nothing was added."));
        QVERIFY(f.store().collection().empty());
        QTRY_COMPARE(f.stagingFolders(), std::size_t(0));
    }

    void files_that_are_not_backups_are_refused_with_their_message_and_change_nothing() {
        Fixture f;
        f.addPiece("Mine");
        const auto before = f.store().collection();
        fs::path truncated = f.dir / "truncated.json";
        {
            Fixture source;
            source.addPiece("Whole");
            fs::path whole = source.dir / "whole.json";
            QVERIFY(source.run([&] { return source.backup().saveBackupAs(urlOf(whole)); }));
            std::string bytes = test::readFile(whole);
            test::writeFile(truncated, bytes.substr(0, bytes.size() / 2));
        }
        fs::path text = f.dir / "notes.json";
        test::writeFile(text, "just some words");
        const std::vector<std::pair<fs::path, QString>> cases = {
            {test::fixture("backup/other-app.json"),
             QStringLiteral("That file isn't a Quarrydex backup.")},
            {test::fixture("backup/newer-version.json"),
             QStringLiteral("This backup was made by a newer version of Quarrydex (format 99). "
                            "Update the app to restore it.")},
            {text, QStringLiteral("That file isn't a Quarrydex backup.")},
            {truncated, QStringLiteral("That file isn't a Quarrydex backup.")},
            {f.dir / "missing.json", QStringLiteral("The backup couldn't be read: ") +
                                         QString::fromLocal8Bit(std::strerror(ENOENT))},
        };
        for (const auto& [file, message] : cases) {
            QVERIFY(!f.run([&] { return f.backup().readBackup(urlOf(file)); }));
            QCOMPARE(f.backup().message(), message);
            QVERIFY(f.backup().messageIsError());
            QVERIFY(!f.backup().restorePending());
        }
        QVERIFY(f.store().collection() == before);
    }

    void the_collection_exports_as_csv_and_a_failed_export_says_why() {
        Fixture f;
        f.addPiece("Quartz, clear");
        fs::path target = f.dir / "Quarrydex Collection.csv";
        QVERIFY(f.run([&] { return f.backup().exportCsv(urlOf(target)); }));
        QCOMPARE(test::readFile(target), BackupCodec::csv(f.store(), f.model.library()));
        QVERIFY(f.backup().message().startsWith(QStringLiteral("Exported the collection to ")));

        QVERIFY(
            !f.run([&] { return f.backup().exportCsv(urlOf(f.dir / "no" / "such" / "x.csv")); }));
        QVERIFY(f.backup().message().startsWith(QStringLiteral("Export failed: ")));
        QVERIFY(f.backup().messageIsError());
    }

    void how_long_ago_reads_in_the_largest_whole_unit() {
        const QDateTime then =
            QDateTime::fromString(QStringLiteral("2026-10-18T12:00:00Z"), Qt::ISODate);
        const std::vector<std::pair<qint64, QString>> cases = {
            {59, QStringLiteral("just now")},
            {60, QStringLiteral("1 minute ago")},
            {3599, QStringLiteral("59 minutes ago")},
            {3600, QStringLiteral("1 hour ago")},
            {86399, QStringLiteral("23 hours ago")},
            {86400, QStringLiteral("1 day ago")},
            {59 * 86400, QStringLiteral("59 days ago")},
            {90 * 86400, QStringLiteral("3 months ago")},
        };
        for (const auto& [seconds, text] : cases) {
            QCOMPARE(BackupController::ageText(then, then.addSecs(seconds)), text);
        }
    }
};

int main(int argc, char** argv) {
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.path().toUtf8());
    QStandardPaths::setTestModeEnabled(true);
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, home.path());
    QCoreApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("FernwickTest"));
    QCoreApplication::setApplicationName(QStringLiteral("QuarrydexBackupTest"));
    ImageTools::initialize();
    BackupControllerTest test;
    int status = QTest::qExec(&test, argc, argv);
    ImageTools::shutdown();
    return status;
}

#include "backup_controller_test.moc"
