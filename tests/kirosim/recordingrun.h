/// @file
/// Recordings of the beginnings of scenes, their replays, and their chunks.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "host/discardlog.h"
#include "tests/kirosim/simulationrun.h"
#include "tests/support/temporaryfile.h"
#include "tools/recording/chunks.h"
#include "tools/recording/recorder.h"
#include "tools/recording/replayer.h"
#include "tools/recording/slots.h"
#include "tools/tuningfile/bytes.h"

namespace recordingtest
{

using namespace kirosim;
using namespace recording;

inline LoadedTuning& Phone()
{
    static LoadedTuning tuning(EXAMPLES_DIR "/tunings/phone.yaml");
    return tuning;
}

/// A recording that is gone with the test.
class RecordingFile : public TemporaryFile
{
public:
    RecordingFile() : TemporaryFile("recording.rec")
    {
    }

    const TemporaryFile part{"recording.rec" + std::string(ChunkWriter::PartSuffix)};  ///< until it has come to its end
};

/// Runs the beginning of a scene. @param pPath of the recording, null for none
inline SimulationRun RunScene(const std::string& rScene, UINT32 frames, LoadedTuning& rTuning, const CHAR* pPath)
{
    Scene scene  = SimulationRun::Example(rScene);
    scene.frames = frames;
    if (pPath == nullptr)
    {
        return SimulationRun(scene, rTuning);
    }
    Recorder recorder(pPath);
    recorder.AddTuning(&rTuning.Manager(), rTuning.Reference());
    SimulationRun run(scene, rTuning,
                      [&](IKIROCoreAlgo* pAlgo, const StatsTuningData& rData) { return recorder.Wrap(pAlgo, rData); });
    recorder.Finish();
    return run;
}

inline ReplayResult ReplayOf(const std::string& rPath, LoadedTuning& rTuning = Phone(), size_t differenceMax = 1)
{
    ReplayPlan plan;
    plan.tuning        = [&](const TuningReference&) -> VOID* { return &rTuning.Manager(); };
    plan.differenceMax = differenceMax;
    plan.logger        = DiscardLog;
    return Replayer(rPath, plan).Run();
}

inline std::vector<Chunk> ChunksOf(const std::string& rPath)
{
    std::vector<Chunk> chunks;
    ChunkReader        reader(rPath);
    for (std::optional<Chunk> chunk = reader.Next(); chunk.has_value(); chunk = reader.Next())
    {
        chunks.push_back(std::move(*chunk));
    }
    return chunks;
}

/// The same with checksums that fit.
inline VOID WriteChunks(const std::string& rPath, const std::vector<Chunk>& rChunks)
{
    ChunkWriter writer(rPath);
    for (const Chunk& rChunk : rChunks)
    {
        writer.Write(rChunk.type, rChunk.payload);
    }
    writer.Commit();
}

/// @return the position of the nth call of a function, from 1
inline size_t FindCall(const std::vector<Chunk>& rChunks, Slot slot, UINT32 nth)
{
    const auto isCall = [&](const Chunk& rChunk)
    {
        return rChunk.type == ChunkType::Call && tuningfile::LoadInteger<UINT16>(rChunk.payload, 4) == UINT16(slot) &&
               --nth == 0;
    };
    return static_cast<size_t>(std::find_if(rChunks.begin(), rChunks.end(), isCall) - rChunks.begin());
}

}  // namespace recordingtest
