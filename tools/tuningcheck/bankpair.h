/// @file
/// Records that name an entry of a bank by bank and number, and whether the bank can stand there.
#pragma once

#include <optional>

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

/// A pair that is read or written.
struct BankPair
{
    tuning::Reference reference;  ///< of the member that the pair is
    INT32             bank;
    INT64             number;
};

/// @return whether the record has a bank and a number in it
bool IsBankPair(const RecordSpot& rRecord);

/// @return none if no stage looks at the pair, or if it names nothing on purpose, whatever its bank
std::optional<BankPair> ReadBankPair(const RecordSpot& rPair);

/// Judges the bank of a pair. @return whether it can stand there
bool CheckBank(const RecordSpot& rPair, const BankPair& rRead, Findings& rFindings);

}  // namespace tuningcheck
