#include "tools/kirosim/soak.h"

#include <algorithm>
#include <cstdio>
#include <map>

#include <fmt/format.h>
#include <malloc.h>
#include <unistd.h>

#include "tools/kirosim/runreport.h"
#include "tools/kirosim/trace.h"

namespace kirosim
{

namespace
{

constexpr UINT64 MinLaps        = 2;
constexpr UINT64 RoundsPerScene = 4;

/// What is done to a camera, by round and frame of the scene. The round before is left alone: with it the last one,
/// which has all behind it, is compared.
constexpr UINT64 QuietRound    = 2;
constexpr UINT64 BusyRound     = 3;
constexpr UINT32 EditFrame     = 5;
constexpr UINT32 UndoFrame     = 15;
constexpr UINT32 ReloadFrame   = 25;
constexpr UINT32 ModeFrame     = 35;
constexpr UINT32 ModeBackFrame = 45;

constexpr const CHAR* EditedPath   = "0.0";
constexpr const CHAR* EditedModule = "kiroconvergence";
constexpr const CHAR* EditedMember = "unitStepSize";
constexpr const CHAR* EditedValue  = "0.25";

/// The function table of an instance stays allocated, since hosts may still hold its address, and so does what a query
/// of the snapshot gains was answered from. What a scene may leave behind is a little more than that.
constexpr INT64 MaxHeapGrowth         = INT64{32} << 10;
constexpr INT64 MaxHeapGrowthPerScene = 1024;
constexpr INT64 MaxResidentGrowth     = INT64{16} << 20;

INT64 HeapInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<INT64>(info.uordblks) + static_cast<INT64>(info.hblkhd);
}

INT64 ResidentBytes()
{
    long long size     = 0;
    long long resident = 0;
    if (FILE* pFile = std::fopen("/proc/self/statm", "r"))
    {
        (VOID) std::fscanf(pFile, "%lld %lld", &size, &resident);
        (VOID) std::fclose(pFile);
    }
    return resident * sysconf(_SC_PAGESIZE);
}

/// A running sum over all numbers of a run.
class Fingerprint
{
public:
    VOID Add(const std::string& rText)
    {
        for (const CHAR character : rText)
        {
            m_sum = (m_sum ^ static_cast<BYTE>(character)) * 0x100000001B3;
        }
    }

    UINT64 Get() const
    {
        return m_sum;
    }

private:
    UINT64 m_sum = 0xCBF29CE484222325;
};

/// Edits, reloads and mode changes between the frames of one scene.
class Disturbance
{
public:
    Disturbance(const Scene& rScene, LoadedTuning& rTuning, Simulation& rSimulation, SoakResult& rResult)
        : m_rScene(rScene), m_rTuning(rTuning), m_rSimulation(rSimulation), m_rResult(rResult)
    {
    }

    /// @param frame in the round, from 0
    VOID BeforeFrame(UINT64 round, UINT64 frame)
    {
        if (round != BusyRound)
        {
            return;
        }
        switch (frame)
        {
        case EditFrame:
            m_value = Value();
            Set(EditedValue);
            break;
        case UndoFrame:
            Set(m_value);
            break;
        case ReloadFrame:
            Reload();
            break;
        case ModeFrame:
            SetModes(OtherModes());
            break;
        case ModeBackFrame:
            SetModes(OwnModes());
            break;
        default:
            break;
        }
    }

private:
    std::string Value()
    {
        CHAR       text[256] = "";
        const bool isRead = m_rTuning.Manager().GetValue(0, EditedPath, EditedModule, EditedMember, text, sizeof(text));
        const std::string answer(text);
        if (!isRead || answer.find('=') == std::string::npos)
        {
            m_rResult.faults.push_back("a value could not be read");
        }
        return answer.substr(answer.find('=') + 1);
    }

    VOID Set(const std::string& rValue)
    {
        if (!m_rTuning.Manager().SetValue(0, EditedPath, EditedModule, EditedMember, rValue.c_str()))
        {
            m_rResult.faults.push_back("a live edit was refused");
        }
        ++m_rResult.edits;
    }

    VOID Reload()
    {
        if (!m_rTuning.Manager().ReloadBinaryParameters(false))
        {
            m_rResult.faults.push_back("a reload was refused: " + m_rTuning.Manager().GetErrorText());
        }
        ++m_rResult.reloads;
    }

    VOID SetModes(const std::vector<TuningMode>& rModes)
    {
        m_rSimulation.MainCamera().Host().SetTuning(m_rTuning.Data(rModes));
    }

    std::vector<TuningMode> OwnModes() const
    {
        return m_rScene.camera.modes.empty() ? DefaultSelectors() : m_rScene.camera.modes;
    }

    std::vector<TuningMode> OtherModes() const
    {
        std::vector<TuningMode> modes = OwnModes();
        for (TuningMode& rMode : modes)
        {
            if (rMode.mode == ModeType::Usecase)
            {
                const bool isVideo    = rMode.subMode.usecase == ModeUsecaseSubModeType::Video;
                rMode.subMode.usecase = isVideo ? ModeUsecaseSubModeType::Snapshot : ModeUsecaseSubModeType::Video;
            }
        }
        return modes;
    }

    const Scene&  m_rScene;
    LoadedTuning& m_rTuning;
    Simulation&   m_rSimulation;
    SoakResult&   m_rResult;
    std::string   m_value;
};

/// What one scene has come to in a lap.
class SceneRun
{
public:
    SceneRun(const Scene& rScene, const std::string& rName, LoadedTuning& rTuning, StatsLogger logger,
             SoakResult& rResult)
        : m_rScene(rScene), m_rName(rName), m_rResult(rResult), m_simulation(rScene, rTuning, logger), m_report(rScene),
          m_disturbance(rScene, rTuning, m_simulation, rResult)
    {
    }

    /// @return a sum over everything that was decided
    UINT64 Run()
    {
        RunPlan plan;
        plan.rounds      = RoundsPerScene;
        plan.beforeFrame = [this]
        {
            m_disturbance.BeforeFrame(m_frames / m_rScene.frames + 1, m_frames % m_rScene.frames);
            ++m_frames;
            return true;
        };
        m_simulation.Run(
            [this](const FrameRecord& rRecord)
            {
                m_report.Add(rRecord);
                m_fingerprint.Add(CsvLine(rRecord));
                if (m_frames % m_rScene.frames == 0)
                {
                    EndRound(m_frames / m_rScene.frames);
                }
            },
            [this](const FrameRecord& rRecord)
            {
                m_report.AddSecond(rRecord);
                m_fingerprint.Add(CsvLine(rRecord));
            },
            plan);
        m_rResult.frames += m_frames;
        return m_fingerprint.Get();
    }

private:
    VOID EndRound(UINT64 round)
    {
        const RunSummary& rSummary = *m_report.LastRound();
        if (!rSummary.isLegal)
        {
            m_rResult.faults.push_back(fmt::format("{}: an exposure in round {} was not legal", m_rName, round));
        }
        std::vector<bool> settled;
        for (const StepResult& rStep : rSummary.steps)
        {
            settled.push_back(rStep.framesToSettle.has_value());
            m_rResult.settles += rStep.framesToSettle.has_value() ? 1 : 0;
        }
        if (round == QuietRound)
        {
            m_settledBefore = settled;
        }
        if (round == RoundsPerScene && settled != m_settledBefore)
        {
            m_rResult.faults.push_back(
                fmt::format("{}: steps settle otherwise once the tuning was edited and reloaded", m_rName));
        }
    }

    const Scene&       m_rScene;
    const std::string& m_rName;
    SoakResult&        m_rResult;
    Simulation         m_simulation;
    RunReport          m_report;
    Disturbance        m_disturbance;
    Fingerprint        m_fingerprint;
    std::vector<bool>  m_settledBefore;
    UINT64             m_frames = 0;
};

}  // namespace

SoakResult Soak(const SoakPlan& rPlan, StatsLogger logger)
{
    std::vector<Scene> scenes;
    for (const std::string& rPath : rPlan.scenes)
    {
        scenes.push_back(ReadScene(rPath, ""));
    }
    LoadedTuning        tuning(rPlan.tuningFile);
    SoakResult          result;
    std::vector<UINT64> firstLap(scenes.size());
    INT64               heapAtFirst     = 0;
    INT64               residentAtFirst = 0;
    while (result.faults.empty() && (result.laps < MinLaps || result.frames < rPlan.frames))
    {
        for (size_t index = 0; index < scenes.size(); ++index)
        {
            const UINT64 sum = SceneRun(scenes[index], rPlan.scenes[index], tuning, logger, result).Run();
            if (result.laps == 0)
            {
                firstLap[index] = sum;
            }
            else if (sum != firstLap[index])
            {
                result.faults.push_back(
                    fmt::format("{}: lap {} is not like the first", rPlan.scenes[index], result.laps + 1));
            }
        }
        if (++result.laps == 1)
        {
            heapAtFirst     = HeapInUse();
            residentAtFirst = ResidentBytes();
        }
        result.heapGrowth     = HeapInUse() - heapAtFirst;
        result.residentGrowth = ResidentBytes() - residentAtFirst;
        const INT64 allowance =
            MaxHeapGrowth + MaxHeapGrowthPerScene * static_cast<INT64>((result.laps - 1) * scenes.size());
        if (result.heapGrowth > allowance || result.residentGrowth > MaxResidentGrowth)
        {
            result.faults.push_back("memory grows");
        }
        if (rPlan.progress)
        {
            rPlan.progress(fmt::format("lap {}: {} frames, heap {:+} bytes, resident {:+} bytes\n", result.laps,
                                       result.frames, result.heapGrowth, result.residentGrowth));
        }
    }
    return result;
}

}  // namespace kirosim
