#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tool/Report.h"

namespace zaf {

/// An action of a file. All texts are UTF-8.
struct TShownAction {
  std::string name;
  std::string kind;     ///< As displayed: "Search".
  std::string element;  ///< Name of its XML element.
  std::string detail;   ///< A short description: tables, a condition. May be empty.
  std::int64_t parent;  ///< Index of its parent; -1 at the top.
  std::uint32_t depth;  ///< 0 at the top.
};

/// A header, section map or section of a legacy file.
struct TShownSection {
  std::uint64_t offset;
  std::uint64_t length;
  std::string code;     ///< Of a header "head", of a map "smap".
  std::int64_t action;  ///< Index of its action; -1: the file itself or the root container.
  std::string owner;    ///< Name of the action; empty: the file itself.
  std::string field;    ///< Its name in XML; empty if it has none.
  std::string value;    ///< A short description.
};

/// Consecutive bytes of a legacy file with the same use.
struct TShownRange {
  std::uint64_t offset;
  std::uint64_t length;
  std::size_t use;   ///< Index into kUseWords.
  std::string what;  ///< A short description.
};
inline constexpr std::string_view kUseWords[] = {"structure", "carried", "dropped", "unknown",
                                                 "unreferenced"};

/// The content of a file as the views show it.
struct TShownFile {
  TInputRecord record;  ///< With the form, the number of actions, and the losses.
  std::string version;  ///< The format number in hexadecimal.
  std::string title;
  std::string author;
  std::string revision;
  std::uint32_t data_sources = 0;
  std::uint32_t outputs = 0;
  std::vector<TShownAction> actions;  ///< In tree order.
  // For a legacy file, in file order.
  std::vector<TShownSection> sections;
  std::vector<TShownRange> ranges;  ///< Consecutive, without gaps.
  std::string image;                ///< All bytes, descrambled.
};

/// Loads the file at `path`. A file that cannot be read has an error in its record.
TShownFile LoadShownFile(const std::string& path);

/// The views of a file, complete with line ends.
std::string TreeView(const TShownFile& file);
std::string SectionsView(const TShownFile& file);
std::string BytesView(const TShownFile& file);
std::string JsonView(const TShownFile& file);
std::string HtmlView(const TShownFile& file);

/// The beginning of every page.
inline constexpr std::string_view kPageBegin =
    "<!doctype html>\n<html lang=\"en\" data-zaf-show>\n";

}  // namespace zaf
