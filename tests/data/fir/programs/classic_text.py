"""Writes the classic texts of three filters beside itself: classic_even.f90 (three taps), classic_none.f90 (seven) and
classic_odd.f90 (122 taps, whose first block of data is full). Coefficient i of each is (-1)**i (i + 1)/64."""

import pathlib


def number(x):
    return f"{x:23.16e}".replace("e", "D")


def program(symmetry, m, nt, odd_length):
    coefficients = [(-1) ** i * (i + 1) / 64 for i in range(m)]
    blocks = [coefficients[i : i + 60] for i in range(0, m, 60)]
    symmetric = symmetry < 2
    text = [
        "subroutine fir (x, y, n, ibt)",
        "double precision  coef, x, x1, y, ak, a, trun",
        f"dimension coef({m:3d}),  x1({nt:3d})",
        "double precision c1, c2, c3, c4, c5, c6, c7, c8, c9",
        "dimension c1(60), c2(60), c3(60), c4(60), c5(60), c6(60), &",
        " c7(60), c8(60), c9(32)",
    ]
    text += [f"equivalence (c{b}(1), coef({60 * (b - 1) + 1:3d}))" for b in range(1, len(blocks) + 1)]
    for b, block in enumerate(blocks, 1):
        rows = [", ".join(map(number, block[i : i + 3])) for i in range(0, len(block), 3)]
        if len(block) < 60:
            rows.append(f"{60 - len(block):2d}*0.d0")
        text += [f"data c{b} /" + ",  &\n       ".join(rows) + "/"]
    if symmetric:
        text += [f"data isym /{symmetry}/"]
    text += ["save x1"]
    if symmetric:
        text += ["ak = 1.do", "if ( isym == 1 ) ak = -1.d0"]
    text += ["if (n <= 1) then", f"   do i = 1, {nt:3d}", "      x1(i) = 0.d0", "   end do", "end if"]
    text += [f"do i = 1, {nt:3d}", f"   j = {nt + 1:3d} -i", "   x1(j + 1) = x1(j)", "end do"]
    text += ["x1(1) = x", "y = 0.d0", f"do i = 1, {m:3d}"]
    if symmetric:
        text += [f"   j = {nt + 1:3d} -i", "   a = coef(i)*(x1(i) + ak*x1(j))"]
        text += [f"   if (i == {m:3d}) a = coef(i)*x1(i)"] * odd_length + ["   y = y + trun(a,ibt)"]
    else:
        text += ["   a = coef(i)*x1(i)", "   y = y + trun(a, ibt)"]
    text += ["end do", "return", "end"]
    text += ["function trun ( x, i)", "double precision trun, x, a, b, d", "if (iabs(i) >= 40) then", "   trun = x"]
    text += ["else", "   a = dabs (x)", "   d = 0.5d0", "   if ( i < 0 ) d = 0.d0", "   b = 2.d0**iabs (i)"]
    text += ["   n = a*b + d", "   trun = dble (n)/b", "   if ( x < 0.d0 ) trun = -trun", "endif", "return", "end"]
    return "".join(f"      {line}\n" for line in text)


folder = pathlib.Path(__file__).parent
(folder / "classic_even.f90").write_text(program(0, 2, 3, True))
(folder / "classic_none.f90").write_text(program(2, 7, 7, False))
(folder / "classic_odd.f90").write_text(program(1, 61, 122, False))
