/// Text tunings as people and their tools write them: each is refused with one line, or compiled to a file that the
/// store takes.
#include <cstdlib>
#include <string>
#include <vector>

#include "parameters/parametersetmanager.h"
#include "tools/tuningfile/binaryoutput.h"
#include "tools/tuningfile/inputerror.h"
#include "tools/tuningfile/textinput.h"

extern "C" int LLVMFuzzerTestOneInput(const BYTE* pData, size_t size)
{
    const std::string text(reinterpret_cast<const CHAR*>(pData), size);
    try
    {
        const tuningfile::Tuning tuning = tuningfile::ParseText(text, "fuzz.yaml");
        const std::vector<BYTE>  file   = tuningfile::WriteBinary(tuning, tuningfile::NewestVersion);

        ParameterSetManager::Options options;
        ParameterSetManager          store("fuzz", tuning::TuningModules, options);
        if (!store.LoadBinaryParameters(file.data(), file.size()))
        {
            std::abort();
        }
    }
    catch (const tuningfile::InputError& rError)
    {
        if (std::string(rError.what()).find('\n') != std::string::npos)
        {
            std::abort();  // a message is one line
        }
    }
    return 0;
}
