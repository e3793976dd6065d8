#include <cstdio>
#include <filesystem>
#include <fmt/format.h>
#include <thread>
#include <unistd.h>

#include "tools/heapwatch/heapwatch.h"
#include "tools/kirodamage/campaign.h"
#include "tools/kirodamage/errorlines.h"
#include "tools/kirodamage/trial.h"
#include "tools/program/commandline.h"
#include "tools/tuningfile/files.h"
#include "tools/tuningfile/textinput.h"

namespace
{

constexpr INT ExitFault = 1;

struct Options
{
    std::vector<std::string> tunings;
    UINT64                   files   = 200000;
    UINT64                   seed    = 1;
    UINT32                   jobs    = std::max(1U, std::thread::hardware_concurrency());
    UINT32                   seconds = 1;
    std::optional<UINT64>    only;
};

std::vector<kirodamage::Specimen> MakeSpecimens(const std::vector<std::string>& rTunings)
{
    std::vector<kirodamage::Specimen> specimens;
    for (const std::string& rPath : rTunings)
    {
        const tuningfile::Tuning tuning = tuningfile::ReadTextFile(rPath);
        const std::string        name   = std::filesystem::path(rPath).filename().string();
        const auto& rNewest = specimens.emplace_back(name, tuningfile::WriteBinary(tuning, tuningfile::NewestVersion));
        specimens.push_back(rNewest.WithoutDefinitions());
        specimens.emplace_back(name + " as 6.0.0",
                               tuningfile::WriteBinary(tuning, BinaryFileFormat::StructSymbolsVersion));
    }
    return specimens;
}

/// The place of the file that a process has in work; gone with the campaign.
class WorkFolder
{
public:
    WorkFolder() : m_path(std::filesystem::temp_directory_path() / fmt::format("kirodamage-{}", getpid()))
    {
        std::filesystem::create_directories(m_path);
    }

    ~WorkFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    WorkFolder(const WorkFolder&)            = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    std::string FileOfThisProcess() const
    {
        return m_path / std::to_string(getpid());
    }

private:
    const std::filesystem::path m_path;
};

VOID PrintCounts(const CHAR* pName, const kirodamage::Tally::Counts& rCounts)
{
    fmt::print("{:12} {:9} {:9} {:9} {:12} {:12} {:12}\n", pName, rCounts.refused, rCounts.usable, rCounts.doubted,
               rCounts.fetched, rCounts.withheld, rCounts.frames);
}

VOID PrintTally(const kirodamage::Tally& rTally)
{
    kirodamage::Tally::Counts sum;
    fmt::print("{:12} {:>9} {:>9} {:>9} {:>12} {:>12} {:>12}\n", "damage", "refused", "usable", "doubted", "modules",
               "withheld", "core frames");
    for (size_t kind = 0; kind < kirodamage::DamageKinds; ++kind)
    {
        PrintCounts(NameOf(static_cast<kirodamage::DamageKind>(kind)), rTally.kinds[kind]);
        sum.Add(rTally.kinds[kind]);
    }
    PrintCounts("all", sum);
    const auto& rTime = rTally.microseconds;
    fmt::print("slowest: {:.1f} ms of processor time (file {})\n", static_cast<DOUBLE>(rTime.value) / 1000.0,
               rTime.number);
    if (heapwatch::IsCounting())
    {
        fmt::print("largest allocation: {} bytes (file {}); most held at one time: {} bytes (file {})\n",
                   rTally.largest.value, rTally.largest.number, rTally.most.value, rTally.most.number);
    }
}

/// Keeps the file for whoever looks into the fault.
VOID ReportFault(const kirodamage::Fault& rFault, const std::vector<kirodamage::Specimen>& rSpecimens, UINT64 seed)
{
    const kirodamage::DamagedFile file = kirodamage::MakeFile(rSpecimens, seed, rFault.number);
    const std::string             path = fmt::format("damaged-{}-{}.bin", seed, rFault.number);
    tuningfile::ReplaceFile(path, file.bytes);
    fmt::print(stderr, "kirodamage: file {} of seed {} ({} of {}, {} mode): {}; it is in {}\n", rFault.number, seed,
               NameOf(file.kind), file.specimen, file.isFileMode ? "file" : "buffer", rFault.what, path);
}

/// @return the program's status
INT Run(const Options& rOptions)
{
    kirodamage::errorlines::Watch();
    const std::vector<kirodamage::Specimen> specimens = MakeSpecimens(rOptions.tunings);
    const WorkFolder                        folder;
    const auto                              tryNumber = [&](UINT64 number)
    { return TryFile(kirodamage::MakeFile(specimens, rOptions.seed, number), folder.FileOfThisProcess()); };
    // Whatever is set up once is set up before anything is counted.
    (VOID) kirodamage::TryFile({kirodamage::DamageKind::Bits, "", true, specimens.front().bytes, 0},
                               folder.FileOfThisProcess());

    if (rOptions.only.has_value())
    {
        const kirodamage::TrialResult result = tryNumber(*rOptions.only);
        fmt::print("{}: {}{}\n", NameOf(result.kind), result.isUsable ? "usable " : "refused ", result.fault);
        return (result.fault[0] == '\0') ? 0 : ExitFault;
    }
    const kirodamage::CampaignResult result =
        kirodamage::RunCampaign({rOptions.files, rOptions.jobs, rOptions.seconds}, tryNumber);
    PrintTally(result.tally);
    if (result.fault.has_value())
    {
        ReportFault(*result.fault, specimens, rOptions.seed);
        return ExitFault;
    }
    return 0;
}

int RunProgram(int argc, char** argv)
{
    CLI::App app{"Loads damaged parameter files and uses them; each must be refused or usable.", "kirodamage"};
    Options  options;
    app.add_option("tunings", options.tunings, "tunings to be damaged (.yaml)")->required();
    app.add_option("--files", options.files, "how many files")->check(CLI::PositiveNumber)->capture_default_str();
    app.add_option("--seed", options.seed, "of all that is random")->capture_default_str();
    app.add_option("--jobs", options.jobs, "files at a time")->check(CLI::Range(1, 256));
    app.add_option("--seconds", options.seconds, "processor time that a file may take")
        ->check(CLI::Range(1, 3600))
        ->capture_default_str();
    app.add_option("--only", options.only, "one file of the campaign alone, in this process, for a debugger");
    const std::optional<int> status = program::ReadCommandLine(app, argc, argv);
    return status.has_value() ? *status : Run(options);
}

}  // namespace

int main(int argc, char** argv)
{
    return program::Main("kirodamage: ", [&] { return RunProgram(argc, argv); });
}
