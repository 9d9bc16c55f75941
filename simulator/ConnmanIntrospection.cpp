#include "Connman.h"
#include "ConnmanWire.h"

#include <QStringList>

namespace simulator {

namespace {
const QString propertiesMethod = QStringLiteral(R"xml(
    <method name="GetProperties">
      <arg name="properties" type="a{sv}" direction="out"/>
      <annotation name="org.qtproject.QtDBus.QtTypeName.Out0" value="QVariantMap"/>
    </method>)xml");

const QString propertyChanged = QStringLiteral(R"xml(
    <signal name="PropertyChanged">
      <arg name="name" type="s"/>
      <arg name="value" type="v"/>
    </signal>)xml");

const QString managerMembers = QStringLiteral(R"xml(
    <method name="GetTechnologies">
      <arg name="technologies" type="a(oa{sv})" direction="out"/>
    </method>
    <method name="GetServices">
      <arg name="services" type="a(oa{sv})" direction="out"/>
    </method>
    <method name="GetPeers">
      <arg name="peers" type="a(oa{sv})" direction="out"/>
    </method>
    <method name="RegisterAgent">
      <arg name="path" type="o" direction="in"/>
    </method>
    <method name="UnregisterAgent">
      <arg name="path" type="o" direction="in"/>
    </method>
    <signal name="TechnologyAdded">
      <arg name="path" type="o"/>
      <arg name="properties" type="a{sv}"/>
    </signal>
    <signal name="TechnologyRemoved">
      <arg name="path" type="o"/>
    </signal>
    <signal name="ServicesChanged">
      <arg name="changed" type="a(oa{sv})"/>
      <arg name="removed" type="ao"/>
    </signal>)xml");

const QString technologyMembers = QStringLiteral(R"xml(
    <method name="SetProperty">
      <arg name="name" type="s" direction="in"/>
      <arg name="value" type="v" direction="in"/>
    </method>
    <method name="Scan"/>)xml");

const QString serviceMembers = QStringLiteral(R"xml(
    <method name="SetProperty">
      <arg name="name" type="s" direction="in"/>
      <arg name="value" type="v" direction="in"/>
    </method>
    <method name="Connect"/>
    <method name="Disconnect"/>
    <method name="Remove"/>)xml");

QString interfaceXml(const QString &name, const QString &members)
{
    return QStringLiteral("  <interface name=\"%1\">%2%3\n  </interface>\n")
        .arg(name, propertiesMethod, members);
}

QString childXml(const QStringList &names)
{
    QString xml;
    for (const QString &name : names) {
        xml += QStringLiteral("  <node name=\"%1\"/>\n").arg(name);
    }
    return xml;
}
} // namespace

QString Connman::introspect(const QString &path) const
{
    if (path == connman::managerPath) {
        return interfaceXml(connman::managerInterface, propertyChanged + managerMembers) +
               childXml({QStringLiteral("net")});
    }
    if (path == QLatin1String("/net")) {
        return childXml({QStringLiteral("connman")});
    }
    if (path == QLatin1String("/net/connman")) {
        return childXml({QStringLiteral("service"), QStringLiteral("technology")});
    }
    if (path + QLatin1Char('/') == connman::technologyPrefix) {
        return childXml(m_technologies.types());
    }
    if (path + QLatin1Char('/') == connman::servicePrefix) {
        QStringList identifiers;
        for (const ServicePtr &service : m_services.all()) {
            identifiers.append(service->identifier);
        }
        return childXml(identifiers);
    }
    if (m_technologies.findByPath(path) != nullptr) {
        return interfaceXml(connman::technologyInterface, propertyChanged + technologyMembers);
    }
    return m_services.findByPath(path) != nullptr
               ? interfaceXml(connman::serviceInterface, propertyChanged + serviceMembers)
               : QString();
}

} // namespace simulator
