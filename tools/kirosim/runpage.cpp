#include "tools/kirosim/runpage.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include <fmt/format.h>

#include "tools/kirosim/development.h"
#include "tools/kirosim/figures/figurepage.h"
#include "tools/kirosim/meteringweights.h"
#include "tools/kirosim/runbands.h"
#include "tools/kirosim/trace.h"
#include "tools/kirosim/tracecharts.h"
#include "tools/kirosim/tracemeasures.h"
#include "tools/kirosim/tracepage.h"
#include "tools/recording/chunks.h"
#include "tools/report/png.h"
#include "tools/tuningfile/files.h"

namespace kirosim
{

namespace
{

/// More would make a page of many megabytes.
constexpr size_t ReportPicturesMax = 60;

constexpr UINT32 PictureBins = 64;

/// The columns of a trace, and those that only the run itself knows.
std::string HeaderOf()
{
    std::string header = CsvHeader();
    header.pop_back();
    return header + ",luma_target,clipped_short,clipped_safe,clipped_long";
}

/// The luma that metering would have seen at its target; NaN for a frame without metering, and for one that is no
/// preview.
DOUBLE LumaTargetOf(const FrameRecord& rRecord)
{
    const KIROMeteringOutput& rMetering = rRecord.decided.metering;
    const bool                isPreview = rRecord.flash.phase == FlashCapturePhase::Idle && !rRecord.isPictureShown;
    if (!isPreview || rMetering.bIsMeteringSkipped == TRUE || rRecord.decided.luma < 0.0f)
    {
        return std::nan("");
    }
    return static_cast<DOUBLE>(rRecord.decided.luma) * static_cast<DOUBLE>(rMetering.exposures[AECAlgoExposureSafe]) /
           rRecord.truth.exposure;
}

std::string RowOf(const FrameRecord& rRecord)
{
    std::string line = CsvLine(rRecord);
    line.pop_back();
    const auto& rClipped = rRecord.truth.clipped;
    return fmt::format("{},{},{},{},{}", line, LumaTargetOf(rRecord), rClipped[AECAlgoExposureShort],
                       rClipped[AECAlgoExposureSafe], rClipped[AECAlgoExposureLong]);
}

std::vector<UINT32> HistogramOf(const SensorView& rView)
{
    std::vector<UINT32> counts(PictureBins);
    for (UINT32 bin = 0; bin < HistogramBins; ++bin)
    {
        counts[bin * PictureBins / HistogramBins] += static_cast<UINT32>((*rView.pHistogram)[bin]);
    }
    return counts;
}

std::string ChecksumTextOf(UINT32 checksum, UINT64 size)
{
    return fmt::format("CRC-32 {:08x}, {} bytes", checksum, size);
}

/// The lines of a summary as rows: what stands before the first colon of a line names it.
report::Table SummaryTable(const std::string& rSummary)
{
    report::Table    table{"Summary", {}, {}};
    std::string_view rest = rSummary;
    while (!rest.empty())
    {
        const size_t           end   = std::min(rest.find('\n'), rest.size());
        const std::string_view line  = rest.substr(0, end);
        const size_t           colon = line.find(": ");
        table.rows.push_back(
            (colon == std::string_view::npos)
                ? std::vector<std::string>{std::string(line), ""}
                : std::vector<std::string>{std::string(line.substr(0, colon)), std::string(line.substr(colon + 2))});
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return table;
}

}  // namespace

RunPage::RunPage(const RunOptions& rOptions, const Scene& rScene, const LoadedTuning& rTuning)
    : m_rOptions(rOptions), m_rScene(rScene), m_rTuning(rTuning), m_file(rOptions.report),
      m_trace("this run", HeaderOf()), m_moments(rScene), m_choice(rOptions.pictures), m_isPictured(false),
      m_leftOutCount(0)
{
    if (!rOptions.against.empty())
    {
        m_against = TraceTable::Read(rOptions.against);
    }
    if (rScene.pSecond != nullptr)
    {
        m_second.emplace("second camera", HeaderOf());
    }
}

VOID RunPage::Add(const FrameRecord& rRecord, Camera& rCamera)
{
    m_trace.Add(RowOf(rRecord));
    m_bands.BeginFrame(rRecord.time);
    SetBands(rRecord, m_rScene, m_bands);
    const FrameMoment moment = MomentOf(rRecord);
    if (!moment.begins.empty())
    {
        m_page.marks.push_back({rRecord.time, moment.begins});
    }
    const std::string reason = m_choice.ReasonFor(rRecord, moment);
    m_isPictured             = !reason.empty();
    if (m_isPictured)
    {
        AddPicture(reason, rCamera);
    }
}

VOID RunPage::AddSecond(const FrameRecord& rRecord)
{
    m_second->Add(RowOf(rRecord));
}

FrameMoment RunPage::MomentOf(const FrameRecord& rRecord)
{
    const std::string begins = m_moments.Advance(rRecord.sceneTime);
    return {begins, m_moments.IsDueBy(rRecord.sceneTime + 1.0 / rRecord.fps)};
}

VOID RunPage::AddPicture(const std::string& rReason, Camera& rCamera)
{
    if (m_page.pictures.size() >= ReportPicturesMax)
    {
        ++m_leftOutCount;
        return;
    }
    const SensorView    view  = rCamera.View();
    const ExposureMarks marks = MarkExposure(view);
    report::Picture     picture{};
    picture.frame     = m_trace.Get("frame").back();
    picture.time      = m_trace.Get("time_s").back();
    picture.caption   = rReason;
    picture.image     = report::EncodePng(DevelopedWidth, DevelopedHeight, report::PixelFormat::RGB, Develop(view));
    picture.marks     = report::EncodePng(DevelopedWidth, DevelopedHeight, report::PixelFormat::RGBA, marks.pixels);
    picture.over      = marks.over;
    picture.under     = marks.under;
    picture.histogram = HistogramOf(view);
    for (const WeightedMean& rMean : WeightedMeansOf(rCamera.Host()))
    {
        picture.measurements.push_back({rMean.name, rMean.box, IndexOf(rMean.weights)});
    }
    if (const std::optional<AECAlgoROI>& rTouch = m_moments.Touch(); rTouch.has_value())
    {
        picture.touch = report::Box{rTouch->x, rTouch->y, rTouch->dx, rTouch->dy};
    }
    m_page.pictures.push_back(std::move(picture));
}

size_t RunPage::IndexOf(const report::Weights& rWeights)
{
    const auto found = std::find(m_page.weights.begin(), m_page.weights.end(), rWeights);
    const auto index = static_cast<size_t>(found - m_page.weights.begin());
    if (found == m_page.weights.end())
    {
        m_page.weights.push_back(rWeights);
    }
    return index;
}

VOID RunPage::End(Camera& rCamera)
{
    if (m_trace.FrameCount() > 0 && !m_isPictured)
    {
        AddPicture("end", rCamera);
    }
}

report::Table RunPage::OriginTable() const
{
    const recording::TuningReference& rTuning = m_rTuning.Reference();
    std::string                       scene   = m_rOptions.scene;
    if (!program::IsStandardStream(scene))
    {
        const std::vector<BYTE> bytes = tuningfile::ReadBytes(scene);
        scene += ", " + ChecksumTextOf(recording::ChecksumOf(bytes), bytes.size());
    }
    return {"Made of",
            {},
            {{"tuning", rTuning.path + ", " + ChecksumTextOf(rTuning.checksum, rTuning.size)},
             {"scene", scene},
             {"variant", m_rOptions.variant.empty() ? "none" : m_rOptions.variant},
             {"seed of the noise", fmt::to_string(m_rScene.seed)},
             {"command", m_rOptions.command}}};
}

VOID RunPage::Commit(const RunReport& rReport)
{
    if (m_trace.FrameCount() == 0)
    {
        throw std::runtime_error(m_rOptions.scene + ": the run was too short for a report");
    }
    m_page.title   = m_rScene.name.empty() ? m_rOptions.scene : m_rScene.name;
    m_page.command = m_rOptions.command;
    m_page.pictureNote =
        fmt::format("What the sensor saw with the safe exposure of the frame, developed plainly: white balance for the "
                    "scene's light, no tone mapping but that of the ADRC gain, sRGB transfer. Stripes mark samples "
                    "that are clipped in the short exposure, too, and those below 1/256 of full scale. A broken line "
                    "is the user's touch; metering shows what a calculator of the tuning measures, the darker the less "
                    "it counts. Below each picture is the histogram of the safe exposure, square root of counts.{}",
                    (m_leftOutCount > 0) ? fmt::format(" {} further pictures are left out.", m_leftOutCount) : "");
    m_page.bands               = m_bands.Finish();
    const TraceTable* pAgainst = m_against.has_value() ? &*m_against : nullptr;
    m_page.summary             = SummaryTable(rReport.FormatBesideFigures());
    m_page.tables.push_back(FigureTable(rReport.Figures()));
    m_page.tables.push_back(MeasureTable(m_trace, pAgainst));
    AddTrace(m_trace, pAgainst, m_page);
    if (m_second.has_value())
    {
        AddCharts(*m_second, m_page);
    }
    m_page.tables.push_back(OriginTable());
    WritePageTo(m_file, m_page);
}

}  // namespace kirosim
