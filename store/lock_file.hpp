// The ".ldb" lock file beside a database: it exists while any connection has the
// file open. Each connection holds a shared flock on it; the last to close
// removes it. Whether others have a file open is told by an exclusive
// non-blocking flock: refused means in use, granted means the file is stale and
// is deleted. Deleting alone proves nothing on this platform.
#pragma once

#include <string>
#include <string_view>

namespace ldg::store {

// "<path without extension>.ldb".
std::string LockFilePath(std::string_view database_path);

// True when another connection (of this process or another) holds the lock
// file; a stale lock file is removed.
bool IsDatabaseInUse(std::string_view database_path);

class LockFile {
 public:
  // Creates the lock file if needed and takes the shared lock; 3050 when it can't.
  explicit LockFile(std::string_view database_path);
  ~LockFile();
  LockFile(const LockFile&) = delete;
  LockFile& operator=(const LockFile&) = delete;

  // Drops the shared lock and removes the file when no one else holds it.
  void Release();

 private:
  std::string path_;
  int fd_ = -1;
};

}  // namespace ldg::store
