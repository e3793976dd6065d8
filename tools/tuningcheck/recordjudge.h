/// @file
/// Judging a record as a whole: what has to hold between its members.
#pragma once

#include "tools/tuningcheck/finding.h"

namespace tuningcheck
{

/// A record under judgement: tells its faults at the members that have them.
class RecordJudge
{
public:
    RecordJudge(const RecordSpot& rRecord, Findings& rFindings) : m_rRecord(rRecord), m_rFindings(rFindings)
    {
    }

    /// @param found "is 3", "ends at 400" @param advice what mends it
    VOID Error(const CHAR* pMember, std::string found, std::string expected, std::string advice = "") const
    {
        Add(Severity::Error, pMember, std::nullopt, std::move(found), std::move(expected), std::move(advice));
    }

    VOID Advise(const CHAR* pMember, std::string found, std::string expected, std::string advice = "") const
    {
        Add(Severity::Advice, pMember, std::nullopt, std::move(found), std::move(expected), std::move(advice));
    }

    /// The same for one value of a list.
    VOID ErrorIn(const CHAR* pList, UINT32 item, std::string found, std::string expected, std::string advice = "") const
    {
        Add(Severity::Error, pList, item, std::move(found), std::move(expected), std::move(advice));
    }

    VOID AdviseIn(const CHAR* pList, UINT32 item, std::string found, std::string expected,
                  std::string advice = "") const
    {
        Add(Severity::Advice, pList, item, std::move(found), std::move(expected), std::move(advice));
    }

    /// @return the nearest record of a type around this one, null if it stands in none
    template <typename Record> const Record* Around() const
    {
        for (const Spot* pAround = m_rRecord.pAround; pAround != nullptr; pAround = pAround->pIn->pAround)
        {
            if (pAround->pIn->pType == &tuning::DescriptionOf<Record>())
            {
                return reinterpret_cast<const Record*>(pAround->pIn->pRecord);
            }
        }
        return nullptr;
    }

private:
    VOID Add(Severity severity, const CHAR* pMember, std::optional<UINT32> item, std::string found,
             std::string expected, std::string advice) const;

    const RecordSpot& m_rRecord;
    Findings&         m_rFindings;
};

/// Hands every record of a type to a rule that takes the record and its RecordJudge; those that are switched off are
/// left out.
template <typename Record, typename Rule>
VOID JudgeEach(const ModulePlace& rModule, Findings& rFindings, const Rule& rRule)
{
    Visitor visitor;
    visitor.member = [](const Spot& rSpot) { return rSpot.pMember->type == tuning::ValueType::Record; };
    visitor.record = [&](const RecordSpot& rRecord)
    {
        if (rRecord.pType == &tuning::DescriptionOf<Record>())
        {
            rRule(*reinterpret_cast<const Record*>(rRecord.pRecord), RecordJudge(rRecord, rFindings));
        }
    };
    WalkModule(rModule, visitor);
}

/// @return the name of an enumerator, its number if it has none
template <typename Enumeration> std::string EnumeratorText(Enumeration value)
{
    const CHAR* pName = TuningEnumOf(value)->NameOf(value);
    return (pName != nullptr) ? pName : std::to_string(static_cast<INT32>(value));
}

/// @return the values of a list as they stand beside their count
template <typename Value> std::span<const Value> ListOf(const Value* pValues, UINT32 count)
{
    return {pValues, (pValues != nullptr) ? count : 0};
}

}  // namespace tuningcheck
