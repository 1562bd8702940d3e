# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# Reads from the ELF headers of what a build leaves how it can be attacked, and where it looks for libraries.

load "$ORVEX_SOURCE_DIR/tests/support/elf_files.bash"

# is_built_optimised: only optimised builds are hardened.
is_built_optimised() {
  case $ORVEX_BUILD_TYPE in
    Release | RelWithDebInfo | MinSizeRel) ;;
    *) return 1 ;;
  esac
}

# has_cet_notes FILE
has_cet_notes() {
  readelf --notes --wide "$1" 2>/dev/null | grep -q 'x86 feature: .*IBT, SHSTK'
}

# are_start_files_marked: tells whether the machine's own start files, which are part of whatever is linked, have the notes
# of control-flow enforcement. The linker drops them where one file lacks them.
are_start_files_marked() {
  local file
  for file in crti.o crtn.o Scrt1.o; do
    has_cet_notes "$("${CXX:-c++}" -print-file-name="$file")" || return
  done
}

# expect_hardened FILE...: each can be loaded anywhere, binds its symbols at the start and locks them, has neither an
# executable stack nor memory that is both written and executed, and no run path that would lead to the current directory.
expect_hardened() {
  local file elf
  for file in "$@"; do
    elf=$(readelf --file-header --program-headers --dynamic --wide "$file")
    echo "$file"
    grep -Eq '^ *Type: +DYN' <<<"$elf"
    if grep -q 'INTERP' <<<"$elf"; then
      grep -Eq '\(FLAGS_1\).* PIE' <<<"$elf"
    fi
    grep -q 'GNU_RELRO' <<<"$elf"
    grep -Eq '\(FLAGS_1\).* NOW' <<<"$elf"
    grep -Eq '^ *GNU_STACK.* RW ' <<<"$elf"
    run -1 grep -E '^ *LOAD.* RWE ' <<<"$elf"
    run -1 grep -F '(TEXTREL)' <<<"$elf"
    # shellcheck disable=SC2016
    run -1 grep -Ev '^RUNPATH \$ORIGIN(/\.\.(/[a-z_-]+)*)?$' < <(print_run_path "$file")
    if are_start_files_marked; then
      has_cet_notes "$file"
    fi
  done
}

# expect_checked FILE...: each checks its stack, and calls the C library's checking functions.
expect_checked() {
  local file
  for file in "$@"; do
    echo "$file"
    nm -D "$file" | grep -q ' U __stack_chk_fail@'
    nm -D "$file" | grep -q ' U __[a-z]*_chk@'
  done
}
