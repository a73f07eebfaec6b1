// Where the engine may write: the writable folder, the temporary folder below
// it, and unique names for temporary files. The search runs afresh on every
// call and keeps no local-folder setting: before each search the old setting
// "LocalDir" is removed from the per-user settings store. Nothing here changes
// the process's current directory.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace ldg {

// The mark that every unique name carries.
inline constexpr const char* kUniqueNameMark = "_$_$_";
// The folder below the writable folder that holds temporary files.
inline constexpr const char* kTempFolderName = "_temp_";

// The first of these that exists as a folder, skipping variables that are
// unset or empty:
//   1. $VELMORA_DEBUG
//   2. $USERPROFILE joined with "Documents"
//   3. $USERPROFILE joined with "Eigene Dateien"
//   4. $HOMEDRVE and $HOMEPATH run together, joined with "Documents"
//   5. the same joined with "Eigene Dateien"
//   6. $TEMP   7. $TMP   8. $HOMEDRIVE
//   9. $HOME joined with "Documents"   10. $HOME   11. $TMPDIR
// and "/tmp" when none does.
std::string WritableFolder();

// The writable folder joined with "_temp_", created when missing; the writable
// folder itself when it cannot be created.
std::string TempFolder();

// The mark followed by a random number from 0 to 999999, padded with "0" to
// six digits: "_$_$_004711".
std::string UniqueName();

// A unique name in the temporary folder, with "." and the extension when one
// is given (a leading "." of the extension is not doubled), drawn again for as
// long as such a file exists.
std::string TempFilePath(std::string_view extension = "");

// Hook for tests: replaces the random source of UniqueName on this thread; an
// empty function restores the default source.
using RandomDraw = std::function<int32_t()>;
void SetRandomDrawForTesting(RandomDraw draw);

}  // namespace ldg
