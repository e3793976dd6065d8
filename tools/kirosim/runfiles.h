/// @file
/// The files that a run leaves.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/debugdata/debugfile.h"
#include "tools/kirosim/camera.h"
#include "tools/kirosim/runoptions.h"
#include "tools/tuningfile/filereplacement.h"

namespace kirosim
{

/// @throws std::runtime_error if an output of a run is also an input of it, or another output
VOID CheckRunFiles(const RunOptions& rOptions);

/// A trace that is written as the run goes on, which may be for hours. Does nothing without a path.
class TraceFile
{
public:
    explicit TraceFile(const std::string& rPath);

    VOID Add(const FrameRecord& rRecord);
    VOID Commit();

private:
    VOID Write(const std::string& rText);

    std::optional<tuningfile::FileReplacement> m_file;
};

/// None of the files takes its place before the run is over, and its cameras may be gone by then.
class RunFiles
{
public:
    /// Opens all of them. @param rOptions must outlive the files
    /// @throws tuningfile::InputError, as all functions do, for a file that cannot be written
    explicit RunFiles(const RunOptions& rOptions);

    /// Names the camera whose debug data are kept. @param rCamera must live while records are added
    VOID Watch(Camera& rCamera);

    VOID Add(const FrameRecord& rRecord);
    VOID AddSecond(const FrameRecord& rRecord);

    VOID Commit();

private:
    const RunOptions&                          m_rOptions;
    Camera*                                    m_pCamera;
    TraceFile                                  m_csv;
    TraceFile                                  m_csvSecond;
    std::optional<debugdata::DebugFileWriter>  m_debugFile;
    std::optional<tuningfile::FileReplacement> m_learnedFile;
    std::vector<BYTE>                          m_learned;  ///< of the flash's colour, as of the last picture
};

}  // namespace kirosim
