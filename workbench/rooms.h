// The Segments as the workbench sees them: a row each, with what it takes to enter one and to send it a command.
#pragma once

#include <span>

#include "segment/command_table.h"
#include "shell/menu.h"
#include "workbench/shown.h"

namespace kavrel {

// What an action does to the filter that is shown.
enum class Effect { keeps_filter, gives_filter_up };

struct ActionRow {
    MenuAction action;
    void (*perform)(Workbench& bench);
    Effect effect = Effect::keeps_filter;
    bool built = true;  // or does the form end in "Command not implemented", whatever is chosen
};

// A word that no menu item sends, with its form.
struct WordForm {
    std::string_view word;
    const Form* form;
};

struct Room {
    SegmentId id;
    std::string_view name;   // in state files and scripts
    std::string_view title;  // of the main window
    char file_letter;        // the last letter of its stored filter's extension, or blank
    std::span<const MenuItem> menu = {};
    std::span<const MenuItem> window_items = {};  // of its other windows
    std::span<const ActionRow> actions = {};      // those that are its own; the others are the same in all of them
    CommandWords (*words)() = nullptr;            // of its command table
    std::span<const WordForm> word_forms = {};
    // Why a command cannot act now, or blank.
    std::string_view (*hindrance)(Workbench& bench, const CommandKeyword& word) = nullptr;
    void (*run)(Workbench& bench) = nullptr;  // performs the command in the Segment's cell
    int recall_entry = 0;                     // entry code of "read" for a file whose name is given
    bool (*shows)(const Workbench& bench, Fingerprint source) = nullptr;  // whether what has it is what it shows
    std::string_view (*file_refusal)(std::string_view name) = nullptr;    // why a stored filter is not read, or blank
    std::string_view noun = "filter";                                     // what its filter is called in a question
    bool (*unsaved)(Workbench& bench) = nullptr;                          // whether its filter is not saved as it is
    Shown (*shown)(const Workbench& bench) = nullptr;                     // the design behind it
    RequestCheck (*check)(const Workbench& bench) = nullptr;              // of what it shows against its request

    [[nodiscard]] CommandWords commands() const { return words == nullptr ? CommandWords{} : words(); }
};

[[nodiscard]] const Room& room_of(SegmentId id);

// The Segment whose stored filters have a name that ends in this letter, or null.
[[nodiscard]] const Room* room_of_file(char letter);

// What a room's action table has behind an action, or null.
[[nodiscard]] const ActionRow* find_action(std::span<const ActionRow> actions, MenuAction action);

// The form of a word that no menu item sends, or null.
[[nodiscard]] const Form* form_of_word(const Room& room, const CommandKeyword& word);

// Makes a Segment the current one: its menu and title replace those of the main window.
void enter_segment(Workbench& bench, SegmentId id);

// What is not saved as it is, for a question, or blank: "The circuit of lowpass.qfp is not saved."
[[nodiscard]] std::string unsaved_text(Workbench& bench);

// Puts a word into a Segment's cell and calls the Segment, after the form, if there is one, was filled in. What has no
// routine is answered with "Command not implemented".
void send_command(Workbench& bench, const Room& room, std::string_view word, const Form* form);

// After whatever may have changed the filter that is shown: what was made of it is out of date.
void look_again(Workbench& bench);

// Whether results or a plot of the filter `source` are of another one than the current Segment shows.
[[nodiscard]] bool is_earlier(const Workbench& bench, Fingerprint source);

// The records of FIR and IIR work, of passive work and of ladder synthesis.
[[nodiscard]] FirDesk fir_desk(Workbench& bench);
[[nodiscard]] IirDesk iir_desk(Workbench& bench);
[[nodiscard]] PassiveDesk passive_desk(Workbench& bench);
[[nodiscard]] LadderDesk ladder_desk(Workbench& bench);

// The box of whatever has no handler.
inline constexpr std::string_view not_implemented_text = "Command not implemented";
void not_implemented(Workbench& bench);

}  // namespace kavrel
