#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "spx/core/deme_id.h"
#include "spx/core/enumerations.h"
#include "spx/core/rare.h"
#include "spx/core/sub_taxa.h"
#include "spx/support/export.h"
#include "spx/support/julian_date.h"

/// @file
/// The records of a studbook: plain values that the store owns. Dates are day numbers, and 0 means
/// that no date is known. The default values are those of a zeroed record; initializeMaster sets
/// those of a new animal.
namespace spx {

/// The place of a record in the store's sequence. The number of records is the end position, "not
/// found".
using position = std::size_t;

/// One life event.
struct move_data {
  qs_lib::day_number date = 0;                       ///< 0 is unknown
  DATE_ACCURACY accuracy = DATE_ACCURACY::ACCURATE;  ///< how exact the date is
  std::uint64_t range = 0;                           ///< uncertainty in days, for DATE_ACCURACY::DATE_RANGE
  packed_deme location = 0;                          ///< a deme of the metapopulation
  MOVE_TYPE event = MOVE_TYPE::BIRTH;                ///< what happened
  Rare<std::string> first_text;                      ///< the host's; carried and copied only
  std::uint64_t number = 0;                          ///< the running number of the location, for the .TRF export
  Rare<std::string> second_text;                     ///< the host's; carried and copied only
};

/// A management event: the host's four words, of which the fourth survives a reset.
struct managed_data {
  std::uint64_t words[4] = {0, 0, 0, 0};  ///< the host's
};

/// A birth-control event, the host's.
struct BirthControl {
  std::uint64_t word = 0;  ///< carried and copied only
};

/// The entries of master_data::generation.
enum GENERATION : std::size_t { G_CITES, G_GENETIC, G_MATERNAL, G_AVERAGE };

/// One animal of the studbook.
struct master_data {
  static constexpr std::size_t LINEAGES = 256;  ///< number of founder lineages that can be distinguished

  std::uint64_t id_key = 0;                                ///< numeric key given by the store; all bits set: none yet
  std::string stud_id;                                     ///< any bytes, compared byte for byte
  std::string sire_id;                                     ///< a studbook ID or the identifier of a pseudo individual
  std::string dam_id;                                      ///< likewise
  taxon_handle taxon;                                      ///< an entry of Subspecies
  SEX sex = SEX::FEMALE;                                   ///< never SEX::ALL
  BIRTH_TYPE birth_type = BIRTH_TYPE::WILD_BORN;           ///< the origin
  REARING rearing = REARING::PARENT;                       ///< by whom it was reared
  move_data birth;                                         ///< its location is where the animal was born
  move_data death;                                         ///< a death or loss to follow-up; date 0: neither
  std::vector<move_data> moves;                            ///< between birth and end, in the order of recording
  std::vector<managed_data> managed;                       ///< the host's
  std::vector<BirthControl> birth_control;                 ///< the host's
  float generation[4] = {0, 0, 0, 0};                      ///< generation numbers, see GENERATION; NaN is not computed
  double fcoef = 0;                                        ///< inbreeding coefficient; NaN is not computed
  bool breeder = false;                                    ///< a parent of at least one record of the pedigree
  bool selected = false;                                   ///< belongs to the current selection
  bool print = false;                                      ///< is to be listed
  std::vector<std::string> user_data;                      ///< one value per field of user_field_list
  std::bitset<LINEAGES> lineages;                          ///< founder lineages that the animal descends from
  Rare<std::vector<std::vector<std::int32_t>>> host_data;  ///< the host's; carried and copied only
};

/// An animal and the records of its parents.
struct pedigree_record {
  position animal = 0;          ///< of the animal itself
  position sire = 0;            ///< of the sire's record, maybe a pseudo individual's
  position dam = 0;             ///< likewise of the dam
  std::uint64_t host_word = 0;  ///< not set by the builder and not read by the library
};

/// Finds a record by its studbook ID, byte for byte.
struct find_id {
  const std::string& id;  ///< must live as long as the search
  /// Whether it is the animal.
  bool operator()(const master_data& animal) const { return animal.stud_id == id; }
};

/// Resets a record for a new animal: parents "UNKM" and "UNKF", generic taxon, unknown sex, key with
/// all bits set, birth and death reset as by initializeMove(), no moves, birth control, user values
/// and lineages, generations and inbreeding NaN, not a breeder, selected and printed. The studbook
/// ID, origin, rearing, managed events, host data and the kinds and texts of birth and death stay;
/// kept on purpose: a loader may set them before. A loader that reuses one record must set them for
/// every animal.
SPX_EXPORT void initializeMaster(master_data& animal);

/// Resets date, accuracy, range, location and number; the kind of event and the texts stay. Always
/// true.
SPX_EXPORT bool initializeMove(move_data& move);

/// Zeroes the first three words; the fourth stays. Always true.
SPX_EXPORT bool initializeManaged(managed_data& managed);

/// Stores one value as all four generation numbers, rounded to what they can hold.
SPX_EXPORT void setAnimalGeneration(master_data& animal, double generation);

/// Marks a founder lineage. @return false, with nothing changed, for a lineage above 255
SPX_EXPORT bool setFounderLineage(master_data& animal, std::uint64_t lineage);

/// Where the animal is on a day: its birth location, or the location of the last move in recorded
/// order that is not after the day, even where an earlier entry has a later date. The end event is
/// not considered. Linear in the moves.
SPX_EXPORT packed_deme currentDeme(const master_data& animal, qs_lib::day_number day);

}  // namespace spx
