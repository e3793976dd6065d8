// Several cameras in threads of one process, on one store that reads its file on demand, beside a tuning tool.

#include <atomic>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

#include "tests/kirosim/simulationrun.h"
#include "tests/support/temporaryfile.h"
#include "tools/liveclient/liveclient.h"
#include "tools/tuningfile/files.h"

using namespace kirosim;

namespace
{

TEST(Instances, InThreadsDecideAsOneAlone)
{
    const TemporaryFile      file("instances_test.bin");
    LoadedTuning             tuning(file.Write(tuningfile::CompileFile(EXAMPLES_DIR "/tunings/phone.yaml")), true);
    std::vector<Scene>       scenes;
    std::vector<std::string> alone;
    for (const CHAR* pScene : {"natural", "hdr-staggered", "shake"})
    {
        scenes.push_back(SimulationRun::Example(pScene));
        scenes.back().frames = 60;
        // Also makes the tuning keep the selectors, so that the threads only look them up.
        alone.push_back(SimulationRun(scenes.back(), tuning).Trace());
    }
    std::vector<std::string> together(scenes.size());
    std::atomic<bool>        isOver = false;
    std::thread              tool(
        [&]
        {
            liveclient::Options options;
            options.port = tuning.Manager().GetLiveTuningPort();
            liveclient::Client client(options);
            do
            {
                for (const CHAR* pMode :
                     {"Default", "Default|Sensor.0|Usecase.Snapshot", "Default|Sensor.0|Usecase.Video"})
                {
                    EXPECT_FALSE(client.Get(pMode, "kiroconvergence", {}).empty());
                }
                (VOID) client.ActiveModes();
            } while (!isOver);
        });
    std::vector<std::jthread> cameras;
    for (size_t camera = 0; camera < scenes.size(); ++camera)
    {
        cameras.emplace_back([&, camera] { together[camera] = SimulationRun(scenes[camera], tuning).Trace(); });
    }
    cameras.clear();  // joins them
    isOver = true;
    tool.join();
    EXPECT_EQ(together, alone);
}

}  // namespace
