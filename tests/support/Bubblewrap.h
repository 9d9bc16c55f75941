#pragma once

#include <QStringList>

/// Arguments of bwrap.
namespace bubblewrap {

/// The machine's own file or directory, at its own place; `option` says how ("--bind", "--ro-bind-try").
QStringList bind(const char *option, const QString &path);

/// What belongs to the tests: the directory of temporary files (buses, fakes) and the build. To
/// come after /var, because either may be below it.
QStringList bindTheTests();

} // namespace bubblewrap
