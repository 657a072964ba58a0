#include "workshop/promise.h"

#include <gtest/gtest.h>

#include "tests/circuit/random_circuits.h"
#include "tests/workshop/two_port.h"
#include "workshop/scaling.h"

namespace kavrel {
namespace {

using testing::CircuitMaker;
using testing::kinds_of;
using testing::nodal_chain;

TEST(Promise, IsBrokenByAValueThatIsOff) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        CircuitMaker maker(seed);
        const auto kind = seed % 3 == 0 ? CircuitKind::microwave : CircuitKind::lumped;
        Circuit before = maker.circuit(kinds_of(kind), 6, seed % 2 == 0);
        before.kind = kind;
        before.fs = 2;
        Circuit scaled = before;
        scale(scaled, 3, 1);
        EXPECT_TRUE(keeps_promise(before, scaled, Promise::loss)) << seed;

        Circuit off = before;
        for (double& value : off.VALUE) value *= 1 + 1e-7;
        EXPECT_FALSE(keeps_promise(before, off, Promise::level)) << seed;
        EXPECT_TRUE(keeps_promise(before, off, Promise::nothing));
    }
}

TEST(Scaling, MovesImpedancesAndFrequenciesOfAllKinds) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        CircuitMaker maker(seed);
        const Circuit before = maker.circuit(kinds_of(CircuitKind::lumped), 6, true);
        Circuit scaled = before;
        scale(scaled, 3, 7);
        const auto a = nodal_chain(before, 0.7L), b = nodal_chain(scaled, 4.9L);
        for (std::size_t i = 0; i < a.size(); ++i) EXPECT_LT(std::abs(a[i] - b[i]), 1e-12L * std::abs(a[i])) << seed;
    }
}

}  // namespace
}  // namespace kavrel
