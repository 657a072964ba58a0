// The steppers against the difference equations written out on whole histories, to the last bit, with rounded products.
#include "iir/steppers.h"

#include <gtest/gtest.h>

#include "tests/iir/filters.h"

namespace kavrel {
namespace {

struct Rounded : Unquantised {
    [[nodiscard]] double quantised(double v) const { return std::nearbyint(v * 65536) / 65536; }
    [[nodiscard]] double product(double c, double v) const { return quantised(c * v); }
};
double q(double v) { return Rounded().quantised(v); }

// A signal from its first sample on; 0 before.
struct Signal : std::vector<double> {
    using std::vector<double>::vector;
    [[nodiscard]] double ago(std::size_t n, int back) const {
        return n < std::size_t(back) ? 0 : at(n - std::size_t(back));
    }
};

// One sample behind the other, of the output so far.
template <class Equation>
Signal run(std::size_t samples, const Equation& equation) {
    Signal y;
    for (std::size_t n = 0; n < samples; ++n) y.push_back(equation(n, y));
    return y;
}

Signal cascade_by_hand(const CascadeForm& c, const Signal& x) {
    Signal in = run(x.size(), [&](std::size_t n, const Signal&) { return q(x[n] * c.CK); });
    for (int k = 1; k <= std::max(c.NNUM, c.NDEN); ++k) {
        in = run(x.size(), [&](std::size_t n, const Signal& out) {
            double own = q(c.SC(k) * in[n]);
            if (k <= c.NNUM) own = own + q(c.C1N(k) * in.ago(n, 1)) + q(c.C2N(k) * in.ago(n, 2));
            return q(k <= c.NDEN ? own - q(c.C1D(k) * out.ago(n, 1)) - q(c.C2D(k) * out.ago(n, 2)) : own);
        });
    }
    return in;
}

Signal parallel_by_hand(const ParallelForm& p, const Signal& x) {
    Signal y = run(x.size(), [&](std::size_t n, const Signal&) { return q(p.AO * x[n]); });
    for (int k = 1; k <= p.NPAR; ++k) {
        const Signal node = run(x.size(), [&](std::size_t n, const Signal& out) {
            return q(p.AL(k) * x[n]) + q(p.BE(k) * x.ago(n, 1)) - q(p.GA(k) * out.ago(n, 1)) -
                   q(p.DE(k) * out.ago(n, 2));
        });
        for (std::size_t n = 0; n < x.size(); ++n) y[n] += node[n];
    }
    return y;
}

Signal direct_by_hand(const DirectForm& d, const Signal& x) {
    return run(x.size(), [&](std::size_t n, const Signal& y) {
        double sum = 0;
        for (int i = 0; i < d.JN; ++i) sum += q(d.ZNUM(i + 1) * x.ago(n, i));
        for (int i = 1; i < d.JD; ++i) sum -= q(d.ZDEN(i + 1) * y.ago(n, i));
        return q(sum);
    });
}

Signal lattice_by_hand(const LatticeForm& l, const Signal& x) {
    Table<double, 52> z, z1, e;
    z(1) = 1;
    for (int i = 2; i <= 51; ++i) z(i) = l.GMMUL(i - 1);
    return run(x.size(), [&](std::size_t n, const Signal&) {
        double sum = 0;
        for (int i = 1; n > 0 && i <= l.JT; ++i) sum += q(l.GMTAP(i) * z(i));
        z1 = z;
        e(1) = x[n];
        for (int i = 2; n > 0 && i <= l.JT; ++i) e(i) = e(i - 1) - q(l.GMMUL(l.JT + 1 - i) * z1(l.JT + 1 - i));
        if (n > 0) z(1) = e(l.JT);
        for (int i = 2; n > 0 && i <= l.JT; ++i) z(i) = z1(i - 1) + q(l.GMMUL(i - 1) * e(l.JT + 2 - i));
        return q(sum);
    });
}

Signal chain_by_hand(const Table<double, 13>& A1, const Table<double, 13>& A2, int count, Signal in) {
    for (int k = 1; k <= count; ++k) {
        const double a1 = A1(k), a2 = A2(k);
        in = run(in.size(), [&](std::size_t n, const Signal& out) {
            return a2 == 0 ? q(a1 * in[n]) + in.ago(n, 1) - q(a1 * out.ago(n, 1))
                           : q(a2 * in[n]) + q(a1 * in.ago(n, 1)) + in.ago(n, 2) - q(a1 * out.ago(n, 1)) -
                                 q(a2 * out.ago(n, 2));
        });
    }
    return in;
}

template <class Stepper>
void expect_same(Stepper stepper, const Signal& x, const Signal& truth, const char* form) {
    for (std::size_t n = 0; n < x.size(); ++n) ASSERT_EQ(stepper.step(x[n]), truth[n]) << form << " sample " << n;
}

TEST(Steppers, AreTheirEquationsToTheLastBit) {
    RandomNumbers random(94);
    for (int degree = 1; degree <= 24; ++degree) {
        IirFilter filter = random_filter(random, degree);
        make_forms(filter);
        for (int k = 1; k <= section_count(filter.cascade); ++k) filter.cascade.SC(k) = random.between(0.5, 2);
        AllpassForm chains;
        chains.NTA = random.integer(1, 13), chains.NTB = random.integer(1, 13);
        for (auto* table : {&chains.TA1, &chains.TB1, &chains.TA2, &chains.TB2})
            for (double& value : *table) value = random.between(-0.5, 0.5);
        for (int k = 1; k <= 13; k += random.integer(1, 3)) chains.TA2(k) = chains.TB2(14 - k) = 0;
        Signal x;
        for (int n = 0; n < 120; ++n) x.push_back(random.between(-1, 1));
        const Signal a = chain_by_hand(chains.TA1, chains.TA2, chains.NTA, x);
        const Signal b = chain_by_hand(chains.TB1, chains.TB2, chains.NTB, x);
        const Signal sum = run(x.size(), [&](std::size_t n, const Signal&) { return q(0.5 * (a[n] + b[n])); });
        const Signal difference = run(x.size(), [&](std::size_t n, const Signal&) { return q(-0.5 * (a[n] - b[n])); });
        expect_same(CascadeStepper<Rounded>(filter.cascade), x, cascade_by_hand(filter.cascade, x), "cascade");
        expect_same(ParallelStepper<Rounded>(filter.parallel), x, parallel_by_hand(filter.parallel, x), "parallel");
        expect_same(DirectStepper<Rounded>(filter.direct), x, direct_by_hand(filter.direct, x), "direct");
        expect_same(LatticeStepper<Rounded>(filter.lattice), x, lattice_by_hand(filter.lattice, x), "lattice");
        expect_same(AllpassStepper<Rounded>(chains, AllpassOutput::sum), x, sum, "sum");
        expect_same(AllpassStepper<Rounded>(chains, AllpassOutput::difference), x, difference, "difference");
    }
}

}  // namespace
}  // namespace kavrel
