// The GUI application of the inspector, in a module of its own that is loaded
// only when a dialog may be shown (--decimal ask with a display): everything
// else runs on a QCoreApplication, without Qt's GUI libraries.
#include <QApplication>

extern "C" __attribute__((visibility("default"))) QCoreApplication *kx_inspect_gui_application(int &argc, char **argv)
{
    return new QApplication(argc, argv);
}
