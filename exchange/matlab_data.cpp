#include "exchange/matlab_data.h"

#include "exchange/text_parts.h"
#include "exchange/transfer_polynomials.h"
#include "shell/edit.h"

namespace kavrel {

namespace {

void add_rows(const std::vector<double>& ascending, std::vector<std::string>& lines);

}  // namespace

TransferVerdict matlab_data(const TransferInput& input, const TransferRequest&, std::vector<std::string>& lines) {
    const TransferPolynomials polynomials =
        transfer_polynomials(*input.transfer, input.circuit.kind != CircuitKind::lumped);
    lines = {" % transfer function polynomial data for use with matlab(tm)",
             " % Kavrel title:",
             " %" + title_words(input.title),
             " %",
             " % numerator of h(s):",
             " num = ["};
    add_rows(polynomials.numerator, lines);
    lines.emplace_back(" % denominator of h(s):");
    lines.emplace_back(" denom = [");
    add_rows(polynomials.denominator, lines);
    lines.emplace_back(" % (normalized coefficients in descending order)");
    lines.push_back(line().a(" fnorm =").pe(polynomials.fnorm, 23, 13));
    lines.emplace_back(" % end of kavrel data for matlab");
    return TransferVerdict::written;
}

namespace {

void add_rows(const std::vector<double>& ascending, std::vector<std::string>& lines) {
    for (auto order = ascending.size(); order-- > 0;) {
        lines.push_back(line().x(2).pe(ascending[order], 23, 13).a("   % order=").i(static_cast<long long>(order), 2));
    }
    lines.emplace_back(" ]");
}

}  // namespace

}  // namespace kavrel
