#include "desktop/manual.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTextStream>
#include <algorithm>

#include "desktop/text.h"

namespace kavrel {

namespace {

QStringList lines_of(const QString& file);
QString title_of(const QString& file, const QString& otherwise);
QString plain(QString line);

}  // namespace

Manual::Manual(const std::vector<std::string>& folders) {
    for (const auto& one : folders) {
        const QString folder = qt_text(one);
        if (!QFile::exists(folder + "/index.md")) continue;
        folder_ = QDir::cleanPath(folder);
        read_pages();
        read_places();
        return;
    }
}

bool Manual::has_page(const QString& name) const {
    return std::ranges::find(pages_, name, &ManualPage::name) != pages_.end();
}

void Manual::read_pages() {
    QStringList names{"index"};
    const QRegularExpression link("\\]\\(([a-z0-9_]+)\\.md\\)");
    for (const QString& line : lines_of(folder_ + "/index.md")) {
        for (auto found = link.globalMatch(line); found.hasNext();) names.append(found.next().captured(1));
    }
    for (const QString& file : QDir(folder_).entryList({"*.md"}, QDir::Files, QDir::Name))
        names.append(file.chopped(3));
    names.removeDuplicates();
    for (const QString& name : names) {
        const QString file = folder_ + '/' + name + ".md";
        if (QFile::exists(file)) pages_.push_back({name, title_of(file, name)});
    }
}

void Manual::read_places() {
    const QRegularExpression blanks("\\s+");
    const QRegularExpression ids("^(\\d+)(?:-(\\d+))?$");
    for (const QString& line : lines_of(folder_ + "/help_index.txt")) {
        if (line.startsWith('#')) continue;
        const QStringList words = line.split(blanks, Qt::SkipEmptyParts);
        if (words.size() < 2) continue;
        Entry entry;
        entry.place = {.page = words[1], .heading = words.mid(2).join(' ')};
        if (const auto match = ids.match(words[0]); match.hasMatch()) {
            entry.first = match.captured(1).toInt();
            entry.last = match.captured(2).isEmpty() ? entry.first : match.captured(2).toInt();
        } else {
            entry.form = words[0];
        }
        entries_.push_back(entry);
    }
}

ManualPlace Manual::place_of(const QString& form) const {
    const auto found = std::ranges::find(entries_, form, &Entry::form);
    if (!form.isEmpty() && found != entries_.end()) return found->place;
    return {.page = place_of_the_rest().page, .heading = form};
}

ManualPlace Manual::place_of(int item_id) const {
    const auto found = std::ranges::find_if(entries_, [&](const Entry& entry) {
        return entry.form.isEmpty() && item_id >= entry.first && item_id <= entry.last;
    });
    return found == entries_.end() ? place_of_the_rest() : found->place;
}

ManualPlace Manual::place_of_the_rest() const {
    const auto rest = std::ranges::find(entries_, QString("*"), &Entry::form);
    return rest == entries_.end() ? ManualPlace{"index", {}} : rest->place;
}

std::vector<ManualHit> Manual::find(const QString& words, std::size_t most) const {
    std::vector<ManualHit> hits;
    const QStringList wanted = words.simplified().split(' ', Qt::SkipEmptyParts);
    if (wanted.isEmpty()) return hits;
    for (const ManualPage& page : pages_) {
        for (const QString& line : lines_of(folder_ + '/' + page.name + ".md")) {
            const QString text = plain(line);
            const bool holds_all = std::ranges::all_of(
                wanted, [&](const QString& word) { return text.contains(word, Qt::CaseInsensitive); });
            if (!holds_all) continue;
            hits.push_back({page.name, page.title, text});
            if (hits.size() == most) return hits;
        }
    }
    return hits;
}

namespace {

QStringList lines_of(const QString& file) {
    QFile text(file);
    if (!text.open(QIODevice::ReadOnly)) return {};
    return QString::fromUtf8(text.readAll()).split('\n');
}

QString title_of(const QString& file, const QString& otherwise) {
    for (const QString& line : lines_of(file)) {
        if (line.startsWith("# ")) return line.mid(2).remove('`');
    }
    return otherwise;
}

// A line as it reads: without the marks of tables, emphasis and links.
QString plain(QString line) {
    const QRegularExpression link("\\[([^]]*)\\]\\([^)]*\\)");
    const QRegularExpression marks("[`*#|]+");
    return line.replace(link, "\\1").replace(marks, " ").simplified();
}

}  // namespace

}  // namespace kavrel
