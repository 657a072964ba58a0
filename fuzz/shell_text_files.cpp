// Readers of text files: the settings file, and the rows that a list form reads from a data file.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

#include "shell/field_table.h"
#include "shell/reporter.h"
#include "shell/settings.h"
#include "tests/support/fake_window.h"

namespace {

struct Rows {
    kavrel::FormList<5, 2> list;
};
constexpr kavrel::Column columns[] = {{"Frequency"}, {"Loss (dB)"}};
constexpr kavrel::Field fields[] = {kavrel::list<&Rows::list>("list", "List", columns)};
constexpr kavrel::Form form = kavrel::form_of<Rows>("ROWS_DLG", "Rows", fields, true);

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kavrel;
    const int file = memfd_create("fuzz", 0);
    if (file < 0 || write(file, data, size) != static_cast<ssize_t>(size)) std::abort();
    const std::string path = "/proc/self/fd/" + std::to_string(file);

    UnitSet units;
    const SettingsStatus status = read_settings(path, units);
    if (status == SettingsStatus::damaged && !(units == UnitSet{})) std::abort();
    if (units.frequency_index < 1 || units.frequency_index > 4) std::abort();

    FakeWindow window;
    window.files = {path};
    Journal journal;
    PrintState print;
    Reporter reporter(window, journal, print);
    Rows rows;
    FormSheet(form, &rows, units, reporter).read_rows(0);
    if (rows.list.rows < 0 || rows.list.rows > 5) std::abort();
    if (window.boxes.back() != "Success:  *** Done ***" && rows.list.rows != 0) std::abort();
    close(file);
    return 0;
}
