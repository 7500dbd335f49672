// CMfgData's life cycle, the two flash copies and their checksums.
#include <vireline/CMfgData.h>

#include <zlib.h>

#include <cstdio>
#include <cstring>
#include <new>

#include <memory>
#include <string>

#include "platform/BufferedReader.h"
#include "platform/Env.h"
#include "platform/LittleEndian.h"
#include "platform/StreamCalls.h"

CMfgData::CMfgData()
    : mpSource(nullptr), mpTarget(nullptr), mMfgMode(false), mChecksum0(-1), mChecksum1(-1) {}

CMfgData::~CMfgData() = default;

int CMfgData::GetNorPartitionFilename(char* buffer, int index) {
  std::unique_ptr<vireline::SequentialFile> mtd;
  vireline::Result opened = vireline::Env::Current()->NewSequentialFile("/proc/mtd", &mtd);
  if (!opened.ok()) {
    vireline::PrintError("GetNorPartitionFilename filed opening /proc/mtd", opened);  // factory scripts match this text
    return kMfgPartitionNotFound;
  }
  char name[16];
  std::snprintf(name, sizeof name, "MfgData%d", index & 1);
  // Pieces of at most 79 bytes, as a line buffer of 80 takes them. A read
  // error ends the search like the end of the file does, instead of asking
  // the same failing file again and again.
  vireline::BufferedReader reader(mtd.get(), 4096);
  std::string line;
  while (reader.ReadLine(&line, 79)) {
    if (std::strstr(line.c_str(), name) == nullptr) continue;
    // "mtdN: ..." - only single-digit device numbers are supported.
    if (buffer != nullptr) std::snprintf(buffer, 10, "/dev/mtd%c", line.size() > 3 ? line[3] : '\0');
    return kMfgSuccess;
  }
  mtd.reset();
  std::fprintf(stderr, "GetNorPartitionFilename: Could not find %s in /proc/mtd\n", name);
  return kMfgPartitionNotFound;
}

int CMfgData::FindPartition(int index, std::unique_ptr<CPartition>* partition) {
  char path[16];
  if (GetNorPartitionFilename(path, index) != kMfgSuccess) {
    std::fputs("CMfgData::Init: GetNorPartitionFilename failed\n", stderr);
    return kMfgPartitionNotFound;
  }
  partition->reset(new (std::nothrow) CPartition(path));
  return *partition ? kMfgSuccess : kMfgOutOfMemory;
}

int CMfgData::Init() {
  // A repeated Init starts over: nothing may point at the partitions it replaces.
  mpSource = mpTarget = nullptr;
  mChecksum0 = mChecksum1 = -1;
  int status = FindPartition(0, &mPartition0);
  if (status == kMfgSuccess) status = FindPartition(1, &mPartition1);
  if (status != kMfgSuccess) return status;
  mpBuffer.reset(new (std::nothrow) unsigned char[kMfgRecordSize]);
  if (!mpBuffer) return kMfgOutOfMemory;
  mpSource = mPartition0.get();
  mpTarget = mPartition1.get();
  if (mPartition0->ReadAll(mpBuffer.get()) != kMfgSuccess) return kMfgReadFailed0;
  mChecksum0 = ValidateCheckSum();
  if (mChecksum0 == 0) return kMfgSuccess;
  if (mPartition1->ReadAll(mpBuffer.get()) != kMfgSuccess) return kMfgReadFailed1;
  mChecksum1 = ValidateCheckSum();
  // With no valid copy the device starts from a blank record rather than failing:
  // the factory writes a fresh one from there.
  if (mChecksum1 != 0) std::memset(mpBuffer.get(), 0, kMfgRecordSize);
  mpSource = mPartition1.get();
  mpTarget = mPartition0.get();
  mMfgMode = false;
  return kMfgSuccess;
}

int CMfgData::Exit() {
  mpSource = mpTarget = nullptr;
  mpBuffer.reset();
  mPartition0.reset();
  mPartition1.reset();
  return kMfgSuccess;
}

int CMfgData::WriteAndVerify(CPartition* partition) {
  int second = partition == mPartition1.get() ? 1 : 0;
  if (partition->WriteAll(mpBuffer.get()) != kMfgSuccess) return kMfgWriteFailed0 + second;
  if (partition->ReadAll(mpBuffer.get()) != kMfgSuccess) return kMfgReadFailed0 + second;
  if (ValidateCheckSum() != 0) return kMfgChecksumInvalid0 + second;
  return kMfgSuccess;
}

int CMfgData::Update() {
  if (!mMfgMode) return kMfgNotInMfgMode;
  if (!mpBuffer || mpSource == nullptr || mpTarget == nullptr) return kMfgPartitionNotFound;
  UpdateCheckSum(mpBuffer.get());
  // The copy Init did not load goes first: until it is verified the loaded
  // copy is untouched, so a power cut at any point leaves one valid copy.
  int status = WriteAndVerify(mpTarget);
  return status != kMfgSuccess ? status : WriteAndVerify(mpSource);
}

int CMfgData::SetMfgMode(bool on) {
  char command[32];
  std::snprintf(command, sizeof command, "/usr/bin/mfgmode.sh %d", on ? 2 : 0);
  int exitStatus = -1;
  vireline::Result run = vireline::Env::Current()->RunCommand(command, &exitStatus);
  if (!run.ok() || exitStatus != 0) {
    vireline::PrintError("can't exec /usr/bin/mfgmode.sh", run);
    return kMfgNotInMfgMode;
  }
  mMfgMode = on;
  return kMfgSuccess;
}

uint32_t CMfgData::ComputeCheckSum(const unsigned char* record) {
  // Seeded with 0xFFFFFFFF (which zlib inverts on entry) and inverted again:
  // the value every record written so far carries, not the plain CRC-32.
  uLong crc = crc32(0xFFFFFFFFUL, record, kMfgChecksumOffset);
  return ~static_cast<uint32_t>(crc);
}

int CMfgData::UpdateCheckSum(unsigned char* record) {
  if (record != nullptr) vireline::EncodeFixed32(record + kMfgChecksumOffset, ComputeCheckSum(record));
  return kMfgSuccess;
}

int CMfgData::ValidateCheckSum(const unsigned char* record) {
  if (record == nullptr) return 1;
  return vireline::DecodeFixed32(record + kMfgChecksumOffset) == ComputeCheckSum(record) ? 0 : 1;
}

int CMfgData::ValidateCheckSum() { return ValidateCheckSum(mpBuffer.get()); }

int CMfgData::GetNORMfgSectorData(int index, unsigned char* buffer) {
  CPartition* partition = index != 0 ? mPartition1.get() : mPartition0.get();
  return partition != nullptr ? partition->ReadAll(buffer) : kMfgReadFailed;
}

int CMfgData::ValidateNORMfgSector(int index) {
  std::unique_ptr<unsigned char[]> sector(new (std::nothrow) unsigned char[kMfgRecordSize]);
  if (!sector) return kMfgOutOfMemory;
  if (GetNORMfgSectorData(index, sector.get()) != kMfgSuccess) return kMfgReadFailed;
  return ValidateCheckSum(sector.get());
}

int CMfgData::GetNorChecksumResults(int& first, int& second) {
  first = mChecksum0;
  second = mChecksum1;
  return kMfgSuccess;
}
