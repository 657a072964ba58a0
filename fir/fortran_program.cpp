#include "fir/fortran_program.h"

#include <algorithm>

#include <fmt/format.h>

#include "shell/shown_text.h"

namespace kavrel {

namespace {

constexpr std::size_t most_coefficients = 512, block_size = 60, last_block_size = 32;

void add_classic_data(const FirProgramInput& input, ProgramLines& lines);
std::string classic_equations(const FirProgramInput& input);
void add_classic_quantiser(ProgramLines& lines);
void add_standard_equations(const FirProgramInput& input, ProgramLines& lines);

}  // namespace

Refusal classic_program_refusal(const FirProgramInput& input) {
    if (input.coefficients().size() <= most_coefficients) return {};
    return {"Classic text has no room for more than 512 coefficients", "dialect"};
}

std::string_view classic_program_note(const FirProgramInput& input) {
    const bool short_of_cells = input.shape().symmetry == FirSymmetry::odd && input.shape().taps % 2 != 0;
    return short_of_cells ? " Classic text: odd symmetry of odd length, its delay line is two cells short" : "";
}

ProgramLines classic_program(const FirProgramInput& input) {
    ProgramLines lines;
    add_classic_data(input, lines);
    add_text(lines, classic_equations(input));
    add_classic_quantiser(lines);
    return lines;
}

ProgramLines standard_program(const FirProgramInput& input) {
    ProgramLines lines = {"! " + shown_text(input.title), "! " + function_text(input)};
    add_text(lines, R"(
! fir(x, y, n, ibt) with n = 1 clears the delay line first. Each sample x, with n = 1, 2, ..., gives y.
)");
    add_text(lines, fortran_products);
    add_text(lines, R"(
subroutine fir(x, y, n, ibt)
  implicit none
  double precision, intent(in) :: x
  double precision, intent(out) :: y
  integer, intent(in) :: n, ibt
)");
    add_fortran_array(lines, "coef", input.coefficients());
    add_standard_equations(input, lines);
    add_text(lines, fortran_quantiser());
    lines.emplace_back("end subroutine fir");
    return lines;
}

namespace {

// ---- the classic text ----

// Cells of its delay line.
int classic_cells(const FirProgramInput& input) {
    const int m = static_cast<int>(input.coefficients().size());
    return input.has_symmetry() ? 2 * m - input.shape().taps % 2 : m;
}

// Three values a row; then how many places of the block have none.
void add_block(std::span<const double> values, std::size_t places, std::size_t number, ProgramLines& lines) {
    const bool full = values.size() == places;
    for (std::size_t i = 0; i < values.size(); i += 3) {
        std::string row = i == 0 ? fmt::format("      data c{} /", number) : "       ";
        const auto in_row = values.subspan(i, std::min<std::size_t>(3, values.size() - i));
        for (const double& value : in_row) {
            row += fmt::format("{}{:>23}", &value == in_row.data() ? "" : ", ", fortran_decimal(value));
        }
        const bool closes = full && i + 3 >= values.size();
        lines.push_back(row + (closes ? "/" : ",  &"));
    }
    if (!full) lines.push_back(fmt::format("       {:2}*0.d0/", places - values.size()));
}

void add_classic_data(const FirProgramInput& input, ProgramLines& lines) {
    const auto coefficients = input.coefficients();
    const std::size_t m = coefficients.size(), blocks = (m + block_size - 1) / block_size;
    add_text(lines, R"(
      subroutine fir (x, y, n, ibt)
      double precision  coef, x, x1, y, ak, a, trun
)");
    lines.push_back(fmt::format("      dimension coef({:3}),  x1({:3})", m, classic_cells(input)));
    add_text(lines, R"(
      double precision c1, c2, c3, c4, c5, c6, c7, c8, c9
      dimension c1(60), c2(60), c3(60), c4(60), c5(60), c6(60), &
       c7(60), c8(60), c9(32)
)");
    for (std::size_t b = 1; b <= blocks; ++b) {
        lines.push_back(fmt::format("      equivalence (c{}(1), coef({:3}))", b, block_size * (b - 1) + 1));
    }
    for (std::size_t b = 1; b <= blocks; ++b) {
        const std::size_t first = block_size * (b - 1), places = b == 9 ? last_block_size : block_size;
        add_block(coefficients.subspan(first, std::min(places, m - first)), places, b, lines);
    }
    if (input.has_symmetry()) {
        lines.push_back(fmt::format("      data isym /{}/", static_cast<int>(input.shape().symmetry)));
    }
}

constexpr std::string_view classic_sign = R"(
      ak = 1.do
      if ( isym == 1 ) ak = -1.d0
)";
constexpr std::string_view classic_delay = R"(
      if (n <= 1) then
         do i = 1, CELLS
            x1(i) = 0.d0
         end do
      end if
      do i = 1, CELLS
         j = BEYOND -i
         x1(j + 1) = x1(j)
      end do
      x1(1) = x
      y = 0.d0
      do i = 1, COUNT
)";
constexpr std::string_view classic_pair = R"(
         j = BEYOND -i
         a = coef(i)*(x1(i) + ak*x1(j))
)";
constexpr std::string_view classic_middle = R"(
         if (i == COUNT) a = coef(i)*x1(i)
)";
constexpr std::string_view classic_sum = R"(
         y = y + trun(a,ibt)
)";
constexpr std::string_view classic_tap = R"(
         a = coef(i)*x1(i)
         y = y + trun(a, ibt)
)";

std::string classic_equations(const FirProgramInput& input) {
    const bool symmetric = input.has_symmetry();
    std::string text = "\n      save x1";
    const auto add = [&](std::string_view part) { text += part.substr(0, part.size() - 1); };
    if (symmetric) add(classic_sign);
    add(classic_delay);
    if (symmetric) add(classic_pair);
    if (symmetric && input.shape().taps % 2 != 0) add(classic_middle);
    add(symmetric ? classic_sum : classic_tap);
    text += "\n      end do\n      return\n      end\n";
    const int cells = classic_cells(input);
    text = replaced(text, "CELLS", fmt::format("{:3}", cells));
    text = replaced(text, "BEYOND", fmt::format("{:3}", cells + 1));
    return replaced(text, "COUNT", fmt::format("{:3}", input.coefficients().size()));
}

void add_classic_quantiser(ProgramLines& lines) {
    add_text(lines, R"(
      function trun ( x, i)
      double precision trun, x, a, b, d
      if (iabs(i) >= 40) then
         trun = x
      else
         a = dabs (x)
         d = 0.5d0
         if ( i < 0 ) d = 0.d0
         b = 2.d0**iabs (i)
         n = a*b + d
         trun = dble (n)/b
         if ( x < 0.d0 ) trun = -trun
      endif
      return
      end
)");
}

// ---- standard Fortran ----

constexpr std::string_view standard_delay = R"(
  double precision, save :: x1(nt) = 0d0
  if (n <= 1) x1 = 0d0
  x1(2:nt) = x1(1:nt-1)
  x1(1) = x
  y = 0d0
)";

// Only loops that run, and what they need.
void add_standard_equations(const FirProgramInput& input, ProgramLines& lines) {
    const auto& [taps, symmetry, word, gain, asked] = input.shape();
    const int pairs = input.pairs();
    const auto add_loop = [&](int last, std::string_view product) {
        lines.push_back(fmt::format("  do i = 1, {}", last));
        lines.push_back(fmt::format("    y = y + trun({}, ibt)", product));
        lines.emplace_back("  end do");
    };
    lines.push_back(fmt::format("  integer, parameter :: nt = {}", taps));
    if (pairs > 0 || symmetry == FirSymmetry::none) lines.emplace_back("  integer :: i");
    add_text(lines, standard_delay);
    if (symmetry == FirSymmetry::none) add_loop(taps, "coef(i)*x1(i)");
    if (pairs > 0) {
        add_loop(pairs, symmetry == FirSymmetry::odd ? "coef(i)*(x1(i) - x1(nt+1-i))" : "coef(i)*(x1(i) + x1(nt+1-i))");
    }
    if (input.has_middle()) lines.push_back(fmt::format("  y = y + trun(coef({0})*x1({0}), ibt)", pairs + 1));
}

}  // namespace

}  // namespace kavrel
