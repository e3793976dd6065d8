/// @file
/// The calls of the table.
#pragma once

#include "tools/recording/calls.h"
#include "tools/recording/settingcalls.h"

namespace recording
{

using AllCalls = std::tuple<
    CreateDataXmlCall, RunStartOfFrameCall, RunMeteringPreprocessCall, RunAnalyzerCall, UpdateAnalyzerMgrOutCall,
    RunMeteringPostprocessCall, MixMeteringCall, RunExtensionCall, RunEndOfFrameCall, FollowMasterConvExposureCall,
    GetBankDataCall, SetInputCall, SetStatsCall, SetBankDataCall, GetFlashMaxCurrentCall, GetFlashCalibInfoCall,
    GetFlashCurrentCall, IsPreflashMeteringNeededCall, GetStartUpExposureCall, QueryMetaDataCall, RunArbitrationCall,
    RunConvProcessCall, RunConvSettleCall, RunConvPostProcessCall, HandleExposureConstraintsCall, DestroyInstanceCall,
    SetDynamicBankDataCall, GetContextStatusCall, SetContextEventCall, GetContextEventCall, Run1DVectorProcessCall,
    Reset1DVectorProcessorsCall, SetMeteringLockCall, RebaseSCDCall, GetSCDOutputCall, GetFICDataCall>;

}  // namespace recording
