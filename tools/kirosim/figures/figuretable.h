/// @file
/// The figures of merit: what each of them says, and in which unit. All that names figures comes from here.
#pragma once

#include <string>

#include "platform/tavotypes.h"

namespace kirosim
{

enum class FigureId
{
    Settle,
    Unsettled,
    Overshoot,
    FinalError,
    Ripple,
    Reversals,
    Kick,
    Lag,
    Distance,
    Swing,
    RippleLeft,
    RippleAdded,
    Clipped,
    Black,
    Lost,
    Noise,
    Motion,
    Pinned,
    Banding,
    DetectorDelay,
    MonitorDelay,
    DelayFound,
    FalseAlarms,
    FlashError,
    PairDifference,
    Count
};

/// How the figure of a run comes from those of its stretches.
enum class OverRun
{
    Worst,
    Count,  ///< of those that are meant
    Frames  ///< measured over all frames of the run
};

/// Of all of them a lower value is the better one.
struct FigureRow
{
    const CHAR* pName;  ///< for scripts
    const CHAR* pUnit;
    const CHAR* pStretches;  ///< of which stretches it is given
    OverRun     overRun;
    const CHAR* pDefinition;  ///< one or more sentences
};

const FigureRow& RowOf(FigureId id);

/// The table as Markdown, with what its words mean.
std::string FigureReference();

}  // namespace kirosim
