"""The program writes what the documents describe."""

import json
import re
import textwrap
import unittest

from program import FABRIC, ROOT, ProgramTest, run

DOCS = ROOT / "docs"

# A form, and a narrower one that the document must name if all values match it.
NARROWER = {"decimal": "flag", "hex 1": "hex 2", "bare text": "decimal", "text": "celsius"}

# Ports in addition to the sample, so that every text named by the documents occurs.
UNNAMED_CODES = {"cable_identifier": 99, "cable_technology": 0x50, "power_unit_flag": 1,
                    "temperature": 0x8000, "vendor_pn": "X", "vendor_sn": "X", "vendor_rev": "X"}
MORE_PORTS = [
    {"cable": {}},
    {"cable": {"LengthOm2": 2, "LengthOm1": 3}},
    {"cable": {"Identifier": 255, "TransmitterTechnologyCode": 16, "RxPower": ["nan", "inf", "-inf", -0.5]}},
    {"cable": {"TransmitterTechnologyCode": 10, "Temperature": 0x1900}},
    {"cable": {"Temperature": 0x7F00, "TempHighAlarmThresh": 0x7F00, "TempLowAlarmThresh": 0x7F00,
               "TempHighWarnThresh": 0x7F00, "TempLowWarnThresh": 0x7F00}},
    {"cable": {"QueryStatus": 4, "VendorName": "a, b", "SerialNumber": "\"1\""}},
    {"phy": {"source": "PHY", "module": {}}},
    {"phy": {"source": "PHY", "module": {"length_om1": 3, "rx_power_type": 2}}},
    {"phy": {"source": "PHY", "module": UNNAMED_CODES}},
    {"phy": {"source": "PHY", "module": {"cable_identifier": 8, "cable_technology": 200}}},
    {"phy": {"source": "PHY", "module": {**UNNAMED_CODES, "vendor_pn": " ", "temp_high_threshold": 0x8000,
                                         "temp_low_threshold": 0x8000}}},
    {"phy": {"source": "", "latched_flags": {}}},
    {"phy": {"source": "PHY"}},
    {"phy": {"source": "PHY"}, "prtl_length": 2.5},
]


def sources():
    """The source of each port of the sample and of MORE_PORTS; None without a record."""
    for line in FABRIC.read_text().splitlines():
        port = json.loads(line)
        yield "cable pages" if "cable" in port else "PHY" if "phy" in port else None
    for port in MORE_PORTS:
        yield "cable pages" if "cable" in port else "PHY"


def written(command, *options):
    """The output of the program for the sample and MORE_PORTS."""
    return (run(command, *options, FABRIC).stdout + run(command, *options, stdin=MORE_PORTS).stdout).decode()


def tables(document):
    """The tables of a document, each a list of rows as dictionaries by column name."""
    found = []
    rows = None
    for line in (DOCS / document).read_text().splitlines():
        if not line.startswith("|"):
            rows = None
            continue
        cells = [cell.strip().replace("\\|", "|") for cell in re.split(r"(?<!\\)\|", line)[1:-1]]
        if rows is None:
            names, rows = cells, []
            found.append(rows)
        elif set(line) != set("|-"):
            rows.append(dict(zip(names, cells, strict=True)))
    return found


def code(cell):
    assert cell.startswith("`") and cell.endswith("`"), cell
    return cell[1:-1]


class Document:
    """The numbered rows of a document and the forms that it defines."""

    def __init__(self, name):
        self.rows, self.patterns, self.examples = [], {}, {}
        for table in tables(name):
            for row in table:
                if "No." in row:
                    self.rows.append(row)
                elif "form" in row:
                    self.patterns[row["form"]] = re.compile(code(row["as a regular expression"]))
                    self.examples[row["form"]] = code(row["example"])


class DocumentTest(ProgramTest):
    def assert_numbered(self, document, count):
        self.assertEqual([row["No."] for row in document.rows], [str(n + 1) for n in range(count)])

    def assert_forms_exclude_each_other(self, document):
        for form, pattern in document.patterns.items():
            self.assertIsNotNone(pattern.fullmatch(document.examples[form]), form)
            if form not in ("text", "bare text", "missing"):
                for other in ("", "NA", '"NA"', "N/A", '""'):
                    self.assertIsNone(pattern.fullmatch(other), f"{form} and {other}")

    def assert_values(self, document, values):
        """`values` are pairs of a row of the document and its values in the output, by source."""
        for row, by_source in values:
            for source in ("cable pages", "PHY"):
                self.assert_form(f"{row['No.']}, {source}", document, row[source], by_source[source])

    def assert_form(self, place, document, forms, values):
        """Every value has one of the documented forms, and every documented form has a value."""
        alternatives = forms.split(" or ")
        seen = {}
        for value in values:
            for alternative in sorted(alternatives, key=lambda a: not a.startswith("`")):
                if alternative.startswith("`"):
                    fits = value == code(alternative)
                else:
                    fits = document.patterns[alternative].fullmatch(value)
                if fits:
                    seen.setdefault(alternative, []).append(value)
                    break
            else:
                self.fail(f"{place}: {value!r} is not of the form {forms}")
        self.assertEqual(set(seen), set(alternatives), place)
        for form, narrower in NARROWER.items():
            if form in seen and narrower in document.patterns:
                self.assertFalse(all(map(document.patterns[narrower].fullmatch, seen[form])),
                                 f"{place} is {narrower}")


class Table(DocumentTest):
    document = Document("table.md")

    # Nothing is escaped: a quote ends a cell only before a comma.
    CELL = re.compile(r'"(?:[^"]|"(?!,|$))*"|[^,]*')

    def test_columns_match_the_program(self):
        columns = [json.loads(line) for line in run("columns", "--json").stdout.splitlines()]
        self.assertEqual(len(columns), 177)
        for row, column in zip(self.document.rows, columns, strict=True):
            self.assertEqual((int(row["No."]), row["column"], row["meaning"], row["unit"] or None),
                             (column["number"], column["name"], column["meaning"], column["unit"]))
            self.assertEqual((self.usual_form(row["cable pages"]), self.usual_form(row["PHY"])),
                             (column["forms"]["cable_pages"], column["forms"]["phy"]), row["column"])

    def test_forms_exclude_each_other(self):
        self.assert_forms_exclude_each_other(self.document)

    @staticmethod
    def usual_form(forms):
        """The form before the texts that a missing value has there."""
        return forms.split(" or ")[0]

    def test_cells_have_the_documented_forms(self):
        rows = {"cable pages": [], "PHY": []}
        for source, line in zip(sources(), written("table", "--no-header").splitlines(), strict=True):
            if source is None:
                self.assertRegex(line, "^[^,]*,[^,]*,[^,]*,$")
                continue
            cells = self.cells(line)
            self.assertEqual(len(cells), 177, line)
            rows[source].append(cells)
        self.assert_values(self.document, [
            (row, {source: [cells[index] for cells in rows[source]] for source in rows})
            for index, row in enumerate(self.document.rows)])

    def cells(self, line):
        cells, at = [], 0
        while at <= len(line):
            cell = self.CELL.match(line, at).group()
            cells.append(cell)
            at += len(cell) + 1
        return cells


class Report(DocumentTest):
    document = Document("report.md")
    LINES = 78
    CUT = 2047

    def labels(self, source):
        for row in self.document.rows:
            both = [code(label)[1:-1] for label in row["label"].split(" or ")]
            yield both[-1] if source == "PHY" else both[0]

    def blocks(self):
        """The lines of each port's block, without an incomplete last line."""
        ports = re.split("^NodeGuid: .*\n", written("report"), flags=re.MULTILINE)[1:]
        for source, block in zip(sources(), ports, strict=True):
            lines = block.rstrip("\n").split("\n")
            if source == "cable pages" and len("\n".join(lines)) >= self.CUT:
                lines.pop()
            else:
                self.assertEqual(len(lines), self.LINES if source else 1)
            if source:
                yield source, lines

    def test_all_lines_are_documented(self):
        self.assert_numbered(self.document, self.LINES)

    def test_forms_exclude_each_other(self):
        self.assert_forms_exclude_each_other(self.document)

    def test_labels_and_values_are_as_documented(self):
        values = [{"cable pages": [], "PHY": []} for _ in self.document.rows]
        for source, lines in self.blocks():
            for number, (line, label) in enumerate(zip(lines, self.labels(source))):
                self.assertEqual(line[:len(label)], label)
                values[number][source].append(line[len(label):])
        self.assert_values(self.document, zip(self.document.rows, values))

    def test_heading_is_as_documented(self):
        text = (DOCS / "report.md").read_text()
        shown = re.search("^```\n(.*?)^```", text, re.MULTILINE | re.DOTALL).group(1)
        self.assertTrue(run("report", FABRIC).stdout.decode().startswith(shown))


class Layers(ProgramTest):
    """Files include only lower layers, as described in docs/architecture.md."""

    # From the lowest layer to the highest. Files of one part may include each other; parts of the
    # same layer may not.
    LAYERS = (
        {"data": {"missing_values", "csv_columns", "cell_sink", "version"}},
        {"text": {"text/*"}},
        {"value_format": {"value_format", "shared_decoders", "report_labels", "typed_row"}},
        {"cable": {"cable_record", "cable_decode", "cable_output"},
         "phy": {"phy_registers", "phy_cable_record", "phy_decode", "phy_output"},
         "prtl": {"prtl_record"}},
        {"facade": {"combined_cable_info"}},
        {"module_memory": {"module_memory/*"}},
        {"readings": {"readings/*"}},
    )
    FILES = sorted((ROOT / "cable_info").glob("**/*.[hc]*"))

    def place(self, path):
        """The layer and the part of a file of the library, given by its path inside cable_info/."""
        folder, _, name = path.rpartition("/")
        unit = f"{folder}/*" if folder else name.rpartition(".")[0]
        for rank, layer in enumerate(self.LAYERS):
            for part, units in layer.items():
                if unit in units:
                    return rank, part
        self.fail(f"cable_info/{path} is not assigned to a layer")

    def test_no_file_includes_a_higher_one(self):
        for path in self.FILES:
            name = str(path.relative_to(ROOT / "cable_info"))
            rank, part = self.place(name)
            for header in re.findall('^#include "(.*?)"', path.read_text(), re.MULTILINE):
                self.assertTrue(header.startswith("cable_info/"), f"{name} includes {header}")
                other_rank, other_part = self.place(header.removeprefix("cable_info/"))
                self.assertTrue(other_rank < rank or (other_rank, other_part) == (rank, part),
                                f"{name} includes {header}")

    def test_the_library_uses_only_the_standard_library(self):
        for path in self.FILES:
            for header in re.findall("^#include <(.*?)>", path.read_text(), re.MULTILINE):
                self.assertRegex(header, "^[a-z_]+$", f"{path.name} includes {header}")


class Links(ProgramTest):
    def test_every_link_target_exists(self):
        for document in [*ROOT.glob("*.md"), *DOCS.glob("*.md")]:
            for target in re.findall(r"\]\(([^)#]+)", document.read_text()):
                if "://" not in target:
                    self.assertTrue((document.parent / target).exists(), f"{document.name}: {target}")


class Snippets(ProgramTest):
    """Code in the documents is part of an example, which is compiled and run."""

    EXAMPLES = {path.name: path.read_text() for path in sorted((ROOT / "examples").glob("*.cpp"))}
    DOCUMENTS = (ROOT / "README.md", DOCS / "embedding.md")

    def test_every_snippet_is_part_of_an_example(self):
        for document in self.DOCUMENTS:
            snippets = re.findall("^```cpp\n(.*?)^```", document.read_text(), re.MULTILINE | re.DOTALL)
            self.assertTrue(snippets, document)
            for snippet in snippets:
                self.assertTrue(any(self.contains(text, snippet) for text in self.EXAMPLES.values()),
                                f"{document.name}: in no example:\n{snippet}")

    def contains(self, text, snippet):
        """Whether a text contains the paragraphs of a snippet in order, with any indentation."""
        at = 0
        for paragraph in snippet.strip("\n").split("\n\n"):
            lines = textwrap.dedent(paragraph).rstrip("\n").split("\n")
            pattern = "^( *)" + "\n\\1".join(map(re.escape, lines)) + "$"
            found = re.compile(pattern, re.MULTILINE).search(text, at)
            if not found:
                return False
            at = found.end()
        return True


if __name__ == "__main__":
    unittest.main()
