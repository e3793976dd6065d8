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

/// The modes for which a tuning may have more than for all.
struct Modes
{
    UINT16 usecase;
    UINT16 feature1;
    UINT16 scene;
};

constexpr UINT16 Of(auto subMode)
{
    return static_cast<UINT16>(subMode);
}

constexpr Modes ModesToChoose[] = {
    {0, 0, 0},
    {Of(ModeUsecaseSubModeType::Video), 0, 0},
    {Of(ModeUsecaseSubModeType::Snapshot), 0, 0},
    {0, Of(ModeFeature1SubModeType::inSensorHDR3Exp), 0},
    {0, Of(ModeFeature1SubModeType::MFHDRPreFusion), 0},
    {0, 0, Of(ModeSceneSubModeType::Action)},
    {0, 0, Of(ModeSceneSubModeType::AntiShake)},
};

std::vector<TuningMode> Selectors(BYTE choice)
{
    const Modes&            rModes    = ModesToChoose[choice % std::size(ModesToChoose)];
    std::vector<TuningMode> selectors = kirosim::DefaultSelectors();

    selectors[static_cast<size_t>(ModeType::Usecase)].subMode.value  = rModes.usecase;
    selectors[static_cast<size_t>(ModeType::Feature1)].subMode.value = rModes.feature1;
    selectors[static_cast<size_t>(ModeType::Scene)].subMode.value    = rModes.scene;
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
