// Look-up tables: gain or time from two keys, and the grid of flicker periods.

#include <algorithm>
#include <cmath>

#include "core/arbitration/arbitrationutils.h"
#include "core/arbitration/ckiromodarbitration.h"
#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "interface/kiroresults.h"

using exposurearithmetic::Epsilon;
using exposurearithmetic::SaturateToUINT64;
using namespace kirodbarbitrationlut;

namespace
{

constexpr INT32 LUTLevels = 2;

FLOAT GainForTime(UINT64 exposure, UINT64 time, FLOAT corr)
{
    return static_cast<FLOAT>(exposure) / std::max(static_cast<FLOAT>(time) * corr, Epsilon);
}

}  // namespace

KiroResult CKIROArbitration::ApplyCoreLUT()
{
    const DBArbitrationLUTPayload* pPayload =
        m_rContextManager.m_pBankManager->GetDataArbitrationLUT(m_pIn->controlDataID);
    if (pPayload == nullptr)
    {
        STATS_LOG_ERROR("could not find LUT %d", m_pIn->controlDataID);
        return ResultFailed;
    }
    const CHAR* pDescription = TextOrEmpty(pPayload->description);
    SYSTEM_LOG_CONFIG("Apply %s", pDescription);

    const LUTType&   rLUT    = pPayload->value;
    FLOAT            key1    = 0.0f;
    FLOAT            key2    = 0.0f;
    const KiroResult result1 = GetLUTTrigger(&rLUT.keyType1, &key1);
    const KiroResult result2 = GetLUTTrigger(&rLUT.keyType2, &key2);
    if (result1 != 0 || result2 != 0)
    {
        STATS_LOG_ERROR("not applying LUT %s due to trigger issues", pDescription);
        return result1 | result2;
    }

    AECTriggerXMLData tree{rLUT.triggerData,
                           {LUTLevels, sizeof(TriggerSystemEndLevelType::triggerData)},
                           static_cast<INT32>(rLUT.triggerDataCount)};
    m_LUTTrigger.SetData(&tree, KIROMLBaseDataType);
    const FLOAT data = *static_cast<const FLOAT*>(m_LUTTrigger.GetData(key1, key2, 0.0f));

    KIROExposureSetType candidate = CurrentExposure();
    const KiroResult    result    = FitLUTOutput(rLUT, data, &candidate);
    if (result != 0)
    {
        return result;
    }

    KIROExposureSetType& rOut = m_pOut->exposureSet;
    rOut.time                 = candidate.time;
    rOut.gain                 = candidate.gain;
    rOut.exposure = exposurearithmetic::UtilQuantities2Exposure(candidate.gain, candidate.time, CurrentExposure().corr);
    rOut.indx     = exposurearithmetic::IndexByFloatRatio(rOut.exposure, m_pIn->indexZeroExposure);
    m_pOut->range = m_pIn->range;
    return 0;
}

KiroResult CKIROArbitration::GetLUTTrigger(const LUTKeyType* pKey, FLOAT* pValue) const
{
    const KIROExposureSetType& rExposure = CurrentExposure();
    if (pKey->source == SourceBank)
    {
        const DataBankType bank{pKey->bankID, pKey->dataID};
        const KiroResult   result =
            m_rContextManager.m_pBankManager->UtilGetFloatFromBank(&bank, *pValue, FALSE, nullptr);
        if (result != 0)
        {
            STATS_LOG_ERROR("bank ID %d data ID %d is not supported", pKey->bankID, pKey->dataID);
        }
        return result;
    }
    if (pKey->source != SourceArbitration)
    {
        STATS_LOG_ERROR("unknown source type %d", pKey->source);
        return ResultFailed;
    }
    switch (pKey->arbKey)
    {
    case LUTKeyGain:
        *pValue = rExposure.gain;
        return 0;
    case LUTKeyTime:
        *pValue = static_cast<FLOAT>(rExposure.time);
        return 0;
    case LUTKeyExposure:
        *pValue = static_cast<FLOAT>(rExposure.exposure);
        return 0;
    case LUTKeyIndex:
        *pValue = rExposure.indx;
        return 0;
    default:
        STATS_LOG_ERROR("unknown key type %d", pKey->arbKey);
        return ResultFailed;
    }
}

KiroResult CKIROArbitration::FitLUTOutput(const LUTType& rLUT, FLOAT data, KIROExposureSetType* pCandidate) const
{
    switch (rLUT.outType)
    {
    case ArbLutOutGain:
        return FitLUTGain(rLUT, data, pCandidate);
    case ArbLutOutTime:
        return FitLUTTime(rLUT, data, pCandidate);
    default:
        return 0;
    }
}

KiroResult CKIROArbitration::FitLUTGain(const LUTType& rLUT, FLOAT data, KIROExposureSetType* pCandidate) const
{
    if (std::abs(pCandidate->gain - data) < Epsilon)
    {
        return 0;
    }
    pCandidate->gain = data;
    pCandidate->time = SaturateToUINT64(
        static_cast<DOUBLE>(pCandidate->exposure) /
        std::max(static_cast<DOUBLE>(data) * static_cast<DOUBLE>(pCandidate->corr), static_cast<DOUBLE>(Epsilon)));
    return FinishLUTOutput(rLUT, pCandidate);
}

KiroResult CKIROArbitration::FitLUTTime(const LUTType& rLUT, FLOAT data, KIROExposureSetType* pCandidate) const
{
    const UINT64 tempTime = SaturateToUINT64(std::round(data));
    if (tempTime == pCandidate->time)
    {
        return 0;
    }
    pCandidate->gain = GainForTime(pCandidate->exposure, tempTime, pCandidate->corr);
    pCandidate->time = tempTime;
    AlignToFlickerGrid(rLUT, pCandidate);
    return FinishLUTOutput(rLUT, pCandidate);
}

VOID CKIROArbitration::AlignToFlickerGrid(const LUTType& rLUT, KIROExposureSetType* pCandidate) const
{
    using namespace kirodbarbitrationorder;
    if (m_pIn->controlID != ArbCtrlFlicker50LUT && m_pIn->controlID != ArbCtrlFlicker60LUT)
    {
        return;
    }
    const UINT64 period = (m_pIn->controlID == ArbCtrlFlicker50LUT) ? FlickerPeriod50Hz : FlickerPeriod60Hz;
    if (pCandidate->time / period == 0)
    {
        return;
    }
    KIROExposureSetType resolved = *pCandidate;
    if (UtilResolveLUTConflicts(&m_pIn->range, &m_pIn->sensorRange, &resolved, &rLUT.conflictHandling) == 0)
    {
        *pCandidate = resolved;
    }
    else
    {
        UtilTryATBPeriod(period, pCandidate);
    }
}

VOID CKIROArbitration::UtilTryATBPeriod(UINT64 period, KIROExposureSetType* pCandidate) const
{
    const KIROExposureSetType before   = *pCandidate;
    const UINT64              count    = before.time / period;
    const bool                isBelow  = CurrentExposure().time < before.time && count != 1;
    const UINT64              newCount = isBelow ? count - 1 : count + 1;

    pCandidate->time = newCount * period;
    pCandidate->gain = GainForTime(pCandidate->exposure, pCandidate->time, pCandidate->corr);
    STATS_LOG_TRACE("in period count %d time %llu gain %.3f out period count %d time %llu gain %.3f",
                    static_cast<INT32>(count), before.time, before.gain, static_cast<INT32>(newCount), pCandidate->time,
                    pCandidate->gain);
}

KiroResult CKIROArbitration::FinishLUTOutput(const LUTType& rLUT, KIROExposureSetType* pCandidate) const
{
    if (m_pIn->bIsConvRange != TRUE)
    {
        const KiroResult result =
            UtilResolveLUTConflicts(&m_pIn->range, &m_pIn->sensorRange, pCandidate, &rLUT.conflictHandling);
        if (result != 0)
        {
            return result;
        }
    }
    const ApplyConditionType condition = rLUT.conflictHandling.applyCondition;
    const bool               isLarger  = (rLUT.outType == ArbLutOutGain) ? pCandidate->gain > CurrentExposure().gain
                                                                         : pCandidate->time > CurrentExposure().time;
    if (!isLarger && condition == ApplyIfLargerThanCurrent)
    {
        STATS_LOG_TRACE("LUT does not apply: new quantity is smaller; gain %.3f time %llu", pCandidate->gain,
                        pCandidate->time);
        return ResultFailed;
    }
    if (isLarger && condition == ApplyIfSmallerThanCurrent)
    {
        STATS_LOG_TRACE("LUT does not apply: new quantity is larger gain %.3f time %llu", pCandidate->gain,
                        pCandidate->time);
        return ResultFailed;
    }
    return 0;
}
