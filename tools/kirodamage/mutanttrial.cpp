// What the programs do with a file, on each mutant.

#include <cctype>
#include <cmath>
#include <cstdio>
#include <random>
#include <stdexcept>

#include "host/discardlog.h"
#include "tools/debugdata/debugfile.h"
#include "tools/debugdata/debugtext.h"
#include "tools/kirodamage/coreuse.h"
#include "tools/kirodamage/heaplimit.h"
#include "tools/kirodamage/mutant.h"
#include "tools/kirosim/runreport.h"
#include "tools/kirosim/simulation.h"
#include "tools/program/privatefile.h"
#include "tools/recording/replayer.h"
#include "tools/tuningfile/binaryoutput.h"
#include "tools/tuningfile/inputerror.h"
#include "tools/tuningfile/textinput.h"

namespace kirodamage
{

namespace
{

constexpr UINT32 FramesPerScene = 12;
constexpr CHAR   TextName[]     = "mutant.yaml";

VOID NoteFault(TrialResult& rResult, const std::string& rText)
{
    (VOID) std::snprintf(rResult.fault, sizeof(rResult.fault), "%s", rText.c_str());
}

/// A refusal is one line with the place in front. @param isText whether that has line and column
VOID JudgeRefusal(const std::string& rMessage, const std::string& rName, bool isText, TrialResult& rResult)
{
    const size_t place  = rName.size() + 1;
    const bool   isName = rMessage.starts_with(rName + ":");
    const bool isLine = isName && rMessage.size() > place && std::isdigit(static_cast<unsigned char>(rMessage[place]));
    if (!(isText ? isLine : isName) || rMessage.size() < place + 8 || rMessage.find('\n') != std::string::npos)
    {
        NoteFault(rResult, "is refused without place or reason: " + rMessage);
    }
}

VOID UseTuning(const Mutant& rMutant, TrialResult& rResult)
{
    std::vector<BYTE> compiled;
    try
    {
        const std::string_view text(reinterpret_cast<const CHAR*>(rMutant.bytes.data()), rMutant.bytes.size());
        compiled = tuningfile::WriteBinary(tuningfile::ParseText(text, TextName), tuningfile::NewestVersion);
    }
    catch (const tuningfile::InputError& rFault)
    {
        JudgeRefusal(rFault.what(), TextName, true, rResult);
        return;
    }
    TuningSetManager store("campaign");
    store.SetLiveTuningAutostart(false);
    rResult.isUsable = store.LoadBinaryParameters(compiled.data(), compiled.size());
    if (!rResult.isUsable)
    {
        NoteFault(rResult, "compiles, but is refused: " + store.GetErrorText());
        return;
    }
    std::mt19937_64 random(rMutant.useSeed);
    rResult.frames = RunCore(store, random).frames;
}

/// A scene as it is, or one of its variants.
kirosim::Scene ReadAny(const std::string& rPath, UINT64 choice)
{
    const std::vector<std::string> variants = kirosim::ReadVariants(rPath);
    const size_t                   index    = static_cast<size_t>(choice % (variants.size() + 1));
    return kirosim::ReadScene(rPath, (index < variants.size()) ? variants[index] : "");
}

VOID UseScene(const Mutant& rMutant, const std::string& rPath, kirosim::LoadedTuning& rTuning, TrialResult& rResult)
{
    kirosim::Scene scene;
    try
    {
        scene = ReadAny(rPath, rMutant.useSeed);
    }
    catch (const tuningfile::InputError& rFault)
    {
        JudgeRefusal(rFault.what(), rPath, true, rResult);
        return;
    }
    rResult.isUsable = true;
    scene.frames     = std::min(scene.frames, FramesPerScene);
    kirosim::RunReport  report(scene);
    kirosim::Simulation simulation(scene, rTuning, DiscardLog);
    simulation.Run(
        [&](const kirosim::FrameRecord& rRecord)
        {
            ++rResult.frames;
            report.Add(rRecord);
        },
        [&report](const kirosim::FrameRecord& rRecord) { report.AddSecond(rRecord); });
    if (report.Format().empty())
    {
        NoteFault(rResult, "runs and reports nothing");
    }
}

VOID UseRecording(const std::string& rPath, kirosim::LoadedTuning& rTuning, TrialResult& rResult)
{
    recording::ReplayPlan plan;
    plan.tuning        = [&rTuning](const recording::TuningReference&) -> VOID* { return &rTuning.Manager(); };
    plan.differenceMax = 100;
    plan.logger        = DiscardLog;
    try
    {
        const recording::ReplayResult replay = recording::Replayer(rPath, plan).Run();
        rResult.isUsable                     = true;
        rResult.isDoubted                    = !replay.damage.empty() || !replay.differences.empty();
        rResult.frames                       = replay.frames;
    }
    catch (const std::runtime_error& rFault)
    {
        JudgeRefusal(rFault.what(), rPath, false, rResult);
    }
}

VOID UseDebugFile(const std::string& rPath, TrialResult& rResult)
{
    try
    {
        debugdata::DebugFileReader file(rPath);
        size_t                     size = 0;
        for (UINT64 index = 0; index < file.Count(); ++index)
        {
            const AECDebugData& rRecord = file.Read(index);
            size += debugdata::FormatLine(rRecord).size() + debugdata::FormatRecord(rRecord).size();
            ++rResult.frames;
        }
        rResult.isUsable = size > 0;
    }
    catch (const tuningfile::InputError& rFault)
    {
        JudgeRefusal(rFault.what(), rPath, false, rResult);
    }
}

}  // namespace

TrialResult TryMutant(const Mutant& rMutant, kirosim::LoadedTuning& rTuning)
{
    TrialResult                result;
    const program::PrivateFile file(rMutant.bytes);
    const std::string          path = file.Path();
    result.kind                     = static_cast<size_t>(rMutant.kind);
    heapwatch::Start();
    switch (rMutant.kind)
    {
    case MutantKind::Tuning:
        UseTuning(rMutant, result);
        break;
    case MutantKind::Scene:
        UseScene(rMutant, path, rTuning, result);
        break;
    case MutantKind::Recording:
        UseRecording(path, rTuning, result);
        break;
    default:
        UseDebugFile(path, result);
        break;
    }
    if (result.fault[0] == '\0')
    {
        (VOID) JudgeHeap(result);
    }
    return result;
}

}  // namespace kirodamage
