/// @file
/// The tuning modules that carry records, and the list of all modules.
#pragma once

#include "schema/tuningrecord.h"

#include "schema/kiro1dvectorprocessor.h"
#include "schema/kiroadvancedinfo.h"
#include "schema/kiroarbitration.h"
#include "schema/kiroconvergence.h"
#include "schema/kirocorestatsconfig.h"
#include "schema/kirodb1dmeterweight.h"
#include "schema/kirodb2dmeterweight.h"
#include "schema/kirodbactiveanalyzers.h"
#include "schema/kirodbactivecalculators.h"
#include "schema/kirodbarbitrationlut.h"
#include "schema/kirodbarbitrationorder.h"
#include "schema/kirodbarbitrationrange.h"
#include "schema/kirodbarbitrationtable.h"
#include "schema/kirodbconvactivescd.h"
#include "schema/kirodbconvbase.h"
#include "schema/kirodbconvsettle.h"
#include "schema/kirodbconvstretch.h"
#include "schema/kirodbroi.h"
#include "schema/kirodbsceneanalyzer.h"
#include "schema/kirodbsnapshot.h"
#include "schema/kirodbstatscalculator.h"
#include "schema/kiroev.h"
#include "schema/kiroextension.h"
#include "schema/kiroexternalmapprocessor.h"
#include "schema/kiroface.h"
#include "schema/kiroflash.h"
#include "schema/kiroflashsnapshot.h"
#include "schema/kirohdrsensor.h"
#include "schema/kirohwstatsconfig.h"
#include "schema/kirometering.h"
#include "schema/kirometeringsaalgorithm.h"
#include "schema/kirometeringsceneanalyzer.h"
#include "schema/kirometeringstatscalculator.h"
#include "schema/kiromtrtablegen.h"
#include "schema/kiroparamextension.h"
#include "schema/kiroscenechangedetector.h"
#include "schema/kiroskipcontrol.h"
#include "schema/kirospectralsensor.h"
#include "schema/kirostartup.h"
#include "schema/kirosync.h"
#include "schema/kirotouch.h"

namespace tuning
{

/// One module of a set manager.
struct ModuleDescription
{
    const CHAR*              pName;
    UINT64                   nameHash;
    UINT16                   major;
    UINT16                   minor;
    UINT32                   patch;
    const RecordDescription* pRecord;  ///< null for a module that is known by name and version only
};

#define TUNING_MODULE(name, RecordType, major, minor, patch)                                                           \
    {#name, namehash::OfName(#name), major, minor, patch, TuningRecordOf(static_cast<const name::RecordType*>(nullptr))},
#define TUNING_MODULE_BARE(name, major, minor, patch) {#name, namehash::OfName(#name), major, minor, patch, nullptr},

inline constexpr ModuleDescription TuningModules[] = {
#include "schema/modules.def"
};

inline constexpr ModuleDescription ImageSensorModules[] = {
#include "schema/imagesensormodules.def"
};

inline constexpr ModuleDescription FaceDetectionModules[] = {
#include "schema/fdmodules.def"
};

#undef TUNING_MODULE
#undef TUNING_MODULE_BARE

static_assert(std::size(TuningModules) == 269);
static_assert(std::size(ImageSensorModules) == 11);
static_assert(std::size(FaceDetectionModules) == 1);

} // namespace tuning
