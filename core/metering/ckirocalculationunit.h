/// @file
/// Where a scene analyzer takes its numbers from: a bank entry, or a two-level tree that two bank entries drive.
///
/// A tree keeps its place between frames, so each unit has an object of its own, loaded when the tuning changes.
#pragma once

#include "core/base/ckirobankmanager.h"
#include "core/base/ckirotriggerclasses.h"
#include "schema/kirometeringsceneanalyzer.h"

namespace calculationunit
{

// Loading a tree starts it afresh; it allocates only the first time on an object.
VOID LoadTree(const kirometeringsceneanalyzer::CalculationUnitTriggerSystemType& rTuning, CKIROOneFloatXML& rTree);
VOID LoadTree(const kirometeringsceneanalyzer::TargetCalculationUnitTriggerSystemType& rTuning,
              CKIROTwoFloatsXML&                                                       rTree);

/// Evaluates a loaded tree at the values of its two bank entries. @return zeros for a tree without zones
StartEnd ReadTree(const kirometeringsceneanalyzer::TargetCalculationUnitTriggerSystemType& rTuning,
                  CKIROTwoFloatsXML& rTree, CKIROBankManager& rBanks);

/// @param rTree loaded with the unit's tree if the unit selects it
/// @return 0, with a log, if the source cannot be read
FLOAT RunCalculationUnit(const kirometeringsceneanalyzer::CalculationUnitType& rUnit, CKIROOneFloatXML& rTree,
                         CKIROBankManager& rBanks);

/// The same for ranges.
StartEnd RunTargetCalculationUnit(const kirometeringsceneanalyzer::TargetCalculationUnitType& rUnit,
                                  CKIROTwoFloatsXML& rTree, CKIROBankManager& rBanks);

/// The weight of a range: a bank entry is read as a range, like its value, and counts with its start.
FLOAT RunTargetWeightUnit(const kirometeringsceneanalyzer::CalculationUnitType& rUnit, CKIROOneFloatXML& rTree,
                          CKIROBankManager& rBanks);

}  // namespace calculationunit
