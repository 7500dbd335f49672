// Requests to the system daemon, answered by a fake daemon on the control
// socket inside the test's device root.
#include <vireline/BaseUtils.h>
#include <vireline/Platform.h>

#include <gtest/gtest.h>
#include <unistd.h>

#include <climits>
#include <filesystem>
#include <set>
#include <string>

#include "DeviceRootTest.h"
#include "baseutils/FakeDaemon.h"
#include "platform/FaultInjectionEnv.h"

namespace {

const char kSocket[] = "/var/run/qvd-control";

std::string Message(uint32_t command, uint32_t value) { return FakeDaemon::Message(command, value); }

std::set<std::string> OpenSockets() {
  std::set<std::string> sockets;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    std::error_code error;
    std::string target = std::filesystem::read_symlink(entry.path(), error).string();
    if (!error && target.compare(0, 7, "socket:") == 0) sockets.insert(entry.path().filename().string());
  }
  return sockets;
}

size_t OpenDescriptorCount() {
  size_t count = 0;
  for (auto it = std::filesystem::directory_iterator("/proc/self/fd"); it != std::filesystem::directory_iterator();
       ++it) {
    ++count;
  }
  return count;
}

}  // namespace

class BaseUtilsDaemonTest : public DeviceRootTest {
 protected:
  void SetUp() override {
    DeviceRootTest::SetUp();
    CaptureDebugOutput();
    utils = BaseUtils::Instance();
    utils->SetupTrace(0, true);
  }

  void TearDown() override {
    utils->SetupTrace(0, false);
    DeviceRootTest::TearDown();
  }

  std::string SocketPath() const { return Host(kSocket); }

  BaseUtils* utils = nullptr;
};

TEST_F(BaseUtilsDaemonTest, GetSystemVolumeSendsCommandZeroAndReturnsTheReplyValue) {
  FakeDaemon daemon(SocketPath(), Message(0x80000000u, 42));
  ASSERT_TRUE(daemon.listening());
  EXPECT_EQ(utils->GetSystemVolume(), 42);
  daemon.Join();
  EXPECT_EQ(daemon.Received(), std::vector<std::string>{Message(0, 0)});
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(BaseUtilsDaemonTest, GetSystemBrightnessSendsCommandTwoAndReturnsTheReplyValue) {
  FakeDaemon daemon(SocketPath(), Message(0x80000002u, 77));
  ASSERT_TRUE(daemon.listening());
  EXPECT_EQ(utils->GetSystemBrightness(), 77);
  daemon.Join();
  EXPECT_EQ(daemon.Received(), std::vector<std::string>{Message(2, 0)});
}

TEST_F(BaseUtilsDaemonTest, GetCommandIgnoresTheCallersValue) {
  FakeDaemon daemon(SocketPath(), Message(0x80000002u, 0xFFFFFFFFu));
  int value = 1234;
  EXPECT_EQ(utils->DaemonControl(BaseUtils::kQvdGetBrightness, &value), 0);
  EXPECT_EQ(value, -1);
  daemon.Join();
  EXPECT_EQ(daemon.Received(), std::vector<std::string>{Message(2, 0)});
}

TEST_F(BaseUtilsDaemonTest, SetSystemBrightnessSendsCommandThreeWithTheLevel) {
  FakeDaemon daemon(SocketPath(), "");
  EXPECT_EQ(utils->SetSystemBrightness(0x01020304), 0);
  daemon.Join();
  EXPECT_EQ(daemon.Received(), std::vector<std::string>{std::string("\x03\0\0\0\x04\x03\x02\x01", 8)});
}

TEST_F(BaseUtilsDaemonTest, SetSystemBrightnessReturnsZeroRightAfterTheSendWhateverTheDaemonReplies) {
  FakeDaemon daemon(SocketPath(), "junk", 2);
  EXPECT_EQ(utils->SetSystemBrightness(5), 0);
  EXPECT_EQ(utils->SetSystemBrightness(-5), 0);
  daemon.Join();
  EXPECT_EQ(daemon.Received(), (std::vector<std::string>{Message(3, 5), Message(3, 0xFFFFFFFBu)}));
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(BaseUtilsDaemonTest, SetRTCTimeSendsCommandFiveWithTheTimeUnsigned) {
  FakeDaemon daemon(SocketPath(), "");
  EXPECT_EQ(utils->SetRTCTime(0xF0000001u), 0);
  daemon.Join();
  EXPECT_EQ(daemon.Received(), std::vector<std::string>{Message(5, 0xF0000001u)});
}

TEST_F(BaseUtilsDaemonTest, UnwrappedCommandsOneAndFourCarryTheirValue) {
  FakeDaemon daemon(SocketPath(), "", 2);
  int value = 9;
  EXPECT_EQ(utils->DaemonControl(static_cast<BaseUtils::qvd_command>(1), &value), 0);
  EXPECT_EQ(utils->DaemonControl(static_cast<BaseUtils::qvd_command>(4), &value), 0);
  daemon.Join();
  EXPECT_EQ(daemon.Received(), (std::vector<std::string>{Message(1, 9), Message(4, 9)}));
}

TEST_F(BaseUtilsDaemonTest, ReplyWithTheTopBitClearIsABadResponse) {
  FakeDaemon daemon(SocketPath(), Message(0x00000002u, 99));
  int value = 7;
  EXPECT_EQ(utils->DaemonControl(BaseUtils::kQvdGetBrightness, &value), -1);
  EXPECT_EQ(value, 7);
  daemon.Join();
  EXPECT_EQ(DebugOutput(), "DaemonControl bad response ret=8, msg.command=2\n");
}

TEST_F(BaseUtilsDaemonTest, ReplyShorterThanEightBytesIsABadResponse) {
  FakeDaemon daemon(SocketPath(), Message(0x80000000u, 99).substr(0, 4));
  EXPECT_EQ(utils->GetSystemVolume(), 0);
  daemon.Join();
  EXPECT_EQ(DebugOutput(), "DaemonControl bad response ret=4, msg.command=80000000\n");
}

TEST_F(BaseUtilsDaemonTest, ReplyForAnotherCommandIsABadResponse) {
  FakeDaemon daemon(SocketPath(), Message(0x80000000u, 99));
  EXPECT_EQ(utils->GetSystemBrightness(), 0);
  daemon.Join();
  EXPECT_EQ(DebugOutput(), "DaemonControl bad response ret=8, msg.command=80000000\n");
}

TEST_F(BaseUtilsDaemonTest, DaemonHangingUpWithoutReplyIsABadResponse) {
  FakeDaemon daemon(SocketPath(), "");
  EXPECT_EQ(utils->GetSystemVolume(), 0);
  daemon.Join();
  EXPECT_EQ(daemon.Received(), std::vector<std::string>{Message(0, 0)});
  EXPECT_EQ(DebugOutput(), "DaemonControl bad response ret=0, msg.command=0\n");
}

TEST_F(BaseUtilsDaemonTest, BadResponseLeavesItsConnectionOpen) {
  std::set<std::string> before = OpenSockets();
  {
    FakeDaemon daemon(SocketPath(), Message(2, 1));
    EXPECT_EQ(utils->GetSystemBrightness(), 0);
  }
  std::set<std::string> after = OpenSockets();
  std::vector<std::string> left;
  for (const std::string& fd : after) {
    if (before.count(fd) == 0) left.push_back(fd);
  }
  ASSERT_EQ(left.size(), 1u);
  ::close(std::stoi(left[0]));  // the test owns what the library left behind
}

TEST_F(BaseUtilsDaemonTest, NoDaemonFailsTheConnect) {
  int value = 5;
  EXPECT_EQ(utils->DaemonControl(BaseUtils::kQvdGetVolume, &value), -1);
  EXPECT_EQ(value, 5);
  EXPECT_EQ(utils->GetSystemVolume(), 0);
  EXPECT_EQ(utils->GetSystemBrightness(), 0);
  EXPECT_EQ(utils->SetSystemBrightness(3), -1);
  EXPECT_EQ(utils->SetRTCTime(3), -1);
  std::string line = "DaemonControl socket connect failed ret=-1\n";
  EXPECT_EQ(DebugOutput(), line + line + line + line + line);
}

TEST_F(BaseUtilsDaemonTest, FailuresPrintNothingWithoutTrace) {
  utils->SetupTrace(0xFFFFFFFFu, false);
  EXPECT_EQ(utils->SetSystemBrightness(3), -1);
  EXPECT_EQ(DebugOutput(), "");
}

TEST_F(BaseUtilsDaemonTest, SocketThatCannotBeCreated) {
  vireline::FaultInjectionEnv env(vireline::Env::Default());
  env.FailAfter(vireline::FaultInjectionEnv::kSocket, 0, EMFILE);
  vireline::Env::SetCurrent(&env);
  EXPECT_EQ(utils->SetSystemBrightness(3), -1);
  EXPECT_EQ(DebugOutput(), "DaemonControl socket creation failed sock=-1\n");
}

TEST_F(BaseUtilsDaemonTest, SendThatFailsClosesAndReturnsMinusOne) {
  size_t descriptors = OpenDescriptorCount();
  {
    FakeDaemon daemon(SocketPath(), "");
    vireline::FaultInjectionEnv env(vireline::Env::Default());
    env.FailAfter(vireline::FaultInjectionEnv::kSend, 0, EPIPE);
    vireline::Env::SetCurrent(&env);
    EXPECT_EQ(utils->GetSystemVolume(), 0);
    vireline::Env::SetCurrent(nullptr);
    daemon.Join();
    EXPECT_EQ(daemon.Received(), std::vector<std::string>{""});
  }
  EXPECT_EQ(DebugOutput(), "DaemonControl socket send failed ret=-1\n");
  EXPECT_EQ(OpenDescriptorCount(), descriptors);
}

TEST_F(BaseUtilsDaemonTest, ReceiveThatFailsClosesAndReturnsMinusOne) {
  size_t descriptors = OpenDescriptorCount();
  {
    FakeDaemon daemon(SocketPath(), Message(0x80000000u, 4));
    vireline::FaultInjectionEnv env(vireline::Env::Default());
    env.FailAfter(vireline::FaultInjectionEnv::kReceive, 0, ECONNRESET);
    vireline::Env::SetCurrent(&env);
    int value = 6;
    EXPECT_EQ(utils->DaemonControl(BaseUtils::kQvdGetVolume, &value), -1);
    EXPECT_EQ(value, 6);
    vireline::Env::SetCurrent(nullptr);
  }
  EXPECT_EQ(DebugOutput(), "DaemonControl socket recieve failed ret=-1\n");
  EXPECT_EQ(OpenDescriptorCount(), descriptors);
}

TEST_F(BaseUtilsDaemonTest, ManyCallsLeaveNoDescriptorOpen) {
  const int kCalls = 25;
  size_t descriptors = OpenDescriptorCount();
  {
    FakeDaemon daemon(SocketPath(), Message(0x80000000u, 11), 2 * kCalls);
    for (int i = 0; i < kCalls; ++i) {
      EXPECT_EQ(utils->GetSystemVolume(), 11);
      EXPECT_EQ(utils->SetSystemBrightness(i), 0);
    }
  }
  std::filesystem::remove(SocketPath());
  for (int i = 0; i < kCalls; ++i) EXPECT_EQ(utils->SetRTCTime(static_cast<U32>(i)), -1);
  EXPECT_EQ(OpenDescriptorCount(), descriptors);
}

TEST_F(BaseUtilsDaemonTest, DeviceRootTooLongForASocketAddressFailsTheConnect) {
  std::string longRoot = mRoot + "/" + std::string(120, 'r');
  std::filesystem::create_directories(longRoot);
  vireline::SetDeviceRoot(longRoot);
  size_t descriptors = OpenDescriptorCount();
  EXPECT_EQ(utils->GetSystemVolume(), 0);
  EXPECT_EQ(OpenDescriptorCount(), descriptors);
  EXPECT_EQ(DebugOutput(), "DaemonControl socket connect failed ret=-1\n");
}
