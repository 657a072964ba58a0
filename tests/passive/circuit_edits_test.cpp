// Edits of the whole circuit: what becomes of the design that it came from.
#include <cmath>
#include <numbers>

#include "approximation/s_plane.h"
#include "passive/circuit_request_check.h"
#include "tests/passive/passive_room.h"
#include "tests/support/circuit_literal.h"

namespace kavrel {
namespace {

struct WholeCircuit : testing::Test, PassiveRoom {
    // 10 log10(1 + w^6), and the design that it is of: 3 dB at 1 rad/s, 18 dB from 2 rad/s on.
    void designed_butterworth() {
        filter = {};
        butterworth();
        filter.designed = true;
        FilterSpec& spec = filter.spec;
        spec.upperPassEdge = 0.5 / std::numbers::pi;
        spec.upperStopEdge = 1 / std::numbers::pi;
        spec.bandEdgeLoss = 3.0103;
        spec.stopbandLoss = 18;
        spec.sourceResistance = spec.loadResistance = 1;
        filter.background.request = spec;
        filter.circuit.fb = filter.circuit.fnorm = spec.upperPassEdge;
        TransferFunction& t = filter.transfer;
        t.poleCount = 3;
        t.normFrequency = t.level = 1;
        for (int i = 1; i <= 3; ++i) {
            t.POLES_RE(i) = i == 3 ? -1 : -0.5;
            t.POLES_IM(i) = i == 3 ? 0 : (i == 1 ? 1 : -1) * std::sqrt(0.75);
        }
    }
    [[nodiscard]] std::string check() const {
        Unwatched watcher;
        std::string text;
        for (const CheckRow& row : check_circuit(filter, watcher).rows)
            text += fmt::format("{} {:.4f} {:.4f}; ", row.what, row.asked, row.reached);
        return text;
    }
};

TEST_F(WholeCircuit, KeepsItsRequestWhenItIsScaledOrTurned) {
    designed_butterworth();
    const std::string met = check();
    ASSERT_EQ(met, "pass band 3.0103 3.0103; stopband 18.0000 18.1291; terminations 1.0000 1.0000; ");
    for (const std::string_view word : {"rs  ", "fs  ", "dual", "dual", "flip"}) {
        command.impedance_factor = -75;
        command.frequency_factor = 7;
        send(word);
        EXPECT_EQ(boxes(), "") << word;
        EXPECT_EQ(check(), met) << word;
    }
    EXPECT_DOUBLE_EQ(filter.spec.loadResistance, 75);
    for (const double hertz : {0.3, 1.1, 2.7}) {
        const double w = 2 * std::numbers::pi * hertz / 7;
        EXPECT_NEAR(loss_of_function(filter.spec, filter.transfer, hertz), 10 * std::log10(1 + std::pow(w, 6)), 1e-9);
    }
    EXPECT_NEAR(filter.transfer.POLES_IM(1), 7 * std::sqrt(0.75), 1e-12);
    EXPECT_DOUBLE_EQ(filter.circuit.fnorm, 3.5 / std::numbers::pi);
}

TEST_F(WholeCircuit, OfUnequalTerminationsIsTurnedWithItsRequest) {
    for (const std::string_view word : {"flip", "dual"}) {
        designed_butterworth();
        filter.circuit.VALUE(unpackBranch(filter.circuit, 7).i1) = 2;
        filter.background.request.loadResistance = 2;
        const std::string before = check();
        send(word);
        EXPECT_EQ(check().substr(0, 50), before.substr(0, 50)) << word;
        EXPECT_TRUE(check().ends_with("terminations 0.5000 0.5000; ")) << check();
    }
}

TEST_F(WholeCircuit, OfAnotherClassHasNoRequest) {
    designed_butterworth();
    command.rejected = {.lower = 3, .upper = 2};
    send("be  ");
    EXPECT_EQ(boxes(), "");
    EXPECT_EQ(check(), "");
    send("be  ");
    EXPECT_EQ(boxes(), "Error: Not a lowpass, no band-reject transformation");
    send("undo");
    EXPECT_NE(check(), "");
}

}  // namespace
}  // namespace kavrel
