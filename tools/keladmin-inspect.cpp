// Minimal inspector: prints the error catalogue text of the numbers given.
#include "model_KelAdmin.h"

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    const QStringList args = app.arguments().mid(1);
    for (const QString &arg : args) {
        KxErrorManager e(EM_DataImport, arg.toInt(), arg);
        out << e.getErrorMessage() << "\n";
    }
    return 0;
}
