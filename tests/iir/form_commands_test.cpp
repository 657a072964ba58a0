// What the commands that make forms refuse, and in which words.
#include "iir/iir_records.h"
#include "segment/kept_filter.h"
#include "tests/iir/filters.h"
#include "tests/iir/iir_room.h"

namespace kavrel {
namespace {

TEST(FormCommands, WhereAFormIsImpossible) {
    constexpr std::string_view lost = " ** Numerical problems, lattice is unavailable **\n";
    const RootList real_poles = {{0.5, 0}, {-0.5, 0}};
    const struct {
        std::string_view word;
        IirFilter filter;
        std::string what;
    } refusals[] = {
        {"par ", {}, "Error: Data is unavailable"},
        {"dir ", filter_of(1, {}, {}), "Error: Natural modes unknown, no direct form"},
        {"par ", filter_of(1, {{0.3, 1}, {-1, 0}}, {{0.5, 0}}), "Error: More zeros than poles, no parallel form"},
        {"allp", filter_of(2, {{0, 1}}, real_poles), "Error: Not symmetrical, no allpass form"},
        {"lat ", filter_of(1, {{1, 0}}, {}), std::string(lost)},
        {"lat ", filter_of(1, {{0, 1}}, real_poles), " Unstable design. n =  -1\n" + std::string(lost)},  // a tap of 1
        {"lat ", filter_of(1, {{2, 0}}, real_poles), " Unstable design. n =   0\n" + std::string(lost)},  // of -2
        {"lat ", filter_of(0.9, {{0, 1}}, real_poles), ""},
        {"lat ", filter_of(0.1, {}, {{1, 0}, {0.5, 0}}), " No convergence. n =   0\n" + std::string(lost)},
    };
    for (const auto& [word, filter, what] : refusals) {
        IirRoom room;
        room.filter = filter;
        room.send(word);
        EXPECT_EQ(room.boxes() + (what.empty() ? "" : room.lines()), what);
        EXPECT_EQ(room.bytes() == iir_snapshot(filter, ""), !what.empty()) << what;
        if (what.empty()) room.filter.kind = DigitalKind::delay, room.filter.lattice = {}, room.send(word);
        if (what.empty()) {
            EXPECT_EQ(room.boxes(), "Error: Delay line or equalizer\nNo lattice implementation");
        }
    }
}

}  // namespace
}  // namespace kavrel
