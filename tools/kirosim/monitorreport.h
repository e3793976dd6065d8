/// @file
/// What the monitors of the extension said: flags for capture decisions, histogram stretch, three exposures.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "tools/kirosim/monitoredflags.h"
#include "tools/kirosim/report.h"

namespace kirosim
{

/// A flag that changed.
struct FlagChange
{
    DOUBLE time;      ///< s
    FLOAT  luxIndex;  ///< of the frame
    bool   isRise;
};

/// The stretch as of the last settled frame.
struct StretchResult
{
    DOUBLE time;  ///< s
    FLOAT  clamp;
    FLOAT  scaling;
};

class MonitorReport final : public Report
{
public:
    VOID        Add(const FrameRecord& rRecord) override;
    std::string Format() const override;
    TextItem    Facts() const override;

    const std::vector<FlagChange>& Changes(MonitoredFlag flag) const
    {
        return m_flags[static_cast<size_t>(flag)].changes;
    }

    /// Empty while no settled frame had one.
    const std::optional<StretchResult>& Stretch() const
    {
        return m_stretch;
    }

    /// The frame from which on the criteria of three exposures held first; empty if they never did.
    std::optional<UINT64> HDR3Frame() const
    {
        return m_HDR3Frame;
    }

private:
    struct Flag
    {
        bool                    isSet = false;
        std::vector<FlagChange> changes;
    };

    static VOID AddFlag(Flag& rFlag, bool isSet, const FrameRecord& rRecord);

    std::array<Flag, MonitoredFlagCount> m_flags;
    std::optional<StretchResult>         m_stretch;
    std::optional<UINT64>                m_HDR3Frame;
};

}  // namespace kirosim
