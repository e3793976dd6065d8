#include "tools/kirosim/meteringweights.h"

#include <algorithm>

#include "parameters/tuningsetmanager.h"
#include "schema/kirodbactivecalculators.h"
#include "schema/kirodbroi.h"
#include "schema/kirometeringstatscalculator.h"
#include "schema/namehash.h"

using namespace kirometeringstatscalculator;

namespace kirosim
{

namespace
{

const KIROMeteringStatsCalculatorType* CalculatorsOf(const StatsTuningData& rTuning)
{
    constexpr const CHAR* pName = "kirometeringstatscalculator";
    return static_cast<const KIROMeteringStatsCalculatorType*>(
        static_cast<TuningSetManager*>(rTuning.pTuningSetManager)
            ->KeepModuleRecord(pName, namehash::OfName(pName),
                               static_cast<const TuningMode*>(rTuning.pTuningModeSelectors), rTuning.numSelectors));
}

/// @return null if there is no such entry
template <typename Payload> const Payload* EntryOf(KiroHost& rHost, KIROBankIDType bank, INT32 dataID)
{
    KIROGetBankData query = {bank, dataID, nullptr, sizeof(Payload)};
    return (rHost.Algo()->getBankData(rHost.Algo(), &query) == 0) ? static_cast<const Payload*>(query.pData) : nullptr;
}

VOID AddMean(KiroHost& rHost, const StatsCalculatorType& rCalculator, std::vector<WeightedMean>& rMeans)
{
    const CalculatorGeneralParameters& rParameters = rCalculator.generalParameters;
    if (rCalculator.APISelection != API01GridWeightedAverage)
    {
        return;
    }
    const auto* pTable =
        EntryOf<DBMeter2DWeightPayload>(rHost, BankIDMetering2D, static_cast<INT32>(rParameters.weightTable2D));
    const auto* pRegion = EntryOf<DBROIPayload>(rHost, BankIDROITable, static_cast<INT32>(rParameters.ROIID));
    if (pTable == nullptr || (rParameters.ROIID != 0 && pRegion == nullptr))
    {
        return;  // it measures nothing
    }
    WeightedMean mean{
        (rCalculator.description != nullptr) ? rCalculator.description : "", {0.0f, 0.0f, 1.0f, 1.0f}, {}};
    if (rParameters.ROIID != 0)
    {
        const float* pCoords = pRegion->coords;
        mean.box             = {pCoords[0], pCoords[1], pCoords[2], pCoords[3]};
    }
    std::copy(std::begin(pTable->weights), std::end(pTable->weights), mean.weights.begin());
    const auto isSame = [&mean](const WeightedMean& rOther) { return rOther.name == mean.name; };
    if (std::none_of(rMeans.begin(), rMeans.end(), isSame))
    {
        rMeans.push_back(std::move(mean));
    }
}

}  // namespace

std::vector<WeightedMean> WeightedMeansOf(KiroHost& rHost)
{
    std::vector<WeightedMean> means;
    const auto*               pCalculators = CalculatorsOf(rHost.Tuning());
    if (pCalculators == nullptr)
    {
        return means;
    }
    AddMean(rHost, pCalculators->averageStatsCalculator, means);
    AddMean(rHost, pCalculators->centerWeightedStatsCalculator, means);
    const auto* pActive = EntryOf<DBActiveCalculatorsPayload>(rHost, BankIDActiveCalculators, 0);
    for (UINT32 active = 0; pActive != nullptr && active < pActive->calculatorIDCount; ++active)
    {
        for (UINT32 index = 0; index < pCalculators->statsCalculatorsCount; ++index)
        {
            if (pCalculators->statsCalculators[index].calculatorID == pActive->calculatorID[active])
            {
                AddMean(rHost, pCalculators->statsCalculators[index], means);
            }
        }
    }
    return means;
}

}  // namespace kirosim
