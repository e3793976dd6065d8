#include "tests/support/testcontext.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "parameters/tuningsetmanager.h"
#include "schema/modules.h"
#include "schema/namehash.h"

TestTuning::TestTuning() : m_writer(m_builder), m_rootMode(m_builder.AddRootMode(m_builder.AddModeTable()))
{
}

TestTuning::~TestTuning() = default;

VOID TestTuning::AddRecord(const tuning::RecordDescription& rDescription, const VOID* pRecord)
{
    for (const tuning::ModuleDescription& rModule : tuning::TuningModules)
    {
        if (rModule.pRecord == &rDescription)
        {
            m_writer.AddModule(rModule.pName, {rModule.major, rModule.minor, rModule.patch}, m_rootMode, rDescription,
                               pRecord);
            m_pLastModule = rModule.pName;
            return;
        }
    }
    ADD_FAILURE() << rDescription.pName << " is not the record of a module";
}

std::unique_ptr<TuningSetManager> TestTuning::Load() const
{
    const ParameterFile file   = m_builder.Build();
    auto                pStore = std::make_unique<TuningSetManager>("test");
    pStore->SetLiveTuningAutostart(false);
    EXPECT_TRUE(pStore->LoadBinaryParameters(file.bytes.data(), file.bytes.size())) << pStore->GetErrorText();
    return pStore;
}

TestContext::TestContext() : m_defaultMode{ModeType::Default, {0}}
{
    SetTuning(TestTuning());
}

TestContext::~TestContext() = default;

VOID TestContext::SetTuning(const TestTuning& rTuning)
{
    m_stores.push_back(rTuning.Load());
    m_tuningData = {m_stores.back().get(), &m_defaultMode, 1};
    ++m_tuningSerial;
    m_pBankManager->SetTuning(&m_tuningData);
}

VOID* TestContext::StoredRecord(const TestTuning& rTuning)
{
    m_recordStores.push_back(rTuning.Load());
    const CHAR* pName = rTuning.LastModule();
    return m_recordStores.back()->GetModuleRecord(pName, namehash::OfName(pName), &m_defaultMode, 1, nullptr);
}

VOID TestContext::SetSCDOutput(UINT32 id, const KIROSCDOutput& rOutput)
{
    m_scdOutputs[id] = rOutput;
}

VOID TestContext::SetTrigger(INT32 dataID, FLOAT value)
{
    EXPECT_EQ(m_pBankManager->PublishTrigger(dataID, value, nullptr, SourceControl), 0);
}

FLOAT TestContext::Trigger(INT32 dataID)
{
    return m_pBankManager->GetDataTriggers(dataID)->value;
}

VOID TestContext::SetCalculatorResult(INT32 dataID, FLOAT value)
{
    DBFloatPayload payload{dataID, value, nullptr};
    EXPECT_EQ(m_pBankManager->SetDataStatsCalculator({dataID, &payload, SourceControl}), 0);
}

VOID TestContext::SetAnalyzerResult(INT32 dataID, StartEnd value)
{
    DBStartEndPayload payload{dataID, value, nullptr};
    EXPECT_EQ(m_pBankManager->SetDataSceneAnalyzer({dataID, &payload, SourceControl}), 0);
}

StartEnd TestContext::AnalyzerResult(INT32 dataID)
{
    return m_pBankManager->GetDataSceneAnalyzer(dataID)->value;
}

VOID TestContext::SaveFrame(AECFrameHistory frame)
{
    if (m_pHistory->IsStartConfigSaved() == FALSE)
    {
        AECFrameHistory start = frame;
        start.isStartConfig   = TRUE;
        EXPECT_EQ(m_pHistory->SaveFrameToHistory(&start), 0);
    }
    EXPECT_EQ(m_pHistory->SaveFrameToHistory(&frame), 0);
    EXPECT_EQ(m_pHistory->SaveCurrentFrameID(frame.frameID + 1), 0);
}

const SetInputData* TestContext::GetInput()
{
    return &m_input;
}

UINT64 TestContext::GetContextStatus()
{
    return m_contextStatus;
}

VOID TestContext::SetContextEvent(KIROTunaraEventType event, BOOL value)
{
    const UINT64 bit = 1ULL << event;
    m_contextStatus  = (value == TRUE) ? (m_contextStatus | bit) : (m_contextStatus & ~bit);
}

BOOL TestContext::GetContextEvent(KIROTunaraEventType event)
{
    return ((m_contextStatus >> event) & 1) != 0 ? TRUE : FALSE;
}

VOID TestContext::SetMaxFlashCurrent(INT32 current)
{
    m_input.maxLEDCurrent = current;
}

VOID TestContext::UpdateFrameCounters()
{
}

VOID TestContext::RebaseSCD(UINT32 id)
{
    m_rebasedSCDs.push_back(id);
}

BOOL TestContext::GetSCDOutput(UINT32 id, KIROSCDOutput& rOutput)
{
    const auto found = m_scdOutputs.find(id);
    if (found == m_scdOutputs.end())
    {
        return FALSE;
    }
    rOutput = found->second;
    return TRUE;
}

IKIRODebugData& TestContext::GetDebugDataInfo()
{
    return (m_pDebugData != nullptr) ? *m_pDebugData : m_noDebugData;
}

VOID TestContext::SetMeteringLock(BOOL bLock)
{
    m_input.bLockMetering = bLock;
}

KIROFICInfo TestContext::GetFICInfo()
{
    return m_ficInfo;
}

AECDebugData& TestContext::NoDebugData::GetDebugData()
{
    throw std::logic_error("debug data are off in this test");
}

BOOL TestContext::NoDebugData::IsDebugDataEnabled()
{
    return FALSE;
}
