# Completion of quorl-amounts in bash.
_quorl_amounts() {
  local word=${COMP_WORDS[COMP_CWORD]}
  case ${COMP_WORDS[COMP_CWORD - 1]} in
    --language) mapfile -t COMPREPLY < <(compgen -W 'FR UK NL DE' -- "$word") ;;
    --currency) mapfile -t COMPREPLY < <(compgen -W 'EUR CHF GBP USD JPY TND' -- "$word") ;;
    --kind) mapfile -t COMPREPLY < <(compgen -W '0 1 2' -- "$word") ;;
    --file) compopt -o filenames && mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    --unit | --units | --subunit | --subunits | --decimals) ;;
    *)
      mapfile -t COMPREPLY < <(compgen -W '--language --currency --unit --units --subunit --subunits
        --kind --decimals --file --help' -- "$word")
      ;;
  esac
}
complete -F _quorl_amounts quorl-amounts
