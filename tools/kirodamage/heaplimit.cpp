#include "tools/kirodamage/heaplimit.h"

#include <cstdio>

namespace kirodamage
{

heapwatch::Report JudgeHeap(TrialResult& rResult)
{
    const heapwatch::Report report = heapwatch::Read();
    rResult.largest                = report.largest;
    rResult.most                   = report.most;
    if (report.largest > MaxAllocation)
    {
        (VOID) std::snprintf(rResult.fault, sizeof(rResult.fault), "allocates %llu bytes at once", report.largest);
    }
    else if (report.most > MaxAllocation)
    {
        (VOID) std::snprintf(rResult.fault, sizeof(rResult.fault), "holds %llu bytes at one time", report.most);
    }
    return report;
}

}  // namespace kirodamage
