#include "app/backup_controller.h"

#include "backup/backup_archive.h"
#include "backup/restore_report.h"
#include "library/specimen_library.h"
#include "store/stone_store.h"

#include <QDir>
#include <QLocale>
#include <QSettings>
#include <QStandardPaths>
#include <QThread>
#include <QVariantMap>
#include <sys/resource.h>
#include <unistd.h>

namespace quarrydex {
namespace fs = std::filesystem;

namespace {

fs::path localPath(const QUrl& url) {
    QString path = url.isLocalFile() ? url.toLocalFile() : url.toString();
    return fs::path(path.toStdString());
}

fs::path localPath(const QString& text) {
    QUrl url(text);
    return localPath(url.isLocalFile() ? url : QUrl::fromLocalFile(text));
}

QString displayDate(const QDateTime& when) {
    return QLocale(QLocale::English)
        .toString(when.toLocalTime(), QStringLiteral("d MMM yyyy, HH:mm"));
}

QString plural(qint64 n, const char* one, const char* many) {
    return QString::number(n) + QLatin1Char(' ') + QString::fromLatin1(n == 1 ? one : many);
}

QString backupFailure(const std::string& description) {
    return QStringLiteral("Backup failed: ") + QString::fromStdString(description) +
           QStringLiteral(". Check the drive isn't full or locked.");
}

} // namespace

BackupController::BackupController(StoneStore& store, const SpecimenLibrary& library,
                                   QObject* parent)
    : QObject(parent), store_(store), library_(library),
      driveLister_([] { return DriveInfo::external(); }) {
    pollTimer_.setInterval(50);
    connect(&pollTimer_, &QTimer::timeout, this, &BackupController::pollProgress);
    // "How long ago" moves on while the screen is open.
    ageTimer_.setInterval(60 * 1000);
    connect(&ageTimer_, &QTimer::timeout, this, &BackupController::lastBackupChanged);
    ageTimer_.start();
    refreshDrives();
}

BackupController::~BackupController() {
    if (worker_) {
        job_->cancelRequested = true;
        worker_->wait();
        delete worker_;
        worker_ = nullptr;
        if (operation_ == QLatin1String("backup")) {
            store_.releasePhotoFiles();
        }
    }
    // The staging folder and what is left in it go with the staged backup.
    staged_.reset();
}

void BackupController::setDriveLister(DriveLister lister) {
    driveLister_ = std::move(lister);
    refreshDrives();
}

QString BackupController::noDriveText() {
    return QStringLiteral("No external drive found. Plug in a USB or Lightning/USB-C flash drive "
                          "and press Refresh, or use “Save Backup As…” below.");
}

void BackupController::refreshDrives() {
    QVariantList list;
    for (const DriveInfo& drive : driveLister_()) {
        QVariantMap row;
        row.insert(QStringLiteral("name"), QString::fromStdString(drive.name));
        row.insert(QStringLiteral("path"), QString::fromStdString(drive.url.string()));
        row.insert(QStringLiteral("detail"), QString::fromStdString(drive.detail));
        list.append(row);
    }
    drives_ = list;
    Q_EMIT drivesChanged();
}

QString BackupController::suggestedBackupName() const {
    return QString::fromStdString(
               BackupCodec::defaultFilename("Quarrydex Backup", Timestamp::now())) +
           QStringLiteral(".json");
}

QString BackupController::suggestedCsvName() const {
    return QStringLiteral("Quarrydex Collection.csv");
}

static QUrl inDocuments(const QString& name) {
    QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (folder.isEmpty()) {
        folder = QDir::homePath();
    }
    return QUrl::fromLocalFile(QDir(folder).filePath(name));
}

QUrl BackupController::suggestedBackupFile() const {
    return inDocuments(suggestedBackupName());
}

QUrl BackupController::suggestedCsvFile() const {
    return inDocuments(suggestedCsvName());
}

bool BackupController::start(const QString& operation, const QString& text,
                             std::function<void(JobProgress&)> work, std::function<void()> done) {
    if (busy()) {
        return false;
    }
    job_ = std::make_shared<JobProgress>();
    operation_ = operation;
    progress_ = 0;
    progressText_ = text;
    clearMessage();
    worker_ = QThread::create([hook = workerHook_, work = std::move(work), job = job_] {
        // Behind the window in the queue for the processor, so it answers at once even on a
        // busy machine; the work still gets every cycle the window leaves.
        ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), 10);
        if (hook) {
            hook();
        }
        work(*job);
    });
    connect(worker_, &QThread::finished, this, [this, done = std::move(done)] {
        worker_->wait();
        delete worker_;
        worker_ = nullptr;
        pollTimer_.stop();
        pollProgress();
        done();
    });
    Q_EMIT busyChanged();
    Q_EMIT progressChanged();
    pollTimer_.start();
    worker_->start();
    return true;
}

void BackupController::pollProgress() {
    if (!job_) {
        return;
    }
    double fraction = job_->fraction();
    QString text = progressText_;
    if (operation_ == QLatin1String("backup")) {
        text = job_->stage.load() == 0 ? QStringLiteral("Writing the backup…")
                                       : QStringLiteral("Reading the backup back to verify it…");
    }
    if (fraction != progress_ || text != progressText_) {
        progress_ = fraction;
        progressText_ = text;
        Q_EMIT progressChanged();
    }
}

void BackupController::setMessage(const QString& message, bool isError) {
    message_ = message;
    messageIsError_ = isError;
    Q_EMIT messageChanged();
}

void BackupController::clearMessage() {
    if (!message_.isEmpty()) {
        setMessage({}, false);
    }
}

void BackupController::endOperation(bool ok) {
    QString operation = operation_;
    operation_.clear();
    progressText_.clear();
    Q_EMIT busyChanged();
    Q_EMIT progressChanged();
    Q_EMIT finished(operation, ok);
}

void BackupController::cancel() {
    if (job_ && busy()) {
        job_->cancelRequested = true;
    }
}

bool BackupController::startBackup(
    std::function<JobOutcome(const BackupSnapshot&, JobProgress&)> write) {
    if (busy()) {
        return false;
    }
    // The copy of the records is taken here, on the store's thread; the photo files are held
    // until the worker is done with them.
    auto snapshot =
        std::make_shared<BackupSnapshot>(BackupSnapshot::take(store_, Timestamp::now()));
    auto outcome = std::make_shared<JobOutcome>();
    store_.holdPhotoFiles();
    return start(
        QStringLiteral("backup"), QStringLiteral("Writing the backup…"),
        [snapshot, outcome, write = std::move(write)](JobProgress& progress) {
            *outcome = write(*snapshot, progress);
        },
        [this, outcome] {
            store_.releasePhotoFiles();
            switch (outcome->kind) {
            case JobOutcome::Kind::done: {
                QString file = QString::fromStdString(outcome->file.string());
                recordLastBackup(file);
                setMessage(QStringLiteral("Backed up and verified: ") + file, false);
                endOperation(true);
                return;
            }
            case JobOutcome::Kind::failed:
                setMessage(backupFailure(outcome->message), true);
                break;
            case JobOutcome::Kind::cancelled:
                setMessage(QStringLiteral("Backup cancelled. No backup file was left behind."),
                           false);
                break;
            }
            endOperation(false);
        });
}

bool BackupController::backUpToDrive(const QString& path) {
    fs::path drive = localPath(path);
    return startBackup(
        [drive, options = writeOptions_](const BackupSnapshot& snapshot, JobProgress& progress) {
            return writeBackupToDrive(snapshot, drive, progress, options);
        });
}

bool BackupController::saveBackupAs(const QUrl& file) {
    fs::path target = localPath(file);
    return startBackup(
        [target, options = writeOptions_](const BackupSnapshot& snapshot, JobProgress& progress) {
            return writeVerifiedBackup(snapshot, target, progress, options);
        });
}

void BackupController::recordLastBackup(const QString& file) {
    QSettings settings;
    settings.setValue(QLatin1String(lastBackupDateKey),
                      QDateTime::currentDateTimeUtc().toString(Qt::ISODate));
    settings.setValue(QLatin1String(lastBackupFileKey), file);
    Q_EMIT lastBackupChanged();
}

bool BackupController::hasLastBackup() const {
    return QSettings().contains(QLatin1String(lastBackupDateKey));
}

QString BackupController::lastBackupWhen() const {
    QDateTime when = QDateTime::fromString(
        QSettings().value(QLatin1String(lastBackupDateKey)).toString(), Qt::ISODate);
    return when.isValid() ? displayDate(when) : QString();
}

QString BackupController::lastBackupWhere() const {
    return QSettings().value(QLatin1String(lastBackupFileKey)).toString();
}

QString BackupController::lastBackupAge() const {
    QDateTime when = QDateTime::fromString(
        QSettings().value(QLatin1String(lastBackupDateKey)).toString(), Qt::ISODate);
    return when.isValid() ? ageText(when, QDateTime::currentDateTimeUtc()) : QString();
}

bool BackupController::backupDue() const {
    QDateTime when = QDateTime::fromString(
        QSettings().value(QLatin1String(lastBackupDateKey)).toString(), Qt::ISODate);
    return !when.isValid() ||
           when.secsTo(QDateTime::currentDateTimeUtc()) > qint64(dueAfterDays) * 24 * 3600;
}

QString BackupController::ageText(const QDateTime& then, const QDateTime& now) {
    qint64 seconds = then.secsTo(now);
    if (seconds < 60) {
        return QStringLiteral("just now");
    }
    qint64 minutes = seconds / 60;
    if (minutes < 60) {
        return plural(minutes, "minute", "minutes") + QStringLiteral(" ago");
    }
    qint64 hours = minutes / 60;
    if (hours < 24) {
        return plural(hours, "hour", "hours") + QStringLiteral(" ago");
    }
    qint64 days = hours / 24;
    if (days < 60) {
        return plural(days, "day", "days") + QStringLiteral(" ago");
    }
    return plural(days / 30, "month", "months") + QStringLiteral(" ago");
}

bool BackupController::readBackup(const QUrl& file) {
    if (busy()) {
        return false;
    }
    discardRestore();
    fs::path source = localPath(file);
    // The photos are staged inside the data folder, on the same disk as the photo folder,
    // so that confirming moves them there rather than copying them.
    fs::path stagingParent = store_.root();
    AtomicFile::Options options = store_.saveOptions();
    auto result = std::make_shared<std::optional<BackupResult<StagedBackup>>>();
    return start(
        QStringLiteral("reading"), QStringLiteral("Reading the backup…"),
        [source, stagingParent, options, result](JobProgress&) {
            result->emplace(BackupCodec::decodeFile(source, stagingParent, options));
            // Flushed here so that the flush when they are moved in finds little to do; a
            // failure shows again then, where it is reported.
            if (**result) {
                (void)(**result)->flush();
            }
        },
        [this, result] {
            BackupResult<StagedBackup>& read = **result;
            if (job_->cancelled()) {
                if (read) {
                    staged_ = std::make_shared<StagedBackup>(std::move(*read));
                    dropStaged();
                }
                setMessage(QStringLiteral("Restore cancelled. Nothing was added."), false);
                endOperation(false);
                return;
            }
            if (!read) {
                setMessage(QString::fromStdString(read.error().description()), true);
                endOperation(false);
                return;
            }
            staged_ = std::make_shared<StagedBackup>(std::move(*read));
            const BackupArchive& archive = staged_->archive();
            preview_ = BackupCodec::preview(archive, store_);
            QDateTime made = QDateTime::fromSecsSinceEpoch(
                qint64(archive.createdAt.sinceReference + Timestamp::unixOfReference), Qt::UTC);
            const qint64 pieces = qint64(archive.items.size());
            const qint64 history = archive.history ? qint64(archive.history->size()) : 0;
            const qint64 favorites = archive.favorites ? qint64(archive.favorites->size()) : 0;
            restoreHoldsText_ =
                QStringLiteral("A backup made ") + displayDate(made) + QStringLiteral(" holding ") +
                plural(pieces, "piece", "pieces") + QStringLiteral(", ") +
                plural(history, "history entry", "history entries") + QStringLiteral(" and ") +
                plural(favorites, "favourite", "favourites") + QStringLiteral(".");
            restoreAddsText_ = plural(preview_->collectionAdded, "new piece", "new pieces") +
                               QStringLiteral(", ") + QString::number(preview_->skippedExisting) +
                               QStringLiteral(" already here, ") +
                               plural(preview_->historyAdded, "history entry", "history entries") +
                               QStringLiteral(", ") +
                               plural(preview_->favoritesAdded, "favourite", "favourites");
            Q_EMIT restorePendingChanged();
            endOperation(true);
        });
}

bool BackupController::restoreAddsAnything() const {
    return preview_ &&
           (preview_->collectionAdded + preview_->historyAdded + preview_->favoritesAdded) > 0;
}

bool BackupController::confirmRestore() {
    if (busy() || !staged_) {
        return false;
    }
    // The photos were decoded and flushed on the worker; what is left is moving them into the
    // photo folder (renames on the same disk), one flush, the merge and one save. That needs
    // the store, so it runs here, once the screen has shown that the restore started.
    std::shared_ptr<StagedBackup> staged = std::move(staged_);
    job_ = std::make_shared<JobProgress>();
    operation_ = QStringLiteral("restore");
    progress_ = 0;
    progressText_ = QStringLiteral("Restoring…");
    clearMessage();
    restoreHoldsText_.clear();
    restoreAddsText_.clear();
    preview_.reset();
    Q_EMIT restorePendingChanged();
    Q_EMIT busyChanged();
    Q_EMIT progressChanged();
    QMetaObject::invokeMethod(
        this,
        [this, job = job_, staged = std::move(staged)]() mutable {
            if (job->cancelled()) {
                removeInBackground(std::move(staged));
                setMessage(QStringLiteral("Restore cancelled. Nothing was added."), false);
                endOperation(false);
                return;
            }
            // Only this restore's problems are reported with its outcome.
            store_.clearLastError();
            RestoreReport report = BackupCodec::restore(*staged, store_);
            // What was not moved in (records already here) goes with the staging folder.
            removeInBackground(std::move(staged));
            progress_ = 1;
            QString summary = QString::fromStdString(report.summary());
            if (store_.lastError()) {
                // The records are in; the store says what went wrong with their photos or
                // their saving.
                QString problem = QString::fromStdString(*store_.lastError());
                if (!problem.endsWith(QLatin1Char('.'))) {
                    problem += QLatin1Char('.');
                }
                setMessage(summary + QLatin1Char(' ') + problem, true);
            } else {
                setMessage(summary, false);
            }
            endOperation(true);
        },
        Qt::QueuedConnection);
    return true;
}

void BackupController::removeInBackground(std::shared_ptr<StagedBackup> staged) {
    if (!staged) {
        return;
    }
    // Removing the staging folder's files can take a while: it happens on a thread of its own.
    QThread* cleaner = QThread::create([staged = std::move(staged)]() mutable { staged.reset(); });
    connect(cleaner, &QThread::finished, cleaner, &QObject::deleteLater);
    cleaner->start();
}

void BackupController::dropStaged() {
    removeInBackground(std::move(staged_));
    preview_.reset();
}

void BackupController::discardRestore() {
    if (!staged_) {
        return;
    }
    dropStaged();
    restoreHoldsText_.clear();
    restoreAddsText_.clear();
    Q_EMIT restorePendingChanged();
}

bool BackupController::exportCsv(const QUrl& file) {
    // The text is made here from the store (well under a millisecond per hundred pieces);
    // the worker only writes it.
    auto text = std::make_shared<std::string>(BackupCodec::csv(store_, library_));
    fs::path target = localPath(file);
    auto outcome = std::make_shared<JobOutcome>();
    return start(
        QStringLiteral("export"), QStringLiteral("Exporting the collection…"),
        [text, target, outcome](JobProgress& progress) {
            *outcome = writeTextFile(*text, target, progress);
        },
        [this, outcome] {
            switch (outcome->kind) {
            case JobOutcome::Kind::done:
                setMessage(QStringLiteral("Exported the collection to ") +
                               QString::fromStdString(outcome->file.string()),
                           false);
                endOperation(true);
                return;
            case JobOutcome::Kind::failed:
                setMessage(QStringLiteral("Export failed: ") +
                               QString::fromStdString(outcome->message),
                           true);
                break;
            case JobOutcome::Kind::cancelled:
                setMessage(QStringLiteral("Export cancelled."), false);
                break;
            }
            endOperation(false);
        });
}

} // namespace quarrydex
