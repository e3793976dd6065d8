#include "tools/kirosim/figures/spans.h"

#include <algorithm>
#include <cmath>

#include "tools/kirosim/figures/scenechanges.h"

namespace kirosim
{

namespace
{

/// Walks along the frames of a scene and says where a stretch begins.
class SpanFinder
{
public:
    SpanFinder(const Scene& rScene, const std::vector<SceneInstant>& rFrames,
               const std::optional<SceneInstant>& rBefore, SpanCauses causes)
        : m_rScene(rScene), m_rFrames(rFrames), m_rBefore(rBefore), m_isAll(causes == SpanCauses::All)
    {
    }

    /// @param index not the first frame
    bool IsBegin(size_t index) const
    {
        return IsMoving(index) != IsMoving(index - 1) || IsStep(index) || IsCut(index) || IsStart(index) ||
               IsEvent(index);
    }

    SpanKind KindAt(size_t index) const
    {
        if (Before(index) == nullptr || IsStart(index))
        {
            return SpanKind::Start;
        }
        if (IsMoving(index))
        {
            const DOUBLE time   = m_rFrames[index].time;
            const bool   isTurn = (m_isAll && IsObjectMoving(m_rScene, time)) || IsCameraMoving(m_rScene, time);
            return isTurn ? SpanKind::Turn : SpanKind::Ramp;
        }
        if (IsStep(index) || (index > 0 && (IsCut(index) || IsBlink(index))))
        {
            return SpanKind::Step;
        }
        return (index > 0 && IsEvent(index)) ? SpanKind::Event : SpanKind::Rest;
    }

    /// Up to when what is seen may change and still show in a frame: a turn shows in rows that are read later.
    DOUBLE SeenUpTo(size_t index) const
    {
        const DOUBLE time = m_rFrames[index].time;
        return (KindAt(index) == SpanKind::Turn && IsCameraMoving(m_rScene, time)) ? time + m_rScene.sensor.readout
                                                                                   : time;
    }

    DOUBLE StepEV(size_t index) const
    {
        const SceneInstant* pBefore = Before(index);
        return (pBefore != nullptr) ? m_rFrames[index].lightEV - pBefore->lightEV : 0.0;
    }

private:
    /// @return null for the first frame of all
    const SceneInstant* Before(size_t index) const
    {
        if (index > 0)
        {
            return &m_rFrames[index - 1];
        }
        return m_rBefore.has_value() ? &*m_rBefore : nullptr;
    }

    /// The first frame of all is where things move from.
    bool IsMoving(size_t index) const
    {
        const DOUBLE time = m_rFrames[index].time;
        return Before(index) != nullptr &&
               (IsLightMoving(m_rScene, time) || (m_isAll && IsObjectMoving(m_rScene, time)));
    }

    bool IsStep(size_t index) const
    {
        return Before(index) != nullptr && !IsMoving(index) && std::abs(StepEV(index)) >= StepMinEV;
    }

    /// @return whether a time lies behind the frame before, and not behind this one
    bool IsDue(DOUBLE time, size_t index) const
    {
        return time > m_rFrames[index - 1].time && time <= m_rFrames[index].time;
    }

    bool IsCut(size_t index) const
    {
        return m_rScene.panorama.has_value() &&
               m_rScene.panorama->HasCut(m_rFrames[index - 1].time, m_rFrames[index].time);
    }

    bool IsBlink(size_t index) const
    {
        return m_isAll && m_rScene.object.has_value() &&
               (IsDue(m_rScene.object->appears, index) || IsDue(m_rScene.object->goes, index));
    }

    bool IsStart(size_t index) const
    {
        return m_isAll && m_rFrames[index].isStart;
    }

    /// What happens while the scene moves does not cut that in two.
    bool IsEvent(size_t index) const
    {
        if (!m_isAll || IsMoving(index))
        {
            return false;
        }
        const auto isDue = [this, index](const Event& rEvent)
        { return !rEvent.isForSecond && IsDue(rEvent.time, index); };
        return IsBlink(index) || (m_rScene.ripple.hertz > 0.0 && IsDue(m_rScene.ripple.start, index)) ||
               std::any_of(m_rScene.events.begin(), m_rScene.events.end(), isDue);
    }

    const Scene&                       m_rScene;
    const std::vector<SceneInstant>&   m_rFrames;
    const std::optional<SceneInstant>& m_rBefore;
    bool                               m_isAll;
};

/// The last change up to a time: frames show it a little later.
DOUBLE ChangeBefore(const std::vector<DOUBLE>& rChanges, DOUBLE time)
{
    const auto next = std::upper_bound(rChanges.begin(), rChanges.end(), time);
    return (next == rChanges.begin()) ? time : *(next - 1);
}

}  // namespace

std::vector<SceneSpan> SpansOf(const Scene& rScene, const std::vector<SceneInstant>& rFrames,
                               const std::optional<SceneInstant>& rBefore, SpanCauses causes)
{
    const SpanFinder          finder(rScene, rFrames, rBefore, causes);
    const std::vector<DOUBLE> changes = ChangeTimes(rScene);
    std::vector<SceneSpan>    spans;
    size_t                    begin = 0;
    for (size_t index = 1; index <= rFrames.size(); ++index)
    {
        if (index == rFrames.size() || finder.IsBegin(index))
        {
            spans.push_back({finder.KindAt(begin), ChangeBefore(changes, finder.SeenUpTo(begin)), finder.StepEV(begin),
                             begin, index});
            begin = index;
        }
    }
    return spans;
}

std::optional<SceneSpan> StandstillOf(const SceneSpan& rSpan, const std::vector<SceneInstant>& rFrames)
{
    constexpr DOUBLE second = 1.0;
    const DOUBLE     from   = rFrames[rSpan.begin].time + second;
    size_t           begin  = rSpan.begin;
    while (begin < rSpan.end && rFrames[begin].time < from)
    {
        ++begin;
    }
    constexpr DOUBLE rounding = 1e-6;
    const size_t     behind   = std::min(rSpan.end, rFrames.size() - 1);
    if (begin == rSpan.end || rFrames[behind].time < from + second - rounding)
    {
        return std::nullopt;
    }
    return SceneSpan{SpanKind::Rest, rSpan.at + second, 0.0, begin, rSpan.end};
}

}  // namespace kirosim
