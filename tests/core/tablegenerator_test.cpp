// Tables from statistics and from other tables, frame by frame.

#include "core/base/tuningaccess.h"
#include "core/ckiromtrtablegen.h"
#include "parameters/tablemodule.h"
#include "tests/support/statsfixture.h"

using namespace statsfixture;
using namespace kiromtrtablegen;

namespace
{

constexpr INT32  OutputID   = 60;
constexpr INT32  AverageID  = 100;
constexpr UINT32 TableCells = 256;

/// The base table is 3 everywhere. The tuned weight is the value up to lux index 100 and nothing from 200.
class TableGeneration : public StatsTest
{
protected:
    TableGeneration() : m_luma(TableCells)
    {
        for (UINT32 index = 0; index < TableCells; ++index)
        {
            m_luma[index]          = static_cast<FLOAT>(index);
            m_table.weights[index] = 3.0f;
        }
        m_generator.enable        = TRUE;
        m_generator.input         = {TableID, const_cast<CHAR*>("luma"), 0};
        m_generator.output        = {OutputID, TRUE, AverageID};
        m_generator.triggerSystem = {2, 0, m_lux};
        m_context.SetTrigger(TriggerCtrlLux, 100.0f);
    }

    VOID Load(std::vector<TableGeneratorType> generators)
    {
        Tune(KIROMtrTableGenType{.tableGeneratorCount = static_cast<UINT32>(generators.size()),
                                 .tableGenerator      = generators.data()});
        m_context.m_pBankManager->SetBankTuning(BankIDMetering2D, nullptr, m_tables, 2);
    }

    KiroResult Run()
    {
        m_tables[0] = m_table;
        Load({m_generator});
        return m_module.RunTableGen();
    }

    const DBMeter2DWeightPayload* Table(INT32 dataID = OutputID)
    {
        return m_context.m_pBankManager->GetDataMetering2D(dataID);
    }

    VOID ExpectAll(FLOAT weight)
    {
        ASSERT_NE(Table(), nullptr);
        EXPECT_EQ(std::count(std::begin(Table()->weights), std::end(Table()->weights), weight), TableCells);
    }

    GeneratorEndLevelDataType          m_values[2]  = {{{0.0f, 0.0f}, 0.0f}, {{256.0f, 256.0f}, 256.0f}};
    GeneratorEndLevelDataType          m_nothing[1] = {{{0.0f, 256.0f}, 0.0f}};
    GeneratorTwoLevelTriggerSystemType m_lux[2]     = {{{0.0f, 100.0f}, 2, 0, m_values},
                                                       {{200.0f, 300.0f}, 1, 0, m_nothing}};
    TableGeneratorType                 m_generator{};
    std::vector<FLOAT>                 m_luma;
    DBMeter2DWeightPayload             m_tables[2] = {};
    CKIROMtrTableGen                   m_module{m_context.m_tuningData, m_context};
};

TEST_F(TableGeneration, WeighsTheBaseTableByStatisticsAndLux)
{
    Set(Grid("luma", 16, 16, m_luma));
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(Table()->weights[0], 0.0f);
    EXPECT_EQ(Table()->weights[64], 192.0f);
    EXPECT_EQ(Table()->weights[255], 765.0f);
    EXPECT_EQ(m_context.Trigger(AverageID), 384.0f) << "over the 255 weights above 0";

    m_context.SetTrigger(TriggerCtrlLux, 150.0f);
    EXPECT_EQ(m_module.RunTableGen(), 0);
    EXPECT_EQ(Table()->weights[64], 96.0f);

    m_context.SetTrigger(TriggerCtrlLux, 250.0f);
    EXPECT_EQ(m_module.RunTableGen(), 0);
    ExpectAll(0.0f);
    EXPECT_EQ(m_context.Trigger(AverageID), -1.0f);
}

TEST_F(TableGeneration, WeighsTheBaseTableByAnotherTable)
{
    m_generator.method                     = ExternalDataDrivenMethod;
    m_generator.input.externData2DWeightID = 70;
    m_tables[1].dataID                     = 70;
    m_tables[1].weights[9]                 = 8.0f;
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(Table()->weights[9], 24.0f);
    EXPECT_EQ(Table()->weights[8], 0.0f);
    EXPECT_EQ(m_context.Trigger(AverageID), 24.0f);
}

TEST_F(TableGeneration, TheFirstCellAloneHasTheWeightBelowABorderThatTheLuxIndexFallsTo)
{
    std::fill(m_luma.begin(), m_luma.end(), 50.0f);
    Set(Grid("luma", 16, 16, m_luma));
    m_lux[1].trigger1Lux = {100.0f, 300.0f};
    m_context.SetTrigger(TriggerCtrlLux, 250.0f);
    EXPECT_EQ(Run(), 0);
    ExpectAll(0.0f);
    m_context.SetTrigger(TriggerCtrlLux, 100.0f);
    EXPECT_EQ(m_module.RunTableGen(), 0);
    EXPECT_EQ(Table()->weights[0], 150.0f);
    EXPECT_EQ(std::count(std::begin(Table()->weights), std::end(Table()->weights), 0.0f), 255);
}

TEST_F(TableGeneration, StoresEqualWeightsWithoutATable)
{
    Set(Grid("luma", 16, 16, m_luma));
    m_generator.input.base2DWeightID = 71;
    EXPECT_EQ(Run(), 0);
    ExpectAll(1.0f);

    m_generator.method = ExternalDataDrivenMethod;
    m_generator.input  = {TableID, nullptr, 71};
    EXPECT_EQ(Run(), 0);
    ExpectAll(1.0f);
    EXPECT_EQ(m_context.Trigger(AverageID), 1.0f);
}

TEST_F(TableGeneration, KeepsItsTableWhileTheChannelHasAnotherShape)
{
    std::vector<FLOAT> coarse(64, 9.0f);
    Set(Grid("luma", 8, 8, coarse));
    EXPECT_EQ(Run(), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "could not get iterator"));
    ExpectAll(0.0f);

    SetAlone(Grid("luma", 16, 16, m_luma));
    EXPECT_EQ(m_module.RunTableGen(), 0);
    SetAlone(Grid("luma", 16, 16, m_luma, 10));
    EXPECT_EQ(m_module.RunTableGen(), 1);
    EXPECT_EQ(Table()->weights[64], 192.0f);
}

TEST_F(TableGeneration, OneGeneratorDoesNotStopTheOthers)
{
    Set(Grid("luma", 16, 16, m_luma));
    m_tables[0]     = m_table;
    const auto with = [this](BOOL enable, INT32 method, INT32 dataID)
    {
        TableGeneratorType generator = m_generator;
        generator.enable             = enable;
        generator.method             = static_cast<GenerationMethodType>(method);
        generator.output             = {dataID, FALSE, AverageID};
        return generator;
    };
    Load({with(FALSE, StatsDrivenMethod, 61), with(TRUE, 7, 62), with(TRUE, StatsDrivenMethod, 63)});
    EXPECT_EQ(m_module.RunTableGen(), 1);
    EXPECT_TRUE(m_log.Has(LevelError, "No Matched method selected"));
    EXPECT_EQ(Table(61), nullptr);
    EXPECT_EQ(Table(62), nullptr);
    EXPECT_NE(Table(63), nullptr);
    EXPECT_EQ(m_context.Trigger(AverageID), 0.0f) << "the average is not asked for";
}

TEST_F(TableGeneration, ALiveEditTakesTheOldTablesOutOfTheBank)
{
    Set(Grid("luma", 16, 16, m_luma));
    m_tables[1].dataID = 70;
    EXPECT_EQ(Run(), 0);
    m_context.m_pBankManager->RunBankStartOfFrame(0);
    EXPECT_EQ(Table(0), Table()) << "the newest table is selected";

    auto* pTuning = tuningaccess::Get_kiromtrtablegen(m_context.m_tuningData);
    EXPECT_TRUE(TableModule::FromRecord(pTuning)->SetValue("tableGenerator[0].enable", "0"));
    EXPECT_EQ(m_module.RunTableGen(), 0);
    EXPECT_EQ(Table(), nullptr);
    EXPECT_NE(Table(TableID), nullptr);
    EXPECT_EQ(Table(0), &m_tables[1]);
}

}  // namespace
