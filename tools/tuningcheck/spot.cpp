#include "tools/tuningcheck/spot.h"

#include <fmt/format.h>

#include "tools/meaning/modulewords.h"
#include "tools/meaning/wordtext.h"
#include "tools/tuningcheck/condition.h"

namespace tuningcheck
{

namespace
{

using tuning::Form;
using tuning::RecordMember;
using tuning::ValueType;

class Walk
{
public:
    explicit Walk(const Visitor& rVisitor) : m_rVisitor(rVisitor)
    {
    }

    VOID Record(const RecordSpot& rRecord) const
    {
        m_rVisitor.record(rRecord);
        for (UINT32 index = 0; index < rRecord.pType->memberCount; ++index)
        {
            const RecordMember& rMember = rRecord.pType->pMembers[index];
            if (rMember.IsStored() && Holds(rRecord.pWords->pMembers[index].words.when, rRecord))
            {
                Member(rRecord, rMember, rRecord.pWords->pMembers[index]);
            }
        }
    }

private:
    VOID Member(const RecordSpot& rRecord, const RecordMember& rMember, const tuning::MemberWords& rWords) const
    {
        const tuning::Words& rJudged = (rRecord.pAround != nullptr)
                                           ? meaning::EffectiveWords(rRecord.pAround->pWords->words, rWords.words)
                                           : rWords.words;
        Spot spot{&rRecord, &rMember, &rWords, &rJudged, rRecord.pRecord + rMember.offset, std::nullopt};
        if (!m_rVisitor.member(spot))
        {
            return;
        }
        const auto values = tuning::ValuesOf(rMember, rRecord.pRecord);
        for (UINT32 index = 0; index < values.count; ++index)
        {
            spot.pValue = values.At(rMember, index);
            spot.item   = rMember.IsArray() ? std::optional(index) : std::nullopt;
            Value(spot, index);
        }
    }

    VOID Value(const Spot& rSpot, UINT32 index) const
    {
        if (rSpot.pMember->type != ValueType::Record)
        {
            m_rVisitor.value(rSpot);
            return;
        }
        const BYTE* pAbove = nullptr;
        if (rSpot.pIn->pAbove != nullptr)
        {
            const auto above = tuning::ValuesOf(*rSpot.pMember, rSpot.pIn->pAbove);
            pAbove           = (index < above.count) ? above.At(*rSpot.pMember, index) : nullptr;
        }
        Record({rSpot.pIn->pModule, &rSpot, rSpot.pMember->pRecord, rSpot.pWords->pRecord, rSpot.pValue, pAbove});
    }

    const Visitor& m_rVisitor;
};

DOUBLE NumberAt(const RecordMember& rMember, const BYTE* pValue)
{
    return tuning::WithTypeOf(rMember.type, [pValue](auto zero)
                              { return static_cast<DOUBLE>(tuning::Load<decltype(zero)>(pValue)); });
}

}  // namespace

std::string Spot::Path() const
{
    const std::string own = item.has_value() ? fmt::format("{}[{}]", pMember->pName, *item) : pMember->pName;
    return (pIn->pAround != nullptr) ? fmt::format("{}.{}", pIn->pAround->Path(), own) : own;
}

std::optional<tuningfile::TextPlace> Spot::Place() const
{
    const tuningfile::TextPlaces& rPlaces = pIn->pModule->pTuning->places;
    if (item.has_value())
    {
        if (const auto place = rPlaces.OfValue(pValue, *pMember))
        {
            return place;
        }
    }
    if (const auto place = rPlaces.OfMember(pIn->pRecord + pMember->offset, *pMember))
    {
        return place;
    }
    return (pIn->pAround != nullptr) ? pIn->pAround->Place() : pIn->pModule->pModule->place;
}

bool Spot::IsInherited() const
{
    if (pIn->pAbove == nullptr || pMember->type == ValueType::Record)
    {
        return false;
    }
    const auto   above = tuning::ValuesOf(*pMember, pIn->pAbove);
    const UINT32 index = item.value_or(0);
    if (index >= above.count)
    {
        return false;
    }
    const BYTE* pOther = above.At(*pMember, index);
    return (pMember->type == ValueType::Text) ? std::strcmp(tuning::TextAt(pOther), tuning::TextAt(pValue)) == 0
                                              : std::memcmp(pOther, pValue, pMember->valueSize) == 0;
}

DOUBLE Spot::Number() const
{
    return tuning::IsNumber(pMember->type) ? NumberAt(*pMember, pValue) : 0.0;
}

std::string Spot::ValueText() const
{
    if (pMember->type == ValueType::Text)
    {
        return fmt::format("'{}'", tuning::TextAt(pValue));
    }
    if (pMember->type == ValueType::Boolean)
    {
        return (Number() != 0.0) ? "true" : "false";
    }
    if (pMember->pEnum != nullptr)
    {
        if (const CHAR* pName = pMember->pEnum->NameOf(tuning::Load<INT32>(pValue)))
        {
            return pName;
        }
    }
    return (pMember->type == ValueType::Float) ? fmt::format("{}", tuning::Load<FLOAT>(pValue))
                                               : meaning::NumberText(Number());
}

VOID WalkModule(const ModulePlace& rModule, const Visitor& rVisitor)
{
    const tuning::ModuleDescription& rDescription = *rModule.pModule->pDescription;
    const VOID*                      pAbove       = (rModule.pAbove != nullptr) ? rModule.pAbove->pRecord : nullptr;
    Walk(rVisitor).Record({&rModule, nullptr, rDescription.pRecord, meaning::WordsOf(rDescription),
                           static_cast<const BYTE*>(rModule.pModule->pRecord), static_cast<const BYTE*>(pAbove)});
}

}  // namespace tuningcheck
