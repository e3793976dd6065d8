#include "tools/kirosoak/soak.h"

#include <fmt/format.h>

#include "tools/heapwatch/heapwatch.h"
#include "tools/kirosim/loadedtuning.h"
#include "tools/kirosoak/residentmemory.h"
#include "tools/kirosoak/soakcamera.h"

namespace kirosoak
{

namespace
{

/// The first lap has fresh cameras only, the second is the measure for those that go on, and of memory.
constexpr UINT64 MinLaps     = 3;
constexpr UINT64 MeasuredLap = 2;

/// The function table of an instance stays allocated, since hosts may still hold its address: these many bytes.
constexpr INT64 HeapPerCamera = 296;

/// The histories of cameras fill with pictures, up to a length.
constexpr INT64 MaxHeapGrowthPerStore = INT64{8} << 10;

/// Freed blocks come in pieces for a while before their pages can go.
constexpr INT64 MaxResidentGrowth = INT64{16} << 20;

class Endurance
{
public:
    Endurance(const SoakPlan& rPlan, StatsLogger logger) : m_rPlan(rPlan), m_logger(logger), m_resident(0), m_cameras(0)
    {
        for (const std::string& rPath : rPlan.scenes)
        {
            m_places.push_back(
                {rPath,
                 kirosim::ReadScene(rPath, ""),
                 std::make_unique<kirosim::LoadedTuning>(rPlan.tuningFile, true, kirosim::LoadedTuning::Source::File),
                 nullptr,
                 {},
                 {}});
            if (m_places.back().pTuning->Manager().GetLiveTuningPort() == 0)
            {
                throw std::runtime_error("no port is free for live tuning");
            }
        }
    }

    SoakResult Run()
    {
        while (m_result.faults.empty() && (m_result.laps < MinLaps || m_result.frames < m_rPlan.frames))
        {
            RunLap();
            if (m_result.isStopped)
            {
                return m_result;
            }
            ++m_result.laps;
            JudgeMemory();
            if (m_rPlan.progress)
            {
                m_rPlan.progress(fmt::format("lap {}: {} frames, heap {:+} bytes, resident {:+} bytes\n", m_result.laps,
                                             m_result.frames, m_result.heapGrowth, m_result.residentGrowth));
            }
        }
        if (m_result.modeEffects == 0)
        {
            m_result.faults.push_back("no change of modes changed anything");
        }
        return m_result;
    }

private:
    /// A scene, its camera, and what laps must come to. Each has a store of its own: between two reloads of a store
    /// every camera on it must run, lest the records of its last frame go.
    struct Place
    {
        std::string                            name;
        kirosim::Scene                         scene;
        std::unique_ptr<kirosim::LoadedTuning> pTuning;
        std::unique_ptr<SoakCamera>            pCamera;
        std::optional<UINT64>                  freshLap;  ///< sum of a camera's first one
        std::optional<UINT64>                  laterLap;  ///< sum of all others
    };

    VOID RunLap()
    {
        // Another scene with each lap but the first gets a new camera, so that all others go on.
        if (m_result.laps > 0)
        {
            m_places[(m_result.laps - 1) % m_places.size()].pCamera.reset();
        }
        for (Place& rPlace : m_places)
        {
            const bool isFresh = rPlace.pCamera == nullptr;
            if (isFresh)
            {
                rPlace.pCamera = std::make_unique<SoakCamera>(rPlace.scene, rPlace.name, *rPlace.pTuning, m_logger);
                m_result.cameras += (rPlace.scene.pSecond == nullptr) ? 1 : 2;
            }
            const UINT64 sum = rPlace.pCamera->RunLap(m_rPlan.isStopped, m_result);
            if (m_result.isStopped)
            {
                return;
            }
            std::optional<UINT64>& rExpected = isFresh ? rPlace.freshLap : rPlace.laterLap;
            if (rExpected.value_or(sum) != sum)
            {
                m_result.faults.push_back(fmt::format("{}: lap {} is not like others of a camera that {}", rPlace.name,
                                                      m_result.laps + 1, isFresh ? "is new" : "goes on"));
            }
            rExpected = sum;
        }
    }

    VOID JudgeMemory()
    {
        if (m_result.laps <= MeasuredLap)
        {
            heapwatch::Start();
            m_resident = ResidentBytes();
            m_cameras  = m_result.cameras;
        }
        const INT64 known       = HeapPerCamera * static_cast<INT64>(m_result.cameras - m_cameras);
        m_result.heapGrowth     = heapwatch::IsCounting() ? heapwatch::Read().kept - known : 0;
        m_result.residentGrowth = ResidentBytes() - m_resident;
        for (const auto& [pName, growth, allowance] :
             {std::tuple{"heap", m_result.heapGrowth, MaxHeapGrowthPerStore * static_cast<INT64>(m_places.size())},
              std::tuple{"resident memory", m_result.residentGrowth, MaxResidentGrowth}})
        {
            if (growth > allowance)
            {
                m_result.faults.push_back(fmt::format("the {} has grown by {} bytes since lap {}, {} are allowed",
                                                      pName, growth, MeasuredLap, allowance));
            }
        }
    }

    const SoakPlan&    m_rPlan;
    const StatsLogger  m_logger;
    std::vector<Place> m_places;
    SoakResult         m_result;
    INT64              m_resident;  ///< at the end of the measured lap
    UINT64             m_cameras;   ///< created by then
};

}  // namespace

SoakResult Soak(const SoakPlan& rPlan, StatsLogger logger)
{
    return Endurance(rPlan, logger).Run();
}

}  // namespace kirosoak
