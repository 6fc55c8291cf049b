#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>

namespace zaf::test {

/// The result of an operation as text: a number in decimal (kNoIndex is "-1"), nothing for void.
template <class Result>
std::string Show(const Result& result) {
  if constexpr (std::is_same_v<Result, std::uint32_t>)
    return std::to_string(static_cast<std::int32_t>(result));
  else if constexpr (std::is_arithmetic_v<Result>)
    return std::to_string(result);
  else
    return std::string(result);
}

/// An operation on a container and its effect: a row of a table.
template <class Container>
struct TOperation {
  template <class Function>
  TOperation(Function function)  // NOLINT(google-explicit-constructor)
      : run([function](Container& container) -> std::string {
          if constexpr (std::is_void_v<decltype(function(container))>)
            return function(container), std::string();
          else
            return Show(function(container));
        }) {}

  std::function<std::string(Container&)> run;
};

}  // namespace zaf::test
