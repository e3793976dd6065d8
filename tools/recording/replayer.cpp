#include "tools/recording/replayer.h"

#include <algorithm>
#include <fmt/format.h>

#include "host/kirodebugdata.h"
#include "tools/recording/allcalls.h"
#include "tools/recording/layout.h"

namespace recording
{

namespace
{

template <typename T> T Load(std::span<const BYTE>& rBytes)
{
    T value{};
    if (rBytes.size() < sizeof(value))
    {
        throw MalformedError("it is too short");
    }
    std::memcpy(&value, rBytes.data(), sizeof(value));
    rBytes = rBytes.subspan(sizeof(value));
    return value;
}

}  // namespace

/// The call that is replayed.
struct Replayer::PresentCall
{
    ReplayInstance&                      rInstance;
    Slot                                 slot;
    std::span<const BYTE>                inputs;
    std::optional<std::span<const BYTE>> outputs;  ///< none for the call in which the recording ends
};

Replayer::Replayer(const std::string& rPath, const ReplayPlan& rPlan)
    : m_file(rPath), m_plan(rPlan), m_livingCount(0), m_hasTail(false)
{
    const std::optional<Chunk> head = m_file.Next();
    if (!head.has_value())
    {
        throw std::runtime_error(fmt::format(
            "{}: {}", rPath, m_file.Damage().empty() ? "cut at byte 16, behind the header" : m_file.Damage()));
    }
    if (head->type != ChunkType::Head)
    {
        throw std::runtime_error(
            fmt::format("{}: damaged at byte {}: it does not begin with its head", rPath, head->offset));
    }
    try
    {
        CheckHead(*head);
    }
    catch (const MalformedError& rError)
    {
        throw std::runtime_error(fmt::format("{}: {}", rPath, rError.what()));
    }
}

Replayer::~Replayer()
{
    for (ReplayInstance& rInstance : m_identities.instances)
    {
        if (!rInstance.isDestroyed)
        {
            EndInstance(rInstance);
        }
    }
}

VOID Replayer::CheckHead(const Chunk& rChunk)
{
    Arena       arena;
    FieldReader reader(rChunk.payload, arena, m_identities.texts);
    CheckLayout(reader);
}

ReplayResult Replayer::Run()
{
    for (std::optional<Chunk> chunk = m_file.Next(); chunk.has_value(); chunk = m_file.Next())
    {
        try
        {
            if (!Handle(*chunk))
            {
                break;
            }
        }
        catch (const MalformedError& rError)
        {
            m_result.damage = fmt::format("damaged at byte {}: {}", chunk->offset, rError.what());
            break;
        }
    }
    const bool isEnded = m_result.differences.size() >= m_plan.differenceMax;
    if (m_result.damage.empty())
    {
        m_result.damage = m_file.Damage();
    }
    if (m_result.damage.empty() && !m_hasTail && !isEnded)
    {
        m_result.damage = "cut: its end is missing";
    }
    for (const ReplayInstance& rInstance : m_identities.instances)
    {
        m_result.frames = std::max(m_result.frames, rInstance.frameCount);
    }
    return m_result;
}

/// @return whether to go on
bool Replayer::Handle(const Chunk& rChunk)
{
    if (m_hasTail)
    {
        throw MalformedError("something follows its end");
    }
    switch (rChunk.type)
    {
    case ChunkType::Tuning:
        AddTuning(rChunk);
        break;
    case ChunkType::Instance:
        AddInstance(rChunk);
        break;
    case ChunkType::Host:
        SetHostRecord(rChunk);
        break;
    case ChunkType::Call:
        RunCall(rChunk);
        break;
    case ChunkType::Tail:
        CheckTail(rChunk);
        break;
    default:
        throw MalformedError("a chunk that has no place there");
    }
    return m_result.differences.size() < m_plan.differenceMax;
}

VOID Replayer::AddTuning(const Chunk& rChunk)
{
    Arena           arena;
    FieldReader     reader(rChunk.payload, arena, m_identities.texts);
    CHAR*           pPath = nullptr;
    TuningReference tuning;
    reader.Text("path", pPath);
    reader.Value("checksum", tuning.checksum);
    reader.Value("size", tuning.size);
    tuning.path = (pPath != nullptr) ? pPath : "";
    if (m_identities.tunings.size() == TuningCountMax)
    {
        throw MalformedError(fmt::format("more than {} tunings", TuningCountMax));
    }
    m_identities.tunings.push_back(m_plan.tuning(tuning));
}

VOID Replayer::AddInstance(const Chunk& rChunk)
{
    if (m_livingCount == InstanceCountMax)
    {
        throw MalformedError(fmt::format("more than {} cameras at a time", InstanceCountMax));
    }
    ReplayInstance  instance;
    StatsTuningData tuning{};
    InputReader     reader(rChunk.payload, instance.forLife, m_identities, instance);
    reader.Value("instance", instance.number);
    reader.TuningData(tuning);
    if (instance.number != m_identities.instances.size())
    {
        throw MalformedError("cameras out of order");
    }
    m_debugData.push_back(std::make_unique<KiroDebugData>());
    instance.pCore = m_library.Create(tuning, *m_debugData.back(), m_plan.logger);
    if (instance.pCore == nullptr)
    {
        throw std::runtime_error("the exposure core could not be created");
    }
    m_identities.instances.push_back(std::move(instance));
    ++m_livingCount;
}

/// The instance goes before what the host would have kept for it; what it told others of itself stays.
VOID Replayer::EndInstance(ReplayInstance& rInstance)
{
    rInstance.pCore->DestroyInstance(rInstance.pCore);
    rInstance.isDestroyed = true;
    rInstance.payloads.clear();
    rInstance.inputs.clear();
    m_debugData[rInstance.number].reset();
    --m_livingCount;
}

VOID Replayer::SetHostRecord(const Chunk& rChunk)
{
    Arena       arena;
    FieldReader reader(rChunk.payload, arena, m_identities.texts);
    UINT32      number = 0;
    auto        kind   = HostRecordKind::PeerInfo;
    reader.Value("number", number);
    reader.Value("kind", kind);
    if (kind != HostRecordKind::PeerInfo && kind != HostRecordKind::PrecisionFlashHistory)
    {
        throw MalformedError("an unknown record of the host's");
    }
    // Room for either: a number keeps its address.
    KeptPayload& rRecord = m_identities.hostRecords[number];
    if (rRecord.pPayload == nullptr)
    {
        rRecord.pPayload = rRecord.record.Make(std::max(sizeof(AECMultiCamInfo), sizeof(KIROPrecisionFlashHistory)));
    }
    reader.Members(DescriptionOf(kind), rRecord.pPayload);
}

VOID Replayer::CheckTail(const Chunk& rChunk)
{
    std::span<const BYTE> payload = rChunk.payload;
    const auto            calls   = Load<UINT64>(payload);
    if (calls != m_result.calls)
    {
        throw MalformedError(fmt::format("the recording had {} calls", calls));
    }
    m_hasTail = true;
}

template <typename... Calls> constexpr Replayer::Handlers Replayer::HandlersOf(std::tuple<Calls...>*)
{
    static_assert(((1ULL << static_cast<UINT32>(Calls::slot)) | ...) == (1ULL << std::size(SlotNames)) - 1,
                  "every function has its call");
    Handlers handlers{};
    ((handlers[static_cast<size_t>(Calls::slot)] = &Replayer::Replay<Calls>), ...);
    return handlers;
}

VOID Replayer::RunCall(const Chunk& rChunk)
{
    static constexpr Handlers handlers = HandlersOf(static_cast<AllCalls*>(nullptr));

    std::span<const BYTE> inputs = rChunk.payload;
    const auto            number = Load<UINT32>(inputs);
    const auto            slot   = Load<UINT16>(inputs);
    if (number >= m_identities.instances.size() || slot >= handlers.size() ||
        m_identities.instances[number].isDestroyed)
    {
        throw MalformedError("a call of no function or of no camera");
    }
    PresentCall call = {m_identities.instances[number], static_cast<Slot>(slot), inputs, {}};

    const std::optional<Chunk> answer = m_file.Next();
    if (answer.has_value())
    {
        std::span<const BYTE> outputs = answer->payload;
        if (answer->type != ChunkType::Done || Load<UINT32>(outputs) != number)
        {
            throw MalformedError(fmt::format("a call of {} without its answer", SlotNames[slot]));
        }
        call.outputs = outputs;
    }
    (this->*handlers[slot])(call);
}

template <typename Call> VOID Replayer::Replay(PresentCall& rCall)
{
    ReplayInstance& rInstance = rCall.rInstance;
    Arena           arena;
    Call            call{};
    InputReader     reader(rCall.inputs, arena, m_identities, rInstance);
    call.Inputs(reader);
    if (reader.Remaining() > 0)
    {
        throw MalformedError(fmt::format("a call of {} with more than it takes", SlotNames[UINT32(Call::slot)]));
    }
    if constexpr (requires { call.MakeRoom(rInstance.pCore, arena); })
    {
        call.MakeRoom(rInstance.pCore, arena);
    }
    if constexpr (Call::slot == Slot::runStartOfFrame)
    {
        rInstance.frameID = std::get<0>(call.arguments);
        ++rInstance.frameCount;
    }

    if constexpr (Call::slot == Slot::DestroyInstance)
    {
        EndInstance(rInstance);
    }
    else
    {
        call.Invoke(*rInstance.pCore, rInstance.pCore);
    }

    Show(rInstance, call);
    if constexpr (requires { call.Learn(rInstance); })
    {
        call.Learn(rInstance);
        if (rInstance.pPeerInfo != nullptr)
        {
            rInstance.shared = *static_cast<const AECMultiCamInfo*>(rInstance.pPeerInfo);
        }
    }
    if (rCall.outputs.has_value())
    {
        Compare(rCall, call);
        ++m_result.calls;
    }
    if constexpr (requires { call.Release(); })
    {
        call.Release();
    }
    KeepInputs(rInstance.inputs, call, arena);
}

/// Metering comes before the extension, the last stage of a frame that is decided, which has all else.
template <typename Call> VOID Replayer::Show(ReplayInstance& rInstance, const Call& rAnswered)
{
    if constexpr (Call::slot == Slot::runMeteringPostprocess)
    {
        rInstance.metering = *std::get<1>(rAnswered.arguments);
    }
    if constexpr (Call::slot == Slot::mixMetering)
    {
        rInstance.metering = *std::get<0>(rAnswered.arguments);
    }
    if constexpr (Call::slot == Slot::runExtension)
    {
        const KIROExtensionInput& rInput = *std::get<0>(rAnswered.arguments);
        if (m_plan.visit && rInput.pConvergenceOuts != nullptr && rInput.pArbitrationOuts != nullptr)
        {
            m_plan.visit({rInstance.number, rInstance.frameID, rInstance.pCore, rInstance.metering,
                          *rInput.pConvergenceOuts, rInput.pArbitrationOuts, *std::get<1>(rAnswered.arguments)});
        }
    }
}

template <typename Call> VOID Replayer::Compare(const PresentCall& rCall, const Call& rAnswered)
{
    std::vector<BYTE> now;
    FieldWriter       writer(now);
    rAnswered.Outputs(writer);
    if (std::equal(now.begin(), now.end(), rCall.outputs->begin(), rCall.outputs->end()))
    {
        return;
    }
    std::vector<Label> labels;
    now.clear();
    FieldWriter named(now, &labels);
    rAnswered.Outputs(named);
    for (const Difference& rDifference : recording::Compare(*rCall.outputs, now, labels))
    {
        if (m_result.differences.size() < m_plan.differenceMax)
        {
            m_result.differences.push_back(fmt::format("{}: {}: recorded {}, now {}", Place(rCall), rDifference.field,
                                                       rDifference.recorded, rDifference.now));
        }
    }
}

std::string Replayer::Place(const PresentCall& rCall) const
{
    const ReplayInstance& rInstance = rCall.rInstance;
    const std::string     frame =
        (rInstance.frameCount > 0) ? fmt::format("frame {}", rInstance.frameID) : "before the first frame";
    return fmt::format("{}, {} of camera {}", frame, SlotNames[static_cast<UINT32>(rCall.slot)], rInstance.number + 1);
}

}  // namespace recording
