#ifndef KXWIDGETS_P_H
#define KXWIDGETS_P_H

// The library's few uses of Qt Widgets and Qt Gui (the decimal prompt, the
// width of a path in a font, a label) live in a module of their own,
// <libdir>/model_KelAdmin/widgets.so, loaded the first time one is needed.
// The library itself needs only Qt Core, so a program that never shows a
// dialog starts without Qt's GUI libraries and all that they load.

#include <QString>

class QLabel;
class QMessageBox;

class KxWidgets
{
public:
    //! A new prompt box that keeps its minimum size when Qt resizes it; needs a QApplication.
    virtual QMessageBox *newPromptBox() const = 0;
    //! Shows \a box modally with Yes, Yes to All, No and No to All (No the default); the button pressed.
    virtual int execPrompt(QMessageBox *box, const QString &text, const QString &informative, const QString &title,
                           int icon) const = 0;
    virtual void deleteBox(QMessageBox *box) const = 0;
    //! QFontMetrics::horizontalAdvance of \a text in \a family, at \a pointSize when it is above 0.
    virtual qint64 horizontalAdvance(const QString &family, int pointSize, const QString &text) const = 0;
    virtual void setLabel(QLabel *label, const QString &text, const QString &toolTip) const = 0;

protected:
    ~KxWidgets() = default;
};

namespace kxwidgets {

//! The module's functions, or null when the module cannot be loaded (the reason goes to the warning log once).
const KxWidgets *api();

//! Whether the running application is a QApplication, without touching Qt Widgets.
bool guiApplicationRunning();

} // namespace kxwidgets

//! The one function the module exports.
#define KX_WIDGETS_ENTRY "kx_widgets"

#endif // KXWIDGETS_P_H
