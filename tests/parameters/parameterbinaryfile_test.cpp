#include "parameters/parameterbinaryfile.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "parameters/binaryfileformat.h"
#include "tests/support/parameterfilebuilder.h"
#include "tests/support/systemlogcapture.h"
#include "tests/support/temporaryfile.h"

namespace
{

/// What ReadHeader makes of a file.
struct HeaderResult
{
    bool             accepted;
    BinaryFileHeader header;
    std::string      error;
    UINT64           position;
};

HeaderResult ReadHeader(const std::vector<BYTE>& rBytes)
{
    HeaderResult result{};
    result.accepted = BinaryFileFormat::ReadHeader(rBytes.data(), rBytes.size(), result.position, result.header,
                                                   result.error, nullptr);
    return result;
}

TEST(Header, RefusalsSayWhy)
{
    SystemLogCapture log;
    ParameterFile    good     = ParameterFileBuilder().Build();
    const auto       readWith = [&](size_t place, auto value)
    {
        ParameterFile file = good;
        file.Put(place, value);
        file.Seal();
        return ReadHeader(file.bytes);
    };
    for (const VersionUnion version : {VersionUnion(7, 0, 1), VersionUnion(7, 1, 0), VersionUnion(8, 0, 0)})
    {
        EXPECT_EQ(readWith(32, version.Value).error.find("Unsupported binary header version : "), 0U);
    }
    EXPECT_EQ(readWith(0, 'X').error, "Invalid binary header tag: XELTO Tunara Header");
    EXPECT_TRUE(readWith(27, 'x').accepted) << "behind the terminator";
    const UINT32 tooLarge = static_cast<UINT32>(good.bytes.size() + 1);
    EXPECT_EQ(readWith(28, tooLarge).error.find("Binary header data too small: Expected: "), 0U);
    ParameterFile compressed = good;
    compressed.Put(28, tooLarge);
    compressed.Put<UINT64>(152, BinaryFileFormat::CompressedFlag);
    compressed.Seal();
    EXPECT_TRUE(ReadHeader(compressed.bytes).accepted) << "left to the caller to refuse";
    for (const size_t size : {0U, 27U, 28U, 39U, 40U, 100U, 159U, 167U})
    {
        const std::vector<BYTE> cut(good.bytes.begin(), good.bytes.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(ReadHeader(cut).error,
                  (size < 28) ? "Failed to read binary header tag" : "General error parsing binary header data header")
            << size;
    }

    // The warning of an old format gives way to the reason of a refusal.
    ParameterFileBuilder builder({1, 0, 1});
    ParameterFile        file = builder.Build();
    EXPECT_TRUE(ReadHeader(file.bytes).accepted);
    EXPECT_EQ(ReadHeader(file.bytes).error.find("Warning: This is an older binary format"), 0U);
    file.bytes.back() ^= 1;
    EXPECT_EQ(ReadHeader(file.bytes).error, "Binary file CRC validation failed");
}

TEST(SectionTable, LastRowOfATypeCountsAndModeTablesAddUp)
{
    SystemLogCapture log;
    ByteWriter       rows;
    for (const UINT32 type : {0U, 2U, 1U, 0U, 2U, 3U, 4U})
    {
        const UINT32 place = static_cast<UINT32>(rows.Size());
        rows.Add(type).Add(1000 + place).Add(place);
    }
    const auto read = [&](UINT32 count, UINT64 length, BinaryFileSections& rSections, std::string& rError)
    {
        UINT64 position = 0;
        return BinaryFileFormat::ReadSectionInfo(rows.Get().data(), length, position, 1, count, rSections, rError,
                                                 nullptr);
    };
    BinaryFileSections sections;
    std::string        error;
    ASSERT_TRUE(read(7, rows.Size(), sections, error));
    EXPECT_EQ(sections.Symbols.Offset, 1036U);
    EXPECT_EQ(sections.Data.Offset, 1024U);
    EXPECT_EQ(sections.DataTable.Size, 60U);
    EXPECT_EQ(sections.Definitions.Size, 72U);
    ASSERT_EQ(sections.ModeTables.size(), 2U);
    EXPECT_EQ(sections.ModeTables[1].Offset, 1048U);

    EXPECT_FALSE(read(1, rows.Size(), sections, error));
    EXPECT_TRUE(log.Has("ReadSectionInfo: Section count 1 is less than Min sections 2\n", "E"));
    EXPECT_FALSE(read(0xFFFFFFFF, rows.Size(), sections, error));
    EXPECT_EQ(error, "Error reading data from header sections");
    EXPECT_FALSE(read(7, rows.Size() - 1, sections, error));
    rows.Patch<UINT32>(0, 5);
    EXPECT_FALSE(read(7, rows.Size(), sections, error));
    EXPECT_TRUE(log.Has("Invalid binary section type 5\n", "E"));
}

/// A file of bytes that tell their own place: byte n is n / 7.
class DiskFile : public ::testing::Test
{
protected:
    VOID Write(size_t size)
    {
        std::string bytes(size, '\0');
        for (size_t place = 0; place < size; ++place)
        {
            bytes[place] = static_cast<CHAR>(place / 7);
        }
        m_file.Write(bytes);
    }

    /// Gives the file another modification time, whatever the clock says.
    VOID Touch()
    {
        const timespec times[2] = {{1000, 0}, {1000, 0}};
        ASSERT_EQ(::utimensat(AT_FDCWD, m_path.c_str(), times, 0), 0);
    }

    static bool ReadsRight(ParameterBinaryFile& rFile, UINT32 offset, UINT32 count)
    {
        std::vector<BYTE> bytes(count, 0xEE);
        UINT64            position = 0;
        if (!rFile.Read(bytes.data(), offset, position, count, 1) || position != count)
        {
            return false;
        }
        for (UINT32 index = 0; index < count; ++index)
        {
            if (bytes[index] != static_cast<BYTE>((offset + index) / 7))
            {
                return false;
            }
        }
        return true;
    }

    const TemporaryFile m_file{"parameterbinaryfile.bin"};
    const std::string&  m_path = m_file.path;
    SystemLogCapture    m_log;
};

TEST_F(DiskFile, PiecesOfAnySizeAndPlaceAreRight)
{
    for (const UINT32 size : {1U, 1000U, 1024U, 1025U, 5000U})
    {
        Write(size);
        ParameterBinaryFile file(m_path.c_str(), nullptr);
        ASSERT_TRUE(file.IsValid());
        ASSERT_EQ(file.Length(), size);
        // Backwards and forwards, so that every buffer is replaced several times.
        for (UINT32 step = 0; step < 300; ++step)
        {
            const UINT32 offset = (step * 997) % size;
            const UINT32 wanted = (step % 3 == 0) ? 1024 : (step % 3 == 1) ? 1025 : 12;
            ASSERT_TRUE(ReadsRight(file, offset, std::min(wanted, size - offset))) << size << " " << offset;
        }
        EXPECT_TRUE(ReadsRight(file, size - 1, 1));
    }
    EXPECT_EQ(m_log.Size(), 0U) << m_log.Text();
}

TEST_F(DiskFile, PositionsArePaddedAndRefusalsLeaveThem)
{
    Write(3000);
    ParameterBinaryFile file(m_path.c_str(), nullptr);
    BYTE                bytes[16];
    UINT64              position = 4;
    EXPECT_TRUE(file.Read(bytes, 100, position, 5, 8));
    EXPECT_EQ(position, 12U);
    EXPECT_EQ(bytes[0], 104 / 7);

    position = 2990;
    EXPECT_FALSE(file.Read(bytes, 0, position, 11, 1));
    EXPECT_EQ(position, 2990U);
    EXPECT_TRUE(
        m_log.Has("attempted to read past the end of the file, offset: 0, pos: 2990, count: 11, length: 3000\n"));
    EXPECT_FALSE(file.Read(nullptr, 0, position, 4, 1));
    EXPECT_TRUE(file.Read(nullptr, 0, position, 0, 1));  // nothing wanted, nothing missed
    EXPECT_EQ(file.Read(0, 0xFFFFFFFF), nullptr);
    EXPECT_EQ(file.Read(0xFFFFFFFF, 0xFFFFFFF0), nullptr);
    EXPECT_EQ(file.Read(2999, 1)[0], static_cast<BYTE>(2999 / 7));
}

TEST_F(DiskFile, ReferencesOpenAndClose)
{
    Write(2000);
    ParameterBinaryFile file(m_path.c_str(), nullptr);
    EXPECT_EQ(file.Reference(0), 1);
    EXPECT_EQ(file.Reference(2), 3);
    EXPECT_EQ(file.Reference(-3), 0);
    EXPECT_FALSE(ReadsRight(file, 0, 10));
    EXPECT_TRUE(m_log.Has("ParameterBinaryFile::Read called with null file\n"));
    EXPECT_EQ(file.Reference(-1), 0);
    EXPECT_TRUE(m_log.Has("FileReference Remove: -1, RefCount: 0, Called when file was already closed\n"));
    EXPECT_EQ(file.Reference(1), 1);
    EXPECT_TRUE(ReadsRight(file, 0, 10));
    EXPECT_EQ(file.Reference(-5), 0);
    EXPECT_TRUE(m_log.Has("File Reference is less than adjust amount\n"));

    // Gone while closed: the count rises all the same.
    std::remove(m_path.c_str());
    EXPECT_EQ(file.Reference(1), 1);
    EXPECT_TRUE(m_log.Has("Failed to open binary file '" + m_path));
    EXPECT_FALSE(ReadsRight(file, 0, 10));
    EXPECT_EQ(file.Reference(1), 2);
    EXPECT_TRUE(m_log.Has("Binary File was null when file reference was 1\n"));
}

TEST_F(DiskFile, WhatIsKeptInMemoryIsReadFromThereUntilTheFileIsClosed)
{
    Write(5000);
    ParameterBinaryFile file(m_path.c_str(), nullptr);
    file.KeepInMemory(file.Read(0, file.Length()));
    m_file.Write(std::string(5000, 'x'));
    EXPECT_TRUE(ReadsRight(file, 0, 5000));
    EXPECT_TRUE(ReadsRight(file, 4990, 10));
    EXPECT_FALSE(ReadsRight(file, 4990, 11)) << "what lies behind the end is no more there than on disk";
    EXPECT_FALSE(file.IsUnchanged()) << "what was read is still known to be of another state";

    EXPECT_EQ(file.Reference(-1), 0);
    EXPECT_FALSE(ReadsRight(file, 0, 10));
}

TEST_F(DiskFile, AFileThatShrinksUnderTheReaderFailsAfterFourAttempts)
{
    for (const bool isGone : {false, true})
    {
        Write(5000);
        ParameterBinaryFile file(m_path.c_str(), nullptr);
        ASSERT_EQ(::truncate(m_path.c_str(), 100), 0);
        isGone ? (VOID)std::remove(m_path.c_str()) : Touch();
        m_log.Clear();
        EXPECT_FALSE(ReadsRight(file, 3000, 1500));
        EXPECT_TRUE(m_log.Has("ParameterBinaryFile::Read failed, retrying\n"));
        EXPECT_EQ(m_log.Has("file modified, must reload"), !isGone);
        EXPECT_EQ(m_log.Count("failed to open file, errno: 2, file name: " + m_path), isGone ? 3U : 0U);
        EXPECT_EQ(m_log.Count("fseek failed, file not open\n"), isGone ? 3U : 0U);
        EXPECT_FALSE(ReadsRight(file, 0, 10)) << "not from a buffer either";
    }
    EXPECT_TRUE(
        m_log.Has("Read failed to read from file, ferror: 0, offset: 3000, pos: 0, requested: 1500, actual: 0\n"));
}

TEST_F(DiskFile, WithoutAFileNothingIsValid)
{
    EXPECT_FALSE(ParameterBinaryFile(nullptr, nullptr).IsValid());
    EXPECT_TRUE(m_log.Has("ParameterBinaryFile constructor called with null file name\n"));
    EXPECT_FALSE(ParameterBinaryFile(std::string(1023, 'n').c_str(), nullptr).IsValid());
    EXPECT_TRUE(m_log.Has("file name length (1023) exceeds max length: 1023\n"));
    EXPECT_FALSE(ParameterBinaryFile(m_path.c_str(), nullptr).IsValid());

    Write(0);
    ParameterBinaryFile empty(m_path.c_str(), nullptr);
    EXPECT_TRUE(empty.IsValid());
    EXPECT_FALSE(ReadsRight(empty, 0, 1));
    EXPECT_TRUE(m_log.Has("ParameterBinaryFile::Read called with a zero length file\n"));
}

}  // namespace
