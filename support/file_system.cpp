#include "support/file_system.hpp"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>

#include "support/folders.hpp"
#include "support/paths.hpp"

namespace ldg {
namespace fs = std::filesystem;

namespace {

thread_local std::string last_folder_probe;

void ProbeAppend(const std::string& path) { std::ofstream file(path, std::ios::binary | std::ios::app); }

void ProbeFolderWrite(const std::string& folder) {
  std::string probe = JoinPath(folder, UniqueName());
  last_folder_probe = probe;
  {
    std::ofstream file(probe, std::ios::binary);
    if (!file) return;
    file << "HelloWorld!";
  }
  std::error_code ignored;
  fs::remove(probe, ignored);
}

}  // namespace

bool FileExists(const std::string& path, bool test_write) {
  std::error_code error;
  bool exists = !path.empty() && fs::exists(path, error) && !fs::is_directory(path, error);
  if (exists && test_write) ProbeAppend(path);
  return exists;
}

bool FolderExists(const std::string& path, bool test_write) {
  std::error_code error;
  bool exists = !path.empty() && fs::is_directory(path, error);
  // Deliberate: the probe runs when test_write is false; pinned by a test.
  if (exists && !test_write) ProbeFolderWrite(path);
  return exists;
}

bool DeleteFile(const std::string& path) {
  std::error_code error;
  if (path.empty() || fs::is_directory(path, error)) return false;
  return fs::remove(path, error);
}

std::optional<std::string> ReadTextFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return std::nullopt;
  std::ostringstream content;
  content << file.rdbuf();
  if (file.bad()) return std::nullopt;
  return content.str();
}

std::string LastFolderProbeForTesting() { return last_folder_probe; }

}  // namespace ldg
