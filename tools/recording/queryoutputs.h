/// @file
/// Inputs and outputs of queries, by their types.
#pragma once

#include <cstring>

#include "tools/recording/pointers.h"

namespace recording
{

// Fields are written one by one: whoever adds one finds out here.
static_assert(sizeof(AECAlgoGetParam) == 40 && sizeof(AECAlgoGetParamInput) == 24 &&
                  sizeof(AECAlgoGetParamOutput) == 24 && sizeof(AECAlgoSnapshotConfig) == 4,
              "a field is not recorded");

/// Memory of a replay for the entries of a list.
template <typename A, typename T> VOID MakeEntries(A& rInputs, T*& rpList, UINT32 count)
{
    if constexpr (A::IsReading)
    {
        rpList = nullptr;
        if (rInputs.Presence("list"))
        {
            if (count > rInputs.Remaining())
            {
                throw MalformedError("it has a query with too many entries");
            }
            rpList = static_cast<T*>(rInputs.Memory().Make(count * sizeof(T)));
        }
    }
    else
    {
        (VOID) rInputs.Presence("list", rpList);
    }
}

template <typename A> VOID QueryInputs(A& rInputs, AECAlgoGetParamInputList& rList)
{
    rInputs.Value("numberOfAECGetInputParams", rList.numberOfAECGetInputParams);
    MakeEntries(rInputs, rList.pAECGetParamList, rList.numberOfAECGetInputParams);
    for (UINT32 index = 0; rList.pAECGetParamList != nullptr && index < rList.numberOfAECGetInputParams; ++index)
    {
        AECAlgoGetParamInput& rInput = rList.pAECGetParamList[index];
        rInputs.Value("inputType", rInput.inputType);
        rInputs.Value("sizeOfInputData", rInput.sizeOfInputData);
        if (Blank(rInputs, "pInputData", rInput.pInputData) && rInput.inputType == AECAlgoGetParamInputSnapshotType &&
            rInput.sizeOfInputData >= sizeof(AECAlgoSnapshotConfig))
        {
            rInputs.Value("snapshotType", static_cast<AECAlgoSnapshotConfig*>(rInput.pInputData)->snapshotType);
        }
    }
}

/// What a host may have put there, and what the core has made of it. The record is one of those that fit.
template <typename T, typename A> VOID OutputRecord(A& rFields, const CHAR* pName, AECAlgoGetParamOutput& rOutput)
{
    if constexpr (A::IsReading)
    {
        rOutput.pOutputData = rFields.Memory().Make(sizeof(T));
    }
    rFields.Record(pName, *static_cast<T*>(rOutput.pOutputData));
}

template <typename A> VOID ExposureSets(A& rFields, AECAlgoGetParamOutput& rOutput)
{
    OutputRecord<AECAlgoExposureSet>(rFields, "exposureSets", rOutput);
    auto& rSet = *static_cast<AECAlgoExposureSet*>(rOutput.pOutputData);
    rFields.Array("pExposureInfo", rSet.pExposureInfo, rSet.exposureInfoCount);
}

/// @return bytes of an output of the type, 0 for a type that the core does not fill
inline size_t SizeOfOutput(AECAlgoGetParamOutputType type)
{
    switch (type)
    {
    case AECAlgoGetParamOutputFrameControl:
        return sizeof(AECAlgoFrameControl);
    case AECAlgoGetParamOutputExposureSets:
        return sizeof(AECAlgoExposureSet);
    case AECAlgoGetParamOutputLEDCurrents:
        return sizeof(AECAlgoLEDCurrents);
    case AECAlgoGetParamOutputEXIFApex:
        return sizeof(AECAlgoAPEXData);
    case AECAlgoGetParamOutputAdditionalInfo:
        return sizeof(AECAlgoAdditionalInfo);
    case AECAlgoGetParamOutputEVCapabilities:
        return sizeof(AECAlgoEVCapabilities);
    case AECAlgoGetParamOutputPeerInfo:
        return sizeof(VOID*);
    default:
        return 0;
    }
}

/// Whether the core may fill the output.
inline bool IsUsable(const AECAlgoGetParamOutput& rOutput)
{
    const size_t size = SizeOfOutput(rOutput.outputType);
    return rOutput.pOutputData != nullptr && size > 0 && rOutput.sizeOfOutputData >= size;
}

template <typename A> VOID OutputData(A& rFields, AECAlgoGetParamOutput& rOutput)
{
    switch (rOutput.outputType)
    {
    case AECAlgoGetParamOutputFrameControl:
        OutputRecord<AECAlgoFrameControl>(rFields, "frameControl", rOutput);
        break;
    case AECAlgoGetParamOutputExposureSets:
        ExposureSets(rFields, rOutput);
        break;
    case AECAlgoGetParamOutputLEDCurrents:
        OutputRecord<AECAlgoLEDCurrents>(rFields, "LEDCurrents", rOutput);
        break;
    case AECAlgoGetParamOutputEXIFApex:
        OutputRecord<AECAlgoAPEXData>(rFields, "APEX", rOutput);
        break;
    case AECAlgoGetParamOutputAdditionalInfo:
        OutputRecord<AECAlgoAdditionalInfo>(rFields, "additionalInfo", rOutput);
        break;
    case AECAlgoGetParamOutputEVCapabilities:
        OutputRecord<AECAlgoEVCapabilities>(rFields, "EVCapabilities", rOutput);
        break;
    default:
        break;
    }
}

template <typename A> VOID QueryOutputs(A& rInputs, AECAlgoGetParamOutputList& rList)
{
    rInputs.Value("numberOfAECOutputs", rList.numberOfAECOutputs);
    MakeEntries(rInputs, rList.pAECOutputList, rList.numberOfAECOutputs);
    for (UINT32 index = 0; rList.pAECOutputList != nullptr && index < rList.numberOfAECOutputs; ++index)
    {
        AECAlgoGetParamOutput& rOutput = rList.pAECOutputList[index];
        rInputs.Value("outputType", rOutput.outputType);
        rInputs.Value("sizeOfOutputData", rOutput.sizeOfOutputData);
        rInputs.Value("sizeOfWrittenOutputData", rOutput.sizeOfWrittenOutputData);
        if (Blank(rInputs, "pOutputData", rOutput.pOutputData) && IsUsable(rOutput))
        {
            OutputData(rInputs, rOutput);
        }
    }
}

/// What is written is compared; an address is there or not.
inline VOID QueryAnswers(FieldWriter& rOutputs, const AECAlgoGetParamOutputList& rList)
{
    for (UINT32 index = 0; rList.pAECOutputList != nullptr && index < rList.numberOfAECOutputs; ++index)
    {
        AECAlgoGetParamOutput& rOutput = rList.pAECOutputList[index];
        rOutputs.Value("sizeOfWrittenOutputData", rOutput.sizeOfWrittenOutputData);
        if (IsUsable(rOutput))
        {
            OutputData(rOutputs, rOutput);
        }
    }
}

/// Takes the address of the camera's own record, by which the host tells the others of it.
inline VOID LearnPeerInfo(const AECAlgoGetParam& rQuery, InstanceState& rInstance)
{
    const AECAlgoGetParamOutputList& rList = rQuery.outputList;
    for (UINT32 index = 0; rList.pAECOutputList != nullptr && index < rList.numberOfAECOutputs; ++index)
    {
        const AECAlgoGetParamOutput& rOutput = rList.pAECOutputList[index];
        if (rOutput.outputType == AECAlgoGetParamOutputPeerInfo && IsUsable(rOutput) &&
            rOutput.sizeOfWrittenOutputData == sizeof(VOID*))
        {
            std::memcpy(&rInstance.pPeerInfo, rOutput.pOutputData, sizeof(VOID*));
            return;
        }
    }
}

}  // namespace recording
