#include "tools/tuningfile/schematext.h"

#include <algorithm>
#include <set>

#include <fmt/format.h>

#include "tools/meaning/crossreferences.h"
#include "tools/meaning/modulewords.h"
#include "tools/meaning/wordtext.h"
#include "tools/tuningfile/triggernames.h"

namespace tuningfile
{

namespace
{

using meaning::Target;
using meaning::Users;
using tuning::MemberWords;
using tuning::RecordMember;

constexpr std::string_view IndexName = "index";

Line TypeText(const RecordMember& rMember)
{
    switch (rMember.type)
    {
    case tuning::ValueType::Int8:
    case tuning::ValueType::UInt8:
    case tuning::ValueType::Int16:
    case tuning::ValueType::UInt16:
    case tuning::ValueType::Int32:
    case tuning::ValueType::UInt32:
    case tuning::ValueType::Int64:
    case tuning::ValueType::UInt64:
        return {Plain("integer")};
    case tuning::ValueType::Float:
    case tuning::ValueType::Double:
        return {Plain("number")};
    case tuning::ValueType::Boolean:
        return {Plain("true or false")};
    case tuning::ValueType::Enum:
        return {Link(rMember.pEnum->pName, std::string("#") + rMember.pEnum->pName)};
    case tuning::ValueType::Text:
        return {Plain("text")};
    case tuning::ValueType::Record:
        return {};
    }
    return {};
}

std::string CountText(const RecordMember& rMember, const tuning::Words& rWords)
{
    switch (rMember.form)
    {
    case tuning::Form::Fixed:
        return fmt::format("list of {}", rMember.count);
    case tuning::Form::Variable:
        return fmt::format("list of {}", meaning::RangeText(rWords.entries));
    case tuning::Form::Optional:
        return "may be left out";
    default:
        return "";
    }
}

Line Linked(const std::set<std::string>& rModules)
{
    std::vector<Line> links;
    for (const std::string& rModule : rModules)
    {
        links.push_back({Link(rModule, rModule)});
    }
    return Joined(links);
}

class PageWriter
{
public:
    explicit PageWriter(const tuning::ModuleDescription& rModule) : m_rModule(rModule)
    {
    }

    Document Write()
    {
        const tuning::RecordWords& rWords = *meaning::WordsOf(m_rModule);
        m_page.name                       = m_rModule.pName;
        m_page.title                      = m_rModule.pName;
        m_page.AddHeading(1, m_rModule.pName);
        m_page.AddParagraph({Plain(meaning::SentenceOf(rWords))});
        m_page.AddParagraph(
            {Plain(fmt::format("Version {}.{}.{}. All modules: ", m_rModule.major, m_rModule.minor, m_rModule.patch)),
             Link(IndexName, IndexName), Plain(".")});
        m_page.AddHeading(2, "Members");
        m_page.AddParagraph({Plain("In a path, "), Code("[]"), Plain(" stands for each item of a list.")});
        m_members.header = {"Member", "Type", "Range", "Start with", "Meaning"};
        AddMembers(rWords, "");
        m_page.AddTable(std::move(m_members));
        AddReferences();
        AddEnums();
        return std::move(m_page);
    }

private:
    VOID AddMembers(const tuning::RecordWords& rRecord, const std::string& rPrefix)
    {
        for (UINT32 index = 0; index < rRecord.pRecord->memberCount; ++index)
        {
            const RecordMember& rMember = rRecord.pRecord->pMembers[index];
            if (rMember.IsStored())
            {
                AddMember(rMember, rRecord.pMembers[index], rPrefix + rMember.pName + (rMember.IsArray() ? "[]" : ""));
            }
        }
    }

    VOID AddMember(const RecordMember& rMember, const MemberWords& rMemberWords, const std::string& rPath)
    {
        const tuning::Words& rWords = rMemberWords.words;
        std::vector<Line>    type;
        for (Line& rPart : std::vector<Line>{TypeText(rMember), {Plain(CountText(rMember, rWords))}})
        {
            if (!rPart.empty() && !rPart[0].text.empty())
            {
                type.push_back(std::move(rPart));
            }
        }
        m_members.rows.push_back({{Code(rPath)},
                                  Joined(type),
                                  {Plain(meaning::ExpectedText(rWords.range, rWords.unit))},
                                  (rWords.start != nullptr) ? Line{Code(rWords.start)} : Line{},
                                  {Plain(meaning::FullText(rWords))}});
        for (const tuning::Reference& rReference : rWords.refers)
        {
            NoteReference(rReference);
        }
        if (rMemberWords.pEnum != nullptr &&
            std::find(m_enums.begin(), m_enums.end(), rMemberWords.pEnum) == m_enums.end())
        {
            m_enums.push_back(rMemberWords.pEnum);
        }
        if (rMemberWords.pRecord != nullptr)
        {
            AddMembers(*rMemberWords.pRecord, rPath + '.');
        }
    }

    VOID NoteReference(const tuning::Reference& rReference)
    {
        for (const Target& rTarget : meaning::TargetsOf(rReference))
        {
            m_targets.insert(rTarget);
        }
    }

    VOID AddReferences()
    {
        if (m_targets.empty())
        {
            return;
        }
        Table table{{"What it shares", "Defined by", "Written by", "Read by"}, {}};
        for (const Target& rTarget : m_targets)
        {
            const Users& rUsers = meaning::CrossReferences().at(rTarget);
            table.rows.push_back({{Plain(meaning::NameOf(rTarget))},
                                  Linked(rUsers.definers),
                                  Linked(rUsers.writers),
                                  Linked(rUsers.readers)});
        }
        m_page.AddHeading(2, "Shared with other modules");
        m_page.AddTable(std::move(table));
    }

    VOID AddEnums()
    {
        for (const tuning::EnumWords* pWords : m_enums)
        {
            Table table{{"Value", "Name", "Meaning"}, {}};
            for (UINT32 index = 0; index < pWords->pEnum->count; ++index)
            {
                const tuning::Enumerator& rName = pWords->pEnum->pEnumerators[index];
                table.rows.push_back({{Plain(std::to_string(rName.value))},
                                      {Code(rName.pName)},
                                      {Plain(pWords->pEnumerators[index].meaning)}});
            }
            m_page.AddHeading(2, pWords->pEnum->pName);
            m_page.AddTable(std::move(table));
        }
    }

    const tuning::ModuleDescription&      m_rModule;
    Document                              m_page;
    Table                                 m_members;
    std::set<Target>                      m_targets;
    std::vector<const tuning::EnumWords*> m_enums;  ///< in the order of their first use
};

/// The numbers by which tunings read and write what the stages tell each other.
VOID AddTriggers(Document& rPage)
{
    const tuning::EnumWords& rTriggers = *TuningEnumWordsOf(KIROTriggerType{});
    Table                    table{{"Entry", "Name", "Unit", "Meaning"}, {}};
    for (UINT32 index = 0; index < rTriggers.pEnum->count; ++index)
    {
        const tuning::EnumeratorWords& rWords = rTriggers.pEnumerators[index];
        table.rows.push_back({{Plain(std::to_string(rTriggers.pEnum->pEnumerators[index].value))},
                              {Code(TriggerName(rTriggers.pEnum->pEnumerators[index].value))},
                              {Plain(meaning::UnitText(rWords.unit))},
                              {Plain(rWords.meaning)}});
    }
    rPage.AddHeading(2, "Entries of bank Triggers");
    rPage.AddTable(std::move(table));
}

}  // namespace

std::vector<Document> ReferencePages()
{
    std::vector<Document> pages;
    for (const tuning::ModuleDescription& rModule : tuning::TuningModules)
    {
        if (rModule.pRecord != nullptr)
        {
            pages.push_back(PageWriter(rModule).Write());
        }
    }
    return pages;
}

Document ReferenceIndex()
{
    Document page{std::string(IndexName), "Tunables", {}};
    page.AddHeading(1, "Tunables");
    Table modules{{"Module", "What it is for"}, {}};
    for (const tuning::ModuleDescription& rModule : tuning::TuningModules)
    {
        if (const tuning::RecordWords* pWords = meaning::WordsOf(rModule))
        {
            modules.rows.push_back({{Link(rModule.pName, rModule.pName)}, {Plain(meaning::SentenceOf(*pWords))}});
        }
    }
    page.AddTable(std::move(modules));

    Table shared{{"What modules share", "Defined by", "Written by", "Read by"}, {}};
    for (const auto& [rTarget, rUsers] : meaning::CrossReferences())
    {
        shared.rows.push_back({{Plain(meaning::NameOf(rTarget))},
                               Linked(rUsers.definers),
                               Linked(rUsers.writers),
                               Linked(rUsers.readers)});
    }
    page.AddHeading(2, "What modules share");
    page.AddTable(std::move(shared));
    AddTriggers(page);
    return page;
}

}  // namespace tuningfile
