#include "tools/tuningcheck/condition.h"

#include <string_view>

namespace tuningcheck
{

namespace
{

constexpr std::string_view Joint = " & ";

/// Cuts the text up to a separator off. @return what was cut
std::string_view Next(std::string_view& rRest, std::string_view separator)
{
    const size_t           end  = rRest.find(separator);
    const std::string_view part = rRest.substr(0, end);
    rRest                       = (end == rRest.npos) ? std::string_view{} : rRest.substr(end + separator.size());
    return part;
}

/// A member by a path of single records ("luxIndexOperation.enableCompensation").
struct Found
{
    const tuning::RecordMember* pMember = nullptr;
    const BYTE*                 pRecord = nullptr;
};

Found FindIn(const RecordSpot& rRecord, std::string_view path)
{
    const tuning::RecordDescription* pType = rRecord.pType;
    Found                            found{nullptr, rRecord.pRecord};
    while (!path.empty() && pType != nullptr)
    {
        found.pRecord += (found.pMember != nullptr) ? found.pMember->offset : 0;
        found.pMember = tuning::FindMember(*pType, Next(path, "."));
        if (found.pMember == nullptr)
        {
            return {};
        }
        pType = found.pMember->pRecord;
    }
    return found;
}

Found FindAround(const RecordSpot& rRecord, std::string_view path)
{
    for (const RecordSpot* pRecord = &rRecord; pRecord != nullptr;
         pRecord                   = (pRecord->pAround != nullptr) ? pRecord->pAround->pIn : nullptr)
    {
        if (const Found found = FindIn(*pRecord, path); found.pMember != nullptr)
        {
            return found;
        }
    }
    return {};
}

bool IsOneOf(const tuning::EnumDescription& rEnum, INT32 value, std::string_view names)
{
    const CHAR* pName = rEnum.NameOf(value);
    while (pName != nullptr && !names.empty())
    {
        if (Next(names, "|") == pName)
        {
            return true;
        }
    }
    return false;
}

bool HoldsOne(std::string_view condition, const RecordSpot& rRecord)
{
    std::string_view names = condition;
    const Found      found = FindAround(rRecord, Next(names, "="));
    if (found.pMember == nullptr)
    {
        return true;
    }
    const INT32 value = tuning::Load<INT32>(found.pRecord + found.pMember->offset);
    return (found.pMember->pEnum != nullptr) ? IsOneOf(*found.pMember->pEnum, value, names)
                                             : (value != 0) == (names != "false");
}

}  // namespace

bool Holds(const CHAR* pWhen, const RecordSpot& rRecord)
{
    std::string_view rest = (pWhen != nullptr) ? pWhen : "";
    while (!rest.empty())
    {
        if (!HoldsOne(Next(rest, Joint), rRecord))
        {
            return false;
        }
    }
    return true;
}

}  // namespace tuningcheck
