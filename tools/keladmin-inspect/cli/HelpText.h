#ifndef KXINSPECT_HELPTEXT_H
#define KXINSPECT_HELPTEXT_H

namespace kxinspect {

//! The synopsis, "Usage:" and one line per form.
extern const char *const UsageText;
//! What the program does, its formats, options and exit statuses.
extern const char *const HelpText;

} // namespace kxinspect

#endif // KXINSPECT_HELPTEXT_H
