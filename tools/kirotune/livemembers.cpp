#include "tools/kirotune/livemembers.h"

#include <algorithm>
#include <charconv>
#include <vector>

#include <fmt/format.h>

#include "schema/recordwalk.h"
#include "tools/liveclient/texts.h"
#include "tools/tuningfile/names.h"
#include "tools/tuningfile/tuning.h"

namespace kirotune
{

namespace
{

using liveclient::Error;
using liveclient::Value;

std::string EnumeratorValue(const tuning::EnumDescription& rEnum, const Value& rAssignment)
{
    std::vector<std::string_view> names;
    for (UINT32 index = 0; index < rEnum.count; ++index)
    {
        names.push_back(rEnum.pEnumerators[index].pName);
        if (names.back() == rAssignment.text)
        {
            return std::to_string(rEnum.pEnumerators[index].value);
        }
    }
    throw Error(fmt::format("unknown value '{}' of {}, {}", rAssignment.text, rAssignment.name,
                            tuningfile::Advice(rAssignment.text, names)));
}

}  // namespace

std::optional<KnownMember> FindMember(std::string_view module, std::string_view member)
{
    const std::string                path       = fmt::format("{}.{}", module, member);
    const std::vector<std::string>   components = liveclient::Split(path, '.');
    const tuning::ModuleDescription* pModule    = tuningfile::FindModule(components[0]);
    const tuning::RecordDescription* pRecord    = (pModule != nullptr) ? pModule->pRecord : nullptr;
    std::optional<KnownMember>       known;
    bool                             isInList = false;
    for (size_t index = 1; index < components.size(); ++index)
    {
        const std::string_view      component = components[index];
        const size_t                bracket   = component.find('[');
        const tuning::RecordMember* pMember =
            (pRecord != nullptr) ? tuning::FindMember(*pRecord, component.substr(0, bracket)) : nullptr;
        if (pMember == nullptr)
        {
            return std::nullopt;
        }
        const bool isArray = pMember->form == tuning::Form::Fixed || pMember->form == tuning::Form::Variable;
        isInList           = isInList || pMember->form == tuning::Form::Variable;
        known              = {pMember, isArray && bracket == std::string_view::npos, pRecord, isInList};
        pRecord            = pMember->pRecord;
    }
    return known;
}

std::string NumberFor(const std::string& rModule, const Value& rAssignment)
{
    const std::optional<KnownMember> known = FindMember(rModule, rAssignment.name);
    if (known && known->isWholeArray)
    {
        throw Error(fmt::format("{} is an array: expected one of its elements, such as {}[0]={}", rAssignment.name,
                                rAssignment.name, rAssignment.text));
    }
    if (known && (known->pMember->pRecord != nullptr || known->pMember->type == tuning::ValueType::Text))
    {
        throw Error(fmt::format("{} is a {}: only numbers can be set", rAssignment.name,
                                (known->pMember->pRecord != nullptr) ? "record" : "text"));
    }
    if (liveclient::IsNumber(rAssignment.text))
    {
        return rAssignment.text;
    }
    if (known && known->pMember->pEnum != nullptr)
    {
        return EnumeratorValue(*known->pMember->pEnum, rAssignment);
    }
    if (rAssignment.text == "true" || rAssignment.text == "false")
    {
        return (rAssignment.text == "true") ? "1" : "0";
    }
    liveclient::RequireNumber(rAssignment);
    return rAssignment.text;
}

std::string WithEnumerator(const std::string& rModule, const Value& rValue)
{
    const std::optional<KnownMember> known  = FindMember(rModule, rValue.name);
    const CHAR*                      pName  = nullptr;
    INT32                            number = 0;
    const CHAR* const                pEnd   = rValue.text.data() + rValue.text.size();
    const auto                       read   = std::from_chars(rValue.text.data(), pEnd, number);
    if (known && known->pMember->pEnum != nullptr && read.ec == std::errc() && read.ptr == pEnd)
    {
        pName = known->pMember->pEnum->NameOf(number);
    }
    return (pName != nullptr) ? fmt::format("{} ({})", rValue.text, pName) : rValue.text;
}

}  // namespace kirotune
