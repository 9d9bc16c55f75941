#include "LedPattern.h"

#include "Text.h"
#include <QDir>
#include <QFile>

namespace test_support {

LedPattern LedPattern::shownBy(const QString &directory)
{
    const auto content = [&directory](const QString &name) {
        QFile file(QDir(directory).filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
    };
    // The kernel lists all triggers, the one in use in brackets; a fake file keeps what was written.
    const QByteArray trigger = content("trigger"_s);
    if (trigger == "timer" || trigger.contains("[timer]")) {
        return blink(content("delay_on"_s).toInt() + content("delay_off"_s).toInt());
    }
    return content("brightness"_s).toInt() > 0 ? on() : off();
}

char *toString(const LedPattern &pattern)
{
    switch (pattern.kind) {
    case LedPattern::Kind::Off:
        return qstrdup("off");
    case LedPattern::Kind::On:
        return qstrdup("on");
    case LedPattern::Kind::Blink:
        return qstrdup(QByteArrayLiteral("blink every ") + QByteArray::number(pattern.periodMs) + " ms");
    }
    return nullptr;
}

} // namespace test_support
