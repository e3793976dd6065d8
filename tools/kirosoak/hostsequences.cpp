#include "tools/kirosoak/hostsequences.h"

#include <csignal>
#include <random>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <unistd.h>

#include "tools/kirosoak/cameralife.h"

/// Of a sanitizer's run time; null without one.
extern "C" VOID __sanitizer_set_death_callback(VOID (*pCallback)()) __attribute__((weak));

namespace kirosoak
{

namespace
{

/// The present sequence: its name, and a line per call.
std::string calls;

VOID WriteCalls()
{
    const std::string_view head = "kirosoak: the process dies in ";
    (VOID) !write(STDERR_FILENO, head.data(), head.size());
    (VOID) !write(STDERR_FILENO, calls.data(), calls.size());
}

VOID WriteCallsAndDie(int signal)
{
    WriteCalls();
    (VOID) std::signal(signal, SIG_DFL);
    (VOID) std::raise(signal);
}

/// Tells what was done when the process dies.
class DeathWatch
{
public:
    DeathWatch()
    {
        if (__sanitizer_set_death_callback != nullptr)
        {
            __sanitizer_set_death_callback(WriteCalls);
            return;
        }
        Handle(WriteCallsAndDie);
    }

    ~DeathWatch()
    {
        if (__sanitizer_set_death_callback != nullptr)
        {
            __sanitizer_set_death_callback(nullptr);
            return;
        }
        Handle(SIG_DFL);
    }

    DeathWatch(const DeathWatch&)            = delete;
    DeathWatch& operator=(const DeathWatch&) = delete;

private:
    static VOID Handle(VOID (*pHandler)(int))
    {
        for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT})
        {
            (VOID) std::signal(signal, pHandler);
        }
    }
};

using Kind = ReloadFile::Kind;

/// Reloads between two frames, and the frames behind them.
struct ReloadCase
{
    std::string             name;
    std::vector<ReloadFile> files;
};

std::vector<ReloadCase> ReloadCases(size_t moduleCount)
{
    constexpr ReloadFile good{};
    constexpr ReloadFile refused{Kind::Refused};

    std::vector<ReloadCase> cases = {
        {"one reload", {good}},
        {"two reloads", {good, good}},
        {"three reloads", {good, good, good}},
        {"four reloads", {good, good, good, good}},
        {"a refused file", {refused}},
        {"two refused files", {refused, refused}},
        {"a refused file and a good one", {refused, good}},
        {"two refused files and two good ones", {refused, refused, good, good}},
        {"a good file and a refused one", {good, refused}},
    };
    for (size_t module = 0; module < moduleCount; ++module)
    {
        cases.push_back({fmt::format("without module {}", module), {{Kind::Lacking, module}}});
        cases.push_back({fmt::format("without module {}, and a good file", module), {{Kind::Lacking, module}, good}});
    }
    return cases;
}

/// A life of cameras by chance.
class RandomLife
{
public:
    RandomLife(TuningVariants& rVariants, StatsLogger logger, UINT64 seed)
        : m_rVariants(rVariants), m_random(seed), m_life(rVariants, logger, calls)
    {
    }

    /// @return faults
    std::vector<std::string> Run()
    {
        for (UINT64 step = 4 + Below(24); step > 0; --step)
        {
            DoSomething();
        }
        return m_life.Judge(Below(2) == 0);
    }

    UINT64 Frames() const
    {
        return m_life.Frames();
    }

private:
    UINT64 Below(UINT64 count)
    {
        return m_random() % count;  // unlike a distribution, the same with every C++ library
    }

    FLOAT Share()
    {
        return static_cast<FLOAT>(Below(1000)) / 1000.0f;
    }

    VOID DoSomething()
    {
        const size_t camera = Below(m_life.CameraCount());
        switch (Below(14))
        {
        case 0:
            Reload();
            break;
        case 1:
            m_life.Edit(m_random());
            break;
        case 2:
            BeginSession(camera);
            break;
        case 3:
            ComeOrGo(camera);
            break;
        case 9:
            JoinOrLeave(camera);
            break;
        case 4:
            m_life.RunFrames(1 + static_cast<UINT32>(Below(4)),
                             static_cast<Disturbance>(Below(static_cast<UINT64>(Disturbance::Count))));
            break;
        case 5:
            m_life.ReplaceStore(1 + static_cast<UINT32>(Below(3)));
            break;
        case 6:
            m_life.RunStages(camera, static_cast<UINT32>(Below(8)));
            break;
        case 7:
        case 8:
            m_life.RunFrames(1 + static_cast<UINT32>(Below(12)));
            break;
        default:
            Set(camera);
            break;
        }
    }

    VOID Reload()
    {
        std::vector<ReloadFile> files(1 + Below(4));
        for (ReloadFile& rFile : files)
        {
            rFile = {static_cast<Kind>(Below(3)), Below(m_rVariants.Modules().size())};
        }
        m_life.Reload(files, Below(2) == 0);
    }

    VOID BeginSession(size_t camera)
    {
        constexpr KIROAlgoStartExpType sources[] = {KIROStartExpPreflash, KIROStartExpPrevMode,
                                                    KIROStartExpExtLightData};
        kirosim::StartPlan             plan;
        plan.isFixed         = Below(3) == 0;
        const UINT64 choice  = Below(std::size(sources));
        plan.source          = sources[choice];
        plan.lux             = 1.0 + static_cast<DOUBLE>(Below(1000));
        const auto pKindText = plan.isFixed ? "at the fixed exposure" : "from a source";
        m_life.Begin(camera, fmt::format("a session {} {}", pKindText, choice), plan);
    }

    VOID ComeOrGo(size_t camera)
    {
        if (m_life.CameraCount() == 1 || (m_life.CameraCount() < CameraLife::CamerasMax && Below(2) == 0))
        {
            m_life.AddCamera();
        }
        else
        {
            m_life.DropCamera(camera);
        }
    }

    VOID JoinOrLeave(size_t camera)
    {
        if (Below(3) == 0)
        {
            m_life.Leave(camera);
        }
        else
        {
            m_life.Join(camera, static_cast<StatsAlgoRole>(Below(StatsAlgoRoleMax)));
        }
    }

    /// MultiframeHDR, once it has been set, stays in force: see CameraLife::Judge.
    VOID Set(size_t camera)
    {
        kirosim::Event event;
        std::string    what;
        switch (Below(9))
        {
        case 0:
            event.ev = static_cast<INT32>(Below(25)) - 12;
            what     = fmt::format("EV {}", *event.ev);
            break;
        case 1:
            event.lock = Below(2) == 0;
            what       = fmt::format("lock {}", *event.lock);
            break;
        case 2:
            event.touch = AECAlgoROI{Share() / 2, Share() / 2, Share() / 2, Share() / 2, Share()};
            what        = fmt::format("touch at {}, {}", event.touch->x, event.touch->y);
            break;
        case 3:
            event.antibanding = static_cast<StatisticsAntibanding>(Below(6));
            what              = fmt::format("antibanding {}", static_cast<INT32>(*event.antibanding));
            break;
        case 4:
            event.fps = AECAlgoFPSRange{60.0f, static_cast<FLOAT>(5 + Below(50))};
            what      = fmt::format("{} frames a second at least", event.fps->minimumFPS);
            break;
        case 5:
            event.manual = {static_cast<AECAlgoModeType>(Below(6)), UINT32{100} << Below(5), UINT64{10000} << Below(14),
                            1.0f + 10 * Share(), 2.0f};
            what         = fmt::format("manual {}", static_cast<INT32>(event.manual->manualMode));
            break;
        case 6:
            event.hdr = static_cast<AECAlgoHDRType>(Below(MultiframeHDR));
            what      = fmt::format("HDR {}", static_cast<INT32>(*event.hdr));
            break;
        case 7:
            m_life.SetModes(camera, Modes());
            return;
        default:
            event.bracket = kirosim::BracketRequest{-12, 0, static_cast<INT32>(Below(13))};
            what          = "a bracket";
            break;
        }
        m_life.Apply(camera, what, event);
    }

    /// Of a mode that the tuning has.
    std::vector<TuningMode> Modes()
    {
        std::vector<TuningMode>              selectors = kirosim::DefaultSelectors();
        const std::vector<tuningfile::Mode>& rModes    = m_rVariants.Tuning().tables[0].modes;
        std::optional<UINT32>                index     = static_cast<UINT32>(Below(rModes.size()));
        while (index.has_value())
        {
            const tuningfile::Mode& rMode          = rModes[*index];
            selectors.at(rMode.mode).subMode.value = rMode.subMode;
            index                                  = rMode.parent;
        }
        return selectors;
    }

    TuningVariants& m_rVariants;
    std::mt19937_64 m_random;
    CameraLife      m_life;
};

class SequenceRun
{
public:
    SequenceRun(const SequencePlan& rPlan, StatsLogger logger)
        : m_rPlan(rPlan), m_logger(logger), m_variants(rPlan.tuningText, rPlan.path)
    {
    }

    SequenceResult Run()
    {
        RunReloadCases();
        for (UINT64 number = 0; number < m_rPlan.sequences && GoesOn(); ++number)
        {
            const UINT64 seed = m_rPlan.seed + number;
            calls             = fmt::format("the sequence of seed {}:\n", seed);
            RandomLife                     life(m_variants, m_logger, seed);
            const std::vector<std::string> faults = life.Run();
            End(faults, life.Frames());
            ++m_result.sequences;
            Report();
        }
        return m_result;
    }

private:
    /// Each case twice: cameras are told of each reload, or of the last one only.
    VOID RunReloadCases()
    {
        constexpr UINT32 frames = 6;

        for (const ReloadCase& rCase : ReloadCases(m_variants.Modules().size()))
        {
            for (const bool isEachTold : {false, true})
            {
                if (m_result.reloadCases == m_rPlan.reloadCases || !GoesOn())
                {
                    return;
                }
                calls = fmt::format("the reloads '{}':\n", rCase.name);
                CameraLife life(m_variants, m_logger, calls);
                life.RunFrames(frames);
                life.Reload(rCase.files, isEachTold);
                life.RunFrames(frames);
                const std::vector<std::string> faults = life.Judge(true);
                End(faults, life.Frames());
                ++m_result.reloadCases;
            }
        }
    }

    bool GoesOn() const
    {
        return m_result.faults.empty() && !(m_rPlan.isStopped && m_rPlan.isStopped());
    }

    VOID End(const std::vector<std::string>& rFaults, UINT64 frames)
    {
        m_result.frames += frames;
        if (!rFaults.empty())
        {
            m_result.faults.push_back(fmt::format("{}\nafter {}", fmt::join(rFaults, "\n"), calls));
        }
    }

    VOID Report() const
    {
        constexpr UINT64 every = 100;
        if (m_rPlan.progress && m_result.sequences % every == 0)
        {
            m_rPlan.progress(fmt::format("{} sequences, {} frames\n", m_result.sequences, m_result.frames));
        }
    }

    const SequencePlan& m_rPlan;
    const StatsLogger   m_logger;
    const DeathWatch    m_watch;
    TuningVariants      m_variants;
    SequenceResult      m_result;
};

}  // namespace

SequenceResult RunSequences(const SequencePlan& rPlan, StatsLogger logger)
{
    return SequenceRun(rPlan, logger).Run();
}

}  // namespace kirosoak
