// Exposure tables: one exposure number into gain and time along tuned knees.

#include <algorithm>

#include "core/arbitration/arbitrationutils.h"
#include "core/arbitration/ckiromodarbitration.h"
#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "interface/kiroresults.h"

using exposurearithmetic::SaturateToUINT64;
using namespace kirodbarbitrationtable;

namespace
{

/// A multiplier above this is distributed. Time-first segments test their rest against 1.0 instead.
constexpr FLOAT MultiplierAboveOne = 1.0000001f;

UINT64 ExposureOfKnee(const ExposureKneeType& rKnee, FLOAT correction)
{
    return exposurearithmetic::UtilQuantities2Exposure(rKnee.gain, rKnee.time, correction);
}

ExposureKneeType KneeOf(const KIROExposureSetType& rBound)
{
    return {AECExpIncMax, rBound.gain, rBound.time};
}

}  // namespace

/// The piece of a table, or between the table and the range, on which an exposure lies.
struct CKIROArbitration::TableSegment
{
    ExposureKneeType    start;
    ExposureKneeType    end;
    ExposureIncPrioType priority;
    UINT64              target;  ///< the exposure to reach
};

KiroResult CKIROArbitration::ApplyCoreTable(KIROExposureSetType* pOutExposure, ExposureTableType* pTableIn,
                                            UINT64 exposureIn)
{
    const bool         bIsCalledInternally = pTableIn != nullptr;
    ExposureTableType* pTable              = pTableIn;
    UINT64             exposure            = exposureIn;
    if (!bIsCalledInternally)
    {
        if (m_pIn->controlID == kirodbarbitrationorder::ArbCtrlMatchHistory)
        {
            return MatchControlHistory(pOutExposure);
        }
        DBArbitrationTablePayload* pPayload =
            m_rContextManager.m_pBankManager->GetDataArbitrationTable(m_pIn->controlDataID);
        if (pPayload == nullptr)
        {
            STATS_LOG_ERROR("table not found");
            return ResultFailed;
        }
        STATS_LOG_TRACE("Apply %s", TextOrEmpty(pPayload->description));
        pTable   = &pPayload->value;
        exposure = CurrentExposure().exposure;
    }
    if (pTable->expKneesCount < 2)
    {
        STATS_LOG_ERROR("invalid exposure table tuning");
        return ResultFailed;
    }
    if (!bIsCalledInternally)
    {
        m_pIn->pTable = pTable;
    }

    KIROExposureSetType split  = SplitAlongSegment(SelectSegment(*pTable, exposure), pTable->correction);
    KiroResult          result = 0;
    if (!bIsCalledInternally)
    {
        result = UtilMakeTableExposureFit(&split, &m_pIn->range);
    }
    if (result == 0)
    {
        *pOutExposure = split;
    }
    return result;
}

CKIROArbitration::TableSegment CKIROArbitration::SelectSegment(const ExposureTableType& rTable, UINT64 exposure) const
{
    const ExposureKneeType& rFirst = rTable.expKnees[0];
    const ExposureKneeType& rLast  = rTable.expKnees[rTable.expKneesCount - 1];

    if (exposure < ExposureOfKnee(rFirst, rTable.correction))
    {
        const ExposureKneeType rangeStart = KneeOf(m_pIn->range.start);
        const UINT64           rangeMin   = ExposureOfKnee(rangeStart, rTable.correction);
        if (rangeMin > exposure && m_pIn->bIsConvRange != TRUE &&
            !exposurearithmetic::IsSameExposure(rangeMin, exposure))
        {
            STATS_LOG_RARE("exposure %llu out of both table min exposure and current min exposure %llu", exposure,
                           rangeMin);
        }
        return {rangeStart, rFirst, rFirst.incrementPriority, std::max(rangeMin, exposure)};
    }
    if (exposure > ExposureOfKnee(rLast, rTable.correction))
    {
        const ExposureKneeType rangeEnd = KneeOf(m_pIn->range.end);
        const UINT64           rangeMax = ExposureOfKnee(rangeEnd, rTable.correction);
        if (exposure > rangeMax && m_pIn->bIsConvRange != TRUE &&
            !exposurearithmetic::IsSameExposure(rangeMax, exposure))
        {
            STATS_LOG_RARE("exposure %llu out of both table max exposure and current max exposure %llu", exposure,
                           rangeMax);
        }
        return {rLast, rangeEnd, rLast.incrementPriority, std::min(rangeMax, exposure)};
    }

    UINT32 upper = 1;
    while (upper < rTable.expKneesCount - 1 && ExposureOfKnee(rTable.expKnees[upper], rTable.correction) < exposure)
    {
        ++upper;
    }
    return {rTable.expKnees[upper - 1], rTable.expKnees[upper], rTable.expKnees[upper].incrementPriority, exposure};
}

KIROExposureSetType CKIROArbitration::SplitAlongSegment(const TableSegment& rSegment, FLOAT correction) const
{
    const ExposureKneeType& rStart    = rSegment.start;
    const ExposureKneeType& rEnd      = rSegment.end;
    const UINT64            base      = ExposureOfKnee(rStart, correction);
    const FLOAT             expMult   = static_cast<FLOAT>(rSegment.target) / static_cast<FLOAT>(base);
    const FLOAT             gainRatio = rEnd.gain / rStart.gain;
    const FLOAT             startTime = static_cast<FLOAT>(rStart.time);
    const FLOAT             timeRatio = static_cast<FLOAT>(rEnd.time) / startTime;

    KIROExposureSetType split{};
    split.gain = rStart.gain;
    split.time = rStart.time;
    if (expMult > MultiplierAboveOne && rSegment.priority == AECExpIncGain)
    {
        if (gainRatio < expMult)
        {
            const FLOAT rest = expMult / gainRatio;
            split.gain       = rStart.gain * gainRatio;
            if (rest > MultiplierAboveOne)
            {
                split.time = SaturateToUINT64(startTime * std::min(rest, timeRatio));
            }
        }
        else
        {
            split.gain = rStart.gain * expMult;
        }
    }
    else if (expMult > MultiplierAboveOne)
    {
        if (timeRatio < expMult)
        {
            const FLOAT rest = expMult / timeRatio;
            split.time       = SaturateToUINT64(startTime * timeRatio);
            if (rest > 1.0f)
            {
                split.gain = rStart.gain * std::min(rest, gainRatio);
            }
        }
        else
        {
            split.time = SaturateToUINT64(startTime * expMult);
        }
    }

    split.corr     = correction;
    split.exposure = exposurearithmetic::UtilQuantities2Exposure(split.gain, split.time, split.corr);
    exposurearithmetic::SetIndexByFloatRatio(&split, m_pIn->indexZeroExposure);
    return split;
}
