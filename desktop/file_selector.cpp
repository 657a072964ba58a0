#include "desktop/file_selector.h"

#include <QDir>
#include <QFileDialog>
#include <QRegularExpression>

#include "desktop/text.h"

namespace kavrel {

namespace {

QStringList patterns_of(const FileQuery& query) {
    return qt_text(query.filter).split(QRegularExpression("[;\\s]+"), Qt::SkipEmptyParts);
}

}  // namespace

QString selector_filter(const FileQuery& query) {
    return QString("%1 (%2)").arg(qt_text(query.description), patterns_of(query).join(' '));
}

std::string run_file_selector(const FileQuery& query, QWidget* parent) {
    QFileDialog dialog(parent, qt_text(query.caption), QDir::currentPath());
    dialog.setObjectName("file_selector");
    dialog.setWindowModality(Qt::WindowModal);
    dialog.setAcceptMode(query.to_write ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(query.to_write ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    const QStringList patterns = patterns_of(query);
    QStringList filters{selector_filter(query)};
    if (!patterns.contains("*.*") && !patterns.contains("*")) filters.append(QObject::tr("All files (*)"));
    dialog.setNameFilters(filters);
    if (query.to_write && !patterns.isEmpty() && patterns.first().startsWith("*.") && patterns.first() != "*.*") {
        dialog.setDefaultSuffix(patterns.first().mid(2));
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    const QString name = dialog.selectedFiles().first();
    const QString relative = QDir::current().relativeFilePath(name);
    return utf8_text(relative.startsWith("..") ? name : relative);
}

}  // namespace kavrel
