#include "tools/tuningcheck/mention.h"

#include <bit>
#include <span>

#include <fmt/format.h>

#include "schema/kiroflashsnapshot.h"
#include "schema/kirometeringsaalgorithm.h"
#include "schema/kirometeringsceneanalyzer.h"
#include "schema/kirometeringstatscalculator.h"
#include "tools/meaning/wordtext.h"
#include "tools/tuningcheck/bankpair.h"
#include "tools/tuningcheck/codedreferences.h"
#include "tools/tuningcheck/home.h"

namespace tuningcheck
{

namespace
{

using tuning::RecordMember;
using tuning::Reference;
using tuning::Thing;
using tuning::Verb;

/// The record that is an item of a list: this one or the nearest around it; null if there is none.
const RecordSpot* ItemAround(const RecordSpot& rRecord)
{
    const RecordSpot* pRecord = &rRecord;
    while (pRecord != nullptr && (pRecord->pAround == nullptr || !pRecord->pAround->item.has_value()))
    {
        pRecord = (pRecord->pAround != nullptr) ? pRecord->pAround->pIn : nullptr;
    }
    return pRecord;
}

/// What the tuner calls the record, or the item that it is in.
std::string LabelOf(const RecordSpot& rRecord)
{
    const RecordSpot* pItem = ItemAround(rRecord);
    for (const RecordSpot* pRecord = &rRecord; pRecord != nullptr;
         pRecord = (pRecord != pItem && pRecord->pAround != nullptr) ? pRecord->pAround->pIn : nullptr)
    {
        for (const CHAR* pName : {"description", "analyzerName", "SCDName"})
        {
            const RecordMember* pMember = pRecord->Find(pName);
            if (pMember != nullptr && *tuning::TextAt(pRecord->pRecord + pMember->offset) != '\0')
            {
                return tuning::TextAt(pRecord->pRecord + pMember->offset);
            }
        }
    }
    return "";
}

/// What must be in use for the numbers of a record to count: the calculator, analyzer or algorithm that it is a part
/// of.
std::optional<Named> UserOf(const RecordSpot& rRecord)
{
    using kirometeringsaalgorithm::SAAlgorithmType;
    using kirometeringsceneanalyzer::SceneAnalyzerType;
    using kirometeringstatscalculator::StatsCalculatorType;
    if (rRecord.pType == &tuning::DescriptionOf<kiroflashsnapshot::FlashSnapshotLux>())
    {
        return Named{{Thing::Algorithm}, 2};
    }
    for (const RecordSpot* pItem = ItemAround(rRecord); pItem != nullptr; pItem = ItemAround(*pItem->pAround->pIn))
    {
        if (pItem->pType == &tuning::DescriptionOf<SAAlgorithmType>())
        {
            return Named{{Thing::Algorithm}, tuning::Load<SAAlgorithmType>(pItem->pRecord).ID};
        }
        if (pItem->pType == &tuning::DescriptionOf<StatsCalculatorType>())
        {
            return Named{{Thing::Calculator}, tuning::Load<StatsCalculatorType>(pItem->pRecord).calculatorID};
        }
        if (pItem->pType == &tuning::DescriptionOf<SceneAnalyzerType>())
        {
            return Named{{Thing::Analyzer}, tuning::Load<SceneAnalyzerType>(pItem->pRecord).analyzerID};
        }
    }
    return std::nullopt;
}

/// Of an enumerator that there is.
std::span<const Reference> ReferencesOf(const tuning::EnumWords& rEnum, INT32 value)
{
    for (UINT32 row = 0; row < rEnum.pEnum->count; ++row)
    {
        if (rEnum.pEnum->pEnumerators[row].value == value)
        {
            return {&rEnum.pEnumerators[row].refers, 1};
        }
    }
    return {};
}

/// A member whose number means what a control beside it says has the references of that control.
std::span<const Reference> ReferencesOf(const Spot& rSpot)
{
    const RecordSpot& rRecord = *rSpot.pIn;
    const auto&       rOwn    = rSpot.pWords->words.refers;
    for (UINT32 index = 0; rOwn[0].thing != Thing::Nothing && index < rRecord.pType->memberCount; ++index)
    {
        const RecordMember&        rMember = rRecord.pType->pMembers[index];
        const tuning::MemberWords& rWords  = rRecord.pWords->pMembers[index];
        if (rWords.words.refers[0].thing == Thing::Control && &rMember != rSpot.pMember)
        {
            return ReferencesOf(*rWords.pEnum, rRecord.Get<INT32>(rMember));
        }
    }
    return rOwn;
}

/// A table under number 0 is not found again, and the end of a range that is left out is 0.
bool IsNoOutput(const Spot& rSpot, const Reference& rReference, const Named& rNamed)
{
    return rReference.verb == Verb::Writes && rNamed.number == 0 &&
           (rNamed.kind == BankKind(BankIDMetering2D) || std::string_view(rSpot.pMember->pName) == "end");
}

/// @return "is 7", "also writes 8" for a second output
std::string ValueOf(const Spot& rSpot, Verb verb, const Named& rNamed)
{
    if (rNamed.kind.thing == Thing::Channel)
    {
        return "is " + rSpot.ValueText();
    }
    const bool isSecond = verb == Verb::Writes && tuning::IsNumber(rSpot.pMember->type) &&
                          static_cast<INT64>(rSpot.Number()) != rNamed.number;
    return (isSecond ? "also writes " : "is ") + std::to_string(rNamed.number);
}

class Gathering
{
public:
    Gathering(const ModulePlace& rModule, std::set<Kind>& rWrongKinds, Findings& rFindings)
        : m_rModule(rModule), m_rWrongKinds(rWrongKinds), m_rFindings(rFindings)
    {
    }

    std::vector<Mention> Run()
    {
        Visitor visitor;
        visitor.value  = [this](const Spot& rSpot) { Value(rSpot); };
        visitor.record = [this](const RecordSpot& rRecord)
        {
            FindCodedReferences(rRecord,
                                [this](const Spot& rSpot, Verb verb, const Named& rNamed) {
                                    Add(rSpot, {verb, rNamed.kind.thing, UINT32{1} << rNamed.kind.bank}, rNamed);
                                });
        };
        WalkModule(m_rModule, visitor);
        return std::move(m_mentions);
    }

private:
    VOID Value(const Spot& rSpot)
    {
        if (IsBankPair(*rSpot.pIn))
        {
            Pair(rSpot);
            return;
        }
        for (const Reference& rReference : ReferencesOf(rSpot))
        {
            if (rReference.thing != Thing::Nothing)
            {
                Number(rSpot, rReference);
            }
        }
    }

    /// Of a pair the number alone is called: the bank has been looked at with it.
    VOID Pair(const Spot& rSpot)
    {
        const std::optional<BankPair> read = ReadBankPair(*rSpot.pIn);
        if (!read.has_value() || std::string_view(rSpot.pMember->pName) != "dataID")
        {
            return;
        }
        if (!CheckBank(*rSpot.pIn, *read, m_rFindings))
        {
            for (const INT32 bank : {BankIDTriggers, BankIDStatsCalculator, BankIDSceneAnalyzer})
            {
                m_rWrongKinds.insert(BankKind(bank));
            }
        }
        else if (read->number != read->reference.none)
        {
            Add(rSpot, {read->reference.verb, Thing::Bank, UINT32{1} << read->bank},
                {BankKind(read->bank), read->number});
        }
    }

    /// A text, or a number of at most 32 bits.
    VOID Number(const Spot& rSpot, const Reference& rReference)
    {
        const bool isText = rSpot.pMember->type == tuning::ValueType::Text;
        if (isText && rReference.thing == Thing::Channel && *tuning::TextAt(rSpot.pValue) != '\0')
        {
            Add(rSpot, rReference, {{Thing::Channel}, 0, tuning::TextAt(rSpot.pValue)});
            return;
        }
        const INT64 number = static_cast<INT64>(rSpot.Number());
        if (isText || number == rReference.none)
        {
            return;
        }
        switch (rReference.thing)
        {
        case Thing::SiblingBank:
        case Thing::Control:
            break;
        case Thing::Bank:
            Add(rSpot, rReference, {BankKind(std::countr_zero(rReference.banks)), number});
            break;
        case Thing::OwnBank:
            OwnBank(rSpot, rReference.verb, number);
            break;
        case Thing::Algorithm:
            if (rSpot.item.value_or(0) == 0)  // further ones are not read
            {
                Add(rSpot, rReference, {{Thing::Algorithm}, number});
            }
            break;
        default:
            Add(rSpot, rReference, {{rReference.thing}, number});
            break;
        }
    }

    /// A row that a mode takes over may name an entry that the mode has left out: the last one holds then.
    VOID OwnBank(const Spot& rSpot, Verb verb, INT64 number)
    {
        const INT32 bank = BankOf(*m_rModule.pModule->pDescription);
        if (!IsValueBank(bank) && !rSpot.IsInherited())
        {
            Add(rSpot, {verb, Thing::Bank, UINT32{1} << bank}, {BankKind(bank), number});
        }
    }

    VOID RefuseNumber(const Spot& rSpot, const Reference& rReference, INT64 number)
    {
        m_rFindings.Add(Severity::Error, rSpot, fmt::format("is {}", number),
                        fmt::format("{}: 0 to {}", meaning::ThingText(rReference), MaxValueID), "");
    }

    VOID Add(const Spot& rSpot, const Reference& rReference, const Named& rNamed)
    {
        const bool isOfValues = rNamed.kind.thing == Thing::Bank && IsValueBank(rNamed.kind.bank);
        if (isOfValues && (rNamed.number < 0 || rNamed.number > MaxValueID))
        {
            m_rWrongKinds.insert(rNamed.kind);
            RefuseNumber(rSpot, rReference, rNamed.number);
            return;
        }
        const RecordSpot* pItem = ItemAround(*rSpot.pIn);
        // A number outside of a list is a label: nothing finds its owner by it.
        if ((rReference.verb == Verb::Defines && pItem != rSpot.pIn) || IsNoOutput(rSpot, rReference, rNamed))
        {
            return;
        }
        m_mentions.push_back(
            {rReference.verb, rNamed, meaning::ThingText(rReference), WhereOf(rSpot), rSpot.Path(),
             ValueOf(rSpot, rReference.verb, rNamed), LabelOf(*rSpot.pIn), m_rModule.pModule, m_rModule.mode,
             rSpot.pIn->pRecord,
             (pItem != nullptr) ? pItem->pAround->pIn->pRecord + pItem->pAround->pMember->offset : nullptr,
             (pItem != nullptr) ? pItem->pType : nullptr, (pItem != nullptr) ? pItem->pRecord : nullptr,
             UserOf(*rSpot.pIn)});
    }

    const ModulePlace&   m_rModule;
    std::set<Kind>&      m_rWrongKinds;
    Findings&            m_rFindings;
    std::vector<Mention> m_mentions;
};

}  // namespace

std::vector<Mention> MentionsOf(const ModulePlace& rModule, std::set<Kind>& rWrongKinds, Findings& rFindings)
{
    return Gathering(rModule, rWrongKinds, rFindings).Run();
}

}  // namespace tuningcheck
