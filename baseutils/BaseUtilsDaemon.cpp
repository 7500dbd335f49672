// Requests to the system daemon over its control socket: one 8-byte message
// of a command and a value, each 32 bits little-endian, and for the get
// commands one reply of the same shape with the command's top bit set.
#include <vireline/BaseUtils.h>

#include <cstring>

#include "platform/Env.h"
#include "platform/LittleEndian.h"

namespace {

const char kControlSocket[] = "/var/run/qvd-control";
const size_t kMessageSize = 8;
const uint32_t kReplyBit = 0x80000000u;

// Commands 1 and 4 have no wrapper here but carry a value like the set commands.
bool CarriesValue(int command) { return command == 1 || command == 3 || command == 4 || command == 5; }

bool AwaitsReply(int command) {
  return command == BaseUtils::kQvdGetVolume || command == BaseUtils::kQvdGetBrightness;
}

// What the failed socket call returned, as callers have always been given it.
const int kCallFailed = -1;

}  // namespace

int BaseUtils::DaemonControl(qvd_command command, int* value) {
  unsigned char message[kMessageSize] = {0};
  vireline::EncodeFixed32(message, static_cast<uint32_t>(command));
  if (CarriesValue(command) && value != nullptr) vireline::EncodeFixed32(message + 4, static_cast<uint32_t>(*value));

  vireline::Env* env = vireline::Env::Current();
  int sock = -1;
  vireline::Result result = env->CreateLocalSocket(&sock);
  if (!result.ok()) {
    Trace("DaemonControl socket creation failed sock=%d\n", kCallFailed);
    return kCallFailed;
  }
  result = env->ConnectLocalSocket(sock, kControlSocket);
  if (!result.ok()) {
    env->CloseSocket(sock);
    Trace("DaemonControl socket connect failed ret=%d\n", kCallFailed);
    return kCallFailed;
  }
  size_t sent = 0;
  result = env->Send(sock, message, kMessageSize, &sent);
  if (!result.ok()) {
    Trace("DaemonControl socket send failed ret=%d\n", kCallFailed);
    env->CloseSocket(sock);
    return kCallFailed;
  }
  if (!AwaitsReply(command)) {
    env->CloseSocket(sock);
    return 0;
  }
  std::memset(message, 0, sizeof message);
  size_t received = 0;
  result = env->Receive(sock, message, kMessageSize, &received);
  if (!result.ok()) {
    Trace("DaemonControl socket recieve failed ret=%d\n", kCallFailed);
    env->CloseSocket(sock);
    return kCallFailed;
  }
  uint32_t replyCommand = vireline::DecodeFixed32(message);
  if (received == kMessageSize && (replyCommand & kReplyBit) != 0 &&
      (replyCommand & ~kReplyBit) == static_cast<uint32_t>(command)) {
    if (value != nullptr) *value = static_cast<int>(vireline::DecodeFixed32(message + 4));
    env->CloseSocket(sock);
    return 0;
  }
  // The connection is left open here, as older firmware has always done:
  // it ends with the process.
  Trace("DaemonControl bad response ret=%d, msg.command=%x\n", static_cast<int>(received), replyCommand);
  return kCallFailed;
}

int BaseUtils::GetSystemVolume() {
  int value = 0;
  DaemonControl(kQvdGetVolume, &value);
  return value;
}

int BaseUtils::GetSystemBrightness() {
  int value = 0;
  DaemonControl(kQvdGetBrightness, &value);
  return value;
}

int BaseUtils::SetSystemBrightness(int level) { return DaemonControl(kQvdSetBrightness, &level); }

int BaseUtils::SetRTCTime(U32 time) {
  int value = static_cast<int>(time);
  return DaemonControl(kQvdSetRtcTime, &value);
}
