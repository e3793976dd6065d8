// Debug records of a run: what is written is what was decided, and writing it decides nothing.

#include <gtest/gtest.h>

#include "tests/kirosim/simulationrun.h"
#include "tests/support/temporaryfile.h"
#include "tools/debugdata/debugfile.h"
#include "tools/debugdata/debugtext.h"

using namespace kirosim;

namespace
{

TEST(DebugRun, EveryFramesRecordShowsWhatWasDecided)
{
    const TemporaryFile file("debugrun_test.dbg");
    Scene               scene = ReadScene(EXAMPLES_DIR "/scenes/window.yaml", "");
    scene.frames              = 12;
    std::vector<FrameRecord> records;
    std::string              traces[2];
    for (const bool isRecorded : {false, true})
    {
        LoadedTuning               tuning(EXAMPLES_DIR "/tunings/phone.yaml");
        Simulation                 simulation(scene, tuning, DiscardLog);
        debugdata::DebugFileWriter writer(file.path);
        records.clear();
        if (isRecorded)
        {
            simulation.MainCamera().EnableDebugData();
        }
        simulation.Run(
            [&](const FrameRecord& rRecord)
            {
                records.push_back(rRecord);
                traces[isRecorded ? 1 : 0] += CsvLine(rRecord);
                writer.Add(simulation.MainCamera().DebugData());
            });
        writer.Commit();
    }
    EXPECT_EQ(traces[0], traces[1]);

    debugdata::DebugFileReader reader(file.path);
    ASSERT_EQ(reader.Count(), records.size());
    for (UINT64 index = 0; index < reader.Count(); ++index)
    {
        const AECDebugData& rRecord = reader.Read(index);
        const auto&         rFrame  = rRecord.frameHistoryInfo.currentFrame;
        const UINT32        frameID = rFrame.frameID;
        const UINT64        safe    = rFrame.exposureSets[AECAlgoExposureSafe].exposure;
        const UINT64        target  = rRecord.meteringInfo.exposures[AECAlgoExposureShort];
        EXPECT_EQ(frameID, index + 1);
        EXPECT_EQ(safe, records[index].decided.arbitration[AECAlgoExposureSafe].exposureSet.exposure);
        EXPECT_EQ(target, records[index].decided.metering.exposures[AECAlgoExposureShort]);
    }
    const std::string text = debugdata::FormatRecord(reader.Read(11));
    for (const CHAR* pPart :
         {"  frame 12: luma", "calculator 7 'Highlights': method 6", "analyzer 0 'Safe': safe exposure",
          "operation 'SafeRatio': priority 2, method 3 on 46.000", "'SafeHist' of frame 12: 256 bins",
          "flash: none so far"})
    {
        EXPECT_NE(text.find(pPart), std::string::npos) << pPart;
    }
}

}  // namespace
