/// @file
/// The core in a host, ready to run frame after frame on statistics that stand still.
#pragma once

#include <array>
#include <vector>

#include "host/kirohost.h"
#include "parameters/tuningsetmanager.h"
#include "schema/kirodb2dmeterweight.h"
#include "tools/kirosim/sensormodel.h"
#include "tools/kirosim/simulation.h"

/// A host that drives the core and keeps its log to itself.
class FrameRig
{
public:
    /// @param rTuning a parameter file
    /// @param isLive  whether tuning tools are served
    /// @throws std::runtime_error when the store refuses the file or the core cannot be created
    FrameRig(const std::vector<BYTE>& rTuning, const kirosim::Sensor& rSensor, bool isLive = false);

    /// Tells the core the white balance and runs a frame. @param rStats stays valid until the next call
    VOID RunFrame(KIROStatsList& rStats);

    KiroHost& Host()
    {
        return m_host;
    }

    TuningSetManager& Manager()
    {
        return m_manager;
    }

private:
    KiroHostConfig ConfigOf(const std::vector<BYTE>& rTuning, const kirosim::Sensor& rSensor, bool isLive);

    TuningSetManager        m_manager;
    std::vector<TuningMode> m_selectors;
    KiroCoreLibrary         m_library;
    KiroHost                m_host;
    UINT64                  m_frameID;
};

/// The heavy tuning on the grids of 64 x 48 regions and histograms of 256 bins of a simulated sensor.
class HeavyFrame
{
public:
    /// Runs frames in a closed loop until the exposure has settled; from then on the last frame's statistics stay.
    /// @param isEverythingOn with all that can hang on a frame, fed with a map and a channel of 16 x 16 regions
    /// @param isLive         whether tuning tools are served
    explicit HeavyFrame(bool isEverythingOn, bool isLive = false);

    VOID Run()
    {
        m_rig.RunFrame(*m_pStats);
    }

    const KIROStatsList& Stats() const
    {
        return *m_pStats;
    }

    FrameRig& Rig()
    {
        return m_rig;
    }

private:
    kirosim::Scene       m_scene;
    kirosim::SensorModel m_sensor;
    FrameRig             m_rig;
    KIROStatsList*       m_pStats;
    std::vector<FLOAT>   m_smallLuma;

    kirodb2dmeterweight::DBMeter2DWeightPayload m_map;  ///< the bank points at it

    VOID FeedEverything();
};

/// The minimal example on a mid-grey grid of 16 x 16 regions and a histogram of 128 bins; or another tuning and grid.
class LightFrame
{
public:
    /// Grids that a frame may have, all of the same luma.
    static constexpr std::array<const CHAR*, 8> ChannelNames = {"SafeLuma", "Luma2", "Luma3", "Luma4",
                                                                "Luma5",    "Luma6", "Luma7", "Luma8"};

    LightFrame();

    /// @param rTuning  a parameter file that measures these grids and SafeHist alone
    /// @param channels the first ones of ChannelNames
    LightFrame(const std::vector<BYTE>& rTuning, UINT32 width, UINT32 height, UINT32 channels = 1);

    VOID Run()
    {
        m_rig.RunFrame(m_stats);
    }

    FrameRig& Rig()
    {
        return m_rig;
    }

private:
    std::vector<FLOAT> m_luma;
    std::vector<INT>   m_histogram;
    std::vector<FLOAT> m_histogramLUT;
    KIROStatsList      m_stats;
    FrameRig           m_rig;
};
