#include "backup/drive_info.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <mntent.h>
#include <string_view>
#include <sys/statvfs.h>
#include <unistd.h>

namespace quarrydex {
namespace fs = std::filesystem;

namespace {

bool isPseudoFileSystem(std::string_view type) {
    static constexpr std::string_view pseudo[] = {
        "autofs",     "binfmt_misc", "bpf",
        "configfs",   "debugfs",     "devpts",
        "devtmpfs",   "efivarfs",    "fuse.gvfsd-fuse",
        "fuse.lxcfs", "fuse.portal", "fuse.snapfuse",
        "fusectl",    "hugetlbfs",   "mqueue",
        "nfsd",       "nsfs",        "overlay",
        "proc",       "pstore",      "ramfs",
        "rpc_pipefs", "securityfs",  "selinuxfs",
        "squashfs",   "sysfs",       "tmpfs",
        "tracefs",    "devfs",       "aufs",
    };
    return type.starts_with("cgroup") ||
           std::find(std::begin(pseudo), std::end(pseudo), type) != std::end(pseudo);
}

bool isHidden(const fs::path& folder) {
    return std::any_of(folder.begin(), folder.end(), [](const fs::path& part) {
        std::string name = part.string();
        return name.size() > 1 && name[0] == '.';
    });
}

// Strictly inside `base` ("/media/STICK" is below "/media"; "/media" and "/mediafoo" are not).
bool isBelow(const fs::path& folder, const fs::path& base) {
    auto [baseEnd, folderAt] =
        std::mismatch(base.begin(), base.end(), folder.begin(), folder.end());
    return baseEnd == base.end() && folderAt != folder.end() && !folderAt->empty();
}

std::string readFirstLine(const fs::path& file) {
    std::ifstream in(file);
    std::string line;
    std::getline(in, line);
    return line;
}

} // namespace

SystemVolumes::SystemVolumes(fs::path mountTable, fs::path sysfs)
    : mountTable_(std::move(mountTable)), sysfs_(std::move(sysfs)) {}

std::vector<Mount> SystemVolumes::mounts() const {
    std::vector<Mount> result;
    FILE* table = ::setmntent(mountTable_.c_str(), "r");
    if (!table) {
        return result;
    }
    // getmntent_r also undoes the octal escapes of blanks ("\040") in names.
    mntent entry{};
    char buffer[4096];
    while (::getmntent_r(table, &entry, buffer, sizeof buffer)) {
        Mount mount;
        mount.device = entry.mnt_fsname;
        mount.folder = entry.mnt_dir;
        mount.type = entry.mnt_type;
        mount.readOnly = ::hasmntopt(&entry, MNTOPT_RO) != nullptr;
        result.push_back(std::move(mount));
    }
    ::endmntent(table);
    return result;
}

DeviceFacts SystemVolumes::device(const Mount& mount) const {
    DeviceFacts facts;
    if (!mount.device.starts_with("/dev/")) {
        return facts;
    }
    // "/dev/disk/by-label/STICK" and the like are links to the kernel's name.
    std::error_code ec;
    fs::path node = fs::canonical(mount.device, ec);
    std::string name = (ec ? fs::path(mount.device) : node).filename().string();
    if (name.empty()) {
        return facts;
    }
    fs::path entry = fs::canonical(sysfs_ / "class" / "block" / name, ec);
    if (ec) {
        return facts;
    }
    std::string where = entry.string();
    facts.usbOrCard =
        where.find("/usb") != std::string::npos || where.find("mmc") != std::string::npos;
    // A partition has no "removable" of its own; its disk is the folder above it.
    fs::path removable = entry / "removable";
    if (!fs::exists(removable, ec)) {
        removable = entry.parent_path() / "removable";
    }
    facts.removable = readFirstLine(removable) == "1";
    return facts;
}

std::optional<std::uint64_t> SystemVolumes::freeBytes(const fs::path& folder) const {
    struct statvfs info {};
    if (::statvfs(folder.c_str(), &info) != 0) {
        return std::nullopt;
    }
    return std::uint64_t{info.f_bavail} * std::uint64_t{info.f_frsize};
}

bool SystemVolumes::canBrowse(const fs::path& folder) const {
    std::error_code ec;
    return fs::is_directory(folder, ec) && ::access(folder.c_str(), R_OK | X_OK) == 0;
}

bool SystemVolumes::canWrite(const fs::path& folder) const {
    return ::access(folder.c_str(), W_OK) == 0;
}

std::vector<DriveInfo> DriveInfo::external() {
    return external(SystemVolumes());
}

std::vector<DriveInfo> DriveInfo::external(const VolumeSource& source) {
    std::vector<Mount> mounts = source.mounts();
    std::vector<DriveInfo> drives;
    for (std::size_t i = 0; i < mounts.size(); ++i) {
        const Mount& mount = mounts[i];
        bool coveredLater =
            std::any_of(mounts.begin() + static_cast<std::ptrdiff_t>(i) + 1, mounts.end(),
                        [&](const Mount& m) { return m.folder == mount.folder; });
        if (coveredLater || mount.folder == "/" || isPseudoFileSystem(mount.type) ||
            isHidden(mount.folder)) {
            continue;
        }
        DeviceFacts facts = source.device(mount);
        bool external = facts.removable || facts.usbOrCard || isBelow(mount.folder, "/media") ||
                        isBelow(mount.folder, "/run/media");
        if (!external || mount.readOnly || !source.canBrowse(mount.folder) ||
            !source.canWrite(mount.folder)) {
            continue;
        }
        DriveInfo drive;
        drive.url = mount.folder;
        drive.name = mount.folder.filename().string();
        if (drive.name.empty()) {
            drive.name = mount.folder.string();
        }
        drive.detail = mount.folder.string() + " \u00B7 " +
                       formatFileSize(source.freeBytes(mount.folder).value_or(0)) + " free";
        drives.push_back(std::move(drive));
    }
    return drives;
}

std::string formatFileSize(std::uint64_t bytes) {
    if (bytes < 1000) {
        return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
    }
    // Kilobytes are shown whole; bigger units with one decimal. Integer arithmetic keeps
    // the rounding exact up to the largest count (no unit step overflows 64 bits).
    static constexpr std::array<const char*, 6> units = {"KB", "MB", "GB", "TB", "PB", "EB"};
    std::uint64_t unit = 1000;
    for (std::size_t u = 0; u < units.size(); ++u, unit *= 1000) {
        bool last = u + 1 == units.size();
        if (u == 0) {
            std::uint64_t whole = bytes / unit + (bytes % unit >= unit / 2 ? 1 : 0);
            if (whole < 1000 || last) {
                return std::to_string(whole) + " " + units[u];
            }
            continue;
        }
        std::uint64_t tenths = bytes / unit * 10 + (bytes % unit * 10 + unit / 2) / unit;
        if (tenths < 10000 || last) {
            std::string text = std::to_string(tenths / 10);
            if (tenths % 10 != 0) {
                text += '.';
                text += static_cast<char>('0' + tenths % 10);
            }
            return text + " " + units[u];
        }
    }
    return {};
}

} // namespace quarrydex
