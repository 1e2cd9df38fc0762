// A backup started the way the Backup screen starts it: 1,000 pieces with a 400 KB photo
// each (about 530 MB of archive) written to a folder "drive" by the BackupController on its
// worker thread, while the main thread runs its event loop. Reports the write-and-verify
// rate, the process's peak resident memory (getrusage ru_maxrss, measured in a process of
// its own after the setup) and the longest gap between two runs of a 1 ms timer on the
// main thread, i.e. the longest time the window would not have answered.
//
//   backup_controller_bench [--items N] [--photo-bytes B]

#include "app/app_model.h"
#include "library/specimen_library.h"
#include "samples/sample_set.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QSettings>
#include <QStandardPaths>
#include <QTimer>

#include "bench/bench_collection.h"
#include <algorithm>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using namespace quarrydex;
namespace fs = std::filesystem;

namespace {

int runBackup(const fs::path& dir, int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("QuarrydexBench"));
    QStandardPaths::setTestModeEnabled(true);
    auto library = std::make_shared<const SpecimenLibrary>(std::vector<Specimen>{});
    AppModel model(library, dir / "data", std::nullopt);
    const fs::path drive = dir / "STICK";
    fs::create_directories(drive);
    BackupController& backup = *model.backup();

    // The main thread's heartbeat: the longest gap between two ticks.
    QElapsedTimer sinceTick;
    QElapsedTimer sinceStart;
    qint64 longestGapNs = 0;
    qint64 longestGapAtNs = 0;
    QTimer heartbeat;
    heartbeat.setInterval(1);
    heartbeat.setTimerType(Qt::PreciseTimer);
    QObject::connect(&heartbeat, &QTimer::timeout, [&] {
        if (sinceTick.nsecsElapsed() > longestGapNs) {
            longestGapNs = sinceTick.nsecsElapsed();
            longestGapAtNs = sinceStart.nsecsElapsed();
        }
        sinceTick.restart();
    });

    // The same heartbeat for two seconds with nothing running: what the machine itself allows.
    {
        QEventLoop idle;
        QTimer::singleShot(2000, &idle, &QEventLoop::quit);
        heartbeat.start();
        sinceTick.start();
        sinceStart.start();
        idle.exec();
        heartbeat.stop();
    }
    const double idleGapMs = static_cast<double>(longestGapNs) / 1e6;
    longestGapNs = 0;

    QEventLoop loop;
    bool ok = false;
    QObject::connect(&backup, &BackupController::finished, [&](const QString&, bool success) {
        ok = success;
        loop.quit();
    });
    heartbeat.start();
    sinceTick.start();
    sinceStart.start();
    auto start = std::chrono::steady_clock::now();
    QElapsedTimer call;
    call.start();
    if (!backup.backUpToDrive(QString::fromStdString(drive.string()))) {
        std::fprintf(stderr, "the backup did not start\n");
        return 1;
    }
    const double callMs = static_cast<double>(call.nsecsElapsed()) / 1e6;
    loop.exec();
    double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    heartbeat.stop();
    if (!ok) {
        std::fprintf(stderr, "%s\n", backup.message().toUtf8().constData());
        return 1;
    }
    std::uintmax_t bytes = 0;
    for (const auto& entry : fs::directory_iterator(drive / "Quarrydex Backups")) {
        bytes += entry.file_size();
    }
    double mb = static_cast<double>(bytes) / 1e6;
    std::printf("backup from the controller: %zu items, %.1f MB archive written and read back in "
                "%.2f s = %.0f MB/s of archive; peak RSS %.1f MiB; longest main-thread gap "
                "%.1f ms (%.0f ms after the start; starting took %.1f ms); with nothing running "
                "the longest gap was %.1f ms\n",
                model.store().collection().size(), mb, seconds, mb / seconds, bench::peakMiB(),
                static_cast<double>(longestGapNs) / 1e6, static_cast<double>(longestGapAtNs) / 1e6,
                callMs, idleGapMs);

    // The same file restored through the controller into an empty data folder: reading it
    // (photos set aside and flushed on the worker), then, once confirmed, moving the photos
    // in and merging the records on the main thread.
    fs::path file;
    for (const auto& entry : fs::directory_iterator(drive / "Quarrydex Backups")) {
        file = entry.path();
    }
    AppModel fresh(library, dir / "restored", std::nullopt);
    BackupController& restore = *fresh.backup();
    QObject::connect(&restore, &BackupController::finished, [&](const QString&, bool success) {
        // The work that ends the operation on the main thread (the restore itself) has no
        // tick after it: count the gap up to here.
        longestGapNs = std::max(longestGapNs, sinceTick.nsecsElapsed());
        ok = success;
        loop.quit();
    });
    longestGapNs = 0;
    heartbeat.start();
    sinceTick.restart();
    sinceStart.restart();
    start = std::chrono::steady_clock::now();
    restore.readBackup(QUrl::fromLocalFile(QString::fromStdString(file.string())));
    loop.exec();
    const double readSeconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (!ok || !restore.restorePending()) {
        std::fprintf(stderr, "%s\n", restore.message().toUtf8().constData());
        return 1;
    }
    const double readGapMs = static_cast<double>(longestGapNs) / 1e6;
    longestGapNs = 0;
    sinceTick.restart();
    auto confirmed = std::chrono::steady_clock::now();
    restore.confirmRestore();
    loop.exec();
    heartbeat.stop();
    const double writeSeconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - confirmed).count();
    if (!ok) {
        std::fprintf(stderr, "%s\n", restore.message().toUtf8().constData());
        return 1;
    }
    std::printf("restore from the controller: %zu items; reading %.2f s, moving in and merging "
                "%.2f s, together %.2f s; peak RSS %.1f MiB; longest main-thread gap %.1f ms "
                "while reading, %.1f ms while moving in and merging\n",
                fresh.store().collection().size(), readSeconds, writeSeconds,
                readSeconds + writeSeconds, bench::peakMiB(), readGapMs,
                static_cast<double>(longestGapNs) / 1e6);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    int items = 1000;
    std::size_t photoBytes = 400'000;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (arg == "--items" && i + 1 < argc) {
            items = std::atoi(argv[++i]);
        } else if (arg == "--photo-bytes" && i + 1 < argc) {
            photoBytes = static_cast<std::size_t>(std::atoll(argv[++i]));
        } else {
            std::fprintf(stderr, "usage: %s [--items N] [--photo-bytes B]\n", argv[0]);
            return 2;
        }
    }
    std::string pattern =
        (fs::temp_directory_path() / "quarrydex-controller-bench-XXXXXX").string();
    if (!::mkdtemp(pattern.data())) {
        std::perror("mkdtemp");
        return 1;
    }
    const fs::path dir = pattern;
    std::printf("%d pieces with photos of %zu bytes in %s\n", items, photoBytes, dir.c_str());
    if (!bench::setUpCollection(dir, items, photoBytes)) {
        std::fprintf(stderr, "setup failed\n");
        fs::remove_all(dir);
        return 1;
    }
    // The backup in a process of its own, so that its peak memory is its own.
    std::fflush(stdout);
    pid_t child = ::fork();
    if (child == 0) {
        int status = runBackup(dir, argc, argv);
        std::fflush(stdout);
        ::_exit(status);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    fs::remove_all(dir);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}
