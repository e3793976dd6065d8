#include "tools/tuningcheck/unused.h"

#include <algorithm>
#include <map>

#include "schema/kiroexternalmapprocessor.h"
#include "schema/kirometeringstatscalculator.h"
#include "schema/kiromtrtablegen.h"

namespace tuningcheck
{

namespace
{

using tuning::Thing;
using tuning::Verb;

/// Entries that the host selects or fills by their number, and numbers that it asks for.
bool IsForHost(const Mention& rMention)
{
    return rMention.named.kind.thing == Thing::Detector || rMention.named.kind.thing == Thing::Channel ||
           rMention.named.kind == BankKind(BankIDSnapshot) || rMention.named.kind == BankKind(BankIDROITable) ||
           (rMention.named.kind.thing == Thing::Bank && IsValueBank(rMention.named.kind.bank));
}

/// Outputs that are there to be read. Those of analyzers, of fixed calculators and of flash tables may be there for the
/// core alone.
bool IsOutputForReaders(const Mention& rMention)
{
    const auto isOf = [&rMention](const tuning::RecordDescription& rType) { return rMention.pItem == &rType; };
    return (isOf(tuning::DescriptionOf<kirometeringstatscalculator::StatsCalculatorType>()) ||
            isOf(tuning::DescriptionOf<kiromtrtablegen::TableGeneratorType>()) ||
            isOf(tuning::DescriptionOf<kiroexternalmapprocessor::ExternalMapProcessorType>())) &&
           !rMention.IsEndOfRange();
}

/// The last entry of a bank holds where no priority does.
std::set<const Mention*> LastEntries(const std::vector<const Mention*>& rMentions)
{
    std::map<const BYTE*, const Mention*> lasts;
    for (const Mention* pMention : rMentions)
    {
        if (pMention->verb == Verb::Defines && pMention->named.kind.thing == Thing::Bank)
        {
            lasts[pMention->pList] = pMention;
        }
    }
    std::set<const Mention*> entries;
    std::ranges::transform(lasts, std::inserter(entries, entries.end()),
                           [](const auto& rPair) { return rPair.second; });
    return entries;
}

/// Of two outputs of one calculator it is enough that one is read.
std::set<const BYTE*> ReadRecords(const std::vector<const Mention*>& rMentions, const std::set<Named>& rRead)
{
    std::set<const BYTE*> records;
    for (const Mention* pMention : rMentions)
    {
        if (pMention->verb == Verb::Writes && rRead.contains(pMention->named))
        {
            records.insert(pMention->pRecord);
        }
    }
    return records;
}

VOID Advise(const Mention& rMention, Findings& rFindings)
{
    const bool isOutput = rMention.verb == Verb::Writes;
    rFindings.Add(Severity::Advice, rMention.where,
                  rMention.value + (isOutput ? ", which nothing reads" : ", which nothing names"),
                  isOutput ? "a reader of this entry" : "a use of it in some mode",
                  isOutput ? "right if the host reads it" : "leave it out if it is not needed");
}

}  // namespace

VOID CheckUnused(const std::vector<const Mention*>& rMentions, const std::set<Kind>& rWrongKinds, Findings& rFindings)
{
    std::set<Named> read;
    for (const Mention* pMention : rMentions)
    {
        if (pMention->verb == Verb::Reads)
        {
            read.insert(pMention->named);
        }
    }
    const std::set<const Mention*> lasts       = LastEntries(rMentions);
    const std::set<const BYTE*>    readRecords = ReadRecords(rMentions, read);
    for (const Mention* pMention : rMentions)
    {
        const bool isOutput = pMention->verb == Verb::Writes;
        const bool isJudged = isOutput ? IsOutputForReaders(*pMention) && !readRecords.contains(pMention->pRecord)
                                       : pMention->verb == Verb::Defines && !IsForHost(*pMention);
        if (isJudged && !read.contains(pMention->named) && !lasts.contains(pMention) &&
            !rWrongKinds.contains(pMention->named.kind))
        {
            Advise(*pMention, rFindings);
        }
    }
}

}  // namespace tuningcheck
