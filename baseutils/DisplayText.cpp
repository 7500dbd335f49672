#include <vireline/DisplayText.h>

#include <cstdio>

namespace vireline {
namespace {

// The length of the valid UTF-8 sequence at `text`, or 0.
size_t Utf8SequenceLength(const unsigned char* text) {
  unsigned char lead = text[0];
  size_t length;
  unsigned long codePoint;
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
    codePoint = lead & 0x1F;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    codePoint = lead & 0x0F;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    codePoint = lead & 0x07;
  } else {
    return 0;
  }
  for (size_t i = 1; i < length; ++i) {
    if ((text[i] & 0xC0) != 0x80) return 0;  // also stops at the terminating NUL
    codePoint = (codePoint << 6) | (text[i] & 0x3F);
  }
  bool overlong = (length == 3 && codePoint < 0x800) || (length == 4 && codePoint < 0x10000);
  bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  return (overlong || surrogate || codePoint > 0x10FFFF) ? 0 : length;
}

}  // namespace

std::string DisplayText(const char* text) {
  std::string shown;
  if (text == nullptr) return shown;
  const unsigned char* p = reinterpret_cast<const unsigned char*>(text);
  while (*p != '\0') {
    size_t length = Utf8SequenceLength(p);
    if (*p == '\\') {
      shown += "\\\\";
      ++p;
    } else if (length == 0 || *p < 0x20 || *p == 0x7F) {
      char escaped[8];
      std::snprintf(escaped, sizeof escaped, "\\x%02X", *p);
      shown += escaped;
      ++p;
    } else {
      shown.append(reinterpret_cast<const char*>(p), length);
      p += length;
    }
  }
  return shown;
}

}  // namespace vireline
