#include "tools/tuningcheck/home.h"

#include <bit>

#include <fmt/format.h>

#include "schema/recordwalk.h"
#include "tools/meaning/modulewords.h"

namespace tuningcheck
{

namespace
{

using tuning::Thing;

bool FillsABank(const tuning::ModuleDescription& rModule)
{
    return rModule.pRecord != nullptr && tuning::FindMember(*rModule.pRecord, "dataBank") != nullptr;
}

std::string HomeOfBank(INT32 bank)
{
    switch (bank)
    {
    case BankIDTriggers:
        return "an output of an analyzer's operators or of a processor";
    case BankIDStatsCalculator:
        return "outputStorage of a calculator";
    case BankIDSceneAnalyzer:
        return "an output of an analyzer";
    default:
        break;
    }
    for (const tuning::ModuleDescription& rModule : tuning::TuningModules)
    {
        if (FillsABank(rModule) && BankOf(rModule) == bank)
        {
            return fmt::format("data of {}", rModule.pName);
        }
    }
    return "the bank";
}

}  // namespace

INT32 BankOf(const tuning::ModuleDescription& rModule)
{
    const tuning::RecordMember& rData = *tuning::FindMember(*rModule.pRecord, "data");
    const tuning::RecordWords& rItem = *meaning::WordsOf(rModule)->pMembers[&rData - rModule.pRecord->pMembers].pRecord;
    const tuning::RecordMember& rNumber = *tuning::FindMember(*rItem.pRecord, "dataID");
    return std::countr_zero(rItem.pMembers[&rNumber - rItem.pRecord->pMembers].words.refers[0].banks);
}

std::string HomeOf(const Kind& rKind)
{
    switch (rKind.thing)
    {
    case Thing::Bank:
        return HomeOfBank(rKind.bank);
    case Thing::Calculator:
        return "statsCalculators of kirometeringstatscalculator";
    case Thing::Analyzer:
        return "analyzers of kirometeringsceneanalyzer";
    case Thing::Detector:
        return "scdBank of kiroscenechangedetector";
    case Thing::HistoryReference:
        return "referenceArray of kiroarbitration";
    default:
        return "the tuning";
    }
}

}  // namespace tuningcheck
