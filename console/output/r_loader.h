#pragma once

#include <string>

namespace spx::console {

/// An R script that needs only base R and reads the exported tables in its directory with the right classes: IDs as
/// text, dates as Date, missing values as NA. It defines read_pedigree, read_fields, read_dat and read_trf, each of
/// which takes the directory, by default that of the script.
std::string rLoader();

}  // namespace spx::console
