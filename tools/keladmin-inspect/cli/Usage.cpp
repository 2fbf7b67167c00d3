#include "Usage.h"

#include "TextOutput.h"

#include "model_KelAdmin.h"

#include <cstdio>

namespace kxinspect {

void printHelp()
{
    std::fputs(UsageText, stdout);
    std::fputs(HelpText, stdout);
}

QString versionLine()
{
    return QStringLiteral("%1 %2 (libmodel_KelAdmin %3, ReadStat %4, Qt %5)")
        .arg(QLatin1String(ProgramName), QLatin1String(MODEL_KELADMIN_VERSION_STRING),
             QLatin1String(Model_KelAdmin::version()), QLatin1String(Model_KelAdmin::readStatVersion()),
             QLatin1String(qVersion()));
}

void printVersion()
{
    std::fputs((versionLine() + QLatin1Char('\n')).toLocal8Bit().constData(), stdout);
}

int usageError(const QString &problem)
{
    const QString line = QStringLiteral("%1: %2\n").arg(QLatin1String(ProgramName), problem);
    std::fputs(line.toLocal8Bit().constData(), stderr);
    std::fputs(UsageText, stderr);
    return ExitUsage;
}

} // namespace kxinspect
