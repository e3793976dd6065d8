#include "tools/kirotune/livesharing.h"

#include <algorithm>

#include <fmt/format.h>

#include "schema/modules.h"
#include "schema/recordwalk.h"
#include "tools/kirotune/livemembers.h"

namespace kirotune
{

using liveclient::MemberInfo;
using tuning::RecordDescription;
using tuning::RecordMember;

SharedEdit::SharedEdit(liveclient::Client& rClient, const std::string& rPath, const std::string& rModule,
                       const std::vector<std::string>& rMembers)
    : m_rClient(rClient), m_path(rPath), m_module(rModule.substr(0, rModule.find('.')))
{
    for (const std::string& rMember : rMembers)
    {
        const std::optional<KnownMember> known = FindMember(rModule, rMember);
        if (known.has_value() && known->isInList)
        {
            m_holders.insert(known->pHolder);
        }
    }
    if (!m_holders.empty())
    {
        AddPlaces("Default");
    }
}

/// Those of a mode, and of all modes below it.
VOID SharedEdit::AddPlaces(const std::string& rPath)
{
    for (const tuning::ModuleDescription& rModule : tuning::TuningModules)
    {
        if (rModule.pRecord != nullptr && IsOfInterest(*rModule.pRecord))
        {
            Place place{rPath, rModule.pName, {}};
            place.before = Read(place, false);
            m_places.push_back(std::move(place));
        }
    }
    for (const std::string& rChild : m_rClient.ChildModes(rPath))
    {
        AddPlaces(rPath + '|' + rChild);
    }
}

/// @return whether a record of a kind that is set stands in it, or is it
bool SharedEdit::IsOfInterest(const RecordDescription& rRecord) const
{
    const auto members = rRecord.Members();
    return m_holders.contains(&rRecord) ||
           std::any_of(members.begin(), members.end(),
                       [this](const RecordMember& rMember)
                       { return rMember.pRecord != nullptr && IsOfInterest(*rMember.pRecord); });
}

/// @param isWhole else only records of interest and those on the way to them
SharedEdit::Values SharedEdit::Read(const Place& rPlace, bool isWhole)
{
    Values     values;
    const auto known =
        std::find_if(std::begin(tuning::TuningModules), std::end(tuning::TuningModules),
                     [&](const tuning::ModuleDescription& rModule) { return rPlace.module == rModule.pName; });
    ReadRecord(rPlace.path, rPlace.module, *known->pRecord, isWhole, values);
    return values;
}

VOID SharedEdit::ReadRecord(const std::string& rPath, const std::string& rText, const RecordDescription& rRecord,
                            bool isWhole, Values& rValues)
{
    const std::vector<MemberInfo> infos = m_rClient.Info(rPath, rText);
    for (const MemberInfo& rInfo : infos)
    {
        const RecordMember* pMember = tuning::FindMember(rRecord, rInfo.name);
        if (pMember == nullptr)
        {
            continue;  // the camera's schema has more
        }
        const std::string text = rText + '.' + rInfo.name;
        if (pMember->pRecord == nullptr)
        {
            const bool isKnown = !rInfo.count.has_value();
            const auto values  = isKnown ? std::vector<liveclient::Value>{{rInfo.name, rInfo.value}}
                                         : m_rClient.Get(rPath, rText, {rInfo.name});
            rValues[text]      = values.empty() ? "" : values[0].text;
        }
        else if (isWhole || IsOfInterest(*pMember->pRecord))
        {
            for (UINT32 index = 0; index < rInfo.count.value_or(1); ++index)
            {
                ReadRecord(rPath, rInfo.count.has_value() ? fmt::format("{}[{}]", text, index) : text,
                           *pMember->pRecord, isWhole, rValues);
            }
        }
    }
}

std::vector<std::string> SharedEdit::Touched()
{
    if (m_places.empty())
    {
        return {};
    }
    // A mode without a module of its own has that of a mode above it. The store keeps modules that are alike once, so
    // one that reads the same from end to end is the same.
    std::vector<Values>      known = {Read({m_path, m_module, {}}, true)};
    std::vector<std::string> touched;
    for (const Place& rPlace : m_places)
    {
        const Values after = Read(rPlace, false);
        if (after == rPlace.before)
        {
            continue;
        }
        Values whole = Read(rPlace, true);
        if (std::find(known.begin(), known.end(), whole) != known.end())
        {
            continue;
        }
        known.push_back(std::move(whole));
        for (const auto& [rMember, rValue] : after)
        {
            const auto before = rPlace.before.find(rMember);
            if (before == rPlace.before.end() || before->second != rValue)
            {
                touched.push_back(fmt::format("{} {}", rPlace.path, rMember));
            }
        }
    }
    return touched;
}

}  // namespace kirotune
