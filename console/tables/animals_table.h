#pragma once

#include <span>
#include <string>

#include "console/tables/column_titles.h"
#include "console/tables/faults.h"
#include "console/tables/loading_notes.h"
#include "console/tables/location_registry.h"
#include "console/tables/row_source.h"

namespace spx::console {

/// What the text of a sex should be, for messages.
inline constexpr char SEX_WORDS[] = "sex (male, female, hermaphrodite, abnormal, unknown; m, f, h, u; 1, 2, 0)";

/// Reads the table of animals and adds a record for each row to the store, with taxa and
/// user-defined fields (every column that is not a known field); wild mates of known parents get
/// identities. Throws TableError and UsageError.
/// @param notes  receives the name of the table and the lines of the rows
void readAnimals(const table_source& source, LocationRegistry& locations, Faults& faults, loading_notes& notes);

/// The fields of the table, in the order in which the documentation lists them.
std::span<const table_field> animalFields();

/// The field of an animal's ID and the titles that its column can have.
inline constexpr table_field ID_FIELD = {"id",
                                         {"stud_id",
                                          "studbook",
                                          "studbook_id",
                                          "studbook_number",
                                          "studbook_no",
                                          "studbook_num",
                                          "studbook_nr",
                                          "studbook#",
                                          "stud#",
                                          "stud_number",
                                          "stud_no",
                                          "stud_nr",
                                          "stud",
                                          "sb_number",
                                          "sb_no",
                                          "sb#",
                                          "sb_id",
                                          "animal_id",
                                          "animal_number",
                                          "animal_no",
                                          "animal",
                                          "individual_id",
                                          "individual",
                                          "ind",
                                          "ident",
                                          "identifier",
                                          "kennung",
                                          "zuchtbuchnummer",
                                          "zuchtbuch_nr",
                                          "zb_nr",
                                          "tier",
                                          "tiernummer",
                                          "numero_studbook",
                                          "identifiant",
                                          "identificador",
                                          "numero_de_studbook"},
                                         true};

}  // namespace spx::console
