#include "RawPeer.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDebug>

#include <algorithm>
#include <array>
#include <gio/gio.h>
#include <gio/gunixfdlist.h>
#include <unistd.h>
#include <utility>

namespace soak {

namespace {
constexpr guint doNotQueue = 4;
constexpr char refusal[] = "org.freedesktop.DBus.Error.Failed";
/// What the bus says of a callee that has gone.
constexpr std::array<const char *, 2> goneErrors{"org.freedesktop.DBus.Error.NoReply",
                                                 "org.freedesktop.DBus.Error.ServiceUnknown"};

void complain(const char *what, GError *error)
{
    qCritical() << "Raw peer:" << what << error->message;
    g_error_free(error);
}

void send(GDBusConnection *connection, GDBusMessage *message, quint32 *serial = nullptr)
{
    GError *error = nullptr;
    if (g_dbus_connection_send_message(connection, message, G_DBUS_SEND_MESSAGE_FLAGS_NONE, serial, &error) ==
        FALSE) {
        complain("cannot send:", error);
    }
    g_object_unref(message);
}

void attachDescriptor(GDBusMessage *message)
{
    GUnixFDList *descriptors = g_unix_fd_list_new();
    g_unix_fd_list_append(descriptors, STDIN_FILENO, nullptr);
    g_dbus_message_set_unix_fd_list(message, descriptors);
    g_object_unref(descriptors);
}

void wakeEventLoop()
{
    if (QAbstractEventDispatcher *dispatcher = QCoreApplication::eventDispatcher()) {
        dispatcher->wakeUp();
    }
}
} // namespace

RawPeer::RawPeer(const QString &busAddress, Answer answer)
    : m_answer(std::move(answer))
{
    constexpr auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    GError *error = nullptr;
    m_connection.reset(g_dbus_connection_new_for_address_sync(busAddress.toUtf8().constData(), flags, nullptr,
                                                              nullptr, &error));
    if (m_connection == nullptr) {
        complain("no connection:", error);
        return;
    }
    m_filter = g_dbus_connection_add_filter(m_connection.get(), &RawPeer::filter, this, nullptr);
}

RawPeer::~RawPeer()
{
    if (m_connection != nullptr) {
        g_dbus_connection_remove_filter(m_connection.get(), m_filter);
    }
}

void RawPeer::Close::operator()(GDBusConnection *connection) const
{
    g_dbus_connection_close_sync(connection, nullptr, nullptr);
    g_object_unref(connection);
}

bool RawPeer::isConnected() const
{
    return m_connection != nullptr && g_dbus_connection_is_closed(m_connection.get()) == FALSE;
}

bool RawPeer::takeName(const QByteArray &name)
{
    GError *error = nullptr;
    GVariant *reply = g_dbus_connection_call_sync(
        m_connection.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "RequestName", g_variant_new("(su)", name.constData(), doNotQueue), G_VARIANT_TYPE("(u)"),
        G_DBUS_CALL_FLAGS_NONE, -1, nullptr, &error);
    if (reply == nullptr) {
        complain("cannot own a name:", error);
        return false;
    }
    guint32 result = 0;
    g_variant_get(reply, "(u)", &result);
    g_variant_unref(reply);
    constexpr guint32 isOwner = 1;
    return result == isOwner;
}

void RawPeer::call(const QByteArray &destination, const Member &member, GVariant *arguments,
                   bool withDescriptor)
{
    GDBusMessage *message = g_dbus_message_new_method_call(
        destination.constData(), member.path.constData(),
        member.interface.isEmpty() ? nullptr : member.interface.constData(), member.name.constData());
    g_dbus_message_set_body(message, arguments);
    if (withDescriptor) {
        attachDescriptor(message);
    }
    const std::lock_guard lock(m_mutex); // the reply may be here before send() returns
    quint32 serial = 0;
    send(m_connection.get(), message, &serial);
    m_waiting.insert(serial);
}

void RawPeer::emitSignal(const Member &member, GVariant *arguments, const QByteArray &destination)
{
    GDBusMessage *message = g_dbus_message_new_signal(member.path.constData(), member.interface.constData(),
                                                      member.name.constData());
    g_dbus_message_set_body(message, arguments);
    if (!destination.isEmpty()) {
        g_dbus_message_set_destination(message, destination.constData());
    }
    send(m_connection.get(), message);
}

int RawPeer::waiting() const
{
    const std::lock_guard lock(m_mutex);
    return m_waiting.size();
}

int RawPeer::lost() const
{
    const std::lock_guard lock(m_mutex);
    return m_lost;
}

GDBusMessage *RawPeer::filter(GDBusConnection * /*connection*/, GDBusMessage *message, gboolean incoming,
                              void *peer)
{
    auto *self = static_cast<RawPeer *>(peer);
    if (incoming == FALSE) {
        return message;
    }
    switch (g_dbus_message_get_message_type(message)) {
    case G_DBUS_MESSAGE_TYPE_METHOD_CALL:
        self->answerCall(message);
        g_object_unref(message);
        return nullptr;
    case G_DBUS_MESSAGE_TYPE_METHOD_RETURN:
    case G_DBUS_MESSAGE_TYPE_ERROR:
        if (!self->takeReply(message)) {
            return message;
        }
        wakeEventLoop();
        g_object_unref(message);
        return nullptr;
    case G_DBUS_MESSAGE_TYPE_SIGNAL:
    case G_DBUS_MESSAGE_TYPE_INVALID:
        break;
    }
    return message;
}

void RawPeer::answerCall(GDBusMessage *call)
{
    GVariant *arguments = m_answer ? m_answer(g_dbus_message_get_member(call)) : nullptr;
    GDBusMessage *reply = arguments != nullptr
                              ? g_dbus_message_new_method_reply(call)
                              : g_dbus_message_new_method_error_literal(call, refusal, "No.");
    if (arguments != nullptr) {
        g_dbus_message_set_body(reply, arguments);
    }
    send(m_connection.get(), reply);
}

bool RawPeer::takeReply(GDBusMessage *reply)
{
    const std::lock_guard lock(m_mutex);
    if (!m_waiting.remove(g_dbus_message_get_reply_serial(reply))) {
        return false;
    }
    const char *error = g_dbus_message_get_error_name(reply);
    m_lost += static_cast<int>(std::count_if(goneErrors.begin(), goneErrors.end(), [error](const char *gone) {
        return qstrcmp(error, gone) == 0;
    }));
    return true;
}

} // namespace soak
