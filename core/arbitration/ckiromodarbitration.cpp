#include "core/arbitration/ckiromodarbitration.h"

#include <cmath>

#include "core/arbitration/arbitrationutils.h"
#include "core/base/debugdata.h"
#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/contextdebugdata.h"
#include "interface/kiroresults.h"

namespace
{

VOID ReplaceZero(FLOAT* pValue)
{
    if (std::abs(*pValue) < exposurearithmetic::Epsilon)
    {
        *pValue = 1.0f;
    }
}

}  // namespace

CKIROArbitration::CKIROArbitration(InstanceTuning& rTuningData, IKIROContextManager& rContextManager)
    : ModuleCommon(rTuningData, rContextManager), m_pIn(nullptr), m_pOut(nullptr),
      m_LUTTrigger(KIROMLBaseDataType), m_maxTimes{}
{
}

KiroResult CKIROArbitration::RunArbitration(KIROArbitrationInput* pInput, KIROArbitrationOutput* pOutput)
{
    if (pInput == nullptr || pOutput == nullptr)
    {
        STATS_LOG_ERROR("invalid input %p or output %p pointers", static_cast<VOID*>(pInput),
                        static_cast<VOID*>(pOutput));
        return ResultFailed;
    }
    if (static_cast<UINT32>(pInput->expType) >= AECAlgoExposureCount)
    {
        STATS_LOG_ERROR("invalid exposure type parameter %d", pInput->expType);
        return ResultFailed;
    }

    m_pIn  = pInput;
    m_pOut = pOutput;
    RepairInput(*pInput);
    pOutput->expType = pInput->expType;
    m_pTuningData    = m_rContextManager.GetTuningData();

    const KiroResult result = ApplyControl(*pOutput);
    if (result != 0)
    {
        return result;
    }
    HoldSoundExposure(*pOutput);
    m_limits[pInput->expType].Update(&pOutput->range, pInput->indexZeroExposure);
    m_maxTimes[pInput->expType] = pOutput->range.end.time;
    PopulateDebugData();
    return 0;
}

/// A correction of 0, as a table can have it, divides the exposure out of all bounds. The control then leaves it as it
/// was.
VOID CKIROArbitration::HoldSoundExposure(KIROArbitrationOutput& rOutput) const
{
    const KIROExposureSetType& rSet = rOutput.exposureSet;
    if (!IsSoundExposure(rSet))
    {
        STATS_LOG_ERROR("control %d yields gain %f, correction %f, index %f with this tuning; the exposure stands",
                        m_pIn->controlID, rSet.gain, rSet.corr, rSet.indx);
        rOutput.exposureSet = CurrentExposure();
    }
}

/// The last control of an exposure's list stays in the record.
VOID CKIROArbitration::PopulateDebugData() const
{
    AECDebugData* pDebug = (m_pIn->bIsConvRange != TRUE) ? debugdata::Enabled(m_rContextManager) : nullptr;
    if (pDebug == nullptr)
    {
        return;
    }
    const KIROExposureRange&   rRange = m_pOut->range;
    AECDebugArbitratedExposure exposure{};
    exposure.exposureSet                              = debugdata::Exposure(m_pOut->exposureSet);
    exposure.minGain                                  = rRange.start.gain;
    exposure.maxGain                                  = rRange.end.gain;
    exposure.minTime                                  = rRange.start.time;
    exposure.maxTime                                  = rRange.end.time;
    exposure.minIndex                                 = rRange.start.indx;
    exposure.maxIndex                                 = rRange.end.indx;
    exposure.deltaEVFromTarget                        = m_pOut->deltaEVFromTarget;
    pDebug->arbitrationInfo.exposures[m_pIn->expType] = exposure;
    pDebug->arbitrationInfo.FPS                       = m_pOut->FPS;
}

VOID CKIROArbitration::RepairInput(KIROArbitrationInput& rInput) const
{
    KIROExposureSetType& rExposure = rInput.exposures[rInput.expType];
    if (rExposure.exposure == 0)
    {
        STATS_LOG_WARNING("requesting arbitration for exposure 0; forcing to 1");
        rExposure.exposure = 1;
    }
    ReplaceZero(&rExposure.gain);
    if (rExposure.time == 0)
    {
        rExposure.time = 1;
    }
    ReplaceZero(&rInput.range.start.corr);
    ReplaceZero(&rInput.range.end.corr);
    ReplaceZero(&rExposure.corr);
}

KiroResult CKIROArbitration::ApplyControl(KIROArbitrationOutput& rOutput)
{
    if (m_pIn->controlBank == BankIDArbitrationTable)
    {
        rOutput.exposureSet     = {};  // what a reference frame without an answer leaves
        const KiroResult result = ApplyCoreTable(&rOutput.exposureSet);
        if (result != 0)
        {
            rOutput.exposureSet = CurrentExposure();
        }
        return result;
    }
    rOutput.exposureSet = CurrentExposure();
    switch (m_pIn->controlBank)
    {
    case BankIDArbitrationLUT:
        return ApplyCoreLUT();
    case BankIDArbitrationRange:
        return ApplyCoreRange();
    default:
        STATS_LOG_ERROR("don't know how to handle bank %d", m_pIn->controlBank);
        return ResultFailed;
    }
}
