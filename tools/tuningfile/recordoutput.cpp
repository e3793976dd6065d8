#include "tools/tuningfile/recordoutput.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>

#include <fmt/format.h>
#include <yaml-cpp/binary.h>

#include "schema/recordwalk.h"
#include "tools/tuningfile/samerecord.h"
#include "tools/tuningfile/triggernames.h"

using tuning::ValuesOf;

namespace tuningfile
{

namespace
{

using Values = tuning::MemberValues<const BYTE>;

/// From this length on a fixed array is worth the form "{fill: 1.0, 3: 2.0}".
constexpr UINT32 MinFilledCount = 16;

const char* const Nothing = "~";

/// The shortest text that reads back as the same number.
template <typename T> std::string FloatText(T value)
{
    if (std::isnan(value))
    {
        return std::signbit(value) ? "-.nan" : ".nan";
    }
    if (std::isinf(value))
    {
        return std::signbit(value) ? "-.inf" : ".inf";
    }
    char       text[64];
    const auto result = std::to_chars(std::begin(text), std::end(text), value);
    return std::string(text, result.ptr);
}

template <typename T> std::string NumberText(T value)
{
    if constexpr (std::is_floating_point_v<T>)
    {
        return FloatText(value);
    }
    else
    {
        return std::to_string(value);
    }
}

std::string EnumeratorText(const tuning::RecordMember& rMember, INT32 value)
{
    const CHAR* pName = rMember.pEnum->NameOf(value);
    return (pName != nullptr) ? pName : std::to_string(value);
}

std::string BooleanText(BOOL value)
{
    return (value == TRUE) ? "true" : (value == FALSE) ? "false" : std::to_string(value);
}

/// Whether the bytes can stand in a YAML document: UTF-8 of characters that YAML allows.
bool IsPrintable(std::string_view text)
{
    for (size_t index = 0; index < text.size();)
    {
        const unsigned char first  = static_cast<unsigned char>(text[index]);
        const size_t        length = (first < 0x80)                    ? 1
                                     : (first >= 0xC2 && first < 0xE0) ? 2
                                     : (first >= 0xE0 && first < 0xF0) ? 3
                                                                       : 0;
        if (length == 0 || index + length > text.size())
        {
            return false;
        }
        unsigned code = (length == 1) ? first : first & (0x7FU >> length);
        for (size_t next = 1; next < length; ++next)
        {
            const unsigned char byte = static_cast<unsigned char>(text[index + next]);
            if ((byte & 0xC0) != 0x80)
            {
                return false;
            }
            code = code << 6 | (byte & 0x3F);
        }
        const bool overlong  = length == 3 && code < 0x800;
        const bool forbidden = (code >= 0x80 && code < 0xA0) || (code >= 0xD800 && code < 0xE000) || code >= 0xFEFF;
        if (overlong || forbidden)
        {
            return false;
        }
        index += length;
    }
    return true;
}

TextNode TextValue(std::string_view text)
{
    if (IsPrintable(text))
    {
        return TextNode::Quoted(text);
    }
    const auto* pBytes = reinterpret_cast<const unsigned char*>(text.data());
    return TextNode::Scalar("!!binary \"" + YAML::EncodeBase64(pBytes, text.size()) + '"');
}

TextNode ValueToText(const tuning::RecordMember& rMember, const BYTE* pValue, const BYTE* pBase)
{
    switch (rMember.type)
    {
    case tuning::ValueType::Record:
        return RecordToText(*rMember.pRecord, pValue, pBase);
    case tuning::ValueType::Text:
        return TextValue(tuning::TextAt(pValue));
    default:
        return TextNode::Scalar(ScalarText(rMember, pValue));
    }
}

/// A long list of scalars in which one value prevails, as that value and the exceptions.
/// @return the list itself if it is no such list
TextNode Condense(TextNode list)
{
    std::map<std::string_view, size_t> counts;
    for (const auto& [rName, rValue] : list.items)
    {
        ++counts[rValue.scalar];
    }
    const auto most =
        std::max_element(counts.begin(), counts.end(),
                         [](const auto& rFirst, const auto& rSecond) { return rFirst.second < rSecond.second; });
    if (most->second * 4 < list.items.size() * 3)
    {
        return list;
    }
    TextNode map = TextNode::Map();
    map.Add("fill", TextNode::Scalar(std::string(most->first)));
    for (size_t index = 0; index < list.items.size(); ++index)
    {
        const std::string& rScalar = list.items[index].value.scalar;
        if (rScalar != most->first)
        {
            map.Add(std::to_string(index), TextNode::Scalar(rScalar));
        }
    }
    return map;
}

TextNode ListToText(const tuning::RecordMember& rMember, const Values& rValues)
{
    TextNode list = TextNode::List();
    for (UINT32 index = 0; index < rValues.count; ++index)
    {
        list.Add(ValueToText(rMember, rValues.At(rMember, index), nullptr));
    }
    const bool condensable = rMember.form == tuning::Form::Fixed && rMember.count >= MinFilledCount &&
                             rMember.type != tuning::ValueType::Record;
    return condensable ? Condense(std::move(list)) : list;
}

TextNode MemberToText(const tuning::RecordMember& rMember, const BYTE* pRecord, const BYTE* pBase)
{
    const Values values = ValuesOf(rMember, pRecord);
    switch (rMember.form)
    {
    case tuning::Form::Fixed:
    case tuning::Form::Variable:
        return ListToText(rMember, values);
    case tuning::Form::Optional:
        if (values.count == 0)
        {
            return TextNode::Scalar(Nothing);
        }
        break;
    default:
        break;
    }
    // A reader keeps what the base has inside, also in an optional record that the base has.
    const Values base = (pBase != nullptr) ? ValuesOf(rMember, pBase) : Values{nullptr, 0};
    return ValueToText(rMember, values.pFirst, (base.count != 0) ? base.pFirst : nullptr);
}

}  // namespace

std::string ScalarText(const tuning::RecordMember& rMember, const BYTE* pValue)
{
    switch (rMember.type)
    {
    case tuning::ValueType::Boolean:
        return BooleanText(tuning::Load<BOOL>(pValue));
    case tuning::ValueType::Enum:
        return EnumeratorText(rMember, tuning::Load<INT32>(pValue));
    default:
        return tuning::WithTypeOf(rMember.type,
                                  [pValue](auto zero) { return NumberText(tuning::Load<decltype(zero)>(pValue)); });
    }
}

TextNode RecordToText(const tuning::RecordDescription& rDescription, const VOID* pRecord, const VOID* pBase)
{
    const BYTE* pBytes     = static_cast<const BYTE*>(pRecord);
    const BYTE* pBaseBytes = static_cast<const BYTE*>(pBase);
    TextNode    map        = TextNode::Map();
    for (const tuning::RecordMember& rMember : rDescription.Members())
    {
        const bool isAbsent = rMember.form == tuning::Form::Optional && ValuesOf(rMember, pBytes).count == 0;
        const bool isListed =
            rMember.IsStored() && ((pBase != nullptr) ? !SameMember(rMember, pBytes, pBaseBytes) : !isAbsent);
        if (isListed)
        {
            map.Add(rMember.pName, NamesTrigger(rDescription, rMember, pBytes)
                                       ? TextNode::Scalar(TriggerName(tuning::Load<INT32>(pBytes + rMember.offset)))
                                       : MemberToText(rMember, pBytes, pBaseBytes));
        }
    }
    return map;
}

TextNode ModuleToText(const Module& rModule, const Module* pAbove)
{
    const tuning::RecordDescription& rRecord = *rModule.pDescription->pRecord;
    if (pAbove != nullptr)
    {
        return RecordToText(rRecord, rModule.pRecord, pAbove->pRecord);
    }
    // Versions say something only where they are not what the reader puts there by itself.
    std::vector<BYTE> fresh(rRecord.size);
    InitializeModuleRecord(*rModule.pDescription, fresh.data());
    TextNode       map   = RecordToText(rRecord, rModule.pRecord, nullptr);
    const TextNode delta = RecordToText(rRecord, rModule.pRecord, fresh.data());
    std::erase_if(map.items,
                  [&delta](const auto& rItem)
                  {
                      const bool isVersion = rItem.name == "module_version" || rItem.name == "parameter_version";
                      return isVersion &&
                             std::none_of(delta.items.begin(), delta.items.end(),
                                          [&rItem](const auto& rOther) { return rOther.name == rItem.name; });
                  });
    return map;
}

}  // namespace tuningfile
