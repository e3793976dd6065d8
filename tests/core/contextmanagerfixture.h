/// @file
/// A context manager with a tuning, and the settings of a host.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "core/ckirocontextmanager.h"
#include "host/kirodebugdata.h"
#include "parameters/tuningsetmanager.h"
#include "tests/support/statslogcapture.h"
#include "tests/support/testcontext.h"

class ContextManager : public testing::Test
{
protected:
    ContextManager()
    {
        SetTuning(TestTuning());
    }

    VOID SetTuning(const TestTuning& rTuning)
    {
        m_stores.push_back(rTuning.Load());
        StatsTuningData data = {m_stores.back().get(), &m_defaultMode, 1};
        EXPECT_EQ(m_context.SetTunara(data), 0);
    }

    KiroResult SetBytes(AECAlgoSetParamType type, const VOID* pValue, UINT32 size)
    {
        AECAlgoSetParam param = {const_cast<VOID*>(pValue), size, type};
        KIROSetInput    input = {.source = AECPEKSetParam, .u = {.pPEKInput = &param}};
        return m_context.SetInput(&input);
    }

    template <typename T> KiroResult Set(AECAlgoSetParamType type, const T& rValue)
    {
        return SetBytes(type, &rValue, sizeof(rValue));
    }

    /// @return whether the host is asked to restart its frame skipping
    template <typename T> BOOL SetResets(AECAlgoSetParamType type, const T& rValue)
    {
        EXPECT_EQ(Set(type, rValue), 0);
        return m_context.m_bResetFrameSkip;
    }

    UINT64 StatusAfterSnapshot(KIROCoreSnapshotType type)
    {
        KIROSetInput input = {.source = KIROCoreSnapshot, .u = {.snapshotMode = type}};
        EXPECT_EQ(m_context.SetInput(&input), 0);
        return Status();
    }

    template <typename T> UINT64 StatusAfter(AECAlgoSetParamType type, const T& rValue)
    {
        EXPECT_EQ(Set(type, rValue), 0);
        return Status();
    }

    static constexpr UINT64 Bit(KIROTunaraEventType event)
    {
        return 1ULL << event;
    }

    UINT64 Status()
    {
        return m_context.GetContextStatus();
    }

    StatsLogCapture                                m_log;
    KiroDebugData                                  m_debugData;
    TuningMode                                     m_defaultMode{ModeType::Default, {0}};
    std::vector<std::unique_ptr<TuningSetManager>> m_stores;
    CKIROContextManager                            m_context{m_debugData};
    const SetInputData&                            m_rInput = *m_context.GetInput();
};
