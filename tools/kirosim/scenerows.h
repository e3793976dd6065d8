/// @file
/// The members of a scene's maps as rows. One row says how a member is read, within which limits, in which unit, and
/// what it means; reading, advice on a misspelt name and the reference of all members come from it.
#pragma once

#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/kirosim/scenetext.h"

namespace kirosim
{

class SceneMembers;
template <typename T> class SceneTable;

/// What a member's text is, or each item of its list.
enum class SceneType
{
    Text,
    Number,
    Whole,  ///< number
    Flag,
    Name,  ///< one of some
    Mode,  ///< of the tuning, such as Sensor.0
    Map
};

/// Numbers that a member takes as a person writes them, limits included.
struct SceneRange
{
    std::string low;
    std::string high;
};

/// What a member's text looks like.
struct SceneForm
{
    SceneType                            type     = SceneType::Text;
    std::optional<SceneRange>            range    = {};  ///< of its numbers
    std::vector<std::string>             names    = {};  ///< it may be one of these; if not of type Name, also another
    std::vector<SceneCount>              lists    = {};  ///< items of its list, then of each list in it
    std::function<const SceneMembers&()> members  = {};  ///< of its map or maps; asked for late, since maps nest
    bool                                 isByName = false;  ///< it is a map of such maps, by any names
};

/// What is to be said of a member.
struct SceneMember
{
    std::string_view name;
    SceneForm        form;
    std::string_view unit;  ///< of its numbers as they stand in the text; empty for none
    std::string_view meaning;
    std::string      initial;  ///< the text of the value that it has if the map does not name it; empty for none
};

/// The members of one kind of map, whatever they are read into.
class SceneMembers
{
public:
    /// @param expected what such a map is, for the refusal of anything else
    /// @param what     one of its members is, for the refusal of an unknown one
    SceneMembers(std::string_view expected, std::string_view what) : m_expected(expected), m_what(what)
    {
    }

    auto begin() const
    {
        return m_members.begin();
    }

    auto end() const
    {
        return m_members.end();
    }

protected:
    /// @return the member's position; a name that no member has is refused with advice
    size_t IndexOf(const SceneText& rText, const tuningfile::YamlEntry& rEntry) const;

    std::string_view         m_expected;
    std::string_view         m_what;
    std::vector<SceneMember> m_members;
};

/// How a member is read into a T, and what its text looks like.
template <typename T> struct SceneValue
{
    using Reader = std::function<VOID(const SceneText&, const tuningfile::YamlEntry&, T&)>;

    Reader                               read;
    SceneForm                            form   = {};
    std::function<std::string(const T&)> textOf = {};  ///< the member's value, empty if it has none; may be missing
};

/// Where a table is to be had.
template <typename T> using SceneTableSource = const SceneTable<T>& (*)();

template <typename T> struct SceneRow
{
    std::string_view name;
    SceneValue<T>    value;
    std::string_view unit;
    std::string_view meaning;
};

/// The members of a map that is read into a T. All reading throws tuningfile::InputError with file, line and column.
template <typename T> class SceneTable : public SceneMembers
{
public:
    SceneTable(std::string_view expected, std::string_view what, std::initializer_list<SceneRow<T>> rows)
        : SceneMembers(expected, what)
    {
        const T initial{};
        for (const SceneRow<T>& rRow : rows)
        {
            m_members.push_back({rRow.name, rRow.value.form, rRow.unit, rRow.meaning,
                                 rRow.value.textOf ? rRow.value.textOf(initial) : ""});
            m_readers.push_back(rRow.value.read);
        }
    }

    /// A table of some of the members of another one, in another order, whose values it is to change.
    SceneTable(std::string_view expected, std::string_view what, const SceneTable& rAll,
               std::initializer_list<std::string_view> names)
        : SceneMembers(expected, what)
    {
        for (const std::string_view name : names)
        {
            for (size_t index = 0; index < rAll.m_members.size(); ++index)
            {
                if (rAll.m_members[index].name == name)
                {
                    m_members.push_back(rAll.m_members[index]);
                    m_members.back().initial.clear();
                    m_readers.push_back(rAll.m_readers[index]);
                }
            }
        }
    }

    /// Reads the members that the map names; the others stay. @return the map
    tuningfile::YamlMap Read(const SceneText& rText, const YAML::Node& rNode, T& rTarget) const
    {
        tuningfile::YamlMap map = rText.Input().Map(rNode, m_expected);
        for (const tuningfile::YamlEntry& rEntry : map)
        {
            m_readers[IndexOf(rText, rEntry)](rText, rEntry, rTarget);
        }
        return map;
    }

private:
    std::vector<typename SceneValue<T>::Reader> m_readers;
};

}  // namespace kirosim
