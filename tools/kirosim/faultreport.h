/// @file
/// What a run with faults of the sensor met: statistics that were missing, decisions that came late, and what the
/// host's watch made of the pipeline delay.
#pragma once

#include <optional>

#include "tools/kirosim/report.h"

namespace kirosim
{

class FaultReport final : public Report
{
public:
    /// Whether a scene's sensor has any.
    static bool IsAskedBy(const Scene& rScene);

    explicit FaultReport(const Scene& rScene);

    VOID        Add(const FrameRecord& rRecord) override;
    std::string Format() const override;
    TextItem    Facts() const override;

    /// When the watch first knew the delay, s in the scene; none if it did not in the round.
    const std::optional<DOUBLE>& SeenAt() const
    {
        return m_seenAt;
    }

private:
    std::string FormatDelay() const;

    INT32                 m_toldDelay;    ///< by the scene
    UINT8                 m_goesBy  = 0;  ///< what the host goes by after the last frame
    UINT32                m_dropped = 0;
    UINT32                m_late    = 0;
    std::optional<UINT8>  m_seenDelay;
    std::optional<DOUBLE> m_seenAt;
};

}  // namespace kirosim
