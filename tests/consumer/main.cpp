#include <model_KelAdmin.h>

#include <QTextStream>

int main()
{
    Model_KelAdmin marker;
    (void)marker;
    QTextStream out(stdout);
    try {
        GetDataClassLoader(QStringLiteral("SAV"));
    } catch (KxErrorManager *e) {
        out << e->getMLDBMessage() << "\n";
        delete e;
        return 0;
    }
    return 1;
}
