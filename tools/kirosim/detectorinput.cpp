#include "tools/kirosim/detectorinput.h"

#include "tools/kirosim/scenevalues.h"

namespace kirosim
{

namespace
{

const SceneTable<SceneChangeDetector>& DetectorTable()
{
    static const SceneTable<SceneChangeDetector> table(
        "a detector {id, hosts}", "member of a detector",
        {{"id", Whole(&SceneChangeDetector::id, 0, ~0U), "", "the detector's number in the tuning"},
         {"hosts", Flag(&SceneChangeDetector::isHosts), "", "whether the host alone heeds it, and rebases it"}});
    return table;
}

}  // namespace

const SceneTable<DetectorScene>& DetectorsTable()
{
    static const SceneTable<DetectorScene> table(
        "detectors {watch, pass}", "member of detectors",
        {{"watch", List(&DetectorScene::watched, "detectors {id, hosts}", DetectorTable), "",
          "detectors that the summary tells of"},
         {"pass",
          Numbers<DetectorScene>(2, 0.0, SceneTimeMax,
                                 [](DetectorScene& rScene, const std::vector<DOUBLE>& rTimes) {
                                     rScene.pass = PassInterval{rTimes[0], rTimes[1]};
                                 }),
          "s", "begin and end of the time over which the exposure should not move"}});
    return table;
}

}  // namespace kirosim
