#include "tools/kirosim/replaycommand.h"

#include <deque>
#include <fmt/format.h>
#include <optional>
#include <stdexcept>

#include "tools/kirosim/loadedtuning.h"
#include "tools/kirosim/replaypage.h"
#include "tools/program/commandfiles.h"
#include "tools/program/standardstreams.h"
#include "tools/recording/replayer.h"

namespace kirosim
{

namespace
{

/// With --all.
constexpr size_t DifferenceMax = 100;

/// The tunings of a recording, one after another.
class ReplayedTunings
{
public:
    explicit ReplayedTunings(const ReplayOptions& rOptions) : m_rOptions(rOptions)
    {
    }

    /// @throws std::runtime_error if it cannot be read, or is another one
    VOID* Load(const recording::TuningReference& rRecorded)
    {
        const recording::TuningReference& rPresent = Read(rRecorded.path).Reference();
        if (!m_rOptions.isForced && !rPresent.HasSameContent(rRecorded))
        {
            if (rPresent.path == rRecorded.path)
            {
                throw std::runtime_error(
                    fmt::format("{}: has changed since the recording (checksum {:08x}, then {:08x}); --force takes it",
                                rPresent.path, rPresent.checksum, rRecorded.checksum));
            }
            throw std::runtime_error(fmt::format(
                "{}: not the tuning of the recording, which is {} (checksum {:08x}, not {:08x}); --force takes it",
                rPresent.path, rRecorded.path, rRecorded.checksum, rPresent.checksum));
        }
        return &m_tunings.back().Manager();
    }

private:
    LoadedTuning& Read(const std::string& rRecordedPath)
    {
        if (m_tunings.size() < m_rOptions.tunings.size())
        {
            return m_tunings.emplace_back(m_rOptions.tunings[m_tunings.size()]);
        }
        try
        {
            return m_tunings.emplace_back(rRecordedPath);
        }
        catch (const std::runtime_error& rError)
        {
            throw std::runtime_error(
                fmt::format("{} (the path is the recording's; --tuning names another)", rError.what()));
        }
    }

    const ReplayOptions&     m_rOptions;
    std::deque<LoadedTuning> m_tunings;
};

}  // namespace

bool Replay(const ReplayOptions& rOptions, StatsLogger logger)
{
    program::CommandFiles files;
    files.Reads("the recording", rOptions.file);
    files.Reads("--against", rOptions.against);
    files.Writes("--report", rOptions.report);
    files.Check();
    std::optional<ReplayPage> page;
    if (!rOptions.report.empty())
    {
        page.emplace(rOptions);
    }
    ReplayedTunings       tunings(rOptions);  // outlive the replayer
    recording::ReplayPlan plan;
    plan.logger        = logger;
    plan.differenceMax = rOptions.isAll ? DifferenceMax : 1;
    plan.tuning        = [&](const recording::TuningReference& rRecorded) { return tunings.Load(rRecorded); };
    if (page.has_value())
    {
        plan.visit = [&page](const recording::ReplayedFrame& rFrame) { page->Add(rFrame); };
    }
    recording::Replayer           replayer(rOptions.file, plan);
    const recording::ReplayResult result = replayer.Run();
    for (const std::string& rDifference : result.differences)
    {
        fmt::print(program::IsStandardStream(rOptions.report) ? stderr : stdout, "{}\n", rDifference);
    }
    if (!result.damage.empty())
    {
        fmt::print(stderr, "kirosim: {}: {}\n", rOptions.file, result.damage);
    }
    if (page.has_value())
    {
        page->Commit();
    }
    const std::string verdict = result.differences.empty() ? "the same"
                                                           : fmt::format("{} difference{}", result.differences.size(),
                                                                         (result.differences.size() > 1) ? "s" : "");
    fmt::print(program::IsStandardStream(rOptions.report) ? stderr : stdout, "replayed {} frames, {} calls: {}\n",
               result.frames, result.calls, verdict);
    return result.differences.empty() && result.damage.empty();
}

}  // namespace kirosim
