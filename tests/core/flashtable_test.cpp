// The tables of a flash snapshot: gains by the main flash, speckles, and the split of a precision flash.

#include <limits>

#include "core/ckiromtrtablegen.h"
#include "schema/kirometeringsaalgorithm.h"
#include "tests/support/debugrecord.h"
#include "tests/support/statsfixture.h"

using namespace statsfixture;
using namespace kiromtrtablegen;

namespace
{

constexpr UINT32 Cells        = 256;
constexpr INT32  BiasID       = 60;
constexpr INT32  BackgroundID = 61;
constexpr INT32  ForegroundID = 62;
constexpr INT32  SharePctID   = 150;

/// A region of luma 50 without LED and 25 in the preflash, which is 100 at the exposure without LED; a flux of 2 makes
/// it 150, a gain of 3. The corner region sees no LED, so its gain of 1 is the floor, and the table shows the gains.
class FlashTable : public StatsTest
{
protected:
    static constexpr UINT32 Corner = Cells - 1;

    FlashTable() : m_lumaOff(Cells, 50.0f), m_satOff(Cells, 0.0f), m_lumaLow(Cells, 25.0f), m_satLow(Cells, 0.0f)
    {
        m_lumaLow[Corner] = 12.5f;

        m_context.m_input.snapshotMode = KIROCoreSnapshotType::Flash;
        m_context.m_input.mtrMode      = AECAlgoMeteringModeCenterWeighted;
        m_context.SetTrigger(TriggerFlashFlux, 2.0f);
        m_context.SetTrigger(TriggerFlashExpIncrease, 4.0f);

        m_tuning.flashBiasMetTblGen.statsSelection = {const_cast<CHAR*>("lumaOff"),  const_cast<CHAR*>("satOff"),
                                                      const_cast<CHAR*>("lumaLow"),  const_cast<CHAR*>("satLow"),
                                                      const_cast<CHAR*>("not used"), KIROStatsType::KIROStatsGrid};
        m_rConfig.dataBankID                       = BiasID;
        m_rConfig.baseTableID                      = 99;
        m_rConfig.thresBrightSat                   = 200.0f;
        m_rConfig.flashEstStrength                 = 1.0f;
        m_rConfig.SpeckleScreen                    = {TRUE, {100.0f, 200.0f}};
    }

    VOID Load()
    {
        Tune(m_tuning, m_algorithms);
        SetBank(BankIDMetering2D, &m_table);
    }

    KiroResult Run()
    {
        SetAlone(Grid("lumaOff", 16, 16, m_lumaOff));
        Set(Grid("satOff", 16, 16, m_satOff));
        Set(Grid("lumaLow", 16, 16, m_lumaLow));
        Set(Grid("satLow", 16, 16, m_satLow));
        Load();
        return m_module.RunTableGen();
    }

    FLOAT RunForWeight(UINT32 cell)
    {
        EXPECT_EQ(Run(), 0);
        return Weights()[cell];
    }

    /// Of a table that is there.
    const FLOAT* Weights(INT32 dataID = BiasID)
    {
        return m_context.m_pBankManager->GetDataMetering2D(dataID)->weights;
    }

    std::vector<FLOAT>                m_lumaOff;
    std::vector<FLOAT>                m_satOff;
    std::vector<FLOAT>                m_lumaLow;
    std::vector<FLOAT>                m_satLow;
    KIROMtrTableGenType               m_tuning{};
    FlashBiasMtrTblGenCoreConfigType& m_rConfig = m_tuning.flashBiasMetTblGen.mtrTblConfig;
    CKIROMtrTableGen                  m_module{m_context.m_tuningData, m_context};

    kirometeringsaalgorithm::KIROMeteringSAAlgorithmType m_algorithms{};
};

TEST_F(FlashTable, PredictsTheGainOfEachRegion)
{
    m_lumaLow[20]         = 5.0f;  // darker with the LED
    m_satOff[8 * 16 + 8]  = 201.0f;
    m_lumaOff[40]         = 10.0f;
    m_lumaLow[40]         = 10.0f;
    m_lumaOff[44]         = 0.0f;
    m_lumaLow[44]         = 0.0f;
    m_rConfig.minOffStats = 20;
    EXPECT_EQ(RunForWeight(0), 3.0f);
    EXPECT_EQ(Weights()[Corner], 1.0f);
    EXPECT_EQ(Weights()[20], 1.0f);
    EXPECT_EQ(Weights()[40], 4.0f) << "from 20 instead of 10 to 50 instead of 40, times the flux";
    EXPECT_EQ(Weights()[44], 1.0f);
    for (UINT32 bright : {136u, 135u, 137u, 120u, 152u})
    {
        EXPECT_EQ(Weights()[bright], 1.0f) << bright;
    }
    EXPECT_EQ(Weights()[134], 3.0f);
    EXPECT_EQ(m_context.Trigger(TriggerFlashSatStatsRatio), 1.0f);
    EXPECT_EQ(m_context.Trigger(TriggerCtrlPrecisionFlashOk), 0.0f);

    m_rConfig.flashEstStrength = 0.5f;
    m_rConfig.flashBiasConf    = {TRUE, 149.0f};
    EXPECT_EQ(RunForWeight(0), 2.0f);
    EXPECT_EQ(m_context.Trigger(TriggerFlashSatStatsRatio), (256.0f - 9.0f) / 256.0f);
}

TEST_F(FlashTable, TopGainsRiseAndTheOthersBecomeOne)
{
    std::fill(m_lumaLow.begin() + 100, m_lumaLow.end(), 12.5f);
    m_rConfig.satPreventStrength          = 0.5f;
    const std::pair<FLOAT, FLOAT> cases[] = {
        {0.5f, 15.0f},  // 3 + (27 - 3) / 2 over a floor of 1, the gain at place 127
        {0.62f, 1.0f},  // place 96 is one of the hundred
        {1.0f, 1.0f},  {5.0f, 1.0f}, {-5.0f, 15.0f}, {std::numeric_limits<FLOAT>::quiet_NaN(), 1.0f}};
    for (const auto& [kFloorPct, expected] : cases)
    {
        m_rConfig.kFloorPct = kFloorPct;
        EXPECT_EQ(RunForWeight(0), expected) << kFloorPct;
        EXPECT_EQ(Weights()[200], 1.0f) << kFloorPct;
    }
}

TEST_F(FlashTable, MultipliesTheBaseTableInCenterWeightedMode)
{
    std::fill(std::begin(m_table.weights), std::end(m_table.weights), 2.0f);
    m_rConfig.baseTableID = TableID;
    EXPECT_EQ(RunForWeight(0), 6.0f);
    EXPECT_EQ(m_log.CountLevel(LevelError), 0u);

    m_context.m_input.mtrMode = AECAlgoMeteringModeSpot;
    EXPECT_EQ(RunForWeight(0), 3.0f);
    EXPECT_TRUE(m_log.Has(LevelError, "unknown metering mode"));
}

TEST_F(FlashTable, SpecklesLoseTheirGain)
{
    m_satLow[100] = 150.0f;
    m_satLow[196] = 500.0f;
    m_satLow[5]   = 150.0f;  // first row: spreads, but keeps its gain
    m_satLow[47]  = 190.0f;  // right edge
    m_satLow[48]  = 150.0f;  // left edge of the row below: no neighbour of the cell before it
    m_satLow[225] = 150.0f;  // beside the lower left corner
    EXPECT_EQ(Run(), 0);
    for (UINT32 half : {100u, 99u, 101u, 84u, 116u, 21u, 48u, 225u, 226u, 209u})
    {
        EXPECT_EQ(Weights()[half], 1.25f) << half << ": an eighth of 2 is left half way through the range";
    }
    EXPECT_EQ(Weights()[196], 1.0f);
    EXPECT_EQ(Weights()[195], 1.0f);
    EXPECT_EQ(Weights()[5], 3.0f);
    EXPECT_EQ(Weights()[98], 3.0f);
    EXPECT_EQ(Weights()[68], 3.0f) << "above a cell that was only marked by its neighbour";

    const std::pair<BOOL, SpeckleScreenType> off[] = {{TRUE, m_rConfig.SpeckleScreen},
                                                      {FALSE, {FALSE, {100.0f, 200.0f}}},
                                                      {FALSE, {TRUE, {100.0f, 100.0f}}},
                                                      {FALSE, {TRUE, {-20.0f, -10.0f}}}};
    for (const auto& [disabled, screen] : off)
    {
        m_context.m_input.overrideSetting.disableSpeckleDetection = disabled;
        m_rConfig.SpeckleScreen                                   = screen;
        EXPECT_EQ(RunForWeight(100), 3.0f);
    }
}

TEST_F(FlashTable, NeedsFourChannelsOfAllRegions)
{
    std::vector<FLOAT>                        coarse(64, 1.0f);
    const std::pair<const CHAR*, const CHAR*> cases[] = {{"lumaOff", "could not get luma16Off stats"},
                                                         {"satOff", "could not get sat16Off stats"},
                                                         {"lumaLow", "could not get luma16Low stats"},
                                                         {"satLow", "could not get sat16Low stats"}};
    Load();
    for (const auto& [pChannel, pText] : cases)
    {
        EXPECT_EQ(m_module.RunTableGen(), 1);
        EXPECT_TRUE(m_log.Has(LevelError, pText));
        Set(Grid(pChannel, 16, 16, m_lumaOff));
    }
    EXPECT_EQ(m_module.RunTableGen(), 0);

    SetAlone(Grid("lumaOff", 8, 8, coarse));
    EXPECT_EQ(m_module.RunTableGen(), 1);
}

TEST_F(FlashTable, NumbersThatAreNoneStayInsideTheTable)
{
    m_lumaOff[3] = std::numeric_limits<FLOAT>::quiet_NaN();
    m_satLow[3]  = std::numeric_limits<FLOAT>::quiet_NaN();
    m_lumaLow[4] = std::numeric_limits<FLOAT>::infinity();

    m_tuning.PrecisionFlashTblGen.enable        = TRUE;
    m_tuning.PrecisionFlashTblGen.DetectionType = 1;
    EXPECT_EQ(RunForWeight(100), 3.0f);
}

/// The upper half sees nothing of the LED and is background, the lower half gains 100 and is foreground.
class PrecisionFlash : public FlashTable
{
protected:
    PrecisionFlash()
    {
        std::fill(m_lumaLow.begin(), m_lumaLow.begin() + 128, 12.5f);
        std::fill(m_lumaLow.begin() + 128, m_lumaLow.end(), 37.5f);
        m_satOff[Corner] = 201.0f;
        m_rTuning        = {.enable           = TRUE,
                            .BackGrdMask      = {1, 0, m_backLux},
                            .ForeGrdMask      = {1, 0, m_foreLux},
                            .BackGrdPctDataID = SharePctID,
                            .BackGrdBiasTblID = BackgroundID,
                            .ForeGrdBiasTblID = ForegroundID,
                            .HighPct          = 100,
                            .BackGrdThld      = 0.5f,
                            .ForeGrdThld      = 0.49f};
    }

    FLOAT Detect()
    {
        EXPECT_EQ(Run(), 0);
        return m_context.Trigger(TriggerCtrlPrecisionFlashOk);
    }

    /// The background mask yields the brightening relative to the mean, so that the share shows the mean.
    VOID ShowMean()
    {
        m_back[0]             = {{0.0f, 0.0f}, 0.0f};
        m_back[1]             = {{8.0f, 8.0f}, 8.0f};
        m_rTuning.BackGrdThld = 0.0f;
        m_rTuning.ForeGrdThld = 0.0f;
        m_satOff[Corner]      = 0.0f;
    }

    GeneratorEndLevelDataType          m_back[2]    = {{{0.0f, 0.9f}, 1.0f}, {{1.1f, 9.0f}, 0.0f}};
    GeneratorEndLevelDataType          m_fore[2]    = {{{0.0f, 0.9f}, 0.0f}, {{1.1f, 9.0f}, 1.0f}};
    GeneratorTwoLevelTriggerSystemType m_backLux[1] = {{{0.0f, 500.0f}, 2, 0, m_back}};
    GeneratorTwoLevelTriggerSystemType m_foreLux[1] = {{{0.0f, 500.0f}, 2, 0, m_fore}};
    PrecisionFlashType&                m_rTuning    = m_tuning.PrecisionFlashTblGen;
};

TEST_F(PrecisionFlash, SplitsTheBiasTable)
{
    DebugRecord record;
    m_context.m_pDebugData = &record.Host();
    EXPECT_EQ(Detect(), 1.0f);
    EXPECT_EQ(m_context.Trigger(SharePctID), 50.0f);
    const FLOAT* pBackground = Weights(BackgroundID);
    const FLOAT* pForeground = Weights(ForegroundID);
    EXPECT_EQ(pBackground[127], 1.0f);
    EXPECT_EQ(pForeground[128], 5.0f) << "the gain of 100 more over 50, times the flux";
    EXPECT_EQ(pForeground[Corner], 0.0f) << "bright without LED";

    ByteWriter bytes;
    bytes.Add<UINT8>(1).Add<FLOAT>(50.0f, 100.0f * 127.0f / 256.0f);
    for (UINT32 cell = 0; cell < 128; ++cell)
    {
        bytes.Add<FLOAT>(1.0f);
    }
    bytes.Zeros(2 * 128 * 4);
    for (UINT32 cell = 0; cell < 127; ++cell)
    {
        bytes.Add<FLOAT>(5.0f);
    }
    record.ExpectBytes(recordoffset::PrecisionFlash, bytes.Zeros(4 + 249));
}

TEST_F(PrecisionFlash, NeedsEnoughBackgroundAndForeground)
{
    m_rTuning.ForeGrdThld = 0.5f;
    EXPECT_EQ(Detect(), 0.0f) << "127 of 256 regions";
    EXPECT_EQ(m_context.m_pBankManager->GetDataMetering2D(BackgroundID), nullptr);
    m_rTuning.ForeGrdThld = 0.49f;
    m_rTuning.BackGrdThld = 0.51f;
    EXPECT_EQ(Detect(), 0.0f);
    m_rTuning.BackGrdThld = 0.5f;
    EXPECT_EQ(Detect(), 1.0f);
    m_rTuning.enable = FALSE;
    EXPECT_EQ(Detect(), 0.0f);

    m_rTuning.enable = TRUE;
    std::fill(m_lumaOff.begin(), m_lumaOff.end(), 0.0f);
    EXPECT_EQ(Detect(), 0.0f) << "nothing is seen without LED";
}

TEST_F(PrecisionFlash, HysteresisFollowsTheTimeSinceTheLastDetection)
{
    TriggerSystemEndLevelType                seconds[] = {{{0.0f, 0.0f}, 1.0f}, {{2.0f, 2.0f}, 0.0f}};
    TwoLevelTriggerSystemLevel1Type          lux[]     = {{{0.0f, 500.0f}, 2, 0, seconds}};
    TwoLevelDataBankTriggerSystemType        system    = {.trigger1DataCount = 1, .trigger1Data = lux};
    kirometeringsaalgorithm::SAAlgorithmType algorithm = {
        .ID = 3, .extensionTriggerSystemCount = 1, .extensionTriggerSystem = &system};
    m_algorithms.SAAlgorithm      = &algorithm;
    m_algorithms.SAAlgorithmCount = 1;
    m_rTuning.BackGrdThld         = 0.99f;

    const std::pair<KIROPrecisionFlashHistory, FLOAT> cases[] = {
        {{TRUE, 100, 130, 30.0f, 9.0f}, 0.5f},   // 49.5 of 50 percent are asked for
        {{TRUE, 100, 130, 0.0f, 9.0f}, 0.5f},    // 30 frames per second
        {{TRUE, 100, 130, 20.0f, 9.0f}, 0.25f},  // 74.25 percent
        {{TRUE, 130, 100, 30.0f, 9.0f}, 0.0f},   // counted anew: long ago
        {{FALSE, 100, 100, 30.0f, 9.0f}, 0.0f}};
    for (const auto& [tuned, hysteresis] : cases)
    {
        KIROPrecisionFlashHistory history = tuned;
        m_context.m_pPFHistory            = &history;
        EXPECT_EQ(Detect(), (hysteresis == 0.5f) ? 1.0f : 0.0f);
        EXPECT_EQ(history.hysteresis, hysteresis);
    }
    m_context.m_pPFHistory = nullptr;
    EXPECT_EQ(Detect(), 0.0f);
}

TEST_F(PrecisionFlash, TheMeanIsThatOfTheRegionsThatGainMost)
{
    ShowMean();
    // 64 regions gain 100, bin 255; 64 gain 40, bin 102; the others nothing.
    std::fill(m_lumaLow.begin(), m_lumaLow.end(), 12.5f);
    std::fill(m_lumaLow.begin(), m_lumaLow.begin() + 64, 37.5f);
    std::fill(m_lumaLow.begin() + 64, m_lumaLow.begin() + 128, 22.5f);
    const std::tuple<INT32, INT32, FLOAT> cases[] = {
        {0, 25, 35.0f},  {1, 25, 100.0f},       {1, 10, 100.0f},
        {1, 50, 70.0f},  {1, 30, 89.86962f},  // 77 regions: 13 of the second bin
        {1, 100, 35.0f}, {1, 1000000000, 35.0f}};
    for (const auto& [detection, highPct, mean] : cases)
    {
        m_rTuning.DetectionType = detection;
        m_rTuning.HighPct       = highPct;
        EXPECT_EQ(Detect(), 1.0f);
        EXPECT_NEAR(m_context.Trigger(SharePctID), 3500.0f / mean, 1e-3f) << highPct;
    }
}

TEST_F(PrecisionFlash, APreflashNearBlackIsNotScaledUp)
{
    ShowMean();
    m_rTuning.DetectionType = 1;
    std::fill(m_lumaOff.begin(), m_lumaOff.end(), 0.1f);
    std::fill(m_lumaLow.begin(), m_lumaLow.end(), 0.15f);
    EXPECT_EQ(Detect(), 1.0f);
    // 0.05 of a largest luma of at least 1 is bin 13.
    EXPECT_NEAR(m_context.Trigger(SharePctID), 100.0f * 0.05f / (13.0f / 255.0f), 1e-2f);
}

}  // namespace
