# Compares results of the program with those of the tabular method (Emik & Terrill 1949), row by row, and of
# definitions written out. All animals of the table are living.
arguments <- commandArgs(TRUE)
table <- read.csv(arguments[1], colClasses = "character")
result <- function(name) read.csv(file.path(arguments[2], paste0(name, ".csv")), colClasses = c(id = "character"))

# Parents before offspring.
known <- function(column) match(table[[column]], table$id)
depth <- rep(0, nrow(table))
repeat {
  deeper <- pmax(ifelse(is.na(known("sire")), 0, depth[known("sire")] + 1),
                 ifelse(is.na(known("dam")), 0, depth[known("dam")] + 1))
  if (all(deeper == depth)) break
  depth <- deeper
}
table <- table[order(depth), ]
sire <- known("sire")
dam <- known("dam")
animals <- nrow(table)

A <- matrix(0, animals, animals)
shares <- matrix(0, animals, animals)  # of each founder, or phantom of that animal, in each animal
phantoms <- matrix(0, animals, animals)
genetic <- maternal <- equivalent <- traced <- maximum <- cites <- rep(0, animals)
complete <- matrix(0, animals, 6)
complete[, 1] <- 1
for (i in seq_len(animals)) {
  parents <- c(sire[i], dam[i])
  there <- parents[!is.na(parents)]
  for (parent in there) {
    if (i > 1) A[i, 1:(i - 1)] <- A[i, 1:(i - 1)] + A[parent, 1:(i - 1)] / 2
    shares[i, ] <- shares[i, ] + shares[parent, ] / 2
    phantoms[i, ] <- phantoms[i, ] + phantoms[parent, ] / 2
    equivalent[i] <- equivalent[i] + (equivalent[parent] + 1) / 2
    complete[i, 2:6] <- complete[i, 2:6] + complete[parent, 1:5] / 2
  }
  A[, i] <- A[i, ]
  A[i, i] <- 1 + if (length(there) == 2) A[sire[i], dam[i]] / 2 else 0
  if (length(there) == 0) {
    shares[i, i] <- 1
  } else {
    if (length(there) == 1) phantoms[i, i] <- 1 / 2
    genetic[i] <- 1 + mean(genetic[there])
    cites[i] <- 1 + min(cites[there])
    maximum[i] <- 1 + max(maximum[there])
    if (length(there) == 2) traced[i] <- 1 + min(traced[there])
    if (!is.na(dam[i])) maternal[i] <- 1 + maternal[dam[i]]
  }
}
side <- function(parent) ifelse(is.na(parent), 0, rowMeans(complete[, 1:5])[parent] / 2)
index <- 4 * side(sire) * side(dam) / (side(sire) + side(dam))
index[is.nan(index)] <- 0

tolerance <- 1e-10
compared <- 0
compare <- function(what, found, expected) {
  difference <- max(abs(found - expected))
  if (is.na(difference) || difference > tolerance) stop(what, " differs by ", difference)
  compared <<- compared + length(expected)
}
kinship <- A / 2
p <- c(colMeans(shares), colMeans(phantoms))
summary <- read.csv(file.path(arguments[2], "genetics.csv"))
compare("fe", summary$fe, 1 / sum(p^2))
compare("mean kinship", summary$mean_kinship, mean(kinship))
compare("gene diversity", summary$gene_diversity, 1 - mean(kinship))
compare("fg", summary$fg, 1 / (2 * mean(kinship)))
compare("mean F", summary$mean_f, mean(diag(A) - 1))
compare("equivalent generations", summary$equivalent_generations, mean(equivalent))

place <- function(results) match(results$id, table$id)
f <- result("inbreeding")
compare("F", f$f, diag(A)[place(f)] - 1)
mk <- result("mean-kinship")
compare("mean kinships", mk$mk, rowMeans(kinship)[place(mk)])
generations <- result("generations")
expected <- list(cites = cites, genetic = genetic, maternal = maternal, equivalent = equivalent, traced = traced,
                 maximum = maximum)
for (name in names(expected)) compare(name, generations[[name]], expected[[name]][place(generations)])
completeness <- result("completeness")
compare("completeness index", completeness$index, index[place(completeness)])
for (g in 1:5) compare(paste0("g", g), completeness[[paste0("g", g)]], complete[place(completeness), g + 1])
stopifnot(nrow(f) == animals, nrow(mk) == animals)
cat(compared, "numbers are those of the tabular method\n")
