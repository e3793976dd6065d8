#include "host/queries.h"

namespace
{

template <typename T> AECAlgoGetParamOutput Output(AECAlgoGetParamOutputType type, T& rData)
{
    return {&rData, sizeof(rData), 0, type};
}

KiroResult Ask(IKIROCoreAlgo* pAlgo, AECAlgoGetParamType type, AECAlgoGetParamInputList inputs,
               AECAlgoGetParamOutput* pOutputs, size_t outputCount)
{
    AECAlgoGetParam query = {type, inputs, {pOutputs, static_cast<UINT32>(outputCount)}};
    return pAlgo->queryMetaData(pAlgo, &query);
}

}  // namespace

std::optional<AECAlgoEVCapabilities> QueryEVCapabilities(IKIROCoreAlgo* pAlgo)
{
    AECAlgoEVCapabilities capabilities{};
    AECAlgoGetParamOutput output = Output(AECAlgoGetParamOutputEVCapabilities, capabilities);
    const KiroResult      result = Ask(pAlgo, AECAlgoGetParamEVCapabilities, {}, &output, 1);
    return (result == 0) ? std::optional<AECAlgoEVCapabilities>(capabilities) : std::nullopt;
}

const AECMultiCamInfo* QueryPeerInfo(IKIROCoreAlgo* pAlgo)
{
    const AECMultiCamInfo* pInfo  = nullptr;
    AECAlgoGetParamOutput  output = Output(AECAlgoGetParamOutputPeerInfo, pInfo);
    (VOID) Ask(pAlgo, AECAlgoGetParamPeerInfo, {}, &output, 1);
    return pInfo;
}

SnapshotAnswer QuerySnapshotExposure(IKIROCoreAlgo* pAlgo, KIROCoreSnapshotType type)
{
    SnapshotAnswer answer;
    answer.exposures.resize(AECAlgoExposureCount);
    AECAlgoExposureSet set{};
    set.pExposureInfo     = answer.exposures.data();
    set.exposureInfoCount = AECAlgoExposureCount;
    set.exposureInfoSize  = sizeof(AECAlgoExposureData);

    AECAlgoSnapshotConfig config    = {type};
    AECAlgoGetParamInput  input     = {AECAlgoGetParamInputSnapshotType, &config, sizeof(config)};
    AECAlgoGetParamOutput outputs[] = {
        Output(AECAlgoGetParamOutputFrameControl, answer.frameControl), Output(AECAlgoGetParamOutputExposureSets, set),
        Output(AECAlgoGetParamOutputLEDCurrents, answer.LEDs), Output(AECAlgoGetParamOutputEXIFApex, answer.APEX),
        Output(AECAlgoGetParamOutputAdditionalInfo, answer.additionalInfo)};
    answer.result = Ask(pAlgo, AECAlgoGetParamSnapshotExposure, {&input, 1}, outputs, std::size(outputs));
    return answer;
}

KiroResult QueryUnanswered(IKIROCoreAlgo* pAlgo, AECAlgoGetParamType type)
{
    UINT64                unused = 0;
    AECAlgoGetParamOutput output = Output(AECAlgoGetParamOutputInvalid, unused);
    return Ask(pAlgo, type, {}, &output, 1);
}
