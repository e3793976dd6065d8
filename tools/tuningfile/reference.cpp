#include "tools/tuningfile/schematext.h"

#include <algorithm>
#include <cctype>
#include <vector>

#include <fmt/format.h>

#include "schema/modules.h"

namespace tuningfile
{

namespace
{

/// Anchors of headings are in lower case.
std::string LinkTo(const std::string& rHeading)
{
    std::string anchor = rHeading;
    std::transform(anchor.begin(), anchor.end(), anchor.begin(),
                   [](unsigned char letter) { return std::tolower(letter); });
    return fmt::format("[{}](#{})", rHeading, anchor);
}

std::string TypeName(const tuning::RecordMember& rMember)
{
    switch (rMember.type)
    {
    case tuning::ValueType::Int8:
        return "INT8";
    case tuning::ValueType::UInt8:
        return "UINT8";
    case tuning::ValueType::Int16:
        return "INT16";
    case tuning::ValueType::UInt16:
        return "UINT16";
    case tuning::ValueType::Int32:
        return "INT32";
    case tuning::ValueType::UInt32:
        return "UINT32";
    case tuning::ValueType::Int64:
        return "INT64";
    case tuning::ValueType::UInt64:
        return "UINT64";
    case tuning::ValueType::Float:
        return "float";
    case tuning::ValueType::Double:
        return "double";
    case tuning::ValueType::Boolean:
        return "true or false";
    case tuning::ValueType::Enum:
        return LinkTo(rMember.pEnum->pName);
    case tuning::ValueType::Text:
        return "text";
    case tuning::ValueType::Record:
        break;
    }
    return rMember.pRecord->pName;
}

std::string CountText(const tuning::RecordMember& rMember)
{
    switch (rMember.form)
    {
    case tuning::Form::Fixed:
        return std::to_string(rMember.count);
    case tuning::Form::Variable:
        return "any";
    case tuning::Form::Optional:
        return "0 or 1";
    default:
        return "1";
    }
}

class ReferenceWriter
{
public:
    std::string Write()
    {
        m_text = "# Tunables\n\nIn a path, `[]` stands for each item of a list.\n";
        for (const tuning::ModuleDescription& rModule : tuning::TuningModules)
        {
            if (rModule.pRecord != nullptr)
            {
                m_text += fmt::format("\n## {}\n\nVersion {}.{}.{}.\n\n| Member | Type | Count |\n|---|---|---|\n",
                                      rModule.pName, rModule.major, rModule.minor, rModule.patch);
                AddMembers(*rModule.pRecord, "");
            }
        }
        m_text += "\n## Enumerations\n";
        for (const tuning::EnumDescription* pEnum : m_enums)
        {
            m_text += fmt::format("\n### {}\n\n| Value | Name |\n|---|---|\n", pEnum->pName);
            for (UINT32 index = 0; index < pEnum->count; ++index)
            {
                m_text +=
                    fmt::format("| {} | `{}` |\n", pEnum->pEnumerators[index].value, pEnum->pEnumerators[index].pName);
            }
        }
        return std::move(m_text);
    }

private:
    VOID AddMembers(const tuning::RecordDescription& rRecord, const std::string& rPrefix)
    {
        for (const tuning::RecordMember& rMember : rRecord.Members())
        {
            if (!rMember.IsStored())
            {
                continue;
            }
            const bool        isList = rMember.form == tuning::Form::Fixed || rMember.form == tuning::Form::Variable;
            const std::string path   = rPrefix + rMember.pName + (isList ? "[]" : "");
            m_text += fmt::format("| `{}` | {} | {} |\n", path, TypeName(rMember), CountText(rMember));
            if (rMember.pEnum != nullptr && std::find(m_enums.begin(), m_enums.end(), rMember.pEnum) == m_enums.end())
            {
                m_enums.push_back(rMember.pEnum);
            }
            if (rMember.pRecord != nullptr)
            {
                AddMembers(*rMember.pRecord, path + '.');
            }
        }
    }

    std::string                                 m_text;
    std::vector<const tuning::EnumDescription*> m_enums;  ///< in the order of their first use
};

}  // namespace

std::string Reference()
{
    return ReferenceWriter().Write();
}

}  // namespace tuningfile
