// Reading words and numbers from a file the way the device's older
// firmware read its small system files with C++ input streams and scanf, so
// that files it wrote (and files it could not read) give the same answers.
#ifndef VIRELINE_LTM_STREAMEXTRACTION_H_
#define VIRELINE_LTM_STREAMEXTRACTION_H_

#include <cstddef>
#include <string>

#include "platform/BufferedReader.h"

namespace vireline {

// Extracts one unsigned decimal number as `std::istream >> unsigned long`
// does in the classic locale: leading white space is skipped, one sign is
// accepted ("-4" wraps around as strtoul does), digits are read up to the
// first other byte. True only when the stream would be left good: at least
// one digit, no overflow, and the number not ended by the end of the file.
// `value` is set only on success.
bool ExtractUnsigned(BufferedReader* stream, unsigned long* value);

// The first white-space-delimited word of the stream, as scanf "%s" reads
// it, cut after `maxLength` bytes; empty when the stream holds none.
std::string ExtractWord(BufferedReader* stream, size_t maxLength);

}  // namespace vireline

#endif  // VIRELINE_LTM_STREAMEXTRACTION_H_
