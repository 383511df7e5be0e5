// Room on a disk, as its file system reports it.
#include "doctor/Examination.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace wenlolib::tests {
namespace {

using tools::Finding;
using tools::Level;

struct Disk {
  unsigned long blocks;  // of 4096 bytes, for this user
  unsigned long files, freeFiles;
  unsigned long flags;
  Level level;
  const char* message;
};

constexpr unsigned long mebibyte = 256;  // in blocks

const Disk disks[] = {
    {100 * mebibyte, 9, 1, 0, Level::ok, "100.0 MiB free"},
    {100 * mebibyte - 1, 9, 1, 0, Level::warning, "99.9 MiB free"},
    {mebibyte, 9, 1, 0, Level::warning, "1.0 MiB free"},
    {mebibyte - 1, 9, 1, 0, Level::error, "1,020.0 KiB free"},
    {0, 9, 1, 0, Level::error, "0 B free"},
    {200 * mebibyte, 9, 0, 0, Level::error, "200.0 MiB free, but no inodes for another file"},
    {200 * mebibyte, 0, 0, 0, Level::ok, "200.0 MiB free"},  // does not count its files
    {200 * mebibyte, 9, 1, ST_RDONLY, Level::error, "on a read-only file system"},
    {0, 9, 0, ST_RDONLY, Level::error, "on a read-only file system"},
};

TEST(DiskRoom, IsJudgedByBytesFilesAndFlags) {
  for (const Disk& disk : disks) {
    struct statvfs told {};
    told.f_bsize = 1;  // the preferred size of a transfer, which must be ignored
    told.f_frsize = 4096;
    told.f_bfree = 1000 * mebibyte;  // includes room for the superuser only
    told.f_bavail = disk.blocks;
    told.f_files = disk.files;
    told.f_ffree = 9;
    told.f_favail = disk.freeFiles;
    told.f_flag = disk.flags;
    const Finding finding = tools::roomFinding("/folder", told);
    EXPECT_EQ(finding.level, disk.level) << disk.message;
    EXPECT_EQ(finding.message, disk.message);
    EXPECT_EQ(finding.remedy.empty(), disk.level == Level::ok) << disk.message;
    EXPECT_EQ(finding.check, "disk");
    EXPECT_EQ(finding.subject, "/folder");
  }
}

TEST(DiskRoom, ThatIsNotKnownIsNotWell) {
  const Finding finding = tools::unknownRoomFinding("/folder", EIO);
  EXPECT_EQ(finding.level, Level::warning);
  EXPECT_EQ(finding.check, "disk");
  EXPECT_EQ(finding.message, "its free space is not known: Input/output error");
  EXPECT_NE(finding.remedy, "");
}

}  // namespace
}  // namespace wenlolib::tests
