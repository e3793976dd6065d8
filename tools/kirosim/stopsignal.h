/// @file
/// Ctrl-C and the like as a question that a run asks between frames.
#pragma once

#include "platform/tavotypes.h"

namespace kirosim
{

/// While it lives, the first signal to end (Ctrl-C, SIGTERM, a closed terminal, a closed pipe) only asks the program to
/// stop; a second one ends it.
class StopSignal
{
public:
    StopSignal();
    ~StopSignal();
    StopSignal(const StopSignal&)            = delete;
    StopSignal& operator=(const StopSignal&) = delete;

    static bool IsRaised();
};

}  // namespace kirosim
