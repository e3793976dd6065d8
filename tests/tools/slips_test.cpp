/// Slips that tuners make, one in each file of tests/slips: each is told once, at its line.
///
///     base: phone.yaml                     an example that has no errors
///     replace: channel1: SafeLuma          a part of a line, there once
///     nth: 2                               of several, the one that is meant; may be left out
///     by: channel1: SafeLumma              may be empty, and there may be further replacements
///     expect: error                        or advice
///     at: weightTable2D: 1                 a part of the line, there once; left out: the line of the first replacement
///     says: SafeLuma                       a part of the message
#include <filesystem>
#include <map>
#include <set>
#include <sstream>

#include "tests/support/tuningslip.h"
#include "tools/tuningfile/files.h"

namespace
{

using tuningcheck::Finding;

struct Slip
{
    std::string base;
    std::string text;  ///< of the tuning with the slip
    UINT32      line = 0;
    std::string severity;
    std::string says;
};

std::string ReadExample(const std::string& rName)
{
    return tuningfile::ReadText(std::string(EXAMPLES_DIR "/tunings/") + rName);
}

/// One replacement, as its lines are read.
struct Replacement
{
    std::string part;
    size_t      nth = 0;
};

VOID Apply(const Replacement& rReplacement, const std::string& rBy, Slip& rSlip)
{
    UINT32 line = 0;
    rSlip.text  = ReplacedText(rSlip.text, rReplacement.part, rBy, rReplacement.nth, line);
    rSlip.line  = (rSlip.line == 0) ? line : rSlip.line;
}

Slip ReadSlip(const std::string& rPath)
{
    Slip               slip;
    Replacement        replacement;
    std::istringstream lines(tuningfile::ReadText(rPath));
    for (std::string line; std::getline(lines, line);)
    {
        const std::string key   = line.substr(0, line.find(':'));
        const std::string value = (line.size() > key.size() + 2) ? line.substr(key.size() + 2) : "";
        if (key == "base")
        {
            slip.base = value;
            slip.text = ReadExample(value);
        }
        else if (key == "replace")
        {
            replacement = {value};
        }
        else if (key == "nth")
        {
            replacement.nth = std::stoul(value);
        }
        else if (key == "by")
        {
            Apply(replacement, value, slip);
        }
        else if (key == "at")
        {
            (VOID) ReplacedText(slip.text, value, "", 0, slip.line);
        }
        else if (key == "expect")
        {
            slip.severity = value;
        }
        else if (key == "says")
        {
            slip.says = value;
        }
        else
        {
            ADD_FAILURE() << "'" << line << "': not a line of a slip";
        }
    }
    return slip;
}

std::set<std::string> SlipFiles()
{
    std::set<std::string> paths;
    for (const auto& rEntry : std::filesystem::directory_iterator(SLIPS_DIR))
    {
        paths.insert(rEntry.path().string());
    }
    return paths;
}

VOID ExpectOneFinding(const Slip& rSlip, const std::vector<Finding>& rFindings)
{
    ASSERT_EQ(1u, rFindings.size()) << ToText(rFindings);
    const std::string text = tuningcheck::ToText(rFindings[0]);
    ASSERT_TRUE(rFindings[0].place.has_value()) << text;
    EXPECT_EQ(rSlip.line, rFindings[0].place->line) << text;
    EXPECT_NE(text.npos, text.find(" " + rSlip.severity + ": ")) << text;
    EXPECT_NE(text.npos, text.find(rSlip.says)) << text;
}

TEST(Slips, EachIsToldOnceAtItsLine)
{
    std::map<std::string, std::vector<Finding>> ofBase;
    const std::set<std::string>                 paths = SlipFiles();
    EXPECT_GE(paths.size(), 25u);
    for (const std::string& rPath : paths)
    {
        SCOPED_TRACE(rPath);
        const Slip slip          = ReadSlip(rPath);
        const auto [base, isNew] = ofBase.try_emplace(slip.base);
        if (isNew)
        {
            base->second = FindingsOf(ReadExample(slip.base), slip.base);
        }
        EXPECT_FALSE(slip.says.empty());
        ExpectOneFinding(slip, NewFindings(FindingsOf(slip.text, slip.base), base->second));
    }
}

}  // namespace
