# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# What the demonstration and the tests need for packages that come and go.

# enter_package FILE [ROOT NEW_ROOT]: enters a package into the database that HOME leads to. Its files are not touched; they
# lie where the package says or, where that is below ROOT, in NEW_ROOT.
enter_package() {
  local moved=()
  if [[ $# -eq 3 ]]; then
    moved=(--badreloc --relocate "$2=$3")
  fi
  run_rpm -i --justdb --nodeps --noscripts --nosignature "${moved[@]}" "$1"
}

# drop_package NAME: takes it out again.
drop_package() {
  run_rpm -e --justdb --nodeps --noscripts "$1"
}

# run_rpm ARGUMENT...: what rpm says is of interest only if it fails.
run_rpm() {
  local said
  said=$(rpm "$@" 2>&1) || {
    printf '%s\n' "$said" >&2
    return 1
  }
}
