#include "spx/support/atomic_file.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <system_error>
#include <unistd.h>
#include <utility>

#include <sys/file.h>
#include <sys/stat.h>

#include "spx/support/file_name.h"

namespace qs_lib {
namespace {
constexpr unsigned PERMISSION_BITS = 07777;
constexpr unsigned NEW_FILE_MODE = 0666;  // less the umask
constexpr int MOST_ATTEMPTS = 1000;

/// The target of a link, also when it does not exist.
std::string followLinks(const std::string& path) {
  constexpr int MOST_LINKS = 40;  // as many as the system follows
  std::filesystem::path target = path;
  std::error_code failed;
  for (int links = 0; links < MOST_LINKS && std::filesystem::is_symlink(target, failed); ++links) {
    target = target.parent_path() / std::filesystem::read_symlink(target, failed);
  }
  return target.string();
}

constexpr char TEMPORARY_PREFIX[] = ".spx-";
constexpr char TEMPORARY_EXTENSION[] = "tmp";

/// A name in the target's directory that is unique to this process and this call. It does not
/// contain the target's name, which may already have the greatest length.
std::string temporaryName(const std::string& target) {
  static std::atomic<unsigned> count{0};
  const std::string name = TEMPORARY_PREFIX + std::to_string(getpid()) + "-" + std::to_string(++count);
  return createFileName(splitFileName(target).directory, name, TEMPORARY_EXTENSION);
}

/// Removes a temporary file that nobody has locked.
void removeIfAbandoned(const std::filesystem::path& path) {
  const int file = open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) {
    return;
  }
  if (flock(file, LOCK_EX | LOCK_NB) == 0) {
    unlink(path.c_str());
  }
  close(file);
}

void removeAbandonedBeside(const std::string& target) {
  const std::string directory = splitFileName(target).directory;
  std::error_code failed;
  std::filesystem::directory_iterator entry(directory.empty() ? "." : directory, failed);
  for (; !failed && entry != std::filesystem::directory_iterator(); entry.increment(failed)) {
    const std::filesystem::path& path = entry->path();
    if (path.filename().string().starts_with(TEMPORARY_PREFIX) &&
        path.extension() == std::string(".") + TEMPORARY_EXTENSION) {
      removeIfAbandoned(path);
    }
  }
}

bool syncPath(const std::string& path, int flags) {
  const int file = open(path.c_str(), flags | O_CLOEXEC);
  if (file < 0) {
    return false;
  }
  const bool synced = fsync(file) == 0;
  return close(file) == 0 && synced;
}

void syncDirectoryOf(const std::string& target) {
  const std::string directory = splitFileName(target).directory;
  // The new file is in place even if this fails; some file systems cannot sync a directory.
  syncPath(directory.empty() ? "." : directory, O_RDONLY | O_DIRECTORY);
}
}  // namespace

AtomicFile::AtomicFile(std::string target) : target_(std::move(target)) {}

AtomicFile::~AtomicFile() {
  discard();
}

bool AtomicFile::create() {
  discard();
  if (!isPath(target_)) {
    return false;
  }
  target_ = followLinks(target_);
  struct stat status {};
  if (stat(target_.c_str(), &status) != 0) {
    return createBeside(NEW_FILE_MODE, false);
  }
  // Renaming would also replace a write-protected file.
  if (S_ISDIR(status.st_mode) || access(target_.c_str(), W_OK) != 0) {
    return false;
  }
  if (S_ISREG(status.st_mode)) {
    return createBeside(status.st_mode & PERMISSION_BITS, true);
  }
  write_path_ = target_;
  return true;
}

bool AtomicFile::createBeside(unsigned mode, bool keep_mode) {
  removeAbandonedBeside(target_);
  for (int attempt = 0; attempt < MOST_ATTEMPTS; ++attempt) {
    const std::string path = temporaryName(target_);
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (file < 0 && errno == EEXIST) {
      continue;
    }
    if (file < 0) {
      return false;
    }
    if (!lock(file)) {
      continue;
    }
    write_path_ = path;
    temporary_ = true;
    created_by_ = getpid();
    // open() applied the umask; the permission bits of an existing file are kept unchanged.
    if (keep_mode && fchmod(file, mode) != 0) {
      discard();
    }
    return temporary_;
  }
  return false;
}

/// @return false when another process has removed the file before it was locked
bool AtomicFile::lock(int file) {
  flock(file, LOCK_EX | LOCK_NB);  // the result does not matter: without locks in the file system
                                   // nobody else gets one either
  struct stat status {};
  if (fstat(file, &status) != 0 || status.st_nlink == 0) {
    close(file);
    return false;
  }
  lock_ = file;
  return true;
}

void AtomicFile::unlock() {
  if (lock_ >= 0) {
    close(lock_);
  }
  lock_ = -1;
}

bool AtomicFile::commit() {
  if (!temporary_) {
    return !write_path_.empty();
  }
  if (getpid() != created_by_ || !syncPath(write_path_, O_WRONLY) ||
      std::rename(write_path_.c_str(), target_.c_str()) != 0) {
    discard();
    return false;
  }
  unlock();
  temporary_ = false;
  write_path_.clear();
  syncDirectoryOf(target_);
  return true;
}

void AtomicFile::discard() {
  if (temporary_ && getpid() == created_by_) {
    unlink(write_path_.c_str());
  }
  unlock();
  temporary_ = false;
  write_path_.clear();
}
}  // namespace qs_lib
