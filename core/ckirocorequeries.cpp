// Typed queries of the host.

#include <algorithm>
#include <cstring>

#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/ckirocore.h"
#include "core/extension/ckirocamsync.h"
#include "interface/aecalgogetparam.h"
#include "interface/ckiroctrlcorecommon.h"
#include "interface/kiroresults.h"
#include "schema/kiroev.h"

namespace
{

/// @return the first output of the type with room for size bytes, null if there is none
AECAlgoGetParamOutput* FindOutput(const AECAlgoGetParam& rQuery, AECAlgoGetParamOutputType type, size_t size)
{
    const AECAlgoGetParamOutputList& rList = rQuery.outputList;
    for (UINT32 index = 0; rList.pAECOutputList != nullptr && index < rList.numberOfAECOutputs; ++index)
    {
        AECAlgoGetParamOutput& rOutput = rList.pAECOutputList[index];
        if (rOutput.outputType == type && rOutput.sizeOfOutputData >= size && rOutput.pOutputData != nullptr)
        {
            return &rOutput;
        }
    }
    return nullptr;
}

/// @return the first input that has room for a snapshot's configuration, null if there is none
const AECAlgoGetParamInput* FindSnapshotInput(const AECAlgoGetParam& rQuery)
{
    const AECAlgoGetParamInputList& rList = rQuery.inputList;
    for (UINT32 index = 0; rList.pAECGetParamList != nullptr && index < rList.numberOfAECGetInputParams; ++index)
    {
        const AECAlgoGetParamInput& rInput = rList.pAECGetParamList[index];
        if (rInput.inputType == AECAlgoGetParamInputSnapshotType &&
            rInput.sizeOfInputData >= sizeof(AECAlgoSnapshotConfig))
        {
            return &rInput;
        }
    }
    return nullptr;
}

template <typename T>
VOID TakeOutput(const AECAlgoGetParam& rQuery, AECAlgoGetParamOutputType type, T*& rpData, UINT32*& rpWritten)
{
    AECAlgoGetParamOutput* pOutput = FindOutput(rQuery, type, sizeof(T));
    rpData                         = (pOutput != nullptr) ? static_cast<T*>(pOutput->pOutputData) : nullptr;
    rpWritten                      = (pOutput != nullptr) ? &pOutput->sizeOfWrittenOutputData : nullptr;
}

VOID ClearOutput(const KIROAlgoParsedGetExposureOutput& rOutput)
{
    *rOutput.pFrameControl = {};
    std::fill_n(rOutput.pExposureSet->pExposureInfo, rOutput.pExposureSet->exposureInfoCount, AECAlgoExposureInfo{});
    rOutput.pLEDs->LED1Current = 0;  // the second current keeps what the host put there
    *rOutput.pAPEX             = {};
    *rOutput.pAdditonalInfo    = {};

    *rOutput.pFrameControlWrittenData  = 0;
    *rOutput.pExposureSetWrittenData   = 0;
    *rOutput.pLEDsWrittenData          = 0;
    *rOutput.pAPEXWrittenData          = 0;
    *rOutput.pAdditonalInfoWrittenData = 0;
}

}  // namespace

KiroResult CKIROCtrlCoreCommon::UtilGetParamExposureOutput(const AECAlgoGetParam&           rQuery,
                                                           KIROAlgoParsedGetExposureOutput& rOutput)
{
    constexpr UINT32 exposureCountMin = 3;

    TakeOutput(rQuery, AECAlgoGetParamOutputFrameControl, rOutput.pFrameControl, rOutput.pFrameControlWrittenData);
    TakeOutput(rQuery, AECAlgoGetParamOutputExposureSets, rOutput.pExposureSet, rOutput.pExposureSetWrittenData);
    TakeOutput(rQuery, AECAlgoGetParamOutputLEDCurrents, rOutput.pLEDs, rOutput.pLEDsWrittenData);
    TakeOutput(rQuery, AECAlgoGetParamOutputEXIFApex, rOutput.pAPEX, rOutput.pAPEXWrittenData);
    TakeOutput(rQuery, AECAlgoGetParamOutputAdditionalInfo, rOutput.pAdditonalInfo, rOutput.pAdditonalInfoWrittenData);

    const AECAlgoExposureSet* pSet = rOutput.pExposureSet;
    if (pSet != nullptr && (pSet->pExposureInfo == nullptr || pSet->exposureInfoCount < exposureCountMin ||
                            pSet->exposureInfoSize < sizeof(AECAlgoExposureData)))
    {
        rOutput.pExposureSet = nullptr;
    }
    if (rOutput.pFrameControl == nullptr || rOutput.pExposureSet == nullptr || rOutput.pLEDs == nullptr ||
        rOutput.pAPEX == nullptr || rOutput.pAdditonalInfo == nullptr)
    {
        STATS_LOG_ERROR("Invalid param %p %p %p %p %p", static_cast<VOID*>(rOutput.pFrameControl),
                        static_cast<VOID*>(rOutput.pExposureSet), static_cast<VOID*>(rOutput.pLEDs),
                        static_cast<VOID*>(rOutput.pAPEX), static_cast<VOID*>(rOutput.pAdditonalInfo));
        return ResultInvalidArgument;
    }
    return 0;
}

KiroResult CKIROCore::queryMetaData(AECAlgoGetParam* pGetParam)
{
    if (pGetParam == nullptr)
    {
        return ResultInvalidArgument;
    }
    if (pGetParam->outputList.numberOfAECOutputs == 0)
    {
        STATS_LOG_ERROR("empty output");
        return ResultInvalidArgument;
    }
    switch (pGetParam->type)
    {
    case AECAlgoGetParamEVCapabilities:
        return QueryEVCapabilities(*pGetParam);
    case AECAlgoGetParamPeerInfo:
        return QueryPeerInfo(*pGetParam);
    case AECAlgoGetParamSnapshotExposure:
        return QuerySnapshot(*pGetParam);
    default:
        STATS_LOG_ERROR("Query not supported yet for type: %d!", pGetParam->type);
        return ResultUnsupportedQuery;
    }
}

KiroResult CKIROCore::QueryEVCapabilities(const AECAlgoGetParam& rGetParam)
{
    AECAlgoGetParamOutput* pOutput =
        FindOutput(rGetParam, AECAlgoGetParamOutputEVCapabilities, sizeof(AECAlgoEVCapabilities));
    if (pOutput == nullptr)
    {
        return ResultInvalidArgument;
    }
    const auto& rTuning       = tuningaccess::Require_kiroev(*m_contManager.GetTuningData()).EVCoreData;
    auto&       rCapabilities = *static_cast<AECAlgoEVCapabilities*>(pOutput->pOutputData);
    rCapabilities.minEV       = static_cast<signed char>(rTuning.minEVValue);
    rCapabilities.maxEV       = static_cast<signed char>(rTuning.maxEVValue);
    rCapabilities.stepsPerEV  = static_cast<signed char>(rTuning.stepsPerEV);

    pOutput->sizeOfWrittenOutputData = sizeof(AECAlgoEVCapabilities);
    return 0;
}

/// A query without a fitting output succeeds and writes nothing.
KiroResult CKIROCore::QueryPeerInfo(const AECAlgoGetParam& rGetParam)
{
    const VOID*            pInfo   = *m_contManager.m_pCamSync->getMyOwnInfoPtrAddr();
    AECAlgoGetParamOutput* pOutput = FindOutput(rGetParam, AECAlgoGetParamOutputPeerInfo, sizeof(pInfo));
    if (pOutput != nullptr)
    {
        std::memcpy(pOutput->pOutputData, &pInfo, sizeof(pInfo));
        pOutput->sizeOfWrittenOutputData = sizeof(pInfo);
    }
    STATS_LOG_TRACE("PeerInfo: %p", pInfo);
    return 0;
}

KiroResult CKIROCore::QuerySnapshot(const AECAlgoGetParam& rGetParam)
{
    constexpr UINT32 outputCount = 5;
    constexpr UINT32 ISOAtUnity  = 100;

    const AECAlgoGetParamInput* pInput = FindSnapshotInput(rGetParam);
    if (rGetParam.outputList.numberOfAECOutputs != outputCount)
    {
        STATS_LOG_ERROR("warning: output count: expected %d received %d needs to be addressed", outputCount,
                        rGetParam.outputList.numberOfAECOutputs);
    }
    KIROAlgoParsedGetExposureOutput output{};
    const KiroResult                result = CKIROCtrlCoreCommon::UtilGetParamExposureOutput(rGetParam, output);
    if (result != 0)
    {
        return result;
    }
    ClearOutput(output);
    if (pInput == nullptr)
    {
        return 0;
    }
    QuerySnapshotExposure(static_cast<const AECAlgoSnapshotConfig*>(pInput->pInputData), &output);
    AECAlgoFrameControl& rControl     = *output.pFrameControl;
    rControl.luxIndex                 = 0.0f;
    rControl.ISOValue                 = ISOAtUnity;
    rControl.predictiveGain           = 1.0f;
    rControl.digitalGainForSimulation = 1.0f;
    m_pExtension->GetFlagsMonitor().GetHistStretchData(&rControl.stretchControl);
    return 0;
}

/// Computes nothing: hosts take snapshot exposures from frames and read the cleared records as "nothing to add".
VOID CKIROCore::QuerySnapshotExposure(const AECAlgoSnapshotConfig*, KIROAlgoParsedGetExposureOutput*)
{
}
