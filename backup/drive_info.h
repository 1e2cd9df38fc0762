#pragma once
// External drives a backup can go to: the mounted volumes that are removable, sit on a
// USB or memory-card bus, or were mounted where desktop automounters put plugged-in
// drives (/media, /run/media), and that can be browsed and written.
//
// Every system fact is read through VolumeSource, so the rules can be checked against
// made-up machines; SystemVolumes reads the real ones.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace quarrydex {

// One line of the mount table.
struct Mount {
    std::string device;           // e.g. "/dev/sdb1"; anything for pseudo file systems
    std::filesystem::path folder; // where it is mounted
    std::string type;             // file system type, e.g. "vfat"
    bool readOnly = false;        // mounted with "ro"

    bool operator==(const Mount&) const = default;
};

// What the system knows about the block device behind a mount.
struct DeviceFacts {
    bool removable = false; // the disk says its medium can be removed
    bool usbOrCard = false; // attached through USB or an MMC/SD card reader

    bool operator==(const DeviceFacts&) const = default;
};

class VolumeSource {
public:
    virtual ~VolumeSource() = default;
    // Mounted volumes in the system's order.
    virtual std::vector<Mount> mounts() const = 0;
    virtual DeviceFacts device(const Mount& mount) const = 0;
    // Bytes available to the user; none when unknown.
    virtual std::optional<std::uint64_t> freeBytes(const std::filesystem::path& folder) const = 0;
    // The folder can be listed and entered.
    virtual bool canBrowse(const std::filesystem::path& folder) const = 0;
    virtual bool canWrite(const std::filesystem::path& folder) const = 0;
};

// The running system: the mount table of this process (a file in getmntent's format),
// device facts from sysfs, free space from statvfs, access rights from access(2). The
// paths can be pointed elsewhere for tests.
class SystemVolumes final : public VolumeSource {
public:
    explicit SystemVolumes(std::filesystem::path mountTable = "/proc/self/mounts",
                           std::filesystem::path sysfs = "/sys");

    std::vector<Mount> mounts() const override;
    // Looks the device up as <sysfs>/class/block/<name>: "removable" of the device or of
    // the disk holding the partition; the bus from the path the entry resolves to.
    DeviceFacts device(const Mount& mount) const override;
    std::optional<std::uint64_t> freeBytes(const std::filesystem::path& folder) const override;
    bool canBrowse(const std::filesystem::path& folder) const override;
    bool canWrite(const std::filesystem::path& folder) const override;

private:
    std::filesystem::path mountTable_;
    std::filesystem::path sysfs_;
};

struct DriveInfo {
    std::filesystem::path url; // the mount folder; also the drive's identity
    std::string name;          // the mount folder's last component (automounters use the label)
    std::string detail;        // "<path> · <free space> free"

    bool operator==(const DriveInfo&) const = default;

    // The external drives of this machine, in mount-table order. Reads the system each
    // call (the backup screen calls it on appearing and on Refresh).
    static std::vector<DriveInfo> external();
    // The same rules over any source of facts:
    //  1. skip pseudo file systems (proc, sysfs, tmpfs, cgroup*, overlay, squashfs, ...),
    //     hidden mount folders (a component starting with ".") and "/"; of a folder mounted
    //     over more than once, only the last (visible) mount counts;
    //  2. keep a volume whose device is removable or on USB/MMC, or that is mounted below
    //     /media or /run/media;
    //  3. keep only volumes not mounted read-only that can be browsed and written.
    static std::vector<DriveInfo> external(const VolumeSource& source);
};

// A byte count the way file managers show sizes, in decimal units: "999 bytes", "1 byte",
// "512 KB" (whole kilobytes), "1.5 MB", "12.3 GB" (one decimal, dropped when it is 0).
// Rounds half up, moving to the next unit when rounding reaches 1000.
std::string formatFileSize(std::uint64_t bytes);

} // namespace quarrydex
