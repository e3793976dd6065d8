/// @file
/// How answers of a camera are printed: as tables for people, as JSON for scripts.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/kirotune/livechange.h"
#include "tools/liveclient/liveclient.h"
#include "tools/tuningfile/textnode.h"

namespace kirotune
{

using Row = std::vector<std::string>;

/// Prints aligned columns.
/// @param rHeader printed above them; empty for none
VOID PrintTable(const Row& rHeader, const std::vector<Row>& rRows);

/// Prints a line for each, such as "Default kirodbconvbase.data[0].value.tolerance: 5 -> 8".
VOID PrintChanges(const std::vector<Change>& rChanges, bool isJson);

VOID PrintJson(const tuningfile::TextNode& rNode);

/// @return the text with U+FFFD in place of what a terminal or a reader of JSON cannot take: control characters, and
///         bytes that are not UTF-8
std::string Clean(std::string_view text);

tuningfile::TextNode JsonText(std::string_view text);
tuningfile::TextNode JsonList(const std::vector<std::string>& rTexts);

/// A value as number, list of numbers or text, by the schema if that knows the member, otherwise by its looks.
tuningfile::TextNode JsonValue(const std::string& rModule, const liveclient::Value& rValue);

/// A number as this program has printed it; what is not finite as a text.
tuningfile::TextNode JsonPrinted(const std::string& rNumber);

/// The name of a number that the camera publishes; empty if this program knows none.
std::string ControlName(UINT32 id);

/// @return whether all bytes are ASCII that can be shown, line ends included
bool IsPlainText(const std::vector<BYTE>& rBytes);

std::string Hex(const std::vector<BYTE>& rBytes, const char* pSeparator);

}  // namespace kirotune
