/// @file
/// Files of many use cases that are read on demand, and loads that take their time.
#pragma once

#include <atomic>
#include <chrono>
#include <cstring>
#include <future>
#include <latch>
#include <vector>

#include "tests/parameters/setmanagerfixture.h"

class OnDemandTest : public SetManagerTest
{
protected:
    /// Default and use cases 1 to count, each with an alpha of its number times a step.
    static ParameterFile MakeUsecases(UINT16 count, INT32 step = 100)
    {
        TuningFileMaker maker;
        const UINT32    root = maker.Table();
        maker.Alpha(root, 1);
        for (UINT16 usecase = 1; usecase <= count; ++usecase)
        {
            maker.AlphaMode(root, ModeType::Usecase, usecase, step * usecase);
        }
        return maker.Build();
    }

    /// Use cases 1 and 2 share an alpha of 100, those from 3 to 8 have one of 100 times their number.
    static ParameterFile MakePairAndOthers()
    {
        TuningFileMaker maker;
        const UINT32    root  = maker.Table();
        const UINT32    first = maker.Mode(root, ModeType::Usecase, 1);
        maker.Same("alpha", maker.Mode(root, ModeType::Usecase, 2), maker.Alpha(first, 100));
        for (UINT16 usecase = 3; usecase <= 8; ++usecase)
        {
            maker.AlphaMode(root, ModeType::Usecase, usecase, 100 * usecase);
        }
        return maker.Build();
    }

    static std::vector<TuningMode> UsecaseBranch(UINT16 usecase)
    {
        return Branch({{ModeType::Usecase, usecase}});
    }
};

/// Holds a load up at its first line in the log, under the mode's mutex, as a file that is slow to read does. Only
/// loads with the reason "slow".
class HeldUpLoad
{
public:
    HeldUpLoad()
    {
        TavoDesk::SetSystemLogSink(Hold, this);
    }

    ~HeldUpLoad()
    {
        Release();
        TavoDesk::SetSystemLogSink(nullptr, nullptr);
    }

    HeldUpLoad(const HeldUpLoad&)            = delete;
    HeldUpLoad& operator=(const HeldUpLoad&) = delete;

    VOID WaitUntilHeld()
    {
        m_held.wait();
    }

    VOID Release()
    {
        m_isReleased.store(true);
        m_isReleased.notify_all();
    }

private:
    static VOID Hold(VOID* pContext, UINT64, const CHAR*, UINT32, const CHAR* pLine)
    {
        if (std::strstr(pLine, "Loading modules (GetModule:slow:") != nullptr)
        {
            auto& rThis = *static_cast<HeldUpLoad*>(pContext);
            rThis.m_held.count_down();
            rThis.m_isReleased.wait(false);
        }
    }

    std::latch        m_held{1};
    std::atomic<bool> m_isReleased = false;
};

/// @return whether the work ended while nobody let it go on; a minute means that it waits
inline bool EndsByItself(const std::future<VOID>& rWork)
{
    return rWork.wait_for(std::chrono::minutes(1)) == std::future_status::ready;
}
