#include "bench/storebench.h"

#include <benchmark/benchmark.h>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

#include "bench/bars.h"
#include "bench/largetuning.h"
#include "parameters/parameterparserinfo.h"
#include "parameters/tuningsetmanager.h"
#include "tools/tuningfile/files.h"

namespace
{

constexpr TuningMode Selector(ModeType mode, UINT16 subMode)
{
    return {mode, {subMode}};
}

constexpr TuningMode VideoPath[] = {Selector(ModeType::Default, 0), Selector(ModeType::Sensor, 0),
                                    Selector(ModeType::Usecase, static_cast<UINT16>(ModeUsecaseSubModeType::Video))};

/// A parameter file in memory and on disk.
class TuningFile
{
public:
    TuningFile(const CHAR* pName, std::vector<BYTE> bytes)
        : m_bytes(std::move(bytes)),
          m_path(std::filesystem::temp_directory_path() / (std::string(pName) + std::to_string(getpid()) + ".bin"))
    {
        tuningfile::ReplaceFile(m_path, m_bytes);
    }

    ~TuningFile()
    {
        std::error_code ignored;
        std::filesystem::remove(m_path, ignored);
    }

    TuningFile(const TuningFile&)            = delete;
    TuningFile& operator=(const TuningFile&) = delete;

    /// @return whether the store took the file
    bool LoadInto(TuningSetManager& rManager, bool isFileMode) const
    {
        return isFileMode ? rManager.LoadBinaryParameters(m_path.c_str())
                          : rManager.LoadBinaryParameters(m_bytes.data(), m_bytes.size());
    }

private:
    std::vector<BYTE> m_bytes;
    std::string       m_path;
};

const TuningFile& PhoneFile()
{
    static const TuningFile file("kirobench-phone-", tuningfile::CompileFile(KIRO_EXAMPLE_TUNINGS "phone.yaml"));
    return file;
}

const TuningFile& LargeFile()
{
    static const TuningFile file("kirobench-large-", largetuning::Compile());
    return file;
}

VOID Load(benchmark::State& rState, const TuningFile& rFile, bool isFileMode)
{
    for ([[maybe_unused]] auto _ : rState)
    {
        TuningSetManager manager("kirobench");
        manager.SetLiveTuningAutostart(false);
        if (!rFile.LoadInto(manager, isFileMode))
        {
            rState.SkipWithError("the store refused the file");
        }
    }
}

VOID GetModule(benchmark::State& rState, bool isFileMode)
{
    TuningSetManager manager("kirobench");
    manager.SetLiveTuningAutostart(false);
    if (!PhoneFile().LoadInto(manager, isFileMode))
    {
        rState.SkipWithError("the store refused the file");
    }
    constexpr UINT32 count     = static_cast<UINT32>(std::size(VideoPath));
    auto*            pConvBase = manager.GetModule_kirodbconvbase(VideoPath, count, nullptr);
    for ([[maybe_unused]] auto _ : rState)
    {
        pConvBase = manager.GetModule_kirodbconvbase(VideoPath, count, pConvBase);
        benchmark::DoNotOptimize(pConvBase);
    }
}

/// What a tuning tool asks for, and room for its answer.
constexpr UINT32      AnswerSize    = 65535;
constexpr const CHAR* VideoPathText = "0|1.0|2.2";
constexpr const CHAR* TextModule    = "kiroconvergence";
constexpr const CHAR* TextRecord    = "kiroconvergence.smoothADRC.nodes[0]";

/// @param access what is measured: takes the store, returns whether it worked
template <typename Access> VOID AccessAsText(benchmark::State& rState, const Access& access)
{
    TuningSetManager manager("kirobench");
    manager.SetLiveTuningAutostart(false);
    bool isDone = PhoneFile().LoadInto(manager, false);
    for ([[maybe_unused]] auto _ : rState)
    {
        isDone = access(manager) && isDone;
    }
    if (!isDone)
    {
        rState.SkipWithError("the store did not answer");
    }
}

/// @param pMembers null for all
VOID GetText(benchmark::State& rState, const CHAR* pModule, const CHAR* pMembers)
{
    std::vector<CHAR> answer(AnswerSize);
    AccessAsText(rState, [&](TuningSetManager& rManager)
                 { return rManager.GetValue(0, VideoPathText, pModule, pMembers, answer.data(), AnswerSize); });
}

VOID SetText(benchmark::State& rState)
{
    AccessAsText(rState, [](TuningSetManager& rManager)
                 { return rManager.SetValue(0, VideoPathText, TextRecord, "nodeSize", "0.5"); });
}

VOID GetInfo(benchmark::State& rState)
{
    AccessAsText(rState,
                 [](TuningSetManager& rManager)
                 {
                     PList<ParameterParserInfo> infos;
                     return rManager.GetInfo(0, VideoPathText, TextModule, infos) && infos.Count() > 0;
                 });
}

}  // namespace

VOID RegisterStoreBenchmarks(Rounds& rRounds)
{
    const auto add = [&rRounds](const CHAR* pName, VOID (*run)(benchmark::State&)) { (VOID) rRounds.Add(pName, run); };
    add(benchname::GetModuleBuffer, [](benchmark::State& rState) { GetModule(rState, false); });
    add(benchname::GetModuleFile, [](benchmark::State& rState) { GetModule(rState, true); });
    add(benchname::LoadPhoneBuffer, [](benchmark::State& rState) { Load(rState, PhoneFile(), false); });
    add(benchname::LoadPhoneFile, [](benchmark::State& rState) { Load(rState, PhoneFile(), true); });
    add(benchname::LoadLargeBuffer, [](benchmark::State& rState) { Load(rState, LargeFile(), false); });
    add(benchname::LoadLargeFile, [](benchmark::State& rState) { Load(rState, LargeFile(), true); });
    const auto addText = [&rRounds](const CHAR* pName, VOID (*run)(benchmark::State&))
    { rRounds.Add(pName, run)->Unit(benchmark::kMicrosecond); };
    addText(benchname::GetMemberText, [](benchmark::State& rState) { GetText(rState, TextRecord, "nodeSize"); });
    addText(benchname::GetModuleText, [](benchmark::State& rState) { GetText(rState, TextModule, nullptr); });
    addText(benchname::SetMemberText, SetText);
    addText(benchname::ModuleInfo, GetInfo);
}
