#include "ltm/Utf8Check.h"

#include <cstdint>
#include <cstring>

#include <glib.h>

namespace LTM {
namespace {

const uint64_t kOnes = 0x0101010101010101ULL;
const uint64_t kHighBits = 0x8080808080808080ULL;

// True when a byte of `word` is zero or above 0x7F: the zero test is the
// usual (word - 0x01..) & ~word trick, whose false alarms are high bytes.
bool HasZeroOrHighByte(uint64_t word) { return (((word - kOnes) & ~word) | word) & kHighBits; }

// True for the bytes 0x01-0x7F.
bool IsPlainAscii(char byte) { return static_cast<unsigned char>(byte) - 1u < 0x7Fu; }

// The length of the leading run of bytes 0x01-0x7F, read 8 bytes at a time
// (that is most of a document) and byte by byte near the first other byte.
size_t PlainAsciiPrefix(const char* bytes, size_t size) {
  size_t at = 0;
  for (; at + sizeof(uint64_t) <= size; at += sizeof(uint64_t)) {
    uint64_t word;
    std::memcpy(&word, bytes + at, sizeof word);  // no alignment needed
    if (HasZeroOrHighByte(word)) break;
  }
  while (at < size && IsPlainAscii(bytes[at])) ++at;
  return at;
}

}  // namespace

bool IsValidUtf8(const char* bytes, size_t size) {
  // A character ends where an ASCII run ends, so the rest is judged alone,
  // zero bytes (which g_utf8_validate refuses) included.
  size_t plain = PlainAsciiPrefix(bytes, size);
  if (plain == size) return true;
  return g_utf8_validate(bytes + plain, static_cast<gssize>(size - plain), nullptr) != FALSE;
}

}  // namespace LTM
