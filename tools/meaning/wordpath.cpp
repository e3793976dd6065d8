#include "tools/meaning/wordpath.h"

namespace meaning
{

namespace
{

/// Cuts the first part of a path off. @return it, without index
std::string_view NextPart(std::string_view& rPath)
{
    const size_t           dot  = rPath.find('.');
    const std::string_view part = rPath.substr(0, dot);
    rPath                       = (dot == rPath.npos) ? std::string_view{} : rPath.substr(dot + 1);
    return part.substr(0, part.find('['));
}

VOID FindModule(std::string_view name, WordPath& rFound)
{
    for (const tuning::ModuleDescription& rModule : tuning::TuningModules)
    {
        if (rModule.pRecord == nullptr)
        {
            continue;
        }
        if (name == rModule.pName)
        {
            rFound.pModule = &rModule;
            rFound.pRecord = WordsOf(rModule);
            return;
        }
        rFound.known.push_back(rModule.pName);
    }
    rFound.unknown = name;
}

VOID FindMember(std::string_view name, WordPath& rFound)
{
    const tuning::RecordWords* pRecord = rFound.pRecord;
    const tuning::Words*       pAround = (rFound.pWords != nullptr) ? &rFound.pWords->words : nullptr;
    rFound.known.clear();
    for (UINT32 index = 0; pRecord != nullptr && index < pRecord->pRecord->memberCount; ++index)
    {
        const tuning::RecordMember& rMember = pRecord->pRecord->pMembers[index];
        if (!rMember.IsStored())
        {
            continue;
        }
        if (name == rMember.pName)
        {
            rFound.pMember = &rMember;
            rFound.pWords  = &pRecord->pMembers[index];
            rFound.pRecord = rFound.pWords->pRecord;
            rFound.pJudged =
                (pAround != nullptr) ? &EffectiveWords(*pAround, rFound.pWords->words) : &rFound.pWords->words;
            return;
        }
        rFound.known.push_back(rMember.pName);
    }
    rFound.unknown = name;
}

/// Calls visit(path, name) for each member of a record, the members of its records after it.
template <typename Visit>
VOID ForEachMember(const std::string& rPath, const tuning::RecordWords& rRecord, const Visit& rVisit)
{
    for (UINT32 index = 0; index < rRecord.pRecord->memberCount; ++index)
    {
        const tuning::RecordMember& rMember = rRecord.pRecord->pMembers[index];
        if (!rMember.IsStored())
        {
            continue;
        }
        const std::string path = rPath + '.' + rMember.pName;
        rVisit(path, rMember.pName);
        if (rRecord.pMembers[index].pRecord != nullptr)
        {
            ForEachMember(path, *rRecord.pMembers[index].pRecord, rVisit);
        }
    }
}

template <typename Visit> VOID ForEachMember(const Visit& rVisit)
{
    for (const tuning::ModuleDescription& rModule : tuning::TuningModules)
    {
        if (const tuning::RecordWords* pWords = WordsOf(rModule))
        {
            ForEachMember(rModule.pName, *pWords, rVisit);
        }
    }
}

}  // namespace

WordPath FindWords(std::string_view path)
{
    WordPath found;
    FindModule(NextPart(path), found);
    while (!path.empty() && found.unknown.empty())
    {
        FindMember(NextPart(path), found);
    }
    return found;
}

std::set<std::string_view> MemberNames()
{
    std::set<std::string_view> names;
    ForEachMember([&names](const std::string& /*rPath*/, const CHAR* pName) { names.insert(pName); });
    return names;
}

std::vector<std::string> PathsTo(std::string_view member)
{
    std::vector<std::string> paths;
    ForEachMember(
        [&](const std::string& rPath, const CHAR* pName)
        {
            if (member == pName)
            {
                paths.push_back(rPath);
            }
        });
    return paths;
}

}  // namespace meaning
