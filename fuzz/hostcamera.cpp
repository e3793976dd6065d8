#include "fuzz/hostcamera.h"

#include <array>
#include <cstdarg>
#include <cstdio>

#include "host/queries.h"
#include "schema/kirodbconvbase.h"
#include "tools/recording/allcalls.h"

using recording::Slot;

namespace fuzz
{

namespace
{

/// Lines are put together, as a host's would be, and go nowhere.
VOID DiscardLog(const CHAR*, INT32, const CHAR*, UINT32, UINT32, const CHAR* pFormat, ...)
{
    CHAR    line[512];
    va_list arguments;
    va_start(arguments, pFormat);
    (VOID) std::vsnprintf(line, sizeof(line), pFormat, arguments);
    va_end(arguments);
}

constexpr BYTE LatencyMax = 8;

KiroHostConfig ConfigOf(const StatsTuningData& rTuning, HostBytes& rBytes)
{
    KiroHostConfig config{};
    config.tuning            = rTuning;
    config.sensorRange       = {1.0f, 64.0f, 20000, 33333333};
    config.indexZeroExposure = config.sensorRange.minTime;
    config.startExposure     = 10000000;
    config.systemLatency     = rBytes.Next() % LatencyMax;
    config.FPSRange          = {30.0f, 15.0f};
    return config;
}

}  // namespace

HostCamera::HostCamera(const CameraPlan& rPlan, HostBytes& rBytes) : m_plan(rPlan), m_pAlgo(nullptr), m_frameID(0)
{
    m_memory.tuning = rPlan.tuning;
    if (rPlan.isBare)
    {
        m_pDebugData = std::make_unique<KiroDebugData>();
        m_pDebugData->SetEnabled(rPlan.isDebugging);
        m_pAlgo = rPlan.pLibrary->Create(m_plan.tuning, *m_pDebugData, DiscardLog);
    }
    else
    {
        m_pHost = std::make_unique<KiroHost>(*rPlan.pLibrary, ConfigOf(rPlan.tuning, rBytes), DiscardLog);
        m_pHost->SetDebugDataEnabled(rPlan.isDebugging);
        m_pAlgo = m_pHost->Algo();
    }
}

/// The memory of the table outlives its instance, for hosts that still hold it: this one does not.
HostCamera::~HostCamera()
{
    if (m_pHost != nullptr)
    {
        m_pHost.reset();
    }
    else
    {
        m_pAlgo->DestroyInstance(m_pAlgo);
    }
    if (!m_plan.isRecorded)
    {
        TavoFree(m_pAlgo, 0, nullptr, 0);
    }
}

AECMultiCamInfo* HostCamera::OwnRecord()
{
    return const_cast<AECMultiCamInfo*>(QueryPeerInfo(m_pAlgo));
}

template <typename... Calls> HostCamera::Handler HostCamera::HandlerOf(Slot slot, std::tuple<Calls...>*)
{
    static constexpr std::array<Handler, sizeof...(Calls)> handlers = {&HostCamera::Invoke<Calls>...};
    return handlers[static_cast<size_t>(slot)];
}

VOID HostCamera::Call(Slot slot, TableUse use, HostBytes& rBytes)
{
    // A recorder knows its own tables only.
    const bool isCopyOfRecorders = m_plan.isRecorded && use == TableUse::WithoutInstance;
    (this->*HandlerOf(slot, static_cast<recording::AllCalls*>(nullptr)))(isCopyOfRecorders ? TableUse::Null : use,
                                                                         rBytes);
}

/// Arguments are gone behind the call, but for those that the core may look at until the next one of their kind.
template <typename CallType> VOID HostCamera::Invoke(TableUse use, HostBytes& rBytes)
{
    recording::Arena arena;
    CallType         call{};
    HostValues       values(rBytes, arena, m_memory);
    call.Inputs(values);
    if constexpr (requires { call.MakeRoom(m_pAlgo, arena); })
    {
        call.MakeRoom(m_pAlgo, arena);
    }

    IKIROCoreAlgo        empty     = *m_pAlgo;
    IKIROCoreAlgo* const tables[]  = {m_pAlgo, nullptr, &empty};
    empty.pCore                    = nullptr;
    constexpr bool isEndOfInstance = CallType::slot == Slot::DestroyInstance;
    if (!isEndOfInstance || use != TableUse::Instance)
    {
        call.Invoke(*m_pAlgo, tables[static_cast<size_t>(use)]);
    }
    if constexpr (requires { call.Learn(m_memory.state); })
    {
        call.Learn(m_memory.state);
    }
    std::vector<BYTE>      answers;
    recording::FieldWriter writer(answers);
    call.Outputs(writer);
    if constexpr (requires { call.Release(); })
    {
        call.Release();
    }
    recording::KeepInputs(m_memory.inputs, call, arena);
}

VOID HostCamera::RunFrame(HostBytes& rBytes)
{
    auto pStatistics = std::make_unique<HostStatistics>(++m_frameID, rBytes);
    if (m_pHost != nullptr)
    {
        (VOID) m_pHost->RunFrame(m_frameID, pStatistics->List());
        m_pStatistics = std::move(pStatistics);
    }
}

VOID HostCamera::RunSnapshotFrame(HostBytes& rBytes)
{
    constexpr BYTE typeCount   = 9;
    const auto     type        = static_cast<KIROCoreSnapshotType>(rBytes.Next() % typeCount);
    const bool     isMetered   = rBytes.Next() % 2 == 0;
    auto           pStatistics = std::make_unique<HostStatistics>(++m_frameID, rBytes);
    if (m_pHost != nullptr)
    {
        (VOID) m_pHost->RunSnapshotFrame(m_frameID, pStatistics->List(), type, isMetered, [](KiroHostFrame&) {});
        m_pStatistics = std::move(pStatistics);
    }
}

VOID HostCamera::BeginSession(HostBytes& rBytes)
{
    const auto mode   = static_cast<AECAlgoOperationModeType>(rBytes.Next() % AECAlgoOperationModeCount);
    const auto source = static_cast<KIROAlgoStartExpType>(rBytes.Next() % KIROStartExpMax);
    if (m_pHost != nullptr)
    {
        m_pHost->BeginSession(mode, {source});
    }
}

/// What the host's own arbitration goes by besides the core.
VOID HostCamera::Set(HostBytes& rBytes)
{
    recording::Arena     arena;
    HostValues           values(rBytes, arena, m_memory);
    AECAlgoManualSetting manual{};
    AECAlgoFPSRange      range{};
    AECAlgoROI           touch{};
    const BYTE           choice = rBytes.Next();
    if (m_pHost == nullptr)
    {
        return;
    }
    switch (choice % 6)
    {
    case 0:
        m_pHost->SetFlickerCompensation(static_cast<StatisticsAntibanding>(rBytes.Next() % 6));
        break;
    case 1:
        m_pHost->SetHDRType(static_cast<AECAlgoHDRType>(rBytes.Next() % 5));
        break;
    case 2:
        values.Record("manual", manual);
        m_pHost->SetManual(manual);
        break;
    case 3:
        values.Record("FPSRange", range);
        m_pHost->SetFPSRange(range);
        break;
    case 4:
        values.Record("touch", touch);
        m_pHost->SetTouch(&touch);
        break;
    default:
        m_pHost->SetCameraInfo({static_cast<StatsAlgoRole>(rBytes.Next() % StatsAlgoRoleMax), rBytes.Next()});
        break;
    }
}

VOID HostCamera::Sense(HostBytes& rBytes)
{
    recording::Arena   arena;
    HostValues         values(rBytes, arena, m_memory);
    const BYTE         choice = rBytes.Next();
    FLOAT*             pCells = nullptr;
    std::vector<FLOAT> cells(KiroExternalData::MapSize);
    values.Array("cells", pCells, cells.size());
    if (m_pHost == nullptr || pCells == nullptr)
    {
        return;
    }
    std::copy_n(pCells, cells.size(), cells.begin());
    const std::span<const FLOAT, KiroExternalData::MapSize> map(cells);
    switch (choice % 3)
    {
    case 0:
        m_pHost->ExternalData().SetDepthMap(map);
        break;
    case 1:
        m_pHost->ExternalData().SetSegmentationMap(map);
        break;
    default:
        m_pHost->ExternalData().AddGyroSamples(map.first(choice));
        break;
    }
}

VOID HostCamera::AskFlash(HostBytes& rBytes)
{
    recording::Arena    arena;
    HostValues          values(rBytes, arena, m_memory);
    HostStatistics      low(m_frameID, rBytes);
    KIROAlgoFlashInput  input{};
    KIROAlgoFlashOutput output{};
    const auto&         rOff = ((m_pStatistics != nullptr) ? *m_pStatistics : low).List();
    (VOID) m_pAlgo->isPreflashMeteringNeeded(m_pAlgo, rOff.pList, rOff.count, low.List().pList, low.List().count);
    values.Record("input", input);
    (VOID) m_pAlgo->getFlashCurrent(m_pAlgo, &input, &output);
}

VOID HostCamera::Query(HostBytes& rBytes)
{
    (VOID) QuerySnapshotExposure(m_pAlgo, static_cast<KIROCoreSnapshotType>(rBytes.Next()));
    (VOID) QueryEVCapabilities(m_pAlgo);
}

VOID HostCamera::AskTunedData(HostBytes& rBytes)
{
    using kirodbconvbase::ConvBaseCoreDataType;
    using kirodbconvbase::DBConvBasePayload;

    recording::Arena           arena;
    HostValues                 values(rBytes, arena, m_memory);
    KIROMLDataType             type{};
    FLOAT                      triggers[3];
    CKIROTriggerDataXML* const pData = m_pAlgo->createDataXml(m_pAlgo, KIROMLConvBaseDataType);
    KIROGetBankData            query = {BankIDConvBase, 0, nullptr, sizeof(DBConvBasePayload)};
    values.Value("type", type);
    if (m_pAlgo->getBankData(m_pAlgo, &query) == 0 && query.pData != nullptr)
    {
        auto&             rValue = static_cast<DBConvBasePayload*>(query.pData)->value;
        AECTriggerXMLData tree   = {
              rValue.trigger1Data, {3, sizeof(ConvBaseCoreDataType)}, static_cast<INT32>(rValue.trigger1DataCount)};
        pData->SetData(pData, &tree, type);
    }
    for (FLOAT& rTrigger : triggers)
    {
        values.Value("trigger", rTrigger);
    }
    (VOID) pData->GetData(pData, triggers[0], triggers[1], triggers[2]);
    pData->DestoryInstance(pData);
}

}  // namespace fuzz
