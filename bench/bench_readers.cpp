// Reader benchmarks. Every input is generated into a temporary folder at
// start-up, and every measurement is paired with a baseline timed in the same
// iteration (reading the same file's lines, parsing it with QJsonDocument, or
// reading the small twin of a large file), so the ratios hold on a noisy
// machine. A summary of the targets follows Google Benchmark's own table.

#include "FixtureReadStat.h"
#include "FuzzReaders.h"

#include "CSPro.h"
#include "CSProJson.h"
#include "KxLookup.h"
#include "SPSSDataImport.h"
#include "STATADataImport.h"

#include <KxCodebook.h>
#include <KxCodebookDdi.h>
#include <KxCodebookDiff.h>

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTextStream>

#include <ctime>
#include <malloc.h>
#include <algorithm>
#include <functional>
#include <set>
#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

// Times are the CPU time of the calling thread: the readers are
// single-threaded, and other processes on a shared machine do not count.
struct Clock
{
    using time_point = double;
    static double now()
    {
        timespec ts;
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
        return double(ts.tv_sec) + double(ts.tv_nsec) * 1e-9;
    }
};

double secondsSince(double start)
{
    return Clock::now() - start;
}

// Freeing a large model leaves glibc's allocator with work it does lazily,
// at the next allocations, which would be charged to whatever is timed next.
// Called after each release, outside the timed parts.
void settleHeap()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

QTemporaryDir *g_dir = nullptr;

QString inputPath(const QString &name)
{
    return g_dir->filePath(name);
}

void writeOrDie(const QString &path, const QByteArray &bytes)
{
    if (!kxfuzz::writeBytes(path, bytes)) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
        std::exit(1);
    }
}

// ---------------------------------------------------------------- inputs

// Entries of the k-th value set: 10 to 200.
int valueSetSize(int k)
{
    return 10 + (k * 37) % 191;
}

// A census-like text dictionary of \a items [Item] sections: records of 50
// items, a value set (with a range and a missing code) on every 10th item,
// three occurrences on every 7th.
QByteArray cSProText(int items)
{
    QByteArray out;
    out.reserve(items * 220);
    out += "[Dictionary]\nVersion=CSPro 7.7\nLabel=Generated\nName=GEN_DICT\nRecordTypeStart=1\n"
           "RecordTypeLen=2\nPositions=Absolute\nZeroFill=No\nDecimalChar=No\n\n"
           "[Level]\nLabel=Level\nName=LEVEL\n\n[IdItems]\n\n";
    int valueSets = 0;
    for (int i = 0; i < items; ++i) {
        if (i % 50 == 0) {
            const QByteArray n = QByteArray::number(i / 50);
            out += "[Record]\nLabel=Record " + n + "\nName=REC" + n + "\nRecordTypeValue='" + n.right(2)
                + "'\nRequired=No\nMaxRecords=10\nRecordLen=500\n\n";
        }
        const QByteArray n = QByteArray::number(i);
        out += "[Item]\nLabel=Item number " + n + "\nName=ITEM" + n + "\nStart=" + QByteArray::number(3 + (i % 50) * 3)
            + "\nLen=3\n";
        if (i % 7 == 3)
            out += "Occurrences=3\n";
        out += "\n";
        if (i % 10 == 0) {
            out += "[ValueSet]\nLabel=Item number " + n + "\nName=ITEM" + n + "_VS1\n";
            const int size = valueSetSize(valueSets++);
            for (int v = 1; v < size - 1; ++v)
                out += "Value=" + QByteArray::number(v) + ";Answer number " + QByteArray::number(v) + "\n";
            out += "Value=900:998;Other answers\nValue=999;Not reported\nName=MISSING,Special\n\n";
        }
    }
    return out;
}

QByteArray jsonLabel(const QByteArray &text)
{
    return "\"labels\":[{\"text\":\"" + text + "\"}]";
}

// The same dictionary in the JSON form of CSPro 8.
QByteArray cSProJson(int items)
{
    QByteArray out;
    out.reserve(items * 300);
    out += "{\"software\":\"CSPro\",\"version\":8.0,\"fileType\":\"dictionary\",\"name\":\"GEN_DICT\","
        + jsonLabel("Generated")
        + ",\"recordType\":{\"start\":1,\"length\":2},\"defaults\":{\"decimalMark\":false,\"zeroFill\":false},"
          "\"relativePositions\":true,\"levels\":[{\"name\":\"LEVEL\",\"ids\":{\"items\":[]},\"records\":[";
    int valueSets = 0;
    for (int i = 0; i < items; ++i) {
        if (i % 50 == 0) {
            const QByteArray n = QByteArray::number(i / 50);
            if (i > 0)
                out += "]},";
            out += "{\"name\":\"REC" + n + "\"," + jsonLabel("Record " + n) + ",\"recordType\":\"" + n.right(2)
                + "\",\"occurrences\":{\"required\":false,\"maximum\":10},\"items\":[";
        } else {
            out += ",";
        }
        const QByteArray n = QByteArray::number(i);
        out += "{\"name\":\"ITEM" + n + "\"," + jsonLabel("Item number " + n)
            + ",\"contentType\":\"numeric\",\"start\":" + QByteArray::number(3 + (i % 50) * 3) + ",\"length\":3";
        if (i % 7 == 3)
            out += ",\"occurrences\":{\"maximum\":3}";
        if (i % 10 == 0) {
            out += ",\"valueSets\":[{\"name\":\"ITEM" + n + "_VS1\"," + jsonLabel("Item number " + n) + ",\"values\":[";
            const int size = valueSetSize(valueSets++);
            for (int v = 1; v < size - 1; ++v)
                out += "{" + jsonLabel("Answer number " + QByteArray::number(v)) + ",\"pairs\":[{\"value\":\""
                    + QByteArray::number(v) + "\"}]},";
            out += "{" + jsonLabel("Other answers") + ",\"pairs\":[{\"range\":[\"900\",\"998\"]}]},";
            out += "{" + jsonLabel("Not reported") + ",\"pairs\":[{\"value\":\"999\"}]}]}]";
        }
        out += "}";
    }
    out += "]}]}]}\n";
    return out;
}

// 200 labelled variables over 20 label sets of 5 labels. Rows are as small as
// the formats allow: one byte a value in Stata (int8); the SPSS file is ZSAV,
// whose compression makes the repeated row values small.
kxtest::ReadStatFile statFile(bool stata, int rows)
{
    using Container = kxtest::ReadStatFile::Container;
    return kxtest::labelledSurveyFile(stata ? Container::Dta : Container::Zsav, rows);
}

void writeStatFile(const QString &path, bool stata, int rows)
{
    QString error;
    const QByteArray bytes = kxtest::readStatBytes(statFile(stata, rows), &error);
    if (bytes.isEmpty()) {
        std::fprintf(stderr, "cannot generate %s: %s\n", qPrintable(path), qPrintable(error));
        std::exit(1);
    }
    writeOrDie(path, bytes);
}

// Key and label separated by a tab; one label in ten repeats. Keys in
// ascending order, or shuffled (the same lines in a fixed random order).
QByteArray lookupFile(int lines, bool shuffled)
{
    std::vector<int> order(static_cast<std::size_t>(lines));
    for (int i = 0; i < lines; ++i)
        order[std::size_t(i)] = i;
    if (shuffled)
        std::shuffle(order.begin(), order.end(), std::mt19937(12345));
    QByteArray out;
    out.reserve(lines * 32);
    for (int i : order)
        out += QByteArray::number(1000000 + i) + "\tArea number " + QByteArray::number(i % (lines / 10 + 1)) + "\n";
    return out;
}

QString cSProTextName(int items)
{
    return QStringLiteral("dict-%1.dcf").arg(items);
}
QString cSProJsonName(int items)
{
    return QStringLiteral("dict-%1.json").arg(items);
}
QString lookupName(int lines, bool shuffled)
{
    return QStringLiteral("lookup-%1%2.txt").arg(lines).arg(shuffled ? "-shuffled" : "");
}

// Each input is written on its first use, before any timing, so a run
// filtered to some benchmarks does not wait for the others' inputs.
void ensureInput(const QString &name, const std::function<void(const QString &)> &generate)
{
    static std::set<QString> written;
    if (written.count(name))
        return;
    QElapsedTimer timer;
    timer.start();
    generate(inputPath(name));
    written.insert(name);
    std::fprintf(stderr, "generated %-18s %8.1f MB in %5.1f s\n", qPrintable(name),
                 QFile(inputPath(name)).size() / 1e6, timer.elapsed() / 1000.0);
}

QString cSProTextInput(int items)
{
    const QString name = cSProTextName(items);
    ensureInput(name, [items](const QString &path) { writeOrDie(path, cSProText(items)); });
    return inputPath(name);
}

QString cSProJsonInput(int items)
{
    const QString name = cSProJsonName(items);
    ensureInput(name, [items](const QString &path) { writeOrDie(path, cSProJson(items)); });
    return inputPath(name);
}

QString lookupInput(int lines, bool shuffled)
{
    const QString name = lookupName(lines, shuffled);
    ensureInput(name, [lines, shuffled](const QString &path) { writeOrDie(path, lookupFile(lines, shuffled)); });
    return inputPath(name);
}

QString statInput(bool stata, int rows)
{
    const QString name = QStringLiteral("%1-%2.%3").arg(rows == 1000 ? "small" : "large").arg(rows).arg(stata ? "dta" : "zsav");
    ensureInput(name, [stata, rows](const QString &path) { writeStatFile(path, stata, rows); });
    return inputPath(name);
}

// ---------------------------------------------------------------- baselines

qint64 readLines(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return 0;
    QTextStream in(&file);
    qint64 characters = 0;
    while (!in.atEnd())
        characters += in.readLine().size();
    return characters;
}

int parseJson(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    return document.isObject() ? document.object().size() : 0;
}

// ---------------------------------------------------------------- results

// Per benchmark: the figure per unit (ns), and the ratio to its baseline.
struct Figure
{
    double nsPerUnit = 0;
    double ratio = 0;
};
std::map<std::string, Figure> g_figures;

void report(benchmark::State &state, const std::string &key, double subject, double baseline, double units)
{
    const double n = double(state.iterations());
    Figure f;
    f.nsPerUnit = subject / n / units * 1e9;
    f.ratio = baseline > 0 ? subject / baseline : 0;
    g_figures[key] = f;
    state.counters["ns_per_unit"] = f.nsPerUnit;
    state.counters["baseline_ms"] = baseline / n * 1e3;
    state.counters["ratio"] = f.ratio;
}

// ---------------------------------------------------------------- benchmarks

template<class Reader>
void dictionaryBenchmark(benchmark::State &state, const QString &path, bool json, const std::string &key)
{
    const int items = int(state.range(0));
    double subject = 0;
    double baseline = 0;
    int read = 0;
    for (auto _ : state) {
        auto start = Clock::now();
        benchmark::DoNotOptimize(json ? qint64(parseJson(path)) : readLines(path));
        baseline += secondsSince(start);

        Reader dictionary;
        dictionary.setDecimalMode(1);
        dictionary.setDecimalAnswer(QMessageBox::YesToAll);
        start = Clock::now();
        dictionary.loadFromFile(path);
        const double took = secondsSince(start);
        subject += took;
        state.SetIterationTime(took);
        read = dictionary.getItemsCount();
        kxfuzz::releaseModel(dictionary);
        settleHeap();
    }
    state.counters["items_read"] = read;
    report(state, key, subject, baseline, items);
}

void BM_CSProText(benchmark::State &state)
{
    const int items = int(state.range(0));
    dictionaryBenchmark<TCSPro>(state, cSProTextInput(items), false, "text/" + std::to_string(items));
}

void BM_CSProJson(benchmark::State &state)
{
    const int items = int(state.range(0));
    dictionaryBenchmark<TCSProJson>(state, cSProJsonInput(items), true, "json/" + std::to_string(items));
}

// The codebook library's reading of the same dictionaries, against the same baselines.
void codebookBenchmark(benchmark::State &state, const QString &path, bool json, const std::string &key)
{
    const int items = int(state.range(0));
    double subject = 0;
    double baseline = 0;
    int variables = 0;
    for (auto _ : state) {
        auto start = Clock::now();
        benchmark::DoNotOptimize(json ? qint64(parseJson(path)) : readLines(path));
        baseline += secondsSince(start);

        // The reading is timed; freeing the codebook after it is not (as for the readers above).
        start = Clock::now();
        KxCodebook::Error error;
        KxCodebook::Codebook codebook = KxCodebook::Codebook::fromFile(path, &error);
        const double took = secondsSince(start);
        variables = codebook.variables().size();
        codebook = KxCodebook::Codebook();
        subject += took;
        state.SetIterationTime(took);
        settleHeap();
    }
    state.counters["variables"] = variables;
    report(state, key, subject, baseline, items);
}

void BM_CodebookText(benchmark::State &state)
{
    const int items = int(state.range(0));
    codebookBenchmark(state, cSProTextInput(items), false, "codebook-text/" + std::to_string(items));
}

void BM_CodebookJson(benchmark::State &state)
{
    const int items = int(state.range(0));
    codebookBenchmark(state, cSProJsonInput(items), true, "codebook-json/" + std::to_string(items));
}

// Two rounds of a 100,000-item dictionary where every name differs (each
// variable is found again by its record, start and width): the comparison
// against reading both files.
void BM_CodebookCompare(benchmark::State &state)
{
    const int items = int(state.range(0));
    const QString before = cSProTextInput(items);
    const QString after = inputPath(QStringLiteral("renamed-%1.dcf").arg(items));
    ensureInput(QStringLiteral("renamed-%1.dcf").arg(items), [&before](const QString &path) {
        QFile file(before);
        file.open(QIODevice::ReadOnly);
        writeOrDie(path, file.readAll().replace("Name=ITEM", "Name=VAR"));
    });
    double subject = 0;
    double baseline = 0;
    int changes = 0;
    for (auto _ : state) {
        auto start = Clock::now();
        const KxCodebook::Codebook a = KxCodebook::Codebook::fromFile(before);
        const KxCodebook::Codebook b = KxCodebook::Codebook::fromFile(after);
        baseline += secondsSince(start);
        start = Clock::now();
        const KxCodebook::Comparison comparison = KxCodebook::compare(a, b);
        const double took = secondsSince(start);
        changes = comparison.changes.size();
        subject += took;
        state.SetIterationTime(took);
    }
    state.counters["changes"] = changes;
    report(state, "codebook-compare/" + std::to_string(items), subject, baseline, items);
}

// The DDI document of a 100,000-item dictionary against reading it.
void BM_CodebookDdi(benchmark::State &state)
{
    const int items = int(state.range(0));
    const QString path = cSProTextInput(items);
    double subject = 0;
    double baseline = 0;
    qint64 bytes = 0;
    for (auto _ : state) {
        auto start = Clock::now();
        const KxCodebook::Codebook codebook = KxCodebook::Codebook::fromFile(path);
        baseline += secondsSince(start);
        start = Clock::now();
        bytes = KxCodebook::toDdi(codebook).size();
        const double took = secondsSince(start);
        subject += took;
        state.SetIterationTime(took);
    }
    state.counters["megabytes"] = double(bytes) / 1e6;
    report(state, "codebook-ddi/" + std::to_string(items), subject, baseline, items);
}

double codebookSeconds(const QString &path, int *variables)
{
    const auto start = Clock::now();
    double took = 0;
    {
        const KxCodebook::Codebook codebook = KxCodebook::Codebook::fromFile(path);
        *variables = codebook.variables().size();
        took = secondsSince(start);
    }
    settleHeap();
    return took;
}

// The large file's codebook against the small file's: flat in the row count.
void codebookStatBenchmark(benchmark::State &state, bool stata, const std::string &key)
{
    const QString small = statInput(stata, 1000);
    const QString large = statInput(stata, 1000000);
    double smallTotal = 0;
    double largeTotal = 0;
    int variables = 0;
    for (auto _ : state) {
        smallTotal += codebookSeconds(small, &variables);
        const double took = codebookSeconds(large, &variables);
        largeTotal += took;
        state.SetIterationTime(took);
    }
    state.counters["variables"] = variables;
    state.counters["small_ms"] = smallTotal / double(state.iterations()) * 1e3;
    report(state, key, largeTotal, smallTotal, 200);
}

void BM_CodebookSpss(benchmark::State &state)
{
    codebookStatBenchmark(state, false, "codebook-spss");
}

void BM_CodebookStata(benchmark::State &state)
{
    codebookStatBenchmark(state, true, "codebook-stata");
}

template<class Importer>
double importSeconds(const QString &path, int *fields)
{
    const auto start = Clock::now();
    double took = 0;
    {
        Importer importer(path);
        *fields = kxfuzz::openImporter(importer);
        took = secondsSince(start);
    }
    settleHeap();
    return took;
}

// The large file's dictionary import against the small file's.
template<class Importer>
void statBenchmark(benchmark::State &state, bool stata, const std::string &key)
{
    const QString small = statInput(stata, 1000);
    const QString large = statInput(stata, 1000000);
    double smallTotal = 0;
    double largeTotal = 0;
    int fields = 0;
    for (auto _ : state) {
        smallTotal += importSeconds<Importer>(small, &fields);
        const double took = importSeconds<Importer>(large, &fields);
        largeTotal += took;
        state.SetIterationTime(took);
    }
    state.counters["fields"] = fields;
    state.counters["small_ms"] = smallTotal / double(state.iterations()) * 1e3;
    report(state, key, largeTotal, smallTotal, 200);
}

void BM_SpssDictionary(benchmark::State &state)
{
    statBenchmark<TSPSSDataImport>(state, false, "spss");
}

void BM_StataDictionary(benchmark::State &state)
{
    statBenchmark<TSTATADataImport>(state, true, "stata");
}

void BM_Lookup(benchmark::State &state)
{
    const int lines = int(state.range(0));
    const auto mode = static_cast<econsistencyCheck>(state.range(1));
    const bool shuffled = state.range(2) != 0;
    const QString path = lookupInput(lines, shuffled);
    double subject = 0;
    double baseline = 0;
    int entries = 0;
    for (auto _ : state) {
        auto start = Clock::now();
        benchmark::DoNotOptimize(readLines(path));
        baseline += secondsSince(start);

        {
            TKxLookup lookup;
            lookup.setFfileName(path);
            lookup.setSeparator(1);
            TKxLabelFrequencies frequencies;
            QStringList errors;
            start = Clock::now();
            lookup.consistencyCheck(mode, frequencies, errors);
            const double took = secondsSince(start);
            subject += took;
            state.SetIterationTime(took);
            entries = lookup.getLookupMap().size();
        }
        settleHeap();
    }
    state.counters["entries"] = entries;
    report(state,
           "lookup" + std::string(mode == eNoCheck ? "" : "-checked") + (shuffled ? "-shuffled" : "") + "/"
               + std::to_string(lines),
           subject, baseline, lines);
}

void registerAll()
{
    // Fewer iterations for the large inputs keep the whole run to a few minutes.
    const std::pair<int, int> dictionarySizes[] = {{1000, 30}, {10000, 6}, {100000, 2}};
    for (const auto &[items, iterations] : dictionarySizes) {
        benchmark::RegisterBenchmark("BM_CSProText", BM_CSProText)
            ->Arg(items)->Iterations(iterations)->UseManualTime()->Unit(benchmark::kMillisecond);
    }
    for (const auto &[items, iterations] : dictionarySizes) {
        benchmark::RegisterBenchmark("BM_CSProJson", BM_CSProJson)
            ->Arg(items)->Iterations(iterations)->UseManualTime()->Unit(benchmark::kMillisecond);
    }
    for (const auto &[items, iterations] : dictionarySizes) {
        benchmark::RegisterBenchmark("BM_CodebookText", BM_CodebookText)
            ->Arg(items)->Iterations(iterations)->UseManualTime()->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("BM_CodebookJson", BM_CodebookJson)
            ->Arg(items)->Iterations(iterations)->UseManualTime()->Unit(benchmark::kMillisecond);
    }
    benchmark::RegisterBenchmark("BM_CodebookDdi", BM_CodebookDdi)
        ->Arg(100000)->Iterations(2)->UseManualTime()->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("BM_CodebookCompare", BM_CodebookCompare)
        ->Arg(100000)->Iterations(2)->UseManualTime()->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("BM_CodebookSpss", BM_CodebookSpss)
        ->Iterations(50)->UseManualTime()->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("BM_CodebookStata", BM_CodebookStata)
        ->Iterations(50)->UseManualTime()->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("BM_SpssDictionary", BM_SpssDictionary)
        ->Iterations(50)->UseManualTime()->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("BM_StataDictionary", BM_StataDictionary)
        ->Iterations(50)->UseManualTime()->Unit(benchmark::kMillisecond);
    // Arguments: lines, consistency mode, keys shuffled (1) or in ascending order (0).
    const std::vector<int64_t> lookupRuns[] = {{eNoCheck, 0}, {eFileChecksAndFrequencies, 0}, {eNoCheck, 1}};
    for (const auto &run : lookupRuns) {
        benchmark::RegisterBenchmark("BM_Lookup", BM_Lookup)
            ->Args({100000, run[0], run[1]})->Iterations(5)->UseManualTime()->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark("BM_Lookup", BM_Lookup)
            ->Args({1000000, run[0], run[1]})->Iterations(2)->UseManualTime()->Unit(benchmark::kMillisecond);
    }
}

// ---------------------------------------------------------------- summary

bool g_complete = true;

const char *verdict(bool met)
{
    return !g_complete ? "(not all sizes run)" : met ? "met" : "NOT MET";
}

double figureRatio(const std::string &key)
{
    auto it = g_figures.find(key);
    return it == g_figures.end() ? -1 : it->second.ratio;
}

double perUnit(const std::string &key)
{
    auto it = g_figures.find(key);
    return it == g_figures.end() ? -1 : it->second.nsPerUnit;
}

// Flat per unit: the largest size costs at most twice as much per unit as the
// smallest (room for cache effects and the log factor of ordered maps).
bool flat(double small, double large)
{
    return small > 0 && large > 0 && large <= 2.0 * small;
}

void printSummary()
{
    // A filtered run leaves some figures out (printed as -1).
    g_complete = g_figures.size() == 24;
    std::printf("\nSummary (ratios measured in the same iterations as their baselines)\n");
    std::printf("%-34s %12s %12s %12s  %s\n", "measure", "small", "medium", "large", "target");
    const double t1 = figureRatio("text/1000"), t2 = figureRatio("text/10000"), t3 = figureRatio("text/100000");
    std::printf("%-34s %12.2f %12.2f %12.2f  < 4: %s\n", "CSPro text / QTextStream lines", t1, t2, t3,
                verdict(t1 > 0 && t1 < 4 && t2 < 4 && t3 < 4));
    const double p1 = perUnit("text/1000"), p2 = perUnit("text/10000"), p3 = perUnit("text/100000");
    std::printf("%-34s %12.0f %12.0f %12.0f  flat: %s\n", "CSPro text ns per item", p1, p2, p3, verdict(flat(p1, p3)));
    const double j1 = figureRatio("json/1000"), j2 = figureRatio("json/10000"), j3 = figureRatio("json/100000");
    std::printf("%-34s %12.2f %12.2f %12.2f  < 3: %s\n", "CSPro JSON / QJsonDocument", j1, j2, j3,
                verdict(j1 > 0 && j1 < 3 && j2 < 3 && j3 < 3));
    const double q1 = perUnit("json/1000"), q2 = perUnit("json/10000"), q3 = perUnit("json/100000");
    std::printf("%-34s %12.0f %12.0f %12.0f  (flat: %s)\n", "CSPro JSON ns per item", q1, q2, q3,
                verdict(flat(q1, q3)));
    const double s = figureRatio("spss"), d = figureRatio("stata");
    std::printf("%-34s %12s %12s %12.2f  <= 1.5: %s\n", "SPSS 1,000,000 rows / 1,000 rows", "", "", s,
                verdict(s > 0 && s <= 1.5));
    std::printf("%-34s %12s %12s %12.2f  <= 1.5: %s\n", "Stata 1,000,000 rows / 1,000 rows", "", "", d,
                verdict(d > 0 && d <= 1.5));
    const double l1 = figureRatio("lookup/100000"), l2 = figureRatio("lookup/1000000");
    std::printf("%-34s %12.2f %12s %12.2f  < 3: %s\n", "Lookup / QTextStream lines", l1, "", l2,
                verdict(l1 > 0 && l1 < 3 && l2 < 3));
    const double n1 = perUnit("lookup/100000"), n2 = perUnit("lookup/1000000");
    std::printf("%-34s %12.0f %12s %12.0f  flat: %s\n", "Lookup ns per line", n1, "", n2, verdict(flat(n1, n2)));
    const double c1 = figureRatio("lookup-checked/100000"), c2 = figureRatio("lookup-checked/1000000");
    std::printf("%-34s %12.2f %12s %12.2f  (information)\n", "Lookup, checks+counts / lines", c1, "", c2);
    const double b1 = figureRatio("codebook-text/1000"), b2 = figureRatio("codebook-text/10000"),
                 b3 = figureRatio("codebook-text/100000");
    std::printf("%-34s %12.2f %12.2f %12.2f  <= 2: %s\n", "Codebook text / QTextStream lines", b1, b2, b3,
                verdict(b1 > 0 && b1 <= 2 && b2 <= 2 && b3 <= 2));
    const double bp1 = perUnit("codebook-text/1000"), bp3 = perUnit("codebook-text/100000");
    std::printf("%-34s %12.0f %12s %12.0f  flat: %s\n", "Codebook text ns per item", bp1, "", bp3,
                verdict(flat(bp1, bp3)));
    const double k1 = figureRatio("codebook-json/1000"), k2 = figureRatio("codebook-json/10000"),
                 k3 = figureRatio("codebook-json/100000");
    std::printf("%-34s %12.2f %12.2f %12.2f  <= 1.5: %s\n", "Codebook JSON / QJsonDocument", k1, k2, k3,
                verdict(k1 > 0 && k1 <= 1.5 && k2 <= 1.5 && k3 <= 1.5));
    const double kp1 = perUnit("codebook-json/1000"), kp3 = perUnit("codebook-json/100000");
    std::printf("%-34s %12.0f %12s %12.0f  flat: %s\n", "Codebook JSON ns per item", kp1, "", kp3,
                verdict(flat(kp1, kp3)));
    const double dd = figureRatio("codebook-ddi/100000");
    std::printf("%-34s %12s %12s %12.2f  <= 1: %s\n", "DDI / reading, 100,000 items", "", "", dd,
                verdict(dd > 0 && dd <= 1));
    const double cc = figureRatio("codebook-compare/100000");
    std::printf("%-34s %12s %12s %12.2f  <= 1: %s\n", "Compare / reading both, 100,000", "", "", cc,
                verdict(cc > 0 && cc <= 1));
    const double cs = figureRatio("codebook-spss"), cd = figureRatio("codebook-stata");
    std::printf("%-34s %12s %12s %12.2f  <= 1.5: %s\n", "Codebook SPSS 1,000,000 / 1,000 rows", "", "", cs,
                verdict(cs > 0 && cs <= 1.5));
    std::printf("%-34s %12s %12s %12.2f  <= 1.5: %s\n", "Codebook Stata 1,000,000 / 1,000 rows", "", "", cd,
                verdict(cd > 0 && cd <= 1.5));
    const double r1 = figureRatio("lookup-shuffled/100000"), r2 = figureRatio("lookup-shuffled/1000000");
    std::printf("%-34s %12.2f %12s %12.2f  (information)\n", "Lookup, keys shuffled / lines", r1, "", r2);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    // The readers' trace lines would flood the benchmark output.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;

    QTemporaryDir dir;
    if (!dir.isValid()) {
        std::fprintf(stderr, "no temporary folder\n");
        return 1;
    }
    g_dir = &dir;
    registerAll();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    printSummary();
    return 0;
}
