// The small file-system service the engine asks about files and folders:
// existence, deletion and reading a text file. The existence tests may run a
// write probe as well, but the probe never changes their answer. Paths are
// taken as given; nothing here changes the process's current directory.
#pragma once

#include <optional>
#include <string>

namespace ldg {

// True for an existing file that is not a folder. With test_write, an existing
// file is also opened for appending and closed again; a failure of that step
// is ignored.
bool FileExists(const std::string& path, bool test_write = false);

// True for an existing folder. With test_write false (deliberately not true:
// kept as the folder search has always run it, pinned by a test), the text
// "HelloWorld!" is written into a uniquely named file in the folder and the
// file deleted again; a failure of that step is ignored.
bool FolderExists(const std::string& path, bool test_write = false);

// Deletes a file; false when there was none or it could not be deleted.
bool DeleteFile(const std::string& path);

// The whole content of a file, or nothing when it cannot be read.
std::optional<std::string> ReadTextFile(const std::string& path);

// Hook for tests: the path of the last write probe that FolderExists made,
// the empty text before the first.
std::string LastFolderProbeForTesting();

}  // namespace ldg
