/// @file
/// Finds what a tunable says by its path.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tools/meaning/modulewords.h"

namespace meaning
{

/// Where a path such as "kirodbconvbase.data[0].value.tolerance" leads.
struct WordPath
{
    const tuning::ModuleDescription* pModule = nullptr;  ///< null if there is none of that name
    const tuning::RecordMember*      pMember = nullptr;  ///< null for the module itself
    const tuning::MemberWords*       pWords  = nullptr;  ///< of pMember
    const tuning::Words*             pJudged = nullptr;  ///< the words that a number is judged by
    const tuning::RecordWords*       pRecord = nullptr;  ///< the record that the path leads to, null for a value
    std::string                      unknown;            ///< the part that is not known; empty if all are
    std::vector<std::string_view>    known;              ///< what could stand in its place
};

/// Indices are passed over.
WordPath FindWords(std::string_view path);

/// @return the names of the members of all modules
std::set<std::string_view> MemberNames();

/// @return the paths of all members of that name, module by module
std::vector<std::string> PathsTo(std::string_view member);

}  // namespace meaning
