/// @file
/// A scene: light over space and time, the sensor that looks at it, and what the user does meanwhile.
#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "interface/aecalgoinput.h"
#include "parameters/tuningmode.h"
#include "tools/kirosim/bracketscene.h"
#include "tools/kirosim/camerasetup.h"
#include "tools/kirosim/detectorscene.h"
#include "tools/kirosim/flashscene.h"
#include "tools/kirosim/objectscene.h"
#include "tools/kirosim/outsidescene.h"
#include "tools/kirosim/panoramascene.h"
#include "tools/kirosim/startscene.h"

namespace kirosim
{

/// What the frame shows. EV are relative to the mean light.
enum class PatternKind
{
    Uniform,       ///< grey
    Natural,       ///< 4 x 4 blocks of different brightness with texture inside
    HighContrast,  ///< a bright part and a dark part
    Window,        ///< a bright window in a dark room
    Subject        ///< a dark subject in front of a brighter background
};

struct Pattern
{
    PatternKind kind       = PatternKind::Uniform;
    DOUBLE      contrastEV = 6.0;  ///< between the bright and the dark part; HighContrast, Window and Subject
    DOUBLE      area       = 0.4;  ///< share of the bright part (HighContrast, Window) or of the subject
    DOUBLE      textureEV  = 0.0;  ///< sigma of the log-normal texture
};

/// A point of the light curve.
struct LightPoint
{
    DOUBLE time;    ///< s
    DOUBLE ev;      ///< relative to Scene::lux
    bool   isRamp;  ///< linear in EV from the point before, otherwise a step
};

/// A sine in the scene's light, slow enough for every frame to see one value.
struct Ripple
{
    DOUBLE hertz   = 0.0;  ///< 0 for none
    DOUBLE percent = 0.0;  ///< amplitude
    DOUBLE start   = 0.0;  ///< s
};

/// A lamp that flickers within a frame.
struct Lamp
{
    DOUBLE hertz = 0.0;  ///< 0 for steady light, else 100 or 120
    DOUBLE depth = 0.0;  ///< amplitude, share of the mean
};

struct Sensor
{
    UINT8                latency = 3;               ///< frames from a decision to its statistics
    std::optional<UINT8> gainDelay;                 ///< frames from a write to its statistics; none for the latency
    std::optional<UINT8> timeDelay;                 ///< the same
    INT32                delayError       = 0;      ///< frames that the host's delay is above the true one
    bool                 isDelayCorrected = false;  ///< the host may correct it by what it watches
    DOUBLE               dropped          = 0.0;    ///< percent of the frames whose statistics are missing
    DOUBLE               late             = 0.0;    ///< percent of the decisions that come a frame late

    DOUBLE minGain     = 1.0;
    DOUBLE maxGain     = 64.0;
    DOUBLE gainStep    = 1.0 / 128.0;
    DOUBLE lineTime    = 1.0 / 120000.0;  ///< s, the step of exposure times
    UINT64 minTime     = 20000;           ///< ns
    UINT64 maxTime     = 100000000;       ///< ns
    DOUBLE readout     = 0.03;            ///< s, from the first to the last row
    INT32  bitDepth    = 8;
    DOUBLE regionNoise = 0.0;  ///< sigma per region, share of the value
    DOUBLE shotNoise   = 0.0;  ///< sigma of a full-scale region at unity gain, share of full scale
    DOUBLE readNoise   = 0.0;  ///< sigma, share of full scale
    DOUBLE sensitivity = 1.0;  ///< signal against a sensor of unity

    UINT8 GainDelay() const
    {
        return gainDelay.value_or(latency);
    }

    UINT8 TimeDelay() const
    {
        return timeDelay.value_or(latency);
    }

    /// Frames from a decision to its statistics, once gain and time have both arrived.
    UINT8 Delay() const
    {
        return std::max(GainDelay(), TimeDelay());
    }

    /// What the host is told of it.
    INT32 ToldDelay() const
    {
        return Delay() + delayError;
    }
};

/// What happens at a time. Each member that is set applies.
struct Event
{
    DOUBLE                               time = 0.0;  ///< s
    std::optional<INT32>                 ev;          ///< EV steps
    std::optional<bool>                  lock;
    std::optional<AECAlgoROI>            touch;
    bool                                 isTouchEnd = false;
    std::optional<StatisticsAntibanding> antibanding;
    std::optional<AECAlgoFPSRange>       fps;
    std::optional<AECAlgoManualSetting>  manual;
    std::optional<AECAlgoHDRType>        hdr;
    std::vector<TuningMode>              modes;  ///< selectors, Default first; empty if they stay
    std::optional<BracketRequest>        bracket;
    std::optional<AECAlgoLEDModeType>    LEDMode;

    bool                         isForSecond = false;  ///< else for the first camera
    std::optional<StatsAlgoRole> role;
    std::optional<StartPlan>     start;  ///< a new session begins
    std::optional<DOUBLE>        CCT;    ///< of the light from now on, K; for both cameras
};

struct Scene
{
    std::string             name;
    DOUBLE                  fps    = 30.0;
    UINT32                  frames = 300;
    UINT64                  seed   = 1;
    DOUBLE                  lux    = 200.0;  ///< mean light of the frame at 0 EV
    DOUBLE                  rg     = 0.55;   ///< R/G of the light
    DOUBLE                  bg     = 0.65;   ///< B/G of the light
    std::optional<DOUBLE>   startOffsetEV;   ///< start exposure against the one that shows mid-grey
    Pattern                 pattern;
    std::vector<LightPoint> light;
    Ripple                  ripple;
    Lamp                    lamp;
    Sensor                  sensor;
    std::vector<Event>      events;  ///< in ascending time
    DetectorScene           detectors;
    bool                    isMonitored = false;  ///< the summary tells what the monitors said

    std::optional<SceneObject> object;
    std::optional<OutsideMap>  map;   ///< of the object
    std::vector<GyroPoint>     gyro;  ///< in ascending time

    std::optional<FlashScene>    flash;
    std::optional<PanoramaScene> panorama;  ///< in the place of the pattern

    CameraSetup              camera;
    std::optional<StartPlan> start;         ///< none for the fixed start
    DOUBLE                   CCT = 5000.0;  ///< of the light at first, K

    /// The same scene as the second camera sees it, with its own sensor, pattern, setup and events; null if there is
    /// none.
    std::shared_ptr<const Scene> pSecond;

    /// Light at a time, EV relative to lux, without ripple. A panorama's is that of its mean.
    DOUBLE LightEV(DOUBLE time) const;

    /// Light at a time with ripple, lux.
    DOUBLE LuxAt(DOUBLE time) const;
};

/// Reads a scene.
/// @param variant name of an entry of the scene's variants, empty for none
/// @throws tuningfile::InputError with file, line and column
Scene ReadScene(const std::string& rPath, const std::string& variant);

/// Names of a scene's variants, in order. @throws tuningfile::InputError
std::vector<std::string> ReadVariants(const std::string& rPath);

}  // namespace kirosim
