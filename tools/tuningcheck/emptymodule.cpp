#include "tools/tuningcheck/emptymodule.h"

#include "tools/tuningfile/samerecord.h"

namespace tuningcheck
{

bool IsEmpty(const tuningfile::Module& rModule)
{
    const tuning::RecordDescription& rRecord = *rModule.pDescription->pRecord;
    tuningfile::RecordArena          arena;
    VOID*                            pBlank = arena.Allocate(rRecord.size);
    tuningfile::InitializeModuleRecord(*rModule.pDescription, pBlank);
    return tuningfile::SameRecord(rRecord, rModule.pRecord, pBlank);
}

}  // namespace tuningcheck
