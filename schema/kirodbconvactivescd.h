/// @file
/// Tuning module kirodbconvactivescd: the bank that names the scene change detector that convergence heeds.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbconvactivescd
{

/// One choice of the bank.
struct DBConvActiveSCDPayload
{
    UINT32 dataID;       ///< from 1; 0 stands for the entry that the context selects
    CHAR*  description;  ///< name in logs
    UINT32 SCDID;        ///< ID of a scene change detector
};
TUNING_RECORD(DBConvActiveSCDPayload)
    MEMBER(dataID)
    MEMBER(description)
    MEMBER(SCDID)
TUNING_RECORD_END

BANK_MODULE(KIRODBConvActiveSCDType, DBConvActiveSCDPayload)

} // namespace kirodbconvactivescd
