// A real disk for the length of a test, and the same disk with faults.
#pragma once

#include <gtest/gtest.h>

#include "platform/disk/drive_file_system.h"
#include "support/faulty_file_system.h"
#include "support/temporary_drive.h"

namespace skv::test {

class DiskTest : public ::testing::Test {
 protected:
  // On the machine, in exactly this spelling, which the drive has no part in.
  std::string onMachine(const std::string& path) const { return drive.native() + "/" + path; }

  TemporaryDrive drive;
  DriveFileSystem disk{drive.drives()};
  FaultyFileSystem files{disk};  // passes all through unless told
};

}  // namespace skv::test
