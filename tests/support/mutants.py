"""Mutation testing: one small fault at a time in a copy of the product, and do the tests notice? See script/mutants."""

import argparse
import collections
import json
import os
import pathlib
import re
import resource
import shutil
import signal
import subprocess
import sys
import time

from random_requests import Draw

top = pathlib.Path(__file__).resolve().parents[2]

# What identifies a mutant: the line's text without its indentation finds it again after code has moved to another file.
Mutant = collections.namedtuple("Mutant", "file place kind column old new line")

operators = [
    ("comparison", r" (<|<=|>|>=|==|!=) ", {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="}),
    ("operator", r" (\+|-|\*|/|\+=|-=|\*=|/=) ",
     {"+": "-", "-": "+", "*": "/", "/": "*", "+=": "-=", "-=": "+=", "*=": "/=", "/=": "*="}),
    ("operator", r"(\+\+|--)", {"++": "--", "--": "++"}),
    ("operator", r" (&&|\|\|) ", {"&&": "||", "||": "&&"}),
    ("operator", r"(?<![\w)\]])(!)(?=[\w(])", {"!": ""}),
    ("operator", r"(?<=[=(,] |.[(\[])(-)(?=[\w(])", {"-": ""}),
    ("constant", r"\b(true|false)\b", {"true": "false", "false": "true"}),
    ("constant", r"(?<![\w.\"'])(\d+(?:\.\d+)?(?:e[+-]?\d+)?)(?=[UL]*\b)(?![\w.'])", None),
]
statement = re.compile(r"^(?!return\b|else\b|using\b|namespace\b|case\b|friend\b|delete\b)[a-z]\w*(?:(?:\.|->|::)\w+)*"
                       r"(?:\(|\[| [-+*/]?= |\+\+|--).*;$")
condition = re.compile(r"^(?:\} else )?(?:if|while) \((.*)\)(?: \{| return.*;| continue;| break;)$")


def changed_number(text):
    if re.fullmatch(r"\d+", text):
        return str(int(text) + 1)
    mantissa, exponent, power = text.partition("e")
    digits = "".join(c for c in mantissa if c.isdigit())
    return ("0.5" if not digits.strip("0") else repr(float(mantissa) * 1.25)) + exponent + power


def without_texts(line):
    """The line with texts, characters and comments blanked out, each column where it was."""
    line = re.sub(r'"(?:[^"\\]|\\.)*"|\'(?:[^\'\\]|\\.)\'', lambda m: '"' + "~" * (len(m[0]) - 2) + '"', line)
    return re.sub(r"//.*", lambda m: "~" * len(m[0]), line)


def changes(line):
    """Each mutation of a line without indentation: kind, column, old and new text."""
    if re.match(r"//|#|template|static_assert|\*|/\*|namespace|using|\[\[nodiscard\]\]", line):
        return
    bare = without_texts(line)
    for kind, pattern, replaced in operators:
        for match in re.finditer(pattern, bare):
            old = match[1]
            yield kind, match.start(1), old, replaced[old] if replaced else changed_number(old)
    bare_code = bare.split("~~")[0] if "//" in line else bare
    if statement.match(bare_code.rstrip()):
        yield "statement", 0, line, ""
    match = condition.match(bare_code.rstrip())
    if match and match[1].count("(") == match[1].count(")"):
        yield "condition", match.start(1), line[match.start(1):match.end(1)], f"!({line[match.start(1):match.end(1)]})"


def product_files(tree, folders):
    names = subprocess.run(["git", "ls-files", "*.h", "*.cpp"], cwd=tree, capture_output=True, text=True, check=True)
    for name in sorted(names.stdout.split()):
        folder = name.split("/")[0]
        if "/" in name and folder in folders and not name.endswith("/main.cpp"):
            yield name


def lines_of(path):
    return path.read_text(encoding="utf-8").split("\n")


def index_of(tree, folders):
    """Line texts of the product to the places that have them: file, row."""
    places = collections.defaultdict(list)
    for name in product_files(tree, folders):
        for row, line in enumerate(lines_of(tree / name)):
            places[line.strip()].append((name, row))
    return places


def candidates(tree, folders):
    """Mutants of lines that say something: at least 12 characters, not the same line in three or more places."""
    found = []
    for line, places in index_of(tree, folders).items():
        if len(line) >= 12 and len(places) <= 2:
            for place, (name, _) in enumerate(places):
                found += [Mutant(name, place, *change, line) for change in changes(line)]
    return found


def locate(places, mutant):
    """Where the mutant's line is now: in its file if it is there, else at its place among equal lines; None if it is gone."""
    equal = places.get(mutant.line, [])
    same_file = [place for place in equal if place[0] == mutant.file]
    if len(same_file) == 1:
        return same_file[0]
    return equal[min(mutant.place, len(equal) - 1)] if equal else None


def floors(tree):
    """Folders from the lowest to the highest, each with the folders that it uses."""
    rows = re.findall(r"^ *subsystem\((\w+) USES (.*)\)", (tree / "CMakeLists.txt").read_text(), re.M)
    return {name: used.split() for name, used in rows}


def folders_above(tree, folder):
    uses = floors(tree)
    above = [folder]
    for name, used in uses.items():
        if any(other in used for other in above):
            above.append(name)
    return above[1:]


class Bench:
    """A copy of the tree and its build, where mutants are made and tested."""

    def __init__(self, source, folders):
        self.tree = source / "build" / "mutants" / "tree"
        self.build = self.tree / "build" / "dev"
        self.usual = {}  # seconds of the tests of a folder, unchanged
        self.slow = {}  # and the names of those that take three quarters of them
        self.copy(source)
        line = ["cmake", "--preset", "dev", "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST", "-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=gold",
                f"-DBUILD_DESKTOP={'ON' if 'desktop' in folders else 'OFF'}"]
        self.quietly(line, 600, check=True, cwd=self.tree)

    def copy(self, source):
        """What git knows of the source folder, only what differs, so that little is built anew."""
        names = subprocess.run(["git", "ls-files"], cwd=source, capture_output=True, text=True, check=True).stdout.split("\n")
        wanted = {name for name in names if name and (source / name).is_file()}
        for path in list(self.tree.rglob("*")):
            name = str(path.relative_to(self.tree))
            if path.is_file() and name not in wanted and not name.startswith("build/"):
                path.unlink()
        for name in wanted:
            to = self.tree / name
            if not to.exists() or to.read_bytes() != (source / name).read_bytes():
                to.parent.mkdir(parents=True, exist_ok=True)
                shutil.copyfile(source / name, to)

    def quietly(self, line, seconds, check=False, **options):
        """Runs with a limit of time; its status, None when it took too long."""
        try:
            return subprocess.run(["nice", *line], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL,
                                  timeout=seconds, check=check, **options).returncode
        except subprocess.TimeoutExpired:
            return None

    def has_tests(self, folder):
        return any((self.tree / "tests" / folder).glob("*.cpp"))

    def builds(self, folder):
        return self.quietly(["cmake", "--build", self.build, "-j", "1", "--target", f"{folder}_tests"], 1800) == 0

    def run_tests(self, folder, *options):
        """Whether its tests pass: True, False, or None when they do not end."""
        environment = dict(os.environ, QT_QPA_PLATFORM="offscreen")
        status = self.quietly([self.build / f"{folder}_tests", "--gtest_brief=1", "--gtest_fail_fast", *options],
                              20 + 5 * self.usual.get(folder, 300), cwd=self.build, env=environment,
                              preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (1 << 33, 1 << 33)))
        return None if status is None else status == 0

    def passes(self, folder, slow):
        """The same of the few tests that take most of the time, or of all others, which notice most faults."""
        return self.run_tests(folder, f"--gtest_filter={'' if slow else '-'}{':'.join(self.slow[folder])}")

    def measure(self, folder):
        if folder in self.usual:
            return
        if not self.builds(folder):
            sys.exit(f"script/mutants: {folder}_tests does not build")
        times = self.build / f"{folder}_times.json"
        if not self.run_tests(folder, f"--gtest_output=json:{times}"):
            sys.exit(f"script/mutants: {folder}_tests fails as it is")
        tests = sorted((float(test["time"].rstrip("s")), f'{suite["name"]}.{test["name"]}')
                       for suite in json.loads(times.read_text())["testsuites"] for test in suite["testsuite"])
        self.usual[folder] = sum(seconds for seconds, _ in tests)
        enough = max(1.0, self.usual[folder] / 4)
        quick = [sum(seconds for seconds, _ in tests[:i + 1]) < enough for i in range(len(tests))]
        self.slow[folder] = [name for is_quick, (_, name) in zip(quick, tests) if not is_quick]

    def verdict(self, name, row, mutant, parts):
        """Of the tests of these folders, the quick or the slow ones of each, in this order, until one notices."""
        path = self.tree / name
        original = path.read_bytes()
        try:
            lines = lines_of(path)
            start = len(lines[row]) - len(lines[row].lstrip()) + mutant.column
            assert lines[row][start:start + len(mutant.old)] == mutant.old, mutant
            lines[row] = lines[row][:start] + mutant.new + lines[row][start + len(mutant.old):]
            changed = "\n".join(lines)
            path.write_text(changed, encoding="utf-8")
            for folder, slow in parts:
                if folder not in self.usual:
                    path.write_bytes(original)
                    self.measure(folder)
                    path.write_text(changed, encoding="utf-8")
                if not self.builds(folder):
                    return "refused"
                passed = self.passes(folder, slow)
                if not passed:
                    return f"killed by {folder}" + (", endless" if passed is None else "")
            return "survived"
        finally:
            path.write_bytes(original)


def line_of(mutant, verdict):
    return "\t".join([verdict, mutant.file, str(mutant.place), mutant.kind, str(mutant.column), mutant.old, mutant.new, mutant.line])


def read_list(path):
    """Mutants of such a file, each with its last verdict."""
    verdicts = {}
    for line in pathlib.Path(path).read_text(encoding="utf-8").splitlines():
        if line and not line.startswith("#"):
            verdict, file, place, kind, column, old, new, text = line.split("\t")
            verdicts[Mutant(file, int(place), kind, int(column), old, new, text)] = verdict
    return verdicts


def without_place(mutant):
    """What is left of a mutant when its line has moved to another file."""
    return mutant.kind, mutant.column, mutant.old, mutant.new, mutant.line


def shown(mutant, name, row):
    what = "without" if mutant.kind == "statement" else f"'{mutant.old}' -> '{mutant.new}' in"
    return f"{name}:{row + 1}: {what} {mutant.line}"


def main():
    parse = argparse.ArgumentParser(prog="script/mutants")
    parse.add_argument("count", nargs="?", type=int, default=60, help="mutants that are tested (60)")
    parse.add_argument("seed", nargs="?", type=int, default=11, help="of the draw (11)")
    parse.add_argument("--folders", help="only these, between commas; all but desktop by default")
    parse.add_argument("--tree", type=pathlib.Path, default=top, help="the repository that is tested; this one by default")
    parse.add_argument("--save", help="appends each mutant with its verdict to this file; those that it has already are not tested again")
    parse.add_argument("--replay", help="tests the mutants of such a file, instead of drawing")
    parse.add_argument("--quick", action="store_true", help="the quick tests of the own folder alone; the rest with the same --save later")
    options = parse.parse_args()
    signal.signal(signal.SIGINT, signal.default_int_handler)  # behind an "&" it is ignored, also by what the tests start
    signal.signal(signal.SIGTERM, lambda *_: sys.exit("script/mutants: ended"))  # the mutant is taken back, too

    every = list(floors(options.tree))
    folders = options.folders.split(",") if options.folders else [name for name in every if name != "desktop"]
    options.tree = options.tree.resolve()
    bench = Bench(options.tree, folders)
    places = index_of(options.tree, every)
    draw = Draw(options.seed, 0)

    equivalent = options.tree / "tests" / "data" / "mutants" / "equivalent.txt"
    nobody_can_notice = {} if options.replay and equivalent.samefile(options.replay) else {
        without_place(mutant): reason for mutant, reason in read_list(equivalent).items()}
    before = read_list(options.save) if options.save and pathlib.Path(options.save).exists() else {}
    verdicts = {}

    def wanted():
        if options.replay:
            yield from read_list(options.replay)
            return
        found = candidates(options.tree, folders)
        while found and sum(verdict != "refused" for verdict in verdicts.values()) < options.count:
            yield found.pop(int(draw.random() * len(found)))

    def give(mutant, verdict, place):
        if before.get(mutant) != verdict:
            print(f"{verdict:28} {shown(mutant, *place) if place else mutant.line}", flush=True)
            if options.save:
                with open(options.save, "a", encoding="utf-8") as file:
                    file.write(line_of(mutant, verdict) + "\n")
        verdicts[mutant] = verdict

    def above(folder):
        return [other for other in folders_above(options.tree, folder) if other != "desktop" and bench.has_tests(other)]

    # First the quick tests of each mutant's own folder; then those of the folders above, the quickest first, and the slow ones.
    for mutant in wanted():
        place = locate(places, mutant)
        if place is None:
            verdict = "gone"
        elif without_place(mutant) in nobody_can_notice:
            verdict = nobody_can_notice[without_place(mutant)]
        elif mutant in before and not before[mutant].startswith("equivalent"):
            verdict = before[mutant]
        else:
            own = place[0].split("/")[0]
            verdict = bench.verdict(*place, mutant, [(own, False)])
            if verdict == "survived":
                verdict = f"survived {own}"
        give(mutant, verdict, place)
    for mutant, verdict in list(verdicts.items()):
        if verdict.startswith("survived ") and not options.quick:
            own = verdict.split()[1]
            for folder in [own, *above(own)]:
                bench.measure(folder)
            others = sorted(above(own), key=bench.usual.get)
            parts = [*((folder, False) for folder in others), (own, True), *((folder, True) for folder in others)]
            place = locate(places, mutant)
            give(mutant, bench.verdict(*place, mutant, parts), place)

    tally = collections.Counter(verdict.split(":")[0] for verdict in verdicts.values())
    print("\n" + ", ".join(f"{verdict} {times}" for verdict, times in sorted(tally.items())))
    for mutant, verdict in verdicts.items():
        if verdict.startswith("survived"):
            print(f"  survived: {shown(mutant, *locate(places, mutant))}")


main()
