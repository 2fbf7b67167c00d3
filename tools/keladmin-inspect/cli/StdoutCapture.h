#ifndef KXINSPECT_STDOUTCAPTURE_H
#define KXINSPECT_STDOUTCAPTURE_H

#include <QString>

#include <cstdio>

namespace kxinspect {

/*! \brief Sends what the library writes to the standard output (the Stata
 * importer reports parse failures there) to a temporary file, so that stdout
 * carries only the inspector's own output. */
class StdoutCapture
{
public:
    StdoutCapture();
    ~StdoutCapture();
    StdoutCapture(const StdoutCapture &) = delete;
    StdoutCapture &operator=(const StdoutCapture &) = delete;

    //! Gives stdout back and returns what was written meanwhile (at most 64 KiB), trimmed.
    QString finish();

private:
    FILE *tmp = nullptr;
    int saved = -1;
    QString text;
};

} // namespace kxinspect

#endif // KXINSPECT_STDOUTCAPTURE_H
