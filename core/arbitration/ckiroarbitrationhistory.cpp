// Keeping the gain and time of a reference frame as far as a snapshot's exposure allows.

#include "core/arbitration/arbitrationutils.h"
#include "core/arbitration/ckiromodarbitration.h"
#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "interface/kiroresults.h"

using namespace kiroarbitration;
using kirodbarbitrationtable::AECExpIncGain;
using kirodbarbitrationtable::AECExpIncTime;

namespace
{

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
    const DOUBLE referenceExposure      = static_cast<DOUBLE>(refKnee.gain) * static_cast<DOUBLE>(refKnee.time);
    const DOUBLE endExposure            = static_cast<DOUBLE>(endKnee.gain) * static_cast<DOUBLE>(endKnee.time);
    const DOUBLE targetExposure         = static_cast<DOUBLE>(rCurrent.exposure);
    if (exposurearithmetic::IsSameExposure(exposurearithmetic::SaturateToUINT64(referenceExposure), rCurrent.exposure))
    {
        pOutExposure->time     = refKnee.time;
        pOutExposure->gain     = refKnee.gain;
        pOutExposure->corr     = rCurrent.corr;
        pOutExposure->exposure = exposurearithmetic::UtilQuantities2Exposure(refKnee.gain, refKnee.time, rCurrent.corr);
        return 0;
    }

    ExposureKneeType  knees[2];
    ExposureTableType table{};
    table.correction    = rCurrent.corr;
    table.expKneesCount = 2;
    table.expKnees      = knees;
    if (referenceExposure < targetExposure)
    {
        if (targetExposure > endExposure * exposurearithmetic::SameRatioHigh)
        {
            STATS_LOG_ERROR("error: ref exposure %.0f target exposure %.0f exceeds end exposure %.0f end gain %f end "
                            "time %llu",
                            referenceExposure, targetExposure, endExposure, endKnee.gain, endKnee.time);
            return 0;
        }
        knees[0]                   = refKnee;
        knees[1]                   = endKnee;
        knees[0].incrementPriority = pReference->endSettings.quantityToModifyFirst;
        STATS_LOG_TRACE("increase start gain %.3f time %llu end %.3f time %llu", knees[0].gain, knees[0].time,
                        knees[1].gain, knees[1].time);
    }
    else
    {
        if (targetExposure < endExposure * exposurearithmetic::SameRatioLow)
        {
            STATS_LOG_ERROR("error: ref exposure %.0f target exposure %.0f smaller than end exposure %.0f end gain %f "
                            "end time %llu",
                            referenceExposure, targetExposure, endExposure, endKnee.gain, endKnee.time);
            return 0;
        }
        // Going down undoes first what going up would raise first.
        knees[0] = endKnee;
        knees[1] = refKnee;
        knees[0].incrementPriority =
            (pReference->endSettings.quantityToModifyFirst != AECExpIncGain) ? AECExpIncGain : AECExpIncTime;
        STATS_LOG_TRACE("decrease start gain %.3f time %llu end %.3f time %llu", knees[0].gain, knees[0].time,
                        knees[1].gain, knees[1].time);
    }
    knees[1].incrementPriority = knees[0].incrementPriority;

    result = ApplyCoreTable(pOutExposure, &table, rCurrent.exposure);
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
    switch (rSelection.searchMethod)
    {
    case PreviewSearchMethod::SearchLastNonSnapshotRequest:
        return FindLastNonSnapshotFrame();
    case PreviewSearchMethod::SearchOffset:
        return m_rContextManager.m_pHistory->GetFrameHistory(static_cast<UINT8>(rSelection.value));
    default:
        STATS_LOG_ERROR("unexpected preview search method %d", static_cast<INT32>(rSelection.searchMethod));
        return nullptr;
    }
}

const AECFrameHistory* CKIROArbitration::FindLastNonSnapshotFrame() const
{
    CKIROHistory& rHistory   = *m_rContextManager.m_pHistory;
    const UINT32  frameCount = rHistory.GetFrameCount();
    if (frameCount < 2)
    {
        return nullptr;
    }
    const AECFrameHistory* pCandidate   = nullptr;
    bool                   isFirstFound = false;
    for (UINT32 offset = 1; offset < frameCount; ++offset)
    {
        const AECFrameHistory* pFrame = rHistory.GetFrameHistory(static_cast<UINT8>(offset));
        if (pFrame == nullptr)
        {
            break;
        }
        if (pFrame->bIsSnapshot == FALSE)
        {
            return pFrame;
        }
        if (!isFirstFound)
        {
            isFirstFound = true;
            pCandidate   = rHistory.GetPreviewBackup();
        }
    }
    return pCandidate;
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
