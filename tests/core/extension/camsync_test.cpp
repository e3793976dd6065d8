// Two cameras of a group: roles, calibration, mixed targets and followed exposures, by hand-worked numbers.

#include "core/extension/ckirocamsync.h"

#include <gmock/gmock.h>

#include <array>
#include <cmath>

#include "tests/support/testcontext.h"

namespace
{

using namespace kirosync;
using Exposures = std::array<UINT64, 3>;  // short, long, safe

constexpr FLOAT Dim    = 50.0f;   // lux index of the factor 2
constexpr FLOAT Bright = 250.0f;  // lux index of the factor 4
constexpr INT32 Warm   = 3000;    // CCT of the factor 0.5

class Camsync : public ContextTest
{
protected:
    Camsync()
    {
        m_tuning.masterAndSlaveConfig = {{AECAlgoMeteringMixStatic, AECAlgoExposureIndependent},
                                         {AECAlgoMeteringMixDynamic, AECAlgoExposureFollow}};

        m_tuning.mtrMixConfig.staticMixingConfig  = {0.25f};
        m_tuning.mtrMixConfig.dynamicMixingConfig = {2, 0, m_weights, 1, 0, m_mixFactor};
        m_tuning.expSyncConfig.globalExpComp      = {FALSE, FALSE, 2, 0, m_factors};
        m_tuning.expSyncConfig.cctBasedExpComp    = {FALSE, 2, 0, m_colourFactors};
        m_peer.exposureInfo                       = {{10, 20, 30}, {100, 200, 300}, {1000, 2000, 3000}, {}};
        m_peer.CCT                                = Warm;
        m_context.SetTrigger(TriggerCtrlLux, Dim);
        Tune(m_tuning);
    }

    KiroResult SetRole(StatsAlgoRole role)
    {
        StatsCameraInfo info{role, 7};
        return m_rSync.SetStatsCameraInfo(&info);
    }

    VOID ExpectRole(StatsAlgoRole role, KiroResult result, AECMtrConfigType metering, AECExpConfigType exposure)
    {
        EXPECT_EQ(SetRole(role), result);
        EXPECT_EQ(m_rSync.getMeteringType(), metering);
        EXPECT_EQ(m_rSync.getExposureType(), exposure);
        EXPECT_EQ(m_context.GetContextEvent(AECSlaveRole), (role == StatsAlgoRoleSlave) ? TRUE : FALSE);
    }

    VOID SetPeerTargets(const Exposures& rTargets)
    {
        std::copy(rTargets.begin(), rTargets.end(), m_peer.meteringInfo.targetExposure);
        m_rSync.setPeerInfo(&m_peer);
    }

    VOID ExpectMixed(const Exposures& rTargets, const Exposures& rMixed)
    {
        KIROMeteringOutput output{};
        std::copy(rTargets.begin(), rTargets.end(), output.exposures);
        m_rSync.CalculateMixedTargetExposure(output);
        for (size_t type = 0; type < rMixed.size(); ++type)
        {
            EXPECT_NEAR(static_cast<DOUBLE>(output.exposures[type]), static_cast<DOUBLE>(rMixed[type]), 1.0) << type;
        }
    }

    KIROConvergenceOutput Follow(BOOL bGlobal, BOOL bColour)
    {
        m_tuning.expSyncConfig.globalExpComp.enable   = bGlobal;
        m_tuning.expSyncConfig.cctBasedExpComp.enable = bColour;
        Tune(m_tuning);
        KIROConvergenceOutput output{};
        m_rSync.ComputeTargetExposureInFollowMode(output);
        return output;
    }

    VOID ExpectFollowed(BOOL bGlobal, BOOL bColour, UINT64 shortExp)
    {
        EXPECT_THAT(Follow(bGlobal, bColour).exposures, testing::ElementsAre(shortExp, 2 * shortExp, 3 * shortExp));
    }

    FLOAT CalibrateRelative(FLOAT ratio)
    {
        AECAlgoDCCalibrationInfo info{};
        info.u.relative = {ratio, 4.0f, 10.0f, 2.0f, 5.0f, 5000};
        EXPECT_EQ(m_rSync.UpdateDCCalibrationInfo(&info), 0);
        return m_rSync.getDCCalibrationInfo().OTPExpCompMultiplier;
    }

    FLOAT CalibrateAbsolute(UINT16 luma)
    {
        AECAlgoDCCalibrationInfo info = {.version = 1, .u = {.absolute = {2.0f, luma, 30, 5000}}};
        EXPECT_EQ(m_rSync.UpdateDCCalibrationInfo(&info), 0);
        return m_rSync.getDCCalibrationInfo().OTPExpCompMultiplier;
    }

    CKIROCamsync&           m_rSync = *m_context.m_pCamSync;
    KIROSyncType            m_tuning{};
    AECMultiCamInfo         m_peer{};
    aecTriggerDataFloatType m_factors[2]       = {{{0.0f, 100.0f}, 2.0f}, {{200.0f, 300.0f}, 4.0f}};
    aecTriggerDataFloatType m_colourFactors[2] = {{{0.0f, 4000.0f}, 0.5f}, {{5000.0f, 9000.0f}, 1.0f}};
    aecTriggerDataFloatType m_weights[2]       = {{{0.0f, 0.1f}, 0.0f}, {{1.1f, 2.0f}, 1.0f}};
    aecTriggerDataFloatType m_mixFactor[1]     = {{{0.0f, 1.0f}, 3.0f}};
};

TEST_F(Camsync, RoleAndCalibrationAreTaken)
{
    ExpectRole(StatsAlgoRoleSlave, 0, AECAlgoMeteringMixDynamic, AECAlgoExposureFollow);
    ExpectRole(StatsAlgoRoleMaster, 0, AECAlgoMeteringMixStatic, AECAlgoExposureIndependent);
    Tune();
    ExpectRole(StatsAlgoRoleSlave, 1, AECAlgoMeteringMixStatic, AECAlgoExposureIndependent);
    Tune(m_tuning);
    // Only a new role looks at the tuning.
    ExpectRole(StatsAlgoRoleSlave, 0, AECAlgoMeteringMixStatic, AECAlgoExposureIndependent);
    ExpectRole(StatsAlgoRoleDefault, 0, AECAlgoMeteringIndependent, AECAlgoExposureIndependent);

    // A factory calibration is taken once, and never from zeros.
    CalibrateRelative(0.0f);
    CalibrateRelative(NAN);
    CalibrateAbsolute(0);
    EXPECT_EQ(m_rSync.getDCCalibrationInfo().OTPStatus, AECAlgoDualcamOTPInvalid);
    EXPECT_FLOAT_EQ(CalibrateRelative(2.0f), 2.0f);
    EXPECT_EQ(m_rSync.getDCCalibrationInfo().OTPStatus, AECAlgoDualcamOTPSet);
    EXPECT_FLOAT_EQ(CalibrateAbsolute(20), 2.0f) << "already set";
}

TEST_F(Camsync, MasterMixesByAFixedWeight)
{
    SetRole(StatsAlgoRoleMaster);
    ExpectMixed({100, 400, 200}, {100, 400, 200});  // no peer
    SetPeerTargets({200, 0, 400});
    ExpectMixed({100, 400, 200}, {125, 300, 250});

    m_tuning.masterAndSlaveConfig.slave.meteirngType = AECAlgoMeteringMixStatic;
    Tune(m_tuning);
    SetRole(StatsAlgoRoleSlave);
    ExpectMixed({100, 400, 200}, {100, 400, 200});
    EXPECT_TRUE(m_log.Has(LevelError, "Static metering mix can only be used for master mode. Current mode: 2"));
}

TEST_F(Camsync, SlaveMixesByHowFarTheTargetsAreApart)
{
    SetRole(StatsAlgoRoleSlave);
    SetPeerTargets({1000, 2000, 333000});
    ExpectMixed({30000, 60000, 999000}, {30000, 60000, 999000});    // the same
    ExpectMixed({30000, 60000, 1598400}, {16500, 33000, 1298700});  // 0.6 apart: halfway
    SetPeerTargets({0, 0, 0});
    ExpectMixed({30000, 60000, 1598400}, {0, 0, 0});

    // The lux index is the peer's, if tuned so and there is one.
    m_mixFactor[0]         = {{0.0f, 100.0f}, 3.0f};
    m_tuning.luxSyncConfig = UseMaster;
    Tune(m_tuning);
    SetPeerTargets({1000, 2000, 333000});
    ExpectMixed({30000, 60000, 1598400}, {16500, 33000, 1298700});
}

TEST_F(Camsync, FollowerTakesTheExposureThatGoesWithItsFactors)
{
    SetRole(StatsAlgoRoleSlave);
    EXPECT_EQ(Follow(FALSE, FALSE).compensationADRC, 0.0f) << "no peer";
    m_rSync.setPeerInfo(&m_peer);
    ExpectFollowed(FALSE, FALSE, 10);
    ExpectFollowed(FALSE, TRUE, 5);
    ExpectFollowed(TRUE, FALSE, 200);
    ExpectFollowed(TRUE, TRUE, 1000);

    m_context.SetTrigger(TriggerCtrlLux, Bright);
    ExpectFollowed(TRUE, FALSE, 400);
    m_peer.meteringInfo.luxIndex = Dim;
    m_tuning.luxSyncConfig       = UseMaster;
    ExpectFollowed(TRUE, FALSE, 200);

    EXPECT_FLOAT_EQ(CalibrateAbsolute(20), 3.0f);
    ExpectFollowed(TRUE, FALSE, 300);
    m_tuning.expSyncConfig.globalExpComp.useTuning = TRUE;
    ExpectFollowed(TRUE, FALSE, 200);
}

TEST_F(Camsync, FollowerTakesCompensationsAndSettleFlags)
{
    m_rSync.setPeerInfo(&m_peer);
    m_peer.exposureInfo            = {{10, 60, 30}, {}, {}, {}};
    m_peer.bSettle                 = TRUE;
    KIROConvergenceOutput followed = Follow(FALSE, FALSE);
    EXPECT_FLOAT_EQ(followed.compensationADRC, 3.0f);
    EXPECT_FLOAT_EQ(followed.compensationDarkBoost, 2.0f);
    EXPECT_EQ(followed.bSettle, TRUE);
    EXPECT_EQ(followed.bBrightnessSettle, FALSE);

    // Values that no exposure can have.
    m_peer.exposureInfo = {{-5.0f, INFINITY, NAN}, {}, {}, {}};
    followed            = Follow(FALSE, FALSE);
    EXPECT_THAT(followed.exposures, testing::ElementsAre(0, UINT64_MAX, 0));
}

TEST_F(Camsync, MasterPublishesWithoutItsFactorsAndTheFollowerPutsItsOwn)
{
    m_tuning.expSyncConfig.globalExpComp.enable   = TRUE;
    m_tuning.expSyncConfig.cctBasedExpComp.enable = TRUE;
    Tune(m_tuning);
    TestContext master;
    master.SetTuning(TestTuning().Add(m_tuning));
    master.SetTrigger(TriggerCtrlLux, Bright);
    master.m_input.AWBState.CCT = 6000;
    master.m_pHistory->SaveCurrentFrameID(42);
    StatsCameraInfo info{StatsAlgoRoleMaster, 3};
    master.m_pCamSync->SetStatsCameraInfo(&info);

    const KIROMeteringOutput    metering{{}, {11, 22, 33}, FALSE};
    const KIROConvergenceOutput convergence{};
    KIROArbitrationOutput       arbitrated[3]{};
    for (UINT32 type = 0; type < 3; ++type)
    {
        arbitrated[type].exposureSet.exposure = 4000 * (type + 1);
        arbitrated[type].exposureSet.time     = 1000 + type;
    }
    master.m_pCamSync->PopulateMultiCamInfo(metering, convergence, arbitrated);
    const auto* pInfo = static_cast<const AECMultiCamInfo*>(*master.m_pCamSync->getMyOwnInfoPtrAddr());
    EXPECT_EQ(pInfo->cameraID, 3u);
    EXPECT_EQ(pInfo->statsFrameId, 42u);
    EXPECT_EQ(pInfo->meteringInfo.luxIndex, Bright);
    EXPECT_EQ(pInfo->meteringInfo.targetExposure[AECAlgoExposureSafe], 33u);
    EXPECT_EQ(pInfo->exposureInfo.exposureTime[AECAlgoExposureLong], 1001u);
    EXPECT_FLOAT_EQ(pInfo->exposureInfo.normExp[AECAlgoExposureLong], 2000.0f);

    // Factors of 4 and 1 on the master, 2 and 1 on the follower.
    m_rSync.setPeerInfo(const_cast<AECMultiCamInfo*>(pInfo));
    ExpectFollowed(TRUE, TRUE, 2000);
    master.m_pCamSync->PopulateMultiCamInfo(metering, convergence, nullptr);

    // Empty tables of factors divide nothing: what was published before stands.
    m_tuning.expSyncConfig.globalExpComp.trigger1DataCount     = 0;
    m_tuning.expSyncConfig.cctBasedExpComp.cctCompTriggerCount = 0;
    master.SetTuning(TestTuning().Add(m_tuning));
    master.m_pCamSync->PopulateMultiCamInfo(metering, convergence, arbitrated);
    EXPECT_FLOAT_EQ(pInfo->exposureInfo.normExp[AECAlgoExposureLong], 2000.0f);
    EXPECT_FLOAT_EQ(pInfo->exposureInfo.normExp_wCCT[AECAlgoExposureLong], 2000.0f);
}

}  // namespace
