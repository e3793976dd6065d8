#include "tools/tuningcheck/bankpair.h"

#include <fmt/format.h>

#include "schema/kiroglobalelements.h"
#include "tools/meaning/wordtext.h"

namespace tuningcheck
{

namespace
{

using tuning::RecordMember;
using tuning::Reference;
using tuning::Thing;
using tuning::Verb;

const tuning::Words& WordsOf(const RecordSpot& rRecord, const RecordMember& rMember)
{
    return rRecord.pWords->pMembers[&rMember - rRecord.pType->pMembers].words;
}

/// The hold time of a detector reads less than other trees of three levels: the second trigger drives the third level,
/// and both stand in one bank.
std::optional<Reference> HoldTimeReference(const Spot& rTrigger, Reference reference)
{
    reference.banks = UINT32{1} << BankIDTriggers;
    return (std::string_view(rTrigger.pMember->pName) != "trigger3DataBank") ? std::optional(reference) : std::nullopt;
}

bool IsOfHoldTime(const Spot& rTrigger)
{
    return rTrigger.pIn->pType == &tuning::DescriptionOf<ThreeLevelDataBankTriggerSystemType>() &&
           std::string_view(rTrigger.pIn->pModule->pModule->pDescription->pName) == "kiroscenechangedetector";
}

/// The words of the bank itself, otherwise of the member that the pair is.
std::optional<Reference> ReferenceOf(const RecordSpot& rPair)
{
    const Reference& rOwn = WordsOf(rPair, *rPair.Find("bankID")).refers[0];
    if (rOwn.thing != Thing::Nothing || rPair.pAround == nullptr)
    {
        return rOwn;
    }
    const Reference& rMember = rPair.pAround->pWords->words.refers[0];
    return IsOfHoldTime(*rPair.pAround) ? HoldTimeReference(*rPair.pAround, rMember) : rMember;
}

bool Allows(const Reference& rReference, INT32 bank)
{
    return bank >= 0 && bank < BankIDMax && (rReference.banks >> bank & 1) != 0;
}

/// Where a region can stand, a pair that was left out can: it is the region that the context selects, or none.
bool IsNothingInAnyBank(const BankPair& rRead)
{
    if (rRead.reference.verb == Verb::Writes)
    {
        return rRead.bank == BankIDInvalid || (rRead.reference.none < 0 && rRead.number < 0);
    }
    return rRead.reference.none == 0 && Allows(rRead.reference, BankIDROITable) &&
           (rRead.number == 0 || rRead.bank == BankIDInvalid);
}

/// A pair that a text leaves out is as this one.
std::string AdviceOnPair(const BankPair& rRead)
{
    if (rRead.bank != BankIDROITable || rRead.number != 0)
    {
        return "";
    }
    if (rRead.reference.verb == Verb::Writes)
    {
        return "left out, a pair is BankIDROITable 0; BankIDInvalid is no output";
    }
    return fmt::format("left out, a pair is BankIDROITable 0{}",
                       Allows(rRead.reference, BankIDTriggers) ? "; BankIDTriggers 0 is no entry" : "");
}

}  // namespace

bool IsBankPair(const RecordSpot& rRecord)
{
    const RecordMember* pBank   = rRecord.Find("bankID");
    const RecordMember* pNumber = rRecord.Find("dataID");
    return pBank != nullptr && pNumber != nullptr && WordsOf(rRecord, *pNumber).refers[0].thing == Thing::SiblingBank;
}

std::optional<BankPair> ReadBankPair(const RecordSpot& rPair)
{
    const std::optional<Reference> reference = ReferenceOf(rPair);
    if (!reference.has_value() || reference->thing != Thing::Bank)
    {
        return std::nullopt;
    }
    const BankPair read{*reference, rPair.Get<INT32>(*rPair.Find("bankID")), rPair.Get<INT32>(*rPair.Find("dataID"))};
    return IsNothingInAnyBank(read) ? std::nullopt : std::optional(read);
}

bool CheckBank(const RecordSpot& rPair, const BankPair& rRead, Findings& rFindings)
{
    if (Allows(rRead.reference, rRead.bank))
    {
        return true;
    }
    const RecordMember& rBank  = *rPair.Find("bankID");
    const auto&         rWords = rPair.pWords->pMembers[&rBank - rPair.pType->pMembers];
    const Spot          spot{&rPair, &rBank, &rWords, &rWords.words, rPair.pRecord + rBank.offset, std::nullopt};
    rFindings.Add(Severity::Error, spot, "is " + spot.ValueText(), meaning::ThingText(rRead.reference),
                  AdviceOnPair(rRead));
    return false;
}

}  // namespace tuningcheck
