/// @file
/// The core's values as the host's debug record holds them.
#pragma once

#include "core/base/ckirohistory.h"
#include "interface/aecdebugdata.h"

namespace debugdata
{

/// Copies at most AECDebugNameLength characters; the rest is zero. A null text is empty.
VOID SetName(CHAR (&rName)[AECDebugNameLength], const CHAR* pText);

/// @return the ID, limited to -1 to 32767
INT16 DataID(INT32 dataID);

AECDebugBank          Bank(const DataBankType& rBank);
FrameExposureInfoType Exposure(const KIROExposureSetType& rSet);
FrameHistoryInfoType  Frame(const AECFrameHistory& rFrame);

}  // namespace debugdata
