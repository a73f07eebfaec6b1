// The component's version and build date.
#pragma once

#include <string>

namespace ldg {

inline constexpr int kVersionMajor = 6;
inline constexpr int kVersionMinor = 1;
inline constexpr int kVersionRevision = 39;
inline constexpr const char* kBuildDate = "14.03.2023";

// "06.01.039 - 14.03.2023": major and minor to two digits, revision to three.
std::string VersionText(int major = kVersionMajor, int minor = kVersionMinor, int revision = kVersionRevision,
                        const std::string& build_date = kBuildDate);

}  // namespace ldg
