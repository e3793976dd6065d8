#include "tools/kirotune/checkcommand.h"

#include <memory>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "tools/program/standardstreams.h"
#include "tools/tuningcheck/channels.h"
#include "tools/tuningcheck/checkedfile.h"
#include "tools/tuningfile/textnode.h"

namespace kirotune
{

namespace
{

using tuningcheck::CheckedFile;
using tuningcheck::Finding;
using tuningcheck::Severity;
using tuningfile::TextNode;

struct CheckOptions
{
    std::vector<std::string> files;
    std::string              channels;
    bool                     isJson   = false;
    bool                     isStrict = false;
};

VOID PrintText(const std::string& rFile, const CheckedFile& rChecked)
{
    for (const std::string& rLine : rChecked.deviceLines)
    {
        fmt::print("{}: {}\n", rFile, rLine);
    }
    for (const Finding& rFinding : rChecked.findings)
    {
        fmt::print("{}\n", tuningcheck::ToText(rFinding));
    }
    if (!rChecked.findings.empty())
    {
        fmt::print("{}: {}\n", rFile, tuningcheck::Summary(rChecked.findings));
    }
}

TextNode JsonOf(const std::string& rFile, const CheckedFile& rChecked)
{
    TextNode node = TextNode::Map();
    node.Add("file", TextNode::Quoted(rFile));
    node.Add("errors", TextNode::Scalar(std::to_string(Count(rChecked.findings, Severity::Error))));
    node.Add("advice", TextNode::Scalar(std::to_string(Count(rChecked.findings, Severity::Advice))));
    TextNode& rLines = node.Add("device", TextNode::List());
    for (const std::string& rLine : rChecked.deviceLines)
    {
        rLines.Add(TextNode::Quoted(rLine));
    }
    TextNode& rFindings = node.Add("findings", TextNode::List());
    for (const Finding& rFinding : rChecked.findings)
    {
        rFindings.Add(tuningcheck::ToNode(rFinding));
    }
    return node;
}

/// @return 1 if a file has errors, or advice where that counts
int Check(const CheckOptions& rOptions)
{
    tuningcheck::Surroundings surroundings;
    if (!rOptions.channels.empty())
    {
        surroundings.channels = tuningcheck::ReadChannels(rOptions.channels);
    }
    TextNode all    = TextNode::List();
    int      status = 0;
    for (const std::string& rFile : rOptions.files)
    {
        const CheckedFile checked = tuningcheck::CheckFile(rFile, surroundings);
        const std::string name    = program::InputName(rFile);
        const bool        isFaulty =
            Count(checked.findings, Severity::Error) != 0 || (rOptions.isStrict && !checked.findings.empty());
        status = isFaulty ? 1 : status;
        if (rOptions.isJson)
        {
            all.Add(JsonOf(name, checked));
        }
        else
        {
            PrintText(name, checked);
        }
    }
    if (rOptions.isJson)
    {
        fmt::print("{}", tuningfile::ToJson(all));
    }
    return status;
}

}  // namespace

VOID AddCheckCommand(CLI::App& rApp, std::function<int()>& rRun)
{
    const auto pOptions = std::make_shared<CheckOptions>();
    CLI::App*  pCheck   = rApp.add_subcommand(
           "check", "show what a device would say to tunings, what in them cannot be meant and what is odd");
    pCheck->add_option("files", pOptions->files, "parameter files or text tunings, or - for stdin")
        ->check(program::FileName)
        ->required();
    pCheck
        ->add_option("--channels", pOptions->channels,
                     "names of the statistics that the host delivers, one on each line; those of the simulated "
                     "camera by default")
        ->check(program::FileName);
    pCheck->add_flag("--json", pOptions->isJson, "print JSON for scripts");
    pCheck->add_flag("--strict", pOptions->isStrict, "end with 1 for advice, too");
    pCheck->callback([pOptions, &rRun] { rRun = [pOptions] { return Check(*pOptions); }; });
}

}  // namespace kirotune
