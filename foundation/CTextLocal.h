#pragma once

#include <cassert>
#include <cstdint>
#include <string_view>

#include "foundation/CText.h"

namespace zaf {

/// A text in a fixed buffer of N bytes inside the object (at most N - 1 characters), for texts
/// whose maximum length is part of the data. Never allocates; its capacity is always N. A text that
/// does not fit is refused and the old characters remain; Set then appends a NUL, counted in the
/// length, to an old text that was not empty.
///
/// Points into itself, so its bytes must not be moved: it cannot be an element of a CDynamicArray.
template <std::uint32_t N>
class CTextLocal final : public CText {
 public:
  CTextLocal() {
    assert(inner_ == reinterpret_cast<char*>(this) + sizeof(CText));
    UseInnerStorage(inner_, N);
    inner_[0] = 0;
  }
  CTextLocal(std::string_view text) : CTextLocal() {  // NOLINT(google-explicit-constructor)
    CText::Assign(text);
  }
  CTextLocal(const char* text) : CTextLocal() {  // NOLINT(google-explicit-constructor)
    CText::Assign(text);
  }
  explicit CTextLocal(const CText& text) : CTextLocal() { CText::Assign(text); }
  CTextLocal(const CTextLocal& other) : CTextLocal() { CText::Assign(other); }
  ~CTextLocal() override { DropStorage(); }

  CTextLocal& operator=(const CTextLocal& other) {
    if (this != &other) CText::Assign(other);
    return *this;
  }
  using CText::operator=;

  char* GetData() override { return inner_; }
  using CData::GetData;

  /// False for more than N bytes; a size below the length cuts the text.
  bool Reserve(std::uint32_t size) override {
    if (size > N) return false;
    if (size < GetLength()) {
      SetLength(size);
      if (size != 0) inner_[size - 1] = 0;
    }
    return true;
  }

  /// Clears; the storage is part of the object.
  void Release() override { Clear(); }

 private:
  char inner_[N];
};

}  // namespace zaf
