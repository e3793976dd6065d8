#include "tools/tuningcheck/codedreferences.h"

#include <algorithm>

#include "schema/kiroextension.h"
#include "schema/kirometeringsaalgorithm.h"
#include "schema/kirometeringstatscalculator.h"
#include "schema/kiroparamextension.h"

namespace tuningcheck
{

namespace
{

using kirometeringsaalgorithm::SAAlgorithmType;
using kirometeringstatscalculator::CalculatorIntegerRangeType;
using kirometeringstatscalculator::StatsCalculatorType;
using kiroparamextension::statsExtensionParamType;
using tuning::Verb;

constexpr INT32 ShortBlendTrigger = 100;  // unless kiroparamextension names another one

/// What stages publish: the driver, metering and its coded algorithms, convergence, arbitration, flash tables.
constexpr KIROTriggerType CoreTriggers[] = {TriggerCtrlPrev,
                                            TriggerCtrlTarget,
                                            TriggerCtrlTgtMatchDelta,
                                            TriggerCtrlTgtPrevDelta,
                                            TriggerCtrlDarkRatio,
                                            TriggerCtrlSatRatio,
                                            TriggerCtrlDirection,
                                            TriggerCtrlLux,
                                            TriggerCtrlFPS,
                                            TriggerCtrlExpTime,
                                            TriggerCtrlGain,
                                            TriggerCtrlSensitivity,
                                            TriggerCtrlLuma,
                                            TriggerFlashExpIncrease,
                                            TriggerFlashInfluence,
                                            TriggerCtrlHDRDRCGain,
                                            TriggerCtrlHDRADRCGain,
                                            TriggerCtrlHDRDarkBoostGain,
                                            TriggerCtrlShortExp,
                                            TriggerCtrlLongExp,
                                            TriggerCtrlSafeExp,
                                            TriggerCtrlShortTgt,
                                            TriggerCtrlLongTgt,
                                            TriggerCtrlSafeTgt,
                                            TriggerCtrlShortExpFLow,
                                            TriggerCtrlLongExpFLow,
                                            TriggerCtrlSafeExpFLow,
                                            TriggerCtrlPrecisionFlashDelay,
                                            TriggerCtrlPrecisionFlashMinTime,
                                            TriggerCtrlPrecisionFlashMaxExpTimeMs,
                                            TriggerCtrlPrecisionFlashE1,
                                            TriggerCtrlPrecisionFlashE2,
                                            TriggerCtrlPrecisionFlashOk,
                                            TriggerCtrlBracketEV,
                                            TriggerCtrl3HDRBinning,
                                            TriggerFlashSatStatsRatio,
                                            TriggerCtrlPrecisionFlashInfluence,
                                            TriggerCtrlPreflashLuxIndex,
                                            TriggerCtrlFullflashLuxIndex};

template <typename Record> const Record* As(const RecordSpot& rRecord)
{
    return (rRecord.pType == &tuning::DescriptionOf<Record>()) ? reinterpret_cast<const Record*>(rRecord.pRecord)
                                                               : nullptr;
}

Spot MemberSpot(const RecordSpot& rRecord, std::string_view name)
{
    const tuning::RecordMember& rMember = *rRecord.Find(name);
    const tuning::MemberWords&  rWords  = rRecord.pWords->pMembers[&rMember - rRecord.pType->pMembers];
    return {&rRecord, &rMember, &rWords, &rWords.words, rRecord.pRecord + rMember.offset, std::nullopt};
}

Spot ItemSpot(const RecordSpot& rRecord, std::string_view name, UINT32 item)
{
    Spot spot   = MemberSpot(rRecord, name);
    spot.item   = item;
    spot.pValue = tuning::ValuesOf(*spot.pMember, rRecord.pRecord).At(*spot.pMember, item);
    return spot;
}

/// @return the number of an entry, -1 if it is none
INT32 NumberOf(FLOAT value)
{
    constexpr FLOAT most = 1 << 24;
    return (value >= 0.0f && value <= most) ? static_cast<INT32>(value) : -1;
}

/// Two of the measures have a second output, behind the first.
VOID FindSecondOutput(const RecordSpot& rRecord, const ReferenceSink& rSink)
{
    const auto* pStorage    = As<CalculatorIntegerRangeType>(rRecord);
    const auto* pCalculator = (pStorage != nullptr) ? As<StatsCalculatorType>(*rRecord.pAround->pIn) : nullptr;
    if (pCalculator != nullptr &&
        (pCalculator->APISelection == kirometeringstatscalculator::API05HistLumaRangeAverage ||
         pCalculator->APISelection == kirometeringstatscalculator::API09GridStatsRoughness))
    {
        rSink(MemberSpot(rRecord, "start"), Verb::Writes,
              {BankKind(BankIDStatsCalculator), INT64{pStorage->start} + 1});
    }
}

/// The blend of two histograms goes by a value of a bank, the last two of its six numbers.
VOID FindBlendValue(const RecordSpot& rRecord, const ReferenceSink& rSink)
{
    constexpr UINT32 bankIndex   = 4;
    constexpr UINT32 numberIndex = 5;
    const auto*      pCalculator = As<StatsCalculatorType>(rRecord);
    if (pCalculator == nullptr ||
        pCalculator->APISelection != kirometeringstatscalculator::API10HistPercentileRangeAverageHDR ||
        pCalculator->extensionArrayCount != numberIndex + 1)
    {
        return;
    }
    const INT32 bank = NumberOf(pCalculator->extensionArray[bankIndex]);
    if (IsValueBank(bank))
    {
        rSink(ItemSpot(rRecord, "extensionArray", numberIndex), Verb::Reads,
              {BankKind(bank), NumberOf(pCalculator->extensionArray[numberIndex])});
    }
}

/// The parameters of the algorithm of a precision flash.
VOID FindPrecisionFlash(const RecordSpot& rRecord, const ReferenceSink& rSink)
{
    constexpr UINT32 count      = 12;
    constexpr INT32  banks[]    = {BankIDStatsCalculator, BankIDStatsCalculator, BankIDStatsCalculator,
                                   BankIDStatsCalculator, BankIDSceneAnalyzer};
    constexpr UINT32 gyroLUT    = 7;
    const auto*      pAlgorithm = As<SAAlgorithmType>(rRecord);
    if (pAlgorithm == nullptr || pAlgorithm->ID != 3 || pAlgorithm->extensionParametersCount < count)
    {
        return;
    }
    const auto read = [&](UINT32 index, INT32 bank)
    {
        rSink(ItemSpot(rRecord, "extensionParameters", index), Verb::Reads,
              {BankKind(bank), NumberOf(pAlgorithm->extensionParameters[index])});
    };
    for (UINT32 index = 0; index < std::size(banks); ++index)
    {
        read(index, banks[index]);
    }
    if (pAlgorithm->extensionParameters[gyroLUT] >= 0)
    {
        read(gyroLUT, BankIDArbitrationLUT);
    }
}

/// The short blend publishes where its third number says.
VOID FindShortBlend(const RecordSpot& rRecord, const ReferenceSink& rSink)
{
    constexpr UINT32 triggerIndex = 2;
    const auto*      pParameter   = As<statsExtensionParamType>(rRecord);
    if (pParameter != nullptr && pParameter->enableFlag != FALSE && pParameter->dataCount > triggerIndex &&
        std::string_view(tuning::TextAt(&pParameter->Name)) == "AECExtParamMFHDRADRCControl")
    {
        rSink(ItemSpot(rRecord, "data", triggerIndex), Verb::Writes,
              {BankKind(BankIDTriggers), NumberOf(pParameter->data[triggerIndex])});
    }
}

/// The stretch sets its entries to 0 in each frame: while it is off, nothing else need write them.
VOID FindIdleStretch(const RecordSpot& rRecord, const ReferenceSink& rSink)
{
    const auto* pStretch = As<kiroextension::ExtensionYHistStretch>(rRecord);
    if (pStretch != nullptr && pStretch->enableYHistStretch == FALSE)
    {
        rSink(MemberSpot(rRecord, "clampValue"), Verb::Writes,
              {BankKind(BankIDSceneAnalyzer), pStretch->clampValue.dataID});
        rSink(MemberSpot(rRecord, "scalingValue"), Verb::Writes,
              {BankKind(BankIDSceneAnalyzer), pStretch->scalingValue.dataID});
    }
}

}  // namespace

VOID FindCodedReferences(const RecordSpot& rRecord, const ReferenceSink& rSink)
{
    FindSecondOutput(rRecord, rSink);
    FindBlendValue(rRecord, rSink);
    FindPrecisionFlash(rRecord, rSink);
    FindShortBlend(rRecord, rSink);
    FindIdleStretch(rRecord, rSink);
}

std::span<const INT64> Algorithms()
{
    static constexpr INT64 coded[] = {1, 2, 3, 4, 101};
    return coded;
}

bool IsPublishedByCore(INT64 trigger)
{
    return std::ranges::find(CoreTriggers, trigger) != std::end(CoreTriggers);
}

bool IsKnownTrigger(INT64 trigger)
{
    return (trigger >= 0 && trigger < TriggerCtrlMax) || trigger == ShortBlendTrigger;
}

}  // namespace tuningcheck
