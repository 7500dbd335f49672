// Starting a title: SetCurrentTitlePath over a fuzzed "meta.inf" and the
// fuzzed "CountryConversion.json" of the language pack that title asks for.
#include <cctype>
#include <string>
#include <vector>

#include <vireline/CMetaInfo.h>
#include <vireline/CSystemData.h>

#include "fuzz/FuzzSupport.h"

namespace vireline {
namespace fuzz {

namespace {

const char kTitle[] = "/QV/Bulk/ProgramFiles/FuzzTitle/";

// The language pack folder a title's locale leads to; empty when the locale
// does not start with two letters or digits, so nothing is written for it.
std::string ConversionFileFor(const CString& locale) {
  const std::string& text = locale.raw();
  if (text.size() < 2 || !std::isalnum(static_cast<unsigned char>(text[0])) ||
      !std::isalnum(static_cast<unsigned char>(text[1]))) {
    return std::string();
  }
  return "/QV/Bulk/LanguagePack_" + text.substr(0, 2) + "/Data/CountryConversion.json";
}

}  // namespace

void FuzzTitlePath(const uint8_t* data, size_t size) {
  std::vector<std::string> files = SplitInput(data, size, 2);
  ClearDeviceRoot();
  WriteDeviceFile("/QV/Bulk/settings.cfg", "Locale=en-us\n");
  WriteDeviceFile(std::string(kTitle) + "meta.inf", files[0]);
  std::string conversion = ConversionFileFor(LTM::CMetaInfo(kTitle).GetTagString("Locale"));
  if (!conversion.empty()) WriteDeviceFile(conversion, files[1]);

  CSystemData* system = CSystemData::Instance();
  system->SetLocaleCode("");
  system->SetCurrentTitlePath(kTitle);
  (void)system->GetCurrentGameID();
  (void)system->GetCurrentGameProductID();
  (void)system->GetCurrentGamePackageID();
  (void)system->GetLocaleCode();
  (void)system->GetLanguagePackPath();
}

}  // namespace fuzz
}  // namespace vireline
