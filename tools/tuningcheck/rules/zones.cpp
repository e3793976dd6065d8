#include "tools/tuningcheck/rules/zones.h"

#include <fmt/format.h>

#include "schema/kiroglobalelements.h"

namespace tuningcheck
{

namespace
{

using tuning::Form;
using tuning::RecordMember;

/// A list whose records begin with a range of a trigger.
bool IsListOfZones(const RecordMember& rMember)
{
    if (rMember.form != Form::Variable || rMember.pRecord == nullptr)
    {
        return false;
    }
    const RecordMember& rFirst = rMember.pRecord->pMembers[0];
    return rFirst.pRecord == &tuning::DescriptionOf<StartEndType>() && rFirst.form == Form::Single;
}

/// The zones of one list.
class Zones
{
public:
    Zones(const Spot& rList, Findings& rFindings)
        : m_rList(rList), m_values(tuning::ValuesOf(*rList.pMember, rList.pIn->pRecord)), m_rFindings(rFindings)
    {
    }

    VOID Check() const
    {
        for (UINT32 index = 0; index < m_values.count; ++index)
        {
            if (!CheckRange(index) && index > 0 && !CheckOrder(index))
            {
                CheckReach(index);
            }
        }
    }

private:
    StartEndType RangeAt(UINT32 index) const
    {
        return tuning::Load<StartEndType>(m_values.At(*m_rList.pMember, index));
    }

    VOID Add(Severity severity, UINT32 index, std::string found, std::string expected, std::string advice) const
    {
        Spot zone   = m_rList;
        zone.pValue = m_values.At(*m_rList.pMember, index);
        zone.item   = index;
        m_rFindings.Add(severity, zone, std::move(found), std::move(expected), std::move(advice));
    }

    /// @return whether it has a fault; the same for the others
    bool CheckRange(UINT32 index) const
    {
        const StartEndType zone = RangeAt(index);
        if (zone.start > zone.end)
        {
            Add(Severity::Error, index, fmt::format("starts at {} and ends at {}", zone.start, zone.end),
                "an end that is not below the start", "swap them if that is meant");
        }
        return zone.start > zone.end;
    }

    bool CheckOrder(UINT32 index) const
    {
        const StartEndType before = RangeAt(index - 1);
        const StartEndType zone   = RangeAt(index);
        if (before.start > before.end || !(zone.start < before.end))
        {
            return false;
        }
        const bool isInside = zone.start >= before.start;
        Add(Severity::Error, index,
            isInside
                ? fmt::format("starts at {}, inside the zone before it, which ends at {}", zone.start, before.end)
                : fmt::format("starts at {}, below the zone before it, which starts at {}", zone.start, before.start),
            fmt::format("a start of {} or more", before.end),
            "zones rise and do not overlap; in a gap between them the value goes from one to the other");
        return true;
    }

    /// A zone without width is a corner between two gaps. Without gaps on both sides nothing reads it.
    VOID CheckReach(UINT32 index) const
    {
        const StartEndType zone = RangeAt(index);
        if (index + 1 < m_values.count && zone.start == zone.end && RangeAt(index - 1).end == zone.start &&
            RangeAt(index + 1).start == zone.end)
        {
            Add(Severity::Advice, index, fmt::format("starts and ends at {}, as its neighbours do", zone.start),
                "a zone that some value can reach", "widen it, or remove it");
        }
    }

    const Spot&                      m_rList;
    tuning::MemberValues<const BYTE> m_values;
    Findings&                        m_rFindings;
};

}  // namespace

VOID CheckZones(const ModulePlace& rModule, Findings& rFindings)
{
    Visitor visitor;
    visitor.member = [&rFindings](const Spot& rSpot)
    {
        if (IsListOfZones(*rSpot.pMember) && rSpot.pWords->words.acts != tuning::Acts::Never)
        {
            Zones(rSpot, rFindings).Check();
        }
        return rSpot.pMember->type == tuning::ValueType::Record;
    };
    WalkModule(rModule, visitor);
}

}  // namespace tuningcheck
