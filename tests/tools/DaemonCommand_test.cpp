// `vireline daemon`: the inspector talks to a fake daemon that the test runs
// on the control socket inside the test's device root.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "DeviceRootTest.h"
#include "EmulatorThreads.h"
#include "InspectorRunner.h"
#include "baseutils/FakeDaemon.h"

namespace {

typedef std::vector<std::string> Messages;

std::string Message(uint32_t command, uint32_t value) { return FakeDaemon::Message(command, value); }

}  // namespace

// The inspector is another process, so its daemon must answer from a thread
// (which the emulator that runs the cross-built tests cannot start).

class DaemonCommandTest : public DeviceRootTest {
 protected:
  InspectorRun Daemon(const std::string& arguments) const {
    return RunInspector("--root " + mRoot + " daemon " + arguments);
  }

  std::string SocketPath() const { return Host("/var/run/qvd-control"); }
};

TEST_F(DaemonCommandTest, VolumeShowsTheDaemonsAnswer) {
  SKIP_WITHOUT_THREADS();
  FakeDaemon daemon(SocketPath(), Message(0x80000000u, 42), 1, FakeDaemon::kOnThread);
  InspectorRun run = Daemon("volume");
  daemon.Join();
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "volume          42\n");
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(daemon.Received(), Messages{Message(0, 0)});
}

TEST_F(DaemonCommandTest, BrightnessAsJson) {
  SKIP_WITHOUT_THREADS();
  FakeDaemon daemon(SocketPath(), Message(0x80000002u, 80), 1, FakeDaemon::kOnThread);
  InspectorRun run = Daemon("brightness --json");
  daemon.Join();
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_NE(run.out.find("\"brightness\" : 80"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("\"confirmed\" : true"), std::string::npos) << run.out;
  EXPECT_EQ(daemon.Received(), Messages{Message(2, 0)});
}

TEST_F(DaemonCommandTest, SetBrightnessSendsTheLevel) {
  SKIP_WITHOUT_THREADS();
  FakeDaemon daemon(SocketPath(), "", 1, FakeDaemon::kOnThread);
  InspectorRun run = Daemon("set-brightness 7");
  daemon.Join();
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "brightness      7 (sent)\n");
  EXPECT_EQ(daemon.Received(), Messages{Message(3, 7)});
}

TEST_F(DaemonCommandTest, SetRtcSendsTheTimeUnsigned) {
  SKIP_WITHOUT_THREADS();
  FakeDaemon daemon(SocketPath(), "", 1, FakeDaemon::kOnThread);
  InspectorRun run = Daemon("set-rtc 4000000000");
  daemon.Join();
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "clock           4000000000 (sent)\n");
  EXPECT_EQ(daemon.Received(), Messages{Message(5, 4000000000u)});
}

TEST_F(DaemonCommandTest, NoDaemonIsReportedClearly) {
  InspectorRun run = Daemon("volume");
  EXPECT_EQ(run.exitStatus, 3);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "vireline daemon: no answer from the system daemon at /var/run/qvd-control "
                     "(DaemonControl socket connect failed ret=-1)\n");
}

TEST_F(DaemonCommandTest, BadAnswerIsReportedClearly) {
  SKIP_WITHOUT_THREADS();
  FakeDaemon daemon(SocketPath(), Message(0x80000000u, 1).substr(0, 4), 1, FakeDaemon::kOnThread);
  InspectorRun run = Daemon("volume");
  daemon.Join();
  EXPECT_EQ(run.exitStatus, 3);
  EXPECT_EQ(run.err, "vireline daemon: no answer from the system daemon at /var/run/qvd-control "
                     "(DaemonControl bad response ret=4, msg.command=80000000)\n");
}

TEST_F(DaemonCommandTest, UsageErrors) {
  EXPECT_EQ(Daemon("").exitStatus, 2);
  EXPECT_EQ(Daemon("set-brightness").exitStatus, 2);
  EXPECT_EQ(Daemon("set-brightness bright").exitStatus, 2);
  EXPECT_EQ(Daemon("set-rtc -1").exitStatus, 2);
  EXPECT_EQ(Daemon("set-rtc 4294967296").exitStatus, 2);
  EXPECT_EQ(Daemon("reboot").exitStatus, 2);
}
