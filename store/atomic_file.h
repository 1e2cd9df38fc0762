#pragma once
// The one way user data reaches the disk: a temporary file in the target's folder,
// flushed to disk, renamed over the target, then the folder itself flushed. A power
// cut or a killed process leaves either the old file or the new one, never a torn one.

#include "store/result.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace quarrydex {

// How AtomicFile writes (outside the class so that it can be a default argument there).
struct AtomicFileOptions {
    // Tests only: pretend the disk fills up after this many bytes of this file.
    std::optional<std::size_t> failAfterBytes;
    // Tests only: a simulated disk with this many bytes free, shared by every file
    // written with these options (and by backup staging). A write that does not fit
    // fails with "No space left on device" and uses none of it, as if the failed
    // file's space came back when it was removed.
    std::shared_ptr<std::size_t> freeSpace;
    // False: the file and its folder are not flushed to disk; the caller flushes a
    // batch of files at once (see flushFileSystem) before anything names them.
    bool flush = true;
    // True: a symbolic link at the target is replaced by the new file instead of being
    // followed (photos; the data file may be a link into a synced folder, and stays one).
    bool replaceLink = false;
};

class AtomicFile {
public:
    using Options = AtomicFileOptions;

    // Writes `bytes` to `target` atomically. A symbolic link is resolved first so the
    // link stays a link (unless options.replaceLink). A new file gets user-only
    // permissions; a replaced file keeps its mode. On failure the target is left byte for
    // byte as it was, no temporary file remains, and the error holds the system's
    // description of the cause.
    static Status write(const std::filesystem::path& target, std::string_view bytes,
                        Options options = {});

    // Streaming form of write() for large files: open, append any number of times,
    // then commit(). Destroying an uncommitted writer removes the temporary file.
    AtomicFile(const std::filesystem::path& target, Options options = {});
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    // Flushes everything written to the file system that holds `folder` (file data and
    // folder entries), for files written with flush = false. The error is the system's.
    static Status flushFileSystem(const std::filesystem::path& folder);

    // The temporary files this writer leaves behind when the process is killed mid-write:
    // ".<target name>.tmp-XXXXXX" beside the target. Only for sweeping a folder nobody
    // else is writing to.
    static bool isLeftover(std::string_view fileName);

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
