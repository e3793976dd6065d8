#include "tools/kirosoak/cameralife.h"

#include <fmt/format.h>

#include "parameters/parameterparserinfo.h"
#include "tools/kirosim/trace.h"
#include "tools/liveclient/texts.h"

namespace kirosoak
{

namespace
{

constexpr UINT32 JudgedFrames = 150;

/// The start of a session is over by then: while it lasts, the core takes neither a lock nor its end.
constexpr UINT32 StreamingFrame = 10;

/// Ends half-way through what is judged. As long as it lasts all exposures are as small as can be, so that where they
/// came from is forgotten: convergence stops somewhere within a tolerance, and where depends on the way.
constexpr DOUBLE GlareEnd = 2.5;   ///< s
constexpr DOUBLE GlareEV  = 16.0;  ///< more than the sensor can take
constexpr DOUBLE EvenTime = 5.0;   ///< s, some time behind it

/// Levels of records that an edit goes down at most.
constexpr UINT32 DepthMax = 12;

/// A natural scene without noise, so that equal frames are equal.
kirosim::Scene EvenScene()
{
    kirosim::Scene scene;
    scene.name         = "life";
    scene.frames       = JudgedFrames;
    scene.pattern.kind = kirosim::PatternKind::Natural;
    scene.light        = {{0.0, GlareEV, false}, {GlareEnd, 0.0, false}};
    return scene;
}

/// All that a host of these cameras may have set, as a new one has it.
kirosim::Event EndOfSettings(const kirosim::Scene& rScene)
{
    const FLOAT    fps = static_cast<FLOAT>(rScene.fps);
    kirosim::Event event;
    event.ev          = 0;
    event.lock        = false;
    event.isTouchEnd  = true;
    event.antibanding = StatisticsAntibanding60Hz;
    event.fps         = AECAlgoFPSRange{fps, fps};
    event.manual      = AECAlgoManualSetting{};
    event.hdr         = HDRDisabled;
    event.LEDMode     = AECAlgoLEDModeOff;
    return event;
}

const CHAR* NameOf(ReloadFile::Kind kind)
{
    constexpr const CHAR* names[] = {"good", "refused", "without "};
    return names[static_cast<size_t>(kind)];
}

}  // namespace

CameraLife::CameraLife(TuningVariants& rVariants, StatsLogger logger, std::string& rCalls)
    : m_rVariants(rVariants), m_logger(logger), m_rCalls(rCalls), m_scene(EvenScene()), m_frames(0), m_isGood(true)
{
    m_rVariants.WriteGood();
    m_pTuning = std::make_unique<kirosim::LoadedTuning>(m_rVariants.Path(), false, kirosim::LoadedTuning::Source::File);
    AddCamera();
}

VOID CameraLife::Note(const std::string& rCall)
{
    m_rCalls += rCall + '\n';
}

CameraLife::Place CameraLife::NewPlace(kirosim::LoadedTuning& rTuning)
{
    return {std::make_unique<kirosim::Camera>(m_scene, rTuning, m_logger,
                                              [](IKIROCoreAlgo* pAlgo, const StatsTuningData&)
                                              { return MakeStatisticsOdd(pAlgo); }),
            0, false};
}

VOID CameraLife::AddCamera()
{
    Note("a new camera");
    m_cameras.push_back(NewPlace(*m_pTuning));
}

VOID CameraLife::DropCamera(size_t camera)
{
    Leave(camera);
    Note(fmt::format("camera {} goes", camera));
    m_cameras.erase(m_cameras.begin() + static_cast<std::ptrdiff_t>(camera));
}

VOID CameraLife::Join(size_t camera, StatsAlgoRole role)
{
    Place& rPlace = m_cameras[camera];
    if (!rPlace.isInGroup)
    {
        Note(fmt::format("camera {} joins the group, role {}", camera, static_cast<UINT32>(role)));
        m_group.Join(rPlace.pCamera->Host(), role);
        rPlace.isInGroup = true;
    }
}

VOID CameraLife::Leave(size_t camera)
{
    Place& rPlace = m_cameras[camera];
    if (rPlace.isInGroup)
    {
        Note(fmt::format("camera {} leaves the group", camera));
        m_group.Leave(rPlace.pCamera->Host());
        rPlace.isInGroup = false;
    }
}

kirosim::FrameRecord CameraLife::RunFrame(Place& rPlace, DOUBLE sceneTime)
{
    ++m_frames;
    ++rPlace.frame;
    return rPlace.pCamera->RunFrame(rPlace.frame, static_cast<DOUBLE>(rPlace.frame) / m_scene.fps, sceneTime);
}

VOID CameraLife::RunFrames(UINT32 count, Disturbance disturbance)
{
    Note(fmt::format("{} frames, disturbance {}", count, static_cast<UINT32>(disturbance)));
    SetDisturbance(disturbance);
    for (UINT32 frame = 0; frame < count; ++frame)
    {
        for (Place& rPlace : m_cameras)
        {
            (VOID) RunFrame(rPlace, EvenTime);
        }
    }
    SetDisturbance(Disturbance::None);
}

VOID CameraLife::Apply(size_t camera, const std::string& rWhat, const kirosim::Event& rEvent)
{
    Note(fmt::format("camera {}: {}", camera, rWhat));
    m_cameras[camera].pCamera->Apply(rEvent);
}

VOID CameraLife::SetModes(size_t camera, const std::vector<TuningMode>& rModes)
{
    std::string path;
    for (const TuningMode& rMode : rModes)
    {
        path += fmt::format(" {}.{}", static_cast<UINT32>(rMode.mode), rMode.subMode.value);
    }
    Note(fmt::format("camera {}: modes{}", camera, path));
    m_cameras[camera].pCamera->Host().SetTuning(m_pTuning->Data(rModes));
}

VOID CameraLife::Begin(size_t camera, const std::string& rWhat, const kirosim::StartPlan& rPlan)
{
    Note(fmt::format("camera {}: {}", camera, rWhat));
    m_cameras[camera].pCamera->Begin(rPlan, 0.0);
}

VOID CameraLife::TellCameras()
{
    for (Place& rPlace : m_cameras)
    {
        KiroHost& rHost = rPlace.pCamera->Host();
        rHost.SetTuning(StatsTuningData(rHost.Tuning()));
    }
}

VOID CameraLife::Reload(const std::vector<ReloadFile>& rFiles, bool isEachTold)
{
    for (const ReloadFile& rFile : rFiles)
    {
        const bool isLacking = rFile.kind == ReloadFile::Kind::Lacking;
        Note(fmt::format("reload of a file: {}{}", NameOf(rFile.kind),
                         isLacking ? m_rVariants.Modules()[rFile.module] : ""));
        switch (rFile.kind)
        {
        case ReloadFile::Kind::Good:
            m_rVariants.WriteGood();
            break;
        case ReloadFile::Kind::Refused:
            m_rVariants.WriteRefused();
            break;
        case ReloadFile::Kind::Lacking:
            m_rVariants.WriteWithout(rFile.module);
            break;
        }
        const bool isTaken = m_pTuning->Manager().ReloadBinaryParameters(false);
        if (isTaken != (rFile.kind != ReloadFile::Kind::Refused))
        {
            throw std::runtime_error(fmt::format("a reload is {}", isTaken ? "taken" : "refused"));
        }
        m_isGood = rFile.kind == ReloadFile::Kind::Good;
        if (isEachTold || &rFile == &rFiles.back())
        {
            Note("cameras are told of it");
            TellCameras();
        }
    }
}

VOID CameraLife::ReplaceStore(UINT32 times)
{
    m_rVariants.WriteGood();
    for (UINT32 time = 0; time < times; ++time)
    {
        Note("another store in place of the present one");
        auto pNext =
            std::make_unique<kirosim::LoadedTuning>(m_rVariants.Path(), false, kirosim::LoadedTuning::Source::File);
        for (Place& rPlace : m_cameras)
        {
            KiroHost&   rHost  = rPlace.pCamera->Host();
            const auto* pFirst = static_cast<const TuningMode*>(rHost.Tuning().pTuningModeSelectors);
            rHost.SetTuning(pNext->Data({pFirst, pFirst + rHost.Tuning().numSelectors}));
        }
        m_pTuning = std::move(pNext);
        m_isGood  = true;
    }
}

VOID CameraLife::RunStages(size_t camera, UINT32 analyzerID)
{
    Note(fmt::format("camera {}: analyzer {}, settle and post-processing between frames", camera, analyzerID));
    KiroHost&             rHost  = m_cameras[camera].pCamera->Host();
    IKIROCoreAlgo* const  pAlgo  = rHost.Algo();
    KIROConvergenceOutput output = rHost.LastFrame().convergence;
    KIROAnalyzerOutput    analyzer{};
    (VOID) pAlgo->runAnalyzer(pAlgo, analyzerID, analyzer);
    (VOID) pAlgo->updateAnalyzerMgrOut(pAlgo, analyzerID, &analyzer);
    pAlgo->RunConvSettle(pAlgo, output);
    pAlgo->RunConvPostProcess(pAlgo, output);
}

/// Goes down from a module to a float, which is made a tenth smaller. What places the nodes of a smoothed gain is left
/// as it is (see Judge).
VOID CameraLife::Edit(UINT64 choice)
{
    constexpr const CHAR* root   = "0";
    constexpr DOUBLE      factor = 0.9;

    const auto next = [&choice](size_t count)
    {
        const size_t picked = choice % count;
        choice              = choice / count + choice * 0x9E3779B97F4A7C15;
        return picked;
    };
    TuningSetManager& rManager = m_pTuning->Manager();
    std::string       module   = m_rVariants.Modules()[next(m_rVariants.Modules().size())];
    for (UINT32 depth = 0; depth < DepthMax; ++depth)
    {
        PList<ParameterParserInfo> infos;
        if (!rManager.GetInfo(0, root, module.c_str(), infos) || infos.Count() == 0)
        {
            return;
        }
        const ParameterParserInfo& rInfo = infos[static_cast<UINT32>(next(infos.Count()))];
        const std::string          type  = rInfo.Type;
        if (std::string_view(rInfo.Name).starts_with("smooth"))
        {
            return;
        }
        if (type == ParameterParserInfo::TypeFloat && !rInfo.IsArray)
        {
            const std::string value = fmt::format("{:.6f}", std::stod(rInfo.Value) * factor);
            Note(fmt::format("edit of {}.{}={}", module, rInfo.Name, value));
            (VOID) rManager.SetValue(0, root, module.c_str(), rInfo.Name, value.c_str());
            return;
        }
        if (type != ParameterParserInfo::TypeStructure || (rInfo.IsArray && rInfo.Count == 0))
        {
            continue;  // another member
        }
        module += fmt::format(".{}", rInfo.Name);
        module += rInfo.IsArray ? fmt::format("[{}]", next(rInfo.Count)) : "";
    }
}

/// Where a new camera begins.
VOID CameraLife::Settle(Place& rPlace, kirosim::LoadedTuning& rTuning)
{
    kirosim::StartPlan plan;
    plan.isFixed = true;
    rPlace.pCamera->Apply(EndOfSettings(m_scene));
    rPlace.pCamera->Host().SetLightSensor(static_cast<FLOAT>(m_scene.lux));
    rPlace.pCamera->Host().SetTuning(rTuning.Data(kirosim::DefaultSelectors()));
    rPlace.pCamera->StartRound();
    rPlace.pCamera->Begin(plan, 0.0);
}

/// @return the trace of the last of many equal frames, without number and time
std::string CameraLife::LastDecision(Place& rPlace)
{
    std::string line;
    for (UINT32 frame = 0; frame < JudgedFrames; ++frame)
    {
        if (frame == StreamingFrame)
        {
            rPlace.pCamera->Host().SetLock(false);
        }
        line = kirosim::CsvLine(RunFrame(rPlace, frame / m_scene.fps));
    }
    const size_t number = line.find(',');
    return line.substr(line.find(',', number + 1) + 1);
}

std::vector<std::string> CameraLife::Judge(bool isReloaded)
{
    const bool hasOwnStore = isReloaded || !m_isGood;
    if (hasOwnStore)
    {
        Reload({{}}, true);
    }
    for (size_t camera = 0; camera < m_cameras.size(); ++camera)
    {
        Leave(camera);
    }
    Note("all are judged");
    std::optional<kirosim::LoadedTuning> own;
    if (hasOwnStore)
    {
        own.emplace(m_rVariants.Path(), false, kirosim::LoadedTuning::Source::File);
    }
    kirosim::LoadedTuning& rTuning = own.has_value() ? *own : *m_pTuning;
    Place                  fresh   = NewPlace(rTuning);
    Settle(fresh, rTuning);
    const std::string              expected = LastDecision(fresh);
    const std::vector<std::string> names    = liveclient::Split(kirosim::CsvHeader(), ',');
    std::vector<std::string>       faults;
    for (size_t camera = 0; camera < m_cameras.size(); ++camera)
    {
        Settle(m_cameras[camera], *m_pTuning);
        const std::string decided = LastDecision(m_cameras[camera]);
        const auto        now     = liveclient::Split(decided, ',');
        const auto        wanted  = liveclient::Split(expected, ',');
        for (size_t column = 0; column < now.size(); ++column)
        {
            if (now[column] != wanted[column])
            {
                faults.push_back(fmt::format("camera {}: {} is {}, that of a new camera {}", camera, names[column + 2],
                                             now[column], wanted[column]));
            }
        }
    }
    return faults;
}

}  // namespace kirosoak
