/// @file
/// The way from an instance to what CKIROTriggerManager needs of it.
#pragma once

#include "platform/tavocommonutils.h"

class IKIROContextManager;
struct IKIROCoreAlgo;

/// @return the instance's context, which lives as long as the instance; null for a null table or instance
TAVO_VISIBLE IKIROContextManager* GetKiroContextManager(IKIROCoreAlgo* pAlgo);
