// The manual as a folder of pages, "index.md" first, and the list of the pages that describe menu items and forms.
#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <string>
#include <vector>

namespace kavrel {

struct ManualPage {
    QString name;   // "fir_design"
    QString title;  // its first heading
};

struct ManualPlace {
    QString page;
    QString heading;  // on it, or blank

    friend bool operator==(const ManualPlace&, const ManualPlace&) = default;
};

// A line of the manual in which a text was found.
struct ManualHit {
    QString page;
    QString title;
    QString line;  // without its marks
};

class Manual {
public:
    // The first of the folders that holds an index is the manual; without one there are no pages.
    explicit Manual(const std::vector<std::string>& folders);

    [[nodiscard]] const QString& folder() const { return folder_; }
    [[nodiscard]] bool has_page(const QString& name) const;

    // In the order in which the index names them, the index first; what it does not name last.
    [[nodiscard]] const std::vector<ManualPage>& pages() const { return pages_; }

    // Where "help_index.txt" puts a form's name, or a menu item's id. A form that it does not name has a heading of its
    // own on the page of the rest.
    [[nodiscard]] ManualPlace place_of(const QString& form) const;
    [[nodiscard]] ManualPlace place_of(int item_id) const;

    // Lines that hold all the words, any case; at most `most`.
    [[nodiscard]] std::vector<ManualHit> find(const QString& words, std::size_t most) const;

private:
    struct Entry {
        QString form;  // or, blank, ids from `first` to `last`
        int first = 0;
        int last = 0;
        ManualPlace place;
    };
    [[nodiscard]] ManualPlace place_of_the_rest() const;
    void read_pages();
    void read_places();

    QString folder_;
    std::vector<ManualPage> pages_;
    std::vector<Entry> entries_;
};

}  // namespace kavrel
