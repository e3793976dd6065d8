#include "tools/page/pagejson.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include <nlohmann/json.hpp>

#include "host/controlvalues.h"
#include "tools/meaning/modulewords.h"
#include "tools/page/shownnumber.h"

namespace page
{

namespace
{

using nlohmann::json;

std::string Text(const json& rJson)
{
    return rJson.dump(-1, ' ', false, json::error_handler_t::replace);
}

json OrNull(const std::string& rText)
{
    return rText.empty() ? json(nullptr) : json(rText);
}

json OrNull(const std::optional<DOUBLE>& rNumber)
{
    return rNumber.has_value() ? json(*rNumber) : json(nullptr);
}

json ToJson(const CameraState& rState, const std::string& rAddress)
{
    return {{"connected", rState.isConnected},
            {"address", rAddress},
            {"name", rState.name},
            {"version", rState.version},
            {"error", rState.error}};
}

json ToJson(const ModeNode& rMode)
{
    json children = json::array();
    for (const ModeNode& rChild : rMode.children)
    {
        children.push_back(ToJson(rChild));
    }
    return {{"path", rMode.path}, {"children", std::move(children)}};
}

json ValuesOf(const EditResult& rResult)
{
    json list = json::array();
    for (const liveclient::Value& rValue : rResult.values)
    {
        list.push_back({{"path", rValue.name}, {"value", ShownNumber(rResult.module, rValue.name, rValue.text)}});
    }
    return list;
}

const CHAR* KindName(MemberKind kind)
{
    switch (kind)
    {
    case MemberKind::Number:
        return "number";
    case MemberKind::Switch:
        return "switch";
    case MemberKind::Choice:
        return "choice";
    case MemberKind::Text:
        return "text";
    case MemberKind::Record:
        return "record";
    case MemberKind::List:
        return "list";
    }
    return "";
}

json ToJson(const std::string& rModule, const Member& rMember, const std::map<std::string, std::string>& rStarts)
{
    const auto found   = rStarts.find(rMember.path);
    json       choices = json::array();
    for (const auto& [rValue, rName] : rMember.choices)
    {
        choices.push_back({{"value", rValue}, {"name", rName}});
    }
    json members = json::array();
    for (const Member& rInner : rMember.members)
    {
        members.push_back(ToJson(rModule, rInner, rStarts));
    }
    const bool  differs = found != rStarts.end() && found->second != rMember.value;
    const auto  shown   = [&](const std::string& rTold) { return ShownNumber(rModule, rMember.path, rTold); };
    std::string value   = shown(rMember.value);
    std::string start   = differs ? shown(found->second) : value;
    return {{"path", rMember.path},         {"name", rMember.name},          {"kind", KindName(rMember.kind)},
            {"value", std::move(value)},    {"words", rMember.words},        {"unit", rMember.unit},
            {"min", OrNull(rMember.min)},   {"max", OrNull(rMember.max)},    {"begin", OrNull(rMember.begin)},
            {"integer", rMember.isInteger}, {"choices", std::move(choices)}, {"start", std::move(start)},
            {"differs", differs},           {"members", std::move(members)}, {"record", rMember.record}};
}

std::string SentenceOf(const std::string& rModule)
{
    const tuning::ModuleDescription* pModule = tuningfile::FindModule(rModule);
    const tuning::RecordWords*       pWords  = (pModule != nullptr) ? meaning::WordsOf(*pModule) : nullptr;
    const CHAR* const                pText   = (pWords != nullptr) ? meaning::SentenceOf(*pWords) : nullptr;
    return (pText != nullptr) ? pText : "";
}

VOID AddToIndex(const std::string& rModule, const std::string& rPath, const tuning::RecordWords& rRecord, json& rIndex)
{
    for (UINT32 index = 0; index < rRecord.pRecord->memberCount; ++index)
    {
        const tuning::RecordMember& rMember = rRecord.pRecord->pMembers[index];
        const tuning::MemberWords&  rWords  = rRecord.pMembers[index];
        if (!rMember.IsStored())
        {
            continue;
        }
        const std::string path  = rPath + rMember.pName;
        const CHAR* const pText = (rWords.words.meaning != nullptr) ? rWords.words.meaning : "";
        rIndex.push_back({{"module", rModule}, {"member", path}, {"words", pText}});
        if (rWords.pRecord != nullptr)
        {
            AddToIndex(rModule, path + '.', *rWords.pRecord, rIndex);
        }
    }
}

/// All members of all modules, for the search.
const json& Index()
{
    static const json index = []
    {
        json all = json::array();
        for (const tuning::ModuleDescription& rModule : tuning::TuningModules)
        {
            if (const tuning::RecordWords* pWords = meaning::WordsOf(rModule))
            {
                AddToIndex(rModule.pName, "", *pWords, all);
            }
        }
        return all;
    }();
    return index;
}

}  // namespace

std::string ErrorJson(const std::string& rError, bool isGuard)
{
    json object = {{"error", rError}};
    if (isGuard)
    {
        object["guard"] = true;
    }
    return Text(object);
}

std::string CameraJson(const CameraState& rState, const std::string& rAddress)
{
    return Text(ToJson(rState, rAddress));
}

std::string StateJson(const PageState& rState)
{
    json modules = json::array();
    for (const std::string& rModule : rState.modules)
    {
        modules.push_back({{"name", rModule}, {"words", SentenceOf(rModule)}});
    }
    json controls = json::array();
    for (const UINT32 id : controlvalues::IDs())
    {
        controls.push_back({{"id", id}, {"name", controlvalues::NameOf(id)}});
    }
    return Text({{"camera", ToJson(rState.camera, rState.address)},
                 {"file", OrNull(rState.file)},
                 {"modes", rState.modes.path.empty() ? json::array() : json::array({ToJson(rState.modes)})},
                 {"active", rState.active},
                 {"modules", std::move(modules)},
                 {"controls", std::move(controls)},
                 {"index", Index()},
                 {"edits", {{"undo", rState.undo}, {"redo", rState.redo}}},
                 {"lost", rState.lost},
                 {"picture", rState.camera.hasPictures}});
}

std::string ModuleJson(const std::string& rMode, const std::string& rModule, const std::vector<Member>& rMembers,
                       const std::map<std::string, std::string>& rStarts)
{
    json members = json::array();
    for (const Member& rMember : rMembers)
    {
        members.push_back(ToJson(rModule, rMember, rStarts));
    }
    return Text(
        {{"mode", rMode}, {"module", rModule}, {"words", SentenceOf(rModule)}, {"members", std::move(members)}});
}

std::string ResultJson(const EditResult& rResult)
{
    return Text({{"mode", rResult.mode},
                 {"module", rResult.module},
                 {"values", ValuesOf(rResult)},
                 {"shared", rResult.shared}});
}

std::string EditJson(const EditResult& rResult, bool isOwn, size_t undo, size_t redo)
{
    return Text({{"mode", rResult.mode},
                 {"module", rResult.module},
                 {"values", ValuesOf(rResult)},
                 {"shared", rResult.shared},
                 {"by", isOwn ? "this" : "other"},
                 {"edits", {{"undo", undo}, {"redo", redo}}}});
}

std::string ChangesJson(const std::vector<kirotune::Change>& rChanges)
{
    json list = json::array();
    for (const kirotune::Change& rChange : rChanges)
    {
        list.push_back({{"mode", rChange.path},
                        {"module", rChange.module},
                        {"path", rChange.member},
                        {"start", ShownNumber(rChange.module, rChange.member, rChange.oldText)},
                        {"value", ShownNumber(rChange.module, rChange.member, rChange.newText)}});
    }
    return Text({{"changes", std::move(list)}});
}

std::string SampleJson(DOUBLE seconds, const std::vector<liveclient::ControlValue>& rValues)
{
    json numbers = json::array();
    for (const UINT32 id : controlvalues::IDs())
    {
        const auto found = std::find_if(rValues.begin(), rValues.end(),
                                        [id](const liveclient::ControlValue& rValue) { return rValue.id == id; });
        numbers.push_back((found != rValues.end() && std::isfinite(found->value)) ? json(found->value) : json(nullptr));
    }
    constexpr DOUBLE PerMillisecond = 1000.0;
    return Text({{"t", std::round(seconds * PerMillisecond) / PerMillisecond}, {"v", std::move(numbers)}});
}

std::string LostJson(size_t count)
{
    return Text({{"lost", count}});
}

std::string FrameJson(UINT64 frame)
{
    return Text({{"frame", frame}});
}

}  // namespace page
