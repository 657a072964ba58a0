#include "iir/direct_form.h"

#include "numeric/root_set.h"
#include "shell/analysis_result.h"
#include "shell/finite.h"

namespace kavrel {

namespace {

int multiply_out(Wide multiplier, const Table<double, 51>& re, const Table<double, 51>& im, int count,
                 Table<double, 51>& coefficients);

}  // namespace

Refusal makeDirect(IirFilter& filter) {
    const DigitalRoots& roots = filter.roots;
    if (roots.NZ + roots.NP == 0) return no_natural_modes;
    const Wide level = static_cast<Wide>(roots.ZMULT) / static_cast<Wide>(roots.PMULT);
    DirectForm form;
    form.JN = multiply_out(level, roots.ZR, roots.ZI, roots.NZ, form.ZNUM);
    form.JD = multiply_out(1, roots.QR, roots.PI, roots.NP, form.ZDEN);
    if (!all_finite(form.ZNUM, form.ZDEN)) return results_out_of_range;
    filter.direct = form;
    return {};
}

namespace {

// How many coefficients there are. Those of prod(z - root), from the highest power on, are those of prod(1 - root
// z^-1).
int multiply_out(Wide multiplier, const Table<double, 51>& re, const Table<double, 51>& im, int count,
                 Table<double, 51>& coefficients) {
    WideRootSet set;
    set.multiplier = multiplier;
    for (int i = 1; i <= count; ++i) set.append({static_cast<Wide>(re(i)), static_cast<Wide>(im(i))});
    const Polynomial product = expandRoots(set);
    for (int i = 1; i <= count + 1; ++i) coefficients(i) = static_cast<double>(product.re(i));
    return count + 1;
}

}  // namespace

}  // namespace kavrel
