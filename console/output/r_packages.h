#pragma once

#include <span>
#include <string>
#include <vector>

namespace spx::console {

/// A file for an R package or for PLINK.
struct package_file {
  std::string name;
  std::string content;
};

/// The names of the packages that there are files for, in alphabetical order.
std::span<const char* const> rPackages();

/// The pedigree of the animals whose `print` flag is set and of all their ancestors in the form that a package
/// accepts directly: its columns, their order, its codes for sexes and unknown parents, parents before
/// offspring, IDs as whole numbers with a key table where the package wants numbers or cannot take the IDs,
/// and an invented parent for each half-known animal where a package requires both parents or none. The
/// last file is an R script of a few lines that reads the others.
///
/// An unknown, wild or group parent is unknown; a parent with a record is that record.
///
/// Throws Failure when an animal is its own ancestor or, for packages that refuse
/// that, a sire is female or a dam male; with the ID.
std::vector<package_file> packageFiles(const std::string& package);

}  // namespace spx::console
