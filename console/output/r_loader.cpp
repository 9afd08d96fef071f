#include "console/output/r_loader.h"

namespace spx::console {

std::string rLoader() {
  return R"script(
# Reads the tables that "spx export" wrote beside this script; base R is enough.
#   source("load_studbook.R"); pedigree <- read_pedigree()
# IDs are text (leading zeros stay), dates are Date, what is missing is NA.

spx_directory <- local({
  sourced <- Filter(Negate(is.null), lapply(sys.frames(), function(frame) frame$ofile))
  run <- grep("^--file=", commandArgs(FALSE), value = TRUE)
  if (length(sourced) > 0) dirname(sourced[[length(sourced)]])
  else if (length(run) > 0) dirname(sub("^--file=", "", run[1]))
  else "."
})

spx_text <- function(values) ifelse(values == "", NA_character_, values)
spx_number <- function(values) {
  numbers <- suppressWarnings(as.numeric(values))
  ifelse(is.nan(numbers), NA_real_, numbers)
}
spx_date <- function(values, format) as.Date(ifelse(values == "", NA, values), format)
spx_table <- function(path, separator) {
  if (file.size(path) == 0) return(data.frame())
  read.table(path, header = TRUE, sep = separator, quote = "\"", comment.char = "",
             na.strings = character(0), colClasses = "character", check.names = FALSE,
             strip.white = FALSE, blank.lines.skip = FALSE, encoding = "UTF-8")
}

# pedigree.csv, one row per animal. CENSORED is 1 for the dead, 0 for the living and the lost.
read_pedigree <- function(directory = spx_directory) {
  table <- spx_table(file.path(directory, "pedigree.csv"), "|")
  for (parent in c("DAM", "SIRE")) table[[parent]][table[[parent]] == "NA"] <- NA
  table$SEX <- factor(table$SEX, c("1", "2", "3"), c("male", "female", "other"))
  table$BIRTHSITE <- spx_text(table$BIRTHSITE)
  table$BIRTHDATE <- spx_date(table$BIRTHDATE, "%Y%m%d")
  table$DEATHDATE <- spx_date(table$DEATHDATE, "%Y%m%d")
  table$CENSORED <- as.integer(table$CENSORED)
  table$F <- spx_number(table$F)
  table$G <- spx_number(table$G)
  table$G[!is.na(table$G) & table$G == -2147483648] <- NA
  table$G <- as.integer(table$G)
  table$BREEDER <- table$BREEDER == "yes"
  table
}

# animal_data.csv, one row per animal of the view that died or was lost in its period; no IDs.
read_fields <- function(directory = spx_directory) {
  table <- spx_table(file.path(directory, "animal_data.csv"), "\t")
  if (ncol(table) == 0) return(table)
  table <- table[, names(table) != "", drop = FALSE]  # every line ends in a TAB
  table$BIRTHDATE <- spx_date(table$BIRTHDATE, "%Y-%m-%d")
  table$DEATHDATE[table$DEATHDATE == "NA"] <- ""
  table$DEATHDATE <- spx_date(table$DEATHDATE, "%Y-%m-%d")
  for (name in c("DEATHAGE", "FCOEF", grep("^GENERATION_", names(table), value = TRUE))) {
    table[[name]] <- spx_number(table[[name]])
  }
  table$BIRTHSITE <- spx_text(table$BIRTHSITE)
  table
}

# Lines of a fixed-width file without the last one, "@". Widths count bytes.
spx_lines <- function(path) {
  lines <- readLines(path, encoding = "latin1", warn = FALSE)
  lines[seq_len(length(lines) - 1)]
}
spx_utf8 <- function(values) {
  values <- sub(" +$", "", values)
  Encoding(values) <- "UTF-8"
  values
}

# STUDBOOK.TRF, a birth (B) and a death (D) row per record; the living have a death without a date.
read_trf <- function(directory = spx_directory) {
  lines <- spx_lines(file.path(directory, "STUDBOOK.TRF"))
  parts <- regmatches(lines, regexec("^(.*)([0-9 ]{8})([ADMYU])([BD])(-?[0-9]+) *$", lines))
  columns <- do.call(rbind, parts)
  data.frame(ID = spx_utf8(columns[, 2]), DATE = spx_date(trimws(columns[, 3]), "%Y%m%d"),
             ACCURACY = columns[, 4], EVENT = columns[, 5], LOCATION = as.numeric(columns[, 6]),
             stringsAsFactors = FALSE)
}

# Values wider than their six columns are written whole. Where dam and sire cannot be told apart by that, the cut
# that gives known IDs counts; where none does, both are NA.
spx_parents <- function(text, known) {
  wide <- nchar(text)
  fits <- function(part) nchar(part) == 6 || (nchar(part) > 6 && !grepl(" $", part))
  cuts <- Filter(function(cut) fits(substring(text, 1, cut)) && fits(substring(text, cut + 1)),
                 6:(wide - 6))
  parents <- lapply(cuts, function(cut) spx_utf8(c(substring(text, 1, cut),
                                                   substring(text, cut + 1))))
  found <- vapply(parents, function(pair) sum(pair %in% known), 0L)
  best <- which(found == max(found, 0L))
  if (length(best) == 1) parents[[best]] else c(NA_character_, NA_character_)
}

# STUDBOOK.DAT, one row per record, pseudo individuals too; needs STUDBOOK.TRF beside it.
read_dat <- function(directory = spx_directory) {
  lines <- spx_lines(file.path(directory, "STUDBOOK.DAT"))
  events <- read_trf(directory)
  ids <- events$ID[events$EVENT == "B"]
  size <- nchar(lines)
  parents <- substring(lines, pmax(6, nchar(ids, "bytes")) + 1, size - 21)
  pairs <- cbind(spx_utf8(substring(parents, 1, 6)), spx_utf8(substring(parents, 7)))
  for (row in which(nchar(parents) != 12)) pairs[row, ] <- spx_parents(parents[row], ids)
  cell <- function(from_end, width) substring(lines, size - from_end + 1, size - from_end + width)
  data.frame(ID = ids, DAM = pairs[, 1], SIRE = pairs[, 2], SEX = cell(21, 1),
             ORIGIN = cell(20, 1), BIRTHDATE = spx_date(trimws(cell(19, 8)), "%Y%m%d"),
             BIRTH_ACCURACY = cell(11, 1), DEATHDATE = spx_date(trimws(cell(10, 8)), "%Y%m%d"),
             DEATH_ACCURACY = cell(2, 1), stringsAsFactors = FALSE)
}
)script";
}

}  // namespace spx::console
