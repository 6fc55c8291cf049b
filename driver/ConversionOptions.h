#pragma once

#include <optional>

#include "foundation/CText.h"
#include "foundation/FileSystem.h"

namespace zaf {

/// The options of the command line. Directories and names are as given: joined, never normalised.
struct ConversionOptions {
  CText extension{"zaf"};  ///< Of the files to convert, without its full stop.
  CText suffix{"xzf"};     ///< Of the converted files, without its full stop.
  CText input_directory;   ///< The working directory when none was given.
  CText input_name;
  CText output_name;
  CText output_directory;
  bool verify = false;
  bool recurse = false;
  bool debug = false;             ///< Accepted; has no effect.
  bool input_name_given = false;  ///< Convert one file, not a directory.
  bool output_name_given = false;

  // Derived from the others when these are complete.
  CText dotted_extension;
  CText search_pattern;
  CText dotted_suffix;
  /// The identity of the output directory if `recurse` is set; a walk does not enter it.
  std::optional<TFileIdentity> output_identity;
};

}  // namespace zaf
