#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <mutex>
#include <string>

#include <vireline/Platform.h>

namespace {

const int kDefaultMasterLevel = 1;  // errors and traces

struct DebugState {
  std::mutex mutex;
  std::map<int, int> moduleLevels;
  std::atomic<int> masterLevel{kDefaultMasterLevel};
  std::atomic<tDebugOutputFunction> output{nullptr};
  std::atomic<bool> abortOnAssert{false};
};

int InitialMasterLevel() {
  const char* text = std::getenv("VIRELINE_DEBUG_LEVEL");
  if (text == nullptr || *text == '\0') return kDefaultMasterLevel;
  char* end = nullptr;
  long level = std::strtol(text, &end, 10);
  return (*end == '\0') ? static_cast<int>(level) : kDefaultMasterLevel;
}

DebugState& State() {
  static DebugState* state = [] {
    auto* created = new DebugState;  // never destroyed: messages may come until exit
    created->masterLevel = InitialMasterLevel();
    return created;
  }();
  return *state;
}

std::string Format(const char* format, va_list args) {
  va_list measure;
  va_copy(measure, args);
  int length = std::vsnprintf(nullptr, 0, format, measure);
  va_end(measure);
  if (length < 0) return std::string();
  std::string text(static_cast<size_t>(length) + 1, '\0');
  std::vsnprintf(&text[0], text.size(), format, args);
  text.resize(static_cast<size_t>(length));
  return text;
}

void Emit(int module, int level, const std::string& text) {
  tDebugOutputFunction output = State().output.load();
  if (output != nullptr) {
    output(module, level, text.c_str());
  } else {
    std::fputs(text.c_str(), stderr);
  }
}

}  // namespace

PlatformDebug::PlatformDebug(int module) : mModule(module) {}

PlatformDebug::~PlatformDebug() = default;

void PlatformDebug::DebugOut(int level, const char* format, ...) {
  va_list args;
  va_start(args, format);
  VDebugOut(level, format, args);
  va_end(args);
}

void PlatformDebug::VDebugOut(int level, const char* format, va_list args) {
  if (format == nullptr || level > GetEffectiveDebugLevel()) return;
  Emit(mModule, level, Format(format, args));
}

void PlatformDebug::Assert(bool condition, const char* format, ...) {
  if (condition) return;
  va_list args;
  va_start(args, format);
  Emit(mModule, 1, format ? Format(format, args) : std::string());
  va_end(args);
  if (State().abortOnAssert) std::abort();
}

void PlatformDebug::SetDebugLevel(int level) {
  DebugState& state = State();
  std::lock_guard<std::mutex> lock(state.mutex);
  state.moduleLevels[mModule] = level;
}

void PlatformDebug::SetMasterDebugLevel(int level) { State().masterLevel = level; }

int PlatformDebug::GetEffectiveDebugLevel() const {
  DebugState& state = State();
  int master = state.masterLevel;
  std::lock_guard<std::mutex> lock(state.mutex);
  auto found = state.moduleLevels.find(mModule);
  return (found != state.moduleLevels.end() && found->second > master) ? found->second : master;
}

void PlatformDebug::SetOutputFunction(tDebugOutputFunction output) { State().output = output; }

void PlatformDebug::SetAbortOnAssert(bool abortOnAssert) { State().abortOnAssert = abortOnAssert; }
