// The flash part of the debug record, byte by byte.

#include "core/metering/ckiromodmetering.h"
#include "schema/kiromtrtablegen.h"
#include "tests/support/debugrecord.h"
#include "tests/support/statsfixture.h"

namespace
{

constexpr INT32 BiasID = 60;

class FlashRecord : public statsfixture::StatsTest
{
protected:
    /// A frame whose values follow its number.
    VOID SaveFlashFrame(UINT32 number, KIROExtFlashCurrentType type)
    {
        const FLOAT value = static_cast<FLOAT>(number);
        m_context.SaveFrame({.frameID       = number,
                             .exposureSets  = {{value, 10, 1.5f, 1.0f, 100 * number, 50, 0.0f, 0, 0}},
                             .averageLuma   = value + 0.5f,
                             .bIsAECSettled = TRUE});
        m_context.m_pHistory->SaveFlashFrame(type);
    }

    static ByteWriter FrameBytes(UINT32 number)
    {
        const FLOAT value = static_cast<FLOAT>(number);
        ByteWriter  frame;
        frame.Add<UINT32>(number).Add<UINT8>(0);
        frame.Add<FLOAT>(value).Add<UINT64>(10).Add<FLOAT>(1.5f, 1.0f).Add<UINT64>(100 * number);
        frame.Add<UINT32>(50).Zeros(2 * 32 + 3 * 8).Add<FLOAT>(value + 0.5f).Zeros(4).Add<UINT8>(1).Zeros(26);
        return frame;
    }

    KiroResult Fill()
    {
        CKIROMetering     metering(m_context.m_tuningData, m_context);
        KIROMeteringInput input{TRUE, 0};
        return metering.RunMeteringPostprocess(input, m_output);
    }

    DebugRecord        m_record;
    KIROMeteringOutput m_output{};
};

TEST_F(FlashRecord, HoldsBothFramesTheTriggersAndTheBiasTable)
{
    kiromtrtablegen::KIROMtrTableGenType tuning{};
    tuning.flashBiasMetTblGen.mtrTblConfig.dataBankID = BiasID;
    Tune(tuning);
    m_context.m_pDebugData         = &m_record.Host();
    m_context.m_input.snapshotMode = KIROCoreSnapshotType::Flash;
    EXPECT_EQ(Fill(), 1) << "no flash frames";
    m_record.ExpectZeros(recordoffset::Flash, 25956);

    SaveFlashFrame(3, KIROExtFlashCurrentType::Off);
    SaveFlashFrame(4, KIROExtFlashCurrentType::Low);
    const std::pair<INT32, FLOAT> triggers[] = {{TriggerFlashFlux, 2.0f},     {TriggerFlashInfluence, 3.0f},
                                                {TriggerCtrlLux, 300.5f},     {TriggerCtrlShortTgt, 100.0f},
                                                {TriggerCtrlLongTgt, 200.0f}, {TriggerCtrlSafeTgt, 150.0f}};
    for (const auto& [id, value] : triggers)
    {
        m_context.SetTrigger(id, value);
    }
    EXPECT_EQ(Fill(), 1) << "no bias table";

    DBMeter2DWeightPayload bias{BiasID, nullptr, {}};
    bias.weights[0]   = 1.5f;
    bias.weights[255] = 2.5f;
    SetBank(BankIDMetering2D, &bias);
    EXPECT_EQ(Fill(), 0);

    ByteWriter flash = FrameBytes(3);
    flash.Bytes(FrameBytes(4).Get());
    flash.Add<FLOAT>(2.0f, 3.0f, 300.5f);
    flash.Add<FLOAT>(100.0f, 200.0f, 150.0f);
    flash.Add(m_output.exposures[0]).Add(m_output.exposures[1]).Add(m_output.exposures[2]);
    flash.Add<FLOAT>(1.5f).Zeros(254 * 4).Add<FLOAT>(2.5f);
    flash.Zeros(49 + 24515);
    ASSERT_EQ(flash.Size(), 25956u);
    m_record.ExpectBytes(recordoffset::Flash, flash);
}

}  // namespace
