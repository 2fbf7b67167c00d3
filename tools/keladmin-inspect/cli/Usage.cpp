#include "Usage.h"

#include "TextOutput.h"

#include "model_KelAdmin.h"

#include <cerrno>
#include <cstdio>

namespace kxinspect {

int printHelp()
{
    return writeHelp();
}

QString versionLine()
{
    return QStringLiteral("%1 %2 (libmodel_KelAdmin %3, ReadStat %4, Qt %5)")
        .arg(QLatin1String(ProgramName), QLatin1String(MODEL_KELADMIN_VERSION_STRING),
             QLatin1String(Model_KelAdmin::version()), QLatin1String(Model_KelAdmin::readStatVersion()),
             QLatin1String(qVersion()));
}

int printVersion()
{
    errno = 0;
    if (std::fputs((versionLine() + QLatin1Char('\n')).toLocal8Bit().constData(), stdout) == EOF)
        return errno != 0 ? errno : EIO;
    return 0;
}

int usageError(const QString &problem)
{
    const QString line = QStringLiteral("%1: %2\n").arg(QLatin1String(ProgramName), problem);
    std::fputs(line.toLocal8Bit().constData(), stderr);
    std::fputs(UsageText, stderr);
    return ExitUsage;
}

} // namespace kxinspect
