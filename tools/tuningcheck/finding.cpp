#include "tools/tuningcheck/finding.h"

#include <algorithm>

#include <fmt/format.h>

#include "tools/tuningfile/modepath.h"

namespace tuningcheck
{

namespace
{

using tuningfile::TextNode;

std::string PathOf(const ModulePlace& rModule)
{
    return fmt::format("{} {}", tuningfile::PathOf(*rModule.pTable, rModule.mode),
                       rModule.pModule->pDescription->pName);
}

const char* NameOf(Severity severity)
{
    return (severity == Severity::Error) ? "error" : "advice";
}

/// Findings of one place are alike by the place in the text, so that what an anchor repeats is told once.
std::string PlaceKey(const Finding& rFinding)
{
    return rFinding.place.has_value() ? fmt::format("{}:{}", rFinding.place->line, rFinding.place->column)
                                      : rFinding.path;
}

}  // namespace

std::string ToText(const Finding& rFinding)
{
    const std::string place =
        rFinding.place.has_value() ? fmt::format("{}:{}", rFinding.place->line, rFinding.place->column) + ":" : "";
    return fmt::format("{}:{} {}: {} {}, expected {}{}{}", rFinding.file, place, NameOf(rFinding.severity),
                       rFinding.path, rFinding.value, rFinding.expected, rFinding.advice.empty() ? "" : "; ",
                       rFinding.advice);
}

TextNode ToNode(const Finding& rFinding)
{
    TextNode node = TextNode::Map();
    node.Add("severity", TextNode::Quoted(NameOf(rFinding.severity)));
    node.Add("file", TextNode::Quoted(rFinding.file));
    if (rFinding.place.has_value())
    {
        node.Add("line", TextNode::Scalar(std::to_string(rFinding.place->line)));
        node.Add("column", TextNode::Scalar(std::to_string(rFinding.place->column)));
    }
    node.Add("path", TextNode::Quoted(rFinding.path));
    node.Add("found", TextNode::Quoted(rFinding.value));
    node.Add("expected", TextNode::Quoted(rFinding.expected));
    node.Add("advice", TextNode::Quoted(rFinding.advice));
    return node;
}

std::string FullPath(const Spot& rSpot)
{
    return fmt::format("{}.{}", PathOf(*rSpot.pIn->pModule), rSpot.Path());
}

Where WhereOf(const Spot& rSpot)
{
    const ModulePlace& rModule = *rSpot.pIn->pModule;
    return {rSpot.Place(), FullPath(rSpot), fmt::format("{}.{}", rModule.pModule->pDescription->pName, rSpot.Path()),
            rModule.pModule, rModule.pAbove};
}

VOID Findings::Add(Severity severity, Where where, std::string value, std::string expected, std::string advice)
{
    const std::string fault = where.inMode + " " + value;
    m_told.emplace(where.pModule, severity, fault);
    if (!m_told.contains({where.pAbove, severity, fault}))
    {
        Add({severity, m_rTuning.source, where.place, std::move(where.path), std::move(value), std::move(expected),
             std::move(advice)});
    }
}

VOID Findings::Add(Severity severity, const Spot& rSpot, std::string value, std::string expected, std::string advice)
{
    Add(severity, WhereOf(rSpot), std::move(value), std::move(expected), std::move(advice));
}

VOID Findings::Add(Severity severity, const ModulePlace& rModule, std::string value, std::string expected,
                   std::string advice)
{
    Add({severity, m_rTuning.source, rModule.pModule->place, PathOf(rModule), std::move(value), std::move(expected),
         std::move(advice)});
}

VOID Findings::Add(Severity severity, const tuningfile::ModeTable& rTable, UINT32 mode, std::string what,
                   std::string value, std::string expected, std::string advice)
{
    const std::string path = fmt::format("{} {}", tuningfile::PathOf(rTable, mode), what);
    Add({severity, m_rTuning.source, rTable.modes[mode].place, path, std::move(value), std::move(expected),
         std::move(advice)},
        path);
}

VOID Findings::Add(Finding finding)
{
    const std::string key = PlaceKey(finding);
    Add(std::move(finding), key);
}

VOID Findings::Add(Finding finding, const std::string& rKey)
{
    const auto known = m_indices.find(rKey);
    if (known == m_indices.end())
    {
        m_indices.emplace(rKey, m_findings.size());
        m_findings.push_back(std::move(finding));
    }
    else if (m_findings[known->second].severity < finding.severity)
    {
        m_findings[known->second] = std::move(finding);
    }
}

bool Findings::HasErrors() const
{
    return std::any_of(m_findings.begin(), m_findings.end(),
                       [](const Finding& rFinding) { return rFinding.severity == Severity::Error; });
}

std::vector<Finding> Findings::Take()
{
    const auto order = [](const Finding& rFinding) {
        return rFinding.place.has_value() ? std::tuple(rFinding.place->line, rFinding.place->column)
                                          : std::tuple(0U, 0U);
    };
    std::stable_sort(m_findings.begin(), m_findings.end(),
                     [&order](const Finding& rFirst, const Finding& rSecond)
                     { return order(rFirst) < order(rSecond); });
    m_indices.clear();
    return std::move(m_findings);
}

}  // namespace tuningcheck
