// BaseUtils::CompareVersion against a hand-written comparison of the same two
// version texts: both split at ".", "-" and "_" with strtok_r on stack copies
// and compare token by token (longer token newer, then byte order).
#include <benchmark/benchmark.h>

#include <cstring>

#include <vireline/BaseUtils.h>

namespace {

const char kOlder[] = "2.14.7-1003";
const char kNewer[] = "2.14.10-0998";

// Splits `text` (copied into `buffer`) into at most 16 tokens; their count.
int Tokens(const char* text, char (&buffer)[64], const char* (&tokens)[16]) {
  std::strncpy(buffer, text, sizeof buffer - 1);
  buffer[sizeof buffer - 1] = '\0';
  int count = 0;
  char* save = nullptr;
  for (char* token = strtok_r(buffer, ".-_", &save); token != nullptr && count < 16;
       token = strtok_r(nullptr, ".-_", &save)) {
    tokens[count++] = token;
  }
  return count;
}

int PlainCompare(const char* a, const char* b) {
  char left[64], right[64];
  const char* leftTokens[16];
  const char* rightTokens[16];
  int leftCount = Tokens(a, left, leftTokens);
  int rightCount = Tokens(b, right, rightTokens);
  for (int i = 0; i < leftCount && i < rightCount; ++i) {
    size_t leftLength = std::strlen(leftTokens[i]), rightLength = std::strlen(rightTokens[i]);
    if (leftLength != rightLength) return static_cast<int>(leftLength) - static_cast<int>(rightLength);
    int order = std::strcmp(leftTokens[i], rightTokens[i]);
    if (order != 0) return order;
  }
  return 0;
}

void BM_CompareVersion(benchmark::State& state) {
  BaseUtils* utils = BaseUtils::Instance();
  CString older(kOlder), newer(kNewer);
  if (utils->CompareVersion(older, newer) >= 0) state.SkipWithError("unexpected order");
  for (auto _ : state) benchmark::DoNotOptimize(utils->CompareVersion(older, newer));
}
BENCHMARK(BM_CompareVersion);

void BM_CompareVersionBaseline(benchmark::State& state) {
  if (PlainCompare(kOlder, kNewer) >= 0) state.SkipWithError("unexpected order");
  for (auto _ : state) {
    benchmark::DoNotOptimize(PlainCompare(kOlder, kNewer));
    benchmark::ClobberMemory();
  }
}
BENCHMARK(BM_CompareVersionBaseline);

}  // namespace
