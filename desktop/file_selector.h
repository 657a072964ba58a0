// The file selector.
#pragma once

#include <QWidget>
#include <string>

#include "shell/window_layer.h"

namespace kavrel {

// A file's name, relative where it lies in the working folder; blank when the user cancelled.
[[nodiscard]] std::string run_file_selector(const FileQuery& query, QWidget* parent);

// "Storage files" and "*.qfp;*.qfa" as the selector takes them: "Storage files (*.qfp *.qfa)".
[[nodiscard]] QString selector_filter(const FileQuery& query);

}  // namespace kavrel
