#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "appfile/TActionTree.h"
#include "fields/TProperty.h"
#include "foundation/CText.h"
#include "foundation/FourCharCode.h"

namespace zaf {

/// The content of a file. Determines the document type and the root element.
enum class DocumentKind : std::uint8_t { kApplication, kClassFile };

/// An application, or a class file, in memory: its own properties and the tree of its actions.
struct TApplication {
  DocumentKind kind = DocumentKind::kApplication;
  std::uint32_t format_version = 0;     ///< Format number of the file; 0: it has none.
  bool is_run_only = false;             ///< Saved in a form that can be run but not edited.
  bool is_legacy = false;               ///< Loaded from a legacy file.
  std::uint32_t total_record_size = 0;  ///< Of the loaded actions, in bytes.

  FourCharCode host_type = kNoCode;  ///< Kind of the default data source.
  CText data_source;
  CText host;
  CText database;
  CText user_name;  ///< In clear, as is the password.
  CText password;
  CText dbms;
  CText form;
  CText signature;
  CText comments;
  CText author;
  CText title;
  CText revision;
  bool is_debug = false;

  TActionTree actions{this};

  TApplication() = default;
  TApplication(const TApplication&) = delete;
  TApplication& operator=(const TApplication&) = delete;

  /// All fields with a legacy section, and the attributes and children of the XML root.
  static std::span<const TProperty> Properties();
  /// The default data source as attributes and children of its `DataSource` element, and the user
  /// and password in its `DataSourceInfo`.
  static std::span<const TProperty> DataSourceProperties();
  static std::span<const TProperty> DataSourceInfoProperties();

  /// Whether the default data source has any content.
  [[nodiscard]] bool HasDataSource() const;

  /// The name of the XML root element and of the document type.
  [[nodiscard]] std::string_view GetRootElement() const;

  /// Whether both have the same debug flag, texts and actions.
  [[nodiscard]] bool IsEqual(const TApplication& other) const;
};

}  // namespace zaf
