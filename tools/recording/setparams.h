/// @file
/// What the settings of setInput point to, by their type.
#pragma once

#include <algorithm>

#include "interface/kirofic.h"
#include "tools/recording/pointers.h"

namespace recording
{

// Fields are written one by one: whoever adds one finds out here.
static_assert(sizeof(AECAlgoSetParam) == 16 && sizeof(KIROCoreSetParam) == 16 && sizeof(StatsTuningData) == 24 &&
                  sizeof(AECAlgoFlashCalibrationData) == 24 && sizeof(AECAlgoROIList) == 16,
              "a field is not recorded");

/// A single number where a record is asked for.
struct RecordedNumber
{
    INT32 value;
};
TUNING_RECORD(RecordedNumber)
    MEMBER(value)
TUNING_RECORD_END

/// The same, of one byte.
struct RecordedByte
{
    UINT8 value;
};
TUNING_RECORD(RecordedByte)
    MEMBER(value)
TUNING_RECORD_END

/// How a setting of a type is laid out.
struct SetParamRule
{
    AECAlgoSetParamType              type;
    UINT32                           leastSize;  ///< below it the core refuses without reading
    const tuning::RecordDescription* pRecord;    ///< null for the settings that hold addresses
};

/// @return null for a type that the core does not read
const SetParamRule* RuleOf(AECAlgoSetParamType type);

/// Regions of a list that are kept.
constexpr UINT32 TouchROICountMax = 64;

/// Bytes of what an earlier session has learned of the flash, by its own counts; the head alone if it holds nothing, or
/// more than the core takes.
UINT64 LearnedSize(const BYTE* pHead);

constexpr UINT64 LearnedHeadSize = sizeof(KIROFICBlobHead);

/// Ratios that are refused for their number are not read.
template <typename A> VOID FlashCalibration(A& rFields, AECAlgoFlashCalibrationData& rCalibration)
{
    rFields.Value("count", rCalibration.count);
    const UINT32 count = (rCalibration.count <= AECAlgoFlashCalibrationCountMax) ? rCalibration.count : 0;
    rFields.Array("pRGRatios", rCalibration.pRGRatios, count);
    rFields.Array("pBGRatios", rCalibration.pBGRatios, count);
}

template <typename A> VOID TouchList(A& rInputs, AECAlgoROIList& rList)
{
    rInputs.Value("ROICount", rList.ROICount);
    rInputs.Array("ROIs", rList.ROIs, std::min(rList.ROICount, TouchROICountMax));
}

template <typename A> VOID PeerInfo(A& rInputs, StatsPeerInfoCombo& rPeers)
{
    rInputs.Record("peers", rPeers);
    rInputs.ForgetHostRecords(HostRecordKind::PeerInfo);
    for (UINT32 peer = 0; peer < StatsPeerCountMax; ++peer)
    {
        // The core takes up no other one: its record may be gone.
        if (rPeers.needSync == TRUE && rPeers.isActive[peer] == TRUE)
        {
            rInputs.OwnOrHostRecord(HostRecordKind::PeerInfo, rPeers.peerInfo[peer]);
        }
    }
}

template <typename A> VOID LearnedColour(A& rInputs, VOID*& rpBytes)
{
    BYTE* pHead = static_cast<BYTE*>(rpBytes);
    rInputs.Array("head", pHead, LearnedHeadSize);
    if (pHead == nullptr)
    {
        throw MalformedError("what was learned of the flash is missing");
    }
    const UINT64 rest  = LearnedSize(pHead) - LearnedHeadSize;
    BYTE*        pRest = A::IsReading ? nullptr : pHead + LearnedHeadSize;
    rInputs.Array("learned", pRest, rest);
    if constexpr (A::IsReading)
    {
        auto* pBytes = static_cast<BYTE*>(rInputs.Memory().Make(LearnedHeadSize + rest));
        std::copy_n(pHead, LearnedHeadSize, pBytes);
        std::copy_n(pRest, (pRest != nullptr) ? rest : 0, pBytes + LearnedHeadSize);
        rpBytes = pBytes;
    }
}

/// Records with addresses.
template <typename A> VOID AddressedParam(A& rInputs, AECAlgoSetParam& rParam)
{
    switch (rParam.setParamType)
    {
    case AECAlgoSetParamTunaraData:
        rInputs.TuningData(*static_cast<StatsTuningData*>(rParam.pAECSetParam));
        break;
    case AECAlgoSetParamTouchROI:
        TouchList(rInputs, *static_cast<AECAlgoROIList*>(rParam.pAECSetParam));
        break;
    case AECAlgoSetParamFlashCalibrationData:
        FlashCalibration(rInputs, *static_cast<AECAlgoFlashCalibrationData*>(rParam.pAECSetParam));
        break;
    case AECAlgoSetParamPeerInfo:
        PeerInfo(rInputs, *static_cast<StatsPeerInfoCombo*>(rParam.pAECSetParam));
        break;
    case AECAlgoSetParamFlashInlineCalibrationData:
        LearnedColour(rInputs, rParam.pAECSetParam);
        break;
    default:
        throw MalformedError("a setting with addresses is not described");
    }
}

template <typename A> VOID SetParam(A& rInputs, AECAlgoSetParam& rParam)
{
    rInputs.Value("setParamType", rParam.setParamType);
    rInputs.Value("sizeOfAECSetParam", rParam.sizeOfAECSetParam);
    const SetParamRule* pRule = RuleOf(rParam.setParamType);
    if (!Blank(rInputs, "pAECSetParam", rParam.pAECSetParam) || pRule == nullptr ||
        rParam.sizeOfAECSetParam < pRule->leastSize)
    {
        return;
    }
    if constexpr (A::IsReading)
    {
        rParam.pAECSetParam =
            rInputs.Memory().Make((pRule->pRecord != nullptr) ? pRule->pRecord->size : pRule->leastSize);
    }
    if (pRule->pRecord == nullptr)
    {
        AddressedParam(rInputs, rParam);
        return;
    }
    if constexpr (A::IsReading)
    {
        rInputs.Members(*pRule->pRecord, rParam.pAECSetParam);
    }
    else
    {
        rInputs.Record("setting", *pRule->pRecord, rParam.pAECSetParam);
    }
}

template <typename A> VOID InternalParam(A& rInputs, KIROCoreSetParam& rParam)
{
    rInputs.Value("setParamType", rParam.setParamType);
    rInputs.Value("sizeOfParam", rParam.sizeOfParam);
    if (rParam.setParamType == KIROCorePrecisionFlashHistory)
    {
        rInputs.ForgetHostRecords(HostRecordKind::PrecisionFlashHistory);
        rInputs.OwnOrHostRecord(HostRecordKind::PrecisionFlashHistory, rParam.pSetParam);
    }
}

}  // namespace recording
