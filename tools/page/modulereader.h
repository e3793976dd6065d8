/// @file
/// A module of a running camera, member by member, with what the schema says of each.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/kirotune/livecamera.h"

namespace page
{

enum class MemberKind
{
    Number,
    Switch,
    Choice,
    Text,
    Record,
    List
};

struct Member
{
    std::string path;  ///< within the module
    std::string name;
    MemberKind  kind  = MemberKind::Text;
    std::string value = {};  ///< as the camera tells it; empty for records and lists

    std::string           words     = {};
    std::string           unit      = {};
    std::optional<DOUBLE> min       = {};  ///< of the range in which it makes sense
    std::optional<DOUBLE> max       = {};
    std::string           begin     = {};  ///< what a tuner writes first; may be empty
    bool                  isInteger = false;

    std::vector<std::pair<std::string, std::string>> choices = {};  ///< value and name of each enumerator

    std::string         record  = {};  ///< type of the record, or of the records in a list
    std::vector<Member> members = {};  ///< of a record; of a list its entries
};

/// @return the members of a module as frames of a mode find it
/// @throws liveclient::Error if there is no such module, or if the camera tells of more members than any module has
std::vector<Member> ReadModule(kirotune::LiveCamera& rCamera, const std::string& rMode, const std::string& rModule);

}  // namespace page
