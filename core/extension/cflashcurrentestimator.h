/// @file
/// Picks the currents of a two-LED flash so that its colour matches the scene and its power stays within what the host
/// allows.
///
/// The tuned table holds mixes: pairs of currents with the colour and light that they give, in rows of equal total
/// power. One row, or a row between two, is chosen by power; the mixes of that row are a line of colours, and the point
/// of that line nearest to the wanted colour gives the currents. A factory calibration and the inline calibration
/// correct colours of the table. Units are those of interface/kiroflash.h.
#pragma once

#include "core/extension/flashcurrentestimate.h"
#include "core/ikirocontextmanager.h"

class CFlashCurrentEstimator
{
public:
    /// Rows whose order of power is checked; a table may have more. Powers in between lie on the line through the first
    /// two.
    static constexpr INT32 PowerCountMax = 6;
    /// Most entries of a table, and of its calibration.
    static constexpr UINT32 TableCountMax = 96;

    /// Unusable before the first SetTuningHeaderChanged.
    explicit CFlashCurrentEstimator(IKIROContextManager& rContextManager);
    CFlashCurrentEstimator(const CFlashCurrentEstimator&)            = delete;
    CFlashCurrentEstimator& operator=(const CFlashCurrentEstimator&) = delete;

    /// Takes the tuned table anew, without any calibration, and tells the context the largest tuned current. To be
    /// called before every estimate: the tuning's list of calibrated mixes is referenced from here to the estimate.
    /// @return 0, or 1 for a table that is too large or not in order of power
    KiroResult SetTuningHeaderChanged();

    /// @param pIn  not null
    /// @param pOut not null; zeros for an unknown type or a missing table
    /// @return 0, or 1 when tuning, table or type are unusable
    KiroResult EstimateFlashCurrent(const KIROAlgoFlashInput* pIn, FlashCurrentEstimate* pOut);

private:
    using LEDMixType = kiroflash::LEDMixType;

    VOID   TellMaxPower();
    bool   IsTableSizeUsable() const;
    bool   AreRowsInOrder();
    bool   CheckRow(INT32 power);
    UINT32 TotalPower(UINT32 index) const;

    VOID FactoryCalibrate(const AECAlgoFlashCalibrationData* pCalib);
    BOOL IsCalibDataValid(const AECAlgoFlashCalibrationData* pCalib) const;
    VOID ApplyFlashCalibrationData(const LEDMixType* pSrcTable, LEDMixType* pDstTable, FLOAT weight,
                                   const AECAlgoFlashCalibrationData* pCalib, const INT32* pCalibLinearIndices);
    VOID InlineCalibrate();

    VOID EstimateFull(const KIROAlgoFlashInput& rIn, FlashCurrentEstimate& rOut) const;
    bool SelectMixes(const KIROAlgoFlashInput& rIn, LEDMixType* pMixes, FlashCurrentEstimate& rOut) const;
    VOID DerateMixes(INT32 maxCurrent, LEDMixType* pMixes) const;
    VOID MixesOfPower(INT32 maxCurrent, LEDMixType* pMixes) const;
    VOID PopulateDebugData(const KIROAlgoFlashInput& rIn, const FlashCurrentEstimate& rOut) const;
    VOID MatchColour(const KIROAlgoFlashInput& rIn, const LEDMixType* pMixes, FlashCurrentEstimate& rOut);

    // Colour matching over one row of mixes. Both fill the currents, colour, flux, entry ratios and mix indices of pOut
    // and return the slope of the line of mixes that they used.

    /// The point of the line through the mixes that is nearest to the colour.
    static FLOAT GetMixLEDSettings(const LEDMixType* pMixes, FLOAT rg, FLOAT bg, FLOAT dualLEDIntersectSlope,
                                   INT32 mixSize, FlashCurrentEstimate* pOut);
    /// The point in which the straight line from first to last mix meets the one of the given slope through the colour.
    static FLOAT InterpolateMixSettings(const LEDMixType* pMixes, FLOAT rg, FLOAT bg, FLOAT dualLEDIntersectSlope,
                                        INT32 mixSize, FlashCurrentEstimate* pOut);

    IKIROContextManager&         m_rContextManager;
    kiroflash::LEDMatchTableType m_tuningAndCalibration;       ///< the tuning's record; its table is m_refTable or null
    LEDMixType                   m_tunedTable[TableCountMax];  ///< as tuned, zeros beyond tableCount
    LEDMixType                   m_refTable[TableCountMax];    ///< with its colours corrected
    BOOL                         m_isTuningValid;
    BOOL                         m_isFactoryCalApplied;
    UINT32                       m_minTunedPower;  ///< mA, of the first row
    UINT32                       m_maxTunedPower;  ///< mA, of the last row
    UINT32                       m_maxTunedPowerIndex;
    UINT32                       m_precomputedPowerTable[PowerCountMax];  ///< mA, of the first rows
    FLOAT                        m_preflashLEDRG;                         ///< colour matched at low power; 0 before any
    FLOAT                        m_preflashLEDBG;
};
