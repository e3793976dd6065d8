#include "tools/kirotune/referencecommand.h"

#include <filesystem>
#include <memory>
#include <set>

#include <fmt/format.h>

#include "tools/meaning/wordpath.h"
#include "tools/meaning/wordtext.h"
#include "tools/tuningfile/files.h"
#include "tools/tuningfile/inputerror.h"
#include "tools/tuningfile/names.h"
#include "tools/tuningfile/schematext.h"

namespace kirotune
{

namespace
{

using tuningfile::Document;
using tuningfile::InputError;

struct PageOptions
{
    std::string module;
    std::string directory;
    bool        isHtml = false;
};

VOID WritePages(const std::vector<Document>& rPages, const PageOptions& rOptions)
{
    std::error_code error;
    std::filesystem::create_directories(rOptions.directory, error);
    if (error)
    {
        throw InputError(fmt::format("{}: cannot be made: {}", rOptions.directory, error.message()));
    }
    for (const Document& rPage : rPages)
    {
        const std::string text = rOptions.isHtml ? tuningfile::ToHtml(rPage) : tuningfile::ToMarkdown(rPage);
        tuningfile::ReplaceFile(
            fmt::format("{}/{}.{}", rOptions.directory, rPage.name, rOptions.isHtml ? "html" : "md"),
            {reinterpret_cast<const BYTE*>(text.data()), text.size()});
    }
}

int Reference(const PageOptions& rOptions)
{
    std::vector<Document> pages = tuningfile::ReferencePages();
    pages.insert(pages.begin(), tuningfile::ReferenceIndex());
    if (!rOptions.module.empty())
    {
        std::vector<std::string_view> names;
        for (const Document& rPage : pages)
        {
            names.push_back(rPage.name);
        }
        if (std::erase_if(pages, [&rOptions](const Document& rPage) { return rPage.name != rOptions.module; });
            pages.empty())
        {
            throw InputError(
                fmt::format("unknown page '{0}', {1}", rOptions.module, tuningfile::Advice(rOptions.module, names)));
        }
    }
    if (!rOptions.directory.empty())
    {
        WritePages(pages, rOptions);
        return 0;
    }
    for (const Document& rPage : pages)
    {
        fmt::print("{}", rOptions.isHtml ? tuningfile::ToHtml(rPage) : tuningfile::ToMarkdown(rPage));
    }
    return 0;
}

VOID PrintIf(std::string_view label, const std::string& rText)
{
    if (!rText.empty())
    {
        fmt::print("  {:<12}{}\n", label, rText);
    }
}

VOID PrintMember(const std::string& rPath, const tuning::RecordMember& rMember, const tuning::MemberWords& rMemberWords)
{
    const tuning::Words& rWords = rMemberWords.words;
    fmt::print("{}\n  {}\n", rPath, meaning::FullText(rWords));
    PrintIf("range:", meaning::ExpectedText(rWords.range, rWords.unit));
    PrintIf("also works:", rWords.odd.IsGiven() ? meaning::RangeText(rWords.odd) : "");
    PrintIf("entries:", meaning::RangeText(rWords.entries));
    PrintIf("start with:", (rWords.start != nullptr) ? rWords.start : "");
    if (rMemberWords.pEnum != nullptr)
    {
        for (UINT32 index = 0; index < rMember.pEnum->count; ++index)
        {
            fmt::print("  {} ({}): {}\n", rMember.pEnum->pEnumerators[index].pName,
                       rMember.pEnum->pEnumerators[index].value, rMemberWords.pEnum->pEnumerators[index].meaning);
        }
    }
}

/// Members of one name, of whichever modules.
VOID ExplainEach(const std::vector<std::string>& rPaths)
{
    for (const std::string& rPath : rPaths)
    {
        const meaning::WordPath found = meaning::FindWords(rPath);
        PrintMember(rPath, *found.pMember, *found.pWords);
    }
}

}  // namespace

VOID Explain(const std::string& rPath)
{
    const meaning::WordPath found = meaning::FindWords(rPath);
    if (!found.unknown.empty())
    {
        const std::vector<std::string> paths = meaning::PathsTo(rPath);
        if (!paths.empty())
        {
            ExplainEach(paths);
            return;
        }
        std::vector<std::string_view> known = found.known;
        if (found.pModule == nullptr)
        {
            const std::set<std::string_view> members = meaning::MemberNames();
            known.insert(known.end(), members.begin(), members.end());
        }
        throw InputError(fmt::format("unknown {} '{}' in '{}', {}",
                                     found.pModule == nullptr ? "module or member" : "member", found.unknown, rPath,
                                     tuningfile::Advice(found.unknown, known)));
    }
    if (found.pMember == nullptr)
    {
        fmt::print("{}\n  {}\n", rPath, meaning::SentenceOf(*found.pRecord));
    }
    else
    {
        PrintMember(rPath, *found.pMember, *found.pWords);
    }
    for (UINT32 index = 0; found.pRecord != nullptr && index < found.pRecord->pRecord->memberCount; ++index)
    {
        const tuning::RecordMember& rMember = found.pRecord->pRecord->pMembers[index];
        if (rMember.IsStored())
        {
            fmt::print("\n");
            PrintMember(fmt::format("{}.{}", rPath, rMember.pName), rMember, found.pRecord->pMembers[index]);
        }
    }
}

VOID AddReferenceCommands(CLI::App& rApp, std::function<int()>& rRun)
{
    CLI::App* pSchema = rApp.add_subcommand("schema", "print the JSON Schema of text tunings, for editors");
    pSchema->callback(
        [&rRun]
        {
            rRun = []
            {
                fmt::print("{}", tuningfile::JsonSchema());
                return 0;
            };
        });

    const auto pOptions   = std::make_shared<PageOptions>();
    CLI::App*  pReference = rApp.add_subcommand("reference", "print what the tunables mean, a page for each module");
    pReference->add_option("page", pOptions->module, "module, or index; all by default");
    pReference->add_option("-o,--output", pOptions->directory, "directory to write the pages to; stdout by default")
        ->check(program::FileName);
    pReference->add_flag("--html", pOptions->isHtml, "HTML instead of Markdown");
    pReference->callback([pOptions, &rRun] { rRun = [pOptions] { return Reference(*pOptions); }; });
}

}  // namespace kirotune
