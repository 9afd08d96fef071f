// The state of the library, in the order in which it is constructed when the library is loaded; it
// is destroyed in the reverse order when it is unloaded. The constructors use literals,
// constant-initialised tables and each other only, since the objects of other source files may not
// exist yet.
#include "spx/core/animal_data.h"
#include "spx/core/breeding_program.h"
#include "spx/core/meta_population.h"
#include "spx/core/multi_parent.h"
#include "spx/core/studbook.h"
#include "spx/core/sub_taxa.h"
#include "spx/core/user_fields.h"
#include "spx/project/biology.h"
#include "spx/project/project.h"
#include "spx/views/data_filter.h"

namespace spx {

Project ActiveProject;
Studbook Book;
Biology LifeHistory;
AnimalData Animals;
MetaPopulation MetaPop;
BreedingProgram Management;
SubTaxa Subspecies;
std::vector<multi_parent> parent_list;
DataFilter View;
std::vector<user_field> user_field_list;

}  // namespace spx
