#include "ltm/StreamExtraction.h"

#include <climits>

namespace vireline {
namespace {

// White space of the classic locale.
bool IsSpace(int c) { return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r'; }

bool IsDigit(int c) { return c >= '0' && c <= '9'; }

// The first byte that is not white space, or EOF.
int SkipSpace(FILE* stream) {
  int c = std::getc(stream);
  while (IsSpace(c)) c = std::getc(stream);
  return c;
}

}  // namespace

bool ExtractUnsigned(FILE* stream, unsigned long* value) {
  int c = SkipSpace(stream);
  bool negative = false;
  if (c == '+' || c == '-') {
    negative = (c == '-');
    c = std::getc(stream);
  }
  unsigned long number = 0;
  bool anyDigit = false;
  bool overflow = false;
  for (; IsDigit(c); c = std::getc(stream)) {
    anyDigit = true;
    unsigned long digit = static_cast<unsigned long>(c - '0');
    if (number > (ULONG_MAX - digit) / 10) overflow = true;
    number = number * 10 + digit;
  }
  // A number that runs into the end of the file raises end-of-file, which
  // leaves the stream not good although the number was read.
  if (!anyDigit || overflow || c == EOF) return false;
  *value = negative ? 0UL - number : number;
  return true;
}

std::string ExtractWord(FILE* stream, size_t maxLength) {
  std::string word;
  for (int c = SkipSpace(stream); c != EOF && !IsSpace(c) && word.size() < maxLength; c = std::getc(stream)) {
    word += static_cast<char>(c);
  }
  return word;
}

}  // namespace vireline
