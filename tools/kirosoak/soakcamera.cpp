#include "tools/kirosoak/soakcamera.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/kirosim/trace.h"

namespace kirosoak
{

namespace
{

constexpr UINT64 QuietRound    = 3;
constexpr UINT64 EditRound     = 4;
constexpr UINT64 ModeRound     = 6;
constexpr UINT64 SnapshotRound = 8;
constexpr UINT64 LastRound     = SoakCamera::RoundsPerLap;

constexpr UINT64 ReloadFrame   = 2;
constexpr UINT64 SnapshotFrame = 10;

/// Where nothing is to be followed.
constexpr UINT64 WindowBegin = 10;
constexpr UINT64 WindowEnd   = 20;

/// Pictures need some frames to come back through the sensor.
constexpr UINT32 FramesMin = 40;

/// The pictures of a bracket, EV steps.
const std::vector<INT32> BracketEV = {-12, 0, 12};

constexpr UINT64 SumOfNothing = 0xCBF29CE484222325;

UINT64 Sum(UINT64 sum, std::string_view text)
{
    for (const CHAR character : text)
    {
        sum = (sum ^ static_cast<BYTE>(character)) * 0x100000001B3;
    }
    return sum;
}

/// What a round repeats: all but number and time of the frame.
UINT64 SumOf(const kirosim::FrameRecord& rRecord)
{
    const std::string line   = kirosim::CsvLine(rRecord);
    const size_t      number = line.find(',');
    return Sum(SumOfNothing, std::string_view(line).substr(line.find(',', number + 1)));
}

bool IsLightStep(const kirosim::StepResult& rStep)
{
    return rStep.ev != 0.0;  // else the cold start
}

}  // namespace

SoakCamera::SoakCamera(const kirosim::Scene& rScene, const std::string& rName, kirosim::LoadedTuning& rTuning,
                       StatsLogger logger)
    : m_rScene(rScene), m_rName(rName), m_rTuning(rTuning), m_simulation(rScene, rTuning, logger), m_report(rScene),
      m_edit(rTuning.Manager().GetLiveTuningPort()), m_window{}, m_valuesEdited(0), m_second(0), m_lapSum(0),
      m_pResult(nullptr)
{
    if (rScene.frames < FramesMin)
    {
        throw std::runtime_error(fmt::format("{}: {} frames are too few, a lap does things up to frame {}", rName,
                                             rScene.frames, FramesMin));
    }
    m_modeChanges.emplace_back(m_simulation.MainCamera(), rTuning);
    if (m_simulation.SecondCamera() != nullptr)
    {
        m_modeChanges.emplace_back(*m_simulation.SecondCamera(), rTuning);
    }
}

UINT64 SoakCamera::RunLap(const std::function<bool()>& isStopped, SoakResult& rResult)
{
    m_pResult         = &rResult;
    m_lapSum          = SumOfNothing;
    UINT64     frames = 0;
    const auto round  = [&] { return frames / m_rScene.frames + 1; };

    kirosim::RunPlan plan;
    plan.rounds      = RoundsPerLap;
    plan.beforeFrame = [&](DOUBLE)
    {
        if (isStopped && isStopped())
        {
            rResult.isStopped = true;
            return false;
        }
        BeforeFrame(round(), frames % m_rScene.frames);
        return true;
    };
    m_simulation.Run(
        [&](const kirosim::FrameRecord& rRecord)
        {
            AddFrame(rRecord);
            if ((frames + 1) % m_rScene.frames == 0)
            {
                EndRound(round());
            }
            ++frames;
        },
        [&](const kirosim::FrameRecord& rRecord)
        {
            m_report.AddSecond(rRecord);
            m_second = SumOf(rRecord);
        },
        plan);
    rResult.frames += frames;
    return m_lapSum;
}

/// @param frame in the round, from 0
VOID SoakCamera::BeforeFrame(UINT64 round, UINT64 frame)
{
    if (round == EditRound && frame == m_window.begin)
    {
        EditSpeeds();
    }
    else if (round == EditRound && frame == m_window.end)
    {
        UndoEdit();
    }
    else if (round == ModeRound && frame == m_window.begin)
    {
        ChangeModes(&ModeChange::Make);
    }
    else if (round == ModeRound && frame == m_window.end)
    {
        ChangeModes(&ModeChange::Undo);
    }
    else if (round == SnapshotRound && frame == ReloadFrame)
    {
        Reload();
    }
    else if (round == SnapshotRound && frame == SnapshotFrame)
    {
        kirosim::Event event;
        event.bracket = kirosim::BracketRequest(BracketEV);
        m_simulation.MainCamera().Apply(event);
    }
}

VOID SoakCamera::EditSpeeds()
{
    m_valuesEdited = m_edit.Make(ModePathOf(m_simulation.MainCamera()));
    m_pResult->edits += m_valuesEdited;
    if (m_valuesEdited == 0)
    {
        Fault("no speed could be edited");
    }
}

VOID SoakCamera::UndoEdit()
{
    if (!m_edit.Undo())
    {
        Fault("an edit could not be undone");
    }
    m_pResult->edits += m_valuesEdited;
}

VOID SoakCamera::Reload()
{
    if (!m_rTuning.Manager().ReloadBinaryParameters(false))
    {
        Fault("a reload was refused: " + m_rTuning.Manager().GetErrorText());
    }
    ++m_pResult->reloads;
    // What the cores have of the tuning they keep until they are told.
    for (kirosim::Camera* pCamera : {&m_simulation.MainCamera(), m_simulation.SecondCamera()})
    {
        if (pCamera != nullptr)
        {
            pCamera->Host().SetTuning(pCamera->Host().Tuning());
        }
    }
}

VOID SoakCamera::ChangeModes(VOID (ModeChange::*pChange)())
{
    for (ModeChange& rChange : m_modeChanges)
    {
        (rChange.*pChange)();
        ++m_pResult->modeChanges;
    }
}

VOID SoakCamera::AddFrame(const kirosim::FrameRecord& rRecord)
{
    m_report.Add(rRecord);
    const UINT64 sum = SumOf(rRecord) ^ m_second;
    m_lapSum         = Sum(m_lapSum, {reinterpret_cast<const CHAR*>(&sum), sizeof(sum)});
    m_round.frames.push_back(sum);
    m_round.times.push_back(rRecord.sceneTime);
    m_round.isSettled = rRecord.decided.convergence.bSettle == TRUE;
    m_round.pictures += (rRecord.picture.has_value() || rRecord.flash.shot.has_value()) ? 1 : 0;
}

VOID SoakCamera::EndRound(UINT64 round)
{
    const kirosim::RunSummary& rSummary = *m_report.LastRound();
    if (!rSummary.isLegal)
    {
        Fault(fmt::format("an exposure in round {} was not legal", round));
    }
    m_round.steps = rSummary.steps;
    m_pResult->snapshots += m_round.pictures;
    m_pResult->settles += static_cast<UINT64>(std::count_if(
        m_round.steps.begin(), m_round.steps.end(),
        [](const kirosim::StepResult& rStep) { return IsLightStep(rStep) && rStep.framesToSettle.has_value(); }));
    if (round == QuietRound)
    {
        m_quiet = m_round;
        ChooseWindow();
    }
    if (round >= QuietRound)
    {
        JudgeSteps(round);
        JudgeAgainstQuiet(round);
    }
    m_round = Round{};
}

/// Whatever was done to the camera, the steps settle that settle without it.
VOID SoakCamera::JudgeSteps(UINT64 round)
{
    if (m_round.steps.size() != m_quiet.steps.size())
    {
        Fault(fmt::format("round {} has {} steps of the light, {} without disturbance", round, m_round.steps.size(),
                          m_quiet.steps.size()));
        return;
    }
    bool hasStep    = false;
    bool hasSettled = false;
    for (size_t index = 0; index < m_quiet.steps.size(); ++index)
    {
        const kirosim::StepResult&  rQuiet = m_quiet.steps[index];
        const std::optional<UINT32> now    = m_round.steps[index].framesToSettle;
        hasStep                            = hasStep || IsLightStep(rQuiet);
        hasSettled                         = hasSettled || (IsLightStep(rQuiet) && now.has_value());
        if (round == LastRound ? now != rQuiet.framesToSettle : rQuiet.framesToSettle.has_value() && !now.has_value())
        {
            Fault(fmt::format("the step at {:.1f} s settles after {} frames in round {}, {} without disturbance",
                              rQuiet.time, now.value_or(0), round, rQuiet.framesToSettle.value_or(0)));
        }
    }
    if (hasStep && !hasSettled)
    {
        Fault(fmt::format("the light steps, but nothing settles in round {}", round));
    }
    if (m_round.isSettled != m_quiet.isSettled)
    {
        Fault(fmt::format("round {} ends {}settled", round, m_round.isSettled ? "" : "un"));
    }
}

VOID SoakCamera::JudgeAgainstQuiet(UINT64 round)
{
    const bool   isWindowed = round == EditRound || round == ModeRound;
    const UINT64 alike      = (round == LastRound) ? m_rScene.frames : isWindowed ? m_window.begin : 0;
    if (const UINT64 frame = FirstDifference(0, alike); frame < alike)
    {
        Fault(fmt::format("round {} of a lap should be like round {}, but is not from frame {} on", round, QuietRound,
                          frame + 1));
    }
    const bool isFelt = FirstDifference(m_window.begin, m_window.end) < m_window.end;
    if (round == EditRound && m_window.isFollowing && !isFelt)
    {
        Fault("the exposure follows a step of the light as if no speed had been edited");
    }
    m_pResult->modeEffects += (round == ModeRound && isFelt) ? 1 : 0;
    if (round == SnapshotRound && m_round.pictures == 0)
    {
        Fault("no snapshot was taken");
    }
}

/// @return the end if there is none
UINT64 SoakCamera::FirstDifference(UINT64 begin, UINT64 end) const
{
    const auto first = static_cast<std::ptrdiff_t>(begin);
    const auto last  = static_cast<std::ptrdiff_t>(end);
    const auto found =
        std::mismatch(m_round.frames.begin() + first, m_round.frames.begin() + last, m_quiet.frames.begin() + first);
    return static_cast<UINT64>(found.first - m_round.frames.begin());
}

/// While the exposure follows a step of the light, speeds and modes matter.
VOID SoakCamera::ChooseWindow()
{
    m_window = {WindowBegin, WindowEnd, false};
    for (const kirosim::StepResult& rStep : m_quiet.steps)
    {
        const UINT32 frames = rStep.framesToSettle.value_or(0);
        const auto   first  = std::ranges::lower_bound(m_quiet.times, rStep.time);
        const auto   begin  = static_cast<UINT64>(first - m_quiet.times.begin());
        if (IsLightStep(rStep) && frames > 0 && begin >= WindowBegin)
        {
            m_window = {begin, begin + frames, true};
            return;
        }
    }
}

VOID SoakCamera::Fault(const std::string& rText)
{
    m_pResult->faults.push_back(m_rName + ": " + rText);
}

}  // namespace kirosoak
