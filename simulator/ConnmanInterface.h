#pragma once

#include "Call.h"
#include <QVector>

namespace simulator {

class Connman;

/// An interface of ConnMan's objects: what the bus is told of it, and what answers its calls.
struct ConnmanInterface
{
    struct Argument
    {
        const char *name;
        const char *type;
    };
    using Arguments = QVector<Argument>;
    struct Method
    {
        const char *name;
        Arguments in;
        Arguments out;
        void (Connman::*answer)(const Call &call);
    };
    struct Signal
    {
        const char *name;
        Arguments arguments;
    };

    QString name;
    QVector<Method> methods;
    QVector<Signal> emitted;

    /// What the call means by interface, name and signature; null when there is no such method.
    const Method *find(const Call &call) const;
    /// The "interface" element of the introspection format.
    QString xml() const;
};

} // namespace simulator
