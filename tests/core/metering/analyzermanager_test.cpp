#include "core/metering/canalyzermanager.h"

#include <memory>
#include <vector>

#include "parameters/tablemodule.h"
#include "tests/core/metering/analyzerrecords.h"
#include "tests/support/testcontext.h"

using namespace analyzerrecords;

namespace
{

constexpr INT32 ConfidenceID = 11;

// Exposures of a frame, by AECAlgoExposureType.
constexpr UINT64 Sensitivities[] = {1000, 4000, 2000};

class AnalyzerManager : public ContextTest
{
protected:
    AnalyzerManager() : m_pManager(TavoNew<CAnalyzerManager>(m_context))
    {
        m_context.SetCalculatorResult(LumaID, 40.0f);
        m_context.SetCalculatorResult(ConfidenceID, 0.5f);
        m_context.SetAnalyzerResult(TargetID, {60.0f, 80.0f});
    }

    /// Adds an analyzer that passes the measured luma and target on.
    AnalyzerRecord& Add(UINT32 id, INT32 firstOutput)
    {
        m_analyzers.push_back(std::make_unique<AnalyzerRecord>(id));
        return m_analyzers.back()->PassThrough(CalculatorBank(LumaID), AnalyzerBank(TargetID),
                                               CalculatorBank(ConfidenceID), firstOutput);
    }

    /// @return the tuning that the manager now has
    KIROMeteringSceneAnalyzerType* Update()
    {
        std::vector<SceneAnalyzerType> records;
        for (const auto& pAnalyzer : m_analyzers)
        {
            records.push_back(pAnalyzer->m_record);
        }
        KIROMeteringSceneAnalyzerType  tuning  = {.luxAnalyzer    = m_lux.m_record,
                                                  .analyzersCount = static_cast<UINT32>(records.size()),
                                                  .analyzers      = records.data()};
        KIROMeteringSceneAnalyzerType* pTuning = m_context.Stored(tuning);
        m_pManager->UpdateAnalyzers(pTuning);
        m_pManager->SetSensitivities(Sensitivities);
        return pTuning;
    }

    std::vector<std::unique_ptr<AnalyzerRecord>> m_analyzers;
    AnalyzerRecord                               m_lux;
    TavoPtr<CAnalyzerManager>                    m_pManager;
};

TEST_F(AnalyzerManager, FindsAnalyzersByIDWhateverTheirOrder)
{
    Add(30, 100).m_record.exposureType        = ExposureLong;
    Add(5, 110).m_record.exposureType         = ExposureShort;
    m_analyzers.back()->m_record.analyzerName = const_cast<CHAR*>("second");
    Add(999, 120).m_record.analyzerName       = const_cast<CHAR*>("last");
    Add(1, 130).m_record.exposureType         = ExposureNone;
    Add(1000, 140);
    Update();
    for (UINT32 id : {999u, 30u, 1u, 1000u, 5u})
    {
        const KIROAnalyzerOutput* pOutput = m_pManager->RunAnalyzer(id);
        ASSERT_NE(pOutput, nullptr) << id;
        EXPECT_EQ(pOutput->sensitivity, 3000u);
    }
    for (INT32 firstOutput : {100, 110, 120, 130, 140})
    {
        EXPECT_EQ(m_context.AnalyzerResult(firstOutput).start, 40.0f) << firstOutput;
    }
    const AnalyzerManagerOutput& rOutput = m_pManager->GetOutput();
    EXPECT_EQ(rOutput.type[5], AECAlgoExposureShort);
    EXPECT_EQ(rOutput.type[30], AECAlgoExposureLong);
    EXPECT_EQ(rOutput.type[999], AECAlgoExposureSafe);
    EXPECT_EQ(rOutput.sensitivities[999], 3000u);
    EXPECT_EQ(rOutput.confidences[30], 0.5f);
    EXPECT_EQ(rOutput.isActive[5], TRUE);
    EXPECT_EQ(rOutput.isActive[6], FALSE);
    EXPECT_EQ(rOutput.isActive[1], FALSE) << "decides no exposure";
    EXPECT_TRUE(m_log.Has(32, "\n---- Running analyzer ID: 5, second ----"));
    EXPECT_TRUE(m_log.Has(32, "\n---- Running analyzer ID: 999, last ----"));

    for (UINT32 absent : {0u, 6u, 0xFFFFFFFFu})
    {
        EXPECT_EQ(m_pManager->RunAnalyzer(absent), nullptr);
    }
    EXPECT_TRUE(m_log.Has(LevelError, "Invalid SA ID = 6"));

    // A new frame starts with nothing decided.
    m_pManager->SetSensitivities(Sensitivities);
    EXPECT_EQ(rOutput.isActive[5], FALSE);
    EXPECT_EQ(rOutput.sensitivities[999], 0u);
}

TEST_F(AnalyzerManager, ConfidenceOfAnalyzersThatDoNotRunIsZero)
{
    m_lux.PassThrough(CalculatorBank(LumaID), AnalyzerBank(TargetID), CalculatorBank(ConfidenceID), 100);
    Add(1, 110);
    Add(2, 120).m_record.confidence.aggregator.output.dataBank = NoBank;
    Update();
    for (INT32 dataID : {102, 112, 122})
    {
        m_context.SetAnalyzerResult(dataID, {0.7f, 0.8f});
    }
    m_pManager->ResetAnalyzerConfidence();
    EXPECT_EQ(m_context.AnalyzerResult(102).start, 0.0f);
    EXPECT_EQ(m_context.AnalyzerResult(112).end, 0.0f);
    EXPECT_EQ(m_context.AnalyzerResult(122).start, 0.7f);
    EXPECT_EQ(m_log.CountLevel(LevelError), 0u);
}

TEST_F(AnalyzerManager, RebuildsWhenTheRecordIsAnotherOne)
{
    m_pManager->RunLuxAnalyzer();
    m_lux.PassThrough(CalculatorBank(LumaID), AnalyzerBank(TargetID), CalculatorBank(ConfidenceID), 100);
    Add(1, 110);
    KIROMeteringSceneAnalyzerType* pTuning = Update();
    m_pManager->UpdateAnalyzers(pTuning);
    EXPECT_EQ(m_log.Count(LevelRare, "Update Scene Analyzer analyzerCount 1"), 1u);
    EXPECT_NE(m_pManager->RunAnalyzer(1), nullptr);
    m_pManager->RunLuxAnalyzer();
    EXPECT_EQ(m_context.AnalyzerResult(100).start, 40.0f);
    EXPECT_EQ(m_context.AnalyzerResult(102).start, 0.5f);
    EXPECT_EQ(m_pManager->GetOutput().isActive[0], FALSE) << "the lux analyzer decides nothing";

    EXPECT_TRUE(TableModule::FromRecord(pTuning)->SetValue("analyzers[0].analyzerID", "2"));
    m_pManager->UpdateAnalyzers(pTuning);
    EXPECT_NE(m_pManager->RunAnalyzer(2), nullptr) << "after a live edit";

    // Without the module nothing is left that points at the record.
    m_pManager->UpdateAnalyzers(nullptr);
    EXPECT_EQ(m_pManager->RunAnalyzer(2), nullptr);
    m_context.SetAnalyzerResult(100, {7.0f, 7.0f});
    m_pManager->RunLuxAnalyzer();
    EXPECT_EQ(m_context.AnalyzerResult(100).start, 7.0f);
    m_pManager->UpdateAnalyzers(pTuning);
    EXPECT_NE(m_pManager->RunAnalyzer(2), nullptr);
}

TEST_F(AnalyzerManager, TooManyAnalyzersAreCutOff)
{
    for (UINT32 index = 0; index < AnalyzerCountMax + 1; ++index)
    {
        m_analyzers.push_back(std::make_unique<AnalyzerRecord>(index));
    }
    Update();
    EXPECT_TRUE(m_log.Has(LevelError, "1001 scene analyzers, only the first 1000 are used"));
    EXPECT_NE(m_pManager->RunAnalyzer(999), nullptr);
    EXPECT_EQ(m_pManager->RunAnalyzer(1000), nullptr);
}

TEST_F(AnalyzerManager, AmendedResultsReplaceDecisionAndBankEntries)
{
    Add(0, 100);
    Add(1, 110);
    Update();
    m_pManager->RunAnalyzer(1);
    KIROAnalyzerOutput amended = *m_pManager->RunAnalyzer(1);
    amended.luma               = 20.0f;
    amended.target             = {50.0f, 55.0f};
    amended.confidence         = 0.9f;
    m_pManager->UpdateAnalyzerMgrOutput(1, &amended);
    // Safe is selection 1, and takes the exposure at index 1, the long one.
    const AnalyzerManagerOutput& rOutput = m_pManager->GetOutput();
    EXPECT_EQ(rOutput.sensitivities[1], 10000u);
    EXPECT_EQ(rOutput.confidences[1], 0.9f);
    EXPECT_EQ(rOutput.type[1], AECAlgoExposureSafe);
    EXPECT_EQ(m_context.AnalyzerResult(110).end, 20.0f);
    EXPECT_EQ(m_context.AnalyzerResult(111).end, 55.0f);
    EXPECT_EQ(m_context.AnalyzerResult(112).start, 0.9f);
    EXPECT_TRUE(m_log.Has(32, "Update analyzer ID 1: SI from 3000 to 10000, Conf from 0.50 to 0.90"));
    EXPECT_TRUE(m_log.Has(32, "Update target value to 50.00 55.00"));

    // A ratio that is too small, or no number, leaves the exposure alone.
    amended.type   = ExposureShort;
    amended.target = {0.1f, 0.1f};
    m_pManager->UpdateAnalyzerMgrOutput(1, &amended);
    EXPECT_EQ(rOutput.sensitivities[1], 1000u);
    amended.luma   = 0.0f;
    amended.target = {0.0f, 0.0f};
    m_pManager->UpdateAnalyzerMgrOutput(1, &amended);
    EXPECT_EQ(rOutput.sensitivities[1], 1000u);
}

TEST_F(AnalyzerManager, AmendedResultsOfUnknownAnalyzersAreRefused)
{
    Add(0, 100);
    Update();
    KIROAnalyzerOutput amended{};
    m_pManager->UpdateAnalyzerMgrOutput(1000, &amended);
    EXPECT_TRUE(m_log.Has(LevelError, "analyzer ID 1000 cannot exceed 1000 undefined behavior"));
    amended.confidence = 0.25f;
    m_pManager->UpdateAnalyzerMgrOutput(1, &amended);
    EXPECT_EQ(m_pManager->GetOutput().confidences[1], 0.25f);  // the decision needs no position in the tuning
    EXPECT_EQ(m_context.AnalyzerResult(102).start, 0.0f);
    m_pManager->UpdateAnalyzerMgrOutput(0, nullptr);
    EXPECT_EQ(m_log.CountLevel(LevelError), 3u);
    amended.type       = ExposureNone;
    amended.confidence = 0.5f;
    m_pManager->UpdateAnalyzerMgrOutput(0, &amended);
    EXPECT_EQ(m_pManager->GetOutput().confidences[0], 0.0f);
    EXPECT_EQ(m_context.AnalyzerResult(102).start, 0.5f);
}

}  // namespace
