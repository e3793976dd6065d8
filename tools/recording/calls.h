/// @file
/// Every function of the table as a record of its arguments: what goes in, the call itself, and what comes out. One
/// description serves the recorder and the replayer.
///
/// Inputs is run with an InputWriter before a recorded call and with an InputReader before a replayed one; Invoke calls
/// the function; Outputs writes what is compared. Learn, where there is one, takes addresses that the core hands out.
/// InputKind, where there is one, says that the core keeps addresses of inputs until the next call of the same kind.
#pragma once

#include "tools/recording/identities.h"
#include "tools/recording/slots.h"
#include "tools/recording/statistics.h"

namespace recording
{

struct CreateDataXmlCall
{
    static constexpr Slot slot = Slot::createDataXml;

    KIROMLDataType       type;
    CKIROTriggerDataXML* result;

    template <typename A> VOID Inputs(A& rInputs)
    {
        rInputs.Value("type", type);
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = rTable.createDataXml(pAlgo, type);
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

struct RunStartOfFrameCall
{
    static constexpr Slot slot = Slot::runStartOfFrame;

    UINT64     frameID;
    KiroResult result;

    template <typename A> VOID Inputs(A& rInputs)
    {
        rInputs.Value("frameID", frameID);
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = rTable.runStartOfFrame(pAlgo, frameID);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
    }
};

/// The two halves of metering.
template <Slot MeteringSlot, auto Function> struct MeteringCall
{
    static constexpr Slot slot = MeteringSlot;

    KIROMeteringInput*  pInput;
    KIROMeteringOutput* pOutput;
    KiroResult          result;

    template <typename A> VOID Inputs(A& rInputs)
    {
        rInputs.Argument("input", pInput);
        rInputs.Argument("output", pOutput);
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = (rTable.*Function)(pAlgo, *pInput, *pOutput);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
        rOutputs.Record("input", *pInput);
        rOutputs.Record("output", *pOutput);
    }
};

using RunMeteringPreprocessCall  = MeteringCall<Slot::runMeteringPreprocess, &IKIROCoreAlgo::runMeteringPreprocess>;
using RunMeteringPostprocessCall = MeteringCall<Slot::runMeteringPostprocess, &IKIROCoreAlgo::runMeteringPostprocess>;

struct RunAnalyzerCall
{
    static constexpr Slot slot = Slot::runAnalyzer;

    UINT32              analyzerID;
    KIROAnalyzerOutput* pOutput;
    KiroResult          result;

    template <typename A> VOID Inputs(A& rInputs)
    {
        rInputs.Value("analyzerID", analyzerID);
        rInputs.Argument("output", pOutput);
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = rTable.runAnalyzer(pAlgo, analyzerID, *pOutput);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
        rOutputs.Record("output", *pOutput);
        // Without an answer the name is the host's.
        rOutputs.Text("output.pName", (result == 0) ? pOutput->pName : nullptr);
    }
};

struct UpdateAnalyzerMgrOutCall
{
    static constexpr Slot slot = Slot::updateAnalyzerMgrOut;

    UINT32              analyzerID;
    KIROAnalyzerOutput* pInput;
    KiroResult          result;

    template <typename A> VOID Inputs(A& rInputs)
    {
        rInputs.Value("analyzerID", analyzerID);
        rInputs.Reference("input", pInput);
        if (pInput != nullptr)
        {
            rInputs.Text("input.pName", pInput->pName);
        }
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = rTable.updateAnalyzerMgrOut(pAlgo, analyzerID, pInput);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
        rOutputs.Reference("input", pInput);
    }
};

struct MixMeteringCall
{
    static constexpr Slot slot = Slot::mixMetering;

    KIROMeteringOutput* pOutput;
    KiroResult          result;

    template <typename A> VOID Inputs(A& rInputs)
    {
        rInputs.Argument("output", pOutput);
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = rTable.mixMetering(pAlgo, *pOutput);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
        rOutputs.Record("output", *pOutput);
    }
};

struct RunExtensionCall
{
    static constexpr Slot slot = Slot::runExtension;

    KIROExtensionInput*  pInput;
    KIROExtensionOutput* pOutput;
    KiroResult           result;

    template <typename A> VOID Inputs(A& rInputs)
    {
        rInputs.Argument("input", pInput);
        rInputs.Reference("convergence", pInput->pConvergenceOuts);
        rInputs.Array("arbitration", pInput->pArbitrationOuts, AECAlgoExposureCount);
        rInputs.Argument("output", pOutput);
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = rTable.runExtension(pAlgo, *pInput, *pOutput);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
        rOutputs.Record("output", *pOutput);
        rOutputs.Reference("convergence", pInput->pConvergenceOuts);
        rOutputs.Array("arbitration", pInput->pArbitrationOuts, AECAlgoExposureCount);
    }
};

struct RunEndOfFrameCall
{
    static constexpr Slot slot = Slot::runEndOfFrame;

    KIROFrameInfo*           pFrameInfo;
    KIROPostProcessingInput* pInput;
    KIROMeteringOutput*      pMetering;
    KIROConvergenceOutput*   pConvergence;
    KIROArbitrationOutput*   pArbitration;
    KiroResult               result;

    template <typename A> VOID Inputs(A& rInputs)
    {
        rInputs.Argument("frameInfo", pFrameInfo);
        rInputs.Argument("input", pInput);
        rInputs.Argument("metering", pMetering);
        rInputs.Argument("convergence", pConvergence);
        rInputs.Array("arbitration", pArbitration, AECAlgoExposureCount);
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = rTable.runEndOfFrame(pAlgo, *pFrameInfo, *pInput, *pMetering, *pConvergence, pArbitration);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
        rOutputs.Record("frameInfo", *pFrameInfo);
        rOutputs.Record("metering", *pMetering);
        rOutputs.Record("convergence", *pConvergence);
        rOutputs.Array("arbitration", pArbitration, AECAlgoExposureCount);
    }
};

/// Stages that take the frame's convergence and change it. @tparam hasResult whether the function answers
template <Slot ConvergenceSlot, auto Function, bool hasResult> struct ConvergenceStepCall
{
    static constexpr Slot slot = ConvergenceSlot;

    KIROConvergenceOutput* pOutput;
    KiroResult             result;

    template <typename A> VOID Inputs(A& rInputs)
    {
        rInputs.Argument("output", pOutput);
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        if constexpr (hasResult)
        {
            result = (rTable.*Function)(pAlgo, *pOutput);
        }
        else
        {
            (rTable.*Function)(pAlgo, *pOutput);
        }
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
        rOutputs.Record("output", *pOutput);
    }
};

using FollowMasterConvExposureCall =
    ConvergenceStepCall<Slot::followMasterConvExposure, &IKIROCoreAlgo::followMasterConvExposure, true>;
using RunConvSettleCall      = ConvergenceStepCall<Slot::RunConvSettle, &IKIROCoreAlgo::RunConvSettle, false>;
using RunConvPostProcessCall = ConvergenceStepCall<Slot::RunConvPostProcess, &IKIROCoreAlgo::RunConvPostProcess, false>;
using HandleExposureConstraintsCall =
    ConvergenceStepCall<Slot::HandleExposureConstraints, &IKIROCoreAlgo::HandleExposureConstraints, false>;

struct RunConvProcessCall
{
    static constexpr Slot slot = Slot::RunConvProcess;

    KIROConvergenceInput*  pInput;
    KIROConvergenceOutput* pOutput;
    KiroResult             result;

    template <typename A> VOID Inputs(A& rInputs)
    {
        rInputs.Argument("input", pInput);
        rInputs.Reference("range", pInput->pRange);
        rInputs.Argument("output", pOutput);
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = rTable.RunConvProcess(pAlgo, *pInput, *pOutput);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
        rOutputs.Record("input", *pInput);
        rOutputs.Reference("range", pInput->pRange);
        rOutputs.Record("output", *pOutput);
    }
};

struct RunArbitrationCall
{
    static constexpr Slot slot = Slot::runArbitration;

    KIROArbitrationInput*  pInput;
    KIROArbitrationOutput* pOutput;
    KiroResult             result;

    const VOID* pTableBefore;  ///< of the input

    template <typename A> VOID Inputs(A& rInputs)
    {
        rInputs.Reference("input", pInput);
        if (pInput != nullptr)
        {
            rInputs.LastTable(pInput->pTable);
            pTableBefore = pInput->pTable;
        }
        rInputs.Reference("output", pOutput);
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = rTable.runArbitration(pAlgo, pInput, pOutput);
    }

    VOID Learn(InstanceState& rInstance) const
    {
        if (pInput != nullptr && pInput->pTable != pTableBefore)
        {
            rInstance.pLastTable = pInput->pTable;
        }
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
        rOutputs.Reference("output", pOutput);
        rOutputs.Reference("input", pInput);
        if (pInput != nullptr)
        {
            (VOID) rOutputs.Presence("input.pTable", pInput->pTable);
        }
    }
};

struct SetStatsCall
{
    static constexpr Slot slot = Slot::setStats;

    KIROStatsList* pStats;
    KiroResult     result;

    /// Until the next statistics.
    INT64 InputKind() const
    {
        return 0;
    }

    template <typename A> VOID Inputs(A& rInputs)
    {
        StatisticsList(rInputs, pStats);
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = rTable.setStats(pAlgo, *pStats);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
    }
};

struct IsPreflashMeteringNeededCall
{
    static constexpr Slot slot = Slot::isPreflashMeteringNeeded;

    KIROCntStatsOut* pOff;
    UINT32           offCount;
    KIROCntStatsOut* pLow;
    UINT32           lowCount;
    BOOL             result;

    template <typename A> VOID Inputs(A& rInputs)
    {
        StatisticsChannels(rInputs, "off", pOff, offCount);
        StatisticsChannels(rInputs, "low", pLow, lowCount);
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = rTable.isPreflashMeteringNeeded(pAlgo, pOff, offCount, pLow, lowCount);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
    }
};

struct GetStartUpExposureCall
{
    static constexpr Slot slot = Slot::GetStartUpExposure;

    KIROAlgoStartExposureInfo* pInfo;
    KiroResult                 result;

    template <typename A> VOID Inputs(A& rInputs)
    {
        rInputs.Reference("info", pInfo);
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = rTable.GetStartUpExposure(pAlgo, pInfo);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
        rOutputs.Reference("info", pInfo);
    }
};

struct GetSCDOutputCall
{
    static constexpr Slot slot = Slot::GetSCDOutput;

    UINT32         id;
    KIROSCDOutput* pOutput;
    BOOL           result;

    template <typename A> VOID Inputs(A& rInputs)
    {
        rInputs.Value("id", id);
        rInputs.Argument("output", pOutput);
    }

    VOID Invoke(const IKIROCoreAlgo& rTable, IKIROCoreAlgo* pAlgo)
    {
        result = rTable.GetSCDOutput(pAlgo, id, *pOutput);
    }

    VOID Outputs(FieldWriter& rOutputs) const
    {
        rOutputs.Value("result", result);
        rOutputs.Record("output", *pOutput);
        rOutputs.Text("output.pName", (result == TRUE) ? pOutput->pName : nullptr);
    }
};

}  // namespace recording
