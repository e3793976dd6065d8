/// @file
/// The way from an instance to what CKIROTriggerManager needs of it.
#pragma once

#include "platform/tavocommonutils.h"

class IKIROContextManager;
struct IKIROCoreAlgo;

/// At any time between creation and DestroyInstance.
/// @return the instance's context, to be handed on and not used otherwise; it lives as long as the instance. Null for a
///         null table or instance
TAVO_VISIBLE IKIROContextManager* GetKiroContextManager(IKIROCoreAlgo* pAlgo);
