#include <gtest/gtest.h>

#include <QApplication>

// Every test program runs with a QApplication on the offscreen platform, so
// widgets, fonts and modal dialogs work without a display.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
