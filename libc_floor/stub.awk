# Writes a stub of one library of the system's libc: the same soname and the same symbols, each
# with the newest version that isn't above the floor. What came later is left out.
#
#   readelf --wide --dyn-syms LIBRARY... |
#     awk -v floor=2.17 -v part=libc -v source=FILE -v map=FILE -f stub.awk
#
# Since 2.34 one file holds what used to stand in five, so the part of a symbol goes by its name.

# Versions as numbers that compare: 2.2.5 -> 20205.
function rank(version, fields) {
  split(version, fields, ".")
  return fields[1] * 10000 + fields[2] * 100 + fields[3]
}

function part_of(name, file) {
  if (file != "libc") return file
  if (name ~ /^(pthread_|__pthread_|sem_)/) return "libpthread"
  if (name ~ /^(dl(addr|addr1|close|error|info|mopen|open|sym|vsym))$/) return "libdl"
  if (name ~ /^(aio_|lio_|mq_|shm_|timer_)/) return "librt"
  return "libc"
}

/^File: / {
  file = $2
  sub(/.*\//, "", file)
  sub(/[-.].*/, "", file)
}

# Num: Value Size Type Bind Vis Ndx Name@@VERSION; those without a section are needs and the names of
# the versions themselves.
$1 ~ /^[0-9]+:$/ && $7 ~ /^[0-9]+$/ && $8 ~ /@/ && $4 != "TLS" {
  name = version = $8
  sub(/@.*/, "", name)
  sub(/.*@/, "", version)
  if (version !~ /^GLIBC_[0-9.]+$/ || part_of(name, file) != part) next
  sub(/GLIBC_/, "", version)
  if (rank(version) > rank(floor)) next
  if (name in versions && rank(versions[name]) >= rank(version)) next
  versions[name] = version
  if ($4 == "OBJECT") {
    places[name] = file $2
    sizes[name] = $3
  }
}

END {
  print "asm(R\"(.text" > source
  for (name in versions) {
    symbols[versions[name]] = symbols[versions[name]] " " name ";"
    if (name in places) {
      variables[places[name]] = variables[places[name]] " " name
    } else {
      printf ".globl %s\n.type %s, @function\n%s: ret\n", name, name, name > source
    }
  }
  # A program takes a copy of a variable under all of its names, so they share their place here, too.
  print ".data" > source
  for (place in variables) {
    count = split(variables[place], names)
    for (i = 1; i <= count; ++i) {
      printf ".globl %s\n.type %s, @object\n.size %s, %s\n%s:\n", \
        names[i], names[i], names[i], sizes[names[i]], names[i] > source
    }
    printf ".zero %s\n", sizes[names[1]] > source
  }
  print ")\");" > source
  printf "" > map
  for (version in symbols) printf "GLIBC_%s { global:%s };\n", version, symbols[version] > map
}
