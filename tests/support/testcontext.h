/// @file
/// A context for tests of single modules: real history and banks, settings that a test sets directly, and a real tuning
/// store that a test fills with plain records.
///
///     TestContext context;
///     kirometering::KIROMeteringType metering{};
///     metering.moduleID = 2;
///     context.SetTuning(TestTuning().Add(metering));
///     context.m_input.systemLatency = 3;
#pragma once

#include <map>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "core/ikirocontextmanager.h"
#include "interface/ikirodebugdata.h"
#include "parameters/tuningmode.h"
#include "tests/support/recordwriter.h"
#include "tests/support/statslogcapture.h"

class TuningSetManager;

/// Records of tuning modules, all in the Default mode.
class TestTuning
{
public:
    TestTuning();
    TestTuning(const TestTuning&)            = delete;
    TestTuning& operator=(const TestTuning&) = delete;
    ~TestTuning();

    /// Adds a module by its record. The record and what it points to are copied; a module is added once.
    template <typename Record> TestTuning& Add(const Record& rRecord)
    {
        AddRecord(*TuningRecordOf(static_cast<const Record*>(nullptr)), &rRecord);
        return *this;
    }

    /// @return a store with the records; the test fails if it does not take them
    std::unique_ptr<TuningSetManager> Load() const;

    /// @return the name of the module that was added last
    const CHAR* LastModule() const
    {
        return m_pLastModule;
    }

private:
    VOID AddRecord(const tuning::RecordDescription& rDescription, const VOID* pRecord);

    ParameterFileBuilder m_builder;
    RecordWriter         m_writer;
    UINT32               m_rootMode;
    const CHAR*          m_pLastModule = nullptr;
};

/// Not for use without a StatsLogCapture: history and banks log.
class TestContext final : public IKIROContextManager
{
public:
    /// Starts with a store without modules, so each of them reads as a record of zeros.
    TestContext();
    ~TestContext();

    /// Loads a tuning in place of the present one, and the tuned banks from it. Entries that a test has put into tuned
    /// banks are dropped. Records of the tuning before stay readable as long as the context.
    VOID SetTuning(const TestTuning& rTuning);

    /// A record that lies in a store of its own, as the module of a file does, for what is handed one.
    /// @return a copy of rRecord and of what it points to; it lives as long as the context
    template <typename Record> Record* Stored(const Record& rRecord)
    {
        return static_cast<Record*>(StoredRecord(TestTuning().Add(rRecord)));
    }

    /// What a detector answers from now on.
    VOID SetSCDOutput(UINT32 id, const KIROSCDOutput& rOutput);

    // The trigger bank.
    VOID  SetTrigger(INT32 dataID, FLOAT value);
    FLOAT Trigger(INT32 dataID);

    // The other value banks.
    VOID     SetCalculatorResult(INT32 dataID, FLOAT value);
    VOID     SetAnalyzerResult(INT32 dataID, StartEnd value);
    StartEnd AnalyzerResult(INT32 dataID);

    /// Saves a start configuration if there is none yet, then the frame; the frame after it is now in progress.
    VOID SaveFrame(AECFrameHistory frame);

    const SetInputData* GetInput() override;
    UINT64              GetContextStatus() override;
    VOID                SetContextEvent(KIROTunaraEventType event, BOOL value) override;
    BOOL                GetContextEvent(KIROTunaraEventType event) override;
    VOID                SetMaxFlashCurrent(INT32 current) override;
    VOID                UpdateFrameCounters() override;
    VOID                RebaseSCD(UINT32 id) override;
    BOOL                GetSCDOutput(UINT32 id, KIROSCDOutput& rOutput) override;
    IKIRODebugData&     GetDebugDataInfo() override;
    VOID                SetMeteringLock(BOOL bLock) override;
    KIROFICInfo         GetFICInfo() override;

    SetInputData        m_input{};               ///< what GetInput answers
    KIROFICInfo         m_ficInfo{};             ///< what GetFICInfo answers
    std::vector<UINT32> m_rebasedSCDs;           ///< in the order of the calls
    IKIRODebugData*     m_pDebugData = nullptr;  ///< what GetDebugDataInfo answers; null for none enabled

private:
    /// Debug data are off.
    class NoDebugData final : public IKIRODebugData
    {
    public:
        AECDebugData& GetDebugData() override;
        BOOL          IsDebugDataEnabled() override;
    };

    VOID* StoredRecord(const TestTuning& rTuning);

    std::vector<std::unique_ptr<TuningSetManager>> m_stores;        ///< the last one is in use
    std::vector<std::unique_ptr<TuningSetManager>> m_recordStores;  ///< of single records
    TuningMode                                     m_defaultMode;
    std::map<UINT32, KIROSCDOutput>                m_scdOutputs;
    NoDebugData                                    m_noDebugData;
};

/// A test of a single module in a context of its own.
class ContextTest : public testing::Test
{
protected:
    /// Loads a tuning of these modules in place of the present one.
    template <typename... Records> VOID Tune(const Records&... rRecords)
    {
        TestTuning tuning;
        (tuning.Add(rRecords), ...);
        m_context.SetTuning(tuning);
    }

    /// Puts an entry into a bank in place of all others; null for none. It stays the caller's.
    VOID SetBank(KIROBankIDType bankID, VOID* pPayload)
    {
        m_context.m_pBankManager->SetBankTuning(bankID, nullptr, pPayload, (pPayload != nullptr) ? 1 : 0);
    }

    StatsLogCapture m_log;
    TestContext     m_context;
};
