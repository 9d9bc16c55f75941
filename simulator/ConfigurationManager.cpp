#include "ConfigurationManager.h"

#include "ConnmanErrors.h"

namespace simulator {

namespace {
constexpr int defaultSerialNumber = 10001;
const QString configurationManager = QStringLiteral("com.tactora.ConfigurationManager");
} // namespace

ConfigurationManager::ConfigurationManager(const QString &address, Instruments instruments, QObject *parent)
    : BusService(address, configurationManager, instruments, parent)
{
    setSerialNumber(defaultSerialNumber);
}

void ConfigurationManager::setSerialNumber(int serialNumber)
{
    const QVariantMap systemInfo{{QStringLiteral("serialNo"), serialNumber}};
    m_reply = {{QStringLiteral("systemInfo"), systemInfo}};
}

QString ConfigurationManager::introspect(const QString &path) const
{
    if (path != QLatin1String("/")) {
        return {};
    }
    return QStringLiteral(R"(<interface name="com.tactora.ConfigurationManager">
    <method name="process">
      <arg name="command" type="a{sv}" direction="in"/>
      <arg name="reply" type="a{sv}" direction="out"/>
      <annotation name="org.qtproject.QtDBus.QtTypeName.In0" value="QVariantMap"/>
      <annotation name="org.qtproject.QtDBus.QtTypeName.Out0" value="QVariantMap"/>
    </method>
  </interface>
)");
}

void ConfigurationManager::handleCall(const Call &call)
{
    if (call.path() != QLatin1String("/")) {
        call.refuse(error::unknownObject(call));
    } else if (call.interface() != configurationManager || call.member() != QLatin1String("process") ||
               call.signature() != QLatin1String("a{sv}")) {
        call.refuse(error::unknownMethod(call));
    } else {
        call.reply({m_reply});
    }
}

} // namespace simulator
