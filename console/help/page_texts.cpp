// The texts of the commands. Each example is run by a test, in this order.
#include "console/help/command_pages.h"

namespace spx::console {

const std::vector<command_page>& commandPages() {
  static const std::vector<command_page> pages = {
      {"help", "Without a word it explains the program. The same as COMMAND --help.", "spx help view set"},
      {"check",
       "Goes through all animals, whatever the view. Errors cannot be true: duplicate IDs, parents of\n"
       "the wrong sex, births before the parent's, deaths before the birth. Warnings are unlikely:\n"
       "parents without a record, parents at different places. Notes are worth knowing. Dates are\n"
       "compared as exactly as they are known. --codes lists the rules with their codes. The exit code\n"
       "is 3 when there are errors, or placeholders that nothing accepts (see help import).",
       "spx --studbook examples/studbook check\n"
       "spx --studbook examples/studbook check --only parent-sex,own-parent --all\n"
       "spx check --codes\n"
       "spx --studbook examples/studbook check --strict --except undecided --format json"},
      {"summary", "Counts all animals of the studbook, whatever the view; pseudo individuals are no animals.",
       "spx --studbook examples/studbook summary\n"
       "spx --studbook examples/studbook summary --format json"},
      {"info", "Counts the records, pseudo individuals among them, and what there is room for.",
       "spx --studbook examples/studbook info"},
      {"import",
       "Checks tables and makes a studbook file of them: the one of --studbook, or the project's "
       "own.\n"
       "A file that is there is replaced as a whole, and kept as FILE.bak. Nothing is written "
       "when\n"
       "the tables have faults.\n"
       "Animals whose IDs are placeholders of unknown animals (they begin with P, WILD, UNK, MULT,\n"
       "GROUP, HERD or COLONY) would show in no list. They are named, and nothing is written, unless\n"
       "--id-prefix gives every ID a prefix (export tables --drop-id-prefix takes it away again), or\n"
       "--placeholders accepts them.",
       "spx import examples/studbook --dry-run\n"
       "spx --studbook ~/tarrow.studbook import examples/studbook"},
      {"animal set",
       "Changes fields of an animal in a studbook file; an empty value makes a field unknown.\n"
       "Everything is checked first, and all is changed or nothing.",
       "spx --studbook ~/tarrow.studbook animal set 0003 rearing=hand house_name=Marla"},
      {"animal add", "Adds an animal to a studbook file; what is not given is unknown.",
       "spx --studbook ~/tarrow.studbook animal add 0200 dam=0003 sex=f birth_date=1992-05"},
      {"event add", "Adds an event to an animal of a studbook file.",
       "spx --studbook ~/tarrow.studbook event add 0200 date=1995-02-01 event=social-in "
       "location=2.1.1"},
      {"list",
       "Lists the animals that pass the view: without any of its options every animal. A\n"
       "listing obeys sex, origin, taxon, user fields, generation, inbreeding and the accuracies\n"
       "of a view; its period is for reports and exports.",
       "spx --studbook examples/studbook list --sex male --birth-accuracy accurate\n"
       "spx --studbook examples/studbook list --format csv"},
      {"living",
       "Lists the animals of the view that are alive and in one of its locations on the day of\n"
       "--monitor (default: today).",
       "spx --studbook examples/studbook living --monitor 2010-12-31"},
      {"offspring", "Lists all offspring, whatever the view, in the order of their births.",
       "spx --studbook examples/studbook offspring 0003"},
      {"pedigree", "Lists the animal and all ancestors, whatever the view, in the order of their births.",
       "spx --studbook examples/studbook pedigree 0120"},
      {"show", "Shows all that is known of one animal: parents, events, numbers, its own fields.",
       "spx --studbook examples/studbook show 0001\n"
       "spx --studbook examples/studbook show 0001 --format json"},
      {"locations", "Lists the locations of each level with their identifiers.",
       "spx --studbook examples/studbook locations"},
      {"taxa", "Lists the taxa of the animals; \"generic\" stands for none.", "spx --studbook examples/studbook taxa"},
      {"programs", "Lists the breeding programmes of the table of programmes.",
       "spx --studbook examples/studbook programs"},
      {"user-fields", "Lists the columns of the animals table that are not the program's own.",
       "spx --studbook examples/studbook user-fields"},
      {"project create",
       "Makes the directories and the settings of a project in ~/spx/projects. What is made for "
       "it\n"
       "then goes there: views, reports, exports.",
       "spx project create tarrow"},
      {"project list", "Lists the names of the projects in ~/spx/projects.", "spx project list"},
      {"project show", "Shows where the project keeps its files, and its other settings.", "spx project show tarrow"},
      {"view show",
       "Shows the view that the other commands would use: the one of --view, or the current view\n"
       "of the project, or that of every animal, with the settings of this command line.",
       "spx --studbook examples/studbook view show --sex female"},
      {"view set", "Changes the current view of the project, from which every command in it starts.",
       "spx --project tarrow --studbook examples/studbook view set sex=female from=1990-01-01"},
      {"view save", "Saves the current view with the settings of this command line.",
       "spx --project tarrow view save females"},
      {"view list", "Lists the views that were saved in the project.", "spx --project tarrow view list"},
      {"view load", "Takes a saved view; the former current view is gone unless it was saved.",
       "spx --project tarrow view load females"},
      {"view clear", "Removes the current view of the project; saved views stay.", "spx --project tarrow view clear"},
      {"life-history show", "Shows the parameters of the project, or those of a new project.",
       "spx --project tarrow life-history show"},
      {"life-history set", "Sets parameters of the project; those not named stay.",
       "spx --project tarrow life-history set male-reproductive-lower=700 "
       "female-reproductive-lower=700"},
      {"life-history save", "Writes the parameters of the project to a file of your own.",
       "spx --project tarrow life-history save ~/tarrow.biology"},
      {"life-history load", "Takes all parameters of a file that life-history save has written.",
       "spx --project tarrow life-history load ~/tarrow.biology"},
      {"trace-parents",
       "Finds for the animals of the view whose sire or dam is unknown all animals that could be\n"
       "it, by sex, age, place and season, and writes a report (XML).",
       "spx --project tarrow --studbook examples/studbook trace-parents --sex male"},
      {"export pedigree", "Writes the animals of the view and their ancestors.",
       "spx --project tarrow --studbook examples/studbook export pedigree"},
      {"export animals", "Writes every field of each animal of the view: IDs, dates with their accuracy, own fields.",
       "spx --project tarrow --studbook examples/studbook export animals"},
      {"export r",
       "Writes the animals of the view and their ancestors as the package wants them, and a script that reads them.",
       "spx --project tarrow --studbook examples/studbook export r --for nadiv"},
      {"export fields", "Writes each animal with its dates, numbers and own fields.",
       "spx --project tarrow --studbook examples/studbook export fields --from 1980-01-01"},
      {"export dattrf", "Writes animals and events in columns of fixed width.",
       "spx --project tarrow --studbook examples/studbook export dattrf"},
      {"export view", "Writes what the view asks for, to go with the tables made by it.",
       "spx --project tarrow --studbook examples/studbook export view --sex female"},
      {"export r-loader", "Writes an R script that reads the exported tables into data frames.",
       "spx --project tarrow --studbook examples/studbook export r-loader"},
      {"export filters", "Writes a row per animal with the answer of every predicate, to compare.",
       "spx --project tarrow --studbook examples/studbook export filters"},
      {"export tables", "Writes a studbook file back as tables; importing them gives the same studbook again.",
       "spx --project tarrow --studbook ~/tarrow.studbook export tables"},
      {"filters", "The same as export filters, into this directory where no other is given.",
       "spx --studbook examples/studbook filters --to ~/"},
      {"project remove", "Moves the project to ~/spx/removed: nothing is lost, and the name is free again.",
       "spx project remove tarrow"},
  };
  return pages;
}

}  // namespace spx::console
