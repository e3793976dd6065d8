#include "tools/recording/recorder.h"

#include "tools/recording/calls.h"
#include "tools/recording/layout.h"
#include "tools/recording/settingcalls.h"

namespace recording
{

IKIROCoreAlgo Recorder::s_functions{};

Recorder::Recorder(const std::string& rPath) : m_file(rPath), m_callCount(0), m_isFinished(false)
{
    FieldWriter head(m_bytes);
    head.Text("version", LibraryVersion);
    head.Value("layout", LayoutChecksum());
    Write(ChunkType::Head, true);
}

VOID Recorder::AddTuning(const VOID* pManager, const TuningReference& rTuning)
{
    const std::lock_guard lock(m_mutex);
    m_bytes.clear();
    FieldWriter writer(m_bytes);
    writer.Text("path", rTuning.path.c_str());
    writer.Value("checksum", rTuning.checksum);
    writer.Value("size", rTuning.size);
    m_identities.tunings.push_back(pManager);
    Write(ChunkType::Tuning, true);
}

IKIROCoreAlgo* Recorder::Wrap(IKIROCoreAlgo* pCore, const StatsTuningData& rTuning)
{
    const std::lock_guard lock(m_mutex);
    s_functions         = *pCore;
    Table& rTable       = m_tables.emplace_back();
    rTable.pRecorder    = this;
    rTable.pCore        = pCore->pCore;
    rTable.state.pCore  = pCore;
    rTable.state.number = static_cast<UINT32>(m_tables.size() - 1);
    SetFrameFunctions(rTable);
    SetSettingFunctions(rTable);
    SetOtherFunctions(rTable);

    m_bytes.clear();
    InputWriter writer(m_bytes, m_identities, rTable.state);
    writer.Value("instance", rTable.state.number);
    writer.TuningData(rTuning);
    Write(ChunkType::Instance, true);
    return &rTable;
}

VOID Recorder::Finish()
{
    const std::lock_guard lock(m_mutex);
    m_bytes.clear();
    FieldWriter(m_bytes).Value("calls", m_callCount);
    Write(ChunkType::Tail, true);
    m_isFinished = true;
    if (!m_error.empty())
    {
        throw std::runtime_error(m_error);
    }
}

/// A file that cannot be written any more ends the recording, not the run.
VOID Recorder::Write(ChunkType type, bool isFlushed)
{
    if (!m_error.empty() || m_isFinished)
    {
        return;
    }
    try
    {
        m_file.Write(type, m_bytes);
        if (isFlushed)
        {
            m_file.Flush();
        }
    }
    catch (const std::exception& rError)
    {
        m_error = rError.what();
    }
}

/// What the host has changed since the replay knows it.
VOID Recorder::WriteHostRecords()
{
    std::vector<BYTE> call;
    call.swap(m_bytes);
    for (HostRecord& rRecord : m_identities.hostRecords)
    {
        std::vector<BYTE> now;
        FieldWriter(now).Record("record", DescriptionOf(rRecord.kind), rRecord.pRecord);
        if (now != rRecord.last)
        {
            m_bytes.clear();
            FieldWriter writer(m_bytes);
            writer.Value("number", rRecord.number);
            writer.Value("kind", rRecord.kind);
            m_bytes.insert(m_bytes.end(), now.begin(), now.end());
            Write(ChunkType::Host, false);
        }
    }
    m_bytes.swap(call);
}

/// What the core has written there, the replay's core writes too.
VOID Recorder::UpdateHostRecords()
{
    for (HostRecord& rRecord : m_identities.hostRecords)
    {
        rRecord.last.clear();
        FieldWriter(rRecord.last).Record("record", DescriptionOf(rRecord.kind), rRecord.pRecord);
    }
}

template <typename Call> VOID Recorder::Record(Table& rTable, Call& rCall)
{
    const std::lock_guard lock(m_mutex);
    InstanceState&        rState = rTable.state;
    m_bytes.clear();
    InputWriter inputs(m_bytes, m_identities, rState);
    inputs.Value("instance", rState.number);
    inputs.Value("slot", Call::slot);
    rCall.Inputs(inputs);
    WriteHostRecords();
    Write(ChunkType::Call, true);

    rCall.Invoke(*rState.pCore, rState.pCore);

    if constexpr (requires { rCall.Learn(rState); })
    {
        rCall.Learn(rState);
        if (rState.pPeerInfo != nullptr)
        {
            m_identities.ownRecords[rState.pPeerInfo] = rState.number;
        }
    }
    UpdateHostRecords();
    m_bytes.clear();
    FieldWriter outputs(m_bytes);
    outputs.Value("instance", rState.number);
    rCall.Outputs(outputs);
    Write(ChunkType::Done, false);
    ++m_callCount;
}

template <typename Call> Call Recorder::Run(IKIROCoreAlgo* pAlgo, Call call)
{
    if (pAlgo == nullptr)
    {
        call.Invoke(s_functions, nullptr);
    }
    else
    {
        auto& rTable = static_cast<Table&>(*pAlgo);
        rTable.pRecorder->Record(rTable, call);
    }
    return call;
}

VOID Recorder::SetFrameFunctions(IKIROCoreAlgo& rTable)
{
    rTable.runStartOfFrame = [](IKIROCoreAlgo* p, UINT64 frameID) {
        return Run(p, RunStartOfFrameCall{frameID, {}}).result;
    };
    rTable.runMeteringPreprocess = [](IKIROCoreAlgo* p, KIROMeteringInput& rInput, KIROMeteringOutput& rOutput) {
        return Run(p, RunMeteringPreprocessCall{&rInput, &rOutput, {}}).result;
    };
    rTable.runAnalyzer = [](IKIROCoreAlgo* p, UINT32 id, KIROAnalyzerOutput& rOutput) {
        return Run(p, RunAnalyzerCall{id, &rOutput, {}}).result;
    };
    rTable.updateAnalyzerMgrOut = [](IKIROCoreAlgo* p, UINT32 id, KIROAnalyzerOutput* pInput) {
        return Run(p, UpdateAnalyzerMgrOutCall{id, pInput, {}}).result;
    };
    rTable.runMeteringPostprocess = [](IKIROCoreAlgo* p, KIROMeteringInput& rInput, KIROMeteringOutput& rOutput) {
        return Run(p, RunMeteringPostprocessCall{&rInput, &rOutput, {}}).result;
    };
    rTable.mixMetering = [](IKIROCoreAlgo* p, KIROMeteringOutput& rOutput) {
        return Run(p, MixMeteringCall{&rOutput, {}}).result;
    };
    rTable.runExtension = [](IKIROCoreAlgo* p, KIROExtensionInput& rInput, KIROExtensionOutput& rOutput) {
        return Run(p, RunExtensionCall{&rInput, &rOutput, {}}).result;
    };
    rTable.runEndOfFrame = [](IKIROCoreAlgo* p, KIROFrameInfo& rInfo, KIROPostProcessingInput& rInput,
                              KIROMeteringOutput& rMetering, KIROConvergenceOutput& rConvergence,
                              KIROArbitrationOutput* pArbitration) {
        return Run(p, RunEndOfFrameCall{&rInfo, &rInput, &rMetering, &rConvergence, pArbitration, {}}).result;
    };
    rTable.followMasterConvExposure = [](IKIROCoreAlgo* p, KIROConvergenceOutput& rOutput) {
        return Run(p, FollowMasterConvExposureCall{&rOutput, {}}).result;
    };
    rTable.runArbitration = [](IKIROCoreAlgo* p, KIROArbitrationInput* pInput, KIROArbitrationOutput* pOutput) {
        return Run(p, RunArbitrationCall{pInput, pOutput, {}, nullptr}).result;
    };
    rTable.RunConvProcess = [](IKIROCoreAlgo* p, KIROConvergenceInput& rInput, KIROConvergenceOutput& rOutput) {
        return Run(p, RunConvProcessCall{&rInput, &rOutput, {}}).result;
    };
    rTable.RunConvSettle = [](IKIROCoreAlgo* p, KIROConvergenceOutput& rOutput) {
        (VOID) Run(p, RunConvSettleCall{&rOutput, {}});
    };
    rTable.RunConvPostProcess = [](IKIROCoreAlgo* p, KIROConvergenceOutput& rOutput) {
        (VOID) Run(p, RunConvPostProcessCall{&rOutput, {}});
    };
    rTable.HandleExposureConstraints = [](IKIROCoreAlgo* p, KIROConvergenceOutput& rOutput) {
        (VOID) Run(p, HandleExposureConstraintsCall{&rOutput, {}});
    };
    rTable.setStats = [](IKIROCoreAlgo* p, KIROStatsList& rStats) { return Run(p, SetStatsCall{&rStats, {}}).result; };
}

VOID Recorder::SetSettingFunctions(IKIROCoreAlgo& rTable)
{
    rTable.getBankData = [](IKIROCoreAlgo* p, KIROGetBankData* pData) {
        return Run(p, GetBankDataCall{pData, {}}).result;
    };
    rTable.setInput    = [](IKIROCoreAlgo* p, KIROSetInput* pInput) { return Run(p, SetInputCall{pInput, {}}).result; };
    rTable.setBankData = [](IKIROCoreAlgo* p, const KIROSetBankData* pData) {
        return Run(p, SetBankDataCall{const_cast<KIROSetBankData*>(pData), {}}).result;
    };
    rTable.setDynamicBankData = [](IKIROCoreAlgo* p, KIRODynamicDataOperationType operation, KIROBankIDType bank,
                                   INT32 dataID) {
        return Run(p, SetDynamicBankDataCall{operation, bank, dataID, {}}).result;
    };
    rTable.queryMetaData = [](IKIROCoreAlgo* p, AECAlgoGetParam* pQuery) {
        return Run(p, QueryMetaDataCall{pQuery, {}}).result;
    };
    rTable.GetContextStatus = [](IKIROCoreAlgo* p) { return Run(p, GetContextStatusCall{{}, {}}).result; };
    rTable.SetContextEvent  = [](IKIROCoreAlgo* p, KIROTunaraEventType event, BOOL value) {
        (VOID) Run(p, SetContextEventCall{{event, value}, {}});
    };
    rTable.GetContextEvent = [](IKIROCoreAlgo* p, KIROTunaraEventType event) {
        return Run(p, GetContextEventCall{{event}, {}}).result;
    };
    rTable.SetMeteringLock = [](IKIROCoreAlgo* p, const BOOL bLock) {
        (VOID) Run(p, SetMeteringLockCall{{bLock}, {}});
    };
    rTable.RebaseSCD    = [](IKIROCoreAlgo* p, const UINT32 id) { (VOID) Run(p, RebaseSCDCall{{id}, {}}); };
    rTable.GetSCDOutput = [](IKIROCoreAlgo* p, const UINT32 id, KIROSCDOutput& rOutput) {
        return Run(p, GetSCDOutputCall{id, &rOutput, {}}).result;
    };
}

VOID Recorder::SetOtherFunctions(IKIROCoreAlgo& rTable)
{
    rTable.createDataXml = [](IKIROCoreAlgo* p, KIROMLDataType type) {
        return Run(p, CreateDataXmlCall{type, {}}).result;
    };
    rTable.GetFlashMaxCurrent = [](IKIROCoreAlgo* p) { return Run(p, GetFlashMaxCurrentCall{}).result; };
    rTable.GetFlashCalibInfo  = [](IKIROCoreAlgo* p) { return Run(p, GetFlashCalibInfoCall{}).result; };
    rTable.getFlashCurrent    = [](IKIROCoreAlgo* p, const KIROAlgoFlashInput* pInput, KIROAlgoFlashOutput* pOutput) {
        return Run(p, GetFlashCurrentCall{const_cast<KIROAlgoFlashInput*>(pInput), pOutput, {}}).result;
    };
    rTable.isPreflashMeteringNeeded =
        [](IKIROCoreAlgo* p, const KIROCntStatsOut* pOff, UINT32 offCount, const KIROCntStatsOut* pLow, UINT32 lowCount)
    {
        return Run(p,
                   IsPreflashMeteringNeededCall{
                       const_cast<KIROCntStatsOut*>(pOff), offCount, const_cast<KIROCntStatsOut*>(pLow), lowCount, {}})
            .result;
    };
    rTable.GetStartUpExposure = [](IKIROCoreAlgo* p, KIROAlgoStartExposureInfo* pInfo) {
        return Run(p, GetStartUpExposureCall{pInfo, {}}).result;
    };
    rTable.DestroyInstance    = [](IKIROCoreAlgo* p) { (VOID) Run(p, DestroyInstanceCall{}); };
    rTable.run1DVectorProcess = [](IKIROCoreAlgo* p, kiroglobalelements::VectorProcessorUsageType type, UINT32 samples)
    {
        (VOID) Run(p, Run1DVectorProcessCall{{type, samples}, {}});
    };
    rTable.reset1DVectorProcessors = [](IKIROCoreAlgo* p, kiroglobalelements::VectorProcessorUsageType type) {
        (VOID) Run(p, Reset1DVectorProcessorsCall{{type}, {}});
    };
    rTable.GetFICData = [](IKIROCoreAlgo* p, VOID* pBytes) { return Run(p, GetFICDataCall{pBytes, {}, {}}).result; };
}

}  // namespace recording
