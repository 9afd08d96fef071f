#include "fuzz/fuzz_support.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <streambuf>
#include <system_error>

#include "spx/support/console.h"

namespace spx::fuzz {
namespace {

/// Discards what is written, but only after it was formatted as for a terminal.
class NullBuffer : public std::streambuf {
 protected:
  int_type overflow(int_type character) override { return traits_type::not_eof(character); }
  std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
};

class Workplace {
 public:
  Workplace() {
    const char* chosen = std::getenv("TMPDIR");
    std::error_code error;
    const bool has_memory = std::filesystem::is_directory("/dev/shm", error);
    directory = std::string(chosen != nullptr ? chosen : has_memory ? "/dev/shm" : "/tmp");
    directory += "/spx-fuzz-XXXXXX";
    require(mkdtemp(directory.data()) != nullptr, "cannot make a temporary directory");
    setenv("HOME", directory.c_str(), 1);
    std::filesystem::current_path(directory);
    old_output_ = std::cout.rdbuf(&nowhere_);
    old_errors_ = std::cerr.rdbuf(&nowhere_);
    qs_lib::setPauseHandler([] {});
  }
  Workplace(const Workplace&) = delete;
  Workplace& operator=(const Workplace&) = delete;

  ~Workplace() {
    std::cout.rdbuf(old_output_);
    std::cerr.rdbuf(old_errors_);
    std::error_code ignored;
    std::filesystem::current_path("/", ignored);
    std::filesystem::remove_all(directory, ignored);
  }

  std::string directory;

 private:
  NullBuffer nowhere_;
  std::streambuf* old_output_ = nullptr;
  std::streambuf* old_errors_ = nullptr;
};

char escapedCharacter(char letter) {
  switch (letter) {
    case 'n':
      return '\n';
    case 't':
      return '\t';
    case 'r':
      return '\r';
    case '0':
      return '\0';
    default:
      return letter;
  }
}

}  // namespace

void require(bool condition, const char* message) {
  if (!condition) {
    std::fprintf(stderr, "fuzz: %s\n", message);
    std::abort();
  }
}

std::string_view asText(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

std::vector<std::string_view> splitAt(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  std::size_t end = text.find(separator);
  while (end != std::string_view::npos) {
    parts.push_back(text.substr(0, end));
    text.remove_prefix(end + 1);
    end = text.find(separator);
  }
  parts.push_back(text);
  return parts;
}

std::string unescaped(std::string_view text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool is_escape = text[i] == '\\' && i + 1 < text.size();
    out += is_escape ? escapedCharacter(text[++i]) : text[i];
  }
  return out;
}

std::vector<std::string> linesOf(std::string_view text) {
  std::vector<std::string> lines;
  for (const std::string_view line : splitAt(text, '\n')) {
    lines.push_back(unescaped(line));
  }
  return lines;
}

std::uint64_t wholeNumber(std::string_view text) {
  std::uint64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

double realNumber(std::string_view text) {
  return std::strtod(std::string(text).c_str(), nullptr);
}

const std::string& ramDirectory() {
  static const Workplace workplace;
  return workplace.directory;
}

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void writeContent(const std::string& path, std::string_view content) {
  std::ofstream(path, std::ios::binary) << content;
}

}  // namespace spx::fuzz
