# Writes a random pedigree of 300 animals, a tenth of the parents missing, in random order.
set.seed(as.integer(commandArgs(TRUE)[1]))
animals <- 300
parent <- function(animal) {
  if (animal < 6 || runif(1) < 0.1) "" else sprintf("a%03d", sample(max(1, animal - 40):(animal - 1), 1))
}
table <- data.frame(id = sprintf("a%03d", 1:animals),
                    sire = vapply(1:animals, parent, ""),
                    dam = vapply(1:animals, parent, ""))
write.csv(table[sample(animals), ], row.names = FALSE, quote = FALSE)
