// Reads a data description file into a codebook and prints how many
// variables it has; with KX_PARSE_REPEAT=K it reads the file K times in the
// same process and prints each reading's wall-clock seconds on stderr, as
// the peers' drivers in bench/peers/ do:
//
//     parse-seconds: 0.2731 0.2514 0.2498
//
// Each reading starts from the path and ends with the whole codebook built
// (Codebook::fromFile), and its codebook is released before the next.
#include <KxCodebook.h>

#include <QString>

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace {

int repeatCount()
{
    const char *text = std::getenv("KX_PARSE_REPEAT");
    const int count = text ? std::atoi(text) : 1;
    return count > 0 ? count : 1;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FILE\n", argv[0]);
        return 2;
    }
    const QString path = QString::fromLocal8Bit(argv[1]);
    const int repeat = repeatCount();
    std::fputs("parse-seconds:", stderr);
    int variables = 0;
    for (int i = 0; i < repeat; ++i) {
        const auto start = std::chrono::steady_clock::now();
        KxCodebook::Error error;
        const KxCodebook::Codebook codebook = KxCodebook::Codebook::fromFile(path, &error);
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        if (!error.ok()) {
            std::fprintf(stderr, "\n%s: %s\n", argv[1], qPrintable(error.message));
            return 1;
        }
        std::fprintf(stderr, " %.4f", took.count());
        variables = codebook.variables().size();
    }
    std::fputs("\n", stderr);
    std::printf("%d\n", variables);
    return 0;
}
