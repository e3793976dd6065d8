// From statistics to three targets: frames that are skipped, the choice of the analyzers, antibanding, lock, preflash.

#include "core/metering/ckiromodmetering.h"

#include <array>
#include <memory>
#include <utility>

#include "schema/kiroparamextension.h"
#include "tests/core/metering/analyzerrecords.h"
#include "tests/support/statsfixture.h"

using namespace statsfixture;
using namespace analyzerrecords;

namespace
{

using Targets = std::array<UINT64, AECAlgoExposureCount>;  // short, long, safe

Targets Of(const UINT64 (&rExposures)[AECAlgoExposureCount])
{
    return std::to_array(rExposures);
}

/// Analyzers 0, 1 and 2 decide Short, Long and Safe, 3 Safe again. Luma and measured exposures are 1, so a target luma
/// is the exposure.
class Metering : public StatsTest
{
protected:
    Metering()
    {
        m_context.m_input.systemLatency = 1;
        m_context.SetCalculatorResult(LumaID, 1.0f);
        const KIROExposureSelection selections[] = {ExposureShort, ExposureLong, ExposureSafe, ExposureSafe};
        for (UINT32 id = 0; id < 4; ++id)
        {
            m_analyzers.push_back(std::make_unique<AnalyzerRecord>(id));
            m_analyzers.back()->m_record.exposureType = selections[id];
            m_analyzers.back()->PassThrough(CalculatorBank(LumaID), AnalyzerBank(TargetID + static_cast<INT32>(id)),
                                            CalculatorBank(LumaID), 100 + 10 * static_cast<INT32>(id));
        }
        m_metering.antibandingMetering = {{FALSE, 0.5f}, {FALSE, 0.8f, 0.5f}};
    }

    CKIROMetering& Module()
    {
        if (m_pModule == nullptr)
        {
            std::vector<SceneAnalyzerType> records;
            for (const auto& rpAnalyzer : m_analyzers)
            {
                records.push_back(rpAnalyzer->m_record);
            }
            AnalyzerRecord                                               lux;
            KIROMeteringSceneAnalyzerType                                analyzers{};
            kirometeringstatscalculator::KIROMeteringStatsCalculatorType calculators{};
            kiroparamextension::KIROParamExtensionType                   extension{};
            analyzers.luxAnalyzer         = lux.m_record;
            analyzers.analyzers           = records.data();
            analyzers.analyzersCount      = static_cast<UINT32>(records.size());
            extension.extensionParam      = m_parameters.data();
            extension.extensionParamCount = static_cast<UINT32>(m_parameters.size());
            Tune(m_metering, analyzers, calculators, extension);
            m_pModule = TavoNew<CKIROMetering>(m_context.m_tuningData, m_context);
        }
        return *m_pModule;
    }

    /// The next frame runs with the tunings as they are now.
    VOID Restart()
    {
        m_pModule.reset();
    }

    AECFrameHistory Frame(UINT64 exposure = 1)
    {
        AECFrameHistory frame = {.frameID = ++m_frameID, .luxIndex = static_cast<FLOAT>(m_frameID)};
        for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
        {
            frame.exposureSets[type].exposure = exposure;
            frame.exposureTargets[type]       = m_frameID * 10 + type;
        }
        return frame;
    }

    KiroResult Preprocess(BOOL bStatsValid = TRUE)
    {
        KIROMeteringInput input = {bStatsValid, m_antibanding};
        return Module().RunMeteringPreprocess(input, m_output);
    }

    /// A whole frame with these targets. @param active analyzers, in this order
    Targets Meter(const Targets& rTargets, std::vector<UINT32> active = {0, 1, 2})
    {
        const UINT64 targets[] = {rTargets[0], rTargets[1], rTargets[2], 777};
        for (INT32 id = 0; id < 4; ++id)
        {
            const FLOAT target = static_cast<FLOAT>(targets[id]);
            m_context.SetAnalyzerResult(TargetID + id, {target, target});
        }
        m_context.SaveFrame(Frame());
        EXPECT_EQ(Preprocess(), 0);
        m_active = {1, nullptr, static_cast<UINT32>(active.size()), 0, active.data()};
        SetBank(BankIDActiveAnalyzers, &m_active);
        for (UINT32 id : active)
        {
            (VOID) Module().RunAnalyzer(id);
        }
        KIROMeteringInput input = {TRUE, m_antibanding};
        EXPECT_EQ(Module().RunMeteringPostprocess(input, m_output), 0);
        return Of(m_output.exposures);
    }

    kirometering::KIROMeteringType                           m_metering{};
    std::vector<std::unique_ptr<AnalyzerRecord>>             m_analyzers;
    std::vector<kiroparamextension::statsExtensionParamType> m_parameters;
    DBActiveAnalyzersPayload                                 m_active{};
    KIROMeteringOutput                                       m_output{};
    UINT64                                                   m_antibanding = 1000000;
    UINT64                                                   m_frameID     = 9;
    TavoPtr<CKIROMetering>                                   m_pModule;
};

TEST_F(Metering, FramesThatCannotBeMeteredKeepThePreviousTargets)
{
    EXPECT_EQ(Preprocess(), 1);
    EXPECT_EQ(m_output.bIsMeteringSkipped, TRUE);
    EXPECT_EQ(Of(m_output.exposures), (Targets{10000000, 10000000, 10000000}));
    EXPECT_TRUE(m_log.Has(LevelError, "Error: cannot retrieve frame history; using default exposure 10000000 is "
                                      "reflected snapshot 0"));

    m_context.SaveFrame(Frame());
    EXPECT_EQ(Preprocess(), 0);
    EXPECT_EQ(m_output.bIsMeteringSkipped, FALSE);
    EXPECT_EQ(Preprocess(FALSE), 1);
    EXPECT_EQ(Of(m_output.exposures), (Targets{100, 101, 102}));
    EXPECT_EQ(m_context.Trigger(TriggerCtrlLux), 10.0f);
    for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
    {
        AECFrameHistory frame             = Frame();
        frame.exposureSets[type].exposure = 0;
        m_context.SaveFrame(frame);
        EXPECT_EQ(Preprocess(), 1) << type;
    }

    // A reflected snapshot: the targets of the preview frame before it, except in a snapshot of three exposures.
    m_context.SaveFrame(Frame());
    AECFrameHistory snapshot = Frame();
    snapshot.bIsSnapshot     = TRUE;
    m_context.SaveFrame(snapshot);
    EXPECT_EQ(Preprocess(), 1);
    EXPECT_EQ(Of(m_output.exposures), (Targets{140, 141, 142}));
    EXPECT_TRUE(m_log.Has(LevelTrace, "Using previous exposure 140 141 142 is reflected snapshot 1, is reflected frame "
                                      "invalid 0, is valid stats 1"));
    m_context.SetContextEvent(AECCoreSnapshotHDR3, TRUE);
    EXPECT_EQ(Preprocess(), 0);
}

TEST_F(Metering, PublishesTheReflectedExposuresAndMeasuresInOrder)
{
    FLOAT data[] = {0.1f, 1.05f, 120.0f};
    m_parameters.push_back({const_cast<CHAR*>("AECExtParamMFHDRADRCControl"), 9, TRUE, 3, 0, data, 0, 0, nullptr});
    m_context.SaveFrame({.frameID      = 10,
                         .exposureSets = {{.exposure = 1000}, {.exposure = 3000}, {.exposure = 2000}},
                         .shortBlend   = 0.75f});
    ASSERT_EQ(Preprocess(), 0);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlShortExp), 1000.0f);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlLongExp), 3000.0f);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlSafeExp), 2000.0f);
    EXPECT_EQ(m_context.Trigger(120), 0.75f);
    EXPECT_TRUE(m_log.Has(LevelWarning, "AECExtParamMFHDRADRCControl ID mismatch, expect ID 4, tuning param ID 9"));
    EXPECT_EQ(m_context.Trigger(TriggerCtrlADRCCap), 3.0f);

    std::vector<std::string> order;
    for (const auto& rLine : m_log.Lines())
    {
        const size_t at = rLine.text.find("---- Running ");
        if (at != std::string::npos)
        {
            order.push_back(rLine.text.substr(at + 13, 3));
        }
    }
    EXPECT_EQ(order, (std::vector<std::string>{"ave", "cen", "dar", "bri", "Lux"}));

    m_context.SetTrigger(TriggerCtrlADRCCap, 1.5f);
    ASSERT_EQ(Preprocess(), 0);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlADRCCap), 1.5f);
}

TEST_F(Metering, FlashSnapshotsMeterTheFrameBeforeTheFlash)
{
    m_context.SaveFrame(Frame(1000));
    m_context.m_pHistory->SaveFlashFrame(KIROExtFlashCurrentType::Off);
    m_context.SaveFrame(Frame(300));
    m_context.m_pHistory->SaveFlashFrame(KIROExtFlashCurrentType::Low);
    m_context.SaveFrame(Frame(50));
    m_context.m_input.snapshotMode = KIROCoreSnapshotType::Flash;
    ASSERT_EQ(Preprocess(), 0);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlSafeExp), 1000.0f);
    for (KIROTriggerType id : {TriggerCtrlShortExpFLow, TriggerCtrlLongExpFLow, TriggerCtrlSafeExpFLow})
    {
        EXPECT_EQ(m_context.Trigger(id), 300.0f);
    }
    EXPECT_FALSE(m_log.HasPart(LevelTrace, "Running average calculator"));
    EXPECT_TRUE(m_log.HasPart(LevelTrace, "Running Lux Analyzer"));
}

TEST_F(Metering, LastActiveAnalyzerOfAnExposureDecides)
{
    EXPECT_EQ(Meter({10, 30, 20}), (Targets{10, 30, 20}));
    EXPECT_EQ(Meter({10, 30, 20}, {0, 1, 2, 3}), (Targets{10, 30, 777}));
    EXPECT_EQ(Meter({10, 30, 20}, {3, 2, 0}), (Targets{10, 20, 20})) << "no Long";
    EXPECT_EQ(Meter({10, 30, 20}, {2, 1000}), (Targets{20, 20, 20}));
    EXPECT_EQ(Meter({10, 30, 20}, {}), (Targets{0, 0, 0}));
    m_context.m_input.bDisableADRC = TRUE;
    EXPECT_EQ(Meter({10, 30, 20}), (Targets{20, 20, 20}));
}

TEST_F(Metering, AntibandingPullsSafeAndKeepsTheRatios)
{
    m_metering.antibandingMetering.antibandingVsLuma.enableAntibandingPrioOverLuma = TRUE;
    // Full pull above 800000, none up to 500000.
    const std::pair<Targets, Targets> cases[] = {{{450000, 1800000, 900000}, {500000, 2000000, 1000000}},
                                                 {{800000, 800000, 800000}, {1000000, 1000000, 1000000}},
                                                 {{325000, 1300000, 650000}, {412500, 1650000, 825000}},
                                                 {{500000, 500000, 500000}, {500000, 500000, 500000}},
                                                 {{100000, 400000, 400000}, {100000, 400000, 400000}},
                                                 {{500000, 2000000, 1000000}, {500000, 2000000, 1000000}}};
    for (const auto& [targets, expected] : cases)
    {
        EXPECT_EQ(Meter(targets), expected);
        EXPECT_EQ(Of(m_output.mtrExposures), targets);
    }
    EXPECT_TRUE(m_log.HasPart(LevelTrace, "antibanding luma atb 1000000 modified target exposures from 325000 "));

    // A fade of 500 is widened to 1000: a quarter of the way.
    m_antibanding                                                                        = 10000;
    m_metering.antibandingMetering.antibandingVsLuma.clampThresholdAsFactorOfMinExposure = 0.55f;
    Restart();
    EXPECT_EQ(Meter({5250, 5250, 5250}), (Targets{8812, 8812, 8812}));
    EXPECT_TRUE(m_log.HasPart(LevelWarning, "warning: very small exit range clamp 5500.0"));

    m_metering.antibandingMetering.antibandingVsLuma.clampThresholdAsFactorOfMinExposure = 0.5f;
    Restart();
    EXPECT_EQ(Meter({9000, 9000, 9000}), (Targets{9000, 9000, 9000}));
    EXPECT_TRUE(m_log.Has(LevelWarning, "tuning issue: clamp 0.500000 exit 0.500000"));

    // The flicker control switches it off, except in its context or as its second datum says.
    m_antibanding = 1000000;
    FLOAT data[]  = {0.0f, 0.0f};
    m_parameters.push_back({const_cast<CHAR*>("AECExtParamFlickerControl"), 5, FALSE, 2, 0, data, 0, 0, nullptr});
    m_metering.antibandingMetering.antibandingVsLuma.clampThresholdAsFactorOfMinExposure = 0.8f;
    for (const auto& [context, datum, safeExp] :
         {std::tuple{FALSE, 0.0f, 900000u}, {TRUE, 0.0f, 1000000u}, {FALSE, 1.0f, 1000000u}})
    {
        m_context.SetContextEvent(AECCustomContext1, context);
        data[1] = datum;
        Restart();
        EXPECT_EQ(Meter({900000, 900000, 900000})[AECAlgoExposureSafe], safeExp) << datum;
    }
}

TEST_F(Metering, AntibandingRaisesShortByTheGapToSafe)
{
    auto& rTuning                         = m_metering.antibandingMetering.antibandingVsADRC;
    rTuning.enableAntibandingPrioOverADRC = TRUE;
    EXPECT_EQ(Meter({500000, 2000000, 2000000})[AECAlgoExposureShort], 500000u) << "no antibanding";
    m_context.m_input.flickerComp = StatisticsAntibanding50Hz;
    EXPECT_EQ(Meter({500000, 2000000, 2000000}), (Targets{1000000, 2000000, 2000000}));
    EXPECT_EQ(Meter({1200000, 2000000, 2000000})[AECAlgoExposureShort], 1200000u);
    // Half-way between 500000 and 1000000: a gain of 3 becomes 2.
    EXPECT_EQ(Meter({250000, 750000, 750000})[AECAlgoExposureShort], 375000u);
    EXPECT_EQ(Meter({250000, 500000, 500000})[AECAlgoExposureShort], 250000u);

    // A fade of 500 is widened downwards to 1000.
    rTuning.exitThresholdAsFactorOfMinExposure = 0.9995f;
    Restart();
    EXPECT_EQ(Meter({499750, 999500, 999500})[AECAlgoExposureShort], 666333u);  // 999500 / 1.5
    rTuning.exitThresholdAsFactorOfMinExposure = 1.5f;
    Restart();
    EXPECT_EQ(Meter({500000, 2000000, 2000000})[AECAlgoExposureShort], 500000u);
    EXPECT_TRUE(m_log.Has(LevelWarning, "tuning issue exit threshold 1.500000"));
}

TEST_F(Metering, LockKeepsThePreviousTargetsExceptInFlashSnapshots)
{
    EXPECT_EQ(Module().UpdateMeteringLockExposure(m_output), FALSE);
    EXPECT_EQ(Of(m_output.exposures), (Targets{0, 0, 0}));
    m_context.m_input.bLockMetering = TRUE;
    EXPECT_EQ(Module().UpdateMeteringLockExposure(m_output), TRUE);
    EXPECT_EQ(Of(m_output.exposures), (Targets{10000000, 10000000, 10000000}));
    m_context.SaveFrame(Frame());
    EXPECT_EQ(Module().UpdateMeteringLockExposure(m_output), TRUE);
    EXPECT_EQ(Of(m_output.exposures), (Targets{100, 101, 102}));
    m_output.exposures[0]          = 5;
    m_context.m_input.snapshotMode = KIROCoreSnapshotType::Flash;
    EXPECT_EQ(Module().UpdateMeteringLockExposure(m_output), TRUE);
    EXPECT_EQ(m_output.exposures[0], 5u);
}

TEST_F(Metering, PreflashGoesOnWhileTheLEDBrightensARegion)
{
    kiroflash::FlashStatsPreprocessingType tuning{};
    CHAR                                   level[] = "level", saturation[] = "saturation";
    tuning.stopMeteringYLevel      = {level, level, 100.0f, 20.0f};
    tuning.stopMeteringYSaturation = {saturation, saturation, 10.0f, 5.0f};
    std::vector<FLOAT> offLevel(256, 50.0f), offSaturation(256, 0.0f), lowLevel(256, 120.0f), lowSaturation(256, 15.0f);
    KIROCntStatsOut    off[]    = {Grid("level", 16, 16, offLevel), Grid("saturation", 16, 16, offSaturation)};
    KIROCntStatsOut    low[]    = {Grid("saturation", 16, 16, lowSaturation), Grid("level", 16, 16, lowLevel)};
    const auto         isNeeded = [&](UINT32 offCount = 2, UINT32 lowCount = 2)
    {
        off[0].frameID = ++m_frameID;
        return Module().IsPreflashMeteringNeeded(off, offCount, low, lowCount, &tuning);
    };
    EXPECT_EQ(isNeeded(), FALSE) << "on the limits";
    lowLevel[5 * 16 + 5] = 121.0f;
    EXPECT_EQ(isNeeded(), TRUE);
    offLevel[5 * 16 + 6] = 101.0f;  // bright beside it without the LED
    EXPECT_EQ(isNeeded(), FALSE);
    lowLevel[5 * 16 + 8] = 121.0f;  // two away
    EXPECT_EQ(isNeeded(), TRUE);
    offLevel.assign(256, 101.0f);
    lowSaturation[0] = 99.0f;
    EXPECT_EQ(isNeeded(), FALSE);

    offLevel.assign(256, 50.0f);
    for (KIROCntStatsOut* pChannel : {&off[0], &off[1], &low[0], &low[1]})
    {
        FLOAT* pValues = std::exchange(pChannel->channelData.Data.pFData, nullptr);
        EXPECT_EQ(isNeeded(), FALSE) << "no values, no region that brightens";
        pChannel->channelData.Data.pFData = pValues;
    }

    EXPECT_EQ(isNeeded(1), TRUE);
    EXPECT_TRUE(m_log.Has(LevelError, "cannot find OFF stats level index 0 or saturation index -1"));
    EXPECT_EQ(isNeeded(2, 1), TRUE);
    EXPECT_TRUE(m_log.Has(LevelError, "cannot find LOW stats level index -1 or saturation index 0"));

    // A saturation channel of fewer regions is not read behind its end.
    std::vector<FLOAT> few(16, 0.0f);
    off[1] = Grid("saturation", 4, 4, few);
    low[0] = off[1];
    EXPECT_EQ(isNeeded(), FALSE);
}

}  // namespace
