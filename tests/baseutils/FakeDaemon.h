// A stand-in for the system daemon: listens on a UNIX socket in the test's
// device root, serves a fixed number of connections and records what each one
// sent. It serves either inline, from inside the library's own socket calls
// (no thread, so it also runs under user-mode emulators that cannot start
// threads), or from a thread, for clients in another process such as the
// inspector. Every wait is bounded, so a client that misbehaves makes the test
// fail instead of hanging the suite.
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

#include "platform/Env.h"

class FakeDaemon {
 public:
  // How long the daemon waits for a client or for its bytes.
  static const int kWaitMillis = 5000;

  // Where the daemon answers its clients.
  enum Serving {
    kInline,    // inside this process's library calls: before a receive, after a close
    kOnThread,  // on a thread of its own, for clients in other processes
  };

  // Listens on host path `socketPath`; each of `connections` clients gets
  // `reply` in one write (nothing when empty) after the daemon read 8 bytes or
  // the client stopped sending, and is then disconnected.
  FakeDaemon(const std::string& socketPath, const std::string& reply, int connections = 1,
             Serving serving = kInline)
      : mReply(reply), mConnections(connections), mServing(serving), mHook(this) {
    std::filesystem::create_directories(std::filesystem::path(socketPath).parent_path());
    mListener = ::socket(AF_UNIX, SOCK_STREAM, 0);
    struct sockaddr_un address;
    std::memset(&address, 0, sizeof address);
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, socketPath.c_str(), sizeof address.sun_path - 1);
    mListening = mListener >= 0 &&
                 ::bind(mListener, reinterpret_cast<struct sockaddr*>(&address), sizeof address) == 0 &&
                 ::listen(mListener, 4) == 0;
    if (serving == kOnThread) {
      mThread = std::thread([this] { Serve(kWaitMillis); });
    } else {
      mHook.Install();
    }
  }

  ~FakeDaemon() {
    Join();
    mHook.Remove();
  }

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
    if (mServing == kInline) Serve(0);
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
  // Runs the inline daemon inside the library's socket calls: a client's
  // request is already queued when it waits for the reply or hangs up.
  class Hook : public vireline::EnvWrapper {
   public:
    explicit Hook(FakeDaemon* daemon) : vireline::EnvWrapper(vireline::Env::Current()), mDaemon(daemon) {}

    void Install() { vireline::Env::SetCurrent(this); }

    void Remove() {
      if (vireline::Env::Current() == this) vireline::Env::SetCurrent(target() == vireline::Env::Default() ? nullptr : target());
    }

    vireline::Result Receive(int socket, void* data, size_t length, size_t* received) override {
      mDaemon->Serve(0);
      return vireline::EnvWrapper::Receive(socket, data, length, received);
    }

    vireline::Result CloseSocket(int socket) override {
      vireline::Result result = vireline::EnvWrapper::CloseSocket(socket);
      mDaemon->Serve(0);
      return result;
    }

   private:
    FakeDaemon* mDaemon;
  };

  static bool WaitReadable(int fd, int millis) {
    struct pollfd poller = {fd, POLLIN, 0};
    return ::poll(&poller, 1, millis) == 1;
  }

  std::string ReadMessage(int client) {
    std::string bytes;
    char buffer[8];
    while (bytes.size() < sizeof buffer && WaitReadable(client, kWaitMillis)) {
      ssize_t got = ::recv(client, buffer, sizeof buffer - bytes.size(), 0);
      if (got <= 0) break;
      bytes.append(buffer, static_cast<size_t>(got));
    }
    return bytes;
  }

  // Serves the clients still to come that connect within `millis`.
  void Serve(int millis) {
    for (; mListening && mServed < mConnections; ++mServed) {
      if (!WaitReadable(mListener, millis)) return;
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
  Serving mServing;
  int mServed = 0;
  Hook mHook;
  int mListener = -1;
  bool mListening = false;
  std::mutex mMutex;
  std::vector<std::string> mReceived;
  std::thread mThread;
};

#endif  // VIRELINE_TESTS_BASEUTILS_FAKEDAEMON_H_
