/// @file
/// The report of a replay: what the first camera of a recording decided.
#pragma once

#include <optional>

#include "tools/kirosim/frameclock.h"
#include "tools/kirosim/replaycommand.h"
#include "tools/kirosim/statebands.h"
#include "tools/kirosim/tracetable.h"
#include "tools/recording/replayer.h"
#include "tools/tuningfile/filereplacement.h"

namespace kirosim
{

class ReplayPage
{
public:
    /// Opens the file. @param rOptions must outlive the page
    /// @throws tuningfile::InputError for a file that cannot be written, or another run's that cannot be read
    explicit ReplayPage(const ReplayOptions& rOptions);

    /// Sees each frame. A recording does not say when a frame was: they follow at the rate that was decided.
    VOID Add(const recording::ReplayedFrame& rFrame);

    VOID Commit();

private:
    const ReplayOptions&        m_rOptions;
    tuningfile::FileReplacement m_file;
    std::optional<TraceTable>   m_against;
    TraceTable                  m_trace;
    StateBands                  m_bands;
    FrameClock                  m_clock;
};

}  // namespace kirosim
