/// Makes a recording of what a hostile host does with an input of fuzz_hostcalls: recordings to begin with, of few and
/// small frames.
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "fuzz/hostrun.h"
#include "tools/recording/recorder.h"
#include "tools/tuningfile/files.h"

int main(int argc, char** argv)
{
    if (argc != 3)
    {
        std::fprintf(stderr, "usage: shortrecording INPUT RECORDING\n");
        return 2;
    }
    try
    {
        kirosim::LoadedTuning    tuning(TUNING_FILE, false);
        recording::Recorder      recorder(argv[2]);
        const KiroTableDecorator wrap = [&](IKIROCoreAlgo* pCore, const StatsTuningData& rTuning)
        { return recorder.Wrap(pCore, rTuning); };
        recorder.AddTuning(&tuning.Manager(), tuning.Reference());
        fuzz::RunHost(tuningfile::ReadBytes(argv[1]), KiroCoreLibrary(KiroCoreLibraryName, wrap), tuning, true);
        recorder.Finish();
    }
    catch (const std::exception& rError)
    {
        std::fprintf(stderr, "shortrecording: %s\n", rError.what());
        return 1;
    }
    return 0;
}
