#include "tools/tuningcheck/inventory.h"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/tuningcheck/codedreferences.h"
#include "tools/tuningcheck/home.h"
#include "tools/tuningfile/names.h"

namespace tuningcheck
{

namespace
{

using tuning::Thing;
using tuning::Verb;

constexpr size_t MaxListed = 12;

/// Whether one digit too many, too few or another one makes one number of the other. Numbers of one digit are all
/// alike.
bool AreNear(INT64 first, INT64 second)
{
    std::string shorter = std::to_string(first);
    std::string longer  = std::to_string(second);
    if (shorter.size() > longer.size())
    {
        std::swap(shorter, longer);
    }
    const auto [inShorter, inLonger] = std::mismatch(shorter.begin(), shorter.end(), longer.begin());
    const std::string_view rest(inLonger + 1, longer.end());
    return longer.size() > 1 && longer.size() - shorter.size() <= 1 &&
           rest == std::string_view(inShorter + (longer.size() == shorter.size() ? 1 : 0), shorter.end());
}

std::string TextOf(const Named& rNamed, const std::string& rLabel)
{
    const std::string number = rNamed.name.empty() ? std::to_string(rNamed.number) : rNamed.name;
    return rLabel.empty() ? number : fmt::format("{} ({})", number, rLabel);
}

}  // namespace

Inventory::Inventory(const std::vector<const Mention*>& rMentions, const std::vector<std::string>& rChannels)
{
    for (const INT64 algorithm : Algorithms())
    {
        m_labels[{{Thing::Algorithm}, algorithm}];
    }
    for (const std::string& rChannel : rChannels)
    {
        m_labels[{{Thing::Channel}, 0, rChannel}];
    }
    for (const bool isOfUser : {false, true})  // analyzers, by their run lists, before the algorithms that they name
    {
        for (const Mention* pMention : rMentions)
        {
            const bool isOther = pMention->user != pMention->named;  // the parameters of an algorithm name it, too
            if (pMention->verb == Verb::Reads && pMention->named.kind.thing != Thing::Bank && isOther &&
                pMention->user.has_value() == isOfUser && IsInUse(*pMention))
            {
                m_inUse.insert(pMention->named);
            }
        }
    }
    for (const Mention* pMention : rMentions)
    {
        if (pMention->verb != Verb::Reads)
        {
            m_labels.try_emplace(pMention->named, pMention->label);
            (IsInUse(*pMention) ? m_written : m_idle).emplace(pMention->named, pMention->user);
        }
    }
    m_areChannelsKnown = !OfKind({Thing::Channel}).empty();
}

std::vector<Inventory::Labels::const_iterator> Inventory::OfKind(const Kind& rKind) const
{
    std::vector<Labels::const_iterator> found;
    for (auto entry = m_labels.lower_bound({rKind, std::numeric_limits<INT64>::min()});
         entry != m_labels.end() && entry->first.kind == rKind; ++entry)
    {
        found.push_back(entry);
    }
    return found;
}

bool Inventory::Has(const Named& rNamed) const
{
    switch (rNamed.kind.thing)
    {
    case Thing::Channel:
        return !m_areChannelsKnown || m_labels.contains(rNamed);
    case Thing::Bank:
        if (rNamed.kind.bank == BankIDTriggers && IsKnownTrigger(rNamed.number))
        {
            return true;
        }
        // Number 0 of a tuned bank is the entry that the context selects.
        return m_labels.contains(rNamed) ||
               (rNamed.number == 0 && !IsValueBank(rNamed.kind.bank) && !OfKind(rNamed.kind).empty());
    default:
        return m_labels.contains(rNamed);
    }
}

bool Inventory::IsIdle(const Named& rNamed) const
{
    const auto idle = m_idle.find(rNamed);
    return idle != m_idle.end() && idle->second->kind == Kind{Thing::Calculator} && !m_written.contains(rNamed);
}

bool Inventory::IsInUse(const Mention& rMention) const
{
    return !rMention.user.has_value() || m_inUse.contains(*rMention.user);
}

std::string Inventory::ListOf(const Kind& rKind) const
{
    const auto               entries = OfKind(rKind);
    std::vector<std::string> texts;
    for (size_t index = 0; index < std::min(entries.size(), MaxListed); ++index)
    {
        texts.push_back(TextOf(entries[index]->first, entries[index]->second));
    }
    return fmt::format("{}{}", fmt::join(texts, ", "), (entries.size() > MaxListed) ? ", ..." : "");
}

std::string Inventory::AdviceFor(const Named& rNamed) const
{
    const auto entries = OfKind(rNamed.kind);
    if (rNamed.kind.thing == Thing::Channel)
    {
        std::vector<std::string_view> names;
        std::ranges::transform(entries, std::back_inserter(names),
                               [](const auto& rEntry) -> std::string_view { return rEntry->first.name; });
        const std::string advice = tuningfile::Advice(rNamed.name, names);
        return advice.ends_with('?') ? advice : "";  // what there is stands in the finding already
    }
    if (IsIdle(rNamed))
    {
        return fmt::format("calculator {} writes it, but no list runs that one", m_idle.at(rNamed)->number);
    }
    const auto isNear = [&](const auto& rEntry)
    { return entries.size() == 1 || AreNear(rEntry->first.number, rNamed.number); };
    if (std::ranges::count_if(entries, isNear) == 1)
    {
        const auto near = *std::ranges::find_if(entries, isNear);
        return fmt::format("did you mean {}?", TextOf(near->first, near->second));
    }
    return (rNamed.kind.thing == Thing::Algorithm) ? "" : "or add it to " + HomeOf(rNamed.kind);
}

}  // namespace tuningcheck
