#include "tools/kirosim/runfiles.h"

#include <stdexcept>

#include "tools/kirosim/learnedfile.h"
#include "tools/kirosim/trace.h"
#include "tools/program/commandfiles.h"
#include "tools/program/standardstreams.h"

namespace kirosim
{

VOID CheckRunFiles(const RunOptions& rOptions)
{
    program::CommandFiles files;
    files.Reads("--tuning", rOptions.tuning);
    files.Reads("--scene", rOptions.scene);
    files.Reads("--fic-load", rOptions.ficLoad);
    files.Reads("--against", rOptions.against);
    files.Writes("--csv", rOptions.csv);
    files.Writes("--csv-second", rOptions.csvSecond);
    files.Writes("--debug-data", rOptions.debugData);
    files.Writes("--fic-save", rOptions.ficSave);
    files.Writes("--record", rOptions.record);
    files.Writes("--report", rOptions.report);
    files.Check();
    if (program::IsStandardStream(rOptions.record))
    {
        throw std::runtime_error("stdout: cannot be a recording, expected a file for --record");
    }
}

TraceFile::TraceFile(const std::string& rPath)
{
    if (!rPath.empty())
    {
        m_file.emplace(rPath);
        Write(CsvHeader());
    }
}

VOID TraceFile::Add(const FrameRecord& rRecord)
{
    if (m_file.has_value())
    {
        Write(CsvLine(rRecord));
    }
}

VOID TraceFile::Commit()
{
    if (m_file.has_value())
    {
        m_file->Commit();
    }
}

VOID TraceFile::Write(const std::string& rText)
{
    m_file->Write({reinterpret_cast<const BYTE*>(rText.data()), rText.size()});
}

RunFiles::RunFiles(const RunOptions& rOptions)
    : m_rOptions(rOptions), m_pCamera(nullptr), m_csv(rOptions.csv), m_csvSecond(rOptions.csvSecond)
{
    if (!rOptions.debugData.empty())
    {
        m_debugFile.emplace(rOptions.debugData);
    }
    if (!rOptions.ficSave.empty())
    {
        m_learnedFile.emplace(rOptions.ficSave);
    }
}

VOID RunFiles::Watch(Camera& rCamera)
{
    m_pCamera = &rCamera;
    if (m_debugFile.has_value())
    {
        rCamera.EnableDebugData();
    }
}

VOID RunFiles::Add(const FrameRecord& rRecord)
{
    if (m_debugFile.has_value())
    {
        m_debugFile->Add(m_pCamera->DebugData());
    }
    if (rRecord.flash.shot.has_value())
    {
        m_learned = rRecord.flash.shot->learned;
    }
    m_csv.Add(rRecord);
}

VOID RunFiles::AddSecond(const FrameRecord& rRecord)
{
    m_csvSecond.Add(rRecord);
}

VOID RunFiles::Commit()
{
    m_csv.Commit();
    m_csvSecond.Commit();
    if (m_debugFile.has_value())
    {
        m_debugFile->Commit();
    }
    if (!m_learnedFile.has_value())
    {
        return;
    }
    if (m_learned.empty())
    {
        throw std::runtime_error(m_rOptions.scene + ": the run was too short for a picture, nothing was learned");
    }
    m_learnedFile->Write(LearnedFileOf(m_learned));
    m_learnedFile->Commit();
}

}  // namespace kirosim
