#!/usr/bin/env python3
"""Changes one number, text, comparison or pair of adjacent lines of the library at a time, in the
folders cable_info/ and cable_info/text/, and reports whether the tests detect it.

A change that no test detects shows a gap in the tests, unless it has no observable effect; changes
without an effect are listed in scripts/mutation_equivalents.txt with the reason.

The sources are never modified: a changed copy in build/mutation/ takes precedence over the original.
"""

import argparse
import collections
import concurrent.futures
import dataclasses
import json
import os
import pathlib
import random
import re
import resource
import shlex
import shutil
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutation"
BASE = ROOT / "build" / "coverage"
EQUIVALENTS = ROOT / "scripts" / "mutation_equivalents.txt"

# Tests that compare millions of numbers with the C library: too long for every mutant, and shorter
# tests such as WritesThousandthsAsPrintfDoes detect the same changes.
LONG_TESTS = ["*OfAnyDouble*", "*ThousandthsOfFloats*"]
SECONDS_PER_RUN = 60
BYTES_PER_RUN = 4 << 30

TOKEN = re.compile(
    r"""(?P<comment>//[^\n]*)
      | (?P<preprocessor>^[ ]*\#[^\n]*)
      | (?P<skipped>static_assert\((?:[^;])*;|\btemplate\ <[^\n]*|\bextern\b[^\n]*)
      | (?P<raw>R"\((?:.|\n)*?\)")
      | (?P<text>"(?:\\.|[^"\\\n])*")
      | (?P<character>'(?:\\.|[^'\\\n])')
      | (?P<hex>0x[0-9A-Fa-f]+)
      | (?P<float>\d[\d']*\.\d+(?:e[+-]?\d+)?)
      | (?P<integer>\d[\d']*)
      | (?P<word>[A-Za-z_]\w*)
      | (?P<operator>(?<=\s)(?:<=|>=|==|!=|&&|\|\||<|>)(?=\s))
    """,
    re.VERBOSE | re.MULTILINE,
)

OPERATORS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "&&": "||",
             "||": "&&"}
WORDS = {"true": "false", "false": "true", "kCsv": "kReport", "kReport": "kCsv"}
WORDS_DEFINED_HERE = re.compile(r"enum class Form ")

# A cell of a row, a line of a report, an entry of a table: their order is visible to users.
ORDERED_STATEMENT = re.compile(r"^ +(?:row|lines|cells)\.|"
                               r"^ +(?:lane_setting|lane_powers|temperature|voltage)\(|"
                               r"^ +Append\w+\((?:row|lines)\b")
TABLE_ENTRY = re.compile(r'^ +(?:".*"|\{.*\}|[A-Z]\w*(?:\[\d\])?),$')


@dataclasses.dataclass(frozen=True)
class Mutant:
    path: str  # from the root
    begin: int
    end: int
    replacement: str
    line: int
    source: str  # the line that is changed, without its indentation
    change: str

    @property
    def key(self):
        return self.path, self.source, self.change

    def __str__(self):
        return f"{self.path}:{self.line}: {self.change}: {self.source}"


def other_letter(letter):
    return {"z": "a", "Z": "A", "9": "0"}.get(letter, chr(ord(letter) + 1))


def changed_text(token):
    """The text with one of its letters or digits changed; an empty one gets a letter."""
    at = next((i for i, c in enumerate(token) if c.isalnum() and i > 1 - (token[0] == '"')), None)
    if at is None or token[at - 1] == "\\":
        return [token[:-1] + "x" + token[-1]] if token[0] == '"' else []
    return [token[:at] + other_letter(token[at]) + token[at + 1:]]


def replacements(kind, token):
    if kind == "integer":
        value = int(token.replace("'", ""))
        return [str(value + 1)] + ([str(value - 1)] if value > 0 else [])
    if kind == "hex":
        value = int(token, 16)
        return [hex(value + 1)] + ([hex(value - 1)] if value > 0 else [])
    if kind == "float":
        value = float(token.replace("'", ""))
        return [repr(2 * value if value else 1.0)]
    if kind == "text" or kind == "raw":
        return changed_text(token)
    if kind == "character":
        return ["'#'"]
    if kind == "operator":
        return [OPERATORS[token]]
    if kind == "word" and token in WORDS:
        return [WORDS[token]]
    return []


def token_mutants(path, source):
    lines = source.splitlines()
    seen = collections.Counter()
    for match in TOKEN.finditer(source):
        number = source.count("\n", 0, match.start()) + 1
        line = lines[number - 1].strip()
        if match.lastgroup == "word" and WORDS_DEFINED_HERE.search(line):
            continue
        for replacement in replacements(match.lastgroup, match.group()):
            change = f"{match.group()} -> {replacement}"
            seen[line, change] += 1  # lines with the same text are distinguished by number
            if seen[line, change] > 1:
                change += f" #{seen[line, change]}"
            yield Mutant(path, match.start(), match.end(), replacement, number, line, change)


def ordered_pieces(source):
    """The statements and table entries, each as the number of its first line, begin and end."""
    begin = 0
    piece = None
    for number, line in enumerate(source.splitlines(keepends=True), 1):
        end = begin + len(line)
        text = line.rstrip("\n")
        if piece:
            if text.endswith((";", "},")):
                yield piece[0], piece[1], end
                piece = None
        elif TABLE_ENTRY.match(text) or (ORDERED_STATEMENT.match(text) and
                                         re.search(r";(  //.*)?$", text)):
            yield number, begin, end
        elif ORDERED_STATEMENT.match(text) or re.match(r'^    \{".*",$', text):
            piece = (number, begin)
        begin = end


def swap_mutants(path, source):
    pieces = list(ordered_pieces(source))
    for (number, begin, middle), (_, next_begin, end) in zip(pieces, pieces[1:]):
        first, second = source[begin:middle], source[next_begin:end]
        indentation = len(first) - len(first.lstrip())
        if middle != next_begin or len(second) - len(second.lstrip()) != indentation:
            continue
        if first.split("//")[0].strip() == second.split("//")[0].strip():
            continue
        yield Mutant(path, begin, end, second + first, number, first.splitlines()[0].strip(),
                     "swap with the next line")


def all_mutants():
    """Mutants of sources first, because a changed header takes longer to compile."""
    folder = ROOT / "cable_info"
    folders = (folder, folder / "text")
    files = [file for kind in ("*.cpp", "*.h") for place in folders for file in place.glob(kind)]
    for file in sorted(files, key=lambda file: (file.suffix != ".cpp", file)):
        path = str(file.relative_to(ROOT))
        source = file.read_text()
        yield from token_mutants(path, source)
        yield from swap_mutants(path, source)


def read_equivalents():
    """Blocks of four lines: path, changed line, change, "why: ..."."""
    keys = set()
    text = "\n".join(line for line in EQUIVALENTS.read_text().splitlines()
                     if not line.startswith("#"))
    for block in filter(None, text.strip().split("\n\n")):
        lines = [line.strip() for line in block.strip().splitlines()]
        if len(lines) < 4 or not lines[3].startswith("why: "):
            sys.exit(f"{EQUIVALENTS}: not understood:\n{block}")
        keys.add(tuple(lines[:3]))
    return keys


# -------------------------------------------------------------------------------------------------
# Building and running
# -------------------------------------------------------------------------------------------------


@dataclasses.dataclass
class Unit:
    """A source, how it is compiled, and the project's headers that it includes."""
    source: str
    command: list
    object: pathlib.Path
    headers: set
    is_test: bool


def build_base():
    """Builds the unchanged library and its tests, as scripts/coverage.sh does; returns their units."""
    for command in (["cmake", "--preset", "coverage", "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON"],
                    ["cmake", "--build", "--preset", "coverage", "--target", "cable_info_tests"]):
        subprocess.run(command, cwd=ROOT, check=True, stdout=subprocess.DEVNULL)

    deps = subprocess.run(["ninja", "-C", BASE, "-t", "deps"], check=True, capture_output=True,
                          text=True).stdout
    headers = {}
    for block in deps.split("\n\n"):
        lines = block.strip().splitlines()
        if lines:
            # A compiler cache may have made the paths relative to the folder of the build.
            included = (os.path.relpath(BASE / line.strip(), ROOT) for line in lines[1:])
            headers[lines[0].split(":")[0]] = {
                path for path in included if path.startswith("cable_info/")}
    units = []
    for entry in json.loads((BASE / "compile_commands.json").read_text()):
        command = shlex.split(entry["command"])
        output = command[command.index("-o") + 1]
        if output not in headers or output.endswith(".gch"):
            continue  # of another program, or not an object
        units.append(Unit(os.path.relpath(entry["file"], ROOT), command, BASE / output,
                          headers[output], "tests/" in output))
    return units


def compile_unit(unit, folder, source):
    """Compiles `source` like the unit, whatever the compiler warns of; headers in `folder` take
    precedence over the originals."""
    output = folder / (pathlib.Path(unit.source).name + ".o")
    command = list(unit.command)
    command[command.index("-o") + 1] = str(output)
    command[command.index("-c") + 1] = str(source)
    command[1:1] = ["-w", f"-I{folder}"]
    done = subprocess.run(command, cwd=BASE, capture_output=True)
    return output if done.returncode == 0 else None


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS, (BYTES_PER_RUN, BYTES_PER_RUN))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def run_tests(tests):
    """The result, and the name of the first test that failed."""
    try:
        done = subprocess.run(
            [tests, "--gtest_fail_fast", "--gtest_brief=1", "--gtest_filter=-" +
             ":".join(LONG_TESTS)],
            timeout=SECONDS_PER_RUN, capture_output=True, preexec_fn=limit_memory,
            env={**os.environ, "GCOV_PREFIX": str(WORK / "counts")})  # not those of the base
    except subprocess.TimeoutExpired:
        return "timed out", ""
    if done.returncode == 0:
        return "survived", ""
    failed = re.search(rb"\[  FAILED  \] ([\w./]+)", done.stdout)
    return "noticed", failed.group(1).decode() if failed else "crashed"


def link(units, output, *arguments):
    subprocess.run([units[0].command[0], "--coverage", "-o", output, *arguments], check=True)
    return output


def test_programs(mutant, units, folder, library):
    """Programs that together contain all tests, each built when it is requested; None for one that
    cannot be built. Tests that do not include a changed header are not rebuilt; each of the others
    runs as soon as it is compiled, starting with those about the header."""
    tests = [unit for unit in units if unit.is_test]
    unchanged = [unit.object for unit in tests if mutant.path not in unit.headers]
    if unchanged:
        yield link(units, folder / "tests", *unchanged, library, "-lgtest_main", "-lgtest")

    def distance(unit):
        text = (ROOT / unit.source).read_text()
        return f'#include "{mutant.path}"' not in text, len(text)

    for unit in sorted((u for u in tests if mutant.path in u.headers), key=distance):
        test = compile_unit(unit, folder, ROOT / unit.source)
        yield test and link(units, folder / "tests", test, library, "-lgtest_main", "-lgtest")


def judge(mutant, units, folder):
    shutil.rmtree(folder, ignore_errors=True)
    changed = folder / mutant.path
    changed.parent.mkdir(parents=True)
    original = (ROOT / mutant.path).read_text()
    changed.write_text(original[:mutant.begin] + mutant.replacement + original[mutant.end:])

    objects = []
    for unit in (unit for unit in units if not unit.is_test):
        if unit.source != mutant.path and mutant.path not in unit.headers:
            objects.append(unit.object)
            continue
        source = changed if unit.source == mutant.path else ROOT / unit.source
        objects.append(compile_unit(unit, folder, source))
        if objects[-1] is None:
            return "not compiled", ""

    library = link(units, folder / "cable_info.o", "-r", *objects)
    for program in test_programs(mutant, units, folder, library):
        if program is None:
            return "not compiled", ""
        verdict, by = run_tests(program)
        if verdict != "survived":
            return verdict, by
    return "survived", ""


def judge_all(mutants, units, jobs, verbose):
    """The number of mutants by result; prints the survivors."""
    free = [WORK / f"job{os.getpid()}-{i}" for i in range(jobs)]
    verdicts = collections.Counter()
    survivors = []

    def work(mutant):
        folder = free.pop()
        try:
            return mutant, *judge(mutant, units, folder)
        finally:
            free.append(folder)

    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        for future in concurrent.futures.as_completed([pool.submit(work, m) for m in mutants]):
            mutant, verdict, by = future.result()
            verdicts[verdict] += 1
            if verdict == "survived":
                survivors.append(mutant)
            if verbose or verdict == "survived":
                print(f"{verdict} {by}: {mutant}", flush=True)
    for folder in free:
        shutil.rmtree(folder, ignore_errors=True)
    return verdicts, survivors


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--all", action="store_true", help="try every mutant")
    parser.add_argument("--sample", type=int, metavar="N", help="try N of them, drawn by chance")
    parser.add_argument("--seed", type=int, default=1, help="the draw's seed (default 1)")
    parser.add_argument("--files", default="", metavar="TEXT",
                        help="only mutants of files whose path holds TEXT, such as '.cpp'")
    parser.add_argument("--line", default="", metavar="TEXT",
                        help="only mutants of lines that hold TEXT")
    parser.add_argument("--list", action="store_true", help="list them and try none")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="how many at a time")
    parser.add_argument("--verbose", action="store_true", help="print the result of each mutant")
    arguments = parser.parse_args()
    if not (arguments.all or arguments.sample or arguments.list):
        parser.error("one of --all, --sample and --list is needed")
    return arguments


def main():
    arguments = parse_arguments()
    everything = list(all_mutants())
    equivalents = read_equivalents()
    stale = equivalents - {mutant.key for mutant in everything}
    for key in sorted(stale):
        print("no longer a mutant, though listed as equivalent: " + " | ".join(key))
    mutants = [m for m in everything if m.key not in equivalents and arguments.files in m.path and
               arguments.line in m.source]
    if arguments.sample and arguments.sample < len(mutants):
        drawn = set(random.Random(arguments.seed).sample(range(len(mutants)), arguments.sample))
        mutants = [m for i, m in enumerate(mutants) if i in drawn]
    if arguments.list:
        for mutant in mutants:
            print(mutant)
        return 0

    subprocess.run(["bash", "-c", ". scripts/need.sh && need g++ cmake ninja-build libgtest-dev"],
                   cwd=ROOT, check=True)
    start = time.monotonic()
    units = build_base()
    verdict, failed = run_tests(BASE / "tests" / "cable_info_tests")
    if verdict != "survived":
        sys.exit(f"the unchanged library fails its tests: {verdict} {failed}")
    built = time.monotonic()
    verdicts, survivors = judge_all(mutants, units, arguments.jobs, arguments.verbose)

    noticed = verdicts["noticed"] + verdicts["timed out"]
    judged = noticed + len(survivors)
    share = 100.0 * noticed / judged if judged else 100.0
    print(f"{noticed} of {judged} mutants noticed, {share:.1f} % ({verdicts['timed out']} of them "
          f"by time); {verdicts['not compiled']} more did not compile; "
          f"{len(equivalents)} known equivalents left out of {len(everything)}; "
          f"{built - start:.0f} s to build, {time.monotonic() - built:.0f} s to try")
    return 1 if survivors or stale else 0


if __name__ == "__main__":
    sys.exit(main())
