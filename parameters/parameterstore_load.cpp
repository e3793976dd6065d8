/// Loading of a whole parameter file.
#include "parameters/parameterstore.h"

#include <cstring>
#include <utility>

#include "parameters/live/parametervernierworker.h"
#include "parameters/modesectionreader.h"
#include "parameters/parameterbinaryfile.h"
#include "parameters/parameterfilesymboltable.h"
#include "parameters/parameterutils.h"

namespace
{

/// What is read of a file in file mode to find its sections: header and section table must lie in these bytes.
constexpr UINT32 SectionTableBytes = 3388;

/// A larger file is read again piece by piece: its records and the whole of it would stand in memory side by side.
constexpr UINT64 KeptBytesMax = 4U << 20;

}  // namespace

bool ParameterStore::LoadBinaryParameters(const CHAR* pFileName)
{
    const std::lock_guard<ParameterMutex> lock(m_dataMutex);
    if (pFileName == nullptr)
    {
        SetError("LoadBinaryParameters called with nullptr file name");
        return false;
    }
    const size_t nameLength = std::strlen(pFileName);
    if (nameLength >= ParameterBinaryFile::MaxFileName - 1)
    {
        Refuse("File name length (%lld) exceeds max file name length of %d\n", static_cast<INT64>(nameLength),
               static_cast<INT32>(ParameterBinaryFile::MaxFileName - 1));
        return false;
    }
    ParameterLogging::Write(&m_rManager, ParameterLogging::Debug, "Load Binary Parameters from file: %s\n", pFileName);
    return BeginLoad() && EndLoad(LoadFile(pFileName));
}

bool ParameterStore::LoadBinaryParameters(const BYTE* pBuffer, UINT64 length)
{
    const std::lock_guard<ParameterMutex> lock(m_dataMutex);
    ParameterLogging::Write(&m_rManager, ParameterLogging::Debug, "Load Binary Parameters from buffer\n");
    return BeginLoad() && EndLoad(LoadBuffer(pBuffer, length));
}

bool ParameterStore::BeginLoad()
{
    m_valid = false;
    if (m_content.pSymbolTable != nullptr)
    {
        SetError("Binary file already loaded");
        return false;
    }
    const std::lock_guard<std::mutex> lock(m_errorMutex);
    m_errorText.clear();
    return true;
}

bool ParameterStore::EndLoad(bool loaded)
{
    ForgetLookups();
    m_valid = loaded;
    if (!loaded)
    {
        // Nothing half-built may be reachable.
        FreeBinaryParameters();
    }
    else if (m_pWorker != nullptr && IsAutostart)
    {
        m_pWorker->Start();
    }
    return loaded;
}

bool ParameterStore::LoadBuffer(const BYTE* pBuffer, UINT64 length)
{
    constexpr UINT64 MaxLength = 0xFFFFFFFF;

    if (length > MaxLength)
    {
        Refuse("Buffer length (%llu) exceeds maximum %lu\n", length, static_cast<unsigned long>(MaxLength));
        return false;
    }
    if (!ReadHeader(pBuffer, length) || !ReadSections(pBuffer, length, nullptr))
    {
        return false;
    }
    const auto& rVersion = m_header.Version.Version;
    ParameterLogging::Write(&m_rManager, ParameterLogging::Debug,
                            "Load Binary Parameters completed: Tag: %s, Version: %d.%d.%d\n",
                            m_header.BinaryTag.c_str(), rVersion.Major, rVersion.Minor, rVersion.Patch);
    return true;
}

bool ParameterStore::LoadFile(const CHAR* pFileName)
{
    auto        pFile  = std::make_shared<ParameterBinaryFile>(pFileName, &m_rManager);
    TuningBlock pWhole = pFile->Read(0, pFile->Length());
    if (!pFile->IsValid() || pWhole == nullptr)
    {
        SetError("Unable to allocate space to read binary file");
        return false;
    }
    if (!m_options.fileMode)
    {
        ParameterLogging::Write(&m_rManager, ParameterLogging::Debug, "Load Binary Parameters from buffer\n");
        return LoadBuffer(pWhole.get(), pFile->Length());
    }

    m_fileName = pFileName;
    if (!ReadHeader(pWhole.get(), pFile->Length()))
    {
        return false;
    }
    if (pFile->Length() <= KeptBytesMax)
    {
        pFile->KeepInMemory(std::move(pWhole));
    }
    pWhole.reset();
    const TuningBlock pStart = pFile->Read(0, SectionTableBytes);
    if (pStart == nullptr)
    {
        Refuse("Failed to read %d bytes from binary file %s\n", SectionTableBytes, pFileName);
        return false;
    }
    if ((m_header.Flags & BinaryFileFormat::CompressedFlag) != 0)
    {
        Refuse("Compressed binary files ssupport removed in V5.1.0\n");
        return false;
    }
    if (!ReadSections(pStart.get(), SectionTableBytes, pFile))
    {
        return false;
    }
    const auto& rVersion = m_header.Version.Version;
    ParameterLogging::Write(&m_rManager, ParameterLogging::Debug,
                            "Load Binary Parameters completed: Binary Version: %d.%d.%d\n", rVersion.Major,
                            rVersion.Minor, rVersion.Patch);
    if (m_content.pSymbolTable->File() != nullptr)
    {
        // The file is closed until a mode has to be read, so that it can be replaced on disk, and gives up its memory.
        m_content.pSymbolTable->FileReference(-1);
    }
    return true;
}

bool ParameterStore::ReadHeader(const BYTE* pBuffer, UINT64 length)
{
    UINT64      position = 0;
    std::string errorText;
    m_header = {};
    if (!BinaryFileFormat::ReadHeader(pBuffer, length, position, m_header, errorText, &m_rManager))
    {
        SetError(errorText.c_str());
        return false;
    }
    PublishLoggingIdentifier(m_name.empty() ? m_header.BinaryTag : m_name + ";BinaryTag=" + m_header.BinaryTag);
    return true;
}

bool ParameterStore::ReadSections(const BYTE* pBuffer, UINT64 length, std::shared_ptr<ParameterBinaryFile> pFile)
{
    BinaryFileSections sections;
    UINT64             position = m_header.SectionTableOffset;
    std::string        errorText;
    if (!BinaryFileFormat::ReadSectionInfo(pBuffer, length, position, m_header.Alignment, m_header.SectionCount,
                                           sections, errorText, &m_rManager))
    {
        if (!errorText.empty())
        {
            SetError(errorText.c_str());
        }
        SetError("Invalid binary file section count");
        return false;
    }
    if ((m_header.Flags & BinaryFileFormat::CompressedFlag) != 0)
    {
        SetError("Compressed binary file not supported (support ended with V5.1.0)");
        return false;
    }

    m_content.pSymbolTable =
        std::make_unique<ParameterFileSymbolTable>(&m_rManager, &m_rManager, m_header.Alignment, m_header.Version);
    ModeSectionReader modeReader(m_rManager, m_header, pFile == nullptr);
    if (!modeReader.Read(pBuffer, length, pFile.get(), sections.ModeTables, m_content.modeTables))
    {
        return false;
    }
    if (sections.Symbols.Offset == 0 || sections.Symbols.Size == 0 || sections.Data.Offset == 0 ||
        sections.Data.Size == 0)
    {
        ParameterLogging::Write(&m_rManager, ParameterLogging::Warning,
                                "ReadModeSections: Binary missing symbol table or data SymbolOffset(%d) && "
                                "SymbolSize(%d) && DataOffset(%d) && DataSize(%d)\n",
                                sections.Symbols.Offset, sections.Symbols.Size, sections.Data.Offset,
                                sections.Data.Size);
        return true;
    }
    return ReadTuning(pBuffer, length, std::move(pFile), sections);
}

bool ParameterStore::ReadTuning(const BYTE* pBuffer, UINT64 length, std::shared_ptr<ParameterBinaryFile> pFile,
                                const BinaryFileSections& rSections)
{
    const bool                wholeFile = (pFile == nullptr);
    ParameterFileSymbolTable& rTable    = *m_content.pSymbolTable;
    bool                      loaded    = rTable.Load(pBuffer, length, std::move(pFile), rSections, &m_rManager, true);
    if (!loaded)
    {
        SetError("Failed to read symbol table, data table or definition table");
    }
    if (!rTable.IsInMemory())
    {
        rTable.FreeEntryData();
    }
    loaded = loaded && ReadModules(wholeFile);
    rTable.FreeEntryData();
    if (wholeFile)
    {
        rTable.FreeLookupData();
    }
    rTable.ClearDefinitions(wholeFile);
    return loaded;
}

bool ParameterStore::ReadModules(bool wholeFile)
{
    // A bad module fails the load, but the ones behind it are read all the same: the log then names all that is wrong.
    const ParameterFileSymbolTable& rTable  = *m_content.pSymbolTable;
    const ModuleData*               pLoaded = nullptr;
    bool                            result  = true;
    for (UINT32 index = 0; index < rTable.ModuleCount(); ++index)
    {
        ModuleData*    pModuleData = rTable.GetModule(index);
        DefaultModule* pDefault    = m_rManager.GetDefaultModule(pModuleData->NameHash);
        if (pDefault == nullptr && m_options.allowUnknownModules)
        {
            continue;
        }
        const bool       load    = wholeFile || pModuleData->Mode->Entry->Preserve;
        ParameterModule* pModule = CreateModule(pDefault, pModuleData, load);
        result                   = pModule != nullptr && AddModule(pModuleData, pModule) && result;
        pLoaded                  = load ? pModuleData : pLoaded;
    }
    // Records that came from memory are of one state of the file; whether it is still that is seen once for all.
    if (pLoaded != nullptr && rTable.IsInMemory() && !rTable.IsFileUnchanged())
    {
        SetError("Failed to parse binary header data for: ", pLoaded);
        return false;
    }
    return result;
}

ParameterModule* ParameterStore::CreateModule(DefaultModule* pDefault, ModuleData* pModuleData, bool load)
{
    if (pDefault == nullptr)
    {
        SetError("Failed to find header module: ", pModuleData);
        return nullptr;
    }
    ParameterModule* pModule = pDefault->DefaultInstance().Create(pModuleData, pDefault);
    if (pModule == nullptr || (load && !pModule->LoadModule(pModuleData->SymbolTable)))
    {
        SetError("Failed to parse binary header data for: ", pModuleData);
        return nullptr;
    }
    return pModule;
}

bool ParameterStore::AddModule(const ModuleData* pModuleData, ParameterModule* pModule)
{
    const UINT32 tableIndex = pModuleData->GetModeTableIndex();
    const UINT32 modeIndex  = pModuleData->GetModeIDValue();
    const auto&  rTables    = m_content.modeTables;
    if (tableIndex < rTables.size() && rTables[tableIndex]->RootMode.Entry == nullptr)
    {
        SetError("AddModule: RootMode is nullptr");
        return false;
    }
    const UINT32 modeCount = (tableIndex < rTables.size()) ? rTables[tableIndex]->Count() : 0;
    if (modeIndex >= modeCount)
    {
        Refuse("AddModule: moduleData->ModeId(%d) >= m_modeCount(%d)\n", pModuleData->ModeId, modeCount);
        return false;
    }
    ModeEntry* pMode = rTables[tableIndex]->Modes[modeIndex].Entry;
    if (pMode == nullptr)
    {
        SetError("AddModule: the mode was refused of: ", pModuleData);
        return false;
    }
    pMode->AddModule(pModule);
    return true;
}

StoreContent ParameterStore::TakeContent()
{
    StoreContent content = std::exchange(m_content, {});
    FreeBinaryParameters();
    return content;
}

VOID ParameterStore::FreeBinaryParameters()
{
    ParameterLogging::Write(&m_rManager, ParameterLogging::Debug, "FreeBinaryParameters called\n");
    ForgetLookups();  // once for all: nobody looks up while content is replaced or freed
    // The modules' data stands in the symbol table, and their modes in the mode tables.
    for (const auto& [nameHash, rpModule] : m_defaultModules)
    {
        rpModule->RemoveAll();
    }
    m_content.pSymbolTable.reset();
    m_content.modeTables.clear();
    m_header = {};
    PublishLoggingIdentifier(m_name);
    m_fileName.clear();
}
