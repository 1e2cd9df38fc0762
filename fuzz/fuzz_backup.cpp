// A backup archive: decoding from memory, a round trip through the encoder, and a restore
// from a file into a store, as the backup screen does it.

#include "backup/backup_archive.h"
#include "backup/restore_report.h"
#include "fuzz_support.h"
#include "store/stone_store.h"

#include <fstream>

using namespace quarrydex;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view bytes = fuzz::bytesOf(data, size);
    BackupResult<BackupArchive> decoded = BackupCodec::decode(bytes);
    if (decoded) {
        BackupResult<BackupArchive> again = BackupCodec::decode(BackupCodec::encode(*decoded));
        fuzz::require(again && *again == *decoded, "a backup survives a round trip");
    }

    std::filesystem::path folder = fuzz::freshFolder();
    std::filesystem::path file = folder / "backup.json";
    std::ofstream(file, std::ios::binary).write(bytes.data(), std::streamsize(size));
    StoneStore store(folder / "store");
    BackupResult<RestoreReport> restored = BackupCodec::restoreFile(file, store);
    fuzz::require(bool(restored) == bool(decoded), "a file restores exactly when it decodes");
    if (restored) {
        fuzz::require(store.collection().size() == std::size_t(restored->collectionAdded),
                      "every new collection item is restored");
        fuzz::require(!store.lastError(), "a restore into a fresh store writes everything");
        // Restoring again adds nothing.
        BackupResult<RestoreReport> twice = BackupCodec::restoreFile(file, store);
        fuzz::require(twice && twice->collectionAdded == 0 && twice->historyAdded == 0 &&
                          twice->favoritesAdded == 0,
                      "a second restore adds nothing");
    } else {
        fuzz::require(restored.error() == decoded.error(), "file and memory refuse alike");
    }
    return 0;
}
