#pragma once

#include <QJsonValue>
#include <QVariant>

/// A D-Bus value as plain text. A dictionary is one "key: value" a line, indented where it is nested.
QString valueText(const QVariant &value, int indentation = 0);

/// Whether it is a text without a character.
bool isNothing(const QVariant &value);

/// The same value for programs.
QJsonValue valueJson(const QVariant &value);
