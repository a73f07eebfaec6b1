// Paths taken apart and put together as plain text, without asking the file
// system. Both "/" and "\" count as separators wherever a path is split, so a
// path written either way ("C:\a\b.mdb", "/home/a/b.mdb") splits the same; a
// separator that these helpers add themselves is "/". Nothing here touches the
// disk or the process's current directory.
#pragma once

#include <string>
#include <string_view>

namespace ldg {

// True for "/" and "\".
bool IsPathSeparator(char c);

// The path up to and with its last separator or ":"; the empty text when the
// path holds neither or is blank. FolderOf("C:\a\b.mdb") is "C:\a\", and
// FolderOf("C:b") is "C:".
std::string FolderOf(std::string_view path);

// Replaces the path by its folder: every part but the last, each followed by
// the separator that followed it; a path that ends in ":" gets a "/" first.
// A bare name (one part) becomes the empty text.
void ParentPath(std::string& path);

// The last part of the path, behind its last separator.
std::string FileNameOf(std::string_view path);

// FileNameOf less its last "." and what follows; a name with no "." comes back
// whole.
std::string BaseNameOf(std::string_view path);

// "." followed by what stands behind the last "." of FileNameOf; a name with no
// "." gives "." alone.
std::string ExtensionOf(std::string_view path);

// Trims both, takes one leading separator off the name and sets exactly one
// separator between them ("/" unless the folder already ends in one). An
// empty folder gives the name alone.
std::string JoinPath(std::string_view folder, std::string_view name);

}  // namespace ldg
