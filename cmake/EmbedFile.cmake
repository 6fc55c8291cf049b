# Generates a C++ source from a file: cmake -DINPUT=... -DOUTPUT=... -DNAME=... -P EmbedFile.cmake
# The source defines the std::string_view zaf::NAME with the bytes of the file.
file(READ ${INPUT} bytes HEX)
string(REGEX REPLACE "(..)" "'\\\\x\\1'," bytes "${bytes}")
file(WRITE ${OUTPUT} "#include <string_view>\nnamespace zaf {\nextern const std::string_view ${NAME};\n\
static constexpr char kBytes[] = {${bytes}};\nconst std::string_view ${NAME}{kBytes, sizeof kBytes};\n}\n")
