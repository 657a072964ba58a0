// kavrel: the workbench in a window.

#include <QApplication>
#include <clocale>
#include <cstdlib>
#include <iostream>
#include <memory>

#include "desktop/program.h"
#include "desktop/window_style.h"
#include "workbench/start_up.h"

namespace kavrel {

namespace {

constexpr const char* usage =
    "Kavrel: design of electronic filters\n"
    "Usage: kavrel [STORED_FILE]\n\n"
    "  STORED_FILE    stored filter (.qf and a letter) to open\n"
    "  --version      tells the version\n"
    "  --help         tells this\n\n"
    "Designs are made without a screen by kavrel-cli.\n";

// Whether there is a screen to show windows on; Qt would end the program without a word that helps.
bool has_screen() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        const char* value = std::getenv(name);
        if (value != nullptr && *value != '\0') return true;
    }
    return false;
}

int run(int argc, char** argv) {
    QApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setApplicationName("kavrel");
    QApplication::setDesktopFileName("kavrel");
    QApplication::setStyle(new WindowStyle);

    const QStringList arguments = QApplication::arguments();
    const std::string argument = arguments.size() > 1 ? arguments[1].toStdString() : std::string{};
    const std::string executable = QApplication::applicationFilePath().toStdString();
    const auto window = std::make_unique<DesktopWindow>(manual_folders(executable));
    const auto program = std::make_unique<Program>(*window);
    program->start(argument, executable);
    return QApplication::exec();
}

}  // namespace

}  // namespace kavrel

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        const std::string_view option = argv[i];
        if (option == "--version") {
            std::cout << "kavrel " << KAVREL_VERSION << '\n';
            return 0;
        }
        if (option == "--help") {
            std::cout << kavrel::usage;
            return 0;
        }
    }
    if (!kavrel::has_screen()) {
        std::cerr << "kavrel: there is no screen to show windows on (DISPLAY is not set); kavrel-cli needs none\n";
        return 1;
    }
    return kavrel::run(argc, argv);
}
