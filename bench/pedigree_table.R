# What "spx export pedigree" does, with data.table: read the table, match the parents, write the same columns.
#   Rscript pedigree_table.R ANIMALS.csv PEDIGREE.csv
suppressMessages(library(data.table))
files <- commandArgs(TRUE)
animals <- fread(files[1], colClasses = "character", na.strings = "")
pseudo <- "^(COLONY|GROUP|HERD|MULT|UNK|WILD|P)"
animals <- animals[!grepl(pseudo, id, ignore.case = TRUE)]
sire <- match(animals$sire, animals$id)
dam <- match(animals$dam, animals$id)
breeder <- logical(nrow(animals))
breeder[sire[!is.na(sire)]] <- TRUE
breeder[dam[!is.na(dam)]] <- TRUE
compact <- function(day) {
  day <- gsub("-", "", day, fixed = TRUE)
  day[is.na(day)] <- ""
  size <- nchar(day)
  day[size == 4] <- paste0(day[size == 4], "0101")
  day[size == 6] <- paste0(day[size == 6], "01")
  day
}
pedigree <- animals[, .(ID = id, DAM = fifelse(is.na(..dam), NA_character_, dam),
                        SIRE = fifelse(is.na(..sire), NA_character_, sire),
                        SEX = fcase(sex == "male", 1L, sex == "female", 2L, default = 3L),
                        BIRTHSITE = birth_location, BIRTHDATE = compact(birth_date),
                        DEATHDATE = compact(death_date),
                        CENSORED = as.integer(!is.na(death_date) & death_event == "death"),
                        F = fcoef, G = g_cites, TAXON = taxon,
                        BREEDER = fifelse(..breeder, "yes", "no"))]
setorder(pedigree, ID)
fwrite(pedigree, files[2], sep = "|", na = "NA", quote = FALSE)
