#pragma once

#include <cstdint>
#include <string>

/// Writes a studbook with a life history: animals.csv, events.csv and locations.csv in a directory.
///
/// Eight zoos keep a deer-like animal for 50 years, 1975 to 2024. Wild founders are caught in two waves; young are born
/// in spring, one at a time or as twins; a quarter die in their first year, most of them within days; males live
/// shorter than females and change zoos more often; breeding slows down where a zoo is full. Some are released, sold,
/// given up or lost; early dates are known to the month or year. The same seed gives the same bytes with every
/// compiler.
/// @return false when a file cannot be written
bool writeExampleStudbook(const std::string& directory, std::uint64_t seed);
