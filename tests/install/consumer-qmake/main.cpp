#include <model_KelAdmin.h>

#include <QTextStream>

// Prints the compiled and loaded versions, then the catalogue text of the
// error that an unregistered format raises.
int main()
{
    QTextStream out(stdout);
    out << "model_KelAdmin " << MODEL_KELADMIN_VERSION_STRING << " " << Model_KelAdmin::version() << "\n";
    try {
        GetDataClassLoader(QStringLiteral("SAV"));
    } catch (KxErrorManager *e) {
        out << e->getMLDBMessage() << "\n";
        delete e;
        return 0;
    }
    return 1;
}
