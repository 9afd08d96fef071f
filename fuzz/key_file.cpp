// Key files: arbitrary files, and arbitrary texts in well-formed ones.
#include "spx/support/configuration.h"

#include "fuzz/fuzz_support.h"

namespace spx::fuzz {
namespace {

using qs_lib::ConfigElement;
using qs_lib::Configuration;

bool isSame(const ConfigElement& a, const ConfigElement& b) {
  return a.value == b.value && a.type == b.type && a.description == b.description;
}

bool isSame(const Configuration::entry_map& a, const Configuration::entry_map& b) {
  if (a.size() != b.size()) {
    return false;
  }
  for (const auto& [key, element] : a) {
    const auto found = b.find(key);
    if (found == b.end() || !isSame(element, found->second)) {
      return false;
    }
  }
  return true;
}

Configuration named(const std::string& name, const std::string& section) {
  Configuration file;
  file.setDirectory(ramDirectory());
  file.setName(name);
  file.setExtension("key");
  file.setSection(section);
  return file;
}

void requireSavedAndLoaded(Configuration& file) {
  require(file.save(), "a key file is not saved");
  Configuration again = named(file.getName(), file.getSection());
  require(again.load(), "a saved key file does not load");
  require(isSame(file.entries(), again.entries()), "a key file changes by saving and loading");
}

void tryFile(std::string_view content) {
  Configuration file = named("arbitrary", "");
  file.set("KEPT", "TEXT", "as it was", "");
  const Configuration::entry_map before = file.entries();
  writeContent(file.getFileName(), content);
  if (file.load()) {
    requireSavedAndLoaded(file);
  } else {
    require(isSame(file.entries(), before), "a file that does not load changes the entries");
  }
}

/// The first line is the section; then four lines are an entry.
void tryTexts(const std::vector<std::string>& lines) {
  Configuration file = named("texts", lines[0]);
  for (std::size_t i = 1; i + 3 < lines.size(); i += 4) {
    file.set(lines[i], lines[i + 1], lines[i + 2], lines[i + 3]);
  }
  requireSavedAndLoaded(file);
}

}  // namespace
}  // namespace spx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace spx::fuzz;
  const std::string_view text = asText(data, size);
  tryFile(text);
  tryTexts(linesOf(text));
  return 0;
}
