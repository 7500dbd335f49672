// Runs one library operation a given number of times on a device image, so
// that scripts/check-syscall-budgets.sh can count the system calls of a single
// one: the count of a run with one operation minus that of a run with none.
//   vireline_syscall_probe ROOT OPERATION COUNT
// Operations: startup, append, lookup-hit, lookup-miss, settings-write,
// json-save, checksum-tree. Everything but the operations themselves (the
// start-up included, except for "startup") happens in both runs.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <vireline/BaseUtils.h>
#include <vireline/CFileIO.h>
#include <vireline/CJSonFile.h>
#include <vireline/CLogFile.h>
#include <vireline/CSystemData.h>
#include <vireline/LogEvents.h>
#include <vireline/Platform.h>

namespace {

void StartUp() {
  CSystemData::Instance();
  CLogFile::Instance();
}

// Runs `operation` `count` times; false for an unknown operation.
bool Run(const std::string& operation, int count) {
  if (operation == "startup") {
    for (int i = 0; i < count; ++i) StartUp();
    return true;
  }
  StartUp();
  CSystemData* data = CSystemData::Instance();
  data->GetLocaleCode();  // read once, as any title's first lookup does
  LogData::Vireline::CGameStart record("MathMountain");
  LTM::CJSonFile json("/QV/Bulk/Data/probe.json", 1);
  CFileIO settings;
  if (operation == "append") {
    CLogFile::Instance()->SetCurrentProfile(static_cast<tPlayerID>(0));
    for (int i = 0; i < count; ++i) CLogFile::Instance()->Append(record);
  } else if (operation == "lookup-hit") {
    for (int i = 0; i < count; ++i) data->FindArt("star.png");
  } else if (operation == "lookup-miss") {
    for (int i = 0; i < count; ++i) data->FindArt("nowhere.png");
  } else if (operation == "settings-write") {
    settings.Open("/QV/Bulk/settings.cfg");
    for (int i = 0; i < count; ++i) {
      settings.SetStr("ProbeKey", i % 2 ? "odd" : "even");
      settings.Write();
    }
  } else if (operation == "json-save") {
    json.Load();
    for (int i = 0; i < count; ++i) {
      json.mRoot["probe"] = i;
      json.Save();
    }
  } else if (operation == "checksum-tree") {
    for (int i = 0; i < count; ++i) {
      BaseUtils::Instance()->CalculateChecksum("/QV/Base/ZantoAvatars", BaseUtils::kSelectAll);
    }
  } else {
    return false;
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: %s ROOT OPERATION COUNT\n", argv[0]);
    return 2;
  }
  vireline::SetDeviceRoot(argv[1]);
  return Run(argv[2], std::atoi(argv[3])) ? 0 : 2;
}
