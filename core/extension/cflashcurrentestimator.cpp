#include "core/extension/cflashcurrentestimator.h"

#include <algorithm>

#include "core/base/exposurearithmetic.h"
#include "core/base/kirolog.h"
#include "core/base/tuningaccess.h"
#include "core/contextdebugdata.h"
#include "core/extension/flashtable.h"

using kiroflash::LEDMixType;

namespace
{

constexpr INT32 MixCountMax = KIROFlashMixCountMax;

/// Inline calibration corrects the inner mixes; a table of two has none.
constexpr UINT32 LeastKnees = 3;

/// Currents as truncated milliamperes, colour and light linearly; ratio may lie outside 0 to 1.
LEDMixType MixBetween(const LEDMixType& rStart, const LEDMixType& rEnd, FLOAT ratio)
{
    return {flashtable::CurrentBetween(rStart.LED1Setting, rEnd.LED1Setting, ratio),
            flashtable::CurrentBetween(rStart.LED2Setting, rEnd.LED2Setting, ratio),
            flashtable::Between(rStart.RGRatio, rEnd.RGRatio, ratio),
            flashtable::Between(rStart.BGRatio, rEnd.BGRatio, ratio),
            flashtable::Between(rStart.flux, rEnd.flux, ratio)};
}

VOID LogEstimate(const KIROAlgoFlashInput& rIn, const KIROAlgoFlashOutput& rOut)
{
    const CHAR* pType = (rIn.flashCurrentType == KIROExtFlashCurrentType::Low) ? "LOW" : "HIGH";
    STATS_LOG_TRACE("AECCoreFlash Current type: %s input rg %.2f bg %.2f output LED1 %d LED2 %d rg %.2f bg %.2f flux "
                    "%.2f maxCurrent %d",
                    pType, rIn.AWBRG, rIn.AWBBG, rOut.LED1Setting, rOut.LED2Setting, rOut.RGRatio, rOut.BGRatio,
                    rOut.flux, rIn.maxFlashCurrent);
}

}  // namespace

CFlashCurrentEstimator::CFlashCurrentEstimator(IKIROContextManager& rContextManager)
    : m_rContextManager(rContextManager), m_tuningAndCalibration{}, m_tunedTable{}, m_refTable{},
      m_isTuningValid(FALSE), m_isFactoryCalApplied(FALSE), m_minTunedPower(0), m_maxTunedPower(0),
      m_maxTunedPowerIndex(0), m_precomputedPowerTable{}, m_preflashLEDRG(0.0f), m_preflashLEDBG(0.0f)
{
}

KiroResult CFlashCurrentEstimator::SetTuningHeaderChanged()
{
    const auto& rMatching  = tuningaccess::Require_kiroflash(*m_rContextManager.GetTuningData()).LEDMatching;
    m_tuningAndCalibration = rMatching;
    UINT32& rCount         = m_tuningAndCalibration.tableCount;
    if (rCount > TableCountMax)
    {
        STATS_LOG_ERROR("tableCount %d exceeds threshold %d", rCount, TableCountMax);
        rCount = TableCountMax;
    }
    const bool hasTable          = rMatching.table != nullptr && rCount > 0;
    m_tuningAndCalibration.table = hasTable ? m_refTable : nullptr;
    std::fill(std::begin(m_tunedTable), std::end(m_tunedTable), LEDMixType{});
    std::copy_n(rMatching.table, hasTable ? rCount : 0, m_tunedTable);
    std::copy(std::begin(m_tunedTable), std::end(m_tunedTable), m_refTable);

    std::fill(std::begin(m_precomputedPowerTable), std::end(m_precomputedPowerTable), 0u);
    m_isFactoryCalApplied = FALSE;
    m_minTunedPower       = TotalPower(0);
    TellMaxPower();
    m_isTuningValid = (IsTableSizeUsable() && AreRowsInOrder()) ? TRUE : FALSE;
    return (m_isTuningValid == TRUE) ? 0 : 1;
}

/// The host learns the largest current also of a table that is refused, as long as its last row lies within it.
VOID CFlashCurrentEstimator::TellMaxPower()
{
    const INT64 lastRow =
        std::max<INT64>(INT64{m_tuningAndCalibration.countPower} - 1, 0) * m_tuningAndCalibration.countMix;
    if (lastRow >= 0 && lastRow < TableCountMax)
    {
        m_maxTunedPowerIndex = static_cast<UINT32>(lastRow);
        m_maxTunedPower      = TotalPower(m_maxTunedPowerIndex);
        m_rContextManager.SetMaxFlashCurrent(static_cast<INT32>(m_maxTunedPower));
    }
}

/// @return false, with a log, for a size that the arrays of this class do not hold. A tuning without a flash table has
///         no rows and no mixes and passes: the estimate tells of the missing table.
bool CFlashCurrentEstimator::IsTableSizeUsable() const
{
    const INT32 powers = m_tuningAndCalibration.countPower;
    const INT32 mixes  = m_tuningAndCalibration.countMix;
    if (m_tuningAndCalibration.table == nullptr && powers == 0 && mixes == 0)
    {
        return true;
    }
    if (powers < 1 || mixes < 1 || mixes > MixCountMax || INT64{powers} * mixes > TableCountMax)
    {
        STATS_LOG_ERROR("AECCoreFlash LED table of %d powers and %d mixes exceeds 1 to %d mixes and %d entries", powers,
                        mixes, MixCountMax, TableCountMax);
        return false;
    }
    return true;
}

/// Of the rows beyond these the last one serves at full power, as it stands. The others give no current; where they are
/// measured, their colours still correct those of their neighbours.
bool CFlashCurrentEstimator::AreRowsInOrder()
{
    const INT32 count = std::min(m_tuningAndCalibration.countPower, PowerCountMax);
    for (INT32 power = 0; power < count; ++power)
    {
        if (!CheckRow(power))
        {
            return false;
        }
    }
    return true;
}

/// Notes the power of a row. @return false, with a log, for a row that is out of order
bool CFlashCurrentEstimator::CheckRow(INT32 power)
{
    const INT32       mixes        = m_tuningAndCalibration.countMix;
    const UINT32      total        = TotalPower(static_cast<UINT32>(power * mixes));
    const LEDMixType* pRow         = &m_refTable[static_cast<ptrdiff_t>(power) * mixes];
    m_precomputedPowerTable[power] = total;
    if (power > 0 && total <= m_precomputedPowerTable[power - 1])
    {
        STATS_LOG_ERROR("AECCoreFlash power must increase as power index increases");
        return false;
    }
    // The first mix sets the sum of its row; its own settings are not looked at.
    for (INT32 mix = 1; mix < mixes; ++mix)
    {
        if (pRow[mix].LED1Setting < 0 || pRow[mix].LED2Setting < 0 ||
            TotalPower(static_cast<UINT32>(power * mixes + mix)) != total)
        {
            STATS_LOG_ERROR("AECCoreFlash sum of LED1 and LED2 must be constant within pow level; no negative values");
            return false;
        }
    }
    return true;
}

UINT32 CFlashCurrentEstimator::TotalPower(UINT32 index) const
{
    return static_cast<UINT32>(m_refTable[index].LED1Setting) + static_cast<UINT32>(m_refTable[index].LED2Setting);
}

KiroResult CFlashCurrentEstimator::EstimateFlashCurrent(const KIROAlgoFlashInput* pIn, FlashCurrentEstimate* pOut)
{
    STATS_LOG_TRACE("AECCoreFlash attempting to match these rg bg: %.3f %.3f", pIn->AWBRG, pIn->AWBBG);
    if (m_isTuningValid == FALSE)
    {
        STATS_LOG_ERROR("AECCoreFlash LED tuning was deemed invalid");
        return 1;
    }
    FactoryCalibrate(pIn->pFlashCalib);

    *pOut = {};
    if (m_tuningAndCalibration.table == nullptr)
    {
        STATS_LOG_ERROR("AECCoreFlash null CCT table");
        return 1;
    }
    if (pIn->flashCurrentType == KIROExtFlashCurrentType::Full)
    {
        EstimateFull(*pIn, *pOut);
        LogEstimate(*pIn, pOut->LEDCombination);
        PopulateDebugData(*pIn, *pOut);
        return 0;
    }

    InlineCalibrate();
    LEDMixType mixes[MixCountMax]{};
    if (!SelectMixes(*pIn, mixes, *pOut))
    {
        return 1;
    }
    MatchColour(*pIn, mixes, *pOut);
    std::copy(std::begin(mixes), std::end(mixes), pOut->LEDCombination.refTable);
    LogEstimate(*pIn, pOut->LEDCombination);
    PopulateDebugData(*pIn, *pOut);
    return 0;
}

VOID CFlashCurrentEstimator::PopulateDebugData(const KIROAlgoFlashInput& rIn, const FlashCurrentEstimate& rOut) const
{
    AECDebugData* pDebug = debugdata::Enabled(m_rContextManager);
    if (pDebug == nullptr)
    {
        return;
    }
    AECDebugFlashCurrent record{};
    record.bIsValid             = 1;
    record.wantedRG             = rIn.AWBRG;
    record.wantedBG             = rIn.AWBBG;
    record.maxFlashCurrent      = rIn.maxFlashCurrent;
    record.LED1Setting          = rOut.LEDCombination.LED1Setting;
    record.LED2Setting          = rOut.LEDCombination.LED2Setting;
    record.RGRatio              = rOut.LEDCombination.RGRatio;
    record.BGRatio              = rOut.LEDCombination.BGRatio;
    record.firstEntryRatio      = rOut.LEDCombination.firstEntryRatio;
    record.lastEntryRatio       = rOut.LEDCombination.lastEntryRatio;
    record.flux                 = rOut.LEDCombination.flux;
    record.powIdx1              = rOut.powIdx1;
    record.powIdx2              = rOut.powIdx2;
    record.mixIdx1              = rOut.mixIdx1;
    record.mixIdx2              = rOut.mixIdx2;
    record.bIsFactoryCalApplied = static_cast<UINT8>(m_isFactoryCalApplied);
    record.countPower           = m_tuningAndCalibration.countPower;
    record.countMix             = m_tuningAndCalibration.countMix;
    for (UINT32 power = 0; power < AECDebugFlashRowCountMax - 1; ++power)
    {
        record.rowPower[power] = m_precomputedPowerTable[power];
    }
    AECDebugDataLEDTableType& rTable                                                    = pDebug->ledTableInfo;
    ((rIn.flashCurrentType == KIROExtFlashCurrentType::Low) ? rTable.low : rTable.high) = record;
}

VOID CFlashCurrentEstimator::FactoryCalibrate(const AECAlgoFlashCalibrationData* pCalib)
{
    if (m_isFactoryCalApplied == TRUE || pCalib == nullptr || pCalib->count == 0)
    {
        return;
    }
    const BOOL isCalibValid = IsCalibDataValid(pCalib);
    if (isCalibValid == FALSE)
    {
        STATS_LOG_ERROR("AECCoreFlash flashMeas cannot apply calibration: tuning valid: %d, calib valid: %d",
                        m_isTuningValid, isCalibValid);
        return;
    }
    INT32 calibIndices[TableCountMax];
    for (UINT32 i = 0; i < pCalib->count; ++i)
    {
        calibIndices[i] = static_cast<INT32>(
            flashtable::LinearIndex(m_tuningAndCalibration.tableCalibration[i], m_tuningAndCalibration.countMix));
    }
    ApplyFlashCalibrationData(m_tunedTable, m_refTable, 1.0f, pCalib, calibIndices);
}

/// Writes the learned colours into the first and the last row. The first and the last mix are one LED alone and stay.
VOID CFlashCurrentEstimator::InlineCalibrate()
{
    if (m_rContextManager.GetInput()->bIsFICMode != TRUE)
    {
        return;
    }
    const KIROFICInfo info = m_rContextManager.GetFICInfo();
    if (info.numOfKnees < LeastKnees)
    {
        return;
    }
    LEDMixType*  pLow  = m_refTable;
    LEDMixType*  pHigh = m_refTable + m_maxTunedPowerIndex;
    const UINT32 mixes = static_cast<UINT32>(m_tuningAndCalibration.countMix);
    const UINT32 end   = std::min<UINT32>(info.numOfKnees - 1, mixes);
    for (UINT32 i = 1; i < end; ++i)
    {
        const KIROFICKneeData& rKnee = info.kneeData[i];
        if (rKnee.confLEDLow == FICConfHigh)
        {
            STATS_LOG_TRACE("AECCoreInline applying flash inline cal low");
            pLow[i].RGRatio = rKnee.rgRatioLow;
            pLow[i].BGRatio = rKnee.bgRatioLow;
        }
        if (rKnee.confLEDHigh == FICConfHigh)
        {
            STATS_LOG_TRACE("AECCoreInline applying flash inline cal high");
            pHigh[i].RGRatio = rKnee.rgRatioHigh;
            pHigh[i].BGRatio = rKnee.bgRatioHigh;
        }
    }
}

VOID CFlashCurrentEstimator::EstimateFull(const KIROAlgoFlashInput& rIn, FlashCurrentEstimate& rOut) const
{
    const LEDMixType* pRow = m_refTable + m_maxTunedPowerIndex;
    if (m_tuningAndCalibration.countMix == 1)
    {
        // The flux goes where the fifth member of the output stands, and the flux member stays 0: moved, a flash of one
        // LED would show no light where it is read today.
        KIROAlgoFlashOutput& rCombination = rOut.LEDCombination;
        rCombination.LED1Setting          = pRow->LED1Setting;
        rCombination.LED2Setting          = pRow->LED2Setting;
        rCombination.RGRatio              = pRow->RGRatio;
        rCombination.BGRatio              = pRow->BGRatio;
        rCombination.firstEntryRatio      = pRow->flux;
    }
    else
    {
        GetMixLEDSettings(pRow, rIn.AWBRG, rIn.AWBBG, m_tuningAndCalibration.dualLEDIntersectSlope,
                          m_tuningAndCalibration.countMix, &rOut);
    }
    rOut.powIdx1 = m_tuningAndCalibration.countPower - 1;
    rOut.powIdx2 = rOut.powIdx1;
}

/// Chooses the row of mixes by power.
/// @return false, with a log, for a type that asks for no power
bool CFlashCurrentEstimator::SelectMixes(const KIROAlgoFlashInput& rIn, LEDMixType* pMixes,
                                         FlashCurrentEstimate& rOut) const
{
    const INT32 mixes      = m_tuningAndCalibration.countMix;
    const INT64 maxCurrent = rIn.maxFlashCurrent;
    const INT32 lastPower  = m_tuningAndCalibration.countPower - 1;
    const bool  isLow      = rIn.flashCurrentType == KIROExtFlashCurrentType::Low;
    if (!isLow && rIn.flashCurrentType != KIROExtFlashCurrentType::High)
    {
        STATS_LOG_ERROR("AECCoreFlash no flash current for type %d", static_cast<INT32>(rIn.flashCurrentType));
        return false;
    }
    std::copy_n(m_refTable, mixes, pMixes);
    if (maxCurrent <= static_cast<INT64>(m_minTunedPower))
    {
        DerateMixes(rIn.maxFlashCurrent, pMixes);
    }
    else if (!isLow && maxCurrent >= static_cast<INT64>(m_maxTunedPower))
    {
        std::copy_n(m_refTable + m_maxTunedPowerIndex, mixes, pMixes);
        rOut.powIdx1 = lastPower;
        rOut.powIdx2 = lastPower;
    }
    else if (!isLow)
    {
        MixesOfPower(rIn.maxFlashCurrent, pMixes);
        rOut.powIdx1 = 0;
        rOut.powIdx2 = 1;
    }
    return true;
}

/// Scales the first row down to the allowed current; the two settings of a mix sum to it exactly.
VOID CFlashCurrentEstimator::DerateMixes(INT32 maxCurrent, LEDMixType* pMixes) const
{
    const FLOAT ratio =
        static_cast<FLOAT>(maxCurrent) / std::max(static_cast<FLOAT>(m_minTunedPower), exposurearithmetic::Epsilon);
    for (INT32 mix = 0; mix < m_tuningAndCalibration.countMix; ++mix)
    {
        LEDMixType& rMix = pMixes[mix];
        rMix.LED1Setting = exposurearithmetic::SaturateToINT32(static_cast<FLOAT>(rMix.LED1Setting) * ratio);
        rMix.LED2Setting = flashtable::Saturated(static_cast<INT64>(maxCurrent) - rMix.LED1Setting);
        rMix.flux *= ratio;
    }
}

/// The row of a power between the first and the last one. It lies on the line through the first two rows, whichever
/// rows it stands between: beyond the second row that extrapolates. The line through the two neighbours would change
/// the currents of each table whose rows are not on one line.
VOID CFlashCurrentEstimator::MixesOfPower(INT32 maxCurrent, LEDMixType* pMixes) const
{
    const INT32  mixes = m_tuningAndCalibration.countMix;
    const UINT32 low   = m_precomputedPowerTable[0];
    const UINT32 high  = m_precomputedPowerTable[1];
    const FLOAT  ratio = static_cast<FLOAT>(static_cast<UINT32>(maxCurrent) - low) / static_cast<FLOAT>(high - low);
    for (INT32 mix = 0; mix < mixes; ++mix)
    {
        pMixes[mix] = MixBetween(m_refTable[mix], m_refTable[mixes + mix], ratio);
    }
}

VOID CFlashCurrentEstimator::MatchColour(const KIROAlgoFlashInput& rIn, const LEDMixType* pMixes,
                                         FlashCurrentEstimate& rOut)
{
    KIROAlgoFlashOutput& rCombination = rOut.LEDCombination;
    if (m_tuningAndCalibration.countMix <= 1)
    {
        rCombination.LED1Setting     = pMixes[0].LED1Setting;
        rCombination.LED2Setting     = pMixes[0].LED2Setting;
        rCombination.RGRatio         = pMixes[0].RGRatio;
        rCombination.BGRatio         = pMixes[0].BGRatio;
        rCombination.flux            = pMixes[0].flux;
        rCombination.firstEntryRatio = -1.0f;
        rCombination.lastEntryRatio  = -1.0f;
        return;
    }
    const bool  isLow         = rIn.flashCurrentType == KIROExtFlashCurrentType::Low;
    const bool  hasNoPreflash = m_preflashLEDRG == 0.0f || m_preflashLEDBG == 0.0f;
    const bool  isAWBWanted   = isLow || hasNoPreflash;
    const FLOAT rg            = isAWBWanted ? rIn.AWBRG : m_preflashLEDRG;
    const FLOAT bg            = isAWBWanted ? rIn.AWBBG : m_preflashLEDBG;
    GetMixLEDSettings(pMixes, rg, bg, m_tuningAndCalibration.dualLEDIntersectSlope, m_tuningAndCalibration.countMix,
                      &rOut);
    if (isLow)
    {
        m_preflashLEDRG = rCombination.RGRatio;
        m_preflashLEDBG = rCombination.BGRatio;
    }
}
