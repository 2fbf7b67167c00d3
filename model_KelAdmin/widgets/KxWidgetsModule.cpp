// The module that holds the library's uses of Qt Widgets and Qt Gui; the
// library loads it on first use (see KxWidgets_p.h).
#include "KxWidgets_p.h"

#include <QEvent>
#include <QFont>
#include <QFontMetrics>
#include <QLabel>
#include <QMessageBox>

namespace {

// QMessageBox fixes its own size to its contents whenever it is shown or
// laid out again; this box puts the prompt's minimum size back afterwards.
class PromptBox : public QMessageBox
{
public:
    static constexpr int MinWidth = 300;
    static constexpr int MinHeight = 200;

protected:
    void showEvent(QShowEvent *event) override
    {
        QMessageBox::showEvent(event);
        keepMinimumSize();
    }
    bool event(QEvent *event) override
    {
        const bool result = QMessageBox::event(event);
        if (event->type() == QEvent::LayoutRequest)
            keepMinimumSize();
        return result;
    }

private:
    void keepMinimumSize()
    {
        setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
        setMinimumSize(MinWidth, MinHeight);
    }
};

class Widgets final : public KxWidgets
{
public:
    QMessageBox *newPromptBox() const override { return new PromptBox; }

    int execPrompt(QMessageBox *box, const QString &text, const QString &informative, const QString &title,
                   int icon) const override
    {
        box->setTextFormat(Qt::RichText);
        box->setMinimumSize(PromptBox::MinWidth, PromptBox::MinHeight);
        box->setText(text);
        box->setInformativeText(informative);
        box->setIcon(static_cast<QMessageBox::Icon>(icon));
        box->setWindowTitle(title);
        box->setStandardButtons(QMessageBox::Yes | QMessageBox::YesToAll | QMessageBox::No | QMessageBox::NoToAll);
        box->setDefaultButton(QMessageBox::No);
        return box->exec();
    }

    void deleteBox(QMessageBox *box) const override { delete box; }

    qint64 horizontalAdvance(const QString &family, int pointSize, const QString &text) const override
    {
        QFont font(family);
        if (pointSize > 0)
            font.setPointSize(pointSize);
        return QFontMetrics(font).horizontalAdvance(text);
    }

    void setLabel(QLabel *label, const QString &text, const QString &toolTip) const override
    {
        label->setText(text);
        label->setToolTip(toolTip);
    }
};

} // namespace

extern "C" __attribute__((visibility("default"))) const KxWidgets *kx_widgets()
{
    static const Widgets widgets;
    return &widgets;
}
