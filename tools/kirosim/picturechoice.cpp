#include "tools/kirosim/picturechoice.h"

namespace kirosim
{

std::string PictureChoice::ReasonFor(const FrameRecord& rRecord, const FrameMoment& rMoment)
{
    const bool isFirst     = m_isFirst;
    const bool isSettled   = rRecord.decided.convergence.bSettle == TRUE;
    const bool isUnsettled = m_isUnsettled || !rMoment.begins.empty();
    m_isFirst              = false;
    m_isUnsettled          = isUnsettled && !isSettled;
    if (isFirst)
    {
        return "start";
    }
    if (!rMoment.begins.empty())
    {
        return rMoment.begins;
    }
    if (rRecord.flash.shot.has_value())
    {
        return "picture with flash";
    }
    if (rRecord.isPictureShown)
    {
        return "picture of a bracket";
    }
    if (rMoment.isBefore)
    {
        return "before";
    }
    if (isUnsettled && isSettled)
    {
        return "settled";
    }
    return (m_every.has_value() && (rRecord.frame - 1) % *m_every == 0) ? "on the way" : "";
}

}  // namespace kirosim
