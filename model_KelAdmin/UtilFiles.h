#ifndef UTILFILES_H
#define UTILFILES_H

#include "model_kelAdmin_export.h"

#include <QList>
#include <QString>

class QLabel;

/*! \file UtilFiles.h
 * \brief File, path and text helpers.
 */

/*! \brief File status and path helpers used when saving and showing files.
 *
 * File status codes: 0 ready, 1 no file name, 2 folder missing, 3 new file,
 * 4 read-only. For saving, 0 and 3 both mean that the file may be written.
 */
class MODEL_KELADMIN_EXPORT UtilFiles
{
public:
    //! The status codes that GetFileStatus() returns.
    enum FileStatus {
        StatusReady = 0,         //!< the file exists and may be written
        StatusNoName = 1,        //!< no file name was given
        StatusFolderMissing = 2, //!< the folder of the file does not exist
        StatusNewFile = 3,       //!< the folder exists, the file not yet
        StatusReadOnly = 4       //!< the file exists and cannot be written
    };

    //! The status code of \a path, tested in the order 1, 2, 3, 4, else 0.
    static int GetFileStatus(QString path);
    //! GetFileStatus() with 3 (new file) folded into 0; the second argument is ignored.
    static int GetFileSaveStatus(QString path, QString);
    //! Same as GetFileStatus(); shows no message.
    static int CheckFileStatus(QString path);
    //! True when the file may be written (status 0 or 3); the second argument is ignored.
    static bool CheckFileSave(QString path, QString);
    //! Absolute path of the folder holding \a path, or the empty string for an empty path.
    static QString GetFileDir(QString path);
    //! The path exists and is a regular file.
    static bool FileExists(QString path);
    //! The path exists and is a folder.
    static bool DirExists(QString path);
    //! True when the size in whole kilobytes is strictly above \a limitKB; a missing file has size 0.
    static bool FileSizeReachedInKB(QString path, int limitKB);
    /*! The entity file beside its database: the second-to-last folder of
     * \a path is dropped (/d1/d2/d3/F gives /d1/d3/F), in native separators. */
    static QString getDataBaseEntityFilePath(QString path);
};

//! Display and parsing helpers for paths and simple delimited text.
class MODEL_KELADMIN_EXPORT UtilStrings
{
public:
    /*! Shortens a backslash-separated path to fit \a width pixels in Arial
     * at \a fontSize points: folders before the file name are replaced by
     * "...\" one at a time from the right. Paths without backslashes are
     * returned whole. */
    static QString getBetterPathString(QString path, int width, int fontSize);
    /*! Shows the entity path of \a path in \a label, shortened to \a width,
     * with the full native path as tool tip; returns the entity path. */
    static QString setBetterPathInQDockWidget(QString path, int width, QLabel *label);
    //! Expands the tokens "#\#n" into "\r\n" and "#\#t" into a tab.
    static QString returnLineBreak(QString text);
    /*! Cuts the field that starts at \a pos out of \a line up to the next
     * \a separator; \a pos moves past the separator, or to -1 at the end of
     * the line. With a \a quote, a field whose second character is the
     * quote loses its first two characters. */
    static QString GetWordSeparator(QString line, int &pos, QString separator, QString quote);
};

/*! \brief A text list with a notification flag.
 *
 * Remove1() only raises the flag; it removes nothing.
 */
class MODEL_KELADMIN_EXPORT TKxList : public QList<QString>
{
public:
    //! An empty list with the notification flag \a flag.
    explicit TKxList(bool flag);

    //! Notification hook for subclasses; does nothing here.
    virtual void Notify(void *);
    //! Raises the flag and removes nothing; always true.
    bool Remove1(void *);

    //! The notification flag.
    //!@{
    bool getFlag() const { return flag; }
    void setFlag(bool value) { flag = value; }
    //!@}

private:
    bool flag;
};

#endif // UTILFILES_H
