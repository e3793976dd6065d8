#include "tools/page/modulereader.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "parameters/parameterparserinfo.h"
#include "schema/recordwalk.h"
#include "tools/kirotune/livenumbers.h"
#include "tools/liveclient/texts.h"
#include "tools/meaning/modulewords.h"
#include "tools/meaning/wordpath.h"
#include "tools/meaning/wordtext.h"

namespace page
{

namespace
{

using kirotune::LiveCamera;
using liveclient::Error;
using liveclient::MemberInfo;
using tuning::RecordDescription;
using tuning::RecordMember;
using tuning::ValueType;

/// Far above any module.
constexpr size_t MaxMembers = 50000;

constexpr UINT32 MaxDepth = 16;

bool IsInteger(ValueType type)
{
    return type != ValueType::Float && type != ValueType::Double;
}

MemberKind KindOf(const RecordMember& rMember)
{
    if (rMember.pEnum != nullptr)
    {
        return MemberKind::Choice;
    }
    switch (rMember.type)
    {
    case ValueType::Boolean:
        return MemberKind::Switch;
    case ValueType::Text:
        return MemberKind::Text;
    case ValueType::Record:
        return MemberKind::Record;
    default:
        return MemberKind::Number;
    }
}

/// Of a member that only the camera's schema has.
MemberKind KindOfUnknown(const std::string& rType)
{
    if (rType == ParameterParserInfo::TypeBoolean)
    {
        return MemberKind::Switch;
    }
    const bool isText = rType == ParameterParserInfo::TypeString || rType == ParameterParserInfo::TypeStructure;
    return isText ? MemberKind::Text : MemberKind::Number;
}

/// Tells what the schema says. @param rPath with the module in front
VOID Explain(const std::string& rPath, const RecordMember& rMember, Member& rTold)
{
    rTold.kind      = KindOf(rMember);
    rTold.isInteger = IsInteger(rMember.type);
    rTold.record    = (rMember.pRecord != nullptr) ? rMember.pRecord->pName : "";
    for (UINT32 index = 0; rMember.pEnum != nullptr && index < rMember.pEnum->count; ++index)
    {
        const tuning::Enumerator& rEnumerator = rMember.pEnum->pEnumerators[index];
        rTold.choices.emplace_back(std::to_string(rEnumerator.value), rEnumerator.pName);
    }
    const meaning::WordPath found = meaning::FindWords(rPath);
    if (!found.unknown.empty() || found.pWords == nullptr)
    {
        return;
    }
    const tuning::Words& rWords  = found.pWords->words;
    rTold.words                  = (rWords.meaning != nullptr) ? meaning::FullText(rWords) : "";
    rTold.begin                  = (rWords.start != nullptr) ? rWords.start : "";
    const tuning::Words& rJudged = *found.pJudged;
    rTold.unit                   = meaning::UnitText(rJudged.unit);
    if (rJudged.range.IsGiven())
    {
        rTold.min = std::isfinite(rJudged.range.low) ? std::optional(rJudged.range.low) : std::nullopt;
        rTold.max = std::isfinite(rJudged.range.high) ? std::optional(rJudged.range.high) : std::nullopt;
    }
}

class Reader
{
public:
    Reader(LiveCamera& rCamera, const std::string& rMode, const std::string& rModule)
        : m_rCamera(rCamera), m_mode(rMode), m_module(rModule)
    {
    }

    /// @param rPath of the record within the module, empty for the module
    /// @param pRecord what this program knows of it, may be null
    std::vector<Member> Read(const std::string& rPath, const RecordDescription* pRecord, UINT32 depth);

private:
    VOID ReadList(const RecordMember* pKnown, const MemberInfo& rInfo, UINT32 depth, Member& rList);
    VOID ReadNumbersOf(Member& rList);
    VOID Count(size_t more);

    LiveCamera&       m_rCamera;
    const std::string m_mode;
    const std::string m_module;
    size_t            m_count = 0;
};

VOID Reader::Count(size_t more)
{
    m_count += more;
    if (m_count > MaxMembers)
    {
        throw Error(fmt::format("{} {}: the camera tells of more than {} members", m_mode, m_module, MaxMembers));
    }
}

std::vector<Member> Reader::Read(const std::string& rPath, const RecordDescription* pRecord, UINT32 depth)
{
    std::vector<Member> members;
    if (depth > MaxDepth)
    {
        return members;
    }
    const std::string text = rPath.empty() ? m_module : m_module + '.' + rPath;
    for (const MemberInfo& rInfo : m_rCamera.Client().Info(m_mode, text))
    {
        Count(1);
        Member& rMember =
            members.emplace_back(Member{rPath.empty() ? rInfo.name : rPath + '.' + rInfo.name, rInfo.name});
        rMember.value              = rInfo.value;
        const RecordMember* pKnown = (pRecord != nullptr) ? tuning::FindMember(*pRecord, rInfo.name) : nullptr;
        if (pKnown == nullptr)
        {
            rMember.kind = KindOfUnknown(rInfo.type);
        }
        else
        {
            Explain(m_module + '.' + rMember.path, *pKnown, rMember);
        }
        if (rInfo.count.has_value())
        {
            ReadList(pKnown, rInfo, depth, rMember);
        }
        else if (rMember.kind == MemberKind::Record)
        {
            rMember.members = Read(rMember.path, pKnown->pRecord, depth + 1);
        }
    }
    return members;
}

VOID Reader::ReadList(const RecordMember* pKnown, const MemberInfo& rInfo, UINT32 depth, Member& rList)
{
    const MemberKind kind  = rList.kind;
    Member           entry = rList;
    rList.kind             = MemberKind::List;
    rList.value.clear();
    Count(*rInfo.count);
    for (UINT32 index = 0; index < *rInfo.count; ++index)
    {
        const bool hasName = pKnown != nullptr && pKnown->pIndexEnum != nullptr &&
                             pKnown->pIndexEnum->NameOf(static_cast<INT32>(index)) != nullptr;
        entry.path  = fmt::format("{}[{}]", rList.path, index);
        entry.name  = hasName ? pKnown->pIndexEnum->NameOf(static_cast<INT32>(index)) : fmt::format("[{}]", index);
        entry.words = "";
        if (kind == MemberKind::Record)
        {
            entry.members = Read(entry.path, pKnown->pRecord, depth + 1);
        }
        rList.members.push_back(entry);
    }
    if (kind != MemberKind::Record && kind != MemberKind::Text)
    {
        ReadNumbersOf(rList);
    }
}

VOID Reader::ReadNumbersOf(Member& rList)
{
    std::vector<std::string> paths;
    for (const Member& rEntry : rList.members)
    {
        paths.push_back(rEntry.path);
    }
    std::vector<liveclient::Value> values = kirotune::ReadNumbers(m_rCamera.Client(), m_mode, m_module, paths);
    for (size_t index = 0; index < std::min(values.size(), paths.size()); ++index)
    {
        rList.members[index].value = values[index].text;
    }
}

}  // namespace

std::vector<Member> ReadModule(LiveCamera& rCamera, const std::string& rMode, const std::string& rModule)
{
    const tuning::ModuleDescription* pModule = tuningfile::FindModule(rModule);
    if (pModule == nullptr)
    {
        throw Error(fmt::format("no module '{}'", rModule));
    }
    std::vector<Member> members = Reader(rCamera, rMode, rModule).Read("", pModule->pRecord, 0);
    if (members.empty())
    {
        throw Error(fmt::format("this tuning has no {} for {}", rModule, rMode));
    }
    return members;
}

}  // namespace page
