/// @file
/// What the tuning schema knows about members that live tuning names by text.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "schema/tuningrecord.h"
#include "tools/liveclient/liveclient.h"

namespace kirotune
{

struct KnownMember
{
    const tuning::RecordMember*      pMember;
    bool                             isWholeArray;  ///< an array without an index behind its name
    const tuning::RecordDescription* pHolder;       ///< the record whose member it is
    bool                             isInList;      ///< of a list that records with the same data share
};

/// @param module a module, and the record within it to which the member path belongs
/// @return nothing if the schema of this program does not know it; the camera may have another
std::optional<KnownMember> FindMember(std::string_view module, std::string_view member);

/// Turns what a person writes into what the service reads: "true" and "false" into 1 and 0, an enumerator's name into
/// its value.
/// @throws liveclient::Error if it is no number then, and for members that the schema does not know as one
std::string NumberFor(const std::string& rModule, const liveclient::Value& rAssignment);

/// @return the name of an enumerator behind its value, as in "2 (Video)"; other values as they are
std::string WithEnumerator(const std::string& rModule, const liveclient::Value& rValue);

}  // namespace kirotune
