#pragma once

#include <QMetaMethod>
#include <QStringList>

/// The signatures of the signals and slots that a class itself declares, in order.
inline QStringList ownMethods(const QMetaObject &metaObject)
{
    QStringList signatures;
    for (int index = metaObject.methodOffset(); index < metaObject.methodCount(); ++index) {
        signatures << QString::fromLatin1(metaObject.method(index).methodSignature());
    }
    return signatures;
}
