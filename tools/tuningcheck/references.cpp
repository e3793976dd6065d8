#include "tools/tuningcheck/references.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/tuningcheck/doubles.h"
#include "tools/tuningcheck/runlists.h"
#include "tools/tuningcheck/unused.h"

namespace tuningcheck
{

namespace
{

using tuning::Thing;
using tuning::Verb;

/// Tables of maps and samples that a processor waits for come from the host.
bool ComesFromHost(const Mention& rReader)
{
    const std::string_view module = rReader.pModule->pDescription->pName;
    return (module == "kiroexternalmapprocessor" || module == "kiro1dvectorprocessor") &&
           (rReader.named.kind == BankKind(BankIDMetering1D) || rReader.named.kind == BankKind(BankIDMetering2D));
}

/// A map that drives a generator may come from there, too.
bool MayComeFromHost(const Mention& rReader)
{
    return std::string_view(rReader.pModule->pDescription->pName) == "kiromtrtablegen" &&
           rReader.named.kind == BankKind(BankIDMetering2D);
}

/// An old value does for a picture's looks, not for luma and target of an analyzer.
bool DecidesExposure(const Mention& rReader)
{
    return rReader.inModule.find(".luma.calculators") != std::string::npos ||
           rReader.inModule.find(".target.calculators") != std::string::npos;
}

std::string ExpectedOf(const Mention& rReader, const Inventory& rInventory, const ModeView& rView)
{
    const std::string list = rInventory.ListOf(rReader.named.kind);
    return rReader.expected + InMode(rView, rReader.mode) + (list.empty() ? ", of which there is none" : ": " + list);
}

}  // namespace

References::References(const std::vector<std::string>& rChannels, Findings& rFindings)
    : m_rChannels(rChannels), m_rFindings(rFindings)
{
}

const References::Mentions& References::Of(const ModulePlace& rModule)
{
    const auto [entry, isNew] = m_ofModule.try_emplace(rModule.pModule);
    if (isNew)
    {
        entry->second = &m_mentions.emplace_back(MentionsOf(rModule, m_wrongKinds, m_rFindings));
        m_doubleKinds.merge(CheckDoubleNumbers(*entry->second, m_rFindings));
    }
    return *entry->second;
}

/// A calculator that no list runs may be the one that a list misspells.
bool References::AreRunListsSound(const std::vector<const Mention*>& rMentions, const Inventory& rInventory) const
{
    return !m_doubleKinds.contains({Thing::Calculator}) &&
           std::ranges::all_of(
               rMentions, [&rInventory](const Mention* pMention)
               { return pMention->named.kind != Kind{Thing::Calculator} || rInventory.Has(pMention->named); });
}

VOID References::CheckMode(const ModeView& rView)
{
    std::vector<const Mention*> mentions;
    for (const ModulePlace& rModule : rView.Modules())
    {
        for (const Mention& rMention : Of(rModule))
        {
            mentions.push_back(&rMention);
        }
    }
    const Inventory inventory(mentions, m_rChannels);
    const bool      areRunListsSound = AreRunListsSound(mentions, inventory);
    for (const Mention* pMention : mentions)
    {
        const Named& rNamed = pMention->named;
        const bool   isIdle = areRunListsSound && inventory.IsIdle(rNamed) && DecidesExposure(*pMention);
        if (pMention->verb == Verb::Reads && inventory.IsInUse(*pMention) && (isIdle || !inventory.Has(rNamed)))
        {
            CheckReader(*pMention, inventory, rView);
        }
    }
    CheckDoubleOutputs(rView, mentions, m_rFindings);
    CheckSafeExposure(rView, mentions, m_rFindings);
}

VOID References::CheckReader(const Mention& rReader, const Inventory& rInventory, const ModeView& rView)
{
    if (ComesFromHost(rReader))
    {
        return;
    }
    m_wrongKinds.insert(rReader.named.kind);
    if (rReader.named.kind == BankKind(BankIDStatsCalculator))
    {
        m_wrongKinds.insert({Thing::Calculator});  // one that no list runs may be what is missing
    }
    if (m_doubleKinds.contains(rReader.named.kind))
    {
        return;
    }
    const bool isFromHost = MayComeFromHost(rReader);
    m_rFindings.Add(isFromHost ? Severity::Advice : Severity::Error, rReader.where, rReader.value,
                    ExpectedOf(rReader, rInventory, rView),
                    isFromHost ? "right if the host puts it there" : rInventory.AdviceFor(rReader.named));
}

VOID References::CheckUsage()
{
    std::vector<const Mention*> mentions;
    for (const Mentions& rMentions : m_mentions)
    {
        for (const Mention& rMention : rMentions)
        {
            mentions.push_back(&rMention);
        }
    }
    CheckUnused(mentions, m_wrongKinds, m_rFindings);
}

}  // namespace tuningcheck
