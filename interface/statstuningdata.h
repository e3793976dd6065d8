/// @file
/// The handle to the tuning store.
#pragma once

#include "platform/tavotypes.h"

/// Which records of which store an instance reads. The core copies this record at creation and with
/// AECAlgoSetParamTunaraData; the store and the selectors stay the host's and are read at each use of a record, so they
/// outlive the instance. docs/integration.md says when a host may change them.
struct StatsTuningData
{
    VOID* pTuningSetManager;     ///< a TuningSetManager (parameters/tuningsetmanager.h), not null
    VOID* pTuningModeSelectors;  ///< array of TuningMode (parameters/tuningmode.h): Default first, then by level
    UINT  numSelectors;          ///< entries of the array, 1 to 7
};
