/// @file
/// How a caller names one variant of the tuning: a path through the tree of modes, given as an array of selectors.
#pragma once

#include "platform/tavotypes.h"
#include "schema/tuningrecord.h"

/// The levels of the mode tree, from the root down.
enum class ModeType : UINT32
{
    Default  = 0,
    Sensor   = 1,
    Usecase  = 2,
    Feature1 = 3,
    Feature2 = 4,
    Scene    = 5,
    Effect   = 6,

    EnumModeType_COUNT = 7
};

enum class ModeUsecaseSubModeType : UINT32
{
    Preview           = 0,
    Snapshot          = 1,
    Video             = 2,
    ZSL               = 3,
    Liveshot          = 4,
    SnapshotReprocess = 5,
    IDEALRAW          = 6,
    IdealRawReprocess = 7
};

enum class ModeFeature1SubModeType : UINT32
{
    None            = 0,
    ISPHDR          = 1,
    ADRC            = 2,
    inSensorHDR3Exp = 3,
    MFHDRPreFusion  = 4,
    MFHDRFusion     = 5,
    MFHDRPostFusion = 6
};

enum class ModeFeature2SubModeType : UINT32
{
    None                     = 0,
    OISCapture               = 1,
    HLG                      = 2,
    HDR10                    = 3,
    MFNRBlend                = 4,
    MFNRPostFilter           = 5,
    AIDenoiserMFNRBlend      = 6,
    AIDenoiserMFNRPostFilter = 7,
    ZLLMFNRBlend             = 8,
    ZLLMFNRPostFilter        = 9,
    ZLLPostFusion            = 10
};

enum class ModeSceneSubModeType : UINT32
{
    None          = 0,
    Landscape     = 1,
    Snow          = 2,
    Beach         = 3,
    Sunset        = 4,
    Night         = 5,
    Portrait      = 6,
    BackLight     = 7,
    Sports        = 8,
    AntiShake     = 9,
    Flowers       = 10,
    CandleLight   = 11,
    Fireworks     = 12,
    Party         = 13,
    NightPortrait = 14,
    Theater       = 15,
    Action        = 16,
    AR            = 17,
    FacePriority  = 18,
    Barcode       = 19,
    BestShot      = 20
};

enum class ModeEffectSubModeType : UINT32
{
    None       = 0,
    Mono       = 1,
    Sepia      = 2,
    Negative   = 3,
    Solarize   = 4,
    Posterize  = 5,
    Aqua       = 6,
    Emboss     = 7,
    Sketch     = 8,
    Neon       = 9,
    Blackboard = 10,
    Whiteboard = 11
};

/// The variant within a level; which member counts follows from the level. Only the 16 bits of value take part in the
/// search for a mode. Sub-modes of a sensor are plain numbers; that of Default is 0.
union ModeSubModeType
{
    UINT16                  value;
    ModeUsecaseSubModeType  usecase;
    ModeFeature1SubModeType feature1;
    ModeFeature2SubModeType feature2;
    ModeSceneSubModeType    scene;
    ModeEffectSubModeType   effect;
};

/// One selector. The first selector of an array is Default and 0, and only the first may be Default; the others follow
/// in the order of their levels. A level may be left out, and several sub-modes of one level may follow one another.
struct TuningMode
{
    ModeType        mode;
    ModeSubModeType subMode;
};
TUNING_RECORD(TuningMode)
    NUMBER(mode)
    tuning::Row{tuning::DescribeMember<UINT32>("subMode", offsetof(Record, subMode))},
TUNING_RECORD_END

static_assert(sizeof(TuningMode) == 8, "hosts pass flat arrays of selectors");
