#include "tools/kirosim/replaypage.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "schema/kirodbstatscalculator.h"
#include "tools/kirosim/runbands.h"
#include "tools/kirosim/trace.h"
#include "tools/kirosim/tracemeasures.h"
#include "tools/kirosim/tracepage.h"

namespace kirosim
{

namespace
{

FLOAT TriggerOf(IKIROCoreAlgo* pAlgo, KIROTriggerType id)
{
    KIROGetBankData query = {BankIDTriggers, id, nullptr, sizeof(kirodbstatscalculator::DBFloatPayload)};
    return (pAlgo->getBankData(pAlgo, &query) == 0)
               ? static_cast<const kirodbstatscalculator::DBFloatPayload*>(query.pData)->value
               : std::nanf("");
}

FrameRecord RecordOf(const recording::ReplayedFrame& rFrame, DOUBLE time)
{
    FrameRecord record{};
    record.frame               = rFrame.frameID;
    record.time                = time;
    record.decided.metering    = rFrame.rMetering;
    record.decided.convergence = rFrame.rConvergence;
    record.decided.extension   = rFrame.rExtension;
    record.decided.luxIndex    = TriggerOf(rFrame.pAlgo, TriggerCtrlLux);
    record.decided.luma        = TriggerOf(rFrame.pAlgo, TriggerCtrlLuma);
    std::copy_n(rFrame.pArbitration, AECAlgoExposureCount, record.decided.arbitration);
    return record;
}

std::string LineWithoutEnd(std::string line)
{
    line.pop_back();
    return line;
}

}  // namespace

ReplayPage::ReplayPage(const ReplayOptions& rOptions)
    : m_rOptions(rOptions), m_file(rOptions.report),
      m_trace("this run", LineWithoutEnd(CsvHeader(TraceColumns::Decided)))
{
    if (!rOptions.against.empty())
    {
        m_against = TraceTable::Read(rOptions.against);
    }
}

VOID ReplayPage::Add(const recording::ReplayedFrame& rFrame)
{
    if (rFrame.camera != 0 || rFrame.frameID == 0)
    {
        return;
    }
    constexpr FLOAT   slowest = 0.01f;
    constexpr FLOAT   fastest = 10000.0f;
    const FLOAT       fps     = rFrame.pArbitration[AECAlgoExposureSafe].FPS;
    const FrameRecord record  = RecordOf(rFrame, m_clock.Now());
    m_trace.Add(LineWithoutEnd(CsvLine(record, TraceColumns::Decided)));
    m_bands.BeginFrame(record.time);
    SetDecidedBands(record.decided, m_bands);
    m_clock.Advance(static_cast<DOUBLE>(std::isnan(fps) ? slowest : std::clamp(fps, slowest, fastest)));
}

VOID ReplayPage::Commit()
{
    if (m_trace.FrameCount() == 0)
    {
        throw std::runtime_error(m_rOptions.file + ": no frame of a camera for a report");
    }
    const TraceTable* pAgainst = m_against.has_value() ? &*m_against : nullptr;
    report::Page      page;
    page.title   = m_rOptions.file;
    page.command = m_rOptions.command;
    page.summary = MeasureTable(m_trace, pAgainst);
    page.bands   = m_bands.Finish();
    page.notes.emplace_back("Made from a recording: the first camera, frames at the rate that was decided, up to the "
                            "first difference. It has no pictures and no scene.");
    AddTrace(m_trace, pAgainst, page);
    WritePageTo(m_file, page);
}

}  // namespace kirosim
