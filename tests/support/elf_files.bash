# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# What the headers of programs and shared objects say.

# print_objects DIR...: the programs and shared objects in these directories.
print_objects() {
  find "$@" -type f \( -perm -u+x -o -name '*.so*' \) -exec sh -c 'readelf -h "$1" >/dev/null 2>&1' sh {} \; -print
}

# print_run_path FILE
print_run_path() {
  readelf --dynamic --wide "$1" | sed -n 's/.*(\(RPATH\|RUNPATH\)).*\[\(.*\)\]/\1 \2/p'
}

# print_run_paths: where each of the files on standard input looks for libraries, told by its directory, sorted.
print_run_paths() {
  local object
  while read -r object; do
    echo "$(basename "$(dirname "$object")") $(print_run_path "$object" | grep . || echo 'and nowhere else')"
  done | sort -u
}

# print_needed_service_libraries FILE: those of the service library, sorted.
print_needed_service_libraries() {
  readelf --dynamic --wide "$1" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | grep -E '^lib(orvex|vemu)' | LC_ALL=C sort
}
