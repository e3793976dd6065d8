#include "tools/tuningcheck/rules/mapprocessors.h"

#include <fmt/format.h>

#include "schema/kiroexternalmapprocessor.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using kiroexternalmapprocessor::ExternalMapProcessorType;

VOID CheckShares(const ExternalMapProcessorType& rProcessor, const RecordJudge& rJudge)
{
    if (rProcessor.enable == FALSE)
    {
        return;
    }
    const std::string expected = fmt::format("{} or less (share), the validGridRatio", rProcessor.validGridRatio);
    if (rProcessor.invalidGridRatio > rProcessor.validGridRatio)
    {
        rJudge.Error("invalidGridRatio", fmt::format("is {}", rProcessor.invalidGridRatio), expected,
                     "otherwise a map that is just usable is given up at once");
    }
    if (rProcessor.timeoutGridRatio > rProcessor.validGridRatio)
    {
        rJudge.Error("timeoutGridRatio", fmt::format("is {}", rProcessor.timeoutGridRatio), expected,
                     "otherwise usable maps count as gone");
    }
    if (rProcessor.input.dataIDWeight2D == rProcessor.output.dataIDWeight2D)
    {
        rJudge.Error("output", fmt::format("is table {}, the input", rProcessor.output.dataIDWeight2D),
                     "a table of its own", "the processor would read what it has written");
    }
}

}  // namespace

VOID CheckMapProcessors(const ModulePlace& rModule, Findings& rFindings)
{
    JudgeEach<ExternalMapProcessorType>(rModule, rFindings, CheckShares);
}

}  // namespace tuningcheck
