// Version ordering over two fuzzed version texts.
#include <string>
#include <vector>

#include <vireline/BaseUtils.h>

#include "fuzz/FuzzSupport.h"

namespace vireline {
namespace fuzz {

void FuzzCompareVersion(const uint8_t* data, size_t size) {
  std::vector<std::string> texts = SplitInput(data, size, 2);
  BaseUtils* utils = BaseUtils::Instance();
  CString a(texts[0]);
  CString b(texts[1]);
  (void)utils->CompareVersion(a, b);
  (void)utils->CompareVersion(b, a);
  (void)utils->CompareVersion(a, a);
}

}  // namespace fuzz
}  // namespace vireline
