#include "KxWidgets_p.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFileInfo>

#include <dlfcn.h>

namespace {

// The module sits in a folder named after the library, beside the library
// file itself: the same relative place in the build tree and in every install.
QByteArray modulePath()
{
    Dl_info info;
    if (!dladdr(reinterpret_cast<void *>(&kxwidgets::api), &info) || !info.dli_fname)
        return QByteArray();
    const QString folder = QFileInfo(QString::fromLocal8Bit(info.dli_fname)).absolutePath();
    return QFile::encodeName(folder + QStringLiteral("/model_KelAdmin/widgets.so"));
}

const KxWidgets *loadModule()
{
    const QByteArray path = modulePath();
    void *module = path.isEmpty() ? nullptr : dlopen(path.constData(), RTLD_NOW | RTLD_LOCAL);
    using Entry = const KxWidgets *(*)();
    const Entry entry = module ? reinterpret_cast<Entry>(dlsym(module, KX_WIDGETS_ENTRY)) : nullptr;
    if (!entry) {
        const char *why = dlerror();
        qWarning().noquote() << "model_KelAdmin: no dialogs or font measures:" << (why ? why : "library path unknown");
        return nullptr;
    }
    return entry(); // the module stays loaded for the life of the process
}

} // namespace

const KxWidgets *kxwidgets::api()
{
    static const KxWidgets *const widgets = loadModule();
    return widgets;
}

bool kxwidgets::guiApplicationRunning()
{
    const QCoreApplication *app = QCoreApplication::instance();
    return app && app->inherits("QApplication");
}
