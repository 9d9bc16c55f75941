#pragma once

#include <QVariantMap>

/// What of ConnMan's values can be told on to a client. The bus closes the connection of a sender whose
/// message is nested too deeply, and Qt sends no reply at all that holds a value it cannot write; wrapped up
/// once more in a reply, a value that was legal on its way here may be such a one.
namespace ReplyValues {

/// How deep a reply's own containers are where values stand: in an a{sv}, and in an a{sv} inside of it.
enum class Place : int {
    InReply = 3,
    InDictionaryOfReply = 6,
};

/// `values` without those that cannot stand at that place; each of these is one warning.
QVariantMap sendable(const QVariantMap &values, Place place);

} // namespace ReplyValues
