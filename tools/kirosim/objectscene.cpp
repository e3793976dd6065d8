#include "tools/kirosim/objectscene.h"

namespace kirosim
{

bool SceneObject::Covers(DOUBLE time, DOUBLE x, DOUBLE y) const
{
    return IsThere(time) && CoversFrom(CentreAt(time), x, y);
}

PathPoint SceneObject::CentreAt(DOUBLE time) const
{
    if (path.empty())
    {
        return {time, 0.5, 0.5};
    }
    size_t next = 0;
    while (next < path.size() && path[next].time <= time)
    {
        ++next;
    }
    if (next == 0 || next == path.size())
    {
        return path[(next == 0) ? 0 : next - 1];
    }
    const PathPoint& rFrom = path[next - 1];
    const PathPoint& rTo   = path[next];
    const DOUBLE     share = (time - rFrom.time) / (rTo.time - rFrom.time);
    return {time, rFrom.x + share * (rTo.x - rFrom.x), rFrom.y + share * (rTo.y - rFrom.y)};
}

}  // namespace kirosim
