#include <cstdio>
#include <filesystem>
#include <fmt/format.h>
#include <thread>
#include <unistd.h>

#include "tools/kirodamage/campaign.h"
#include "tools/kirodamage/errorlines.h"
#include "tools/kirodamage/mutant.h"
#include "tools/kirodamage/trial.h"
#include "tools/program/commandline.h"
#include "tools/program/progress.h"
#include "tools/tuningfile/files.h"
#include "tools/tuningfile/textinput.h"

namespace
{

constexpr INT ExitFault = 1;

struct Options
{
    std::vector<std::string> tunings;
    std::vector<std::string> scenes;
    std::optional<UINT64>    files;
    UINT64                   mutants = 0;
    UINT64                   seed    = 1;
    UINT32                   jobs    = std::max(1U, std::thread::hardware_concurrency());
    UINT32                   seconds = 1;
    std::optional<UINT64>    only;
};

/// Files of one campaign.
class Campaign
{
public:
    virtual ~Campaign() = default;

    virtual UINT64                  Count() const                 = 0;
    virtual size_t                  KindCount() const             = 0;
    virtual const CHAR*             NameOfKind(size_t kind) const = 0;
    virtual kirodamage::TrialResult Try(UINT64 number) const      = 0;

    /// A file that is at fault, for whoever looks into it. @return what it is, in words
    virtual std::string Keep(UINT64 number, std::vector<BYTE>& rBytes) const = 0;
};

class DamagedFiles : public Campaign
{
public:
    explicit DamagedFiles(const Options& rOptions) : m_rOptions(rOptions)
    {
        for (const std::string& rPath : rOptions.tunings)
        {
            const tuningfile::Tuning tuning = tuningfile::ReadTextFile(rPath);
            const std::string        name   = std::filesystem::path(rPath).filename().string();
            const auto&              rNewest =
                m_specimens.emplace_back(name, tuningfile::WriteBinary(tuning, tuningfile::NewestVersion));
            m_specimens.push_back(rNewest.WithoutDefinitions());
            m_specimens.emplace_back(name + " as 6.0.0",
                                     tuningfile::WriteBinary(tuning, BinaryFileFormat::StructSymbolsVersion));
        }
        // Whatever is set up once is set up before anything is counted.
        (VOID) kirodamage::TryFile({hostilefiles::DamageKind::Bits, "", true, m_specimens.front().bytes, 0});
    }

    UINT64 Count() const override
    {
        return m_rOptions.files.value_or(DefaultFiles);
    }

    size_t KindCount() const override
    {
        return hostilefiles::DamageKinds;
    }

    const CHAR* NameOfKind(size_t kind) const override
    {
        return NameOf(static_cast<hostilefiles::DamageKind>(kind));
    }

    kirodamage::TrialResult Try(UINT64 number) const override
    {
        return TryFile(kirodamage::MakeFile(m_specimens, m_rOptions.seed, number));
    }

    std::string Keep(UINT64 number, std::vector<BYTE>& rBytes) const override
    {
        kirodamage::DamagedFile file = kirodamage::MakeFile(m_specimens, m_rOptions.seed, number);
        rBytes                       = std::move(file.bytes);
        return fmt::format("{} of {}, {} mode", NameOf(file.kind), file.specimen, file.isFileMode ? "file" : "buffer");
    }

private:
    static constexpr UINT64 DefaultFiles = 200000;

    const Options&                      m_rOptions;
    std::vector<hostilefiles::Specimen> m_specimens;
};

class Mutants : public Campaign
{
public:
    explicit Mutants(const Options& rOptions)
        : m_rOptions(rOptions), m_tuning(rOptions.tunings.back()),
          m_origins(kirodamage::ReadOrigins(rOptions.tunings, rOptions.scenes, m_tuning))
    {
        for (const kirodamage::Origin& rOrigin : m_origins)
        {
            (VOID) kirodamage::TryMutant({rOrigin.kind, rOrigin.name, rOrigin.bytes, 0}, m_tuning);
        }
    }

    UINT64 Count() const override
    {
        return m_rOptions.mutants;
    }

    size_t KindCount() const override
    {
        return kirodamage::MutantKinds;
    }

    const CHAR* NameOfKind(size_t kind) const override
    {
        return NameOf(static_cast<kirodamage::MutantKind>(kind));
    }

    kirodamage::TrialResult Try(UINT64 number) const override
    {
        return TryMutant(kirodamage::MakeMutant(m_origins, m_rOptions.seed, number), m_tuning);
    }

    std::string Keep(UINT64 number, std::vector<BYTE>& rBytes) const override
    {
        kirodamage::Mutant mutant = kirodamage::MakeMutant(m_origins, m_rOptions.seed, number);
        rBytes                    = std::move(mutant.bytes);
        return "a mutant of " + mutant.origin;
    }

private:
    const Options&                  m_rOptions;
    mutable kirosim::LoadedTuning   m_tuning;
    std::vector<kirodamage::Origin> m_origins;
};

VOID PrintCounts(const CHAR* pName, const kirodamage::Tally::Counts& rCounts)
{
    fmt::print("{:12} {:9} {:9} {:9} {:12} {:12} {:12}\n", pName, rCounts.refused, rCounts.usable, rCounts.doubted,
               rCounts.fetched, rCounts.withheld, rCounts.frames);
}

VOID PrintTally(const Campaign& rCampaign, const kirodamage::Tally& rTally)
{
    kirodamage::Tally::Counts sum;
    fmt::print("{:12} {:>9} {:>9} {:>9} {:>12} {:>12} {:>12}\n", "damage", "refused", "usable", "doubted", "modules",
               "withheld", "frames");
    for (size_t kind = 0; kind < rCampaign.KindCount(); ++kind)
    {
        PrintCounts(rCampaign.NameOfKind(kind), rTally.kinds[kind]);
        sum.Add(rTally.kinds[kind]);
    }
    PrintCounts("all", sum);
    const auto& rTime    = rTally.microseconds;
    const auto& rRefusal = rTally.refusal;
    fmt::print("slowest: {:.1f} ms of processor time (file {}); slowest refusal: {:.1f} ms (file {})\n",
               static_cast<DOUBLE>(rTime.value) / 1000.0, rTime.number, static_cast<DOUBLE>(rRefusal.value) / 1000.0,
               rRefusal.number);
    fmt::print("largest allocation: {} bytes (file {}); most held at one time: {} bytes (file {})\n",
               rTally.largest.value, rTally.largest.number, rTally.most.value, rTally.most.number);
}

/// Keeps the file for whoever looks into the fault.
VOID ReportFault(const Campaign& rCampaign, const kirodamage::Fault& rFault, UINT64 seed)
{
    std::vector<BYTE> bytes;
    const std::string what = rCampaign.Keep(rFault.number, bytes);
    const std::string path = fmt::format("damaged-{}-{}.bin", seed, rFault.number);
    tuningfile::ReplaceFile(path, bytes);
    fmt::print(stderr, "kirodamage: file {} of seed {} ({}): {}; it is in {}\n", rFault.number, seed, what, rFault.what,
               path);
}

/// @return the program's status
INT Run(const Options& rOptions, const Campaign& rCampaign)
{
    const auto tryNumber = [&rCampaign](UINT64 number) { return rCampaign.Try(number); };
    if (rOptions.only.has_value())
    {
        const kirodamage::TrialResult result = tryNumber(*rOptions.only);
        fmt::print("{}: {}{}\n", rCampaign.NameOfKind(result.kind), result.isUsable ? "usable " : "refused ",
                   result.fault);
        return (result.fault[0] == '\0') ? 0 : ExitFault;
    }
    program::Progress        progress("kirodamage: files");
    kirodamage::CampaignPlan plan{rCampaign.Count(), rOptions.jobs, rOptions.seconds, {}};
    if (isatty(STDERR_FILENO) != 0)
    {
        plan.progress = [&](UINT64 done) { progress.Show(done, plan.files); };
    }
    const kirodamage::CampaignResult result = kirodamage::RunCampaign(plan, tryNumber);
    progress.Clear();
    PrintTally(rCampaign, result.tally);
    if (result.fault.has_value())
    {
        ReportFault(rCampaign, *result.fault, rOptions.seed);
        return ExitFault;
    }
    return 0;
}

/// @return the program's status
INT Run(const Options& rOptions)
{
    kirodamage::errorlines::Watch();
    const INT  status   = (rOptions.mutants > 0) ? Run(rOptions, Mutants(rOptions)) : 0;
    const bool hasFiles = rOptions.files.has_value() || rOptions.mutants == 0;
    return (status == 0 && hasFiles) ? Run(rOptions, DamagedFiles(rOptions)) : status;
}

int RunProgram(int argc, char** argv)
{
    CLI::App app{"Loads damaged files and uses them; each must be refused or usable.", "kirodamage"};
    Options  options;
    app.add_option("tunings", options.tunings, "tunings to be damaged (.yaml)")->check(program::FileName)->required();
    app.add_option("--files", options.files, "how many parameter files; 200000 without --mutants, none with it")
        ->check(CLI::PositiveNumber);
    CLI::Option* pMutants = app.add_option(
        "--mutants", options.mutants, "how many texts of tunings and scenes, recordings and files of debug records");
    app.add_option("--scenes", options.scenes,
                   "what mutants are made of beside the tunings (.yaml); the last tuning's cameras")
        ->check(program::FileName)
        ->needs(pMutants);
    app.add_option("--seed", options.seed, "of all that is random")->capture_default_str();
    app.add_option("--jobs", options.jobs, "files at a time")->check(CLI::Range(1, 256));
    app.add_option("--seconds", options.seconds, "processor time that a file may take")
        ->check(CLI::Range(1, 3600))
        ->capture_default_str();
    app.add_option("--only", options.only, "one file of the campaign alone, in this process, for a debugger");
    const std::optional<int> status = program::ReadCommandLine(app, argc, argv);
    if (!status.has_value() && options.mutants > 0 && options.scenes.empty())
    {
        fmt::print(stderr, "kirodamage: --mutants wants --scenes\n");
        return program::ExitBadUsage;
    }
    return status.has_value() ? *status : Run(options);
}

}  // namespace

int main(int argc, char** argv)
{
    return program::Main("kirodamage: ", [&] { return RunProgram(argc, argv); });
}
