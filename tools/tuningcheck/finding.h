/// @file
/// What a check of a tuning has to say.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "tools/tuningcheck/spot.h"
#include "tools/tuningfile/textnode.h"

namespace tuningcheck
{

enum class Severity
{
    Advice,  ///< works, but is odd
    Error    ///< cannot be meant
};

/// Where a finding points to.
struct Where
{
    std::optional<tuningfile::TextPlace> place;  ///< none without text
    std::string                          path;   ///< "Default kirodbconvbase.data[0].value.tolerance"

    std::string               inMode;   ///< the path without the mode
    const tuningfile::Module* pModule;  ///< of the mode
    const tuningfile::Module* pAbove;   ///< the same module of the nearest mode above, null if there is none
};

Where WhereOf(const Spot& rSpot);

struct Finding
{
    Severity                             severity;
    std::string                          file;
    std::optional<tuningfile::TextPlace> place;     ///< none without text
    std::string                          path;      ///< "Default kirodbconvbase.data[0].value.tolerance"
    std::string                          value;     ///< "is 50", "is missing"
    std::string                          expected;  ///< "0 to 1 (share)"
    std::string                          advice;    ///< what mends it; may be empty
};

/// One line: "file:line:column: error: path value, expected ...; advice".
std::string ToText(const Finding& rFinding);

tuningfile::TextNode ToNode(const Finding& rFinding);

/// The findings of one tuning. Of two at one place the first counts, an error before an advice. What a module has taken
/// over from the one above with all that makes it wrong is told there alone.
class Findings
{
public:
    explicit Findings(const tuningfile::Tuning& rTuning) : m_rTuning(rTuning)
    {
    }

    VOID Add(Severity severity, Where where, std::string value, std::string expected, std::string advice);

    VOID Add(Severity severity, const Spot& rSpot, std::string value, std::string expected, std::string advice);

    /// About a module as a whole.
    VOID Add(Severity severity, const ModulePlace& rModule, std::string value, std::string expected,
             std::string advice);

    /// About a mode. @param what of it: all that a mode lacks is told at its place
    VOID Add(Severity severity, const tuningfile::ModeTable& rTable, UINT32 mode, std::string what, std::string value,
             std::string expected, std::string advice);

    /// @return whether any of them is an error
    bool HasErrors() const;

    /// In the order of the text, or of the modes.
    std::vector<Finding> Take();

private:
    VOID Add(Finding finding);

    /// @param rKey alike for findings of which one is told
    VOID Add(Finding finding, const std::string& rKey);

    /// A fault, and the module that has it.
    using Told = std::tuple<const tuningfile::Module*, Severity, std::string>;

    const tuningfile::Tuning&     m_rTuning;
    std::vector<Finding>          m_findings;
    std::set<Told>                m_told;
    std::map<std::string, size_t> m_indices;  ///< in m_findings, by key
};

/// "Default|Usecase.Video kirodbconvbase.data[0]"
std::string FullPath(const Spot& rSpot);

}  // namespace tuningcheck
