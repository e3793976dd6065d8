/// @file
/// What a tuning names by number or text: an entry of a bank, a calculator, a detector, a channel.
#pragma once

#include <compare>
#include <string>

#include "schema/kiroenumtables.h"
#include "schema/memberwords.h"

namespace tuningcheck
{

/// What belongs together: numbers of one kind tell things apart.
struct Kind
{
    tuning::Thing thing;
    INT32         bank = 0;  ///< of Thing::Bank

    auto operator<=>(const Kind&) const = default;
};

struct Named
{
    Kind        kind;
    INT64       number = 0;
    std::string name   = {};  ///< of a channel

    auto operator<=>(const Named&) const = default;
};

/// Numbers that entries of a bank of values have.
constexpr INT64 MaxValueID = 999;

/// @return whether the bank holds what stages publish, not what is tuned
constexpr bool IsValueBank(INT32 bank)
{
    return bank == BankIDTriggers || bank == BankIDStatsCalculator || bank == BankIDSceneAnalyzer;
}

constexpr Kind BankKind(INT32 bank)
{
    return {tuning::Thing::Bank, bank};
}

}  // namespace tuningcheck
