/// @file
/// The functions of the table, in its order. The number of a slot is part of the file.
#pragma once

#include "platform/tavotypes.h"

// clang-format off
#define RECORDED_SLOTS(SLOT)                                                                                          \
    SLOT(createDataXml) SLOT(runStartOfFrame) SLOT(runMeteringPreprocess) SLOT(runAnalyzer)                           \
    SLOT(updateAnalyzerMgrOut) SLOT(runMeteringPostprocess) SLOT(mixMetering) SLOT(runExtension)                      \
    SLOT(runEndOfFrame) SLOT(followMasterConvExposure) SLOT(getBankData) SLOT(setInput) SLOT(setStats)                \
    SLOT(setBankData) SLOT(GetFlashMaxCurrent) SLOT(GetFlashCalibInfo) SLOT(getFlashCurrent)                          \
    SLOT(isPreflashMeteringNeeded) SLOT(GetStartUpExposure) SLOT(queryMetaData) SLOT(runArbitration)                  \
    SLOT(RunConvProcess) SLOT(RunConvSettle) SLOT(RunConvPostProcess) SLOT(HandleExposureConstraints)                 \
    SLOT(DestroyInstance) SLOT(setDynamicBankData) SLOT(GetContextStatus) SLOT(SetContextEvent)                       \
    SLOT(GetContextEvent) SLOT(run1DVectorProcess) SLOT(reset1DVectorProcessors) SLOT(SetMeteringLock)                \
    SLOT(RebaseSCD) SLOT(GetSCDOutput) SLOT(GetFICData)
// clang-format on

namespace recording
{

enum class Slot : UINT16
{
#define SLOT(name) name,
    RECORDED_SLOTS(SLOT)
#undef SLOT
        Count
};

constexpr const CHAR* SlotNames[] = {
#define SLOT(name) #name,
    RECORDED_SLOTS(SLOT)
#undef SLOT
};

}  // namespace recording
