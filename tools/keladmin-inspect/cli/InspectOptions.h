#ifndef KXINSPECT_INSPECTOPTIONS_H
#define KXINSPECT_INSPECTOPTIONS_H

#include <QString>
#include <QStringList>

namespace kxinspect {

//! What the command line asks for.
struct InspectOptions
{
    bool help = false;
    bool version = false;
    bool json = false;
    bool csv = false;         //!< CSV of the fields (or of a lookup's label counts) instead of the table
    bool wide = false;        //!< table labels whole, not cut
    bool noNotes = false;     //!< reading notes left out of the output
    bool failOnNotes = false; //!< exit status 3 when the reading wrote notes
    bool verbose = false;
    bool codebook = false;    //!< --codebook: the codebook library's reading instead of the front end's
    QString ddi;              //!< --ddi: where the DDI document goes ("-": stdout); empty when not asked
    bool diff = false;        //!< --diff OLD NEW: compare two files' codebooks
    QString newFile;          //!< --diff: the second file (file is the first)
    bool ignoreLabels = false; //!< --ignore-labels: --diff leaves label wording out
    QString format;  //!< empty: detect
    QString decimal; //!< empty: default
    QString file;             //!< the file inspected (the first of files)
    QStringList files;        //!< every file or folder named, in order; several make a report per file
    bool recursive = false;   //!< --recursive: folders are searched in their subfolders too
    QString html;    //!< --html: the file the page is written to; empty when not asked
    bool lookup = false;
    QString separator;
    bool check = false;
    int maxMessages = 100;
};

//! Several files, or a folder: one report per file and a summary.
bool severalFiles(const InspectOptions &options);

//! Reads the arguments (without the program name) into \a options; an empty text on success, else the problem.
QString parseArguments(const QStringList &args, InspectOptions &options);

} // namespace kxinspect

#endif // KXINSPECT_INSPECTOPTIONS_H
