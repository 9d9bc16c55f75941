#pragma once

#include "Text.h"

#include <libkeyboard/Keyboard.h>

#include <QStringList>

/// What a keyboard reports, in order: "down 32", "up 32", "error <message>".
class KeyboardReport : public QObject
{
    Q_OBJECT

public:
    explicit KeyboardReport(const libkeyboard::Keyboard &keyboard)
    {
        QObject::connect(&keyboard, &libkeyboard::Keyboard::keyDown, this,
                         [this](libkeyboard::Keyboard::Key key) { add("down"_s, key); });
        QObject::connect(&keyboard, &libkeyboard::Keyboard::keyUp, this,
                         [this](libkeyboard::Keyboard::Key key) { add("up"_s, key); });
        QObject::connect(&keyboard, &libkeyboard::Keyboard::error, this,
                         [this](const QString &message) { lines.append("error "_s + message); });
    }

    QStringList lines;

private:
    void add(const QString &what, libkeyboard::Keyboard::Key key)
    {
        lines.append("%1 %2"_s.arg(what).arg(static_cast<int>(key)));
    }
};
