// What rows of tests/data/forms cannot say of the delay form.
#include "forms/delay_form.h"

#include <array>

#include <gtest/gtest.h>

#include "shell/reporter.h"
#include "tests/support/fake_window.h"

namespace kavrel {
namespace {

TEST(DelayForm, RefusalsKeepWhatWasEntered) {
    FakeWindow window;
    Journal journal;
    PrintState print;
    Reporter reporter(window, journal, print);
    DelayRequest r;
    r.delay_type = DelayType::equalizer;
    const UnitSet units;
    FormSheet sheet(DELAY_DESIGN_DLG, &r, units, reporter);
    const auto add_rows = [](int count) {
        return [count](FormSheet& list) {
            for (int i = 1; i <= count; ++i) EXPECT_EQ(list.append_row(0, std::array{1.0 * i, 1e-3}), "");
            return true;
        };
    };
    window.forms = {add_rows(3), add_rows(1)};
    sheet.press(static_cast<std::size_t>(find_field(sheet, "Data")));
    EXPECT_EQ(window.boxes, std::vector<std::string>{"Warning: Not enough data"});
    EXPECT_EQ(r.DELAY_DATA.rows, 4) << "the three rows of the first try are still there";
}

}  // namespace
}  // namespace kavrel
