#include "iir/fortran_program.h"

#include <fmt/format.h>

#include "shell/edited.h"
#include "shell/fixed_text.h"
#include "shell/shown_text.h"

namespace kavrel {

namespace {

void add_data(const CoefficientTable& table, ProgramLines& lines);
void add_classic_equations(const ProgramInput& input, ProgramLines& lines);
void add_classic_quantiser(ProgramLines& lines);

void add_standard_head(const ProgramInput& input, ProgramLines& lines);
void add_counts(const ProgramInput& input, const std::vector<CoefficientTable>& tables, ProgramLines& lines);
void add_standard_equations(const ProgramInput& input, ProgramLines& lines);

}  // namespace

ProgramLines classic_program(const ProgramInput& input) {
    ProgramLines lines;
    add_classic_equations(input, lines);
    add_classic_quantiser(lines);
    return lines;
}

ProgramLines standard_program(const ProgramInput& input) {
    ProgramLines lines;
    const auto tables = padded_tables(input.filter, input.form);
    add_standard_head(input, lines);
    add_counts(input, tables, lines);
    for (const CoefficientTable& table : tables) add_fortran_array(lines, trim(table.name), table.values);
    add_standard_equations(input, lines);
    add_text(lines, fortran_quantiser());
    lines.emplace_back("end subroutine tim");
    return lines;
}

namespace {

// ---- the classic text ----

// Three values a row, those that are left in rows of their own; then how many places have none.
void add_data(const CoefficientTable& table, ProgramLines& lines) {
    const auto& v = table.values;
    lines.push_back(edited<"(6X,'data ',A,'/ &')">(table.name));
    std::size_t i = 0;
    for (; i + 3 <= v.size(); i += 3) lines.push_back(edited<"(8X,1P,3(E18.11,','),' &')">(v[i], v[i + 1], v[i + 2]));
    for (; i < v.size(); ++i) lines.push_back(edited<"(8X,1P,E18.11,',',' &')">(v[i]));
    const int missing = table.places - static_cast<int>(v.size());
    lines.push_back(missing > 0 ? edited<"(8X,I2,'*0.d0/')">(missing) : "        /");
}

constexpr std::string_view classic_cascade_head = R"(
      subroutine tim(x, y, n, ibt)
      real(len=8) x, y, c1n, c2n, c1d, c2d, ck, sc, ys, zero, yy, trun
      dimension ys(3,26), c1n(25), c2n(25), c1d(25), c2d(25), sc(25)
      save
)";
constexpr std::string_view classic_cascade = R"(
      if(n == 1) then
        nsp1 = nsec + 1
        do j = 1, 2
          do i = 1, 26
          ys(j,i) = zero
          end do
        end do
      else
        ys(3,1) = trun(x*ck,ibt)
        do k = 1, nsec
          yy = (trun(sc(k)*ys(3,k), ibt) + trun(c1n(k)*ys(2,k),ibt), &
          + trun(c2n(k)*ys(1,k),ibt)) - trun(c1d(k)*ys(2,k+1),ibt) &
          - trun(c2d(k)*ys(1,k+1),ibt)
          ys(3,k+1) = trun(yy,ibt)
        end do
        y = ys(3,nsp1)
)";
constexpr std::string_view classic_shift = R"(
        do i = 1, nsp1
          ys(1,i) = ys(2,i)
          ys(2,i) = ys(3,i)
        end do
      end if
      return
      end
)";

constexpr std::string_view classic_parallel_head = R"(
      subroutine tim(x, y, n, ibt)
      real(len=8) x, y, al, be, ga, de, ao, ys, zero, yy, trun
      dimension ys(3,26), al(25), be(25), ga(25), de(25)
      save
)";
constexpr std::string_view classic_parallel = R"(
      if (n == 1) then
        nsp1 = nsec + 1
        do j = 1, 2
          do i = 1, 26
          ys(j,i) = zero
          end do
        end do
      else
        ys(3,1) = x
        do k = 1, nsec
          ys(3,k+1) = trun(al(k)*ys(3,1),ibt) + trun(be(k)*ys(2,1),ibt) &
          - trun(ga(k)*ys(2,k+1),ibt) - trun(de(k)*ys(1,k+1),ibt)
        end do
        yy = trun(ao*ys(3,1),ibt)
        do i = 2, nsp1
          yy = yy + ys(3,i)
        end do
        y = yy
)";

constexpr std::string_view classic_direct_head = R"(
      subroutine tim(x, y, n, ibt)
      real(len=8) znum, zden, xi, yi, x, y, zero, sum, trun
      dimension znum(51), zden(51), xi(52), yi(52)
      save
)";
constexpr std::string_view classic_direct = R"(
      if (n == 1) then
        do i = 1, 52
          xi(i) = zero
          yi(i) = zero
        end do
      else
        sum = zero
        if (n > 52) then
          do i = 1, 51
          yi(i) = yi(i+1)
          xi(i) = xi(i+1)
          end do
          nx = 52
        else
          nx = n
        endif
        xi(nx) = x
        j = min0(jn,nx)
        do i = 1, j
          sum = sum + trun(znum(i)*xi(nx+1-i),ibt)
        end do
        j = min0(jd-1, nx-1)
        if (j > 0) then
          do i = 1, j
          sum = sum - trun(zden(i+1)*yi(nx-i),ibt)
          end do
        endif
        y = trun(sum,ibt)
        yi(nx) = y
      endif
      return
      end
)";

constexpr std::string_view classic_lattice_head = R"(
      subroutine tim(x, y, n, ibt)
      real(len=8) gmul, gtap, x, y, z, z1, sum, zero, one, trun
      dimension gmul(51), gtap(51), e(51), z(51), z1(51)
      save
)";
constexpr std::string_view classic_lattice = R"(
      if (n == 1) then
        do i = 1, 51
          if (i == 1) then
          z(i) = one
          else
          z(i) = gmul(i-1)
          endif
          z1(i) = zero
          e(i) = one
        end do
      else
        sum = zero
        do i = 1, jt
          sum = sum + trun(gtap(i)*z(i),ibt)
        end do
        y = trun(sum,ibt)
        do i = 1, jt
          z1(i) = z(i)
        end do
        e(1) = x
        do i = 2, jt
          e(i) = e(i-1) - trun(gmul(jt+1-i)*z1(jt+1-i),ibt)
        end do
        z(1) = e(jt)
        do i = 2, jt
          z(i) = z1(i-1) + trun(gmul(i-1)*e(jt+2-i),ibt)
        end do
      end if
      return
      end
)";

constexpr std::string_view classic_allpass_head = R"(
      subroutine tim(x, y, n, ibt)
      real(len=8) x, y, ta1, ta2, tb1, tb2, ys, zero, yy, trun
      dimension ys(3,28), ta1(13), ta2(13), tb1(13), tb2(13)
      save
)";
constexpr std::string_view classic_chains = R"(
      n14 = 14
      if (n == 1) then
        do j = 1, 2
          do i = 1, 28
          ys(j,i) = zero
          end do
        end do
      else
        ys(3,1) = x
        ys(3,n14+1) = x
        do k = 1, nta
          if (ta2(k) == zero) then
          ys(3,k+1) = trun(ta1(k)*ys(3,k),ibt) + ys(2,k) - &
          trun(ta1(k)*ys(2,k+1),ibt)
          else
          ys(3,k+1) = trun(ta2(k)*ys(3,k),ibt) + trun(ta1(k)*ys(2,k),ibt) &
          + ys(1,k) - trun(ta1(k)*ys(2,k+1),ibt) - &
          trun(ta2(k)*ys(1,k+1),ibt)
          endif
        end do
        do k = 1, ntb
          k1 = k + n14
          if (tb2(k) == zero) then
          ys(3,k1+1) = trun(tb1(k)*ys(3,k1),ibt) + ys(2,k1) - &
          trun(tb1(k)*ys(2,k1+1),ibt)
          else
          ys(3,k1+1) = trun(tb2(k)*ys(3,k1),ibt) + trun(tb1(k)*ys(2,k1),ibt) &
          + ys(1,k1) - trun(tb1(k)*ys(2,k1+1),ibt) - &
          trun(tb2(k)*ys(1,k1+1),ibt)
          endif
        end do
)";
constexpr std::string_view classic_chains_end = R"(
        y = trun(y,ibt)
        do i = 1, 28
          ys(1,i) = ys(2,i)
          ys(2,i) = ys(3,i)
        end do
      endif
      return
      end
)";

void add_classic_equations(const ProgramInput& input, ProgramLines& lines) {
    const IirFilter& f = input.filter;
    const auto add_head = [&](std::string_view head) {
        add_text(lines, head);
        for (const CoefficientTable& table : coefficient_tables(f, input.form)) add_data(table, lines);
    };
    switch (input.form) {
        case Implementation::cascade:
            add_head(classic_cascade_head);
            lines.push_back(edited<"(6X,'data ck, nsec, zero/',1P,E18.11,',',I2,', 0.d0/')">(f.cascade.CK,
                                                                                             section_count(f.cascade)));
            add_text(lines, classic_cascade);
            return add_text(lines, classic_shift);
        case Implementation::parallel:
            add_head(classic_parallel_head);
            lines.push_back(
                edited<"(6X,'data ao, nsec, zero/',1P,E18.11,',',I2,', 0.d0/')">(f.parallel.AO, f.parallel.NPAR));
            add_text(lines, classic_parallel);
            return add_text(lines, classic_shift);
        case Implementation::direct:
            add_head(classic_direct_head);
            lines.push_back(edited<"(6X,'data jn, jd, zero/',I2,',',I2,',',' 0.d0/')">(f.direct.JN, f.direct.JD));
            return add_text(lines, classic_direct);
        case Implementation::lattice:
            add_head(classic_lattice_head);
            lines.push_back(
                edited<"(6X,'data jm, jt, zero, one/',I2,',',I2,',',' 0.d0, 1.d0/')">(f.lattice.JM, f.lattice.JT));
            return add_text(lines, classic_lattice);
        case Implementation::allpass:
            add_head(classic_allpass_head);
            lines.push_back(edited<"(6X,'data nta, ntb, zero/',I2,',',I2,', 0.d0/')">(f.allpass.NTA, f.allpass.NTB));
            add_text(lines, classic_chains);
            lines.emplace_back(input.difference ? "        y = -0.5d0*(ys(3,nta+1) - ys(3,ntb+1+n14))"
                                                : "        y = 0.5d0*(ys(3,nta+1) + ys(3,ntb+1+n14))");
            return add_text(lines, classic_chains_end);
        case Implementation::natural_modes: break;
    }
}

void add_classic_quantiser(ProgramLines& lines) {
    add_text(lines, R"(
      function trun(x,i)
      real(len=8) trun, x, a, b
      if (iabs(i) >= 40) then
        trun = x
      else
        a = dabs(x)
        d = 0.5
        if (i < 0) d = 0.0
        b = 2.0**iabs(i)
        n = a*b + d
        trun = float(n)/b
        if (x < 0.d0) trun = -trun
      endif
      return
      end
)");
}

// ---- standard Fortran ----

void add_standard_head(const ProgramInput& input, ProgramLines& lines) {
    lines.push_back("! " + shown_text(input.title));
    lines.push_back("! " + form_text(input));
    add_text(lines, input.form == Implementation::lattice ? R"(
! tim(x, y, n, ibt) with n = 1 is the first sample, which sets the state that x = 1 leaves; y stays as it is.
! Each later sample x, with n = 2, 3, ..., gives y, the output one sample late.
)"
                                                          : R"(
! tim(x, y, n, ibt) with n = 1 resets the filter; y stays as it is. Each sample x, with n = 2, 3, ..., gives y.
)");
    add_text(lines, fortran_products);
    add_text(lines, R"(
subroutine tim(x, y, n, ibt)
  implicit none
  double precision, intent(in) :: x
  double precision, intent(inout) :: y
  integer, intent(in) :: n, ibt
)");
}

// The counts, and the coefficient that is no table.
void add_counts(const ProgramInput& input, const std::vector<CoefficientTable>& tables, ProgramLines& lines) {
    const auto count = [&](std::string_view name, std::size_t table) {
        lines.push_back(fmt::format("  integer, parameter :: {} = {}", name, tables[table].values.size()));
    };
    const auto number = [&](std::string_view name, double value) {
        lines.push_back(fmt::format("  double precision, parameter :: {} = {}", name, fortran_decimal(value)));
    };
    switch (input.form) {
        case Implementation::cascade: return count("nsec", 0), number("ck", input.filter.cascade.CK);
        case Implementation::parallel: return count("nsec", 0), number("ao", input.filter.parallel.AO);
        case Implementation::direct: return count("jn", 0), count("jd", 1);
        case Implementation::lattice: return count("jt", 1);
        case Implementation::allpass: return count("nta", 0), count("ntb", 2);
        case Implementation::natural_modes: break;
    }
}

constexpr std::string_view standard_cascade = R"(
  double precision, save :: ys(3, nsec + 1) = 0d0
  double precision :: yy
  integer :: k
  if (n == 1) then
    ys = 0d0
    return
  end if
  ys(3,1) = trun(ck*x, ibt)
  do k = 1, nsec
    yy = trun(sc(k)*ys(3,k), ibt) + trun(c1n(k)*ys(2,k), ibt) + trun(c2n(k)*ys(1,k), ibt) &
      - trun(c1d(k)*ys(2,k+1), ibt) - trun(c2d(k)*ys(1,k+1), ibt)
    ys(3,k+1) = trun(yy, ibt)
  end do
  y = ys(3,nsec+1)
  ys(1:2,:) = ys(2:3,:)
)";

constexpr std::string_view standard_parallel = R"(
  double precision, save :: ys(3, nsec + 1) = 0d0
  integer :: k
  if (n == 1) then
    ys = 0d0
    return
  end if
  ys(3,1) = x
  do k = 1, nsec
    ys(3,k+1) = trun(al(k)*ys(3,1), ibt) + trun(be(k)*ys(2,1), ibt) &
      - trun(ga(k)*ys(2,k+1), ibt) - trun(de(k)*ys(1,k+1), ibt)
  end do
  y = trun(ao*ys(3,1), ibt)
  do k = 1, nsec
    y = y + ys(3,k+1)
  end do
  ys(1:2,:) = ys(2:3,:)
)";

constexpr std::string_view standard_direct = R"(
  double precision, save :: xi(jn) = 0d0, yi(jd - 1) = 0d0
  double precision :: yy
  integer :: i
  if (n == 1) then
    xi = 0d0
    yi = 0d0
    return
  end if
  xi(2:jn) = xi(1:jn-1)
  xi(1) = x
  yy = 0d0
  do i = 1, jn
    yy = yy + trun(znum(i)*xi(i), ibt)
  end do
  do i = 1, jd - 1
    yy = yy - trun(zden(i+1)*yi(i), ibt)
  end do
  y = trun(yy, ibt)
  yi(2:jd-1) = yi(1:jd-2)
  yi(1) = y
)";

constexpr std::string_view standard_lattice = R"(
  double precision, save :: z(jt) = 0d0
  double precision :: e, last, yy
  integer :: i
  if (n == 1) then
    z(1) = 1d0
    z(2:jt) = gmul(1:jt-1)
    return
  end if
  yy = 0d0
  do i = 1, jt
    yy = yy + trun(gtap(i)*z(i), ibt)
  end do
  e = x
  do i = jt, 2, -1
    last = z(i-1)
    e = e - trun(gmul(i-1)*last, ibt)
    z(i) = last + trun(gmul(i-1)*e, ibt)
  end do
  z(1) = e
  y = trun(yy, ibt)
)";

constexpr std::string_view standard_allpass = R"(
  double precision, save :: ya(3, nta + 1) = 0d0, yb(3, ntb + 1) = 0d0
  integer :: k
  if (n == 1) then
    ya = 0d0
    yb = 0d0
    return
  end if
  ya(3,1) = x
  yb(3,1) = x
)";
constexpr std::string_view standard_chain = R"(
  do k = 1, nta
    if (abs(ta2(k)) > 0d0) then
      ya(3,k+1) = trun(ta2(k)*ya(3,k), ibt) + trun(ta1(k)*ya(2,k), ibt) + ya(1,k) &
        - trun(ta1(k)*ya(2,k+1), ibt) - trun(ta2(k)*ya(1,k+1), ibt)
    else
      ya(3,k+1) = trun(ta1(k)*ya(3,k), ibt) + ya(2,k) - trun(ta1(k)*ya(2,k+1), ibt)
    end if
  end do
)";

void add_standard_equations(const ProgramInput& input, ProgramLines& lines) {
    switch (input.form) {
        case Implementation::cascade: return add_text(lines, standard_cascade);
        case Implementation::parallel: return add_text(lines, standard_parallel);
        case Implementation::direct: return add_text(lines, standard_direct);
        case Implementation::lattice: return add_text(lines, standard_lattice);
        case Implementation::allpass:
            add_text(lines, standard_allpass);
            add_text(lines, standard_chain);
            add_text(lines, of_second_chain(standard_chain));
            lines.emplace_back(input.difference ? "  y = trun(-0.5d0*(ya(3,nta+1) - yb(3,ntb+1)), ibt)"
                                                : "  y = trun(0.5d0*(ya(3,nta+1) + yb(3,ntb+1)), ibt)");
            return add_text(lines, R"(
  ya(1:2,:) = ya(2:3,:)
  yb(1:2,:) = yb(2:3,:)
)");
        case Implementation::natural_modes: break;
    }
}

}  // namespace

}  // namespace kavrel
