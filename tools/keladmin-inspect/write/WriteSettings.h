#ifndef KXINSPECT_WRITESETTINGS_H
#define KXINSPECT_WRITESETTINGS_H

namespace kxinspect {

//! What the command line asks of every writer; a writer ignores what does not concern its output.
struct WriteSettings
{
    bool wideLabels = false; //!< keep long labels whole where a writer would cut them
    bool notes = true;       //!< include the reading notes
};

} // namespace kxinspect

#endif // KXINSPECT_WRITESETTINGS_H
