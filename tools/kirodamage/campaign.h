/// @file
/// Many trials, each of which may crash or hang: in processes of their own, with a limit on each trial's time.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>

#include "platform/tavotypes.h"
#include "tools/kirodamage/damage.h"

namespace kirodamage
{

/// What came of one file.
struct TrialResult
{
    DamageKind kind      = DamageKind::Bits;
    bool       isUsable  = false;  ///< false if the store refused it
    UINT64     fetched   = 0;      ///< modules that were handed out
    UINT64     withheld  = 0;      ///< modules that were there and not handed out
    bool       isDoubted = false;  ///< usable, but the store has found something wrong with it
    UINT64     frames    = 0;      ///< that a core ran on the file
    UINT64     largest   = 0;      ///< bytes of the largest allocation
    UINT64     most      = 0;      ///< bytes held at one time
    CHAR       fault[96] = {};     ///< empty if all is well
};

using Trial = std::function<TrialResult(UINT64 number)>;

struct CampaignPlan
{
    UINT64 files   = 0;
    UINT32 jobs    = 1;
    UINT32 seconds = 1;  ///< of processor time that a trial may take
};

/// The largest value, and the trial that had it.
struct Extreme
{
    UINT64 value  = 0;
    UINT64 number = 0;

    VOID Add(UINT64 newValue, UINT64 newNumber)
    {
        if (newValue > value)
        {
            value  = newValue;
            number = newNumber;
        }
    }
};

/// Sums over trials. Lives in memory that processes share, hence plain data.
struct Tally
{
    struct Counts
    {
        UINT64 refused  = 0;  ///< files
        UINT64 usable   = 0;  ///< files
        UINT64 doubted  = 0;  ///< usable ones that the store has found something wrong with
        UINT64 fetched  = 0;  ///< modules of those
        UINT64 withheld = 0;  ///< modules of those that were there but are too damaged
        UINT64 frames   = 0;  ///< that a core ran

        VOID Add(const Counts& rOther)
        {
            refused += rOther.refused;
            usable += rOther.usable;
            doubted += rOther.doubted;
            fetched += rOther.fetched;
            withheld += rOther.withheld;
            frames += rOther.frames;
        }
    };

    std::array<Counts, DamageKinds> kinds;
    Extreme                         microseconds;
    Extreme                         largest;
    Extreme                         most;
};

struct Fault
{
    UINT64      number;  ///< of the trial
    std::string what;
};

struct CampaignResult
{
    Tally                tally;
    std::optional<Fault> fault;  ///< the first one that was noticed; the campaign ends with it
};

/// Runs trials 0 to files - 1.
/// @throws std::runtime_error if the system has no process for it
CampaignResult RunCampaign(const CampaignPlan& rPlan, const Trial& rTrial);

}  // namespace kirodamage
