#include "console/charts/drawing_tool.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <spawn.h>
#include <unistd.h>

#include <sys/wait.h>

#include "console/base/failure.h"
#include "console/base/quoted_text.h"
#include "console/charts/svg_text.h"

extern char** environ;  // NOLINT: as POSIX names it

namespace spx::console {
namespace {

using file_handle = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

/// A temporary file without a name, deleted when its handle is closed.
file_handle scratchFile() {
  file_handle file(std::tmpfile(), &std::fclose);
  if (!file) {
    throw Failure(std::string("cannot create a temporary file: ") + std::strerror(errno));
  }
  return file;
}

std::string contents(std::FILE* file) {
  std::string text;
  std::rewind(file);
  char buffer[65536];
  std::size_t size = 0;
  while ((size = std::fread(buffer, 1, sizeof buffer, file)) > 0) {
    text.append(buffer, size);
  }
  return text;
}

/// Files instead of pipes, so that the two processes cannot block each other on a full pipe.
struct tool_streams {
  file_handle input = scratchFile();
  file_handle output = scratchFile();
  file_handle error = scratchFile();
};

/// Starts the tool. @return 0, or the error number when it could not be started
int start(const drawing_tool& tool, const std::vector<std::string>& arguments, const tool_streams& streams,
          pid_t& child) {
  std::vector<char*> words;
  words.push_back(const_cast<char*>(tool.program));  // NOLINT: posix_spawn does not write to them
  for (const std::string& argument : arguments) {
    words.push_back(const_cast<char*>(argument.c_str()));  // NOLINT
  }
  words.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, fileno(streams.input.get()), STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, fileno(streams.output.get()), STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, fileno(streams.error.get()), STDERR_FILENO);
  const int result = posix_spawnp(&child, tool.program, &actions, nullptr, words.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  return result;
}

bool succeeded(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) {
      return false;
    }
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::string firstLine(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(" \t\r\n");
  return begin == std::string::npos ? "it gave no reason" : text.substr(begin, text.find('\n', begin) - begin);
}

}  // namespace

std::string runTool(const drawing_tool& tool, const std::vector<std::string>& arguments, const std::string& input) {
  const tool_streams streams;
  if (std::fwrite(input.data(), 1, input.size(), streams.input.get()) != input.size() ||
      std::fflush(streams.input.get()) != 0) {
    throw Failure(std::string("cannot write a temporary file: ") + std::strerror(errno));
  }
  std::rewind(streams.input.get());
  pid_t child = 0;
  const int error = start(tool, arguments, streams, child);
  if (error == ENOENT) {
    throw Failure("this picture needs the program " + std::string(tool.program) +
                  "; install the package that contains it: apt install " + tool.package);
  }
  if (error != 0) {
    throw Failure("cannot start " + std::string(tool.program) + ": " + std::strerror(error));
  }
  if (!succeeded(child)) {
    throw Failure(std::string(tool.program) + " failed: " + firstLine(contents(streams.error.get())));
  }
  return contents(streams.output.get());
}

IMAGE_FORMAT imageFormat(const std::string& name, bool has_dot) {
  constexpr const char* NAMES[] = {"svg", "png", "pdf", "dot"};
  for (std::size_t i = 0; i < std::size(NAMES) - (has_dot ? 0 : 1); ++i) {
    if (name == NAMES[i]) {
      return static_cast<IMAGE_FORMAT>(i);
    }
  }
  throw UsageError("--format: " + quotedText(name) + " is not an image format; use " +
                   (has_dot ? "svg, png, pdf or dot" : "svg, png or pdf"));
}

namespace {

/// The zoom for a PNG: 2, for printing; less when a side would exceed the maximum number of pixels of a PNG.
std::string pngZoom(const std::string& svg) {
  constexpr double MOST_PIXELS = 32000;
  constexpr double PIXELS_PER_POINT = 4.0 / 3;
  double longest = 1;
  const std::size_t end = svg.find('>', svg.find("<svg"));
  for (const char* name : {" width=\"", " height=\""}) {
    const std::size_t at = svg.find(name);
    if (at < end) {
      longest = std::max(longest, std::strtod(svg.c_str() + at + std::strlen(name), nullptr));
    }
  }
  return shortestReal(std::min(2.0, MOST_PIXELS / (longest * PIXELS_PER_POINT)));
}

}  // namespace

std::string convertedImage(std::string svg, IMAGE_FORMAT format) {
  switch (format) {
    case IMAGE_FORMAT::PNG:
      return runTool(SVG_CONVERTER, {"--format=png", "--zoom=" + pngZoom(svg), "--background-color=white"}, svg);
    case IMAGE_FORMAT::PDF:
      return runTool(SVG_CONVERTER, {"--format=pdf"}, svg);
    default:
      return svg;
  }
}

}  // namespace spx::console
