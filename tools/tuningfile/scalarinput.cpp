#include "tools/tuningfile/scalarinput.h"

#include <charconv>
#include <cstring>
#include <limits>
#include <optional>

#include <fmt/format.h>

#include "tools/tuningfile/names.h"

namespace tuningfile
{

namespace
{

constexpr const char* QuotedTag = "!";

/// The text of an unquoted scalar; a quoted one is text, not a number.
std::string_view PlainScalar(const YamlInput& rInput, const YAML::Node& rNode, std::string_view what,
                             std::string_view expected)
{
    if (!rNode.IsScalar() || rNode.Tag() == QuotedTag)
    {
        rInput.Fail(rNode, fmt::format("{} found for {}, expected {}", rNode.IsScalar() ? "text" : Describe(rNode),
                                       what, expected));
    }
    return rNode.Scalar();
}

enum class Outcome
{
    Good,
    NoNumber,
    OutOfRange
};

template <typename T> Outcome ParseInteger(std::string_view text, T& rValue)
{
    const bool negative = !text.empty() && text.front() == '-';
    if (!text.empty() && (text.front() == '-' || text.front() == '+'))
    {
        text.remove_prefix(1);
    }
    const bool hexadecimal = text.starts_with("0x");
    if (hexadecimal)
    {
        text.remove_prefix(2);
    }
    UINT64     magnitude = 0;
    const auto result    = std::from_chars(text.data(), text.data() + text.size(), magnitude, hexadecimal ? 16 : 10);
    if (result.ec == std::errc::invalid_argument || result.ptr != text.data() + text.size())
    {
        return Outcome::NoNumber;
    }
    const UINT64 limit = negative ? 0 - static_cast<UINT64>(static_cast<INT64>(std::numeric_limits<T>::min()))
                                  : static_cast<UINT64>(std::numeric_limits<T>::max());
    if (result.ec != std::errc() || magnitude > limit)
    {
        return Outcome::OutOfRange;
    }
    rValue = static_cast<T>(negative ? 0 - magnitude : magnitude);
    return Outcome::Good;
}

template <typename T> Outcome ParseFloat(std::string_view text, T& rValue)
{
    const bool       negative = !text.empty() && text.front() == '-';
    std::string_view digits   = text;
    if (!text.empty() && (text.front() == '-' || text.front() == '+'))
    {
        digits.remove_prefix(1);
    }
    if (digits == ".inf" || digits == ".nan")
    {
        rValue = (digits == ".inf") ? std::numeric_limits<T>::infinity() : std::numeric_limits<T>::quiet_NaN();
        rValue = negative ? -rValue : rValue;
        return Outcome::Good;
    }
    if (digits.empty() || (digits.front() != '.' && (digits.front() < '0' || digits.front() > '9')))
    {
        return Outcome::NoNumber;  // from_chars also takes "inf" and "nan"
    }
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), rValue);
    if (result.ec == std::errc::invalid_argument || result.ptr != digits.data() + digits.size())
    {
        return Outcome::NoNumber;
    }
    rValue = negative ? -rValue : rValue;
    return (result.ec == std::errc()) ? Outcome::Good : Outcome::OutOfRange;
}

template <typename T> std::string Range()
{
    using Limits = std::numeric_limits<T>;
    if constexpr (std::is_floating_point_v<T>)
    {
        return fmt::format("a number, 0 or of magnitude {:.4g} to {:.4g}", Limits::denorm_min(), Limits::max());
    }
    else
    {
        return fmt::format("an integer from {} to {}", +Limits::min(), +Limits::max());
    }
}

template <typename T>
VOID ReadNumber(const YamlInput& rInput, const YAML::Node& rNode, std::string_view what, BYTE* pValue)
{
    T       value{};
    Outcome outcome;
    if constexpr (std::is_floating_point_v<T>)
    {
        outcome = ParseFloat(PlainScalar(rInput, rNode, what, "a number"), value);
    }
    else
    {
        outcome = ParseInteger(PlainScalar(rInput, rNode, what, "an integer"), value);
    }
    if (outcome != Outcome::Good)
    {
        rInput.Fail(rNode, fmt::format("{} {} for {}, expected {}", Describe(rNode),
                                       (outcome == Outcome::NoNumber) ? "found" : "is out of range", what, Range<T>()));
    }
    std::memcpy(pValue, &value, sizeof(value));
}

/// true and false, or any number that a file may hold in their place.
VOID ReadBoolean(const YamlInput& rInput, const YAML::Node& rNode, std::string_view what, BYTE* pValue)
{
    const std::string_view text  = PlainScalar(rInput, rNode, what, "true or false");
    BOOL                   value = (text == "true") ? TRUE : FALSE;
    if (text != "true" && text != "false" && ParseInteger(text, value) != Outcome::Good)
    {
        rInput.Fail(rNode, fmt::format("{} found for {}, expected true or false", Describe(rNode), what));
    }
    std::memcpy(pValue, &value, sizeof(value));
}

/// The name of an enumerator, or the number of a value without a name.
VOID ReadEnumerator(const YamlInput& rInput, const YAML::Node& rNode, const tuning::RecordMember& rMember, BYTE* pValue)
{
    const tuning::EnumDescription& rEnum = *rMember.pEnum;
    const std::string_view         text  = PlainScalar(rInput, rNode, rMember.pName, rEnum.pName);

    std::optional<INT32>          value;
    std::vector<std::string_view> names;
    for (UINT32 index = 0; index < rEnum.count; ++index)
    {
        names.push_back(rEnum.pEnumerators[index].pName);
        if (text == names.back())
        {
            value = rEnum.pEnumerators[index].value;
        }
    }
    INT32 number = 0;
    if (!value.has_value() && ParseInteger(text, number) == Outcome::Good)
    {
        value = number;
    }
    if (!value.has_value())
    {
        rInput.Fail(rNode, fmt::format("unknown {} {} for {}, {}", rEnum.pName, Describe(rNode), rMember.pName,
                                       Advice(text, names)));
    }
    std::memcpy(pValue, &*value, sizeof(*value));
}

}  // namespace

VOID ReadScalar(const YamlInput& rInput, const YAML::Node& rNode, const tuning::RecordMember& rMember, BYTE* pValue)
{
    const CHAR* pName = rMember.pName;
    switch (rMember.type)
    {
    case tuning::ValueType::Int8:
        return ReadNumber<INT8>(rInput, rNode, pName, pValue);
    case tuning::ValueType::UInt8:
        return ReadNumber<UINT8>(rInput, rNode, pName, pValue);
    case tuning::ValueType::Int16:
        return ReadNumber<INT16>(rInput, rNode, pName, pValue);
    case tuning::ValueType::UInt16:
        return ReadNumber<UINT16>(rInput, rNode, pName, pValue);
    case tuning::ValueType::Int32:
        return ReadNumber<INT32>(rInput, rNode, pName, pValue);
    case tuning::ValueType::UInt32:
        return ReadNumber<UINT32>(rInput, rNode, pName, pValue);
    case tuning::ValueType::Int64:
        return ReadNumber<INT64>(rInput, rNode, pName, pValue);
    case tuning::ValueType::UInt64:
        return ReadNumber<UINT64>(rInput, rNode, pName, pValue);
    case tuning::ValueType::Float:
        return ReadNumber<FLOAT>(rInput, rNode, pName, pValue);
    case tuning::ValueType::Double:
        return ReadNumber<DOUBLE>(rInput, rNode, pName, pValue);
    case tuning::ValueType::Boolean:
        return ReadBoolean(rInput, rNode, pName, pValue);
    case tuning::ValueType::Enum:
        return ReadEnumerator(rInput, rNode, rMember, pValue);
    case tuning::ValueType::Text:
    case tuning::ValueType::Record:
        break;
    }
}

template <typename T>
T ReadInteger(const YamlInput& rInput, const YAML::Node& rNode, std::string_view what, T least, T most)
{
    T value{};
    if (ParseInteger(PlainScalar(rInput, rNode, what, "an integer"), value) != Outcome::Good || value < least ||
        value > most)
    {
        rInput.Fail(rNode, fmt::format("{} found for {}, expected an integer from {} to {}", Describe(rNode), what,
                                       least, most));
    }
    return value;
}

template INT64  ReadInteger(const YamlInput&, const YAML::Node&, std::string_view, INT64, INT64);
template UINT64 ReadInteger(const YamlInput&, const YAML::Node&, std::string_view, UINT64, UINT64);

bool ReadFlag(const YamlInput& rInput, const YAML::Node& rNode, std::string_view what)
{
    const std::string_view text = PlainScalar(rInput, rNode, what, "true or false");
    if (text != "true" && text != "false")
    {
        rInput.Fail(rNode, fmt::format("{} found for {}, expected true or false", Describe(rNode), what));
    }
    return text == "true";
}

}  // namespace tuningfile
