// keladmin-inspect: prints its help at once, and for everything else loads
// the inspector (keladmin-inspect-core.so) and runs it. Loading Qt Core and
// the library and building the application object take about 3 ms, five
// times the whole help (0.6 ms, bench/README.md), so this program links
// neither Qt nor the library. --codebook, --ddi and --diff are tried first
// with keladmin-inspect-codebook.so, which leaves the front end's library
// unloaded and hands back what it does not run.
#include "HelpText.h"

#include <dlfcn.h>
#include <unistd.h>

#include <climits>
#include <cstdio>
#include <cstring>

namespace {

const char CoreName[] = "keladmin-inspect-core.so";
const char CodebookName[] = "keladmin-inspect-codebook.so";

bool isHelpRequest(int argc, char **argv)
{
    return argc == 2 && (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0);
}

//! Whether an argument asks for a run of the codebook library (the module checks the rest).
bool mayBeCodebookRun(int argc, char **argv)
{
    for (int i = 1; i < argc; ++i) {
        const char *a = argv[i];
        if (std::strcmp(a, "--codebook") == 0 || std::strcmp(a, "--diff") == 0 || std::strcmp(a, "--ddi") == 0
            || std::strncmp(a, "--ddi=", 6) == 0)
            return true;
    }
    return false;
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

/*! The module \a name where the installation puts it
 * (KX_INSPECT_MODULES_FROM_BIN, relative to this program's folder), else
 * beside this program (the build folder). */
void *openModule(const char *name)
{
    char folder[PATH_MAX];
    char installed[PATH_MAX];
    if (!programFolder(folder, sizeof folder))
        return nullptr;
    if (std::snprintf(installed, sizeof installed, "%s%s", KX_INSPECT_MODULES_FROM_BIN, name)
        >= static_cast<int>(sizeof installed))
        return nullptr;
    void *module = openAt(folder, installed);
    return module ? module : openAt(folder, name);
}

using Main = int (*)(int, char **);

//! The codebook runs' status, or -1 when the module is missing or hands the run back.
int runCodebookModule(int argc, char **argv)
{
    void *module = openModule(CodebookName);
    const Main codebookMain = module ? reinterpret_cast<Main>(dlsym(module, "kx_inspect_codebook_main")) : nullptr;
    return codebookMain ? codebookMain(argc, argv) : -1;
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
    if (mayBeCodebookRun(argc, argv)) {
        const int status = runCodebookModule(argc, argv);
        if (status >= 0)
            return status;
    }
    void *core = openModule(CoreName);
    const Main inspectorMain = core ? reinterpret_cast<Main>(dlsym(core, "kx_inspect_main")) : nullptr;
    if (!inspectorMain) {
        const char *why = dlerror();
        std::fprintf(stderr, "keladmin-inspect: cannot load %s: %s\n", CoreName, why ? why : "not found");
        return 127;
    }
    return inspectorMain(argc, argv);
}
