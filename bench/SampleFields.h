#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "bench/SampleText.h"
#include "tests/support/LegacyFile.h"

namespace zaf::bench {

/// The amount of content of an application.
struct TSampleStyle {
  std::uint32_t field_chance;    ///< Percentage of the optional fields that are present.
  std::uint32_t list_items;      ///< Maximum number of items in a list.
  std::uint32_t results_chance;  ///< Percentage of actions that have results, if they may.
  std::uint32_t page_size;       ///< Usual number of bytes of a page of HTML.
  std::uint32_t phrase_size;     ///< Usual number of bytes of a comment or a short text.
};

/// Writes the sections of actions, whose kinds are given by their legacy type codes.
class TSampleFields {
 public:
  TSampleFields(const TSampleStyle& style, TRandom& random, TSampleText& text,
                test::LegacyFile& file);

  /// Writes the fields of the application itself.
  void WriteApplication();
  /// Writes all sections of the action that was begun last.
  void WriteAction(std::string_view type);
  /// The codes of the sections of all groups.
  static std::vector<std::string_view> Codes();
  /// Returns the bytes of a section of any group; empty for a code that is in no group.
  std::string MakeSection(std::string_view code);

 private:
  enum class Form : std::uint8_t;
  struct TField;

  static std::span<const TField> Fields();
  void WriteRows(std::string_view group);
  std::string Make(Form form);
  std::string MakeText(Form form);
  std::string MakeBlock(Form form);
  std::string MakeList(Form form);
  std::string MakeRecord(Form form, std::uint32_t index);
  std::string MakeBuilderRecord(Form form, std::uint32_t index);

  std::string Column();
  std::string Criterion();
  std::string Join();
  std::string Value();
  std::string BuilderColumn(std::uint32_t index);
  std::string InputOptions(std::uint32_t index);
  std::string DisplayOptions(std::size_t size, std::uint32_t index);
  std::string AssignItem();
  std::string Parameters(bool is_event);
  std::string Assignments(std::size_t value_width);
  std::string Texts(std::uint32_t count);

  std::string Slot(std::string_view text) const;
  std::string LongSlot(std::string_view text) const;

  TSampleStyle style_;
  TRandom& random_;
  TSampleText& text_;
  test::LegacyFile& file_;
  bool has_older_records_;  ///< Names of 32 bytes instead of 128.
};

}  // namespace zaf::bench
