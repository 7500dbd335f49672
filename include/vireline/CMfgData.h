// The manufacturing record: each device's factory identity and calibration,
// a checksummed 4096-byte block kept twice, in the flash partitions "/proc/mtd"
// names MfgData0 and MfgData1. CPartition reads and writes one partition whole;
// CMfgData keeps the valid copy in memory and writes both copies back in
// manufacturing mode. Failures are status codes (tMfgStatus), never exceptions;
// messages go to standard error with the texts factory tools look for.
#ifndef VIRELINE_CMFGDATA_H_
#define VIRELINE_CMFGDATA_H_

#include <cstdint>
#include <memory>
#include <string>

#include <vireline/Export.h>

// Results of the manufacturing-data operations; 0 is success.
enum tMfgStatus {
  kMfgSuccess = 0,
  kMfgShortTransfer = 1,        // a typed getter or setter moved fewer bytes than its field
  kMfgOutOfMemory = 2,
  kMfgReadFailed = 3,           // open, short read or close failed
  kMfgWriteFailed = 4,          // open, short write or close failed
  kMfgEraseFailed = 5,
  kMfgPartitionNotFound = 6,    // or "/proc/mtd" unreadable
  kMfgChecksumInvalid0 = 7,     // after writing partition 0
  kMfgChecksumInvalid1 = 8,     // after writing partition 1
  kMfgReadFailed0 = 9,
  kMfgReadFailed1 = 10,
  kMfgWriteFailed0 = 11,
  kMfgWriteFailed1 = 12,
  kMfgNotInMfgMode = 15,        // Update outside manufacturing mode, or the mode script failed
  kMfgUnknownComponent = 16,    // or a component that cannot be set
  kMfgComponentUnavailable = 17 // the component's sysfs entry could not be opened
};

// Components GetComponentType knows.
enum tMfgComponent { kMfgComponentLcd = 1 };

// Size of the record and of each partition.
const uint32_t kMfgRecordSize = 4096;

// Where the record's checksum is kept.
const uint32_t kMfgChecksumOffset = 4092;

// Touch-screen pressure calibration; the record keeps it as an opaque block.
struct ts_pressure_data {
  unsigned char bytes[96];
};

// Raw access to one manufacturing partition (an MTD character device, or a
// 4096-byte file standing in for one).
class VIRELINE_EXPORT CPartition {
 public:
  // A partition at device path `path` ("/dev/mtd3"); nothing is opened yet.
  explicit CPartition(const char* path);

  // Reads the whole partition into `buffer` (4096 bytes): 0, or 3 (kMfgReadFailed).
  int ReadAll(unsigned char* buffer);

  // Erases the partition and writes `buffer` (4096 bytes) to it: 0, 4
  // (kMfgWriteFailed) or 5 (kMfgEraseFailed, reported by perror).
  int WriteAll(const unsigned char* buffer);

  // The partition's size in bytes (always 4096).
  uint32_t GetSize() const { return mSize; }

  // The partition's device path.
  const char* GetPath() const { return mPath.c_str(); }

 private:
  uint32_t mSize;
  std::string mPath;
};

class VIRELINE_EXPORT CMfgData {
 public:
  // No partitions, no record, not in manufacturing mode, checksum results -1.
  CMfgData();

  // Releases whatever Exit has not, so an object that was never exited leaks nothing.
  ~CMfgData();

  CMfgData(const CMfgData&) = delete;
  CMfgData& operator=(const CMfgData&) = delete;

  // Finds both partitions and loads the first copy with a valid checksum; with
  // no valid copy the record is all zeros and the result still 0. Else 2, 6, 9, 10.
  int Init();

  // Releases the record and both partitions; returns 0.
  int Exit();

  // In manufacturing mode writes the record to the other copy first, then to
  // the one it was loaded from, verifying each by reading it back: 0, or 15
  // outside manufacturing mode, 11/12 write, 9/10 read-back, 7/8 checksum
  // failure (the lower code for partition 0), 6 before Init.
  int Update();

  // Runs "/usr/bin/mfgmode.sh 2" (on) or "... 0" (off); 0, or 15 when the
  // script fails (the mode is then unchanged).
  int SetMfgMode(bool on);

  // Copies `length` bytes of the record at `offset` into `buffer`; the count
  // copied (less when the range leaves the record, 0 before Init).
  uint32_t Read(void* buffer, uint32_t offset, uint32_t length);

  // Copies `length` bytes of `buffer` into the record at `offset`; the count
  // copied (less when the range leaves the record, 0 before Init).
  uint32_t Write(const void* buffer, uint32_t offset, uint32_t length);

  // The checksum of a 4096-byte record: zlib crc32 seeded with 0xFFFFFFFF
  // over bytes 0-4091, inverted (not the plain CRC-32: older tools check this value).
  static uint32_t ComputeCheckSum(const unsigned char* record);

  // Stores the record's checksum at offset 4092; returns 0.
  static int UpdateCheckSum(unsigned char* record);

  // 0 when the record's stored checksum matches its content, 1 otherwise.
  static int ValidateCheckSum(const unsigned char* record);

  // ValidateCheckSum of the in-memory record (1 before Init).
  int ValidateCheckSum();

  // Reads partition 1 (`index` non-zero) or partition 0 into `buffer` (4096
  // bytes): 0, or 3 (also before Init).
  int GetNORMfgSectorData(int index, unsigned char* buffer);

  // Checksum state of partition `index` as it is on flash now: 0 valid,
  // 1 invalid, 2 out of memory, 3 unreadable.
  int ValidateNORMfgSector(int index);

  // The checksum results Init recorded for partitions 0 and 1 (-1 not
  // examined, 0 valid, 1 invalid); returns 0.
  int GetNorChecksumResults(int& first, int& second);

  // Puts the device path ("/dev/mtdN", 10 bytes with the NUL) of the partition
  // "/proc/mtd" names MfgData<index & 1> into `buffer`: 0, or 6.
  static int GetNorPartitionFilename(char* buffer, int index);

  // Copies up to `n` bytes of the type of `component` (only the LCD, 1) into
  // `buffer`, its trailing newline dropped when fewer than `n` were read: 0, 16, 17.
  static int GetComponentType(int component, char* buffer, int n);

  // Component types come from the hardware: always 16, with a message for the LCD.
  static int SetComponentType(int component, const char* value);

  // The typed fields of the record. Each returns 0 when the whole field was
  // moved and 1 otherwise. Text fields are fixed-size byte blocks: no
  // terminator is added or needed, and the caller's buffer holds the field.

  // Touch-screen calibration: 7 values.
  int GetTSCalData(int* values);
  // Sets the touch-screen calibration from 7 values.
  int SetTSCalData(int* values);
  // Backlight calibration.
  int GetBLCalData(int& value);
  // Sets the backlight calibration.
  int SetBLCalData(int value);
  // ADC calibration pair.
  int GetADCCalData(int& first, int& second);
  // Sets the ADC calibration pair.
  int SetADCCalData(int first, int second);
  // Audio gain.
  int GetAudioGain(int& value);
  // Sets the audio gain.
  int SetAudioGain(int value);
  // The serial number as stored: 24 bytes.
  int GetSerialNumberRaw(char* out);
  // Stores 24 bytes as the serial number.
  int SetSerialNumberRaw(const char* in);
  // Whether the serial number is marked valid.
  int GetSNValidFlag(bool& valid);
  // Marks the serial number valid or not (stored as 1 or 0).
  int SetSNValidFlag(bool valid);
  // Barcode: 32 bytes.
  int GetSirasBarcode(char* out);
  // Stores 32 bytes as the barcode.
  int SetSirasBarcode(const char* in);
  // Locale: 8 bytes.
  int GetLocale(char* out);
  // Stores 8 bytes as the locale.
  int SetLocale(const char* in);
  // Touch-screen pressure table.
  int GetTSPressure(ts_pressure_data* out);
  // Stores the touch-screen pressure table.
  int SetTSPressure(ts_pressure_data* in);
  // Board id set in the factory.
  int GetSoftBoardId(int& value);
  // Sets the factory board id.
  int SetSoftBoardId(int value);
  // Accelerometer bias: 3 values.
  int GetAclBias(int* values);
  // Sets the accelerometer bias from 3 values.
  int SetAclBias(int* values);
  // Version of the record's layout.
  int GetMfgVersion(int& value);
  // Sets the version of the record's layout.
  int SetMfgVersion(int value);
  // Second backlight calibration: 5 values, in argument order.
  int GetBL2CalData(int& v0, int& v1, int& v2, int& v3, int& v4);
  // Sets the second backlight calibration.
  int SetBL2CalData(int v0, int v1, int v2, int v3, int v4);
  // MAC address: 20 bytes.
  int GetMacAddress(unsigned char* out);
  // Stores 20 bytes as the MAC address.
  int SetMacAddress(const unsigned char* in);
  // IPv6 address: 8 16-bit groups.
  int GetIPv6Address(unsigned short* out);
  // Stores 8 16-bit groups as the IPv6 address.
  int SetIPv6Address(const unsigned short* in);
  // SKU: 11 bytes.
  int GetSku(char* out);
  // Stores 11 bytes as the SKU.
  int SetSku(const char* in);
  // Accelerometer calibration: 10 values, each kept as a signed 32-bit number.
  int GetAccelerometerCalData(long* values);
  // Sets the accelerometer calibration; each value is stored as its low 32 bits.
  int SetAccelerometerCalData(long* values);

  // Composes the 20-character device serial number from the stored one, the
  // board id and the platform (the caller's buffer holds 24 bytes; byte 20 is
  // the NUL). The result is that of reading the stored serial number.
  int GetSerialNumber(char* out);

  // Stores `text` as the serial number: at most 20 characters, padded with
  // spaces, 4 zero bytes at the end; first marks the serial number not valid.
  int SetSerialNumber(const char* text);

 private:
  std::unique_ptr<CPartition> mPartition0;
  std::unique_ptr<CPartition> mPartition1;
  CPartition* mpSource;  // the copy that was valid at Init
  CPartition* mpTarget;  // the other copy, written first by Update
  std::unique_ptr<unsigned char[]> mpBuffer;
  bool mMfgMode;
  int32_t mChecksum0;
  int32_t mChecksum1;

  int FindPartition(int index, std::unique_ptr<CPartition>* partition);
  int WriteAndVerify(CPartition* partition);
};

#endif  // VIRELINE_CMFGDATA_H_
