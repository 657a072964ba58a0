// The forms of a digital filter at work: one sample in, one sample out, by their difference equations.
//
// A stepper holds the state of one run of one form, at first at rest, and refers to the form. Its arithmetic
// (numeric/quantise.h) makes the products, and some of the sums, in a working word length, and watches the states; its
// values are numbers, or pairs of them, of two runs side by side.
#pragma once

#include <algorithm>
#include <cstddef>

#include "iir/iir_filter.h"
#include "numeric/quantise.h"

namespace kavrel {

// Node 0 is the input times CK, node k the output of section k:
//     node k = SC(k) node(k-1) + C1N(k) node(k-1) z^-1 + C2N(k) node(k-1) z^-2 - C1D(k) node k z^-1 - C2D(k) node k
//     z^-2
template <class Arithmetic = Unquantised>
class CascadeStepper {
public:
    using Value = typename Arithmetic::Value;
    explicit CascadeStepper(const CascadeForm& form, Arithmetic arithmetic = {}) : form_(form), in_(arithmetic) {}

    Value step(Value x) {
        const int sections = section_count(form_);
        Value now = in_.state(in_.product(form_.CK, x));
        for (int k = 1; k <= sections; ++k) {
            const bool numerator = k <= form_.NNUM, denominator = k <= form_.NDEN;
            const double n0 = form_.SC(k), n1 = numerator ? form_.C1N(k) : 0;
            const double n2 = numerator ? form_.C2N(k) : 0, d1 = denominator ? form_.C1D(k) : 0;
            const double d2 = denominator ? form_.C2D(k) : 0;
            const Value sum = in_.product(n0, now) + in_.product(n1, last_(k)) + in_.product(n2, before_(k)) -
                              in_.product(d1, last_(k + 1)) - in_.product(d2, before_(k + 1));
            const Value next = in_.state(in_.quantised(sum));
            before_(k) = last_(k);
            last_(k) = now;
            now = next;
        }
        before_(sections + 1) = last_(sections + 1);
        last_(sections + 1) = now;
        return now;
    }

    [[nodiscard]] const Arithmetic& arithmetic() const { return in_; }

private:
    const CascadeForm& form_;
    [[no_unique_address]] Arithmetic in_;
    Table<Value, iir_section_limit + 1> last_;    // [k + 1] node k one sample ago
    Table<Value, iir_section_limit + 1> before_;  // two samples ago
};

//     node k = AL(k) x + BE(k) x z^-1 - GA(k) node k z^-1 - DE(k) node k z^-2, y = AO x + sum of the nodes
template <class Arithmetic = Unquantised>
class ParallelStepper {
public:
    using Value = typename Arithmetic::Value;
    explicit ParallelStepper(const ParallelForm& form, Arithmetic arithmetic = {}) : form_(form), in_(arithmetic) {}

    Value step(Value x) {
        Value y = in_.product(form_.AO, x);
        for (int k = 1; k <= form_.NPAR; ++k) {
            const Value node = in_.state(in_.product(form_.AL(k), x) + in_.product(form_.BE(k), last_input_) -
                                         in_.product(form_.GA(k), last_(k)) - in_.product(form_.DE(k), before_(k)));
            before_(k) = last_(k);
            last_(k) = node;
            y += node;
        }
        last_input_ = x;
        return y;
    }

    [[nodiscard]] const Arithmetic& arithmetic() const { return in_; }

private:
    const ParallelForm& form_;
    [[no_unique_address]] Arithmetic in_;
    Value last_input_ = {};
    Table<Value, 26> last_;
    Table<Value, 26> before_;
};

//     y = sum ZNUM(i) x z^-(i-1) - sum ZDEN(i + 1) y z^-i
template <class Arithmetic = Unquantised>
class DirectStepper {
public:
    using Value = typename Arithmetic::Value;
    explicit DirectStepper(const DirectForm& form, Arithmetic arithmetic = {}) : form_(form), in_(arithmetic) {}

    Value step(Value x) {
        std::copy_backward(inputs_.begin(), inputs_.end() - 1, inputs_.end());
        inputs_(1) = x;
        Value sum = {};
        for (int i = 1; i <= form_.JN; ++i) sum += in_.product(form_.ZNUM(i), inputs_(i));
        for (int i = 1; i < form_.JD; ++i) sum -= in_.product(form_.ZDEN(i + 1), outputs_(i));
        const Value y = in_.state(in_.quantised(sum));
        std::copy_backward(outputs_.begin(), outputs_.end() - 1, outputs_.end());
        outputs_(1) = y;
        return y;
    }

    [[nodiscard]] const Arithmetic& arithmetic() const { return in_; }

private:
    const DirectForm& form_;
    [[no_unique_address]] Arithmetic in_;
    Table<Value, 51> inputs_;   // [i] i - 1 samples ago
    Table<Value, 51> outputs_;  // [i] i samples ago
};

//     e(1) = x, e(i) = e(i-1) - GMMUL(JT+1-i) z(JT+1-i) z^-1; z(1) = e(JT), z(i) = z(i-1) z^-1 + GMMUL(i-1) e(JT+2-i)
// y is the sum of the taps GMTAP(i) z(i) as the sample before left them: so the output comes one sample late. The first
// sample sets the state that a 1 leaves, z(1) = 1, z(i) = GMMUL(i-1), whatever it is; its output is 0.
template <class Arithmetic = Unquantised>
class LatticeStepper {
public:
    using Value = typename Arithmetic::Value;
    explicit LatticeStepper(const LatticeForm& form, Arithmetic arithmetic = {}) : form_(form), in_(arithmetic) {}

    Value step(Value x) {
        const int taps = form_.JT;
        if (first_) {
            first_ = false;
            node_(1) = Value{} + 1.0;
            for (int i = 2; i <= taps; ++i) node_(i) = Value{} + form_.GMMUL(i - 1);
            return Value{};
        }
        Value sum = {};
        for (int i = 1; i <= taps; ++i) sum += in_.product(form_.GMTAP(i), node_(i));
        Value e = x;
        for (int i = taps; i >= 2; --i) {
            const double k = form_.GMMUL(i - 1);
            const Value last = node_(i - 1);
            e = in_.state(e - in_.product(k, last));
            node_(i) = in_.state(last + in_.product(k, e));
        }
        node_(1) = e;
        return in_.quantised(sum);
    }

    [[nodiscard]] const Arithmetic& arithmetic() const { return in_; }

private:
    const LatticeForm& form_;
    [[no_unique_address]] Arithmetic in_;
    Table<Value, 51> node_;  // [i] z(i)
    bool first_ = true;
};

// One chain of allpass sections; node 0 is the input:
//     node k = A2(k) node(k-1) + A1(k) node(k-1) z^-1 + node(k-1) z^-2 - A1(k) node k z^-1 - A2(k) node k z^-2,
// of first order, with A2(k) = 0, node k = A1(k) node(k-1) + node(k-1) z^-1 - A1(k) node k z^-1.
template <class Arithmetic>
class AllpassChain {
public:
    using Value = typename Arithmetic::Value;
    Value step(Value now, const Table<double, 13>& A1, const Table<double, 13>& A2, int count, Arithmetic& in) {
        for (int k = 1; k <= count; ++k) {
            const double a1 = A1(k), a2 = A2(k);
            const Value next = in.state(a2 == 0 ? in.product(a1, now) + last_(k) - in.product(a1, last_(k + 1))
                                                : in.product(a2, now) + in.product(a1, last_(k)) + before_(k) -
                                                      in.product(a1, last_(k + 1)) - in.product(a2, before_(k + 1)));
            before_(k) = last_(k);
            last_(k) = now;
            now = next;
        }
        before_(count + 1) = last_(count + 1);
        last_(count + 1) = now;
        return now;
    }

private:
    Table<Value, 14> last_;  // [k + 1] node k one sample ago
    Table<Value, 14> before_;
};

// Half the sum of the two chains, or minus half their difference, quantised as a product is.
template <class Arithmetic = Unquantised>
class AllpassStepper {
public:
    using Value = typename Arithmetic::Value;
    AllpassStepper(const AllpassForm& form, AllpassOutput output, Arithmetic arithmetic = {})
        : form_(form), difference_(output == AllpassOutput::difference), in_(arithmetic) {}

    Value step(Value x) {
        const Value a = first_.step(x, form_.TA1, form_.TA2, form_.NTA, in_);
        const Value b = second_.step(x, form_.TB1, form_.TB2, form_.NTB, in_);
        return in_.quantised(difference_ ? -0.5 * (a - b) : 0.5 * (a + b));
    }

    [[nodiscard]] const Arithmetic& arithmetic() const { return in_; }

private:
    const AllpassForm& form_;
    bool difference_;
    [[no_unique_address]] Arithmetic in_;
    AllpassChain<Arithmetic> first_;
    AllpassChain<Arithmetic> second_;
};

}  // namespace kavrel
