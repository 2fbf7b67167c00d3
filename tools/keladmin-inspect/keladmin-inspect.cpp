// keladmin-inspect: prints its help at once, and for everything else loads
// the inspector (keladmin-inspect-core.so) and runs it. Loading Qt Core and
// the library and building the application object take about 3 ms, five
// times the whole help (0.6 ms, bench/README.md), so this program links
// neither Qt nor the library.
#include "HelpText.h"

#include <dlfcn.h>
#include <unistd.h>

#include <climits>
#include <cstdio>
#include <cstring>

namespace {

const char CoreName[] = "keladmin-inspect-core.so";

bool isHelpRequest(int argc, char **argv)
{
    return argc == 2 && (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0);
}

//! The folder of this program with its trailing slash, or false when it cannot be told.
bool programFolder(char *folder, size_t size)
{
    const ssize_t n = readlink("/proc/self/exe", folder, size - 1);
    if (n <= 0)
        return false;
    folder[n] = '\0';
    char *slash = std::strrchr(folder, '/');
    if (!slash)
        return false;
    slash[1] = '\0';
    return true;
}

void *openAt(const char *folder, const char *relative)
{
    char path[PATH_MAX];
    if (std::snprintf(path, sizeof path, "%s%s", folder, relative) >= static_cast<int>(sizeof path))
        return nullptr;
    return dlopen(path, RTLD_LAZY | RTLD_LOCAL);
}

/*! The inspector where the installation puts it (KX_INSPECT_CORE_FROM_BIN,
 * relative to this program's folder), else beside this program (the build
 * folder). */
void *openCore()
{
    char folder[PATH_MAX];
    if (!programFolder(folder, sizeof folder))
        return nullptr;
    void *core = openAt(folder, KX_INSPECT_CORE_FROM_BIN);
    return core ? core : openAt(folder, CoreName);
}

} // namespace

int main(int argc, char **argv)
{
    if (isHelpRequest(argc, argv)) {
        const int writeError = kxinspect::writeHelp();
        if (const char *why = kxinspect::standardOutputFailure(writeError)) {
            std::fprintf(stderr, "keladmin-inspect: standard output: %s\n", why);
            return kxinspect::ExitOutputError;
        }
        return 0;
    }
    void *core = openCore();
    using Main = int (*)(int, char **);
    const Main inspectorMain = core ? reinterpret_cast<Main>(dlsym(core, "kx_inspect_main")) : nullptr;
    if (!inspectorMain) {
        const char *why = dlerror();
        std::fprintf(stderr, "keladmin-inspect: cannot load %s: %s\n", CoreName, why ? why : "not found");
        return 127;
    }
    return inspectorMain(argc, argv);
}
