/// Recordings from anywhere: each is refused, or replayed as far as it is whole.
///
/// The first byte of an input says how it is used, the rest is the recording.
#include <random>
#include <stdexcept>

#include "host/discardlog.h"
#include "tools/hostilefiles/recordingdamage.h"
#include "tools/kirosim/loadedtuning.h"
#include "tools/program/privatefile.h"
#include "tools/recording/replayer.h"

extern "C" size_t LLVMFuzzerMutate(BYTE* pData, size_t size, size_t maxSize);

namespace
{

enum Use : BYTE
{
    AsItIs          = 1,  ///< checksums are not repaired
    ToTheFirstError = 2,  ///< the replay ends where an answer differs
    OtherTuning     = 4
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const BYTE* pData, size_t size)
{
    if (size < 1)
    {
        return 0;
    }
    static kirosim::LoadedTuning tuning(TUNING_FILE, false);
    static kirosim::LoadedTuning otherTuning(OTHER_TUNING_FILE, false);
    kirosim::LoadedTuning&       rTuning = ((pData[0] & OtherTuning) != 0) ? otherTuning : tuning;

    std::vector<BYTE> file(pData + 1, pData + size);
    if ((pData[0] & AsItIs) == 0)
    {
        hostilefiles::SealRecording(file.data(), file.size());
    }
    const program::PrivateFile memory(file);

    recording::ReplayPlan plan;
    plan.tuning        = [&rTuning](const recording::TuningReference&) -> VOID* { return &rTuning.Manager(); };
    plan.differenceMax = ((pData[0] & ToTheFirstError) != 0) ? 1 : 1000;
    plan.logger        = DiscardLog;
    try
    {
        (VOID) recording::Replayer(memory.Path(), plan).Run();
    }
    catch (const std::runtime_error&)
    {
        return 0;  // refused
    }
    return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(BYTE* pData, size_t size, size_t maxSize, unsigned int seed)
{
    std::minstd_rand random(seed);
    if (random() % 8 == 0 || size < 2)
    {
        return LLVMFuzzerMutate(pData, size, maxSize);
    }
    return 1 +
           hostilefiles::DamageChunk(pData + 1, size - 1, maxSize - 1, static_cast<UINT32>(random()), LLVMFuzzerMutate);
}
