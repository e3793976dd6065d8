#include "tools/liveclient/texts.h"

#include <algorithm>
#include <charconv>

#include <fmt/format.h>

#include "parameters/modenames.h"
#include "parameters/parameterparserinfo.h"
#include "tools/tuningfile/modepath.h"

namespace liveclient
{

namespace
{

template <typename T> bool ReadNumber(std::string_view text, T& rValue)
{
    const auto result = std::from_chars(text.data(), text.data() + text.size(), rValue);
    return result.ec == std::errc() && result.ptr == text.data() + text.size() && !text.empty();
}

std::string NamesOf(const tuning::EnumDescription& rNames)
{
    std::string text;
    for (UINT32 index = 0; index < rNames.count; ++index)
    {
        const tuning::Enumerator& rName = rNames.pEnumerators[index];
        text += fmt::format("{}{} {}", (index == 0) ? "" : ", ", rName.value, rName.pName);
    }
    return text;
}

/// A sub-mode's number needs no name: a tuning may have more sub-modes than there are names.
/// @return what is wrong with a mode at that place of a path; empty if nothing is
std::string FaultOf(const tuningfile::ModeName& rName, bool isFirst)
{
    const ModeType mode   = static_cast<ModeType>(rName.mode);
    const CHAR*    pLevel = ModeNames::Modes().NameOf(rName.mode);
    if (pLevel == nullptr)
    {
        return fmt::format("no mode {}, there are {}", rName.mode, NamesOf(ModeNames::Modes()));
    }
    if (isFirst != (mode == ModeType::Default) || (isFirst && rName.subMode != 0))
    {
        return "expected Default as the first mode, and only there";
    }
    return "";
}

bool IsType(std::string_view text)
{
    using Info           = ParameterParserInfo;
    const CHAR* pTypes[] = {Info::TypeStructure, Info::TypeModule,  Info::TypeUInt32, Info::TypeInt32, Info::TypeUInt64,
                            Info::TypeFloat,     Info::TypeBoolean, Info::TypeEnum,   Info::TypeString};
    return std::find(std::begin(pTypes), std::end(pTypes), text) != std::end(pTypes);
}

/// Takes what stands behind the last "," off a text.
bool TakeLast(std::string_view& rText, std::string_view& rLast)
{
    const size_t comma = rText.rfind(',');
    if (comma == std::string_view::npos)
    {
        return false;
    }
    rLast = rText.substr(comma + 1);
    rText = rText.substr(0, comma);
    return true;
}

/// Reads one description from its end, since only the value may hold separators.
bool ParseMemberInfo(std::string_view text, MemberInfo& rInfo)
{
    std::string_view last;
    UINT32           count = 0;
    if (!TakeLast(text, last))
    {
        return false;
    }
    if (ReadNumber(last, count))
    {
        rInfo.count = count;
        if (!TakeLast(text, last))
        {
            return false;
        }
    }
    if (!IsType(last))
    {
        return false;
    }
    rInfo.type         = last;
    const size_t equal = text.find('=');
    rInfo.name         = text.substr(0, equal);
    rInfo.value        = (equal == std::string_view::npos) ? "" : text.substr(equal + 1);
    return true;
}

}  // namespace

bool IsNumber(std::string_view text)
{
    if (text.starts_with('-'))
    {
        text.remove_prefix(1);
    }
    const auto isDigit = [](char letter) { return letter >= '0' && letter <= '9'; };
    const auto digits  = std::count_if(text.begin(), text.end(), isDigit);
    const auto points  = std::count(text.begin(), text.end(), '.');
    return digits > 0 && points <= 1 && static_cast<size_t>(digits + points) == text.size();
}

std::string NamedPath(std::string_view path)
{
    std::string named;
    size_t      begin = 0;
    while (begin <= path.size())
    {
        const size_t           end  = std::min(path.find('|', begin), path.size());
        const std::string_view item = path.substr(begin, end - begin);
        tuningfile::ModeName   name;
        std::string            fault;
        if (tuningfile::ParseModeName(item, name, fault))
        {
            fault = FaultOf(name, begin == 0);
        }
        if (!fault.empty())
        {
            throw Error(fmt::format("mode path '{}': {}", path, fault));
        }
        named += (named.empty() ? "" : "|") + tuningfile::FormatModeName(name);
        begin = end + 1;
    }
    return named;
}

std::vector<std::string> Split(std::string_view text, char separator)
{
    std::vector<std::string> parts;
    for (size_t begin = 0; !text.empty() && begin <= text.size();)
    {
        const size_t end = std::min(text.find(separator, begin), text.size());
        parts.emplace_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

VOID ParseDevice(const std::string& rText, DeviceInfo& rInfo)
{
    const size_t colon = rText.rfind(':');
    rInfo.name         = rText.substr(0, colon);
    rInfo.tables = (colon == std::string::npos) ? std::vector<std::string>() : Split(rText.substr(colon + 1), ',');
}

std::vector<ControlValue> ParseControlValues(const std::string& rText)
{
    std::vector<ControlValue> values;
    for (const std::string& rPart : Split(rText, ','))
    {
        const std::string_view part  = rPart;
        const size_t           equal = std::min(part.find('='), part.size());
        ControlValue           value{};
        if (equal == part.size() || !ReadNumber(part.substr(0, equal), value.id) ||
            !ReadNumber(part.substr(equal + 1), value.value))
        {
            throw Error(fmt::format("a control value does not read: '{}', expected <id>=<number>", rPart));
        }
        values.push_back(value);
    }
    return values;
}

std::vector<MemberInfo> ParseMemberInfos(const std::string& rText)
{
    std::vector<MemberInfo> infos;
    const std::string_view  text  = rText;
    size_t                  begin = 0;
    while (begin < text.size())
    {
        MemberInfo info;
        size_t     end = std::min(text.find(';', begin), text.size());
        while (!ParseMemberInfo(text.substr(begin, end - begin), info))
        {
            if (end == text.size())
            {
                throw Error(fmt::format("a description does not read: '{}', expected <name>=<value>,<type>,<count>",
                                        text.substr(begin)));
            }
            info = {};
            end  = std::min(text.find(';', end + 1), text.size());
        }
        infos.push_back(std::move(info));
        begin = end + 1;
    }
    return infos;
}

std::vector<Value> ParseValues(const std::string& rText)
{
    std::vector<Value> values;
    for (const std::string& rPart : Split(rText, ';'))
    {
        const size_t equal = rPart.find('=');
        if (equal != std::string::npos)
        {
            values.push_back({rPart.substr(0, equal), rPart.substr(equal + 1)});
        }
        else if (!values.empty())
        {
            values.back().text += ';' + rPart;
        }
    }
    return values;
}

bool Take(const std::string& rName, std::vector<Value>& rValues, Value& rValue)
{
    const auto found =
        std::find_if(rValues.begin(), rValues.end(), [&](const Value& rOther) { return rOther.name == rName; });
    if (found == rValues.end())
    {
        return false;
    }
    rValue = std::move(*found);
    rValues.erase(found);
    return true;
}

}  // namespace liveclient
