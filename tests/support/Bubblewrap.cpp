#include "Bubblewrap.h"

#include <QDir>

namespace bubblewrap {

QStringList bind(const char *option, const QString &path)
{
    return {QLatin1String(option), path, path};
}

QStringList bindTheTests()
{
    return bind("--bind", QDir::tempPath()) + bind("--bind", QStringLiteral(BUILD_DIRECTORY));
}

} // namespace bubblewrap
