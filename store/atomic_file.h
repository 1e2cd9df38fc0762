#pragma once
// The one way user data reaches the disk: a temporary file in the target's folder,
// flushed to disk, renamed over the target, then the folder itself flushed. A power
// cut or a killed process leaves either the old file or the new one, never a torn one.

#include "store/result.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace quarrydex {

class AtomicFile {
public:
    struct Options {
        // Tests only: pretend the disk fills up after this many bytes.
        std::optional<std::size_t> failAfterBytes;
    };

    // Writes `bytes` to `target` atomically. A symbolic link is resolved first so the
    // link stays a link. A new file gets user-only permissions; a replaced file keeps
    // its mode. On failure the target is left byte for byte as it was, no temporary
    // file remains, and the error holds the system's description of the cause.
    static Status write(const std::filesystem::path& target, std::string_view bytes,
                        Options options = {});

    // Streaming form of write() for large files: open, append any number of times,
    // then commit(). Destroying an uncommitted writer removes the temporary file.
    AtomicFile(const std::filesystem::path& target, Options options = {});
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    Status status() const { return status_; }
    Status append(std::string_view bytes);
    Status commit();

private:
    void abandon();

    std::filesystem::path target_;
    std::filesystem::path temp_;
    Options options_;
    int fd_ = -1;
    std::size_t written_ = 0;
    Status status_;
};

} // namespace quarrydex
