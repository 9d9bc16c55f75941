#include "Introspection.h"
#include "Text.h"

#include <functional>
#include <QXmlStreamReader>

namespace {

using Visitor = std::function<void(QXmlStreamReader &)>;

void forEachChild(QXmlStreamReader &reader, const Visitor &visit)
{
    while (reader.readNextStartElement()) {
        visit(reader);
    }
}

QString attribute(const QXmlStreamReader &reader, const char *name)
{
    return reader.attributes().value(QLatin1String(name)).toString();
}

void forEachMember(const QString &xml, const QString &interface, const Visitor &visit)
{
    QXmlStreamReader reader(xml);
    reader.readNextStartElement();
    forEachChild(reader, [&](QXmlStreamReader &node) {
        if (attribute(node, "name") == interface) {
            forEachChild(node, visit);
        } else {
            node.skipCurrentElement();
        }
    });
}

QString memberText(QXmlStreamReader &reader)
{
    const QString kind = reader.name().toString();
    const QString name = attribute(reader, "name");
    QStringList in;
    QString out;
    forEachChild(reader, [&](QXmlStreamReader &argument) {
        if (argument.name() == QLatin1String("arg")) {
            const QString type = attribute(argument, "type");
            if (attribute(argument, "direction") == QLatin1String("out") && kind == QLatin1String("method")) {
                out = " -> "_s + type;
            } else {
                in << type;
            }
        }
        argument.skipCurrentElement();
    });
    return "%1 %2(%3)%4"_s.arg(kind, name, in.join(", "_s), out);
}

} // namespace

QStringList introspectedInterfaces(const QString &xml)
{
    QStringList names;
    QXmlStreamReader reader(xml);
    reader.readNextStartElement();
    forEachChild(reader, [&](QXmlStreamReader &node) {
        if (node.name() == QLatin1String("interface")) {
            names << attribute(node, "name");
        }
        node.skipCurrentElement();
    });
    return names;
}

QStringList introspectedMembers(const QString &xml, const QString &interface)
{
    QStringList members;
    forEachMember(xml, interface, [&](QXmlStreamReader &member) {
        if (member.name() == QLatin1String("method") || member.name() == QLatin1String("signal")) {
            members << memberText(member);
        } else {
            member.skipCurrentElement();
        }
    });
    return members;
}

QStringList introspectedArgumentNames(const QString &xml, const QString &interface)
{
    QStringList names;
    forEachMember(xml, interface, [&](QXmlStreamReader &member) {
        forEachChild(member, [&](QXmlStreamReader &argument) {
            const QString name = attribute(argument, "name");
            if (argument.name() == QLatin1String("arg") && !name.isEmpty()) {
                names << name;
            }
            argument.skipCurrentElement();
        });
    });
    return names;
}
