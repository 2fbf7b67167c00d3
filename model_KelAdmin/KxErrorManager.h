#ifndef KXERRORMANAGER_H
#define KXERRORMANAGER_H

#include "model_kelAdmin_export.h"

#include <QException>
#include <QString>

/*! \file KxErrorManager.h
 * \brief The error type, the message function and the global error state.
 */

/*! \brief The one error type of the library.
 *
 * Raisers allocate it with new and throw the pointer (`KxErrorManager*`);
 * the catcher owns it, reads getErrorMessage() and deletes it. It must not
 * be rethrown through raise(), which would slice it.
 */
class MODEL_KELADMIN_EXPORT KxErrorManager : public QException
{
public:
    //! Error \a number of the catalogue, raised under the module name \a className.
    KxErrorManager(QString className, int number);
    //! The same, with the source \a line it was raised at.
    KxErrorManager(QString className, int number, int line);
    //! The only form that logs its composed message on construction.
    KxErrorManager(QString className, int number, QString text);
    //! Error \a number with a detail \a text and a source \a line.
    KxErrorManager(QString className, int number, QString text, int line);
    ~KxErrorManager() override;

    //! Sets module name, number, detail text and source line, as the constructors do.
    void init(QString className, int number, QString text, int line);

    /*! The message shown to the user: module, number, source line when
     * known, the catalogue text and the detail text. */
    QString getErrorMessage();
    //! The catalogue text for errorNumber alone.
    QString getMLDBMessage();
    //! Writes getErrorMessage() to the Qt debug log; opens no dialog.
    void displayMessageBox();

    //! The error number of the catalogue.
    int getErrorNumber() const { return errorNumber; }
    //! The source line given on construction; 0 when none.
    int getSourceLine() const { return sourceLine; }
    //! The module name the error was raised under (one of the EM_ constants).
    QString getClassName() const { return className; }
    //! The detail text given on construction; empty when none.
    QString getMessageText() const { return messageText; }

private:
    int errorNumber = 0;
    int sourceLine = 0;
    QString className;
    QString messageText;
};

//! For the application's use; nothing in this library reads or writes them.
//!@{
MODEL_KELADMIN_EXPORT extern int _ErrorNumber;
MODEL_KELADMIN_EXPORT extern QString _MsgText;
//!@}

/*! Returns \a defaultText with "%1".."%6" replaced by \a a1..\a a6 in that
 * order; an empty argument removes its placeholder. \a key is carried for a
 * later translation layer and not looked up. */
MODEL_KELADMIN_EXPORT QString MLDBGetMessage(QString key, QString defaultText, QString a1 = QString(),
                                             QString a2 = QString(), QString a3 = QString(),
                                             QString a4 = QString(), QString a5 = QString(),
                                             QString a6 = QString());

//! Help pages are not provided by this library: always a null text.
MODEL_KELADMIN_EXPORT QString MLDBGetHelpPage(QString key, QString defaultPage);

#endif // KXERRORMANAGER_H
