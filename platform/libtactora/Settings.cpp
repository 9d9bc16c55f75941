#include "Settings.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSettings>

namespace libtactora {

namespace {

// Asked of QSettings itself, so that both scopes cannot but agree on the file.
QString systemScopeDirectory()
{
    const QSettings organizationsFile(QSettings::NativeFormat, QSettings::SystemScope,
                                      QCoreApplication::organizationName());
    return QFileInfo(organizationsFile.fileName()).path();
}

} // namespace

// A default-constructed QSettings is always of the user scope; only where that scope lies can be chosen.
void Settings::init()
{
    QSettings::setDefaultFormat(QSettings::NativeFormat);
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, systemScopeDirectory());
}

} // namespace libtactora
