/// @file
/// The handle to the tuning store.
#pragma once

#include "platform/tavotypes.h"

/// The core copies this record; the store and the selectors stay the host's.
struct StatsTuningData
{
    VOID* pTuningSetManager;     ///< a TuningSetManager
    VOID* pTuningModeSelectors;  ///< array of TuningMode, one per ModeType in enumeration order, Default first
    UINT  numSelectors;
};
