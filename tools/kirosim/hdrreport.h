/// @file
/// What an HDR session did: mode switches of the sensor, the ratios of the exposures, long ADRC and short blend.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/kirosim/report.h"

namespace kirosim
{

class HDRReport final : public Report
{
public:
    /// A change between the binned and the full mode of the sensor.
    struct Switch
    {
        UINT64 frame;
        DOUBLE time;  ///< s
        bool   isBinned;
        DOUBLE ADRC;  ///< converged safe over short
    };

    /// The last frame before something in the scene changes.
    struct Moment
    {
        DOUBLE time;  ///< s
        bool   isBinned;
        DOUBLE safeOverShort;  ///< arbitrated exposures
        DOUBLE longOverSafe;
        DOUBLE longADRC;
        DOUBLE shortBlend;
        DOUBLE shortTimeMs;
        DOUBLE longTimeMs;
        DOUBLE clippedShort;  ///< share of the picture
        DOUBLE clippedSafe;
    };

    /// @return whether a scene asks for HDR
    static bool IsAskedBy(const Scene& rScene);

    explicit HDRReport(const Scene& rScene);

    VOID        Add(const FrameRecord& rRecord) override;
    std::string Format() const override;
    TextItem    Facts() const override;

    const std::vector<Switch>& Switches() const
    {
        return m_switches;
    }

    /// Before the object comes, before it goes, and at the end.
    std::vector<Moment> Moments() const;

    /// Values that the short blend had, one after another, where it stood still.
    std::vector<DOUBLE> BlendRests() const;

private:
    static Moment MomentOf(const FrameRecord& rRecord);

    const Scene&          m_rScene;
    bool                  m_isSensorHDR;
    std::optional<Moment> m_last;
    std::vector<Moment>   m_moments;
    std::vector<Switch>   m_switches;
    std::vector<DOUBLE>   m_blends;
    UINT64                m_framesBefore = 0;  ///< number of the last frame before the first one seen
};

}  // namespace kirosim
