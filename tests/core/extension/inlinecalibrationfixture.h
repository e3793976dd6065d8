/// @file
/// Captures of a grey scene with a flash of known colour.
///
/// Neutral lies at (0.5, 0.5) in red over green and blue over green. All tuned colours lie at a distance of 0.5 from
/// it, and so do the true ones: a capture measures only the direction.
#pragma once

#include <algorithm>
#include <vector>

#include "core/extension/cficmanager.h"
#include "tests/support/bytewriter.h"
#include "tests/support/statsfixture.h"

namespace inlinecalibrationfixture
{

using namespace kiroflash;
using namespace statsfixture;

struct Colour
{
    FLOAT rg;
    FLOAT bg;
};

struct LEDPair
{
    INT32 led1;
    INT32 led2;
};

inline constexpr Colour  Neutral = {0.5f, 0.5f};
inline constexpr Colour  Tuned   = {0.2f, 0.9f};  // of the middle mix
inline constexpr Colour  True    = {0.1f, 0.8f};
inline constexpr LEDPair LowMix  = {300, 200};
inline constexpr LEDPair HighMix = {600, 400};

/// What lies on the way from neutral to a colour.
inline Colour Towards(Colour colour, FLOAT share)
{
    return {Neutral.rg + share * (colour.rg - Neutral.rg), Neutral.bg + share * (colour.bg - Neutral.bg)};
}

class InlineCalibration : public StatsTest
{
protected:
    InlineCalibration()
    {
        m_tuning.LEDMatching          = {.dualLEDIntersectSlope = 1.0f,
                                         .countPower            = 2,
                                         .countMix              = 3,
                                         .tableCount            = 6,
                                         .table                 = m_table,
                                         .tableCalibration      = m_calibration};
        m_tuning.LEDInlineCalibration = {.triggerIndex          = 300.0f,
                                         .refRange              = 0.1f,
                                         .refRegionPCT          = 0.5f,
                                         .validRefCount         = 16,
                                         .distanceRatioMin      = 0.2f,
                                         .distanceRatioMax      = 1.2f,
                                         .angleShiftMax         = 0.15f,
                                         .minKneeCnt            = 4,
                                         .maxZoneCnt            = 8,
                                         .confidencePctThr      = 0.7f,
                                         .numOfFactoringRegions = 10,
                                         .LEDInlineCalibTarget  = m_zones};

        m_context.m_input.bIsFICMode         = TRUE;
        m_context.m_input.AWBState.redGain   = 2.0f;
        m_context.m_input.AWBState.blueGain  = 2.0f;
        m_context.m_input.AWBState.greenGain = 1.0f;
        m_context.SetTrigger(TriggerCtrlLux, 300.0f);
        m_out.monitoredFlags.bFlashNeeded = TRUE;
        Load();
    }

    VOID Load()
    {
        Tune(m_tuning);
        m_pManager = TavoNew<CFICManager>(m_context);
        EXPECT_EQ(m_pManager->SetFICMode(), 0);
    }

    /// The frame's statistics: one colour in the central quarter, black around it.
    VOID SetStats(Colour colour, UINT32 width = 8)
    {
        m_rg.assign(8 * width, 0.0f);
        m_bg.assign(8 * width, 0.0f);
        for (UINT32 row = 2; row < 6; ++row)
        {
            std::fill_n(&m_rg[row * width + width / 2 - 2], 4, colour.rg);
            std::fill_n(&m_bg[row * width + width / 2 - 2], 4, colour.bg);
        }
        m_pStats->ResetStats();
        Set(Grid("gridRGratio", width, 8, m_rg));
        Set(Grid("gridBGratio", width, 8, m_bg));
    }

    VOID RunFlashOff()
    {
        SetStats(Neutral);
        m_context.m_input.opMode = AECAlgoOperationModeStreaming;
        Run({TRUE, FALSE, {}, {}});
    }

    /// LEDs for which the estimate is the tuned colour.
    static KIROAlgoFlashOutput Of(LEDPair pair)
    {
        return {.LED1Setting = pair.led1, .LED2Setting = pair.led2, .RGRatio = Tuned.rg, .BGRatio = Tuned.bg};
    }

    VOID RunPreflash(LEDPair pair, Colour measured, UINT32 width = 8)
    {
        SetStats(measured, width);
        m_context.m_input.opMode = AECAlgoOperationModePreflash;
        Run({FALSE, TRUE, Of(pair), {}});
    }

    /// The step that stores and factors.
    VOID RunFullFlash(LEDPair pair, Colour measured)
    {
        SetStats(measured);
        m_context.m_input.opMode       = AECAlgoOperationModeStreaming;
        m_context.m_input.bIsFullFlash = TRUE;
        Run({FALSE, FALSE, {}, Of(pair)});
        m_context.m_input.bIsFullFlash = FALSE;
    }

    /// A capture whose full flash is no sample.
    VOID CaptureLow(LEDPair pair, Colour measured)
    {
        RunFlashOff();
        RunPreflash(pair, measured);
        RunFullFlash(HighMix, Neutral);
    }

    VOID Run(const KIROExtFlashInfo& rInfo)
    {
        KIROExtensionInput input{};
        input.flashInfo = rInfo;
        m_pManager->RunFICManager(input, m_out);
    }

    /// Hands samples of the low middle mix to the manager, as from an earlier session, and lets it factor them.
    VOID Factor(const std::vector<Colour>& rColours)
    {
        const UINT16 count = static_cast<UINT16>(rColours.size());
        ByteWriter   blob;
        blob.Add(count).Add<UINT8>(3).Add<UINT8>(2);
        for (const Colour& rColour : rColours)
        {
            blob.Add<UINT16>(LowMix.led1, LowMix.led2).Add(rColour).Zeros(4);
        }
        blob.Zeros(3 * 24).Add(count).Zeros(6);  // all in zone 0, low
        ASSERT_EQ(m_pManager->SetFICData(blob.Get().data()), 0);
        CaptureLow(LowMix, Neutral);
    }

    const KIROFICInfo& Info() const
    {
        return m_pManager->GetFICInfo();
    }

    VOID ExpectColour(FLOAT rg, FLOAT bg, Colour expected)
    {
        EXPECT_NEAR(rg, expected.rg, 1e-5f);
        EXPECT_NEAR(bg, expected.bg, 1e-5f);
    }

    LEDMixType               m_table[6] = {{500, 0, 0.5f, 1.0f, 1.0f},           {300, 200, Tuned.rg, Tuned.bg, 1.0f},
                                           {0, 500, 0.0f, 0.5f, 1.0f},           {1000, 0, 0.5f, 1.0f, 2.0f},
                                           {600, 400, Tuned.rg, Tuned.bg, 2.0f}, {0, 1000, 0.0f, 0.5f, 2.0f}};
    KIROLEDMixCalibType      m_calibration[4]{};
    LEDInlineCalibTargetType m_zones[3]{};
    KIROFlashType            m_tuning{};
    std::vector<FLOAT>       m_rg;
    std::vector<FLOAT>       m_bg;
    KIROExtensionOutput      m_out{};
    TavoPtr<CFICManager>     m_pManager;
};

}  // namespace inlinecalibrationfixture
