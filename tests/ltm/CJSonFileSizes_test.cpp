// Documents of every size load whole: small ones are read into a stack buffer,
// larger ones go on into the heap (whatever size their file told), and the
// text still ends at its first zero byte whichever way it was read.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "ltm/CJSonFileTest.h"
#include "platform/Env.h"
#include "platform/ScopedEnv.h"

namespace {

const char kPath[] = "/QV/Bulk/Data/Sized.json";

// A document of exactly `size` bytes (at least 10): {"k":"xx...x"} and a line feed.
std::string DocumentOfSize(size_t size) { return "{\"k\":\"" + std::string(size - 10, 'x') + "\"}\n"; }

// A file that tells a size of 10 bytes whatever it holds, as one that grew
// after its size was taken would.
class UnderstatedFile : public vireline::SequentialFile, public vireline::SizeHinting {
 public:
  explicit UnderstatedFile(std::unique_ptr<vireline::SequentialFile> inner) : mInner(std::move(inner)) {}
  vireline::Result Read(size_t n, char* scratch, size_t* got) override { return mInner->Read(n, scratch, got); }
  vireline::Result Close() override { return mInner->Close(); }
  bool SizeHint(uint64_t* size) override {
    *size = 10;
    return true;
  }

 private:
  std::unique_ptr<vireline::SequentialFile> mInner;
};

// Opens every file for reading as an UnderstatedFile.
class UnderstatingEnv : public vireline::EnvWrapper {
 public:
  UnderstatingEnv() : EnvWrapper(vireline::Env::Current()) {}
  vireline::Result NewSequentialFile(const std::string& path, std::unique_ptr<vireline::SequentialFile>* file) override {
    vireline::Result opened = target()->NewSequentialFile(path, file);
    if (opened.ok()) *file = std::make_unique<UnderstatedFile>(std::move(*file));
    return opened;
  }
};

}  // namespace

class CJSonFileSizesTest : public CJSonFileTest {};

TEST_F(CJSonFileSizesTest, DocumentsAroundTheStackBufferSizeLoadWhole) {
  for (size_t size : {10u, 4094u, 4095u, 4096u, 4097u, 4098u, 8192u, 100000u}) {
    WriteFile(kPath, DocumentOfSize(size));
    LTM::CJSonFile file(kPath, 0);
    ASSERT_EQ(file.Load(), 0u) << size;
    EXPECT_EQ(file.mRoot["k"].asString().raw(), std::string(size - 10, 'x')) << size;
    EXPECT_EQ(file.mRoot.size(), 1u) << size;
  }
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(CJSonFileSizesTest, AZeroByteEndsTheTextOnEitherSideOfTheStackBufferSize) {
  for (size_t at : {4000u, 4094u, 4095u, 4096u, 5000u}) {
    std::string document = "{\"k\":\"" + std::string(at - 8, 'y') + "\"}";
    ASSERT_EQ(document.size(), at);
    WriteFile(kPath, document + std::string(1, '\0') + std::string(3000, 'z'));
    LTM::CJSonFile file(kPath, 0);
    ASSERT_EQ(file.Load(), 0u) << at;
    EXPECT_EQ(file.mRoot["k"].asString().raw(), std::string(at - 8, 'y')) << at;
  }
}

TEST_F(CJSonFileSizesTest, InvalidUtf8AfterALongAsciiRunIsAParseError) {
  WriteFile(kPath, "{\"k\":\"" + std::string(6000, 'x') + "\xC3\"}\n");
  LTM::CJSonFile file(kPath, 0);
  EXPECT_EQ(file.Load(), 1u);
  EXPECT_EQ(DebugOutput(), ParseError(kPath));
  EXPECT_TRUE(file.mRoot.isObject());
  EXPECT_EQ(file.mRoot.size(), 0u);
}

TEST_F(CJSonFileSizesTest, AFileLongerThanItSaidLoadsWhole) {
  UnderstatingEnv understating;
  vireline::ScopedEnv scoped(&understating);
  for (size_t size : {100u, 4095u, 4096u, 4097u, 20000u}) {
    WriteFile(kPath, DocumentOfSize(size));
    LTM::CJSonFile file(kPath, 0);
    ASSERT_EQ(file.Load(), 0u) << size;
    EXPECT_EQ(file.mRoot["k"].asString().raw(), std::string(size - 10, 'x')) << size;
  }
}
