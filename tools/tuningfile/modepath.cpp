#include "tools/tuningfile/modepath.h"

#include <algorithm>
#include <charconv>
#include <vector>

#include <fmt/format.h>

#include "parameters/modenames.h"
#include "tools/tuningfile/names.h"

namespace tuningfile
{

namespace
{

/// @return whether the text is a name of the enumeration or a number of 16 bits
bool ParsePart(std::string_view text, const tuning::EnumDescription* pNames, UINT16& rValue)
{
    const auto result = std::from_chars(text.data(), text.data() + text.size(), rValue);
    if (result.ec == std::errc() && result.ptr == text.data() + text.size())
    {
        return true;
    }
    for (UINT32 index = 0; pNames != nullptr && index < pNames->count; ++index)
    {
        if (text == pNames->pEnumerators[index].pName)
        {
            rValue = static_cast<UINT16>(pNames->pEnumerators[index].value);
            return true;
        }
    }
    return false;
}

std::string AdviceOn(std::string_view unknown, const tuning::EnumDescription* pNames)
{
    if (pNames == nullptr)
    {
        return "expected a number from 0 to 65535";
    }
    std::vector<std::string_view> names;
    for (UINT32 index = 0; index < pNames->count; ++index)
    {
        names.push_back(pNames->pEnumerators[index].pName);
    }
    return Advice(unknown, names);
}

}  // namespace

bool ParseModeName(std::string_view text, ModeName& rName, std::string& rFault)
{
    const size_t           dot   = text.find('.');
    const std::string_view level = text.substr(0, dot);
    if (!ParsePart(level, &ModeNames::Modes(), rName.mode))
    {
        rFault = fmt::format("unknown mode '{}', {}", level, AdviceOn(level, &ModeNames::Modes()));
        return false;
    }
    const ModeType mode = static_cast<ModeType>(rName.mode);
    rName.subMode       = 0;
    if (dot == std::string_view::npos && mode == ModeType::Default)
    {
        return true;
    }
    if (dot == std::string_view::npos)
    {
        rFault = fmt::format("mode '{}' without a sub-mode, expected '{}.<sub-mode>'", text, text);
        return false;
    }
    const std::string_view subMode = text.substr(dot + 1);
    if (!ParsePart(subMode, ModeNames::SubModes(mode), rName.subMode))
    {
        rFault = fmt::format("unknown sub-mode '{}' of {}, {}", subMode, level,
                             AdviceOn(subMode, ModeNames::SubModes(mode)));
        return false;
    }
    return true;
}

std::string FormatModeName(const ModeName& rName)
{
    if (rName == ModeName{})
    {
        return "Default";
    }
    const CHAR* pLevel   = ModeNames::Modes().NameOf(rName.mode);
    const CHAR* pSubMode = ModeNames::GetSubModeName(static_cast<ModeType>(rName.mode), rName.subMode);
    return fmt::format("{}.{}", (pLevel != nullptr) ? pLevel : fmt::to_string(rName.mode),
                       (pSubMode != nullptr) ? pSubMode : fmt::to_string(rName.subMode));
}

std::string ModePattern()
{
    std::string pattern = "^(Default|[0-9]+\\.[0-9]+|Sensor\\.[0-9]+";
    for (UINT32 level = static_cast<UINT32>(ModeType::Usecase); level <= static_cast<UINT32>(ModeType::Effect); ++level)
    {
        const tuning::EnumDescription& rNames = *ModeNames::SubModes(static_cast<ModeType>(level));
        pattern += fmt::format("|{}\\.([0-9]+", ModeNames::Modes().NameOf(static_cast<INT32>(level)));
        for (UINT32 index = 0; index < rNames.count; ++index)
        {
            pattern += fmt::format("|{}", rNames.pEnumerators[index].pName);
        }
        pattern += ')';
    }
    return pattern + ")$";
}

std::string PathOf(const ModeTable& rTable, UINT32 index)
{
    const auto nameOf = [&rTable](UINT32 mode) {
        return FormatModeName({rTable.modes[mode].mode, rTable.modes[mode].subMode});
    };
    std::string path = nameOf(index);
    while (rTable.modes[index].parent.has_value())
    {
        const bool isGroupEntry = rTable.IsGroupEntry(index);
        index                   = *rTable.modes[index].parent;
        path                    = isGroupEntry ? path : nameOf(index) + '|' + path;
    }
    return path;
}

std::vector<TuningMode> BranchOf(const ModeTable& rTable, UINT32 index)
{
    std::vector<TuningMode> branch;
    for (std::optional<UINT32> mode = index; mode.has_value(); mode = rTable.modes[*mode].parent)
    {
        if (!rTable.IsGroupEntry(*mode))
        {
            TuningMode selector{};
            selector.mode          = static_cast<ModeType>(rTable.modes[*mode].mode);
            selector.subMode.value = rTable.modes[*mode].subMode;
            branch.push_back(selector);
        }
    }
    std::reverse(branch.begin(), branch.end());
    return branch;
}

}  // namespace tuningfile
