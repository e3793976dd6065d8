#include "tools/kirotune/commands.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "tools/kirotune/infojson.h"
#include "tools/kirotune/liveoutput.h"
#include "tools/program/commandfiles.h"
#include "tools/program/progress.h"
#include "tools/program/standardstreams.h"
#include "tools/tuningcheck/checkedfile.h"
#include "tools/tuningfile/binaryinput.h"
#include "tools/tuningfile/files.h"
#include "tools/tuningfile/inputerror.h"
#include "tools/tuningfile/modepath.h"
#include "tools/tuningfile/patchinput.h"
#include "tools/tuningfile/storelog.h"
#include "tools/tuningfile/textinput.h"
#include "tools/tuningfile/textoutput.h"

namespace kirotune
{

namespace
{

using namespace tuningfile;

/// What the store says about a file beside its tuning; errors of a refused file come as one InputError.
BinaryTuning ReadAloud(const std::string& rInput)
{
    const StoreLog log;
    BinaryTuning   binary = ReadBinary(ReadParameterFile(rInput), program::InputName(rInput));
    for (const std::string& rLine : log.Lines())
    {
        fmt::print(stderr, "{}: {}\n", program::InputName(rInput), rLine);
    }
    return binary;
}

VOID CheckFiles(const std::string& rInput, const std::string& rOutput)
{
    program::CommandFiles files;
    files.Reads("input", rInput);
    files.Writes("output", rOutput);
    files.Check();
}

/// Of a large text one wants to know that something is going on.
Tuning Parse(const std::string& rText, const std::string& rInput)
{
    constexpr size_t  large = size_t{1} << 20;
    program::Progress progress("kirotune");
    if (rText.size() > large)
    {
        progress.Show(fmt::format("reading {} MB of text", rText.size() >> 20));
    }
    return ParseText(rText, program::InputName(rInput));
}

/// Patches change a tuning as edits change that of a camera, where modules and lists that are alike are one.
Tuning Patched(Tuning tuning, const std::vector<std::string>& rPatches)
{
    if (rPatches.empty())
    {
        return tuning;
    }
    Tuning stored = ReadBinary(WriteBinary(tuning, NewestVersion), tuning.source).tuning;
    for (const std::string& rPatch : rPatches)
    {
        ApplyPatch(ReadText(rPatch), rPatch, stored);
    }
    return stored;
}

VOID PrintModes(const ModeTable& rTable)
{
    std::vector<size_t> depths;
    for (UINT32 index = 0; index < rTable.modes.size(); ++index)
    {
        const Mode& rMode = rTable.modes[index];
        depths.push_back(rMode.parent.has_value() ? depths[*rMode.parent] + 1 : 1);

        std::vector<std::string_view> names;
        for (const Module& rModule : rMode.modules)
        {
            names.push_back(rModule.pDescription->pName);
        }
        fmt::print("{:{}}{}{}{}{}{}{}\n", "", depths.back() * 2, FormatModeName({rMode.mode, rMode.subMode}),
                   (rMode.group != 0) ? fmt::format(" (group {})", rMode.group) : "",
                   rMode.preserve ? " (preserved)" : "",
                   rMode.link.has_value() ? " -> " + PathOf(rTable, *rMode.link) : "", names.empty() ? "" : ": ",
                   fmt::join(names, ", "));
    }
}

}  // namespace

int Compile(const std::string& rInput, const std::vector<std::string>& rPatches, const std::string& rOutput,
            const VersionUnion& rVersion)
{
    program::CommandFiles files;
    files.Reads("input", rInput);
    for (const std::string& rPatch : rPatches)
    {
        files.Reads("--patch", rPatch);
    }
    files.Writes("output", rOutput);
    files.Check();
    const std::string text   = ReadText(rInput);
    const Tuning      tuning = Patched(Parse(text, rInput), rPatches);
    ReplaceFile(rOutput, WriteBinary(tuning, rVersion));
    for (const std::string& rWhat : LeftOut(tuning, rVersion))
    {
        fmt::print(stderr, "{}: {} left out, since the file version has no place for them\n", tuning.source, rWhat);
    }
    // A patched tuning has no text that could give reasons for what is odd.
    const std::string summary = rPatches.empty() ? tuningcheck::Summary(tuningcheck::JudgeText(tuning, text, {})) : "";
    if (!summary.empty())
    {
        fmt::print(stderr, "{}: {}; kirotune check {} tells them\n", tuning.source, summary, rInput);
    }
    return 0;
}

int Dump(const std::string& rInput, const std::string& rOutput)
{
    CheckFiles(rInput, rOutput);
    const BinaryTuning binary = ReadAloud(rInput);
    for (const std::string& rNote : binary.notes)
    {
        fmt::print(stderr, "{}: {}\n", binary.tuning.source, rNote);
    }
    std::string       text  = WriteText(binary.tuning);
    const std::string fault = CompileFault(text, program::OutputName(rOutput));
    if (!fault.empty())
    {
        text += fmt::format("# This text does not compile: {}\n", fault);
    }
    ReplaceFile(rOutput, {reinterpret_cast<const BYTE*>(text.data()), text.size()});
    if (!fault.empty())
    {
        throw InputError(fmt::format("{}: its text does not compile: {}", binary.tuning.source, fault));
    }
    return 0;
}

int Info(const std::string& rInput, bool isJson)
{
    const BinaryTuning binary = ReadAloud(rInput);
    if (isJson)
    {
        PrintJson(InfoJson(binary));
        return 0;
    }
    const auto& rVersion = binary.header.Version.Version;
    fmt::print("version:     {}.{}.{}\n", rVersion.Major, rVersion.Minor, rVersion.Patch);
    fmt::print("created by:  {}\n", binary.tuning.createdBy);
    fmt::print("binary tag:  {}\n", binary.tuning.binaryTag);
    const auto section = [](const char* pName, const SectionInfo& rSection)
    {
        if (rSection.Size != 0)
        {
            fmt::print("{:<12} {} bytes at {}\n", pName, rSection.Size, rSection.Offset);
        }
    };
    section("symbols:", binary.sections.Symbols);
    section("data table:", binary.sections.DataTable);
    section("data:", binary.sections.Data);
    section("definitions:", binary.sections.Definitions);
    for (const ModeTable& rTable : binary.tuning.tables)
    {
        fmt::print("modes{}:\n", rTable.name.empty() ? "" : fmt::format(" of table '{}'", rTable.name));
        PrintModes(rTable);
    }
    for (const std::string& rNote : binary.notes)
    {
        fmt::print("note: {}\n", rNote);
    }
    return 0;
}

}  // namespace kirotune
