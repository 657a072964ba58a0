"""Random requests of every kind, as scripts for kavrel-cli: what script/same_as runs with two builds.

request(seed, number) is the text of one script, the same for the same two numbers on every machine. Most are designs and
circuits that come off, with the commands that an engineer would give next; some are refused, on purpose or by chance.
"""

import math
import random


class Draw:
    """Draws that rest on random() alone, whose numbers are the same in every version of Python."""

    def __init__(self, seed, number):
        self.random = random.Random(seed * 1_000_003 + number).random

    def whole(self, low, high):
        return low + int(self.random() * (high - low + 1))

    def real(self, low, high):
        return low + self.random() * (high - low)

    def spread(self, low, high):
        """Evenly in the logarithm."""
        return low * (high / low) ** self.random()

    def chance(self, share):
        return self.random() < share

    def one(self, *choices):
        return choices[int(self.random() * len(choices))]

    def weighted(self, rows):
        place = self.random() * sum(weight for weight, _ in rows)
        for weight, choice in rows:
            place -= weight
            if place < 0:
                return choice
        return rows[-1][1]


def text(number):
    return f"{number:.6g}"


class Script:
    def __init__(self, seed, number):
        self.draw = Draw(seed, number)
        self.lines = []
        self.hertz = self.henries = self.farads = self.seconds = 1.0  # of the units
        self.edge = 1e3  # Hz: where things happen
        self.microwave = False
        self.analysed = self.timed = False
        self.undone = 0  # edits that may be made again
        self.files = 0

    def line(self, *words):
        self.lines.append(" ".join(w if isinstance(w, str) else text(w) for w in words))

    def choose(self, *path):
        self.line("choose", " > ".join(f'"{p}"' if " " in p else p for p in path))

    def set(self, name, value):
        if isinstance(value, str) and (" " in value or not value):
            value = f'"{value}"'
        if " " in name:
            name = f'"{name}"'
        self.line("  set", name, value)

    def sets(self, **values):
        for name, value in values.items():
            self.set(name, value)

    def ok(self):
        self.line("ok")

    def rows(self, button, rows, listed=None, settings=None):
        self.line(f'  button "{button}"')
        for name, value in (settings or {}).items():
            self.set(name, value)
        if listed:
            self.line("list", listed)
        for row in rows:
            self.line("    row", *row)
        self.line("  ok")

    def frequency(self, hertz):
        return hertz / self.hertz

    def new_file(self, extension):
        self.files += 1
        return f"file{self.files}.{extension}"


# The session

def units(s):
    d = s.draw
    if not d.chance(0.3):
        return
    s.choose("File", "Global units")
    name, step = d.one(("KHz", 1), ("MHz", 2), ("GHz", 3))
    s.hertz = 1e3 ** step
    s.set("Frequency unit", name)
    for name, letter, least, most in (("Inductor", "H", 0, 4), ("Capacitor", "F", 1, 4), ("Time", "sec", 0, 4)):
        chosen = max(least, min(most, step + d.one(-1, 0, 0, 1)))  # milli is 1, pico 4
        s.set(f"{name} unit", ("", "m", "u", "n", "p")[chosen] + letter)
        setattr(s, {"H": "henries", "F": "farads", "sec": "seconds"}[letter], 1e-3 ** chosen)
    s.ok()


# Filter designs

def outside(d, low, high, type_, limit=None):
    """A frequency in a stop band of this request, in units of the upper (high-pass: lower) edge."""
    above = type_ == "Low pass" or (type_ == "Band pass" and d.chance(0.5))
    if above:
        top = min(4.0 * high, 0.98 * limit) if limit else 4.0 * high
        return d.spread(1.04 * high, max(top, 1.05 * high))
    return d.spread(0.2 * low, 0.96 * low)


def zero_rows(s, d, low, high, type_, limit, complex_allowed):
    rows = []
    for _ in range(d.weighted([(3, 1), (4, 2), (2, 3), (1, 4)])):
        if complex_allowed and d.chance(0.35):
            scale = high if type_ != "High pass" else low
            rows.append((s.frequency(scale * d.real(0.3, 1.2)), s.frequency(scale * d.real(0.0 if d.chance(0.1) else 0.2, 1.3))))
        else:
            rows.append((0, s.frequency(outside(d, low, high, type_, limit))))
    return rows


def even_counts(d, form):
    """Zeros at zero and infinity of a band-pass; a parametric one has an odd count among them."""
    if form == "Parametric":
        return d.one((1, 2), (2, 1), (3, 2), (2, 3), (1, 4), (3, 4), (0, 3), (3, 0))
    return d.one((1, 1), (2, 2), (1, 3), (3, 1), (2, 4), (3, 3), (5, 3), (4, 4), (0, 2), (6, 6))


def functional_rows(s, d, degree, low, high, type_, function):
    """Of each pair one root."""
    rows = []
    centre = math.sqrt(low * high) if type_ == "Band pass" else (high if type_ == "Low pass" else low)
    while degree > 0:
        if function == "E":
            angle = d.real(0.05, 0.45) * math.pi
            radius = centre * d.real(0.8, 1.2)
            if type_ == "Band pass":
                radius, angle = d.real(low, high), d.real(0.42, 0.495) * math.pi
            if degree == 1:
                rows.append((s.frequency(-radius), 0))
            else:
                rows.append((s.frequency(-radius * math.cos(angle)), s.frequency(radius * math.sin(angle))))
        elif degree == 1:
            rows.append((0, 0))
        elif type_ == "Low pass":
            rows.append((0, s.frequency(d.real(0.05, 0.98) * high)))
        elif type_ == "High pass":
            rows.append((0, s.frequency(d.real(1.02, 5) * low)))
        else:
            rows.append((0, s.frequency(d.real(low, high))))
        degree -= 2
    return rows


def filter_form(s, kind):
    d = s.draw
    s.choose("Design", "Filter", "New")
    s.set("filter_kind", kind)
    type_ = d.weighted([(4, "Low pass"), (2, "High pass"), (4, "Band pass")])
    s.set("filter_type", type_)
    s.edge = d.spread(0.5, 900) * s.hertz if s.hertz > 1 else d.spread(30, 3e9)
    high = s.edge
    low = high * (d.real(0.4, 0.97) if type_ == "Band pass" else 1.0)
    limit = None
    s.microwave = kind == "Microwave"
    s.type = type_
    if kind in ("Microwave", "IIR Digital"):
        s.limit = limit = high * d.real(1.5, 5.0)
        s.set("fq_or_fs", s.frequency(limit * (1 if kind == "Microwave" else 2)))
    if type_ != "High pass":
        s.set("upper_passband", s.frequency(high))
    if type_ != "Low pass":
        s.set("lower_passband", s.frequency(low))

    form = "Conventional"
    if type_ == "Band pass" and kind in ("LC", "Microwave"):
        form = d.weighted([(6, "Conventional"), (3, "Parametric"), (2, "Matching")])
        s.set("bandpass_form", form)
    passband = d.weighted([(4, "Max. flat"), (8, "Equal ripple"), (2, "Functional"),
                           (2 if type_ == "Band pass" and form == "Conventional" else 0, "Sloping")])
    s.set("passband_type", passband)
    s.passband = passband
    s.set("band_edge_loss", d.weighted([(4, d.spread(0.01, 3)), (1, -d.real(3, 50)), (1, d.real(10, 30))]))
    stopband = "Specified" if passband in ("Functional", "Sloping") and d.chance(0.8) else \
        d.weighted([(3, "Monotonic"), (4, "Equal min"), (5, "Specified"), (0.2, "Placer")])
    s.set("stopband_type", stopband)

    if stopband in ("Monotonic", "Equal min"):
        step = d.spread(1.03 if stopband == "Equal min" else 1.2, 2.5)
        if type_ != "High pass":
            upper = high * step
            s.sets(upper_stopband=s.frequency(min(upper, 0.97 * limit) if limit else upper), upper_stop_loss=d.real(15, 70))
        if type_ != "Low pass":
            s.sets(lower_stopband=s.frequency(low / step), lower_stop_loss=d.real(15, 70))
    lines = 0
    if kind == "Microwave":
        lines = d.weighted([(3, 0), (2, 1), (2, 2), (2, 4), (1, 5), (0.5, -1)])
        s.set("unit_elements", lines)
    if stopband == "Specified" or passband in ("Functional", "Sloping"):
        at_zero, at_infinity = 0, 0
        if type_ == "Low pass":
            at_infinity = d.whole(1, 7)
        elif type_ == "High pass":
            at_zero = d.whole(1, 7)
        else:
            at_zero, at_infinity = even_counts(d, form)
        if passband == "Sloping":
            s.sets(loss_slope=d.one(-1, 1) * d.real(0.5, 9), flat_loss=d.one(0, d.real(0.5, 3)))
            at_zero, at_infinity = at_zero + 2, at_infinity + 2
        s.sets(zeros_at_zero=at_zero, zeros_at_infinity=at_infinity)
        zeros = zero_rows(s, d, low, high, type_, limit, kind != "Microwave") \
            if stopband == "Specified" and passband != "Sloping" and d.chance(0.65) else []
        if passband == "Functional":
            degree = at_zero + at_infinity + max(lines, 0) + sum(2 if row[0] == 0 else 4 for row in zeros)
            function = "F" if stopband != "Equal min" and (degree % 2 == 0 or type_ == "Low pass") and d.chance(0.5) else "E"
            s.set("function_type", function)
            if function == "F":
                s.set("multiplier", d.spread(0.01, 3))
            s.lines.append('  button "Detail Parameters"')
            s.set("frequency_unit", d.one("in  Hz", "in  Hz", "in  Hz", "rad/sec"))
            if zeros:
                s.line("    list TR_ZEROS")
                for row in zeros:
                    s.line("    row", *row)
                s.line("    list DOUBLETS")
            for row in functional_rows(s, d, degree, low, high, type_, function):
                s.line("    row", *row)
            s.line("  ok")
        elif zeros:
            s.rows("Detail Parameters", zeros)

    if kind in ("LC", "Microwave"):
        r1 = d.one(50, 75, 600, d.spread(1, 1e4))
        r2 = d.weighted([(6, r1), (2, r1 * d.spread(0.1, 10)), (2, 0)])
        if form == "Matching":
            r2 = r1 * d.one(0.2, 0.5, 2, 5, d.spread(0.1, 10))
        if d.chance(0.05):
            r1, r2 = 0, r1
        s.sets(r1=r1, r2=r2)
        if type_ == "Low pass" and d.chance(0.3):
            s.set("zs_parameter", d.one(-1, 0, 1))
    if kind in ("LC", "Active RC") and d.chance(0.15):
        s.set("q_predistortion", d.spread(20, 2000))
        if d.chance(0.3):
            s.set("predistortion", d.one("Passband only", "Pass/stop bands"))
    if type_ == "Low pass" and d.chance(0.12):
        s.set("center_frequency", s.frequency(high * d.spread(2, 40)))
        if d.chance(0.4):
            s.set("odd_parametric", "yes")
        s.edge = high * 20
    if d.chance(0.1):
        s.line("fields")
    saved = d.chance(0.15)
    s.set("save_design", "yes" if saved else "no")
    s.ok()
    if saved:
        name = s.new_file("qfi")
        s.line("file", name)
        return name
    return None


def synthesis_form(s):
    d = s.draw
    if d.chance(0.4):
        s.set("direction", d.one("Forward", "Reverse"))
    if d.chance(0.2):
        s.set("impedance_selection", "Manual")
        s.set("numerator", d.one(1, 1, 2))
        s.set("denominator", d.one(1, 1, 2))
        s.set("this_is_an", d.one("Impedance", "Admittance"))
    if d.chance(0.3):
        s.set("print_polynomials", "yes")
    if d.chance(0.03):
        s.set("form", "Lattice")
    if d.chance(0.03):
        s.set("configuration", "Manual")
    s.line("cancel" if d.chance(0.03) else "ok")


def ladder(s, kind):
    recalled = filter_form(s, kind)
    synthesis_form(s)
    if recalled and s.draw.chance(0.5):
        s.choose("Design", "Filter", "Recall")
        s.line("file", recalled)
        if s.draw.chance(0.5):
            s.set("band_edge_loss", 0.2)
        s.ok()
        s.ok()
    passive_commands(s)


def transfer_only(s):
    recalled = filter_form(s, "Active RC")
    if recalled and s.draw.chance(0.7):
        s.choose("Design", "Filter", "Recall")
        s.line("file", recalled)
        s.ok()


# Digital filters

def z_step(s):
    """The forms that follow the filter form; s.limit is half the sampling frequency in Hz."""
    d = s.draw
    if s.passband != "Functional":
        s.set("z_transform_type", d.weighted([(6, "Bilinear"), (2, "Matched"), (2, "Impulse-invariant")]))
        if d.chance(0.1):
            s.set("sampling", 2 * s.limit * d.real(0.9, 1.5))
        s.line("cancel" if d.chance(0.02) else "ok")
    if s.type == "Low pass":
        kind = d.weighted([(4, "None"), (2, "Lowpass-to-lowpass"), (2, "Lowpass-to-highpass"), (2, "Lowpass-to-bandpass"),
                           (2, "Lowpass-to-bandreject")])
        s.set("frequency_transformation", kind)
        if kind != "None":
            lower = s.limit * d.real(0.02, 0.9)
            upper = lower + (s.limit - lower) * d.real(0.02, 0.95)
            s.sets(lower_passband=s.frequency(lower), upper_passband=s.frequency(upper))
        s.line("cancel" if d.chance(0.02) else "ok")


implementations = ["Cascade", "Parallel", "Lattice", "Direct", "Differential allpass"]
number_forms = ["Floating point", "Fixed point"]
dialects = ["Classic", "Standard", "C", "C integer", "C table", "SOS text"]


def digital_commands(s):
    d = s.draw
    for word in ("par ", "dir ", "lat ", "allp"):
        if d.chance(0.6):
            s.line("do", word.strip())
    for _ in range(d.whole(0, 4)):
        command = d.one("freq", "time", "show", "func", "des", "pltf", "pz", "swc", "asci", "sto", "tabf", "lim", "prog")
        if command == "freq":
            s.choose("Analyze", "Frequency")
            s.sets(start=0, end=s.frequency(s.limit), count=d.whole(2, 60), implementation=d.one(*implementations, "Natural modes"))
            s.ok()
            s.line("answer", d.one("yes", "no"))
        elif command == "time":
            s.choose("Analyze", "Time")
            s.sets(start=0, stop=d.whole(3, 300) / s.limit / s.seconds, step=0, implementation=d.one(*implementations))
            s.sets(bits=d.one(0, d.whole(1, 50)), number_form=d.one(*number_forms))
            s.ok()
            s.line("answer", d.one("yes", "no"))
        elif command == "des":
            s.choose("View", "Design")
            s.sets(section=d.whole(1, 4), diagram=d.whole(1, 2), display_format=d.one("Decimal", "Decimal", "Hexadecimal"))
            s.ok()
        elif command == "prog":
            s.choose("File", "Program")
            s.sets(implementation=d.one(*implementations), dialect=d.one(*dialects))
            s.ok()
            s.line("file", s.new_file("txt"))
        elif command in ("pz", "swc", "asci", "tabf"):
            s.line("do", command)
            s.line("file", s.new_file("txt"))
        else:
            s.line("do", command)


def digital_edits(s):
    d = s.draw
    for _ in range(d.whole(1, 5)):
        edit = d.one("flat", "add", "del", "perm", "fs", "conv", "undo", "redo", "rcl", "save")
        if edit == "flat":
            s.choose("Transform", "Flat")
            s.set("loss", d.real(-20, 40))
        elif edit == "add":
            s.choose("Modify", "Add")
            s.sets(c1=d.real(-1.5, 1.5), c2=d.one(0, d.real(-0.9, 0.9)), place=d.one("Numerator", "Denominator"))
        elif edit == "del":
            s.choose("Modify", "Delete")
            s.sets(number=d.whole(1, 4), place=d.one("Numerator", "Denominator"))
        elif edit == "perm":
            s.choose("Modify", "Permute")
            s.sets(place=d.one("Numerator", "Denominator", "Both"), sequence=d.one("2 1", "3 2 1", "1 3 2", "1 1", "0 2"))
        elif edit == "fs":
            s.choose("Transform", "Resample")
            s.set("sampling_frequency", s.frequency(s.limit * d.real(1, 5)))
        else:
            s.line("do", edit)
            if edit == "save":
                s.line("file", s.new_file("qfd"))
            continue
        s.ok()


def digital_words(s):
    """What leaves the filter the one that was asked for, but for its words and levels."""
    d = s.draw
    for _ in range(d.whole(1, 3)):
        command = d.one("trun", "trun", "scal", "ord")
        if command == "trun":
            s.choose("Transform", "Truncate")
            s.sets(bits=d.one(0, d.whole(3, 40)), method=d.one("Round", "Truncate"), number_form=d.one(*number_forms))
        elif command == "scal":
            s.choose("Transform", "Scale")
            s.sets(scaling_method=d.one("L-two", "L-infinity"), separately=d.one("No", "Yes"), denominators_first=d.one("No", "Yes"))
        else:
            s.choose("Transform", "Order")
            s.sets(seed=d.whole(1, 9), apply=d.one("yes", "no"))
        s.ok()


def digital(s):
    filter_form(s, "IIR Digital")
    z_step(s)
    digital_commands(s)
    if s.draw.chance(0.4):
        digital_words(s)
        digital_commands(s)
    if s.draw.chance(0.4):
        digital_edits(s)
        digital_commands(s)


# FIR designs

def fir_form(s):
    d = s.draw
    s.choose("Design", "FIR Filter", "New")
    rate = d.spread(1e3, 1e6)
    type_ = d.weighted([(6, "Filter"), (2, "Differentiator"), (2, "Hilbert transformer")])
    s.set("fir_type", type_)
    length = d.weighted([(6, d.whole(5, 64)), (2, d.whole(65, 140)), (1, 0)])
    if type_ != "Filter":
        s.sets(filter_length=max(length, 4), sampling_frequency=s.frequency(rate))
        if type_ == "Differentiator":
            s.sets(upper_frequency=s.frequency(rate * d.real(0.2, 0.5)), slope=d.spread(0.2, 4))
        else:
            s.sets(lower_frequency=s.frequency(rate * d.real(0.01, 0.1)), upper_frequency=s.frequency(rate * d.real(0.3, 0.5)))
    elif length == 0:
        edge = d.real(0.05, 0.35)
        s.sets(filter_length=0, specification_type="Ripple in dB")
        rows = [(0, edge, 1, d.spread(0.05, 2)), (edge + d.real(0.03, 0.1), 0.5, 0, d.real(20, 60))]
        s.rows("Details", [(s.frequency(a * rate), s.frequency(b * rate), v, w) for a, b, v, w in rows])
    else:
        in_db = d.chance(0.4)
        s.sets(filter_length=length, specification_type="Ripple in dB" if in_db else "Weights")
        bands = d.weighted([(4, 2), (3, 3), (2, 5), (1, d.whole(4, 10))])
        edges = [0.0] + sorted(d.real(0.01, 0.49) for _ in range(2 * bands - 2)) + [0.5]
        rows = []
        for band in range(bands):
            passes = band % 2 == (0 if d.chance(0.9) else 1)
            value = d.one(1, 1, 1, 0.5, 2) if passes else 0
            rows.append((s.frequency(edges[2 * band] * rate), s.frequency(edges[2 * band + 1] * rate), value,
                         (d.spread(0.05, 2) if value else d.real(20, 60)) if in_db else d.spread(0.5, 30)))
        s.rows("Details", rows)
        if d.chance(0.2):
            s.rows("Shaped passband", [(s.frequency(k * 0.1 * rate), d.real(-3, 3)) for k in range(d.whole(2, 6))])
    saved = d.chance(0.25)
    s.set("save_design", "yes" if saved else "no")
    s.ok()
    if saved:
        name = s.new_file("qfi")
        s.line("file", name)
        if d.chance(0.6):
            s.choose("Design", "FIR Filter", "Recall")
            s.line("file", name)
            s.ok()
    if d.chance(0.5):
        fir_commands(s)
    for _ in range(d.whole(0, 4)):
        command = d.one("show", "time", "plot", "table", "lbl", "pri", "other")
        if command == "show":
            s.choose("View", "Show")
            s.ok()
        elif command == "time":
            s.choose("Analyze", "Time")
            s.ok()
        elif command == "plot":
            s.line("plot", s.new_file("svg"))
        elif command == "table":
            s.line("table", s.new_file("csv"))
        elif command == "lbl":
            title(s)
        elif command == "pri":
            printing(s)
        else:
            s.line("do", d.one("freq", "undo", "fac", "disp"))


def windowed(s):
    d = s.draw
    rate = d.spread(1e3, 1e6)
    edges = sorted(d.real(0.02, 0.48) * rate for _ in range(2))
    s.choose("Design", "FIR Filter", "New")
    s.sets(filter_length=d.whole(3, 200), design_method="Windowed", filter_type=d.one("Lowpass", "Highpass", "Bandpass", "Bandreject"))
    s.sets(lower_frequency=s.frequency(edges[0]), upper_frequency=s.frequency(edges[1]), sampling_frequency=s.frequency(rate))
    s.sets(window_type=d.whole(1, 21), parameter=d.real(0.5, 120))
    s.ok()
    fir_commands(s)


def typed_fir(s):
    d = s.draw
    s.choose("Analysis", "FIR filter", "New")
    s.set("sampling_freq", s.frequency(d.spread(1e3, 1e6)))
    if d.chance(0.5):
        s.sets(filter_data="Coefficients", filter_symmetry=d.one("Even", "Odd", "None"), filter_length=0)
        s.rows("Data", [(d.real(-1, 1),) for _ in range(d.whole(1, 30))])
    else:
        s.set("filter_data", "Quadratics")
        s.rows("Data", [(d.real(-2, 2), d.one(0, 1, d.real(-2, 2))) for _ in range(d.whole(1, 20))])
    s.ok()
    fir_commands(s)


def fir_commands(s):
    d = s.draw
    for _ in range(d.whole(1, 8)):
        n = d.one(1, 1, 1, 2, 3)
        command = d.one("freq", "show", "fac", "fac", "flip", "min", "all", "select", "sqr", "trun", "flat", "scal", "add", "del", "ch",
                        "prog", "ffac", "file", "disp", "clr", "rset", "undo", "redo", "sto", "rcl", "tabf", "save")
        if command == "freq":
            s.line("do", "freq")
            s.sets(start=0, end=d.spread(100, 1e5), count=d.whole(2, 60), function_number=n)
            s.ok()
            s.line("answer", d.one("yes", "no"))
        elif command in ("show", "fac", "sqr", "scal"):
            s.line("do", command)
            s.set("function_number", n)
            s.ok()
        elif command == "all":
            s.choose("Transform", "Multiply", "All")
        elif command == "select":
            s.choose("Transform", "Multiply", "Select")
            s.line("clear")
            for k in range(d.whole(1, 4)):
                s.line("row", k + 1)
            s.ok()
        elif command == "trun":
            s.line("do", "trun")
            s.sets(bits=d.one(0, d.whole(3, 40)), method=d.one("Round", "Truncate"), number_form=d.one(*number_forms), function_number=n)
            s.ok()
        elif command == "flat":
            s.line("do", "flat")
            s.sets(gain=d.real(-20, 20), function_number=n)
            s.ok()
        elif command in ("add", "ch", "del"):
            s.line("do", command)
            if command != "del":
                s.sets(linear=d.real(-2, 2), quadratic=d.one(0, d.real(-2, 2)))
            if command != "add":
                s.set("serial", d.whole(1, 6))
            s.ok()
        elif command == "prog":
            s.line("do", "prog")
            s.sets(function_number=n, dialect=d.one("Classic", "Standard", "C", "C integer", "C table", "Text"))
            s.ok()
            s.line("file", s.new_file("txt"))
        else:
            s.line("do", command)
            if command in ("ffac", "file", "tabf", "save"):
                s.line("file", s.new_file("qff" if command == "save" else "txt"))


# Forms that keep their data only

def delay_form(s):
    d = s.draw
    s.choose("Design", "Delayline/equ.", "New")
    type_ = d.one("Max. flat", "Equal ripple", "Equalizer")
    s.set("delay_type", type_)
    edge = d.spread(1e3, 1e8)
    if type_ == "Equalizer":
        s.set("implementation", d.one("LC elements", "Active RC", "Microwave", "IIR digital"))
        s.set("fq_or_fs", s.frequency(edge * d.real(4, 8)))
        s.set("degree", d.whole(2, 6))
        s.rows("Data", [(s.frequency(edge * k / 10), d.spread(1e-7, 1e-4) / s.seconds) for k in range(1, d.whole(5, 12))])
    else:
        s.sets(implementation=d.one("LC elements", "Active RC", "Microwave", "IIR digital"), network_type=d.one("Filter", "Delay line"),
               delay=d.spread(0.1, 1) / edge / s.seconds, fq_or_fs=s.frequency(edge * d.real(4, 8)), degree=d.whole(2, 12),
               end_of_passband=s.frequency(edge), start_of_stopband=s.frequency(edge * d.real(1.2, 2)),
               zeros_at_infinity=d.whole(2, 6), normalization_freq=s.frequency(edge))
        if d.chance(0.5):
            s.set("stopband", "Specified")
            s.rows("Transm. zeros", [(0, s.frequency(edge * d.real(1.5, 3))) for _ in range(d.whole(1, 3))])
        s.sets(r1=d.one(50, 600), r2=d.one(0, 50, 75), q_value=d.one(0, 200), hurwitz=d.one("Hurwitz", "Non Hurwitz"))
        if d.chance(0.3):
            s.set("selection", "Manual")
            s.rows("Indicators", [(d.one(1, -1),) for _ in range(d.whole(1, 5))])
        if d.chance(0.2):
            s.sets(center_frequency=s.frequency(edge * 20), odd_parametric=d.one("yes", "no"))
    save_and_recall(s, "save_design", "qfi", ("Design", "Delayline/equ.", "Recall"))


def save_and_recall(s, flag, extension, recall):
    d = s.draw
    s.set(flag, "yes")
    s.ok()
    name = s.new_file(extension)
    s.line("file", name)
    if d.chance(0.6):
        s.choose(*(recall if d.chance(0.9) else ("Design", "Filter", "Recall")))
        s.line("file", name)
        s.line("fields")
        if d.chance(0.5):
            s.set(flag, "yes")
            s.ok()
            s.line("file", s.new_file(extension))
        else:
            s.line("cancel")


def analysis_form(s):
    d = s.draw
    if d.chance(0.3):
        s.choose("Analysis", "FIR filter", "New")
        s.sets(sampling_freq=s.frequency(d.spread(1e3, 1e6)), filter_symmetry=d.one("Even", "Odd", "None"))
        if d.chance(0.6):
            length = d.whole(3, 20)
            s.sets(filter_data="Coefficients", filter_length=length)
            s.rows("Data", [(d.real(-1, 1),) for _ in range(d.whole(max(1, length // 2), length))])
        else:
            s.set("filter_data", "Quadratics")
            s.rows("Data", [(d.real(-1.9, 1.9), d.real(-1, 1)) for _ in range(d.whole(1, 6))])
        return save_and_recall(s, "save_analysis_data", "qai", ("Analysis", "FIR filter", "Recall"))
    s.choose("Analysis", "Filter", "New")
    kind = d.one("Active RC", "Switched capacitor", "IIR digital", "IIR digital")
    s.set("analysis_kind", kind)
    s.set("analysis_type", d.one("Lowpass", "Highpass", "Bandpass", "Band reject", "Delay equalizer"))
    s.set("structure", d.one("Cascade", "Cascade", "Follow-the-leader", "Leapfrog"))
    edge = d.spread(1e2, 1e6)
    s.sets(lower_passband=s.frequency(edge * 0.8), upper_passband=s.frequency(edge), sampling_or_qw=s.frequency(edge * d.real(3, 20)))
    digital = kind == "IIR digital"
    if digital and d.chance(0.5):
        s.set("form", "Roots")
        s.rows("Poles", [(d.real(-0.9, 0.9), d.one(0, d.real(0, 0.6))) for _ in range(d.whole(0, 6))])
        s.rows("Zeros", [(d.real(-1.2, 1.2), d.one(0, d.real(0, 1))) for _ in range(d.whole(0, 4))])
        s.set("zeros_at_infinity", d.whole(0, 4))
    elif d.chance(0.5) and not digital:
        s.set("form", "Roots")
        s.rows("Poles", [(-edge * d.real(0.05, 1), edge * d.one(0, d.real(0.2, 1))) for _ in range(d.whole(1, 6))])
        s.rows("Zeros", [(0, edge * d.real(1.2, 3)) for _ in range(d.whole(0, 3))])
        s.set("zeros_at_infinity", d.whole(0, 4))
    else:
        s.set("form", "Factors")
        count = d.whole(1, 5)
        s.rows("Numerator", [(d.real(0, 1), d.real(-1, 1), d.real(0.1, 1)) for _ in range(count)])
        most = 0.9 if digital else 2
        s.rows("Denominator", [(1, d.real(0.1, most), d.real(0.1, most)) for _ in range(count)])
        if d.chance(0.5) and not digital:
            s.set("analysis_kind", "Active RC")
            s.set("structure", "Follow-the-leader")
            s.rows("Feedback coeff.", [(d.real(-1, 1),) for _ in range(count)])
    save_and_recall(s, "save_analysis", "qai", ("Analysis", "Filter", "Recall"))


# Circuits typed in

def insert(s, element, branch, *values):
    s.choose("Branch", "Insert")
    s.sets(element=element, branch=branch)
    for place, value in enumerate(values, 1):
        s.set(f"value{place}", value)
    s.ok()


def henry(s):
    return 50 / (2 * math.pi * s.edge) * s.draw.spread(0.2, 5) / s.henries


def farad(s):
    return 1 / (2 * math.pi * s.edge) / 50 * s.draw.spread(0.2, 5) / s.farads


def random_branch(s, number, microwave):
    d = s.draw
    if microwave:
        kind = d.weighted([(3, "ue"), (3, "l"), (3, "c"), (1, "lc"), (0.3, "r"), (0.3, "lcc")])
        count = {"lc": 2, "lcc": 3, "lcl": 3}.get(kind, 1)
        return insert(s, kind, number, *(d.spread(10, 200) for _ in range(count)))
    kind = d.weighted([(4, "l"), (4, "c"), (4, "lc"), (1, "r"), (2, "lcc"), (2, "lcl"), (0.7, "eqa"), (0.7, "eqb"), (0.2, "ue")])
    values = {"l": [henry], "c": [farad], "lc": [henry, farad], "r": [None], "lcc": [henry, farad, farad], "lcl": [henry, farad, henry],
              "eqa": [henry, None, farad], "eqb": [henry, None, farad], "ue": [None]}[kind]
    insert(s, kind, number, *(value(s) if value else d.spread(5, 500) for value in values))


def typed_circuit(s):
    d = s.draw
    microwave = s.microwave = d.chance(0.3)
    s.edge = d.spread(0.5, 900) * s.hertz if s.hertz > 1 else d.spread(30, 3e9)
    s.choose("Analysis", "Filter", "New")
    s.set("analysis_kind", "Microwave" if microwave else "Passive LC")
    s.set("analysis_type", d.one("Lowpass", "Highpass", "Bandpass"))
    s.sets(lower_passband=s.frequency(s.edge * 0.6), upper_passband=s.frequency(s.edge))
    if microwave:
        s.set("sampling_or_qw", s.frequency(s.edge * d.real(1.5, 4)))
    saved = d.chance(0.2)
    s.set("save_analysis", "yes" if saved else "no")
    s.ok()
    if saved:
        s.line("file", s.new_file("qai"))
    if d.chance(0.3):
        s.choose("Macro", "Start")
        s.line("file", s.new_file("wbt"))
    insert(s, "r", 1, d.one(50, 75, 600))
    branch = 1
    for _ in range(d.whole(1, 9)):
        branch += d.weighted([(6, 1), (2, 2), (1, 3)])
        random_branch(s, branch, microwave)
        if d.chance(0.1):
            random_branch(s, branch, microwave)
    if d.chance(0.7):
        insert(s, "r", branch + d.one(1, 2, 3), d.one(50, 75, 600))
    passive_commands(s)


# Commands of the passive Segment

def title(s):
    s.choose("View", "Change title")
    s.set("title", s.draw.one("Test", "Ein Filter für 7 MHz", "a title that is much longer than what fits into one line of the report, by far"))
    s.ok()


def printing(s):
    d = s.draw
    s.choose("View", "Print")
    to = d.one("Printer", "File", "None")
    s.set("printing_to", to)
    s.ok()
    if to == "File":
        s.line("file", s.new_file("prn"))


def frequency_analysis(s):
    d = s.draw
    s.choose("View", "Frequency")
    radians = 2 * math.pi * s.hertz if d.chance(0.15) else 1
    s.set("frequency_unit", "Hz" if radians == 1 else "rad/sec")
    start = s.frequency(s.edge) * radians * d.one(0, 0, 0.5, 0.8)
    end = s.frequency(s.edge) * radians * d.one(1.0, 1.2, 2, 3)
    s.sets(start=start, end=end)
    if d.chance(0.5):
        s.set("count", d.one(1, 2, 11, 40, 101))
    else:
        s.set("increment", (end - start) / d.whole(2, 60))
    s.sets(inductor_q=d.one(0, 0, 100, -150, 37.5), capacitor_q=d.one(0, 0, 1000, -500))
    s.ok()
    s.line("answer", "yes" if d.chance(0.5) else "no")
    s.analysed = True


def needs_frequencies(s):
    if not s.analysed and s.draw.chance(0.95):
        frequency_analysis(s)


def time_analysis(s):
    d = s.draw
    s.timed = True
    stop = d.real(2, 30) / s.edge / s.seconds
    s.choose("View", "Time")
    s.sets(start=d.one(0, 0, -stop / 10, stop / 7), stop=stop, step=stop / d.whole(5, 90))
    s.ok()
    s.line("answer", "yes" if d.chance(0.5) else "no")


def frequency_plot(s):
    d = s.draw
    needs_frequencies(s)
    s.choose("View", "Plot", "Frequency")
    curves = ("Loss", "Phase", "Delay", "Return loss", "Real part", "Imaginary part")
    s.sets(y1=d.one(*curves, "None"), y2=d.one(*curves, "None", "None"))
    s.sets(lower=d.one(0, 0, s.frequency(s.edge) * 0.5), upper=d.one(0, 0, s.frequency(s.edge)))
    s.ok()
    s.line("plot", s.new_file("svg"))


def time_plot(s):
    d = s.draw
    if not s.timed and d.chance(0.9):
        time_analysis(s)
    s.choose("View", "Plot", "Time")
    s.sets(y1=d.one("Impulse response", "Step response"), y2=d.one("None", "Impulse response", "Step response"))
    s.ok()
    s.line("plot", s.new_file("svg"))


def to_file(*path):
    extensions = {"Text file": ["txt"], "Pole-zero": ["pz", "dat"], "Frequency": ["tab"], "Time": ["tab"]}[path[-1]]

    def command(s):
        if path[-1] == "Frequency":
            needs_frequencies(s)
        if path[-1] == "Time" and not s.timed:
            time_analysis(s)
        s.choose(*path)
        if s.draw.chance(0.95):
            s.line("file", s.new_file(s.draw.one(*extensions)))
    return command


def transfer_file(s):
    d = s.draw
    s.choose("File", "Transfer")
    type_, other = d.one(("Scompact", "S-parameters"), ("Touchstone", "S-parameters"), ("Spice", "ngspice"), ("SStar", ""),
                         ("PCFilt", ""), ("Matlab", ""))
    s.set("file_type", type_)
    s.set("dialect", other if other and d.chance(0.6) else d.one("Classic", "Classic", "Classic", "ngspice"))
    s.ok()
    s.line("file", s.new_file(d.one("ckt", "ckt", "s2p", "m")))


def save_and_read(s):
    d = s.draw
    name = s.new_file(d.one("qfp", "qfp", "trf"))
    s.choose("File", "Save as")
    s.line("file", name)
    if d.chance(0.6):
        edit(s)
    if d.chance(0.3):
        s.choose("File", "Save")
        s.line("file", s.new_file("qfp"))
    way = d.one("open", "recall", "none")
    if way == "open":
        s.choose("File", "Open")
        s.line("answer", d.one("yes", "yes", "yes", "no"))
        s.line("file", name)
    elif way == "recall":
        s.line("choose", "#130")
        s.line("file", name)
    if way != "none":
        s.line("do", d.one("disp", "show", "list", "prf"))


def edit(s):
    d = s.draw
    branch = d.whole(1, 12)
    kind = d.one("insert", "copy", "change", "change", "delete")
    if kind == "insert":
        random_branch(s, branch, s.microwave)
    elif kind == "copy":
        s.choose("Branch", "Insert")
        s.sets(element="copy", branch=branch, copy_of=d.whole(2, 8))
        s.ok()
    elif kind == "change":
        s.choose("Branch", "Change")
        s.set("branch", branch)
        if branch == 1:
            s.set("first", d.spread(10, 1000))
        elif s.microwave:
            s.sets(first=d.spread(10, 200), second=d.spread(10, 200))
        else:
            s.sets(first=henry(s), second=farad(s))
        s.ok()
    else:
        s.choose("Branch", "Delete")
        s.set("branch", branch)
        s.ok()


def edits_and_undo(s):
    d = s.draw
    if d.chance(0.2):
        s.choose("View", "Suppress")
        s.set("display", d.one("Off", "On"))
        s.ok()
    for _ in range(d.weighted([(5, d.whole(1, 4)), (1, 12)])):
        edit(s)
        s.undone = 0
        while d.chance(0.4):
            again = s.undone > 0 and d.chance(0.6)
            s.undone += -1 if again else 1
            s.line("do", "redo" if again else "undo")
        if d.chance(0.2):
            s.line("do sto")
            edit(s)
            s.line("do rcl")


def resonance(s):
    s.choose("View", "Resonance")
    s.sets(branch=s.draw.whole(1, 9), branch2=s.draw.one(0, 0, s.draw.whole(1, 9)))
    s.ok()


def nonlinearity(s):
    needs_frequencies(s)
    s.choose("View", "Phase nonlinearity")
    s.line("plot", s.new_file("svg"))


def macro(s):
    d = s.draw
    name = s.new_file("wbt")
    s.choose("Macro", "Start")
    s.line("file", name)
    edits_and_undo(s)
    if d.chance(0.8):
        s.choose("Macro", "Stop")
    if d.chance(0.3):
        s.choose("Macro", "Play")
        s.line("file", name)


def word(*words):
    def command(s):
        s.line("do", s.draw.one(*words))
    return command


def verbs(s):
    verb = s.draw.one("table", "plot", "save-report", "dump", "expect", "echo")
    if verb in ("expect", "echo"):
        s.line(verb, '"*** Done ***"')
    else:
        if verb in ("table", "plot"):
            needs_frequencies(s)
        s.line(verb, s.new_file({"table": "csv", "plot": "svg", "save-report": "txt", "dump": "json"}[verb]))


commands = [
    (6, frequency_analysis), (3, time_analysis), (4, frequency_plot), (2, time_plot), (5, edits_and_undo), (4, save_and_read),
    (4, transfer_file), (2, to_file("File", "Text file")), (2, to_file("File", "Pole-zero")), (2, to_file("View", "File", "Frequency")),
    (1, to_file("View", "File", "Time")), (2, resonance), (2, nonlinearity), (2, macro), (1.5, title), (1, printing),
    (5, word("show", "list", "disp", "prf", "sprd")), (0.7, word("sto", "rcl", "undo", "redo")), (4, verbs),
    (0.5, word("squ", "com", "dual", "wave", "tr", "be", "clos", "save")),
]


def passive_commands(s):
    d = s.draw
    for _ in range(d.whole(2, 9)):
        d.weighted(commands)(s)


# Nonsense

def refused(s):
    d = s.draw
    for _ in range(d.whole(2, 6)):
        kind = d.whole(1, 7)
        if kind == 1:
            s.choose("Design", "Filter", "New")
            for _ in range(d.whole(0, 6)):
                s.set(d.one("upper_passband", "lower_passband", "band_edge_loss", "upper_stopband", "upper_stop_loss", "r1", "r2",
                            "fq_or_fs", "multiplier", "zeros_at_infinity", "center_frequency"), d.one(0, -1, 1, 1000, 2000, 60, "x"))
                s.set(d.one("filter_kind", "filter_type", "passband_type", "stopband_type", "bandpass_form"), d.whole(0, 5))
            s.ok()
            if d.chance(0.5):
                s.line("cancel")
        elif kind == 2:
            s.choose("Design", "FIR Filter", "New")
            s.sets(filter_length=d.one(-1, 0, 513, 31), design_method=d.one("Windowed", "Equal ripple"), fir_type=d.whole(1, 3))
            s.ok()
        elif kind == 3:
            s.line("do", d.one("freq", "show", "undo", "nosuch"))
        elif kind == 4:
            s.line(d.one("answer yes", "file x.qfp", "ok", "cancel", "set r1 50", "row 1 2", "no verb", "expect nothing", "plot x.svg"))
        elif kind == 5:
            s.choose("File", d.one("Recall", "Circuit", "Open"))
            s.line("file", d.one("nothing.qfp", "request.kav", "nothing.trf"))
        elif kind == 6:
            s.line("choose", f"#{d.whole(100, 1300)}")
        else:
            s.choose("Analysis", "Filter", "New")
            s.sets(analysis_kind=d.whole(1, 5), analysis_type=d.whole(1, 6), form=d.whole(1, 2))
            s.ok()


kinds = [
    (34, lambda s: ladder(s, "LC")), (16, lambda s: ladder(s, "Microwave")), (6, transfer_only), (10, digital), (9, fir_form), (2, windowed), (1, typed_fir), (4, delay_form),
    (4, analysis_form), (14, typed_circuit), (5, refused),
]


def design(seed, number):
    """A design alone, as it comes."""
    s = Script(seed, number)
    units(s)
    s.draw.weighted([(40, lambda s: (filter_form(s, "LC"), synthesis_form(s))),
                     (20, lambda s: (filter_form(s, "Microwave"), synthesis_form(s))),
                     (10, lambda s: (filter_form(s, "IIR Digital"), z_step(s))), (30, fir_form)])(s)
    return "\n".join(s.lines) + "\n"


def request(seed, number):
    s = Script(seed, number)
    units(s)
    s.draw.weighted(kinds)(s)
    if s.draw.chance(0.08):
        s.draw.weighted(kinds)(s)
    s.line("dump last.json")
    return "\n".join(s.lines) + "\n"
