// Backup of a big collection: 1,000 pieces with a 400 KB photo each, about 530 MB of
// archive. Measures the verified write (encode, atomic write with fsync, streaming
// read-back) and the restore from that file (streaming decode with photos staged on disk,
// then the additive restore into a fresh store), each in a process of its own so that
// its peak resident memory (getrusage ru_maxrss) is its own.
//
//   backup_bench [--items N] [--photo-bytes B] [--keep]
//   backup_bench --phase write|restore --dir D     (one phase over an existing setup)

#include "backup/backup_archive.h"
#include "backup/restore_report.h"
#include "store/stone_store.h"

#include "bench/bench_collection.h"

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

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

int phaseWrite(const fs::path& dir) {
    StoneStore store(dir / "data");
    Clock::time_point start = Clock::now();
    Result<fs::path> written = BackupCodec::writeBackup(store, dir / "backups", Timestamp::now());
    double seconds = secondsSince(start);
    if (!written) {
        std::fprintf(stderr, "backup failed: %s\n", written.error().c_str());
        return 1;
    }
    double mb = static_cast<double>(fs::file_size(*written)) / 1e6;
    fs::rename(*written, dir / "backup.json");
    std::printf(
        "write+verify: %zu items, %.1f MB archive in %.2f s = %.0f MB/s; peak RSS %.1f MiB\n",
        store.collection().size(), mb, seconds, mb / seconds, bench::peakMiB());
    return 0;
}

int phaseRestore(const fs::path& dir) {
    fs::path file = dir / "backup.json";
    double mb = static_cast<double>(fs::file_size(file)) / 1e6;
    StoneStore store(dir / "restored");
    Clock::time_point start = Clock::now();
    BackupResult<StagedBackup> staged = BackupCodec::decodeFile(file, store.root());
    double decodeSeconds = secondsSince(start);
    if (!staged) {
        std::fprintf(stderr, "decode failed: %s\n", staged.error().description().c_str());
        return 1;
    }
    Clock::time_point restoreStart = Clock::now();
    RestoreReport report = BackupCodec::restore(*staged, store);
    double restoreSeconds = secondsSince(restoreStart);
    if (store.lastError() ||
        report.collectionAdded != static_cast<int>(store.collection().size())) {
        std::fprintf(stderr, "restore failed: %s\n", store.lastError().value_or("").c_str());
        return 1;
    }
    std::printf("decode: %.1f MB archive in %.2f s = %.0f MB/s (photos staged on disk)\n", mb,
                decodeSeconds, mb / decodeSeconds);
    std::printf("restore: %d items with photos in %.2f s; decode+restore %.2f s; peak RSS "
                "%.1f MiB\n",
                report.collectionAdded, restoreSeconds, decodeSeconds + restoreSeconds,
                bench::peakMiB());
    return 0;
}

// Runs this program again for one phase and returns its exit status.
int runPhase(const char* self, const char* phase, const fs::path& dir) {
    std::fflush(stdout);
    pid_t child = ::fork();
    if (child == 0) {
        ::execl(self, self, "--phase", phase, "--dir", dir.c_str(), static_cast<char*>(nullptr));
        std::perror("exec");
        ::_exit(127);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}

} // namespace

int main(int argc, char** argv) {
    int items = 1000;
    std::size_t photoBytes = 400'000;
    bool keep = false;
    std::string phase;
    fs::path dir;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        bool hasValue = i + 1 < argc;
        if (arg == "--items" && hasValue) {
            items = std::atoi(argv[++i]);
        } else if (arg == "--photo-bytes" && hasValue) {
            photoBytes = static_cast<std::size_t>(std::atoll(argv[++i]));
        } else if (arg == "--phase" && hasValue) {
            phase = argv[++i];
        } else if (arg == "--dir" && hasValue) {
            dir = argv[++i];
        } else if (arg == "--keep") {
            keep = true;
        } else {
            std::fprintf(stderr,
                         "usage: %s [--items N] [--photo-bytes B] [--keep] | --phase "
                         "write|restore --dir D\n",
                         argv[0]);
            return 2;
        }
    }
    if (phase == "write") {
        return phaseWrite(dir);
    }
    if (phase == "restore") {
        return phaseRestore(dir);
    }

    std::string pattern = (fs::temp_directory_path() / "quarrydex-backup-bench-XXXXXX").string();
    if (!::mkdtemp(pattern.data())) {
        std::perror("mkdtemp");
        return 1;
    }
    dir = pattern;
    std::printf("%d pieces with photos of %zu bytes in %s\n", items, photoBytes, dir.c_str());
    Clock::time_point start = Clock::now();
    int status = bench::setUpCollection(dir, items, photoBytes) ? 0 : 1;
    std::printf("setup: %.2f s; peak RSS %.1f MiB\n", secondsSince(start), bench::peakMiB());
    if (status == 0) {
        status = runPhase("/proc/self/exe", "write", dir);
    }
    if (status == 0) {
        status = runPhase("/proc/self/exe", "restore", dir);
    }
    if (!keep) {
        std::error_code ignored;
        fs::remove_all(dir, ignored);
    }
    return status;
}
