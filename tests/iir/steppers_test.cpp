// The steppers against the difference equations written out on whole histories, to the last bit, with rounded products.
#include "iir/steppers.h"

#include <gtest/gtest.h>

#include "iir/direct_form.h"
#include "iir/lattice_form.h"
#include "iir/parallel_form.h"
#include "tests/iir/filter_of.h"

namespace kavrel {
namespace {

struct Rounded {
    double operator()(double v) const { return std::nearbyint(v * 65536) / 65536; }
};
constexpr Rounded q;

// A signal from its first sample on; 0 before.
struct Signal : std::vector<double> {
    using std::vector<double>::vector;
    [[nodiscard]] double ago(std::size_t n, std::size_t back) const { return back > n ? 0 : at(n - back); }
};

Signal cascade_by_hand(const CascadeForm& c, const Signal& x) {
    Signal in;
    for (const double v : x) in.push_back(q(v * c.CK));
    for (int k = 1; k <= std::max(c.NNUM, c.NDEN); ++k) {
        const bool zeros = k <= c.NNUM;
        Signal out;
        for (std::size_t n = 0; n < x.size(); ++n) {
            const double own = q(c.SC(k) * in[n]) + q((zeros ? c.C1N(k) : 0) * in.ago(n, 1)) +
                               q((zeros ? c.C2N(k) : 0) * in.ago(n, 2));
            out.push_back(0);
            out[n] = q(k <= c.NDEN ? own - q(c.C1D(k) * out.ago(n, 1)) - q(c.C2D(k) * out.ago(n, 2)) : own);
        }
        in = out;
    }
    return in;
}

Signal parallel_by_hand(const ParallelForm& p, const Signal& x) {
    Signal y;
    for (const double v : x) y.push_back(q(p.AO * v));
    for (int k = 1; k <= p.NPAR; ++k) {
        Signal node(x.size(), 0.0);
        for (std::size_t n = 0; n < x.size(); ++n) {
            node[n] = q(p.AL(k) * x[n]) + q(p.BE(k) * x.ago(n, 1)) - q(p.GA(k) * node.ago(n, 1)) -
                      q(p.DE(k) * node.ago(n, 2));
            y[n] += node[n];
        }
    }
    return y;
}

Signal direct_by_hand(const DirectForm& d, const Signal& x) {
    Signal y;
    for (std::size_t n = 0; n < x.size(); ++n) {
        const int nx = static_cast<int>(n) + 1;
        double sum = 0;
        for (int i = 1; i <= std::min(d.JN, nx); ++i) sum += q(d.ZNUM(i) * x[n + 1 - static_cast<std::size_t>(i)]);
        for (int i = 1; i <= std::min(d.JD - 1, nx - 1); ++i) {
            sum -= q(d.ZDEN(i + 1) * y[n - static_cast<std::size_t>(i)]);
        }
        y.push_back(q(sum));
    }
    return y;
}

Signal lattice_by_hand(const LatticeForm& l, const Signal& x) {
    Table<double, 52> z, z1, e;
    Signal y;
    for (std::size_t n = 0; n < x.size(); ++n) {
        if (n == 0) {
            z(1) = 1;
            for (int i = 2; i <= 51; ++i) z(i) = l.GMMUL(i - 1);
            y.push_back(0);
            continue;
        }
        double sum = 0;
        for (int i = 1; i <= l.JT; ++i) sum += q(l.GMTAP(i) * z(i));
        y.push_back(q(sum));
        z1 = z;
        e(1) = x[n];
        for (int i = 2; i <= l.JT; ++i) e(i) = e(i - 1) - q(l.GMMUL(l.JT + 1 - i) * z1(l.JT + 1 - i));
        z(1) = e(l.JT);
        for (int i = 2; i <= l.JT; ++i) z(i) = z1(i - 1) + q(l.GMMUL(i - 1) * e(l.JT + 2 - i));
    }
    return y;
}

Signal chain_by_hand(const Table<double, 13>& A1, const Table<double, 13>& A2, int count, Signal in) {
    for (int k = 1; k <= count; ++k) {
        Signal out(in.size(), 0.0);
        for (std::size_t n = 0; n < in.size(); ++n) {
            out[n] = A2(k) == 0 ? q(A1(k) * in[n]) + in.ago(n, 1) - q(A1(k) * out.ago(n, 1))
                                : q(A2(k) * in[n]) + q(A1(k) * in.ago(n, 1)) + in.ago(n, 2) - q(A1(k) * out.ago(n, 1)) -
                                      q(A2(k) * out.ago(n, 2));
        }
        in = out;
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
        ASSERT_TRUE(makeParallel(filter).empty() && makeDirect(filter).empty());
        ASSERT_TRUE(makeLattice(filter).outcome == LatticeOutcome::made);
        AllpassForm chains;
        chains.NTA = random.integer(1, 13), chains.NTB = random.integer(1, 13);
        for (int k = 1; k <= 13; ++k) {
            chains.TA1(k) = random.between(-0.5, 0.5), chains.TA2(k) = random.coin() ? random.between(0.1, 0.5) : 0;
            chains.TB1(k) = random.between(-0.5, 0.5), chains.TB2(k) = random.coin() ? random.between(0.1, 0.5) : 0;
        }
        for (int k = 1; k <= section_count(filter.cascade); ++k) filter.cascade.SC(k) = random.between(0.5, 2);
        Signal x;
        for (int n = 0; n < 120; ++n) x.push_back(random.between(-1, 1));
        expect_same(CascadeStepper<Rounded>(filter.cascade), x, cascade_by_hand(filter.cascade, x), "cascade");
        expect_same(ParallelStepper<Rounded>(filter.parallel), x, parallel_by_hand(filter.parallel, x), "parallel");
        expect_same(DirectStepper<Rounded>(filter.direct), x, direct_by_hand(filter.direct, x), "direct");
        expect_same(LatticeStepper<Rounded>(filter.lattice), x, lattice_by_hand(filter.lattice, x), "lattice");
        const Signal a = chain_by_hand(chains.TA1, chains.TA2, chains.NTA, x);
        const Signal b = chain_by_hand(chains.TB1, chains.TB2, chains.NTB, x);
        Signal sum, difference;
        for (std::size_t n = 0; n < x.size(); ++n) {
            sum.push_back(0.5 * (a[n] + b[n]));
            difference.push_back(-0.5 * (a[n] - b[n]));
        }
        expect_same(AllpassStepper<Rounded>(chains, AllpassOutput::sum), x, sum, "sum");
        expect_same(AllpassStepper<Rounded>(chains, AllpassOutput::difference), x, difference, "difference");
    }
}

}  // namespace
}  // namespace kavrel
