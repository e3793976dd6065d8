/// @file
/// Calls of settings, banks and queries: their arguments are tagged, and what stands behind a pointer goes by the tag.
/// See calls.h.
#pragma once

#include <tuple>

#include "tools/recording/identities.h"
#include "tools/recording/queryoutputs.h"
#include "tools/recording/setparams.h"
#include "tools/recording/slots.h"

namespace recording
{

struct SetInputCall
{
    static constexpr Slot slot = Slot::setInput;

    KIROSetInput* pInput;
    MNKResult     result;

    /// Until the parameter is set again: tuning selectors and lists of regions stay the host's.
    INT64 InputKind() const
    {
        const bool isParam = pInput != nullptr && pInput->source == AECPEKSetParam && pInput->u.pPEKInput != nullptr;
        return isParam ? 1 + INT64{pInput->u.pPEKInput->setParamType} : -1;
    }

    template <typename A> VOID Inputs(A& rInputs)
    {
        if (!Pointer(rInputs, "input", pInput))
        {
            return;
        }
        rInputs.Value("source", pInput->source);
        switch (pInput->source)
        {
        case AECPEKSetParam:
            if (Pointer(rInputs, "pPEKInput", pInput->u.pPEKInput))
            {
                SetParam(rInputs, *pInput->u.pPEKInput);
            }
            break;
        case KIROCoreSnapshot:
            rInputs.Value("snapshotMode", pInput->u.snapshotMode);
            break;
        case KIROCoreInternalParam:
            if (Pointer(rInputs, "pKirocoreParam", pInput->u.pKirocoreParam))
            {
                InternalParam(rInputs, *pInput->u.pKirocoreParam);
            }
            break;
        default:
            break;
        }
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = rTable.setInput(pAlgo, pInput);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
        rOutputs.Value("bResetFrameSkip", (pInput != nullptr) ? pInput->bResetFrameSkip : FALSE);
    }
};

struct SetBankDataCall
{
    static constexpr Slot slot = Slot::setBankData;

    KIROSetBankData* pData;
    KiroResult       result;

    template <typename A> VOID Inputs(A& rInputs)
    {
        if (!Pointer(rInputs, "data", pData))
        {
            return;
        }
        rInputs.Value("bankID", pData->bankID);
        rInputs.Value("nInSize", pData->nInSize);
        // Another size is refused before the payload is read.
        const tuning::RecordDescription* pPayload = PayloadOf(pData->bankID);
        const bool isFitting = pPayload != nullptr && static_cast<size_t>(pData->nInSize) == pPayload->size;
        if (Blank(rInputs, "pData", pData->pData) && isFitting)
        {
            rInputs.BankPayload(pData->bankID, pData->pData);
        }
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = rTable.setBankData(pAlgo, pData);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
    }
};

struct GetBankDataCall
{
    static constexpr Slot slot = Slot::getBankData;

    KIROGetBankData* pData;
    KiroResult       result;

    template <typename A> VOID Inputs(A& rInputs)
    {
        if (Pointer(rInputs, "data", pData))
        {
            rInputs.Value("bankID", pData->bankID);
            rInputs.Value("dataID", pData->dataID);
            rInputs.Value("nOutSize", pData->nOutSize);
        }
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = rTable.getBankData(pAlgo, pData);
    }

    /// Names of entries are for logs, and not the host's to read: they may be gone.
    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
        if (result == 0 && pData != nullptr && rOutputs.Presence("payload", pData->pData))
        {
            rOutputs.LeaveTextsOut();
            rOutputs.Record(NameOf(pData->bankID), *PayloadOf(pData->bankID), pData->pData);
        }
    }

private:
    static const CHAR* NameOf(KIROBankIDType bank)
    {
        return PayloadOf(bank)->pName;
    }
};

struct SetDynamicBankDataCall
{
    static constexpr Slot slot = Slot::setDynamicBankData;

    KIRODynamicDataOperationType operation;
    KIROBankIDType               bankID;
    INT32                        dataID;
    KiroResult                   result;

    template <typename A> VOID Inputs(A& rInputs)
    {
        rInputs.Value("operation", operation);
        rInputs.Value("bankID", bankID);
        rInputs.Value("dataID", dataID);
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = rTable.setDynamicBankData(pAlgo, operation, bankID, dataID);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
    }
};

struct QueryMetaDataCall
{
    static constexpr Slot slot = Slot::queryMetaData;

    AECAlgoGetParam* pQuery;
    KiroResult       result;

    template <typename A> VOID Inputs(A& rInputs)
    {
        if (Pointer(rInputs, "query", pQuery))
        {
            rInputs.Value("type", pQuery->type);
            QueryInputs(rInputs, pQuery->inputList);
            QueryOutputs(rInputs, pQuery->outputList);
        }
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = rTable.queryMetaData(pAlgo, pQuery);
    }

    VOID Learn(InstanceState& rInstance) const
    {
        if (pQuery != nullptr && pQuery->type == AECAlgoGetParamPeerInfo && result == 0)
        {
            LearnPeerInfo(*pQuery, rInstance);
        }
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
        if (pQuery != nullptr)
        {
            QueryAnswers(rOutputs, pQuery->outputList);
        }
    }
};

struct GetFlashMaxCurrentCall
{
    static constexpr Slot slot = Slot::GetFlashMaxCurrent;

    INT32 result;

    template <typename A> VOID Inputs(A&)
    {
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = rTable.GetFlashMaxCurrent(pAlgo);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
    }
};

struct GetFlashCalibInfoCall
{
    static constexpr Slot slot = Slot::GetFlashCalibInfo;

    AECAlgoFlashCalibrationData result;

    template <typename A> VOID Inputs(A&)
    {
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = rTable.GetFlashCalibInfo(pAlgo);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        AECAlgoFlashCalibrationData calibration = result;
        FlashCalibration(rOutputs, calibration);
    }
};

struct GetFlashCurrentCall
{
    static constexpr Slot slot = Slot::getFlashCurrent;

    KIROAlgoFlashInput*  pInput;
    KIROAlgoFlashOutput* pOutput;
    KiroResult           result;

    template <typename A> VOID Inputs(A& rInputs)
    {
        rInputs.Reference("input", pInput);
        if (pInput != nullptr)
        {
            auto* pCalibration = const_cast<AECAlgoFlashCalibrationData*>(pInput->pFlashCalib);
            if (Pointer(rInputs, "pFlashCalib", pCalibration))
            {
                FlashCalibration(rInputs, *pCalibration);
            }
            if constexpr (A::IsReading)
            {
                pInput->pFlashCalib = pCalibration;
            }
        }
        rInputs.Reference("output", pOutput);
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = rTable.getFlashCurrent(pAlgo, pInput, pOutput);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
        rOutputs.Reference("output", pOutput);
    }
};

/// What inline calibration has learned, as bytes or as their number alone.
struct GetFICDataCall
{
    static constexpr Slot slot = Slot::GetFICData;

    VOID*  pBytes;
    UINT32 result;
    bool   isWanted;

    template <typename A> VOID Inputs(A& rInputs)
    {
        isWanted = Blank(rInputs, "pFICData", pBytes);
    }

    /// A replay has the room that the core asks for.
    VOID MakeRoom(IKIROCoreAlgo* pCore, Arena& rArena)
    {
        pBytes = isWanted ? rArena.Make(pCore->GetFICData(pCore, nullptr)) : nullptr;
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = rTable.GetFICData(pAlgo, pBytes);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
        rOutputs.Array("bytes", static_cast<const BYTE*>(pBytes), result);
    }
};

struct DestroyInstanceCall
{
    static constexpr Slot slot = Slot::DestroyInstance;

    template <typename A> VOID Inputs(A& rInputs)
    {
        rInputs.ForgetHostRecords(HostRecordKind::PeerInfo);
        rInputs.ForgetHostRecords(HostRecordKind::PrecisionFlashHistory);
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        rTable.DestroyInstance(pAlgo);
    }

    VOID Outputs(FieldWriter&) const
    {
    }
};

/// Functions of a few numbers with a number for an answer, or none.
template <Slot NumbersSlot, auto Function, typename Result, typename... Numbers> struct NumbersCall
{
    static constexpr Slot slot = NumbersSlot;

    std::tuple<Numbers...>                                           numbers;
    std::conditional_t<std::is_void_v<Result>, std::tuple<>, Result> result;

    template <typename A> VOID Inputs(A& rInputs)
    {
        std::apply([&](auto&... rNumbers) { (rInputs.Value("argument", rNumbers), ...); }, numbers);
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        const auto call = [&](Numbers... values) { return (rTable.*Function)(pAlgo, values...); };
        if constexpr (std::is_void_v<Result>)
        {
            std::apply(call, numbers);
        }
        else
        {
            result = std::apply(call, numbers);
        }
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        if constexpr (!std::is_void_v<Result>)
        {
            rOutputs.Value("result", result);
        }
    }
};

using GetContextStatusCall = NumbersCall<Slot::GetContextStatus, &IKIROCoreAlgo::GetContextStatus, UINT64>;
using SetContextEventCall =
    NumbersCall<Slot::SetContextEvent, &IKIROCoreAlgo::SetContextEvent, VOID, KIROTunaraEventType, BOOL>;
using GetContextEventCall =
    NumbersCall<Slot::GetContextEvent, &IKIROCoreAlgo::GetContextEvent, BOOL, KIROTunaraEventType>;
using Run1DVectorProcessCall      = NumbersCall<Slot::run1DVectorProcess, &IKIROCoreAlgo::run1DVectorProcess, VOID,
                                           kiroglobalelements::VectorProcessorUsageType, UINT32>;
using Reset1DVectorProcessorsCall = NumbersCall<Slot::reset1DVectorProcessors, &IKIROCoreAlgo::reset1DVectorProcessors,
                                                VOID, kiroglobalelements::VectorProcessorUsageType>;
using SetMeteringLockCall         = NumbersCall<Slot::SetMeteringLock, &IKIROCoreAlgo::SetMeteringLock, VOID, BOOL>;
using RebaseSCDCall               = NumbersCall<Slot::RebaseSCD, &IKIROCoreAlgo::RebaseSCD, VOID, UINT32>;

}  // namespace recording
