#include "bench/loaded_studbook.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <random>
#include <streambuf>
#include <unistd.h>
#include <vector>

#include "spx/core/animal_data.h"
#include "spx/support/console.h"

#include "console/studbook/load_studbook.h"

namespace spx::bench {
namespace {

namespace fs = std::filesystem;

/// The tables of one run.
class Tables {
 public:
  Tables() : directory_(fs::temp_directory_path() / ("spx-bench-" + std::to_string(::getpid()))) {
    fs::create_directories(directory_);
  }
  ~Tables() {
    std::error_code ignored;
    fs::remove_all(directory_, ignored);
  }
  std::string path(const std::string& name) const { return (directory_ / (name + ".csv")).string(); }

 private:
  fs::path directory_;
};

class NullBuffer : public std::streambuf {
 protected:
  int_type overflow(int_type letter) override { return traits_type::not_eof(letter); }
  std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
};

NullBuffer nowhere;
std::string held_table;

}  // namespace

Quiet::Quiet() : output_(std::cout.rdbuf(&nowhere)) {}

Quiet::~Quiet() {
  std::cout.rdbuf(static_cast<std::streambuf*>(output_));
}

std::string tableOf(long animals, const char* kind) {
  static const Tables tables;
  const std::string count = std::to_string(animals);
  const std::string path = tables.path(count + (kind == nullptr ? "" : kind));
  if (!fs::exists(path)) {
    const std::string option = kind == nullptr ? "" : std::string(" --kind ") + kind;
    const std::string command = std::string(SPX_MAKE_STUDBOOK) + " " + count + option + " > '" + path + "'";
    if (std::system(command.c_str()) != 0) {
      std::fprintf(stderr, "spx_bench: cannot write %s\n", path.c_str());
      std::exit(1);
    }
  }
  return path;
}

void holdStudbook(long animals, const char* kind) {
  console::studbook_files files;
  files.animals = tableOf(animals, kind);
  if (held_table == files.animals) return;
  console::loadStudbook(files);
  held_table = files.animals;
}

void forgetStudbook() {
  held_table.clear();
}

void coolCaches() {
  constexpr std::size_t LARGER_THAN_CACHES = std::size_t{256} << 20;
  constexpr std::size_t LINE = 64;
  static std::vector<char> other(LARGER_THAN_CACHES);
  for (std::size_t at = 0; at < other.size(); at += LINE) ++other[at];
}

void shuffleIndex() {
  std::sort(Animals.index.begin(), Animals.index.end());
  std::shuffle(Animals.index.begin(), Animals.index.end(), std::mt19937(1));
  Animals.resetOrder();
}

}  // namespace spx::bench
