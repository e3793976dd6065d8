/// @file
/// Calls of settings, banks and queries: their arguments are tagged, and what stands behind a pointer goes by the tag.
/// See calls.h.
#pragma once

#include "tools/recording/call.h"
#include "tools/recording/identities.h"
#include "tools/recording/queryoutputs.h"
#include "tools/recording/setparams.h"

namespace recording
{

// Fields are written one by one: whoever adds one finds out here.
static_assert(sizeof(KIROSetInput) == 24 && sizeof(KIROSetBankData) == 24 && sizeof(KIROGetBankData) == 24,
              "a field is not recorded");

struct SetInputCall : Call<Slot::setInput>
{
    /// Until the parameter is set again: tuning selectors and lists of regions stay the host's.
    INT64 InputKind() const
    {
        const auto& [pInput] = arguments;
        const bool isParam   = pInput != nullptr && pInput->source == AECPEKSetParam && pInput->u.pPEKInput != nullptr;
        return isParam ? 1 + INT64{pInput->u.pPEKInput->setParamType} : -1;
    }

    /// What is refused leaves in force what was set before, and so does a parameter without a value.
    bool IsTaken() const
    {
        const auto& [pInput] = arguments;
        return result == 0 && (InputKind() < 0 || pInput->u.pPEKInput->pAECSetParam != nullptr);
    }

    template <typename A> VOID Inputs(A& rInputs)
    {
        auto& [pInput] = arguments;
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

    VOID Outputs(FieldWriter& rOutputs) const
    {
        const auto& [pInput] = arguments;
        rOutputs.Value("result", result);
        rOutputs.Value("bResetFrameSkip", (pInput != nullptr) ? pInput->bResetFrameSkip : FALSE);
    }
};

struct SetBankDataCall : Call<Slot::setBankData>
{
    template <typename A> VOID Inputs(A& rInputs)
    {
        auto& [pData] = arguments;
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

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
    }
};

struct GetBankDataCall : Call<Slot::getBankData>
{
    template <typename A> VOID Inputs(A& rInputs)
    {
        auto& [pData] = arguments;
        if (Pointer(rInputs, "data", pData))
        {
            rInputs.Value("bankID", pData->bankID);
            rInputs.Value("dataID", pData->dataID);
            rInputs.Value("nOutSize", pData->nOutSize);
        }
    }

    /// Names of entries are for logs, and not the host's to read: they may be gone.
    VOID Outputs(FieldWriter& rOutputs) const
    {
        const auto& [pData] = arguments;
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

struct QueryMetaDataCall : Call<Slot::queryMetaData>
{
    template <typename A> VOID Inputs(A& rInputs)
    {
        auto& [pQuery] = arguments;
        if (Pointer(rInputs, "query", pQuery))
        {
            rInputs.Value("type", pQuery->type);
            QueryInputs(rInputs, pQuery->inputList);
            QueryOutputs(rInputs, pQuery->outputList);
        }
    }

    VOID Learn(InstanceState& rInstance) const
    {
        const auto& [pQuery] = arguments;
        if (pQuery != nullptr && pQuery->type == AECAlgoGetParamPeerInfo && result == 0)
        {
            LearnPeerInfo(*pQuery, rInstance);
        }
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        const auto& [pQuery] = arguments;
        rOutputs.Value("result", result);
        if (pQuery != nullptr)
        {
            QueryAnswers(rOutputs, pQuery->outputList);
        }
    }
};

struct GetFlashCalibInfoCall : Call<Slot::GetFlashCalibInfo>
{
    template <typename A> VOID Inputs(A&)
    {
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        AECAlgoFlashCalibrationData calibration = result;
        FlashCalibration(rOutputs, calibration);
    }
};

struct GetFlashCurrentCall : Call<Slot::getFlashCurrent>
{
    template <typename A> VOID Inputs(A& rInputs)
    {
        auto& [pInput, pOutput] = arguments;
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

    VOID Outputs(FieldWriter& rOutputs) const
    {
        const auto& [pInput, pOutput] = arguments;
        rOutputs.Value("result", result);
        rOutputs.Reference("output", pOutput);
    }
};

/// What inline calibration has learned, as bytes or as their number alone.
struct GetFICDataCall : Call<Slot::GetFICData>
{
    bool isWanted;

    template <typename A> VOID Inputs(A& rInputs)
    {
        auto& [pBytes] = arguments;
        isWanted       = Blank(rInputs, "pFICData", pBytes);
    }

    /// A replay has the room that the core asks for.
    VOID MakeRoom(IKIROCoreAlgo* pCore, Arena& rArena)
    {
        auto& [pBytes] = arguments;
        pBytes         = isWanted ? rArena.Make(pCore->GetFICData(pCore, nullptr)) : nullptr;
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        const auto& [pBytes] = arguments;
        rOutputs.Value("result", result);
        rOutputs.Array("bytes", static_cast<const BYTE*>(pBytes), result);
    }
};

struct DestroyInstanceCall : Call<Slot::DestroyInstance>
{
    template <typename A> VOID Inputs(A& rInputs)
    {
        rInputs.ForgetHostRecords(HostRecordKind::PeerInfo);
        rInputs.ForgetHostRecords(HostRecordKind::PrecisionFlashHistory);
    }

    VOID Outputs(FieldWriter&) const
    {
    }
};

/// Functions of a few numbers with a number for an answer, or none.
template <Slot NumbersSlot> struct NumbersCall : Call<NumbersSlot>
{
    template <typename A> VOID Inputs(A& rInputs)
    {
        std::apply([&](auto&... rNumbers) { (rInputs.Value("argument", rNumbers), ...); }, this->arguments);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        if constexpr (NumbersCall::hasAnswer)
        {
            rOutputs.Value("result", this->result);
        }
    }
};

using RunStartOfFrameCall         = NumbersCall<Slot::runStartOfFrame>;
using GetFlashMaxCurrentCall      = NumbersCall<Slot::GetFlashMaxCurrent>;
using SetDynamicBankDataCall      = NumbersCall<Slot::setDynamicBankData>;
using GetContextStatusCall        = NumbersCall<Slot::GetContextStatus>;
using SetContextEventCall         = NumbersCall<Slot::SetContextEvent>;
using GetContextEventCall         = NumbersCall<Slot::GetContextEvent>;
using Run1DVectorProcessCall      = NumbersCall<Slot::run1DVectorProcess>;
using Reset1DVectorProcessorsCall = NumbersCall<Slot::reset1DVectorProcessors>;
using SetMeteringLockCall         = NumbersCall<Slot::SetMeteringLock>;
using RebaseSCDCall               = NumbersCall<Slot::RebaseSCD>;

}  // namespace recording
