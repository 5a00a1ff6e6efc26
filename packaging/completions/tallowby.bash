# bash completion for tallowby(1)

_tallowby() {
  # The program takes one option.
  ((COMP_CWORD == 1)) || return 0
  mapfile -t COMPREPLY < <(compgen -W '--toggle --settings --quit --version --help' -- "${COMP_WORDS[COMP_CWORD]}")
}
complete -F _tallowby tallowby
