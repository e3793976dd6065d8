/// Calls of a hostile host: the functions of the table in any order, with any records that a host may hand over, and
/// whole frames in between, on the tuning of a phone and on one with every way to measure.
#include "fuzz/hostrun.h"

extern "C" int LLVMFuzzerTestOneInput(const BYTE* pData, size_t size)
{
    static const KiroCoreLibrary library;
    static kirosim::LoadedTuning tunings[] = {kirosim::LoadedTuning(TUNING_FILE, false),
                                              kirosim::LoadedTuning(OTHER_TUNING_FILE, false)};

    const size_t which = (size > 0 && (pData[0] & fuzz::SecondTuning) != 0) ? 1 : 0;
    fuzz::RunHost({pData, size}, library, tunings[which], false);
    return 0;
}
