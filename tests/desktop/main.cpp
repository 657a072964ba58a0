// Tests of windows: without a screen unless QT_QPA_PLATFORM names one, and with settings of their own.
#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <clocale>

#include <gtest/gtest.h>

#include "desktop/window_style.h"

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    QApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setStyle(new kavrel::WindowStyle);
    return RUN_ALL_TESTS();
}
