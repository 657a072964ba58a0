// Factors on the way through menus, forms and files.
#include <gtest/gtest.h>

#include "fir/factors.h"
#include "forms/fir_analysis_form.h"
#include "tests/support/fake_window.h"
#include "tests/support/scratch_folder.h"
#include "workbench/events.h"
#include "workbench/start_up.h"

namespace kavrel {
namespace {

TEST(FirFactorsRoad, FactorsLeaveAsAFileThatListsTakeAndAsFunctionsOfSelectedOnes) {
    const ScratchFolder folder;
    FakeWindow window;
    Workbench bench{window};
    main_program(bench, "", "x");
    const auto send = [&](
                          int item, const std::function<bool(FormSheet&)>& form = [](FormSheet&) { return true; }) {
        window.forms = {form};
        window.boxes.clear();
        dispatch_event(bench, item);
    };
    FirRequest& r = bench.fir_request;
    r.filter_length = 24;
    r.specification_type = FirSpecification::weights;
    r.QUADRUPLETS = {.rows = 2, .cells = {0, 1, 1, 1, 2, 5, 0, 10}};
    send(1031);
    ASSERT_EQ(bench.fir.functions, 1);
    bench.session.TITLE = "Quadratic terms";
    send(1158);
    const FirFactors& factors = bench.fir.factors;
    ASSERT_GT(factors.count, 0);

    window.files = {"out.dat", "out.dat"};
    send(1135);
    EXPECT_EQ(window.boxes, std::vector<std::string>{"Success: *** Done ***"});
    FirAnalysisRequest outside;
    FormSheet(FIR_ZEROS_DLG, &outside, bench.session.units, bench.reporter).read_rows(0);
    ASSERT_EQ(outside.FIR_ZEROS.rows, factors.count);
    for (int k = 1; k <= factors.count; ++k) {
        EXPECT_EQ(outside.FIR_ZEROS(k, 1), factors.A1(k));
        EXPECT_EQ(outside.FIR_ZEROS(k, 2), factors.A2(k));
    }

    const auto select = [&](double serial) {
        send(1150, [&](FormSheet&) {
            bench.fir_command.SERIAL = {.rows = 1, .cells = {serial}};
            return true;
        });
    };
    select(300);
    EXPECT_EQ(window.boxes, std::vector<std::string>{"Warning: Indicated factor not present"});
    const int k = factors.count - 1;
    select(factors.ISER(k));
    ASSERT_EQ(bench.fir.functions, 2);
    EXPECT_EQ(full_response(bench.fir, 2), (std::vector<double>{1, factors.A1(k), factors.A2(k)}));
}

}  // namespace
}  // namespace kavrel
