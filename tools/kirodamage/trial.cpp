#include "tools/kirodamage/trial.h"

#include <cstdio>
#include <memory>

#include "parameters/parametersetmanager.h"
#include "schema/modules.h"
#include "tools/heapwatch/heapwatch.h"
#include "tools/hostilefiles/loadablefile.h"
#include "tools/hostilefiles/storeuser.h"
#include "tools/kirodamage/coreuse.h"
#include "tools/kirodamage/errorlines.h"
#include "tools/kirodamage/heaplimit.h"

namespace kirodamage
{

namespace
{

using hostilefiles::LoadableFile;
using hostilefiles::StoreUser;
using hostilefiles::UseFindings;

constexpr UINT32 FilesPerCamera = 16;  ///< of the accepted ones
constexpr UINT32 ModeCache      = 5;   ///< little enough for modes to be evicted

std::unique_ptr<ParameterSetManager> MakeStore(bool isFileMode)
{
    ParameterSetManager::Options options;
    options.activeModeCacheSize = ModeCache;
    options.fileMode            = isFileMode;
    return std::make_unique<ParameterSetManager>("campaign", tuning::TuningModules, options);
}

/// Puts the file in the place of itself while it is in use.
VOID Replace(ParameterSetManager& rStore, const LoadableFile& rFile, bool toBuffer)
{
    if (rFile.IsFileMode())
    {
        (VOID) rStore.ReloadBinaryParameters(toBuffer);
        return;
    }
    std::unique_ptr<ParameterSetManager> pOther = MakeStore(false);
    if (rFile.LoadInto(*pOther))
    {
        (VOID) rStore.UpdateParameters(std::move(pOther));
    }
}

VOID LoadAndUse(const LoadableFile& rFile, UINT64 useSeed, TrialResult& rResult)
{
    std::mt19937_64                            random(useSeed);
    const UINT64                               complaints = errorlines::Count();
    const std::unique_ptr<ParameterSetManager> pStore     = MakeStore(rFile.IsFileMode());
    rResult.isUsable                                      = rFile.LoadInto(*pStore);
    const bool isLoadDoubted                              = errorlines::Count() > complaints;
    StoreUser  user(*pStore, {.loadsModes = rFile.IsFileMode(), .complaints = errorlines::Count}, random);
    user.UseAll();
    if (rResult.isUsable)
    {
        Replace(*pStore, rFile, random() % 4 == 0);
        user.UseAll();
        volatile UINT64 sum = user.Sum();
        (VOID) sum;
    }
    const UseFindings& rFindings = user.Findings();
    rResult.fetched              = rFindings.fetched;
    rResult.withheld             = rFindings.withheld;
    rResult.isDoubted            = rResult.isUsable && (isLoadDoubted || rFindings.isDoubted);
    if (rFindings.isReticent)
    {
        (VOID) std::snprintf(rResult.fault, sizeof(rResult.fault), "withholds a module without a word");
    }
    // A refused file leaves nothing, but for the reason; asking must be safe all the same.
    if (!rResult.isUsable && (rResult.fetched > 0 || pStore->GetErrorText().empty()))
    {
        (VOID) std::snprintf(rResult.fault, sizeof(rResult.fault), "is refused without a reason or in part");
    }
}

/// A camera on the file. @return bytes of function tables, which outlive their instances
INT64 LoadAndExpose(const LoadableFile& rFile, UINT64 useSeed, TrialResult& rResult)
{
    std::mt19937_64  random(useSeed);
    TuningSetManager store("campaign");
    store.SetLiveTuningAutostart(false);
    if (!rFile.LoadInto(store))
    {
        return 0;
    }
    const CoreUse use = RunCore(store, random);
    rResult.frames    = use.frames;
    return use.bytesLeft;
}

}  // namespace

DamagedFile MakeFile(const std::vector<hostilefiles::Specimen>& rSpecimens, UINT64 seed, UINT64 number)
{
    std::mt19937_64 random(SeedOf(seed, number));
    const auto&     rSpecimen = rSpecimens[random() % rSpecimens.size()];
    const auto      kind      = static_cast<hostilefiles::DamageKind>(number % hostilefiles::DamageKinds);
    DamagedFile     file{kind, rSpecimen.name, random() % 2 == 0, {}, random()};
    file.bytes = hostilefiles::Damage(rSpecimen, kind, random);
    return file;
}

TrialResult TryFile(const DamagedFile& rFile)
{
    TrialResult result;
    result.kind = static_cast<size_t>(rFile.kind);
    const LoadableFile file(rFile.bytes, rFile.isFileMode);
    heapwatch::Start();
    LoadAndUse(file, rFile.useSeed, result);
    INT64 leftOnPurpose = 0;
    if (result.isUsable && rFile.useSeed % FilesPerCamera == 0)
    {
        leftOnPurpose = LoadAndExpose(file, rFile.useSeed, result);
    }
    const heapwatch::Report report = JudgeHeap(result);
    if (result.fault[0] == '\0' && report.kept > leftOnPurpose)
    {
        (VOID) std::snprintf(result.fault, sizeof(result.fault), "loses %lld bytes of memory",
                             report.kept - leftOnPurpose);
    }
    return result;
}

}  // namespace kirodamage
