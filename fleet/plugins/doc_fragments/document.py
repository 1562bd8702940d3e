# SPDX-License-Identifier: Apache-2.0
"""The arguments with which a task declares a policy."""


class ModuleDocFragment:

    DOCUMENTATION = r"""
requirements:
  - The package orvex-policy on the host, for its program C(orvex_state).
attributes:
  check_mode:
    description: Can run in check mode and tell what would change, without changing anything.
  diff_mode:
    description: Can tell what differs in diff mode.
options:
  framework:
    description: What the framework does.
    type: str
    choices: [disabled, enabled, permissive]
  modules:
    description:
      - What each module is switched to, by the name that C(orvex_policy status) has for it.
      - C(warning), and C(3adm) that differs from the host, are refused, as no command sets them. A policy that was read may have them.
    type: dict
    suboptions: &modules
      exec: &switch
        description: Whether the module is on.
        type: str
        choices: ["on", "off", warning]
      exec script: *switch
      net: *switch
      kmod: *switch
      file: *switch
      proc: *switch
      3adm: *switch
      box: *switch
  exec:
    description: Execution control.
    type: dict
    suboptions: &exec
      exclusive: &exclusive
        description: With I(purge), whether what is not named is taken off the lists of this section. It is unless this is C(false).
        type: bool
      whitelist:
        description: C(intact) for each file that may run, by its path. A file that was tampered with is whitelisted as it is now.
        type: dict
      excepted_files:
        description: Files without control.
        type: list
        elements: str
      excepted_directories:
        description: Directories without control.
        type: list
        elements: str
      excepted_packages:
        description: Packages without control.
        type: list
        elements: str
  net:
    description: Network control.
    type: dict
    suboptions: &net
      exclusive: *exclusive
      packages:
        description: C(allow) or C(deny) for each package, by its name.
        type: dict
      programs:
        description: C(allow) or C(deny) for each program that no package owns, by its path.
        type: dict
  file:
    description: Protection of files.
    type: dict
    suboptions: &file
      exclusive: *exclusive
      files:
        description: For each file, by its path, a dictionary with its C(excepted_files) and C(excepted_packages), or an empty one.
        type: dict
      directories:
        description: The same for directories.
        type: dict
      packages:
        description: The same for packages.
        type: dict
  proc:
    description: Protection of processes.
    type: dict
    suboptions: &proc
      exclusive: *exclusive
      programs:
        description: For each program, by its path, a dictionary with its C(excepted_files), C(excepted_directories) and
          C(excepted_packages), or an empty one.
        type: dict
  kmod:
    description: Protection of kernel modules from being unloaded.
    type: dict
    suboptions: &kmod
      exclusive: *exclusive
      modules:
        description: The names of the kernel modules.
        type: list
        elements: str
  document:
    description:
      - The whole policy, or parts of it, in place of the sections as arguments.
      - What M(orvex.policy.state_info) returns as C(policy) is such a document.
    type: dict
    suboptions:
      version:
        description: The version of the document.
        type: int
        choices: [1]
      framework:
        description: As the argument.
        type: str
        choices: [disabled, enabled, permissive]
      modules:
        description: As the argument.
        type: dict
        suboptions: *modules
      exec:
        description: As the argument.
        type: dict
        suboptions: *exec
      net:
        description: As the argument.
        type: dict
        suboptions: *net
      file:
        description: As the argument.
        type: dict
        suboptions: *file
      proc:
        description: As the argument.
        type: dict
        suboptions: *proc
      kmod:
        description: As the argument.
        type: dict
        suboptions: *kmod
  path:
    description: A document in a file on the host, in place of the sections as arguments.
    type: path
  purge:
    description:
      - Whether objects that the document does not name are taken off the lists that it has.
      - They stay by default. A list that names one object would otherwise empty a host of all that others have put there, among it
        what keeps the host working.
    type: bool
    default: false
  executable:
    description: The program on the host, by its path, or by its name where it lies in C(PATH) or in a directory for administrators.
    type: str
    default: orvex_state
notes:
  - What is left out is neither compared nor changed.
  - Names are written as C(orvex_state) writes them. A byte that is no part of a UTF-8 character is C(\xHH), and a backslash is
    doubled.
"""
