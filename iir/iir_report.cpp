#include "iir/iir_report.h"

namespace kavrel {

Lines header_lines(const IirFilter&, const UnitSet&) { return {}; }
Lines cascade_table(const CascadeForm&, DisplayFormat) { return {}; }
Lines parallel_table(const ParallelForm&, DisplayFormat) { return {}; }
Lines direct_table(const DirectForm&, DisplayFormat) { return {}; }
Lines lattice_table(const LatticeForm&, DisplayFormat) { return {}; }
Lines allpass_table(const AllpassForm&, DisplayFormat) { return {}; }
Lines cascade_lines(const IirFilter& filter, DisplayFormat format, const UnitSet& units) {
    Lines lines = header_lines(filter, units);
    for (std::string& line : cascade_table(filter.cascade, format)) lines.push_back(std::move(line));
    return lines;
}
Lines factored_lines(const IirFilter&, DisplayFormat) { return {}; }

}  // namespace kavrel
