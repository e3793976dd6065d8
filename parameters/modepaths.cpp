#include "parameters/modepaths.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "parameters/boundedtext.h"
#include "parameters/modenames.h"
#include "parameters/parameterutils.h"

namespace
{

constexpr size_t MaxItemLength = 9;
constexpr UINT32 MaxSubMode    = 0xFFFF;

/// Takes what stands before the first delimiter off the text, and the delimiter with it.
std::string_view Take(std::string_view& rText, CHAR delimiter)
{
    const size_t           end  = rText.find(delimiter);
    const std::string_view item = rText.substr(0, end);
    rText.remove_prefix((end == std::string_view::npos) ? rText.size() : end + 1);
    return item;
}

/// Reads one item "mode.subMode". @return false if it is none
bool ParseItem(std::string_view item, TuningMode& rMode)
{
    if (item.size() > MaxItemLength)
    {
        return false;
    }
    UINT32 values[2] = {0, 0};
    size_t which     = 0;
    for (const CHAR character : item)
    {
        if (character == '.' && which == 0)
        {
            which = 1;
        }
        else if (character >= '0' && character <= '9')
        {
            values[which] = values[which] * 10 + static_cast<UINT32>(character - '0');
        }
        else
        {
            return false;
        }
    }
    if (values[1] > MaxSubMode)
    {
        return false;
    }
    rMode.mode          = static_cast<ModeType>(values[0]);
    rMode.subMode.value = static_cast<UINT16>(values[1]);
    return true;
}

/// Appends an integer in decimal.
VOID AppendNumber(BoundedText& rText, UINT32 number)
{
    CHAR text[16];
    bool fits = false;
    (VOID) ParameterUtils::DoubleToString(number, text, sizeof(text), 0, fits);
    rText.Append(text);
}

UINT32 NumberOf(std::string_view text)
{
    bool valid = false;
    return ParameterUtils::ToInteger<UINT32>(ParameterUtils::StringToDouble(std::string(text).c_str(), valid));
}

/// Appends one item of a numeric path with names for its numbers.
VOID AppendNamedItem(BoundedText& rText, std::string_view item)
{
    const std::string_view subModeText = item.substr(std::min(item.find('.'), item.size()));  // with its point
    const UINT32           mode        = NumberOf(Take(item, '.'));
    if (const CHAR* pMode = ModeNames::Modes().NameOf(static_cast<INT32>(mode)))
    {
        rText.Append(pMode);
    }
    if (subModeText.empty())
    {
        return;
    }
    if (const CHAR* pSubMode = ModeNames::GetSubModeName(static_cast<ModeType>(mode), NumberOf(item)))
    {
        rText.Append(".");
        rText.Append(pSubMode);
    }
    else if (mode != 0)
    {
        rText.Append(subModeText);
    }
}

}  // namespace

bool ModePaths::GetModeBranchFromPath(const CHAR* pPath, std::vector<TuningMode>& rBranch)
{
    std::string_view rest((pPath != nullptr) ? pPath : "");
    while (!rest.empty())
    {
        TuningMode mode{};
        if (!ParseItem(Take(rest, '|'), mode))
        {
            return false;
        }
        rBranch.push_back(mode);
    }
    return !rBranch.empty();
}

bool ModePaths::GetModeShorthand(const CHAR* pPath, CHAR* pText, UINT32 size)
{
    if (pPath == nullptr || pText == nullptr || size == 0)
    {
        return false;
    }
    BoundedText      text(pText, size);
    std::string_view rest(pPath);
    pText[size - 1] = '\0';
    while (!rest.empty())
    {
        std::string_view subMode    = Take(rest, '|');
        const bool       hasSubMode = subMode.find('.') != std::string_view::npos;
        const ModeType   mode       = ModeNames::GetModeIndex(Take(subMode, '.'));
        text.Separate("|");
        AppendNumber(text, static_cast<UINT32>(mode));
        if (hasSubMode)
        {
            text.Append(".");
            AppendNumber(text, ModeNames::GetSubModeIndex(mode, subMode));
        }
    }
    return true;
}

VOID ModePaths::GetVernierModesString(const CHAR* pPaths, CHAR* pText, UINT32 size)
{
    BoundedText      text(pText, size);
    std::string_view paths(pPaths);
    while (!paths.empty())
    {
        std::string_view path = Take(paths, ';');
        text.Separate(";");
        for (const CHAR* pSeparator = ""; !path.empty(); pSeparator = "|")
        {
            text.Append(pSeparator);
            AppendNamedItem(text, Take(path, '|'));
        }
    }
}

bool ModePaths::AppendItem(CHAR* pText, size_t size, UINT32 mode, UINT32 subMode)
{
    CHAR         item[24];
    const size_t used   = std::strlen(pText);
    const INT    length = std::snprintf(item, sizeof(item), (used > 0) ? "|%u.%u" : "%u.%u", mode, subMode);
    if (used + static_cast<size_t>(length) >= size)
    {
        return false;
    }
    std::memcpy(pText + used, item, static_cast<size_t>(length) + 1);
    return true;
}
