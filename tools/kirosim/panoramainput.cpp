#include "tools/kirosim/panoramainput.h"

#include <filesystem>
#include <system_error>

#include "tools/kirosim/scenevalues.h"
#include "tools/panorama/mapinput.h"
#include "tools/tuningfile/inputerror.h"

using tuningfile::YamlEntry;

namespace kirosim
{

namespace
{

constexpr DOUBLE YawMax   = 1e6;   // degrees; a path may go around for long
constexpr DOUBLE PitchMax = 90.0;  // degrees
constexpr DOUBLE LuxMin   = 1e-3;
constexpr DOUBLE LuxMax   = 1e6;

/// What to do about a photograph that is not here; empty for any other file.
const CHAR* RemedyOf(const std::filesystem::path& rFile)
{
    std::error_code             ignored;
    const std::filesystem::path folder  = rFile.lexically_normal().parent_path();
    const bool                  isPhoto = folder.filename() == "lights" && folder.parent_path().filename() == "build";
    return (isPhoto && !std::filesystem::exists(rFile, ignored)) ? "; ./dev lights brings the photographs" : "";
}

/// Paths are seen from where the scene's file is.
SharedRadianceMap ReadFile(const SceneText& rText, const YamlEntry& rEntry)
{
    const std::filesystem::path scene(rText.Input().FileName());
    const std::filesystem::path file = scene.parent_path() / rText.Input().Scalar(rEntry.value, "a file");
    try
    {
        return panorama::SharedMap(file.string());
    }
    catch (const tuningfile::InputError& rFault)
    {
        rText.Input().Fail(rEntry.value, std::string(rFault.what()) + RemedyOf(file));
    }
}

const SceneTable<TurnPoint>& TurnPointTable()
{
    static const SceneTable<TurnPoint> table(
        "a point {time, yaw, pitch}", "member of a path's point",
        {{"time", Number(&TurnPoint::time, 0.0, SceneTimeMax), "s",
          "when the camera has turned so far; two points at one time are a jump"},
         {"yaw", Number(&TurnPoint::yaw, -YawMax, YawMax), "degrees",
          "turn to the right, in addition to the panorama's yaw; 720 has gone around twice"},
         {"pitch", Number(&TurnPoint::pitch, -2.0 * PitchMax, 2.0 * PitchMax), "degrees",
          "turn up, in addition to the panorama's pitch; no camera looks beyond straight up or down"}});
    return table;
}

const SceneTable<PanoramaCut>& PanoramaCutTable()
{
    static const SceneTable<PanoramaCut> table(
        "a cut {time, file}", "member of a cut",
        {{"time", Number(&PanoramaCut::time, 0.0, SceneTimeMax), "s", "when the camera is somewhere else"},
         {"file", Made(&PanoramaCut::pMap, ReadFile), "", "another panorama; without it only the direction jumps"},
         {"yaw", Number(&PanoramaCut::yaw, -YawMax, YawMax), "degrees", "the panorama's yaw from now on"},
         {"pitch", Number(&PanoramaCut::pitch, -PitchMax, PitchMax), "degrees", "the panorama's pitch from now on"},
         {"lux", Number(&PanoramaCut::lux, LuxMin, LuxMax), "lux", "light of the panorama from now on"},
         {"fade", Number(&PanoramaCut::fade, 0.0, SceneTimeMax), "s",
          "how long the one turns into the other; a cut begins with the one before done"}});
    return table;
}

const SceneTable<PanoramaScene>& PanoramaTable()
{
    constexpr DOUBLE                       fieldOfViewMax = 150.0;
    static const SceneTable<PanoramaScene> table(
        "a panorama", "member of a panorama",
        {{"file", Made(&PanoramaScene::pMap, ReadFile), "",
          "an equirectangular picture of linear light, OpenEXR or Radiance (.hdr); its path begins where the scene is"},
         {"yaw", Number(&PanoramaScene::yaw, -YawMax, YawMax), "degrees",
          "where the camera looks: to the right of the picture's middle"},
         {"pitch", Number(&PanoramaScene::pitch, -PitchMax, PitchMax), "degrees", "where it looks: above the horizon"},
         {"fieldOfView", Number(&PanoramaScene::fieldOfView, 1.0, fieldOfViewMax), "degrees",
          "what the frame shows across its width, which is 4/3 of its height"},
         {"lux", Number(&PanoramaScene::lux, LuxMin, LuxMax), "lux",
          "light of the whole sphere at 0 EV, by the mean of its logarithm; the scene's lux if it does not stand here"},
         {"path",
          List(&PanoramaScene::path, "points {time, yaw, pitch}", TurnPointTable,
               {&TurnPoint::time, true, "points of a path must stand in ascending time"}),
          "", "how the camera turns: evenly between points, and not before the first and after the last"},
         {"cuts",
          List(&PanoramaScene::cuts, "cuts {time, file}", PanoramaCutTable,
               {&PanoramaCut::time, false, "cuts must stand in ascending time"}),
          "", "from one panorama to the next"}});
    return table;
}

VOID RequireFile(const SceneText& rText, const YamlEntry& rEntry, Scene& rScene)
{
    if (rScene.panorama->pMap == nullptr)
    {
        rText.Input().Fail(rEntry.value, "a panorama wants a file");
    }
}

}  // namespace

SceneValue<Scene> PanoramaValue()
{
    return Then(Map(&Scene::panorama, PanoramaTable), RequireFile);
}

}  // namespace kirosim
