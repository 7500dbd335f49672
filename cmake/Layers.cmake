# The library's areas, one object library each, and which area may use which.
#
# Each area compiles against a view of the headers made for it in the build
# tree (layers/<area>/): its own public and private headers and those of the
# areas it may use, nothing else. Including another area's header fails to
# compile, so the layering below is enforced by the build, not just described.
# The one way up is the seam (baseutils/UpperLayers.h): its declarations
# belong to the base utilities, its definitions (vireline_seam) see every area.

# Lowest first. An area may use the areas it names and, through them, theirs.
set(VIRELINE_AREAS platform files mfg baseutils ltm systemdata logging milestones)
set(VIRELINE_AREA_USES_platform)
set(VIRELINE_AREA_USES_files platform)
set(VIRELINE_AREA_USES_mfg platform)
set(VIRELINE_AREA_USES_baseutils files mfg)
set(VIRELINE_AREA_USES_ltm baseutils)
set(VIRELINE_AREA_USES_systemdata ltm)
set(VIRELINE_AREA_USES_logging systemdata)
set(VIRELINE_AREA_USES_milestones systemdata)

# The public headers (include/vireline/) each area owns.
set(VIRELINE_AREA_HEADERS_platform DeviceFiles.h Export.h FileOpenWatch.h HostPaths.h Platform.h ScratchOverlay.h Types.h)
set(VIRELINE_AREA_HEADERS_files
  CFileIO.h CFileUtils.h CMetaInfFile.h COrvoInterface.h CProfileDscFile.h CSettingsCfgFile.h PkgPath.h)
set(VIRELINE_AREA_HEADERS_mfg CMfgData.h)
set(VIRELINE_AREA_HEADERS_baseutils BaseUtils.h DebugModules.h DisplayText.h)
set(VIRELINE_AREA_HEADERS_ltm
  CApps.h CAvatars.h CConsumable.h CCyo.h CJSonFile.h CMetaInfo.h CMicroDownloads.h CPlayerProfile.h
  CSystem.h CyoSets.h LTMJson.h)
set(VIRELINE_AREA_HEADERS_systemdata AssetLookup.h CSystemData.h SystemPaths.h)
set(VIRELINE_AREA_HEADERS_logging
  CLogData.h CLogDataPack.h CLogExporter.h CLogFile.h CLogHeader.h CLogReader.h CPlayReport.h CTimeSync.h
  LogCatalogue.h LogEvents.h LogJson.h)
set(VIRELINE_AREA_HEADERS_milestones CMilestones.h Dataset.h)

# The sources of each area. A new file is added here by hand.
set(VIRELINE_AREA_SOURCES_platform
  AtomicFile.cpp BufferedReader.cpp DeviceFiles.cpp DeviceRoot.cpp DeviceRootEnv.cpp Env.cpp FileDescriptor.cpp FileOpenWatch.cpp
  FormattedWrite.cpp HostPaths.cpp PlatformDebug.cpp PlatformIdentity.cpp PlatformKernel.cpp PosixEnv.cpp PosixFiles.cpp
  Result.cpp RootResolver.cpp ScopedEnv.cpp ScratchOverlay.cpp ScratchOverlayEnv.cpp StreamCalls.cpp)
set(VIRELINE_AREA_SOURCES_files
  CFileIO.cpp CFileUtils.cpp CMetaInfFile.cpp COrvoInterface.cpp CPkgPathBase.cpp CProfileDscFile.cpp
  CSettingsCfgFile.cpp DirConfigTables.cpp DoomMarker.cpp EntryStrings.cpp KeyValueReader.cpp UnreadableFiles.cpp)
set(VIRELINE_AREA_SOURCES_mfg CMfgData.cpp CMfgDataBoard.cpp CMfgDataFields.cpp CPartition.cpp)
set(VIRELINE_AREA_SOURCES_baseutils
  BaseUtils.cpp BaseUtilsChecksum.cpp BaseUtilsCopy.cpp BaseUtilsDaemon.cpp BaseUtilsDiagnostics.cpp
  BaseUtilsDoom.cpp BaseUtilsHotPlug.cpp BaseUtilsIdentity.cpp BaseUtilsLanguages.cpp BaseUtilsLaunch.cpp
  BaseUtilsRemove.cpp BaseUtilsRequests.cpp BaseUtilsVersion.cpp DebugModules.cpp DisplayText.cpp TimeLog.cpp)
set(VIRELINE_AREA_SOURCES_ltm
  CApps.cpp CAvatars.cpp CConsumable.cpp CCyo.cpp CCyoItem.cpp CJSonFile.cpp CMetaInfo.cpp CMicroDownloads.cpp
  CPlayerProfile.cpp CSystem.cpp CartDependencies.cpp CartDependencyTables.cpp ContentListMessages.cpp
  CyoSearch.cpp FastWriter.cpp JsonTree.cpp JsonTypeError.cpp LowerLayerReads.cpp PackageCandidate.cpp
  PlayerProfileLifecycle.cpp Reader.cpp StreamExtraction.cpp StyledWriter.cpp Utf8Check.cpp Value.cpp
  ValueCompare.cpp ValueConversions.cpp)
set(VIRELINE_AREA_SOURCES_systemdata
  AssetLookup.cpp CSystemData.cpp CurrentTitle.cpp Languages.cpp Locale.cpp PlayerPaths.cpp Widgets.cpp)
set(VIRELINE_AREA_SOURCES_logging
  CLogData.cpp CLogDataPack.cpp CLogExporter.cpp CLogFile.cpp CLogFileStartup.cpp CLogHeader.cpp CLogReader.cpp
  CPlayReport.cpp CTimeSync.cpp LogCatalogue.cpp LogEvents.cpp LogFileFunctions.cpp LogJson.cpp LogRequests.cpp)
set(VIRELINE_AREA_SOURCES_milestones CMilestones.cpp Dataset.cpp DatasetFiles.cpp EFdWrapper.cpp)

# Third-party libraries an area's own sources use (glibmm and Boost's headers
# come with the public headers, so every area has them).
set(VIRELINE_AREA_LIBS_baseutils PkgConfig::ZLIB)
set(VIRELINE_AREA_LIBS_mfg PkgConfig::ZLIB)
set(VIRELINE_AREA_LIBS_ltm PkgConfig::JSONCPP)
set(VIRELINE_AREA_LIBS_logging PkgConfig::JSONCPP)

function(vireline_area_view area)
  set(view ${CMAKE_CURRENT_BINARY_DIR}/layers/${area})
  file(REMOVE_RECURSE ${view})
  file(MAKE_DIRECTORY ${view}/vireline)
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/${area} ${view}/${area} SYMBOLIC)
  foreach(header IN LISTS VIRELINE_AREA_HEADERS_${area})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/include/vireline/${header} ${view}/vireline/${header} SYMBOLIC)
  endforeach()
endfunction()

set(VIRELINE_AREA_TARGETS)
foreach(area IN LISTS VIRELINE_AREAS)
  vireline_area_view(${area})
  list(TRANSFORM VIRELINE_AREA_SOURCES_${area} PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/${area}/
       OUTPUT_VARIABLE sources)
  add_library(vireline_${area} OBJECT ${sources})
  set_target_properties(vireline_${area} PROPERTIES
    POSITION_INDEPENDENT_CODE ON
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  target_compile_definitions(vireline_${area} PUBLIC VIRELINE_BUILDING_LIBRARY)
  target_include_directories(vireline_${area} PUBLIC ${CMAKE_CURRENT_BINARY_DIR}/layers/${area})
  list(TRANSFORM VIRELINE_AREA_USES_${area} PREPEND vireline_ OUTPUT_VARIABLE lower)
  target_link_libraries(vireline_${area} PUBLIC ${lower} PkgConfig::GLIBMM Boost::headers
                                         PRIVATE ${VIRELINE_AREA_LIBS_${area}})
  list(APPEND VIRELINE_AREA_TARGETS vireline_${area})
endforeach()

# The seam: the lower layers' calls upward, forwarded to the areas that answer them.
add_library(vireline_seam OBJECT ${CMAKE_CURRENT_SOURCE_DIR}/baseutils/UpperLayers.cpp)
set_target_properties(vireline_seam PROPERTIES
  POSITION_INDEPENDENT_CODE ON
  CXX_VISIBILITY_PRESET hidden
  VISIBILITY_INLINES_HIDDEN ON)
target_link_libraries(vireline_seam PUBLIC ${VIRELINE_AREA_TARGETS})
list(APPEND VIRELINE_AREA_TARGETS vireline_seam)

set(VIRELINE_OBJECTS)
foreach(target IN LISTS VIRELINE_AREA_TARGETS)
  list(APPEND VIRELINE_OBJECTS $<TARGET_OBJECTS:${target}>)
endforeach()

# Everything the library is made of, for the programs that link its objects
# statically: the tests, benchmarks and fuzz targets (which reach internals).
add_library(vireline_core INTERFACE)
target_compile_definitions(vireline_core INTERFACE VIRELINE_BUILDING_LIBRARY)
target_include_directories(vireline_core INTERFACE ${CMAKE_CURRENT_SOURCE_DIR}/include)
target_link_libraries(vireline_core INTERFACE ${VIRELINE_OBJECTS}
  PkgConfig::GLIBMM PkgConfig::JSONCPP PkgConfig::ZLIB Boost::headers)
# Object files named by TARGET_OBJECTS carry no build order: a program that
# links this target must wait for every area to be compiled.
add_dependencies(vireline_core ${VIRELINE_AREA_TARGETS})

# Test support that never ships: the fault-injecting platform.
add_library(vireline_testsupport STATIC ${CMAKE_CURRENT_SOURCE_DIR}/platform/FaultInjectionEnv.cpp
  ${CMAKE_CURRENT_SOURCE_DIR}/platform/FaultInjectionFiles.cpp)
target_include_directories(vireline_testsupport PUBLIC ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/include)
target_link_libraries(vireline_testsupport PUBLIC PkgConfig::GLIBMM Boost::headers)
