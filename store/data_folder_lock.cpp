#include "store/data_folder_lock.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

namespace quarrydex {

Result<DataFolderLock, DataFolderLock::Failure>
DataFolderLock::acquire(const std::filesystem::path& root) {
    std::error_code ec;
    std::filesystem::create_directories(root, ec);
    if (ec) {
        return Failure{Failure::Kind::unavailable, ec.message()};
    }
    const std::filesystem::path file = root / fileName;
    int fd = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (fd < 0) {
        return Failure{Failure::Kind::unavailable, std::strerror(errno)};
    }
    int result;
    do {
        result = ::flock(fd, LOCK_EX | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    if (result != 0) {
        int code = errno;
        ::close(fd);
        if (code == EWOULDBLOCK) {
            return Failure{Failure::Kind::heldElsewhere, {}};
        }
        return Failure{Failure::Kind::unavailable, std::strerror(code)};
    }
    return DataFolderLock(fd);
}

DataFolderLock::DataFolderLock(DataFolderLock&& other) noexcept
    : fd_(std::exchange(other.fd_, -1)) {}

DataFolderLock& DataFolderLock::operator=(DataFolderLock&& other) noexcept {
    if (this != &other) {
        release();
        fd_ = std::exchange(other.fd_, -1);
    }
    return *this;
}

DataFolderLock::~DataFolderLock() {
    release();
}

void DataFolderLock::release() {
    if (fd_ >= 0) {
        ::close(fd_); // closing the only descriptor drops the lock
        fd_ = -1;
    }
}

} // namespace quarrydex
