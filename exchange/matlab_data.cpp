#include "exchange/matlab_data.h"

#include "exchange/text_parts.h"
#include "exchange/transfer_polynomials.h"
#include "shell/edited.h"

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
    for (std::string& line : half_factor_lines(*input.transfer, " % ")) lines.push_back(std::move(line));
    lines.push_back(edited<"(' fnorm =',1P,E23.13)">(polynomials.fnorm));
    lines.emplace_back(" % end of kavrel data for matlab");
    return TransferVerdict::written;
}

namespace {

void add_rows(const std::vector<double>& ascending, std::vector<std::string>& lines) {
    for (auto order = ascending.size(); order-- > 0;) {
        lines.push_back(edited<"(2X,1P,E23.13,'   % order=',I2)">(ascending[order], order));
    }
    lines.emplace_back(" ]");
}

}  // namespace

}  // namespace kavrel
