#include "tools/kirosoak/modechange.h"

#include "tools/tuningfile/modepath.h"

namespace kirosoak
{

namespace
{

std::vector<TuningMode> SelectorsOf(kirosim::Camera& rCamera)
{
    const StatsTuningData& rData  = rCamera.Host().Tuning();
    const auto*            pFirst = static_cast<const TuningMode*>(rData.pTuningModeSelectors);
    return {pFirst, pFirst + rData.numSelectors};
}

}  // namespace

ModeChange::ModeChange(kirosim::Camera& rCamera, kirosim::LoadedTuning& rTuning)
    : m_rCamera(rCamera), m_rTuning(rTuning), m_before{}, m_changed{}
{
}

VOID ModeChange::Make()
{
    m_before                       = m_rCamera.Host().Tuning();
    std::vector<TuningMode> others = SelectorsOf(m_rCamera);
    for (TuningMode& rMode : others)
    {
        if (rMode.mode == ModeType::Usecase)
        {
            const bool isVideo    = rMode.subMode.usecase == ModeUsecaseSubModeType::Video;
            rMode.subMode.usecase = isVideo ? ModeUsecaseSubModeType::Snapshot : ModeUsecaseSubModeType::Video;
        }
    }
    m_changed = m_rTuning.Data(others);
    m_rCamera.Host().SetTuning(m_changed);
}

VOID ModeChange::Undo()
{
    if (m_rCamera.Host().Tuning().pTuningModeSelectors == m_changed.pTuningModeSelectors)
    {
        m_rCamera.Host().SetTuning(m_before);
    }
}

std::string ModePathOf(kirosim::Camera& rCamera)
{
    std::string path;
    for (const TuningMode& rMode : SelectorsOf(rCamera))
    {
        path += (path.empty() ? "" : "|") +
                tuningfile::FormatModeName({static_cast<UINT16>(rMode.mode), rMode.subMode.value});
    }
    return path;
}

}  // namespace kirosoak
