/// @file
/// The texts of requests and answers.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/liveclient/liveclient.h"

namespace liveclient
{

/// Characters of a mode path, of a module text and of one item of values to set: the service cuts longer ones.
constexpr size_t MaxText = 511;

/// Whether the service reads a text as the number that a person means by it: digits, at most one point, and a minus in
/// front. It knows no exponent and no plus.
bool IsNumber(std::string_view text);

/// Spells out a mode path with the names of its modes, "Default|Usecase.Video" for "0|2.2". The service reads only
/// those, and takes what it does not know for the first mode, so nothing else may be sent.
/// @throws Error that lists what there is
std::string NamedPath(std::string_view path);

/// The parts between separators; none of an empty text.
std::vector<std::string> Split(std::string_view text, char separator);

/// "name", with ":" and the names of tables, joined by ",", if there are several. The last ":" counts.
VOID ParseDevice(const std::string& rText, DeviceInfo& rInfo);

/// "id=value", joined by ",". @throws Error
std::vector<ControlValue> ParseControlValues(const std::string& rText);

/// "name=value,type,count" with value and count where there are any, joined by ";". Values may hold both separators.
/// @throws Error
std::vector<MemberInfo> ParseMemberInfos(const std::string& rText);

/// "name=value", joined by ";". A part without "=" belongs to the value before it, which is then a text with ";".
std::vector<Value> ParseValues(const std::string& rText);

/// Takes the value of that name out of a list. @return whether there was one
bool Take(const std::string& rName, std::vector<Value>& rValues, Value& rValue);

}  // namespace liveclient
