#include "tools/kirosim/monitorreport.h"

#include <fmt/format.h>

namespace kirosim
{

VOID MonitorReport::Add(const FrameRecord& rRecord)
{
    const KIROExtensionOutput& rOutput = rRecord.decided.extension;
    const auto                 flags   = MonitoredFlagsOf(rOutput);
    for (size_t flag = 0; flag < flags.size(); ++flag)
    {
        AddFlag(m_flags[flag], flags[flag], rRecord);
    }
    if (rOutput.snapshot3HDRTriggers.bIs3HDRSnapshot == TRUE && !m_HDR3Frame.has_value())
    {
        m_HDR3Frame = rRecord.frame;
    }
    if (rRecord.decided.convergence.bSettle == TRUE && rOutput.histStretchData.enable == TRUE)
    {
        m_stretch = StretchResult{rRecord.sceneTime, rOutput.histStretchData.clamp, rOutput.histStretchData.scaling};
    }
}

VOID MonitorReport::AddFlag(Flag& rFlag, bool isSet, const FrameRecord& rRecord)
{
    if (isSet != rFlag.isSet)
    {
        rFlag.changes.push_back({rRecord.sceneTime, rRecord.decided.luxIndex, isSet});
        rFlag.isSet = isSet;
    }
}

std::string MonitorReport::Format() const
{
    std::string text;
    for (size_t flag = 0; flag < m_flags.size(); ++flag)
    {
        text += fmt::format("{}:", MonitoredFlagNames[flag]);
        for (const FlagChange& rChange : m_flags[flag].changes)
        {
            text += fmt::format(" {} at lux index {:.1f} ({:.2f} s){}", rChange.isRise ? "on" : "off", rChange.luxIndex,
                                rChange.time, (&rChange == &m_flags[flag].changes.back()) ? "" : ",");
        }
        text += m_flags[flag].changes.empty() ? " never\n" : "\n";
    }
    text += m_HDR3Frame.has_value() ? fmt::format("criteria of three exposures hold from frame {} on\n", *m_HDR3Frame)
                                    : std::string("criteria of three exposures never hold\n");
    text += m_stretch.has_value()
                ? fmt::format("histogram stretch in the last settled frame ({:.2f} s): clamp {:.2f}, scaling {:.3f}\n",
                              m_stretch->time, m_stretch->clamp, m_stretch->scaling)
                : std::string("histogram stretch: off, or never settled\n");
    return text;
}

TextItem MonitorReport::Facts() const
{
    const auto changeFacts = [](const FlagChange& rChange)
    {
        return JsonObject(
            {{"on", Json(rChange.isRise)}, {"luxIndex", Json(rChange.luxIndex)}, {"timeS", Json(rChange.time)}});
    };
    TextNode flags = TextNode::Map();
    for (size_t flag = 0; flag < m_flags.size(); ++flag)
    {
        flags.Add(MonitoredFlagNames[flag], JsonList(m_flags[flag].changes, changeFacts));
    }
    TextNode facts = JsonObject({{"flags", flags}, {"threeExposuresFromFrame", Json(m_HDR3Frame)}});
    if (m_stretch.has_value())
    {
        facts.Add("histogramStretch", JsonObject({{"timeS", Json(m_stretch->time)},
                                                  {"clamp", Json(m_stretch->clamp)},
                                                  {"scaling", Json(m_stretch->scaling)}}));
    }
    return {"monitors", facts};
}

}  // namespace kirosim
