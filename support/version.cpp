#include "support/version.hpp"

#include <cstdio>

namespace ldg {

std::string VersionText(int major, int minor, int revision, const std::string& build_date) {
  char text[32];
  std::snprintf(text, sizeof text, "%02d.%02d.%03d", major, minor, revision);
  return std::string(text) + " - " + build_date;
}

}  // namespace ldg
