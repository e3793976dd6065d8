#include "tools/tuningcheck/rules/measuredregions.h"

#include <numeric>
#include <set>

#include <fmt/format.h>

#include "schema/kirodb1dmeterweight.h"
#include "schema/kirodb2dmeterweight.h"
#include "schema/kirodbroi.h"
#include "schema/kirometeringstatscalculator.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using namespace kirometeringstatscalculator;

constexpr FLOAT LeftOut  = -1.0F;  ///< the weight of a cell that is not measured
constexpr FLOAT Rounding = 1e-5F;

constexpr INT64 SelectedByContext = 0;

/// The entries that calculators name.
struct Used
{
    std::set<INT64> regions;  ///< of a mean over a grid; 0 is the whole frame
    std::set<INT64> tables2D;
    std::set<INT64> tables1D;
};

Used UsedOf(const ModeView& rView, Findings& rFindings)
{
    Used               used;
    const ModulePlace* pModule = rView.Find("kirometeringstatscalculator");
    if (pModule == nullptr)
    {
        return used;
    }
    JudgeEach<StatsCalculatorType>(*pModule, rFindings,
                                   [&used](const StatsCalculatorType& rCalculator, const RecordJudge&)
                                   {
                                       if (rCalculator.APISelection == API01GridWeightedAverage)
                                       {
                                           used.regions.insert(rCalculator.generalParameters.ROIID);
                                           used.tables2D.insert(rCalculator.generalParameters.weightTable2D);
                                       }
                                       else if (rCalculator.APISelection == API04HistWeightedAverage)
                                       {
                                           used.tables1D.insert(rCalculator.generalParameters.weightTable1D);
                                       }
                                   });
    return used;
}

/// Adds what the context may select where a calculator leaves the choice to it.
template <typename Bank> VOID AddSelected(const Bank* pBank, std::set<INT64>& rUsed)
{
    if (pBank == nullptr || pBank->dataCount == 0 || !rUsed.contains(SelectedByContext))
    {
        return;
    }
    for (const auto& rRow : ListOf(pBank->dataBank.priorityMap, pBank->dataBank.priorityMapCount))
    {
        rUsed.insert(rRow.dataID);
    }
    rUsed.insert(pBank->data[pBank->dataCount - 1].dataID);
}

/// Takes out the tables that stages of the core fill.
VOID RemoveWritten(const ModeView& rView, std::set<INT64>& rTables)
{
    Visitor visitor;
    visitor.value = [&rTables](const Spot& rSpot)
    {
        const tuning::Reference& rReference = rSpot.pWords->words.refers[0];
        if (rReference.verb == tuning::Verb::Writes && rReference.thing == tuning::Thing::Bank &&
            rReference.banks == tuning::RowTerms::BitsOf(BankIDMetering2D))
        {
            rTables.erase(static_cast<INT64>(rSpot.Number()));
        }
    };
    for (const CHAR* pName : {"kiromtrtablegen", "kiroexternalmapprocessor"})
    {
        if (const ModulePlace* pModule = rView.Find(pName))
        {
            WalkModule(*pModule, visitor);
        }
    }
}

VOID CheckRegion(const DBROIPayload& rRegion, const RecordJudge& rJudge)
{
    const auto [x, y, dx, dy] = rRegion.coords;
    const bool isInside       = x >= 0.0F && y >= 0.0F && x + dx <= 1.0F + Rounding && y + dy <= 1.0F + Rounding;
    if (!isInside || dx <= 0.0F || dy <= 0.0F)
    {
        rJudge.Error("coords", fmt::format("is [{}, {}, {}, {}]", x, y, dx, dy),
                     "x, y, dx, dy inside 0 to 1 (share of the frame), with a size above 0",
                     "the last two are width and height");
    }
}

VOID CheckWeights(std::span<const FLOAT> weights, const RecordJudge& rJudge)
{
    const auto  add = [](FLOAT sum, FLOAT weight) { return sum + ((weight == LeftOut) ? 0.0F : weight); };
    const FLOAT sum = std::accumulate(weights.begin(), weights.end(), 0.0F, add);
    if (sum <= 0.0F)
    {
        rJudge.Error("weights", fmt::format("sum up to {}", sum), "a sum above 0 in a table that a calculator uses",
                     "without any weight nothing is measured");
    }
}

/// @param Payload an entry of the module's bank @param rUsed the entries that count
template <typename Payload, typename Rule>
VOID JudgeUsed(const ModeView& rView, const CHAR* pModule, const std::set<INT64>& rUsed, Findings& rFindings,
               const Rule& rRule)
{
    const auto onlyUsed = [&](const Payload& rPayload, const RecordJudge& rJudge)
    {
        if (rUsed.contains(rPayload.dataID))
        {
            rRule(rPayload, rJudge);
        }
    };
    if (const ModulePlace* pPlace = rView.Find(pModule))
    {
        JudgeEach<Payload>(*pPlace, rFindings, onlyUsed);
    }
}

}  // namespace

VOID CheckMeasuredRegions(const ModeView& rView, Findings& rFindings)
{
    Used used = UsedOf(rView, rFindings);
    used.regions.erase(0);
    AddSelected(rView.Get<kirodb2dmeterweight::KIRODB2DMeterWeightType>("kirodb2dmeterweight"), used.tables2D);
    AddSelected(rView.Get<kirodb1dmeterweight::KIRODB1DMeterWeightType>("kirodb1dmeterweight"), used.tables1D);
    RemoveWritten(rView, used.tables2D);
    const auto checkWeights = [](const auto& rTable, const RecordJudge& rJudge)
    { CheckWeights(rTable.weights, rJudge); };
    JudgeUsed<DBROIPayload>(rView, "kirodbroi", used.regions, rFindings, CheckRegion);
    JudgeUsed<DBMeter2DWeightPayload>(rView, "kirodb2dmeterweight", used.tables2D, rFindings, checkWeights);
    JudgeUsed<DBMeter1DWeightPayload>(rView, "kirodb1dmeterweight", used.tables1D, rFindings, checkWeights);
}

}  // namespace tuningcheck
