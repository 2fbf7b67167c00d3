#include <gtest/gtest.h>

#include <QApplication>

#ifdef KX_SANITIZE_BUILD
// The library releases some objects only partially on purpose, so leak
// detection is off in the sanitizer build (also while CTest lists the tests).
extern "C" __attribute__((visibility("default"), used)) const char *__asan_default_options()
{
    return "detect_leaks=0";
}
#endif

// Every test program runs with a QApplication on the offscreen platform, so
// widgets, fonts and modal dialogs work without a display.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
