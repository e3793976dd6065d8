/// @file
/// Tuning module kirodbconvactivescd.
#pragma once

#include "schema/kiroglobalelements.h"

namespace kirodbconvactivescd
{

/// One choice of the bank.
struct DBConvActiveSCDPayload
{
    UINT32 dataID;
    CHAR*  description;
    UINT32 SCDID;
};
TUNING_RECORD(DBConvActiveSCDPayload)
    MEMBER(dataID,
        .meaning = "Number by which priorities and hosts select this choice, from 1; an entry numbered 0 can only be "
                   "the fallback as the last of the bank.",
        .unit = Unit::ID, .range = AtLeast(1), .odd = AtLeast(0), .start = "1", .acts = Acts::NewTuning,
        .refers = {DefinesBank(BankIDConvActiveSCD)})
    MEMBER(description,
        .meaning = "Name of this choice for the reader of the tuning; read by no stage.",
        .acts = Acts::Never)
    MEMBER(SCDID,
        .meaning = "Detector (its SCDId) that convergence heeds: while its hold time runs the exposure rests, but not "
                   "in the preflash nor after a frame with predictive gain, and once the hold has ended and the "
                   "exposure has settled it is rebased. A number that no detector has, such as 0, never holds.",
        .unit = Unit::ID, .range = AtLeast(0), .start = "0", .refers = {Reads(Thing::Detector).Unless(0)})
TUNING_RECORD_END

BANK_MODULE(KIRODBConvActiveSCDType, DBConvActiveSCDPayload,
    "The bank that names the scene change detector that convergence heeds.",
    .meaning = "Choices of a detector, at most 1000; the last one is the fallback. Without any, the detector heeded "
               "before stays, at first none.",
    .entries = {0, 1000})

} // namespace kirodbconvactivescd
