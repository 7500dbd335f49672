#include <atomic>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>
#include <string>

#include <vireline/Platform.h>

#include "platform/DebugJoined.h"

namespace {

const int kDefaultMasterLevel = 1;  // errors and traces

// Module levels are read on every message, so the first modules to get a
// level get a slot that is read without a lock; any further ones live in the
// map below, under the mutex.
const int kNoModule = INT_MIN;
const int kLevelSlots = 32;

struct LevelSlot {
  std::atomic<int> module{kNoModule};  // set once, after `level`
  std::atomic<int> level{0};
};

struct DebugState {
  std::mutex mutex;
  LevelSlot slots[kLevelSlots];
  std::map<int, int> moduleLevels;  // modules beyond the slots
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

void Emit(int module, int level, const char* text) {
  tDebugOutputFunction output = State().output.load();
  if (output != nullptr) {
    output(module, level, text);
  } else {
    std::fputs(text, stderr);
  }
}

// vsnprintf of a format whose only conversions are "%s" and "%%", done by
// hand: the traces printed on every asset lookup are of this kind, and
// copying is several times cheaper than the general formatter. The same
// result and return value; kNotOnlyStrings (with `out` unspecified) when the
// format has any other conversion.
const int kNotOnlyStrings = -2;

// What a missing text prints as, as the C library's formatter prints it.
const char kNullText[] = "(null)";

int CopyStrings(char* out, size_t size, const char* format, va_list args) {
  size_t length = 0;
  auto put = [&](const char* text, size_t count) {
    if (length < size) std::memcpy(out + length, text, count < size - length ? count : size - length);
    length += count;
  };
  for (const char* p = format;;) {
    const char* percent = std::strchr(p, '%');
    if (percent == nullptr) {
      put(p, std::strlen(p));
      break;
    }
    put(p, static_cast<size_t>(percent - p));
    if (percent[1] == '%') {
      put("%", 1);
    } else if (percent[1] == 's') {
      const char* text = va_arg(args, const char*);
      if (text == nullptr) text = kNullText;
      put(text, std::strlen(text));
    } else {
      return kNotOnlyStrings;
    }
    p = percent + 2;
  }
  if (size > 0) out[length < size ? length : size - 1] = '\0';
  return length > static_cast<size_t>(INT_MAX) ? -1 : static_cast<int>(length);
}

// Formats and emits one message: in a buffer on the stack when it fits (a
// trace is printed on every asset lookup), else in one of its own.
void FormatAndEmit(int module, int level, const char* format, va_list args) {
  char small[512];
  va_list again;
  va_copy(again, args);
  int length = CopyStrings(small, sizeof small, format, args);
  if (length == kNotOnlyStrings) {
    va_list fresh;
    va_copy(fresh, again);
    length = std::vsnprintf(small, sizeof small, format, fresh);
    va_end(fresh);
  }
  if (length < 0) {
    small[0] = '\0';
  } else if (static_cast<size_t>(length) >= sizeof small) {
    std::string text(static_cast<size_t>(length) + 1, '\0');
    std::vsnprintf(&text[0], text.size(), format, again);
    va_end(again);
    Emit(module, level, text.c_str());
    return;
  }
  va_end(again);
  Emit(module, level, small);
}

// The slot holding `module`'s level, or null.
const LevelSlot* FindSlot(const DebugState& state, int module) {
  for (const LevelSlot& slot : state.slots) {
    int owner = slot.module.load(std::memory_order_acquire);
    if (owner == module) return &slot;
    if (owner == kNoModule) return nullptr;
  }
  return nullptr;
}

// Stores `level` for `module`; the caller holds the state's mutex.
void StoreLevel(DebugState& state, int module, int level) {
  for (LevelSlot& slot : state.slots) {
    int owner = slot.module.load(std::memory_order_relaxed);
    if (owner == module) {
      slot.level.store(level, std::memory_order_relaxed);
      return;
    }
    if (owner == kNoModule) {
      slot.level.store(level, std::memory_order_relaxed);
      slot.module.store(module, std::memory_order_release);
      return;
    }
  }
  state.moduleLevels[module] = level;
}

// `module`'s own level, or INT_MIN when it has none.
int ModuleLevel(DebugState& state, int module) {
  if (const LevelSlot* slot = FindSlot(state, module)) return slot->level.load(std::memory_order_relaxed);
  if (state.slots[kLevelSlots - 1].module.load(std::memory_order_acquire) == kNoModule) return INT_MIN;
  std::lock_guard<std::mutex> lock(state.mutex);
  auto found = state.moduleLevels.find(module);
  return found != state.moduleLevels.end() ? found->second : INT_MIN;
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
  FormatAndEmit(mModule, level, format, args);
}

void PlatformDebug::Assert(bool condition, const char* format, ...) {
  if (condition) return;
  va_list args;
  va_start(args, format);
  if (format != nullptr) {
    FormatAndEmit(mModule, 1, format, args);
  } else {
    Emit(mModule, 1, "");
  }
  va_end(args);
  if (State().abortOnAssert) std::abort();
}

void PlatformDebug::SetDebugLevel(int level) {
  DebugState& state = State();
  std::lock_guard<std::mutex> lock(state.mutex);
  StoreLevel(state, mModule, level);
}

void PlatformDebug::SetMasterDebugLevel(int level) { State().masterLevel = level; }

int PlatformDebug::GetEffectiveDebugLevel() const {
  DebugState& state = State();
  int master = state.masterLevel;
  int own = ModuleLevel(state, mModule);
  return own > master ? own : master;
}

void PlatformDebug::SetOutputFunction(tDebugOutputFunction output) { State().output = output; }

void PlatformDebug::SetAbortOnAssert(bool abortOnAssert) { State().abortOnAssert = abortOnAssert; }

namespace vireline {

void DebugOutJoined(int module, int level, std::string_view prefix, const char* text, std::string_view suffix) {
  if (level > PlatformDebug(module).GetEffectiveDebugLevel()) return;
  std::string_view middle = text != nullptr ? text : kNullText;
  size_t length = prefix.size() + middle.size() + suffix.size();
  char small[512];
  std::string large;
  char* out = small;
  if (length >= sizeof small) {
    large.resize(length);
    out = &large[0];
  }
  std::memcpy(out, prefix.data(), prefix.size());
  std::memcpy(out + prefix.size(), middle.data(), middle.size());
  std::memcpy(out + prefix.size() + middle.size(), suffix.data(), suffix.size());
  out[length] = '\0';
  Emit(module, level, out);
}

}  // namespace vireline
