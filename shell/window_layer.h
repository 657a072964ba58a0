// The one door between the logic and whoever sits before it: the console, the desktop, a test. Logic asks, and the
// answer is there when the call returns; it never learns who answered.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "shell/menu.h"

namespace kavrel {

class FormSheet;
struct PlotWindow;

// Events that window layers and menus share.
inline constexpr int close_window_event = 16385;  // "Exit" of the main menu, served by the window layer
inline constexpr int help_event = 16386;          // the help key where no item has it

enum class Buttons { ok, yes_no };

// Whether boxes with this caption mean that something went wrong: all but those that come up in good order.
[[nodiscard]] constexpr bool is_of_failure(std::string_view caption) {
    return caption != "Warning" && caption != "Question" && caption != "Advice" && caption != "Success";
}

// The result of a message box.
enum class Answer { ok = 1, yes = 6, no = 7 };

// A box that offers a list of things to do; `choices` are the labels of its buttons.
struct ChoiceBox {
    std::string_view text;
    std::string_view caption;
    std::span<const std::string_view> choices;
};

struct FileQuery {
    std::string_view caption;      // "Select a data file"
    std::string_view description;  // "Storage files"
    std::string_view filter;       // "*.qfp;*.qfa"
    bool to_write = false;
};

// What became of a page.
enum class PrintOutcome { printed, cancelled, failed };

struct PrintPage {
    std::string_view job;   // "Printing"
    int quality;            // of the printer, 1024
    std::string_view font;  // "MS LineDraw"
    std::span<const std::string> lines;
};

class WindowLayer {
public:
    virtual ~WindowLayer() = default;

    // One line of the report, without a line end.
    virtual void show_line(std::string_view line) = 0;

    // A modal box; its caption sets the icon.
    [[nodiscard]] virtual Answer message(std::string_view text, std::string_view caption, Buttons buttons) = 0;

    // The number of the choice, from 1; 0 when the user cancelled.
    [[nodiscard]] virtual int choose(const ChoiceBox& box) = 0;

    // Lets the user fill in an open form; false when it was left with anything but OK. It comes again after a refusal,
    // and when its work has failed (`FormSheet::work_failed`): a layer that does not open it then answers false.
    [[nodiscard]] virtual bool edit_form(FormSheet& sheet) = 0;

    // The work of a form has failed, and `edit_form` comes next: a box, unless the form itself will say why.
    virtual void refuse_form(std::string_view text, std::string_view caption) {
        static_cast<void>(message(text, caption, Buttons::ok));
    }

    // A file's name; blank when the user cancelled.
    [[nodiscard]] virtual std::string choose_file(const FileQuery& query) = 0;

    // Replaces the menu bar and the title of the main window.
    virtual void set_menu(std::span<const MenuItem> menu, std::string_view title) = 0;

    // Builds the toolbar of the main window.
    virtual void set_toolbar(std::span<const ToolbarItem> toolbar) = 0;

    // Draws (or draws again) the plot window.
    virtual void show_plot(const PlotWindow& plot) = 0;

    // A page of report lines to the printer.
    [[nodiscard]] virtual PrintOutcome print_page(const PrintPage& page) = 0;

    // The plot window on a page of the printer.
    [[nodiscard]] virtual PrintOutcome print_plot(const PlotWindow& plot) = 0;

    // Puts the marked text on the clipboard.
    virtual void copy_text() = 0;

    // The text viewer: shows a text under its name, until it is closed.
    virtual void view_text(std::string_view name, std::string_view text) = 0;
    virtual void close_text_view() = 0;

    // Opens the manual at a page ("index", "console", ...); false when there is no manual to open.
    [[nodiscard]] virtual bool open_help(std::string_view page) = 0;

    // Date and time as they are stamped on reports and files.
    [[nodiscard]] virtual std::string date_and_time() = 0;

    // Tells how far long work has come (`total` 0 when nobody knows); false when the user wishes it to stop.
    [[nodiscard]] virtual bool progress(std::string_view work, int done, int total) = 0;

    // Offers the layer an event id that the logic does not know; false when the layer does not know it either.
    [[nodiscard]] virtual bool own_event(int item_id) = 0;
};

}  // namespace kavrel
