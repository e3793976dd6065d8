/// @file
/// The references of a module: what it reads, writes and gives a number to.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tools/tuningcheck/finding.h"
#include "tools/tuningcheck/named.h"

namespace tuningcheck
{

/// One reference.
struct Mention
{
    tuning::Verb              verb;
    Named                     named;
    std::string               expected;  ///< "an entry of bank ROITable"
    Where                     where;
    std::string               inModule;  ///< path without the mode
    std::string               value;     ///< "is 7", "also writes 8", "is 'SafeLuma'"
    std::string               label;     ///< by which the tuner calls what is defined or written here; may be empty
    const tuningfile::Module* pModule;
    UINT32                    mode;     ///< that has the module
    const BYTE*               pRecord;  ///< that holds the number
    const BYTE*               pList;    ///< that the record, or one around it, is an item of; null outside of lists
    const tuning::RecordDescription* pItem;   ///< type of that item
    const BYTE*                      pOwner;  ///< that item; null outside of lists
    std::optional<Named>             user;    ///< only while this is in use the mention counts

    /// @return whether it is the end of a range of entries: one that the tuner counts on, not always one that is
    /// written
    bool IsEndOfRange() const
    {
        return inModule.ends_with("outputStorage.end");
    }
};

/// The references of a module in use by its switches. What can be judged in the module alone is judged: banks that
/// cannot stand where they do, numbers that no entry of a value bank has.
/// @param rWrongKinds gains the kinds of what such a reader may mean
std::vector<Mention> MentionsOf(const ModulePlace& rModule, std::set<Kind>& rWrongKinds, Findings& rFindings);

}  // namespace tuningcheck
