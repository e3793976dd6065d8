/// @file
/// What a store holds of a file.
#pragma once

#include <memory>
#include <vector>

#include "parameters/parameterfilesymboltable.h"
#include "parameters/parametermodetable.h"

/// The trees of a file and its symbol table: what a reload replaces as a whole.
struct StoreContent
{
    std::vector<std::unique_ptr<ParameterModeTable>> modeTables;
    std::unique_ptr<ParameterFileSymbolTable>        pSymbolTable;
};
