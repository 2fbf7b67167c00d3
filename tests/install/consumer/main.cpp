#include <model_KelAdmin.h>

#include <QApplication>
#include <QLabel>
#include <QTextStream>

int main(int argc, char **argv)
{
    QApplication app(argc, argv); // run.cmake asks for the offscreen platform
    Model_KelAdmin marker;
    (void)marker;
    QTextStream out(stdout);
    // The label is filled by the library's widgets module, which the library
    // loads from beside itself: the installed tree must hold it.
    QLabel label;
    UtilStrings::setBetterPathInQDockWidget(QStringLiteral("/d1/d2/d3/f.dat"), 1, &label);
    out << "tooltip: " << label.toolTip() << "\n";
    try {
        GetDataClassLoader(QStringLiteral("SAV"));
    } catch (KxErrorManager *e) {
        out << e->getMLDBMessage() << "\n";
        delete e;
        return 0;
    }
    return 1;
}
