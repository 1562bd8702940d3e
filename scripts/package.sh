#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# Builds the rpm packages orvex-policy and orvex-policy-local from the tree as it stands, and runs the unit tests on the way.
# The same tree gives the same bytes, wherever it is built with the same tools.
#
# usage: scripts/package.sh [--without-tests] DIR
#
#   DIR   where the packages go; made where it is missing
set -euo pipefail
export LC_ALL=C.UTF-8
tree=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
source "$tree/scripts/lib/script.bash"

# print_files: the files of the tree, without what is built, each ended by a NUL.
print_files() {
  if [[ -e $tree/.git ]]; then
    git -C "$tree" ls-files -z --cached --others --exclude-standard --deduplicate
  else
    (cd "$tree" && find . -path ./build -prune -o ! -type d -print0)
  fi
}

# pack_tree FILE: the tree as an archive of which nothing but its files depends on the day or the machine.
pack_tree() {
  print_files | sort -z | tar -C "$tree" -c --format=gnu --no-recursion \
    --owner=0 --group=0 --numeric-owner --mode=u+rw,go=rX --mtime="$release_day UTC" \
    --transform "s,^\(\./\)\?,orvex-policy-$version/," --null --files-from=- |
    gzip -n >"$1"
}

answer_help "$@"
options=()
if [[ ${1-} == --without-tests ]]; then
  options+=(--without tests)
  shift
fi
[[ $# -eq 1 && $1 != -* ]] || refuse_call
mkdir -p "$1"
dir=$(cd "$1" && pwd)
spec=$tree/packaging/orvex-policy.spec
version=$(sed -n 's/^Version: *//p' "$spec")
release_day=$(sed -n '/^%changelog/,$ s/^\* \(... ... [0-9]* [0-9]*\) .*/\1/p' "$spec" | head -n 1)
# On a machine of another packaging rpm's database does not know what is installed.
if command -v apt-get >/dev/null; then
  options+=(--nodeps)
fi

# rpmbuild cannot work in a directory with a blank in its name.
TMPDIR=/tmp make_scratch
mkdir "$scratch/SOURCES"
pack_tree "$scratch/SOURCES/orvex-policy-$version.tar.gz"
cp "$spec" "$scratch"
announce 'building the packages'
rpmbuild -bb "${options[@]}" \
  --define "_topdir $scratch" --define "_tmppath $scratch" --define "_rpmdir $scratch/RPMS" \
  --define '_rpmfilename %%{NAME}-%%{VERSION}-%%{RELEASE}.%%{ARCH}.rpm' \
  --define '_buildhost reproducible' --define 'source_date_epoch_from_changelog 1' \
  --define 'use_source_date_epoch_as_buildtime 1' --define 'clamp_mtime_to_source_date_epoch 1' \
  "$scratch/orvex-policy.spec" >"$scratch/log" 2>&1 || {
  cat "$scratch/log" >&2
  fail 'rpmbuild failed'
}
cp "$scratch"/RPMS/*.rpm "$dir"
ls "$dir"/*.rpm
