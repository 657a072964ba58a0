#include "segment/kept_filter.h"

#include <filesystem>
#include <set>
#include <sys/resource.h>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "segment/command_table.h"
#include "tests/support/fake_window.h"
#include "tests/support/scratch_folder.h"

namespace kavrel {
namespace {

// The smallest filter: a number, kept with its title in a line that ends in a dot.
struct Number {
    int value = 0;
};

template <char mark>
constexpr Layout<Number> line{
    .bytes = [](const Number& filter,
                const FixedText<80>& title) { return fmt::format("{}{} {}.", mark, filter.value, title.trimmed()); },
    .take =
        [](std::string_view bytes, Number& filter, FixedText<80>& title) {
            const auto blank = bytes.find(' ');
            if (!bytes.starts_with(mark) || !bytes.ends_with('.')) return false;
            filter.value = std::stoi(std::string(bytes.substr(1, blank - 1)));
            title.assign(bytes.substr(blank + 1, bytes.size() - blank - 2));
            return true;
        }};
constexpr StoredForm<Number> forms[] = {{ExtSlot::fir_filter, line<'f'>}, {ExtSlot::lattice, line<'l'>}};
constexpr Keeping<Number> keeping{.snapshot = line<'s'>,
                                  .forms = forms,
                                  .is_empty = [](const Number& filter) { return filter.value == 0; },
                                  .open_caption = "Open",
                                  .overwrite_warning = "Overwritten!"};

struct Bench {
    ScratchFolder folder;
    FakeWindow window;
    Journal journal;
    PrintState print;
    Reporter reporter{window, journal, print};
    Session session;
    AnalysisResult results;
    PlotWindow plot;
    TemporaryFiles temporaries;
    Desk desk{session, reporter, window, results, plot, temporaries};
    KeptState state;
    Number filter{1};
    int last = 1;
    KeptFilter<Number> work{desk, state, filter, keeping};

    Bench() { session.TITLE = "title 1"; }
    [[nodiscard]] std::string now() const { return fmt::format("{} {}", filter.value, session.TITLE.trimmed()); }
    void edit() {
        if (keep_for_undo(work)) filter.value = ++last;
    }
    [[nodiscard]] std::string boxes() {
        std::string text;
        for (const std::string& box : window.boxes) text += (text.empty() ? "" : " | ") + box;
        window.boxes.clear();
        return text;
    }
};

std::set<std::string> files_here() {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(".")) names.insert(entry.path().filename().string());
    return names;
}

// Any order of edits, undos and redos, against a plain list of states; ten files and no more.
TEST(KeptFilter, StatesAreAListOfEleven) {
    Bench bench;
    ASSERT_TRUE(store(bench.work));
    std::vector<int> states = {1};
    std::size_t at = 0;
    std::set<std::string> ten = {"~xxx.tmp"};
    for (int level = 0; level < 10; ++level) ten.insert(TemporaryFiles().undo_file(level));
    for (int step = 0; step < 600; ++step) {
        const int what = step < 12 ? 0 : step < 23 ? 3 : (step * 7919) % 31 % 7;
        if (what <= 2) {
            bench.edit();
            states.resize(at + 1);
            states.push_back(bench.filter.value);
            if (states.size() > 11) states.erase(states.begin());
            at = states.size() - 1;
        } else if (what <= 4) {
            EXPECT_EQ(undo(bench.work), at > 0);
            EXPECT_EQ(bench.boxes(), at > 0 ? "" : "Error: Nothing to undo");
            if (at > 0) --at;
        } else {
            const bool newest = at + 1 == states.size();
            EXPECT_EQ(redo(bench.work), !newest);
            EXPECT_EQ(bench.boxes(), newest ? "Error: Nothing to redo" : "");
            if (!newest) ++at;
        }
        ASSERT_EQ(bench.filter.value, states[at]) << step;
        ASSERT_EQ(bench.state.undoTop, static_cast<int>(at));
        ASSERT_EQ(bench.state.undoCount, static_cast<int>(states.size()) - 1);
        if (step == 12) {
            EXPECT_EQ(files_here(), ten);
        }
    }
    ASSERT_TRUE(recall(bench.work));
    EXPECT_EQ(bench.filter.value, 1) << "what was stored before the edits";
}

// A title that was typed remains when an edit is undone; a filter that was opened brings and takes its own along.
TEST(KeptFilter, TitleAndFileFollowTheFilter) {
    Bench bench;
    bench.session.filter_file = "one.qff";
    bench.edit();
    bench.session.TITLE = "typed";
    ASSERT_TRUE(undo(bench.work));
    EXPECT_EQ(bench.now(), "1 typed");
    ASSERT_TRUE(save(bench.work));
    ASSERT_TRUE(store(bench.work));
    ASSERT_TRUE(recall(bench.work));
    EXPECT_EQ(bench.session.filter_file.text(), "one.qff");
    write_text("other.dat", "l7 other.");
    bench.window.answers = {Answer::yes};
    bench.window.files = {"other.dat"};
    EXPECT_FALSE(read(bench.work, false)) << "no form has this extension: other.qff is looked for";
    EXPECT_EQ(bench.boxes(), "Warning: Overwritten! | Error: File was not found");
    std::filesystem::rename("other.dat", "other.qff");
    bench.window.answers = {Answer::yes};
    bench.window.files = {"other.qff"};
    ASSERT_TRUE(read(bench.work, false)) << "a form is known by its bytes";
    EXPECT_EQ(bench.now() + bench.session.filter_file.text(), "7 otherother.qff");
    ASSERT_TRUE(undo(bench.work));
    EXPECT_EQ(bench.now() + bench.session.filter_file.text(), "1 typed") << "and is not saved into that file unasked";
    ASSERT_TRUE(recall(bench.work));
    EXPECT_TRUE(bench.session.filter_file.is_blank());
    EXPECT_FALSE(read(bench.work, false)) << "the warning is answered with No";
    bench.window.files = {"two.ckt", std::string(300, 'x')};
    ASSERT_TRUE(save_as(bench.work));
    EXPECT_EQ(read_text("two.qff"), "f1 typed.");
    bench.window.boxes.clear();
    EXPECT_FALSE(save_as(bench.work));
    EXPECT_EQ(bench.boxes(), "Error: File could not be opened") << "a name that is cut would be that of another file";
    bench.filter.value = 0;
    EXPECT_FALSE(save(bench.work));
    EXPECT_EQ(bench.boxes(), "Error: Data is unavailable");
}

// Each case spoils a file of a bench that has three edits, the last undone, and something stored.
struct Failure {
    void (*spoil)();
    bool (*attempt)(const KeptWork& work);
    const char* box;
};

void cut_in_half(const std::string& name) {
    const std::string bytes = read_text(name);
    write_text(name, bytes.substr(0, bytes.size() / 2));
}

// In the place of a file, a folder with something in it can be neither written nor read.
void block(const std::string& name) {
    std::filesystem::remove(name);
    std::filesystem::create_directory(name);
    write_text(name + "/inside", "");
}

// As on a disk that is full.
void limit_files(rlim_t bytes) {
    const rlimit limit{bytes, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &limit);
}

bool push(const KeptWork& work) { return keep_for_undo(work); }

constexpr const char* undo_lost = "Error: Nothing stored\nor error reading data file";
constexpr Failure failures[] = {
    {[] { std::filesystem::remove("_xxx1.tmp"); }, undo, undo_lost},
    {[] { cut_in_half("_xxx1.tmp"); }, undo, undo_lost},
    {[] { limit_files(0); }, undo, "Error: Data could not be stored"},
    {[] { std::filesystem::remove("_xxx2.tmp"); }, redo, "Error: File could not be read"},
    {[] { cut_in_half("_xxx2.tmp"); }, redo, "Error: File could not be read"},
    {[] { block("_xxx2.tmp"); }, push, "Question: Data could not be stored\nDo you want to go on without undo?"},
    {[] { block("~xxx.tmp"); }, store, "Warning: Data could not be stored"},
    {[] { std::filesystem::remove("~xxx.tmp"); }, recall, "Error: Data was not stored"},
    {[] { cut_in_half("~xxx.tmp"); }, recall, "Error: Data could not be read"},
    {[] { write_text("~xxx.tmp", ""); }, recall, "Error: Data could not be read"},
    {[] { block("~xxx.tmp"); }, recall, "Error: Data could not be read"},
};

TEST(KeptFilter, FailuresAreReportedAndChangeNothing) {
    for (const Failure& failure : failures) {
        Bench bench;
        for (int i = 0; i < 3; ++i) bench.edit();
        ASSERT_TRUE(undo(bench.work));
        ASSERT_TRUE(store(bench.work));
        bench.filter.value = 99;
        failure.spoil();
        const std::string before = bench.now();
        const auto files_before = files_here();
        EXPECT_FALSE(failure.attempt(bench.work)) << failure.box;
        limit_files(RLIM_INFINITY);
        EXPECT_EQ(bench.boxes(), failure.box);
        EXPECT_EQ(bench.now(), before) << failure.box;
        EXPECT_EQ(bench.state.undoTop, 2) << failure.box;
        EXPECT_EQ(bench.state.undoCount, 3) << failure.box;
        EXPECT_EQ(files_here(), files_before) << failure.box;
    }
}

// The eleventh state cannot be written: the ten files stay where they are.
TEST(KeptFilter, AStateThatIsNotKeptDropsNoOlderOne) {
    Bench bench;
    for (int edit = 1; edit <= 10; ++edit) bench.edit();
    block("_xxx10.tmp");
    static_cast<void>(keep_for_undo(bench.work));
    for (int back = 10; back > 0; --back) {
        ASSERT_TRUE(undo(bench.work));
        EXPECT_EQ(bench.filter.value, back);
    }
}

// What another program has written since, and what is read-only, is replaced after a question; then it is our own.
TEST(KeptFilter, AFileOfAnotherProgramIsNotReplacedUnasked) {
    constexpr const char* refused = "\nDo you want to replace it? | Error: File was not replaced";
    Bench bench;
    bench.session.filter_file = "one.qff";
    ASSERT_TRUE(save(bench.work) && save(bench.work));
    for (const bool saved : {true, false}) {
        if (!saved) {
            bench.window.answers = {Answer::yes};
            bench.window.files = {"./one.qff"};
            ASSERT_TRUE(read(bench.work, false));
        }
        bench.window.boxes.clear();
        write_text("one.qff", "f7 another's.");
        EXPECT_FALSE(save(bench.work));
        EXPECT_EQ(bench.boxes(),
                  "Warning: File " + bench.session.filter_file.text() + " was changed by another program" + refused);
        EXPECT_EQ(read_text("one.qff"), "f7 another's.");
        bench.window.answers = {Answer::yes};
        EXPECT_TRUE(save(bench.work));
        bench.window.boxes.clear();
        EXPECT_TRUE(save(bench.work));
        EXPECT_EQ(bench.boxes(), "");
    }
    std::filesystem::permissions("one.qff", std::filesystem::perms::owner_read);
    EXPECT_FALSE(save(bench.work));
    EXPECT_EQ(bench.boxes(), std::string("Warning: File ./one.qff is read-only") + refused);
}

// The states that can be redone are of another past than an edit that was made without undo.
TEST(KeptFilter, AnEditWithoutUndoDropsWhatCouldBeRedone) {
    Bench bench;
    bench.edit();
    bench.edit();
    ASSERT_TRUE(undo(bench.work));
    block("_xxx1.tmp");
    bench.window.answers = {Answer::yes};
    bench.edit();
    EXPECT_EQ(bench.filter.value, 4);
    EXPECT_FALSE(redo(bench.work));
    ASSERT_TRUE(undo(bench.work));
    EXPECT_EQ(bench.filter.value, 1);
}

struct Count {
    int value = 0;
};

TEST(CommandTable, PerformsWhatHasARoutineAndClearsTheCell) {
    constexpr CommandTable commands({Command<Count>{"one ", [](Count& count) { ++count.value; }}, {"none"}});
    Count count;
    for (const CommandKeyword word : {"one ", "none", "two "}) {
        CommandKeyword cell = word;
        commands.run(count, cell);
        EXPECT_TRUE(cell.is_blank());
    }
    EXPECT_EQ(count.value, 1);
    EXPECT_TRUE(commands.words().performs("one ") && commands.words().knows("none"));
    EXPECT_FALSE(commands.words().performs("none") || commands.words().knows("two "));
}

}  // namespace
}  // namespace kavrel
