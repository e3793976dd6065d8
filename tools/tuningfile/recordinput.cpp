#include "tools/tuningfile/recordinput.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <optional>

#include <fmt/format.h>
#include <yaml-cpp/binary.h>

#include "schema/recordwalk.h"
#include "tools/tuningfile/knownnames.h"
#include "tools/tuningfile/names.h"
#include "tools/tuningfile/scalarinput.h"
#include "tools/tuningfile/triggernames.h"

namespace tuningfile
{

namespace
{

constexpr const char*      BinaryTag = "tag:yaml.org,2002:binary";
constexpr std::string_view FillKey   = "fill";

VOID Clear(const tuning::RecordMember& rMember, BYTE* pRecord)
{
    std::memset(pRecord + rMember.Begin(), 0, rMember.End() - rMember.Begin());
}

}  // namespace

VOID* RecordInput::Allocate(const YAML::Node& rNode, size_t size) const
{
    VOID* pMemory = m_rArena.Allocate(size);
    if (pMemory == nullptr)
    {
        m_rInput.Fail(
            rNode, fmt::format("the tuning is too large, expected at most {} bytes of records", RecordArena::MaxBytes));
    }
    return pMemory;
}

VOID RecordInput::ReadRecord(const YAML::Node& rNode, const tuning::RecordDescription& rDescription,
                             VOID* pRecord) const
{
    BYTE*                       pBytes   = static_cast<BYTE*>(pRecord);
    const tuning::RecordMember* pTrigger = nullptr;
    YAML::Node                  trigger;
    for (const YamlEntry& rEntry : RequireMap(m_rInput, rNode, rDescription))
    {
        const tuning::RecordMember& rMember = RequireMember(m_rInput, rEntry, rDescription);
        if (BankBeside(rDescription, rMember) != nullptr && ReadTriggerName(rEntry.value, rMember, pBytes))
        {
            pTrigger = &rMember;
            trigger  = rEntry.value;
            continue;
        }
        ReadMember(rEntry.value, rMember, pBytes);
    }
    if (pTrigger != nullptr && !NamesTrigger(rDescription, *pTrigger, pBytes))
    {
        m_rInput.Fail(trigger,
                      fmt::format("{} names an entry of the trigger bank, expected bankID: BankIDTriggers beside "
                                  "it, or a number",
                                  Describe(trigger)));
    }
}

/// @return whether the text is a name, not a number
bool RecordInput::ReadTriggerName(const YAML::Node& rNode, const tuning::RecordMember& rMember, BYTE* pRecord) const
{
    const std::string text = rNode.IsScalar() ? rNode.Scalar() : "";
    if (std::none_of(text.begin(), text.end(), [](unsigned char letter) { return std::isalpha(letter) != 0; }) ||
        text.starts_with("0x"))
    {
        return false;
    }
    const std::optional<INT32> found = TriggerOf(text);
    if (!found.has_value())
    {
        m_rInput.Fail(rNode, fmt::format("unknown trigger '{}', {}", text,
                                         Advice(text, {TriggerNames().begin(), TriggerNames().end()})));
    }
    m_rPlaces.NoteMember(pRecord + rMember.offset, rMember, PlaceOf(rNode));
    tuning::Store(pRecord + rMember.offset, *found);
    return true;
}

VOID RecordInput::ReadMember(const YAML::Node& rNode, const tuning::RecordMember& rMember, BYTE* pRecord) const
{
    m_rPlaces.NoteMember(pRecord + rMember.offset, rMember, PlaceOf(rNode));
    if (rNode.IsNull())
    {
        Clear(rMember, pRecord);
        return;
    }
    switch (rMember.form)
    {
    case tuning::Form::Single:
        ReadValue(rNode, rMember, pRecord + rMember.offset);
        break;
    case tuning::Form::Fixed:
        Clear(rMember, pRecord);
        ReadFixed(rNode, rMember, pRecord + rMember.offset);
        break;
    case tuning::Form::Variable:
        Clear(rMember, pRecord);
        ReadVariable(rNode, rMember, pRecord);
        break;
    case tuning::Form::Optional:
    {
        const UINT32 present = 1;
        std::memcpy(pRecord + rMember.countOffset, &present, sizeof(present));
        ReadValue(rNode, rMember, pRecord + rMember.offset);
        break;
    }
    case tuning::Form::EntryID:
        break;
    }
}

VOID RecordInput::ReadFixed(const YAML::Node& rNode, const tuning::RecordMember& rMember, BYTE* pValues) const
{
    if (rNode.IsMap())
    {
        ReadFilled(rNode, rMember, pValues);
        return;
    }
    if (!rNode.IsSequence() || rNode.size() != rMember.count)
    {
        m_rInput.Fail(rNode,
                      fmt::format("{} found for {}, expected a list of {}",
                                  rNode.IsSequence() ? fmt::format("a list of {}", rNode.size()) : Describe(rNode),
                                  rMember.pName, rMember.count));
    }
    for (const YAML::Node& rValue : rNode)
    {
        ReadValue(rValue, rMember, pValues);
        pValues += rMember.valueSize;
    }
}

VOID RecordInput::ReadFilled(const YAML::Node& rNode, const tuning::RecordMember& rMember, BYTE* pValues) const
{
    const YamlMap    map   = m_rInput.Map(rNode, "a map of values");
    const YamlEntry* pFill = map.Find(FillKey);
    if (pFill == nullptr)
    {
        m_rInput.Fail(rNode, fmt::format("no '{}' for {}, expected a list of {}, or a map of '{}' and of positions",
                                         FillKey, rMember.pName, rMember.count, FillKey));
    }
    ReadValue(pFill->value, rMember, pValues);
    for (UINT32 index = 1; index < rMember.count; ++index)
    {
        std::memcpy(pValues + static_cast<size_t>(index) * rMember.valueSize, pValues, rMember.valueSize);
    }
    for (const YamlEntry& rEntry : map)
    {
        if (rEntry.name != FillKey)
        {
            const UINT64 index = ReadInteger<UINT64>(
                m_rInput, rEntry.key, fmt::format("a position in {}", rMember.pName), 0, rMember.count - 1);
            ReadValue(rEntry.value, rMember, pValues + index * rMember.valueSize);
        }
    }
}

VOID RecordInput::ReadVariable(const YAML::Node& rNode, const tuning::RecordMember& rMember, BYTE* pRecord) const
{
    if (!rNode.IsSequence())
    {
        m_rInput.Fail(rNode, fmt::format("{} found for {}, expected a list", Describe(rNode), rMember.pName));
    }
    const UINT32 count = static_cast<UINT32>(rNode.size());
    if (count == 0)
    {
        return;
    }
    BYTE* pValues = static_cast<BYTE*>(Allocate(rNode, static_cast<size_t>(count) * rMember.valueSize));
    std::memcpy(pRecord + rMember.countOffset, &count, sizeof(count));
    std::memcpy(pRecord + rMember.offset, &pValues, sizeof(pValues));
    for (const YAML::Node& rValue : rNode)
    {
        ReadValue(rValue, rMember, pValues);
        pValues += rMember.valueSize;
    }
}

VOID RecordInput::ReadValue(const YAML::Node& rNode, const tuning::RecordMember& rMember, BYTE* pValue) const
{
    m_rPlaces.NoteValue(pValue, rMember, PlaceOf(rNode));
    switch (rMember.type)
    {
    case tuning::ValueType::Record:
        ReadRecord(rNode, *rMember.pRecord, pValue);
        break;
    case tuning::ValueType::Text:
        ReadText(rNode, rMember, pValue);
        break;
    default:
        ReadScalar(m_rInput, rNode, rMember, pValue);
        break;
    }
}

VOID RecordInput::ReadText(const YAML::Node& rNode, const tuning::RecordMember& rMember, BYTE* pValue) const
{
    std::string text = m_rInput.Scalar(rNode, fmt::format("text for {}", rMember.pName));
    if (rNode.Tag() == BinaryTag)
    {
        const std::vector<unsigned char> bytes = YAML::DecodeBase64(text);
        text.assign(bytes.begin(), bytes.end());
    }
    if (text.find('\0') != std::string::npos)
    {
        m_rInput.Fail(rNode, fmt::format("a NUL found in {}, expected text without", rMember.pName));
    }
    CHAR* pText = static_cast<CHAR*>(Allocate(rNode, text.size() + 1));
    std::memcpy(pText, text.data(), text.size());
    std::memcpy(pValue, &pText, sizeof(pText));
}

}  // namespace tuningfile
