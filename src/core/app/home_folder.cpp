#include "app/home_folder.h"

#include <QDir>

namespace sky {

QString ResolveHomeFolder(const QString& homeOption, const QString& homeEnvironment,
                          const QString& executableFolder) {
    const QString& chosen = !homeOption.isEmpty()        ? homeOption
                            : !homeEnvironment.isEmpty() ? homeEnvironment
                                                         : executableFolder;
    return QDir::cleanPath(QDir(chosen).absolutePath());
}

} // namespace sky
