/// @file
/// Walks the values of a module with all that a judgement of them needs: where they are, what they mean, what is
/// around.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "schema/memberwords.h"
#include "schema/recordwalk.h"
#include "tools/tuningfile/tuning.h"

namespace tuningcheck
{

/// A module as one mode has it.
struct ModulePlace
{
    const tuningfile::Tuning*    pTuning;
    const tuningfile::ModeTable* pTable;
    UINT32                       mode;  ///< that has the module itself
    const tuningfile::Module*    pModule;
    const tuningfile::Module*    pAbove;  ///< the same module of the nearest mode above, null if there is none
};

/// A record, and where it stands in the records around it.
struct RecordSpot;

/// A member of a record, or one of the values of a member.
struct Spot
{
    const RecordSpot*           pIn;
    const tuning::RecordMember* pMember;
    const tuning::MemberWords*  pWords;
    const tuning::Words*        pJudged;  ///< the words that a number is judged by; see meaning::EffectiveWords
    const BYTE*                 pValue;   ///< the value; of a member as a whole: what the record holds
    std::optional<UINT32>       item;     ///< index of the value in a list; none for a member as a whole

    /// @return "data[0].value.tolerance"
    std::string Path() const;

    /// @return the place in the text: its own, or that of what is nearest around it; none without text
    std::optional<tuningfile::TextPlace> Place() const;

    /// @return whether the mode above holds the same number or text in the same place
    bool IsInherited() const;

    /// @return the number; of a text or a record 0
    DOUBLE Number() const;

    /// @return the value as a text tuning has it: a number, a flag, an enumerator or a text
    std::string ValueText() const;
};

struct RecordSpot
{
    const ModulePlace*               pModule;
    const Spot*                      pAround;  ///< the value that this record is; null for the module's own record
    const tuning::RecordDescription* pType;
    const tuning::RecordWords*       pWords;
    const BYTE*                      pRecord;
    const BYTE*                      pAbove;  ///< the same record in the mode above, null if there is none

    /// @return the member of a name, null if there is none
    const tuning::RecordMember* Find(std::string_view name) const
    {
        return tuning::FindMember(*pType, name);
    }

    /// @return a value of a single number of the record
    template <typename T> T Get(const tuning::RecordMember& rMember) const
    {
        return tuning::Load<T>(pRecord + rMember.offset);
    }
};

/// What a walk calls. Spots live until the call returns.
struct Visitor
{
    /// Each member as a whole, before its values. @return whether to walk its values
    std::function<bool(const Spot&)> member = [](const Spot&) { return true; };

    /// Each number and text.
    std::function<VOID(const Spot&)> value = [](const Spot&) {};

    /// Each record, before its members.
    std::function<VOID(const RecordSpot&)> record = [](const RecordSpot&) {};
};

/// Walks the stored values of a module; leaves out what no stage reads because a switch beside it is off (Words::when).
VOID WalkModule(const ModulePlace& rModule, const Visitor& rVisitor);

}  // namespace tuningcheck
