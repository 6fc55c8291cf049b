#include "foundation/StandardPaths.h"

namespace zaf {

std::filesystem::path StreamPath(std::string_view path) { return path; }
std::filesystem::path ToPath(std::string_view text) { return text; }
std::string ToText(const std::filesystem::path& path) { return path.native(); }

}  // namespace zaf
