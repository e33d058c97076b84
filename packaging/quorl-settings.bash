# Completion of quorl-settings in bash: commands, their options, root keys, types and files.
_quorl_settings() {
  local word=${COMP_WORDS[COMP_CWORD]} words= files=
  case $COMP_CWORD,${COMP_WORDS[1]} in
    1,*) words='list get set delete copy export import diff watch verify repair --help' ;;
    2,list | 2,get | 2,set | 2,delete | [23],copy | 2,export | 2,watch)
      words='HKCR\\ HKCU\\ HKLM\\ HKU\\ HKCC\\'
      compopt -o nospace
      ;;
    3,export | 2,import | *,diff | *,verify | *,repair) files=yes ;;
    5,set) words='sz dword binary' ;;
  esac
  if [[ $word == -* || -z $words$files ]]; then
    case ${COMP_WORDS[1]} in
      list | diff | watch | verify) words+=' --json' ;;
      export) words+=' --utf8' ;;
      import) words+=' --replace' ;;
      repair) words+=' --yes' ;;
    esac
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
  if [[ $files ]]; then
    compopt -o filenames
    mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -f -- "$word")
  fi
}
complete -F _quorl_settings quorl-settings
