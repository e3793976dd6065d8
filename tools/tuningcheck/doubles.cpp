#include "tools/tuningcheck/doubles.h"

#include <algorithm>
#include <map>

#include <fmt/format.h>

#include "schema/kiromtrtablegen.h"
#include "tools/tuningcheck/codedreferences.h"
#include "tools/tuningcheck/runlists.h"

namespace tuningcheck
{

namespace
{

using tuning::Thing;
using tuning::Verb;

std::string AdviceOn(Thing thing)
{
    switch (thing)
    {
    case Thing::Calculator:
        return "both run";
    case Thing::Analyzer:
        return "the first runs";
    case Thing::HistoryReference:
        return "of two the first counts";
    default:
        return "of two the later counts";
    }
}

/// Adds what writes to what has been written, and tells of the second to do so.
VOID NoteWriter(const Mention& rWriter, std::map<Named, const Mention*>& rWriters, Findings& rFindings)
{
    const auto [first, isNew] = rWriters.try_emplace(rWriter.named, &rWriter);
    if (isNew)
    {
        return;
    }
    rFindings.Add(Severity::Error, rWriter.where,
                  fmt::format("{}, which {} writes, too", rWriter.value, first->second->where.inMode),
                  rWriter.expected + " of its own", "the later one overwrites what the earlier one has written");
}

/// What an analyzer or a processor puts over a value of the core.
VOID CheckTrigger(const Mention& rWriter, Findings& rFindings)
{
    if (rWriter.named.kind == BankKind(BankIDTriggers) && IsPublishedByCore(rWriter.named.number))
    {
        rFindings.Add(Severity::Advice, rWriter.where, rWriter.value + ", which the core publishes itself",
                      fmt::format("a free trigger: {} to {}", static_cast<INT32>(TriggerCtrlMax), MaxValueID),
                      "readers get what either has written last");
    }
}

/// A generator that goes on with the table of an earlier one, a filter of a value: these add to what they overwrite.
std::vector<const Mention*> OverwritersIn(const std::vector<const Mention*>& rMentions)
{
    std::set<std::pair<const BYTE*, Named>> reads;
    for (const Mention* pMention : rMentions)
    {
        if (pMention->verb == Verb::Reads && pMention->pOwner != nullptr)
        {
            reads.emplace(pMention->pOwner, pMention->named);
        }
    }
    std::vector<const Mention*> writers;
    std::ranges::copy_if(rMentions, std::back_inserter(writers),
                         [&reads](const Mention* pMention)
                         {
                             return pMention->verb == Verb::Writes && !pMention->IsEndOfRange() &&
                                    !reads.contains({pMention->pOwner, pMention->named});
                         });
    return writers;
}

/// Calculators of one list run together, and with those that run always, which do not in flash pictures.
VOID CheckRunTogether(const std::vector<const Mention*>& rWriters, const RunList& rList, bool isForFlash,
                      Findings& rFindings)
{
    std::set<INT64> numbers;
    std::ranges::transform(rList, std::inserter(numbers, numbers.end()),
                           [](const Mention* pMention) { return pMention->named.number; });
    std::map<Named, const Mention*> writers;
    for (const Mention* pWriter : rWriters)
    {
        const bool isRun = pWriter->user.has_value() ? numbers.contains(pWriter->user->number) : !isForFlash;
        if (pWriter->named.kind == BankKind(BankIDStatsCalculator) && isRun)
        {
            NoteWriter(*pWriter, writers, rFindings);
        }
    }
}

/// In a flash picture tables for the flash are made, in all others those of the generators.
VOID CheckTables(const std::vector<const Mention*>& rWriters, bool isForFlash, Findings& rFindings)
{
    std::map<Named, const Mention*> tables;
    for (const Mention* pWriter : rWriters)
    {
        const bool isOfOther = pWriter->pItem == &tuning::DescriptionOf<kiromtrtablegen::TableGeneratorType>()
                                   ? isForFlash
                                   : pWriter->pItem == nullptr && !isForFlash;
        if (pWriter->named.kind == BankKind(BankIDMetering2D) && !isOfOther)
        {
            NoteWriter(*pWriter, tables, rFindings);
        }
    }
}

}  // namespace

std::set<Kind> CheckDoubleNumbers(const std::vector<Mention>& rMentions, Findings& rFindings)
{
    std::set<Kind>                                          doubles;
    std::map<std::pair<const BYTE*, Named>, const Mention*> known;
    for (const Mention& rMention : rMentions)
    {
        if (rMention.verb != Verb::Defines)
        {
            continue;
        }
        const auto [first, isNew] = known.try_emplace({rMention.pList, rMention.named}, &rMention);
        if (!isNew)
        {
            doubles.insert(rMention.named.kind);
            rFindings.Add(Severity::Error, rMention.where,
                          fmt::format("{}, as {}", rMention.value, first->second->inModule), "a number of its own",
                          AdviceOn(rMention.named.kind.thing));
        }
    }
    return doubles;
}

VOID CheckDoubleOutputs(const ModeView& rView, const std::vector<const Mention*>& rMentions, Findings& rFindings)
{
    const std::vector<const Mention*> writers = OverwritersIn(rMentions);
    for (const Mention* pWriter : writers)
    {
        CheckTrigger(*pWriter, rFindings);
    }
    for (const bool isForFlash : {false, true})
    {
        CheckTables(writers, isForFlash, rFindings);
    }
    CheckRunTogether(writers, {}, false, rFindings);
    for (const auto& [pRecord, rList] : RunListsOf(rMentions, Thing::Calculator))
    {
        CheckRunTogether(writers, rList, IsForFlashAlone(rView, pRecord), rFindings);
    }
}

}  // namespace tuningcheck
