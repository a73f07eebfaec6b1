#include "store/lock_file.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "store/store_error.hpp"

namespace ldg::store {

namespace {

bool SameFile(int fd, const std::string& path) {
  struct stat open_file {};
  struct stat on_disk {};
  if (fstat(fd, &open_file) != 0 || stat(path.c_str(), &on_disk) != 0) return false;
  return open_file.st_dev == on_disk.st_dev && open_file.st_ino == on_disk.st_ino;
}

}  // namespace

std::string LockFilePath(std::string_view database_path) {
  std::string path(database_path);
  size_t slash = path.find_last_of("/\\");
  size_t dot = path.find_last_of('.');
  if (dot != std::string::npos && (slash == std::string::npos || dot > slash)) path.resize(dot);
  return path + ".ldb";
}

bool IsDatabaseInUse(std::string_view database_path) {
  std::string path = LockFilePath(database_path);
  int fd = open(path.c_str(), O_RDWR | O_CLOEXEC);
  if (fd < 0) return false;
  bool in_use = flock(fd, LOCK_EX | LOCK_NB) != 0;
  if (!in_use && SameFile(fd, path)) unlink(path.c_str());
  close(fd);
  return in_use;
}

LockFile::LockFile(std::string_view database_path) : path_(LockFilePath(database_path)) {
  // A closing connection may remove the file between our open and our lock:
  // lock, then make sure the path still names the file we locked.
  for (int attempt = 0; attempt < 100; ++attempt) {
    fd_ = open(path_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (fd_ < 0) RaiseStore(kErrCouldNotLock);
    if (flock(fd_, LOCK_SH) == 0 && SameFile(fd_, path_)) return;
    close(fd_);
    fd_ = -1;
  }
  RaiseStore(kErrCouldNotLock);
}

LockFile::~LockFile() { Release(); }

void LockFile::Release() {
  if (fd_ < 0) return;
  if (flock(fd_, LOCK_EX | LOCK_NB) == 0 && SameFile(fd_, path_)) unlink(path_.c_str());
  close(fd_);
  fd_ = -1;
}

}  // namespace ldg::store
