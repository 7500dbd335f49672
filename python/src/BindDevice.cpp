// System paths, asset lookup, player profiles, content lists, checksums and versions.
#include <memory>
#include <optional>

#include <pybind11/stl.h>

#include <vireline/vireline.h>

#include "python/src/Bindings.h"
#include "python/src/Convert.h"

namespace vireline {
namespace python {
namespace {

py::str PathText(const Glib::ustring& path) { return Text(path.raw()); }

// A lookup's result: None for the library's empty answer.
py::object Found(const Glib::ustring& path) { return path.empty() ? py::object(py::none()) : py::object(PathText(path)); }

py::list PathList(const std::vector<Glib::ustring>& paths) {
  py::list list;
  for (const Glib::ustring& path : paths) list.append(PathText(path));
  return list;
}

Glib::ustring Ustring(const Str& text) { return Glib::ustring(text.bytes); }

typedef py::class_<CSystemData, std::unique_ptr<CSystemData, py::nodelete>> SystemDataClass;

// A read-only folder of the system paths.
void Folder(SystemDataClass& cls, const char* name, CPath (CSystemData::*get)(), const char* doc) {
  cls.def_property_readonly(name, [get](CSystemData& data) { return PathText((data.*get)()); }, doc);
}

// An asset lookup by bare file name.
void Lookup(SystemDataClass& cls, const char* name, CPath (CSystemData::*find)(const CPath&), const char* doc) {
  cls.def(name, [find](CSystemData& data, const Str& asset) { return Found((data.*find)(Ustring(asset))); },
          py::arg("name"), doc);
}

void BindSystemData(py::module_& m) {
  SystemDataClass cls(m, "SystemData",
                      "Where things live on the device: the process-wide paths object (every SystemData() is the "
                      "same one). Folder paths are device paths ending in \"/\".");
  cls.def(py::init([] { return std::unique_ptr<CSystemData, py::nodelete>(CSystemData::Instance()); }));
  Folder(cls, "root_path", &CSystemData::GetRootPath, "The root of the content volume (\"/QV/\").");
  Folder(cls, "cart_path", &CSystemData::GetCartPath, "The cartridge folder.");
  Folder(cls, "base_path", &CSystemData::GetBasePath, "The system package folder.");
  Folder(cls, "data_path", &CSystemData::GetDataPath, "\"/QV/Bulk/Data/\" (deprecated in the library: warns at level 5).");
  Folder(cls, "program_files_path", &CSystemData::GetProgramFilesPath, "The application package folder.");
  Folder(cls, "avatars_path", &CSystemData::GetAvatarsPath, "The avatars folder.");
  Folder(cls, "default_avatar_path", &CSystemData::GetDefaultAvatarPath, "The default avatar.");
  Folder(cls, "cyos_path", &CSystemData::GetCYOsPath, "The CYO set folder.");
  Folder(cls, "mdls_path", &CSystemData::GetMDLsPath, "The micro-download folder.");
  Folder(cls, "downloads_path", &CSystemData::GetDownloadsPath, "The download package folder.");
  Folder(cls, "flash_path", &CSystemData::GetFlashPath, "Base + \"Flash/\".");
  Folder(cls, "pet_resources_path", &CSystemData::GetPetResourcesPath, "Base + \"PetResources/\".");
  Folder(cls, "flash_app_path", &CSystemData::GetFlashAppPath, "Base + \"Flash/FlashApp.so\" (a file).");
  Folder(cls, "base_tutorial_path", &CSystemData::GetBaseTutorialPath, "The locale's language pack + \"Tutorials/\".");
  cls.def_property_readonly("language_pack_path", [](CSystemData& d) { return PathText(d.GetLanguagePackPath()); },
                            "The language pack of the locale's language.");
  cls.def_property_readonly("universal_language_pack_path",
                            [](CSystemData& d) { return PathText(d.GetLanguagePackPath(false)); },
                            "The universal language pack \"/QV/Bulk/LanguagePack/\".");
  cls.def_property(
      "locale_code", [](CSystemData& d) { return Text(d.GetLocaleCode().raw()); },
      [](CSystemData& d, const Str& code) { d.SetLocaleCode(Ustring(code)); },
      "The locale (\"en-us\"): the settings, else the manufacturing record, else \"en-us\". Setting \"\" "
      "re-reads the device's locale.");
  cls.def_property(
      "current_title_path", [](CSystemData& d) { return PathText(d.GetCurrentTitlePath()); },
      [](CSystemData& d, const Str& path) { d.SetCurrentTitlePath(Ustring(path)); },
      "The running title's package folder (ending in \"/\"); setting it switches to the language its "
      "metadata asks for.");
  cls.def_property_readonly("current_game_id", [](CSystemData& d) { return Text(d.GetCurrentGameID().raw()); },
                            "The last folder name of the current title path.");
  cls.def_property_readonly("current_game_product_id", &CSystemData::GetCurrentGameProductID,
                            "The current title's product id; 0 without metadata.");
  cls.def_property_readonly("current_game_package_id",
                            [](CSystemData& d) { return Text(d.GetCurrentGamePackageID().raw()); },
                            "The current title's package id; empty without metadata.");
  cls.def_property("zanto_legacy_flag", &CSystemData::GetZantoLegacyFlag, &CSystemData::SetZantoLegacyFlag,
                   "Selects the first model's folder names.");
  cls.def_property("early_prek_black_listed", &CSystemData::GetEarlyPreKBlackListed,
                   &CSystemData::SetEarlyPreKBlackListed, "Whether the EarlyPreK content is black-listed.");
  cls.def_property_readonly("current_player_id", &CSystemData::GetCurrentPlayerID,
                            "The current player from the settings, read afresh on every call.");
  cls.def("data_profile_path", [](CSystemData& d, tPlayerID p) { return PathText(d.GetDataProfilePath(p)); },
          py::arg("player"), "\".../Local/<player>/\"; creates nothing.");
  cls.def("data_profile_log_path", [](CSystemData& d, tPlayerID p) { return PathText(d.GetDataProfileLogPath(p)); },
          py::arg("player"), "The folder of the player's play log; empty for a player without one.");
  cls.def("local_data_path",
          [](CSystemData& d, tPlayerID p, const Str& name) { return PathText(d.GetLocalDataPath(p, Ustring(name))); },
          py::arg("player"), py::arg("name"),
          "\".../Local/<player>/<name>/\" (-2 all players, -3 the current one), created when missing.");
  cls.def("upload_data_path", [](CSystemData& d, const Str& name) { return PathText(d.GetUploadDataPath(Ustring(name))); },
          py::arg("name"), "The current player's upload folder of the running title, created when missing.");
  cls.def("manage_inventory_path", [](CSystemData& d) { return PathText(d.GetManageInventoryPath()); },
          "The inventory upload package of the current player, created with its metadata when missing.");
  cls.def("find_widget", [](CSystemData& d, const Str& name) { return Found(d.FindWidget(Ustring(name))); },
          py::arg("name"), "The shared object of the hidden device package named `name`; None when none.");
  Lookup(cls, "find_art", &CSystemData::FindArt,
         "The best art file named `name` for the locale, else the \"missingAsset.png\" placeholder; None when "
         "neither exists.");
  Lookup(cls, "find_audio", &CSystemData::FindAudio,
         "The best audio file (a WAV first), else the \"h_BROM_AudioNotFoundSfx_6\" placeholder; None when "
         "neither exists.");
  Lookup(cls, "find_video", &CSystemData::FindVideo, "The best video file; None when none exists.");
  Lookup(cls, "find_font", &CSystemData::FindFont, "The title's or the device's font, else \"QVCurry.ttf\"; None when neither exists.");
  Lookup(cls, "find_book_audio", &CSystemData::FindBookAudio,
         "The book pack's audio file, else the language pack's; None when none exists.");
}

// Raises WriteError unless the profile's file took the change.
void Stored(bool ok, const char* what) {
  if (!ok) Raise(GetErrors().write, std::string("cannot store the profile's ") + what);
}

typedef py::class_<LTM::CPlayerProfile> ProfileClass;

// A text property of the profile.
template <typename Getter, typename Setter>
void ProfileText(ProfileClass& cls, const char* name, Getter get, Setter set, const char* doc) {
  cls.def_property(
      name, [get](LTM::CPlayerProfile& p) { return Text((p.*get)().raw()); },
      [set, name](LTM::CPlayerProfile& p, const Str& value) {
        Glib::ustring text = Ustring(value);
        Stored((p.*set)(text), name);
      },
      doc);
}

void BindProfile(py::module_& m) {
  ProfileClass cls(m, "PlayerProfile",
                   "One player slot's profile: \"profile.dsc\" (shared with the desktop tools) and "
                   "\"profile_private.dsc\" (the player's settings), both in the player's local data folder "
                   "(created when missing). Every change reaches the disk at once; WriteError when it cannot.");
  cls.def(py::init<tPlayerID>(), py::arg("slot"), "The profile of player `slot` (0-3).");
  cls.def_property_readonly("valid", &LTM::CPlayerProfile::IsValid, "Both files could be made.");
  ProfileText(cls, "name", &LTM::CPlayerProfile::GetName, &LTM::CPlayerProfile::SetName, "The player's name.");
  cls.def_property_readonly("id", [](const LTM::CPlayerProfile& p) { return NumberOrNone(p.GetId()); },
                            "The player's id; None when missing.");
  cls.def_property(
      "grade", &LTM::CPlayerProfile::GetGrade,
      [](LTM::CPlayerProfile& p, U32 grade) { Stored(p.SetGrade(grade), "grade"); },
      "The grade (255: an empty slot), read as the legacy and black-list flags require.");
  ProfileText(cls, "avatar", &LTM::CPlayerProfile::GetAvatar, &LTM::CPlayerProfile::SetAvatar,
              "The avatar file when it exists, else the device's default avatar; stored unchecked.");
  ProfileText(cls, "bg_color_art", &LTM::CPlayerProfile::GetBGColorArt, &LTM::CPlayerProfile::SetBGColorArt,
              "The background colour art file when it exists, else \"\"; stored unchecked.");
  ProfileText(cls, "last_game", &LTM::CPlayerProfile::GetLastGame, &LTM::CPlayerProfile::SetLastGame,
              "The title played last.");
  ProfileText(cls, "theme", &LTM::CPlayerProfile::GetTheme, &LTM::CPlayerProfile::SetTheme, "\"Theme\".");
  ProfileText(cls, "profile_picture", &LTM::CPlayerProfile::GetProfilePicture,
              &LTM::CPlayerProfile::SetProfilePicture, "\"ProfilePicture\".");
  cls.def_property(
      "dialog_option", &LTM::CPlayerProfile::GetDialogOption,
      [](LTM::CPlayerProfile& p, U32 option) { Stored(p.SetDialogOption(option), "dialog option"); },
      "\"DialogOption\"; 1 when missing.");
  cls.def_property(
      "pet_on_ui", [](LTM::CPlayerProfile& p) { return p.GetPetOnUI() != 0; },
      [](LTM::CPlayerProfile& p, bool shown) { Stored(p.SetPetOnUI(shown ? 1 : 0), "pet setting"); },
      "Whether the pet is shown (also when \"PetOnUI\" is missing).");
  cls.def_property_readonly("badges", &LTM::CPlayerProfile::GetBadges, "The number of badges earned.");
  cls.def_property(
      "num_logins_since_last_connect",
      [](LTM::CPlayerProfile& p) { return NumberOrNone(p.GetNumLoginsSinceLastConnect()); },
      [](LTM::CPlayerProfile& p, U32 logins) { Stored(p.SetNumLoginsSinceLastConnect(logins), "login count"); },
      "Logins since the last connection; None when missing.");
  cls.def_property_readonly("last_sb_shown", [](const LTM::CPlayerProfile& p) { return NumberOrNone(p.GetLastSBShown()); },
                            "\"LastSBShown\"; None when missing.");
  cls.def("get_u32",
          [](LTM::CPlayerProfile& p, const Str& key, U32 fallback) { return p.GetU32ByName_Local(Ustring(key), fallback); },
          py::arg("key"), py::arg("default"), "A number of the private file; `default` when missing.");
  cls.def("set_u32",
          [](LTM::CPlayerProfile& p, const Str& key, U32 value) { Stored(p.SetU32ByName_Local(Ustring(key), value), "number"); },
          py::arg("key"), py::arg("value"), "Stores a number in the private file as \"0x%08X\".");
  cls.def("get_string",
          [](LTM::CPlayerProfile& p, const Str& key, const Str& fallback) {
            return Text(p.GetStringByName_Local(Ustring(key), Ustring(fallback)).raw());
          },
          py::arg("key"), py::arg("default") = "", "A text of the private file; `default` when missing or empty.");
  cls.def("set_string",
          [](LTM::CPlayerProfile& p, const Str& key, const Str& value) {
            Stored(p.SetStringByName_Local(Ustring(key), Ustring(value)), "text");
          },
          py::arg("key"), py::arg("value"), "Stores a text in the private file.");
  cls.def("add_badge", [](LTM::CPlayerProfile& p, U32 badge) { Stored(p.AddBadge(badge), "badge count"); },
          py::arg("badge"), "Counts one more badge and, with a player chosen for logging, logs it.");
  cls.def("new_profile", [](LTM::CPlayerProfile& p, const Str& name) { Stored(p.NewProfile(Ustring(name)), "new player"); },
          py::arg("name"), "Starts a new player named `name` in this slot and logs it.");
  cls.def("remove_profile", [](LTM::CPlayerProfile& p) { p.RemoveProfile(); },
          "Empties the slot: the player's files, folders and uploads go, the play log starts afresh and every "
          "installed package forgets the player.");
  cls.def("save", [](LTM::CPlayerProfile& p) { Stored(p.Save(), "files"); }, "Writes both files again.");
  py::dict keys;
  keys["pet"] = kPlayerProfileKey_Pet;
  keys["theme"] = kPlayerProfileKey_Theme;
  keys["profile_picture"] = kPlayerProfileKey_ProfilePicture;
  keys["badges"] = kPlayerProfileKey_Badges;
  keys["pet_on_ui"] = kPlayerProfileKey_PetOnUI;
  keys["clock_on_ui"] = kPlayerProfileKey_ClockOnUI;
  keys["sorting_option"] = kPlayerProfileKey_SortingOption;
  keys["dialog_option"] = kPlayerProfileKey_DialogOption;
  m.attr("PROFILE_KEYS") = keys;
}

void BindContentLists(py::module_& m) {
  m.def("apps", [] { return PathList(LTM::CApps().get()); },
        "The installed application and cartridge package folders, as the launcher lists them.");
  m.def("avatars", [](tPlayerID player) { return PathList(LTM::CAvatars().get(player)); }, py::arg("player"),
        "The avatar packages player `player` may use.");
  m.def(
      "micro_downloads",
      [](tPlayerID player, const std::optional<Str>& gameId) {
        if (!gameId) return PathList(LTM::CMicroDownloads().get(player));
        return PathList(LTM::CMicroDownloads(Ustring(*gameId)).get(player));
      },
      py::arg("player"), py::arg("game_id") = py::none(),
      "The micro-download packages of the running title (or of `game_id`) that player `player` may use.");
  m.def("consumables", [] { return PathList(LTM::CConsumable().Get()); },
        "The running title's consumable packages the current player still has.");
}

void BindBaseUtils(py::module_& m) {
  py::enum_<BaseUtils::tFileSelect>(m, "FileSelect", "Which entries of a folder's top level a walk takes.")
      .value("DIRECTORIES", BaseUtils::kSelectDirectories)
      .value("FILES", BaseUtils::kSelectFiles)
      .value("ALL", BaseUtils::kSelectAll);
  m.def("compare_version",
        [](const Str& a, const Str& b) { return BaseUtils::Instance()->CompareVersion(Ustring(a), Ustring(b)); },
        py::arg("a"), py::arg("b"),
        "Negative, 0 or positive as version `a` is older than, equal to or newer than `b` (tokens split on "
        "\".-_\", compared by length, then byte by byte; 1.2 equals 1.2.3).");
  m.def("calculate_checksum",
        [](const Path& path, BaseUtils::tFileSelect select) {
          return BaseUtils::Instance()->CalculateChecksum(path.bytes, select);
        },
        py::arg("path"), py::arg("select") = BaseUtils::kSelectAll,
        "The CRC-32 of a file, or of every file below a folder in listing order (`select` filters the top "
        "level only); \".crc\" files never count.");
  m.def("read_checksum", [](const Path& path) { return BaseUtils::Instance()->ReadChecksum(path.bytes); },
        py::arg("path"), "The value of a 4-byte \".crc\" file; 0 when unreadable.");
  m.def("write_checksum",
        [](const Path& path, U32 value) {
          if (!BaseUtils::Instance()->WriteChecksum(path.bytes, value)) {
            Raise(GetErrors().write, "cannot write " + path.bytes);
          }
        },
        py::arg("path"), py::arg("value"), "Writes `value` as a 4-byte little-endian \".crc\" file.");
  m.def("has_doom_package",
        [](const std::optional<Path>& folder) {
          if (!folder) return BaseUtils::Instance()->HasDoomPackage();
          return BaseUtils::Instance()->HasDoomPackage(folder->bytes);
        },
        py::arg("folder") = py::none(),
        "True when `folder` holds a \"doom\" marker; without a folder, the global marker.");
  m.def("serial_number", [] { return Text(BaseUtils::Instance()->GetSerialNumber().raw()); },
        "The device serial number from the manufacturing record; twenty zeros when unreadable.");
}

}  // namespace

void BindDevice(py::module_& m) {
  BindSystemData(m);
  BindProfile(m);
  BindContentLists(m);
  BindBaseUtils(m);
}

}  // namespace python
}  // namespace vireline
