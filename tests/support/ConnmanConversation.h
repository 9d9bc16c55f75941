#pragma once

#include <functional>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>
#include <QVariantList>

namespace test_support {

/// ConnMan, real or simulated, as a client of it that is all ears finds it.
///
/// What is heard is told as "Atelier State ready": who, the property and its new value. A wired service is
/// called "cable", a Wi-Fi one by its SSID, a technology "ethernet" or "wifi"; of other signals only the
/// names are told. Left out is what nobody here looks at and ConnMan repeats as it likes, and whatever the
/// listener does not care to hear.
class ConnmanConversation : public QObject
{
    Q_OBJECT
public:
    using IsOfInterest = std::function<bool(const QString &line)>;

    explicit ConnmanConversation(
        QDBusConnection connection, IsOfInterest isOfInterest = [](const QString &) { return true; });

    /// Calls a method: the values of the reply, or "error name: message".
    QString ask(const QString &path, const QString &interface, const char *method,
                const QVariantList &arguments = {}) const;
    QString askService(const QString &identifier, const char *method,
                       const QVariantList &arguments = {}) const;
    QString askTechnology(const QString &type, const char *method, const QVariantList &arguments = {}) const;
    QString askManager(const char *method, const QVariantList &arguments = {}) const;

    /// What has been said since the last call of this, once there are as many lines and nothing more is said.
    QStringList heard(int lines = 0);

private slots:
    void hear(const QDBusMessage &signal);

private:
    void keep(const QString &line);
    void waitForSilence();

    QDBusConnection m_connection;
    IsOfInterest m_isOfInterest;
    QStringList m_heard;
};

/// The arguments of SetProperty.
QVariantList propertyAndValue(const char *property, const QVariant &value);

} // namespace test_support
