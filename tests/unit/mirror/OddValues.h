#pragma once

#include <QMap>
#include <QMetaType>
#include <QString>
#include <QVariant>
#include <QVector>

/// A D-Bus structure (si), which no property of ConnMan is.
struct OddPair
{
    QString text;
    int number = 0;
};

/// A dictionary a{sv} whose one key is there twice, which the wire allows and no Qt container does.
struct RepeatedKey
{
    QString key;
    QString first;
    QString second;
};

using TextMap = QMap<QString, QString>;

Q_DECLARE_METATYPE(OddPair)
Q_DECLARE_METATYPE(RepeatedKey)
Q_DECLARE_METATYPE(TextMap)

/// A value with the D-Bus signature that it travels with.
struct OddValue
{
    const char *signature;
    QVariant value;
};

/// Values that reach a receiver as raw arguments, none of them an a{sv}. Registers their types.
QVector<OddValue> rawOddValues();

/// Makes the types above known to Qt D-Bus; calling it again is harmless.
void registerOddTypes();
