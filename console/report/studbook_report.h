#pragma once

#include <string>
#include <vector>

#include "console/results/genetic_basis.h"

namespace spx::console {

/// The contents of a report.
struct report_choice {
  std::string title;                  ///< empty: the name of the studbook
  std::string studbook;               ///< its name, for the title
  std::string logo;                   ///< an image file; empty for none
  std::vector<std::string> sections;  ///< by name; empty: all
  bool cards = false;                 ///< whether each living animal gets a card with its ancestors
  std::size_t gene_drops = 1000;      ///< runs of the gene drop that gives the founders' retention
  basis_options basis = {};           ///< options of the genetic results
};

/// The names of the sections, in their order.
const std::vector<std::string>& reportSections();

/// The loaded studbook under the current view as one self-contained HTML page. Without gnuplot the charts are left out
/// and the page says so; their tables are always included. Throws UsageError for an unknown section, and Failure for
/// an image that cannot be used.
std::string studbookReport(const report_choice& choice);

}  // namespace spx::console
