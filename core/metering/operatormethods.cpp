#include "core/metering/operatormethods.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/base/exposurearithmetic.h"

using exposurearithmetic::Epsilon;
using operatormethods::Operands;
using namespace kirometeringsceneanalyzer;

namespace
{

/// The operand at a rank, 0 for the smallest. Safe with operands that are no numbers, unlike a sort.
FLOAT Ranked(const Operands& rIn, UINT32 rank)
{
    FLOAT      sorted[] = {rIn.a, rIn.b, rIn.c, rIn.d};
    const auto exchange = [&sorted](UINT32 low, UINT32 high)
    {
        if (sorted[high] < sorted[low])
        {
            std::swap(sorted[low], sorted[high]);
        }
    };
    exchange(0, 1);
    exchange(2, 3);
    exchange(0, 2);
    exchange(1, 3);
    exchange(1, 2);
    return sorted[rank];
}

FLOAT Mix(FLOAT share, FLOAT first, FLOAT second)
{
    return std::fma(first, share, (1.0f - share) * second);
}

/// @return 0 for a method that does not give one number
FLOAT ComputeNumber(ArithmeticOperationMethodType method, const Operands& rIn)
{
    const auto& [a, b, c, d] = rIn;
    const FLOAT ab           = a * b;
    const FLOAT cd           = c * d;
    const FLOAT bd           = b * d;
    switch (method)
    {
    case Addition:
        return std::fma(a, b, cd);
    case Subtraction:
        return std::fma(a, b, -cd);
    case Multiplication:
        return ab * cd;
    case Division:
        return ab / std::max(cd, Epsilon);
    case Max:
        return std::max(ab, cd);
    case Min:
        return std::min(ab, cd);
    case Smallest:
        return Ranked(rIn, 0);
    case SecondSmallest:
        return Ranked(rIn, 1);
    case Largest:
        return Ranked(rIn, 3);
    case SecondLargest:
        return Ranked(rIn, 2);
    case FlashHighLuma:
        return (a < bd) ? a + c * (bd - a) : bd;
    case CondLarger:
        return (a > b) ? c : d;
    case CondSmaller:
        return (a < b) ? c : d;
    case CondEqual:
        return (a == b) ? c : d;
    default:
        return 0.0f;
    }
}

}  // namespace

namespace operatormethods
{

bool Compute(ArithmeticOperationMethodType method, const Operands& rIn, StartEnd& rResult)
{
    if (method == LinearInterpolation)
    {
        rResult = {Mix(rIn.c, rIn.a, rIn.b), Mix(rIn.d, rIn.a, rIn.b)};
        return true;
    }
    const FLOAT number = ComputeNumber(method, rIn);
    rResult            = {number, number};
    return method >= Addition && method <= CondEqual;
}

}  // namespace operatormethods
