// The smallest host of the exposure core: it loads a tuning, gets the function table, and closes the loop over a grey
// card. It builds against an installed tree (docs/integration.md). The reference host in the sources does all the rest:
// settings, the tuned order of arbitration, flash, brackets, HDR, several cameras.
#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "greycard.h"
#include "interface/aecdebugdata.h"
#include "interface/ckirotriggermanager.h"
#include "interface/ikirocorealgo.h"
#include "interface/kirocontextaccess.h"
#include "parameters/tuningsetmanager.h"
#include "schema/kirodbactiveanalyzers.h"
#include "schema/kirodbstatscalculator.h"

static constexpr KIROSensorRange Sensor = {1.0f, 64.0f, 20000, 33333333};

static constexpr UINT32 ErrorLevel = 2;

// What the host takes: main() says that these are errors. What repeats is said once: the tuning may
// meter by a map that this host does not deliver, and misses it in every frame.
static VOID Log(const CHAR*, INT32, const CHAR* pFunction, UINT32, UINT32, const CHAR* pFormat, ...)
{
    static const CHAR* pLast = nullptr;
    va_list            arguments;
    va_start(arguments, pFormat);
    if (pFormat != pLast)
    {
        pLast = pFormat;
        std::fprintf(stderr, "%s: ", pFunction);
        std::vfprintf(stderr, pFormat, arguments);
        std::fputc('\n', stderr);
    }
    va_end(arguments);
}

// The core writes a flag of the record even while debug data are off: there must be one.
struct NoDebugData final : IKIRODebugData
{
    std::unique_ptr<AECDebugData> m_pRecord = std::make_unique<AECDebugData>();

    AECDebugData& GetDebugData() override
    {
        return *m_pRecord;
    }
    BOOL IsDebugDataEnabled() override
    {
        return FALSE;
    }
};

template <typename T> static VOID Set(IKIROCoreAlgo* pAlgo, AECAlgoSetParamType type, T value)
{
    AECAlgoSetParam param = {&value, sizeof(value), type};
    KIROSetInput    input{};
    input.source      = AECPEKSetParam;
    input.u.pPEKInput = &param;
    pAlgo->setInput(pAlgo, &input);
}

// What runs from frame to frame. Arrays of three are indexed by AECAlgoExposureType.
struct Frame
{
    KIROMeteringOutput    m_metering{};
    KIROConvergenceOutput m_convergence{};
    KIROArbitrationOutput m_decided[AECAlgoExposureCount]{};

    // First the targets. Which analyzers run is tuned, and may differ from frame to frame.
    VOID Meter(IKIROCoreAlgo* pAlgo, KIROStatsList& rStats)
    {
        using kirodbactiveanalyzers::DBActiveAnalyzersPayload;
        KIROMeteringInput input = {pAlgo->setStats(pAlgo, rStats) == 0 ? TRUE : FALSE, 0};
        pAlgo->runMeteringPreprocess(pAlgo, input, m_metering);
        KIROGetBankData query = {BankIDActiveAnalyzers, 0, nullptr, sizeof(DBActiveAnalyzersPayload)};
        if (m_metering.bIsMeteringSkipped == FALSE && pAlgo->getBankData(pAlgo, &query) == 0 && query.pData != nullptr)
        {
            const auto* pActive = static_cast<const DBActiveAnalyzersPayload*>(query.pData);
            for (UINT32 index = 0; index < pActive->analyzerIDCount; ++index)
            {
                KIROAnalyzerOutput unused{};
                pAlgo->runAnalyzer(pAlgo, pActive->analyzerID[index], unused);
            }
        }
        pAlgo->runMeteringPostprocess(pAlgo, input, m_metering);
        pAlgo->mixMetering(pAlgo, m_metering);
    }

    // Then the exposures on their way to the targets, within what the sensor can do.
    VOID Converge(IKIROCoreAlgo* pAlgo, UINT64 frameID)
    {
        KIROArbitratedLimits limits{};
        limits.indexZeroExposure = Sensor.minTime;
        for (KIROExposureRange& rRange : limits.ranges)
        {
            rRange.start.exposure = Sensor.minTime;
            rRange.end.exposure   = static_cast<UINT64>(Sensor.maxGain) * Sensor.maxTime;
        }
        KIROConvergenceInput input{};
        input.frameID            = frameID;
        input.pRange             = &limits;
        input.bIsMeteringSkipped = m_metering.bIsMeteringSkipped;
        std::copy_n(m_metering.exposures, AECAlgoExposureCount, input.sensitivities);
        m_convergence.bIfConvProcRun = FALSE;
        pAlgo->RunConvProcess(pAlgo, input, m_convergence);
        pAlgo->followMasterConvExposure(pAlgo, m_convergence);
        pAlgo->HandleExposureConstraints(pAlgo, m_convergence);
        pAlgo->RunConvSettle(pAlgo, m_convergence);
        pAlgo->RunConvPostProcess(pAlgo, m_convergence);
    }

    // Then gain and time, here by the tuning's first exposure table alone.
    VOID Split(IKIROCoreAlgo* pAlgo)
    {
        for (UINT32 type = 0; type < AECAlgoExposureCount; ++type)
        {
            KIROArbitrationInput input{};
            input.controlID         = kirodbarbitrationorder::ArbCtrlTable;
            input.controlBank       = BankIDArbitrationTable;
            input.controlDataID     = 1;
            input.expType           = static_cast<AECAlgoExposureType>(type);
            input.sensorRange       = Sensor;
            input.indexZeroExposure = Sensor.minTime;
            input.exposures[type]   = {
                  Sensor.minGain, Sensor.minTime, 0.0f, 1.0f, m_convergence.exposures[type], 0, 0.0f, 0, 0};
            input.range.start     = {Sensor.minGain, Sensor.minTime, 0.0f, 1.0f, 0, 0, 0.0f, 0, 0};
            input.range.end       = {Sensor.maxGain, Sensor.maxTime, 0.0f, 1.0f, 0, 0, 0.0f, 0, 0};
            m_decided[type].range = input.range;
            pAlgo->runArbitration(pAlgo, &input, &m_decided[type]);
        }
    }

    VOID End(IKIROCoreAlgo* pAlgo, KIROFrameInfo info)
    {
        KIROPostProcessingInput unused{};
        pAlgo->runEndOfFrame(pAlgo, info, unused, m_metering, m_convergence, m_decided);
    }
};

// What a snapshot in this light would be given: the ratios of safe to short, and of long to safe.
static VOID ShowSnapshotGains(IKIROCoreAlgo* pAlgo)
{
    using kirodbstatscalculator::DBFloatPayload;
    KIROGetBankData lux = {BankIDTriggers, TriggerCtrlLux, nullptr, sizeof(DBFloatPayload)};
    if (pAlgo->getBankData(pAlgo, &lux) != 0)
    {
        return;
    }
    const FLOAT                        luxIndex = static_cast<const DBFloatPayload*>(lux.pData)->value;
    CKIROTriggerManager                triggers(*GetKiroContextManager(pAlgo));
    KIROGeneralizedTriggerSystemInput  input = {{luxIndex, 0.0f, 0.0f}, 1, 0};
    KIROGeneralizedTriggerSystemOutput gains{};
    triggers.GetSnapshotDBNonBracketing(&input, gains);
    std::printf("snapshot at lux index %.1f: ADRC gain %.3f, dark boost gain %.3f\n", static_cast<DOUBLE>(luxIndex),
                static_cast<DOUBLE>(gains.data[0]), static_cast<DOUBLE>(gains.data[1]));
}

// An instance that is told how its camera runs. Null if there is none.
static IKIROCoreAlgo* Create(StatsTuningData tuning, NoDebugData& rDebugData)
{
    // The logger stands first: the core takes the pointer of the first entry.
    AECAlgoCreateParam logger = {reinterpret_cast<VOID*>(&Log), sizeof(&Log), AECAlgoCreateParamsLoggerFunctionPtr};
    IKIROCoreAlgo*     pAlgo  = nullptr;
    if (CreateKiroCoreAlgo(tuning, rDebugData, {&logger, 1}, pAlgo) != 0)
    {
        return nullptr;
    }
    Set(pAlgo, AECAlgoSetParamPipelineDelay, UINT8{1});  // a decision shows in the statistics of the next frame
    Set(pAlgo, AECAlgoSetParamFPSRange, AECAlgoFPSRange{30.0f, 30.0f});
    Set(pAlgo, AECAlgoSetParamOperationMode, AECAlgoOperationModeStreaming);
    return pAlgo;
}

// Sixty frames of a grey card. light: luma per millisecond at unity gain.
static VOID RunFrames(IKIROCoreAlgo* pAlgo, DOUBLE light)
{
    // The exposure that the sensor starts with.
    GreyCard card;
    Frame    frame;
    std::fill_n(frame.m_convergence.exposures, AECAlgoExposureCount, UINT64{10000000});
    frame.m_convergence.predictiveGain = 1.0f;
    frame.Split(pAlgo);
    frame.End(pAlgo, {0, TRUE});

    for (UINT64 frameID = 1; frameID <= 60; ++frameID)
    {
        const KIROExposureSetType& rSafe  = frame.m_decided[AECAlgoExposureSafe].exposureSet;
        const KIROExposureSetType& rShort = frame.m_decided[AECAlgoExposureShort].exposureSet;
        card.Capture(light * rSafe.gain * static_cast<DOUBLE>(rSafe.time) / 1e6,
                     light * rShort.gain * static_cast<DOUBLE>(rShort.time) / 1e6);

        pAlgo->runStartOfFrame(pAlgo, frameID);
        frame.Meter(pAlgo, card.m_list);
        frame.Converge(pAlgo, frameID);
        frame.Split(pAlgo);
        KIROExtensionInput  extension = {&frame.m_convergence, frame.m_decided, StatisticsStartUpValid, {}};
        KIROExtensionOutput flags{};
        pAlgo->runExtension(pAlgo, extension, flags);
        frame.End(pAlgo, {frameID, FALSE});
        std::printf("%3llu luma %5.1f -> gain %6.3f time %8llu ns%s\n", frameID, static_cast<DOUBLE>(card.m_luma[0]),
                    static_cast<DOUBLE>(rSafe.gain), rSafe.time, frame.m_convergence.bSettle == TRUE ? " settled" : "");
    }
}

int main(int argc, char** argv)
{
    if (argc < 2)
    {
        std::fprintf(stderr, "usage: minihost TUNING.bin [LIGHT]\n");
        return 2;
    }

    // The store and the selectors stay the host's, and outlive the instance.
    TuningSetManager store("minihost");
    if (!store.LoadBinaryParameters(argv[1]))
    {
        std::fprintf(stderr, "minihost: %s: %s\n", argv[1], store.GetErrorText().c_str());
        return 1;
    }
    TuningMode  mode = {ModeType::Default, {0}};
    NoDebugData debugData;
    gStatsLogLevels      = ErrorLevel;
    IKIROCoreAlgo* pAlgo = Create({&store, &mode, 1}, debugData);
    if (pAlgo == nullptr)
    {
        std::fprintf(stderr, "minihost: no instance\n");
        return 1;
    }
    RunFrames(pAlgo, (argc > 2) ? std::atof(argv[2]) : 1.0);
    ShowSnapshotGains(pAlgo);
    pAlgo->DestroyInstance(pAlgo);
    return 0;
}
