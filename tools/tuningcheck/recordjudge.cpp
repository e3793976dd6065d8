#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

VOID RecordJudge::Add(Severity severity, const CHAR* pMember, std::optional<UINT32> item, std::string found,
                      std::string expected, std::string advice) const
{
    const tuning::RecordMember& rMember = *m_rRecord.Find(pMember);
    const tuning::MemberWords&  rWords  = m_rRecord.pWords->pMembers[&rMember - m_rRecord.pType->pMembers];
    const auto                  values  = tuning::ValuesOf(rMember, m_rRecord.pRecord);
    const BYTE* pValue = item.has_value() ? values.At(rMember, *item) : m_rRecord.pRecord + rMember.offset;
    m_rFindings.Add(severity, Spot{&m_rRecord, &rMember, &rWords, &rWords.words, pValue, item}, std::move(found),
                    std::move(expected), std::move(advice));
}

}  // namespace tuningcheck
