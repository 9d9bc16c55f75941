#include "ConnmanErrors.h"

namespace simulator::error {

namespace {
ErrorReply libdbusError(const char *name, const Call &call)
{
    return {QStringLiteral("org.freedesktop.DBus.Error.") + QLatin1String(name),
            QStringLiteral("Method \"%1\" with signature \"%2\" on interface \"%3\" doesn't exist\n")
                .arg(call.member(), call.signature(), call.interface())};
}
} // namespace

ErrorReply ofConnman(const char *name, const char *text)
{
    return {QStringLiteral("net.connman.Error.") + QLatin1String(name), QString::fromLatin1(text)};
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
