#include "approximation/design_check.h"

#include "approximation/filter_kinds.h"

namespace kavrel {

namespace {

template <class T>
bool within(T value, T low, T high) {
    return value >= low && value <= high;
}

}  // namespace

bool sound_spec(const FilterSpec& spec) {
    const bool choices = within(spec.filterType, low_pass, delay_equalizer) &&
                         within(spec.passbandType, maximally_flat, sloping_passband) &&
                         within(spec.bandpassType, conventional, impedance_matching) &&
                         within(spec.stopbandType, monotonic_stopband, functional_stopband) &&
                         within(spec.medium, lumped, microwave) && find_kind(spec.implementation) != nullptr;
    return choices && counts_fit(spec) && within(spec.degree, 0, max_degree);
}

}  // namespace kavrel
