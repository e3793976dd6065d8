#include "tools/tuningcheck/runlists.h"

#include <algorithm>
#include <span>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "schema/kirodbactivecalculators.h"
#include "schema/kirometeringsceneanalyzer.h"

namespace tuningcheck
{

namespace
{

using kirodbactivecalculators::KIRODBActiveCalculatorsType;
using kirometeringsceneanalyzer::KIROMeteringSceneAnalyzerType;
using kirometeringsceneanalyzer::SceneAnalyzerType;
using tuning::Thing;
using tuning::Verb;

/// Of two analyzers with one number the first runs.
std::map<INT64, const SceneAnalyzerType*> ByNumber(const KIROMeteringSceneAnalyzerType& rModule)
{
    std::map<INT64, const SceneAnalyzerType*> analyzers;
    for (const SceneAnalyzerType& rAnalyzer : std::span(rModule.analyzers, rModule.analyzersCount))
    {
        analyzers.try_emplace(rAnalyzer.analyzerID, &rAnalyzer);
    }
    return analyzers;
}

std::string SafeOnes(const std::map<INT64, const SceneAnalyzerType*>& rAnalyzers)
{
    std::vector<std::string> texts;
    for (const auto& [number, pAnalyzer] : rAnalyzers)
    {
        if (pAnalyzer->exposureType == ExposureSafe)
        {
            texts.push_back(fmt::format("{} ({})", number, tuning::TextAt(&pAnalyzer->analyzerName)));
        }
    }
    return fmt::format("{}", fmt::join(texts, " or "));
}

}  // namespace

std::map<const BYTE*, RunList> RunListsOf(const std::vector<const Mention*>& rMentions, Thing thing)
{
    std::map<const BYTE*, RunList> lists;
    for (const Mention* pMention : rMentions)
    {
        if (pMention->verb == Verb::Reads && pMention->named.kind == Kind{thing})
        {
            lists[pMention->pRecord].push_back(pMention);
        }
    }
    return lists;
}

bool IsForFlashAlone(const ModeView& rView, const BYTE* pList)
{
    const auto* pBank = rView.Get<KIRODBActiveCalculatorsType>("kirodbactivecalculators");
    if (pBank == nullptr || pBank->dataCount == 0)
    {
        return false;
    }
    const UINT32 list      = tuning::Load<DBActiveCalculatorsPayload>(pList).dataID;
    bool         isByFlash = false;
    bool         isByOther = pBank->data[pBank->dataCount - 1].dataID == list;  // applies where no row does
    for (const auto& rRow : std::span(pBank->dataBank.priorityMap, pBank->dataBank.priorityMapCount))
    {
        if (static_cast<UINT32>(rRow.dataID) == list)
        {
            const std::span events(rRow.context, rRow.contextCount);
            const bool      isFlash = std::ranges::find(events, AECCoreSnapshotFlash) != events.end();
            isByFlash |= isFlash;
            isByOther |= !isFlash;
        }
    }
    return isByFlash && !isByOther;
}

VOID CheckSafeExposure(const ModeView& rView, const std::vector<const Mention*>& rMentions, Findings& rFindings)
{
    const auto* pModule = rView.Get<KIROMeteringSceneAnalyzerType>("kirometeringsceneanalyzer");
    if (pModule == nullptr)
    {
        return;
    }
    const auto analyzers = ByNumber(*pModule);
    for (const auto& [pRecord, rList] : RunListsOf(rMentions, Thing::Analyzer))
    {
        // One that does not exist is told of by itself, and may be the one that is meant.
        const bool mayBeSafe =
            std::ranges::any_of(rList,
                                [&analyzers](const Mention* pMention)
                                {
                                    const auto found = analyzers.find(pMention->named.number);
                                    return found == analyzers.end() || found->second->exposureType == ExposureSafe;
                                });
        if (!mayBeSafe)
        {
            const std::string ones = SafeOnes(analyzers);
            rFindings.Add(Severity::Error, rList.front()->where,
                          fmt::format("{}, in a list without an analyzer of ExposureSafe", rList.front()->value),
                          "one in each list" + InMode(rView, rList.front()->mode) +
                              (ones.empty() ? ", where there is none" : ": " + ones),
                          "without one the safe exposure is 0");
        }
    }
}

}  // namespace tuningcheck
