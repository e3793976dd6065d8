#include "tools/tuningcheck/checkedfile.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/program/standardstreams.h"
#include "tools/tuningcheck/accepted.h"
#include "tools/tuningfile/binaryinput.h"
#include "tools/tuningfile/check.h"
#include "tools/tuningfile/files.h"
#include "tools/tuningfile/inputerror.h"
#include "tools/tuningfile/textinput.h"

namespace tuningcheck
{

namespace
{

std::string Counted(UINT32 count, std::string_view one, std::string_view many)
{
    return fmt::format("{} {}", count, (count == 1) ? one : many);
}

std::vector<std::string> AcceptedBy(const tuningfile::CheckReport& rReport, const std::string& rPath)
{
    if (!rReport.accepted)
    {
        throw tuningfile::InputError(fmt::format("{}: {}", program::InputName(rPath), rReport.reason));
    }
    return rReport.lines;
}

}  // namespace

UINT32 Count(const std::vector<Finding>& rFindings, Severity severity)
{
    return static_cast<UINT32>(std::count_if(rFindings.begin(), rFindings.end(),
                                             [severity](const Finding& rFinding)
                                             { return rFinding.severity == severity; }));
}

std::string Summary(const std::vector<Finding>& rFindings)
{
    const UINT32 errors = Count(rFindings, Severity::Error);
    const UINT32 advice = Count(rFindings, Severity::Advice);
    std::string  text   = (errors != 0) ? Counted(errors, "error", "errors") : "";
    if (advice != 0)
    {
        text += (errors != 0) ? " and " : "";
        text += Counted(advice, "piece of advice", "pieces of advice");
    }
    return text;
}

std::vector<Finding> JudgeText(const tuningfile::Tuning& rTuning, std::string_view text,
                               const Surroundings& rSurroundings)
{
    std::vector<Finding>   findings = Judge(rTuning, rSurroundings);
    const std::set<UINT32> accepted = AcceptedLines(text);
    std::erase_if(findings,
                  [&accepted](const Finding& rFinding)
                  {
                      return rFinding.severity == Severity::Advice && rFinding.place.has_value() &&
                             accepted.contains(rFinding.place->line);
                  });
    return findings;
}

CheckedFile CheckFile(const std::string& rPath, const Surroundings& rSurroundings)
{
    if (tuningfile::IsText(rPath))
    {
        const std::string        text   = tuningfile::ReadText(rPath);
        const tuningfile::Tuning tuning = tuningfile::ParseText(text, program::InputName(rPath));
        return {AcceptedBy(tuningfile::CheckTuning(tuning), rPath), JudgeText(tuning, text, rSurroundings)};
    }
    std::vector<std::string> lines = AcceptedBy(tuningfile::CheckParameterFile(rPath), rPath);
    return {
        std::move(lines),
        Judge(tuningfile::ReadBinary(tuningfile::ReadBytes(rPath), program::InputName(rPath)).tuning, rSurroundings)};
}

}  // namespace tuningcheck
