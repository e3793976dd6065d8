#include "tools/kirosim/outsideinput.h"

#include "tools/kirosim/scenevalues.h"

namespace kirosim
{

const SceneTable<OutsideMap>& OutsideMapTable()
{
    constexpr DOUBLE                    distanceMax = 1e4;
    static const SceneTable<OutsideMap> table(
        "a map", "member of a map",
        {{"kind", Choice(&OutsideMap::kind, {{"depth", MapKind::Depth}, {"segmentation", MapKind::Segmentation}}), "",
          "what its cells hold: distances, or 1 for the subject and 0 for the rest"},
         {"near", Number(&OutsideMap::near, 0.0, distanceMax), "m", "distance of the object"},
         {"far", Number(&OutsideMap::far, 0.0, distanceMax), "m", "distance of all else"},
         {"appears", Number(&OutsideMap::appears, 0.0, SceneTimeMax), "s", "from when on the source delivers"},
         {"goes", Number(&OutsideMap::goes, 0.0, SceneTimeMax), "s", "from when on it delivers no more"},
         {"targetLuma", Number(&OutsideMap::targetLuma, 1.0, 255.0), "luma of 255",
          "luma that the object should have"}});
    return table;
}

const SceneTable<GyroPoint>& GyroPointTable()
{
    constexpr DOUBLE                   shakeMax = 100.0;
    static const SceneTable<GyroPoint> table(
        "a point {time, rms}", "member of a gyro point",
        {{"time", Number(&GyroPoint::time, 0.0, SceneTimeMax), "s", "from when on the camera shakes so"},
         {"rms", Number(&GyroPoint::rms, 0.0, shakeMax), "rad/s",
          "root mean square of the shake, up to the next point"}});
    return table;
}

}  // namespace kirosim
