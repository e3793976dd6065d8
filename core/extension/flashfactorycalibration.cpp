// Corrects the colours of the LED mixes by what the factory measured of some of them. A row with measurements is
// corrected along its mixes, a row without by the corrected rows around it.

#include <algorithm>
#include <cmath>

#include "core/base/kirolog.h"
#include "core/extension/cflashcurrentestimator.h"
#include "core/extension/flashtable.h"

using exposurearithmetic::Epsilon;
using kiroflash::LEDMixType;

namespace
{

constexpr INT32  None        = -1;
constexpr FLOAT  ColourMin   = 0.001f;  ///< least tuned colour by which a measured one is divided
constexpr UINT32 RowCountMax = CFlashCurrentEstimator::TableCountMax;

/// One of the two colours of a mix, with its measurements.
struct Colour
{
    float LEDMixType::*pRatio;
    const FLOAT*       pMeasured;
};

/// Measurements next to a mix of their row, by the current of LED 1; None where there is none.
struct Neighbours
{
    INT32 exact;
    INT32 lower;
    INT32 upper;  ///< at or above
};

class TableCalibration
{
public:
    TableCalibration(const LEDMixType* pTuned, LEDMixType* pCorrected, FLOAT weight, INT32 rows, INT32 mixes,
                     const AECAlgoFlashCalibrationData& rCalib, const INT32* pLinearIndices)
        : m_pTuned(pTuned), m_pCorrected(pCorrected), m_weight(weight), m_rows(rows), m_mixes(mixes),
          m_count(static_cast<INT32>(rCalib.count)),
          m_pLinearIndices(pLinearIndices), m_colours{{&LEDMixType::RGRatio, rCalib.pRGRatios},
                                                      {&LEDMixType::BGRatio, rCalib.pBGRatios}}
    {
    }

    VOID Run()
    {
        for (INT32 row = 0; row < m_rows; ++row)
        {
            m_isCalibrated[row] = IsRowMeasured(row);
            for (INT32 mix = 0; m_isCalibrated[row] && mix < m_mixes; ++mix)
            {
                CorrectByMixes(row * m_mixes + mix);
            }
        }
        for (INT32 row = 0; row < m_rows; ++row)
        {
            if (!m_isCalibrated[row])
            {
                CorrectByRows(row);
            }
        }
    }

private:
    bool IsRowMeasured(INT32 row) const
    {
        return std::any_of(m_pLinearIndices, m_pLinearIndices + m_count,
                           [&](INT32 linear) { return linear / m_mixes == row; });
    }

    Neighbours FindNeighbours(INT32 index) const
    {
        Neighbours  found  = {None, None, None};
        const INT32 wanted = m_pTuned[index].LED1Setting;
        for (INT32 entry = 0; entry < m_count; ++entry)
        {
            const INT32 linear  = m_pLinearIndices[entry];
            const INT32 current = m_pTuned[linear].LED1Setting;
            if (linear / m_mixes != index / m_mixes)
            {
                continue;
            }
            if (linear == index && found.exact == None)
            {
                found.exact = entry;
            }
            if (current < wanted && (found.lower == None || current > CurrentOf(found.lower)))
            {
                found.lower = entry;
            }
            if (current >= wanted && (found.upper == None || current < CurrentOf(found.upper)))
            {
                found.upper = entry;
            }
        }
        return found;
    }

    INT32 CurrentOf(INT32 entry) const
    {
        return m_pTuned[m_pLinearIndices[entry]].LED1Setting;
    }

    VOID CorrectByMixes(INT32 index)
    {
        const Neighbours found = FindNeighbours(index);
        for (const Colour& rColour : m_colours)
        {
            const FLOAT tuned = m_pTuned[index].*rColour.pRatio;
            FLOAT&      rOut  = m_pCorrected[index].*rColour.pRatio;
            if (found.exact != None)
            {
                rOut = Weighted(rColour.pMeasured[found.exact], tuned);
            }
            else if (found.lower != None && found.upper != None)
            {
                rOut = Weighted(BetweenMeasured(rColour, found, tuned), tuned);
            }
            else
            {
                // The weight goes against the tuned colour of the measured mix, not of this one: below a weight of 1
                // the mixes beyond the measured ones move towards its colour. The own tuned colour instead would move
                // all of them in cameras that are calibrated so.
                const INT32 entry    = (found.lower != None) ? found.lower : found.upper;
                const FLOAT anchor   = TunedOf(rColour, entry);
                const FLOAT measured = rColour.pMeasured[entry];
                rOut                 = Weighted(tuned * (measured / std::max(anchor, ColourMin)), anchor);
            }
        }
    }

    FLOAT TunedOf(const Colour& rColour, INT32 entry) const
    {
        return m_pTuned[m_pLinearIndices[entry]].*rColour.pRatio;
    }

    FLOAT BetweenMeasured(const Colour& rColour, const Neighbours& rFound, FLOAT tuned) const
    {
        const FLOAT lower = TunedOf(rColour, rFound.lower);
        const FLOAT upper = TunedOf(rColour, rFound.upper);
        if (std::abs(upper - lower) < Epsilon)
        {
            return tuned;
        }
        return flashtable::Between(rColour.pMeasured[rFound.lower], rColour.pMeasured[rFound.upper],
                                   (tuned - lower) / (upper - lower));
    }

    VOID CorrectByRows(INT32 row)
    {
        INT32 low = row - 1;
        while (low >= 0 && !m_isCalibrated[low])
        {
            --low;
        }
        INT32 high = row + 1;
        while (high < m_rows && !m_isCalibrated[high])
        {
            ++high;
        }
        const bool hasLow  = low >= 0;
        const bool hasHigh = high < m_rows;
        if (!hasLow && !hasHigh)
        {
            STATS_LOG_ERROR("flashMeas: strange state; no power calib");
            return;
        }
        for (INT32 mix = 0; mix < m_mixes; ++mix)
        {
            for (const Colour& rColour : m_colours)
            {
                const INT32 index                   = row * m_mixes + mix;
                const FLOAT tuned                   = m_pTuned[index].*rColour.pRatio;
                const FLOAT corrected               = (hasLow && hasHigh)
                                                          ? ByOffsets(rColour, row, low, high, mix)
                                                          : tuned * RatioOf(rColour, (hasLow ? low : high) * m_mixes + mix);
                m_pCorrected[index].*rColour.pRatio = Weighted(corrected, tuned);
            }
        }
    }

    FLOAT ByOffsets(const Colour& rColour, INT32 row, INT32 low, INT32 high, INT32 mix) const
    {
        // Rows beyond those that are checked for their order may be of one power.
        const FLOAT span  = PowerOf(high) - PowerOf(low);
        const FLOAT share = (std::abs(span) < Epsilon) ? 0.0f : (PowerOf(row) - PowerOf(low)) / span;
        const FLOAT offset =
            flashtable::Between(OffsetOf(rColour, low * m_mixes + mix), OffsetOf(rColour, high * m_mixes + mix), share);
        return std::max(m_pTuned[row * m_mixes + mix].*rColour.pRatio + offset, 0.0f);
    }

    FLOAT OffsetOf(const Colour& rColour, INT32 index) const
    {
        return m_pCorrected[index].*rColour.pRatio - m_pTuned[index].*rColour.pRatio;
    }

    FLOAT RatioOf(const Colour& rColour, INT32 index) const
    {
        return m_pCorrected[index].*rColour.pRatio / std::max(m_pTuned[index].*rColour.pRatio, ColourMin);
    }

    FLOAT PowerOf(INT32 row) const
    {
        const LEDMixType& rMix = m_pTuned[static_cast<ptrdiff_t>(row) * m_mixes];
        return static_cast<FLOAT>(static_cast<INT64>(rMix.LED1Setting) + rMix.LED2Setting);
    }

    FLOAT Weighted(FLOAT corrected, FLOAT tuned) const
    {
        return m_weight * corrected + (1.0f - m_weight) * tuned;
    }

    const LEDMixType* m_pTuned;
    LEDMixType*       m_pCorrected;
    FLOAT             m_weight;
    INT32             m_rows;
    INT32             m_mixes;
    INT32             m_count;
    const INT32*      m_pLinearIndices;
    Colour            m_colours[2];
    bool              m_isCalibrated[RowCountMax]{};
};

VOID LogTable(const LEDMixType* pTable, INT32 rows, INT32 mixes)
{
    for (INT32 row = 0; row < rows; ++row)
    {
        for (INT32 mix = 0; mix < mixes; ++mix)
        {
            const LEDMixType& rMix = pTable[row * mixes + mix];
            STATS_LOG_TRACE("flashMeas pow,%d,mix,%d,rg,%.3f,bg,%.3f", row, mix, rMix.RGRatio, rMix.BGRatio);
        }
    }
}

}  // namespace

BOOL CFlashCurrentEstimator::IsCalibDataValid(const AECAlgoFlashCalibrationData* pCalib) const
{
    const UINT32 count      = m_tuningAndCalibration.tableCalibrationCount;
    const bool   isMeasured = pCalib->pRGRatios != nullptr && pCalib->pBGRatios != nullptr;
    if (count > TableCountMax || count != pCalib->count || (count > 0 && !isMeasured))
    {
        STATS_LOG_ERROR("flashMeas: mismatch between input calib count %d and header calib count %d", pCalib->count,
                        count);
        return FALSE;
    }
    for (UINT32 i = 0; i < count; ++i)
    {
        const auto& rEntry = m_tuningAndCalibration.tableCalibration[i];
        const INT64 linear = flashtable::LinearIndex(rEntry, m_tuningAndCalibration.countMix);
        if (linear < 0 || linear >= m_tuningAndCalibration.tableCount)
        {
            STATS_LOG_ERROR("flashMeas: calib pow %d mix %d indices larger than tuning count %d", rEntry.indexPower,
                            rEntry.indexMix, m_tuningAndCalibration.tableCount);
            return FALSE;
        }
    }
    return TRUE;
}

VOID CFlashCurrentEstimator::ApplyFlashCalibrationData(const LEDMixType* pSrcTable, LEDMixType* pDstTable, FLOAT weight,
                                                       const AECAlgoFlashCalibrationData* pCalib,
                                                       const INT32*                       pCalibLinearIndices)
{
    const INT32 rows  = m_tuningAndCalibration.countPower;
    const INT32 mixes = m_tuningAndCalibration.countMix;
    std::copy_n(pSrcTable, TableCountMax, pDstTable);
    STATS_LOG_TRACE("flashMeas: BEFORE calibration");
    LogTable(pDstTable, rows, mixes);
    TableCalibration(pSrcTable, pDstTable, weight, rows, mixes, *pCalib, pCalibLinearIndices).Run();
    STATS_LOG_TRACE("flashMeas: AFTER calibration");
    LogTable(pDstTable, rows, mixes);
    m_isFactoryCalApplied = TRUE;
}
