/// @file
/// Values of a scene's text, with their limits. All refusals name file, line and column.
#pragma once

#include <string>
#include <vector>

#include "tools/tuningfile/yamlinput.h"

namespace kirosim
{

// Limits that hold in several places.
constexpr DOUBLE SceneTimeMax = 1e6;     ///< s
constexpr DOUBLE EVStepsMax   = 1000.0;  ///< of exposure compensation
constexpr DOUBLE CCTMin       = 1000.0;  ///< K
constexpr DOUBLE CCTMax       = 1e5;     ///< K
constexpr DOUBLE ColourMin    = 0.01;    ///< red or blue over green
constexpr DOUBLE ColourMax    = 100.0;

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
    UINT64              Unsigned(const tuningfile::YamlEntry& rEntry, UINT64 maximum) const;
    bool                Flag(const tuningfile::YamlEntry& rEntry) const;

    /// @return the position of the text in the list of names; another text is refused with the list
    size_t Choice(const tuningfile::YamlEntry& rEntry, const std::vector<std::string>& rNames) const;

    /// The items of a list. @param pWhat what the list holds, for the refusal of anything else
    std::vector<YAML::Node> Items(const tuningfile::YamlEntry& rEntry, const CHAR* pWhat) const;

private:
    DOUBLE Number(const YAML::Node& rNode, const std::string& rName, DOUBLE low, DOUBLE high) const;

    const tuningfile::YamlInput& m_rInput;
};

}  // namespace kirosim
