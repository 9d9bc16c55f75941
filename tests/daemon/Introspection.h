#pragma once

#include <QStringList>

/// The names of the interfaces of an object's introspection data, in order.
QStringList introspectedInterfaces(const QString &xml);

/// The members of an interface as the introspection data lists them, in its order: "method configure(s, s) ->
/// b", "signal error(s)".
QStringList introspectedMembers(const QString &xml, const QString &interface);

/// The names of the arguments that have one.
QStringList introspectedArgumentNames(const QString &xml, const QString &interface);
