#include "iir/allpass_form.h"

namespace kavrel {

namespace {

struct Chain {
    Table<double, 13>& A1;
    Table<double, 13>& A2;
    int& count;

    [[nodiscard]] bool append(double a1, double a2) const {
        if (count == Table<double, 13>::bound) return false;
        ++count, A1(count) = a1, A2(count) = a2;
        return true;
    }
};

}  // namespace

Refusal makeAllpass(IirFilter& filter) {
    const DigitalRoots& roots = filter.roots;
    if (!filter.allpass.ALLPASS_OK) return not_symmetrical;
    AllpassForm form = filter.allpass;
    form.NTA = form.NTB = 0;
    const Chain first{form.TA1, form.TA2, form.NTA}, second{form.TB1, form.TB2, form.NTB};
    for (int i = 1; i <= roots.NP; ++i) {
        const Chain& chain = form.LARR(i) == 1 ? first : second;
        const double re = roots.QR(i), im = roots.PI(i);
        if (!(im == 0 ? chain.append(0 - re, 0) : chain.append(0 - 2 * re, re * re + im * im))) return not_symmetrical;
        if (im != 0) ++i;
    }
    if (!is_there(form)) return not_symmetrical;
    filter.allpass = form;
    return {};
}

}  // namespace kavrel
