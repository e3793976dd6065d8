/// @file
/// A record of all forms and types that tables allow, also those that no module uses at present.
#pragma once

#include "schema/modules.h"
#include "schema/namehash.h"
#include "schema/tuningrecord.h"

namespace allforms
{

enum class Colour : INT32
{
    Red   = 0,
    Green = 4
};
TUNING_ENUM(Colour)
    ENUMERATOR(Red)
    ENUMERATOR(Green)
TUNING_ENUM_END

struct PointType
{
    float x;
    INT32 y;
};
TUNING_RECORD(PointType)
    MEMBER(x)
    MEMBER(y)
TUNING_RECORD_END

struct LeafType
{
    UINT32 curveCount;
    UINT32 curveID;
    float* curve;
    CHAR*  name;
};
TUNING_RECORD(LeafType)
    VARIABLE(curve)
    MEMBER(name)
TUNING_RECORD_END

/// One member of every type and form.
struct EverythingType
{
    UINT32                  SymbolTableID;
    module_versionStruct    module_version;
    parameter_versionStruct parameter_version;
    INT8                    signed8;
    UINT8                   unsigned8[3];
    INT16                   signed16;
    UINT16                  unsigned16;
    INT64                   signed64;
    UINT64                  unsigned64;
    double                  precise;
    Colour                  colour;
    Colour                  palette[3];
    BOOL                    enable;
    PointType               origin;
    PointType               corners[2];
    CHAR*                   title;
    CHAR*                   labels[2];
    UINT32                  coloursCount;
    UINT32                  coloursID;
    Colour*                 colours;
    UINT32                  flagsCount;
    UINT32                  flagsID;
    BOOL*                   flags;
    UINT32                  leavesCount;
    UINT32                  leavesID;
    LeafType*               leaves;
    UINT32                  notesCount;
    UINT32                  notesID;
    CHAR**                  notes;
    UINT32                  limitCount;
    UINT32                  limitID;
    float                   limit;
    UINT32                  centreCount;
    UINT32                  centreID;
    PointType               centre;
    UINT32                  remarkCount;
    UINT32                  remarkID;
    CHAR*                   remark;
    UINT32                  absentCount;
    UINT32                  absentID;
    float*                  absent;
    UINT32                  last;
};
TUNING_RECORD(EverythingType)
    MODULE_HEADER("A record of tests.")
    MEMBER(signed8)
    MEMBER(unsigned8)
    MEMBER(signed16)
    MEMBER(unsigned16)
    MEMBER(signed64)
    MEMBER(unsigned64)
    MEMBER(precise)
    MEMBER(colour)
    MEMBER(palette)
    BOOLEAN(enable)
    MEMBER(origin)
    MEMBER(corners)
    MEMBER(title)
    MEMBER(labels)
    VARIABLE(colours)
    VARIABLE_BOOLEAN(flags)
    VARIABLE(leaves)
    VARIABLE(notes)
    OPTIONAL(limit)
    OPTIONAL(centre)
    OPTIONAL(remark)
    VARIABLE(absent)
    MEMBER(last)
TUNING_RECORD_END

/// The values that the tests put into files; texts and arrays are those of this object.
struct Everything
{
    Colour         colours[3] = {Colour::Green, Colour::Red, Colour::Green};
    float          curve[2]   = {0.5F, 0.75F};
    LeafType       leaves[2]  = {{2, 0, curve, const_cast<CHAR*>("sky")}, {0, 0, nullptr, const_cast<CHAR*>("")}};
    BOOL           flags[2]   = {TRUE, FALSE};
    CHAR*          notes[2]   = {const_cast<CHAR*>("n1"), const_cast<CHAR*>("n2")};
    EverythingType record     = {.module_version    = {.major_revision = 7, .incr_revision = 9},
                                 .parameter_version = {.revision = const_cast<CHAR*>("rev 3")},
                                 .signed8           = -8,
                                 .unsigned8         = {1, 0, 255},
                                 .signed16          = -1600,
                                 .unsigned16        = 65000,
                                 .signed64          = -(1LL << 40),
                                 .unsigned64        = 0xFFFFFFFF00000001ULL,
                                 .precise           = 0.1,
                                 .colour            = Colour::Green,
                                 .palette           = {Colour::Green, Colour::Red, Colour::Green},
                                 .enable            = TRUE,
                                 .origin            = {1.5F, -2},
                                 .corners           = {{}, {2.5F, 3}},
                                 .title             = const_cast<CHAR*>("a title"),
                                 .labels            = {const_cast<CHAR*>("left"), const_cast<CHAR*>("right")},
                                 .coloursCount      = 3,
                                 .colours           = colours,
                                 .flagsCount        = 2,
                                 .flags             = flags,
                                 .leavesCount       = 2,
                                 .leaves            = leaves,
                                 .notesCount        = 2,
                                 .notes             = notes,
                                 .limitCount        = 1,
                                 .limit             = 0.25F,
                                 .centreCount       = 1,
                                 .centre            = {9.0F, 10},
                                 .remarkCount       = 1,
                                 .remark            = const_cast<CHAR*>("remark"),
                                 .last              = 0xCAFE};
};

inline constexpr tuning::ModuleDescription Module = {
    "allforms", namehash::OfName("allforms"), 1, 2, 3, TuningRecordOf(static_cast<const EverythingType*>(nullptr))};

}  // namespace allforms
