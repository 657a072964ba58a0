#include "exchange/s_parameters.h"

#include <numbers>

#include <fmt/format.h>

#include "circuit/chain_analysis.h"
#include "exchange/text_parts.h"

namespace kavrel {

namespace {

void add_head(const Chain& chain, std::string_view title, std::vector<std::string>& lines);

}  // namespace

TransferVerdict s_parameter_lines(const TransferInput& input, const TransferRequest&, std::vector<std::string>& lines) {
    Chain chain;
    if (prepare_chain(input.circuit, input.loss, chain) != ChainVerdict::done) return TransferVerdict::internal_error;
    add_head(chain, input.title, lines);
    const Wide R = chain.R1;
    for (const double f : input.frequencies) {
        ChainMatrix m;
        if (chain_matrix(chain, 2 * std::numbers::pi_v<Wide> * f, m) != PointVerdict::computed) continue;
        const WideComplex b = (1 / R) * m.B;
        const WideComplex c = R * m.C;
        const WideComplex scale = reciprocal(m.A + b + c + m.D);
        const WideComplex through = Wide{2} * scale;
        std::string row = plain_number(f);
        // The two ways through are the same: all elements are reciprocal.
        for (const WideComplex s : {(m.A + b - c - m.D) * scale, through, through, (b - m.A - c + m.D) * scale}) {
            row +=
                fmt::format(" {} {}", plain_number(static_cast<double>(s.re)), plain_number(static_cast<double>(s.im)));
        }
        lines.push_back(std::move(row));
    }
    return TransferVerdict::written;
}

namespace {

void add_head(const Chain& chain, std::string_view title, std::vector<std::string>& lines) {
    if (const std::string words = trimmed_title(title); !words.empty()) lines.push_back(fmt::format("! {}", words));
    lines.emplace_back("! Port 1: source, port 2: load");
    if (chain.R2 != 0) {
        lines.push_back(
            fmt::format("! Terminations in ohm: port 1 {}, port 2 {}", plain_number(chain.R2), plain_number(chain.R1)));
        if (chain.R1 != chain.R2) lines.emplace_back("! Both ports are renormalised to the termination of port 2");
    } else {
        lines.push_back(fmt::format("! Singly terminated: port 2 in {} ohm, port 1 driven by a {}",
                                    plain_number(chain.R1),
                                    chain.loss_class == LossClass::voltage ? "voltage" : "current"));
        lines.emplace_back("! Both ports are normalised to the termination of port 2");
    }
    if (chain.loss.QL != 0 || chain.loss.QC != 0) {
        lines.push_back(
            fmt::format("! Inductor Q {}, capacitor Q {}", plain_number(chain.loss.QL), plain_number(chain.loss.QC)));
    }
    lines.push_back(fmt::format("# HZ S RI R {}", plain_number(chain.R1)));
    lines.emplace_back("! frequency, S11, S21, S12, S22");
}

}  // namespace

}  // namespace kavrel
