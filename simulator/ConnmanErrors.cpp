#include "ConnmanErrors.h"

namespace simulator::error {

namespace {
ErrorReply connmanError(const char *name, const char *text)
{
    return {QStringLiteral("net.connman.Error.") + QLatin1String(name), QString::fromLatin1(text)};
}

ErrorReply libdbusError(const char *name, const Call &call)
{
    return {QStringLiteral("org.freedesktop.DBus.Error.") + QLatin1String(name),
            QStringLiteral("Method \"%1\" with signature \"%2\" on interface \"%3\" doesn't exist\n")
                .arg(call.member(), call.signature(), call.interface())};
}
} // namespace

ErrorReply failed()
{
    return connmanError("Failed", "Input/output error");
}

ErrorReply alreadyConnected()
{
    return connmanError("AlreadyConnected", "Already connected");
}

ErrorReply alreadyDisabled()
{
    return connmanError("AlreadyDisabled", "Already disabled");
}

ErrorReply alreadyEnabled()
{
    return connmanError("AlreadyEnabled", "Already enabled");
}

ErrorReply alreadyExists()
{
    return connmanError("AlreadyExists", "Already exists");
}

ErrorReply inProgress()
{
    return connmanError("InProgress", "In progress");
}

ErrorReply invalidArguments()
{
    return connmanError("InvalidArguments", "Invalid arguments");
}

ErrorReply invalidProperty()
{
    return connmanError("InvalidProperty", "Invalid property");
}

ErrorReply invalidService()
{
    return connmanError("InvalidService", "Invalid service");
}

ErrorReply noCarrier()
{
    return connmanError("NoCarrier", "No carrier");
}

ErrorReply notConnected()
{
    return connmanError("NotConnected", "Not connected");
}

ErrorReply notRegistered()
{
    return connmanError("NotRegistered", "Not registered");
}

ErrorReply notSupported()
{
    return connmanError("NotSupported", "Not supported");
}

ErrorReply operationAborted()
{
    return connmanError("OperationAborted", "Operation aborted");
}

ErrorReply operationTimeout()
{
    return connmanError("OperationTimeout", "Operation timeout");
}

ErrorReply passphraseRequired()
{
    return connmanError("PassphraseRequired", "Passphrase required");
}

ErrorReply unknownObject(const Call &call)
{
    return libdbusError("UnknownObject", call);
}

ErrorReply unknownMethod(const Call &call)
{
    return libdbusError("UnknownMethod", call);
}

} // namespace simulator::error
