#include "tools/kirosim/replaycommand.h"

#include <fmt/format.h>
#include <optional>
#include <stdexcept>

#include "tools/kirosim/loadedtuning.h"
#include "tools/recording/replayer.h"

namespace kirosim
{

namespace
{

/// With --all.
constexpr size_t DifferenceMax = 100;

}  // namespace

bool Replay(const ReplayOptions& rOptions, StatsLogger logger)
{
    std::optional<LoadedTuning> tuning;  // outlives the replayer
    recording::ReplayPlan       plan;
    plan.logger        = logger;
    plan.differenceMax = rOptions.isAll ? DifferenceMax : 1;
    plan.tuning        = [&](const recording::TuningReference& rRecorded) -> VOID*
    {
        tuning.emplace(rOptions.tuning.empty() ? rRecorded.path : rOptions.tuning);
        const recording::TuningReference& rPresent = tuning->Reference();
        if (!rOptions.isForced && !rPresent.HasSameContent(rRecorded))
        {
            throw std::runtime_error(fmt::format(
                "{}: not the tuning of the recording, which is {} (checksum {:08x}, not {:08x}); --force takes it",
                rPresent.path, rRecorded.path, rRecorded.checksum, rPresent.checksum));
        }
        return &tuning->Manager();
    };
    recording::Replayer           replayer(rOptions.file, plan);
    const recording::ReplayResult result = replayer.Run();
    for (const std::string& rDifference : result.differences)
    {
        fmt::print("{}\n", rDifference);
    }
    if (!result.damage.empty())
    {
        fmt::print(stderr, "kirosim: {}: {}\n", rOptions.file, result.damage);
    }
    const std::string verdict = result.differences.empty() ? "the same"
                                                           : fmt::format("{} difference{}", result.differences.size(),
                                                                         (result.differences.size() > 1) ? "s" : "");
    fmt::print("replayed {} frames, {} calls: {}\n", result.frames, result.calls, verdict);
    return result.differences.empty() && result.damage.empty();
}

}  // namespace kirosim
