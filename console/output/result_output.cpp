#include "console/output/result_output.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <sys/ioctl.h>

#include "spx/support/file_name.h"

#include "console/base/failure.h"
#include "console/output/staged_files.h"

namespace spx::console {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::string& file) {
  throw Failure(file + ": cannot be written" + (errno == 0 ? "" : std::string(": ") + std::strerror(errno)));
}

std::size_t terminalWidth() {
  winsize size{};
  constexpr std::size_t NARROWEST = 40;
  return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col >= NARROWEST ? size.ws_col : 80;
}

}  // namespace

void refuseToOverwrite(const std::string& path, bool overwrite) {
  const fs::file_status status = fs::symlink_status(path);
  const bool can_be_lost = fs::is_regular_file(status) || fs::is_symlink(status) || fs::is_directory(status);
  if (!overwrite && can_be_lost) {
    throw Failure(path + " already exists; use --overwrite to replace it");
  }
}

void addResultOptions(CLI::App& app, result_options& options) {
  app.add_option("-o,--output", options.file, "Write to this file instead of standard output (-)")
      ->type_name("FILE")
      ->check([](const std::string& name) { return name.empty() ? "the file name is empty" : ""; });
  app.add_flag("--overwrite", options.overwrite, "Replace that file if it exists");
  app.add_flag("--no-pager", options.no_pager, "Do not page long output at a terminal");
}

ResultOutput::ResultOutput(const result_options& options, bool for_people) {
  if (!options.file.empty() && options.file != "-") {
    name_ = qs_lib::homePath(options.file);
    refuseToOverwrite(name_, options.overwrite);
    removeStagedWhenEnded(fs::path(name_).parent_path().string());
    file_.setFileName(name_);
    file_.setStaged(true);
    errno = 0;
    if (!file_.fileOpen()) {
      fail(name_);
    }
    return;
  }
  if (::isatty(STDOUT_FILENO) != 1) {
    return;
  }
  width_ = terminalWidth();
  const std::string pager = for_people && !options.no_pager ? pagerCommand() : "";
  if (!pager.empty()) {
    std::cout.flush();
    pager_ = std::make_unique<Pager>(pager);
  }
}

std::ostream& ResultOutput::stream() {
  if (!name_.empty()) {
    return file_.stream();
  }
  return pager_ != nullptr && pager_->isOpen() ? pager_->stream() : std::cout;
}

void ResultOutput::finish() {
  if (pager_ != nullptr) {
    pager_->finish();
  }
  errno = 0;
  if (!name_.empty() && !file_.fileClose()) {
    fail(name_);
  }
}

}  // namespace spx::console
