/// @file
/// Lives of cameras in sequences of a host's calls: reloads of all kinds one after the other, and random calls that
/// follow from a seed. Behind each the cameras must be as good as new.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "interface/ikirocorealgo.h"

namespace kirosoak
{

struct SequencePlan
{
    std::string                             tuningText;        ///< file of the text
    std::string                             path;              ///< of the parameter file that is written and reloaded
    UINT64                                  reloadCases = 0;   ///< at most; the first are those with whole files
    UINT64                                  sequences   = 0;   ///< random ones
    UINT64                                  seed        = 1;   ///< of the first; each of the others has the next number
    std::function<VOID(const std::string&)> progress    = {};  ///< sees a line now and then; may be empty
    std::function<bool()>                   isStopped   = {};  ///< asked before each sequence; may be empty
};

struct SequenceResult
{
    UINT64                   reloadCases = 0;
    UINT64                   sequences   = 0;
    UINT64                   frames      = 0;
    std::vector<std::string> faults;  ///< of the first that differs, with its calls; the run ends with it
};

/// When the process dies, the sequence's seed and calls are written to stderr.
/// @throws std::exception if the tuning cannot be used, and when a reload is not taken or refused as it should be
SequenceResult RunSequences(const SequencePlan& rPlan, StatsLogger logger);

}  // namespace kirosoak
