#include "iir/section_diagram.h"

#include <span>

#include "iir/coefficient_text.h"
#include "shell/edit.h"
#include "shell/edited.h"
#include "shell/fixed_text.h"

namespace kavrel {

namespace {

// In a drawing thirteen equal capitals are the box of a coefficient, of thirteen equal small letters that of its name:
// A is the one of x, C and E those of x one and two samples ago, B and D those of y, F the front-end multiplier.
// Triangles multiply by them; >, < and ^ say where a sum gets what it adds.
constexpr char front = 'F';

// One chain of delays, fed by v = x + B v1 + D v2, whose taps are summed: y = A v + C v1 + E v2.
constexpr std::string_view summed_output[] = {
    "  FFFFFFFFFFFFF                                    AAAAAAAAAAAAA",
    " x ─────►────────────>(+)──────────────┬─────────────────►───────────>(+)──── y",
    "  fffffffffffff        ^               │           aaaaaaaaaaaaa       ^",
    "                       │             ┌─┴─┐                             │",
    "                       │             │ -1│                             │",
    "                       │             │z  │                             │",
    "                       │             └─┬─┘                             │",
    "                       │ BBBBBBBBBBBBB │           CCCCCCCCCCCCC       │",
    "                      (+)<──────◄──────┼─────────────────►───────────>(+)",
    "                       ^ bbbbbbbbbbbbb │           ccccccccccccc       ^",
    "                       │             ┌─┴─┐                             │",
    "                       │             │ -1│                             │",
    "                       │             │z  │                             │",
    "                       │             └─┬─┘                             │",
    "                       │ DDDDDDDDDDDDD │           EEEEEEEEEEEEE       │",
    "                       └────────◄──────┴─────────────────►─────────────┘",
    "                         ddddddddddddd             eeeeeeeeeeeee",
};

// Adders between the delays, each fed by x and by y: y = A x + s1, s1 one sample late of C x + B y + s2, s2 one sample
// late of E x + D y.
constexpr std::string_view multiple_input[] = {
    "  FFFFFFFFFFFFF         AAAAAAAAAAAAA",
    " x ─────►─────────┬───────────►────────────>(+)──────────────────────┬──── y",
    "  fffffffffffff   │     aaaaaaaaaaaaa        ^                       │",
    "                  │                        ┌─┴─┐                     │",
    "                  │                        │ -1│                     │",
    "                  │                        │z  │                     │",
    "                  │                        └─┬─┘                     │",
    "                  │     CCCCCCCCCCCCC        │     BBBBBBBBBBBBB     │",
    "                  ├───────────►────────────>(+)<─────────◄───────────┤",
    "                  │     ccccccccccccc        ^     bbbbbbbbbbbbb     │",
    "                  │                        ┌─┴─┐                     │",
    "                  │                        │ -1│                     │",
    "                  │                        │z  │                     │",
    "                  │                        └─┬─┘                     │",
    "                  │     EEEEEEEEEEEEE        │     DDDDDDDDDDDDD     │",
    "                  └───────────►────────────>(+)<─────────◄───────────┘",
    "                        eeeeeeeeeeeee              ddddddddddddd",
};

struct Box {
    char letter;
    std::string_view name;
    double value;
};

struct Section {
    std::string_view form;
    std::vector<Box> boxes;
    CoefficientText text;
};

Section cascade_section(const CascadeForm& c, int k, DisplayFormat format);
Section parallel_section(const ParallelForm& p, int k, DisplayFormat format);
std::string drawn(std::string_view row, const Section& section);
std::string centred(std::string_view text);

}  // namespace

Lines section_diagram(const IirFilter& filter, SectionOf form, int k, DiagramChoice diagram, DisplayFormat format) {
    const bool parallel = form == SectionOf::parallel;
    if (k < 1 || k > (parallel ? filter.parallel.NPAR : section_count(filter.cascade))) return {};
    const Section section =
        parallel ? parallel_section(filter.parallel, k, format) : cascade_section(filter.cascade, k, format);
    Lines lines{"", edited<"(' Section no. ',I2,2X,A)">(k, section.form)};
    if (const std::string note = section.text.note(); !note.empty()) lines.push_back(' ' + note);
    lines.emplace_back("");
    const bool inputs = diagram == DiagramChoice::multiple_input;
    for (const auto row : inputs ? std::span<const std::string_view>(multiple_input) : summed_output) {
        lines.push_back(drawn(row, section));
    }
    return lines;
}

namespace {

// A factor that there is none of is 1, but for the section's scale factor.
Section cascade_section(const CascadeForm& c, int k, DisplayFormat format) {
    const bool has_n = k <= c.NNUM, has_d = k <= c.NDEN;
    Section section{"(cascade) ",
                    {{'A', "SC", c.SC(k)},
                     {'B', "-C1D", has_d ? -c.C1D(k) : 0},
                     {'C', "C1N", has_n ? c.C1N(k) : 0},
                     {'D', "-C2D", has_d ? -c.C2D(k) : 0},
                     {'E', "C2N", has_n ? c.C2N(k) : 0}},
                    text_of(c, format)};
    section.boxes.push_back({front, k == 1 ? "CK" : "", c.CK});
    return section;
}

Section parallel_section(const ParallelForm& p, int k, DisplayFormat format) {
    return {"(parallel)",
            {{front, "", 0},
             {'A', "AL", p.AL(k)},
             {'B', "-GA", -p.GA(k)},
             {'C', "BE", p.BE(k)},
             {'D', "-DE", -p.DE(k)},
             {'E', "0", 0}},
            text_of(p, format)};
}

// A box without a name is none: neither is its triangle there.
std::string drawn(std::string_view row, const Section& section) {
    std::string line(row);
    const auto put = [&](std::string_view place, std::string_view text) {
        if (const std::size_t at = line.find(place); at != std::string::npos) line.replace(at, place.size(), text);
    };
    for (const Box& box : section.boxes) {
        const std::string value = box.letter == front ? edited<"(1P,E13.6)">(box.value) : section.text(box.value + 0.0);
        const std::string blank = edit_x(coefficient_width);
        put(std::string(coefficient_width, box.letter), box.name.empty() ? blank : value);
        put(std::string(coefficient_width, static_cast<char>(box.letter - 'A' + 'a')), centred(box.name));
        if (box.name.empty()) put(" x ─────►", " x ──────");
    }
    return std::string(trim_right(line));
}

std::string centred(std::string_view text) {
    const int before = (coefficient_width - static_cast<int>(text.size())) / 2;
    std::string box = edit_x(before) + std::string(text);
    box.resize(coefficient_width, ' ');
    return box;
}

}  // namespace

}  // namespace kavrel
