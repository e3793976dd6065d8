/// @file
/// Many trials, each of which may crash or hang: in processes of their own, with a limit on each trial's time.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>

#include "platform/tavotypes.h"

namespace kirodamage
{

/// Kinds of files that a campaign may have.
constexpr size_t KindsMax = 16;

/// What came of one file.
struct TrialResult
{
    size_t kind       = 0;      ///< below KindsMax
    bool   isUsable   = false;  ///< false if it was refused
    UINT64 fetched    = 0;      ///< modules that were handed out
    UINT64 withheld   = 0;      ///< modules that were there and not handed out
    bool   isDoubted  = false;  ///< usable, but something wrong was found with it
    UINT64 frames     = 0;      ///< that a core ran on the file
    UINT64 largest    = 0;      ///< bytes of the largest allocation
    UINT64 most       = 0;      ///< bytes held at one time
    CHAR   fault[256] = {};     ///< empty if all is well
};

using Trial = std::function<TrialResult(UINT64 number)>;

/// @return what all that is random in a trial follows from
constexpr UINT64 SeedOf(UINT64 seed, UINT64 number)
{
    constexpr UINT64 Spread = 0x9E3779B97F4A7C15;  // seeds that are near one another must not give the same files
    return (seed + 1) * Spread + number;
}

struct CampaignPlan
{
    UINT64 files   = 0;
    UINT32 jobs    = 1;
    UINT32 seconds = 1;  ///< of processor time that a trial may take

    std::function<VOID(UINT64)> progress = {};  ///< sees now and then how many are done; may be empty
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

    std::array<Counts, KindsMax> kinds;
    Extreme                      microseconds;
    Extreme                      refusal;  ///< microseconds, of those that were refused
    Extreme                      largest;
    Extreme                      most;
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
