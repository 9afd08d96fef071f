#pragma once

#include <string>
#include <vector>

#include "console/results/genetic_basis.h"

namespace spx::console {

/// What a report holds.
struct report_choice {
  std::string title;                  ///< empty: the name of the studbook
  std::string studbook;               ///< its name, for the title
  std::string logo;                   ///< an image file; empty for none
  std::vector<std::string> sections;  ///< by name; empty: all
  bool cards = false;                 ///< a small pedigree for each living animal
  std::size_t gene_drops = 1000;      ///< runs of the gene drop that gives the founders' retention
  basis_options basis = {};           ///< of genetics
};

/// The names of the sections, in their order.
const std::vector<std::string>& reportSections();

/// The loaded studbook, as the view sees it, as one page of HTML that needs nothing beside itself. Without gnuplot the
/// charts are left out and the page says so; their tables stand in it either way.
/// Throws UsageError for an unknown section, and Failure for an image that cannot be used.
std::string studbookReport(const report_choice& choice);

}  // namespace spx::console
