/// @file
/// Slips in text tunings: a tuning that is right, with a word or two changed, and what a check says to that.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tools/tuningcheck/checkedfile.h"
#include "tools/tuningfile/textinput.h"

/// @param nth the occurrence to replace, from 1; 0: there must be one alone
/// @return the text with one part replaced, and the line of it in rLine
inline std::string ReplacedText(const std::string& rText, const std::string& rPart, const std::string& rBy, size_t nth,
                                UINT32& rLine)
{
    size_t place = rText.find(rPart);
    for (size_t index = 1; index < nth && place != rText.npos; ++index)
    {
        place = rText.find(rPart, place + 1);
    }
    EXPECT_NE(rText.npos, place) << "'" << rPart << "' is not in the tuning";
    if (place == rText.npos)
    {
        return rText;
    }
    EXPECT_TRUE(nth != 0 || rText.find(rPart, place + 1) == rText.npos) << "'" << rPart << "' is there more than once";
    rLine =
        static_cast<UINT32>(std::count(rText.begin(), rText.begin() + static_cast<std::ptrdiff_t>(place), '\n')) + 1;
    return std::string(rText).replace(place, rPart.size(), rBy);
}

/// @return what kirotune check would say
inline std::vector<tuningcheck::Finding> FindingsOf(const std::string& rText, const std::string& rName)
{
    return tuningcheck::JudgeText(tuningfile::ParseText(rText, rName), rText, {});
}

/// @return the findings that are not among those of the tuning without the slip
inline std::vector<tuningcheck::Finding> NewFindings(std::vector<tuningcheck::Finding>        findings,
                                                     const std::vector<tuningcheck::Finding>& rWithout)
{
    const auto isOld = [&rWithout](const tuningcheck::Finding& rFinding)
    {
        return std::any_of(rWithout.begin(), rWithout.end(),
                           [&rFinding](const tuningcheck::Finding& rOld)
                           { return rOld.path == rFinding.path && rOld.value == rFinding.value; });
    };
    std::erase_if(findings, isOld);
    return findings;
}

inline std::string ToText(const std::vector<tuningcheck::Finding>& rFindings)
{
    std::string text;
    for (const tuningcheck::Finding& rFinding : rFindings)
    {
        text += tuningcheck::ToText(rFinding) + "\n";
    }
    return text;
}
