#include "CodebookTestSupport.h"

#include <KxCodebookDdi.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QStandardPaths>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <functional>
#include <vector>

using namespace KxCodebook;

namespace {

QString s(const char *utf8) { return QString::fromUtf8(utf8); }

// --- Reading the document back ---------------------------------------------------

const char *const DdiNamespace = "ddi:codebook:2_5";

//! One element of a document read back: its attributes, text and children.
struct Node
{
    QString name;  // local name
    QString namespaceUri;
    QXmlStreamAttributes attributes;
    QString text;  // the text directly inside
    std::vector<Node> children;

    QString attr(const char *attribute) const { return attributes.value(QLatin1String(attribute)).toString(); }
    bool has(const char *attribute) const { return attributes.hasAttribute(QLatin1String(attribute)); }
    QString lang() const
    {
        return attributes.value(QStringLiteral("http://www.w3.org/XML/1998/namespace"), QStringLiteral("lang"))
            .toString();
    }
    bool hasLang() const
    {
        return attributes.hasAttribute(QStringLiteral("http://www.w3.org/XML/1998/namespace"), QStringLiteral("lang"));
    }

    std::vector<const Node *> all(const char *element) const
    {
        std::vector<const Node *> found;
        for (const Node &c : children) {
            if (c.name == QLatin1String(element))
                found.push_back(&c);
        }
        return found;
    }

    //! The first child named \a element; a node named "(missing ...)" when there is none.
    const Node &child(const char *element) const
    {
        for (const Node &c : children) {
            if (c.name == QLatin1String(element))
                return c;
        }
        static Node missing;
        missing.name = QStringLiteral("(missing %1)").arg(QLatin1String(element));
        return missing;
    }

    //! Follows a path of child names: "fileDscr/fileTxt/fileName".
    const Node &at(const char *path) const
    {
        const Node *node = this;
        for (const QString &step : QString::fromLatin1(path).split(QLatin1Char('/')))
            node = &node->child(step.toLatin1().constData());
        return *node;
    }

    //! The element names of the children, in order.
    QStringList childNames() const
    {
        QStringList names;
        for (const Node &c : children)
            names << c.name;
        return names;
    }
};

struct Document
{
    Node root;
    QString error;  // empty when well-formed
};

void readChildren(QXmlStreamReader &xml, Node *parent)
{
    while (xml.readNext() != QXmlStreamReader::Invalid) {
        if (xml.isEndElement() || xml.isEndDocument())
            return;
        if (xml.isCharacters())
            parent->text += xml.text();
        if (xml.isStartElement()) {
            Node node;
            node.name = xml.name().toString();
            node.namespaceUri = xml.namespaceUri().toString();
            node.attributes = xml.attributes();
            readChildren(xml, &node);
            parent->children.push_back(std::move(node));
        }
    }
}

Document parse(const QByteArray &bytes)
{
    Document doc;
    QXmlStreamReader xml(bytes);
    Node top;
    readChildren(xml, &top);
    if (xml.hasError())
        doc.error = QStringLiteral("%1 (line %2)").arg(xml.errorString()).arg(xml.lineNumber());
    else if (top.children.size() != 1)
        doc.error = QStringLiteral("%1 root elements").arg(top.children.size());
    else
        doc.root = top.children.front();
    return doc;
}

DdiOptions fixedOptions()
{
    DdiOptions options;
    options.producer = QStringLiteral("KelAdmin");
    options.producerVersion = QStringLiteral("3.1");
    options.date = QDateTime(QDate(2024, 5, 17), QTime(10, 30), Qt::UTC);
    return options;
}

Document ddiOf(const Codebook &book, const DdiOptions &options = fixedOptions())
{
    const Document doc = parse(toDdi(book, options));
    EXPECT_TRUE(doc.error.isEmpty()) << doc.error.toStdString();
    return doc;
}

std::vector<const Node *> varsOf(const Document &doc)
{
    return doc.root.child("dataDscr").all("var");
}

const Node &varNamed(const Document &doc, const QString &name)
{
    for (const Node *v : varsOf(doc)) {
        if (v->attr("name") == name)
            return *v;
    }
    ADD_FAILURE() << "no var named " << name.toStdString();
    static Node none;
    return none;
}

QStringList varNames(const Document &doc)
{
    QStringList names;
    for (const Node *v : varsOf(doc))
        names << v->attr("name");
    return names;
}

//! The labl children of \a node as "lang=text" ("=text" without xml:lang).
QStringList lablsOf(const Node &node)
{
    QStringList labels;
    for (const Node *l : node.all("labl"))
        labels << l->lang() + QLatin1Char('=') + l->text;
    return labels;
}

//! "StartPos-EndPos/width" of the var's location, or "none".
QString locationOf(const Node &var)
{
    const std::vector<const Node *> locations = var.all("location");
    if (locations.empty())
        return QStringLiteral("none");
    const Node &l = *locations.front();
    return QStringLiteral("%1-%2/%3").arg(l.attr("StartPos"), l.attr("EndPos"), l.attr("width"));
}

//! Each catgry as "value=label" with " [missing]" when missing="Y" and " (missType)" when given.
QStringList categoriesOf(const Node &var)
{
    QStringList categories;
    for (const Node *c : var.all("catgry")) {
        QString text = c->child("catValu").text + QLatin1Char('=') + c->child("labl").text;
        if (c->attr("missing") == QLatin1String("Y"))
            text += QStringLiteral(" [missing]");
        if (c->has("missType"))
            text += QStringLiteral(" (%1)").arg(c->attr("missType"));
        categories << text;
    }
    return categories;
}

//! Each valrng or invalrng as "min:max" (a range) or "value" (an item), with "=key" when there is one.
QStringList rangesOf(const Node &var, const char *element)
{
    QStringList ranges;
    for (const Node *r : var.all(element)) {
        QString text;
        for (const Node &c : r->children) {
            if (c.name == QLatin1String("range"))
                text = (c.has("min") ? c.attr("min") : QStringLiteral("(open)")) + QLatin1Char(':')
                    + (c.has("max") ? c.attr("max") : QStringLiteral("(open)"));
            else if (c.name == QLatin1String("item"))
                text = c.attr("VALUE");
        }
        if (!r->child("key").name.startsWith(QLatin1Char('(')))
            text += QLatin1Char('=') + r->child("key").text;
        ranges << text;
    }
    return ranges;
}

// --- Codebooks built by hand -------------------------------------------------------

Labels labels(const QStringList &texts)
{
    Labels l;
    l.texts = texts;
    return l;
}

Code single(const char *code)
{
    Code c;
    c.from = s(code);
    return c;
}

Code range(const char *from, const char *to)
{
    Code c;
    c.from = s(from);
    c.to = s(to);
    c.isRange = true;
    return c;
}

Value value(QVector<Code> codes, const QStringList &texts, Special special = Special::None)
{
    Value v;
    v.codes = std::move(codes);
    v.labels = labels(texts);
    v.special = special;
    return v;
}

ValueSet valueSet(QVector<Value> values)
{
    ValueSet set;
    set.name = QStringLiteral("VS");
    set.values = std::move(values);
    return set;
}

MissingValue missingCode(const char *code, Special special = Special::None)
{
    MissingValue m;
    m.from = s(code);
    m.special = special;
    return m;
}

MissingValue missingRange(const char *from, const char *to)
{
    MissingValue m;
    m.from = s(from);
    m.to = s(to);
    m.isRange = true;
    return m;
}

Variable item(const char *name, const QStringList &texts, const char *record, int start, int width,
              Storage storage = Storage::Numeric)
{
    Variable v;
    v.name = s(name);
    v.labels = labels(texts);
    v.record = s(record);
    v.start = start;
    v.width = width;
    v.storage = storage;
    v.contentType = storage == Storage::Numeric ? QStringLiteral("numeric") : QStringLiteral("alpha");
    return v;
}

Variable idItem(const char *name, const QStringList &texts, int level, int start, int width)
{
    Variable v = item(name, texts, "", start, width);
    v.isId = true;
    v.level = level;
    return v;
}

Record record(const char *name, const QStringList &texts, int level, const char *type, int length)
{
    Record r;
    r.name = s(name);
    r.labels = labels(texts);
    r.level = level;
    r.typeValue = s(type);
    r.length = length;
    return r;
}

OccurrenceLabel occurrenceLabel(int occurrence, const char *text)
{
    OccurrenceLabel l;
    l.occurrence = occurrence;
    l.labels = Labels::of(s(text));
    return l;
}

/* A CSPro dictionary in English and French with two levels and two record
 * types; the record type is in column 1, identification items in columns 2
 * to 8, record items from column 9.
 *   HOUSING (level 1, 'H'): ROOMS 9-10; ASSET 11, 3 occurrences (11, 12, 13);
 *     DATE 14-19 alpha, 2 occurrences (14-19, 20-25), with subitems
 *     YEAR 14-17 and MONTH 18-19 that repeat with it.
 *   PERSON (level 2, 'P'): AGE 9-11, SEX 12. */
Codebook csproBook()
{
    Codebook book;
    book.setFileName(QStringLiteral("/surveys/2024/survey.dcf"));
    book.setFormat(Format::CSProText);
    book.setFormatVersion(QStringLiteral("CSPro 7.7"));
    book.setEncoding(QStringLiteral("UTF-8"));
    book.setName(QStringLiteral("SURVEY_DICT"));
    book.setLabels(labels({s("Household survey 2024"), s("Enquête auprès des ménages 2024")}));
    book.setLanguages({{QStringLiteral("EN"), QStringLiteral("English")}, {QStringLiteral("FR"), s("Français")}});
    book.setRecordType(1, 1);
    book.setRelativePositions(true);
    Level household;
    household.name = QStringLiteral("HOUSEHOLD");
    Level person;
    person.name = QStringLiteral("PERSON_LEVEL");
    book.setLevels({household, person});
    book.setRecords({record("HOUSING", {s("Housing record"), s("Fiche logement")}, 1, "H", 25),
                     record("PERSON", {s("Person record"), s("Fiche individuelle")}, 2, "P", 12)});

    Variable rooms = item("ROOMS", {s("Number of rooms"), s("Nombre de pièces")}, "HOUSING", 9, 2);
    rooms.valueSets = {valueSet({value({range("1", "20")}, {s("Rooms"), s("Pièces")}),
                                 value({single("99")}, {s("Not reported"), s("Non déclaré")}, Special::Missing)})};
    rooms.missing = {missingCode("99", Special::Missing)};

    Variable asset = item("ASSET", {s("Household owns"), s("Le ménage possède")}, "HOUSING", 11, 1);
    asset.occurrences = 3;
    asset.occurrenceLabels = {occurrenceLabel(1, "Radio"), occurrenceLabel(2, "Television")};
    asset.valueSets = {valueSet({value({single("1")}, {s("Yes"), s("Oui")}),
                                 value({single("2")}, {s("No"), s("Non")})})};

    Variable date = item("DATE", {s("Date of visit"), s("Date de la visite")}, "HOUSING", 14, 6, Storage::Text);
    date.occurrences = 2;
    Variable year = item("YEAR", {s("Year"), s("Année")}, "HOUSING", 14, 4);
    year.isSubitem = true;
    year.parent = QStringLiteral("DATE");
    Variable month = item("MONTH", {s("Month"), s("Mois")}, "HOUSING", 18, 2);
    month.isSubitem = true;
    month.parent = QStringLiteral("DATE");

    // 990:997 is special but not in the variable's list of missing values:
    // the writer must still declare it invalid.
    Variable age = item("AGE", {s("Age"), s("Âge")}, "PERSON", 9, 3);
    age.valueSets = {valueSet({value({range("0", "97")}, {s("Age in years"), s("Âge en années")}),
                               value({single("998"), single("999")}, {s("Unknown"), s("Inconnu")}, Special::Missing),
                               value({range("990", "997")}, {s("Reserved"), s("Réservé")}, Special::Refused),
                               value({single("")}, {s("Not applicable"), s("Sans objet")}, Special::NotAppl)})};
    age.missing = {missingCode("998", Special::Missing), missingCode("999", Special::Missing),
                   missingCode("", Special::NotAppl)};

    // The French label of 2 is empty: CSPro shows the English one.
    Variable sex = item("SEX", {s("Sex"), s("Sexe")}, "PERSON", 12, 1);
    sex.valueSets = {valueSet({value({single("1")}, {s("Male"), s("Homme")}),
                               value({single("2")}, {s("Female"), QString()}),
                               value({single("3"), single("4")}, {s("Other"), s("Autre")})})};
    sex.note = QStringLiteral("Asked of everyone");

    book.setVariables({idItem("CLUSTER", {s("Cluster"), s("Grappe")}, 1, 2, 3),
                       idItem("HHNO", {s("Household number"), s("Numéro du ménage")}, 1, 5, 2),
                       idItem("LINE", {s("Line number"), s("Numéro de ligne")}, 2, 7, 2), rooms, asset, date, year,
                       month, age, sex});
    return book;
}

Variable spssVariable(const char *name, const char *label, const char *format, int decimals,
                      Storage storage = Storage::Numeric)
{
    Variable v;
    v.name = s(name);
    v.labels = Labels::of(s(label));
    v.format = s(format);
    v.decimals = decimals;
    v.storage = storage;
    return v;
}

//! An SPSS-like file: 12 cases, no columns, user-missing values with SPSS's LO.
Codebook spssBook()
{
    Codebook book;
    book.setFileName(QStringLiteral("/data/people.sav"));
    book.setFormat(Format::Spss);
    book.setFormatVersion(QStringLiteral("2"));
    book.setEncoding(QStringLiteral("UTF-8"));
    book.setLabels(Labels::of(QString()));
    book.setLanguages({Language()});
    book.setRowCount(12);
    book.setCreated(QDateTime(QDate(2023, 11, 2), QTime(9, 15, 0), Qt::UTC));
    book.setLevels({Level()});

    Variable age = spssVariable("age", "Age in years", "F3.0", 0);
    age.measure = Measure::Scale;
    age.valueSets = {valueSet({value({single("-5")}, {s("Negative")}), value({single("98")}, {s("98 or more")}),
                               value({single("999")}, {s("Not reported")})})};
    age.missing = {missingCode("999"), missingRange("LO", "-1")};
    Variable region = spssVariable("region", "Region", "F1.0", 0);
    region.measure = Measure::Nominal;
    region.valueSets = {valueSet({value({single("1")}, {s("North")}), value({single("2")}, {s("South")})})};
    Variable satisfaction = spssVariable("satisf", "Satisfaction", "F1.0", 0);
    satisfaction.measure = Measure::Ordinal;
    book.setVariables({age, region, satisfaction, spssVariable("income", "Monthly income", "F9.2", 2),
                       spssVariable("fullname", "Name", "A24", 0, Storage::Text),
                       spssVariable("visit", "Date of visit", "DATE11", 0)});
    return book;
}

//! A Stata-like file: 3 observations, an extended missing value .a with a label.
Codebook stataBook()
{
    Codebook book;
    book.setFileName(QStringLiteral("panel.dta"));
    book.setFormat(Format::Stata);
    book.setFormatVersion(QStringLiteral("118"));
    book.setEncoding(QStringLiteral("UTF-8"));
    book.setLabels(Labels::of(QStringLiteral("Panel wave 3")));
    book.setLanguages({Language()});
    book.setRowCount(3);
    book.setLevels({Level()});
    Variable q1 = spssVariable("q1", "Agrees", "%8.0g", 0);
    q1.valueSets = {valueSet({value({single("1")}, {s("Yes")}), value({single("2")}, {s("No")}),
                              value({single(".a")}, {s("Refused")})})};
    MissingValue refused = missingCode(".a");
    refused.label = QStringLiteral("Refused");
    q1.missing = {refused};
    book.setVariables({q1, spssVariable("dob", "Date of birth", "%td", 0),
                       spssVariable("weight", "Weight", "%9.2f", 2),
                       spssVariable("comment", "Comment", "%-20s", 0, Storage::Text)});
    return book;
}

// Hostile texts: markup characters, quotes, control characters, a lone surrogate.
const QString Lone = QString(QChar(0xD800));
const QString Nasty = s("a<b>&c\"d'e") + QChar(0x01) + s("f") + QChar(0x1F) + s("g") + Lone + s("h");
const QString NastyRead = s("a<b>&c\"d'e\xEF\xBF\xBD" "f\xEF\xBF\xBDg\xEF\xBF\xBDh");

Codebook hostileBook()
{
    Codebook book;
    book.setFileName(QStringLiteral("/tmp/") + Nasty + QStringLiteral(".dcf"));
    book.setFormat(Format::CSProText);
    book.setFormatVersion(Nasty);
    book.setEncoding(Nasty);
    book.setName(Nasty);
    book.setLabels(labels({Nasty, Nasty}));
    // Names that are no language tags: a digit first, a space, nothing.
    book.setLanguages({{QStringLiteral("1X"), Nasty}, {QStringLiteral("de ch"), QString()}});
    book.setRecordType(1, 2);
    book.setLevels({Level()});
    book.setRecords({record("<R&>", {Nasty}, 1, "<&\"", 10), record("R2", {Nasty}, 1, "", 10)});
    Variable v = item("ID", {Nasty}, "", 3, 2);
    v.isId = true;
    Variable a = item("A", {Nasty, Nasty}, "<R&>", 5, 2, Storage::Text);
    a.name = Nasty;
    a.note = s("line one\r\nline two\ttab");
    a.valueSets = {valueSet({value({single("<&>"), range("\x01", "\"")}, {Nasty}),
                             value({single("\x1F")}, {Nasty}, Special::Missing)})};
    a.missing = {missingCode("\x1F", Special::Missing)};
    Variable b = item("B", {Nasty}, "R2", 5, 2);
    b.occurrences = 2;
    OccurrenceLabel first;
    first.occurrence = 1;
    first.labels = Labels::of(Nasty);
    b.occurrenceLabels = {first};
    book.setVariables({v, a, b});
    return book;
}

// --- Validation by the schema --------------------------------------------------------

QString schemaPath()
{
    return QDir(QStringLiteral(KX_DDI_SCHEMA_DIR)).filePath(QStringLiteral("codebook.xsd"));
}

//! Why the schema check cannot run here, or an empty string.
QString schemaCheckUnavailable()
{
    if (!QFile::exists(schemaPath()))
        return QStringLiteral("no DDI schema at ") + schemaPath();
    if (QStandardPaths::findExecutable(QStringLiteral("xmllint")).isEmpty())
        return QStringLiteral("xmllint is not installed (Debian: libxml2-utils)");
    return QString();
}

//! xmllint's complaints about \a path, or an empty string when it validates.
QString schemaErrors(const QString &path)
{
    QProcess xmllint;
    xmllint.setProcessChannelMode(QProcess::MergedChannels);
    xmllint.start(QStringLiteral("xmllint"),
                  {QStringLiteral("--noout"), QStringLiteral("--schema"), schemaPath(), path});
    if (!xmllint.waitForFinished(120000))
        return QStringLiteral("xmllint did not finish");
    const QString output = QString::fromUtf8(xmllint.readAll());
    if (xmllint.exitStatus() != QProcess::NormalExit || xmllint.exitCode() != 0)
        return output.isEmpty() ? QStringLiteral("xmllint failed") : output;
    return QString();
}

void expectValidBySchema(const Codebook &book, const char *name)
{
    cbtest::TempFiles files;
    const QString path = files.write(s(name) + QStringLiteral(".xml"), toDdi(book, fixedOptions()));
    EXPECT_EQ(schemaErrors(path), QString()) << name;
}

} // namespace

// --- The document ------------------------------------------------------------------

TEST(DdiDocument, RootIsACodeBookOfVersion25WithoutASchemaLocationHint)
{
    const QByteArray bytes = toDdi(csproBook(), fixedOptions());
    EXPECT_TRUE(bytes.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"));
    const Document doc = ddiOf(csproBook());
    EXPECT_EQ(doc.root.name, s("codeBook"));
    EXPECT_EQ(doc.root.namespaceUri, s(DdiNamespace));
    EXPECT_EQ(doc.root.attr("version"), s("2.5"));
    // The root carries the namespace and the version only; validators are given the schema.
    EXPECT_EQ(doc.root.attributes.size(), 1);
    EXPECT_FALSE(doc.root.attributes.hasAttribute(QStringLiteral("http://www.w3.org/2001/XMLSchema-instance"),
                                                  QStringLiteral("schemaLocation")));
    EXPECT_EQ(doc.root.childNames(), QStringList({"docDscr", "stdyDscr", "fileDscr", "dataDscr"}));
}

TEST(DdiDocument, EveryElementIsInTheDdiNamespace)
{
    const Document doc = ddiOf(csproBook());
    std::function<void(const Node &)> check = [&](const Node &n) {
        EXPECT_EQ(n.namespaceUri, s(DdiNamespace)) << n.name.toStdString();
        for (const Node &c : n.children)
            check(c);
    };
    check(doc.root);
}

TEST(DdiDocument, DocDscrNamesTheCodebookItsProducerAndDate)
{
    const Document doc = ddiOf(csproBook());
    const Node &citation = doc.root.at("docDscr/citation");
    EXPECT_EQ(citation.at("titlStmt/titl").text, s("Codebook of Household survey 2024"));
    const Node &prod = citation.child("prodStmt");
    EXPECT_EQ(prod.childNames(), QStringList({"producer", "prodDate", "software"}));  // the schema's order
    EXPECT_EQ(prod.child("producer").text, s("KelAdmin 3.1"));
    EXPECT_EQ(prod.child("prodDate").attr("date"), s("2024-05-17"));
    EXPECT_EQ(prod.child("prodDate").text, s("2024-05-17"));
    EXPECT_EQ(prod.child("software").text, s("KelAdmin"));
    EXPECT_EQ(prod.child("software").attr("version"), s("3.1"));
}

TEST(DdiDocument, ProdDateIsTodayWhenNoDateIsGiven)
{
    DdiOptions options;
    const QString before = QDate::currentDate().toString(Qt::ISODate);
    const Document doc = ddiOf(csproBook(), options);
    const QString after = QDate::currentDate().toString(Qt::ISODate);
    const QString date = doc.root.at("docDscr/citation/prodStmt/prodDate").attr("date");
    EXPECT_TRUE(date == before || date == after) << date.toStdString();
    EXPECT_EQ(doc.root.at("docDscr/citation/prodStmt/producer").text, s("KelCodebook"));
}

TEST(DdiDocument, StudyTitleIsTheLabelWithParallelTitlesPerLanguageAndIDNoTheName)
{
    const Document doc = ddiOf(csproBook());
    const Node &titles = doc.root.at("stdyDscr/citation/titlStmt");
    EXPECT_EQ(titles.childNames(), QStringList({"titl", "parTitl", "IDNo"}));
    EXPECT_EQ(titles.child("titl").text, s("Household survey 2024"));
    EXPECT_EQ(titles.child("titl").lang(), s("en"));
    EXPECT_EQ(titles.child("parTitl").text, s("Enquête auprès des ménages 2024"));
    EXPECT_EQ(titles.child("parTitl").lang(), s("fr"));
    EXPECT_EQ(titles.child("IDNo").text, s("SURVEY_DICT"));
}

TEST(DdiDocument, WithoutLabelOrNameTheFileNameStandsIn)
{
    const Document doc = ddiOf(spssBook());
    const Node &titles = doc.root.at("stdyDscr/citation/titlStmt");
    EXPECT_EQ(titles.child("titl").text, s("people.sav"));
    EXPECT_FALSE(titles.child("titl").hasLang());  // the file names no language
    EXPECT_TRUE(titles.all("parTitl").empty());
    EXPECT_EQ(titles.child("IDNo").text, s("people.sav"));
    EXPECT_EQ(doc.root.at("docDscr/citation/titlStmt/titl").text, s("Codebook of people.sav"));
}

TEST(DdiDocument, TheFileCreationTimeIsTheStudysProductionDate)
{
    const Document doc = ddiOf(spssBook());
    const Node &date = doc.root.at("stdyDscr/citation/prodStmt/prodDate");
    EXPECT_EQ(date.attr("date"), s("2023-11-02T09:15:00Z"));
    EXPECT_TRUE(ddiOf(csproBook()).root.at("stdyDscr/citation").all("prodStmt").empty());
}

TEST(DdiDocument, ANullCodebookStillGivesADocument)
{
    const Document doc = ddiOf(Codebook());
    EXPECT_EQ(doc.root.at("stdyDscr/citation/titlStmt/titl").text, s("unnamed data set"));
    EXPECT_TRUE(varsOf(doc).empty());
    EXPECT_EQ(doc.root.at("fileDscr/fileTxt/dimensns/varQnty").text, s("0"));
}

// --- The file ------------------------------------------------------------------------

TEST(DdiFile, CSProFileIsHierarchicalWithOneRecGrpPerRecord)
{
    const Document doc = ddiOf(csproBook());
    const Node &file = doc.root.child("fileDscr");
    EXPECT_EQ(file.attr("ID"), s("F1"));
    const Node &text = file.child("fileTxt");
    EXPECT_EQ(text.childNames(), QStringList({"fileName", "fileCont", "fileStrc", "dimensns", "fileType", "format"}));
    EXPECT_EQ(text.child("fileName").text, s("survey.dcf"));
    EXPECT_EQ(text.child("fileCont").text,
              s("CSPro dictionary of a fixed-width text data file: 2 record types, 10 items."));
    EXPECT_EQ(text.child("fileType").text, s("CSPro 7.7 text dictionary"));
    EXPECT_EQ(text.child("fileType").attr("charset"), s("UTF-8"));
    EXPECT_EQ(text.child("format").text, s("Fixed-width text, one record per line, the record type in column 1."));
    EXPECT_EQ(text.child("fileStrc").attr("type"), s("hierarchical"));
    // 3 identification items, ROOMS, 3 ASSETs, 2 DATEs, 2 YEARs, 2 MONTHs, AGE, SEX.
    EXPECT_EQ(text.at("dimensns/varQnty").text, s("15"));
    EXPECT_TRUE(text.child("dimensns").all("caseQnty").empty());  // a dictionary holds no data

    const std::vector<const Node *> groups = text.child("fileStrc").all("recGrp");
    ASSERT_EQ(groups.size(), 2u);
    const Node &housing = *groups[0];
    EXPECT_EQ(housing.attr("ID"), s("R1"));
    EXPECT_EQ(housing.attr("rectype"), s("H"));
    EXPECT_EQ(housing.attr("keyvar"), s("V1 V2"));  // the level-1 identification items
    EXPECT_EQ(housing.attr("rtypeloc"), s("1"));
    EXPECT_EQ(housing.attr("rtypewidth"), s("1"));
    EXPECT_EQ(housing.attr("rtypevtype"), s("character"));
    EXPECT_EQ(lablsOf(housing), QStringList({"en=Housing record", "fr=Fiche logement"}));
    EXPECT_EQ(housing.at("recDimnsn/varQnty").text, s("10"));  // ROOMS, ASSET×3, DATE×2, YEAR×2, MONTH×2
    EXPECT_EQ(housing.at("recDimnsn/logRecL").text, s("25"));
    const Node &person = *groups[1];
    EXPECT_EQ(person.attr("ID"), s("R2"));
    EXPECT_EQ(person.attr("rectype"), s("P"));
    EXPECT_EQ(person.attr("keyvar"), s("V1 V2 V3"));  // levels 1 and 2
    EXPECT_EQ(person.at("recDimnsn/varQnty").text, s("2"));
    EXPECT_EQ(person.at("recDimnsn/logRecL").text, s("12"));
}

TEST(DdiFile, SpssFileIsRectangularWithItsCaseCount)
{
    const Document doc = ddiOf(spssBook());
    const Node &text = doc.root.at("fileDscr/fileTxt");
    EXPECT_EQ(text.child("fileStrc").attr("type"), s("rectangular"));
    EXPECT_TRUE(text.child("fileStrc").children.empty());
    EXPECT_EQ(text.at("dimensns/caseQnty").text, s("12"));
    EXPECT_EQ(text.at("dimensns/varQnty").text, s("6"));
    EXPECT_TRUE(text.child("dimensns").all("logRecL").empty());
    EXPECT_EQ(text.child("fileType").text, s("SPSS system file"));
    EXPECT_EQ(text.child("fileCont").text, s("SPSS system file: 6 variables, 12 cases."));
    EXPECT_TRUE(text.all("format").empty());
}

TEST(DdiFile, StataFileNamesItsVersion)
{
    const Document doc = ddiOf(stataBook());
    const Node &text = doc.root.at("fileDscr/fileTxt");
    EXPECT_EQ(text.child("fileName").text, s("panel.dta"));
    EXPECT_EQ(text.child("fileType").text, s("Stata 118"));
    EXPECT_EQ(text.at("dimensns/caseQnty").text, s("3"));
    EXPECT_EQ(doc.root.at("stdyDscr/citation/titlStmt/titl").text, s("Panel wave 3"));
}

TEST(DdiFile, FileTypeNamesTheFormatAndItsVersion)
{
    Codebook json = csproBook();
    json.setFormat(Format::CSProJson);
    json.setFormatVersion(QStringLiteral("8.0"));
    EXPECT_EQ(ddiOf(json).root.at("fileDscr/fileTxt/fileType").text, s("CSPro 8.0 JSON dictionary"));
    Codebook zsav = spssBook();
    zsav.setFormatVersion(QStringLiteral("3"));  // $FL3
    EXPECT_EQ(ddiOf(zsav).root.at("fileDscr/fileTxt/fileType").text, s("SPSS compressed system file"));
    Codebook unknown = spssBook();
    unknown.setFormat(Format::Unknown);
    EXPECT_TRUE(ddiOf(unknown).root.at("fileDscr/fileTxt").all("fileType").empty());
}

// --- Variables ------------------------------------------------------------------------

TEST(DdiVariables, RepeatedItemsBecomeOneVarPerOccurrence)
{
    const Document doc = ddiOf(csproBook());
    EXPECT_EQ(varNames(doc), QStringList({"CLUSTER", "HHNO", "LINE", "ROOMS", "ASSET_1", "ASSET_2", "ASSET_3",
                                          "DATE_1", "DATE_2", "YEAR_1", "YEAR_2", "MONTH_1", "MONTH_2", "AGE",
                                          "SEX"}));
    int n = 0;
    for (const Node *v : varsOf(doc))
        EXPECT_EQ(v->attr("ID"), QStringLiteral("V%1").arg(++n));
}

TEST(DdiVariables, LocationsFollowStartWidthAndOccurrences)
{
    const Document doc = ddiOf(csproBook());
    const struct
    {
        const char *name, *location;
    } expected[] = {
        {"CLUSTER", "2-4/3"},   {"HHNO", "5-6/2"},      {"LINE", "7-8/2"},      {"ROOMS", "9-10/2"},
        {"ASSET_1", "11-11/1"}, {"ASSET_2", "12-12/1"}, {"ASSET_3", "13-13/1"},
        // DATE is 6 wide: its occurrences start at 14 and 20; the subitems move with them.
        {"DATE_1", "14-19/6"},  {"DATE_2", "20-25/6"},  {"YEAR_1", "14-17/4"},  {"YEAR_2", "20-23/4"},
        {"MONTH_1", "18-19/2"}, {"MONTH_2", "24-25/2"}, {"AGE", "9-11/3"},      {"SEX", "12-12/1"},
    };
    for (const auto &e : expected)
        EXPECT_EQ(locationOf(varNamed(doc, s(e.name))), s(e.location)) << e.name;
}

TEST(DdiVariables, ASubitemThatRepeatsItselfStepsByItsOwnWidth)
{
    Codebook book = csproBook();
    QVector<Variable> variables = book.variables();
    const int year = book.indexOfVariable(QStringLiteral("YEAR"));
    variables[year - 1].occurrences = 1;  // DATE no longer repeats
    variables[year].occurrences = 2;      // YEAR does: 14-17, 18-21
    book.setVariables(variables);
    const Document doc = ddiOf(book);
    EXPECT_EQ(locationOf(varNamed(doc, s("YEAR_1"))), s("14-17/4"));
    EXPECT_EQ(locationOf(varNamed(doc, s("YEAR_2"))), s("18-21/4"));
    EXPECT_EQ(locationOf(varNamed(doc, s("MONTH"))), s("18-19/2"));
    EXPECT_EQ(locationOf(varNamed(doc, s("DATE"))), s("14-19/6"));
}

TEST(DdiVariables, VarsWithoutColumnsHaveNoLocation)
{
    const Document doc = ddiOf(spssBook());
    for (const Node *v : varsOf(doc))
        EXPECT_EQ(locationOf(*v), s("none")) << v->attr("name").toStdString();
}

TEST(DdiVariables, AttributesNameFileRecordDecimalsAndInterval)
{
    const Document doc = ddiOf(csproBook());
    const Node &cluster = varNamed(doc, s("CLUSTER"));
    EXPECT_EQ(cluster.attr("files"), s("F1"));
    EXPECT_FALSE(cluster.has("rectype"));  // identification items belong to every record
    const Node &asset2 = varNamed(doc, s("ASSET_2"));
    EXPECT_EQ(asset2.attr("rectype"), s("R1"));
    EXPECT_EQ(asset2.attr("dcml"), s("0"));
    EXPECT_EQ(asset2.attr("intrvl"), s("discrete"));
    EXPECT_EQ(varNamed(doc, s("SEX")).attr("rectype"), s("R2"));
    const Node &date = varNamed(doc, s("DATE_1"));
    EXPECT_FALSE(date.has("dcml"));  // alpha
    EXPECT_FALSE(date.has("intrvl"));

    const Document spss = ddiOf(spssBook());
    EXPECT_EQ(varNamed(spss, s("income")).attr("dcml"), s("2"));
    EXPECT_EQ(varNamed(spss, s("income")).attr("intrvl"), s("contin"));  // decimals, no value labels
    EXPECT_EQ(varNamed(spss, s("age")).attr("intrvl"), s("contin"));     // measured on a scale
    EXPECT_FALSE(varNamed(spss, s("age")).has("nature"));
    EXPECT_EQ(varNamed(spss, s("region")).attr("nature"), s("nominal"));
    EXPECT_EQ(varNamed(spss, s("region")).attr("intrvl"), s("discrete"));
    EXPECT_EQ(varNamed(spss, s("satisf")).attr("nature"), s("ordinal"));
    EXPECT_FALSE(varNamed(spss, s("fullname")).has("intrvl"));
}

TEST(DdiVariables, RecordGroupsListTheirVarsBeforeAnyVar)
{
    const Document doc = ddiOf(csproBook());
    const Node &data = doc.root.child("dataDscr");
    const QStringList names = data.childNames();
    EXPECT_EQ(names.mid(0, 3), QStringList({"varGrp", "varGrp", "var"}));
    const std::vector<const Node *> groups = data.all("varGrp");
    ASSERT_EQ(groups.size(), 2u);
    EXPECT_EQ(groups[0]->attr("type"), s("record"));
    EXPECT_EQ(groups[0]->attr("name"), s("HOUSING"));
    EXPECT_EQ(groups[0]->attr("var"), s("V4 V5 V6 V7 V8 V9 V10 V11 V12 V13"));
    EXPECT_EQ(lablsOf(*groups[0]), QStringList({"en=Housing record", "fr=Fiche logement"}));
    EXPECT_EQ(groups[1]->attr("name"), s("PERSON"));
    EXPECT_EQ(groups[1]->attr("var"), s("V14 V15"));
}

TEST(DdiVariables, LabelsComeOnePerLanguage)
{
    const Document doc = ddiOf(csproBook());
    EXPECT_EQ(lablsOf(varNamed(doc, s("AGE"))), QStringList({s("en=Age"), s("fr=Âge")}));
    // An occurrence's label joins the item's; the third occurrence has none.
    EXPECT_EQ(lablsOf(varNamed(doc, s("ASSET_1"))),
              QStringList({s("en=Household owns (Radio)"), s("fr=Le ménage possède (Radio)")}));
    EXPECT_EQ(lablsOf(varNamed(doc, s("ASSET_2"))),
              QStringList({s("en=Household owns (Television)"), s("fr=Le ménage possède (Television)")}));
    EXPECT_EQ(lablsOf(varNamed(doc, s("ASSET_3"))),
              QStringList({s("en=Household owns"), s("fr=Le ménage possède")}));
    // A single unnamed language: no xml:lang.
    EXPECT_EQ(lablsOf(varNamed(ddiOf(spssBook()), s("age"))), QStringList({s("=Age in years")}));
}

TEST(DdiVariables, AnUnnamedOrOddLanguageStillGetsAValidTag)
{
    Codebook book = csproBook();
    book.setLanguages({{QStringLiteral("EN_GB"), QString()}, {QStringLiteral("2nd"), QString()}});
    const Document doc = ddiOf(book);
    EXPECT_EQ(lablsOf(varNamed(doc, s("AGE"))), QStringList({s("en-gb=Age"), s("x-2nd=Âge")}));
}

TEST(DdiVariables, NotesAndFormats)
{
    const Document doc = ddiOf(csproBook());
    const Node &sex = varNamed(doc, s("SEX"));
    EXPECT_EQ(sex.child("notes").text, s("Asked of everyone"));
    EXPECT_EQ(sex.childNames().last(), s("notes"));
    const Node &format = sex.child("varFormat");
    EXPECT_EQ(format.attr("type"), s("numeric"));
    EXPECT_EQ(format.attr("formatname"), s("numeric"));
    EXPECT_EQ(format.attr("schema"), s("other"));
    EXPECT_EQ(format.attr("otherSchema"), s("CSPro"));
    EXPECT_EQ(varNamed(doc, s("DATE_2")).child("varFormat").attr("type"), s("character"));
    EXPECT_EQ(varNamed(doc, s("DATE_2")).child("varFormat").attr("formatname"), s("alpha"));

    const Document spss = ddiOf(spssBook());
    EXPECT_EQ(varNamed(spss, s("income")).child("varFormat").attr("formatname"), s("F9.2"));
    EXPECT_EQ(varNamed(spss, s("income")).child("varFormat").attr("schema"), s("SPSS"));
    EXPECT_FALSE(varNamed(spss, s("income")).child("varFormat").has("category"));
    EXPECT_EQ(varNamed(spss, s("fullname")).child("varFormat").attr("type"), s("character"));
    EXPECT_EQ(varNamed(spss, s("visit")).child("varFormat").attr("category"), s("date"));

    const Document stata = ddiOf(stataBook());
    const Node &weight = varNamed(stata, s("weight")).child("varFormat");
    EXPECT_EQ(weight.attr("formatname"), s("%9.2f"));
    EXPECT_EQ(weight.attr("schema"), s("other"));
    EXPECT_EQ(weight.attr("otherSchema"), s("Stata"));
    EXPECT_EQ(varNamed(stata, s("dob")).child("varFormat").attr("category"), s("date"));
    EXPECT_EQ(varNamed(stata, s("comment")).child("varFormat").attr("type"), s("character"));
}

TEST(DdiVariables, ABinaryItemHasNoFormatType)
{
    Codebook book = csproBook();
    Variable photo = item("PHOTO", {s("Photo")}, "PERSON", 0, 1, Storage::Binary);
    photo.contentType = QStringLiteral("image");
    QVector<Variable> variables = book.variables();
    variables.append(photo);
    book.setVariables(variables);
    const Document doc = ddiOf(book);
    const Node &format = varNamed(doc, s("PHOTO")).child("varFormat");
    EXPECT_FALSE(format.has("type"));
    EXPECT_EQ(format.attr("formatname"), s("image"));
}

// --- Values -----------------------------------------------------------------------------

TEST(DdiValues, EachSingleCodeIsACategoryAndSpecialsAreMissing)
{
    const Document doc = ddiOf(csproBook());
    EXPECT_EQ(categoriesOf(varNamed(doc, s("ROOMS"))), QStringList({"99=Not reported [missing] (MISSING)"}));
    EXPECT_EQ(categoriesOf(varNamed(doc, s("AGE"))),
              QStringList({"998=Unknown [missing] (MISSING)", "999=Unknown [missing] (MISSING)",
                           "=Not applicable [missing] (NOTAPPL)"}));
    // A value with two codes gives two categories with its label.
    EXPECT_EQ(categoriesOf(varNamed(doc, s("SEX"))), QStringList({"1=Male", "2=Female", "3=Other", "4=Other"}));
    // Every occurrence carries the value set.
    EXPECT_EQ(categoriesOf(varNamed(doc, s("ASSET_3"))), QStringList({"1=Yes", "2=No"}));
}

TEST(DdiValues, CategoryLabelsComeOnePerLanguage)
{
    const Document doc = ddiOf(csproBook());
    const std::vector<const Node *> sex = varNamed(doc, s("SEX")).all("catgry");
    ASSERT_EQ(sex.size(), 4u);
    EXPECT_EQ(lablsOf(*sex[0]), QStringList({"en=Male", "fr=Homme"}));
    EXPECT_EQ(lablsOf(*sex[1]), QStringList({"en=Female", "fr=Female"}));  // French left empty
    EXPECT_EQ(sex[0]->childNames(), QStringList({"catValu", "labl", "labl"}));
}

TEST(DdiValues, RangesAreValidRangesAndSpecialRangesInvalid)
{
    const Document doc = ddiOf(csproBook());
    const Node &rooms = varNamed(doc, s("ROOMS"));
    EXPECT_EQ(rangesOf(rooms, "valrng"), QStringList({"1:20=Rooms"}));
    EXPECT_EQ(rangesOf(rooms, "invalrng"), QStringList({"99"}));  // the missing value has no label of its own
    const Node &age = varNamed(doc, s("AGE"));
    EXPECT_EQ(rangesOf(age, "valrng"), QStringList({"0:97=Age in years"}));
    // The declared missing values, then the special range the list lacked.
    EXPECT_EQ(rangesOf(age, "invalrng"), QStringList({"998", "999", "", "990:997=Reserved"}));
    EXPECT_TRUE(varNamed(doc, s("SEX")).all("valrng").empty());
    EXPECT_TRUE(varNamed(doc, s("SEX")).all("invalrng").empty());
}

TEST(DdiValues, ChildrenComeInTheSchemasOrder)
{
    const Document doc = ddiOf(csproBook());
    EXPECT_EQ(varNamed(doc, s("AGE")).childNames(),
              QStringList({"location", "labl", "labl", "valrng", "invalrng", "invalrng", "invalrng", "invalrng",
                           "catgry", "catgry", "catgry", "varFormat"}));
}

TEST(DdiValues, SpssUserMissingValuesAndRanges)
{
    const Document doc = ddiOf(spssBook());
    const Node &age = varNamed(doc, s("age"));
    // -5 falls in LO:-1, 999 is a missing code, 98 is neither.
    EXPECT_EQ(categoriesOf(age), QStringList({"-5=Negative [missing]", "98=98 or more", "999=Not reported [missing]"}));
    // SPSS's LO is an open end: no min.
    EXPECT_EQ(rangesOf(age, "invalrng"), QStringList({"999", "(open):-1"}));
}

TEST(DdiValues, StataExtendedMissingValues)
{
    const Document doc = ddiOf(stataBook());
    const Node &q1 = varNamed(doc, s("q1"));
    EXPECT_EQ(categoriesOf(q1), QStringList({"1=Yes", "2=No", ".a=Refused [missing]"}));
    EXPECT_EQ(rangesOf(q1, "invalrng"), QStringList({".a=Refused"}));
}

TEST(DdiValues, RangesOfAVariableWithDecimalsAreReal)
{
    Codebook book = spssBook();
    QVector<Variable> variables = book.variables();
    variables[3].valueSets = {valueSet({value({range("0.5", "99.5")}, {s("Valid")})})};
    book.setVariables(variables);
    const Document doc = ddiOf(book);
    const Node &income = varNamed(doc, s("income"));
    EXPECT_EQ(income.child("valrng").child("range").attr("UNITS"), s("REAL"));
    const std::vector<const Node *> ageRanges = varNamed(doc, s("age")).all("invalrng");
    ASSERT_EQ(ageRanges.size(), 2u);
    ASSERT_EQ(ageRanges[1]->child("range").name, s("range"));  // LO:-1
    EXPECT_FALSE(ageRanges[1]->child("range").has("UNITS"));    // no decimals: integers, the default
}

// --- Identifiers ---------------------------------------------------------------------

TEST(DdiIdentifiers, IdsAreUniqueNamesAndEveryReferenceResolves)
{
    for (const Codebook &book : {csproBook(), spssBook(), stataBook(), hostileBook()}) {
        const Document doc = ddiOf(book);
        QSet<QString> ids;
        QStringList references;
        const QRegularExpression ncName(QStringLiteral("^[A-Za-z_][A-Za-z0-9._-]*$"));
        std::function<void(const Node &)> collect = [&](const Node &n) {
            if (n.has("ID")) {
                EXPECT_TRUE(ncName.match(n.attr("ID")).hasMatch()) << n.attr("ID").toStdString();
                EXPECT_FALSE(ids.contains(n.attr("ID"))) << n.attr("ID").toStdString();
                ids.insert(n.attr("ID"));
            }
            for (const char *idrefs : {"keyvar", "var", "files"})
                references += n.attr(idrefs).split(QLatin1Char(' '), Qt::SkipEmptyParts);
            if (n.name == QLatin1String("var") && n.has("rectype"))
                references << n.attr("rectype");
            for (const Node &c : n.children)
                collect(c);
        };
        collect(doc.root);
        EXPECT_FALSE(references.isEmpty());
        for (const QString &r : references)
            EXPECT_TRUE(ids.contains(r)) << r.toStdString();
    }
}

// --- Hostile texts ----------------------------------------------------------------------

TEST(DdiHostileText, MarkupQuotesAndControlCharactersSurviveAsText)
{
    const QByteArray bytes = toDdi(hostileBook(), fixedOptions());
    const Document doc = parse(bytes);
    ASSERT_EQ(doc.error, QString());
    // Control characters and the lone surrogate become U+FFFD; the rest stays.
    EXPECT_EQ(doc.root.at("stdyDscr/citation/titlStmt/titl").text, NastyRead);
    EXPECT_EQ(doc.root.at("stdyDscr/citation/titlStmt/IDNo").text, NastyRead);
    EXPECT_EQ(doc.root.at("fileDscr/fileTxt/fileType").attr("charset"), NastyRead);
    const Node &a = *varsOf(doc).at(1);
    EXPECT_EQ(a.attr("name"), NastyRead);
    EXPECT_EQ(a.child("labl").text, NastyRead);
    // Carriage return, line feed and tab come back as they were written.
    EXPECT_EQ(a.child("notes").text, s("line one\r\nline two\ttab"));
    EXPECT_EQ(categoriesOf(a),
              QStringList({s("<&>=") + NastyRead, s("\xEF\xBF\xBD=") + NastyRead + s(" [missing] (MISSING)")}));
    EXPECT_EQ(rangesOf(a, "valrng"), QStringList({s("\xEF\xBF\xBD:\"=") + NastyRead}));
    const std::vector<const Node *> groups = doc.root.at("fileDscr/fileTxt/fileStrc").all("recGrp");
    ASSERT_EQ(groups.size(), 2u);
    EXPECT_EQ(groups[0]->attr("rectype"), s("<&\""));
    EXPECT_EQ(groups[1]->attr("rectype"), QString());  // blank, but the file has a record type
    EXPECT_TRUE(groups[1]->has("rectype"));
    EXPECT_EQ(doc.root.child("dataDscr").child("varGrp").attr("name"), s("<R&>"));
    EXPECT_EQ(varsOf(doc).at(2)->attr("name"), s("B_1"));
    EXPECT_EQ(varsOf(doc).at(2)->child("labl").text, NastyRead + s(" (") + NastyRead + s(")"));
    // No raw control character anywhere in the bytes.
    for (char c : bytes)
        EXPECT_FALSE(static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t') << int(c);
}

TEST(DdiHostileText, NamesNeverBecomeIds)
{
    const Document doc = ddiOf(hostileBook());
    EXPECT_EQ(doc.root.at("fileDscr/fileTxt/fileStrc/recGrp").attr("ID"), s("R1"));
    EXPECT_EQ(varsOf(doc).at(1)->attr("ID"), s("V2"));
    EXPECT_EQ(varsOf(doc).at(1)->attr("rectype"), s("R1"));
}

// --- Writing -------------------------------------------------------------------------------

TEST(DdiWriting, ADeviceNotOpenForWritingIsRefused)
{
    QString error;
    EXPECT_FALSE(writeDdi(csproBook(), nullptr, DdiOptions(), &error));
    EXPECT_FALSE(error.isEmpty());
    QBuffer closed;
    error.clear();
    EXPECT_FALSE(writeDdi(csproBook(), &closed, DdiOptions(), &error));
    EXPECT_FALSE(error.isEmpty());
    QByteArray bytes("x");
    QBuffer readOnly(&bytes);
    readOnly.open(QIODevice::ReadOnly);
    EXPECT_FALSE(writeDdi(csproBook(), &readOnly));
}

TEST(DdiWriting, AFullDeviceIsReported)
{
    QFile full(QStringLiteral("/dev/full"));
    if (!full.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        GTEST_SKIP() << "no /dev/full here";
    QString error;
    EXPECT_FALSE(writeDdi(csproBook(), &full, DdiOptions(), &error));
    EXPECT_FALSE(error.isEmpty());
}

TEST(DdiWriting, WriteDdiAndToDdiGiveTheSameBytes)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QString error = QStringLiteral("not cleared");
    EXPECT_TRUE(writeDdi(csproBook(), &buffer, fixedOptions(), &error));
    EXPECT_EQ(error, QString());
    EXPECT_EQ(bytes, toDdi(csproBook(), fixedOptions()));
}

TEST(DdiWriting, ManyVariablesStreamThroughWhole)
{
    Codebook book = spssBook();
    QVector<Variable> variables;
    for (int i = 0; i < 20000; ++i)
        variables.append(spssVariable(QStringLiteral("v%1").arg(i).toUtf8().constData(), "A label", "F8.0", 0));
    book.setVariables(variables);
    const Document doc = ddiOf(book);
    ASSERT_EQ(varsOf(doc).size(), 20000u);
    EXPECT_EQ(varsOf(doc).back()->attr("name"), s("v19999"));
    EXPECT_EQ(varsOf(doc).back()->attr("ID"), s("V20000"));
}

// --- Validation by the official schema --------------------------------------------------

TEST(DdiSchema, HandBuiltCodebooksAreValid)
{
    const QString unavailable = schemaCheckUnavailable();
    if (!unavailable.isEmpty())
        GTEST_SKIP() << unavailable.toStdString();
    expectValidBySchema(csproBook(), "cspro");
    expectValidBySchema(spssBook(), "spss");
    expectValidBySchema(stataBook(), "stata");
    expectValidBySchema(hostileBook(), "hostile");
    expectValidBySchema(Codebook(), "null");
}

TEST(DdiSchema, SampleFilesAreValid)
{
    const QString unavailable = schemaCheckUnavailable();
    if (!unavailable.isEmpty())
        GTEST_SKIP() << unavailable.toStdString();
    for (const char *sample : {"census.sav", "census.dta"}) {
        Error error;
        const Codebook book = Codebook::fromFile(cbtest::samplePath(sample), &error);
        ASSERT_TRUE(error.ok()) << sample << ": " << error.message.toStdString();
        expectValidBySchema(book, sample);
    }
}

TEST(DdiSchema, CSProSamplesAreValid)
{
    const QString unavailable = schemaCheckUnavailable();
    if (!unavailable.isEmpty())
        GTEST_SKIP() << unavailable.toStdString();
    int read = 0;
    for (const char *sample : {"census.dcf", "census.json", "languages.dcf"}) {
        const Codebook book = Codebook::fromFile(cbtest::samplePath(sample));
        if (book.isNull())
            continue;
        ++read;
        expectValidBySchema(book, sample);
    }
    if (read == 0)
        GTEST_SKIP() << "the CSPro readers read none of the samples yet";
}

// --- The samples, from their text ---------------------------------------------------------

TEST(DdiSamples, SpssCensusHasItsCasesAndVariables)
{
    // samples/README.md: 15 variables and 12 rows.
    const Document doc = ddiOf(Codebook::fromFile(cbtest::samplePath("census.sav")));
    EXPECT_EQ(doc.root.at("fileDscr/fileTxt/dimensns/caseQnty").text, s("12"));
    EXPECT_EQ(varsOf(doc).size(), 15u);
    EXPECT_EQ(varNamed(doc, s("income")).child("varFormat").attr("formatname"), s("F9.2"));
    EXPECT_EQ(varNamed(doc, s("income")).attr("dcml"), s("2"));
}

TEST(DdiSamples, CSProCensusRepeatsAssetSixTimes)
{
    const Codebook book = Codebook::fromFile(cbtest::samplePath("census.dcf"));
    if (book.isNull())
        GTEST_SKIP() << "the CSPro text reader does not read samples/census.dcf yet";
    const Document doc = ddiOf(book);
    // census.dcf: ASSET Start=19 Len=1 Occurrences=6, OccurrenceLabel=1,Radio ... 6,Car or truck.
    EXPECT_EQ(locationOf(varNamed(doc, s("ASSET_1"))), s("19-19/1"));
    EXPECT_EQ(locationOf(varNamed(doc, s("ASSET_6"))), s("24-24/1"));
    EXPECT_EQ(lablsOf(varNamed(doc, s("ASSET_6"))), QStringList({s("=Household owns the item (Car or truck)")}));
    // BIRTHMONTH: Value=1:12;Month and Value=99;Not reported with Name=MISSING,Special.
    const Node &month = varNamed(doc, s("BIRTHMONTH"));
    EXPECT_EQ(rangesOf(month, "valrng"), QStringList({"1:12=Month"}));
    EXPECT_EQ(categoriesOf(month), QStringList({"99=Not reported [missing] (MISSING)"}));
    // [Record] Name=HOUSING, RecordTypeValue='H'.
    const Node &housing = doc.root.at("fileDscr/fileTxt/fileStrc/recGrp");
    EXPECT_EQ(housing.attr("rectype"), s("H"));
    EXPECT_EQ(lablsOf(housing), QStringList({s("=Housing record")}));
}

TEST(DdiSamples, CSProLanguagesAreTagged)
{
    const Codebook book = Codebook::fromFile(cbtest::samplePath("languages.dcf"));
    if (book.isNull())
        GTEST_SKIP() << "the CSPro text reader does not read samples/languages.dcf yet";
    const Document doc = ddiOf(book);
    // languages.dcf: [Languages] EN, FR; Label=Household survey 2024|Enquête auprès des ménages 2024.
    const Node &titles = doc.root.at("stdyDscr/citation/titlStmt");
    EXPECT_EQ(titles.child("titl").lang(), s("en"));
    EXPECT_EQ(titles.child("parTitl").text, s("Enquête auprès des ménages 2024"));
    EXPECT_EQ(titles.child("parTitl").lang(), s("fr"));
    // Label=Region| (French empty) and Value='N  ';North|Nord.
    const Node &region = varNamed(doc, s("REGION"));
    EXPECT_EQ(lablsOf(region), QStringList({s("en=Region"), s("fr=Region")}));
    EXPECT_EQ(lablsOf(*region.all("catgry").at(0)), QStringList({s("en=North"), s("fr=Nord")}));
}
