#include "tools/page/requestbody.h"

#include <stdexcept>

#include <nlohmann/json.hpp>

namespace page
{

namespace
{

using nlohmann::json;

json ParseObject(std::string_view body)
{
    json object = json::parse(body, nullptr, false);
    if (!object.is_object())
    {
        throw std::invalid_argument("expected a JSON object");
    }
    return object;
}

std::string TextOf(const json& rObject, const CHAR* pName)
{
    const auto found = rObject.find(pName);
    if (found == rObject.end() || !found->is_string())
    {
        throw std::invalid_argument(std::string("expected a text as ") + pName);
    }
    return found->get<std::string>();
}

const json& ListOf(const json& rObject, const CHAR* pName)
{
    const auto found = rObject.find(pName);
    if (found == rObject.end() || !found->is_array())
    {
        throw std::invalid_argument(std::string("expected a list as ") + pName);
    }
    return *found;
}

bool FlagOf(const json& rObject, const CHAR* pName)
{
    const auto found = rObject.find(pName);
    return found != rObject.end() && found->is_boolean() && found->get<bool>();
}

}  // namespace

WantedEdit ParseSet(std::string_view body)
{
    const json object = ParseObject(body);
    WantedEdit wanted{TextOf(object, "mode"), TextOf(object, "module"), {}};
    for (const json& rValue : ListOf(object, "values"))
    {
        if (!rValue.is_object())
        {
            throw std::invalid_argument("expected values with path and value");
        }
        wanted.values.push_back({TextOf(rValue, "path"), TextOf(rValue, "value")});
    }
    if (wanted.values.empty())
    {
        throw std::invalid_argument("expected values to set");
    }
    wanted.isForced = FlagOf(object, "force");
    wanted.isJoined = FlagOf(object, "join");
    return wanted;
}

WantedReset ParseReset(std::string_view body)
{
    const json  object = ParseObject(body);
    WantedReset wanted{TextOf(object, "mode"), TextOf(object, "module")};
    for (const json& rPath : ListOf(object, "paths"))
    {
        if (!rPath.is_string())
        {
            throw std::invalid_argument("expected texts as paths");
        }
        wanted.paths.push_back(rPath.get<std::string>());
    }
    return wanted;
}

}  // namespace page
