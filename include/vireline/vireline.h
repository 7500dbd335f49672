// Everything a client of libvireline needs.
#ifndef VIRELINE_VIRELINE_H_
#define VIRELINE_VIRELINE_H_

#include <vireline/BaseUtils.h>
#include <vireline/CApps.h>
#include <vireline/CAvatars.h>
#include <vireline/CConsumable.h>
#include <vireline/CCyo.h>
#include <vireline/CFileIO.h>
#include <vireline/CFileUtils.h>
#include <vireline/CJSonFile.h>
#include <vireline/CLogData.h>
#include <vireline/CLogDataPack.h>
#include <vireline/CLogFile.h>
#include <vireline/CLogHeader.h>
#include <vireline/CLogReader.h>
#include <vireline/CMetaInfFile.h>
#include <vireline/CMetaInfo.h>
#include <vireline/CMfgData.h>
#include <vireline/CMicroDownloads.h>
#include <vireline/CMilestones.h>
#include <vireline/COrvoInterface.h>
#include <vireline/CPlayReport.h>
#include <vireline/CPlayerProfile.h>
#include <vireline/CProfileDscFile.h>
#include <vireline/CSettingsCfgFile.h>
#include <vireline/CSystem.h>
#include <vireline/CSystemData.h>
#include <vireline/CTimeSync.h>
#include <vireline/Dataset.h>
#include <vireline/Export.h>
#include <vireline/LTMJson.h>
#include <vireline/LogCatalogue.h>
#include <vireline/LogEvents.h>
#include <vireline/PkgPath.h>
#include <vireline/Platform.h>
#include <vireline/Types.h>

#endif  // VIRELINE_VIRELINE_H_
