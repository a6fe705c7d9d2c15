# bash completion of cableinfo
# Written by scripts/command_files.py from the help of the program.

# Offers the arguments of a kind that begin with `word`.
_cableinfo_argument() {
  local names=()
  case $1 in
    files)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -f -- "$word")
      ;;
    dumps)
      if [[ $word == *:* ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -P "${word%%:*}:" -- "${word#*:}")
        return
      fi
      mapfile -t COMPREPLY < <(compgen -S : -W 'lower 00 01 02 03 04 10 11 12 13 14 20 21 22 23 24 25 26 27 28 2c 2d 2e 2f a0 a2' -- "$word")
      if [ ${#COMPREPLY[@]} -eq 0 ]; then
        compopt -o filenames 2>/dev/null
      else
        compopt -o nospace 2>/dev/null
      fi
      mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <(compgen -f -- "$word")
      ;;
    columns)
      compopt -o nospace 2>/dev/null
      mapfile -t names < <("$program" columns 2>/dev/null | awk 'NR > 1 { print $2 }')
      local before=
      [[ $word != *,* ]] || before=${word%,*},
      mapfile -t COMPREPLY < <(compgen -P "$before" -W "${names[*]}" -- "${word##*,}")
      ;;
    rules)
      if [[ $word == *=* ]]; then
        mapfile -t COMPREPLY < <(compgen -P "${word%%=*}=" -W 'off unknown warning critical' -- "${word#*=}")
      else
        compopt -o nospace 2>/dev/null
        mapfile -t names < <("$program" check --rules 2>/dev/null | awk 'NR > 1 { print $1 }')
        mapfile -t COMPREPLY < <(compgen -S = -W "${names[*]}" -- "$word")
      fi
      ;;
  esac
}

# Offers what fits the last of `words`.
_cableinfo_word() {
  local word=${words[-1]} previous=${words[-2]} options positional=
  if [ ${#words[@]} -eq 2 ]; then
    mapfile -t COMPREPLY < <(compgen -W 'table report export check diff metrics page store module read columns --help --version' -- "$word")
    return
  fi
  case ${words[1]} in
    table)
      options='--all-messages --columns --guid --help --jobs --json --label --module --no-files'
      options+=' --no-header --output --port --quiet --rfc4180 --strict'
      positional=files
      ;;
    report)
      options='--all-messages --guid --help --jobs --label --module --no-files --output --port'
      options+=' --quiet --strict'
      positional=files
      ;;
    export)
      options='--all-messages --guid --help --jobs --label --module --no-files --output --port'
      options+=' --quiet --strict'
      positional=files
      ;;
    check)
      options='--all-messages --config --guid --help --jobs --json --label --module --no-files'
      options+=' --output --plugin --port --quiet --rules --set --strict'
      positional=files
      ;;
    diff)
      options='--all-messages --bias-tolerance --config --guid --help --jobs --json --label'
      options+=' --no-files --output --port --power-tolerance --quiet --set --strict'
      options+=' --temperature-tolerance'
      positional=files
      ;;
    metrics)
      options='--all-messages --config --guid --help --jobs --label --module --no-files'
      options+=' --output --port --quiet --set --strict'
      positional=files
      ;;
    page)
      options='--all-messages --config --guid --help --jobs --label --module --no-files'
      options+=' --output --port --quiet --set --strict'
      positional=files
      ;;
    store)
      options='--all-messages --config --guid --help --jobs --keep --label --module --no-files'
      options+=' --port --quiet --set --strict --taken-at'
      positional=files
      ;;
    module)
      options='--all-messages --guid --help --jobs --json --label --module --no-files --output'
      options+=' --port --quiet --strict'
      positional=dumps
      ;;
    read)
      options='--help --output --quiet --scan --sysfs --timeout --watch'
      positional=nothing
      ;;
    columns)
      options='--help --json'
      ;;
    *) return ;;
  esac
  if [[ $word == --*=* ]]; then
    previous=${word%%=*}
    local before=$previous=
    word=${word#*=}
  fi
  case $previous in
    --columns) _cableinfo_argument columns ;;
    --module) _cableinfo_argument dumps ;;
    --config | --output | --sysfs | -o) _cableinfo_argument files ;;
    --bias-tolerance | --guid | --jobs | --keep | --label | --port | --power-tolerance | --taken-at | --temperature-tolerance | --timeout | --watch | -j) ;;
    --set) _cableinfo_argument rules ;;
    *)
      if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
      elif [ "$positional" ]; then
        _cableinfo_argument "$positional"
      fi
      ;;
  esac
  [ -z "${before-}" ] || COMPREPLY=("${COMPREPLY[@]/#/$before}")
}

_cableinfo() {
  # bash splits words at = and :, and replaces only what follows the last of them.
  local program=${COMP_WORDS[0]} words=() word i
  for ((i = 0; i <= COMP_CWORD; i++)); do
    word=${COMP_WORDS[i]}
    if ((i > 1)) && [[ $word == [=:]* || (-n $word && ${COMP_WORDS[i - 1]} == *[=:]) ]]; then
      words[-1]+=$word
    else
      words+=("$word")
    fi
  done
  COMPREPLY=()
  _cableinfo_word
  local whole=${words[-1]} split=
  [[ $COMP_WORDBREAKS != *=* || $whole != *=* ]] || split=${whole%"${whole##*=}"}
  [[ $COMP_WORDBREAKS != *:* || $whole != *:* ]] || split=${whole%"${whole##*:}"}
  COMPREPLY=("${COMPREPLY[@]#"$split"}")
}
complete -F _cableinfo cableinfo
