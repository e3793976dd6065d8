#include "tools/kirosim/controlcheck.h"

#include <fmt/format.h>

namespace kirosim
{

namespace
{

/// A start, a bracket and a picture with flash go without metering for less.
constexpr UINT64 FramesWithoutMax = 30;

}  // namespace

VOID ControlCheck::Add(Count& rCount, bool isWorking)
{
    rCount.frames += isWorking ? 1 : 0;
    rCount.since = isWorking ? 0 : rCount.since + 1;
}

VOID ControlCheck::Add(const KiroHostFrame& rFrame)
{
    const KIROMeteringOutput& rMetering   = rFrame.metering;
    const bool                hasAnalyzer = rFrame.analyzersRun > 0;
    const bool                hasTarget =
        rMetering.bIsMeteringSkipped == FALSE && rFrame.luma >= 0.0f && rMetering.exposures[AECAlgoExposureSafe] > 0;
    // A lock or a manual exposure is kept to, which is control as well.
    const bool hasConverged =
        rFrame.convergence.bIfConvProcRun == TRUE || rFrame.convergence.bIsConvTargetFixed == TRUE;
    Add(m_analyzers, hasAnalyzer);
    Add(m_targets, hasTarget);
    Add(m_convergence, hasConverged);
    m_controlled += (hasAnalyzer && hasTarget && hasConverged) ? 1 : 0;
    ++m_frames;
}

std::string ControlCheck::Fault() const
{
    const struct
    {
        const CHAR*  pText;
        const Count& rCount;
    } stages[] = {{"no analyzer ran", m_analyzers},
                  {"metering yielded nothing", m_targets},
                  {"convergence did not run", m_convergence}};
    // The first one alone: the others follow from it.
    for (const auto& rStage : stages)
    {
        if (rStage.rCount.frames == 0 && m_frames > 0)
        {
            return fmt::format("{} in any frame", rStage.pText);
        }
        if (rStage.rCount.since > FramesWithoutMax)
        {
            return fmt::format("{} in the last {} frames", rStage.pText, rStage.rCount.since);
        }
    }
    return {};
}

std::string ControlCheck::Format(const CHAR* pCamera) const
{
    const std::string fault = Fault();
    return fault.empty() ? fault : fmt::format("{}no control: {}\n", pCamera, fault);
}

}  // namespace kirosim
