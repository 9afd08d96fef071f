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
       "is 3 when there are errors, or placeholders that nothing accepts (see help import). In a studbook\n"
       "file, --fix asks for each finding that has one sensible cure, and --yes CODE cures those of a\n"
       "code without asking.",
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
       "Checks tables and makes a studbook file of them: the one of --studbook, or the project's\n"
       "own. A studbook file that is there is updated: what the tables add, change and remove is\n"
       "shown, and is a single change, which spx undo takes back. Where they would take back what\n"
       "was changed by hand, --ours or --theirs has to say who is right. Columns and tables that\n"
       "are not given stay. Nothing is written when the tables have faults.\n"
       "Animals whose IDs are placeholders of unknown animals (they begin with P, WILD, UNK, MULT,\n"
       "GROUP, HERD or COLONY) would show in no list. They are named, and nothing is written, unless\n"
       "--id-prefix gives every ID a prefix (export tables --drop-id-prefix takes it away again), or\n"
       "--placeholders accepts them.",
       "spx import examples/studbook --dry-run\n"
       "spx --studbook ~/tarrow.studbook import examples/studbook"},
      {"birth", "Adds young of known parents to a studbook file, born in captivity. Several IDs are a litter.",
       "spx --studbook ~/tarrow.studbook birth 0200 0201 --dam 0141 --sire 0140 --on 2024-05 "
       "--at 2.1.1"},
      {"death", "Enters the day and place of animals' deaths in a studbook file.",
       "spx --studbook ~/tarrow.studbook death 0201 --on 2024-06-11"},
      {"transfer", "Enters that animals arrived at another location. spx event add enters other events.",
       "spx --studbook ~/tarrow.studbook transfer 0200 0141 --to 2.1.3 --on 2025-02-01"},
      {"loss", "Enters that nothing is known of animals from a day on: they left the records alive.",
       "spx --studbook ~/tarrow.studbook loss 0136 --on 2025"},
      {"animal add", "Adds an animal to a studbook file; what is not given is unknown.",
       "spx --studbook ~/tarrow.studbook animal add 0202 dam=0003 sex=f birth_date=1992-05"},
      {"animal set",
       "Changes fields of animals in a studbook file; an empty value makes a field unknown. The\n"
       "animals are named, or chosen with --where; of animals with the same ID, 0144#2 is the\n"
       "second. Everything is checked first, and all is changed or nothing.",
       "spx --studbook ~/tarrow.studbook animal set 0003 rearing=hand house_name=Marla\n"
       "spx --studbook ~/tarrow.studbook animal set --where house_name=Ginger taxon=montana"},
      {"animal remove", "Removes animals with their events from a studbook file. A parent is refused.",
       "spx --studbook ~/tarrow.studbook animal remove 0202"},
      {"animal rename", "Changes an ID, also where the animal is a parent. Its events stay with it.",
       "spx --studbook ~/tarrow.studbook animal rename 0144#2 0203"},
      {"animal merge",
       "Merges the second animal into the first, which takes its events, its offspring and what\n"
       "it does not know itself. Where both differ, the right value is given as FIELD=VALUE.",
       "spx --studbook ~/tarrow.studbook animal merge 0144 0203 microchip=985000047660979 "
       "birth_location=2.3.2"},
      {"event add", "Adds an event to animals of a studbook file.",
       "spx --studbook ~/tarrow.studbook event add 0200 date=2025-03-01 event=social-in "
       "location=2.1.1"},
      {"event set",
       "Changes events in a studbook file: the only one of an animal, its N-th, or those of\n"
       "which all conditions hold.",
       "spx --studbook ~/tarrow.studbook event set 0001 --number 2 location=2.1.1"},
      {"event remove", "Removes events from a studbook file, chosen as for event set.",
       "spx --studbook ~/tarrow.studbook event remove 0200 --where event=social-in"},
      {"location add", "Adds a location to the table of a studbook file.",
       "spx --studbook ~/tarrow.studbook location add New_Zoo --in 2"},
      {"location set", "Changes a location. Animals and events follow a new name or identifier.",
       "spx --studbook ~/tarrow.studbook location set New_Zoo latitude=48.2 longitude=16.3"},
      {"location merge", "Makes one location of two. Animals and events of the second go to the first.",
       "spx --studbook ~/tarrow.studbook location merge 2.1 New_Zoo"},
      {"field add", "Adds a field of your own to the animals, or with --of events to the events.",
       "spx --studbook ~/tarrow.studbook field add tattoo"},
      {"field rename", "Gives one of your fields another name.",
       "spx --studbook ~/tarrow.studbook field rename tattoo mark"},
      {"field remove", "Removes one of your fields with all its values.",
       "spx --studbook ~/tarrow.studbook field remove mark"},
      {"log",
       "Lists who changed what, when and why. With an ID, or the number of a change, each value\n"
       "is shown before and after.",
       "spx --studbook ~/tarrow.studbook log\n"
       "spx --studbook ~/tarrow.studbook log 0003"},
      {"undo",
       "Takes the last change back, or those with the numbers that are given. A change on which\n"
       "later ones build is refused.",
       "spx --studbook ~/tarrow.studbook undo\n"
       "spx --studbook ~/tarrow.studbook undo 3 4"},
      {"redo", "Makes the last change again that was undone.", "spx --studbook ~/tarrow.studbook redo"},
      {"diff",
       "Compares two editions, tables or studbook files: animals, events, locations and fields\n"
       "that were added, removed or changed. Exits with 0 when they say the same, and with 1 when\n"
       "they differ.",
       "spx diff examples/studbook ~/tarrow.studbook"},
      {"restore", "Writes another studbook file: this one as it was at a time. A day means its end.",
       "spx --studbook ~/tarrow.studbook restore --at 2999-12-31 -o ~/former.studbook"},
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
