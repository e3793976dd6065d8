#include "tools/kirosim/objectinput.h"

#include "tools/kirosim/scenevalues.h"

namespace kirosim
{

namespace
{

const SceneTable<PathPoint>& PathPointTable()
{
    static const SceneTable<PathPoint> table(
        "a point {time, x, y}", "member of a path's point",
        {{"time", Number(&PathPoint::time, 0.0, SceneTimeMax), "s", "when the object's centre is there"},
         {"x", Number(&PathPoint::x, -1.0, 2.0), "share of the frame's width",
          "place of the centre, from the left edge"},
         {"y", Number(&PathPoint::y, -1.0, 2.0), "share of the frame's height",
          "place of the centre, from the upper edge"}});
    return table;
}

}  // namespace

const SceneTable<SceneObject>& ObjectTable()
{
    static const SceneTable<SceneObject> table(
        "an object", "member of an object",
        {{"contrastEV", Number(&SceneObject::contrastEV, -20.0, 20.0), "EV", "brightness against what it hides"},
         {"size", Number(&SceneObject::size, 0.0, 1.0), "share of the frame's sides", "length of its sides"},
         {"path",
          List(&SceneObject::path, "points {time, x, y}", PathPointTable,
               {&PathPoint::time, false, "points of a path must stand in ascending time"}),
          "", "where it is; between points it moves straight, and without any it stays in the middle"},
         {"appears", Number(&SceneObject::appears, 0.0, SceneTimeMax), "s", "from when on it is there"},
         {"goes", Number(&SceneObject::goes, 0.0, SceneTimeMax), "s", "from when on it is gone"}});
    return table;
}

}  // namespace kirosim
