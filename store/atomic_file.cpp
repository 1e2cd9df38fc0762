#include "store/atomic_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quarrydex {
namespace fs = std::filesystem;

namespace {

Error systemError(int code) {
    return Error{std::strerror(code)};
}

fs::path resolveLinks(const fs::path& target) {
    std::error_code ec;
    fs::path resolved = target;
    // Follow a chain of links by hand so a dangling link still yields its destination.
    for (int hops = 0; hops < 40 && fs::is_symlink(resolved, ec); ++hops) {
        fs::path next = fs::read_symlink(resolved, ec);
        if (ec) {
            break;
        }
        resolved = next.is_absolute() ? next : resolved.parent_path() / next;
    }
    return resolved;
}

int syncFolder(const fs::path& folder) {
    int dfd = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dfd < 0) {
        return errno;
    }
    int result = ::fsync(dfd) == 0 ? 0 : errno;
    ::close(dfd);
    // Some file systems cannot sync a folder; the rename itself has still happened.
    return (result == EINVAL || result == EROFS) ? 0 : result;
}

} // namespace

AtomicFile::AtomicFile(const fs::path& target, Options options)
    : target_(options.replaceLink ? target : resolveLinks(target)), options_(options) {
    fs::path folder = target_.parent_path();
    // Appended piece by piece: "." + std::string trips a false -Wrestrict in GCC 12 at -O2.
    std::string name = ".";
    name += target_.filename().string();
    name += ".tmp-XXXXXX";
    std::string pattern = (folder / name).string();
    fd_ = ::mkstemp(pattern.data());
    if (fd_ < 0) {
        status_ = systemError(errno);
        return;
    }
    temp_ = pattern;
    ::fcntl(fd_, F_SETFD, FD_CLOEXEC);
    // A link being replaced (lstat sees the link itself) gives its file no mode to keep.
    struct stat existing {};
    mode_t mode = (::lstat(target_.c_str(), &existing) == 0 && S_ISREG(existing.st_mode))
                      ? (existing.st_mode & 07777)
                      : 0600;
    if (::fchmod(fd_, mode) != 0) {
        status_ = systemError(errno);
        abandon();
    }
}

AtomicFile::~AtomicFile() {
    abandon();
}

void AtomicFile::abandon() {
    if (fd_ >= 0) {
        ::close(fd_);
        fd_ = -1;
    }
    if (!temp_.empty()) {
        ::unlink(temp_.c_str());
        temp_.clear();
    }
}

Status AtomicFile::append(std::string_view bytes) {
    if (!status_) {
        return status_;
    }
    if (fd_ < 0) {
        return status_ = Error{"the file was already written"};
    }
    const char* data = bytes.data();
    std::size_t left = bytes.size();
    while (left > 0) {
        std::size_t chunk = left;
        if (options_.failAfterBytes) {
            if (written_ >= *options_.failAfterBytes) {
                status_ = systemError(ENOSPC);
                abandon();
                return status_;
            }
            chunk = std::min(chunk, *options_.failAfterBytes - written_);
        }
        if (options_.freeSpace) {
            if (*options_.freeSpace < chunk) {
                status_ = systemError(ENOSPC);
                *options_.freeSpace += written_; // the temporary file's space comes back
                written_ = 0;
                abandon();
                return status_;
            }
            *options_.freeSpace -= chunk;
        }
        ssize_t n = ::write(fd_, data, chunk);
        if (n < 0) {
            if (errno == EINTR) {
                continue;
            }
            status_ = systemError(errno);
            abandon();
            return status_;
        }
        data += n;
        left -= static_cast<std::size_t>(n);
        written_ += static_cast<std::size_t>(n);
    }
    return status_;
}

Status AtomicFile::commit() {
    if (!status_) {
        return status_;
    }
    if (fd_ < 0) {
        return status_ = Error{"the file was already written"};
    }
    // Close even when fsync fails, or the descriptor leaks.
    int code = !options_.flush || ::fsync(fd_) == 0 ? 0 : errno;
    if (::close(fd_) != 0 && code == 0) {
        code = errno;
    }
    fd_ = -1;
    if (code != 0) {
        status_ = systemError(code);
        abandon();
        return status_;
    }
    if (::rename(temp_.c_str(), target_.c_str()) != 0) {
        status_ = systemError(errno);
        abandon();
        return status_;
    }
    temp_.clear();
    if (!options_.flush) {
        return status_;
    }
    if (int code = syncFolder(target_.parent_path()); code != 0) {
        status_ = systemError(code);
    }
    return status_;
}

Status AtomicFile::flushFileSystem(const fs::path& folder) {
    int dfd = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dfd < 0) {
        return systemError(errno);
    }
    // One flush for the whole batch: fsync of each file would commit the journal once per
    // file. The folder's own fsync then covers its entries on file systems where syncfs
    // alone might not.
    int code = ::syncfs(dfd) == 0 ? 0 : errno;
    ::close(dfd);
    if (code == 0) {
        code = syncFolder(folder);
    }
    return code == 0 ? Status{} : Status{systemError(code)};
}

bool AtomicFile::isLeftover(std::string_view name) {
    // "." + at least one character of the target's name + ".tmp-" + six from mkstemp.
    constexpr std::string_view marker = ".tmp-";
    if (name.size() < 1 + 1 + marker.size() + 6 || name.front() != '.') {
        return false;
    }
    return name.substr(name.size() - 6 - marker.size(), marker.size()) == marker;
}

Status AtomicFile::write(const fs::path& target, std::string_view bytes, Options options) {
    AtomicFile file(target, options);
    if (Status s = file.append(bytes); !s) {
        return s;
    }
    return file.commit();
}

} // namespace quarrydex
