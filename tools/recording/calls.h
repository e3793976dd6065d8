/// @file
/// Every function of the table as a record of its arguments: what goes in, the call itself, and what comes out. One
/// description serves the recorder and the replayer.
///
/// Inputs is run with an InputWriter before a recorded call and with an InputReader before a replayed one; Invoke calls
/// the function; Outputs writes what is compared. Learn, where there is one, takes addresses that the core hands out.
/// InputKind, where there is one, says that the core keeps addresses of inputs until the next call of the same kind
/// that IsTaken.
#pragma once

#include "tools/recording/call.h"
#include "tools/recording/identities.h"
#include "tools/recording/statistics.h"

namespace recording
{

/// After a call: keeps what the core may still look at. @param rArena of the call's inputs
template <typename CallType> VOID KeepInputs(std::map<INT64, Arena>& rKept, const CallType& rCall, Arena& rArena)
{
    if constexpr (requires { rCall.InputKind(); })
    {
        Arena& rOfKind = rKept[rCall.InputKind()];
        if (!rCall.IsTaken())
        {
            rArena.Join(std::move(rOfKind));
        }
        rOfKind = std::move(rArena);
    }
}

struct CreateDataXmlCall : Call<Slot::createDataXml>
{
    template <typename A> VOID Inputs(A& rInputs)
    {
        auto& [type] = arguments;
        rInputs.Value("type", type);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        (VOID) rOutputs.Presence("result", result);
    }

    /// Of a replay: the host would release it.
    VOID Release()
    {
        if (result != nullptr)
        {
            result->DestoryInstance(result);
        }
    }
};

/// The two halves of metering.
template <Slot MeteringSlot> struct MeteringCall : Call<MeteringSlot>
{
    template <typename A> VOID Inputs(A& rInputs)
    {
        auto& [pInput, pOutput] = this->arguments;
        rInputs.Argument("input", pInput);
        rInputs.Argument("output", pOutput);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        const auto& [pInput, pOutput] = this->arguments;
        rOutputs.Value("result", this->result);
        rOutputs.Record("input", *pInput);
        rOutputs.Record("output", *pOutput);
    }
};

using RunMeteringPreprocessCall  = MeteringCall<Slot::runMeteringPreprocess>;
using RunMeteringPostprocessCall = MeteringCall<Slot::runMeteringPostprocess>;

/// Stages that take a record and change it.
template <Slot StageSlot> struct StageCall : Call<StageSlot>
{
    template <typename A> VOID Inputs(A& rInputs)
    {
        auto& [pOutput] = this->arguments;
        rInputs.Argument("output", pOutput);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        const auto& [pOutput] = this->arguments;
        rOutputs.Value("result", this->result);
        rOutputs.Record("output", *pOutput);
    }
};

using MixMeteringCall               = StageCall<Slot::mixMetering>;
using FollowMasterConvExposureCall  = StageCall<Slot::followMasterConvExposure>;
using RunConvSettleCall             = StageCall<Slot::RunConvSettle>;
using RunConvPostProcessCall        = StageCall<Slot::RunConvPostProcess>;
using HandleExposureConstraintsCall = StageCall<Slot::HandleExposureConstraints>;

struct RunAnalyzerCall : Call<Slot::runAnalyzer>
{
    template <typename A> VOID Inputs(A& rInputs)
    {
        auto& [analyzerID, pOutput] = arguments;
        rInputs.Value("analyzerID", analyzerID);
        rInputs.Argument("output", pOutput);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        const auto& [analyzerID, pOutput] = arguments;
        rOutputs.Value("result", result);
        rOutputs.Record("output", *pOutput);
        // Without an answer the name is the host's.
        rOutputs.Text("output.pName", (result == 0) ? pOutput->pName : nullptr);
    }
};

struct UpdateAnalyzerMgrOutCall : Call<Slot::updateAnalyzerMgrOut>
{
    template <typename A> VOID Inputs(A& rInputs)
    {
        auto& [analyzerID, pInput] = arguments;
        rInputs.Value("analyzerID", analyzerID);
        rInputs.Reference("input", pInput);
        if (pInput != nullptr)
        {
            rInputs.Text("input.pName", pInput->pName);
        }
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        const auto& [analyzerID, pInput] = arguments;
        rOutputs.Value("result", result);
        rOutputs.Reference("input", pInput);
    }
};

struct RunExtensionCall : Call<Slot::runExtension>
{
    template <typename A> VOID Inputs(A& rInputs)
    {
        auto& [pInput, pOutput] = arguments;
        rInputs.Argument("input", pInput);
        rInputs.Reference("convergence", pInput->pConvergenceOuts);
        rInputs.Array("arbitration", pInput->pArbitrationOuts, AECAlgoExposureCount);
        rInputs.Argument("output", pOutput);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        const auto& [pInput, pOutput] = arguments;
        rOutputs.Value("result", result);
        rOutputs.Record("output", *pOutput);
        rOutputs.Reference("convergence", pInput->pConvergenceOuts);
        rOutputs.Array("arbitration", pInput->pArbitrationOuts, AECAlgoExposureCount);
    }
};

struct RunEndOfFrameCall : Call<Slot::runEndOfFrame>
{
    const AECMultiCamInfo* pOwnRecord;  ///< that this function writes for peers; null until the host has asked for it

    template <typename A> VOID Inputs(A& rInputs)
    {
        auto& [pFrameInfo, pInput, pMetering, pConvergence, pArbitration] = arguments;
        rInputs.Argument("frameInfo", pFrameInfo);
        rInputs.Argument("input", pInput);
        rInputs.Argument("metering", pMetering);
        rInputs.Argument("convergence", pConvergence);
        rInputs.Array("arbitration", pArbitration, AECAlgoExposureCount);
    }

    VOID Learn(const InstanceState& rInstance)
    {
        pOwnRecord = static_cast<const AECMultiCamInfo*>(rInstance.pPeerInfo);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        const auto& [pFrameInfo, pInput, pMetering, pConvergence, pArbitration] = arguments;
        rOutputs.Value("result", result);
        rOutputs.Record("frameInfo", *pFrameInfo);
        rOutputs.Record("metering", *pMetering);
        rOutputs.Record("convergence", *pConvergence);
        rOutputs.Array("arbitration", pArbitration, AECAlgoExposureCount);
        rOutputs.Reference("record for peers", pOwnRecord);
    }
};

struct RunConvProcessCall : Call<Slot::RunConvProcess>
{
    template <typename A> VOID Inputs(A& rInputs)
    {
        auto& [pInput, pOutput] = arguments;
        rInputs.Argument("input", pInput);
        rInputs.Reference("range", pInput->pRange);
        rInputs.Argument("output", pOutput);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        const auto& [pInput, pOutput] = arguments;
        rOutputs.Value("result", result);
        rOutputs.Record("input", *pInput);
        rOutputs.Reference("range", pInput->pRange);
        rOutputs.Record("output", *pOutput);
    }
};

struct RunArbitrationCall : Call<Slot::runArbitration>
{
    const VOID* pTableBefore;  ///< of the input

    template <typename A> VOID Inputs(A& rInputs)
    {
        auto& [pInput, pOutput] = arguments;
        rInputs.Reference("input", pInput);
        if (pInput != nullptr)
        {
            rInputs.LastTable(pInput->pTable);
            pTableBefore = pInput->pTable;
        }
        rInputs.Reference("output", pOutput);
    }

    VOID Learn(InstanceState& rInstance) const
    {
        const auto& [pInput, pOutput] = arguments;
        if (pInput != nullptr && pInput->pTable != pTableBefore)
        {
            rInstance.pLastTable = pInput->pTable;
        }
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        const auto& [pInput, pOutput] = arguments;
        rOutputs.Value("result", result);
        rOutputs.Reference("output", pOutput);
        rOutputs.Reference("input", pInput);
        if (pInput != nullptr)
        {
            (VOID) rOutputs.Presence("input.pTable", pInput->pTable);
        }
    }
};

struct SetStatsCall : Call<Slot::setStats>
{
    /// Until the next statistics, whatever the core says of them.
    INT64 InputKind() const
    {
        return 0;
    }
    bool IsTaken() const
    {
        return true;
    }

    template <typename A> VOID Inputs(A& rInputs)
    {
        auto& [pStats] = arguments;
        StatisticsList(rInputs, pStats);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
    }
};

struct IsPreflashMeteringNeededCall : Call<Slot::isPreflashMeteringNeeded>
{
    template <typename A> VOID Inputs(A& rInputs)
    {
        auto& [pOff, offCount, pLow, lowCount] = arguments;
        StatisticsChannels(rInputs, "off", pOff, offCount);
        StatisticsChannels(rInputs, "low", pLow, lowCount);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
    }
};

struct GetStartUpExposureCall : Call<Slot::GetStartUpExposure>
{
    template <typename A> VOID Inputs(A& rInputs)
    {
        auto& [pInfo] = arguments;
        rInputs.Reference("info", pInfo);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        const auto& [pInfo] = arguments;
        rOutputs.Value("result", result);
        rOutputs.Reference("info", pInfo);
    }
};

struct GetSCDOutputCall : Call<Slot::GetSCDOutput>
{
    template <typename A> VOID Inputs(A& rInputs)
    {
        auto& [id, pOutput] = arguments;
        rInputs.Value("id", id);
        rInputs.Argument("output", pOutput);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        const auto& [id, pOutput] = arguments;
        rOutputs.Value("result", result);
        rOutputs.Record("output", *pOutput);
        rOutputs.Text("output.pName", (result == TRUE) ? pOutput->pName : nullptr);
    }
};

}  // namespace recording
