find_program(BATS bats REQUIRED)

# add_bats_tests(LABEL NAME COST [VARIANT]): each test of the file NAME.bats is a test of CTest's, so that one which is
# skipped shows as skipped. Those that cost more start earlier. The tests get the variables in bats_environment; where a file
# is added several times, VARIANT tells the tests apart.
function(add_bats_tests label name cost)
  set(file ${CMAKE_CURRENT_SOURCE_DIR}/${name}.bats)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
  file(STRINGS ${file} headings REGEX "^@test ")
  foreach(heading IN LISTS headings)
    string(REGEX REPLACE "^@test \"(.*)\" {$" "\\1" title "${heading}")
    string(REGEX REPLACE "([][.*+?(){}|^$\\])" "\\\\\\1" pattern "${title}")
    string(JOIN "." group ${label} ${name} ${ARGN})
    set(test "${group}: ${title}")
    add_test(NAME ${test} COMMAND ${BATS} --tap --filter "^${pattern}$" ${file})
    # A filter that fits no test, or more than one, is a failure.
    set_tests_properties(${test} PROPERTIES
      LABELS ${label}
      COST ${cost}
      ENVIRONMENT "${bats_environment}"
      SKIP_REGULAR_EXPRESSION "^1\\.\\.1\nok 1 .* # skip "
      FAIL_REGULAR_EXPRESSION "^1\\.\\.[^1]")
  endforeach()
endfunction()
