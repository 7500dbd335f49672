// What CMfgData learns from the board itself: the serial number composed from
// the stored one and the board's sysfs entries, and the component types.
#include <vireline/CMfgData.h>

#include <cstdio>
#include <cstring>

#include <memory>

#include "platform/Env.h"
#include "platform/StreamCalls.h"


namespace {

const char kBoardIdPath[] = "/sys/devices/platform/qvx300-gpio/board_id";
const char kPlatformPath[] = "/sys/devices/system/board/platform";
const char kLcdTypePath[] = "/sys/devices/system/board/lcd_mfg";

const uint32_t kSerialLength = 20;
const uint32_t kMissingBoardId = 0xFFFFFFFF;

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Parses hexadecimal text the way "%X" does on the device, whose unsigned
// long is 32 bits: blanks, a sign and "0x" are allowed, a number too large
// for 32 bits becomes 0xFFFFFFFF and a negative one wraps. `fallback` when
// there is no number. The same on every host.
uint32_t ParseHex(const char* text, uint32_t fallback) {
  const char* p = text;
  while (*p == ' ' || (*p >= '\t' && *p <= '\r')) ++p;
  bool negative = *p == '-';
  if (*p == '-' || *p == '+') ++p;
  if (p[0] == '0' && (p[1] == 'x' || p[1] == 'X') && HexDigit(p[2]) >= 0) p += 2;
  if (HexDigit(*p) < 0) return fallback;
  uint64_t value = 0;
  for (; HexDigit(*p) >= 0; ++p) {
    value = value * 16 + static_cast<uint64_t>(HexDigit(*p));
    if (value > kMissingBoardId) return kMissingBoardId;
  }
  uint32_t magnitude = static_cast<uint32_t>(value);
  return negative ? 0u - magnitude : magnitude;
}

// Reads the board's id entry into *boardId (left alone when it holds no
// number); false when the board has no such entry.
bool ReadBoardId(uint32_t* boardId) {
  std::unique_ptr<vireline::SequentialFile> file;
  if (!vireline::Env::Current()->NewSequentialFile(kBoardIdPath, &file).ok()) return false;
  char text[11] = {};
  size_t got = 0;
  vireline::ReadFully(file.get(), 10, text, &got);
  if (got > 0) *boardId = ParseHex(text, *boardId);
  return true;
}

// The platform code of serial positions 4-9.
uint32_t PlatformCode(uint32_t boardId) {
  std::unique_ptr<vireline::SequentialFile> file;
  if (!vireline::Env::Current()->NewSequentialFile(kPlatformPath, &file).ok()) {
    // Boards older than the platform entry tell their family by board id.
    return boardId >= 11 && boardId <= 13 ? 0x1E0001 : 0x170001;
  }
  // The entry's first word; a sysfs entry is one short line.
  char text[256] = {};
  size_t got = 0;
  vireline::ReadFully(file.get(), sizeof text - 1, text, &got);
  char word[64] = {};
  if (std::sscanf(text, "%63s", word) != 1) return 0;
  if (std::strcmp(word, "MIRA") == 0) return 0x210001;
  if (std::strcmp(word, "TARVESSA") == 0) return 0x220001;
  return 0;
}

// Copies the printed digits (without their NUL) over `out`.
void Place(char* out, const char* format, uint32_t value) {
  char digits[16];
  int length = std::snprintf(digits, sizeof digits, format, value);
  std::memcpy(out, digits, static_cast<size_t>(length));
}

// Upper-case hexadecimal digit for any hex digit of either case, '0' for
// anything else: a serial number is always 20 upper-case hex digits.
char NormalizedDigit(char c) {
  static const char kDigits[] = "0123456789ABCDEF0123456789abcdef";
  // memchr, not strchr: a NUL in the field must become '0', not match the terminator.
  const void* found = std::memchr(kDigits, c, 32);
  if (found == nullptr) return '0';
  return kDigits[(static_cast<const char*>(found) - kDigits) % 16];
}

}  // namespace

int CMfgData::GetSerialNumber(char* out) {
  if (out == nullptr) return kMfgShortTransfer;
  std::memset(out, 0, 24);  // a record that is not loaded composes from zeros
  int status = GetSerialNumberRaw(out);
  out[kSerialLength] = '\0';
  uint32_t boardId = kMissingBoardId;
  if (ReadBoardId(&boardId)) Place(out + 10, "%02X", boardId & 0x1F);
  Place(out + 4, "%06X", PlatformCode(boardId));
  for (uint32_t i = 0; i < kSerialLength; ++i) out[i] = NormalizedDigit(out[i]);
  return status;
}

int CMfgData::SetSerialNumber(const char* text) {
  int status = SetSNValidFlag(false);
  if (status != kMfgSuccess) return status;
  char field[24];
  uint32_t length = 0;
  while (text != nullptr && length < sizeof field && text[length] != '\0') {
    field[length] = text[length];
    ++length;
  }
  std::memset(field + length, ' ', sizeof field - length);
  std::memset(field + kSerialLength, 0, sizeof field - kSerialLength);
  return SetSerialNumberRaw(field);
}

int CMfgData::GetComponentType(int component, char* buffer, int n) {
  if (component != kMfgComponentLcd) return kMfgUnknownComponent;
  std::unique_ptr<vireline::SequentialFile> file;
  vireline::Result opened = vireline::Env::Current()->NewSequentialFile(kLcdTypePath, &file);
  if (!opened.ok()) {
    vireline::PrintError("Failed to open lcd sysfs entry", opened);
    return kMfgComponentUnavailable;
  }
  if (buffer == nullptr || n <= 0) return kMfgSuccess;
  size_t count = 0;
  vireline::ReadFully(file.get(), static_cast<size_t>(n), buffer, &count);
  // Drops the entry's trailing newline; an empty entry gives an empty text
  // rather than a write before the caller's buffer.
  if (count < static_cast<size_t>(n)) buffer[count > 0 ? count - 1 : 0] = '\0';
  return kMfgSuccess;
}

int CMfgData::SetComponentType(int component, const char* /*value*/) {
  if (component == kMfgComponentLcd) {
    std::fputs("LCD type is based on ADC readings and can not be set.\n", stderr);
  }
  return kMfgUnknownComponent;
}
