#include "support/folders.hpp"

#include <filesystem>
#include <random>
#include <system_error>
#include <vector>

#include "support/file_system.hpp"
#include "support/opt.hpp"
#include "support/paths.hpp"
#include "support/platform.hpp"

namespace ldg {
namespace {

constexpr int32_t kUniqueNumbers = 1000000;
constexpr const char* kLastResortFolder = "/tmp";

thread_local RandomDraw random_draw_for_testing;

int32_t DrawNumber() {
  if (random_draw_for_testing) return random_draw_for_testing();
  thread_local std::mt19937 generator{std::random_device{}()};
  return std::uniform_int_distribution<int32_t>(0, kUniqueNumbers - 1)(generator);
}

// The folder setting of old versions is removed wherever it may still stand,
// so that the search below decides alone.
void RemoveLocalDirSetting() {
  Opt opt;
  for (const char* prog_path : {"", "Interface"}) {
    for (const char* options_path : {"Config", "Options"}) {
      opt.Init(std::nullopt, std::string(prog_path), std::string(options_path));
      opt.ItemDel("LocalDir");
    }
  }
}

std::vector<std::string> Candidates() {
  std::vector<std::string> candidates;
  auto add = [&](const std::string& folder) {
    if (!folder.empty()) candidates.push_back(folder);
  };
  auto add_joined = [&](const std::string& folder, const char* name) {
    if (!folder.empty()) candidates.push_back(JoinPath(folder, name));
  };
  std::string profile = EnvironmentValue("USERPROFILE");
  // Deliberate: the variable's name is misspelled "HOMEDRVE"; pinned by a test.
  std::string home_path = EnvironmentValue("HOMEDRVE") + EnvironmentValue("HOMEPATH");
  std::string home = EnvironmentValue("HOME");
  add(EnvironmentValue("VELMORA_DEBUG"));
  add_joined(profile, "Documents");
  add_joined(profile, "Eigene Dateien");
  add_joined(home_path, "Documents");
  add_joined(home_path, "Eigene Dateien");
  add(EnvironmentValue("TEMP"));
  add(EnvironmentValue("TMP"));
  add(EnvironmentValue("HOMEDRIVE"));
  add_joined(home, "Documents");
  add(home);
  add(EnvironmentValue("TMPDIR"));
  return candidates;
}

}  // namespace

std::string WritableFolder() {
  RemoveLocalDirSetting();
  for (const std::string& candidate : Candidates()) {
    if (FolderExists(candidate)) return candidate;
  }
  return kLastResortFolder;
}

std::string TempFolder() {
  std::string writable = WritableFolder();
  std::string temp = JoinPath(writable, kTempFolderName);
  if (FolderExists(temp, true)) return temp;
  std::error_code error;
  std::filesystem::create_directory(temp, error);
  return FolderExists(temp, true) ? temp : writable;
}

std::string UniqueName() {
  int32_t number = DrawNumber() % kUniqueNumbers;
  if (number < 0) number += kUniqueNumbers;
  std::string digits = std::to_string(number);
  return kUniqueNameMark + std::string(6 - digits.size(), '0') + digits;
}

std::string TempFilePath(std::string_view extension) {
  if (!extension.empty() && extension.front() == '.') extension.remove_prefix(1);
  std::string folder = TempFolder();
  while (true) {
    std::string name = UniqueName();
    if (!extension.empty()) name += "." + std::string(extension);
    std::string path = JoinPath(folder, name);
    if (!FileExists(path)) return path;
  }
}

void SetRandomDrawForTesting(RandomDraw draw) { random_draw_for_testing = std::move(draw); }

}  // namespace ldg
