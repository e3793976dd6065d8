// The outward face: creation, answers without an instance, trigger data objects.

#include <tuple>
#include <type_traits>

#include <gmock/gmock.h>

#include "core/base/ckirotrigger.h"
#include "core/base/kirolog.h"
#include "core/ckirocorefactory.h"
#include "host/kirodebugdata.h"
#include "parameters/tuningsetmanager.h"
#include "tests/support/testcontext.h"

namespace
{

std::string s_firstLine;

VOID LogFirstLine(const CHAR*, INT32, const CHAR* pFunctionName, UINT32 group, UINT32 level, const CHAR* pFormat, ...)
{
    if (s_firstLine.empty())
    {
        s_firstLine =
            std::string(pFunctionName) + " " + std::to_string(group) + " " + std::to_string(level) + " " + pFormat;
    }
}

class Creation : public testing::Test
{
protected:
    /// @return what the creation with these parameters logged first through the logger of the parameters
    std::string Create(std::vector<AECAlgoCreateParam> params)
    {
        s_firstLine.clear();
        TuningMode                   mode   = {ModeType::Default, {0}};
        const auto                   pStore = TestTuning().Load();
        StatsTuningData              tuning = {pStore.get(), &mode, 1};
        const AECAlgoCreateParamList list   = {params.data(), static_cast<UINT32>(params.size())};
        IKIROCoreAlgo*               pAlgo  = nullptr;
        EXPECT_EQ(CKIROCoreFactory::FactoryCreateKiroCoreAlgo(tuning, m_debugData, list, pAlgo), 0);
        IKIROCore* pCore = pAlgo->pCore;
        EXPECT_EQ(pAlgo->GetFlashMaxCurrent(pAlgo), 1000);
        pAlgo->DestroyInstance(pAlgo);
        EXPECT_EQ(pAlgo->pCore, pCore) << "the table stays as it was";
        TavoFree(pAlgo, 16, nullptr, 0);
        return s_firstLine;
    }

    StatsLogCapture m_log;
    KiroDebugData   m_debugData;
    VOID*           m_pLogger = reinterpret_cast<VOID*>(&LogFirstLine);
};

TEST_F(Creation, TakesThePointerOfTheFirstEntryWhicheverQualifies)
{
    const std::string welcome = "KIROUpdateCreateParamList 2 32 Lib kirocore sucessed creating glogger";
    const auto        logger  = AECAlgoCreateParamsLoggerFunctionPtr;
    VOID*             pOther  = &m_debugData;
    EXPECT_EQ(Create({{m_pLogger, 8, logger}}), welcome);
    EXPECT_EQ(Create({{m_pLogger, 7, AECAlgoCreateParamTypeCameraInfo}, {pOther, 8, logger}}), welcome);

    StatsLogCapture present;
    EXPECT_EQ(Create({{m_pLogger, 7, logger}}), "");
    EXPECT_EQ(Create({{nullptr, 8, logger}, {m_pLogger, 8, AECAlgoCreateParamTypeCameraInfo}}), "");
    EXPECT_EQ(Create({}), "");
}

TEST_F(Creation, LinesOfLevelsThatTheHostDoesNotTakeAreNotPutTogether)
{
    const auto logger = AECAlgoCreateParamsLoggerFunctionPtr;
    const auto log    = []
    {
        UINT32     arguments = 0;
        const auto argument  = [&arguments] { return ++arguments; };
        STATS_LOG_ERROR("%u", argument());
        STATS_LOG_TRACE("%u", argument());
        return arguments;
    };
    gStatsLogLevels = LevelError;
    EXPECT_EQ(Create({{m_pLogger, 8, logger}}), "");
    StatsLogCapture errors;
    EXPECT_EQ(log(), 1u) << "of the error";
    EXPECT_EQ(errors.CountLevel(LevelError), 1u);
    EXPECT_EQ(errors.CountLevel(LevelTrace), 0u);
    gStatsLogLevels = LevelTrace;
    (VOID) log();
    EXPECT_EQ(errors.CountLevel(LevelError), 1u);
    EXPECT_EQ(errors.CountLevel(LevelTrace), 1u);
    gStatsLogLevels = ~0U;
}

/// What an operation answers whose other arguments are empty.
template <typename Result, typename... Arguments>
Result AnswerOf(Result (*pOperation)(IKIROCoreAlgo*, Arguments...), IKIROCoreAlgo* pAlgo)
{
    std::tuple<std::remove_reference_t<Arguments>...> arguments{};
    return std::apply([&](auto&... rArguments) { return pOperation(pAlgo, rArguments...); }, arguments);
}

template <typename... Operations> VOID ExpectAnswers(IKIROCoreAlgo* pAlgo, INT64 expected, Operations... operations)
{
    EXPECT_THAT((std::vector<INT64>{static_cast<INT64>(AnswerOf(operations, pAlgo))...}), testing::Each(expected));
}

TEST(CoreFunctions, AnswerWithoutATableOrAnInstance)
{
    IKIROCoreAlgo table{};
    SetCoreFunctions(table);
    for (IKIROCoreAlgo* pAlgo : {static_cast<IKIROCoreAlgo*>(nullptr), &table})
    {
        ExpectAnswers(pAlgo, 4, table.runStartOfFrame, table.runMeteringPreprocess, table.runAnalyzer,
                      table.updateAnalyzerMgrOut, table.runMeteringPostprocess, table.mixMetering, table.runExtension,
                      table.runEndOfFrame, table.followMasterConvExposure, table.getBankData, table.setInput,
                      table.setStats, table.setBankData, table.getFlashCurrent, table.GetStartUpExposure,
                      table.queryMetaData, table.runArbitration, table.RunConvProcess, table.setDynamicBankData);
        ExpectAnswers(pAlgo, 0, table.GetContextStatus, table.GetFICData, table.isPreflashMeteringNeeded,
                      table.GetContextEvent, table.GetSCDOutput);
        ExpectAnswers(pAlgo, -1, table.GetFlashMaxCurrent);
        EXPECT_EQ(AnswerOf(table.GetFlashCalibInfo, pAlgo).count, 0u);
        EXPECT_EQ(AnswerOf(table.GetFlashCalibInfo, pAlgo).pRGRatios, nullptr);
        const auto run = [pAlgo](auto... operations) { (AnswerOf(operations, pAlgo), ...); };
        run(table.RunConvSettle, table.RunConvPostProcess, table.HandleExposureConstraints, table.DestroyInstance,
            table.SetContextEvent, table.run1DVectorProcess, table.reset1DVectorProcessors, table.SetMeteringLock,
            table.RebaseSCD);
    }
    EXPECT_EQ(LIBCreateTriggerData(nullptr), nullptr);
}

TEST(CoreFunctions, TriggerDataObjectsOfUnknownTypesHoldOneFloat)
{
    StatsLogCapture log;
    struct Zone
    {
        StartEndType range;
        FLOAT        values[2];
    };
    Zone              zones[] = {{{0.0f, 10.0f}, {1.0f, 5.0f}}, {{20.0f, 30.0f}, {3.0f, 9.0f}}};
    AECTriggerXMLData pairs   = {zones, {1, 2 * sizeof(FLOAT)}, 2};

    CKIROTriggerDataXML* pPairs = KIROCreateTriggerDataInst(nullptr, KIROMLTwoFloatsDataType);
    ASSERT_NE(pPairs, nullptr);
    pPairs->SetData(pPairs, &pairs, KIROMLTwoFloatsDataType);
    const FLOAT* pValues = static_cast<const FLOAT*>(pPairs->GetData(pPairs, 15.0f, 0.0f, 0.0f));
    EXPECT_EQ(pValues[0], 2.0f);
    EXPECT_EQ(pValues[1], 7.0f);
    pPairs->DestoryInstance(pPairs);

    for (INT32 type : {0, 9, -1})
    {
        CKIROTriggerDataXML* pBase = KIROCreateTriggerDataInst(nullptr, static_cast<KIROMLDataType>(type));
        ASSERT_NE(pBase, nullptr);
        pBase->SetData(pBase, &pairs, static_cast<KIROMLDataType>(99));
        EXPECT_TRUE(log.Has(2, "expected 0 received 99"));
        pBase->SetData(pBase, &pairs, KIROMLBaseDataType);
        EXPECT_EQ(*static_cast<const FLOAT*>(pBase->GetData(pBase, 15.0f, 0.0f, 0.0f)), 2.0f) << type;
        pBase->DestoryInstance(pBase);
    }
    EXPECT_EQ(KIROTriggerGetData(nullptr, 0.0f, 0.0f, 0.0f), nullptr);
    KIROTriggerDestory(nullptr);
}

TEST(CoreFunctions, EachKindOfTriggerDataTakesTreesOfItsOwn)
{
    StatsLogCapture log;
    for (INT32 type = KIROMLConvBaseDataType; type < KIROMLDataMax; ++type)
    {
        CKIROTriggerDataXML* pObject = KIROCreateTriggerDataInst(nullptr, static_cast<KIROMLDataType>(type));
        ASSERT_NE(pObject, nullptr);
        for (INT32 other = KIROMLBaseDataType; other < KIROMLDataMax; ++other)
        {
            log.Clear();
            AECTriggerXMLData none = {nullptr, {1, 2 * sizeof(FLOAT)}, 0};
            pObject->SetData(pObject, &none, static_cast<KIROMLDataType>(other));
            EXPECT_EQ(log.HasPart(2, "expected " + std::to_string(type) + " received "), other != type) << other;
        }
        pObject->DestoryInstance(pObject);
    }
}

}  // namespace
