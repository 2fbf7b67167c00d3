#include "StdoutCapture.h"

#include <QByteArray>

#include <unistd.h>

namespace kxinspect {

StdoutCapture::StdoutCapture()
{
    std::fflush(stdout);
    tmp = std::tmpfile();
    if (tmp) {
        saved = dup(fileno(stdout));
        if (saved < 0 || dup2(fileno(tmp), fileno(stdout)) < 0) {
            if (saved >= 0)
                close(saved);
            saved = -1;
        }
    }
}

StdoutCapture::~StdoutCapture()
{
    finish();
}

QString StdoutCapture::finish()
{
    if (!tmp)
        return text;
    std::fflush(stdout);
    if (saved >= 0) {
        dup2(saved, fileno(stdout));
        close(saved);
        saved = -1;
    }
    std::rewind(tmp);
    QByteArray bytes;
    char buffer[4096];
    size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, tmp)) > 0 && bytes.size() < 65536)
        bytes.append(buffer, static_cast<int>(n));
    std::fclose(tmp);
    tmp = nullptr;
    text = QString::fromLocal8Bit(bytes).trimmed();
    return text;
}

} // namespace kxinspect
