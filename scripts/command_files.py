#!/usr/bin/env python3
"""Writes the files that describe the command line of the program, from its --help texts:
the manual pages of the subcommands (docs/man/) and the shell completions (cli/completions/).

usage: scripts/command_files.py [--check] PROGRAM     --check: only compare them with the files
"""

import re
import subprocess
import sys
import textwrap
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
MANUAL = ROOT / "docs" / "man"
COMPLETIONS = ROOT / "cli" / "completions"

# The sections of a manual page in addition to the help of its command.
DESCRIPTIONS = {
    "table": "Writes a table of comma-separated values: a header of 177 columns, then one row per port. "
             "table.md describes the columns.",
    "report": "Writes a block of labels and values for each port, after a heading line, with empty lines "
              "between ports. report.md describes the lines.",
    "export": "Writes the values of each port as one line of JSON. The keys never depend on what is "
              "present; what is absent is null. export.schema.json describes the lines.",
    "check": "Writes a verdict for each port and what is wrong with it, the worst port first, then counts. "
             "check.md describes the rules.",
    "diff": "Writes what changed between two states of the same ports: ports that appeared or disappeared, "
            "swapped modules, firmware, flags, verdicts, and readings that moved by more than a tolerance. "
            "A snapshot of a store alone is compared with the one before it.",
    "metrics": "Writes readings, flags and verdicts as OpenMetrics text, which Prometheus reads, too. "
               "monitoring.md describes the families.",
    "page": "Writes one HTML file with verdicts, findings, plots and all that is known about each port. "
            "It loads nothing from elsewhere. page.md describes it.",
    "store": "Adds the ports as a snapshot to an SQLite file, which is created on first use. "
             "store.md describes its tables.",
    "module": "Writes everything that the memory of modules contains, as a data sheet per module. "
              "module_memory.md describes the forms of dumps, and where each field comes from.",
    "read": "Reads the modules of this machine's ports, through the kernel or from EEPROM files, and writes "
            "port records with their memory. It needs Linux and the capability CAP_NET_ADMIN, and writes "
            "nothing to a module. reading.md describes it.",
    "columns": "Lists the columns of the table: number, name and meaning; with --json also unit and forms.",
}

# The pages that modules commonly have.
PAGES = "lower 00 01 02 03 04 10 11 12 13 14 20 21 22 23 24 25 26 27 28 2c 2d 2e 2f a0 a2".split()
SEVERITIES = "off unknown warning critical".split()


@dataclass
class Option:
    """An option, or with an empty `long` a positional argument."""
    short: str
    long: str
    argument: str
    limits: str
    repeats: bool
    excludes: str
    text: str

    @property
    def kind(self):
        """What completes its argument."""
        if "PAGE:FILE" in self.text:
            return "dumps"
        kinds = {"FILE": "files", "OLD": "files", "NEW": "files", "DIR": "files", "NAMES": "columns",
                 "RULE=VALUE": "rules"}
        return kinds.get(self.argument, "nothing") if self.argument else None


@dataclass
class Command:
    name: str
    title: str
    usage: str
    positionals: list
    options: list
    footer: str


def help_of(program, *command):
    result = subprocess.run([program, *command, "--help"], capture_output=True, check=True, text=True)
    return result.stdout


def entries(section):
    """The entries of a section of a help text: the part before column 30, and the text after it."""
    found = []
    for line in section.splitlines():
        head, text = line[:30], line[30:]
        if head.strip() and not line[28:30].isspace():
            head, text = line, ""
        if head.strip():
            found.append([head.strip(), text.strip()])
        else:
            found[-1][1] = f"{found[-1][1]} {text.strip()}".strip()
    return found


def parse_option(head, text):
    words = re.match(r"(\S+)(?: (?!\.\.\.|Excludes:|REQUIRED)(\S+)((?: in \[.*?\])?))?", head)
    names = words[1].split(",")
    if not names[-1].startswith("--"):
        return Option("", "", names[0], "", "..." in head, "", text)
    argument, _, limits = (words[2] or "").partition(":")
    limits = re.search(r"\[(\S+) - (\S+)\]", limits + words[3]) if words[3] else None
    excludes = re.search(r"Excludes: (\S+)", head)
    return Option(names[0] if len(names) > 1 else "", names[-1], argument,
                  f"{limits[1]} to {limits[2]}" if limits else "", "..." in head,
                  excludes[1] if excludes else "", text)


def parse_command(program, name):
    text = help_of(program, name)
    title, usage = re.match(r"(.*)\nUsage: cableinfo \S+ ?(.*)\n", text).groups()
    sections = dict(re.findall(r"^(\w+):\n((?:  .*\n)+)", text, re.MULTILINE))
    footer = re.search(r"^Examples:\n(?:.*\n?)*", text, re.MULTILINE)
    return Command(name, title, usage,
                   [parse_option(*entry) for entry in entries(sections.get("Positionals", ""))],
                   [parse_option(*entry) for entry in entries(sections["Options"])],
                   footer[0] if footer else "")


def parse_program(program):
    names = re.findall(r"^  ([a-z]+) ", help_of(program).partition("Subcommands:")[2], re.MULTILINE)
    return [parse_command(program, name) for name in names]


# -------------------------------------------------------------------------------------------------
# Manual pages
# -------------------------------------------------------------------------------------------------


def escaped(text):
    text = text.replace("\\", "\\e").replace("-", "\\-").replace("'", "\\(aq").replace('"', "\\(dq")
    return "\\&" + text if text.startswith(".") else text


def sentences(text):
    """Running text: each sentence begins on a new line."""
    lines = []
    for sentence in re.split(r"(?<=[\w)]\.) ", escaped(text)):
        lines += textwrap.wrap(sentence, 78, break_on_hyphens=False)
    return "\n".join(lines)


def argument_macro(option):
    if not option.argument:
        return ""
    parts = option.argument.lower().split("=")
    return " Ar " + " Ns = Ns Ar ".join(parts)


def option_item(option):
    if not option.long:
        head = f".It Ar {option.argument.lower()}{' ...' if option.repeats else ''}"
    else:
        names = [f"Fl {escaped(name[1:])}" for name in (option.short, option.long) if name]
        head = ".It " + " , ".join(names) + argument_macro(option)
    text = option.text.rstrip(".") + "."
    if option.limits:
        text += f" The number is from {option.limits}."
    if option.long and option.repeats and option.argument != "NAMES":
        text += " Can be given more than once."
    if option.long and option.excludes.startswith("--"):
        text += f" Not together with {option.excludes}."
    elif option.long and option.excludes:
        text += f" Not together with a {option.excludes}."
    return head + "\n" + sentences(text)


def manual_page(command, date):
    examples, _, status = command.footer.removeprefix("Examples:\n").partition("Exit status: ")
    usage = [".Op Ar option ..."]
    for word in re.sub(r"^\[OPTIONS\] ?", "", command.usage).split():
        name = word.strip("[]").removesuffix("...").lower()
        more = " ..." if "..." in word else ""
        usage.append(f".Op Ar {name}{more}" if word.startswith("[") else f".Ar {name}{more}")
    page = [f""".\\" Written by scripts/command_files.py from the help of the command.
.Dd {date}
.Dt CABLEINFO-{command.name.upper()} 1
.Os
.Sh NAME
.Nm cableinfo-{command.name}
.Nd {escaped(command.title[0].lower() + command.title[1:])}
.Sh SYNOPSIS
.Nm cableinfo {command.name}""", *usage, ".Sh DESCRIPTION",
            sentences(DESCRIPTIONS[command.name]), ".Pp",
            "The arguments and options are:", ".Bl -tag -width Ds",
            *[option_item(option) for option in command.positionals + command.options],
            ".El", ".Sh EXIT STATUS", "The same as that of",
            ".Xr cableinfo 1 ." if not status else ".Xr cableinfo 1 ;"]
    if status:
        page.append(sentences(" ".join(status.split())))
    if examples:
        page += [".Sh EXAMPLES", ".Bd -literal -offset indent",
                 escaped(textwrap.dedent(examples).rstrip("\n")).replace("\n.", "\n\\&."), ".Ed"]
    page += [".Sh SEE ALSO", ".Xr cableinfo 1 ,", "which also states where the documents are installed."]
    return "\n".join(page) + "\n"


def manual_date():
    """The date of the version, from the changelog of the packages."""
    changelog = (ROOT / "debian" / "changelog").read_text()
    day, month, year = re.search(r"^ -- .*>  \w+, (\d+) (\w+) (\d+)", changelog, re.MULTILINE).groups()
    months = ("January February March April May June July August September October November "
              "December").split()
    return f"{next(name for name in months if name.startswith(month))} {int(day)}, {year}"


# -------------------------------------------------------------------------------------------------
# Completions
# -------------------------------------------------------------------------------------------------

HEAD = "# Written by scripts/command_files.py from the help of the program.\n"

BASH = r"""# bash completion of cableinfo
@HEAD@
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
      mapfile -t COMPREPLY < <(compgen -S : -W '@PAGES@' -- "$word")
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
        mapfile -t COMPREPLY < <(compgen -P "${word%%=*}=" -W '@SEVERITIES@' -- "${word#*=}")
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
    mapfile -t COMPREPLY < <(compgen -W '@COMMANDS@ --help --version' -- "$word")
    return
  fi
  case ${words[1]} in
@CASES@
    *) return ;;
  esac
  if [[ $word == --*=* ]]; then
    previous=${word%%=*}
    local before=$previous=
    word=${word#*=}
  fi
  case $previous in
@ARGUMENTS@
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
"""

ZSH = r"""#compdef cableinfo
# zsh completion of cableinfo
@HEAD@
_cableinfo_dumps() {
  local -a pages=(@PAGES@)
  if compset -P '*:'; then
    _files
  else
    _alternative 'pages:page:compadd -S : -a pages' 'files:dump:_files'
  fi
}

_cableinfo_columns() {
  local -a names=(${${(f)"$(_call_program columns $program columns 2>/dev/null | awk 'NR > 1 { print $2 }')"}})
  _sequence compadd -a names
}

_cableinfo_rules() {
  local -a names
  if compset -P '*='; then
    compadd @SEVERITIES@
  else
    names=(${(f)"$(_call_program rules $program check --rules 2>/dev/null | awk 'NR > 1 { print $1 }')"})
    compadd -S = -a names
  fi
}

_cableinfo() {
  local program=$words[1]
  if ((CURRENT == 2)); then
    _arguments '(- *)'{-h,--help}'[show the options, with examples]' \
      '(- *)--version[show the version]' '1:command:((
@COMMANDS@))'
    return
  fi

  local command=$words[2]
  shift words
  ((CURRENT--))
  case $command in
@CASES@
  esac
}

_cableinfo "$@"
"""

FISH = r"""# fish completion of cableinfo
@HEAD@
function __cableinfo_dumps
    set -l word (commandline -ct | string replace -r '^--[a-z-]+=' '')
    set -l page (string match -r '^[0-9a-z]+:' -- $word)
    if test -n "$page"
        printf "$page%s\n" (__fish_complete_path (string replace -- $page '' $word))
    else
        printf '%s:\tpage\n' @PAGES@
        __fish_complete_path $word
    end
end

function __cableinfo_columns
    set -l program (commandline -opc)[1]
    __fish_append , ($program columns 2>/dev/null | awk 'NR > 1 { print $2 }')
end

function __cableinfo_rules
    set -l program (commandline -opc)[1]
    set -l rules ($program check --rules 2>/dev/null | awk 'NR > 1 { print $1 }')
    if string match -q '*=*' -- (commandline -ct | string replace -r '^--[a-z-]+=' '')
        printf '%s\n' $rules={@SEVERITY_LIST@}
    else
        printf '%s=\n' $rules
    end
end

complete -c cableinfo -f
complete -c cableinfo -n __fish_use_subcommand -l version -d 'show the version'
@LINES@
"""


def quoted(text):
    return "'" + text.replace("'", "'\\''") + "'"


def brief(text):
    """A description of one line: up to the first colon, semicolon or bracket."""
    text = re.split(r"[:;] |\(| of '", text)[0].strip()
    return text[0].lower() + text[1:]


def filled(template, **fields):
    for name, text in fields.items():
        template = template.replace(f"@{name}@", text)
    return template.replace("@HEAD@\n", HEAD + "\n").replace("@PAGES@", " ".join(PAGES)).replace(
        "@SEVERITIES@", " ".join(SEVERITIES))


def positional_kind(command):
    return command.positionals[0].kind if command.positionals else None


def bash_completion(commands):
    cases, kinds = [], {}
    for command in commands:
        options = " ".join(sorted(option.long for option in command.options))
        lines = textwrap.wrap(options, 80, break_on_hyphens=False)
        cases.append(f"    {command.name})")
        cases += [f"      options{'+' if i else ''}='{' ' if i else ''}{line}'"
                  for i, line in enumerate(lines)]
        if positional_kind(command):
            cases.append(f"      positional={positional_kind(command)}")
        cases.append("      ;;")
        for option in command.options:
            if option.kind:
                kinds.setdefault(option.kind, set()).update({option.short, option.long} - {""})
    arguments = [f"    {' | '.join(sorted(kinds[kind]))}) "
                 + (f"_cableinfo_argument {kind} ;;" if kind != "nothing" else ";;") for kind in sorted(kinds)]
    return filled(BASH, COMMANDS=" ".join(command.name for command in commands),
                  CASES="\n".join(cases), ARGUMENTS="\n".join(arguments))


def zsh_action(kind):
    return {"files": "_files", "nothing": "", None: ""}.get(kind, f"_cableinfo_{kind}")


def zsh_option(option):
    text = brief(option.text).replace("[", "\\[").replace("]", "\\]")
    argument = f":{option.argument.lower()}:{zsh_action(option.kind)}" if option.argument else ""
    if option.short:
        if option.long == "--help":
            return "'(- *)'{-h,--help}" + quoted(f"[{text}]")
        plus, equals = ("+", "=") if option.argument else ("", "")
        return (f"'({option.short} {option.long})'{{{option.short}{plus},{option.long}{equals}}}"
                + quoted(f"[{text}]{argument}"))
    before = "*" if option.repeats else ""
    if option.excludes.startswith("--"):
        before = f"({option.excludes})"
    return quoted(f"{before}{option.long}{'=' if option.argument else ''}[{text}]{argument}")


def zsh_completion(commands):
    cases = []
    for command in commands:
        specs = [zsh_option(option) for option in command.options]
        if positional_kind(command):
            specs.append(quoted(f"*:file:{zsh_action(positional_kind(command))}"))
        cases.append(f"    {command.name})\n      _arguments -s "
                     + " \\\n        ".join(specs) + "\n      ;;")
    titles = [f'      {command.name}\\:"{brief(command.title)}"' for command in commands]
    return filled(ZSH, COMMANDS="\n".join(titles), CASES="\n".join(cases))


def fish_completion(commands):
    lines = []
    for command in commands:
        lines.append(f"\ncomplete -c cableinfo -n __fish_use_subcommand -a {command.name} "
                     f"-d {quoted(brief(command.title))}")
        condition = f"-n '__fish_seen_subcommand_from {command.name}'"
        kind = positional_kind(command)
        if kind == "files":
            lines.append(f"complete -c cableinfo {condition} -F")
        elif kind:
            lines.append(f"complete -c cableinfo {condition} -a '(__cableinfo_{kind})'")
        for option in command.options:
            short = f" -s {option.short[1:]}" if option.short else ""
            argument = {None: "", "nothing": " -x", "files": " -r -F"}.get(
                option.kind, f" -x -a '(__cableinfo_{option.kind})'")
            lines.append(f"complete -c cableinfo {condition}{short} -l {option.long[2:]}{argument} "
                         f"-d {quoted(brief(option.text))}")
    return filled(FISH, LINES="\n".join(lines), SEVERITY_LIST=",".join(SEVERITIES))


# -------------------------------------------------------------------------------------------------


def files(program):
    commands = parse_program(program)
    written = {MANUAL / f"cableinfo-{command.name}.1": manual_page(command, manual_date())
               for command in commands}
    written[COMPLETIONS / "cableinfo.bash"] = bash_completion(commands)
    written[COMPLETIONS / "_cableinfo"] = zsh_completion(commands)
    written[COMPLETIONS / "cableinfo.fish"] = fish_completion(commands)
    return written


def main():
    arguments = sys.argv[1:]
    check = arguments[:1] == ["--check"]
    if len(arguments) != 1 + check:
        sys.exit(__doc__)
    stale = []
    for path, text in files(arguments[-1]).items():
        if path.is_file() and path.read_text() == text:
            continue
        stale.append(str(path.relative_to(ROOT)))
        if not check:
            path.write_text(text)
            print(f"written: {stale[-1]}")
    if check and stale:
        sys.exit("not what the program's help says: " + ", ".join(stale)
                 + "\nscripts/command_files.py PROGRAM writes them")


if __name__ == "__main__":
    main()
