/// @file
/// Values of a scene's text, with their limits. All refusals name file, line and column.
#pragma once

#include <limits>
#include <string>
#include <vector>

#include "tools/tuningfile/yamlinput.h"

namespace kirosim
{

// Limits that hold in several places.
constexpr DOUBLE SceneTimeMax = 1e6;     ///< s
constexpr INT32  EVStepsMax   = 1000;    ///< of exposure compensation
constexpr DOUBLE CCTMin       = 1000.0;  ///< K
constexpr UINT32 CCTMax       = 100000;  ///< K
constexpr DOUBLE ColourMin    = 0.01;    ///< red or blue over green
constexpr DOUBLE ColourMax    = 100.0;

/// How many items a list may hold.
struct SceneCount
{
    static constexpr size_t Any = std::numeric_limits<size_t>::max();

    size_t least = 0;
    size_t most  = Any;
};

/// "3", "1 to 16", or nothing if there may be any number.
std::string TextOf(const SceneCount& rCount);

/// A number as a person writes it, to six digits; nothing for one that is not finite.
std::string TextOf(DOUBLE value);

class SceneText
{
public:
    explicit SceneText(const tuningfile::YamlInput& rInput) : m_rInput(rInput)
    {
    }

    const tuningfile::YamlInput& Input() const
    {
        return m_rInput;
    }

    // A value outside its limits is refused.
    DOUBLE              Number(const tuningfile::YamlEntry& rEntry, DOUBLE low, DOUBLE high) const;
    std::vector<DOUBLE> Numbers(const tuningfile::YamlEntry& rEntry, size_t count, DOUBLE low, DOUBLE high) const;
    INT64               Whole(const tuningfile::YamlEntry& rEntry, INT64 low, INT64 high) const;
    UINT64              Whole(const tuningfile::YamlEntry& rEntry, UINT64 low, UINT64 high) const;
    bool                Flag(const tuningfile::YamlEntry& rEntry) const;

    /// @return the position of the text in the list of names; another text is refused with advice
    size_t Choice(const tuningfile::YamlEntry& rEntry, const std::vector<std::string>& rNames) const;

    /// The items of a list. @param pWhat what the list holds, for the refusal of anything else
    std::vector<YAML::Node> Items(const tuningfile::YamlEntry& rEntry, const CHAR* pWhat, SceneCount count = {}) const;

private:
    DOUBLE Number(const YAML::Node& rNode, const std::string& rName, DOUBLE low, DOUBLE high) const;

    const tuningfile::YamlInput& m_rInput;
};

}  // namespace kirosim
