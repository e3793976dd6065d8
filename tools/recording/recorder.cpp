#include "tools/recording/recorder.h"

#include <fmt/format.h>

#include "tools/recording/allcalls.h"
#include "tools/recording/layout.h"

namespace recording
{

IKIROCoreAlgo Recorder::s_functions{};

Recorder::Recorder(const std::string& rPath)
    : m_path(rPath), m_file(rPath), m_callCount(0), m_livingCount(0), m_isFinished(false)
{
    FieldWriter head(m_bytes);
    WriteLayout(head);
    Write(ChunkType::Head, true);
}

VOID Recorder::AddTuning(const VOID* pManager, const TuningReference& rTuning)
{
    const std::lock_guard lock(m_mutex);
    if (m_identities.tunings.size() == TuningCountMax)
    {
        Refuse(fmt::format("more than {} tunings", TuningCountMax));
    }
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
    SetFunctions(rTable, static_cast<AllCalls*>(nullptr));

    if (++m_livingCount > InstanceCountMax)
    {
        Refuse(fmt::format("more than {} cameras at a time", InstanceCountMax));
    }
    try
    {
        m_bytes.clear();
        InputWriter writer(m_bytes, m_identities, rTable.state);
        writer.Value("instance", rTable.state.number);
        writer.TuningData(rTuning);
        Write(ChunkType::Instance, true);
    }
    catch (const MalformedError& rError)
    {
        Refuse(rError.what());
    }
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
    m_file.Commit();
}

/// Ends the recording where it holds what a replay would not take.
VOID Recorder::Refuse(const std::string& rReason)
{
    if (m_error.empty())
    {
        m_error = fmt::format("{}: ends after {} calls: {}", m_path, m_callCount, rReason);
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

template <typename Call> VOID Recorder::WriteCall(InstanceState& rState, Call& rCall)
{
    if (!m_error.empty())
    {
        return;
    }
    try
    {
        m_bytes.clear();
        InputWriter inputs(m_bytes, m_identities, rState);
        inputs.Value("instance", rState.number);
        inputs.Value("slot", Call::slot);
        rCall.Inputs(inputs);
        WriteHostRecords();
        Write(ChunkType::Call, true);
    }
    catch (const MalformedError& rError)
    {
        Refuse(fmt::format("{} of camera {}: {}", SlotNames[static_cast<UINT32>(Call::slot)], rState.number + 1,
                           rError.what()));
    }
}

template <typename Call> VOID Recorder::Record(Table& rTable, Call& rCall)
{
    const std::lock_guard lock(m_mutex);
    InstanceState&        rState = rTable.state;
    WriteCall(rState, rCall);

    rCall.Invoke(*rState.pCore, rState.pCore);
    if (!m_error.empty())
    {
        return;
    }

    if constexpr (requires { rCall.Learn(rState); })
    {
        rCall.Learn(rState);
        if (rState.pPeerInfo != nullptr)
        {
            m_identities.ownRecords[rState.pPeerInfo] = rState.number;
        }
    }
    if constexpr (Call::slot == Slot::DestroyInstance)
    {
        --m_livingCount;
        std::erase_if(m_identities.ownRecords, [&](const auto& rOwn) { return rOwn.second == rState.number; });
    }
    UpdateHostRecords();
    m_bytes.clear();
    FieldWriter outputs(m_bytes);
    outputs.Value("instance", rState.number);
    rCall.Outputs(outputs);
    Write(ChunkType::Done, true);
    ++m_callCount;
}

template <typename Call> VOID Recorder::Run(IKIROCoreAlgo* pAlgo, Call& rCall)
{
    if (pAlgo == nullptr)
    {
        rCall.Invoke(s_functions, nullptr);
    }
    else
    {
        auto& rTable = static_cast<Table&>(*pAlgo);
        rTable.pRecorder->Record(rTable, rCall);
    }
}

template <typename Call, typename Answer, typename... Parameters>
VOID Recorder::SetFunction(Answer (*&rpFunction)(IKIROCoreAlgo*, Parameters...))
{
    rpFunction = [](IKIROCoreAlgo* pAlgo, Parameters... parameters) -> Answer
    {
        Call call{};
        call.arguments = decltype(call.arguments)(Keep<Parameters>(parameters)...);
        Run(pAlgo, call);
        if constexpr (Call::hasAnswer)
        {
            return call.result;
        }
    };
}

template <typename... Calls> VOID Recorder::SetFunctions(IKIROCoreAlgo& rTable, std::tuple<Calls...>*)
{
    (SetFunction<Calls>(rTable.*TableMember<Calls::slot>), ...);
}

}  // namespace recording
