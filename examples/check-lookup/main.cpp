// Checks a lookup file (one key and label a line) and prints its messages and
// the labels used more than once. Usage: check-lookup FILE [tab|comma|semicolon|colon|blank]
#include <model_KelAdmin.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QTextStream>

static int separatorCode(const QString &name)
{
    const QStringList codes{"blank", "tab", "comma", "semicolon", "colon"};
    return qMax(0, codes.indexOf(name));
}

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QLoggingCategory::setFilterRules("default.debug=false");
    QTextStream out(stdout), err(stderr);
    if (argc < 2 || argc > 3) {
        err << "usage: check-lookup FILE [tab|comma|semicolon|colon|blank]\n";
        return 2;
    }
    TKxLookup lookup;
    lookup.setFfileName(QFileInfo(QString::fromLocal8Bit(argv[1])).absoluteFilePath());
    lookup.setSeparator(separatorCode(argc == 3 ? QString::fromLocal8Bit(argv[2]) : "tab"));
    lookup.setMaxMessages(100); // with 0 the first message is already the cap line

    // Problems are lines of the caller's list ("<line>_<message>"), not exceptions;
    // only a missing file makes the check answer false.
    TKxLabelFrequencies frequencies;
    QStringList messages;
    if (!lookup.consistencyCheck(eFileChecksAndFrequencies, frequencies, messages)) {
        err << lookup.getMessageText() << "\n";
        return 1;
    }
    out << lookup.getLookupMap().size() << " entries, " << messages.size() << " messages\n";
    for (const QString &message : messages)
        out << "  line " << message << "\n";
    for (auto it = frequencies.cbegin(); it != frequencies.cend(); ++it)
        if (it.value() > 1)
            out << it.key() << ": " << it.value() << "\n";
    return messages.isEmpty() ? 0 : 3;
}
