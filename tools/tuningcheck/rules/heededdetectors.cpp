#include "tools/tuningcheck/rules/heededdetectors.h"

#include <algorithm>

#include <fmt/format.h>

#include "schema/kirodbconvactivescd.h"
#include "schema/kiroscenechangedetector.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using kirodbconvactivescd::DBConvActiveSCDPayload;
using kiroscenechangedetector::AECSCDType;
using kiroscenechangedetector::KIROSceneChangeDetectorType;

VOID CheckHold(const AECSCDType& rDetector, const std::string& rInMode, const RecordJudge& rJudge)
{
    const std::string found = fmt::format("is {}", rDetector.SCDId);
    if (rDetector.enable == FALSE || rDetector.holdTimeConfig.enable == FALSE)
    {
        rJudge.Advise(
            "SCDID", found,
            fmt::format("a detector with enable and holdTimeConfig.enable, unlike {}{}", rDetector.SCDId, rInMode),
            "convergence never holds by this one");
    }
    else if (rDetector.priority > kiroscenechangedetector::ConvergenceStart)
    {
        rJudge.Advise("SCDID", found,
                      fmt::format("a detector that runs in MeteringStart or ConvergenceStart, unlike {}{}",
                                  rDetector.SCDId, rInMode),
                      "convergence holds a frame late by this one");
    }
}

}  // namespace

VOID CheckHeededDetectors(const ModeView& rView, Findings& rFindings)
{
    const ModulePlace* pModule    = rView.Find("kirodbconvactivescd");
    const auto*        pDetectors = rView.Get<KIROSceneChangeDetectorType>("kiroscenechangedetector");
    if (pModule == nullptr || pDetectors == nullptr)
    {
        return;
    }
    const auto        detectors = ListOf(pDetectors->scdBank, pDetectors->scdBankCount);
    const std::string inMode    = InMode(rView, pModule->mode);
    const auto        check     = [&](const DBConvActiveSCDPayload& rPayload, const RecordJudge& rJudge)
    {
        const auto isNamed = [&rPayload](const AECSCDType& rDetector) { return rDetector.SCDId == rPayload.SCDID; };
        if (rPayload.SCDID != 0 && std::count_if(detectors.begin(), detectors.end(), isNamed) == 1)
        {
            CheckHold(*std::find_if(detectors.begin(), detectors.end(), isNamed), inMode, rJudge);
        }
    };
    JudgeEach<DBConvActiveSCDPayload>(*pModule, rFindings, check);
}

}  // namespace tuningcheck
