#include "tools/kirosim/runlist.h"

#include <charconv>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <utility>

#include <fmt/format.h>

#include "tools/kirosim/scene.h"

namespace kirosim
{

namespace
{

constexpr const CHAR* PlainName  = "plain";
constexpr const CHAR* AllName    = "all";
constexpr const CHAR* OwnSeed    = "own";
constexpr const CHAR* RangeMark  = "..";
constexpr UINT64      SeedsOfOne = 10000;  // that one range may have

/// The files of a run, by option.
constexpr std::pair<const CHAR*, std::string RunOptions::*> Outputs[] = {
    {"--csv", &RunOptions::csv},
    {"--csv-second", &RunOptions::csvSecond},
    {"--debug-data", &RunOptions::debugData},
    {"--fic-save", &RunOptions::ficSave},
    {"--record", &RunOptions::record},
    {"--report", &RunOptions::report},
};

std::optional<UINT64> NumberIn(std::string_view text)
{
    UINT64 number            = 0;
    const auto [pEnd, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    return (fault == std::errc() && pEnd == text.data() + text.size()) ? std::optional(number) : std::nullopt;
}

/// First and last seed of a range, or one number twice.
std::optional<std::pair<UINT64, UINT64>> SeedsIn(std::string_view text)
{
    const size_t                mark  = text.find(RangeMark);
    const std::optional<UINT64> first = NumberIn(text.substr(0, mark));
    const std::optional<UINT64> last  = (mark == text.npos) ? first : NumberIn(text.substr(mark + 2));
    if (!first.has_value() || !last.has_value() || *last < *first || *last - *first >= SeedsOfOne)
    {
        return std::nullopt;
    }
    return std::pair(*first, *last);
}

std::vector<std::optional<UINT64>> SeedsOf(const RunChoice& rChoice)
{
    std::vector<std::optional<UINT64>> seeds;
    for (const std::string& rText : rChoice.seeds)
    {
        const auto range = SeedsIn(rText);
        for (UINT64 count = 0; range.has_value() && count <= range->second - range->first; ++count)
        {
            seeds.emplace_back(range->first + count);
        }
    }
    return seeds.empty() ? std::vector{std::optional<UINT64>()} : seeds;
}

/// Variants of a scene, by name; an empty one is the scene as it is.
std::vector<std::string> VariantsOf(const std::string& rScene, const RunChoice& rChoice)
{
    std::vector<std::string> variants;
    for (const std::string& rName : rChoice.variants)
    {
        if (rName == AllName || rName == PlainName)
        {
            variants.emplace_back();
        }
        else
        {
            variants.push_back(rName);
        }
        if (rName == AllName)
        {
            const std::vector<std::string> all = ReadVariants(rScene);
            variants.insert(variants.end(), all.begin(), all.end());
        }
    }
    return variants.empty() ? std::vector{std::string()} : variants;
}

std::string SceneName(const RunOptions& rRun)
{
    return std::filesystem::path(rRun.scene).stem().string();
}

std::string VariantName(const RunOptions& rRun)
{
    return rRun.variant.empty() ? PlainName : rRun.variant;
}

VOID Fill(std::string& rPath, std::string_view place, const std::string& rName)
{
    for (size_t at = rPath.find(place); at != rPath.npos; at = rPath.find(place, at + rName.size()))
    {
        rPath.replace(at, place.size(), rName);
    }
}

VOID FillPlaces(RunOptions& rRun)
{
    const auto fill = [&](std::string& rPath)
    {
        Fill(rPath, "{scene}", SceneName(rRun));
        Fill(rPath, "{variant}", VariantName(rRun));
        Fill(rPath, "{seed}", rRun.seed.has_value() ? fmt::to_string(*rRun.seed) : OwnSeed);
    };
    for (const auto& [pOption, pMember] : Outputs)
    {
        fill(rRun.*pMember);
    }
    fill(rRun.against);
    fill(rRun.ficLoad);
}

VOID CheckOutputs(const std::vector<RunOptions>& rRuns)
{
    // By the run: two options of one run that name the same file are refused with both of their names elsewhere.
    std::map<std::string, const RunOptions*> written;
    for (const RunOptions& rRun : rRuns)
    {
        for (const auto& [pOption, pMember] : Outputs)
        {
            const std::string& rPath = rRun.*pMember;
            if (!rPath.empty() && written.try_emplace(rPath, &rRun).first->second != &rRun)
            {
                throw std::runtime_error(fmt::format(
                    "{}: {} of several runs, expected a name with {{scene}}, {{variant}} or {{seed}} that differs",
                    program::OutputName(rPath), pOption));
            }
        }
    }
}

}  // namespace

std::string FaultOfSeeds(const std::string& rText)
{
    return SeedsIn(rText).has_value()
               ? ""
               : fmt::format(
                     "'{}' found, expected a number up to 18446744073709551615, or a range of at most {} such as 1..8",
                     rText, SeedsOfOne);
}

std::vector<RunOptions> RunsOf(const RunOptions& rCommon, const RunChoice& rChoice)
{
    const std::vector<std::optional<UINT64>> seeds = SeedsOf(rChoice);
    std::vector<RunOptions>                  runs;
    for (const std::string& rScene : rChoice.scenes)
    {
        for (const std::string& rVariant : VariantsOf(rScene, rChoice))
        {
            for (const std::optional<UINT64>& rSeed : seeds)
            {
                RunOptions& rRun = runs.emplace_back(rCommon);
                rRun.scene       = rScene;
                rRun.variant     = rVariant;
                rRun.seed        = rSeed;
                FillPlaces(rRun);
            }
        }
    }
    for (RunOptions& rRun : runs)
    {
        rRun.isJsonLine = runs.size() > 1;
    }
    CheckOutputs(runs);
    return runs;
}

std::string RunName(const RunOptions& rRun)
{
    const std::string scene = SceneName(rRun) + (rRun.variant.empty() ? "" : " " + rRun.variant);
    return rRun.seed.has_value() ? fmt::format("{}, seed {}", scene, *rRun.seed) : scene;
}

}  // namespace kirosim
