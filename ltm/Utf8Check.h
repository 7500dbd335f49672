// The UTF-8 check of documents, quick on the ASCII text most of them are.
#ifndef VIRELINE_LTM_UTF8CHECK_H_
#define VIRELINE_LTM_UTF8CHECK_H_

#include <cstddef>

namespace LTM {

// True when the `size` bytes at `bytes` are valid UTF-8, as g_utf8_validate
// judges them (a zero byte among them makes them invalid).
bool IsValidUtf8(const char* bytes, size_t size);

}  // namespace LTM

#endif  // VIRELINE_LTM_UTF8CHECK_H_
