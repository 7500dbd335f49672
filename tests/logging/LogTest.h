// A fixture for play-log tests: a fresh device root, a fault-injecting
// platform whose clocks the test sets, and helpers to show bytes as hex.
#ifndef VIRELINE_TESTS_LOGGING_LOGTEST_H_
#define VIRELINE_TESTS_LOGGING_LOGTEST_H_

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include <vireline/BaseUtils.h>
#include <vireline/CLogData.h>

#include "DeviceRootTest.h"
#include "platform/FaultInjectionEnv.h"

class LogTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    vireline::Env::SetCurrent(&mEnv);
    SetElapsedMSecs(0x04030201);  // stamps read "01 02 03 04"
  }

  // Makes BaseUtils::GetElapsedTimeAsMSecs answer `ms`, whenever its clock started.
  void SetElapsedMSecs(uint32_t ms) {
    const uint64_t probe = uint64_t{1} << 50;
    mEnv.SetNowMicros(probe);
    uint64_t start = probe / 1000 - BaseUtils::Instance()->GetElapsedTimeAsMSecs();
    mEnv.SetNowMicros((start + ms) * 1000);
  }

  // `bytes` as lower-case hex, one space between bytes.
  static std::string Hex(const unsigned char* bytes, size_t size) {
    std::string text;
    char digits[4];
    for (size_t i = 0; i < size; ++i) {
      std::snprintf(digits, sizeof digits, i == 0 ? "%02x" : " %02x", bytes[i]);
      text += digits;
    }
    return text;
  }
  static std::string Hex(const std::string& bytes) {
    return Hex(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
  }

  // The record's bytes as they go into a file, as hex.
  static std::string Hex(const CLogData& record) {
    if (record.GetPack() == nullptr) return std::string();
    return Hex(record.GetPack()->GetBuffer(), record.GetPack()->GetTotalSize());
  }

  // The record's bytes as they go into a file.
  static std::string Bytes(const CLogData& record) {
    return std::string(reinterpret_cast<const char*>(record.GetPack()->GetBuffer()),
                       record.GetPack()->GetTotalSize());
  }

  vireline::FaultInjectionEnv mEnv{vireline::Env::Default()};
};

#endif  // VIRELINE_TESTS_LOGGING_LOGTEST_H_
