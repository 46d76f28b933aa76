#pragma once

#include <QString>

namespace sky {

// The folder the program reads its data, themes and settings from: the --home option when given, else
// the SKYLANTRA_HOME environment variable when set, else the executable's own folder. Always absolute.
QString ResolveHomeFolder(const QString& homeOption, const QString& homeEnvironment,
                          const QString& executableFolder);

} // namespace sky
