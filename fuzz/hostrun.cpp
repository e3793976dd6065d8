#include "fuzz/hostrun.h"

#include "fuzz/hostcamera.h"

using recording::Slot;

namespace fuzz
{

namespace
{

// Bound the time of an input.
constexpr UINT32 StepCountMax  = 200;
constexpr UINT32 FrameCountMax = 40;

constexpr BYTE SlotCount     = static_cast<BYTE>(Slot::Count);
constexpr BYTE SecondCamera  = 0x80;
constexpr BYTE RefusedBegin  = SlotCount;      ///< calls without an instance
constexpr BYTE HostStepBegin = 2 * SlotCount;  ///< what the reference host does

/// A mode for which the tuning of the phone has more than for all, and the sensor.
struct ModeChoice
{
    ModeType level;
    UINT16   subMode;
    UINT16   sensor;
};

constexpr UINT16 Of(auto subMode)
{
    return static_cast<UINT16>(subMode);
}

constexpr ModeChoice ModeChoices[] = {
    {ModeType::Default, 0, 0},
    {ModeType::Usecase, Of(ModeUsecaseSubModeType::Video), 0},
    {ModeType::Usecase, Of(ModeUsecaseSubModeType::Snapshot), 0},
    {ModeType::Feature1, Of(ModeFeature1SubModeType::inSensorHDR3Exp), 0},
    {ModeType::Feature1, Of(ModeFeature1SubModeType::MFHDRPreFusion), 0},
    {ModeType::Scene, Of(ModeSceneSubModeType::Action), 0},
    {ModeType::Scene, Of(ModeSceneSubModeType::AntiShake), 0},
    {ModeType::Default, 0, 10},  // from here on tuned as one of two cameras
    {ModeType::Default, 0, 20},
    {ModeType::Default, 0, 30},
    {ModeType::Default, 0, 31},
};

std::vector<TuningMode> Selectors(BYTE choice)
{
    const ModeChoice&       rChoice   = ModeChoices[choice % std::size(ModeChoices)];
    std::vector<TuningMode> selectors = kirosim::DefaultSelectors();

    selectors[static_cast<size_t>(ModeType::Sensor)].subMode.value = rChoice.sensor;
    selectors[static_cast<size_t>(rChoice.level)].subMode.value    = rChoice.subMode;
    return selectors;
}

VOID RunHostStep(HostCamera& rCamera, BYTE step, HostBytes& rBytes, UINT32& rFrameCount)
{
    switch (step % 14)
    {
    case 0:
        rCamera.BeginSession(rBytes);
        break;
    case 1:
        rCamera.Set(rBytes);
        break;
    case 2:
        rCamera.AskTunedData(rBytes);
        break;
    case 3:
        rCamera.Query(rBytes);
        break;
    case 4:
        rCamera.Sense(rBytes);
        break;
    case 5:
        rCamera.AskFlash(rBytes);
        break;
    case 6:
        if (rFrameCount++ < FrameCountMax)
        {
            rCamera.RunSnapshotFrame(rBytes);
        }
        break;
    default:
        if (rFrameCount++ < FrameCountMax)
        {
            rCamera.RunFrame(rBytes);
        }
        break;
    }
}

VOID RunStep(HostCamera& rCamera, BYTE step, HostBytes& rBytes, UINT32& rFrameCount)
{
    if (step < RefusedBegin)
    {
        rCamera.Call(static_cast<Slot>(step), TableUse::Instance, rBytes);
    }
    else if (step < HostStepBegin)
    {
        const TableUse use = (rBytes.Next() % 2 == 0) ? TableUse::Null : TableUse::WithoutInstance;
        rCamera.Call(static_cast<Slot>(step - RefusedBegin), use, rBytes);
    }
    else
    {
        RunHostStep(rCamera, static_cast<BYTE>(step - HostStepBegin), rBytes, rFrameCount);
    }
}

}  // namespace

VOID RunHost(std::span<const BYTE> input, const KiroCoreLibrary& rLibrary, kirosim::LoadedTuning& rTuning,
             bool isRecorded)
{
    HostBytes  bytes(input);
    const BYTE flags = bytes.Next();
    CameraPlan plan  = {&rLibrary, rTuning.Data(Selectors(bytes.Next()))};
    plan.isBare      = (flags & BareInstance) != 0;
    plan.isRecorded  = isRecorded;
    plan.isDebugging = (flags & DebugData) != 0;

    std::deque<HostCamera>        cameras;
    std::vector<AECMultiCamInfo*> records;
    for (UINT32 count = ((flags & TwoCameras) != 0) ? 2 : 1; count > 0; --count)
    {
        records.push_back(cameras.emplace_back(plan, bytes).OwnRecord());
    }
    for (HostCamera& rCamera : cameras)
    {
        rCamera.SetPeers(records);
    }

    UINT32 frameCount = 0;
    for (UINT32 count = 0; count < StepCountMax && !bytes.IsEmpty(); ++count)
    {
        const BYTE step = bytes.Next();
        try
        {
            RunStep(cameras[((step & SecondCamera) != 0) ? cameras.size() - 1 : 0],
                    static_cast<BYTE>(step & ~SecondCamera), bytes, frameCount);
        }
        catch (const recording::MalformedError&)
        {
            continue;  // the call cannot be made
        }
    }
}

}  // namespace fuzz
