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

TEST(ExternalDrives, a_removable_or_usb_or_card_device_counts_wherever_it_is_mounted) {
    FakeVolumes v;
    v.add("/dev/sda2", "/home");
    v.add("/dev/sdb1", "/mnt/stick");
    v.add("/dev/sdc1", "/srv/usb-disk");
    v.add("/dev/mmcblk0p1", "/mnt/card");
    v.devices = {{"/dev/sdb1", removable}, {"/dev/sdc1", usb}, {"/dev/mmcblk0p1", usb}};
    EXPECT_EQ(folders(DriveInfo::external(v)),
              (std::vector<std::string>{"/mnt/stick", "/srv/usb-disk", "/mnt/card"}));
}

TEST(ExternalDrives, anything_an_automounter_put_under_media_counts) {
    FakeVolumes v;
    v.add("/dev/sdd1", "/media/ann/STICK");
    v.add("/dev/sde1", "/run/media/ann/CARD");
    v.add("/dev/sdf1", "/media");
    v.add("/dev/sdg1", "/mediastore/disk");
    v.add("/dev/sdh1", "/run/user/1000/disk");
    EXPECT_EQ(folders(DriveInfo::external(v)),
              (std::vector<std::string>{"/media/ann/STICK", "/run/media/ann/CARD"}));
}

TEST(ExternalDrives, root_pseudo_file_systems_and_hidden_mounts_never_count) {
    FakeVolumes v;
    v.add("/dev/sdb1", "/");
    for (const char* type : {"proc", "sysfs", "tmpfs", "devtmpfs", "cgroup", "cgroup2", "overlay",
                             "squashfs", "devpts", "fuse.gvfsd-fuse"}) {
        v.add(type, std::string("/media/") + type, type);
    }
    v.add("/dev/sdb2", "/media/ann/.snapshots");
    v.add("/dev/sdb3", "/media/.hidden/STICK");
    v.devices = {{"/dev/sdb1", removable}, {"/dev/sdb2", removable}, {"/dev/sdb3", removable}};
    EXPECT_TRUE(DriveInfo::external(v).empty());
}

TEST(ExternalDrives, only_browsable_writable_volumes_not_mounted_read_only_count) {
    FakeVolumes v;
    v.add("/dev/sdb1", "/media/ann/READONLY", "vfat", true);
    v.add("/dev/sdc1", "/media/ann/LOCKED");
    v.add("/dev/sdd1", "/media/ann/CLOSED");
    v.add("/dev/sde1", "/media/ann/GOOD");
    v.unwritable = {"/media/ann/LOCKED"};
    v.unbrowsable = {"/media/ann/CLOSED"};
    EXPECT_EQ(folders(DriveInfo::external(v)), (std::vector<std::string>{"/media/ann/GOOD"}));
}

TEST(ExternalDrives, a_folder_mounted_over_counts_once_as_its_top_mount) {
    FakeVolumes v;
    v.add("/dev/sdb1", "/mnt/stick");
    v.add("/dev/sdc1", "/media/ann/CARD");
    v.add("/dev/sda3", "/mnt/stick", "ext4"); // hides the stick; an internal disk
    v.devices = {{"/dev/sdb1", removable}};
    EXPECT_EQ(folders(DriveInfo::external(v)), (std::vector<std::string>{"/media/ann/CARD"}));
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

TEST(FormatFileSize, counts_below_a_kilobyte_are_bytes) {
    EXPECT_EQ(formatFileSize(0), "0 bytes");
    EXPECT_EQ(formatFileSize(1), "1 byte");
    EXPECT_EQ(formatFileSize(2), "2 bytes");
    EXPECT_EQ(formatFileSize(999), "999 bytes");
}

TEST(FormatFileSize, kilobytes_are_whole_and_round_half_up) {
    EXPECT_EQ(formatFileSize(1000), "1 KB");
    EXPECT_EQ(formatFileSize(1499), "1 KB");
    EXPECT_EQ(formatFileSize(1500), "2 KB");
    EXPECT_EQ(formatFileSize(512'000), "512 KB");
    EXPECT_EQ(formatFileSize(999'499), "999 KB");
    EXPECT_EQ(formatFileSize(999'500), "1 MB");
}

TEST(FormatFileSize, larger_units_have_one_decimal_unless_it_is_zero) {
    EXPECT_EQ(formatFileSize(1'000'000), "1 MB");
    EXPECT_EQ(formatFileSize(1'049'999), "1 MB");
    EXPECT_EQ(formatFileSize(1'050'000), "1.1 MB");
    EXPECT_EQ(formatFileSize(999'949'999), "999.9 MB");
    EXPECT_EQ(formatFileSize(999'950'000), "1 GB");
    EXPECT_EQ(formatFileSize(12'345'678'901), "12.3 GB");
    EXPECT_EQ(formatFileSize(2'000'000'000'000), "2 TB");
    EXPECT_EQ(formatFileSize(1'500'000'000'000'000), "1.5 PB");
    EXPECT_EQ(formatFileSize(18'446'744'073'709'551'615u), "18.4 EB");
}

TEST(SystemVolumes, reads_the_mount_table_with_escaped_blanks_and_read_only_flags) {
    SystemVolumes system(test::fixture("backup/mounts"), "/nonexistent");
    std::vector<Mount> mounts = system.mounts();
    ASSERT_EQ(mounts.size(), 7u);
    EXPECT_EQ(mounts[4], (Mount{"/dev/sdb1", "/media/ann/FIELD NOTES", "vfat", false}));
    EXPECT_EQ(mounts[5], (Mount{"/dev/sdc1", "/mnt/archive", "ext4", true}));
    EXPECT_EQ(mounts[2].folder, "/");
}

TEST(SystemVolumes, a_missing_mount_table_lists_nothing) {
    SystemVolumes system("/nonexistent/mounts", "/nonexistent");
    EXPECT_TRUE(system.mounts().empty());
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

TEST_F(SystemDevices, a_partition_on_a_usb_bus_is_usb) {
    EXPECT_EQ(facts("/dev/sdb1"), (DeviceFacts{false, true}));
}

TEST_F(SystemDevices, a_memory_card_counts_like_usb) {
    EXPECT_EQ(facts("/dev/mmcblk0p1"), (DeviceFacts{false, true}));
}

TEST_F(SystemDevices, the_removable_flag_is_read_from_the_disk) {
    EXPECT_EQ(facts("/dev/sdx"), (DeviceFacts{true, false}));
}

TEST_F(SystemDevices, an_internal_disk_or_an_unknown_device_is_neither) {
    EXPECT_EQ(facts("/dev/sda2"), DeviceFacts{});
    EXPECT_EQ(facts("/dev/nvme9n9p9"), DeviceFacts{});
    EXPECT_EQ(facts("server:/export"), DeviceFacts{});
}

} // namespace
} // namespace quarrydex
