// Keeping the gain and time of a reference frame as far as a snapshot's exposure allows.

#include <array>
#include <optional>

#include "core/arbitration/arbitrationutils.h"
#include "core/arbitration/ckiromodarbitration.h"
#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "interface/kiroresults.h"

using namespace kiroarbitration;
using kirodbarbitrationtable::AECExpIncGain;
using kirodbarbitrationtable::AECExpIncTime;
using kirodbarbitrationtable::ExposureIncPrioType;
using kirodbarbitrationtable::ExposureKneeType;

namespace
{

/// A table of two knees.
using KneePair = std::array<ExposureKneeType, 2>;

const ArbitrationReferenceType* FindReference(const KIROArbitrationType* pTuning, INT32 dataID)
{
    for (UINT32 index = 0; pTuning != nullptr && index < pTuning->referenceArrayCount; ++index)
    {
        if (pTuning->referenceArray[index].dataID == dataID)
        {
            return &pTuning->referenceArray[index];
        }
    }
    return nullptr;
}

AECAlgoExposureType ReferenceExposureType(KIROExposureSelection selection)
{
    return exposurearithmetic::ExposureTypeOfSelection(selection, AECAlgoExposureLong);
}

DOUBLE ProductOf(const ExposureKneeType& rKnee)
{
    return static_cast<DOUBLE>(rKnee.gain) * static_cast<DOUBLE>(rKnee.time);
}

/// @param first what grows first on the way up to an end above the reference
/// @return the knees between which the target lies, lower one first; none, with a log, for a target beyond the end
std::optional<KneePair> KneesTowards(DOUBLE targetExposure, const ExposureKneeType& rReference,
                                     const ExposureKneeType& rEnd, ExposureIncPrioType first)
{
    const DOUBLE referenceExposure = ProductOf(rReference);
    const DOUBLE endExposure       = ProductOf(rEnd);
    KneePair     knees             = {rReference, rEnd};
    if (referenceExposure < targetExposure)
    {
        if (targetExposure > endExposure * exposurearithmetic::SameRatioHigh)
        {
            STATS_LOG_ERROR("error: ref exposure %.0f target exposure %.0f exceeds end exposure %.0f end gain %f end "
                            "time %llu",
                            referenceExposure, targetExposure, endExposure, rEnd.gain, rEnd.time);
            return std::nullopt;
        }
        STATS_LOG_TRACE("increase start gain %.3f time %llu end %.3f time %llu", knees[0].gain, knees[0].time,
                        knees[1].gain, knees[1].time);
    }
    else
    {
        if (targetExposure < endExposure * exposurearithmetic::SameRatioLow)
        {
            STATS_LOG_ERROR("error: ref exposure %.0f target exposure %.0f smaller than end exposure %.0f end gain %f "
                            "end time %llu",
                            referenceExposure, targetExposure, endExposure, rEnd.gain, rEnd.time);
            return std::nullopt;
        }
        // Going down undoes first what going up would raise first.
        knees = {rEnd, rReference};
        first = (first != AECExpIncGain) ? AECExpIncGain : AECExpIncTime;
        STATS_LOG_TRACE("decrease start gain %.3f time %llu end %.3f time %llu", knees[0].gain, knees[0].time,
                        knees[1].gain, knees[1].time);
    }
    knees[0].incrementPriority = first;
    knees[1].incrementPriority = first;
    return knees;
}

}  // namespace

KiroResult CKIROArbitration::MatchControlHistory(KIROExposureSetType* pOutExposure)
{
    const ArbitrationReferenceType* pReference =
        FindReference(tuningaccess::Get_kiroarbitration(*m_pTuningData), m_pIn->controlDataID);
    if (pReference == nullptr)
    {
        return ResultNotFound;
    }
    KiroResult result = CheckBracketing(*pReference);
    if (result != 0)
    {
        return result;
    }
    STATS_LOG_TRACE("using reference %s", TextOrEmpty(pReference->description));

    ExposureKneeType refKnee{};
    result = FindReferenceKnee(pReference->referenceSource, &refKnee);
    if (result != 0)
    {
        return result;
    }
    ExposureKneeType endKnee{};
    result = FindEndKnee(pReference->endSettings, &endKnee);
    if (result != 0)
    {
        return result;
    }

    const KIROExposureSetType& rCurrent = CurrentExposure();
    if (exposurearithmetic::IsSameExposure(exposurearithmetic::SaturateToUINT64(ProductOf(refKnee)), rCurrent.exposure))
    {
        pOutExposure->time     = refKnee.time;
        pOutExposure->gain     = refKnee.gain;
        pOutExposure->corr     = rCurrent.corr;
        pOutExposure->exposure = exposurearithmetic::UtilQuantities2Exposure(refKnee.gain, refKnee.time, rCurrent.corr);
        return 0;
    }
    std::optional<KneePair> knees = KneesTowards(static_cast<DOUBLE>(rCurrent.exposure), refKnee, endKnee,
                                                 pReference->endSettings.quantityToModifyFirst);
    if (!knees)
    {
        return 0;
    }
    ExposureTableType table{};
    table.correction    = rCurrent.corr;
    table.expKneesCount = static_cast<UINT32>(knees->size());
    table.expKnees      = knees->data();
    result              = ApplyCoreTable(pOutExposure, table, rCurrent.exposure);
    return result | UtilMakeTableExposureFit(pOutExposure, &m_pIn->range);
}

KiroResult CKIROArbitration::CheckBracketing(const ArbitrationReferenceType& rReference) const
{
    if (rReference.bEnableOnlyForBracketedSnapshot != TRUE)
    {
        return 0;
    }
    if (m_rContextManager.GetContextEvent(AECEVBracketing) != TRUE)
    {
        STATS_LOG_TRACE("not applying: not bracketing");
        return ResultNotApplicable;
    }
    const FLOAT ev = m_rContextManager.m_pBankManager->GetDataTriggers(TriggerCtrlBracketEV)->value;
    return UtilMatchEV(exposurearithmetic::SaturateToINT32(ev), rReference.bracketedEVType);
}

KiroResult CKIROArbitration::FindReferenceKnee(const ReferenceSourceType& rSource, ExposureKneeType* pKnee) const
{
    if (rSource.bUseStaticTuning == TRUE)
    {
        pKnee->gain = rSource.staticTuningGain;
        pKnee->time = rSource.staticTuningTime;
        return 0;
    }

    const AECFrameHistory* pFrame = nullptr;
    switch (rSource.frameSelection.frameType)
    {
    case TypeSnapshot:
        pFrame = m_rContextManager.m_pHistory->GetSnapshotFrameHistory(&rSource.frameSelection.snapshot);
        break;
    case TypePreview:
        pFrame = FindPreviewFrame(rSource.frameSelection.preview);
        break;
    default:
        STATS_LOG_ERROR("error: unknown frameType %d", rSource.frameSelection.frameType);
        return ResultNotFound;
    }
    if (pFrame == nullptr)
    {
        STATS_LOG_ERROR("reference not found");
        return ResultFailed;
    }
    const KIROExposureSetType& rSet = pFrame->exposureSets[ReferenceExposureType(rSource.frameExposureTypeSelection)];
    pKnee->gain                     = rSet.gain;
    pKnee->time                     = rSet.time;
    STATS_LOG_TRACE("found frame gain %.3f time %llu", pKnee->gain, pKnee->time);
    return 0;
}

const AECFrameHistory* CKIROArbitration::FindPreviewFrame(const PreviewFrameSelectionType& rSelection) const
{
    CKIROHistory& rHistory = *m_rContextManager.m_pHistory;
    switch (rSelection.searchMethod)
    {
    case PreviewSearchMethod::SearchLastNonSnapshotRequest:
        return rHistory.FindPreviewFrame(rHistory.GetFrameCount());
    case PreviewSearchMethod::SearchOffset:
        return rHistory.GetFrameHistory(static_cast<UINT8>(rSelection.value));
    default:
        STATS_LOG_ERROR("unexpected preview search method %d", static_cast<INT32>(rSelection.searchMethod));
        return nullptr;
    }
}

KiroResult CKIROArbitration::FindEndKnee(const ArbitrationEndType& rEnd, ExposureKneeType* pKnee) const
{
    switch (rEnd.endSelection)
    {
    case EndFirstTableKneePoint:
    case EndLastTableKneePoint:
    {
        const auto* pPayload = m_rContextManager.m_pBankManager->GetDataArbitrationTable(rEnd.tableID);
        if (pPayload == nullptr || pPayload->value.expKneesCount == 0)
        {
            return ResultFailed;
        }
        const UINT32 index = (rEnd.endSelection == EndFirstTableKneePoint) ? 0 : pPayload->value.expKneesCount - 1;
        *pKnee             = pPayload->value.expKnees[index];
        return 0;
    }
    case EndManualSettings:
        pKnee->gain = rEnd.manualGain;
        pKnee->time = rEnd.manualTime;
        return 0;
    default:
        STATS_LOG_ERROR("could not determine end selection type %d", rEnd.endSelection);
        return ResultFailed;
    }
}
