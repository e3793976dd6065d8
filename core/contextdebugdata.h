/// @file
/// The host's debug record, where it is wanted. Its members are not aligned, so values go in one by one.
#pragma once

#include "core/ikirocontextmanager.h"
#include "interface/aecdebugdata.h"
#include "interface/ikirodebugdata.h"
#include "schema/kirometeringstatscalculator.h"

namespace debugdata
{

/// @return the host's record, or null while the host wants none
inline AECDebugData* Enabled(IKIROContextManager& rContext)
{
    IKIRODebugData& rDebugData = rContext.GetDebugDataInfo();
    return (rDebugData.IsDebugDataEnabled() == TRUE) ? &rDebugData.GetDebugData() : nullptr;
}

/// Appends an entry to the metering record, if the tuning asks for the calculators. The count goes on past the room.
/// @param resultCount at most 2
VOID AppendCalculator(IKIROContextManager& rContext, const CHAR* pDescription, INT32 calculatorID, INT32 api,
                      const kirometeringstatscalculator::CalculatorIntegerRangeType& rOutputStorage,
                      const FLOAT* pResults, UINT32 resultCount);

}  // namespace debugdata
