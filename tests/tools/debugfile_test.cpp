// Files of debug records: whole or not there at all, and cut or foreign ones refused with one line.

#include "tools/debugdata/debugfile.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/refusal.h"
#include "tests/support/temporaryfile.h"
#include "tools/debugdata/debugtext.h"
#include "tools/tuningfile/files.h"
#include "tools/tuningfile/inputerror.h"

namespace fs = std::filesystem;
using namespace debugdata;

namespace
{

constexpr size_t RecordSize = 409340;

class DebugFile : public testing::Test
{
protected:
    DebugFile()
    {
        fs::create_directory(m_directory.path);
    }

    /// Two records; the second ends in a byte that is not zero.
    VOID WriteTwo()
    {
        DebugFileWriter writer(m_path);
        m_pRecord->frameHistoryInfo.currentFrame.frameID = 7;
        writer.Add(*m_pRecord);
        m_pRecord->frameHistoryInfo.currentFrame.frameID = 8;
        m_pRecord->precisionFlashInfo.reserved[248]      = 0xFF;
        writer.Add(*m_pRecord);
        EXPECT_FALSE(fs::exists(m_path)) << "not before it is whole";
        writer.Commit();
    }

    const TemporaryFile           m_directory{"debugfile_test"};
    const std::string             m_path    = m_directory.path + "/run.dbg";
    std::unique_ptr<AECDebugData> m_pRecord = std::make_unique<AECDebugData>();
};

TEST_F(DebugFile, RecordsComeBackAndEmptyPagesTakeNoRoom)
{
    WriteTwo();
    DebugFileReader reader(m_path);
    ASSERT_EQ(reader.Count(), 2u);
    const UINT32 first = reader.Read(0).frameHistoryInfo.currentFrame.frameID;
    EXPECT_EQ(first, 7u);
    EXPECT_EQ(std::memcmp(&reader.Read(1), m_pRecord.get(), RecordSize), 0);

    struct stat status = {};
    ASSERT_EQ(stat(m_path.c_str(), &status), 0);
    EXPECT_EQ(static_cast<size_t>(status.st_size), 16 + 2 * RecordSize);
    EXPECT_LT(static_cast<size_t>(status.st_blocks) * 512, RecordSize / 4);
}

TEST_F(DebugFile, AnUnfinishedRunLeavesNothingAndKeepsWhatWasThere)
{
    {
        DebugFileWriter writer(m_path);
        writer.Add(*m_pRecord);
    }
    EXPECT_TRUE(fs::is_empty(m_directory.path));
    WriteTwo();
    {
        DebugFileWriter writer(m_path);
        writer.Add(*m_pRecord);
    }
    EXPECT_EQ(DebugFileReader(m_path).Count(), 2u);
    EXPECT_THROW(DebugFileWriter(m_directory.path + "/none/run.dbg"), tuningfile::InputError);
    EXPECT_THROW(DebugFileWriter{m_directory.path}, tuningfile::InputError) << "a directory";
}

TEST_F(DebugFile, CutAndForeignFilesAreNamedAsSuch)
{
    WriteTwo();
    const std::vector<BYTE> bytes = tuningfile::ReadBytes(m_path);
    const std::string       whole(bytes.begin(), bytes.end());
    std::string             newer                     = whole;
    newer[8]                                          = 2;
    const std::pair<std::string, const CHAR*> cases[] = {
        {"", "no file of debug records"},
        {"tuning: {createdBy: kirotune}\n", "no file of debug records"},
        {whole.substr(0, 15), "cut within the header"},
        {whole.substr(0, whole.size() - 1), "cut within record 2: 409339 of 409340 bytes"},
        {whole + "x", "cut within record 3: 1 of 409340 bytes"},
        {newer, "version 2 with records of 409340 bytes, expected version 1"},
    };
    for (const auto& [text, pExpected] : cases)
    {
        std::ofstream(m_path, std::ios::binary) << text;
        const std::string error = RefusalOf([this] { DebugFileReader reader(m_path); });
        EXPECT_EQ(error.find(m_path), 0u);
        EXPECT_NE(error.find(pExpected), std::string::npos) << error;
    }
}

/// Records come from files: counts and names may be anything.
TEST_F(DebugFile, ARecordOfAnyBytesIsPrintable)
{
    std::memset(static_cast<VOID*>(m_pRecord.get()), 0xFF, sizeof(*m_pRecord));
    const std::string text = FormatRecord(*m_pRecord);
    EXPECT_NE(text.find(std::string(AECDebugNameLength, '?')), std::string::npos);
    EXPECT_FALSE(FormatLine(*m_pRecord).empty());
}

}  // namespace
