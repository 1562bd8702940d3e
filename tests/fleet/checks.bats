#!/usr/bin/env bats
# SPDX-License-Identifier: Apache-2.0
# What Ansible's own tools have to say about the collection. None of it needs a network.

load "$ORVEX_SOURCE_DIR/tests/cli/support/session.bash"

# start_check COMMAND...: a copy of the collection, at the place below which Ansible looks for it.
start_check() {
  local tool
  for tool; do
    PATH=/usr/bin:/bin command -v "$tool" >/dev/null || skip "$tool is not installed"
  done
  start_session
  collection=$PWD/ansible_collections/orvex/policy
  mkdir -p ansible_collections/orvex
  cp -R "$ORVEX_SOURCE_DIR/fleet" "$collection"
  session_environment+=("ANSIBLE_HOME=$PWD/ansible" "ANSIBLE_COLLECTIONS_PATH=$PWD" NO_COLOR=1)
}

# check COMMAND...: runs the command in the collection, as root, shows what it says and ends with its value.
check() {
  as 0 env -C "$collection" "$@"
  cat "$BATS_TEST_TMPDIR/output" "$BATS_TEST_TMPDIR/errors"
  return "$exit_value"
}

# needs_python_module MODULE
needs_python_module() {
  /usr/bin/python3 -c "import $1" 2>/dev/null || skip "Python's $1 is not installed"
}

# The parts of ansible-test that it runs only with packages of a certain version, which it would download. Most of them
# are run by the tests below, with the versions that are here.
downloading=(ansible-doc changelog import pep8 pylint runtime-metadata validate-modules yamllint)

@test "the YAML of the collection is tidy" {
  start_check yamllint
  check yamllint --strict .
}

@test "the Python of the collection is tidy" {
  start_check pycodestyle
  check pycodestyle --max-line-length=160 --ignore=E402,E741,W503,W504 .
}

@test "roles and metadata have the form for production" {
  start_check ansible-lint
  check ansible-lint --offline --profile production
}

@test "the collection passes those of ansible-test's checks that download nothing" {
  start_check ansible-test
  check ansible-test sanity --local --python default "${downloading[@]/#/--skip-test=}"
}

# validate KIND [OPTION...]: prints what ansible-test's validation finds in the plugins of this kind, as its lists of what is to
# be ignored have it.
validate() {
  local plugins=("$collection/plugins/$1/"*.py)
  check env "PYTHONPATH=$BATS_TEST_TMPDIR/desk" /usr/bin/python3 "$checks/validate-modules/validate.py" "${@:2}" \
    --collection ansible_collections/orvex/policy --collection-version 0.1.0 "${plugins[@]#"$collection/"}" |
    sed -E 's/^([^:]+):[0-9]+:[0-9]+: E([a-z0-9-]+) .*/\1 validate-modules:\2/'
}

@test "modules and plugins are what their documentation says" {
  start_check ansible-test
  needs_python_module voluptuous
  checks=$(/usr/bin/python3 -c 'import ansible_test; print(*ansible_test.__path__)')/_util/controller/sanity
  {
    validate modules --arg-spec
    validate lookup --plugin-type lookup
  } >found
  # What is to be ignored has to be there, so that a validation that did not happen shows.
  diff -u <(sed 's/ #.*//' "$collection/tests/sanity/ignore-2.14.txt" | sort) <(sort -u found)
}

@test "the unit tests of the collection pass" {
  start_check ansible-test pytest-3
  check ansible-test units --local --python default
}

@test "the integration tests of the collection pass" {
  start_check ansible-test
  check ansible-test integration --local --python default
}

@test "the collection can be built" {
  start_check ansible-galaxy
  check ansible-galaxy collection build --output-path "$PWD"
  tar -tzf orvex-policy-0.1.0.tar.gz | grep -x plugins/modules/state.py
}
