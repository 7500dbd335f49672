// The 104-byte header at the start of every play-log file: a constant format
// identifier, the device's platform code and serial number, the player slot,
// and three numbers that the system receiving the file fills in.
#ifndef VIRELINE_CLOGHEADER_H_
#define VIRELINE_CLOGHEADER_H_

#include <cstddef>

#include <vireline/Export.h>

class VIRELINE_EXPORT CLogHeader {
 public:
  // The header's size in the file.
  static const int kSize = 104;
  // The size of the constant prefix mConstData.
  static const int kConstSize = 44;
  // The longest serial number stored; the field's last byte stays NUL.
  static const int kMaxSerialLength = 39;
  // The highest valid platform code (the lowest is 1).
  static const unsigned short kMaxPlatform = 11;

  // Bytes 0-43 of every header: the identifier "606F7B93-30D0-42b9-9B6F-3C6A9C92AC19",
  // 4 zero bytes, 16-bit 1 and 16-bit 56 (the size of bytes 48-103).
  static const unsigned char mConstData[kConstSize];

  // The constant prefix and zeros; valid.
  CLogHeader();

  // A copy of the first 104 `bytes`, valid only when `length` is at least 104,
  // the constant prefix matches and the platform code is 1 to 11; otherwise all
  // zero and invalid.
  CLogHeader(unsigned char* bytes, int length);

  // Stores the platform code.
  void SetPlatform(unsigned short platform);
  // Stores at most the first 39 characters of `serial` (null stores nothing), NUL-padded.
  void SetDeviceSerialNum(const char* serial);
  // Stores the log number (player slot).
  void SetLogNum(unsigned char number);
  // Stores the device clock value.
  void SetDeviceClockVal(unsigned long value);
  // Stores the time the file was received.
  void SetTimeRcvd(unsigned long value);
  // Stores the flags.
  void SetFlags(unsigned long flags);

  // The platform code; 0 while invalid.
  unsigned short GetPlatform() const;
  // The serial number text; null while invalid.
  const char* GetDeviceSerialNum() const;
  // The log number; 0 while invalid.
  unsigned char GetLogNum() const;
  // The device clock value; 0 while invalid.
  unsigned long GetDeviceClockVal() const;
  // The time received; 0 while invalid.
  unsigned long GetTimeRcvd() const;
  // The flags; 0 while invalid.
  unsigned long GetFlags() const;

  // True when the header was built here or parsed from acceptable bytes.
  bool IsValid() const { return mValid != 0; }

  // The 104 bytes as they go into the file.
  const unsigned char* GetBytes() const { return mData; }

  // Headers live on the C heap.
  static void* operator new(std::size_t size);
  // Gives memory from operator new back to the C heap (free).
  static void operator delete(void* pointer);

 private:
  unsigned long GetNumber(int offset) const;
  void SetNumber(int offset, unsigned long value);

  unsigned char mData[kSize];
  unsigned char mValid;
};

#endif  // VIRELINE_CLOGHEADER_H_
