#include "tools/kirodamage/mutant.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <limits>
#include <random>

#include "host/discardlog.h"
#include "tools/debugdata/debugfile.h"
#include "tools/hostilefiles/recordingdamage.h"
#include "tools/kirodamage/textdamage.h"
#include "tools/kirosim/scene.h"
#include "tools/kirosim/simulation.h"
#include "tools/program/temporaries.h"
#include "tools/recording/recorder.h"
#include "tools/tuningfile/files.h"

namespace kirodamage
{

namespace
{

constexpr UINT32 FramesOfOrigin = 6;  ///< few, so that much of a file is headers, and files are small

/// How much larger a file may become.
constexpr size_t GrownBytes = 65536;

/// Runs a scene's first frames with a recorder and a file of debug records.
VOID AddRun(const std::string& rScenePath, kirosim::LoadedTuning& rTuning, std::vector<Origin>& rOrigins)
{
    const std::string        folder = std::filesystem::temp_directory_path() / "kirodamage";
    const program::Temporary recordingFile(folder);
    const program::Temporary debugFile(folder);
    kirosim::Scene           scene = kirosim::ReadScene(rScenePath, "");
    scene.frames                   = FramesOfOrigin;
    {
        recording::Recorder recorder(recordingFile.Path());
        recorder.AddTuning(&rTuning.Manager(), rTuning.Reference());
        debugdata::DebugFileWriter debugData(debugFile.Path());
        {
            kirosim::Simulation simulation(scene, rTuning, DiscardLog,
                                           [&recorder](IKIROCoreAlgo* pAlgo, const StatsTuningData& rData)
                                           { return recorder.Wrap(pAlgo, rData); });
            simulation.MainCamera().EnableDebugData();
            simulation.Run([&](const kirosim::FrameRecord&) { debugData.Add(simulation.MainCamera().DebugData()); });
        }
        recorder.Finish();
        debugData.Commit();
    }
    rOrigins.push_back(
        {MutantKind::Recording, "a recording of " + rScenePath, tuningfile::ReadBytes(recordingFile.Path())});
    rOrigins.push_back(
        {MutantKind::DebugFile, "debug records of " + rScenePath, tuningfile::ReadBytes(debugFile.Path())});
}

template <typename T> VOID Put(BYTE* pPlace, T value)
{
    std::memcpy(pPlace, &value, sizeof(value));
}

/// Puts an odd number into a field, which starts at a multiple of 4, or at any byte.
VOID ChangeField(BYTE* pBytes, size_t size, std::mt19937_64& rRandom)
{
    constexpr FLOAT floats[] = {
        0.0f, -1.0f, 1e30f, -1e30f, std::numeric_limits<FLOAT>::quiet_NaN(), std::numeric_limits<FLOAT>::infinity()};
    constexpr UINT32 numbers[] = {0, 1, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    if (size < sizeof(UINT32))
    {
        return;
    }
    const size_t place = static_cast<size_t>(rRandom() % (size - sizeof(UINT32) + 1));
    switch (rRandom() % 4)
    {
    case 0:
        pBytes[place] = static_cast<BYTE>(rRandom());
        break;
    case 1:
        Put(pBytes + place / sizeof(FLOAT) * sizeof(FLOAT), floats[rRandom() % std::size(floats)]);
        break;
    default:
        Put(pBytes + place / sizeof(UINT32) * sizeof(UINT32), numbers[rRandom() % std::size(numbers)]);
        break;
    }
}

size_t ChangeFields(BYTE* pBytes, size_t size, std::mt19937_64& rRandom)
{
    for (UINT64 changes = 1 + rRandom() % 8; changes > 0; --changes)
    {
        ChangeField(pBytes, size, rRandom);
    }
    return (rRandom() % 16 == 0) ? static_cast<size_t>(rRandom() % (size + 1)) : size;
}

std::vector<BYTE> DamageRecording(std::vector<BYTE> bytes, std::mt19937_64& rRandom)
{
    const size_t size = bytes.size();
    if (rRandom() % 8 == 0)
    {
        bytes.resize(ChangeFields(bytes.data(), size, rRandom));
        return bytes;
    }
    bytes.resize(size + GrownBytes);
    bytes.resize(hostilefiles::DamageChunk(bytes.data(), size, bytes.size(), static_cast<UINT32>(rRandom()),
                                           [&rRandom](BYTE* pBytes, size_t count, size_t)
                                           { return ChangeFields(pBytes, count, rRandom); }));
    hostilefiles::SealRecording(bytes.data(), bytes.size());
    return bytes;
}

std::vector<BYTE> DamageBytes(const Origin& rOrigin, std::mt19937_64& rRandom)
{
    std::vector<BYTE> bytes = rOrigin.bytes;
    if (rOrigin.kind == MutantKind::Recording)
    {
        return DamageRecording(std::move(bytes), rRandom);
    }
    if (rOrigin.kind == MutantKind::DebugFile)
    {
        bytes.resize(ChangeFields(bytes.data(), bytes.size(), rRandom));
        return bytes;
    }
    const std::string text = DamageText(std::string(bytes.begin(), bytes.end()), rRandom);
    return {text.begin(), text.end()};
}

}  // namespace

const CHAR* NameOf(MutantKind kind)
{
    constexpr const CHAR* names[MutantKinds] = {"tuning", "scene", "recording", "debug file"};
    return names[static_cast<size_t>(kind)];
}

std::vector<Origin> ReadOrigins(const std::vector<std::string>& rTunings, const std::vector<std::string>& rScenes,
                                kirosim::LoadedTuning& rTuning)
{
    std::vector<Origin> origins;
    for (const std::string& rPath : rTunings)
    {
        origins.push_back({MutantKind::Tuning, rPath, tuningfile::ReadBytes(rPath)});
    }
    for (const std::string& rPath : rScenes)
    {
        origins.push_back({MutantKind::Scene, rPath, tuningfile::ReadBytes(rPath)});
        AddRun(rPath, rTuning, origins);
    }
    return origins;
}

Mutant MakeMutant(const std::vector<Origin>& rOrigins, UINT64 seed, UINT64 number)
{
    std::mt19937_64            random(SeedOf(seed, number));
    const auto                 kind = static_cast<MutantKind>(number % MutantKinds);
    std::vector<const Origin*> candidates;
    for (const Origin& rOrigin : rOrigins)
    {
        if (rOrigin.kind == kind)
        {
            candidates.push_back(&rOrigin);
        }
    }
    const Origin& rOrigin = *candidates[random() % candidates.size()];
    Mutant        mutant{kind, rOrigin.name, {}, random()};
    mutant.bytes = DamageBytes(rOrigin, random);
    return mutant;
}

}  // namespace kirodamage
