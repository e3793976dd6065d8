/// @file
/// What a person asks of a run.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "platform/tavotypes.h"
#include "tools/kirosim/loadedtuning.h"
#include "tools/program/standardstreams.h"

namespace kirosim
{

struct RunOptions
{
    std::vector<std::string> edits;  ///< of the tuning, MODE/MODULE/MEMBER=VALUE; see tuningedits.h

    std::string           tuning;
    std::string           scene;
    std::string           variant;  ///< empty for the scene as it is
    std::string           csv;      ///< files that are empty are not wanted
    std::string           csvSecond;
    std::string           debugData;
    std::string           ficLoad;
    std::string           ficSave;
    std::string           record;
    std::string           report;
    std::string           against;  ///< trace of another run, for the report
    std::string           command;  ///< line with which a person has started the run
    std::string           liveAddress = LoadedTuning::LiveAddress;
    std::optional<UINT32> frames;
    std::optional<UINT64> seed;
    std::optional<UINT64> loops;
    std::optional<UINT32> pictures;  ///< the report has one of every so many frames, beside those that matter
    bool                  isQuiet    = false;
    bool                  isAsking   = false;  ///< for the library's answers to queries
    bool                  isRealtime = false;
    bool                  isLoop     = false;
    bool                  isNotLive  = false;
    bool                  isJson     = false;  ///< the summary
    bool                  isJsonLine = false;  ///< one of several: on one line, with what tells them apart
    bool                  isStrict   = false;  ///< what is only said otherwise ends the run

    /// Whether an output is written to standard output, so that all else has to go elsewhere.
    bool IsStdoutTaken() const
    {
        const auto               isStdout  = [](const std::string* pPath) { return program::IsStandardStream(*pPath); };
        const std::string* const outputs[] = {&csv, &csvSecond, &debugData, &ficSave, &report};
        return std::any_of(std::begin(outputs), std::end(outputs), isStdout);
    }

    bool IsLooping() const
    {
        return isLoop || loops.has_value();
    }

    /// Whether a run that is stopped has done what was asked: one that would go on for ever, or is being watched.
    bool IsOpenEnded() const
    {
        return !loops.has_value() && (isLoop || isRealtime);
    }
};

}  // namespace kirosim
