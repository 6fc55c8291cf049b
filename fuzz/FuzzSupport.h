#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "appfile/TZanfoFile.h"

namespace zaf::fuzz {

/// Ends the process with a message when something that must hold does not.
inline void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

/// Loads a file from its bytes.
inline Status LoadBytes(std::string_view bytes, TZanfoFile& file) {
  TDataFile data(AsBytes(bytes));
  return file.Load(data, nullptr);
}

/// Saves a file into memory and gives what was written.
inline std::string SaveToXml(TZanfoFile& file, Protection protection) {
  char* bytes = nullptr;
  std::size_t size = 0;
  TDataFile data(open_memstream(&bytes, &size));
  const Status status = file.Save(data, nullptr, protection);
  data.Close();
  std::string saved(bytes, size);
  std::free(bytes);
  Require(status == Status::kOk, "what was loaded can be saved");
  return saved;
}

}  // namespace zaf::fuzz
