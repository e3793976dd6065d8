/// @file
/// Records as text.
#pragma once

#include "schema/tuningrecord.h"
#include "tools/tuningfile/textnode.h"
#include "tools/tuningfile/tuning.h"

namespace tuningfile
{

/// A number, a boolean or an enumerator of a member, as a text tuning has it.
std::string ScalarText(const tuning::RecordMember& rMember, const BYTE* pValue);

/// The members of a record as a map.
/// @param pBase a record of the same type from which the reader of the text will start: only what differs from it is
///              listed. Null lists everything
TextNode RecordToText(const tuning::RecordDescription& rDescription, const VOID* pRecord, const VOID* pBase);

/// The members of a module as a map.
/// @param pAbove the same module of the nearest mode above that has it, null if there is none
TextNode ModuleToText(const Module& rModule, const Module* pAbove);

}  // namespace tuningfile
