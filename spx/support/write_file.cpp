#include "spx/support/write_file.h"

#include <exception>
#include <locale>
#include <unistd.h>

namespace qs_lib {
namespace {
constexpr std::size_t BUFFER_SIZE = std::size_t{1} << 20;

// Gives access to the buffer of a stream, which is protected.
struct UnwrittenText : std::filebuf {
  // Forgets the text that is not yet in the file.
  static void drop(std::filebuf& buffer) {
    (buffer.*&UnwrittenText::setp)((buffer.*&UnwrittenText::pbase)(), (buffer.*&UnwrittenText::epptr)());
  }
};
}  // namespace

WriteFile::WriteFile() {
  stream_.imbue(std::locale::classic());
}

WriteFile::~WriteFile() {
  closeAtEnd();
}

void WriteFile::closeAtEnd() {
  // A forked child holds a copy of what its parent is writing.
  const bool is_copy = isOpen() && getpid() != opened_by_;
  if (is_copy || std::uncaught_exceptions() > exceptions_at_opening_) {
    fileDiscard();
  } else {
    static_cast<void>(fileClose());
  }
}

bool WriteFile::fileOpen() {
  static_cast<void>(fileClose());
  opened_by_ = getpid();
  exceptions_at_opening_ = std::uncaught_exceptions();
  std::string path = getFileName();
  if (!isPath(path)) {
    return false;
  }
  if (staged_ && !append_) {
    stage_ = std::make_unique<AtomicFile>(path);
    if (!stage_->create()) {
      stage_.reset();
      return false;
    }
    path = stage_->writePath();
  }
  openStream(path);
  if (!isOpen()) {
    stage_.reset();
  }
  return isOpen();
}

void WriteFile::openStream(const std::string& path) {
  if (!buffer_) {
    buffer_ = std::make_unique_for_overwrite<char[]>(BUFFER_SIZE);
    stream_.rdbuf()->pubsetbuf(buffer_.get(), BUFFER_SIZE);
  }
  stream_.clear();
  stream_.open(path, append_ ? std::ios::out | std::ios::app : std::ios::out | std::ios::trunc);
}

bool WriteFile::fileClose() {
  if (!isOpen()) {
    return true;
  }
  bool complete = closeStream();
  if (stage_) {
    complete = complete && stage_->commit();
    stage_.reset();
  }
  return complete;
}

void WriteFile::fileDiscard() {
  if (!isOpen()) {
    return;
  }
  if (stage_ || getpid() != opened_by_) {
    UnwrittenText::drop(*stream_.rdbuf());
  }
  closeStream();
  stage_.reset();
}

bool WriteFile::closeStream() {
  const bool written = stream_.good();
  stream_.close();
  const bool closed = stream_.good();
  stream_.clear();
  return written && closed;
}

void WriteFile::writeLine(const std::string& line) {
  write(line);
  write("\n");
}

void WriteFile::put(std::string_view text) {
  // Written through the stream's buffer, so that text put into the stream stays in order.
  if (!stream_.good()) {
    return;
  }
  const auto size = static_cast<std::streamsize>(text.size());
  if (stream_.rdbuf()->sputn(text.data(), size) != size) {
    stream_.setstate(std::ios::badbit);
  }
}
}  // namespace qs_lib
