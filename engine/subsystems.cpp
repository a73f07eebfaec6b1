#include "engine/subsystems.hpp"

namespace ldg {

Subsystems& RegisteredSubsystems() {
  static Subsystems subsystems;
  return subsystems;
}

}  // namespace ldg
