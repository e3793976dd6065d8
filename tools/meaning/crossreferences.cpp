#include "tools/meaning/crossreferences.h"

#include "schema/kiroglobalelements.h"
#include "tools/meaning/modulewords.h"
#include "tools/meaning/wordtext.h"

namespace meaning
{

namespace
{

using tuning::Reference;
using tuning::Thing;
using tuning::Verb;

VOID Note(const Reference& rReference, const CHAR* pModule, std::map<Target, Users>& rAll)
{
    for (const Target& rTarget : TargetsOf(rReference))
    {
        Users& rUsers = rAll[rTarget];
        ((rReference.verb == Verb::Defines)  ? rUsers.definers
         : (rReference.verb == Verb::Writes) ? rUsers.writers
                                             : rUsers.readers)
            .insert(pModule);
    }
}

VOID Collect(const tuning::RecordWords& rRecord, const CHAR* pModule, std::map<Target, Users>& rAll)
{
    for (UINT32 index = 0; index < rRecord.pRecord->memberCount; ++index)
    {
        const tuning::MemberWords& rMember = rRecord.pMembers[index];
        for (const Reference& rReference : rMember.words.refers)
        {
            Note(rReference, pModule, rAll);
        }
        if (rMember.pRecord != nullptr)
        {
            Collect(*rMember.pRecord, pModule, rAll);
        }
    }
}

}  // namespace

std::string NameOf(const Target& rTarget)
{
    if (rTarget.thing == Thing::Bank)
    {
        return "bank " + BankName(rTarget.bank);
    }
    return ThingName(rTarget.thing);
}

std::vector<Target> TargetsOf(const Reference& rReference)
{
    std::vector<Target> targets;
    switch (rReference.thing)
    {
    case Thing::Nothing:
    case Thing::SiblingBank:
    case Thing::OwnBank:
        break;
    case Thing::Bank:
        for (INT32 bank = 0; bank < BankIDMax; ++bank)
        {
            if ((rReference.banks >> bank & 1) != 0)
            {
                targets.push_back({Thing::Bank, bank});
            }
        }
        break;
    default:
        targets.push_back({rReference.thing, 0});
        break;
    }
    return targets;
}

const std::map<Target, Users>& CrossReferences()
{
    static const std::map<Target, Users> all = []
    {
        std::map<Target, Users> collected;
        for (const tuning::ModuleDescription& rModule : tuning::TuningModules)
        {
            if (const tuning::RecordWords* pWords = WordsOf(rModule))
            {
                Collect(*pWords, rModule.pName, collected);
            }
        }
        return collected;
    }();
    return all;
}

}  // namespace meaning
