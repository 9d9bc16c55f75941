#pragma once

#include "ConnmanAgent.h"
#include "Text.h"

#include <QVariantMap>

// What the tests of RequestInput have in common: prepared values, and the fields of requests and replies.

using RequestType = ConnmanAgent::RequestType;
Q_DECLARE_METATYPE(RequestType)

inline const QString firstValue = "the name"_s;
inline const QString secondValue = "the secret"_s;

inline QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

inline QVariantMap ofType(const QVariant &type)
{
    return {{"Type"_s, type}};
}

inline QVariantMap ofType(const char *type)
{
    return ofType(QVariant(text(type)));
}

inline QVariantMap field(const char *name, const QVariant &attributes)
{
    return {{text(name), attributes}};
}

inline QVariantMap fields(const char *first, const QVariant &firstAttributes, const char *second,
                          const QVariant &secondAttributes)
{
    return {{text(first), firstAttributes}, {text(second), secondAttributes}};
}

inline void prepare(ConnmanAgent &agent, RequestType type)
{
    agent.setRequest("wifi_0"_s, secondValue, type, firstValue);
}
