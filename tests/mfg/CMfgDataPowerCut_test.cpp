// An Update cut short at any point - a failing or interrupted erase, write,
// read-back or close of either copy - must leave a copy that Init loads.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include <vireline/CMfgData.h>

#include "mfg/MfgDataTest.h"
#include "platform/FaultInjectionEnv.h"

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;
using vireline::Env;
using vireline::FaultInjectionEnv;

namespace {

struct Step {
  FaultInjectionEnv::Op op;
  const char* name;
};

const Step kSteps[] = {
    {FaultInjectionEnv::kOpen, "open"},   {FaultInjectionEnv::kErase, "erase"},
    {FaultInjectionEnv::kWrite, "write"}, {FaultInjectionEnv::kRead, "read"},
    {FaultInjectionEnv::kClose, "close"},
};

std::string NewRecord() {
  std::string record = mfgtest::SampleRecord();
  mfgtest::PutBytes(&record, 288, "NEW-SKU-001");
  return mfgtest::Sealed(record);
}

// Which copy a failed Update's status names.
int FailedCopy(int status) {
  bool copy1 = status == kMfgWriteFailed1 || status == kMfgReadFailed1 || status == kMfgChecksumInvalid1;
  return copy1 ? 1 : 0;
}

}  // namespace

class CMfgDataPowerCutTest : public MfgDataTest {
 protected:
  void SetUp() override {
    MfgDataTest::SetUp();
    WriteModeScript(0);
  }

  // Copy 0 holds `copy0` and copy 1 the old record; then an Update of a new
  // SKU runs with `env` installed, `step` failing after `successes` calls
  // when given. Its status.
  int UpdateWith(FaultInjectionEnv* env, const std::string& copy0, const Step* step = nullptr, int successes = 0) {
    WriteCopy(0, copy0);
    WriteCopy(1, mfgtest::SampleRecord());
    CMfgData data;
    EXPECT_EQ(data.Init(), 0);
    EXPECT_EQ(data.SetMfgMode(true), 0);
    EXPECT_EQ(data.SetSku("NEW-SKU-001"), 0);
    env->Reset();
    if (step != nullptr) env->FailAfter(step->op, successes);
    Env::SetCurrent(env);
    CaptureStderr();
    int status = data.Update();
    GetCapturedStderr();
    Env::SetCurrent(nullptr);
    return status;
  }

  // What a restart finds: Init's result and the record it loaded.
  std::string RecordAfterRestart() {
    CMfgData data;
    EXPECT_EQ(data.Init(), 0);
    EXPECT_EQ(data.ValidateCheckSum(), 0);
    std::string record(4096, '?');
    EXPECT_EQ(data.Read(&record[0], 0, 4096), 4096u);
    return record;
  }

  // For each step, fails its calls after the first n, for n at the start, the
  // middle and the end of the calls a whole Update makes (byte-wise reads make
  // thousands), and checks what a restart finds. `copy0` is what copy 0 holds
  // before; Update writes copy `first` first.
  void CutEveryStep(const std::string& copy0, int first) {
    const std::string before[2] = {copy0, mfgtest::SampleRecord()};
    FaultInjectionEnv env(Env::Default());
    for (const Step& step : kSteps) {
      ASSERT_EQ(UpdateWith(&env, copy0), 0);
      int calls = env.Calls(step.op);
      ASSERT_GT(calls, 0) << step.name;
      for (int n : Countdowns(calls)) {
        SCOPED_TRACE(std::string(step.name) + " fails after " + std::to_string(n));
        int status = UpdateWith(&env, copy0, &step, n);
        ASSERT_NE(status, 0);
        EXPECT_TRUE(IsValid(Copy(0)) || IsValid(Copy(1)));
        std::string record = RecordAfterRestart();
        EXPECT_TRUE(record == NewRecord() || record == mfgtest::SampleRecord()) << Sku(record);
        if (FailedCopy(status) == first) {
          // Cut while writing the first copy: the other one is untouched.
          EXPECT_TRUE(Copy(1 - first) == before[1 - first]) << "status " << status;
        } else {
          // The first copy was written and verified before the cut.
          EXPECT_TRUE(Copy(first) == NewRecord()) << "status " << status << ": " << Sku(Copy(first));
        }
      }
    }
  }

  // 0-3, the middle and the last calls, in range.
  static std::set<int> Countdowns(int calls) {
    std::set<int> countdowns;
    for (int n : {0, 1, 2, 3, calls / 2 - 1, calls / 2, calls / 2 + 1, calls - 2, calls - 1}) {
      if (n >= 0 && n < calls) countdowns.insert(n);
    }
    return countdowns;
  }

  // The SKU field and checksum state, to tell records apart in messages.
  static std::string Sku(const std::string& record) {
    if (record.size() != 4096) return "size " + std::to_string(record.size());
    return record.substr(288, 11) + (IsValid(record) ? " (valid)" : " (invalid)");
  }

  static bool IsValid(const std::string& copy) {
    return copy.size() == 4096 && CMfgData::ValidateCheckSum(reinterpret_cast<const unsigned char*>(copy.data())) == 0;
  }
};

TEST_F(CMfgDataPowerCutTest, AFailureAtAnyStepLeavesACopyThatInitLoads) {
  CutEveryStep(mfgtest::SampleRecord(), 1);
}

TEST_F(CMfgDataPowerCutTest, AFailureAtAnyStepAfterLoadingCopy1LeavesACopyThatInitLoads) {
  // Copy 0 is corrupt, so copy 1 is loaded and copy 0 is written first.
  std::string corrupt = mfgtest::SampleRecord();
  corrupt[10] ^= 0x40;
  CutEveryStep(corrupt, 0);
}

TEST_F(CMfgDataPowerCutTest, ACopyTornMidWriteIsRejectedAndTheOtherIsLoaded) {
  for (size_t cut : {size_t{0}, size_t{1}, size_t{299}, size_t{2048}, size_t{4091}, size_t{4095}}) {
    SCOPED_TRACE("cut at " + std::to_string(cut));
    std::string torn = NewRecord().substr(0, cut) + std::string(4096 - cut, '\xFF');
    WriteCopy(0, mfgtest::SampleRecord());
    WriteCopy(1, torn);
    EXPECT_EQ(RecordAfterRestart(), mfgtest::SampleRecord());
    WriteCopy(0, torn);
    WriteCopy(1, NewRecord());
    EXPECT_EQ(RecordAfterRestart(), NewRecord());
  }
}
