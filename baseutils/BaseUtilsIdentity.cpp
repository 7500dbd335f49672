// Device identity answered by BaseUtils: serial number, touch screen and the
// platform id, name and type.
#include <vireline/BaseUtils.h>

#include <vireline/CMfgData.h>
#include <vireline/Platform.h>

#include "baseutils/DebugModules.h"

namespace {

const char kNoSerialNumber[] = "00000000000000000000";

// Process-wide caches; -1 and kPlatformUnknown mean "not looked up yet".
int gPlatformId = -1;
BaseUtils::tPlatformType gPlatformType = BaseUtils::kPlatformUnknown;

struct PlatformName {
  const char* name;
  BaseUtils::tPlatformType type;
};

// Looked at in this order, exact and case-sensitive.
const PlatformName kPlatformNames[] = {
    {"MIRA", BaseUtils::kPlatformMira},     {"TARVESSA", BaseUtils::kPlatformTarvessa},
    {"Oskava", BaseUtils::kPlatformOskava}, {"Tamsel", BaseUtils::kPlatformTamsel},
    {"Zanto", BaseUtils::kPlatformZanto},
};

CString ReadSerialNumber(CMfgData& data) {
  char buffer[24] = {0};
  if (data.GetSerialNumber(buffer) != 0) return kNoSerialNumber;
  return CString(buffer);
}

}  // namespace

CString BaseUtils::GetSerialNumber() {
  CMfgData data;
  if (data.Init() != 0) return kNoSerialNumber;
  CString serial = ReadSerialNumber(data);
  data.Exit();
  return serial;
}

CString BaseUtils::GetZantoSerialNumber() { return GetSerialNumber(); }

bool BaseUtils::HasTouchScreen() {
  bool touch = PlatformIdentity::HasPlatformCapability(kPlatformCapabilityTouchScreen);
  PlatformDebug(vireline::kDataObjectsDebugModule).DebugOut(3, "HasTouchScreen: %d\n", touch ? 1 : 0);
  return touch;
}

int BaseUtils::GetPlatformID() {
  if (gPlatformId == -1) {
    gPlatformId = PlatformIdentity::GetPlatformID();
    PlatformDebug(vireline::kDataObjectsDebugModule).DebugOut(3, "GetPlatformID: %d\n", gPlatformId);
  }
  return gPlatformId;
}

CString BaseUtils::GetPlatformName() { return PlatformIdentity::GetPlatformName(); }

BaseUtils::tPlatformType BaseUtils::GetPlatformType() {
  if (gPlatformType != kPlatformUnknown) return gPlatformType;
  CString name = GetPlatformName();
  for (const PlatformName& known : kPlatformNames) {
    if (name.raw() == known.name) return gPlatformType = known.type;
  }
  return kPlatformUnknown;
}

bool BaseUtils::IsPlatformType(tPlatformType type) { return GetPlatformType() == type; }
