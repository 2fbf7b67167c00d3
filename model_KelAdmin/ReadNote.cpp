#include "ReadNote.h"

TReadNote::TReadNote() = default;

TReadNote::TReadNote(int line, const QString &subject, const QString &kind, const QString &text)
    : line(line)
    , subject(subject)
    , kind(kind)
    , text(text)
{
}

bool TReadNote::operator==(const TReadNote &other) const
{
    return line == other.line && subject == other.subject && kind == other.kind && text == other.text;
}
