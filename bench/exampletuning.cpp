#include "bench/exampletuning.h"

#include <memory>
#include <utility>

#include "tools/tuningfile/files.h"
#include "tools/tuningfile/textinput.h"

tuningfile::Tuning exampletuning::With(const CHAR* pFile, const std::string& rText, const CHAR* pName)
{
    tuningfile::Tuning       example = tuningfile::ReadTextFile(std::string(KIRO_EXAMPLE_TUNINGS) + pFile);
    const tuningfile::Tuning other   = tuningfile::ParseText(rText, pName);
    for (const tuningfile::Module& rModule : other.tables.at(0).modes.at(0).modules)
    {
        for (tuningfile::Module& rReplaced : example.tables.at(0).modes.at(0).modules)
        {
            if (rReplaced.pDescription == rModule.pDescription)
            {
                rReplaced.pRecord = rModule.pRecord;
            }
        }
    }
    example.pMemory = std::make_shared<std::pair<std::shared_ptr<const VOID>, std::shared_ptr<const VOID>>>(
        example.pMemory, other.pMemory);
    return example;
}
