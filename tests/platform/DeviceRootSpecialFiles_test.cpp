// Under a folder standing in for a device, a FIFO or device node where the
// image should hold a file is refused at once instead of blocking its reader
// or feeding it without end.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <string>

#include <vireline/CFileIO.h>

#include "DeviceRootTest.h"
#include "platform/Env.h"

class DeviceRootSpecialFilesTest : public DeviceRootTest {
 protected:
  // Makes a FIFO at device path `path`.
  void MakeFifo(const std::string& path) const {
    MakeDirs(path.substr(0, path.rfind('/')));
    ASSERT_EQ(::mkfifo(Host(path).c_str(), 0600), 0);
  }

  // The error of opening device path `path` for reading (0: it opened).
  static int OpenError(const std::string& path) {
    FILE* stream = nullptr;
    vireline::Result result = vireline::Env::Current()->OpenStream(path, "r", &stream);
    if (stream != nullptr) vireline::Env::Current()->CloseStream(stream);
    return result.error();
  }
};

TEST_F(DeviceRootSpecialFilesTest, AFifoIsRefusedWithoutWaitingForAWriter) {
  MakeFifo("/QV/Bulk/settings.cfg");
  EXPECT_EQ(OpenError("/QV/Bulk/settings.cfg"), ENXIO);
}

TEST_F(DeviceRootSpecialFilesTest, ALinkToAFifoIsRefused) {
  MakeFifo("/var/run/pipe");
  MakeDirs("/QV/Bulk");
  ASSERT_EQ(::symlink("/var/run/pipe", Host("/QV/Bulk/settings.cfg").c_str()), 0);
  EXPECT_EQ(OpenError("/QV/Bulk/settings.cfg"), ENXIO);
}

TEST_F(DeviceRootSpecialFilesTest, ALinkToADeviceNodeNamesTheImagesFileOfThatPath) {
  MakeDirs("/QV/Bulk");
  ASSERT_EQ(::symlink("/dev/urandom", Host("/QV/Bulk/settings.cfg").c_str()), 0);
  EXPECT_EQ(OpenError("/QV/Bulk/settings.cfg"), ENOENT);  // the image holds no /dev/urandom
}

TEST_F(DeviceRootSpecialFilesTest, RegularFilesAndMissingOnesAreAsBefore) {
  WriteFile("/QV/Bulk/settings.cfg", "A=1\n");
  EXPECT_EQ(OpenError("/QV/Bulk/settings.cfg"), 0);
  EXPECT_EQ(OpenError("/QV/Bulk/none.cfg"), ENOENT);
}

TEST_F(DeviceRootSpecialFilesTest, ASequentialReadRefusesAFifoWithoutWaitingAndNamesTheDevicePath) {
  MakeFifo("/QV/Bulk/settings.cfg");
  MakeFifo("/var/run/pipe");
  ASSERT_EQ(::symlink("/var/run/pipe", Host("/QV/Bulk/linked.cfg").c_str()), 0);
  for (const char* path : {"/QV/Bulk/settings.cfg", "/QV/Bulk/linked.cfg"}) {
    std::unique_ptr<vireline::SequentialFile> file;
    vireline::Result result = vireline::Env::Current()->NewSequentialFile(path, &file);
    EXPECT_EQ(result.error(), ENXIO) << path;
    EXPECT_EQ(result.path(), path);
    EXPECT_EQ(file, nullptr) << path;
  }
}

TEST_F(DeviceRootSpecialFilesTest, ALookupProbeOfAFifoDoesNotWait) {
  MakeFifo("/QV/Base/Art/star.png");
  vireline::Env::Current()->OpensForReading("/QV/Base/Art/star.png");  // returns at once, whatever it answers
  SUCCEED();
}

TEST_F(DeviceRootSpecialFilesTest, AKeyValueFifoIsNeitherReadNorReplaced) {
  MakeFifo("/QV/Bulk/settings.cfg");
  CFileIO file;
  EXPECT_FALSE(file.Open("/QV/Bulk/settings.cfg"));
  EXPECT_TRUE(file.SetStr("A", "1"));
  EXPECT_FALSE(file.Write());
  struct stat info;
  ASSERT_EQ(::stat(Host("/QV/Bulk/settings.cfg").c_str(), &info), 0);
  EXPECT_TRUE(S_ISFIFO(info.st_mode));
}
