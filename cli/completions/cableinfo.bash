# bash completion of cableinfo

_cableinfo() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local port_options='--all-messages --guid --help --jobs --label --module --no-files --output'
  port_options+=' --port --strict --quiet'
  COMPREPLY=()
  if [ "$COMP_CWORD" -eq 1 ]; then
    mapfile -t COMPREPLY < <(compgen -W 'table report export module check diff metrics page store columns --help --version' -- "$word")
    return
  fi
  local options
  case ${COMP_WORDS[1]} in
    table) options="$port_options --columns --json --no-header --rfc4180" ;;
    diff)
      options="${port_options/--module /} --bias-tolerance --config --json --power-tolerance"
      options+=' --set --temperature-tolerance'
      ;;
    check) options="$port_options --config --json --plugin --rules --set" ;;
    module) options="$port_options --json" ;;
    report | export) options=$port_options ;;
    metrics) options="$port_options --config --set" ;;
    page) options="$port_options --config --set" ;;
    store) options="${port_options/ --output/} --config --keep --set --taken-at" ;;
    columns) options='--help --json' ;;
  esac
  if [[ $word == -* && $previous != -o && $previous != --output ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
  elif [ "${COMP_WORDS[1]}" != columns ]; then
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
  fi
}
complete -o filenames -F _cableinfo cableinfo
