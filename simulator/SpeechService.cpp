#include "SpeechService.h"

#include "CallLog.h"
#include "ConnmanErrors.h"
#include <QDBusArgument>

namespace simulator {

namespace {
const QString speech = QStringLiteral("com.tactora.Speech");
}

SpeechService::SpeechService(const QString &address, Instruments instruments, QObject *parent)
    : BusService(address, speech, instruments, parent)
{
}

QString SpeechService::introspect(const QString &path) const
{
    if (path != QLatin1String("/")) {
        return {};
    }
    return QStringLiteral(R"(<interface name="com.tactora.Speech">
    <method name="speakFromId">
      <arg name="id" type="s" direction="in"/>
      <arg name="request" type="a{sv}" direction="in"/>
      <annotation name="org.qtproject.QtDBus.QtTypeName.In1" value="QVariantMap"/>
    </method>
  </interface>
)");
}

void SpeechService::handleCall(const Call &call)
{
    if (call.path() != QLatin1String("/")) {
        call.refuse(error::unknownObject(call));
    } else if (call.interface() != speech || call.member() != QLatin1String("speakFromId") ||
               call.signature() != QLatin1String("sa{sv}")) {
        call.refuse(error::unknownMethod(call));
    } else {
        const QVariantList arguments = call.arguments();
        call.reply();
        emit spoke(arguments.at(0).toString(), qdbus_cast<QVariantMap>(arguments.at(1)));
    }
}

// Speech has a list of its own: it is no call on the network's side of the device.
void SpeechService::recordCall(const Call &call)
{
    m_lines.append(memberLine(call));
}

} // namespace simulator
