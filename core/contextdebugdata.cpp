#include "core/contextdebugdata.h"

#include "core/base/debugdata.h"
#include "core/base/tuningaccess.h"
#include "schema/kiroextension.h"

namespace debugdata
{

VOID AppendCalculator(IKIROContextManager& rContext, const CHAR* pDescription, INT32 calculatorID, INT32 api,
                      const kirometeringstatscalculator::CalculatorIntegerRangeType& rOutputStorage,
                      const FLOAT* pResults, UINT32 resultCount)
{
    AECDebugData* pDebug = Enabled(rContext);
    if (pDebug == nullptr ||
        tuningaccess::Require_kiroextension(*rContext.GetTuningData()).verboseDebugDataEnable.StatsCalculator != TRUE)
    {
        return;
    }
    AECDebugDataMeteringType& rMetering = pDebug->meteringInfo;
    if (rMetering.calculatorCount < AECDebugCalculatorCount)
    {
        AECDebugCalculatorType entry{};
        SetName(entry.description, pDescription);
        entry.calculatorID = calculatorID;
        entry.APISelection = static_cast<UINT8>(api);
        entry.outputStart  = DataID(rOutputStorage.start);
        entry.outputEnd    = DataID(rOutputStorage.end);
        for (UINT32 result = 0; result < resultCount; ++result)
        {
            entry.results[result] = pResults[result];
        }
        rMetering.calculators[rMetering.calculatorCount] = entry;
    }
    rMetering.calculatorCount = static_cast<UINT16>(rMetering.calculatorCount + 1);
}

}  // namespace debugdata
