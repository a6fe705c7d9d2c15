# bash completion of cableinfo

_cableinfo() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local port_options='--all-messages --help --jobs --module --no-files --output --strict --quiet'
  COMPREPLY=()
  if [ "$COMP_CWORD" -eq 1 ]; then
    mapfile -t COMPREPLY < <(compgen -W 'table report export columns --help --version' -- "$word")
    return
  fi
  local options
  case ${COMP_WORDS[1]} in
    table) options="$port_options --json --no-header --rfc4180" ;;
    report | export) options=$port_options ;;
    columns) options='--help --json' ;;
  esac
  if [[ $word == -* && $previous != -o && $previous != --output ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
  elif [ "${COMP_WORDS[1]}" != columns ]; then
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
  fi
}
complete -o filenames -F _cableinfo cableinfo
