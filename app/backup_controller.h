#pragma once
// What the backup screen shows and does: the external drives, backing up to a drive or to
// a chosen file with verification, restoring a backup after showing what it would add,
// exporting the collection as CSV, and when the last verified backup was made.
//
// Every slow file operation runs on a worker thread, one at a time, with a determinate
// progress and a cancel. The store is never read from the worker: each operation copies
// what it needs from the store on the main thread first (records without photos, photo file
// names, the CSV text), and a backup holds the store's photo files (no file is deleted
// while it runs) so the photos of that copy stay readable. A restore decodes the file and
// stages its photos on the worker (BackupCodec::decodeFile); once confirmed, the core's
// BackupCodec::restore moves them into the store and merges the records on the main thread
// in one save. Qt Core only; the screen talks to it through properties.

#include "app/backup_job.h"
#include "backup/drive_info.h"
#include "backup/restore_report.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QUrl>
#include <QVariantList>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QThread;

namespace quarrydex {

class SpecimenLibrary;
class StoneStore;

class BackupController : public QObject {
    Q_OBJECT

    // [{name, path, detail}] of the external drives, as of the last refresh.
    Q_PROPERTY(QVariantList drives READ drives NOTIFY drivesChanged)
    // The sentence shown when there is none.
    Q_PROPERTY(QString noDriveText READ noDriveText CONSTANT)

    // An operation is running on the worker; the others are refused meanwhile.
    Q_PROPERTY(bool busy READ busy NOTIFY busyChanged)
    // "backup", "restore", "reading" (a backup file being read) or "export"; "" when idle.
    Q_PROPERTY(QString operation READ operation NOTIFY busyChanged)
    // 0..1 of the running operation.
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
    // What the running operation is doing, e.g. "Writing the backup…".
    Q_PROPERTY(QString progressText READ progressText NOTIFY progressChanged)

    // The outcome of the last operation; "" is none.
    Q_PROPERTY(QString message READ message NOTIFY messageChanged)
    Q_PROPERTY(bool messageIsError READ messageIsError NOTIFY messageChanged)

    // A backup has been read and waits for the user to confirm the restore.
    Q_PROPERTY(bool restorePending READ restorePending NOTIFY restorePendingChanged)
    // "A backup made 18 Oct 2026, 14:05 holding 15 pieces, 40 history entries and 2 favourites."
    Q_PROPERTY(QString restoreHoldsText READ restoreHoldsText NOTIFY restorePendingChanged)
    // "12 new pieces, 3 already here, 40 history entries, 2 favourites"
    Q_PROPERTY(QString restoreAddsText READ restoreAddsText NOTIFY restorePendingChanged)
    // Whether confirming would add anything.
    Q_PROPERTY(bool restoreAddsAnything READ restoreAddsAnything NOTIFY restorePendingChanged)

    // The last verified backup, kept in the settings: when (local time), where (the file),
    // and how long ago. All "" when there has been none.
    Q_PROPERTY(bool hasLastBackup READ hasLastBackup NOTIFY lastBackupChanged)
    Q_PROPERTY(QString lastBackupWhen READ lastBackupWhen NOTIFY lastBackupChanged)
    Q_PROPERTY(QString lastBackupWhere READ lastBackupWhere NOTIFY lastBackupChanged)
    Q_PROPERTY(QString lastBackupAge READ lastBackupAge NOTIFY lastBackupChanged)
    // None yet, or older than a week.
    Q_PROPERTY(bool backupDue READ backupDue NOTIFY lastBackupChanged)

public:
    static constexpr const char* lastBackupDateKey = "quarrydex.lastBackup.date";
    static constexpr const char* lastBackupFileKey = "quarrydex.lastBackup.file";
    static constexpr int dueAfterDays = 7;

    using DriveLister = std::function<std::vector<DriveInfo>()>;

    BackupController(StoneStore& store, const SpecimenLibrary& library, QObject* parent = nullptr);
    // Cancels a running operation and waits for its worker.
    ~BackupController() override;

    // Tests: where drives come from (DriveInfo::external() by default). Refreshes.
    void setDriveLister(DriveLister lister);
    // Tests: run `hook` on the worker before each operation's work (e.g. to wait).
    void setWorkerHook(std::function<void()> hook) { workerHook_ = std::move(hook); }
    // Tests: options for the backup file's writing (e.g. a simulated full disk).
    void setWriteOptions(AtomicFile::Options options) { writeOptions_ = options; }

    QVariantList drives() const { return drives_; }
    static QString noDriveText();
    bool busy() const { return !operation_.isEmpty(); }
    QString operation() const { return operation_; }
    double progress() const { return progress_; }
    QString progressText() const { return progressText_; }
    QString message() const { return message_; }
    bool messageIsError() const { return messageIsError_; }
    bool restorePending() const { return staged_ != nullptr; }
    QString restoreHoldsText() const { return restoreHoldsText_; }
    QString restoreAddsText() const { return restoreAddsText_; }
    bool restoreAddsAnything() const;
    bool hasLastBackup() const;
    QString lastBackupWhen() const;
    QString lastBackupWhere() const;
    QString lastBackupAge() const;
    bool backupDue() const;

    // "3 minutes ago", "2 days ago"... from `then` to `now`; "just now" under a minute.
    static QString ageText(const QDateTime& then, const QDateTime& now);

    Q_INVOKABLE void refreshDrives();
    // "Quarrydex Backup yyyy-MM-dd HH.mm.ss.json" for now, for the save dialog.
    Q_INVOKABLE QString suggestedBackupName() const;
    // "Quarrydex Collection.csv".
    Q_INVOKABLE QString suggestedCsvName() const;
    // Those names in the user's documents folder, for the save dialogs.
    Q_INVOKABLE QUrl suggestedBackupFile() const;
    Q_INVOKABLE QUrl suggestedCsvFile() const;
    // Backs up into "Quarrydex Backups" on the drive mounted at `path` (a path or file URL).
    // False when another operation is running.
    Q_INVOKABLE bool backUpToDrive(const QString& path);
    // Writes a verified backup to the file chosen in the save dialog.
    Q_INVOKABLE bool saveBackupAs(const QUrl& file);
    // Reads a backup file and, if it is one, waits for confirmRestore() (see restorePending).
    Q_INVOKABLE bool readBackup(const QUrl& file);
    Q_INVOKABLE bool confirmRestore();
    Q_INVOKABLE void discardRestore();
    Q_INVOKABLE bool exportCsv(const QUrl& file);
    // Asks the running operation to stop; it ends with nothing left behind.
    Q_INVOKABLE void cancel();
    Q_INVOKABLE void clearMessage();

Q_SIGNALS:
    void drivesChanged();
    void busyChanged();
    void progressChanged();
    void messageChanged();
    void restorePendingChanged();
    void lastBackupChanged();
    // An operation ended (after its message was set); `ok` is false for a failure or cancel.
    void finished(const QString& operation, bool ok);

private:
    // Runs `work` on a worker thread; `done` runs on this thread afterwards.
    bool start(const QString& operation, const QString& text,
               std::function<void(JobProgress&)> work, std::function<void()> done);
    void pollProgress();
    void setMessage(const QString& message, bool isError);
    void endOperation(bool ok);
    bool startBackup(std::function<JobOutcome(const BackupSnapshot&, JobProgress&)> write);
    void recordLastBackup(const QString& file);
    void dropStaged();
    static void removeInBackground(std::shared_ptr<StagedBackup> staged);

    StoneStore& store_;
    const SpecimenLibrary& library_;
    DriveLister driveLister_;
    std::function<void()> workerHook_;
    AtomicFile::Options writeOptions_;

    QVariantList drives_;
    QString operation_;
    double progress_ = 0;
    QString progressText_;
    QString message_;
    bool messageIsError_ = false;

    QThread* worker_ = nullptr;
    std::shared_ptr<JobProgress> job_;
    QTimer pollTimer_;
    QTimer ageTimer_;

    // A backup read and waiting for confirmation.
    std::shared_ptr<StagedBackup> staged_;
    std::optional<RestoreReport> preview_; // what confirming would add
    QString restoreHoldsText_;
    QString restoreAddsText_;
};

} // namespace quarrydex
