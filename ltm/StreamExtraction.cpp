#include "ltm/StreamExtraction.h"

#include <climits>

namespace vireline {
namespace {

// White space of the classic locale.
bool IsSpace(int c) { return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r'; }

bool IsDigit(int c) { return c >= '0' && c <= '9'; }

// The first byte that is not white space, or -1 at the end.
int SkipSpace(BufferedReader* stream) {
  int c = stream->GetByte();
  while (IsSpace(c)) c = stream->GetByte();
  return c;
}

}  // namespace

bool ExtractUnsigned(BufferedReader* stream, unsigned long* value) {
  int c = SkipSpace(stream);
  bool negative = false;
  if (c == '+' || c == '-') {
    negative = (c == '-');
    c = stream->GetByte();
  }
  unsigned long number = 0;
  bool anyDigit = false;
  bool overflow = false;
  for (; IsDigit(c); c = stream->GetByte()) {
    anyDigit = true;
    unsigned long digit = static_cast<unsigned long>(c - '0');
    if (number > (ULONG_MAX - digit) / 10) overflow = true;
    number = number * 10 + digit;
  }
  // A number that runs into the end of the file raises end-of-file, which
  // leaves the stream not good although the number was read.
  if (!anyDigit || overflow || c < 0) return false;
  *value = negative ? 0UL - number : number;
  return true;
}

std::string ExtractWord(BufferedReader* stream, size_t maxLength) {
  std::string word;
  for (int c = SkipSpace(stream); c >= 0 && !IsSpace(c) && word.size() < maxLength; c = stream->GetByte()) {
    word += static_cast<char>(c);
  }
  return word;
}

}  // namespace vireline
