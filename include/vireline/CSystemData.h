// CSystemData: where things live on the device. The content root, the
// system, application and download package folders, the per-player data
// folders, the language pack of the current locale, the title that is running,
// and the lookup of a title's art, audio, video and fonts by bare file name.
// Folder paths end in "/". One instance per process, never destroyed.
#ifndef VIRELINE_CSYSTEMDATA_H_
#define VIRELINE_CSYSTEMDATA_H_

#include <cstdint>

#include <vireline/Export.h>
#include <vireline/Types.h>

// Which of a player's data folders GetDataProfileGamePath means: 0 and 1 the
// player's local data, 2 the data waiting for upload.
enum tStorageType : uint32_t { kStorageLocal = 0, kStorageLocalData = 1, kStorageUpload = 2 };

namespace vireline {
namespace systemdata {
class FolderAccess;
}  // namespace systemdata
}  // namespace vireline

class VIRELINE_EXPORT CSystemData {
 public:
  // The process-wide instance, created on first use.
  static CSystemData* Instance();

  // Computes the root, package, data and universal language pack folders; true.
  bool SetRootPaths();

  // The root of the content volume ("/QV/").
  CPath GetRootPath();
  // The cartridge folder: root + "Cart/".
  CPath GetCartPath();
  // The system package folder ("/QV/Base/").
  CPath GetBasePath();
  // Deprecated: "/QV/Bulk/Data/".
  CPath GetDataPath();
  // The application package folder ("/QV/Bulk/ProgramFiles/").
  CPath GetProgramFilesPath();
  // "/QV/Base/ZantoAvatars/".
  CPath GetAvatarsPath();
  // The avatars folder + "Avatar1/".
  CPath GetDefaultAvatarPath();
  // The download package folder, always ending in "/".
  CPath GetCYOsPath();
  // "/QV/Base/ZantoMDLs/" under the Zanto legacy flag, else the download package folder.
  CPath GetMDLsPath();
  // The download package folder.
  CPath GetDownloadsPath();
  // Base + "Flash/".
  CPath GetFlashPath();
  // Base + "PetResources/".
  CPath GetPetResourcesPath();
  // Base + "Flash/FlashApp.so" (a file).
  CPath GetFlashAppPath();
  // Deprecated: the universal language pack's "Audio/".
  CPath GetUniversalAudioPath();
  // Deprecated: the universal language pack's "Art/".
  CPath GetDefaultArtPath();
  // Deprecated: the universal language pack's "Art/".
  CPath GetCustomizedArtPath();
  // Deprecated: the universal language pack's "Art/".
  CPath GetUniversalArtPath();

  // The language pack of the locale's language: root + "Bulk/LanguagePack_" + ll + "/".
  CPath GetLanguagePackPath();
  // GetLanguagePackPath() when `localized`, else the universal "/QV/Bulk/LanguagePack/".
  CPath GetLanguagePackPath(bool localized);
  // The locale's language pack + "Tutorials/".
  CPath GetBaseTutorialPath();
  // Deprecated: the localized language pack + "Audio/".
  CPath GetLocalizedAudioPath();
  // Accepted and ignored: the audio folder follows the locale.
  void SetLocalizedAudioPath(const CPath& path);

  // The locale ("en-us"): the settings, else the manufacturing record, else "en-us".
  CString GetLocaleCode();
  // Switches to `code`, or with an empty code re-reads the device's locale.
  void SetLocaleCode(CString code);

  // The title folder last given to SetCurrentTitlePath.
  CPath GetCurrentTitlePath();
  // The last folder name of the current title path.
  CString GetCurrentGameID();
  // The current title's product id; 0 without metadata.
  U32 GetCurrentGameProductID();
  // The current title's package id; empty without metadata.
  CString GetCurrentGamePackageID();
  // Makes `path` (a package folder ending in "/") the running title, and
  // switches to the language its metadata asks for.
  void SetCurrentTitlePath(const CPath& path);

  // Sets the flag that selects the first model's folder names.
  void SetZantoLegacyFlag(bool legacy);
  // The first model's folder names are in use.
  bool GetZantoLegacyFlag();
  // Records whether the EarlyPreK content is black-listed.
  void SetEarlyPreKBlackListed(bool blackListed);
  // What SetEarlyPreKBlackListed recorded.
  bool GetEarlyPreKBlackListed();

  // The current player from the settings, read afresh on every call.
  tPlayerID GetCurrentPlayerID();

  // "/QV/Bulk/Data/Local/<p>/"; nothing is created.
  CPath GetDataProfilePath(tPlayerID player);
  // The folder of the player's play log; empty for a player without one.
  CPath GetDataProfileLogPath(tPlayerID player);
  // ".../Local/<p>/<name>/" (p "All" for -2, -3 the current player), created when missing.
  CPath GetLocalDataPath(tPlayerID player, CString name);
  // ".../Uploads/<current player>/<package id>/<name>/", created when missing.
  CPath GetUploadDataPath(CString name);
  // Deprecated: the current game's folder shared by all players, created.
  CPath GetDataGamePath();
  // Deprecated: the current game's folder of `player`, created.
  CPath GetDataProfileGamePath(tPlayerID player);
  // Deprecated: the current game's local or upload folder of `player`,
  // created; empty for an unknown storage type.
  CPath GetDataProfileGamePath(tPlayerID player, tStorageType storage);
  // The device's inventory upload package of the current player, created
  // with its metadata when missing.
  CPath GetManageInventoryPath();

  // The shared object of the hidden device package named `name`; empty when none.
  CPath FindWidget(CString name);

  // The best art file named `name` for the locale, else the "missingAsset.png" placeholder.
  CPath FindArt(const CPath& name);
  // The best audio file, a WAV first, else the "h_BROM_AudioNotFoundSfx_6" placeholder.
  CPath FindAudio(const CPath& name);
  // The best video file; empty when none.
  CPath FindVideo(const CPath& name);
  // The title's or the device's font, else "QVCurry.ttf".
  CPath FindFont(const CPath& name);
  // The book pack's audio file, else the language pack's; empty when none.
  CPath FindBookAudio(const CPath& name);

 private:
  friend class vireline::systemdata::FolderAccess;  // the asset lookups read the folders in place

  CSystemData();
  CSystemData(const CSystemData&) = delete;
  CSystemData& operator=(const CSystemData&) = delete;

  void SetLocalizedFolders(const CString& code);
  CString GameFolderName() const;

  static CSystemData* mpInstance;

  CPath mRootPath;
  CPath mCartPath;
  CPath mBasePath;
  CPath mDataPath;
  CPath mProgramFilesPath;
  CPath mAvatarsPath;
  CPath mDefaultAvatarPath;
  CPath mCYOPath;
  CPath mMDLPath;
  CPath mDownloadsPath;
  CPath mCurrentTitlePath;
  CString mCurrentGameID;
  CString mLocaleCode;  // empty until known
  CPath mUniversalLanguagePackPath;
  CPath mLanguagePackPath;
  CPath mTutorialPath;
  bool mZantoLegacy;
  U32 mCurrentGameProductID;
  CString mCurrentGamePackageID;
  bool mEarlyPreKBlackListed;
};

#endif  // VIRELINE_CSYSTEMDATA_H_
