// The commands that make forms: what they refuse, and in which words.
#include "iir/form_commands.h"

#include "iir/stored_iir.h"
#include "segment/kept_filter.h"
#include "tests/iir/filter_of.h"
#include "tests/iir/iir_room.h"

namespace kavrel {
namespace {

struct FormCommands : testing::Test, IirRoom {
    // What a command says: its boxes, then its lines.
    std::string said(std::string_view word) {
        send(word);
        return boxes() + (window.lines.empty() ? "" : lines());
    }
};

TEST_F(FormCommands, WithoutAFilterOrWhereAFormIsImpossible) {
    for (const auto* word : {"par ", "dir ", "lat ", "allp"})
        EXPECT_EQ(said(word), "Error: Data is unavailable") << word;
    filter = filter_of(1, {}, {});
    EXPECT_EQ(said("dir "), "Error: Natural modes unknown, no direct form");
    EXPECT_EQ(said("lat "), " ** Numerical problems, lattice is unavailable **\n");
    filter = filter_of(2, {{0, 1}}, {{0.5, 0}, {-0.5, 0}});
    EXPECT_EQ(said("allp"), "Error: Not symmetrical, no allpass form");
    const IirFilter before = filter;
    EXPECT_EQ(said("lat "), " Unstable design. n =  -1\n ** Numerical problems, lattice is unavailable **\n");
    EXPECT_EQ(fingerprint(filter), fingerprint(before));
    filter.kind = DigitalKind::delay;
    EXPECT_EQ(said("lat "), "Error: Delay line or equalizer\nNo lattice implementation");
    filter = filter_of(0.1, {}, {{1, 0}, {0.5, 0}});
    EXPECT_EQ(said("lat "), " No convergence. n =   0\n ** Numerical problems, lattice is unavailable **\n");
}

TEST_F(FormCommands, AFormThatIsThereStaysAndNothingIsToBeUndone) {
    filter = filter_of(0.4, {{-1, 0}}, {{0.5, 0}, {0.1, 0.3}});
    filter.allpass.ALLPASS_OK = true;
    filter.allpass.LARR(1) = 1;
    const std::pair<const char*, const char*> words[] = {{"par ", " Parallel form already exists\n"},
                                                         {"dir ", " Direct form already exists\n"},
                                                         {"lat ", " Lattice form already exists\n"},
                                                         {"allp", " Allpass form already exists\n"}};
    for (const auto& [word, exists] : words) {
        send(word);
        EXPECT_EQ(boxes(), "") << word;
        const IirFilter made = filter;
        EXPECT_EQ(said(word), exists);
        EXPECT_TRUE(filter.parallel.AL == made.parallel.AL && filter.direct.ZNUM == made.direct.ZNUM &&
                    filter.lattice.GMTAP == made.lattice.GMTAP && filter.allpass.TA1 == made.allpass.TA1);
    }
    EXPECT_TRUE(is_there(filter.parallel) && is_there(filter.direct) && is_there(filter.lattice) &&
                is_there(filter.allpass));
    EXPECT_FALSE(filter.Modified);
    EXPECT_EQ(cannot_undo(state.kept), "Nothing to undo");
}

}  // namespace
}  // namespace kavrel
