/// @file
/// Edits of a running camera, and their form in a journal: a line for each command, its fields separated by tabs.
#pragma once

#include <string>
#include <vector>

#include "platform/tavotypes.h"

namespace kirotune
{

/// A number that is set.
struct Edit
{
    std::string member;   ///< path within the text of the module
    std::string oldText;  ///< as the camera told it
    std::string newText;  ///< as it is sent
};

/// What one command sets.
struct EditCommand
{
    std::string       time;        ///< UTC
    UINT32            table  = 0;  ///< mode table that the path refers to
    std::string       path   = {};
    std::string       module = {};  ///< or a record within it
    std::vector<Edit> edits  = {};
};

/// The members that a command sets.
std::vector<std::string> NamesOf(const EditCommand& rCommand);

/// What a journal holds.
struct JournalContent
{
    std::string              camera;    ///< which one, and which start of it; empty if there is none yet
    std::vector<EditCommand> commands;  ///< the oldest first
};

std::string FormatJournal(const JournalContent& rContent);

/// @param rName of the file, for messages
/// @throws liveclient::Error for what FormatJournal does not write
JournalContent ParseJournal(const std::string& rText, const std::string& rName);

/// Joins what commands do to the same table, path and module: numbers as they were before the first, and are behind the
/// last.
std::vector<EditCommand> Joined(const std::vector<EditCommand>& rCommands);

}  // namespace kirotune
