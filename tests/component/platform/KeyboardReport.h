#pragma once

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
                         [this](libkeyboard::Keyboard::Key key) { add(QStringLiteral("down"), key); });
        QObject::connect(&keyboard, &libkeyboard::Keyboard::keyUp, this,
                         [this](libkeyboard::Keyboard::Key key) { add(QStringLiteral("up"), key); });
        QObject::connect(&keyboard, &libkeyboard::Keyboard::error, this, [this](const QString &message) {
            lines.append(QStringLiteral("error ") + message);
        });
    }

    QStringList lines;

private:
    void add(const QString &what, libkeyboard::Keyboard::Key key)
    {
        lines.append(QStringLiteral("%1 %2").arg(what).arg(static_cast<int>(key)));
    }
};
