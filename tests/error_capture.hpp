// Runs an action that is expected to raise and gives back the number of the
// ldg::Error it raised, or 0 when it raised nothing.
#pragma once

#include <cstdint>

#include "support/error.hpp"

namespace ldg {

inline int32_t ErrorNumberOf(auto&& action) {
  try {
    action();
  } catch (const Error& error) {
    return error.Number();
  }
  return 0;
}

}  // namespace ldg
