#include "tools/kirotune/livenumbers.h"

#include <iterator>

#include <fmt/format.h>

#include "parameters/parameterparserinfo.h"
#include "parameters/recordtext.h"
#include "schema/recordwalk.h"
#include "tools/tuningfile/recordoutput.h"

namespace kirotune
{

namespace
{

using liveclient::Value;

/// What the longest number takes in an answer: a float of 39 digits, a sign, a point and ten places, and separators.
constexpr size_t MaxNumber = 56;

/// Bytes of an answer, with room to spare: the service does not send one of 65535.
constexpr size_t MaxAnswer = 60000;

/// @return the path of a number that each record of the kind has, with its dot in front; empty if there is none
std::string FirstNumber(const tuning::RecordDescription& rRecord)
{
    for (const tuning::RecordMember& rMember : rRecord.Members())
    {
        const bool isThere = rMember.form == tuning::Form::Single || rMember.form == tuning::Form::Fixed;
        if (!isThere || rMember.type == tuning::ValueType::Text)
        {
            continue;
        }
        const std::string below = (rMember.pRecord != nullptr) ? FirstNumber(*rMember.pRecord) : "";
        if (rMember.pRecord == nullptr || !below.empty())
        {
            return fmt::format(".{}{}{}", rMember.pName, rMember.IsArray() ? "[0]" : "", below);
        }
    }
    return "";
}

/// Collects the paths of numbers while a record is walked.
class PathCollector
{
public:
    /// A longer path; as it was, at the end of the scope.
    class Step
    {
    public:
        Step(std::string& rPath, const std::string& rText) : m_rPath(rPath), m_size(rPath.size())
        {
            rPath += rText;
        }

        ~Step()
        {
            m_rPath.resize(m_size);
        }

        Step(const Step&)            = delete;
        Step& operator=(const Step&) = delete;

    private:
        std::string& m_rPath;
        const size_t m_size;
    };

    Step Enter(const tuning::RecordMember& rMember)
    {
        return {m_path, (m_path.empty() ? "" : ".") + std::string(rMember.pName)};
    }

    Step EnterItem(const tuning::RecordMember& rMember, UINT32 index)
    {
        return {m_path, rMember.IsArray() ? fmt::format("[{}]", index) : ""};
    }

    auto CountedValues(const tuning::RecordMember& rMember, const BYTE* pRecord)
    {
        const auto values = tuning::ValuesOf(rMember, pRecord);
        if (rMember.form == tuning::Form::Variable)
        {
            AddBeyond(rMember, values.count);
        }
        return values;
    }

    VOID Numbers(const tuning::RecordMember& rMember, const tuning::MemberValues<const BYTE>& rValues)
    {
        for (UINT32 index = 0; index < rValues.count; ++index)
        {
            const Step item = EnterItem(rMember, index);
            paths.held.push_back(m_path);
        }
    }

    static VOID Text(const tuning::RecordMember&, const BYTE*)
    {
    }

    NumberPaths paths;

private:
    /// The first element behind a list. That of numbers would read as the whole list, which for one number is no
    /// telling.
    VOID AddBeyond(const tuning::RecordMember& rMember, UINT32 count)
    {
        const bool        isOfNumbers = tuning::IsNumber(rMember.type) && count != 1;
        const std::string first       = (rMember.pRecord != nullptr) ? FirstNumber(*rMember.pRecord) : "";
        if (isOfNumbers || !first.empty())
        {
            paths.beyond.push_back(fmt::format("{}[{}]{}", m_path, count, first));
        }
    }

    std::string m_path;
};

}  // namespace

bool IsOneNumber(const std::string& rText)
{
    return !rText.empty() && rText.find(',') == std::string::npos;
}

NumberPaths PathsOf(const tuning::RecordDescription& rRecord, const VOID* pRecord)
{
    PathCollector collector;
    tuning::WalkRecord(rRecord, static_cast<const BYTE*>(pRecord), collector);
    return std::move(collector.paths);
}

std::string NumberText(const tuning::RecordDescription& rRecord, const VOID* pRecord, const std::string& rMember)
{
    CHAR text[ParameterParserInfo::MaxValue] = {};
    (VOID) RecordText::GetValue(rRecord, pRecord, rMember.c_str(), text, sizeof(text));
    return text;
}

std::vector<Value> ReadNumbers(liveclient::Client& rClient, const std::string& rPath, const std::string& rModule,
                               const std::vector<std::string>& rMembers)
{
    std::vector<Value>       values;
    std::vector<std::string> batch;
    size_t                   size = 0;
    for (size_t index = 0; index < rMembers.size(); ++index)
    {
        batch.push_back(rMembers[index]);
        size += rMembers[index].size() + MaxNumber;
        if (size > MaxAnswer || index + 1 == rMembers.size())
        {
            std::vector<Value> answer = rClient.Get(rPath, rModule, batch);
            std::move(answer.begin(), answer.end(), std::back_inserter(values));
            batch.clear();
            size = 0;
        }
    }
    return values;
}

StoredNumber::StoredNumber(const tuning::RecordMember& rMember) : m_member(rMember)
{
    m_member.form   = tuning::Form::Single;
    m_member.count  = 1;
    m_member.offset = 0;
}

/// A record of that one number.
tuning::RecordDescription StoredNumber::Record() const
{
    return {m_member.pName, sizeof(m_bytes), alignof(UINT64), &m_member, 1, false};
}

bool StoredNumber::Set(const std::string& rText)
{
    return RecordText::SetValue(Record(), m_bytes, m_member.pName, rText.c_str());
}

std::string StoredNumber::Told() const
{
    return NumberText(Record(), m_bytes, m_member.pName);
}

std::string StoredNumber::InTuning() const
{
    return tuningfile::ScalarText(m_member, m_bytes);
}

}  // namespace kirotune
