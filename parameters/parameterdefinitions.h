/// @file
/// The definition table of a parameter file: the shape of every structure as the tool knew it that wrote the file.
///
/// With it, code built for one schema reads a file written for another: members are found by the hash of their name,
/// and values are converted from the stored type.
#pragma once

#include <atomic>
#include <optional>
#include <unordered_map>
#include <vector>

#include "platform/tavotypes.h"
#include "schema/recordmember.h"

class IParameterLoggingAPI;
struct ParameterDefinitionStructure;

/// Kinds of records of the table, and types of members.
enum ParameterDefinitionType : UINT8
{
    ParameterDefinitionType_ScenarioMode    = 0,
    ParameterDefinitionType_ScenarioSubMode = 1,
    ParameterDefinitionType_Pipeline        = 2,
    ParameterDefinitionType_Module          = 4,
    ParameterDefinitionType_Structure       = 5,
    ParameterDefinitionType_EnumDefinition  = 6,
    ParameterDefinitionType_Signed8Bits     = 8,
    ParameterDefinitionType_Unsigned8Bits   = 9,
    ParameterDefinitionType_Signed16Bits    = 10,
    ParameterDefinitionType_Unsigned16Bits  = 11,
    ParameterDefinitionType_Signed32Bits    = 12,
    ParameterDefinitionType_Unsigned32Bits  = 13,
    ParameterDefinitionType_Signed64Bits    = 14,
    ParameterDefinitionType_Unsigned64Bits  = 15,
    ParameterDefinitionType_Float           = 16,
    ParameterDefinitionType_Double          = 17,
    ParameterDefinitionType_Hex8Bits        = 18,
    ParameterDefinitionType_Hex16Bits       = 19,
    ParameterDefinitionType_Hex32Bits       = 20,
    ParameterDefinitionType_Hex64Bits       = 21,
    ParameterDefinitionType_Boolean         = 22,
    ParameterDefinitionType_Enum            = 23,
    ParameterDefinitionType_String          = 24,
    ParameterDefinitionType_AlphaNumeric    = 25,
    ParameterDefinitionType_IDString        = 26,
    ParameterDefinitionType_IDStringRef     = 27,
    ParameterDefinitionType_Attribute       = 28
};

/// How a member is stored.
struct ParameterDefinitionElementInfo
{
    static constexpr UINT16 FloatFlag   = 1;    ///< values are stored as 4-byte floats, whatever the type
    static constexpr UINT16 PointerFlag = 2;    ///< stored as a count and the ID of a data table entry
    static constexpr UINT16 FixedFlag   = 128;  ///< a fixed array with a count in front

    bool IsFloat() const
    {
        return (Flags & FloatFlag) != 0 || Type == ParameterDefinitionType_Float;
    }

    bool IsPointer() const
    {
        return (Flags & PointerFlag) != 0;
    }

    bool IsFixed() const
    {
        return (Flags & FixedFlag) != 0;
    }

    bool IsString() const
    {
        return Type > ParameterDefinitionType_Enum;
    }

    bool IsStructure() const
    {
        return Type == ParameterDefinitionType_Structure;
    }

    // The forms in which the code declares members.

    /// @param count 1 for a single value
    bool IsFixedArrayOf(UINT32 count) const
    {
        return (count == 1 || IsFixed()) && MaxCount == count && !IsPointer();
    }

    bool IsOptional() const
    {
        return !IsFixed() && IsPointer() && MaxCount == 1;
    }

    bool IsSingleText() const
    {
        return !IsFixed() && !IsPointer() && IsString();
    }

    /// @return the type of the stored bytes: a flagged float counts as float
    ParameterDefinitionType StoredType() const
    {
        return IsFloat() ? ParameterDefinitionType_Float : Type;
    }

    /// @return the flags that follow from a member's least and greatest number of values
    static UINT16 FlagsFromCounts(UINT32 minimum, UINT32 maximum);

    /// @return bytes of one value: 1 for texts, 0 for what has no width of its own
    static UINT32 WidthOf(ParameterDefinitionType type);

    ParameterDefinitionType       Type         = ParameterDefinitionType_ScenarioMode;
    UINT32                        ID           = 0;  ///< structure ID for a structure
    UINT16                        Flags        = 0;
    UINT32                        MaxCount     = 0;
    UINT32                        ParentOffset = 0;        ///< bytes from the start of the enclosing record
    ParameterDefinitionStructure* Structure    = nullptr;  ///< not owned; null unless Type is a known structure
};

/// A member of a structure.
class ParameterDefinitionElement
{
public:
    ParameterDefinitionElement(UINT64 nameHash, const ParameterDefinitionElementInfo& rInfo, bool isRepeated = false)
        : NameHash(nameHash), IsRepeated(isRepeated), Info(rInfo)
    {
    }

    /// For members of a structure that is being read: nobody has marked them yet.
    ParameterDefinitionElement(ParameterDefinitionElement&& rOther) noexcept
        : NameHash(rOther.NameHash), IsRepeated(rOther.IsRepeated), Info(rOther.Info)
    {
    }

    /// @return how it is stored, null where that is not known any more
    const ParameterDefinitionElementInfo* GetInfo() const
    {
        return Info.has_value() ? &*Info : nullptr;
    }

    /// @return bytes of one stored value: 1 for texts, 4 for flagged floats, a structure's Size, 0 where there is none
    UINT32 GetSize() const;

    const UINT64                                  NameHash;
    const bool                                    IsRepeated;       ///< another member of its name stands before it
    std::atomic<bool>                             Verified{false};  ///< a record had it in the layout the code expects
    std::optional<ParameterDefinitionElementInfo> Info;             ///< none once it has matched and been pruned
};

/// The members of a structure, in the order of the file and by name.
class ParameterDefinitionMembers
{
public:
    /// Makes room. @param count of members that are likely to follow
    VOID Reserve(UINT32 count);

    /// Appends a member. Of members of one name the first is found, and the others are marked as repeated.
    /// @return the member, until another one is appended
    ParameterDefinitionElement& Append(UINT64 nameHash, const ParameterDefinitionElementInfo& rInfo);

    /// @return null if there is no such member
    ParameterDefinitionElement* Find(UINT64 nameHash);

    UINT32 Count() const
    {
        return static_cast<UINT32>(m_elements.size());
    }

    /// @param index below Count()
    ParameterDefinitionElement& operator[](size_t index)
    {
        return m_elements[index];
    }

    auto begin()
    {
        return m_elements.begin();
    }

    auto end()
    {
        return m_elements.end();
    }

    auto begin() const
    {
        return m_elements.begin();
    }

    auto end() const
    {
        return m_elements.end();
    }

private:
    static constexpr UINT32 FreeSlot  = 0xFFFFFFFF;
    static constexpr UINT32 LinearMax = 8;  ///< members that are found without slots

    UINT32& SlotOf(UINT64 nameHash);
    VOID    SetSlotCount(size_t count);

    std::vector<ParameterDefinitionElement> m_elements;
    std::vector<UINT32> m_slots;  ///< positions by name hash, of more than LinearMax members: a power of two of slots,
                                  ///< at most half of them taken
};

/// A structure: the members of a record.
struct ParameterDefinitionStructure
{
    UINT32            StructureID  = 0;
    UINT64            NamePosition = 0;     ///< of its type's name in the section
    UINT32            Size         = 0;     ///< bytes of a record, its byte count included; 0 if there are no members
    std::atomic<bool> MissedMember{false};  ///< the code asked for a member that the file's schema does not have

    ParameterDefinitionMembers Members;

    /// @return null if there is no such member
    ParameterDefinitionElement* FindChild(UINT64 nameHash)
    {
        return Members.Find(nameHash);
    }

    /// @return whether its members, and those of what they contain, are the stored members of the record, at the places
    ///         where the code expects them: then a record can be read by its table
    bool IsLayoutOf(const tuning::RecordDescription& rRecord);

private:
    bool HasLayoutOf(const tuning::RecordDescription& rRecord);

    // The records that were compared with it last: most structures are only ever read as one.
    std::atomic<const tuning::RecordDescription*> m_pSame{nullptr};
    std::atomic<const tuning::RecordDescription*> m_pOther{nullptr};
};

/// The root structure of a module.
struct ParameterDefinitionModule
{
    UINT32 StructureID  = 0;
    UINT64 NamePosition = 0;  ///< of its name in the section
};

/// All definitions of a file.
///
/// Filled before records are loaded, and pruned after; in between, loading threads only read, set the marks `Verified`
/// and `MissedMember`, and note what IsLayoutOf has found.
class ParameterDefinitions
{
public:
    /// By name hash.
    using ModuleMap = std::unordered_map<UINT64, ParameterDefinitionModule>;

    /// By structure ID.
    using StructureMap = std::unordered_map<UINT32, ParameterDefinitionStructure>;

    /// Reads a definition section.
    /// @param countedArrays records of the file have a count in front of fixed arrays
    /// @return false, with what was read before, if the section ends early or holds an unknown kind of record
    bool Read(const BYTE* pSection, UINT32 size, UINT32 alignment, bool countedArrays,
              const IParameterLoggingAPI* pLog);

    /// Drops what has matched and is not needed to read the rest of the file.
    VOID Prune();

    /// @return null if unknown or dropped
    ParameterDefinitionStructure* FindStructure(UINT32 structureId) const;
    ParameterDefinitionStructure* FindModuleStructure(UINT64 nameHash) const;

    UINT32 StructureCount() const
    {
        return static_cast<UINT32>(m_structures.size());
    }

private:
    ModuleMap            m_modules;
    mutable StructureMap m_structures;  ///< whoever finds one may mark it
};
