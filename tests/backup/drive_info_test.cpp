#include "backup/drive_info.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>
#include <map>
#include <set>

namespace quarrydex {
namespace {
namespace fs = std::filesystem;
using test::TempDir;

// A made-up machine: every fact is whatever the test says.
class FakeVolumes final : public VolumeSource {
public:
    std::vector<Mount> table;
    std::map<std::string, DeviceFacts> devices;
    std::map<fs::path, std::uint64_t> free;
    std::set<fs::path> unbrowsable;
    std::set<fs::path> unwritable;

    void add(const std::string& device, const fs::path& folder, const std::string& type = "vfat",
             bool readOnly = false) {
        table.push_back({device, folder, type, readOnly});
    }

    std::vector<Mount> mounts() const override { return table; }
    DeviceFacts device(const Mount& mount) const override {
        auto it = devices.find(mount.device);
        return it == devices.end() ? DeviceFacts{} : it->second;
    }
    std::optional<std::uint64_t> freeBytes(const fs::path& folder) const override {
        auto it = free.find(folder);
        return it == free.end() ? std::nullopt : std::optional(it->second);
    }
    bool canBrowse(const fs::path& folder) const override { return !unbrowsable.contains(folder); }
    bool canWrite(const fs::path& folder) const override { return !unwritable.contains(folder); }
};

std::vector<std::string> folders(const std::vector<DriveInfo>& drives) {
    std::vector<std::string> out;
    for (const DriveInfo& d : drives) {
        out.push_back(d.url.string());
    }
    return out;
}

const DeviceFacts removable{true, false};
const DeviceFacts usb{false, true};

TEST(ExternalDrives, removable_usb_and_card_devices_and_automounted_folders_count) {
    FakeVolumes v;
    v.add("/dev/sda2", "/home");
    v.add("/dev/sdb1", "/mnt/stick");
    v.add("/dev/sdc1", "/srv/usb-disk");
    v.add("/dev/mmcblk0p1", "/mnt/card");
    v.add("/dev/sdd1", "/media/ann/STICK");
    v.add("/dev/sde1", "/run/media/ann/CARD");
    v.add("/dev/sdf1", "/media");
    v.add("/dev/sdg1", "/mediastore/disk");
    v.add("/dev/sdh1", "/run/user/1000/disk");
    v.devices = {{"/dev/sdb1", removable}, {"/dev/sdc1", usb}, {"/dev/mmcblk0p1", usb}};
    EXPECT_EQ(folders(DriveInfo::external(v)),
              (std::vector<std::string>{"/mnt/stick", "/srv/usb-disk", "/mnt/card",
                                        "/media/ann/STICK", "/run/media/ann/CARD"}));
}

// The root, pseudo file systems, hidden folders, read-only, unwritable or unbrowsable
// volumes, and a folder hidden by a later mount never count.
TEST(ExternalDrives, only_visible_usable_top_mounts_count) {
    FakeVolumes v;
    v.add("/dev/sdb1", "/");
    for (const char* type : {"proc", "sysfs", "tmpfs", "devtmpfs", "cgroup", "cgroup2", "overlay",
                             "squashfs", "devpts", "fuse.gvfsd-fuse"}) {
        v.add(type, std::string("/media/") + type, type);
    }
    v.add("/dev/sdb2", "/media/ann/.snapshots");
    v.add("/dev/sdb3", "/media/.hidden/STICK");
    v.add("/dev/sdc1", "/media/ann/READONLY", "vfat", true);
    v.add("/dev/sdc2", "/media/ann/LOCKED");
    v.add("/dev/sdc3", "/media/ann/CLOSED");
    v.add("/dev/sdc4", "/media/ann/GOOD");
    v.add("/dev/sdd1", "/mnt/stick");
    v.add("/dev/sda3", "/mnt/stick", "ext4"); // hides the stick; an internal disk
    v.unwritable = {"/media/ann/LOCKED"};
    v.unbrowsable = {"/media/ann/CLOSED"};
    v.devices = {{"/dev/sdb1", removable},
                 {"/dev/sdb2", removable},
                 {"/dev/sdb3", removable},
                 {"/dev/sdd1", removable}};
    EXPECT_EQ(folders(DriveInfo::external(v)), (std::vector<std::string>{"/media/ann/GOOD"}));
}

TEST(ExternalDrives, a_drive_is_named_by_its_folder_and_described_with_its_free_space) {
    FakeVolumes v;
    v.add("/dev/sdb1", "/media/ann/FIELD NOTES");
    v.add("/dev/sdc1", "/media/ann/UNKNOWN");
    v.free = {{"/media/ann/FIELD NOTES", 12'345'678'901}};
    std::vector<DriveInfo> drives = DriveInfo::external(v);
    ASSERT_EQ(drives.size(), 2u);
    EXPECT_EQ(drives[0], (DriveInfo{"/media/ann/FIELD NOTES", "FIELD NOTES",
                                    "/media/ann/FIELD NOTES \u00B7 12.3 GB free"}));
    EXPECT_EQ(drives[1].detail, "/media/ann/UNKNOWN \u00B7 0 bytes free");
}

// Bytes below a kilobyte; whole kilobytes rounded half up; larger units with one decimal
// unless it is zero.
TEST(FormatFileSize, units_step_at_powers_of_1000_with_their_rounding) {
    const std::pair<std::uint64_t, const char*> cases[] = {
        {0, "0 bytes"},
        {1, "1 byte"},
        {999, "999 bytes"},
        {1000, "1 KB"},
        {1499, "1 KB"},
        {1500, "2 KB"},
        {999'500, "1 MB"},
        {1'049'999, "1 MB"},
        {1'050'000, "1.1 MB"},
        {999'950'000, "1 GB"},
        {12'345'678'901, "12.3 GB"},
        {1'500'000'000'000'000, "1.5 PB"},
        {18'446'744'073'709'551'615u, "18.4 EB"},
    };
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(formatFileSize(bytes), text) << bytes;
    }
}

TEST(SystemVolumes, reads_the_mount_table_with_escaped_blanks_and_read_only_flags) {
    std::vector<Mount> mounts = SystemVolumes(test::fixture("backup/mounts"), "/x").mounts();
    ASSERT_EQ(mounts.size(), 7u);
    EXPECT_EQ(mounts[4], (Mount{"/dev/sdb1", "/media/ann/FIELD NOTES", "vfat", false}));
    EXPECT_EQ(mounts[5], (Mount{"/dev/sdc1", "/mnt/archive", "ext4", true}));
    EXPECT_TRUE(SystemVolumes("/nonexistent/mounts", "/x").mounts().empty());
}

// A small sysfs: a USB stick with a partition, an SD card, an internal SATA disk.
class SystemDevices : public ::testing::Test {
protected:
    SystemDevices() {
        fs::path devices = dir / "devices";
        disk(devices / "pci0000:00/0000:00:14.0/usb2/2-1/2-1:1.0/host6/block/sdb", "sdb1", "0");
        disk(devices / "platform/mmc_host/mmc0/mmc0:aaaa/block/mmcblk0", "mmcblk0p1", "0");
        disk(devices / "pci0000:00/0000:00:17.0/ata1/host0/block/sda", "sda2", "0");
        disk(devices / "pci0000:00/0000:00:1f.0/floppy/block/sdx", "", "1");
    }

    // A disk folder with its "removable" flag, a partition inside it, and the
    // class/block links the kernel makes for both.
    void disk(const fs::path& folder, const std::string& partition, const char* flag) {
        fs::create_directories(folder);
        test::writeFile(folder / "removable", std::string(flag) + "\n");
        fs::create_directories(dir / "class" / "block");
        fs::create_directory_symlink(folder, dir / "class" / "block" / folder.filename());
        if (!partition.empty()) {
            fs::create_directories(folder / partition);
            test::writeFile(folder / partition / "partition", "1\n");
            fs::create_directory_symlink(folder / partition, dir / "class" / "block" / partition);
        }
    }

    DeviceFacts facts(const std::string& device) {
        return SystemVolumes("/nonexistent", dir.path()).device({device, "/mnt/x", "vfat", false});
    }

    TempDir dir;
};

// USB partitions and memory cards count as USB; the removable flag is read from the disk;
// internal and unknown devices are neither.
TEST_F(SystemDevices, devices_are_told_apart_by_their_bus_and_removable_flag) {
    EXPECT_EQ(facts("/dev/sdb1"), (DeviceFacts{false, true}));
    EXPECT_EQ(facts("/dev/mmcblk0p1"), (DeviceFacts{false, true}));
    EXPECT_EQ(facts("/dev/sdx"), (DeviceFacts{true, false}));
    EXPECT_EQ(facts("/dev/sda2"), DeviceFacts{});
    EXPECT_EQ(facts("/dev/nvme9n9p9"), DeviceFacts{});
    EXPECT_EQ(facts("server:/export"), DeviceFacts{});
}

} // namespace
} // namespace quarrydex
