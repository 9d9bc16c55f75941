#include "ConnmanInterface.h"

#include <algorithm>

namespace simulator {

namespace {
using Argument = ConnmanInterface::Argument;
using Arguments = ConnmanInterface::Arguments;

QString signature(const Arguments &arguments)
{
    QString types;
    for (const Argument &argument : arguments) {
        types += QLatin1String(argument.type);
    }
    return types;
}

QString argumentsXml(const Arguments &arguments, const QString &direction = {})
{
    QString xml;
    for (const Argument &argument : arguments) {
        xml += QStringLiteral("      <arg name=\"%1\" type=\"%2\"%3/>\n")
                   .arg(QLatin1String(argument.name), QLatin1String(argument.type), direction);
    }
    return xml;
}

// Qt's clients take no dictionary that they are not told the class of.
QString annotationXml(const Arguments &out)
{
    return signature(out) != QLatin1String("a{sv}")
               ? QString()
               : QStringLiteral("      <annotation name=\"org.qtproject.QtDBus.QtTypeName.Out0\" "
                                "value=\"QVariantMap\"/>\n");
}

QString memberXml(const char *kind, const char *name, const QString &content)
{
    return QStringLiteral("    <%1 name=\"%2\">\n%3    </%1>\n")
        .arg(QLatin1String(kind), QLatin1String(name), content);
}
} // namespace

const ConnmanInterface::Method *ConnmanInterface::find(const Call &call) const
{
    const auto found = std::find_if(methods.cbegin(), methods.cend(), [this, &call](const Method &method) {
        return call.interface() == name && call.member() == QLatin1String(method.name) &&
               call.signature() == signature(method.in);
    });
    return found != methods.cend() ? &*found : nullptr;
}

QString ConnmanInterface::xml() const
{
    QString members;
    for (const Method &method : methods) {
        members += memberXml("method", method.name,
                             argumentsXml(method.in, QStringLiteral(" direction=\"in\"")) +
                                 argumentsXml(method.out, QStringLiteral(" direction=\"out\"")) +
                                 annotationXml(method.out));
    }
    for (const Signal &signal : emitted) {
        members += memberXml("signal", signal.name, argumentsXml(signal.arguments));
    }
    return QStringLiteral("  <interface name=\"%1\">\n%2  </interface>\n").arg(name, members);
}

} // namespace simulator
