// View files and deme files. Loading may return or raise one of the two conversion errors; a loaded
// view can be listed, saved and loaded again.
#include <stdexcept>

#include "spx/core/meta_population.h"
#include "spx/reports/view_to_r.h"
#include "spx/support/configuration.h"
#include "spx/views/data_filter.h"

#include "fuzz/fuzz_support.h"

namespace spx::fuzz {
namespace {

std::string pathOf(const std::string& name) {
  return ramDirectory() + "/" + name;
}

/// Demes whose first levels are 0: only their numbers fit into the 32 bits that a view file restores.
void makeDemes() {
  MetaPop.addLevel("Country");
  MetaPop.addLevel("Site");
  MetaPop.addMember("0.0.0.0.1", "North");
  MetaPop.addMember("0.0.0.0.1.2", "Zoo; the old one");
  MetaPop.addMember("0.0.0.0.0.0.0.7", "Seventh");
}

void resetView() {
  View = DataFilter();
  View.path = ramDirectory();
}

bool loads(const std::string& name) {
  try {
    return View.load(name);
  } catch (const std::invalid_argument&) {
    return false;
  } catch (const std::out_of_range&) {
    return false;
  }
}

void showView() {
  View.listView();
  for (const bool monitor : {false, true}) {
    viewToR(monitor, false);
    viewToR(monitor, true);
  }
}

void requireSameAfterSaving() {
  View.save("first");
  require(loads("first"), "a saved view does not load");
  View.save("second");
  require(contentOf(pathOf("first.view")) == contentOf(pathOf("second.view")), "a view changes by saving and loading");
}

void tryLoading(const std::string& name) {
  resetView();
  const bool loaded = loads(name);
  showView();
  if (loaded) {
    requireSameAfterSaving();
  }
  const qs_lib::day_number end_date = View.end_date;
  require(!View.autoMonitorDate() || View.end_date <= end_date, "a census after the period");
}

/// Every line KEY=VALUE replaces a value of a well-formed view file.
void replaceValues(std::string_view text) {
  resetView();
  View.save("replaced");
  qs_lib::Configuration file;
  file.setDirectory(ramDirectory());
  file.setName("replaced");
  file.setExtension("view");
  file.setSection("VIEW");
  require(file.load(), "the view file is not a key file");
  for (const std::string& line : linesOf(text)) {
    const std::size_t equals = line.find('=');
    if (equals != std::string::npos) {
      file.set(line.substr(0, equals), "TEXT", line.substr(equals + 1), "");
    }
  }
  require(file.save(), "a view file is not saved");
}

void tryDemeFile(std::string_view text) {
  resetView();
  writeContent(pathOf("demes.fed"), text);
  require(View.loadDemeFile("demes", "Site"), "a deme file is not read");
  View.createDemeString(true, ';');
}

}  // namespace
}  // namespace spx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace spx::fuzz;
  const std::string_view text = asText(data, size);
  if (spx::MetaPop.levels().empty()) {
    makeDemes();
  }
  writeContent(pathOf("arbitrary.view"), text);
  tryLoading("arbitrary");
  replaceValues(text);
  tryLoading("replaced");
  tryDemeFile(text);
  return 0;
}
