/// @file
/// Records from text: members by name, as their tables list them.
#pragma once

#include <functional>

#include "schema/tuningrecord.h"
#include "tools/tuningfile/tuning.h"
#include "tools/tuningfile/yamlinput.h"

namespace tuningfile
{

/// Reads maps of members into records. What a map does not name stays as it is, so that a record can start as the copy
/// of another; a nested record is merged in the same way, while an array is replaced as a whole. "~" empties a member.
class RecordInput
{
public:
    /// @param rInput  the text, for messages
    /// @param rArena  where arrays and texts go
    /// @param rPlaces takes the places of what is read
    /// All must outlive the object.
    RecordInput(const YamlInput& rInput, RecordArena& rArena, TextPlaces& rPlaces)
        : m_rInput(rInput), m_rArena(rArena), m_rPlaces(rPlaces)
    {
    }

    /// @param pRecord of the described type
    /// @throws InputError at the first fault
    VOID ReadRecord(const YAML::Node& rNode, const tuning::RecordDescription& rDescription, VOID* pRecord) const;

    /// @return zero-filled memory of the arena
    /// @throws InputError, pointing at rNode, if there is no more
    VOID* Allocate(const YAML::Node& rNode, size_t size) const;

private:
    bool ReadTriggerName(const YAML::Node& rNode, const tuning::RecordMember& rMember, BYTE* pRecord) const;
    VOID ReadMember(const YAML::Node& rNode, const tuning::RecordMember& rMember, BYTE* pRecord) const;
    VOID ReadFixed(const YAML::Node& rNode, const tuning::RecordMember& rMember, BYTE* pValues) const;
    VOID ReadFilled(const YAML::Node& rNode, const tuning::RecordMember& rMember, BYTE* pValues) const;
    VOID ReadVariable(const YAML::Node& rNode, const tuning::RecordMember& rMember, BYTE* pRecord) const;
    VOID ReadValue(const YAML::Node& rNode, const tuning::RecordMember& rMember, BYTE* pValue) const;
    VOID ReadText(const YAML::Node& rNode, const tuning::RecordMember& rMember, BYTE* pValue) const;

    const YamlInput& m_rInput;
    RecordArena&     m_rArena;
    TextPlaces&      m_rPlaces;
};

}  // namespace tuningfile
