// A stand-in for the system daemon: listens on a UNIX socket in the test's
// device root from a thread of the test process, serves a fixed number of
// connections and records what each one sent. Every wait is bounded, so a
// client that misbehaves makes the test fail instead of hanging the suite.
#ifndef VIRELINE_TESTS_BASEUTILS_FAKEDAEMON_H_
#define VIRELINE_TESTS_BASEUTILS_FAKEDAEMON_H_

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

class FakeDaemon {
 public:
  // How long the daemon waits for a client or for its bytes.
  static const int kWaitMillis = 5000;

  // Listens on host path `socketPath`; each of `connections` clients gets
  // `reply` in one write (nothing when empty) after the daemon read 8 bytes or
  // the client stopped sending, and is then disconnected.
  FakeDaemon(const std::string& socketPath, const std::string& reply, int connections = 1)
      : mReply(reply), mConnections(connections) {
    std::filesystem::create_directories(std::filesystem::path(socketPath).parent_path());
    mListener = ::socket(AF_UNIX, SOCK_STREAM, 0);
    struct sockaddr_un address;
    std::memset(&address, 0, sizeof address);
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, socketPath.c_str(), sizeof address.sun_path - 1);
    mListening = mListener >= 0 &&
                 ::bind(mListener, reinterpret_cast<struct sockaddr*>(&address), sizeof address) == 0 &&
                 ::listen(mListener, 4) == 0;
    mThread = std::thread([this] { Serve(); });
  }

  ~FakeDaemon() { Join(); }

  // An 8-byte message laid out by hand: command then value, least significant byte first.
  static std::string Message(uint32_t command, uint32_t value) {
    std::string bytes(8, '\0');
    for (int i = 0; i < 4; ++i) {
      bytes[i] = static_cast<char>((command >> (8 * i)) & 0xFF);
      bytes[4 + i] = static_cast<char>((value >> (8 * i)) & 0xFF);
    }
    return bytes;
  }

  FakeDaemon(const FakeDaemon&) = delete;
  FakeDaemon& operator=(const FakeDaemon&) = delete;

  // Waits until the daemon has served its clients or given up, and closes it.
  void Join() {
    if (mThread.joinable()) mThread.join();
    if (mListener >= 0) ::close(mListener);
    mListener = -1;
  }

  // True when the socket could be set up.
  bool listening() const { return mListening; }

  // The bytes each served client sent, in order.
  std::vector<std::string> Received() {
    std::lock_guard<std::mutex> lock(mMutex);
    return mReceived;
  }

 private:
  static bool WaitReadable(int fd) {
    struct pollfd poller = {fd, POLLIN, 0};
    return ::poll(&poller, 1, kWaitMillis) == 1;
  }

  std::string ReadMessage(int client) {
    std::string bytes;
    char buffer[8];
    while (bytes.size() < sizeof buffer && WaitReadable(client)) {
      ssize_t got = ::recv(client, buffer, sizeof buffer - bytes.size(), 0);
      if (got <= 0) break;
      bytes.append(buffer, static_cast<size_t>(got));
    }
    return bytes;
  }

  void Serve() {
    for (int served = 0; mListening && served < mConnections; ++served) {
      if (!WaitReadable(mListener)) return;
      int client = ::accept(mListener, nullptr, nullptr);
      if (client < 0) return;
      std::string bytes = ReadMessage(client);
      {
        std::lock_guard<std::mutex> lock(mMutex);
        mReceived.push_back(bytes);
      }
      if (!mReply.empty()) ::send(client, mReply.data(), mReply.size(), MSG_NOSIGNAL);
      ::close(client);
    }
  }

  std::string mReply;
  int mConnections;
  int mListener = -1;
  bool mListening = false;
  std::mutex mMutex;
  std::vector<std::string> mReceived;
  std::thread mThread;
};

#endif  // VIRELINE_TESTS_BASEUTILS_FAKEDAEMON_H_
