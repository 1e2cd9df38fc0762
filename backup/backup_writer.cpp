#include "backup/archive_format.h"
#include "backup/backup_archive.h"
#include "store/stone_store.h"

#include <cstring>

namespace quarrydex {
namespace fs = std::filesystem;

namespace {

// Reads a written backup back from disk as restore would, keeping no photo, and returns
// how many collection items it holds.
BackupResult<std::size_t> readBackItemCount(const fs::path& file) {
    JsonFileSource source(file);
    archive::DropPhotos photos;
    BackupResult<BackupArchive> read = archive::read(source, photos);
    if (source.error() != 0) {
        return BackupError::unreadable(std::strerror(source.error()));
    }
    if (!read) {
        return read.error();
    }
    return read->items.size();
}

} // namespace

Result<fs::path> BackupCodec::writeBackup(const StoneStore& store, const fs::path& folder,
                                          Timestamp date, const BackupWriteOptions& options) {
    std::error_code ec;
    fs::create_directories(folder, ec);
    if (ec) {
        return Error{ec.message()};
    }
    fs::path target = folder / (defaultFilename("Quarrydex Backup", date) + ".json");

    // The records without photos; each photo is read from its file only when its turn
    // comes and is encoded straight into the file.
    BackupArchive records = makeArchive(store, false, date);
    auto photoOf = [&](const std::optional<std::string>& file, std::string& holder) {
        std::optional<std::string> bytes = store.photoData(file);
        if (!bytes) {
            return static_cast<const std::string*>(nullptr);
        }
        holder = std::move(*bytes);
        return static_cast<const std::string*>(&holder);
    };
    {
        AtomicFile file(target, options.file);
        if (!file.status()) {
            return Error{file.status().error()};
        }
        Status written = archive::write(
            records,
            [&](std::size_t i, std::string& holder) {
                return photoOf(store.collection()[i].photoFile, holder);
            },
            [&](std::size_t i, std::string& holder) {
                return photoOf(store.history()[i].photoFile, holder);
            },
            [&](std::string_view piece) { return file.append(piece); });
        if (written) {
            written = file.commit();
        }
        if (!written) {
            return Error{written.error()};
        }
    }

    if (options.afterWrite) {
        options.afterWrite(target);
    }
    BackupResult<std::size_t> count = readBackItemCount(target);
    if (!count) {
        return Error{count.error().description()};
    }
    if (*count != store.collection().size()) {
        return Error{BackupError::unreadable("Verification failed after writing.").description()};
    }
    return target;
}

} // namespace quarrydex
