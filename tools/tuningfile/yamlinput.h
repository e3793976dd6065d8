/// @file
/// A YAML document as input of a person: every fault is reported with file, line and column.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <yaml-cpp/yaml.h>

#include "platform/tavotypes.h"
#include "tools/tuningfile/textplaces.h"

namespace tuningfile
{

/// One entry of a map.
struct YamlEntry
{
    std::string name;
    YAML::Node  key;
    YAML::Node  value;
};

/// The entries of a map, in the order of the text.
class YamlMap
{
public:
    explicit YamlMap(std::vector<YamlEntry> entries) : m_entries(std::move(entries))
    {
    }

    /// @return null if the map has no entry of that name
    const YamlEntry* Find(std::string_view name) const;

    auto begin() const
    {
        return m_entries.begin();
    }

    auto end() const
    {
        return m_entries.end();
    }

    size_t Count() const
    {
        return m_entries.size();
    }

private:
    std::vector<YamlEntry> m_entries;
};

class YamlInput
{
public:
    /// @param fileName as it appears in messages
    /// @throws InputError if the text is not one YAML document
    YamlInput(std::string_view text, std::string fileName);

    const YAML::Node& Root() const
    {
        return m_root;
    }

    /// As it appears in messages.
    const std::string& FileName() const
    {
        return m_fileName;
    }

    /// Throws an InputError that points at a node.
    [[noreturn]] VOID Fail(const YAML::Node& rNode, std::string_view message) const;

    /// Reads a map with its merge keys ("<<") resolved: a name given in the map itself wins over a merged one, an
    /// earlier merged map over a later one.
    /// @param expected what the map should hold, for the message if it is none
    YamlMap Map(const YAML::Node& rNode, std::string_view expected) const;

    /// @return the text of a scalar
    const std::string& Scalar(const YAML::Node& rNode, std::string_view expected) const;

    /// Fails with advice on an entry whose name is not known.
    [[noreturn]] VOID FailUnknown(const YamlEntry& rEntry, std::string_view what,
                                  const std::vector<std::string_view>& rKnown) const;

private:
    [[noreturn]] VOID Fail(const YAML::Mark& rMark, std::string_view message) const;
    [[noreturn]] VOID FailAt(size_t line, size_t column, std::string_view message) const;  ///< both from 1

    /// Tells of a text that is no YAML, and where the mistake began as far as that can be seen.
    [[noreturn]] VOID FailParsing(std::string_view text, const YAML::Exception& rFault) const;

    VOID RequireFewValues(std::string_view text) const;

    /// A map while it is put together.
    struct Collection
    {
        std::vector<YamlEntry>                  entries;
        std::unordered_map<std::string, size_t> indices;  ///< in entries, by name
    };

    VOID Merge(const YAML::Node& rMap, std::string_view expected, Collection& rCollection, UINT32 depth) const;

    /// Fails when following aliases and merge keys has led to too many values.
    VOID CountValue(const YAML::Node& rNode) const;

    std::string    m_fileName;
    YAML::Node     m_root;
    mutable UINT64 m_valueCount = 0;
};

/// Where a node begins.
TextPlace PlaceOf(const YAML::Node& rNode);

/// What a node is, in words for a message: "a list", "a map", "nothing" or the quoted scalar.
std::string Describe(const YAML::Node& rNode);

}  // namespace tuningfile
