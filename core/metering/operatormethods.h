/// @file
/// What each method of an analyzer's operators makes of its four operands.
#pragma once

#include "interface/kiroframe.h"
#include "schema/kirometeringsceneanalyzer.h"

namespace operatormethods
{

struct Operands
{
    FLOAT a;
    FLOAT b;
    FLOAT c;
    FLOAT d;
};

/// Start and end differ for the interpolation only.
/// @param rResult zeros for an unknown method
/// @return false for an unknown method
bool Compute(kirometeringsceneanalyzer::ArithmeticOperationMethodType method, const Operands& rIn, StartEnd& rResult);

}  // namespace operatormethods
