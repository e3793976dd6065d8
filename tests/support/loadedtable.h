/// @file
/// A symbol table loaded from a built file, without a set manager around it.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <unistd.h>

#include "parameters/modeentry.h"
#include "parameters/parameterfilesymboltable.h"
#include "tests/support/parameterfilebuilder.h"

/// Loads from the bytes in memory or, given a file on disk, on demand.
class LoadedTable : public IModeTable
{
public:
    enum class Source
    {
        Buffer,
        Disk
    };

    explicit LoadedTable(const ParameterFile& rFile, Source source = Source::Buffer) : m_bytes(rFile.bytes)
    {
        m_slot.Entry = &m_mode;
        BinaryFileHeader   header;
        BinaryFileSections sections;
        std::string        error;
        UINT64             position = 0;
        readable = BinaryFileFormat::ReadHeader(m_bytes.data(), m_bytes.size(), position, header, error, nullptr);
        position = header.SectionTableOffset;
        readable =
            readable && BinaryFileFormat::ReadSectionInfo(m_bytes.data(), m_bytes.size(), position, header.Alignment,
                                                          header.SectionCount, sections, error, nullptr);
        table = std::make_unique<ParameterFileSymbolTable>(nullptr, nullptr, header.Alignment, header.Version);
        if (!readable)
        {
            return;
        }
        std::shared_ptr<ParameterBinaryFile> pFile;
        if (source == Source::Disk)
        {
            static int serial = 0;
            m_path = ::testing::TempDir() + "table_" + std::to_string(::getpid()) + "_" + std::to_string(serial++);
            rFile.WriteTo(m_path);
            pFile = std::make_shared<ParameterBinaryFile>(m_path.c_str(), nullptr);
        }
        loaded = table->Load(m_bytes.data(), m_bytes.size(), pFile, sections, this, true);
    }

    ~LoadedTable() override
    {
        table.reset();
        if (!m_path.empty())
        {
            std::remove(m_path.c_str());
        }
    }

    /// Every mode but 0xABCDEF is the one mode there is.
    ModeEntryInfo* GetModeEntry(UINT32 modeId) override
    {
        return (modeId == UnknownMode) ? nullptr : &m_slot;
    }

    static constexpr UINT32 UnknownMode = 0xABCDEF;

    bool                                      readable = false;  ///< header and section table are
    bool                                      loaded   = false;
    std::unique_ptr<ParameterFileSymbolTable> table;

private:
    std::vector<BYTE> m_bytes;
    std::string       m_path;
    ModeEntry         m_mode;
    ModeEntryInfo     m_slot{};
};
