/// Requests of a tuning tool that are whole and well framed, with any texts in them: every command of the live tuning
/// service on a loaded tuning, one after the other and without threads.
///
/// An input is requests separated by the byte 0x1E. The low four bits of a request's first byte are its command, so
/// that "3Default" asks for modes; bit 7 cuts the header short, bit 6 gives another service's ID.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

#include "parameters/live/parametervernierworker.h"
#include "parameters/parametersetmanager.h"
#include "schema/modules.h"

/// Serves requests without a transport.
class ThreadlessWorker
{
public:
    explicit ThreadlessWorker(IParameterDataAPI* pStore) : m_worker(pStore)
    {
    }

    VOID Serve(std::span<const BYTE> request)
    {
        m_worker.Dispatch(request.data(), static_cast<UINT32>(request.size()));
    }

    ParameterVernierWorker& Worker()
    {
        return m_worker;
    }

private:
    ParameterVernierWorker m_worker;
};

namespace
{

constexpr BYTE Separator   = 0x1E;
constexpr BYTE ShortHeader = 0x80;
constexpr BYTE OtherID     = 0x40;

/// Answers a custom command with its own bytes, and trigger requests with a number.
class Echo final : public IVernierCustomHandler
{
public:
    explicit Echo(ParameterVernierWorker& rWorker) : m_rWorker(rWorker)
    {
    }

    UINT16 ProcessCustom(const BYTE* pPayload, UINT32 payloadSize, UINT32 capacity, BYTE* pOutput,
                         UINT32& rOutputSize) override
    {
        rOutputSize = std::min(payloadSize, capacity);
        std::copy_n(pPayload, rOutputSize, pOutput);
        return 1;
    }

    VOID RequestTriggerValues(const CHAR* pModePath, const CHAR* pModule, UINT64, const CHAR* pPipeline) override
    {
        const ParameterCTValue value{1, 0.5};
        (VOID) m_rWorker.SetTriggerValues(pModePath, pModule, pPipeline, pModule, &value, 1);
    }

private:
    ParameterVernierWorker& m_rWorker;
};

std::vector<BYTE> ReadTuning()
{
    FILE* const pFile = std::fopen(TUNING_FILE, "rb");
    if (pFile == nullptr)
    {
        std::fprintf(stderr, "cannot read %s\n", TUNING_FILE);
        std::abort();
    }
    std::vector<BYTE> bytes(size_t{1} << 20);
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), pFile));
    std::fclose(pFile);
    return bytes;
}

/// A loaded store in which nothing is set yet: an input must do the same alone as behind others.
ParameterSetManager& FreshStore()
{
    static const std::vector<BYTE>              bytes = ReadTuning();
    static std::unique_ptr<ParameterSetManager> pStore;
    if (pStore == nullptr || pStore->GetSetValueCount() > 0)
    {
        ParameterSetManager::Options options;
        options.logDebug = true;
        pStore           = std::make_unique<ParameterSetManager>("fuzz", tuning::TuningModules, options);
        if (!pStore->LoadBinaryParameters(bytes.data(), bytes.size()))
        {
            std::abort();
        }
    }
    return *pStore;
}

std::vector<BYTE> Request(std::span<const BYTE> text, UINT64 vernierID)
{
    const UINT16      command = text[0] & 0xF;
    const UINT32      header  = vernier::PayloadOffset(command);
    std::vector<BYTE> request(header);
    request.insert(request.end(), text.begin() + 1, text.end());
    request.push_back(0);
    if ((text[0] & ShortHeader) != 0)
    {
        request.resize(std::min<size_t>(request.size(), text.size()));
    }
    request.resize(std::min<size_t>(request.size(), vernier::PacketLimit - 1));
    const UINT64 id = vernierID + (((text[0] & OtherID) != 0) ? 1 : 0);

    BYTE         head[vernier::HeaderSize];
    const UINT16 words[] = {vernier::StartTag, command, static_cast<UINT16>(request.size())};
    std::memcpy(head, words, sizeof(words));
    std::memcpy(head + vernier::IDOffset, &id, sizeof(id));
    std::copy_n(head, std::min(request.size(), sizeof(head)), request.begin());
    return request;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const BYTE* pData, size_t size)
{
    ParameterSetManager& rStore = FreshStore();
    ThreadlessWorker     service(&rStore);
    Echo                 handler(service.Worker());
    service.Worker().SetCustomHandler(&handler);
    service.Worker().SetControlValue(ParameterCTValue{3, 1e300});

    std::span<const BYTE> rest(pData, size);
    while (!rest.empty())
    {
        const auto   end    = std::find(rest.begin(), rest.end(), Separator);
        const size_t length = static_cast<size_t>(end - rest.begin());
        if (length > 0)
        {
            service.Serve(Request(rest.first(length), reinterpret_cast<UINT64>(&rStore)));
        }
        rest = rest.subspan(std::min(length + 1, rest.size()));
    }
    service.Worker().SetCustomHandler(nullptr);
    return 0;
}
