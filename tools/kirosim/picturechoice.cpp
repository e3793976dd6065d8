#include "tools/kirosim/picturechoice.h"

namespace kirosim
{

std::string PictureChoice::ReasonFor(const FrameRecord& rRecord, const FrameMoment& rMoment)
{
    const bool isFirst    = m_isFirst;
    const bool hasSettled = rRecord.decided.convergence.bSettle == TRUE;
    const bool isNewRest  = m_isRestAwaited && m_hasMoved && hasSettled;
    m_isFirst             = false;
    m_isRestAwaited       = (m_isRestAwaited && !isNewRest) || !rMoment.begins.empty();
    m_hasMoved            = rMoment.begins.empty() && (m_hasMoved || !hasSettled);
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
    if (isNewRest)
    {
        return "settled";
    }
    return (m_every.has_value() && (rRecord.frame - 1) % *m_every == 0) ? "on the way" : "";
}

}  // namespace kirosim
