#pragma once
// The backup file format in one place: write() produces it and read() takes it apart.
// The in-memory codec (encode, decode) and the streaming file paths (writeBackup,
// decodeFile) differ only in where photo bytes come from and go to.

#include "backup/backup_archive.h"
#include "backup/json_stream.h"
#include "store/result.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quarrydex::archive {

enum class PhotoOwner { item, history };

// The photo bytes of items[index] (or history[index]), or nullptr when it has none. The
// lookup may load them into `holder` and return its address.
using PhotoLookup = std::function<const std::string*(std::size_t index, std::string& holder)>;

// Receives the file's bytes a piece at a time; a failure stops the writing.
using ByteSink = std::function<Status(std::string_view bytes)>;

// Writes `records` in the file format with the photos the lookups give (the records' own
// photo fields are not looked at). Output reaches `out` in pieces of a few hundred
// kilobytes; a photo is encoded straight into them. Returns the first failure of `out`.
Status write(const BackupArchive& records, const PhotoLookup& itemPhoto,
             const PhotoLookup& historyPhoto, const ByteSink& out);

// Where read() hands each photo, already checked to be well-formed Base64.
class PhotoSink {
public:
    virtual ~PhotoSink() = default;
    // Returns the bytes to keep in the record's `photo` field, or none when the sink keeps
    // them elsewhere. An error ends the reading as BackupError::unreadable(message).
    virtual Result<std::optional<std::string>> take(PhotoOwner owner, std::size_t index,
                                                    std::string_view base64) = 0;
};

// Keeps each photo's bytes in its record.
class KeepPhotos final : public PhotoSink {
public:
    Result<std::optional<std::string>> take(PhotoOwner, std::size_t,
                                            std::string_view base64) override;
};

// Drops the photos (they were checked for well-formed Base64 already).
class DropPhotos final : public PhotoSink {
public:
    Result<std::optional<std::string>> take(PhotoOwner, std::size_t, std::string_view) override {
        return std::optional<std::string>{};
    }
};

// Reads one backup from `source`, refusing as BackupCodec::decode describes.
BackupResult<BackupArchive> read(JsonSource& source, PhotoSink& photos);

} // namespace quarrydex::archive
