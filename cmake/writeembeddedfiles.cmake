# Writes OUTPUT, a C++ file with the bytes of FILES as `webfile::NAME`. Run by embed_files.
set(arrays "")
set(entries "")
set(index 0)
foreach(file IN LISTS FILES)
    cmake_path(GET file FILENAME file_name)
    file(SIZE ${file} size)
    file(READ ${file} bytes HEX)
    string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
    string(APPEND arrays "const unsigned char ${NAME}Bytes${index}[] = {${bytes}0};\n")
    string(APPEND entries "    MakeFile(\"${file_name}\", ${NAME}Bytes${index}, ${size}),\n")
    math(EXPR index "${index} + 1")
endforeach()
file(WRITE ${OUTPUT}
"#include \"tools/webfile/webfile.h\"

namespace webfile
{

namespace
{

${arrays}
const File ${NAME}List[] = {
${entries}};

}  // namespace

extern const std::span<const File> ${NAME};
const std::span<const File> ${NAME}(${NAME}List);

}  // namespace webfile
")
